// Stories of walking: the grid, the three speeds, walls, and the record of steps.

#include <gtest/gtest.h>

#include <cmath>

#include "Names.h"
#include "tests/support/Stage.h"

using namespace names;

namespace {

Stage::Options AtSpeed(const std::string& word)
{
    Stage::Options options;
    options.save = "[preferencias]\r\nvelocidade=\"" + word + "\"\r\n";
    return options;
}

struct Speed {
    const char* word;
    int frames;  // a cell
    float imageSpeed;
};

// A box where no story needs it.
void PutBoxAside(Stage& stage)
{
    stage.find(oMonte)->SetPosition(624, 312);
}

class AtEachSpeed : public testing::TestWithParam<Speed> {};

TEST_P(AtEachSpeed, ATapWalksAWholeCellAndStopsThere)
{
    Stage stage(AtSpeed(GetParam().word));
    stage.room("room_level1").frames(2);
    ASSERT_EQ(stage.room_name(), "room_level1");
    const CInstance* figure = stage.find(oPlayerArrows);
    const float start = figure->x;
    stage.tap('D');
    EXPECT_FLOAT_EQ(figure->x, start + 52.0F / static_cast<float>(GetParam().frames));
    stage.frames(GetParam().frames - 2);
    EXPECT_LT(figure->x, start + 52);
    EXPECT_FLOAT_EQ(figure->image_speed, GetParam().imageSpeed);
    stage.frames(1);
    EXPECT_FLOAT_EQ(figure->x, start + 52);
    stage.frames(20);
    EXPECT_FLOAT_EQ(figure->x, start + 52);
    EXPECT_EQ(figure->y, 260);
    EXPECT_EQ(figure->hspeed, 0);
    EXPECT_EQ(figure->sprite_index, sPlayer.index);
}

TEST_P(AtEachSpeed, AHeldKeyChainsStepsWithoutAPause)
{
    Stage stage(AtSpeed(GetParam().word));
    stage.room("room_level1").frames(2);
    const CInstance* figure = stage.find(oPlayerArrows);
    stage.hold('A').frames(2 * GetParam().frames);
    EXPECT_FLOAT_EQ(figure->x, 364 - 104);
    EXPECT_EQ(figure->sprite_index, sPlayerAndandoEsquerda.index);
}

INSTANTIATE_TEST_SUITE_P(Speeds, AtEachSpeed,
                         testing::Values(Speed{"fast", 4, 0.7F}, Speed{"normal", 13, 0.3F},
                                         Speed{"slow", 26, 0.15F}),
                         [](const auto& speed) { return speed.param.word; });

TEST(Walk, AWordThatIsNoSpeedLeavesTheSpeedOfBefore)
{
    Stage stage(AtSpeed("warp"));
    stage.room("room_level1").frames(2);
    EXPECT_EQ(stage.global_text("gameType"), "warp");
    EXPECT_TRUE(std::isnan(stage.global("movePlayerSpeed")));
}

TEST(Walk, TheSpeedGoesRoundAndIsStoredAtOnce)
{
    Stage stage;
    stage.room("room_level1").frames(2);
    for (const Speed& next :
         {Speed{"fast", 4, 0.7F}, Speed{"slow", 26, 0.15F}, Speed{"normal", 13, 0.3F}}) {
        CInstance* figure = stage.find(oPlayerArrows);
        RValue result;
        vxl_Script_scr_change_speed(figure, figure, result, 0, nullptr);
        EXPECT_EQ(stage.global_text("gameType"), next.word);
        EXPECT_EQ(movePlayerSpeed, 52.0 / next.frames);
        EXPECT_NE(stage.save_file().find(std::string("velocidade=\"") + next.word + "\""),
                  std::string::npos);
    }
}

// The picture answers the key at once, between two cells too; the way waits for the cell.
TEST(Walk, TheWalkingPictureIsShownInTheFirstFrameOfAKey)
{
    Stage stage;
    stage.room("room_level1").frames(2);
    const CInstance* figure = stage.find(oPlayerArrows);
    stage.tap('D');
    EXPECT_EQ(figure->sprite_index, sPlayerAndandoDireita.index);
    stage.frames(3).hold('W').frames(1);
    EXPECT_EQ(figure->sprite_index, sPlayerAndandoCima.index);
    EXPECT_EQ(figure->x, 364 + 5 * 4);
    EXPECT_EQ(figure->y, 260);
    stage.release('W').frames(20);
    EXPECT_EQ(figure->x, 416);
    EXPECT_EQ(figure->sprite_index, sPlayer.index);
}

TEST(Walk, AWallStopsTheFigureInItsCellAndEachFrameAgainstItIsRecorded)
{
    Stage stage;
    stage.room("room_level1").frames(2);
    PutBoxAside(stage);
    const CInstance* figure = stage.find(oPlayerArrows);
    stage.hold('S').frames(13);  // to the row above the lower wall
    ASSERT_EQ(figure->y, 312);
    const double steps = stage.global("undoAtual");
    stage.frames(10);
    EXPECT_EQ(figure->y, 312);
    EXPECT_EQ(stage.global("undoAtual"), steps + 10);
    stage.release('S').frames(2);
    EXPECT_EQ(figure->vspeed, 0);
    stage.tap('W').frames(12);
    EXPECT_EQ(figure->y, 260);
}

TEST(Walk, TheFirstFrameOfALevelIsNotRecorded)
{
    Stage stage;
    stage.room("room_level1");
    CInstance* figure = stage.find(oPlayerArrows);
    stage.room("room_level1");
    figure = stage.find(oPlayerArrows);
    ASSERT_EQ(stage.variable(figure, "comecaJogo"), 0);
    stage.hold('D').frames(1);
    EXPECT_EQ(stage.global("undoAtual"), 0);
    EXPECT_EQ(stage.variable(figure, "comecaJogo"), 1);
    stage.frames(13);
    EXPECT_EQ(stage.global("undoAtual"), 1);
}

TEST(Walk, OfTwoKeysAtOnceTheLaterCodeLeadsAndBothAreRecorded)
{
    Stage stage;
    stage.room("room_level1").frames(2);
    PutBoxAside(stage);
    const CInstance* figure = stage.find(oPlayerArrows);
    stage.hold('A').hold('S').frames(1);
    EXPECT_EQ(figure->x, 364);
    EXPECT_EQ(figure->y, 264);
    EXPECT_EQ(stage.global("undoAtual"), 2);
}

TEST(Walk, TheConsoleTellsWhatAStepWillDo)
{
    Stage stage;
    stage.room("room_level1").frames(2);
    stage.clear_console();
    stage.tap('D');
    EXPECT_EQ(stage.console(), "O personagem foi pra direita sem caixa\nUma caixa ficou parada\n");
    stage.frames(15);
    stage.find(oMonte)->SetPosition(468, 260);
    stage.clear_console();
    stage.tap('D');
    EXPECT_EQ(stage.console(),
              "O personagem foi pra direita com caixa\nUma caixa foi movida pra direita\n");
    stage.frames(15);
    stage.find(oMonte)->SetPosition(416, 312);
    stage.find(oPlayerArrows)->SetPosition(416, 260);
    stage.clear_console();
    stage.tap('S');
    EXPECT_EQ(stage.console(), "O personagem ficou preso\nUma caixa não pode ser movida\n");
}

TEST(Walk, ALevelThatIsOverTakesNoKeys)
{
    Stage stage;
    stage.room("room_level1").frames(2);
    g_Global->Slots()[gameOver.slot] = RValue(1.0);
    stage.hold('D').frames(20);
    EXPECT_EQ(stage.find(oPlayerArrows)->x, 364);
}

}  // namespace
