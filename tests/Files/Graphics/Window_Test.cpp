// The window's size, mode, cursor and messages, and the reset of its device.

#include "Files/Base/Archive_Main.h"
#include "Files/Base/Error.h"
#include "Files/Graphics/Batch.h"
#include "tests/Files/support_Screen.h"

namespace {

class WindowTest : public ScreenWorld {
protected:
    void TearDown() override
    {
        ScreenWorld::TearDown();
        Error_SetExitHook(nullptr);
    }
    static void Send(HostMessageType type, bool flag = false)
    {
        HostMessage message{};
        message.type = type;
        message.flag = flag;
        Stage_Post(message);
    }
    static void AltEnter()
    {
        HostMessage message{};
        message.type = HostMessageType::KeyDown;
        message.key = 13;
        message.system = true;
        Stage_Post(message);
        message.type = HostMessageType::KeyUp;
        Stage_Post(message);
    }
    // Counts the resets of the device through a table of its own.
    static void CountResets()
    {
        s_resets = 0;
        static DeviceTable table;
        table = Device_Soft;
        table.Reset = [](const DeviceParams& params) {
            ++s_resets;
            s_params = params;
            return s_refusals-- > 0 ? false : Device_Soft.Reset(params);
        };
        s_refusals = 0;
        g_Device = &table;
    }
    static int s_resets, s_refusals;
    static DeviceParams s_params;
};

int WindowTest::s_resets, WindowTest::s_refusals;
DeviceParams WindowTest::s_params;

TEST_F(WindowTest, WindowLargerThanTheDesktopIsCutDown)
{
    struct Case {
        uint32_t flags;
        int32_t width, height;
        const char* client;
    };
    // The desktop is 1000 by 600; a border and a caption take 32 of its height.
    const Case cases[] = {
        {INFO_KEEP_ASPECT, 854, 480, "854x480"},
        {INFO_KEEP_ASPECT, 2000, 1000, "1000x500"},
        {0, 2000, 500, "1000x500"},
        {INFO_KEEP_ASPECT, 1000, 1136, "500x568"},
        {0, 1000, 1136, "1000x568"},
        {INFO_BORDERLESS, 1000, 900, "1000x600"},
        {INFO_KEEP_ASPECT, 2000, 2000, "568x568"},
    };
    Stage_SetDesktop(1000, 600);
    for (const Case& c : cases) {
        SCOPED_TRACE(c.client);
        ASSERT_TRUE(OpenWindow(c.flags, c.width, c.height));
        EXPECT_EQ(Client(), c.client);
        EXPECT_EQ(g_Display.clientWidth, g_Display.backbufferWidth);
        CloseWindow();
    }
}

TEST_F(WindowTest, StartsOnlyWhereThereAreColours)
{
    g_Host.window.DesktopDepth = [] { return 8; };
    EXPECT_FALSE(OpenWindow());
    ASSERT_EQ(Stage_MessageBoxes().size(), 1U);
    EXPECT_NE(Stage_MessageBoxes()[0].find("This program requires 16-bit (High Color) or 32-bit "
                                           "(Full Color) mode."),
              VxString::npos);
    g_Host.window.DesktopDepth = [] { return 16; };
    EXPECT_TRUE(OpenWindow());
    CloseWindow();

    static int code;
    code = 0;
    Error_SetExitHook([](int exit) { code = exit; });
    Stage_SetDesktop(0, 0);  // no picture can be had at all
    EXPECT_FALSE(OpenWindow(0, 0, 0));
    EXPECT_EQ(code, -1);
}

TEST_F(WindowTest, ShowsItselfWhenTheFirstFrameEnds)
{
    Start();
    EXPECT_FALSE(Stage_WindowShown());
    Rounds(1);
    EXPECT_TRUE(Stage_WindowShown());
    EXPECT_EQ(Stage_PresentCount(), 1);
}

TEST_F(WindowTest, FullscreenStartGoesBackToTheGamesSize)
{
    Start(kFlags | INFO_FULLSCREEN);
    EXPECT_EQ(Client(), "1920x1080");
    Rounds(1);
    Window_SetFullscreen(false);
    EXPECT_EQ(Client(), "1920x1080") << "a wish until the next frame begins";
    Rounds(1);
    EXPECT_EQ(Client(), "854x480");
    EXPECT_EQ(Corner(), "533,300") << "centred";
    EXPECT_EQ(g_Display.clientWidth, 854);
    EXPECT_EQ(g_Display.backbufferHeight, 480);
    EXPECT_EQ(g_Display.savedWidth, -1);
}

TEST_F(WindowTest, AltEnterTwiceGivesTheSameWindow)
{
    Start();
    Rounds(1);
    Window_SetSize(700, 500);
    Rounds(14);
    ASSERT_EQ(Client(), "700x500");
    AltEnter();
    Rounds(2);
    EXPECT_EQ(Client(), "1920x1080");
    EXPECT_TRUE(g_Display.fullscreen);
    Window_SetSize(640, 480);  // full-screen has no size of its own
    Rounds(12);
    EXPECT_EQ(Client(), "1920x1080");
    g_Display.pendingWidth = g_Display.pendingHeight = -1;
    AltEnter();
    Rounds(2);
    EXPECT_EQ(Client(), "700x500");
    EXPECT_FALSE(g_Display.fullscreen);
}

TEST_F(WindowTest, SizeSettlesForTenFramesAndResetsOnce)
{
    Start();
    CountResets();
    Rounds(1);
    Stage_SetClientSize(1000, 700);
    Rounds(1);
    EXPECT_EQ(g_Display.clientWidth, 1000) << "the frame sees the size at once";
    Rounds(4);
    Stage_SetClientSize(900, 600);  // the drag goes on
    Rounds(9);
    EXPECT_EQ(s_resets, 0);
    Rounds(1);
    EXPECT_EQ(s_resets, 1);
    Rounds(30);
    EXPECT_EQ(s_resets, 1);
    EXPECT_EQ(s_params.width, 900);
    EXPECT_EQ(s_params.height, 600);
    EXPECT_EQ(g_Display.backbufferWidth, 900);
    EXPECT_EQ(Corner(), "0,0") << "the user's own place is kept";

    // A script's wish is centred.
    Window_SetSize(854, 480);
    Window_SetSize(0, 100);
    Rounds(30);
    EXPECT_EQ(s_resets, 2);
    EXPECT_EQ(Client(), "854x480");
    EXPECT_EQ(Corner(), "533,300");
    Window_SetSize(854, 480);  // no change
    Rounds(30);
    EXPECT_EQ(s_resets, 2);
}

TEST_F(WindowTest, ResetLosesSurfacesAndCountsOnce)
{
    const int32_t thing = AddObject("thing", {{EVENT_STEP, 0}});
    World::Place(AddRoom("room"), thing);
    Start();
    CountResets();
    Rounds(1);
    const int32_t kept = Surface_Create(16, 16);
    const int32_t application = g_AppSurface.appSurfaceId;
    ASSERT_NE(Surface_Get(kept), nullptr);
    On("thing.Step", [](CInstance*, CInstance*) {
        Window_RequestReset(2, true);
        Window_RequestReset(4, true);
    });
    Rounds(1);
    Forget("thing.Step");
    On("thing.Step", [](CInstance*, CInstance*) {});
    EXPECT_EQ(s_resets, 0);
    EXPECT_NE(Surface_Get(kept), nullptr) << "not before the next frame";
    Rounds(1);
    EXPECT_EQ(s_resets, 1);
    EXPECT_EQ(s_params.interval, 1);
    EXPECT_EQ(s_params.samples & ~static_cast<int32_t>(g_Device->Caps().sampleLevels), 0);
    EXPECT_EQ(Surface_Get(kept), nullptr);
    EXPECT_NE(Surface_Get(g_AppSurface.appSurfaceId), nullptr) << "made anew by the frame";
    EXPECT_NE(g_AppSurface.appSurfaceId, application);
    Rounds(5);
    EXPECT_EQ(s_resets, 1);
    Window_RequestReset(3, false);
    EXPECT_EQ(g_Display.samples, 0);
}

TEST_F(WindowTest, RefusedResetTriesWithLessAndThenGoesOn)
{
    Start();
    CountResets();
    g_ManualVSync = true;
    s_refusals = 2;
    Window_RequestReset(0, false);
    Rounds(1);
    EXPECT_EQ(s_resets, 3);
    EXPECT_FALSE(g_ManualVSync);
    s_resets = 0;
    s_refusals = 100;
    Window_RequestReset(0, false);
    Rounds(3);
    EXPECT_EQ(s_resets, 2) << "one with less, and no more";
    EXPECT_TRUE(g_Running);
}

TEST_F(WindowTest, FrameLeavesTheTargetsThatAScriptForgot)
{
    Start();
    Rounds(1);
    const int32_t surface = Surface_Create(8, 8);
    Frame_Begin();
    Surface_SetTarget(0, surface);
    Surface_SetTarget(0, surface);
    Frame_End(false);
    EXPECT_EQ(Surface_StackDepth(), 0);
    int32_t width, height;
    Surface_TargetSize(&width, &height);
    EXPECT_EQ(width, g_Display.backbufferWidth);
}

TEST_F(WindowTest, LetterboxKeepsTheShapeAndItsBarsShowTheClear)
{
    AddRoom("room");
    CRoom* room = Room_Template(0);
    room->showColour = true;
    room->colour = 0x0000FF;
    room->clearDisplayBuffer = true;
    Start();
    g_Display.windowColour = 0xFF00FF00U;
    Stage_SetClientSize(854, 680);
    Rounds(12);
    const Letterbox box = Window_Letterbox();
    EXPECT_FLOAT_EQ(box.top, 100);
    EXPECT_FLOAT_EQ(box.bottom, 580);
    EXPECT_FLOAT_EQ(box.left, 0);
    EXPECT_FLOAT_EQ(box.right, 854);
    int32_t width = 0, height = 0;
    const uint32_t* pixels = Device_Soft_BackBuffer(&width, &height);
    ASSERT_EQ(height, 680);
    const auto at = [&](int32_t x, int32_t y) { return pixels[y * width + x] & 0xFFFFFFU; };
    EXPECT_EQ(at(427, 99), 0x00FF00U);
    EXPECT_EQ(at(427, 101), 0xFF0000U);
    EXPECT_EQ(at(427, 578), 0xFF0000U);
    EXPECT_EQ(at(427, 581), 0x00FF00U);

    int32_t left, top;
    Stage_SetClientSize(1055, 480);  // bars of 100.5, cut for the mouse and not for the picture
    Rounds(12);
    Window_LetterboxOffsets(&left, &top);
    EXPECT_EQ(left, 100);
    EXPECT_EQ(top, 0);
    EXPECT_FLOAT_EQ(Window_Letterbox().left, 100.5F);
    g_Display.keepAspect = false;
    Window_LetterboxOffsets(&left, &top);
    EXPECT_EQ(left, 0);
    EXPECT_FLOAT_EQ(Window_Letterbox().right, 1055);
}

TEST_F(WindowTest, FocusAndClose)
{
    Start();
    Send(HostMessageType::Focus, true);
    Stage_Key('A', true);
    Rounds(1);
    EXPECT_TRUE(g_WindowFocus);
    EXPECT_TRUE(IO_KeyCheck('A'));
    Send(HostMessageType::ActivateApp, false);
    Rounds(1);
    EXPECT_FALSE(g_WindowFocus);
    EXPECT_FALSE(IO_KeyCheck('A'));
    Send(HostMessageType::Close);
    Rounds(2);
    EXPECT_FALSE(g_Running);
}

TEST_F(WindowTest, CursorRowsOfTheScriptsNumbers)
{
    constexpr int32_t kNone = -1;
    struct Case {
        int32_t value, row;
    };
    const Case cases[] = {{0, 0},    {-2, 0},   {-1, kNone}, {-3, 2},   {-5, kNone}, {-6, 4},
                          {-12, 10}, {-21, 10}, {-13, 11},   {-18, 11}, {-20, 13},   {-22, 14}};
    ASSERT_TRUE(OpenWindow());
    for (const Case& c : cases) {
        Window_SetCursorValue(c.value);
        EXPECT_EQ(Stage_CursorRow(), c.row) << c.value;
        EXPECT_EQ(g_Display.cursor, c.value);
    }
    Window_SetCursorValue(77);  // no cursor: kept for the getter alone
    EXPECT_EQ(Stage_CursorRow(), 14);
    EXPECT_EQ(g_Display.cursor, 77);
    CloseWindow();
    ASSERT_TRUE(OpenWindow(kFlags & ~INFO_CURSOR));
    EXPECT_EQ(g_Display.cursor, -1);
    Window_SetCursorValue(-3);
    EXPECT_EQ(Stage_CursorRow(), kNone);
}

}  // namespace
