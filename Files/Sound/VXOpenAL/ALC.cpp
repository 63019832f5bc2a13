// Devices and contexts.

#include <algorithm>

#include "Files/Base/Console.h"
#include "Files/Sound/VXOpenAL/ALu.h"

std::atomic<ALCcontext_struct*> g_ALContext{nullptr};

namespace {

constexpr char kDeviceName[] = "VXOpenAL Device";
constexpr ALCenum kListOfNames = 784;
// The program asks for this output; it is nobody's, so that the system's default is taken.
constexpr char kWantedOutput[] = "null";

std::atomic<ALCenum> g_error{ALC_NO_ERROR};  // of calls without a device

void OpenDevice(ALCdevice* device)
{
    device->open(kWantedOutput);
    if (device->error != ALC_NO_ERROR) return;
    ALu_BuildPan(device);
    device->reset();
    if (device->error == ALC_NO_ERROR) device->start();
}

}  // namespace

ALCdevice_struct::ALCdevice_struct()
{
    ALu_BuildPan(this);
}

ALCdevice* alcOpenDevice(const ALCchar*)
{
    ALCdevice* device = ALCdevice_MakeHost();
    OpenDevice(device);
    if (device->error == ALC_NO_ERROR) return device;
    alcCloseDevice(device);
    device = ALCdevice_MakeNull();
    OpenDevice(device);
    return device;
}

ALCboolean alcCloseDevice(ALCdevice* device)
{
    if (!device) return ALC_FALSE;
    device->stop();
    device->close();
    VxDelete(device);
    return ALC_TRUE;
}

ALCcontext* alcCreateContext(ALCdevice* device, const ALCint*)
{
    if (!device) return nullptr;
    auto* context = VxNew<ALCcontext_struct>();
    context->device = device;
    return context;
}

// Whoever mixes finds the one context or the other whole.
ALCboolean alcMakeContextCurrent(ALCcontext* context)
{
    ALCcontext* before = g_ALContext;
    ALCdevice* device = before ? before->device : context ? context->device : nullptr;
    if (!device) return ALC_TRUE;
    const std::lock_guard<std::mutex> locked(device->lock);
    g_ALContext = context;
    return ALC_TRUE;
}

void alcDestroyContext(ALCcontext* context)
{
    if (!context) return;
    if (context == g_ALContext) alcMakeContextCurrent(nullptr);
    AL_FreeSources(context);
    AL_FreeBuffers();
    VxDelete(context);
}

ALCcontext* alcGetCurrentContext(void)
{
    return g_ALContext;
}

ALCdevice* alcGetContextsDevice(ALCcontext* context)
{
    return context ? context->device : nullptr;
}

ALCenum alcGetError(ALCdevice* device)
{
    return (device ? device->error : g_error).exchange(ALC_NO_ERROR);
}

const ALCchar* alcGetString(ALCdevice* device, ALCenum query)
{
    if (query == ALC_DEVICE_SPECIFIER) return device ? kDeviceName : nullptr;
    static constexpr char kNames[] = "VXOpenAL Device\0";  // a list ends with an empty name
    if (query == kListOfNames && !device) return kNames;
    g_DebugConsole->Output(
        "VXOpenAl alcGetString currently does not support getting the name of a device\n");
    return nullptr;
}

void alcGetIntegerv(ALCdevice* device, ALCenum query, ALCsizei size, ALCint* values)
{
    if (size < 1 || !values) return;
    if (query == ALC_MAJOR_VERSION || query == ALC_MINOR_VERSION)
        *values = 1;
    else if (query == ALC_FREQUENCY && device)
        *values = static_cast<ALCint>(device->frequency);
    else
        g_DebugConsole->Output("VXOpenAl alcGetIntegerv currently does not support parameter %d\n",
                               query);
}

bool ALC_Pump()
{
    ALCcontext_struct* context = g_ALContext;
    return context && context->device->pump();
}
