// A user at a real window: sizes, full-screen, focus and the end, on both devices, with
// what becomes of surfaces on the way and what is left of the device's textures.

#include "tests/Files/Graphics/support_User.h"
#include "tests/Files/support_Screen.h"

#ifdef HAS_XTEST

namespace {

constexpr int kPatience = 120;  // frames until an event of the screen must have arrived

class WindowStory : public ScreenWorld, public testing::WithParamInterface<bool> {
protected:
    static bool OnGL() { return GetParam(); }

    void SetUp() override
    {
        if (const char* missing = ScreenUser::Missing()) GTEST_SKIP() << missing;
        ScreenWorld::SetUp();
        Host_UseSDL();
        g_Switches.software = !OnGL();
        g_Switches.gl = OnGL();
        AddRoom("room");
        CRoom* room = Room_Template(0);
        room->width = 160;
        room->height = 120;
        room->speed = 240;
        room->showColour = room->clearDisplayBuffer = true;
        room->colour = 0x2000C0;
        ASSERT_TRUE(OpenWindow(kFlags | INFO_SIZEABLE, 320, 240));
        Begin();
        g_DrawEnabled = true;
        g_Display.windowColour = 0xFF00A000U;
        g_LastFrameStart = g_FpsClock = Clock_Micros();
        WatchTheEnd();
        EXPECT_STREQ(g_Device->name, (OnGL() ? Device_GL : Device_Soft).name);
        Rounds(3);
        user_ = new ScreenUser("test");
        ASSERT_TRUE(user_->found());
        user_->focus(true);
        ASSERT_TRUE(Until([] { return g_WindowFocus; }));
    }
    void TearDown() override
    {
        delete user_;
        if (Current()) ScreenWorld::TearDown();  // not when the test was skipped
    }
    // What is left on the device when it closes goes to s_left.
    static void WatchTheEnd()
    {
        static const DeviceTable* behind;
        static DeviceTable table;
        behind = g_Device;
        table = *behind;
        table.Close = [] {
            s_left = behind->Counts();
            behind->Close();
        };
        g_Device = &table;
    }
    template <class Test>
    bool Until(Test test)
    {
        for (int i = 0; i < kPatience && g_Running; ++i) {
            if (test()) return true;
            Rounds(1);
        }
        return test();
    }
    void AltEnter()
    {
        user_->press("Alt_L", true);
        user_->press("Return", true);
        user_->press("Return", false);
        user_->press("Alt_L", false);
    }
    // The room fills the picture and the bars have the window's colour, on the screen.
    void ExpectPicture(int32_t barX, int32_t barY)
    {
        Rounds(2);
        EXPECT_EQ(user_->pixel(g_Display.clientWidth / 2, g_Display.clientHeight / 2), 0xC00020U);
        if (barX >= 0) {
            EXPECT_EQ(user_->pixel(barX, barY), 0x00A000U);
        }
    }
    ScreenUser* user_ = nullptr;
    static DeviceCounts s_left;
};

DeviceCounts WindowStory::s_left;

TEST_P(WindowStory, FromTheFirstFrameToTheCross)
{
    const DeviceCounts atFirst = g_Device->Counts();
    ExpectPicture(-1, -1);

    // The border is dragged: the picture keeps its shape at once, the device follows when
    // the size has settled, and only then surfaces are lost.
    int32_t kept = Surface_Create(32, 32);
    user_->resize(500, 300);
    ASSERT_TRUE(Until([] { return g_Display.clientWidth == 500; }));
    ExpectPicture(20, 150);
    EXPECT_EQ(g_Display.backbufferWidth, 320);
    EXPECT_NE(Surface_Get(kept), nullptr);
    ASSERT_TRUE(Until([] { return g_Display.backbufferWidth == 500; }));
    EXPECT_EQ(Surface_Get(kept), nullptr);
    EXPECT_EQ(Client(), "500x300");
    ExpectPicture(20, 150);  // 400 by 300 between bars of 50

    // Alt+Enter, and again: the same window.
    kept = Surface_Create(32, 32);
    const HostRect desktop = g_Host.window.Desktop();
    AltEnter();
    ASSERT_TRUE(Until([&] { return g_Display.backbufferWidth == desktop.width; }));
    EXPECT_TRUE(g_Display.fullscreen);
    EXPECT_EQ(Surface_Get(kept), nullptr);
    ExpectPicture(-1, -1);
    user_->focus(true);  // where no window manager gives it back
    AltEnter();
    ASSERT_TRUE(Until([] { return g_Display.backbufferWidth == 500; }));
    EXPECT_FALSE(g_Display.fullscreen);
    EXPECT_EQ(g_Display.backbufferHeight, 300);
    ExpectPicture(20, 150);

    // display_reset: every surface goes, and the application surface comes back.
    kept = Surface_Create(32, 32);
    const int32_t application = g_AppSurface.appSurfaceId;
    Window_RequestReset(2, false);
    EXPECT_NE(Surface_Get(kept), nullptr);
    Rounds(1);
    EXPECT_EQ(Surface_Get(kept), nullptr);
    EXPECT_NE(g_AppSurface.appSurfaceId, application);
    EXPECT_NE(Surface_Get(g_AppSurface.appSurfaceId), nullptr);
    ExpectPicture(20, 150);

    // A size that a script asks for is centred, and is not taken for the user's.
    Window_SetSize(400, 300);
    ASSERT_TRUE(Until([] { return g_Display.backbufferWidth == 400; }));
    Rounds(15);
    EXPECT_EQ(Corner(), std::to_string((desktop.width - 400) / 2) + "," +
                            std::to_string((desktop.height - 300) / 2));
    EXPECT_EQ(g_Display.resetCountdown, 0);

    // The sides of Shift; a script lets go of a key that the user holds.
    user_->focus(true);
    user_->press("Shift_R", true);
    ASSERT_TRUE(Until([] { return IO_KeyCheck(161) && IO_KeyCheck(16); }));
    EXPECT_FALSE(IO_KeyCheck(160));
    g_Host.window.SendKey(161, false);
    EXPECT_FALSE(g_Host.window.KeyState(161) || g_Host.window.KeyState(16));
    Rounds(2);  // the messages come behind a round
    EXPECT_FALSE(IO_KeyCheck(16) || IO_KeyCheck(161));
    user_->press("Shift_R", false);
    user_->press("Shift_L", true);
    ASSERT_TRUE(Until([] { return IO_KeyCheck(160); }));
    user_->press("Shift_L", false);
    ASSERT_TRUE(Until([] { return !IO_KeyCheck(16) && !IO_KeyCheck(160); }));

    // Keys are let go with the focus.
    user_->press("a", true);
    ASSERT_TRUE(Until([] { return IO_KeyCheck('A'); }));
    user_->focus(false);
    ASSERT_TRUE(Until([] { return !g_WindowFocus; }));
    Rounds(1);
    EXPECT_FALSE(IO_KeyCheck('A'));
    // Still held when the focus is back, the key repeats but is no press.
    user_->focus(true);
    ASSERT_TRUE(Until([] { return g_WindowFocus; }));
    bool pressed = false;
    for (int look = 0; look < 2 && !IO_KeyCheck('A'); ++look)
        Until([&] { return pressed |= IO_KeyPressed('A'), IO_KeyCheck('A'); });
    EXPECT_FALSE(pressed);
    user_->press("a", false);

    EXPECT_EQ(g_Device->Counts().textures, atFirst.textures);
    EXPECT_EQ(g_Device->Counts().buffers, atFirst.buffers);
    user_->close();
    Until([] { return !g_Running; });
    EXPECT_FALSE(g_Running);
    s_left = {-1, -1};
    GR_D3D_Quit();
    EXPECT_EQ(s_left.textures, 0);
    EXPECT_EQ(s_left.buffers, 0);
}

INSTANTIATE_TEST_SUITE_P(Devices, WindowStory, testing::Bool(),
                         [](const auto& device) { return device.param ? "GL" : "Soft"; });

}  // namespace

#endif
