#include "Files/Sound/Ogg_Decoder.h"

#include <tremor/ivorbisfile.h>

#include <algorithm>
#include <cstdio>
#include <cstring>

#include "Platform/MemoryManager.h"

struct OggDecoder::State {
    OggVorbis_File file;
    const uint8_t* data;  // of a stream in memory
    int64_t size, memory_pos;
};

namespace {

template <class State>
struct Callbacks {
    static size_t Read(void* to, size_t size, size_t count, void* source)
    {
        auto* state = static_cast<State*>(source);
        if (size == 0) return 0;
        const auto left = static_cast<size_t>(state->size - state->memory_pos) / size;
        count = std::min(count, left);
        std::memcpy(to, state->data + state->memory_pos, size * count);
        state->memory_pos += static_cast<int64_t>(size * count);
        return count;
    }
    // A target beyond the end ends there, and fails.
    static int Seek(void* source, ogg_int64_t offset, int whence)
    {
        auto* state = static_cast<State*>(source);
        const int64_t from = whence == SEEK_SET   ? 0
                             : whence == SEEK_CUR ? state->memory_pos
                                                  : state->size;
        const int64_t target = from + offset;
        state->memory_pos = std::clamp<int64_t>(target, 0, state->size);
        return target == state->memory_pos ? 0 : -1;
    }
    static int Close(void*) { return 0; }
    static long Tell(void* source)
    {
        return static_cast<long>(static_cast<State*>(source)->memory_pos);
    }
};

}  // namespace

OggDecoder::OggDecoder() : state_(VxNew<State>()) {}

OggDecoder::~OggDecoder()
{
    Close();
    VxDelete(state_);
}

int OggDecoder::Opened(int error)
{
    if (error != 0) return error;
    const vorbis_info* info = ov_info(&state_->file, -1);
    channels_ = info->channels;
    rate_ = static_cast<int32_t>(info->rate);
    open_ = true;
    return 0;
}

int OggDecoder::OpenFile(const char* path)
{
    Close();
    std::FILE* file = std::fopen(path, "rb");
    if (!file) return kNoFile;
    const int error = ov_open(file, &state_->file, nullptr, 0);
    if (error != 0) std::fclose(file);  // else the decoder has it
    return Opened(error);
}

int OggDecoder::OpenMemory(const uint8_t* data, uint32_t size)
{
    Close();
    state_->data = data;
    state_->size = size;
    state_->memory_pos = 0;
    using Calls = Callbacks<State>;
    const ov_callbacks calls = {Calls::Read, Calls::Seek, Calls::Close, Calls::Tell};
    return Opened(ov_open_callbacks(state_, &state_->file, nullptr, 0, calls));
}

void OggDecoder::Close()
{
    if (open_) ov_clear(&state_->file);
    open_ = false;
}

int64_t OggDecoder::TotalFrames()
{
    return ov_pcm_total(&state_->file, -1);
}

int32_t OggDecoder::Read(void* to, int32_t bytes)
{
    int section = 0;
    return static_cast<int32_t>(ov_read(&state_->file, static_cast<char*>(to), bytes, &section));
}

int OggDecoder::Rewind()
{
    return ov_raw_seek(&state_->file, 0);
}

int OggDecoder::SeekTime(int64_t milliseconds)
{
    return ov_time_seek(&state_->file, milliseconds);
}
