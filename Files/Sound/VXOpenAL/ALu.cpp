// One block of sound: which sources sound, where each of them stands, their sum.

#include "Files/Sound/VXOpenAL/ALu.h"

#include <algorithm>
#include <cmath>
#include <cstring>

#include "Files/Base/Console.h"
#include "Host/Host.h"

namespace {

// Where a source plays: a place in its queue and in that buffer.
struct Place {
    uint32_t buffer, at, fraction;

    void Move(uint32_t frames, uint32_t step)
    {
        const uint64_t moved = static_cast<uint64_t>(step) * frames + fraction;
        at = static_cast<uint32_t>(std::min<uint64_t>(at + (moved >> kFractionBits), UINT32_MAX));
        fraction = static_cast<uint32_t>(moved & kFractionMask);
    }
    // Back from behind a buffer's end: to its loop's start, or into the next buffer. False
    // when there is none.
    bool Settle(const ALsource& source)
    {
        for (;;) {
            const ALbuffer& playing = *source.queue[buffer];
            if (at < playing.loopEnd) return true;
            if (source.looping) {
                const uint32_t length = playing.loopEnd - playing.loopStart;
                if (length == 0) return false;
                at = playing.loopStart + (at - playing.loopEnd) % length;
                return true;
            }
            if (buffer + 1 == source.queue.size()) return false;
            at -= playing.loopEnd;
            ++buffer;
        }
    }
};

bool Sounds(const ALsource& source)
{
    return source.state == AL_PLAYING && source.processed < source.queue.size();
}

// A source that begins inside the time of this block waits for its frame of it.
uint32_t FramesBeforeStart(const ALCdevice_struct& device, const ALsource& source, uint32_t frames)
{
    if (source.at != 0 || device.lastMix == 0) return 0;
    const int64_t wait =
        (source.startTime - device.lastMix) * source.queue[source.processed]->frequency / 1000000;
    return wait > 0 && wait < frames ? static_cast<uint32_t>(wait) : 0;
}

void MixSource(ALCdevice_struct& device, const ALsource& source, uint32_t frames)
{
    Place place = {source.processed, source.at, source.fraction};
    const auto channels = static_cast<uint32_t>(device.channels);
    float* out = device.scratch.data() + size_t{source.offset} * channels;
    uint32_t left = frames - source.offset;
    while (left > 0 && place.Settle(source)) {
        const ALbuffer& buffer = *source.queue[place.buffer];
        const ALmixRun run = ALu_FindLoop(device.channels, buffer.format);
        if (!run) return;
        const uint64_t room =
            (static_cast<uint64_t>(buffer.loopEnd - place.at) << kFractionBits) - place.fraction;
        const uint64_t fit = source.step == 0 ? left : (room + source.step - 1) / source.step;
        const auto count = static_cast<uint32_t>(std::min<uint64_t>(fit, left));
        run(buffer.data + size_t{place.at} * buffer.format.FrameBytes(), count, place.fraction,
            source.step, source.gains, device.channelMap, out);
        place.Move(count, source.step);
        out += size_t{count} * channels;
        left -= count;
    }
}

void Convert(const ALCdevice_struct& device, void* output, uint32_t frames)
{
    const size_t count = size_t{frames} * static_cast<size_t>(device.channels);
    const float* sums = device.scratch.data();
    if (ALu_Format(device.format).sampleBytes == 4) {
        std::memcpy(output, sums, count * sizeof(float));
        return;
    }
    auto* samples = static_cast<int16_t*>(output);
    for (size_t i = 0; i < count; ++i)
        samples[i] = static_cast<int16_t>(std::clamp(sums[i] * 32768.0F, -32768.0F, 32767.0F));
}

}  // namespace

void ALu_Mix(ALCdevice_struct* device, void* output, uint32_t frames)
{
    ALCcontext_struct* context = g_ALContext;
    if (!context) return;
    const size_t floats = size_t{frames} * static_cast<size_t>(device->channels);
    if (device->scratch.size() < floats) device->scratch.resize(floats);
    std::fill_n(device->scratch.begin(), floats, 0.0F);
    const bool mixes = ALu_HasLoops(device->channels);
    if (!mixes)
        g_DebugConsole->Output("No mixing functions for %d destination channels\n",
                               device->channels);
    for (ALsource* source : context->sources) {
        source->offset = 0;
        if (!mixes || !Sounds(*source)) continue;
        ALu_UpdateSource(context, source);
        if ((source->mask & device->mask) == 0) continue;
        source->offset = FramesBeforeStart(*device, *source, frames);
        MixSource(*device, *source, frames);
    }
    Convert(*device, output, frames);
    device->lastMix = g_Host.clock.Micros();
}

void ALu_Advance(ALCdevice_struct* device, uint32_t frames)
{
    ALCcontext_struct* context = g_ALContext;
    if (!context || context->device != device) return;
    for (ALsource* source : context->sources) {
        if (!Sounds(*source)) continue;
        Place place = {source->processed, source->at, source->fraction};
        place.Move(frames - source->offset, source->step);
        if (place.Settle(*source)) {
            source->processed = place.buffer;
            source->at = place.at;
            source->fraction = place.fraction;
        } else {
            source->processed = static_cast<uint32_t>(source->queue.size());
            source->at = source->fraction = 0;
            source->state = AL_STOPPED;
        }
    }
}

void ALu_Block(ALCdevice_struct* device, void* output, uint32_t frames)
{
    const size_t bytes = size_t{frames} * static_cast<size_t>(device->channels) *
                         static_cast<size_t>(ALu_Format(device->format).sampleBytes);
    std::memset(output, 0, bytes);
    const std::lock_guard<std::mutex> locked(device->lock);
    ALu_Mix(device, output, frames);
    ALu_Advance(device, frames);
}

ALformat ALu_Format(ALenum format)
{
    struct Row {
        ALenum format;
        ALformat shape;
    };
    static constexpr Row kRows[] = {
        {AL_FORMAT_MONO8, {1, 1}},
        {AL_FORMAT_MONO16, {1, 2}},
        {AL_FORMAT_STEREO8, {2, 1}},
        {AL_FORMAT_STEREO16, {2, 2}},
        {AL_FORMAT_MONO_FLOAT_VX, {1, 4}},
        {AL_FORMAT_STEREO_FLOAT_VX, {2, 4}},
        {0x1204, {4, 1}},
        {0x1205, {4, 2}},
        {0x1206, {4, 4}},  // four corners
        {0x120A, {6, 1}},
        {0x120B, {6, 2}},
        {0x120C, {6, 4}},  // 5.1
        {0x1210, {8, 1}},
        {0x1211, {8, 2}},
        {0x1212, {8, 4}},  // 7.1
    };
    for (const Row& row : kRows)
        if (row.format == format) return row.shape;
    return {0, 0};
}
