// The fade from room to room, frame by frame.

#include "game/Transition.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "tests/support/Stage.h"

namespace {

int Brightest(const Picture& picture)
{
    uint32_t most = 0;
    for (const uint32_t pixel : picture.pixels)
        most = std::max({most, pixel & 0xFF, pixel >> 8 & 0xFF, pixel >> 16 & 0xFF});
    return static_cast<int>(most);
}

// Pixels of the rows from `top` to `bottom` that are of a colour, give or take a little.
int64_t Count(const Picture& picture, uint32_t rgb, int top, int bottom)
{
    const auto near = [&](uint32_t pixel) {
        for (int shift = 0; shift < 24; shift += 8)
            if (std::abs(static_cast<int>(pixel >> shift & 0xFF) -
                         static_cast<int>(rgb >> shift & 0xFF)) > 8)
                return false;
        return true;
    };
    return std::count_if(picture.pixels.begin() + top * picture.width,
                         picture.pixels.begin() + bottom * picture.width, near);
}

TEST(Transition, AnotherRoomComesInThirteenFramesAndIsClearThirteenLater)
{
    Stage stage;
    stage.room("room_level1").frames(2);
    fade_to(room_menu3);
    stage.frames(12);
    EXPECT_EQ(stage.room_name(), "room_level1");
    EXPECT_NEAR(stage.variable(stage.find(oTransicao), "fadeAlpha"), 0.96, 1e-9);
    stage.frames(1);
    EXPECT_EQ(stage.room_name(), "room_menu3");
    EXPECT_EQ(Brightest(stage.picture()), 0) << "no title without a level";
    stage.frames(12);
    EXPECT_EQ(stage.count(oTransicao), 1);
    stage.frames(1);
    EXPECT_EQ(stage.count(oTransicao), 0);
    EXPECT_EQ(stage.count(oPlayerArrows), 0) << "the old room is gone";
}

TEST(Transition, ALevelShowsItsTitleForTwoSecondsFromTheFirstFrame)
{
    Stage stage;
    stage.room("room_level8").frames(2);
    idioma = "portugues";
    fade_to(room_level1);
    stage.frames(13);
    const Picture black = stage.picture();
    EXPECT_GT(Count(black, 0x008080, 170, 215), 300) << "the world's name in teal";
    EXPECT_GT(Count(black, 0xFFFFFF, 220, 265), 300) << "the level's name in white";
    EXPECT_EQ(Count(black, 0, 0, 160), 160 * black.width);
    stage.frames(47);
    EXPECT_EQ(stage.room_name(), "room_level8");
    stage.frames(1);
    EXPECT_EQ(stage.room_name(), "room_level1");
    stage.frames(13);
    EXPECT_EQ(stage.count(oTransicao), 0);
}

TEST(Transition, TheWordOfTheLevelFollowsTheLanguageAndTheWorldsNameDoesNot)
{
    Picture shown[3];
    const char* words[] = {"ingles", "portugues", "klingon"};
    for (int i = 0; i < 3; ++i) {
        Stage stage;
        stage.room("room_level1").frames(2);
        idioma = words[i];
        fade_to(room_level100);
        stage.frames(20);
        shown[i] = stage.picture();
    }
    const auto rows = [](const Picture& picture, int top, int bottom) {
        return std::vector<uint32_t>(picture.pixels.begin() + top * picture.width,
                                     picture.pixels.begin() + bottom * picture.width);
    };
    EXPECT_EQ(rows(shown[0], 0, 215), rows(shown[1], 0, 215));
    EXPECT_NE(rows(shown[0], 215, 270), rows(shown[1], 215, 270));
    EXPECT_EQ(rows(shown[0], 0, 215), rows(shown[2], 0, 215));
    EXPECT_EQ(Count(shown[2], 0, 215, 480), 265 * shown[2].width) << "no word for it";
}

TEST(Transition, TheWorldsChangeEveryTwentyLevels)
{
    Stage stage;
    stage.room("room_level1").frames(2);
    const auto titleOf = [&](double room) {
        fade_to(room);
        stage.frames(20);
        const Picture picture = stage.picture();
        stage.frames(60);
        return std::vector<uint32_t>(picture.pixels.begin(),
                                     picture.pixels.begin() + 215 * picture.width);
    };
    const auto first = titleOf(room_level1.index);
    EXPECT_EQ(titleOf(room_level20.index), first);
    const auto second = titleOf(room_level21.index);
    EXPECT_NE(second, first);
    EXPECT_EQ(titleOf(room_level40.index), second);
    EXPECT_NE(titleOf(room_level81.index), titleOf(room_level80.index));
}

TEST(Transition, NothingMovesInTheDarkAndALevelThatStartsAnewIsWhole)
{
    Stage stage;
    stage.room("room_level1").frames(2);
    const float x = stage.find(oPlayerArrows)->x;
    fade_to(room);
    stage.frames(13);
    EXPECT_EQ(stage.find(oPlayerArrows), nullptr);
    stage.hold('D').frames(40).release('D').frames(40);
    EXPECT_EQ(stage.room_name(), "room_level1");
    EXPECT_EQ(stage.find(oPlayerArrows)->x, x);
    EXPECT_EQ(stage.count(oTransicao), 0);
}

TEST(Transition, TwoAtOnceLeadToTheSameRoomAndBothEnd)
{
    Stage stage;
    stage.room("room_level1").frames(2);
    fade_to(room_level8);
    stage.frames(4);
    fade_to(room_level8);
    stage.frames(160);
    EXPECT_EQ(stage.room_name(), "room_level8");
    EXPECT_EQ(stage.count(oTransicao), 0);
    EXPECT_EQ(stage.count(oPlayerArrows), 1);
}

}  // namespace
