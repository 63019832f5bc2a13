// What scripts ask of sounds and voices: stop and pause, gain and pitch, positions.

#include <algorithm>
#include <cmath>

#include "Files/Base/Console.h"
#include "Files/Room/CRoom.h"
#include "Files/Room/Room_Main.h"
#include "Files/Sound/Audio_Voices.h"
#include "Files/Sound/Ogg_Stream.h"
#include "Files/Sound/VXOpenAL/ALu.h"

namespace {

constexpr int32_t kFirstVoice = 400000;  // ids from here on name voices
constexpr float kStoppedPriority = -1e9F;
constexpr double kLeastPitch = 0.0039, kMostPitch = 256;
constexpr int32_t kSpeedWithoutRoom = 30;

bool NamesVoice(int32_t id)
{
    return id >= kFirstVoice;
}

ALuint SourceOf(const AudioVoice& voice)
{
    return g_Sources[static_cast<size_t>(voice.source)];
}

// The voice with the number, unless it was told to stop.
AudioVoice* FindVoice(int32_t id)
{
    for (AudioVoice* voice : g_Voices)
        if (voice->active && voice->id == id)
            return voice->stop_count == 0 && !voice->stopping ? voice : nullptr;
    return nullptr;
}

// Calls `visit` for the voice, or for every active voice of the sound.
template <class Visit>
void EachVoice(int32_t id, Visit visit)
{
    if (!Audio_Active()) return;
    if (NamesVoice(id)) {
        if (AudioVoice* voice = FindVoice(id)) visit(voice);
        return;
    }
    for (AudioVoice* voice : g_Voices)
        if (voice->active && voice->sound == id) visit(voice);
}

bool VoicePlays(const AudioVoice& voice)
{
    if (voice.streamed) return g_OggAudio.Active(voice.source);
    const ALint state = Audio_SourceState(voice);
    return state == AL_PLAYING || state == AL_PAUSED;
}

// Silent at once; the ticks end it.
void SoftStop(AudioVoice* voice)
{
    if (voice->stop_count != 0 || voice->stopping) return;
    voice->stop_count = 1;
    voice->gain = 0;
    voice->priority = kStoppedPriority;
    alSourcef(SourceOf(*voice), AL_GAIN, 0);
}

void Pause(AudioVoice* voice)
{
    if (voice->streamed) return g_OggAudio.Pause(voice->source);
    if (Audio_SourceState(*voice) != AL_PLAYING) return;
    alSourcePause(SourceOf(*voice));
    if (const ALenum error = alGetError())
        g_DebugConsole->Output("Error pausing sound %d error code %d\n", voice->sound, error);
}

void Resume(AudioVoice* voice)
{
    if (voice->streamed) return g_OggAudio.Resume(voice->source);
    if (Audio_SourceState(*voice) != AL_PAUSED) return;
    alSourcei(SourceOf(*voice), AL_SOURCE_MASK_VX, voice->listener_mask);
    alSourcePlay(SourceOf(*voice));
    if (const ALenum error = alGetError())
        g_DebugConsole->Output("Error resuming sound %d error code %d\n", voice->sound, error);
}

int32_t FadeTicks(int32_t milliseconds)
{
    const int32_t fps = Run_Room ? std::max(Run_Room->speed, 1) : kSpeedWithoutRoom;
    const int32_t perTick = std::max(1000 / fps, 1);
    return std::max(milliseconds / perTick, 1);
}

// The fades of a sound and of a voice are the same. False when nothing changes now.
bool SetGain(double wanted, int32_t milliseconds, float* gain, float* delta, int32_t* steps)
{
    const auto target = static_cast<float>(std::max(wanted, 0.0));
    if (milliseconds != 0) {
        *steps = FadeTicks(milliseconds);
        *delta = (target - *gain) / static_cast<float>(*steps);
        return false;
    }
    if (*gain == target && *steps == 0) return false;
    *gain = target;
    *steps = 0;
    return true;
}

void ReadLength(AudioSound* sound)
{
    if (sound->length >= 0) return;
    if (sound->IsStream()) return Ogg_ReadFacts(sound);
    if (sound->buffer < 0) return;
    ALint size = 0, bits = 0, channels = 0, frequency = 0;
    const auto buffer = static_cast<ALuint>(sound->buffer);
    alGetBufferi(buffer, AL_SIZE, &size);
    alGetBufferi(buffer, AL_BITS, &bits);
    alGetBufferi(buffer, AL_CHANNELS, &channels);
    alGetBufferi(buffer, AL_FREQUENCY, &frequency);
    if (bits < 8 || channels < 1 || frequency < 1) return;
    sound->sample_rate = frequency;
    sound->channels = channels;
    sound->total_samples = size / channels / (bits / 8);
    sound->length = static_cast<float>(sound->total_samples) / static_cast<float>(frequency);
}

}  // namespace

void Audio_WriteGain(const AudioVoice& voice)
{
    const AudioSound* sound = Audio_Data(voice.sound);
    if (sound) alSourcef(SourceOf(voice), AL_GAIN, voice.gain * sound->gain);
}

