// Stories of boxes, targets and the gate.

#include <gtest/gtest.h>

#include "Files/Object/Instance_Main.h"
#include "Names.h"
#include "tests/support/Solution.h"
#include "tests/support/Stage.h"

using namespace names;

namespace {

// Level 1 with the figure and its box put where the story begins.
class Push : public testing::Test {
protected:
    void SetUp() override
    {
        stage.room("room_level1").frames(2);
        ASSERT_EQ(stage.room_name(), "room_level1");
        figure = stage.find(oPlayerArrows);
        box = stage.find(oMonte);
    }
    void Put(float figureX, float figureY, float boxX, float boxY)
    {
        figure->SetPosition(figureX, figureY);
        box->SetPosition(boxX, boxY);
    }

    Stage stage;
    CInstance* figure = nullptr;
    CInstance* box = nullptr;
};

TEST_F(Push, TheBoxLeadsByItsBodyFrameByFrame)
{
    Put(208, 208, 260, 208);
    stage.hold('D');
    for (int frame = 1; frame <= 13; ++frame) {
        stage.frames(1);
        EXPECT_EQ(figure->x, 208 + 4 * frame);
        EXPECT_EQ(box->x, 260 + 4 * frame);
        EXPECT_EQ(figure->sprite_index, sPlayerAndandoDireitaEmpurrando.index);
    }
    stage.release('D').frames(3);
    EXPECT_EQ(figure->x, 260);
    EXPECT_EQ(box->x, 312);
    EXPECT_EQ(figure->sprite_index, sPlayer.index);
}

TEST_F(Push, EachOfTheFourWaysMovesTheBoxOneCell)
{
    struct Way {
        char key;
        float x, y;
        int32_t pushing;
    };
    for (const Way& way : {Way{'W', 0, -52, sPlayerAndandoCimaEmpurrando.index},
                           Way{'S', 0, 52, sPlayerAndandoFrenteEmpurrando.index},
                           Way{'A', -52, 0, sPlayerAndandoEsquerdaEmpurrando.index},
                           Way{'D', 52, 0, sPlayerAndandoDireitaEmpurrando.index}}) {
        Put(364 - way.x, 208 - way.y, 364, 208);
        stage.frames(1).tap(way.key);
        EXPECT_EQ(figure->sprite_index, way.pushing) << way.key;
        stage.frames(14);
        EXPECT_EQ(box->x, 364 + way.x) << way.key;
        EXPECT_EQ(box->y, 208 + way.y) << way.key;
        EXPECT_EQ(figure->x, 364) << way.key;
        EXPECT_EQ(figure->y, 208) << way.key;
    }
}

TEST_F(Push, ABoxBehindTheBoxStopsBoth)
{
    Put(208, 208, 260, 208);
    const CInstance* second = Room_CreateInstance(312, 208, oMonte.index);
    stage.hold('D').frames(20);
    EXPECT_EQ(figure->x, 208);
    EXPECT_EQ(box->x, 260);
    EXPECT_EQ(second->x, 312);
    EXPECT_EQ(figure->hspeed, 4);  // stands still with its speed and its effort
    EXPECT_EQ(figure->sprite_index, sPlayerAndandoDireitaEmpurrando.index);
    stage.release('D').frames(2);
    EXPECT_EQ(figure->hspeed, 0);
}

TEST_F(Push, OfTwoBoxesSideBySideOnlyTheOneInLineMoves)
{
    Put(208, 208, 260, 208);
    const CInstance* beside = Room_CreateInstance(260, 260, oMonte.index);
    stage.tap('D').frames(14);
    EXPECT_EQ(box->x, 312);
    EXPECT_EQ(beside->x, 260);
    EXPECT_EQ(beside->y, 260);
}

TEST_F(Push, AWallAndTheShutGateStopTheBox)
{
    Put(208, 260, 156, 260);
    stage.hold('A').frames(20);
    EXPECT_EQ(box->x, 156);
    EXPECT_EQ(figure->x, 208);
    EXPECT_EQ(figure->sprite_index, sPlayerAndandoEsquerdaEmpurrando.index);
    stage.release('A').frames(2);

    Put(416, 156, 416, 104);
    stage.hold('W').frames(20);
    EXPECT_EQ(box->y, 104);
    EXPECT_EQ(figure->y, 156);
    EXPECT_EQ(figure->sprite_index, sPlayerAndandoCimaEmpurrando.index);
}

TEST_F(Push, TheShutGateStopsTheFigure)
{
    Put(416, 104, 260, 208);
    stage.hold('W').frames(20);
    EXPECT_EQ(figure->y, 104);
}

TEST_F(Push, ATargetIsCoveredOnTheGridAndUncoveredInTheFirstFrameOff)
{
    // A second target keeps the gate shut.
    Room_CreateInstance(624, 260, oFechado2.index);
    Put(416, 208, 468, 208);
    stage.hold('D').frames(12);
    EXPECT_EQ(stage.count(oAberto2), 0);
    stage.frames(1);
    EXPECT_EQ(box->x, 520);
    EXPECT_EQ(stage.count(oAberto2), 1);
    EXPECT_EQ(stage.count(oFechado2), 1);
    EXPECT_EQ(stage.global("moveCaixa"), 1);
    stage.frames(1);
    EXPECT_EQ(box->x, 524);
    EXPECT_EQ(stage.count(oAberto2), 0);
    EXPECT_EQ(stage.count(oFechado2), 2);
    EXPECT_EQ(stage.find(oFechado2, 1)->x, 520);
}

TEST_F(Push, TheLastTargetInPassingOpensTheGateAndFreezesTheBox)
{
    const float gateX = stage.find(oPortaoFechado)->x, gateY = stage.find(oPortaoFechado)->y;
    Put(416, 208, 468, 208);
    stage.hold('D').frames(40);
    EXPECT_EQ(box->x, 520);
    EXPECT_EQ(figure->x, 468);
    EXPECT_EQ(stage.global("moveCaixa"), 0);
    EXPECT_EQ(stage.count(oPortaoFechado), 0);
    ASSERT_EQ(stage.count(oPortaoAberto), 1);
    EXPECT_EQ(stage.find(oPortaoAberto)->x, gateX);
    EXPECT_EQ(stage.find(oPortaoAberto)->y, gateY);
    ASSERT_EQ(stage.count(oSeta), 1);
    EXPECT_EQ(stage.find(oSeta)->x, 416);
    EXPECT_EQ(stage.find(oSeta)->y, 0);
    EXPECT_FLOAT_EQ(stage.find(oSeta)->image_speed, 0.3F);
}

TEST_F(Push, OnceSolvedNoBoxMovesAndTheFigureStillWalks)
{
    const CInstance* aside = Room_CreateInstance(260, 260, oMonte.index);
    Put(416, 208, 468, 208);
    stage.tap('D').frames(14);
    ASSERT_EQ(stage.global("moveCaixa"), 0);
    figure->SetPosition(208, 260);
    stage.hold('D').frames(20);
    EXPECT_EQ(aside->x, 260);
    EXPECT_EQ(figure->x, 208);
    stage.release('D').frames(2).tap('W').frames(14);
    EXPECT_EQ(figure->y, 208);
}

TEST_F(Push, TheSecondPairOfTargetsKeepsACountOfItsOwn)
{
    Room_CreateInstance(520, 260, oFechado.index);
    Put(416, 260, 468, 260);
    stage.tap('D').frames(14);
    EXPECT_EQ(stage.count(oAberto), 1);
    EXPECT_EQ(stage.count(oPortaoFechado), 0);
}

TEST_F(Push, ABoxKeepsTheDepthOfItsRowUntilItLandsOnAnother)
{
    Put(364, 156, 364, 208);
    stage.frames(1);
    EXPECT_EQ(box->depth, -4);
    stage.hold('S').frames(12);
    EXPECT_EQ(box->depth, -4);
    stage.frames(2);
    EXPECT_EQ(box->depth, -5);
    box->SetPosition(364, 520);
    stage.frames(2);
    EXPECT_EQ(box->depth, -5);
}

class Solved : public testing::TestWithParam<const char*> {};

TEST_P(Solved, TheStoredSolutionOpensTheGateAndLeadsOut)
{
    Stage::Options options;
    options.save = std::string("[preferencias]\r\nvelocidade=\"") + GetParam() + "\"\r\n";
    Stage stage(options);
    for (const int level : {1, 8}) {
        stage.room("room_level" + std::to_string(level)).frames(2);
        stage.walk(Solution_Of(level));
        EXPECT_EQ(stage.count(oPortaoAberto), 1) << level;
        EXPECT_EQ(stage.count(oFechado) + stage.count(oFechado2), 0) << level;
        EXPECT_EQ(stage.count(oPlayerArrows), 0) << "gone out of level " << level;
        EXPECT_EQ(stage.count(oFimFase), 1) << level;
    }
}

INSTANTIATE_TEST_SUITE_P(Speeds, Solved, testing::Values("fast", "normal", "slow"),
                         [](const auto& speed) { return speed.param; });

}  // namespace
