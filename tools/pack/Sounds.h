#pragma once
// Short effects made of gliding notes.

#include <cstdint>
#include <vector>

#include "tools/pack/Tables.h"

namespace pack {

inline constexpr int kSampleRate = 22050;  // samples a second, one channel, 16 bits

// A RIFF wave file of the notes played together.
std::vector<uint8_t> Sounds_Wave(const std::vector<Note>& notes);

}  // namespace pack
