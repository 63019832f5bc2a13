// The sounds of the archive: their records, and the samples of those that are held whole.

#include "Files/Sound/Audio_Main.h"

#include <cstring>

#include "Files/Base/Archive_List.h"
#include "Files/Base/Archive_Main.h"
#include "Files/Base/Console.h"
#include "Files/Run/Run_State.h"
#include "Files/Run/Services.h"
#include "Files/Sound/Audio_Voices.h"
#include "Files/Sound/Ogg_Decoder.h"

namespace {

// Classes of sound records; lower values are truth values.
enum SoundClass : uint32_t {
    SOUND_STREAMED = 100,    // a file beside the program
    SOUND_RESIDENT = 101,    // a wave in the archive
    SOUND_COMPRESSED = 102,  // compressed in the archive, decoded while it plays
    SOUND_DECODED_ON_LOAD = 103,
};

VxVector<AudioSound*> g_sounds;  // null for an empty slot
const uint8_t* g_waves;          // body of the list of waves
const uint8_t* g_base;

void SetMarks(uint32_t flags, AudioSound* sound)
{
    const bool older = flags < SOUND_STREAMED && flags != 0;
    sound->streamed = older || flags == SOUND_STREAMED;
    sound->compressed = sound->streamed || flags == SOUND_COMPRESSED;
    sound->decode_on_load = flags == SOUND_DECODED_ON_LOAD;
}

// The wave with the record's index, or none.
void LinkWave(AudioSound* sound)
{
    const ArchiveList list(g_waves, g_base);
    if (sound->audio_id < 0 || static_cast<uint32_t>(sound->audio_id) >= list.Count()) return;
    const uint8_t* wave = list.At(static_cast<uint32_t>(sound->audio_id));
    if (!wave) return;
    sound->dataSize = ArchiveCopy<uint32_t>(wave);
    sound->data = wave + sizeof(uint32_t);
}

// All samples of a compressed sound, in one buffer of the mixer.
void DecodeWhole(AudioSound* sound)
{
    g_DebugConsole->Output("Decoding ogg %s ...\n", sound->name);
    OggDecoder decoder;
    if (const int error = decoder.OpenMemory(sound->ogg_data, sound->ogg_size)) {
        g_DebugConsole->Output("Error %d opening ogg stream for %s\n", error, sound->name);
        return;
    }
    const int64_t bytes = decoder.TotalFrames() * (decoder.Channels() == 1 ? 2 : 4);
    constexpr int64_t kMostBytes = int64_t{256} << 20;
    if (bytes < 0 || bytes > kMostBytes || decoder.Channels() > 2) {
        g_DebugConsole->Output("ERROR: failed to allocate buffer of %d bytes for sound %s\n",
                               static_cast<int>(bytes), sound->name);
        return;
    }
    VxVector<uint8_t> samples(static_cast<size_t>(bytes));
    size_t filled = 0;
    while (filled < samples.size()) {
        const int32_t got =
            decoder.Read(samples.data() + filled, static_cast<int32_t>(samples.size() - filled));
        if (got < 0) g_DebugConsole->Output("ov_read error: %d\n", got);
        if (got <= 0) break;
        filled += static_cast<size_t>(got);
    }
    if (filled != samples.size())
        g_DebugConsole->Output("Ogg unexpected decompressed size: %d (expected: %d)\n",
                               static_cast<int>(filled), static_cast<int>(bytes));
    ALuint buffer = 0;
    alGenBuffers(1, &buffer);
    alBufferData(buffer, decoder.Channels() == 1 ? AL_FORMAT_MONO16 : AL_FORMAT_STEREO16,
                 samples.data(), static_cast<ALsizei>(filled), decoder.Rate());
    sound->buffer = static_cast<int32_t>(buffer);
}

void Prepare(AudioSound* sound)
{
    sound->group = 0;  // the archive defines no groups
    if (sound->streamed) {
        sound->path.clear();
        return;
    }
    if (!sound->data) return;
    if (sound->decode_on_load || sound->compressed) {
        sound->ogg_data = sound->data;
        sound->ogg_size = sound->dataSize;
        if (sound->decode_on_load) DecodeWhole(sound);
        return;
    }
    const ALuint buffer = Wave_CreateBuffer(*sound);
    if (buffer != 0) sound->buffer = static_cast<int32_t>(buffer);
}

}  // namespace

void Audio_InitLists()
{
    Audio_Quit();
}

void Audio_Quit()
{
    for (AudioSound* sound : g_sounds) VxDelete(sound);
    VxVector<AudioSound*>().swap(g_sounds);
    g_waves = g_base = nullptr;
}

bool Audio_Load(const uint8_t* chunk, uint32_t, const uint8_t* archiveBase)
{
    const ArchiveList list(chunk, archiveBase);
    for (uint32_t i = 0; i < list.Count(); ++i) {
        const uint8_t* at = list.At(i);
        g_sounds.push_back(at ? VxNew<AudioSound>() : nullptr);
        if (!at) continue;
        const auto record = ArchiveCopy<ArchiveSound>(at);
        AudioSound& sound = *g_sounds.back();
        sound.audio_id = record.audioIndex;
        sound.name = ArchiveText(archiveBase, record.name);
        sound.file = ArchiveText(archiveBase, record.fileName);
        sound.gain = record.volume;
        sound.group = static_cast<int32_t>(record.groupId);
        SetMarks(record.flags, &sound);
    }
    return true;
}

bool Audio_WAVs(const uint8_t* chunk, uint32_t, const uint8_t* archiveBase)
{
    g_waves = chunk;
    g_base = archiveBase;
    return true;
}

bool Sound_Prepare()
{
    for (AudioSound* sound : g_sounds)
        if (sound && g_waves) LinkWave(sound);
    if (g_Switches.noAudio || (g_GameOptions.bits & OPTION_NEW_AUDIO) == 0) return true;
    Audio_Init(kAudioSources);
    Audio_Prepare();
    return true;
}

void Audio_Prepare()
{
    if (!Audio_Active()) return;
    for (AudioSound* sound : g_sounds)
        if (sound) Prepare(sound);
}

int32_t Audio_Count()
{
    return static_cast<int32_t>(g_sounds.size());
}

AudioSound* Audio_Data(int32_t index)
{
    return index >= 0 && index < Audio_Count() ? g_sounds[static_cast<size_t>(index)] : nullptr;
}

int32_t Audio_Find(const char* name)
{
    for (int32_t i = 0; i < Audio_Count(); ++i)
        if (const AudioSound* sound = Audio_Data(i))
            if (std::strcmp(sound->name, name) == 0) return i;
    return -1;
}
