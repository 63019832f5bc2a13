// The game in a real window on the GL device. Skipped without a display or without GL.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "Files/Graphics/Batch.h"
#include "Files/Graphics/Page_Decoder.h"
#include "Platform/MemoryManager.h"
#include "tests/support/Stage.h"

namespace {

Stage::Options OnGL(std::vector<std::string> more = {})
{
    Stage::Options options;
    options.switches.insert(options.switches.end(), more.begin(), more.end());
    options.switches.push_back("-gl");
    options.window = options.threads = true;
    options.windowPace = 0;
    return options;
}

#define SKIP_WITHOUT_GL(stage)                                 \
    if (!std::getenv("DISPLAY")) GTEST_SKIP() << "no display"; \
    if (!(stage).started()) GTEST_SKIP() << "no GL";           \
    ASSERT_STREQ(g_Device->name, Device_GL.name)

int Pages(DeviceFormat format)
{
    int count = 0;
    for (int32_t slot = 0; slot < Texture_Count(); ++slot) {
        const TextureSlot* page = Texture_Get(slot);
        if (page && page->texture && page->texture->sourceData)
            count += page->texture->format == static_cast<int32_t>(format);
    }
    return count;
}

// The mean distance of all channels, in steps of 255.
double Distance(const Picture& a, const Picture& b)
{
    EXPECT_EQ(a.pixels.size(), b.pixels.size());
    double sum = 0;
    for (size_t i = 0; i < std::min(a.pixels.size(), b.pixels.size()); ++i)
        for (int shift = 0; shift < 24; shift += 8)
            sum += std::abs(static_cast<int>(a.pixels[i] >> shift & 255) -
                            static_cast<int>(b.pixels[i] >> shift & 255));
    return sum / static_cast<double>(a.pixels.size() * 3);
}

TEST(Desktop, AFrameOnGLAllocatesNothing)
{
    Stage stage(OnGL());
    SKIP_WITHOUT_GL(stage);
    stage.room("room_level1").frames(40);  // every page has been needed once
    PageDecoder_Settle();                  // its thread counts, too
    const uint64_t before = MemoryManager::GetStats().calls;
    stage.frames(20);
    EXPECT_EQ(MemoryManager::GetStats().calls, before);
    EXPECT_GT(g_GraphicsStats.drawCalls, 0);
}

// All pages go to the device compressed, a level looks as it did but not to the bit, and
// scripts still read the pixels of the archive.
TEST(Desktop, CompressedTexturesAreNearTheirPictures)
{
    Picture plain;
    {
        Stage stage(OnGL());
        SKIP_WITHOUT_GL(stage);
        EXPECT_EQ(Pages(DeviceFormat::Dxt5), 0);
        plain = stage.room("room_level1").frames(5).picture();
    }
    Stage stage(OnGL({"-compresstextures"}));
    SKIP_WITHOUT_GL(stage);
    if (!g_Device->Caps().dxt5) GTEST_SKIP() << "GL without DXT5";
    EXPECT_GT(Pages(DeviceFormat::Dxt5), 0);
    EXPECT_EQ(Pages(DeviceFormat::Argb8888), 0);
    const Picture picture = stage.room("room_level1").frames(5).picture();
    EXPECT_GT(Distance(plain, picture), 0.0);
    EXPECT_LT(Distance(plain, picture), 4.0);
    EXPECT_EQ(stage.console().find("not compressed"), std::string::npos);
}

}  // namespace
