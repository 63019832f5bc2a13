#pragma once
// The pool of voices, as the units of audio share it.

#include <AL/al.h>

#include "Files/Sound/Audio_Main.h"

struct AudioVoice {
    bool loop = false;
    bool active = false;     // in use
    int32_t stop_count = 0;  // ticks since a soft stop, from 1
    bool streamed = false;   // its samples come from a stream
    bool stopping = false;   // a stream was told to end, and has not yet
    int32_t source = 0;      // index, that of the voice in the pool
    int32_t id = 0, sound = 0;
    float priority = 0, pitch = 1, gain = 1;
    float gain_delta = 0;
    int32_t gain_steps = 0;
    int32_t listener_mask = 1;
};

extern VxVector<AudioVoice*> g_Voices;
extern VxVector<ALuint> g_Sources;  // names in the mixer
extern int32_t g_ListenerMask;

ALint Audio_SourceState(const AudioVoice& voice);
void Audio_ReleaseVoice(AudioVoice* voice);
// The gains of voice and sound together, to the source.
void Audio_WriteGain(const AudioVoice& voice);
void Audio_HardStop(AudioVoice* voice);
// Tells of an error of the mixer, by `format` with its number; false when there was one.
bool Audio_Check(const char* format);

// A wave file in memory as a buffer of the mixer; 0 with a line that tells why.
ALuint Wave_CreateBuffer(const AudioSound& sound);
