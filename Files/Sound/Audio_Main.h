#pragma once
// Sounds and their voices. A sound is an asset of the archive; a voice is one playing of
// it, on a source of the mixer. Scripts know both by number: below 400000 it names a sound
// and means all its voices, from there on one voice.

#include <cstdint>

#include "Platform/MemoryManager.h"

struct AudioSound {
    const char* name = "";
    VxString file;
    float gain = 1, pitch = 1;
    const uint8_t* data = nullptr;  // bytes in the archive, null for a file beside the program
    uint32_t dataSize = 0;
    int32_t audio_id = -1;  // of the archive's waves
    int32_t buffer = -1;    // of the mixer, for what is held whole
    float gain_delta = 0;   // a tick, while a fade runs
    int32_t gain_steps = 0;
    bool streamed = false;        // played from a file
    bool compressed = false;      // decoded while it plays
    bool decode_on_load = false;  // decoded whole at the start
    const uint8_t* ogg_data = nullptr;
    uint32_t ogg_size = 0;
    VxString path;      // of a streamed file, once it was found
    float length = -1;  // seconds; negative until it is known
    int32_t sample_rate = 0, channels = 1;
    int64_t total_samples = 0;
    float track_pos = 0;  // seconds at which new voices begin
    int32_t group = 0;

    bool IsStream() const { return streamed || compressed; }
};

// ---- the archive's records
void Audio_InitLists();
void Audio_Quit();  // the lists
bool Audio_Load(const uint8_t* chunk, uint32_t size, const uint8_t* archiveBase);
bool Audio_WAVs(const uint8_t* chunk, uint32_t size, const uint8_t* archiveBase);
bool Sound_Prepare();  // links the waves; unless audio is to be silent, starts it
int32_t Audio_Count();
AudioSound* Audio_Data(int32_t index);  // null when there is none
int32_t Audio_Find(const char* name);

// ---- life
inline constexpr int32_t kAudioSources = 128;
void Audio_Init(int32_t sources);
// Decodes or uploads what is held whole. What can't be read is told on the debug console
// and stays silent.
void Audio_Prepare();
void Audio_QuitHardware();  // no voice, no thread and no device is left
bool Audio_Active();        // false: all below does nothing and answers 0

// ---- once a frame
void Audio_Tick();

// ---- what scripts ask for; `id` is a sound or a voice
int32_t Audio_PlaySound(int32_t sound, double priority, bool loop);  // the voice, or -1
void Audio_StopSound(int32_t id);
void Audio_StopAll();
void Audio_PauseSound(int32_t id);
void Audio_PauseAll();
void Audio_ResumeSound(int32_t id);
void Audio_ResumeAll();
bool Audio_IsPlaying(int32_t id);
bool Audio_IsPaused(int32_t id);
// The sound that the number names, itself or by a voice; null when there is none.
AudioSound* Audio_SoundOf(int32_t id);
void Audio_SetGain(int32_t id, double gain, int32_t milliseconds);
double Audio_GetGain(int32_t id);
void Audio_SetPitch(int32_t id, double pitch);
double Audio_GetPitch(int32_t id);
double Audio_Length(int32_t id);         // seconds
double Audio_TrackPosition(int32_t id);  // seconds
void Audio_SetTrackPosition(int32_t id, double seconds);
void Audio_SetMasterGain(double gain);
double Audio_MasterGain();
void Audio_SetChannels(int32_t count);  // ends all voices
