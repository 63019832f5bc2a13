// Sound without an output device: nothing plays, so nothing is playing, and a
// command to a voice finds none.

#include "Files/Base/Console.h"
#include "Files/Function/Arguments.h"
#include "Files/Function/Function_Registry.h"
#include "Files/Sound/Audio_Main.h"

namespace {

constexpr double kNoVoice = -1;

BUILTIN(F_audio_play_sound)
{
    const int32_t sound = ArgInt(args, argc, 0);
    if (!Audio_Data(sound)) {
        g_DebugConsole->Output("Error: no sound exists for soundid %d\n", sound);
        SetReal(result, 0);
        return;
    }
    SetReal(result, kNoVoice);
}

BUILTIN(F_audio_is_playing)
{
    SetReal(result, 0);
}
BUILTIN(F_audio_is_paused)
{
    SetReal(result, 0);
}

// For the commands that act on playing voices: there is none.
BUILTIN(F_audio_no_voices) {}

BUILTIN(F_audio_get_name)
{
    const AudioSound* sound = Audio_Data(ArgInt(args, argc, 0));
    VXCreateString(&result, sound ? sound->name : "<undefined>");
}

constexpr BuiltinRow kRows[] = {
    {"audio_play_sound", F_audio_play_sound, 3}, {"audio_is_playing", F_audio_is_playing, 1},
    {"audio_is_paused", F_audio_is_paused, 1},   {"audio_sound_gain", F_audio_no_voices, 3},
    {"audio_pause_all", F_audio_no_voices, 0},   {"audio_resume_all", F_audio_no_voices, 0},
    {"audio_stop_all", F_audio_no_voices, 0},    {"audio_get_name", F_audio_get_name, 1},
};

}  // namespace

void Function_Sound_Register()
{
    Function_AddRows(kRows);
}
