// A pad in the real game's hands.

#include <gtest/gtest.h>

#include "Files/IO/GamePad.h"
#include "tests/support/Stage.h"

namespace {

TEST(Pad, IsReadWhileTheGameRuns)
{
    Stage stage;
    stage.frames(3);
    PadHands pad = stage.pad(0);
    pad.press(0x8001).press(0x8008, 0.3).axis(0x8012, -1);
    stage.frames(1);
    EXPECT_TRUE(GamePad_ButtonPressed(0, 0x8001));
    EXPECT_NEAR(GamePad_ButtonValue(0, 0x8008), 0.3, 0.01);
    EXPECT_LT(GamePad_AxisValue(0, 0x8012), 0) << "up";
    pad.release(0x8001);
    stage.frames(1);
    EXPECT_TRUE(GamePad_ButtonReleased(0, 0x8001));
    pad.pull_out();
    stage.frames(2);
    EXPECT_FALSE(GamePad_At(0)->connected);
    EXPECT_EQ(GamePad_AxisValue(0, 0x8012), 0);
    EXPECT_TRUE(stage.running());
}

}  // namespace
