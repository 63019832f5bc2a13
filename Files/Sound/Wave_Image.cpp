// Wave files that lie in memory.

#include <AL/alut.h>

#include "Files/Base/Console.h"
#include "Files/Sound/Audio_Voices.h"

ALuint Wave_CreateBuffer(const AudioSound& sound)
{
    // It asks for a context that is current, and there is one.
    alutInitWithoutContext(nullptr, nullptr);
    const ALuint buffer =
        alutCreateBufferFromFileImage(sound.data, static_cast<ALsizei>(sound.dataSize));
    const ALenum error = alutGetError();
    alutExit();
    if (buffer == AL_NONE)
        g_DebugConsole->Output("The wave of sound %s can't be played: %s\n", sound.name,
                               alutGetErrorString(error));
    return buffer;
}
