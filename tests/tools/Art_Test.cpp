// What the drawings promise: a covered target can be told from an empty one and from a
// box that stands beside it, without colour; water and shores join without a seam.

#include <gtest/gtest.h>

#include <cmath>

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

double Linear(double v)
{
    v /= 255;
    return v <= 0.04045 ? v / 12.92 : std::pow((v + 0.055) / 1.055, 2.4);
}

// The luminance of a picture on a ground of luminance `ground`, by pixels.
std::vector<double> Grey(const Image& image, int top, const std::vector<double>& ground)
{
    std::vector<double> grey = ground;
    for (size_t i = 0; i < grey.size(); ++i) {
        const uint8_t* p = &image.bgra[(i + static_cast<size_t>(top * image.width)) * 4];
        const double alpha = p[3] / 255.0;
        const double light = 0.0722 * Linear(p[0]) + 0.7152 * Linear(p[1]) + 0.2126 * Linear(p[2]);
        grey[i] = light * alpha + grey[i] * (1 - alpha);
    }
    return grey;
}

// The share of pixels that differ by a contrast of 1.6.
double Share(const std::vector<double>& a, const std::vector<double>& b)
{
    int count = 0;
    for (size_t i = 0; i < a.size(); ++i) {
        const double ratio = (std::max(a[i], b[i]) + 0.05) / (std::min(a[i], b[i]) + 0.05);
        count += ratio >= 1.6;
    }
    return count / static_cast<double>(a.size());
}

constexpr int kSize = 52, kBoxTop = 13;

}  // namespace

TEST(Art, ACoveredTargetIsToldByShapeAlone)
{
    const std::vector<double> ground(kSize * kSize, 0.6);
    const Image box = Drawn("sMonte", kSize, kSize + kBoxTop)[0];
    const std::vector<double> onGround = Grey(box, kBoxTop, ground);
    for (const auto& [empty, covered] :
         {std::pair{"sFechado", "sAberto"}, std::pair{"sFechado2", "sAberto2"}}) {
        const Image target = Drawn(empty, kSize, kSize)[0], done = Drawn(covered, kSize, kSize)[0];
        const std::vector<double> boxOnDone = Grey(box, kBoxTop, Grey(done, 0, ground));
        EXPECT_GE(Share(Grey(target, 0, ground), Grey(done, 0, ground)), 0.3) << covered;
        EXPECT_GE(Share(boxOnDone, onGround), 0.04) << covered << " under its box";
        EXPECT_GE(Share(boxOnDone, Grey(target, 0, ground)), 0.3) << covered;
    }
}

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
