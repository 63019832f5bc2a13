// A worker: it serves the streams of a quarter of the sources, about 60 times a second.

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <cstring>

#include "Files/Base/Console.h"
#include "Files/Sound/Audio_Main.h"
#include "Files/Sound/Ogg_Stream.h"
#include "Files/Sound/VXOpenAL/ALu.h"
#include "Host/Host.h"
#include "Host/Host_Audio.h"

namespace {

constexpr int64_t kPassMillis = 16;

ALint SourceValue(ALuint source, ALenum property)
{
    ALint value = 0;
    alGetSourcei(source, property, &value);
    return value;
}

void UnqueueAll(ALuint source)
{
    alSourceStop(source);
    ALuint buffers[2];
    for (ALint left = SourceValue(source, AL_BUFFERS_QUEUED); left > 0; --left)
        alSourceUnqueueBuffers(source, 1, buffers);
}

}  // namespace

// ---- the main thread's calls

bool COggThread::Create(const VxVector<ALuint>& sources, int32_t first)
{
    const auto count = static_cast<int32_t>(sources.size()) / kOggThreads;
    if (count == 0) return false;
    first_source_ = first;
    channel_count_ = count;
    channels_ = static_cast<SOggChannel*>(
        MemoryManager::Alloc(sizeof(SOggChannel) * static_cast<size_t>(count)));
    for (int32_t i = 0; i < count; ++i) {
        SOggChannel* channel = ::new (channels_ + i) SOggChannel();
        channel->source_index = first + i * kOggThreads;
        channel->source = sources[static_cast<size_t>(channel->source_index)];
        if (const ALenum error = alGetError())
            g_DebugConsole->Output("OpenAL error: %d (%s)\n", error,
                                   "SOggChannel before alGenBuffers");
        alGenBuffers(2, channel->al_buffers);
        if (const ALenum error = alGetError())
            g_DebugConsole->Output("OpenAL error: %d (%s)\n", error, "SOggChannel alGenBuffers");
    }
    command_copy_.resize(static_cast<size_t>(count));
    if (g_HostAudio.stepped) return true;
    handle_ = g_Host.process.StartThread(
        [](void* context) { static_cast<COggThread*>(context)->Loop(); }, this);
    if (handle_) return true;
    g_DebugConsole->Output("Error %d creating ogg thread\n", -1);
    Quit();
    return false;
}

void COggThread::Quit()
{
    {
        const std::lock_guard<std::mutex> locked(mutex_);
        quit_ = true;
    }
    if (handle_)
        g_Host.process.JoinThread(handle_);
    else
        Pass();
    handle_ = nullptr;
    for (int32_t i = 0; i < channel_count_; ++i) {
        alDeleteBuffers(2, channels_[i].al_buffers);
        channels_[i].~SOggChannel();
    }
    MemoryManager::Free(channels_);
    channels_ = nullptr;
    channel_count_ = 0;
}

void COggThread::Play(SOggChannel* channel, AudioSound* sound, bool loop, float seconds,
                      int32_t mask)
{
    const std::lock_guard<std::mutex> locked(mutex_);
    const bool sought = seconds > 0;
    channel->commands =
        static_cast<uint8_t>(OGG_PLAY | (loop ? OGG_LOOP : 0) | (sought ? OGG_SEEK : 0));
    channel->seek_seconds = sought ? seconds : 0;
    channel->listener_mask = mask;
    channel->next_sound = sound;
    channel->active = true;
    channel->buffers_played = 0;
}

void COggThread::Stop(SOggChannel* channel)
{
    const std::lock_guard<std::mutex> locked(mutex_);
    channel->commands = OGG_STOP;
}

void COggThread::Seek(SOggChannel* channel, float seconds)
{
    const std::lock_guard<std::mutex> locked(mutex_);
    channel->commands |= OGG_SEEK;
    channel->seek_seconds = seconds;
}

bool COggThread::Active(const SOggChannel& channel)
{
    const std::lock_guard<std::mutex> locked(mutex_);
    return channel.active;
}

