// Wave files that lie in memory.

#include <AL/alut.h>

#include <cstring>

#include "Files/Base/Console.h"
#include "Files/Sound/Audio_Voices.h"

namespace {

constexpr uint32_t kFileHead = 12, kChunkHead = 8, kFormatSize = 16;

uint32_t Word(const uint8_t* at)
{
    return static_cast<uint32_t>(at[0] | at[1] << 8 | at[2] << 16) | static_cast<uint32_t>(at[3])
                                                                         << 24;
}

// Every chunk up to the samples lies inside the file, the format among them: the library
// reads on where one does not. Null, or what is wrong.
const char* WaveFault(const uint8_t* image, uint32_t size)
{
    if (size < kFileHead || std::memcmp(image, "RIFF", 4) != 0 ||
        std::memcmp(image + 8, "WAVE", 4) != 0)
        return "it is no RIFF wave file";
    bool hasFormat = false;
    for (uint32_t at = kFileHead; size - at >= kChunkHead;) {
        const uint8_t* tag = image + at;
        const uint32_t length = Word(tag + 4);
        at += kChunkHead;
        if (length > size - at) return "a chunk ends behind the file";
        if (std::memcmp(tag, "data", 4) == 0)
            return hasFormat ? nullptr : "its samples come before their format";
        const bool format = std::memcmp(tag, "fmt ", 4) == 0;
        if (format && length < kFormatSize) return "its format is cut off";
        hasFormat = hasFormat || format;
        at += length;
        if (length % 2 == 1 && at < size) ++at;
    }
    return "it has no samples";
}

}  // namespace

ALuint Wave_CreateBuffer(const AudioSound& sound)
{
    const char* fault = WaveFault(sound.data, sound.dataSize);
    ALuint buffer = AL_NONE;
    if (!fault) {
        // It asks for a context that is current, and there is one.
        alutInitWithoutContext(nullptr, nullptr);
        buffer = alutCreateBufferFromFileImage(sound.data, static_cast<ALsizei>(sound.dataSize));
        const ALenum error = alutGetError();
        alutExit();
        if (buffer == AL_NONE) fault = alutGetErrorString(error);
    }
    if (fault)
        g_DebugConsole->Output("The wave of sound %s can't be played: %s\n", sound.name, fault);
    return buffer;
}
