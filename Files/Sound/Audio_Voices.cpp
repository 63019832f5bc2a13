// The pool of voices: which one a new sound gets, how it begins and how it ends.

#include "Files/Sound/Audio_Voices.h"

#include <AL/alc.h>

#include <algorithm>
#include <cstdio>

#include "Files/Base/Console.h"
#include "Files/Run/Services.h"
#include "Files/Sound/Ogg_Stream.h"
#include "Files/Sound/VXOpenAL/ALu.h"
#include "Host/Host_Audio.h"

VxVector<AudioVoice*> g_Voices;
VxVector<ALuint> g_Sources;
int32_t g_ListenerMask = 1;

namespace {

constexpr int32_t kFirstVoiceId = 400001;
constexpr int32_t kFewestSources = 2;
constexpr float kFalloffMaxDistance = 100000;
// Ticks of a soft stop: silent at once, over two ticks later.
constexpr int32_t kHardStopAt = 3, kForgetStopAt = 4;

ALCdevice* s_device;
ALCcontext* s_context;
int32_t s_nextVoiceId = kFirstVoiceId;

void MakeSources(int32_t count)
{
    g_Sources.resize(static_cast<size_t>(count));
    alGenSources(count, g_Sources.data());
    Audio_Check("Error creating audio sources %d\n");
    g_Voices.reserve(static_cast<size_t>(count));
    g_OggAudio.Init(g_Sources);
}

void DropSources()
{
    for (AudioVoice* voice : g_Voices)
        if (voice->active) Audio_HardStop(voice);
    g_OggAudio.Quit();
    for (const ALuint source : g_Sources) {
        alSourceStop(source);
        alSourcei(source, AL_BUFFER, 0);
    }
    alDeleteSources(static_cast<ALsizei>(g_Sources.size()), g_Sources.data());
    for (AudioVoice* voice : g_Voices) VxDelete(voice);
    VxVector<AudioVoice*>().swap(g_Voices);
    VxVector<ALuint>().swap(g_Sources);
}

void PlaceListener()
{
    const ALfloat orientation[] = {0, 0, 1, 0, 1, 0};
    alListener3f(AL_POSITION, 0, 0, 0);
    alListener3f(AL_VELOCITY, 0, 0, 0);
    alListenerfv(AL_ORIENTATION, orientation);
}

// ---- choosing a voice

// A free voice, one whose sound is over, or one that makes way for a stream anyway.
bool IsFree(const AudioVoice& voice, bool forStream)
{
    if (!voice.active) return true;
    if (voice.streamed) return voice.stopping && voice.stop_count == 0 && forStream;
    const ALint state = Audio_SourceState(voice);
    return state == AL_STOPPED || state == AL_INITIAL;
}

AudioVoice* NewVoice()
{
    auto* voice = VxNew<AudioVoice>();
    voice->source = static_cast<int32_t>(g_Voices.size());
    g_Voices.push_back(voice);
    return voice;
}

// The least important voice that is less important than the new sound.
AudioVoice* VoiceToTake(float priority, bool forStream)
{
    AudioVoice* least = nullptr;
    for (AudioVoice* voice : g_Voices) {
        if (voice->streamed && !forStream) continue;
        if (voice->priority < (least ? least->priority : priority)) least = voice;
    }
    return least;
}

AudioVoice* ChooseVoice(float priority, bool forStream)
{
    for (AudioVoice* voice : g_Voices) {
        if (!IsFree(*voice, forStream)) continue;
        if (voice->active && !voice->streamed) Audio_ReleaseVoice(voice);
        return voice;
    }
    if (g_Voices.size() < g_Sources.size()) return NewVoice();
    AudioVoice* voice = VoiceToTake(priority, forStream);
    if (voice) Audio_HardStop(voice);
    return voice;
}

// ---- starting

void SetUpSource(ALuint source, const AudioSound& sound)
{
    alSourcef(source, AL_MAX_DISTANCE, kFalloffMaxDistance);
    alSourcef(source, AL_GAIN, sound.gain);
    alSourcef(source, AL_PITCH, sound.pitch);
    alSourcei(source, AL_SOURCE_RELATIVE, AL_TRUE);
    alSource3f(source, AL_POSITION, 0, 0, 0);
    alSource3f(source, AL_VELOCITY, 0, 0, 0);
    Audio_Check("Error before playing sample %d\n");
}

bool StartStream(const AudioVoice& voice, AudioSound* sound)
{
    if (sound->streamed && !Ogg_FindFile(sound)) {
        g_DebugConsole->Output("COggAudio::PlaySound- could not find audio file for sound %s\n",
                               sound->name);
        return false;
    }
    if (!sound->streamed && !sound->ogg_data) return false;
    return g_OggAudio.Play(voice.source, sound, voice.loop, sound->track_pos, voice.listener_mask);
}

bool StartResident(const AudioVoice& voice, const AudioSound& sound)
{
    if (sound.buffer < 0) return false;
    const ALuint source = g_Sources[static_cast<size_t>(voice.source)];
    alSourcei(source, AL_BUFFER, sound.buffer);
    Audio_Check("Error setting sample buffer\n");
    alSourcei(source, AL_LOOPING, voice.loop);
    if (sound.track_pos > 0) alSourcef(source, AL_SEC_OFFSET, sound.track_pos);
    alSourcei(source, AL_SOURCE_MASK_VX, voice.listener_mask);
    alSourcePlay(source);
    return Audio_Check("Error playing simple sound %d\n");
}

// ---- once a frame

void Fade(float* gain, float delta, int32_t* steps)
{
    if (*steps <= 0) return;
    *gain = std::clamp(*gain + delta, 0.0F, 1.0F);
    --*steps;
}

void TickVoice(AudioVoice* voice)
{
    if (voice->stop_count != 0) {
        ++voice->stop_count;
        if (voice->stop_count == kHardStopAt)
            Audio_HardStop(voice);
        else if (voice->stop_count >= kForgetStopAt)
            voice->stop_count = 0;
        return;
    }
    Fade(&voice->gain, voice->gain_delta, &voice->gain_steps);
    Audio_WriteGain(*voice);
}

// Where no threads run beside the program, its frames let sound pass as the clock does.
void LetSoundPass()
{
    if (!g_HostAudio.stepped) return;
    do g_OggAudio.PassWithoutThreads();
    while (ALC_Pump());
    g_OggAudio.PassWithoutThreads();
}

}  // namespace

