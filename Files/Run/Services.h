#pragma once
// The places in the frame at which the services beside the world run: network,
// Steam, asynchronous results, particles, sound.

#include <cstdint>

// A service that is built hooks itself in at its place; a place without a hook has
// nothing pending. Hooks run in the order of hooking.
enum class ServicePlace : int32_t {
    Network,
    Steam,
    Async,
    Particles,
    Audio,
    StopSounds,
    Gamepads,
    LoadGame,
    ApplySavedState,
    ClearRoom,
    ClearEffects,
    Count
};
using ServiceHook = void (*)();
inline constexpr int kHooksPerPlace = 4;
bool Service_Hook(ServicePlace place, ServiceHook hook);  // false when the place is full
void Service_Unhook(ServicePlace place, ServiceHook hook);

void Services_UpdateNetwork();
void Steam_Tick();
void AsyncPump();
void Services_UpdateParticles();
void Services_UpdateAudio();   // per frame, unless -noaudio
void Services_StopSounds();    // the game's end
void Services_PostGamepads();  // a restart tells the game of each pad that is connected
void Services_RequestLoad(const char* file);  // game_load: kept until the frame's end
const char* Services_LoadFile();              // "" when no load is asked for
void Services_LoadSavedGame();                // the request of game_load
void Services_ApplySavedState();              // a loaded state that waits for the next step
void Services_ClearRoom();     // a room's end: its particle systems and virtual keys go
void Services_ClearEffects();  // a room's start: the two effect systems are emptied
