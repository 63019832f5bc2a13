// Built-ins of sounds. Nothing can be played yet: no voice plays or is paused, and
// the commands to voices are still to come.

#include "Files/Function/Arguments.h"
#include "Files/Function/Function_Later.h"
#include "Files/Sound/Audio_Main.h"

namespace {

BUILTIN(F_audio_is_playing)
{
    SetReal(result, 0);
}
BUILTIN(F_audio_is_paused)
{
    SetReal(result, 0);
}

BUILTIN(F_audio_get_name)
{
    const AudioSound* sound = Audio_Data(ArgInt(args, argc, 0));
    VXCreateString(&result, sound ? sound->name : "<undefined>");
}

constexpr BuiltinRow kRows[] = {
    {"audio_play_sound", NotThereYet, 3},      {"audio_is_playing", F_audio_is_playing, 1},
    {"audio_is_paused", F_audio_is_paused, 1}, {"audio_sound_gain", NotThereYet, 3},
    {"audio_pause_all", NotThereYet, 0},       {"audio_resume_all", NotThereYet, 0},
    {"audio_stop_all", NotThereYet, 0},        {"audio_get_name", F_audio_get_name, 1},
};

}  // namespace

void Function_Sound_Register()
{
    Function_AddRows(kRows);
}
