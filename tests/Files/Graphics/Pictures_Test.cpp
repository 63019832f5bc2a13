// Every scene as a picture, byte by byte, on the soft device.

#include "Files/Graphics_API/Device_Soft.h"
#include "Host/Host.h"
#include "tests/Files/Graphics/support_Scenes.h"

namespace {

class Pictures : public testing::TestWithParam<SceneRow> {};

TEST_P(Pictures, AreAsTheyWereKept)
{
    const KeptPicture first = SceneStage().Draw(GetParam(), Device_Soft, Host_UseStage);
    EXPECT_TRUE(MatchesKept(GetParam().name, first));
    EXPECT_EQ(SceneStage().Draw(GetParam(), Device_Soft, Host_UseStage), first);
}

INSTANTIATE_TEST_SUITE_P(Scenes, Pictures, testing::ValuesIn(AllScenes()),
                         [](const auto& scene) { return std::string(scene.param.name); });

// The comparison itself: one wrong pixel is found and told.
TEST(KeptPictures, OneWrongPixelIsTold)
{
    if (std::getenv("KEEP_PICTURES")) GTEST_SKIP() << "pictures are being replaced";
    const SceneRow row = Scenes_Quads().front();
    KeptPicture wrong = SceneStage().Draw(row, Device_Soft, Host_UseStage);
    wrong.pixels[static_cast<size_t>(3 * row.width + 5)] ^= 0x000100U;
    const testing::AssertionResult result = MatchesKept(row.name, wrong);
    ASSERT_FALSE(result);
    EXPECT_NE(std::string(result.message()).find("1 pixels differ, the first at (5, 3)"),
              std::string::npos)
        << result.message();
}

}  // namespace
