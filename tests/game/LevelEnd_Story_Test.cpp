// Stories of the end of a level: what is stored and unlocked, and where its rows lead.

#include "tests/game/support_LevelEnd.h"
#include "tests/support/Solution.h"

using namespace names;

namespace {

bool Has(const LevelStory& level, const std::string& line)
{
    return level.stage.save_file().find(line + "\r\n") != std::string::npos;
}

std::string Levels(int number, int value)
{
    return "Level" + std::to_string(number) + "=\"" + std::to_string(value) + ".000000\"";
}

TEST(LevelEnd, TheSaveFileAfterTheFirstLevelByteForByte)
{
    Stage::Options options;
    options.save = "[preferencias]\r\ntutorial=\"false\"\r\nidioma=\"ingles\"\r\n";
    Stage stage(options);
    stage.room("room_level1");
    stage.walk(Solution_Of(1)).frames(20);
    ASSERT_EQ(stage.count(oFimFase), 1);
    const int played = static_cast<int>(stage.variable(stage.find(oClock), "levelTime"));
    EXPECT_GT(played, 5);
    const std::string time = "=\"" + std::to_string(played) + ".000000\"\r\n";
    EXPECT_EQ(stage.save_file(), "[Tempo]\r\nroom_level1" + time + "Total" + time +
                                     "Horas=\"0.000000\"\r\nMinutos=\"0.000000\"\r\nSegundos" +
                                     time +
                                     "[preferencias]\r\ntutorial=\"false\"\r\nidioma=\"ingles\"\r\n"
                                     "[Levels]\r\nLevel1=\"2.000000\"\r\nLevel2=\"1.000000\"\r\n");
    EXPECT_EQ(stage.count(oPlayerArrows), 0);
    EXPECT_EQ(stage.count(oSeta), 0);
    EXPECT_EQ(stage.count(oPause), 0) << "asleep";
    for (const Object row : {oProximo, oRecomecarPause, oVoltarMenu, oMenuFimFaseNovo})
        EXPECT_EQ(stage.count(row), 1);
    const std::string kept = stage.save_file();
    for (const int key : {int('W'), int('A'), int('S'), int('D'), int('Z'), int('P'), int('T')})
        stage.tap(key).frames(3);
    stage.frames(70);
    EXPECT_EQ(stage.room_name(), "room_level1") << "the figure's keys do nothing any more";
    EXPECT_EQ(stage.count(oTransicao), 0);
    EXPECT_EQ(stage.save_file(), kept);
    EXPECT_EQ(stage.variable(stage.find(oClock), "levelTime"), played) << "the clock stands";
}

TEST(LevelEnd, ALevelUnlocksTheNextAndLowersNothing)
{
    LevelStory level("onePlayer", "normal",
                     "[Levels]\r\nLevel5=\"2.000000\"\r\nLevel6=\"2.000000\"\r\n");
    Finish(level, 5);
    EXPECT_TRUE(Has(level, Levels(5, 2)));
    EXPECT_TRUE(Has(level, Levels(6, 2)));
    Finish(level, 6);
    EXPECT_TRUE(Has(level, Levels(7, 1)));
    Finish(level, 6);
    EXPECT_TRUE(Has(level, Levels(7, 1)));
    Finish(level, 100);
    EXPECT_TRUE(Has(level, Levels(100, 2)));
    EXPECT_TRUE(Has(level, Levels(101, 1)));
    level.stage.room("room_menu1").frames(2);
    Room_CreateInstance(0, 0, oControl.index);
    Room_CreateInstance(416, -52, oFinal.index);
    Room_CreateInstance(0, 0, oClock.index);
    Put(Room_CreateInstance(416, 0, oPlayerArrows.index), 416, 0);
    level.stage.frames(1).tap('W').frames(14);
    EXPECT_EQ(level.stage.save_file().find("Level0"), std::string::npos) << "no level ends here";
}

TEST(LevelEnd, EitherFigureEndsItForBoth)
{
    for (const bool second : {false, true}) {
        LevelStory level("twoPlayersOne");
        ASSERT_NE(level.two, nullptr);
        StandOutside(level, second ? level.two : level.one);
        level.stage.frames(1).tap(second ? kUp : 'W').frames(14);
        EXPECT_EQ(level.stage.count(oPlayerArrows), 0) << second;
        EXPECT_EQ(level.stage.count(oPlayerArrows2), 0) << second;
        EXPECT_EQ(level.stage.count(oFimFase), 1) << second;
        EXPECT_EQ(level.stage.count(oProximo), 1) << second;
        EXPECT_EQ(gameOver, 1);
        EXPECT_TRUE(Has(level, Levels(1, 2)));
    }
}

TEST(LevelEnd, TheRowsLeadOnAgainAndToTheMap)
{
    struct Row {
        int key;
        const char* from;
        const char* to;
    };
    for (const Row& row :
         {Row{'N', "room_level1", "room_level2"}, Row{'E', "room_level1", "room_level1"},
          Row{'M', "room_level1", "room_menu3"}, Row{'N', "room_level100", "room_level100"}}) {
        LevelStory level("onePlayer", "normal",
                         "[Levels]\r\nLevel11=\"2.000000\"\r\nLevel21=\"1.000000\"\r\n", row.from);
        WalkOut(level);
        level.stage.hold(row.key).frames(3);
        EXPECT_EQ(level.stage.count(oTransicao), 0) << "held, it only shows so";
        level.stage.release(row.key).frames(2);
        const bool stays = row.key == 'N' && std::string(row.from) == "room_level100";
        EXPECT_EQ(level.stage.count(oTransicao), stays ? 0 : 1) << row.key;
        level.stage.frames(62);
        EXPECT_EQ(level.stage.room_name(), row.to) << row.key;
        EXPECT_EQ(level.stage.count(oFimFase), stays ? 1 : 0) << row.key;
    }
}

TEST(LevelEnd, TheLastLevelHasAScreenOfItsOwn)
{
    const struct {
        const char* language;
        int level, frame;
    } screens[] = {
        {"ingles", 1, 0}, {"portugues", 99, 1}, {"ingles", 100, 2}, {"portugues", 100, 3}};
    LevelStory level;
    for (const auto& screen : screens) {
        idioma = screen.language;
        Finish(level, screen.level);
        EXPECT_EQ(level.stage.find(oFimFase)->image_index, screen.frame)
            << screen.language << screen.level;
        EXPECT_EQ(level.stage.find(oFimFase)->image_speed, 0);
        EXPECT_EQ(level.stage.count(oPersonagemFinal), screen.level == 100 ? 1 : 0);
    }
    level.stage.frames(60);
    for (const Object character : {oPersonagemFinal, oPersonagemFinal2}) {
        ASSERT_EQ(level.stage.count(character), 1);
        EXPECT_EQ(level.stage.find(character)->y, 188) << "risen";
        EXPECT_EQ(level.stage.find(character)->vspeed, 0);
    }
}

TEST(LevelEnd, BackspaceLeadsToTheFarthestPageByOneFade)
{
    LevelStory level("onePlayer", "normal",
                     "[Levels]\r\nLevel11=\"2.000000\"\r\nLevel91=\"1.000000\"\r\n");
    level.stage.clear_console();
    level.stage.hold(8).frames(5).release(8);
    EXPECT_EQ(level.stage.count(oTransicao), 1);
    EXPECT_EQ(level.stage.console(), "Abriu level 1!\nAbriu level 11!\nAbriu level 91!\n");
    level.stage.frames(20);
    EXPECT_EQ(level.stage.room_name(), "room_menu10");
}

// ---- the clock

TEST(Clock, CountsSecondsAndStoresThemOnlyAtTheEnd)
{
    const std::string stored =
        "[Tempo]\r\nTotal=\"3598.000000\"\r\nSegundos=\"58.000000\"\r\nMinutos=\"59."
        "000000\"\r\nHoras=\"0.000000\"\r\n";
    LevelStory level("onePlayer", "normal", stored);
    CInstance* clock = level.stage.find(oClock);
    const std::string before = level.stage.save_file();
    level.stage.frames(31);
    EXPECT_EQ(level.stage.variable(clock, "seconds"), 59);
    EXPECT_EQ(level.stage.variable(clock, "levelTime"), 1);
    level.stage.frames(30);
    EXPECT_EQ(level.stage.variable(clock, "seconds"), 0);
    EXPECT_EQ(level.stage.variable(clock, "minutes"), 0);
    EXPECT_EQ(level.stage.variable(clock, "hours"), 1);
    EXPECT_EQ(level.stage.variable(clock, "totalTime"), 3600);
    EXPECT_EQ(level.stage.save_file(), before);

    level.stage.tap('T').frames(3);
    clock = level.stage.find(oClock);
    EXPECT_EQ(level.stage.variable(clock, "totalTime"), 3598) << "a restart takes its time back";
    EXPECT_EQ(level.stage.variable(clock, "levelTime"), 0);
    level.Look();
    WalkOut(level);
    EXPECT_TRUE(Has(level, "room_level1=\"0.000000\"")) << "less than a second";
    EXPECT_TRUE(Has(level, "Total=\"3598.000000\""));
}

TEST(Clock, StandsWhenItDoesNotCountAndItsAlarmLapses)
{
    LevelStory level;
    contaTempo = 0;
    level.stage.frames(100);
    CInstance* clock = level.stage.find(oClock);
    EXPECT_EQ(level.stage.variable(clock, "totalTime"), 0);
    contaTempo = 1;
    level.stage.frames(100);
    EXPECT_EQ(level.stage.variable(clock, "totalTime"), 0) << "until it is armed anew";
}

// ---- the campaign begins anew

TEST(Campaign, TheWipeKeepsLanguageAndTime)
{
    const std::string full =
        "idioma=\"portugues\"\r\nmodo=\"twoPlayersOne\"\r\n[Levels]\r\nLevel1=\"2."
        "000000\"\r\nLevel2=\"1.000000\"\r\n"
        "[Tempo]\r\nTotal=\"3725.000000\"\r\nSegundos=\"5.000000\"\r\nMinutos=\"2."
        "000000\"\r\nHoras=\"1.000000\"\r\nroom_level1=\"9.000000\"\r\n";
    LevelStory level("onePlayer", "fast", full, "room_menu1");
    CInstance* caller = Room_CreateInstance(0, 0, oMenuConfirmaRecomeca.index);
    const auto wipe = [&] {
        RValue result;
        vxl_Script_scr_recomeca(caller, caller, result, 0, nullptr);
    };
    passaTela = 0;
    const std::string before = level.stage.save_file();
    wipe();
    EXPECT_EQ(level.stage.save_file(), before);
    EXPECT_EQ(level.stage.count(oTransicao), 0);

    passaTela = 1;
    wipe();
    EXPECT_EQ(level.stage.save_file(),
              "[Tempo]\r\nTotal=\"3725.000000\"\r\nHoras=\"1.000000\"\r\nMinutos=\"2."
              "000000\"\r\nSegundos=\"5.000000\"\r\n"
              "[preferencias]\r\ntutorial=\"false\"\r\nidioma=\"portugues\"\r\n");
    EXPECT_EQ(level.stage.global_text("idioma"), "portugues");
    level.stage.frames(14);
    EXPECT_EQ(level.stage.room_name(), "room_personagem");
    level.Enter("room_level1");
    EXPECT_EQ(level.stage.variable(level.stage.find(oClock), "totalTime"), 3725);
    EXPECT_EQ(level.stage.global_text("gameType"), "normal") << "a preference goes";
}

}  // namespace