void COggThread::Progress(const SOggChannel& channel, int32_t* buffers, float* seconds)
{
    const std::lock_guard<std::mutex> locked(mutex_);
    *buffers = channel.buffers_played;
    *seconds = channel.seek_seconds;
}

void COggThread::PrintMessages()
{
    char text[sizeof message_];
    {
        const std::lock_guard<std::mutex> locked(mutex_);
        if (!message_pending_) return;
        std::memcpy(text, message_, sizeof text);
        message_pending_ = false;
        message_[0] = 0;
    }
    g_DebugConsole->Output("(%d): %s", first_source_, text);
}

// ---- the worker's side

void COggThread::Message(const char* format, ...)
{
    char text[256];
    va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(text, sizeof text, format, arguments);
    va_end(arguments);
    const std::lock_guard<std::mutex> locked(mutex_);
    const size_t used = std::strlen(message_);
    std::snprintf(message_ + used, sizeof message_ - used, "%s", text);
    message_pending_ = true;
}

void COggThread::Loop()
{
    for (;;) {
        const int64_t start = g_Host.clock.Micros();
        if (!Pass()) return;
        const int64_t rest = kPassMillis - (g_Host.clock.Micros() - start) / 1000;
        if (rest > 0) g_Host.clock.Block(static_cast<int32_t>(rest));
    }
}

bool COggThread::Pass()
{
    bool quitting;
    {
        const std::lock_guard<std::mutex> locked(mutex_);
        quitting = quit_;
        for (int32_t i = 0; i < channel_count_; ++i) {
            SOggChannel& channel = channels_[i];
            command_copy_[static_cast<size_t>(i)] = {channel.commands, channel.listener_mask};
            channel.sound = channel.next_sound;
            channel.seek_ms =
                static_cast<int64_t>(static_cast<double>(channel.seek_seconds) * 1000);
            channel.commands = 0;
        }
    }
    for (int32_t i = 0; i < channel_count_; ++i) {
        SOggChannel& channel = channels_[i];
        if (quitting && channel.state != OggState::Stopped) StopStream(&channel);
        if (!quitting) Serve(&channel, command_copy_[static_cast<size_t>(i)]);
    }
    return !quitting;
}

void COggThread::Serve(SOggChannel* channel, const Order& order)
{
    const bool plays = (order.commands & OGG_PLAY) != 0;
    const bool seeks = (order.commands & OGG_SEEK) != 0;
    if (order.commands == 0 && channel->state == OggState::Stopped) return;
    if (order.commands == OGG_STOP)
        EndStream(channel);  // also one that had not begun
    else if (plays && channel->state != OggState::Stopped)
        StopStream(channel);
    if (plays)
        StartStream(channel, (order.commands & OGG_LOOP) != 0, seeks ? channel->seek_ms : 0,
                    order.listener_mask);
    else if (seeks)
        SeekStream(channel, channel->seek_ms);
    if (channel->state != OggState::Stopped) Refill(channel);
}

void COggThread::StopStream(SOggChannel* channel)
{
    UnqueueAll(channel->source);
    channel->file.Close();
    channel->state = OggState::Stopped;
}

void COggThread::EndStream(SOggChannel* channel)
{
    if (channel->state != OggState::Stopped) StopStream(channel);
    const std::lock_guard<std::mutex> locked(mutex_);
    // A play command that came meanwhile has begun the next life of this channel.
    if ((channel->commands & OGG_PLAY) != 0) return;
    channel->active = false;
    channel->buffers_played = 0;
}

bool COggThread::OpenStream(SOggChannel* channel)
{
    const AudioSound& sound = *channel->sound;
    if (!sound.streamed) {
        const int error = channel->file.OpenMemory(sound.ogg_data, sound.ogg_size);
        if (error != 0) Message("ov_open_callbacks error %d\n", error);
        return error == 0;
    }
    const int error = channel->file.OpenFile(sound.path.c_str());
    if (error == OggDecoder::kNoFile)
        Message("Could not open Ogg file %s\n", sound.path.c_str());
    else if (error != 0)
        Message("ov_open error %d\n", error);
    return error == 0;
}

