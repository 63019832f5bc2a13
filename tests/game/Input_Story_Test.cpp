// A player's hands in the real game: no press is dropped, none counts twice.

#include <gtest/gtest.h>

#include "Host/Host_Stage.h"
#include "Names.h"
#include "tests/support/Stage.h"

using namespace names;

namespace {

constexpr int kCell = 52;        // pixels
constexpr int kCellFrames = 13;  // of a step at the usual speed

class Hands : public testing::Test {
protected:
    void SetUp() override
    {
        stage_.room("room_level1").frames(3);
        figure_ = stage_.find(oPlayerArrows);
        ASSERT_NE(figure_, nullptr);
        stage_.find(oMonte)->SetPosition(624, 312);  // a box where it bars no way
        start_ = figure_->x;
    }
    void Activate(bool on)
    {
        HostMessage message{};
        message.type = HostMessageType::ActivateApp;
        message.flag = on;
        Stage_Post(message);
    }
    float Cells() const { return (figure_->x - start_) / kCell; }

    Stage stage_;
    CInstance* figure_ = nullptr;
    float start_ = 0;
};

TEST_F(Hands, AHoldThroughALossOfFocusEndsInItsCell)
{
    stage_.hold('D').frames(kCellFrames + 3);
    Activate(false);
    stage_.frames(3 * kCellFrames);
    EXPECT_FLOAT_EQ(Cells(), 2) << "the step that had begun goes on to its cell";
    Activate(true);
    stage_.frames(3 * kCellFrames);
    EXPECT_FLOAT_EQ(Cells(), 2) << "the key that is still down counts no more";
    stage_.release('D').tap('A').frames(2 * kCellFrames);
    EXPECT_FLOAT_EQ(Cells(), 1);
}

TEST_F(Hands, FiftyQuickTapsAreFiftySteps)
{
    for (int i = 0; i < 25; ++i) {
        stage_.tap('D').frames(kCellFrames - 1);
        EXPECT_FLOAT_EQ(Cells(), 1) << i;
        stage_.tap('A').frames(kCellFrames - 1);
        EXPECT_FLOAT_EQ(Cells(), 0) << i;
    }
}

TEST_F(Hands, AllKeysAtOnceLeaveTheGameAlive)
{
    const float y = figure_->y;
    for (int key = 'A'; key <= 'Z'; ++key) stage_.hold(key);
    for (int key = '0'; key <= '9'; ++key) stage_.hold(key);
    stage_.frames(4 * kCellFrames);
    for (int key = 'A'; key <= 'Z'; ++key) stage_.release(key);
    for (int key = '0'; key <= '9'; ++key) stage_.release(key);
    stage_.frames(3 * kCellFrames);
    EXPECT_TRUE(stage_.running());
    const CInstance* figure = stage_.find(oPlayerArrows);
    ASSERT_NE(figure, nullptr);
    EXPECT_EQ(figure->hspeed, 0);
    EXPECT_EQ(figure->vspeed, 0);
    EXPECT_EQ(static_cast<int>(figure->x - start_) % kCell, 0) << "on the grid";
    EXPECT_EQ(static_cast<int>(figure->y - y) % kCell, 0);
}

TEST_F(Hands, AClickOnTheBarOfTheLetterboxLiesOutsideTheRoom)
{
    const double width = stage_.variable(nullptr, "room_width");
    Stage_SetClientSize(1400, 480);  // bars left and right
    stage_.frames(3);
    stage_.click(700, 240);
    EXPECT_NEAR(stage_.variable(nullptr, "mouse_x"), width / 2, 1);
    stage_.click(20, 240);
    EXPECT_LT(stage_.variable(nullptr, "mouse_x"), 0);
    stage_.click(1390, 240);
    EXPECT_GT(stage_.variable(nullptr, "mouse_x"), width);
}

}  // namespace
