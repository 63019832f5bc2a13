// The output of the system: its thread asks for samples, and gets them out of whole blocks.

#include <algorithm>
#include <cstring>

#include "Files/Base/Console.h"
#include "Files/Sound/VXOpenAL/ALu.h"
#include "Host/Host_Audio.h"

namespace {

struct ALCdevice_host final : ALCdevice_struct {
    int32_t index = -1;
    VxVector<int16_t> block;
    uint32_t given = 0;  // frames of the block that went out

    void open(const char* name) override;
    void close() override { g_HostAudio.Close(); }
    void reset() override;
    void start() override { g_HostAudio.Start(); }
    void stop() override { g_HostAudio.Close(); }
    bool pump() override { return g_HostAudio.stepped && g_HostAudio.Step(); }
    void Give(int16_t* samples, uint32_t frames);
};

void ALCdevice_host::open(const char* name)
{
    updates = 4;
    const int32_t count = g_HostAudio.DeviceCount ? g_HostAudio.DeviceCount() : 0;
    if (count == 0) {
        g_DebugConsole->Output(
            "No audio output devices found.  Will fallback to use dummy output.\n");
        error = AL_INVALID_VALUE;
        return;
    }
    const auto named = [](int32_t i) {
        return VxString(g_HostAudio.DeviceName(i)) + " via " + g_HostAudio.DriverName();
    };
    index = 0;
    for (int32_t i = 0; name && i < count; ++i)
        if (named(i) == name) index = i;
    if (name && named(index) != name)
        g_DebugConsole->Output("Unable to find output device \"%s\" defaulting to \"%s\"\n", name,
                               named(index).c_str());
}

void ALCdevice_host::reset()
{
    block.assign(size_t{updateSize} * static_cast<size_t>(channels), 0);
    given = updateSize;
    scratch.resize(block.size());
    const HostAudioRequest request = {
        static_cast<int32_t>(frequency), channels, static_cast<int32_t>(updateSize),
        [](void* device, int16_t* samples, int32_t frames) {
            static_cast<ALCdevice_host*>(device)->Give(samples, static_cast<uint32_t>(frames));
        },
        this};
    if (g_HostAudio.Open(index, request)) return;
    g_DebugConsole->Output("Unable to create output device \"%s\": %s\n",
                           g_HostAudio.DeviceName(index), g_HostAudio.LastError());
    error = AL_INVALID_VALUE;
}

void ALCdevice_host::Give(int16_t* samples, uint32_t frames)
{
    while (frames > 0) {
        if (given == updateSize) {
            ALu_Block(this, block.data(), updateSize);
            given = 0;
        }
        const uint32_t count = std::min(frames, updateSize - given);
        const size_t width = static_cast<size_t>(channels);
        std::memcpy(samples, block.data() + given * width, count * width * sizeof(int16_t));
        samples += count * width;
        given += count;
        frames -= count;
    }
}

}  // namespace

ALCdevice_struct* ALCdevice_MakeHost()
{
    return VxNew<ALCdevice_host>();
}
