// Stories of the map: which icons are open, where the cursor leads, how pages turn.

#include <gtest/gtest.h>

#include "game/Gamepad.h"
#include "tests/support/Stage.h"

namespace {

Stage::Options Saved(const std::string& levels)
{
    Stage::Options options;
    options.save = "[preferencias]\r\ntutorial=\"false\"\r\n[Levels]\r\n" + levels;
    return options;
}

std::string Level(int number, int value)
{
    return "Level" + std::to_string(number) + "=\"" + std::to_string(value) + ".000000\"\r\n";
}

Object Icon(int level)
{
    return {oLevel1.index + level - 1};
}

bool Locked(Stage& stage, int level)
{
    return stage.find(Icon(level))->sprite_index == sBlock.index;
}

int Cursor(Stage& stage)
{
    return static_cast<int>(stage.variable(stage.find(oMenuFasesNovo), "mpos"));
}

// Runs out a fade; the rooms' names tell where it led.
std::string After(Stage& stage)
{
    stage.frames(80);
    return stage.room_name();
}

TEST(Map, AFreshFileHasTheFirstLevelOpenAndTheInstructionsBeforeIt)
{
    Stage stage(Saved(""));
    stage.room("room_menu1").frames(2);
    EXPECT_FALSE(Locked(stage, 1));
    for (int level = 2; level <= 10; ++level) EXPECT_TRUE(Locked(stage, level)) << level;
    EXPECT_EQ(Cursor(stage), 0);
    stage.tap(keyD).tap(keyEnter).frames(30);
    EXPECT_EQ(stage.room_name(), "room_menu1");  // a locked icon leads nowhere
    stage.tap(keyA).tap(keyEnter);
    EXPECT_EQ(After(stage), "room_tutorial");
    for (int page = 0; page < 4; ++page) stage.tap(keySpace).frames(1);
    EXPECT_EQ(stage.room_name(), "room_tutorial");
    stage.tap(keySpace);
    EXPECT_EQ(After(stage), "room_level1");
}

TEST(Map, TheCursorStartsAtTheLastLevelReachedAndWraps)
{
    Stage stage(Saved(Level(1, 2) + Level(2, 2) + Level(3, 1)));
    stage.room("room_menu1").frames(2);
    EXPECT_EQ(Cursor(stage), 2);
    EXPECT_EQ(stage.count(oFaseOK), 2);
    stage.tap(keyUp);
    EXPECT_EQ(Cursor(stage), 3);
    stage.tap(keyS);
    EXPECT_EQ(Cursor(stage), 2);
    for (int i = 0; i < 3; ++i) stage.tap(keyLeft).frames(1);
    EXPECT_EQ(Cursor(stage), 9);
    stage.tap(keyRight);
    EXPECT_EQ(Cursor(stage), 0);
    stage.tap(keyEnter);
    EXPECT_EQ(After(stage), "room_level1");  // finished once: no instructions
}

TEST(Map, AClickOnAnIconEntersItsLevelAndMovesTheCursor)
{
    Stage stage(Saved(Level(11, 2) + Level(12, 1)));
    stage.room("room_menu2").frames(2);
    EXPECT_EQ(Cursor(stage), 1);
    stage.mouse(260, 150).frames(1);  // level 13, locked
    EXPECT_EQ(Cursor(stage), 2);
    stage.click(260, 150).frames(20);
    EXPECT_EQ(stage.room_name(), "room_menu2");
    stage.click(100, 150);  // level 12, in the upper row of an even page
    EXPECT_EQ(After(stage), "room_level12");
}

TEST(Map, PagesTurnByArrowAndPadAndTheOldPageSlidesOut)
{
    Stage stage(Saved(""));
    stage.room("room_menu1").frames(2).click(800, 310);
    EXPECT_EQ(stage.room_name(), "room_menu2");
    EXPECT_EQ(stage.count(oTransicaoSlide), 1);
    stage.frames(14);
    EXPECT_EQ(stage.count(oTransicaoSlide), 0);
    EXPECT_EQ(stage.find(oMundo1p2)->x, 416);
    stage.pad(0).press(gp_shoulderl);
    stage.frames(20);
    EXPECT_EQ(stage.room_name(), "room_menu1");
    stage.room("room_menu10").frames(2);
    EXPECT_EQ(stage.count(oAvancaMundo), 0);
}

TEST(Map, BackspaceLeadsToTheTitleAndTheCrownEndsTheGame)
{
    Stage stage(Saved(Level(100, 2)));
    stage.room("room_menu10").frames(2);
    EXPECT_EQ(stage.count(oCoroaFinal), 1);
    stage.hold(keyBackspace).frames(5).release(keyBackspace);
    EXPECT_EQ(stage.count(oTransicao), 1);
    EXPECT_EQ(After(stage), "room_titulo");
    EXPECT_EQ(stage.global_text("roomAnterior"), "room_menu10");
}

}  // namespace
