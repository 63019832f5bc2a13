// The manager of streams: the main thread's side.

#include "Files/Sound/Ogg_Stream.h"

#include <cmath>

#include "Files/Base/Console.h"
#include "Files/IO/File_Disk.h"
#include "Files/IO/File_Names.h"
#include "Files/Sound/Audio_Voices.h"

COggAudio g_OggAudio;

namespace {

constexpr int64_t kNoTotal = -131;  // the decoder's answer when it can't tell

}  // namespace

void COggAudio::Init(const VxVector<ALuint>& sources)
{
    sources_ = sources;
}

void COggAudio::Quit()
{
    for (COggThread*& thread : threads_) {
        if (thread) thread->Quit();
        VxDelete(thread);
        thread = nullptr;
    }
    VxVector<ALuint>().swap(sources_);
}

COggThread* COggAudio::ThreadOf(int32_t source)
{
    const int32_t number = source % kOggThreads;
    COggThread*& thread = threads_[number];
    if (thread) return thread;
    auto* made = VxNew<COggThread>();
    if (made->Create(sources_, number))
        thread = made;
    else
        VxDelete(made);
    return thread;
}

// Null for a source beyond the last whole round of the threads, and without its worker.
SOggChannel* COggAudio::ChannelOf(int32_t source)
{
    COggThread* thread = ThreadOf(source);
    const int32_t index = source / kOggThreads;
    return thread && index < thread->ChannelCount() ? &thread->Channel(index) : nullptr;
}

bool COggAudio::Play(int32_t source, AudioSound* sound, bool loop, float seconds, int32_t mask)
{
    SOggChannel* channel = ChannelOf(source);
    if (channel) ThreadOf(source)->Play(channel, sound, loop, seconds, mask);
    return channel != nullptr;
}

void COggAudio::Stop(int32_t source)
{
    if (SOggChannel* channel = ChannelOf(source)) ThreadOf(source)->Stop(channel);
}

void COggAudio::Seek(int32_t source, float seconds)
{
    if (SOggChannel* channel = ChannelOf(source)) ThreadOf(source)->Seek(channel, seconds);
}

void COggAudio::Pause(int32_t source)
{
    const ALuint name = sources_[static_cast<size_t>(source)];
    ALint state = 0;
    alGetSourcei(name, AL_SOURCE_STATE, &state);
    if (state == AL_PLAYING) alSourcePause(name);
}

void COggAudio::Resume(int32_t source)
{
    const ALuint name = sources_[static_cast<size_t>(source)];
    ALint state = 0;
    alGetSourcei(name, AL_SOURCE_STATE, &state);
    if (state == AL_PAUSED) alSourcePlay(name);
}

bool COggAudio::Active(int32_t source)
{
    const SOggChannel* channel = ChannelOf(source);
    return channel && ThreadOf(source)->Active(*channel);
}

double COggAudio::TrackPosition(const AudioVoice& voice, AudioSound* sound)
{
    SOggChannel* channel = ChannelOf(voice.source);
    if (!channel || voice.stopping) return 0;
    if (sound->sample_rate == 0) Ogg_ReadFacts(sound);
    if (sound->sample_rate == 0) return 0;
    ALint offset = 0;
    alGetSourcei(channel->source, AL_SAMPLE_OFFSET, &offset);
    int32_t played;
    float from;
    ThreadOf(voice.source)->Progress(*channel, &played, &from);
    const int64_t samples = int64_t{played} * kOggPieceBytes / (sound->channels * 2) + offset;
    const double seconds = static_cast<double>(samples) / sound->sample_rate + from;
    if (!(seconds > sound->length)) return seconds;
    return voice.loop && sound->length > 0 ? std::fmod(seconds, sound->length) : sound->length;
}

void COggAudio::Tick()
{
    for (COggThread* thread : threads_) {
        if (!thread) continue;
        thread->PrintMessages();
        for (int32_t i = 0; i < thread->ChannelCount(); ++i) {
            SOggChannel& channel = thread->Channel(i);
            if (static_cast<size_t>(channel.source_index) >= g_Voices.size()) break;
            AudioVoice* voice = g_Voices[static_cast<size_t>(channel.source_index)];
            if (voice->active && voice->streamed && !thread->Active(channel))
                Audio_ReleaseVoice(voice);
        }
    }
}

void COggAudio::PassWithoutThreads()
{
    for (COggThread* thread : threads_)
        if (thread && !thread->HasThread()) thread->Pass();
}

bool Ogg_FindFile(AudioSound* sound)
{
    if (!sound->path.empty()) return true;
    if (!BundleFileExists(sound->file.c_str())) return false;
    sound->path = MappedPath(GetBundleFileName, sound->file.c_str());
    return true;
}

void Ogg_ReadFacts(AudioSound* sound)
{
    if (sound->streamed && !Ogg_FindFile(sound)) {
        g_DebugConsole->Output("can't find file for %s at %s\n", sound->name, sound->file.c_str());
        return;
    }
    OggDecoder decoder;
    const int error = sound->streamed ? decoder.OpenFile(sound->path.c_str())
                                      : decoder.OpenMemory(sound->ogg_data, sound->ogg_size);
    if (error != 0) {
        g_DebugConsole->Output("ov_open error %d\n", error);
        return;
    }
    sound->sample_rate = decoder.Rate();
    sound->channels = decoder.Channels();
    sound->total_samples = decoder.TotalFrames();
    sound->length =
        sound->total_samples == kNoTotal
            ? 0
            : static_cast<float>(static_cast<double>(sound->total_samples) / sound->sample_rate);
}
