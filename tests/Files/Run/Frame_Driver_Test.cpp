// The pace of frames, and the requests that a frame leaves behind.

#include "Files/Base/Console.h"
#include "Files/Base/Error.h"
#include "Files/Function/Function_Registry.h"
#include "tests/Files/support_Screen.h"

namespace {

class FrameDriverTest : public ScreenWorld {
protected:
    // Microseconds from the start of one frame to the start of the next.
    int64_t Period()
    {
        const int64_t before = g_LastFrameStart;
        Run_Frame();
        return g_LastFrameStart - before;
    }
    // The stage's clock steps by 50 microseconds a spin.
    static void ExpectNear(int64_t micros, int64_t expected)
    {
        EXPECT_GE(micros, expected);
        EXPECT_LE(micros, expected + 50);
    }
    static void Send(HostMessageType type)
    {
        HostMessage message{};
        message.type = type;
        Stage_Post(message);
    }
};

TEST_F(FrameDriverTest, RoomSpeedSetsThePace)
{
    Start();
    for (const int32_t speed : {30, 60, 1}) {
        Run_Room->speed = speed;
        ExpectNear(Period(), 1000000 / speed);
        EXPECT_EQ(g_RoomSpeedNow, speed);
    }
    Run_Room->speed = 0;
    ExpectNear(Period(), 1000000);
    EXPECT_EQ(Run_Room->speed, 1) << "written back";
    Run_Room->speed = -7;
    ExpectNear(Period(), 1000000);
}

TEST_F(FrameDriverTest, LateFrameStartsAtOnceAndNothingIsCaughtUp)
{
    Start();
    Run_Room->speed = 30;
    Period();
    Stage_MoveClock(70000);  // a slow frame
    EXPECT_LE(Period(), 70050);
    ExpectNear(Period(), 33333);
    Stage_MoveClock(20000);  // a frame with 20 ms of work still keeps the beat
    ExpectNear(Period(), 33333);
}

TEST_F(FrameDriverTest, ClockThatGoesBackCostsOneFrameOfWait)
{
    Start();
    Run_Room->speed = 30;
    Period();
    Stage_MoveClock(-5000000);
    const int64_t before = Clock_Micros();
    Run_Frame();
    ExpectNear(Clock_Micros() - before, 33333);
}

TEST_F(FrameDriverTest, NoWaitWithoutTimingOrWithManualSync)
{
    Start();
    g_TimingOn = false;
    EXPECT_EQ(Period(), 0);
    g_TimingOn = true;
    g_ManualVSync = true;
    EXPECT_EQ(Period(), 0);
}

TEST_F(FrameDriverTest, WaitBlocksBeforeTheMarginAndPumpsInIt)
{
    static int32_t blocked;
    blocked = 0;
    Start();
    g_Host.clock.Block = [](int32_t millis) {
        blocked += millis;
        Stage_MoveClock(millis * 1000);
    };
    g_SleepMargin = 10;
    const int64_t start = Clock_Micros();
    Stage_Key('A', true);
    Run_Wait(33333);
    EXPECT_EQ(blocked, 23);
    ExpectNear(Clock_Micros() - start, 33333);
    EXPECT_EQ(g_IOMessage.keyDownMsg[65], 1);
    blocked = 0;
    Run_Wait(9000);
    EXPECT_EQ(blocked, 0) << "all of it lies within the margin";
    Run_Wait(0);
    Run_Wait(-5);
    EXPECT_EQ(blocked, 0);
    const int64_t long_ = Clock_Micros();
    Run_Wait(50000000);
    ExpectNear(Clock_Micros() - long_, 3000000);
    // A clock that goes back ends the wait.
    g_Host.clock.Spin = [] { Stage_MoveClock(-1000000); };
    const int64_t back = Clock_Micros();
    Run_Wait(5000);
    EXPECT_LT(Clock_Micros(), back);
}

TEST_F(FrameDriverTest, FpsCountsTheFramesOfAWholeSecond)
{
    Start();
    Run_Room->speed = 30;
    g_FpsCounter = 0;
    Rounds(100);
    EXPECT_EQ(g_FpsReal, 30);
    EXPECT_NEAR(static_cast<double>(g_DeltaTime), 33333, 60);
}

TEST_F(FrameDriverTest, PausedGameKeepsItsBeat)
{
    const int32_t thing = AddObject("thing", {{EVENT_STEP, 0}});
    Place(AddRoom("room"), thing);
    Start();
    g_Paused = true;
    const int presents = Stage_PresentCount();
    Rounds(2);
    EXPECT_EQ(Take(), Log{});
    EXPECT_EQ(Stage_PresentCount(), presents);
    g_Paused = false;
    Rounds(1);
    EXPECT_EQ(Take(), (Log{"thing.Step"}));
    EXPECT_EQ(Stage_PresentCount(), presents + 1);
}

TEST_F(FrameDriverTest, NoPictureOfAFrameThatLeavesItsRoom)
{
    const int32_t thing = AddObject("thing", {{EVENT_STEP, 0}, {EVENT_CREATE, 0}});
    const int32_t first = AddRoom("first"), second = AddRoom("second");
    Place(first, thing);
    Start();
    Rounds(1);
    const int presents = Stage_PresentCount();
    On("thing.Step", [&](CInstance*, CInstance*) { Room_Goto(second); });
    Rounds(1);
    EXPECT_EQ(Stage_PresentCount(), presents);
    EXPECT_EQ(Current_Room, second);
    EXPECT_EQ(New_Room, ROOM_NONE);
    g_DrawEnabled = false;
    Rounds(1);
    EXPECT_EQ(Stage_PresentCount(), presents);
    g_DrawEnabled = true;
    Rounds(1);
    EXPECT_EQ(Stage_PresentCount(), presents + 1);
}

TEST_F(FrameDriverTest, EndsByRequestByErrorAndByTheWindow)
{
    for (const int32_t request : {ROOM_END_GAME, ROOM_STOP}) {
        SCOPED_TRACE(request);
        if (request == ROOM_END_GAME) Start();
        g_Running = true;
        New_Room = request;
        Rounds(5);
        EXPECT_FALSE(g_Running);
        New_Room = ROOM_NONE;
    }
    g_Running = true;
    vxg_player_run("/games/other.win", "");
    Rounds(1);
    EXPECT_FALSE(g_Running);
    EXPECT_EQ(New_Room, ROOM_STOP);

    g_PlayerRequest = PlayerRequest();
    New_Room = ROOM_NONE;
    g_Running = true;
    const int64_t frames = g_FrameCount;
    Send(HostMessageType::Close);
    Rounds(5);
    EXPECT_FALSE(g_Running);
    EXPECT_TRUE(g_QuitSeen);
    EXPECT_LE(g_FrameCount, frames + 1);
}

TEST_F(FrameDriverTest, RestartEndsTheGameAndStartsItAgain)
{
    const int32_t thing = AddObject("thing", {{EVENT_CREATE, 0},
                                              {EVENT_STEP, 0},
                                              {EVENT_OTHER, OTHER_ROOM_END},
                                              {EVENT_OTHER, OTHER_GAME_END},
                                              {EVENT_OTHER, OTHER_GAME_START}});
    Place(AddRoom("first"), thing);
    AddRoom("second");
    Start();
    On("thing.Step", [](CInstance*, CInstance*) { New_Room = ROOM_RESTART_GAME; });
    Rounds(1);
    EXPECT_EQ(Take(), (Log{"thing.Step", "thing.RoomEnd", "thing.GameEnd", "thing.Create",
                           "thing.GameStart"}));
    EXPECT_EQ(g_FrameCount, 0);
    EXPECT_TRUE(g_Running);
}

}  // namespace
