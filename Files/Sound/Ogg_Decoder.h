#pragma once
// Vorbis streams, decoded to 16-bit samples, the channels of a frame side by side.

#include <cstdint>

class OggDecoder {
public:
    static constexpr int kNoFile = 1;  // OpenFile's own error; those of the decoder are below 0

    OggDecoder();
    ~OggDecoder();
    OggDecoder(const OggDecoder&) = delete;
    OggDecoder& operator=(const OggDecoder&) = delete;

    // 0, or an error. What was open is closed first.
    int OpenFile(const char* path);
    int OpenMemory(const uint8_t* data, uint32_t size);  // `data` stays until Close
    void Close();
    bool IsOpen() const { return open_; }

    int32_t Channels() const { return channels_; }
    int32_t Rate() const { return rate_; }  // frames a second
    int64_t TotalFrames();                  // below 0: the decoder can't tell
    // Bytes that were decoded, whole samples; 0 at the end, below 0 for an error.
    int32_t Read(void* to, int32_t bytes);
    int Rewind();  // 0, or an error
    int SeekTime(int64_t milliseconds);

private:
    struct State;
    int Opened(int error);
    State* state_;
    bool open_ = false;
    int32_t channels_ = 0, rate_ = 0;
};
