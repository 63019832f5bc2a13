// Stories of pads that press the keys of the figures.

#include <map>
#include <set>

#include "game/Gamepad.h"
#include "tests/game/support_Level.h"

using namespace names;

namespace {

using Input = std::pair<int, int>;  // slot and number
std::set<Input> g_down, g_pressed;
std::map<Input, double> g_axes;

Input Asked(RValue* args)
{
    return {static_cast<int>(REAL_RValue(&args[0])), static_cast<int>(REAL_RValue(&args[1]))};
}
void Down(RValue& result, CInstance*, CInstance*, int, RValue* args)
{
    SetReal(result, g_down.count(Asked(args)) > 0);
}
void Pressed(RValue& result, CInstance*, CInstance*, int, RValue* args)
{
    SetReal(result, g_pressed.count(Asked(args)) > 0);
}
void Axis(RValue& result, CInstance*, CInstance*, int, RValue* args)
{
    SetReal(result, g_axes[Asked(args)]);
}

struct PadStory : LevelStory {
    explicit PadStory(const char* mode) : LevelStory(mode)
    {
        g_down.clear();
        g_pressed.clear();
        g_axes.clear();
        Serve("gamepad_button_check", Down);
        Serve("gamepad_button_check_pressed", Pressed);
        Serve("gamepad_axis_value", Axis);
        stage.clear_console();
    }
    // A button goes down and up again.
    void Press(int slot, int button)
    {
        g_pressed.insert({slot, button});
        stage.frames(1);
        g_pressed.clear();
        stage.frames(20);
    }
};

TEST(Pads, AStickWalksAFrameLaterAndItsReleaseStops)
{
    PadStory level("onePlayer");
    g_axes[{0, gp_axislh}] = 0.6;
    level.stage.frames(1);
    EXPECT_EQ(level.one->x, 364);
    level.stage.frames(1);
    EXPECT_EQ(level.one->x, 368);
    g_axes.clear();
    level.stage.frames(30);
    EXPECT_EQ(level.one->x, 416);
    EXPECT_EQ(level.one->hspeed, 0);
    EXPECT_NE(level.stage.console().find("vk_right ativa!!\n"), std::string::npos);
    EXPECT_NE(level.stage.console().find("vk_right desativa!!\n"), std::string::npos);
    g_down.insert({0, gp_padu});
    level.stage.frames(3);
    g_down.clear();
    level.stage.frames(30);
    EXPECT_AT(level.one, 416, 208);
    EXPECT_EQ(level.stage.variable(level.one, "controla_key_up"), 0);
}

TEST(Pads, ButtonsUndoRestartAndChangeTheMode)
{
    PadStory level("onePlayer");
    level.Tap('D').Tap('D');
    level.Press(0, gp_shoulderl);
    EXPECT_EQ(level.one->x, 416);
    EXPECT_NE(level.stage.console().find("ord(Z) desativa!!\n"), std::string::npos);
    level.Press(0, gp_face4);
    EXPECT_EQ(level.stage.global_text("playerMode"), "twoPlayersOne");
    level.Press(0, gp_face2);
    level.Look();
    EXPECT_AT(level.one, 364, 260);
    EXPECT_EQ(undoAtual, 0);
    g_down.insert({0, gp_select});
    level.stage.frames(3);
    g_down.clear();
    EXPECT_EQ(level.stage.count(oTransicao), 1) << "back to the map";
}

TEST(Pads, TwoPlayersShareAPadOrHaveOneEach)
{
    PadStory shared("twoPlayersOne");
    Put(shared.two, 208, 156);
    g_axes[{0, gp_axisrh}] = 1;
    shared.stage.frames(3);
    g_axes.clear();
    shared.stage.frames(30);
    EXPECT_AT(shared.two, 260, 156);
    EXPECT_AT(shared.one, 364, 260);
    shared.Press(0, gp_shoulderr);
    EXPECT_AT(shared.two, 208, 156);
}

TEST(Pads, ThePadOfPlayerTwoIsTheSecondSlot)
{
    PadStory apart("twoPlayersTwo");
    Put(apart.two, 208, 156);
    g_axes[{0, gp_axisrh}] = 1;
    g_axes[{1, gp_axislv}] = 1;
    apart.stage.frames(3);
    g_axes.clear();
    apart.stage.frames(30);
    EXPECT_AT(apart.two, 208, 208);
    apart.Press(1, gp_shoulderl);
    EXPECT_AT(apart.two, 208, 156);
    EXPECT_AT(apart.one, 364, 260);
}

}  // namespace
