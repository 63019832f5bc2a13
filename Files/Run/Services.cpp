#include "Files/Run/Services.h"

#include <algorithm>
#include <cstdio>

namespace {

struct Hooks {
    int32_t count = 0;
    ServiceHook hooks[kHooksPerPlace] = {};
};
Hooks s_Places[static_cast<size_t>(ServicePlace::Count)];
char s_LoadFile[1024];

Hooks& At(ServicePlace place)
{
    return s_Places[static_cast<size_t>(place)];
}

void Serve(ServicePlace place)
{
    const Hooks hooks = At(place);
    for (int32_t i = 0; i < hooks.count; ++i) hooks.hooks[i]();
}

}  // namespace

bool Service_Hook(ServicePlace place, ServiceHook hook)
{
    Hooks& hooks = At(place);
    if (hooks.count == kHooksPerPlace) return false;
    hooks.hooks[hooks.count++] = hook;
    return true;
}

void Service_Unhook(ServicePlace place, ServiceHook hook)
{
    Hooks& hooks = At(place);
    ServiceHook* end = hooks.hooks + hooks.count;
    hooks.count = static_cast<int32_t>(std::remove(hooks.hooks, end, hook) - hooks.hooks);
}

void Services_RequestLoad(const char* file)
{
    std::snprintf(s_LoadFile, sizeof s_LoadFile, "%s", file);
}
const char* Services_LoadFile()
{
    return s_LoadFile;
}

void Services_UpdateNetwork()
{
    Serve(ServicePlace::Network);
}
void Steam_Tick()
{
    Serve(ServicePlace::Steam);
}
void AsyncPump()
{
    Serve(ServicePlace::Async);
}
void Services_UpdateParticles()
{
    Serve(ServicePlace::Particles);
}
void Services_UpdateAudio()
{
    Serve(ServicePlace::Audio);
}
void Services_StopSounds()
{
    Serve(ServicePlace::StopSounds);
}
void Services_PostGamepads()
{
    Serve(ServicePlace::Gamepads);
}
void Services_LoadSavedGame()
{
    Serve(ServicePlace::LoadGame);
    s_LoadFile[0] = 0;
}
void Services_ApplySavedState()
{
    Serve(ServicePlace::ApplySavedState);
}
void Services_ClearRoom()
{
    Serve(ServicePlace::ClearRoom);
}
void Services_ClearEffects()
{
    Serve(ServicePlace::ClearEffects);
}
