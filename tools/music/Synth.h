#pragma once
// From a score to samples.

#include <vector>

#include "tools/music/Score.h"

namespace music {

// That of the program's output, whose mixer does not interpolate.
inline constexpr int kOutputRate = 48000;

struct Sound {
    int rate = kOutputRate;  // frames a second
    int channels = 2;
    std::vector<float> samples;  // -1 to 1, left and right in turn
    size_t Frames() const { return samples.size() / static_cast<size_t>(channels); }
};

// A piece that loops has exactly the frames of its beats: what rings on at its end is
// heard at its beginning. Throws std::runtime_error for an unknown patch.
Sound Synth_Render(const Score& score, int rate = kOutputRate);

// A sine, for tests.
Sound Synth_Tone(int rate, int channels, size_t frames, double hertz);

}  // namespace music
