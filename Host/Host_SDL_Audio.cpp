// Sound output of the desktop backend.

#include "Host/Host_SDL.h"

namespace sdl {

namespace {

struct Output {
    SDL_AudioDeviceID device = 0;
    HostAudioRequest request{};
};
Output g_output;

bool StartAudio()
{
    return SDL_WasInit(SDL_INIT_AUDIO) || SDL_InitSubSystem(SDL_INIT_AUDIO) == 0;
}

// The system's default first, under the one name that does not change when the user
// plugs in headphones; then all that have names.
int32_t DeviceCount()
{
    if (!StartAudio()) return 0;
    const int count = SDL_GetNumAudioDevices(0);
    return count == 0 ? 0 : 1 + (count > 0 ? count : 0);
}

const char* DeviceName(int32_t index)
{
    if (index == 0) return "Default output";
    const char* name = SDL_GetAudioDeviceName(index - 1, 0);
    return name ? name : "";
}

void Fill(void*, Uint8* samples, int bytes)
{
    const auto frame = static_cast<int>(sizeof(int16_t)) * g_output.request.channels;
    g_output.request.Pull(g_output.request.context, reinterpret_cast<int16_t*>(samples),
                          bytes / frame);
}

void CloseAudio()
{
    if (g_output.device) SDL_CloseAudioDevice(g_output.device);
    g_output = Output{};
    if (SDL_WasInit(SDL_INIT_AUDIO)) SDL_QuitSubSystem(SDL_INIT_AUDIO);
}

bool OpenAudio(int32_t index, const HostAudioRequest& request)
{
    CloseAudio();
    if (!StartAudio()) return false;
    SDL_AudioSpec wanted{};
    wanted.freq = request.rate;
    wanted.format = AUDIO_S16SYS;
    wanted.channels = static_cast<Uint8>(request.channels);
    wanted.samples = static_cast<Uint16>(request.frames);
    wanted.callback = Fill;
    g_output.request = request;
    const char* name = index > 0 ? DeviceName(index) : nullptr;
    g_output.device = SDL_OpenAudioDevice(name, 0, &wanted, nullptr, 0);
    return g_output.device != 0;
}

}  // namespace

const HostAudioTable kAudioTable = {
    .stepped = false,
    .DeviceCount = DeviceCount,
    .DeviceName = DeviceName,
    .DriverName =
        [] {
            const char* name = SDL_GetCurrentAudioDriver();
            return name ? name : "";
        },
    .Open = OpenAudio,
    .Start = [] { SDL_PauseAudioDevice(g_output.device, 0); },
    .Close = CloseAudio,
    .LastError = [] { return SDL_GetError(); },
    .Step = [] { return false; },
};

}  // namespace sdl
