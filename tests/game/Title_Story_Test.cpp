// From the logo to the first level, as a player goes: each way past the logo, the choice of
// the language, the title, and who sets what first.

#include <gtest/gtest.h>

#include <cmath>
#include <functional>

#include "Files/Object/Object_Main.h"
#include "Files/Variable/Variable_BuiltIn.h"
#include "game/Gamepad.h"
#include "tests/support/Stage.h"

namespace {

constexpr int kAsyncSystem = 75;  // subtype of the event
constexpr int kFade = 26;         // frames of a fade without a title

Stage::Options Saved(const std::string& text)
{
    Stage::Options options;
    options.save = text;
    return options;
}

const char kChosen[] = "[preferencias]\r\ntutorial=\"false\"\r\nidioma=\"portugues\"\r\n";

// Runs until the room stands, or gives up.
int FramesUntil(Stage& stage, const std::string& room, int patience)
{
    int frames = 0;
    while (stage.room_name() != room && frames < patience) stage.frames(1), ++frames;
    return frames;
}

struct Skip {
    const char* name;
    std::function<void(Stage&)> act;
    int frames;  // until the next room stands
};

// Full black comes in the 13th frame of a fade.
const Skip kSkips[] = {
    {"Wait", [](Stage&) {}, 179 + 12},
    {"Click", [](Stage& stage) { stage.frames(19).click(1, 1); }, 11},
    {"Space", [](Stage& stage) { stage.frames(19).tap(keySpace); }, 12},
    {"Enter", [](Stage& stage) { stage.frames(19).tap(keyEnter); }, 12},
    {"PadStart",
     [](Stage& stage) {
         stage.pad(0).press(gp_start);
         stage.frames(1);
     },
     12},
    {"HeldEnter", [](Stage& stage) { stage.hold(keyEnter).frames(9); }, 4},
};

class Logo : public testing::TestWithParam<Skip> {};

TEST_P(Logo, LeadsToTheLanguageOnceAndToTheTitleEverAfter)
{
    const struct {
        const char *save, *next;
    } ways[] = {{"", "room_idioma"}, {kChosen, "room_titulo"}};
    for (const auto& way : ways) {
        Stage stage(Saved(way.save));
        stage.frames(1);
        ASSERT_EQ(stage.room_name(), "room_intro");
        GetParam().act(stage);
        EXPECT_EQ(FramesUntil(stage, way.next, 300), GetParam().frames);
        EXPECT_EQ(stage.room_name(), way.next);
        EXPECT_EQ(stage.count(oTransicao), 1) << "one press, one fade";
        EXPECT_EQ(stage.save_file(), way.save) << "looking writes nothing";
    }
}

INSTANTIATE_TEST_SUITE_P(Ways, Logo, testing::ValuesIn(kSkips),
                         [](const auto& skip) { return skip.param.name; });

TEST(Title, TheNameIsPutTogetherOnceAndTheLogoKeepsToTheMiddle)
{
    Stage stage;
    stage.frames(2);
    CInstance* name = stage.find(oNome);
    ASSERT_NE(name, nullptr);
    name->x = 3;
    stage.find(oLogo)->y = 700;
    stage.frames(1);
    EXPECT_EQ(name->x, 427);
    EXPECT_EQ(name->y, 326);
    EXPECT_EQ(stage.find(oLogo)->y, 240);
    stage.frames(90);
    EXPECT_LT(name->image_index, 63);
    stage.frames(20);
    EXPECT_EQ(name->image_index, 63);
    stage.frames(40);
    EXPECT_EQ(name->image_index, 63);
}

TEST(Title, TheLogoComesOutOfTheBlackIn34Frames)
{
    Stage stage;
    stage.frames(33);
    EXPECT_GT(stage.variable(stage.find(oFundoLogo), "fadeAlpha"), 0);
    stage.frames(2);
    EXPECT_EQ(stage.variable(stage.find(oFundoLogo), "fadeAlpha"), 0);
}

TEST(Title, EachGlobalIsSetByTheFirstThatNeedsIt)
{
    Stage stage(Saved("[preferencias]\r\ntutorial=\"false\"\r\nmusicas=\"0.000000\"\r\n"));
    stage.frames(1);
    EXPECT_EQ(stage.global_text("roomAnterior"), "room_intro");
    EXPECT_EQ(stage.global("comeca"), 1);
    EXPECT_EQ(stage.global("auxiliarMusica"), 0) << "the sound was switched off";
    for (const char* later : {"targetRoom", "passaTela", "playerMode", "gameType", "gameOver"})
        EXPECT_TRUE(std::isnan(stage.global(later))) << later;
    EXPECT_EQ(stage.global_text("idioma"), "");

    stage.tap(keySpace);
    EXPECT_EQ(stage.global("targetRoom"), room_titulo.index);
    EXPECT_EQ(stage.find(oTransicao)->var(ownTargetRoom), room_titulo.index);
    FramesUntil(stage, "room_titulo", kFade);
    EXPECT_EQ(stage.global("passaTela"), 0);
    EXPECT_EQ(stage.global_text("idioma"), "ingles");
    stage.frames(150);
    EXPECT_EQ(stage.global("passaTela"), 1);
    EXPECT_TRUE(std::isnan(stage.global("movePlayerSpeed")));

    // By the keys alone to the first level: the players, the map, the instructions.
    stage.tap(keyEnter).frames(30);
    EXPECT_EQ(stage.room_name(), "room_personagem");
    EXPECT_EQ(stage.global_text("playerMode"), "onePlayer");
    stage.tap(keyUp).frames(1).tap(keyEnter).frames(30);
    EXPECT_EQ(stage.room_name(), "room_menu1");
    stage.tap(keyEnter).frames(30);
    for (int page = 0; page < 5; ++page) stage.tap(keyEnter).frames(1);
    stage.frames(80);
    EXPECT_EQ(stage.room_name(), "room_level1");
    EXPECT_EQ(stage.global_text("gameType"), "normal");
}

TEST(Title, APadThatComesOrGoesIsToldOnTheConsole)
{
    for (const char* word : {"gamepad discovered", "gamepad lost"}) {
        Stage stage;
        stage.room("room_titulo").frames(2);
        Value event;
        VXCreateString(&event.raw(), word);
        g_AsyncLoad = static_cast<int32_t>(ds_map_create());
        ds_map_replace(g_AsyncLoad, "event_type", event);
        ds_map_replace(g_AsyncLoad, "pad_index", 3);
        stage.clear_console();
        Perform_Event(stage.find(oTitulo), nullptr, EVENT_OTHER, kAsyncSystem);
        EXPECT_EQ(stage.console(), std::string(word) + "\n3\n");

        stage.find(oTitulo)->var(ligaDetectaControle) = 0;
        stage.clear_console();
        Perform_Event(stage.find(oTitulo), nullptr, EVENT_OTHER, kAsyncSystem);
        EXPECT_EQ(stage.console(), "") << "not listening";
        ds_map_destroy(g_AsyncLoad);
        g_AsyncLoad = -1;
    }
}

TEST(Title, TheSoundIsOnByDefault)
{
    Stage stage;
    stage.frames(1);
    EXPECT_EQ(stage.global("auxiliarMusica"), 1);
}

TEST(Title, TheCharactersRiseAfterTheFirstShowAndBringTheMenuOnce)
{
    Stage stage(Saved(kChosen));
    stage.room("room_titulo").frames(60);
    EXPECT_EQ(stage.count(oPersonagemCapa), 0);
    stage.tap(keyEnter).tap(keySpace).frames(2);
    EXPECT_EQ(stage.count(oTransicao), 0) << "the title takes no input yet";
    stage.frames(4);
    const CInstance* boy = stage.find(oPersonagemCapa);
    const CInstance* girl = stage.find(oPersonagemCapa2);
    ASSERT_TRUE(boy && girl);
    EXPECT_EQ(boy->x, -35);
    EXPECT_EQ(girl->x, 854 - 335);
    EXPECT_EQ(stage.find(oTitulo)->image_index, 64);
    stage.frames(20);
    EXPECT_EQ(boy->vspeed, -8);
    EXPECT_EQ(stage.count(oMenuNovo), 0);
    stage.frames(20);
    EXPECT_EQ(boy->y, 188);
    EXPECT_EQ(girl->y, 188);
    EXPECT_EQ(girl->vspeed, 0);
    EXPECT_EQ(stage.count(oMenuNovo), 1);
    EXPECT_EQ(stage.count(oConfiguracoes), 1);
    EXPECT_EQ(stage.count(oGooglePlus), 0) << "of touch platforms alone";

    // The show starts again after five seconds and adds nothing.
    const double shown = stage.find(oTitulo)->image_index;
    stage.frames(120);
    EXPECT_LT(stage.find(oTitulo)->image_index, shown);
    stage.frames(400);
    EXPECT_EQ(stage.count(oPersonagemCapa), 1);
    EXPECT_EQ(stage.count(oMenuNovo), 1);
}

struct Choice {
    const char* name;
    std::function<void(Stage&)> act;
    const char* word;
};

const Choice kChoices[] = {
    {"EnterTakesTheFirst", [](Stage& stage) { stage.tap(keyEnter); }, "ingles"},
    {"RightThenSpace", [](Stage& stage) { stage.tap(keyRight).frames(2).tap(keySpace); },
     "portugues"},
    {"LeftWrapsAround", [](Stage& stage) { stage.tap(keyA).frames(2).tap(keyEnter); }, "portugues"},
    {"TwiceRightIsBack",
     [](Stage& stage) { stage.tap(keyD).frames(1).tap(keyRight).frames(1).tap(keyEnter); },
     "ingles"},
    {"ClickOnTheFirst", [](Stage& stage) { stage.click(300, 180); }, "ingles"},
    {"ClickOnTheSecond", [](Stage& stage) { stage.click(540, 180); }, "portugues"},
};

class LanguageChoice : public testing::TestWithParam<Choice> {};

TEST_P(LanguageChoice, IsSavedAndLeadsToTheTitle)
{
    Stage stage;
    stage.frames(1).tap(keySpace).frames(40);
    ASSERT_EQ(stage.room_name(), "room_idioma");
    GetParam().act(stage);
    EXPECT_EQ(stage.save_file(), std::string("[preferencias]\r\ntutorial=\"false\"\r\nidioma=\"") +
                                     GetParam().word + "\"\r\n");
    FramesUntil(stage, "room_titulo", kFade);
    EXPECT_EQ(stage.room_name(), "room_titulo");
    EXPECT_EQ(stage.global_text("idioma"), GetParam().word);
}

INSTANTIATE_TEST_SUITE_P(Ways, LanguageChoice, testing::ValuesIn(kChoices),
                         [](const auto& choice) { return choice.param.name; });

TEST(Title, TheCursorFollowsTheMouseAndMarksItsButton)
{
    Stage stage;
    stage.room("room_idioma").frames(2);
    EXPECT_EQ(stage.find(oIngles)->image_index, 1);
    stage.mouse(540, 180).frames(2);
    EXPECT_EQ(stage.variable(stage.find(oMenuIdiomaNovo), "mpos"), 1);
    EXPECT_EQ(stage.find(oIngles)->image_index, 0);
    EXPECT_EQ(stage.find(oPortugues)->image_index, 1);
    stage.click(60, 400).frames(3);
    EXPECT_EQ(stage.room_name(), "room_idioma") << "a click beside the buttons";
    EXPECT_EQ(stage.count(oTransicao), 0);
}

}  // namespace
