#pragma once
// The places in the frame at which the services beside the world run: network,
// Steam, asynchronous results, particles, sound.

#include <cstdint>

void Services_UpdateNetwork();
void Steam_Tick();
void AsyncPump();
void Services_UpdateParticles();
void Services_UpdateAudio();     // per frame, unless -noaudio
void Services_StopSounds();      // the game's end
void Services_PostGamepads();    // a restart tells the game of each pad that is connected
void Services_LoadSavedGame();   // the request of game_load
void Services_ClearRoom();       // a room's end: its particle systems and virtual keys go
void Services_ClearEffects();    // a room's start: the two effect systems are emptied
