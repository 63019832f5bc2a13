// Stories of the pause and of the options, and of what their buttons switch.

#include <algorithm>
#include <functional>

#include "Files/IO/VirtualKeys.h"
#include "Files/Run/Run_State.h"
#include "Files/Sprite/CSprite.h"
#include "game/Gamepad.h"
#include "tests/game/support_Touch.h"

using namespace names;

namespace {

constexpr Object kRows[] = {oContinuar, oRecomecarPause, oVoltarMenu};
constexpr Object kButtons[] = {oSons, oIdioma, oAjuda, oCreditos, oGameSpeed};

// ---- music that a story turns on and off; what is done to it is noted
bool g_playing, g_paused;
std::vector<std::string> g_heard;

void IsPlaying(RValue& result, CInstance*, CInstance*, int, RValue*)
{
    SetReal(result, g_playing);
}
void IsPaused(RValue& result, CInstance*, CInstance*, int, RValue*)
{
    SetReal(result, g_paused);
}
void Play(RValue&, CInstance*, CInstance*, int, RValue* args)
{
    char line[64];
    snprintf(line, sizeof line, "play %g at %g%s", REAL_RValue(&args[0]), REAL_RValue(&args[1]),
             REAL_RValue(&args[2]) > 0.5 ? " looping" : "");
    g_heard.push_back(line);
}
void Gain(RValue&, CInstance*, CInstance*, int, RValue* args)
{
    char line[64];
    snprintf(line, sizeof line, "gain %g in %g", REAL_RValue(&args[1]), REAL_RValue(&args[2]));
    g_heard.push_back(line);
}
void PauseAll(RValue&, CInstance*, CInstance*, int, RValue*)
{
    g_paused = true;
}
void ResumeAll(RValue&, CInstance*, CInstance*, int, RValue*)
{
    g_paused = false;
}
void BringMusic(bool playing)
{
    g_playing = playing;
    g_paused = false;
    g_heard.clear();
    Serve("audio_is_playing", IsPlaying);
    Serve("audio_is_paused", IsPaused);
    Serve("audio_play_sound", Play);
    Serve("audio_sound_gain", Gain);
    Serve("audio_pause_all", PauseAll);
    Serve("audio_resume_all", ResumeAll);
}
bool Heard(const std::string& line)
{
    return std::find(g_heard.begin(), g_heard.end(), line) != g_heard.end();
}
std::string Sounds(Sound which)
{
    return "play " + std::to_string(which.index) + " at 1";
}

int Sprites()
{
    int there = 0;
    for (int32_t i = 0; i < Sprite_Count(); ++i) there += Sprite_Data(i) != nullptr;
    return there;
}

// ---- a level, or the title, with hands on it
struct PanelStory : Stage {
    explicit PanelStory(const char* where, const std::string& save = "") : Stage(Saved(save))
    {
        g_DrawEnabled = false;  // quicker
        room(where).frames(std::string(where) == "room_titulo" ? 150 : 3);
        g_DrawEnabled = true;
        musica = 5;
        frames(1);
    }
    static Options Saved(const std::string& more)
    {
        Options options_;
        options_.save = "[preferencias]\r\ntutorial=\"false\"\r\n" + more;
        return options_;
    }
    PanelStory& key(int code)
    {
        tap(code).frames(1);
        return *this;
    }
    PanelStory& button(int which)
    {
        pad(0).press(which);
        frames(4);
        pad(0).release(which);
        frames(4);
        return *this;
    }
    int cursor(Object menu_)
    {
        CInstance* controller = find(menu_);
        return controller ? static_cast<int>(variable(controller, "mpos")) : -1;
    }
    void point(Object menu_, int entry) { find(menu_)->var(mpos) = entry; }
    bool has(const std::string& line) const
    {
        return save_file().find(line + "\r\n") != std::string::npos;
    }
    std::string after()
    {
        frames(80);
        return room_name();
    }
};

struct Pause : PanelStory {
    explicit Pause(const char* where = "room_level1", const std::string& save = "")
        : PanelStory(where, save)
    {
    }
    bool paused_() { return variable(find(oPause), "paused") == 1; }
    using PanelStory::cursor;
    int cursor() { return cursor(oMenuPauseNovo); }
};

struct OptionsScreen : PanelStory {
    explicit OptionsScreen(const std::string& save = "") : PanelStory("room_titulo", save)
    {
        key(keyDown).key(keyEnter);
    }
    using PanelStory::cursor;
    int cursor() { return cursor(oMenuOptionsNovo); }
};

// ---- open and closed

TEST(PauseScreen, StopsTheLevelAndTheClockAndEveryWayOutLetsThemGoOn)
{
    const std::function<void(Pause&)> ways[] = {
        [](Pause& level) { level.key(keyEnter); },    [](Pause& level) { level.key(keySpace); },
        [](Pause& level) { level.key('C'); },         [](Pause& level) { level.button(gp_start); },
        [](Pause& level) { level.button(gp_face2); }, [](Pause& level) { level.button(gp_face1); },
        [](Pause& level) { level.click(427, 145); },
    };
    for (const auto& way : ways) {
        SCOPED_TRACE(&way - ways);
        Pause level;
        level.hold('D').frames(3);  // in the middle of a step
        CInstance* figure = level.find(oPlayerArrows);
        level.key(keyEnter).release('D');
        ASSERT_TRUE(level.paused_());
        const double at = figure->x;
        for (const Object row : kRows) EXPECT_EQ(level.count(row), 1);
        for (const Object each : kButtons) EXPECT_EQ(level.count(each), 1);
        EXPECT_EQ(level.count(oConquistas) + level.count(oRankings), 0) << "not on a desktop";
        EXPECT_EQ(level.count(oPlayerArrows) + level.count(oMonte), 0) << "asleep";
        level.tap('Z').tap('P').frames(90);
        EXPECT_EQ(figure->x, at);
        EXPECT_EQ(level.variable(level.find(oClock), "levelTime"), 0);

        way(level);
        level.frames(1);
        ASSERT_FALSE(level.paused_());
        for (const Object row : kRows) EXPECT_EQ(level.count(row), 0);
        for (const Object each : kButtons) EXPECT_EQ(level.count(each), 0) << "asleep";
        EXPECT_EQ(level.count(oMenuPauseNovo) + level.count(oHitMenuNovo), 0);
        level.frames(20);
        EXPECT_EQ(figure->x, 416) << "the step goes to its cell";
    }
}

TEST(PauseScreen, TheClockBeginsAFullSecondAnew)
{
    Pause level;
    level.frames(20).tap(keyEnter).frames(50).tap(keyEnter).frames(29);
    EXPECT_EQ(level.variable(level.find(oClock), "levelTime"), 0);
    level.frames(2);
    EXPECT_EQ(level.variable(level.find(oClock), "levelTime"), 1);
}

TEST(PauseScreen, ThePadAndTheKeyboardOpenAndCloseForEachOther)
{
    Pause level;
    level.pad(0);
    level.frames(2);
    for (int i = 0; i < 2; ++i) {
        level.button(gp_start);
        EXPECT_TRUE(level.paused_()) << i;
        level.key(keyEnter);
        EXPECT_FALSE(level.paused_()) << i;
        level.frames(3).tap(keyEnter).frames(3);
        EXPECT_TRUE(level.paused_()) << i;
        level.button(gp_start);
        EXPECT_FALSE(level.paused_()) << i;
    }
}

TEST(PauseScreen, TheLevelIsSeenAtAFifthOfItsLight)
{
    Pause level;
    level.key('P').frames(4);
    const Picture before = level.picture();
    level.key(keyEnter).frames(1);
    const Picture dimmed = level.picture();
    int compared = 0;
    for (int y = 320; y < 345; ++y)  // below the rows and above the bar
        for (int x = 330; x < 520; ++x, ++compared) {
            const auto i = static_cast<size_t>(y * before.width + x);
            for (int shift = 0; shift < 24; shift += 8)
                ASSERT_NEAR(dimmed.pixels[i] >> shift & 255,
                            (before.pixels[i] >> shift & 255) * 0.2, 1.01)
                    << x << ' ' << y;
        }
    EXPECT_GT(compared, 0);
}

TEST(PauseScreen, CanComeAgainAndAgainAndLeavesNothingBehind)
{
    Pause level;
    level.key(keyEnter).key(keyEnter);
    const int sprites = Sprites();
    const int keys = static_cast<int>(virtual_key_add(0, 0, 1, 1, 'X'));
    virtual_key_delete(keys);
    for (int i = 0; i < 5; ++i) {
        level.key(keyEnter);
        EXPECT_EQ(level.count(oSons), 1) << "the one of the first time";
        EXPECT_EQ(level.count(oHitMenuNovo), 4);
        EXPECT_EQ(level.cursor(), 0);
        level.key(keyEnter);
    }
    EXPECT_EQ(virtual_key_add(0, 0, 1, 1, 'X'), keys);
    EXPECT_EQ(Sprites(), sprites);
    level.key(keyEnter).key('E');
    EXPECT_EQ(level.after(), "room_level1");
    EXPECT_EQ(Sprites(), sprites) << "also by way of another room";
    EXPECT_EQ(level.count(oPlayerArrows), 1);
}

TEST(PauseScreen, TheRowsLeadAgainAndToTheMap)
{
    const std::string levels = "[Levels]\r\nLevel11=\"1.000000\"\r\n";
    const struct {
        int row, key, y;
        const char* room;
    } rows[] = {{1, 'E', 217, "room_level2"}, {2, 'M', 289, "room_menu2"}};
    for (const auto& row : rows)
        for (const int way : {0, 1, 2}) {
            Pause level("room_level2", levels);
            level.key(keyEnter);
            if (way == 0) level.key(row.key);
            if (way == 1) level.click(427, row.y);
            if (way == 2) {
                for (int i = 0; i < row.row; ++i) level.key(keyDown);
                level.key(keySpace);
            }
            EXPECT_EQ(level.count(oTransicao), 1) << row.key << way;
            EXPECT_EQ(level.after(), row.room) << row.key << way;
            EXPECT_EQ(level.count(oContinuar), 0);
        }
    Pause level("room_level2", levels);
    level.key(keyEnter).hold(keyBackspace).frames(5).release(keyBackspace);
    EXPECT_EQ(level.count(oTransicao), 1);
    EXPECT_EQ(level.after(), "room_menu2") << "the way to the map stays open";
}

TEST(PauseScreen, EnterNeverUsesAnEntry)
{
    {
        Pause level;
        level.key(keyEnter);
        level.point(oMenuPauseNovo, 9);
        level.key(keyEnter);
        EXPECT_FALSE(level.paused_());
        EXPECT_EQ(level.global_text("gameType"), "normal");
    }
    OptionsScreen screen;
    screen.point(oMenuOptionsNovo, 6);
    screen.key(keyEnter);
    EXPECT_EQ(screen.global_text("gameType"), "normal");
    EXPECT_EQ(screen.count(oMenuOptionsNovo), 1);
}

TEST(PauseScreen, AltAndEnterAreTheFullScreensAlone)
{
    Pause level;
    level.hold(keyAlt).frames(1);
    level.key(keyEnter);
    EXPECT_FALSE(level.paused_());
    level.release(keyAlt).frames(1);
    level.key(keyEnter);
    EXPECT_TRUE(level.paused_());
    level.room("room_personagem").frames(3);
    level.hold(keyAlt).frames(1);
    level.key(keyEnter);
    EXPECT_EQ(level.global_text("playerMode"), "onePlayer");
}

// ---- steering

struct Walk {
    int from, key, to;
};

TEST(PauseScreen, TheCursorGoesWhereTheTableSays)
{
    Pause level;
    level.key(keyEnter);
    for (const Walk& walk :
         {Walk{0, keyDown, 1}, {2, keyS, 9},     {9, keyDown, 0}, {0, keyUp, 9},
          {0, keyRight, 6},    {6, keyRight, 5}, {6, keyD, 5},    {5, keyRight, 0},
          {1, keyA, 5},        {7, keyLeft, 8},  {8, keyLeft, 9}, {9, keyLeft, 7},
          {7, keyRight, 9},    {9, keyRight, 8}, {8, keyDown, 6}, {7, keyW, 5},
          {5, keyDown, 7},     {3, keyDown, 5},  {4, keyUp, 7},   {3, keyLeft, 8},
          {4, keyRight, 0},    {8, keyRight, 7}}) {
        level.point(oMenuPauseNovo, walk.from);
        level.key(walk.key);
        EXPECT_EQ(level.cursor(), walk.to) << "from " << walk.from << " by " << walk.key;
    }
    level.mouse(427, 215).frames(2);
    EXPECT_EQ(level.cursor(), 1);
    level.mouse(100, 430).frames(2);
    EXPECT_EQ(level.cursor(), 7) << "a button draws the cursor";
    level.mouse(427, 430).frames(2);
    EXPECT_EQ(level.cursor(), 9);
    level.mouse(100, 200).frames(2);
    EXPECT_EQ(level.cursor(), 5);
}

TEST(OptionsMenu, TheCursorGoesWhereTheTableSays)
{
    OptionsScreen screen;
    EXPECT_EQ(screen.cursor(), 2);
    for (const Walk& walk : {Walk{2, keyDown, 6},
                             {6, keyDown, 2},
                             {4, keyUp, 2},
                             {5, keyUp, 3},
                             {2, keyRight, 3},
                             {3, keyRight, 2},
                             {4, keyRight, 6},
                             {6, keyRight, 5},
                             {5, keyRight, 4},
                             {4, keyLeft, 5},
                             {6, keyLeft, 4},
                             {0, keyRight, 1},
                             {1, keyLeft, 0},
                             {0, keyDown, 4}}) {
        screen.point(oMenuOptionsNovo, walk.from);
        screen.key(walk.key);
        EXPECT_EQ(screen.cursor(), walk.to) << "from " << walk.from << " by " << walk.key;
    }
    screen.mouse(510, 200).frames(2);
    EXPECT_EQ(screen.cursor(), 3);
}

TEST(OptionsMenu, StopsTheTitleAndClosesByCornerPadAndBackspace)
{
    const std::function<void(OptionsScreen&)> ways[] = {
        [](OptionsScreen& screen) { screen.click(800, 40); },
        [](OptionsScreen& screen) { screen.button(gp_start); },
        [](OptionsScreen& screen) { screen.button(gp_face2); },
        [](OptionsScreen& screen) { screen.key(keyBackspace); },
    };
    for (const auto& way : ways) {
        OptionsScreen screen;
        EXPECT_EQ(screen.count(oMenuOptionsNovo), 1);
        EXPECT_EQ(screen.count(oMenuNovo) + screen.count(oTitulo), 0) << "asleep";
        for (const Object each : kButtons) EXPECT_EQ(screen.count(each), 1);
        EXPECT_EQ(screen.find(oAjuda)->x, 280);
        EXPECT_EQ(screen.find(oCreditos)->x, 464);
        way(screen);
        screen.frames(2);
        EXPECT_EQ(screen.count(oMenuOptionsNovo), 0);
        EXPECT_EQ(screen.count(oSons), 0);
        EXPECT_EQ(screen.count(oTelaSair), 0);
        EXPECT_EQ(screen.cursor(oMenuNovo), 1) << "where it was";
        screen.key(keyEnter);
        EXPECT_EQ(screen.count(oMenuOptionsNovo), 1) << "and again";
        EXPECT_EQ(screen.count(oSons), 1);
    }
}

// ---- the switches

TEST(Switches, TheSpeedGoesRoundAndIsStoredAtOnce)
{
    Pause level("room_level1", "idioma=\"ingles\"\r\n");
    level.key(keyEnter);
    const struct {
        const char* word;
        int pixels, english, portuguese;
    } speeds[] = {{"fast", 13, 2, 5}, {"slow", 2, 0, 3}, {"normal", 4, 1, 4}};
    level.point(oMenuPauseNovo, 9);
    for (const auto& speed : speeds) {
        level.key(keySpace).frames(1);
        EXPECT_EQ(level.global_text("gameType"), speed.word);
        EXPECT_EQ(level.global("movePlayerSpeed"), speed.pixels);
        EXPECT_TRUE(level.has("velocidade=\"" + std::string(speed.word) + "\""));
        EXPECT_EQ(level.find(oGameSpeed)->image_index, speed.english);
        idioma = "portugues";
        level.frames(1);
        EXPECT_EQ(level.find(oGameSpeed)->image_index, speed.portuguese);
        idioma = "ingles";
    }
    level.click(427, 430);
    EXPECT_EQ(level.global_text("gameType"), "fast");
    level.key(keyEnter).frames(1);
    level.hold('D').frames(4).release('D');
    EXPECT_EQ(level.find(oPlayerArrows)->x, 416) << "at once";
}

TEST(Switches, TheLanguageTurnsEveryWordAtOnce)
{
    Pause level("room_level1", "idioma=\"ingles\"\r\n");
    level.key(keyEnter);
    level.point(oMenuPauseNovo, 8);
    const Picture english = level.frames(1).picture();
    EXPECT_EQ(level.find(oIdioma)->image_index, 1);
    level.key(keySpace).frames(1);
    EXPECT_EQ(level.global_text("idioma"), "portugues");
    EXPECT_EQ(level.find(oIdioma)->image_index, 0);
    EXPECT_TRUE(level.has("idioma=\"portugues\""));
    const Picture portuguese = level.picture();
    for (const int left : {330, 0})  // "Game Speed" and "Sounds" above the bar's buttons
    {
        int differ = 0;
        for (int y = 362; y < 390; ++y)
            for (int x = left; x < left + 180; ++x) {
                const auto i = static_cast<size_t>(y * english.width + x);
                differ += english.pixels[i] != portuguese.pixels[i];
            }
        EXPECT_GT(differ, 100) << left;
    }
    level.click(780, 430);
    EXPECT_EQ(level.global_text("idioma"), "ingles");
    EXPECT_TRUE(level.has("idioma=\"ingles\""));
}

TEST(Switches, TheSoundIsPausedAndResumedAndANewTrackIsStarted)
{
    Pause level;
    BringMusic(true);
    level.key(keyEnter);
    EXPECT_TRUE(Heard(Sounds(xPause)));
    EXPECT_TRUE(Heard("gain 0.3 in 500"));
    EXPECT_EQ(level.find(oSons)->image_index, 0);
    level.point(oMenuPauseNovo, 7);
    level.clear_console();
    level.key(keySpace);
    EXPECT_TRUE(g_paused);
    EXPECT_TRUE(level.has("musicas=\"0.000000\""));
    EXPECT_EQ(level.find(oSons)->image_index, 1);
    level.key(keySpace);
    EXPECT_FALSE(g_paused);
    EXPECT_TRUE(level.has("musicas=\"1.000000\""));
    EXPECT_EQ(level.console(), "Parou de tocar música!!\nContinuou a tocar música!!\n");
    EXPECT_FALSE(Heard("play 5 at 10 looping")) << "the same track goes on";

    // In the next room another track waits in silence.
    level.click(100, 430);
    g_playing = g_paused = false;
    g_heard.clear();
    level.clear_console();
    level.click(100, 430);
    EXPECT_EQ(level.console(), "Começou a tocar música!!\n");
    EXPECT_TRUE(Heard("play 5 at 10 looping"));
    EXPECT_EQ(level.global("clicaSom"), 0);
    EXPECT_EQ(level.global("tocaSom"), 1);

    g_playing = true;
    g_heard.clear();
    level.key(keyEnter);
    EXPECT_TRUE(Heard("gain 1 in 500"));
}

TEST(Switches, WithoutMusicEveryMenuIsSilent)
{
    for (const bool loud : {false, true}) {
        Pause level;
        BringMusic(loud);
        level.key(keyEnter);
        EXPECT_EQ(level.find(oSons)->image_index, loud ? 0 : 1);
        level.key('E').frames(5);
        EXPECT_EQ(Heard(Sounds(xClick)), loud);
        EXPECT_EQ(Heard(Sounds(xPause)), loud);
    }
}

// ---- help and credits

TEST(Help, ItsPagesGoRoundInTheirLanguage)
{
    for (const int language : {0, 1}) {
        Pause level;
        idioma = language == 0 ? "ingles" : "portugues";
        level.key(keyEnter);
        level.point(oMenuPauseNovo, 5);
        level.key(keySpace);
        CInstance* page = level.find(oTelaAjuda);
        ASSERT_NE(page, nullptr);
        EXPECT_EQ(level.count(oPause) + level.count(oContinuar) + level.count(oMenuPauseNovo), 0);
        EXPECT_EQ(page->image_index, language);
        level.key(keyLeft);
        EXPECT_EQ(page->image_index, 8 + language);
        level.key(keyRight).key(keyRight);
        EXPECT_EQ(page->image_index, 2 + language);
        level.click(427, 90);
        EXPECT_EQ(page->image_index, 4 + language);
        level.click(427, 89);
        EXPECT_EQ(page->image_index, 4 + language) << "above the pages";
        level.pad(0).press(gp_shoulderl);
        level.frames(1);
        EXPECT_EQ(page->image_index, 2 + language);
    }
}

TEST(Help, ClosesToThePanelThatItStandsOver)
{
    for (const Object opener : {oAjuda, oCreditos})
        for (const int way : {0, 1, 2, 3, 4}) {
            Pause level;
            level.key(keyEnter);
            opener.index == oAjuda.index ? level.click(100, 200) : level.click(740, 200);
            ASSERT_EQ(level.count(oFechar), 1);
            EXPECT_EQ(level.count(opener.index == oAjuda.index ? oTelaAjuda : oTelaCreditos), 1);
            const int keys[] = {keyEnter, keySpace, keyBackspace};
            if (way < 3) level.key(keys[way]);
            if (way == 3) level.button(gp_face1);
            if (way == 4) level.click(800, 40);
            level.frames(2);
            EXPECT_EQ(level.count(oFechar) + level.count(oTelaAjuda) + level.count(oTelaCreditos),
                      0);
            ASSERT_EQ(level.count(oMenuPauseNovo), 1) << way;
            EXPECT_EQ(level.count(oContinuar), 1);
            EXPECT_TRUE(level.paused_()) << way;
            EXPECT_EQ(level.count(oTransicao), 0);
            level.key(keyEnter).frames(2);
            EXPECT_EQ(level.count(oPlayerArrows), 1);
            EXPECT_EQ(level.count(oSons), 0);
        }
}

TEST(Help, OverTheOptionsItLeavesTheTitleInPeace)
{
    OptionsScreen screen;
    screen.key(keySpace);
    ASSERT_EQ(screen.count(oTelaAjuda), 1);
    EXPECT_EQ(screen.count(oConfiguracoes), 0);
    screen.key(keySpace).frames(2);
    EXPECT_EQ(screen.count(oMenuOptionsNovo), 1);
    EXPECT_EQ(screen.count(oMenuNovo), 0);
    screen.button(gp_select);
    EXPECT_EQ(screen.count(oTelaSair), 0) << "the title does not answer";
    screen.key(keyBackspace).frames(3);
    EXPECT_EQ(screen.count(oTelaSair), 0);
    EXPECT_EQ(screen.count(oMenuOptionsNovo), 0);
    EXPECT_EQ(screen.count(oMenuNovo), 1);
}

// ---- touch platforms

// The keys that the touch of a finger would press now, from the left of the table on.
std::string TouchKeys()
{
    std::string letters;
    for (int32_t handle = 1; const SWVirtualKey* key = VirtualKeys_Find(handle); ++handle)
        if (key->inUse) letters += static_cast<char>(key->key);
    std::sort(letters.begin(), letters.end());
    return letters;
}

TEST(TouchPause, TheServiceHasItsButtonsAndTheLevelsKeysGiveWayToTheRows)
{
    Pause level;
    BecomePhone();
    playerMode = "twoPlayersOne";
    level.room("room_level1").frames(2);
    const std::string before = TouchKeys();
    EXPECT_EQ(before, "\r%&'(ADHPSTW");
    level.key(keyEnter);
    EXPECT_EQ(TouchKeys(), "CEM");
    EXPECT_EQ(level.count(oConquistas), 1);
    EXPECT_EQ(level.count(oRankings), 1);
    level.mouse(120, 50).frames(2);
    EXPECT_EQ(level.cursor(), 3) << "its area reaches over the second button";
    level.key(keyEnter);
    EXPECT_EQ(TouchKeys(), before);
}

}  // namespace
