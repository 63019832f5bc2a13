#include "tools/music/Ogg.h"

#include <vorbis/vorbisenc.h>

#include <algorithm>
#include <stdexcept>

namespace music {
namespace {

constexpr int kSerial = 0x4D61726C;  // of the stream: fixed, so that the bytes repeat
constexpr size_t kPieceFrames = 4096;

class Encoder {
public:
    Encoder(const Sound& sound, float quality) : sound_(sound)
    {
        vorbis_info_init(&info_);
        if (vorbis_encode_init_vbr(&info_, sound.channels, sound.rate, quality) != 0)
            throw std::runtime_error("no encoder for such channels and rate");
        vorbis_analysis_init(&state_, &info_);
        vorbis_block_init(&state_, &block_);
        ogg_stream_init(&stream_, kSerial);
    }
    ~Encoder()
    {
        ogg_stream_clear(&stream_);
        vorbis_block_clear(&block_);
        vorbis_dsp_clear(&state_);
        vorbis_info_clear(&info_);
    }
    Encoder(const Encoder&) = delete;
    Encoder& operator=(const Encoder&) = delete;

    std::vector<uint8_t> Run()
    {
        PutHeaders();
        const size_t frames = sound_.Frames();
        for (size_t at = 0; at < frames; at += kPieceFrames)
            PutFrames(at, std::min(kPieceFrames, frames - at));
        vorbis_analysis_wrote(&state_, 0);  // the end
        PutBlocks();
        return std::move(out_);
    }

private:
    void PutHeaders()
    {
        vorbis_comment comment;
        vorbis_comment_init(&comment);
        ogg_packet packets[3];
        vorbis_analysis_headerout(&state_, &comment, &packets[0], &packets[1], &packets[2]);
        for (ogg_packet& packet : packets) ogg_stream_packetin(&stream_, &packet);
        ogg_page page;
        while (ogg_stream_flush(&stream_, &page) != 0) PutPage(page);
        vorbis_comment_clear(&comment);
    }
    void PutFrames(size_t at, size_t count)
    {
        const auto channels = static_cast<size_t>(sound_.channels);
        float** buffer = vorbis_analysis_buffer(&state_, static_cast<int>(count));
        for (size_t i = 0; i < count; ++i)
            for (size_t channel = 0; channel < channels; ++channel)
                buffer[channel][i] = sound_.samples[(at + i) * channels + channel];
        vorbis_analysis_wrote(&state_, static_cast<int>(count));
        PutBlocks();
    }
    void PutBlocks()
    {
        ogg_packet packet;
        ogg_page page;
        while (vorbis_analysis_blockout(&state_, &block_) == 1) {
            vorbis_analysis(&block_, nullptr);
            vorbis_bitrate_addblock(&block_);
            while (vorbis_bitrate_flushpacket(&state_, &packet) != 0) {
                ogg_stream_packetin(&stream_, &packet);
                while (ogg_stream_pageout(&stream_, &page) != 0) PutPage(page);
            }
        }
    }
    void PutPage(const ogg_page& page)
    {
        out_.insert(out_.end(), page.header, page.header + page.header_len);
        out_.insert(out_.end(), page.body, page.body + page.body_len);
    }

    const Sound& sound_;
    vorbis_info info_;
    vorbis_dsp_state state_;
    vorbis_block block_;
    ogg_stream_state stream_;
    std::vector<uint8_t> out_;
};

}  // namespace

std::vector<uint8_t> Ogg_Encode(const Sound& sound, float quality)
{
    return Encoder(sound, quality).Run();
}

}  // namespace music
