#pragma once
// Short effects made of gliding notes.

#include <cstdint>
#include <vector>

#include "tools/pack/Tables.h"

namespace pack {

// A whole part of the 48,000 frames a second of the output: its mixer repeats samples and
// does not interpolate.
inline constexpr int kSampleRate = 24000;  // samples a second, one channel, 16 bits

// A RIFF wave file of the notes played together.
std::vector<uint8_t> Sounds_Wave(const std::vector<Note>& notes);

}  // namespace pack
