// What the drawings promise: water and shores join without a seam.

#include <gtest/gtest.h>

#include "tools/pack/Pictures.h"

using namespace pack;

namespace {

const PictureLibrary& Library()
{
    static const PictureLibrary library = [] {
        PictureLibrary read;
        std::string error;
        EXPECT_TRUE(Pictures_Load(std::string(CONTENT_FOLDER) + "/art", read, error)) << error;
        return read;
    }();
    return library;
}

std::vector<Image> Drawn(const std::string& name, int width, int height, int frames = 1)
{
    std::vector<Image> images;
    std::string error;
    EXPECT_TRUE(Pictures_Has(Library(), name)) << name;
    EXPECT_TRUE(Pictures_Render(Library(), name, width, height, frames, images, error)) << error;
    return images;
}

constexpr int kSize = 52;

}  // namespace

// Shores lie side by side in any number: their foam leads on from one to the next.
TEST(Art, FoamLeadsOnFromShoreToShore)
{
    const std::vector<Image> frames = Drawn("sAnimaOndinhas", kSize, kSize, 8);
    constexpr int square = 4;
    const auto foam = [](const Image& image, int x) {  // the first white row, squares
        for (int y = 0; y < kSize; y += square) {
            const uint8_t* p = &image.bgra[static_cast<size_t>(y * kSize + x) * 4];
            if (p[0] == 255 && p[1] == 255 && p[2] == 255) return y / square;
        }
        return -1;
    };
    for (const Image& image : frames) {
        EXPECT_GE(foam(image, 1), 0);
        EXPECT_LE(std::abs(foam(image, 1) - foam(image, kSize - 2)), 1);
    }
    EXPECT_NE(frames[0].bgra, frames[4].bgra) << "the water moves";
}
