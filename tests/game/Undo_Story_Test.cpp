// Stories of undo: one step back after each step taken, never more.

#include "tests/game/support_Level.h"

using namespace names;

namespace {

TEST(Undo, AStepIsWalkedBackwards)
{
    LevelStory level;
    level.Tap('D');
    ASSERT_EQ(level.one->x, 416);
    EXPECT_EQ(liberaUndo, 1);
    level.stage.tap('Z');
    EXPECT_EQ(level.one->x, 412) << "it moves in the frame of the key";
    EXPECT_EQ(level.one->sprite_index, sPlayerAndandoDireita.index) << "it does not turn round";
    level.stage.frames(13);
    EXPECT_AT(level.one, 364, 260);
    EXPECT_EQ(level.one->hspeed, 0);
    EXPECT_EQ(undoAtual, 0);
    EXPECT_EQ(liberaUndo, 0);
}

TEST(Undo, EachOfTheFourWaysTakesItsBoxAlong)
{
    struct Way {
        char key;
        float x, y;
    };
    for (const char* speed : {"fast", "normal", "slow"}) {
        LevelStory level("onePlayer", speed);
        for (const Way& way :
             {Way{'W', 0, -52}, Way{'S', 0, 52}, Way{'A', -52, 0}, Way{'D', 52, 0}}) {
            Put(level.one, 364 - way.x, 208 - way.y);
            Put(level.box, 364, 208);
            level.stage.frames(1).tap(way.key).frames(30);
            ASSERT_EQ(level.box->x, 364 + way.x) << way.key;
            level.stage.tap('Z').frames(30);
            EXPECT_AT(level.one, 364 - way.x, 208 - way.y) << way.key;
            EXPECT_AT(level.box, 364, 208) << way.key;
            EXPECT_EQ(level.box->hspeed, 0);
            EXPECT_EQ(level.box->vspeed, 0);
        }
    }
}

TEST(Undo, OfTwoStepsTwoUndosTakeBackOne)
{
    LevelStory level;
    level.Tap('D').Tap('D');
    ASSERT_EQ(level.one->x, 468);
    level.Tap('Z').Tap('Z');
    EXPECT_EQ(level.one->x, 416);
    EXPECT_EQ(undoAtual, 1);
}

TEST(Undo, BumpingBetweenUndosLeadsBackToTheFirstStep)
{
    LevelStory level;
    Put(level.box, 624, 208);
    level.Tap('S').Tap('D').Tap('D').Tap('A');
    ASSERT_EQ(undoAtual, 4);
    ASSERT_EQ(level.one->x, 416);
    for (const float back : {468, 416, 364}) {
        level.Tap('Z');
        EXPECT_AT(level.one, back, 312);
        level.Tap('S');  // against the lower wall
        EXPECT_EQ(liberaUndo, 1);
    }
    level.Tap('Z');
    EXPECT_AT(level.one, 364, 260);
    EXPECT_EQ(undoAtual, 0);
    level.Tap('Z');
    EXPECT_AT(level.one, 364, 260) << "nothing is left";
}

TEST(Undo, WhatStoodStillAboveTheStepIsDropped)
{
    LevelStory level;
    Put(level.box, 624, 208);
    level.Tap('S');
    level.stage.hold('S').frames(9).release('S').frames(3);
    ASSERT_EQ(undoAtual, 10) << "each frame against the wall is recorded";
    EXPECT_EQ(LevelStory::Word(playerUmPos, 10), "parada");
    level.Tap('Z');
    EXPECT_AT(level.one, 364, 260);
    EXPECT_EQ(undoAtual, 0);
}

TEST(Undo, ABumpAloneLeavesNothingToTakeBack)
{
    LevelStory level;
    Put(level.one, 364, 312);
    level.Tap('S');
    ASSERT_EQ(undoAtual, 1);
    level.Tap('Z');
    EXPECT_AT(level.one, 364, 312);
    EXPECT_EQ(undoAtual, 0);
}

TEST(Undo, ATargetIsUncoveredOnTheWayBack)
{
    LevelStory level;
    Room_CreateInstance(624, 312, oFechado2.index);  // keeps the gate shut
    Put(level.one, 416, 208);
    Put(level.box, 468, 208);
    level.Tap('D');
    ASSERT_EQ(level.stage.count(oAberto2), 1);
    level.stage.tap('Z');
    EXPECT_EQ(level.stage.count(oAberto2), 0) << "in the first frame off the cell";
    level.Rest();
    EXPECT_EQ(level.box->x, 468);
    EXPECT_EQ(level.stage.count(oFechado2), 2);
    level.Tap('D');
    EXPECT_EQ(level.stage.count(oAberto2), 1) << "and can be covered again";
}

TEST(Undo, IsRefusedAtTheStartWhileWalkingAndOnceSolved)
{
    LevelStory level;
    level.Tap('Z');
    EXPECT_EQ(undoAtual, 0);
    EXPECT_AT(level.one, 364, 260);

    level.stage.tap('D').frames(3).tap('Z').frames(16);
    EXPECT_EQ(level.one->x, 416);
    EXPECT_EQ(liberaUndo, 1) << "refused without being used up";

    level.stage.hold('D').frames(30).tap('Z').release('D').frames(20);
    EXPECT_GT(level.one->x, 416) << "on the grid, but with a speed";

    Put(level.one, 416, 208);
    Put(level.box, 468, 208);
    level.Tap('D');
    ASSERT_EQ(moveCaixa, 0);
    level.Tap('Z');
    EXPECT_EQ(level.box->x, 520);
    EXPECT_EQ(level.one->x, 468);
}

TEST(Undo, ARestartForgetsTheHistoryAndStaleWordsAreNeverRead)
{
    LevelStory level;
    level.Tap('D').Tap('D').Tap('D');
    level.stage.tap('T').frames(4);
    level.Look();
    EXPECT_EQ(undoAtual, 0);
    EXPECT_EQ(liberaUndo, 0);
    EXPECT_AT(level.one, 364, 260);
    level.Tap('Z');
    EXPECT_AT(level.one, 364, 260);
    level.Tap('A').Tap('Z').Tap('Z');
    EXPECT_AT(level.one, 364, 260);
    EXPECT_EQ(undoAtual, 0);
}

TEST(Undo, TheOnScreenButtonMovesFourPixelsAtAnySpeed)
{
    LevelStory level("onePlayer", "fast");
    Put(level.one, 312, 260);
    Put(level.box, 364, 260);
    level.stage.tap('D').frames(8);
    ASSERT_EQ(level.box->x, 416);
    level.stage.click(300, 435).frames(20);
    EXPECT_EQ(level.one->x, 364) << "there is no button on a desktop";
    touchControls = 1;
    level.stage.frames(1);
    EXPECT_EQ(level.stage.variable(level.stage.find(oControl), "s_z"), 0);
    level.stage.click(854 / 2 - 94, 435).frames(3);
    EXPECT_EQ(level.one->x, 364) << "beside the button";
    level.stage.click(854 / 2 - 165, 470);
    EXPECT_EQ(level.one->x, 364 - 8) << "two frames of 4 pixels";
    EXPECT_EQ(level.stage.variable(level.stage.find(oControl), "s_z"), 2);
    level.Rest();
    EXPECT_EQ(level.one->x, 312);
    EXPECT_EQ(level.box->x, 364);
}

// Only a frame in which no key went down stops what walks back.
TEST(Undo, AKeyThatGoesDownAsItLandsSendsItOnForAnotherCell)
{
    LevelStory level;
    level.Tap('D').Tap('D');
    ASSERT_EQ(level.one->x, 468);
    level.stage.tap('Z').frames(12);
    ASSERT_EQ(level.one->x, 416);
    level.stage.tap('X').frames(30);
    EXPECT_EQ(level.one->x, 364);
}

// Else a box that player two has moved from its figure's side would walk into the wall.
TEST(Undo, TheBoxStopsInItsCellThoughKeysGoDownAsItLands)
{
    LevelStory level("twoPlayersOne");
    Put(level.one, 156, 208);
    Put(level.box, 208, 208);
    Put(level.two, 260, 156);
    level.stage.frames(1);
    level.Tap('D').Tap(kDown);
    ASSERT_EQ(level.box->y, 260);
    level.stage.tap('Z').frames(12).tap('X').frames(12).tap('X').frames(30);
    EXPECT_AT(level.box, 208, 260);
}

// Player two has pushed another box to where this one came from.
TEST(Undo, ABoxGoesBackOnlyWhereThereIsRoom)
{
    LevelStory level("twoPlayersOne");
    CInstance* second = Room_CreateInstance(312, 156, oMonte.index);
    Put(level.one, 260, 208);
    Put(level.box, 312, 208);
    Put(level.two, 312, 104);
    level.stage.frames(1);
    level.Tap('D');
    ASSERT_EQ(level.box->x, 364);
    Put(level.one, 312, 260);
    level.stage.frames(1);
    level.Tap(kDown);
    ASSERT_EQ(second->y, 208);
    level.Tap('Z');
    EXPECT_AT(level.one, 260, 260);
    EXPECT_AT(level.box, 364, 208) << "it stays out of the undo";
    EXPECT_AT(second, 312, 208);
}

TEST(Undo, TheHistoriesOfTheFiguresAreApart)
{
    LevelStory level("twoPlayersOne");
    ASSERT_NE(level.two, nullptr);
    Put(level.two, 208, 156);
    Put(level.box, 260, 156);
    level.Tap('D').Tap(kRight);
    EXPECT_EQ(level.box->x, 312);
    EXPECT_EQ(undoAtual, 1);
    EXPECT_EQ(undoAtualDois, 1);
    EXPECT_EQ(LevelStory::BoxWord(caixa, 0, 1), "parada");
    EXPECT_EQ(LevelStory::BoxWord(caixaDois, 0, 1), "direita");
    level.Tap('Z');
    EXPECT_EQ(level.one->x, 364);
    EXPECT_EQ(level.box->x, 312) << "player one moved no box";
    level.Tap('U');
    EXPECT_EQ(level.two->x, 208);
    EXPECT_EQ(level.box->x, 260);
    EXPECT_EQ(undoAtual, 0);
    EXPECT_EQ(undoAtualDois, 0);
}

}  // namespace
