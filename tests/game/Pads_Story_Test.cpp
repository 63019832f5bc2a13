// Stories of pads that press the keys of the figures.

#include "Files/Object/Object_Main.h"
#include "Files/Variable/Variable_BuiltIn.h"
#include "game/Gamepad.h"
#include "tests/game/support_Level.h"

using namespace names;

namespace {

constexpr int32_t kAsyncSystem = 75;  // subtype of the event

// Both pads are there before the level begins.
struct PadStory : LevelStory {
    explicit PadStory(const char* mode) : LevelStory(mode)
    {
        stage.pad(0);
        stage.pad(1);
        Enter("room_level1");
        stage.clear_console();
    }
    // A button goes down and up again.
    void Press(int slot, int button)
    {
        stage.pad(slot).press(button);
        stage.frames(1);
        stage.pad(slot).release(button);
        stage.frames(20);
    }
    // A stick is held for a few frames.
    void Push(int slot, int axis, double value)
    {
        stage.pad(slot).axis(axis, value);
        stage.frames(3);
        stage.pad(slot).axis(axis, 0);
        stage.frames(30);
    }
};

TEST(Pads, AStickWalksAFrameLaterAndItsReleaseStops)
{
    PadStory level("onePlayer");
    level.stage.pad(0).axis(gp_axislh, 0.4);
    level.stage.frames(5);
    EXPECT_EQ(level.one->x, 364) << "within the dead zone";
    level.stage.pad(0).axis(gp_axislh, 0.8);
    level.stage.frames(1);
    EXPECT_EQ(level.one->x, 364);
    level.stage.frames(1);
    EXPECT_EQ(level.one->x, 368);
    level.stage.pad(0).axis(gp_axislh, 0);
    level.stage.frames(30);
    EXPECT_EQ(level.one->x, 416);
    EXPECT_EQ(level.one->hspeed, 0);
    EXPECT_NE(level.stage.console().find("vk_right ativa!!\n"), std::string::npos);
    EXPECT_NE(level.stage.console().find("vk_right desativa!!\n"), std::string::npos);
    level.Press(0, gp_padu);
    EXPECT_AT(level.one, 416, 208);
    EXPECT_EQ(level.stage.variable(level.one, "controla_key_up"), 0);
}

// The figure that held the key for the stick is gone before it could let it go.
TEST(Pads, ADirectionHeldThroughARestartLeavesNoKeyDown)
{
    PadStory level("twoPlayersTwo");
    level.stage.pad(0).axis(gp_axislh, 1);
    level.stage.pad(1).axis(gp_axislh, -1);
    level.stage.hold('T').frames(5);
    ASSERT_TRUE(keyboard_check(keyD));
    ASSERT_TRUE(keyboard_check(keyLeft));
    level.stage.pad(0).axis(gp_axislh, 0);
    level.stage.pad(1).axis(gp_axislh, 0);
    level.stage.release('T').frames(4);
    EXPECT_FALSE(keyboard_check(keyD));
    EXPECT_FALSE(keyboard_check(keyLeft));
    level.Rest().Look();
    EXPECT_AT(level.one, 364, 260);
    EXPECT_AT(level.two, 416, 260);
    // Nor does a hand that taps the same keys find them held.
    Put(level.two, 624, 156);
    level.Tap('D').Tap(kLeft).Rest();
    EXPECT_AT(level.one, 416, 260);
    EXPECT_AT(level.two, 572, 156);
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
    level.stage.pad(0).press(gp_select);
    level.stage.frames(4);
    level.stage.pad(0).release(gp_select);
    EXPECT_EQ(level.stage.count(oTransicao), 1) << "back to the map";
}

// The figure that held the key for the pad is gone when the pad lets go in the dark.
TEST(Pads, ADirectionHeldThroughAChangeOfLevelsLeavesNoStuckKey)
{
    PadStory level("onePlayer");
    level.stage.pad(0).axis(gp_axislh, 1);
    Room_CreateInstance(0, 0, oTransicao.index);
    targetRoom = room_level8.index;
    level.stage.frames(30);
    level.stage.pad(0).axis(gp_axislh, 0);
    level.stage.frames(90);
    ASSERT_EQ(level.stage.room_name(), "room_level8");
    level.Look();
    EXPECT_AT(level.one, 416, 364);
    EXPECT_EQ(undoAtual, 0);
    EXPECT_FALSE(keyboard_check('D'));
}

TEST(Pads, TwoPlayersShareAPadOrHaveOneEach)
{
    PadStory shared("twoPlayersOne");
    Put(shared.two, 208, 156);
    shared.Push(0, gp_axisrh, 1);
    EXPECT_AT(shared.two, 260, 156);
    EXPECT_AT(shared.one, 364, 260);
    shared.Press(0, gp_shoulderr);
    EXPECT_AT(shared.two, 208, 156);
}

TEST(Pads, ThePadOfPlayerTwoIsTheSecondSlot)
{
    PadStory apart("twoPlayersTwo");
    Put(apart.two, 208, 156);
    apart.Push(0, gp_axisrh, 1);
    EXPECT_AT(apart.two, 208, 156);
    apart.Push(1, gp_axislv, 1);
    EXPECT_AT(apart.two, 208, 208);
    apart.Press(1, gp_shoulderl);
    EXPECT_AT(apart.two, 208, 156);
    EXPECT_AT(apart.one, 364, 260);
}

TEST(Pads, OneThatComesInTheMiddleOfALevelIsSetUp)
{
    LevelStory level;
    level.stage.pad(2).axis(gp_axislh, 0.4);
    level.stage.frames(2);
    ASSERT_GT(gamepad_axis_value(2, gp_axislh), 0);
    const double told = ds_map_create();
    Value discovered;
    VXCreateString(&discovered.raw(), "gamepad discovered");
    ds_map_replace(told, "event_type", discovered);
    ds_map_replace(told, "pad_index", 2);
    g_AsyncLoad = static_cast<int32_t>(told);
    level.stage.clear_console();
    Perform_Event(level.one, level.one, EVENT_OTHER, kAsyncSystem);
    g_AsyncLoad = -1;
    EXPECT_EQ(level.stage.console().rfind("gamepad discovered\n2", 0), 0U) << level.stage.console();
    level.stage.frames(1);
    EXPECT_EQ(gamepad_axis_value(2, gp_axislh), 0) << "within the dead zone";
}

}  // namespace
