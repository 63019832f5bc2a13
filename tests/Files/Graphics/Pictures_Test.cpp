// Every scene as a picture, byte by byte, on the soft device.

#include <cmath>
#include <cstring>
#include <random>

#include "Files/Function/Function_Registry.h"
#include "Files/Graphics/GpuState.h"
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

// However the vertices travel, and whether clears are drawn or not.
TEST_P(Pictures, AreTheSameByEveryWayOfDrawing)
{
    const KeptPicture usual = SceneStage().Draw(GetParam(), Device_Soft, Host_UseStage);
    for (const auto way : {&Switches::multiVb, &Switches::noVb, &Switches::intel}) {
        SceneStage stage;
        stage.switches.*way = true;
        EXPECT_TRUE(stage.Draw(GetParam(), Device_Soft, Host_UseStage) == usual);
    }
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

// Numbers that no picture has: every draw function takes them and draws what it can, and
// the next picture is whole.
void Extremes(SceneStage& stage)
{
    const double numbers[] = {0,    1,     -1,    0.5,  3,   1e9,      -1e9,
                              1e30, -1e30, 1e-30, 2e10, NAN, INFINITY, -INFINITY};
    std::mt19937 random(5);
    const auto number = [&] { return numbers[random() % std::size(numbers)]; };
    for (int32_t round = 0; round < 20000; round++) {
        const FunctionRecord* record = Function_Record(static_cast<int32_t>(random()) & 0x3FF);
        if (!record || std::strncmp(record->name, "draw_", 5) != 0) continue;
        RValue values[16];
        for (RValue& value : values) value = RValue(number());
        if (random() % 2) values[0] = RValue(static_cast<double>(random() % 3));
        if (std::strstr(record->name, "text")) VXCreateString(&values[2], "ab c");
        RValue result;
        record->routine(result, nullptr, nullptr, record->argumentCount, values);
        FREE_RValue(&values[2]);
        FREE_RValue(&result);
        if (round % 64 == 0) stage.call("display_set_gui_size", number(), number());
        if (round % 64 == 0) View_SetArea(-1e9F, 0, static_cast<float>(number()), 80, 0);
        if (round % 64 == 32) View_SetWindow();
    }
    Draw_Init();
    GpuState_Init();
    View_SetWindow();
    Scenes_Quads().front().draw(stage);
}

TEST(Numbers, OutsideAllSenseDoNoHarm)
{
    const SceneRow clean = Scenes_Quads().front();
    const SceneRow row = {"extremes", clean.width, clean.height, Extremes};
    EXPECT_EQ(SceneStage().Draw(row, Device_Soft, Host_UseStage),
              SceneStage().Draw(clean, Device_Soft, Host_UseStage));
}

}  // namespace
