#pragma once
// Pictures that are kept as files beside the tests.

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

struct KeptPicture {
    int32_t width = 0, height = 0;
    std::vector<uint32_t> pixels;  // 0xAARRGGBB, top row first
    bool operator==(const KeptPicture&) const = default;
};

// Equal, byte by byte, to tests/pictures/<name>.png. Otherwise the picture, the kept one
// and their difference are written, and the failure says where. With KEEP_PICTURES in
// the environment the kept picture is replaced: look at it before you commit it.
testing::AssertionResult MatchesKept(const std::string& name, const KeptPicture& drawn);

// The share of pixels that differ by more than `tolerance` in a channel.
double ShareApart(const KeptPicture& a, const KeptPicture& b, int32_t tolerance);
// The pixels that differ in white on black; differences of one step show as grey.
KeptPicture DifferenceOf(const KeptPicture& a, const KeptPicture& b);
// Writes a picture to look at; its path.
std::string WriteAside(const std::string& name, const KeptPicture& picture);
