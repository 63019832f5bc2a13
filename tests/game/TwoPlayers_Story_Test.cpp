// Stories of two figures in one level.

#include "tests/game/support_Level.h"

using namespace names;

namespace {

constexpr float kCell = 52;  // pixels

// ---- coming in and leaving

TEST(TwoPlayers, TheSecondFigureComesInBesideTheFirst)
{
    LevelStory level("twoPlayersTwo");
    ASSERT_NE(level.two, nullptr);
    EXPECT_AT(level.two, 416, 260);
    EXPECT_EQ(level.two->sprite_index, sPlayer2.index);
    EXPECT_EQ(level.stage.variable(level.stage.find(oControl), "s_p"), 2);
    EXPECT_EQ(LevelStory::Word(playerDoisPos, 0), "inicio");
    level.stage.tap('T').frames(4);
    level.Look();
    ASSERT_NE(level.two, nullptr) << "a restart brings both";
}

TEST(TwoPlayers, OrLeftBelowAboveOrNowhere)
{
    struct Case {
        int taken;  // cells around the first figure, right, left, below, above
        float x, y;
    };
    const float around[4][2] = {{416, 208}, {312, 208}, {364, 260}, {364, 156}};
    for (const Case& c : {Case{0, 416, 208}, Case{1, 312, 208}, Case{2, 364, 260},
                          Case{3, 364, 156}, Case{4, -1, -1}}) {
        LevelStory level;
        Put(level.one, 364, 208);
        Put(level.box, 624, 312);
        for (int i = 0; i < c.taken; ++i)  // boxes and walls alike are in the way
            Room_CreateInstance(around[i][0], around[i][1], i % 2 ? oWall.index : oMonte.index);
        level.stage.frames(1).tap('P').frames(2);
        level.Look();
        EXPECT_EQ(level.stage.global_text("playerMode"), "twoPlayersOne");
        if (c.x < 0) {
            EXPECT_EQ(level.two, nullptr);
            continue;
        }
        ASSERT_NE(level.two, nullptr) << c.taken;
        EXPECT_AT(level.two, c.x, c.y) << c.taken;
    }
}

TEST(TwoPlayers, TheModeGoesRoundAndIsStored)
{
    LevelStory level;
    level.Tap('S').Tap('A').Tap('A');
    ASSERT_EQ(undoAtual, 3);
    level.stage.tap('P').frames(1);
    level.Look();
    ASSERT_NE(level.two, nullptr);
    EXPECT_NE(level.stage.save_file().find("modo=\"twoPlayersOne\""), std::string::npos);
    EXPECT_EQ(undoAtualDois, 0);
    EXPECT_EQ(LevelStory::Word(playerDoisPos, 0), "inicio");
    for (int step = 1; step <= 3; ++step)
        EXPECT_EQ(LevelStory::Word(playerDoisPos, step), "parada");
    level.Tap('U');
    EXPECT_EQ(undoAtualDois, 0) << "nothing of its own to take back";

    level.stage.tap('P').frames(1);
    EXPECT_EQ(level.stage.count(oPlayerArrows2), 1);
    EXPECT_EQ(level.stage.variable(level.stage.find(oControl), "s_p"), 2);
    EXPECT_NE(level.stage.save_file().find("modo=\"twoPlayersTwo\""), std::string::npos);

    const float boxX = level.box->x;
    level.stage.tap('P');
    EXPECT_EQ(level.stage.count(oPlayerArrows2), 0) << "gone at once";
    level.stage.frames(2);
    EXPECT_EQ(level.box->x, boxX);
    EXPECT_EQ(level.stage.variable(level.stage.find(oControl), "s_p"), 0);
    EXPECT_NE(level.stage.save_file().find("modo=\"onePlayer\""), std::string::npos);
}

TEST(TwoPlayers, TheModeStaysWhileSomeoneWalks)
{
    LevelStory level("twoPlayersTwo");
    level.stage.tap('A').frames(2).tap('P').frames(20);
    EXPECT_EQ(level.stage.count(oPlayerArrows2), 1);
    level.stage.tap(kDown).frames(2).tap('P').frames(20);
    EXPECT_EQ(level.stage.count(oPlayerArrows2), 1);
    level.stage.tap('P').frames(2);
    EXPECT_EQ(level.stage.count(oPlayerArrows2), 0);
}

TEST(TwoPlayers, EachFigureHasKeysAndPicturesOfItsOwn)
{
    LevelStory level("twoPlayersOne");
    Put(level.two, 208, 156);
    level.stage.tap(kRight);
    EXPECT_EQ(level.two->sprite_index, sPlayerAndandoDireita2.index);
    level.stage.tap(kDown).frames(16);
    EXPECT_AT(level.two, 260, 156) << "between cells it keeps its way";
    EXPECT_AT(level.one, 364, 260);
    level.Tap('W');
    EXPECT_AT(level.one, 364, 208);
    EXPECT_AT(level.two, 260, 156);

    level.stage.tap('P').frames(1).tap('P').frames(1);
    for (const int key : {kLeft, kUp, kRight, kDown}) level.Tap(key);
    EXPECT_AT(level.one, 364, 208) << "alone, the arrows move nothing";
}

TEST(TwoPlayers, CharactersWearTheirOwnPictures)
{
    LevelStory level("twoPlayersOne");
    jogadorUm = "menina";
    jogadorDois = "menino";
    level.Enter("room_level1");
    EXPECT_EQ(level.one->sprite_index, sPlayer2.index);
    EXPECT_EQ(level.two->sprite_index, sPlayer.index);
    jogadorUm = "raposa";
    jogadorDois = "raposa";
    level.Enter("room_level1");
    EXPECT_EQ(level.one->sprite_index, sPlayer2.index);
    EXPECT_EQ(level.two->sprite_index, sPlayer.index);
}

// ---- in each other's way

TEST(TwoPlayers, AFigureIsAWallForTheOtherAndForBoxes)
{
    LevelStory level("twoPlayersOne");
    Put(level.one, 260, 208);
    Put(level.two, 312, 208);
    Put(level.box, 624, 312);
    level.stage.frames(1).hold('D').frames(20).release('D').frames(3);
    EXPECT_AT(level.one, 260, 208);
    EXPECT_AT(level.two, 312, 208);

    Put(level.box, 312, 208);
    Put(level.two, 364, 208);
    level.stage.frames(1).hold('D').frames(20).release('D').frames(3);
    EXPECT_AT(level.one, 260, 208);
    EXPECT_AT(level.box, 312, 208);
    EXPECT_EQ(LevelStory::Word(playerUmPos, int(undoAtual)), "parada");
    // The same from the other side.
    level.stage.hold(kLeft).frames(20).release(kLeft).frames(3);
    EXPECT_AT(level.two, 364, 208);
    EXPECT_AT(level.box, 312, 208);
}

TEST(TwoPlayers, FiguresThatMeetWalkBackOnceTheKeysAreUp)
{
    LevelStory level("twoPlayersOne");
    Put(level.box, 624, 312);
    Put(level.one, 260, 208);
    Put(level.two, 364, 208);
    level.stage.frames(1).hold('D').hold(kLeft).frames(20);
    EXPECT_GT(level.one->x, 260);
    EXPECT_LT(level.two->x, 364);
    const float stuck = level.one->x;
    level.stage.frames(10);
    EXPECT_EQ(level.one->x, stuck) << "as long as a key drives them";
    level.stage.release('D').frames(5);
    EXPECT_EQ(level.one->x, stuck) << "either key";
    level.stage.release(kLeft);
    level.Rest();
    EXPECT_AT(level.one, 260, 208);
    EXPECT_AT(level.two, 364, 208);
    EXPECT_EQ(LevelStory::Word(playerUmPos, int(undoAtual)), "parada");
    EXPECT_EQ(LevelStory::Word(playerDoisPos, int(undoAtualDois)), "parada");
    EXPECT_EQ(level.one->hspeed, 0);
    EXPECT_EQ(level.two->hspeed, 0);
}

TEST(TwoPlayers, APushThatRunsIntoTheOtherIsCalledOffInEachOfTheFourWays)
{
    struct Way {
        char one;
        int two;
        float x, y;
        const char* word;
        const char* flag;
    };
    for (const Way& way : {Way{'D', kLeft, 1, 0, "direita", "colidiuDireita"},
                           Way{'A', kRight, -1, 0, "esquerda", "colidiuEsquerda"},
                           Way{'W', kDown, 0, -1, "cima", "colidiuCima"},
                           Way{'S', kUp, 0, 1, "baixo", "colidiuBaixo"}}) {
        LevelStory level("twoPlayersOne");
        // Cells in a row, the first figure's is 0.
        const auto at = [&](CInstance* who, float n) {
            const float along = n * kCell - 1.5F * kCell;
            Put(who, way.x != 0 ? 390 + way.x * along : 364,
                way.y != 0 ? 208 + way.y * (along - kCell / 2) : 208);
        };
        at(level.one, 0);
        at(level.box, 1);
        at(level.two, 3);
        const float oneX = level.one->x, oneY = level.one->y;
        const float twoX = level.two->x, twoY = level.two->y;
        const float boxX = level.box->x, boxY = level.box->y;
        level.stage.frames(1).clear_console();
        level.stage.hold(way.one).hold(way.two).frames(15);
        EXPECT_NE(
            level.stage.console().find(std::string("Caixa indo pra ") + way.word + " bloqueada\n"),
            std::string::npos)
            << way.word;
        EXPECT_EQ(level.stage.variable(level.one, way.flag), 1) << way.word;
        EXPECT_NE(level.one->x + level.one->y, oneX + oneY) << "stopped between two cells";
        level.stage.release(way.one).release(way.two);
        level.Rest();
        EXPECT_AT(level.one, oneX, oneY) << way.word;
        EXPECT_AT(level.two, twoX, twoY) << way.word;
        // The box goes with player two, into the cell between them.
        EXPECT_AT(level.box, boxX + way.x * kCell, boxY + way.y * kCell) << way.word;
        EXPECT_EQ(level.stage.variable(level.one, way.flag), 0) << way.word;
        const std::string console = level.stage.console();
        EXPECT_NE(console.find("Caixa bateu no jogador 2 e está voltando\n"), std::string::npos);
        EXPECT_NE(console.find("Caixa bateu no jogador 1 e está voltando\n"), std::string::npos);
        EXPECT_EQ(LevelStory::Word(playerUmPos, int(undoAtual)), "parada") << way.word;
        EXPECT_EQ(LevelStory::Word(playerDoisPos, int(undoAtualDois)), "parada") << way.word;
        EXPECT_EQ(LevelStory::BoxWord(caixa, 0, int(undoAtual)), "parada") << way.word;
        EXPECT_EQ(LevelStory::BoxWord(caixaDois, 0, int(undoAtualDois)), "parada") << way.word;
    }
}

TEST(TwoPlayers, AStepTakenBackThatMeetsTheOtherKeepsTheStartOfTheHistory)
{
    LevelStory level("twoPlayersOne");
    Put(level.box, 624, 312);
    Put(level.one, 260, 208);
    Put(level.two, 156, 208);
    level.stage.frames(1).tap('D').frames(16);
    ASSERT_EQ(level.one->x, 312);
    level.stage.tap(kRight).frames(16);
    ASSERT_EQ(level.two->x, 208);
    level.stage.tap(kRight).frames(2).tap('Z').frames(40);
    EXPECT_AT(level.one, 312, 208);
    EXPECT_AT(level.two, 208, 208);
    EXPECT_EQ(LevelStory::Word(playerUmPos, 0), "inicio");
    level.stage.tap('S').frames(16).tap('Z').frames(30);
    EXPECT_AT(level.one, 312, 208);
    EXPECT_EQ(undoAtual, 0);
}

// ---- boxes end on the grid, whatever two figures do with them

// Player two stands beside the first figure as it looks his way, and then it pushes on
// downward: once the key is up its push is called off, and the box comes back with it.
TEST(TwoPlayers, AFigureThatTurnsTakesItsBoxAlong)
{
    LevelStory level("twoPlayersOne");
    Put(level.one, 260, 104);
    Put(level.two, 208, 156);
    Put(level.box, 260, 156);
    level.stage.frames(1).hold('S').hold('A').frames(4).release('A').frames(19);
    ASSERT_EQ(level.box->y, 156 + 23 * 4);
    level.stage.release('S');
    level.Rest();
    EXPECT_AT(level.one, 260, 156);
    EXPECT_AT(level.box, 260, 208);
    EXPECT_EQ(level.box->vspeed, 0);
}

// Player two walks down from above onto the box that the first figure pushes right.
TEST(TwoPlayers, ABoxBetweenTwoCellsIsNotPushedOutOfItsLine)
{
    LevelStory level("twoPlayersOne");
    Put(level.one, 312, 260);
    Put(level.box, 364, 260);
    Put(level.two, 416, 208);
    level.stage.frames(1).hold('D').frames(3).hold(kDown);
    for (int frame = 0; frame < 10; ++frame) {
        level.stage.frames(1);
        EXPECT_EQ(level.box->y, 260);
    }
    level.stage.release('D').release(kDown);
    level.Rest();
    for (const CInstance* each : {level.one, level.two, level.box}) {
        EXPECT_EQ(each->y, each == level.two ? 208 : 260);
        EXPECT_EQ(static_cast<int>(each->x) % 52, 0);
    }
}

// Player two walks back with his box while the first figure comes towards him: he is
// held up, and his box waits behind him instead of pushing him into the other.
TEST(TwoPlayers, ABoxOnItsWayBackWaitsForItsFigure)
{
    LevelStory level("twoPlayersOne");
    Put(level.one, 208, 260);
    Put(level.two, 312, 260);
    Put(level.box, 364, 260);
    level.stage.frames(1).tap(kRight).frames(16);
    ASSERT_EQ(level.two->x, 364);
    level.Tap('D');
    ASSERT_EQ(level.one->x, 260);
    level.stage.hold('D').frames(2).tap('U').frames(20);
    EXPECT_GE(level.two->x - level.one->x, kCell);
    EXPECT_EQ(level.box->x - level.two->x, kCell);
    level.stage.release('D').frames(60);
    EXPECT_AT(level.one, 260, 260);
    EXPECT_AT(level.two, 364, 260);
    EXPECT_AT(level.box, 416, 260);
}

// Player two wants to go back to a cell that the first figure has begun to push a box to:
// he stays, and so does his own box, as long as the push goes on.
TEST(TwoPlayers, ABoxStaysWithAFigureThatCannotGoBack)
{
    LevelStory level("twoPlayersOne");
    Put(level.one, 468, 260);
    Put(level.two, 364, 260);
    Put(level.box, 364, 208);
    CInstance* second = Room_CreateInstance(416, 260, oMonte.index);
    level.stage.frames(1).tap(kUp).frames(16);
    ASSERT_EQ(level.box->y, 156);
    level.stage.hold('A').frames(4).tap('U').frames(20).release('A').frames(60);
    EXPECT_AT(second, 364, 260);
    EXPECT_AT(level.one, 416, 260);
    EXPECT_AT(level.two, 364, 208);
    EXPECT_AT(level.box, 364, 156);
}

// Player two walks down after the first figure, whose key turns back towards him: once the
// keys are up he turns, and the first walks on.
TEST(TwoPlayers, AFigureThatIsRunIntoFromBehindWalksOn)
{
    LevelStory level("twoPlayersOne");
    Put(level.one, 312, 156);
    Put(level.two, 312, 104);
    Put(level.box, 312, 208);
    level.stage.frames(1).hold(kDown).hold('S').frames(3).release('S').frames(5);
    level.stage.hold('W').frames(2).release('W').release(kDown).frames(1);
    level.Rest();
    EXPECT_AT(level.one, 312, 208);
    EXPECT_AT(level.two, 312, 104);
    EXPECT_AT(level.box, 312, 260);
    EXPECT_EQ(level.one->vspeed, 0);
    EXPECT_EQ(level.two->vspeed, 0);
}

// The box of player two is held up on its way back, and he has come towards it again.
TEST(TwoPlayers, ABoxThatComesTowardsAFigureStopsAndIsPushed)
{
    LevelStory level("twoPlayersOne");
    Put(level.one, 208, 208);
    Put(level.two, 260, 104);
    Put(level.box, 260, 156);
    level.stage.frames(1);
    level.Tap(kDown);
    ASSERT_EQ(level.box->y, 208);
    level.stage.tap('U').hold('D').frames(13).hold(kDown).frames(1).release('D').frames(8);
    level.stage.release(kDown);
    level.Rest();
    EXPECT_AT(level.one, 208, 208);
    EXPECT_AT(level.two, 260, 156);
    EXPECT_AT(level.box, 260, 208);
    EXPECT_EQ(level.two->vspeed, 0);
    EXPECT_EQ(level.box->vspeed, 0);
}

// Each figure pushes a box into the cell between them: the first gives way with its own.
TEST(TwoPlayers, OfTwoBoxesThatMeetOneGoesBack)
{
    LevelStory level("twoPlayersOne");
    CInstance* second = Room_CreateInstance(416, 208, oMonte.index);
    Put(level.one, 260, 208);
    Put(level.box, 312, 208);
    Put(level.two, 468, 208);
    level.stage.frames(1).hold('D').hold(kLeft).frames(10).release('D').release(kLeft);
    level.Rest();
    EXPECT_AT(level.one, 260, 208);
    EXPECT_AT(level.box, 312, 208);
    EXPECT_AT(level.two, 416, 208);
    EXPECT_AT(second, 364, 208);
}

// In the frame in which it sets out on its way back, the first figure starts to push it up:
// that holds it, and it stays out of the undo.
TEST(TwoPlayers, ABoxThatSetsOutOnItsWayBackIsNotPushedOutOfItsLine)
{
    LevelStory level("twoPlayersOne");
    Put(level.one, 312, 312);
    Put(level.two, 208, 260);
    Put(level.box, 260, 260);
    level.stage.frames(1);
    level.Tap(kRight);
    ASSERT_EQ(level.box->x, 312);
    level.stage.hold('W').tap('U').release('W');
    level.Rest();
    EXPECT_AT(level.one, 312, 312);
    EXPECT_AT(level.two, 208, 260);
    EXPECT_AT(level.box, 312, 260);
    EXPECT_EQ(level.box->hspeed, 0);
}

// Player two strains against the wall above while the first figure pushes a box at him:
// where he was put back to is not free, though he has left it for a moment.
TEST(TwoPlayers, ABoxIsNotPushedIntoAFigureThatAWallPutsBack)
{
    for (const char* speed : {"fast", "normal", "slow"}) {
        LevelStory level("twoPlayersOne", speed);
        Put(level.two, 312, 104);
        Put(level.box, 312, 156);
        Put(level.one, 312, 208);
        level.stage.frames(1).hold(kUp).frames(3).hold('W').frames(5);
        EXPECT_EQ(level.box->y, 156) << speed;
        level.stage.release('W').release(kUp);
        level.Rest();
        EXPECT_AT(level.two, 312, 104) << speed;
        EXPECT_AT(level.box, 312, 156) << speed;
        EXPECT_AT(level.one, 312, 208) << speed;
    }
}

}  // namespace