void COggThread::StartStream(SOggChannel* channel, bool loop, int64_t ms, int32_t mask)
{
    if (!OpenStream(channel)) return EndStream(channel);
    channel->state = loop ? OggState::Looping : OggState::Once;
    alSourcei(channel->source, AL_BUFFER, 0);
    if (const ALenum error = alGetError())
        Message("AL Error %x detaching buffer\n", static_cast<unsigned>(error));
    alSourcei(channel->source, AL_LOOPING, AL_FALSE);  // the decoder loops, never the source
    if (const ALenum error = alGetError())
        Message("AL Error %x set looping to false\n", static_cast<unsigned>(error));
    if (ms > 0) channel->file.SeekTime(ms);
    if (!QueueBoth(channel)) return EndStream(channel);
    alSourcei(channel->source, AL_SOURCE_MASK_VX, mask);
    alSourcePlay(channel->source);
}

// Fills and queues both buffers, or only the first when there is no more. False when
// nothing was decoded.
bool COggThread::QueueBoth(SOggChannel* channel)
{
    channel->pcm_index = 0;
    if (Fill(channel, channel->al_buffers[0]) == 0) return false;
    const bool second = Fill(channel, channel->al_buffers[1]) != 0;
    alSourceQueueBuffers(channel->source, second ? 2 : 1, channel->al_buffers);
    return true;
}

// Bytes that were decoded into a buffer of the mixer; 0 when there were none, or for a
// stream that can't be read.
int32_t COggThread::Fill(SOggChannel* channel, ALuint buffer)
{
    uint8_t* piece = channel->pcm[channel->pcm_index];
    channel->pcm_index = 1 - channel->pcm_index;
    int32_t filled = 0;
    bool rewound = false;  // and nothing read since: the stream holds nothing at all
    while (filled + channel->file.Channels() * 2 <= kOggPieceBytes) {
        const int32_t got = channel->file.Read(piece + filled, kOggPieceBytes - filled);
        if (got < 0) {
            Message("ov_read error: %d\n", got);
            return 0;
        }
        filled += got;
        if (got > 0) {
            rewound = false;
            continue;
        }
        if (channel->state != OggState::Looping || rewound) break;
        if (const int error = channel->file.Rewind()) {
            Message("ov_raw_seek error %d\n", error);
            break;
        }
        rewound = true;
    }
    if (filled > 0)
        alBufferData(buffer, channel->file.Channels() == 1 ? AL_FORMAT_MONO16 : AL_FORMAT_STEREO16,
                     piece, filled, channel->file.Rate());
    return filled;
}

void COggThread::Refill(SOggChannel* channel)
{
    for (ALint left = SourceValue(channel->source, AL_BUFFERS_PROCESSED); left > 0; --left) {
        ALuint buffer = 0;
        alSourceUnqueueBuffers(channel->source, 1, &buffer);
        {
            const std::lock_guard<std::mutex> locked(mutex_);
            ++channel->buffers_played;
        }
        if (Fill(channel, buffer) > 0)
            alSourceQueueBuffers(channel->source, 1, &buffer);
        else
            channel->state = OggState::Ending;
    }
    if (SourceValue(channel->source, AL_SOURCE_STATE) != AL_STOPPED) return;
    if (channel->state == OggState::Ending)
        EndStream(channel);
    else
        alSourcePlay(channel->source);  // it had run dry
}

void COggThread::SeekStream(SOggChannel* channel, int64_t ms)
{
    if (channel->state == OggState::Stopped) return;
    const bool paused = SourceValue(channel->source, AL_SOURCE_STATE) == AL_PAUSED;
    UnqueueAll(channel->source);
    {
        const std::lock_guard<std::mutex> locked(mutex_);
        channel->buffers_played = 0;
    }
    channel->file.SeekTime(ms);
    if (!QueueBoth(channel)) return EndStream(channel);
    alSourcePlay(channel->source);
    alSourcei(channel->source, AL_SAMPLE_OFFSET, 0);
    if (paused) alSourcePause(channel->source);
}
