// Display and window built-ins.

#include "Files/Base/Console.h"
#include "Files/Function/Function_Registry.h"
#include "Files/Graphics/Window.h"
#include "Files/IO/IO.h"
#include "Files/IO/IO_Record.h"
#include "Files/Run/Run_State.h"
#include "Host/Host.h"

void Function_Graphic_RegisterWindow();

namespace {

constexpr uint32_t kOpaque = 0xFF000000U, kColourBits = 0xFFFFFFU;

struct Point {
    int32_t x, y;
};

Point ClientPosition()
{
    Point at;
    g_Host.window.ClientPosition(&at.x, &at.y);
    return at;
}

Point ScreenMouse()
{
    Point at;
    Record_Cursor(&at.x, &at.y);
    return at;
}

void ApplyLimits()
{
    g_Host.window.SetLimits(g_Display.minWidth, g_Display.minHeight, g_Display.maxWidth,
                            g_Display.maxHeight);
}

// ---- display

BUILTIN(display_get_width)
{
    SetReal(result, g_Host.window.Desktop().width);
}
BUILTIN(display_get_height)
{
    SetReal(result, g_Host.window.Desktop().height);
}
BUILTIN(display_get_colordepth)
{
    SetReal(result, g_Host.window.DesktopDepth());
}
BUILTIN(display_get_frequency)
{
    SetReal(result, g_Host.window.DesktopFrequency());
}
BUILTIN(display_get_orientation)
{
    SetReal(result, 0);
}

// The desktop's mode belongs to the user: a wish for the present one holds, any
// other is refused and changes nothing.
bool IsPresentMode(double width, double height, double frequency, double depth)
{
    const HostRect desktop = g_Host.window.Desktop();
    const auto fits = [](double wish, int32_t present) { return wish <= 0 || wish == present; };
    return fits(width, desktop.width) && fits(height, desktop.height) &&
           fits(frequency, g_Host.window.DesktopFrequency()) &&
           fits(depth, g_Host.window.DesktopDepth());
}

void AnswerMode(RValue& result, bool present, bool reset)
{
    if (present && reset) g_Display.resetCountdown = 1;
    SetBool(result, present);
}

BUILTIN(display_set_size)
{
    AnswerMode(result, IsPresentMode(VXGetReal(args, 0), VXGetReal(args, 1), 0, 0), true);
}

BUILTIN(display_set_colordepth)
{
    AnswerMode(result, IsPresentMode(0, 0, 0, VXGetReal(args, 0)), true);
}

BUILTIN(display_set_frequency)
{
    AnswerMode(result, IsPresentMode(0, 0, VXGetReal(args, 0), 0), true);
}

bool AllPresent(const RValue* args)
{
    return IsPresentMode(VXGetReal(args, 0), VXGetReal(args, 1), VXGetReal(args, 2),
                         VXGetReal(args, 3));
}

BUILTIN(display_set_all)
{
    AnswerMode(result, AllPresent(args), true);
}
BUILTIN(display_test_all)
{
    AnswerMode(result, AllPresent(args), false);
}
BUILTIN(display_reset)
{
    Window_RequestReset(VXGetInt32(args, 0), VXGetBool(args, 1));
}
BUILTIN(display_mouse_get_x)
{
    SetReal(result, ScreenMouse().x);
}
BUILTIN(display_mouse_get_y)
{
    SetReal(result, ScreenMouse().y);
}

BUILTIN(display_mouse_set)
{
    if (g_Host.window.HasFocus())
        g_Host.window.SetMousePosition(VXGetInt32(args, 0), VXGetInt32(args, 1));
}

BUILTIN(display_set_windows_alternate_sync)
{
    g_ManualVSync = VXGetBool(args, 0);
    g_Display.resetCountdown = 1;
}

BUILTIN(display_get_windows_alternate_sync)
{
    SetBool(result, g_ManualVSync);
}
BUILTIN(display_set_timing_method)
{
    g_TimingOn = VXGetInt32(args, 0) == 0;
}
BUILTIN(display_get_timing_method)
{
    SetReal(result, g_TimingOn ? 0 : 1);
}
BUILTIN(display_set_sleep_margin)
{
    g_SleepMargin = VXGetInt32(args, 0);
}
BUILTIN(display_get_sleep_margin)
{
    SetReal(result, g_SleepMargin);
}

// ---- window

BUILTIN(window_set_fullscreen)
{
    Window_SetFullscreen(VXGetBool(args, 0));
}
BUILTIN(window_get_fullscreen)
{
    SetBool(result, g_Display.fullscreen);
}
BUILTIN(window_set_caption)
{
    Window_SetCaption(VXGetString(args, 0));
}
BUILTIN(window_get_caption)
{
    VXCreateString(&result, g_Display.caption.c_str());
}
BUILTIN(window_set_cursor)
{
    Window_SetCursorValue(VXGetInt32(args, 0));
}
BUILTIN(window_get_cursor)
{
    SetReal(result, g_Display.cursor);
}

BUILTIN(window_set_colour)
{
    g_Display.windowColour = kOpaque | (VXGetUint32(args, 0) & kColourBits);
}

BUILTIN(window_get_colour)
{
    SetReal(result, g_Display.windowColour & kColourBits);
}

BUILTIN(window_set_min_width)
{
    g_Display.minWidth = VXGetInt32(args, 0);
    ApplyLimits();
}

BUILTIN(window_set_max_width)
{
    g_Display.maxWidth = VXGetInt32(args, 0);
    ApplyLimits();
}

BUILTIN(window_set_min_height)
{
    g_Display.minHeight = VXGetInt32(args, 0);
    ApplyLimits();
}

BUILTIN(window_set_max_height)
{
    g_Display.maxHeight = VXGetInt32(args, 0);
    ApplyLimits();
}

BUILTIN(window_set_position)
{
    g_Host.window.SetClientPosition(VXGetInt32(args, 0), VXGetInt32(args, 1));
}

BUILTIN(window_set_size)
{
    Window_SetSize(VXGetInt32(args, 0), VXGetInt32(args, 1));
}

BUILTIN(window_set_rectangle)
{
    g_Host.window.SetClientPosition(VXGetInt32(args, 0), VXGetInt32(args, 1));
    Window_SetSize(VXGetInt32(args, 2), VXGetInt32(args, 3));
}

BUILTIN(window_center)
{
    Window_Centre(g_Display.clientWidth, g_Display.clientHeight);
}

BUILTIN(window_get_x)
{
    SetReal(result, ClientPosition().x);
}
BUILTIN(window_get_y)
{
    SetReal(result, ClientPosition().y);
}
BUILTIN(window_get_width)
{
    SetReal(result, g_Display.clientWidth);
}
BUILTIN(window_get_height)
{
    SetReal(result, g_Display.clientHeight);
}

int32_t Larger(int32_t a, int32_t b)
{
    return a > b ? a : b;
}
int32_t Smaller(int32_t a, int32_t b)
{
    return a < b ? a : b;
}

// Eight numbers a monitor: the overlap with the rectangle, then the monitor, each as
// left, top, right, bottom. An overlap of nothing is four times 0.
BUILTIN(window_get_visible_rects)
{
    const int32_t left = VXGetInt32(args, 0), top = VXGetInt32(args, 1);
    const int32_t right = VXGetInt32(args, 2), bottom = VXGetInt32(args, 3);
    RELEASE_RValue(&result);
    int32_t at = 0;
    for (int32_t i = 0; i < g_Host.window.MonitorCount(); ++i) {
        const HostRect monitor = g_Host.window.Monitor(i);
        const int32_t farX = monitor.x + monitor.width, farY = monitor.y + monitor.height;
        int32_t numbers[8] = {Larger(left, monitor.x),
                              Larger(top, monitor.y),
                              Smaller(right, farX),
                              Smaller(bottom, farY),
                              monitor.x,
                              monitor.y,
                              farX,
                              farY};
        const bool apart = numbers[0] >= numbers[2] || numbers[1] >= numbers[3];
        if (apart) numbers[0] = numbers[1] = numbers[2] = numbers[3] = 0;
        for (const int32_t number : numbers) {
            const RValue value(static_cast<double>(number));
            SET_RValue(&result, &value, at++);
        }
    }
}

BUILTIN(window_mouse_get_x)
{
    SetReal(result, g_IOFrame.mouseX[0]);
}
BUILTIN(window_mouse_get_y)
{
    SetReal(result, g_IOFrame.mouseY[0]);
}

BUILTIN(window_mouse_set)
{
    const Point client = ClientPosition();
    g_Host.window.SetMousePosition(client.x + VXGetInt32(args, 0), client.y + VXGetInt32(args, 1));
}

Point ViewMouse(const RValue* args)
{
    Point at;
    IO_MouseViewPosition(VXGetInt32(args, 0), &at.x, &at.y);
    return at;
}

Point RoomMouse()
{
    Point at;
    IO_MouseRoomPosition(&at.x, &at.y);
    return at;
}

BUILTIN(window_view_mouse_get_x)
{
    SetReal(result, ViewMouse(args).x);
}
BUILTIN(window_view_mouse_get_y)
{
    SetReal(result, ViewMouse(args).y);
}
BUILTIN(window_views_mouse_get_x)
{
    SetReal(result, RoomMouse().x);
}
BUILTIN(window_views_mouse_get_y)
{
    SetReal(result, RoomMouse().y);
}

// Settings that a desktop window of this system does not have.
BUILTIN(no_effect) {}
BUILTIN(answer_false)
{
    SetBool(result, false);
}
BUILTIN(answer_true)
{
    SetBool(result, true);
}

constexpr BuiltinRow kRows[] = {
    {"display_get_width", display_get_width, 0},
    {"display_get_height", display_get_height, 0},
    {"display_get_colordepth", display_get_colordepth, 0},
    {"display_get_frequency", display_get_frequency, 0},
    {"display_get_orientation", display_get_orientation, 0},
    {"display_set_size", display_set_size, 2},
    {"display_set_colordepth", display_set_colordepth, 1},
    {"display_set_frequency", display_set_frequency, 1},
    {"display_set_all", display_set_all, 4},
    {"display_test_all", display_test_all, 4},
    {"display_reset", display_reset, 2},
    {"display_mouse_get_x", display_mouse_get_x, 0},
    {"display_mouse_get_y", display_mouse_get_y, 0},
    {"display_mouse_set", display_mouse_set, 2},
    {"display_set_windows_alternate_sync", display_set_windows_alternate_sync, 1},
    {"display_get_windows_alternate_sync", display_get_windows_alternate_sync, 0},
    {"display_set_timing_method", display_set_timing_method, 1},
    {"display_get_timing_method", display_get_timing_method, 0},
    {"display_set_sleep_margin", display_set_sleep_margin, 1},
    {"display_get_sleep_margin", display_get_sleep_margin, 0},
    {"window_set_fullscreen", window_set_fullscreen, 1},
    {"window_get_fullscreen", window_get_fullscreen, 0},
    {"window_set_caption", window_set_caption, 1},
    {"window_get_caption", window_get_caption, 0},
    {"window_set_cursor", window_set_cursor, 1},
    {"window_get_cursor", window_get_cursor, 0},
    {"window_set_colour", window_set_colour, 1},
    {"window_set_color", window_set_colour, 1},
    {"window_get_colour", window_get_colour, 0},
    {"window_get_color", window_get_colour, 0},
    {"window_set_min_width", window_set_min_width, 1},
    {"window_set_max_width", window_set_max_width, 1},
    {"window_set_min_height", window_set_min_height, 1},
    {"window_set_max_height", window_set_max_height, 1},
    {"window_set_position", window_set_position, 2},
    {"window_set_size", window_set_size, 2},
    {"window_set_rectangle", window_set_rectangle, 4},
    {"window_center", window_center, 0},
    {"window_get_x", window_get_x, 0},
    {"window_get_y", window_get_y, 0},
    {"window_get_width", window_get_width, 0},
    {"window_get_height", window_get_height, 0},
    {"window_get_visible_rects", window_get_visible_rects, 4},
    {"window_mouse_get_x", window_mouse_get_x, 0},
    {"window_mouse_get_y", window_mouse_get_y, 0},
    {"window_mouse_set", window_mouse_set, 2},
    {"window_view_mouse_get_x", window_view_mouse_get_x, 1},
    {"window_view_mouse_get_y", window_view_mouse_get_y, 1},
    {"window_views_mouse_get_x", window_views_mouse_get_x, 0},
    {"window_views_mouse_get_y", window_views_mouse_get_y, 0},
    {"window_set_visible", no_effect, 1},
    {"window_set_showborder", no_effect, 1},
    {"window_set_showicons", no_effect, 1},
    {"window_set_stayontop", no_effect, 1},
    {"window_set_sizeable", no_effect, 1},
    {"window_default", no_effect, 0},
    {"window_get_visible", answer_true, 0},
    {"window_get_showborder", answer_false, 0},
    {"window_get_showicons", answer_false, 0},
    {"window_get_stayontop", answer_false, 0},
    {"window_get_sizeable", answer_false, 0},
};

}  // namespace

void Function_Graphic_RegisterWindow()
{
    Function_AddRows(kRows);
}
