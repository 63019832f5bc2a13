#pragma once
// What a test says to the sound output of the stage backend, and hears from it.

#include "Host/Host_Audio.h"
#include "Platform/MemoryManager.h"

extern const HostAudioTable kStageAudio;

void Stage_ResetAudio();                 // closed, plugged in, nothing kept
void Stage_PlugAudio(bool plugged);      // false: no device is found any more
void Stage_KeepSound(bool keep);         // from now on; forgets what was kept
const VxVector<int16_t>& Stage_Sound();  // left and right in turn, in the order of playing
bool Stage_AudioOpen();
