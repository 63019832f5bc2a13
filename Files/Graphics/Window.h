#pragma once
// The window, its device, the switch between windowed and full-screen display,
// the reset of the device, and the frame's begin and end.

#include <cstdint>

#include "Host/Host.h"

enum InfoFlags : uint32_t {
    INFO_FULLSCREEN = 0x1,
    INFO_VSYNC = 0x2,
    INFO_SOFTWARE_VERTICES = 0x4,
    INFO_INTERPOLATE = 0x8,
    INFO_KEEP_ASPECT = 0x10,
    INFO_CURSOR = 0x20,
    INFO_SIZEABLE = 0x40,
    INFO_STEAM = 0x1000,
    INFO_BORDERLESS = 0x4000,
    INFO_OBJECT_RUNTIME = 0x8000,
};

struct DisplayState {
    int32_t windowWidth, windowHeight;
    int32_t clientWidth, clientHeight;
    int32_t backbufferWidth, backbufferHeight;
    int32_t deviceWidth, deviceHeight;
    int32_t savedWidth, savedHeight;      // -1 none
    int32_t pendingWidth, pendingHeight;  // -1 none
    bool fullscreen;
    int32_t resetCountdown;  // 0 idle, 1 reset at the next frame, above: counts down
    bool resizing, sizeEvent;
    uint32_t interval;  // 0x80000000 immediate, 0 default
    bool vsync, keepAspect, interpolate, altEnterEnabled;
    int32_t minWidth, maxWidth, minHeight, maxHeight;  // 0 for none
    uint32_t windowColour;                             // 0xFF000000 + 0xBBGGRR
    int32_t samples;                                   // multisampling asked for by display_reset
    int32_t cursor;                                    // value of window_get_cursor
    bool cursorShown;                                  // cursor display is on
    VxString caption;
};
extern DisplayState g_Display;
extern bool g_WindowFocus;
extern bool g_IntelMode;

void Window_Init();  // defaults, before the header is read
void Window_SetHeader(int32_t width, int32_t height, uint32_t infoFlags, const char* caption);
bool Window_Create(int32_t width, int32_t height);
bool GR_D3D_Init(int32_t width, int32_t height, uint32_t flags);
void GR_D3D_Quit();  // surfaces, buffers, textures, device
void Window_Destroy();
void Window_Proc(const HostMessage& message);
void Window_SetFullscreen(bool on);
void Window_SetSize(int32_t width, int32_t height);
void Display_CheckSize();
bool Display_Reset();
void Display_Countdown();  // at the head of a frame
void Frame_Begin();
void Frame_End(bool present);

// The letterbox rectangle of the application surface in the window, single precision.
struct Letterbox {
    float left, top, right, bottom;
};
Letterbox Window_Letterbox();
// The same in an area of another size than the window's client area.
Letterbox Window_LetterboxIn(int32_t areaWidth, int32_t areaHeight);
bool Window_Borderless();
// The mode cursor values of window_set_cursor: cr_default 0, cr_none -1, cr_cross -3 ...
void Window_SetCursorValue(int32_t value);
// Shows the arrow, or none for good unless the header and the option block both allow a cursor.
void Window_AllowCursor(bool option);
// Moves the window so that a client area of that size stands in the middle of the desktop.
void Window_Centre(int32_t width, int32_t height);
void Window_SetCaption(const char* caption);
// The size that the view mapping of the window uses, cut to the desktop; resets the
// viewport and the view area when it differs.
void Window_SetDeviceSize(int32_t width, int32_t height);
// Asks for a reset at the next frame's head with these settings.
void Window_RequestReset(int32_t antialias, bool vsync);
void Window_LetterboxOffsets(int32_t* left, int32_t* top);
// The application surface, in the middle of an area of the back buffer, client pixels.
void Surface_DrawToWindow(int32_t x, int32_t y, int32_t width, int32_t height);