AudioSound* Audio_SoundOf(int32_t id)
{
    if (!NamesVoice(id)) return Audio_Data(id);
    const AudioVoice* voice = FindVoice(id);
    return voice ? Audio_Data(voice->sound) : nullptr;
}

void Audio_StopSound(int32_t id)
{
    EachVoice(id, SoftStop);
}

void Audio_StopAll()
{
    for (AudioVoice* voice : g_Voices)
        if (voice->active) SoftStop(voice);
}

void Audio_PauseSound(int32_t id)
{
    EachVoice(id, Pause);
}

void Audio_PauseAll()
{
    for (AudioVoice* voice : g_Voices)
        if (voice->active) Pause(voice);
}

void Audio_ResumeSound(int32_t id)
{
    EachVoice(id, Resume);
}

void Audio_ResumeAll()
{
    for (AudioVoice* voice : g_Voices)
        if (voice->active) Resume(voice);
}

bool Audio_IsPlaying(int32_t id)
{
    bool plays = false;
    EachVoice(id, [&](AudioVoice* voice) { plays = plays || VoicePlays(*voice); });
    return plays;
}

bool Audio_IsPaused(int32_t id)
{
    bool paused = false;
    EachVoice(
        id, [&](AudioVoice* voice) { paused = paused || Audio_SourceState(*voice) == AL_PAUSED; });
    return paused;
}

void Audio_SetGain(int32_t id, double gain, int32_t milliseconds)
{
    if (NamesVoice(id)) {
        EachVoice(id, [&](AudioVoice* voice) {
            if (SetGain(gain, milliseconds, &voice->gain, &voice->gain_delta, &voice->gain_steps))
                Audio_WriteGain(*voice);
        });
        return;
    }
    AudioSound* sound = Audio_Active() ? Audio_Data(id) : nullptr;
    if (!sound) return;
    if (SetGain(gain, milliseconds, &sound->gain, &sound->gain_delta, &sound->gain_steps))
        EachVoice(id, [](AudioVoice* voice) { Audio_WriteGain(*voice); });
}

double Audio_GetGain(int32_t id)
{
    if (!Audio_Active()) return 0;
    if (!NamesVoice(id)) return Audio_Data(id) ? static_cast<double>(Audio_Data(id)->gain) : 0;
    const AudioVoice* voice = FindVoice(id);
    return voice ? static_cast<double>(voice->gain) : 0;
}

void Audio_SetPitch(int32_t id, double pitch)
{
    const auto clamped = static_cast<float>(std::clamp(pitch, kLeastPitch, kMostPitch));
    if (!NamesVoice(id))
        if (AudioSound* sound = Audio_Active() ? Audio_Data(id) : nullptr) sound->pitch = clamped;
    EachVoice(id, [&](AudioVoice* voice) {
        voice->pitch = clamped;
        alSourcef(SourceOf(*voice), AL_PITCH, clamped);
    });
}

double Audio_GetPitch(int32_t id)
{
    if (!Audio_Active()) return 0;
    if (!NamesVoice(id)) return Audio_Data(id) ? static_cast<double>(Audio_Data(id)->pitch) : 0;
    const AudioVoice* voice = FindVoice(id);
    return voice ? static_cast<double>(voice->pitch) : 0;
}

double Audio_Length(int32_t id)
{
    AudioSound* sound = Audio_Active() ? Audio_SoundOf(id) : nullptr;
    if (!sound) return 0;
    ReadLength(sound);
    return static_cast<double>(std::max(sound->length, 0.0F));
}

double Audio_TrackPosition(int32_t id)
{
    AudioSound* sound = Audio_Active() ? Audio_SoundOf(id) : nullptr;
    if (!sound) return 0;
    if (!NamesVoice(id)) return static_cast<double>(sound->track_pos);
    const AudioVoice* voice = FindVoice(id);
    if (voice->streamed) {
        ReadLength(sound);
        return g_OggAudio.TrackPosition(*voice, sound);
    }
    ALfloat seconds = 0;
    alGetSourcef(SourceOf(*voice), AL_SEC_OFFSET, &seconds);
    return static_cast<double>(seconds);
}

void Audio_SetTrackPosition(int32_t id, double seconds)
{
    AudioSound* sound = Audio_Active() ? Audio_SoundOf(id) : nullptr;
    if (!sound) return;
    ReadLength(sound);
    const auto wanted = static_cast<float>(seconds);
    if (!NamesVoice(id)) {
        if (wanted >= 0 && wanted < sound->length) sound->track_pos = wanted;
        return;
    }
    const AudioVoice* voice = FindVoice(id);
    if (voice->streamed)
        g_OggAudio.Seek(voice->source, std::max(wanted, 0.0F));
    else
        alSourcef(SourceOf(*voice), AL_SEC_OFFSET, wanted);
}

void Audio_SetMasterGain(double gain)
{
    if (Audio_Active()) alListenerf(AL_GAIN, static_cast<float>(std::max(gain, 0.0)));
}

double Audio_MasterGain()
{
    ALfloat gain = 0;
    if (Audio_Active()) alGetListenerf(AL_GAIN, &gain);
    return static_cast<double>(gain);
}
