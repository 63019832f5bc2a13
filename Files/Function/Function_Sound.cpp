// Built-ins of sounds. While audio is inactive commands do nothing and every question
// gives 0.

#include "Files/Base/Console.h"
#include "Files/Function/Arguments.h"
#include "Files/Function/Function_Registry.h"
#include "Files/Sound/Audio_Main.h"

namespace {

constexpr double kNewAudioSystem = 1;  // audio_new_system

bool Sound(double id)
{
    return Audio_Active() && Audio_SoundOf(static_cast<int32_t>(id)) != nullptr;
}

// ---- playing

BUILTIN(F_audio_play_sound)
{
    const int32_t sound = ArgInt(args, argc, 0);
    const double priority = ArgReal(args, argc, 1);
    const bool loop = ArgReal(args, argc, 2) > 0;
    SetReal(result, Audio_Active() ? Audio_PlaySound(sound, priority, loop) : 0);
}

BUILTIN(F_audio_stop_sound)
{
    Audio_StopSound(ArgInt(args, argc, 0));
}

BUILTIN(F_audio_stop_all)
{
    Audio_StopAll();
}

BUILTIN(F_audio_pause_sound)
{
    Audio_PauseSound(ArgInt(args, argc, 0));
}

BUILTIN(F_audio_pause_all)
{
    Audio_PauseAll();
}

BUILTIN(F_audio_resume_sound)
{
    Audio_ResumeSound(ArgInt(args, argc, 0));
}

BUILTIN(F_audio_resume_all)
{
    Audio_ResumeAll();
}

BUILTIN(F_audio_is_playing)
{
    SetReal(result, Audio_IsPlaying(ArgInt(args, argc, 0)));
}

BUILTIN(F_audio_is_paused)
{
    SetReal(result, Audio_IsPaused(ArgInt(args, argc, 0)));
}

// ---- what a sound is

BUILTIN(F_audio_exists)
{
    SetReal(result, Sound(ArgReal(args, argc, 0)));
}

BUILTIN(F_audio_get_name)
{
    const int32_t id = ArgInt(args, argc, 0);
    VXCreateString(&result, Sound(id) ? Audio_SoundOf(id)->name : "<undefined>");
}

// 1 for a file that is streamed, 0 for all else, -1 for no sound.
BUILTIN(F_audio_get_type)
{
    const int32_t id = ArgInt(args, argc, 0);
    if (!Audio_Active()) return SetReal(result, 0);
    SetReal(result, Sound(id) ? Audio_SoundOf(id)->streamed : -1);
}

BUILTIN(F_audio_sound_length)
{
    SetReal(result, Audio_Length(ArgInt(args, argc, 0)));
}

// ---- how it sounds

BUILTIN(F_audio_sound_gain)
{
    Audio_SetGain(ArgInt(args, argc, 0), ArgReal(args, argc, 1), ArgInt(args, argc, 2));
}

BUILTIN(F_audio_sound_get_gain)
{
    SetReal(result, Audio_GetGain(ArgInt(args, argc, 0)));
}

BUILTIN(F_audio_sound_pitch)
{
    Audio_SetPitch(ArgInt(args, argc, 0), ArgReal(args, argc, 1));
}

BUILTIN(F_audio_sound_get_pitch)
{
    SetReal(result, Audio_GetPitch(ArgInt(args, argc, 0)));
}

BUILTIN(F_audio_sound_get_track_position)
{
    SetReal(result, Audio_TrackPosition(ArgInt(args, argc, 0)));
}

BUILTIN(F_audio_sound_set_track_position)
{
    Audio_SetTrackPosition(ArgInt(args, argc, 0), ArgReal(args, argc, 1));
}

// audio_master_gain(gain) has the same effect as audio_set_master_gain(listener, gain):
// there is one listener.
BUILTIN(F_audio_master_gain)
{
    Audio_SetMasterGain(ArgReal(args, argc, 0));
}

BUILTIN(F_audio_set_master_gain)
{
    Audio_SetMasterGain(ArgReal(args, argc, 1));
}

BUILTIN(F_audio_get_master_gain)
{
    SetReal(result, Audio_MasterGain());
}

BUILTIN(F_audio_channel_num)
{
    Audio_SetChannels(ArgInt(args, argc, 0));
}

BUILTIN(F_audio_system)
{
    SetReal(result, Audio_Active() ? kNewAudioSystem : 0);
}

// ---- groups. An archive of one group holds all of its sounds from the start.

BUILTIN(F_audio_group_is_loaded)
{
    SetReal(result, Audio_Active() && ArgInt(args, argc, 0) == 0);
}

BUILTIN(F_audio_group_load_progress)
{
    SetReal(result, Audio_Active() && ArgInt(args, argc, 0) == 0 ? 100 : 0);
}

// Neither can be: the one group is there and stays.
BUILTIN(F_audio_group_load)
{
    SetReal(result, 0);
}

BUILTIN(F_audio_group_name)
{
    VXCreateString(&result, "<undefined>");
}

BUILTIN(F_audio_group_stop_all)
{
    if (ArgInt(args, argc, 0) == 0) Audio_StopAll();
}

BUILTIN(F_audio_group_set_gain)
{
    if (ArgInt(args, argc, 0) != 0) return;
    for (int32_t i = 0; i < Audio_Count(); ++i)
        Audio_SetGain(i, ArgReal(args, argc, 1), ArgInt(args, argc, 2));
}

constexpr BuiltinRow kRows[] = {
    {"audio_play_sound", F_audio_play_sound, 3},
    {"audio_stop_sound", F_audio_stop_sound, 1},
    {"audio_stop_all", F_audio_stop_all, 0},
    {"audio_pause_sound", F_audio_pause_sound, 1},
    {"audio_pause_all", F_audio_pause_all, 0},
    {"audio_resume_sound", F_audio_resume_sound, 1},
    {"audio_resume_all", F_audio_resume_all, 0},
    {"audio_is_playing", F_audio_is_playing, 1},
    {"audio_is_paused", F_audio_is_paused, 1},
    {"audio_exists", F_audio_exists, 1},
    {"audio_get_name", F_audio_get_name, 1},
    {"audio_get_type", F_audio_get_type, 1},
    {"audio_sound_length", F_audio_sound_length, 1},
    {"audio_sound_gain", F_audio_sound_gain, 3},
    {"audio_sound_get_gain", F_audio_sound_get_gain, 1},
    {"audio_sound_pitch", F_audio_sound_pitch, 2},
    {"audio_sound_get_pitch", F_audio_sound_get_pitch, 1},
    {"audio_sound_get_track_position", F_audio_sound_get_track_position, 1},
    {"audio_sound_set_track_position", F_audio_sound_set_track_position, 2},
    {"audio_master_gain", F_audio_master_gain, 1},
    {"audio_set_master_gain", F_audio_set_master_gain, 2},
    {"audio_get_master_gain", F_audio_get_master_gain, 1},
    {"audio_channel_num", F_audio_channel_num, 1},
    {"audio_system", F_audio_system, 0},
    {"audio_group_load", F_audio_group_load, 1},
    {"audio_group_unload", F_audio_group_load, 1},
    {"audio_group_is_loaded", F_audio_group_is_loaded, 1},
    {"audio_group_load_progress", F_audio_group_load_progress, 1},
    {"audio_group_name", F_audio_group_name, 1},
    {"audio_group_stop_all", F_audio_group_stop_all, 1},
    {"audio_group_set_gain", F_audio_group_set_gain, 3},
};

}  // namespace

void Function_Sound_Register()
{
    Function_AddRows(kRows);
}
