// The stage: nothing moves unless a test moves it.

#include <gtest/gtest.h>

#include "Host/Host_Stage.h"

namespace {

class StageHostTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        Host_UseStage();
        Stage_Reset();
    }
    void TearDown() override { Stage_Quit(); }
    bool Open(bool fullscreen)
    {
        return g_Host.window.Create({.clientWidth = 854,
                                     .clientHeight = 480,
                                     .border = true,
                                     .sizeable = false,
                                     .fullscreen = fullscreen,
                                     .gl = false,
                                     .samples = 0,
                                     .caption = "stage"});
    }
    int Waiting()
    {
        HostMessage message;
        int count = 0;
        while (g_Host.window.NextMessage(&message)) ++count;
        return count;
    }
};

TEST_F(StageHostTest, ClockMovesByWhatTheProgramWaits)
{
    EXPECT_EQ(g_Host.clock.Micros(), 0);
    g_Host.clock.Block(7);
    EXPECT_EQ(g_Host.clock.Micros(), 7000);
    Stage_MoveClock(5);
    EXPECT_EQ(g_Host.clock.Micros(), 7005);
    g_Host.clock.Spin();
    EXPECT_GT(g_Host.clock.Micros(), 7005);
    Stage_Reset();
    EXPECT_EQ(g_Host.clock.Micros(), 0);
}

TEST_F(StageHostTest, KeysKeepTheirStateAndTheirOrder)
{
    Stage_Key('A', true);
    Stage_Key('A', true);
    Stage_Key('A', false);
    EXPECT_FALSE(g_Host.window.KeyState('A'));
    HostMessage message;
    const bool repeats[] = {false, true, false};
    for (const bool repeat : repeats) {
        ASSERT_TRUE(g_Host.window.NextMessage(&message));
        EXPECT_EQ(message.repeat, repeat);
    }
    EXPECT_EQ(message.type, HostMessageType::KeyUp);
    EXPECT_FALSE(g_Host.window.NextMessage(&message));
    Stage_Key(-1, true);
    Stage_Key(256, true);
    EXPECT_EQ(Waiting(), 0);
}

TEST_F(StageHostTest, WindowFillsTheDesktopInFullScreenAndTakesItsMessagesAlong)
{
    ASSERT_TRUE(Open(true));
    int32_t width, height, x, y;
    g_Host.window.ClientSize(&width, &height);
    EXPECT_EQ(width, 1920);
    g_Host.window.SetFullscreen(false);
    g_Host.window.SetClientSize(854, 480);
    g_Host.window.SetClientPosition(10, 20);
    Stage_SetMouse(5, 6);
    g_Host.window.MousePosition(&x, &y);
    EXPECT_EQ(x, 15);
    EXPECT_EQ(y, 26);
    EXPECT_FALSE(Stage_WindowShown());
    g_Host.window.Show();
    EXPECT_TRUE(Stage_WindowShown());
    g_Host.window.Destroy();
    EXPECT_FALSE(g_Host.window.Exists());
    EXPECT_FALSE(Stage_WindowShown());
    EXPECT_EQ(Waiting(), 0) << "messages of a window that is gone";
}

}  // namespace
