// Pixels and points of a desktop whose windows are drawn finer than they are counted.

#include <gtest/gtest.h>

#include "Host/Host_SDL.h"

namespace {

TEST(Scale, PlacesAndSizesRoundDownAndSizesThatAreSetHoldWhatWasAsked)
{
    const sdl::Scale plain, twice{1708, 854}, half{1281, 854};
    EXPECT_EQ(plain.ToPixels(-7), -7);
    EXPECT_EQ(twice.ToPixels(427), 854);
    EXPECT_EQ(twice.ToPoints(855), 427);
    EXPECT_EQ(twice.ToPoints(-1), -1) << "left of the desktop is not on it";
    EXPECT_EQ(half.ToPixels(427), 640);
    for (const sdl::Scale& scale : {plain, twice, half, sdl::Scale{5, 4}})
        for (int32_t pixels = 1; pixels < 3000; ++pixels) {
            const int32_t points = scale.PointsFor(pixels);
            ASSERT_GE(scale.ToPixels(points), pixels);
            ASSERT_LT(scale.ToPixels(points - 1), pixels);
        }
    EXPECT_EQ(twice.PointsFor(854), 427);
}

}  // namespace
