#pragma once
// Music and other long sounds are decoded piece by piece while they play: a worker fills
// two small buffers for each playing voice, which its source plays in turn. The program
// talks to a worker by one command byte a channel under the worker's mutex; the worker
// answers by one byte a channel and by a text.

#include <AL/al.h>

#include <cstdint>
#include <mutex>

#include "Files/Sound/Ogg_Decoder.h"
#include "Platform/MemoryManager.h"

struct AudioSound;
struct AudioVoice;

inline constexpr int32_t kOggThreads = 4;
inline constexpr int32_t kOggPieceBytes = 16384;

enum OggCommand : uint8_t {
    OGG_PLAY = 1,
    OGG_LOOP = 2,
    OGG_PAUSE = 4,  // before the stream began; workers do not read it
    OGG_STOP = 8,   // alone
    OGG_SEEK = 16,
};

enum class OggState : uint8_t { Stopped, Once, Looping, Ending };  // the last data is queued

struct SOggChannel {
    // The worker's own:
    OggDecoder file;
    uint8_t pcm[2][kOggPieceBytes] = {};
    int32_t pcm_index = 0;  // the half to fill next
    ALuint al_buffers[2] = {};
    ALuint source = 0;
    int32_t source_index = 0;
    AudioSound* sound = nullptr;
    OggState state = OggState::Stopped;
    int64_t seek_ms = 0;
    // Guarded by the worker's mutex:
    AudioSound* next_sound = nullptr;
    bool active = false;  // from the play command until the stream has ended
    uint8_t commands = 0;
    int32_t listener_mask = 1;
    int32_t buffers_played = 0;  // since the stream began or was sought
    float seek_seconds = 0;
};

class COggThread {
public:
    // The channels of sources `first`, `first` + 4 and so on. False, with a line, when
    // there can be no thread.
    bool Create(const VxVector<ALuint>& sources, int32_t first);
    void Quit();  // waits for the thread
    int32_t ChannelCount() const { return channel_count_; }
    SOggChannel& Channel(int32_t index) { return channels_[index]; }

    void Play(SOggChannel* channel, AudioSound* sound, bool loop, float seconds, int32_t mask);
    void Stop(SOggChannel* channel);
    void Seek(SOggChannel* channel, float seconds);
    bool Active(const SOggChannel& channel);
    // How far a stream came: buffers played since the seconds at which it began.
    void Progress(const SOggChannel& channel, int32_t* buffers, float* seconds);
    void PrintMessages();

    // One round over all channels; false when it was the last.
    bool Pass();
    bool HasThread() const { return handle_ != nullptr; }

private:
    struct Order {
        uint8_t commands;
        int32_t listener_mask;
    };
    void Loop();
    void Serve(SOggChannel* channel, const Order& order);
    void StartStream(SOggChannel* channel, bool loop, int64_t ms, int32_t mask);
    bool OpenStream(SOggChannel* channel);
    void StopStream(SOggChannel* channel);
    void EndStream(SOggChannel* channel);  // stops it, and tells so
    bool QueueBoth(SOggChannel* channel);
    int32_t Fill(SOggChannel* channel, ALuint buffer);
    void Refill(SOggChannel* channel);
    void SeekStream(SOggChannel* channel, int64_t ms);
    void Message(const char* format, ...) __attribute__((format(printf, 2, 3)));

    std::mutex mutex_;  // "OggMutex"; held for short copies only
    char message_[2048] = {};
    bool message_pending_ = false;
    bool quit_ = false;
    SOggChannel* channels_ = nullptr;
    int32_t channel_count_ = 0, first_source_ = 0;
    VxVector<Order> command_copy_;
    void* handle_ = nullptr;
};

// The manager of the workers; all of it belongs to the main thread.
class COggAudio {
public:
    void Init(const VxVector<ALuint>& sources);
    void Quit();  // no thread outlives it

    bool Play(int32_t source, AudioSound* sound, bool loop, float seconds, int32_t mask);
    void Stop(int32_t source);
    void Pause(int32_t source);
    void Resume(int32_t source);
    void Seek(int32_t source, float seconds);
    bool Active(int32_t source);                                       // the stream has not ended
    double TrackPosition(const AudioVoice& voice, AudioSound* sound);  // seconds
    void Tick();
    // The workers' rounds where the host has no threads.
    void PassWithoutThreads();

private:
    COggThread* ThreadOf(int32_t source);  // made at its first use; null when it can't be
    SOggChannel* ChannelOf(int32_t source);
    VxVector<ALuint> sources_;
    COggThread* threads_[kOggThreads] = {};
};

extern COggAudio g_OggAudio;

// Finds the file of a streamed sound beside the program; false when there is none.
bool Ogg_FindFile(AudioSound* sound);
// Length, rate and channels of a stream, read from its head.
void Ogg_ReadFacts(AudioSound* sound);
