// Buttons, wheel and position of the mouse, and the events that they raise.

#include "Files/Graphics/Surface.h"
#include "tests/Files/IO/support_Input.h"
#include "tests/Files/support_Screen.h"

namespace {

class MouseTest : public InputTest {};

TEST_F(MouseTest, ButtonsLatchAndShowAsReleasedWhenTheyAreQuick)
{
    Button(1, true);
    Frame();
    EXPECT_EQ(MouseButton(1), "dp.");
    EXPECT_EQ(MouseButton(-1), "dp.");
    EXPECT_EQ(MouseButton(0), "..r") << "none is released";
    EXPECT_EQ(Variable("mouse_button"), 1);
    Button(1, true);  // a second message of a held button is no press
    Frame();
    EXPECT_EQ(MouseButton(1), "d..");
    Button(1, false);
    Frame();
    EXPECT_EQ(MouseButton(1), "..r");
    EXPECT_EQ(Variable("mouse_button"), 0);
    EXPECT_EQ(Variable("mouse_lastbutton"), 1);

    Button(3, true);
    Button(3, false);
    Frame();
    EXPECT_EQ(MouseButton(3), "..r");
    for (const int32_t button : {-2, 4, 100}) EXPECT_EQ(MouseButton(button), "...") << button;
    Button(4, true);  // a button without a number of its own
    Button(0, true);
    Frame();
    EXPECT_EQ(MouseButton(-1), "...");
}

TEST_F(MouseTest, CaptureLastsWhileAButtonIsHeld)
{
    static std::string calls;
    calls.clear();
    g_Host.window.Capture = [](bool on) { calls += on ? "+" : "-"; };
    for (const int32_t button : {1, 2}) Button(button, true);
    for (const int32_t button : {1, 2}) Button(button, false);
    Frame();
    EXPECT_EQ(calls, "+-");
    Button(3, false);  // went down outside of the window
    Button(1, true);
    Frame();
    EXPECT_EQ(calls, "+--+");
}

TEST_F(MouseTest, WheelAndClearing)
{
    Wheel(2);
    Frame();
    EXPECT_EQ(Number("mouse_wheel_up"), 1);
    EXPECT_EQ(Number("mouse_wheel_down"), 0);
    Wheel(-1);
    Wheel(0);
    Frame();
    EXPECT_EQ(Number("mouse_wheel_up"), 0);
    EXPECT_EQ(Number("mouse_wheel_down"), 1);
    Frame();
    EXPECT_EQ(Number("mouse_wheel_down"), 0);

    Button(1, true);
    Button(2, true);
    Frame();
    Call("mouse_clear", {1.0});
    EXPECT_EQ(MouseButton(1) + MouseButton(2), "...dp.");
    Frame();
    EXPECT_EQ(MouseButton(1) + MouseButton(2), "...d..");
    Call("mouse_clear", {-1.0});
    EXPECT_EQ(MouseButton(2), "...");
}

// ---- in a room

class RoomMouseTest : public World {
protected:
    void SetUp() override
    {
        World::SetUp();
        Window_Init();
        IO_Init();
        g_AppSurface.appSurfaceEnabled = true;
        g_AppSurface.appSurfaceWidth = 854;
        g_AppSurface.appSurfaceHeight = 480;
        g_Display.clientWidth = 854;
        g_Display.clientHeight = 480;
        portScaleX = portScaleY = 1;
        room_ = AddRoom("room");
        Room_Template(room_)->width = 1708;
        Room_Template(room_)->height = 960;
    }
    void At(int32_t x, int32_t y)
    {
        g_IOFrame.mouseX[0] = x;
        g_IOFrame.mouseY[0] = y;
    }
    std::string RoomPosition(int32_t clientX, int32_t clientY)
    {
        At(clientX, clientY);
        int32_t x, y;
        IO_MouseRoomPosition(&x, &y);
        return std::to_string(x) + "," + std::to_string(y);
    }
    void Send(HostMessageType type, int32_t button = 1)
    {
        HostMessage message{};
        message.type = type;
        message.button = button;
        Stage_Post(message);
    }
    int32_t room_ = 0;
};

TEST_F(RoomMouseTest, WholeRoomAndLetterbox)
{
    Begin();
    EXPECT_EQ(RoomPosition(427, 240), "854,480");
    g_Display.keepAspect = true;
    g_Display.clientHeight = 680;  // bars of 100 above and below
    EXPECT_EQ(RoomPosition(0, 100), "0,0");
    EXPECT_EQ(RoomPosition(853, 579), "1706,958");
    EXPECT_EQ(RoomPosition(427, 50), "854,-100") << "a click on the bar lies outside the room";
    EXPECT_EQ(RoomPosition(427, 630), "854,1060");
    g_Display.clientHeight = 480;
    g_Display.clientWidth = 1054;  // bars left and right
    EXPECT_EQ(RoomPosition(100, 0), "0,0");
    EXPECT_EQ(RoomPosition(40, 240), "-120,480");
    g_AppSurface.appSurfaceEnabled = false;  // the room fills the window
    EXPECT_EQ(RoomPosition(527, 240), "854,480");
}

TEST_F(RoomMouseTest, ViewsFromTheLastToTheFirst)
{
    Begin();
    Run_Room->viewsEnabled = true;
    CView& left = Run_Room->views[0];
    CView& right = Run_Room->views[1];
    left = right = CView{};
    left.surface_id = right.surface_id = -1;
    left.visible = right.visible = true;
    left.wview = right.wview = 200;
    left.hview = right.hview = 240;
    left.wport = right.wport = 427;
    left.hport = right.hport = 480;
    right.xport = 427;
    right.xview = 1000;
    EXPECT_EQ(RoomPosition(427 + 213, 240), "1100,120");
    EXPECT_EQ(RoomPosition(213, 240), "100,120");
    // Where no view holds it, the result of the last view tried stands.
    EXPECT_EQ(RoomPosition(-427, 240), "-200,120");

    right.visible = false;
    left.angle = 90;
    EXPECT_EQ(RoomPosition(213, 240), "100,120") << "the centre does not turn";
    EXPECT_EQ(RoomPosition(213, 480), "-20,120");
    EXPECT_EQ(RoomPosition(427, 240), "100,220");

    left.surface_id = 3;  // a surface that is gone: it is drawn on the window
    EXPECT_EQ(RoomPosition(427, 240), "100,220");
}

class ScreenMouseTest : public ScreenWorld {};

TEST_F(ScreenMouseTest, AViewWithASurfaceOfItsOwnIsNotUnderTheMouse)
{
    Start();
    Run_Room->viewsEnabled = true;
    CView& view = Run_Room->views[0];
    view.visible = true;
    view.wview = view.wport = 854;
    view.hview = view.hport = 480;
    view.xview = 5000;
    view.surface_id = Surface_Create(16, 16);
    Run_Room->width = 854;
    Stage_SetMouse(10, 10);
    Rounds(1);
    int32_t x, y;
    IO_MouseRoomPosition(&x, &y);
    EXPECT_EQ(x, 10) << "the whole room";
    Surface_Free(view.surface_id);
    IO_MouseRoomPosition(&x, &y);
    EXPECT_EQ(x, 5010) << "through the view, as it is drawn now";
}

TEST_F(RoomMouseTest, EventsOfAClickReachWhatLiesUnderIt)
{
    const int32_t box =
        AddObject("box", {{EVENT_MOUSE, 0}, {EVENT_MOUSE, 4}, {EVENT_MOUSE, 7}, {EVENT_MOUSE, 53}});
    Object(box).spriteIndex = AddBoxSprite(32, 32);
    Place(room_, box, 0, 0);
    Place(room_, box, 200, 0);
    Begin();
    Room_Template(room_);
    Stage_SetMouse(8, 8);  // 16, 16 in the room
    Send(HostMessageType::ButtonDown);
    Process_Messages();
    IO_Update();
    IO_MouseEvents();
    EXPECT_EQ(Take(), (Log{"box.Mouse0", "box.Mouse4", "box.Mouse53", "box.Mouse53"}));
    Send(HostMessageType::ButtonUp);
    Process_Messages();
    IO_Update();
    IO_MouseEvents();
    EXPECT_EQ(Take(), (Log{"box.Mouse7"}));
}

// A click that opens a window of buttons does not press the button that opens under it.
TEST_F(RoomMouseTest, MadeByAMouseEventItWaitsForTheNextFrame)
{
    const int32_t box = AddObject("box", {{EVENT_MOUSE, 0}});
    const int32_t made = AddObject(
        "made", {{EVENT_MOUSE, 4}, {EVENT_MOUSE, 10}, {EVENT_MOUSE, 50}, {EVENT_MOUSE, 60}});
    Object(box).spriteIndex = Object(made).spriteIndex = AddBoxSprite(32, 32);
    Place(room_, box);
    Begin();
    On("box.Mouse0", [&](CInstance*, CInstance*) {
        if (!First(made)) Room_CreateInstance(0, 0, made);
    });
    Stage_SetMouse(4, 4);
    Send(HostMessageType::ButtonDown);
    Mouse_Wheel(1);
    Process_Messages();
    IO_Update();
    IO_MouseEvents();
    EXPECT_EQ(Take(), (Log{"box.Mouse0"}));
    IO_Update();
    IO_MouseEvents();
    EXPECT_EQ(Take(), (Log{"box.Mouse0", "made.Mouse50", "made.Mouse10"}));
}

TEST_F(RoomMouseTest, DestroyedByTheClickOfAnotherMeansNoClick)
{
    const int32_t box = AddObject("box", {{EVENT_MOUSE, 4}});
    Object(box).spriteIndex = AddBoxSprite(32, 32);
    Place(room_, box);
    Place(room_, box);
    Begin();
    On("box.Mouse4", [&](CInstance* self, CInstance*) {
        for (CInstance* at = Run_Room->activeHead; at; at = at->next)
            if (at != self) at->marked = true;
        ++g_MarkedCount;
    });
    Stage_SetMouse(4, 4);
    Send(HostMessageType::ButtonDown);
    Process_Messages();
    IO_Update();
    IO_MouseEvents();
    EXPECT_EQ(Take(), (Log{"box.Mouse4"}));
}

TEST_F(RoomMouseTest, EnterAndLeaveFollowAMovingInstance)
{
    const int32_t box = AddObject("box", {{EVENT_MOUSE, 10}, {EVENT_MOUSE, 11}});
    Object(box).spriteIndex = AddBoxSprite(32, 32);
    Place(room_, box, 100, 0);
    Begin();
    At(8, 8);
    IO_MouseEvents();
    EXPECT_EQ(Take(), Log{}) << "made beside the mouse: nothing to leave";
    First(box)->SetPosition(0, 0);
    IO_MouseEvents();
    IO_MouseEvents();
    EXPECT_EQ(Take(), (Log{"box.Mouse10"}));
    First(box)->SetPosition(100, 0);
    IO_MouseEvents();
    IO_MouseEvents();
    EXPECT_EQ(Take(), (Log{"box.Mouse11"}));
}

}  // namespace
