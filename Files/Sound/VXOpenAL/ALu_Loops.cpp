// The inner loops of the mixer, one for each combination of output channels, sample width
// and source channels, so that they hold no test of a format. The nearest earlier frame is
// taken, without interpolation.

#include <cstring>

#include "Files/Base/Console.h"
#include "Files/Sound/VXOpenAL/ALu.h"

namespace {

template <class Sample>
float ToFloat(const uint8_t* at)
{
    Sample sample;
    std::memcpy(&sample, at, sizeof sample);
    if constexpr (sizeof(Sample) == 1) return static_cast<float>(sample - 128) * (1.0F / 128);
    if constexpr (sizeof(Sample) == 2) return static_cast<float>(sample) * (1.0F / 32768);
    return static_cast<float>(sample);
}

// One frame: a mono source feeds every channel by its own gain, a stereo source the two
// in front; a single channel gets half of each.
template <int kOut, class Sample, int kIn>
void AddFrame(const uint8_t* frame, const float* gain, float* out)
{
    const float left = ToFloat<Sample>(frame);
    if constexpr (kIn == 1) {
        for (int i = 0; i < kOut; ++i) out[i] += left * gain[i];
    } else {
        const float right = ToFloat<Sample>(frame + sizeof(Sample));
        if constexpr (kOut == 1) {
            out[0] += (left + right) * 0.5F * gain[0];
        } else {
            out[0] += left * gain[0];
            out[1] += right * gain[1];
        }
    }
}

template <int kOut, class Sample, int kIn>
void Run(const uint8_t* data, uint32_t frames, uint32_t fraction, uint32_t step, const float* gains,
         const uint8_t* channelMap, float* out)
{
    float gain[kOut];
    for (int i = 0; i < kOut; ++i) gain[i] = gains[channelMap[i]];
    for (uint32_t i = 0; i < frames; ++i, out += kOut) {
        AddFrame<kOut, Sample, kIn>(data, gain, out);
        fraction += step;
        data += (fraction >> kFractionBits) * sizeof(Sample) * kIn;
        fraction &= kFractionMask;
    }
}

struct Loops {
    int32_t outputChannels;
    ALmixRun runs[3][2];  // by sample width, then source channels
};
template <int kOut>
constexpr Loops Row()
{
    return {kOut,
            {{Run<kOut, uint8_t, 1>, Run<kOut, uint8_t, 2>},
             {Run<kOut, int16_t, 1>, Run<kOut, int16_t, 2>},
             {Run<kOut, float, 1>, Run<kOut, float, 2>}}};
}
constexpr Loops kLoops[] = {Row<1>(), Row<2>(), Row<4>(), Row<6>(), Row<8>()};

const Loops* Find(int32_t outputChannels)
{
    for (const Loops& row : kLoops)
        if (row.outputChannels == outputChannels) return &row;
    return nullptr;
}

}  // namespace

bool ALu_HasLoops(int32_t outputChannels)
{
    return Find(outputChannels) != nullptr;
}

ALmixRun ALu_FindLoop(int32_t outputChannels, ALformat format)
{
    const Loops* row = Find(outputChannels);
    if (!row) return nullptr;
    const int32_t width = format.sampleBytes == 4 ? 2 : format.sampleBytes - 1;
    if (width < 0 || width > 2) {
        g_DebugConsole->Output("no mixing function for %d source bytes\n", format.sampleBytes);
        return nullptr;
    }
    if (format.channels < 1 || format.channels > 2) {
        g_DebugConsole->Output("no mixing function for %d source channels\n", format.channels);
        return nullptr;
    }
    return row->runs[width][format.channels - 1];
}