bool Audio_Active()
{
    return s_context != nullptr;
}

void Audio_Init(int32_t sources)
{
    Audio_QuitHardware();
    s_device = alcOpenDevice(nullptr);
    s_context = alcCreateContext(s_device, nullptr);
    alcMakeContextCurrent(s_context);
    MakeSources(sources);
    alDistanceModel(AL_INVERSE_DISTANCE);
    PlaceListener();
    Service_Hook(ServicePlace::Audio, Audio_Tick);
    Service_Hook(ServicePlace::StopSounds, Audio_StopAll);
}

void Audio_QuitHardware()
{
    if (!Audio_Active()) return;
    Service_Unhook(ServicePlace::Audio, Audio_Tick);
    Service_Unhook(ServicePlace::StopSounds, Audio_StopAll);
    DropSources();
    alcMakeContextCurrent(nullptr);
    alcCloseDevice(std::exchange(s_device, nullptr));
    alcDestroyContext(std::exchange(s_context, nullptr));
    s_nextVoiceId = kFirstVoiceId;
}

void Audio_SetChannels(int32_t count)
{
    count = std::max(count, kFewestSources);
    if (!Audio_Active() || static_cast<size_t>(count) == g_Sources.size()) return;
    g_DebugConsole->Output("Audio setting channel count to %d\n", count);
    DropSources();
    MakeSources(count);
}

bool Audio_Check(const char* format)
{
    const ALenum error = alGetError();
    // All formats have one number or none.
    if (error != AL_NO_ERROR) {
        char text[128];
        std::snprintf(text, sizeof text, format, error);
        g_DebugConsole->Output("%s", text);
    }
    return error == AL_NO_ERROR;
}

ALint Audio_SourceState(const AudioVoice& voice)
{
    ALint state = AL_INITIAL;
    alGetSourcei(g_Sources[static_cast<size_t>(voice.source)], AL_SOURCE_STATE, &state);
    return state;
}

void Audio_ReleaseVoice(AudioVoice* voice)
{
    voice->active = voice->stopping = false;
    voice->stop_count = 0;
    alSourcei(g_Sources[static_cast<size_t>(voice->source)], AL_BUFFER, 0);
}

int32_t Audio_PlaySound(int32_t id, double priority, bool loop)
{
    AudioSound* sound = Audio_Data(id);
    if (!sound) {
        g_DebugConsole->Output("Error: no sound exists for soundid %d\n", id);
        return 0;
    }
    AudioVoice* voice = ChooseVoice(static_cast<float>(priority), sound->IsStream());
    if (!voice) return -1;
    AudioVoice next;
    next.source = voice->source;
    next.id = s_nextVoiceId++;
    next.sound = id;
    next.priority = static_cast<float>(priority);
    next.loop = loop;
    next.listener_mask = g_ListenerMask;
    next.streamed = sound->IsStream();
    *voice = next;
    SetUpSource(g_Sources[static_cast<size_t>(voice->source)], *sound);
    voice->active = voice->streamed ? StartStream(*voice, sound) : StartResident(*voice, *sound);
    return voice->id;
}

void Audio_HardStop(AudioVoice* voice)
{
    if (voice->streamed) {
        voice->stopping = true;  // until its stream tells that it ended
        g_OggAudio.Stop(voice->source);
        return;
    }
    alSourceStop(g_Sources[static_cast<size_t>(voice->source)]);
    if (const ALenum error = alGetError())
        g_DebugConsole->Output("Error stopping sound %d error code %d\n", voice->sound, error);
    Audio_ReleaseVoice(voice);
}

void Audio_Tick()
{
    if (!Audio_Active()) return;
    LetSoundPass();
    const ALfloat origin[] = {0, 0, 0};
    alListenerfv(AL_POSITION, origin);
    if (const ALenum error = alGetError())
        g_DebugConsole->Output("OpenAL error: %d (%s)\n", error, "Audio_Tick Start");
    g_OggAudio.Tick();
    for (int32_t i = 0; i < Audio_Count(); ++i)
        if (AudioSound* sound = Audio_Data(i))
            Fade(&sound->gain, sound->gain_delta, &sound->gain_steps);
    for (AudioVoice* voice : g_Voices)
        if (voice->active) TickVoice(voice);
}
