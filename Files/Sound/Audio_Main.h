#pragma once
// Sound records of the archive.

#include <cstdint>

struct AudioSound {
    const char* name;
    const char* fileName;
    bool mark1, mark2, mark3;  // from the class of the record
    float volume;
    int32_t groupId;
    const uint8_t* wave;  // RIFF image in the archive, null for a file beside the program
    uint32_t waveSize;
};

void Audio_Init();
void Audio_Quit();
bool Audio_Load(const uint8_t* chunk, uint32_t size, const uint8_t* archiveBase);
bool Audio_LoadWaves(const uint8_t* chunk, uint32_t size, const uint8_t* archiveBase);
bool Sound_Prepare();
int32_t Audio_Count();
const AudioSound* Audio_Data(int32_t index);  // null when there is none
int32_t Audio_Find(const char* name);
