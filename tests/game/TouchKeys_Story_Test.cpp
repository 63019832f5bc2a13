// Stories of the on-screen buttons of a touch platform. Nothing here can touch a screen:
// the stories look at which rectangles press which keys.

#include <map>

#include "Files/IO/VirtualKeys.h"
#include "tests/game/support_Touch.h"

using namespace names;

namespace {

struct Place {
    int x, y;
    bool operator==(const Place& other) const { return x == other.x && y == other.y; }
};

// The buttons that are there: where each key's stands. No key has two.
std::map<int, Place> Buttons()
{
    std::map<int, Place> buttons;
    for (int32_t handle = 1; handle <= kVirtualKeys; ++handle) {
        const SWVirtualKey* key = VirtualKeys_Find(handle);
        if (!key->inUse) continue;
        EXPECT_EQ(buttons.count(key->key), 0U) << key->key;
        EXPECT_EQ(key->width * key->height, 70 * 70);
        buttons[key->key] = {key->x1, key->y1};
    }
    return buttons;
}

const std::map<int, Place> switchAlone = {{'H', {10, 15}}};
const std::map<int, Place> ofOne = {{'H', {10, 15}},  {'A', {10, 330}}, {'D', {150, 330}},
                                    {'W', {80, 260}}, {'S', {80, 400}}, {'T', {779, 95}},
                                    {'P', {10, 95}},  {13, {779, 5}}};
std::map<int, Place> OfBoth()
{
    std::map<int, Place> both = ofOne;
    both[kLeft] = {634, 330};
    both[kRight] = {774, 330};
    both[kUp] = {704, 260};
    both[kDown] = {704, 400};
    return both;
}

TEST(TouchKeys, TheSwitchTurnsThemOffAndOnAgainAndIsStored)
{
    for (const char* mode : {"onePlayer", "twoPlayersOne"}) {
        LevelStory level(mode);
        BecomePhone();
        level.Enter("room_level1");
        const std::map<int, Place> all = level.two ? OfBoth() : ofOne;
        EXPECT_EQ(Buttons(), all) << "as a phone starts";

        level.stage.tap('H').frames(2);
        EXPECT_EQ(touchControls, 0);
        EXPECT_EQ(Buttons(), switchAlone);
        EXPECT_EQ(level.stage.variable(level.stage.find(oControl), "s_control"), 1);
        EXPECT_NE(level.stage.save_file().find("touch=\"false\""), std::string::npos);
        level.Enter("room_level1");
        EXPECT_EQ(Buttons(), switchAlone) << "and it stays so";

        level.stage.tap('H').frames(2);
        EXPECT_EQ(touchControls, 1);
        EXPECT_EQ(Buttons(), all);
        EXPECT_EQ(level.stage.variable(level.stage.find(oControl), "s_control"), 0);
        EXPECT_NE(level.stage.save_file().find("touch=\"true\""), std::string::npos);
    }
}

// A level that starts with pads for two has no arrows of player two on the screen.
TEST(TouchKeys, PlayerTwosArrowsComeAndGoWithTheMode)
{
    LevelStory level("twoPlayersTwo");
    BecomePhone();
    level.Enter("room_level1");
    EXPECT_EQ(Buttons(), ofOne);
    level.stage.clear_console();
    level.stage.tap('P').frames(2);
    EXPECT_EQ(Buttons(), ofOne);
    level.stage.tap('P').frames(2);
    EXPECT_EQ(Buttons(), OfBoth());
    level.stage.tap('P').frames(2).tap('H').frames(2);
    EXPECT_EQ(Buttons(), switchAlone) << "none is forgotten";
    EXPECT_EQ(level.stage.console().find("ERROR"), std::string::npos) << level.stage.console();
}

TEST(TouchKeys, ADesktopHasAButtonForTheModeInsteadOfTheSwitch)
{
    LevelStory level;
    level.stage.tap('H').frames(2);
    EXPECT_EQ(touchControls, 0);
    EXPECT_EQ(level.stage.save_file().find("touch"), std::string::npos);
    EXPECT_EQ(Buttons(), (std::map<int, Place>{{'P', {10, 15}}}));
}

}  // namespace
