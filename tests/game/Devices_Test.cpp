// The game's own pictures on the GL device: those of the soft one within two steps of 255
// a channel, but for 5 pixels of 1000; and neither asks for memory once a level stands.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <set>

#include "Files/Graphics/Batch.h"
#include "Files/Graphics_API/Device.h"
#include "Platform/MemoryManager.h"
#include "tests/support/Stage.h"

namespace {

constexpr int kTolerance = 2;
constexpr double kMostApart = 0.005;

int Apart(uint32_t a, uint32_t b)
{
    int most = 0;
    for (int shift = 0; shift < 32; shift += 8)
        most = std::max(most, std::abs(static_cast<int>(a >> shift & 0xFF) -
                                       static_cast<int>(b >> shift & 0xFF)));
    return most;
}

Stage::Options OnGL()
{
    Stage::Options options;
    options.window = true;
    options.windowPace = 0;
    options.switches.push_back("-gl");
    return options;
}

Picture LevelOn(const Stage::Options& options, const char* level, const DeviceTable& device)
{
    Stage stage(options);
    if (!stage.started()) return {};
    EXPECT_STREQ(g_Device->name, device.name);
    stage.room(level).frames(40);
    const uint64_t before = MemoryManager::GetStats().calls;
    stage.frames(30);
    EXPECT_EQ(MemoryManager::GetStats().calls, before) << level << " on " << device.name;
    EXPECT_GT(g_GraphicsStats.drawCalls, 0);
    EXPECT_LE(g_GraphicsStats.drawCalls, 12) << level << " on " << device.name;
    return stage.picture();
}

TEST(Devices, ALevelLooksTheSameOnBoth)
{
    if (!std::getenv("DISPLAY") && !std::getenv("WAYLAND_DISPLAY")) GTEST_SKIP() << "no display";
    for (const char* level : {"room_level1", "room_level8"}) {
        const Picture gl = LevelOn(OnGL(), level, Device_GL);
        if (gl.pixels.empty()) GTEST_SKIP() << "no GL here";
        const Picture soft = LevelOn({}, level, Device_Soft);
        EXPECT_GT(std::set<uint32_t>(gl.pixels.begin(), gl.pixels.end()).size(), 200U) << level;
        ASSERT_EQ(soft.width, gl.width);
        ASSERT_EQ(soft.height, gl.height);
        size_t apart = 0;
        for (size_t i = 0; i < soft.pixels.size(); ++i)
            apart += Apart(soft.pixels[i], gl.pixels[i]) > kTolerance;
        const double share = static_cast<double>(apart) / static_cast<double>(soft.pixels.size());
        std::printf("%s: %.3f%% of pixels apart\n", level, share * 100);
        EXPECT_LE(share, kMostApart) << level;
    }
}

}  // namespace
