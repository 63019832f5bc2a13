// Stories of the menu at the end of a level, of what a level shows over its picture, and of
// the row that shares the news.

#include "game/Curves.h"
#include "game/Gamepad.h"
#include "tests/game/support_Touch.h"

using namespace names;

namespace {

struct EndStory : LevelStory {
    explicit EndStory(const char* room)
        : LevelStory("onePlayer", "normal", "[Levels]\r\nLevel11=\"1.000000\"\r\n", room)
    {
        instance_destroy(stage.find(oPortaoFechado));
        Put(one, 416, 0);
        stage.frames(1).tap('W').frames(14);
    }
    int cursor() { return static_cast<int>(stage.variable(stage.find(oMenuFimFaseNovo), "mpos")); }
    void key(int code) { stage.tap(code).frames(1); }
    std::string after() { return stage.frames(80).room_name(); }
};

TEST(EndMenu, ItsEntriesLeadOnAgainAndToTheMapByKeysPadAndMouse)
{
    const struct {
        int entry, y;
        const char* room;
    } entries[] = {{0, 145, "room_level3"}, {1, 217, "room_level2"}, {2, 289, "room_menu2"}};
    for (const auto& entry : entries)
        for (const int way : {0, 1, 2}) {
            EndStory end("room_level2");
            ASSERT_EQ(end.stage.count(oHitMenuNovo), 3);
            if (way == 2) end.stage.click(427, entry.y);
            if (way < 2) {
                for (int i = 0; i < entry.entry; ++i) end.key(keyDown);
                EXPECT_EQ(end.cursor(), entry.entry);
            }
            if (way == 0) end.key(entry.entry == 1 ? keySpace : keyEnter);
            if (way == 1) {
                end.stage.pad(0).press(gp_start);
                end.stage.frames(2);
            }
            EXPECT_EQ(end.after(), entry.room) << way;
            EXPECT_EQ(end.stage.count(oPause), std::string(entry.room) == "room_menu2" ? 0 : 1);
        }
}

TEST(EndMenu, ASecondPressOnTheWayDoesNotShowTheTitleAgain)
{
    EndStory end("room_level2");
    end.key(keyEnter);
    end.stage.frames(3);
    end.key(keyEnter);
    EXPECT_EQ(end.stage.count(oTransicao), 1);
    EXPECT_EQ(end.after(), "room_level3");
    EXPECT_EQ(end.stage.count(oTransicao), 0);
}

TEST(EndMenu, WrapsFollowsTheMouseAndHasNoNextLevelAtTheEnd)
{
    EndStory end("room_level100");
    end.key(keyUp);
    EXPECT_EQ(end.cursor(), 2);
    end.stage.mouse(427, 215).frames(1);
    end.key(keyDown);
    EXPECT_EQ(end.cursor(), 1);
    end.stage.mouse(20, 470).frames(1);
    end.key(keyUp);
    end.key(keyEnter);
    end.stage.click(427, 145);
    EXPECT_EQ(end.stage.count(oTransicao), 0) << "nothing follows";
    EXPECT_EQ(end.stage.count(oMenuFimFaseNovo), 1);
}

// ---- over the picture of a level

// Pixels of a button's place that two pictures show differently.
int Differ(const Picture& a, const Picture& b, int left, int top)
{
    int differ = 0;
    for (int y = top; y < top + 70; ++y)
        for (int x = left; x < left + 70; ++x) {
            const auto i = static_cast<size_t>(y * a.width + x);
            differ += a.pixels[i] != b.pixels[i];
        }
    return differ;
}

TEST(OnScreen, TheModeStandsInTheCornerUntilTheLevelIsDone)
{
    LevelStory level;
    const Picture alone = level.stage.picture();
    level.stage.tap('P').frames(2);
    const Picture together = level.stage.picture();
    EXPECT_GT(Differ(alone, together, 10, 15), 100);
    gameOver = 1;
    level.stage.frames(1);
    EXPECT_GT(Differ(together, level.stage.picture(), 10, 15), 1000);
}

TEST(OnScreen, APhoneShowsTheButtonsOfWhoPlaysThere)
{
    const struct {
        int left, top;
    } ofOne[] = {{10, 330}, {150, 330}, {80, 260},  {80, 400},
                 {779, 95}, {10, 95},   {262, 400}, {779, 15}},
      ofTwo[] = {{634, 330}, {774, 330}, {704, 260}, {704, 400}, {522, 400}};
    LevelStory level;
    BecomePhone();
    level.Enter("room_level1");
    touchControls = 0;
    const Picture bare = level.stage.frames(1).picture();
    touchControls = 1;
    playerMode = "twoPlayersTwo";
    const Picture single = level.stage.frames(1).picture();
    playerMode = "twoPlayersOne";
    const Picture shared = level.stage.frames(1).picture();
    for (const auto& each : ofOne)
        EXPECT_GT(Differ(bare, single, each.left, each.top), 1000) << each.left << ' ' << each.top;
    for (const auto& each : ofTwo) {
        EXPECT_LT(Differ(bare, single, each.left, each.top), 500) << each.left << ' ' << each.top;
        EXPECT_GT(Differ(single, shared, each.left, each.top), 1000);
    }
}

// ---- sharing, and the curves that stand by

std::string Encoded(const char* text)
{
    RValue argument, result;
    VXCreateString(&argument, text);
    RValue* arguments[] = {&argument};
    vxl_Script_url_encode(nullptr, nullptr, result, 1, arguments);
    const std::string encoded = VXGetText(&result);
    FREE_RValue(&argument);
    FREE_RValue(&result);
    return encoded;
}

TEST(Sharing, WhatMeansSomethingInAnAddressIsEncoded)
{
    LevelStory level;
    EXPECT_EQ(Encoded("a b"), "a%20b");
    EXPECT_EQ(Encoded(""), "");
    EXPECT_EQ(Encoded("Az09-._!'()*~"), "Az09-._!'()*%7E");
    EXPECT_EQ(Encoded("\t\"#$%&+,/:;<=>?@[\\]^`{|}\x7f"),
              "%09%22%23%24%25%26%2B%2C%2F%3A%3B%3C%3D%3E%3F%40%5B%5C%5D%5E%60%7B%7C%7D%7F");
    EXPECT_EQ(Encoded("\xc3\xa9"), "%E9");
}

TEST(Sharing, TheRowOpensAnAddressWithTheNewsOnItsRelease)
{
    LevelStory level("onePlayer", "normal", "", "room_menu1");
    BecomePhone();
    Room_CreateInstance(0, 0, oSubmit.index);
    level.stage.clear_console();
    idioma = "portugues";
    level.stage.hold('S').frames(3);
    EXPECT_TRUE(g_pages.empty());
    level.stage.release('S').frames(1);
    ASSERT_EQ(g_pages.size(), 1U);
    EXPECT_EQ(level.stage.console(), "Twitter\n");
    EXPECT_NE(g_pages[0].find("?original_referer=https%3A%2F%2F"), std::string::npos);
    EXPECT_NE(g_pages[0].find("&text=Ei!%20Eu"), std::string::npos);
    EXPECT_NE(g_pages[0].find("%20Voce%20tambem%20quer%20tentar%3F&hashtags="), std::string::npos);
    EXPECT_NE(g_pages[0].find(", "), std::string::npos) << "the tags stay as they are";
}

TEST(Curves, EachGoesFromItsStartToItsEnd)
{
    for (const auto curve : {ease_in_quad, ease_out_quad, ease_out_cubic}) {
        EXPECT_EQ(curve(0, 5, 100, 10), 5);
        EXPECT_EQ(curve(10, 5, 100, 10), 105);
    }
    EXPECT_EQ(ease_in_quad(5, 0, 100, 10), 25);
    EXPECT_EQ(ease_out_quad(5, 0, 100, 10), 75);
    EXPECT_EQ(ease_out_cubic(5, 0, 100, 10), 87.5);
}

}  // namespace
