// Feeds any bytes to the readers of sounds: what begins as an Ogg file is decoded, sought
// and looped, all else is taken for a wave file and played.
//
//   fuzz_sound --write-seeds=DIR    writes small waves into DIR, which exists; Ogg files,
//                                   as vexo-music --tone makes them, are put beside them
//   fuzz_sound -max_len=20000 -max_total_time=600 DIR

#include <cstdio>
#include <cstring>
#include <fstream>
#include <string>
#include <vector>

#include "Files/Base/Console.h"
#include "Files/Sound/Audio_Voices.h"
#include "Files/Sound/Ogg_Decoder.h"
#include "Files/Sound/VXOpenAL/ALu.h"
#include "Host/Host_Stage.h"
#include "tests/fuzz/support_Seeds.h"

namespace {

constexpr int kMostReads = 200;
constexpr uint32_t kBlockFrames = 1600;

ALCdevice* g_device;

bool Start()
{
    Host_UseStage();
    Stage_Reset();
    Console_Init();
    Console_SetSink([](void*, const char*) {}, nullptr);
    g_device = alcOpenDevice(nullptr);
    alcMakeContextCurrent(alcCreateContext(g_device, nullptr));
    return true;
}

void Require(bool holds, const char* what)
{
    if (holds) return;
    std::fprintf(stderr, "%s\n", what);
    std::abort();
}

void ReadOgg(const uint8_t* data, uint32_t size)
{
    OggDecoder decoder;
    if (decoder.OpenMemory(data, size) != 0) return;
    Require(decoder.Channels() > 0, "a stream without channels");
    decoder.TotalFrames();
    std::vector<uint8_t> piece(16384);
    for (int i = 0; i < kMostReads; ++i) {
        const int32_t got = decoder.Read(piece.data(), static_cast<int32_t>(piece.size()));
        Require(got <= static_cast<int32_t>(piece.size()), "more than was asked for");
        if (got > 0) continue;
        if (decoder.Rewind() != 0) break;
        decoder.SeekTime(i * 10);
    }
}

void PlayWave(const uint8_t* data, uint32_t size)
{
    AudioSound sound;
    sound.data = data;
    sound.dataSize = size;
    ALuint buffer = Wave_CreateBuffer(sound);
    if (buffer == 0) return;
    ALuint source = 0;
    alGenSources(1, &source);
    alSourcei(source, AL_BUFFER, static_cast<ALint>(buffer));
    alSourcei(source, AL_LOOPING, data[size - 1] & 1);
    alSourcePlay(source);
    int16_t block[kBlockFrames * 2];
    for (int i = 0; i < 3; ++i) ALu_Block(g_device, block, kBlockFrames);
    alDeleteSources(1, &source);
    alDeleteBuffers(1, &buffer);
    Require(alIsBuffer(buffer) == AL_FALSE, "the buffer stays");
}

void WriteSeed(const std::string& path, uint16_t channels, uint16_t bits)
{
    std::string bytes = "RIFF____WAVEfmt ";
    const auto put = [&](uint32_t value, int count) {
        for (int i = 0; i < count; ++i) bytes += static_cast<char>(value >> (8 * i));
    };
    put(16, 4);
    put(1, 2);  // PCM
    put(channels, 2);
    put(24000, 4);
    put(24000U * channels * bits / 8, 4);
    put(channels * bits / 8U, 2);
    put(bits, 2);
    bytes += "data";
    put(64, 4);
    for (int i = 0; i < 64; ++i) bytes += static_cast<char>(i * 4);
    std::ofstream(path, std::ios::binary) << bytes;
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int* count, char*** arguments)
{
    WriteSeedsIfAsked(*count, *arguments, [](const std::string& folder) {
        for (const uint16_t channels : {uint16_t{1}, uint16_t{2}})
            for (const uint16_t bits : {uint16_t{8}, uint16_t{16}})
                WriteSeed(folder + "/wave" + std::to_string(channels) + std::to_string(bits),
                          channels, bits);
    });
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    static const bool started = Start();
    if (!started || size == 0) return 0;
    const std::vector<uint8_t> copy(data, data + size);
    const bool ogg = size > 4 && std::memcmp(data, "OggS", 4) == 0;
    (ogg ? ReadOgg : PlayWave)(copy.data(), static_cast<uint32_t>(size));
    return 0;
}
