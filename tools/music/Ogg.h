#pragma once
// Ogg Vorbis files. The same samples give the same bytes.

#include <cstdint>
#include <vector>

#include "tools/music/Synth.h"

namespace music {

// quality: -0.1 to 1. Throws std::runtime_error for samples that can't be encoded.
std::vector<uint8_t> Ogg_Encode(const Sound& sound, float quality);

}  // namespace music
