// Built-ins of sounds, as they answer while audio is inactive: commands do nothing and
// every question gives 0.

#include "Files/Function/Arguments.h"
#include "Files/Function/Function_Registry.h"
#include "Files/Sound/Audio_Main.h"

namespace {

BUILTIN(F_Silent) {}

BUILTIN(F_SilentAnswer)
{
    SetReal(result, 0);
}

BUILTIN(F_audio_get_name)
{
    const AudioSound* sound = Audio_Data(ArgInt(args, argc, 0));
    VXCreateString(&result, sound ? sound->name : "<undefined>");
}

constexpr BuiltinRow kRows[] = {
    {"audio_play_sound", F_SilentAnswer, 3}, {"audio_is_playing", F_SilentAnswer, 1},
    {"audio_is_paused", F_SilentAnswer, 1},  {"audio_sound_gain", F_Silent, 3},
    {"audio_pause_all", F_Silent, 0},        {"audio_resume_all", F_Silent, 0},
    {"audio_stop_all", F_Silent, 0},         {"audio_get_name", F_audio_get_name, 1},
};

}  // namespace

void Function_Sound_Register()
{
    Function_AddRows(kRows);
}
