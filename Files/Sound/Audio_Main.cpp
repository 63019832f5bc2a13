#include "Files/Sound/Audio_Main.h"

#include <cstring>

#include "Files/Base/Archive_List.h"
#include "Platform/MemoryManager.h"

namespace {

// Classes of sound records; lower values are truth values.
enum SoundClass : uint32_t {
    SOUND_STREAMED = 100,    // a file beside the program
    SOUND_RESIDENT = 101,    // a wave in the archive
    SOUND_COMPRESSED = 102,  // compressed in the archive, decoded while it plays
    SOUND_DECODED_ON_LOAD = 103,
};

struct Sound {
    AudioSound data;
    int32_t audioIndex;
};

VxVector<Sound*> g_sounds;  // null for an empty slot
const uint8_t* g_waves;     // body of the list of waves
const uint8_t* g_base;

void SetMarks(uint32_t flags, AudioSound* sound)
{
    const bool older = flags < SOUND_STREAMED && flags != 0;
    sound->mark1 = older || flags == SOUND_STREAMED;
    sound->mark2 = older || flags == SOUND_STREAMED || flags == SOUND_COMPRESSED;
    sound->mark3 = flags == SOUND_DECODED_ON_LOAD;
}

// The wave with the record's index, or none.
void BindWave(Sound* sound)
{
    const ArchiveList list(g_waves, g_base);
    if (sound->audioIndex < 0 || static_cast<uint32_t>(sound->audioIndex) >= list.Count()) return;
    const uint8_t* wave = list.At(static_cast<uint32_t>(sound->audioIndex));
    if (!wave) return;
    sound->data.waveSize = ArchiveCopy<uint32_t>(wave);
    sound->data.wave = wave + sizeof(uint32_t);
}

}  // namespace

void Audio_Init()
{
    Audio_Quit();
}

void Audio_Quit()
{
    for (Sound* sound : g_sounds) VxDelete(sound);
    VxVector<Sound*>().swap(g_sounds);
    g_waves = g_base = nullptr;
}

bool Audio_Load(const uint8_t* chunk, uint32_t, const uint8_t* archiveBase)
{
    const ArchiveList list(chunk, archiveBase);
    for (uint32_t i = 0; i < list.Count(); ++i) {
        const uint8_t* at = list.At(i);
        g_sounds.push_back(at ? VxNew<Sound>() : nullptr);
        if (!at) continue;
        const auto record = ArchiveCopy<ArchiveSound>(at);
        Sound& sound = *g_sounds.back();
        sound.audioIndex = record.audioIndex;
        sound.data.name = ArchiveText(archiveBase, record.name);
        sound.data.fileName = ArchiveText(archiveBase, record.fileName);
        sound.data.volume = record.volume;
        sound.data.groupId = static_cast<int32_t>(record.groupId);
        SetMarks(record.flags, &sound.data);
    }
    return true;
}

bool Audio_LoadWaves(const uint8_t* chunk, uint32_t, const uint8_t* archiveBase)
{
    g_waves = chunk;
    g_base = archiveBase;
    return true;
}

bool Sound_Prepare()
{
    for (Sound* sound : g_sounds)
        if (sound && g_waves) BindWave(sound);
    return true;
}

int32_t Audio_Count()
{
    return static_cast<int32_t>(g_sounds.size());
}

const AudioSound* Audio_Data(int32_t index)
{
    if (index < 0 || index >= Audio_Count()) return nullptr;
    const Sound* sound = g_sounds[static_cast<size_t>(index)];
    return sound ? &sound->data : nullptr;
}

int32_t Audio_Find(const char* name)
{
    for (int32_t i = 0; i < Audio_Count(); ++i)
        if (const AudioSound* sound = Audio_Data(i))
            if (std::strcmp(sound->name, name) == 0) return i;
    return -1;
}
