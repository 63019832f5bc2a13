// The window: its size and place, its messages, full-screen and the letterbox.

#include "Files/Graphics/Window.h"

#include <algorithm>

#include "Files/Base/Archive_Main.h"
#include "Files/Base/Console.h"
#include "Files/Graphics/Draw_Room.h"
#include "Files/Graphics/Surface.h"
#include "Files/IO/GamePad.h"
#include "Files/IO/IO.h"
#include "Files/Run/Run_State.h"

DisplayState g_Display;
bool g_WindowFocus;
bool g_IntelMode;

namespace {

constexpr int32_t kSettleFrames = 10;  // a size change settles before the device is reset
constexpr int32_t kCaptionHeight = 24, kFrameHeight = 4;  // of a window with a border, pixels
constexpr char kWrongDepth[] =
    "This program requires 16-bit (High Color) or 32-bit (Full Color) mode. Please change this in "
    "your display properties and run again.";
constexpr int32_t kEnterKey = 13, kF4Key = 115;
constexpr int32_t kControl = 17, kAlt = 18, kLeftControl = 162, kLeftAlt = 164;

uint32_t g_infoFlags;
bool g_cursorAllowed;  // infoFlags and the option block agree to show the cursor

struct CursorRow {
    int32_t value, row;
};

// Values of window_set_cursor and the rows of the host's cursor table.
constexpr CursorRow kCursorRows[] = {
    {0, 0},    {-2, 0},   {-1, -1},  {-3, 2},   {-4, 3},   {-5, -1},  {-6, 4},   {-7, 5},
    {-8, 6},   {-9, 7},   {-10, 8},  {-11, 9},  {-12, 10}, {-21, 10}, {-13, 11}, {-14, 11},
    {-15, 11}, {-16, 11}, {-17, 11}, {-18, 11}, {-19, 12}, {-20, 13}, {-22, 14}};

// Depths in bits a pixel; -1 is unknown.
bool DepthServes(int32_t depth)
{
    return depth == 16 || depth == 32 || depth < 0;
}

bool Borderless()
{
    return (g_infoFlags & INFO_BORDERLESS) != 0;
}

// Cuts the wish down to the desktop; with keepAspect the other side follows.
void FitToDesktop(int32_t* width, int32_t* height)
{
    const HostRect desktop = g_Host.window.Desktop();
    if (desktop.width <= 0 || *width <= 0 || *height <= 0) return;
    if (*width > desktop.width) {
        if (g_Display.keepAspect)
            *height = static_cast<int32_t>(static_cast<double>(desktop.width) / *width * *height);
        *width = desktop.width;
    }
    const int32_t border = Borderless() ? 0 : kCaptionHeight + 2 * kFrameHeight;
    const int32_t usable = desktop.height - border;
    if (*height > usable) {
        if (g_Display.keepAspect)
            *width = static_cast<int32_t>(static_cast<double>(usable) / *height * *width);
        *height = usable;
    }
}

void UserSizeChange(bool fromDrag)
{
    int32_t width, height;
    g_Host.window.ClientSize(&width, &height);
    g_Display.sizeEvent = true;
    if (width <= 0 || height <= 0) {
        g_Display.pendingWidth = fromDrag ? std::max(width, 1) : -1;
        g_Display.pendingHeight = fromDrag ? std::max(height, 1) : -1;
    } else {
        g_Display.pendingWidth = width;
        g_Display.pendingHeight = height;
    }
    g_Display.resetCountdown = kSettleFrames;
}

bool AltEnter(const HostMessage& message)
{
    return message.system && message.key == kEnterKey && g_Display.altEnterEnabled;
}

// Alt and Control also report their left or right key.
int32_t SidedKey(const HostMessage& message)
{
    if (message.key == kAlt) return kLeftAlt + (message.extended ? 1 : 0);
    if (message.key == kControl) return kLeftControl + (message.extended ? 1 : 0);
    return 0;
}

void KeyMessage(const HostMessage& message)
{
    const bool down = message.type == HostMessageType::KeyDown;
    if (down && message.system && message.key == kF4Key) {
        HostMessage close;
        close.type = HostMessageType::Close;
        g_Host.window.PostMessage(close);
        return;
    }
    if (down && AltEnter(message) && !message.repeat) Window_SetFullscreen(!g_Display.fullscreen);
    const int32_t sided = SidedKey(message);
    if (down) {
        Key_Down(message.key, message.repeat);
        if (sided) Key_Down(sided, message.repeat);
    } else {
        Key_Up(message.key);
        if (sided) Key_Up(sided);
    }
}

void PostQuit()
{
    HostMessage quit;
    quit.type = HostMessageType::Quit;
    g_Host.window.PostMessage(quit);
}

void MouseMessage(const HostMessage& message)
{
    switch (message.type) {
        case HostMessageType::MouseMove:
            Mouse_Move(message.x, message.y);
            return;
        case HostMessageType::ButtonDown:
            Mouse_ButtonDown(message.button, message.x, message.y);
            return;
        case HostMessageType::ButtonUp:
            Mouse_ButtonUp(message.button, message.x, message.y);
            return;
        default:
            Mouse_Wheel(message.delta);
    }
}

void SizeMessage(HostMessageType type)
{
    if (type == HostMessageType::Sizing) {
        g_Display.resizing = true;
    } else if (type == HostMessageType::SizeEnd) {
        if (g_Display.resizing && !g_Display.fullscreen) UserSizeChange(true);
        g_Display.resizing = false;
    } else if (!g_Display.resizing && !g_Display.fullscreen) {
        UserSizeChange(false);
    }
}

}  // namespace

void Window_Init()
{
    g_Display = DisplayState{};
    g_Display.savedWidth = g_Display.savedHeight = -1;
    g_Display.pendingWidth = g_Display.pendingHeight = -1;
    g_Display.altEnterEnabled = true;
    g_Display.windowColour = 0xFF000000U;
    g_WindowFocus = false;
    g_IntelMode = false;
    g_infoFlags = 0;
    g_cursorAllowed = false;
}

void Window_SetHeader(int32_t width, int32_t height, uint32_t infoFlags, const char* caption)
{
    g_infoFlags = infoFlags;
    g_Display.windowWidth = width;
    g_Display.windowHeight = height;
    g_Display.keepAspect = (infoFlags & INFO_KEEP_ASPECT) != 0;
    g_Display.interpolate = (infoFlags & INFO_INTERPOLATE) != 0;
    g_Display.vsync = (infoFlags & INFO_VSYNC) != 0;
    g_Display.fullscreen = (infoFlags & INFO_FULLSCREEN) != 0;
    g_Display.caption = caption ? caption : "";
    g_AppSurface.appSurfaceWidth = width;
    g_AppSurface.appSurfaceHeight = height;
}

bool Window_Create(int32_t width, int32_t height)
{
    if (!DepthServes(g_Host.window.DesktopDepth())) {
        g_Host.dialogs.MessageBox("Error", kWrongDepth);
        return false;
    }
    g_DebugConsole->Output("AdjustWindowRectEx\n");
    FitToDesktop(&width, &height);
    g_Display.windowWidth = g_Display.clientWidth = g_Display.deviceWidth = width;
    g_Display.windowHeight = g_Display.clientHeight = g_Display.deviceHeight = height;
    if (g_Display.fullscreen) {
        g_Display.savedWidth = width;
        g_Display.savedHeight = height;
    }
    g_DebugConsole->Output("RegisterClassEx\n");
    g_DebugConsole->Output("CreateWindowEx\n");
    const HostWindowRequest request = {
        .clientWidth = width,
        .clientHeight = height,
        .border = !Borderless(),
        .sizeable = (g_infoFlags & INFO_SIZEABLE) != 0,
        .fullscreen = g_Display.fullscreen,
        .gl = !g_Switches.software,
        .samples = 0,
        .caption = g_Display.caption.c_str(),
    };
    if (!g_Host.window.Create(request)) {
        g_DebugConsole->Output("Failed to create mainwindow\n");
        g_Host.dialogs.MessageBox("Error", g_Host.window.LastError());
        return false;
    }
    g_Host.window.ClientSize(&g_Display.clientWidth, &g_Display.clientHeight);
    Window_AllowCursor(true);  // the option block is read later; StartGame has the last word
    return true;
}

void Window_Destroy()
{
    if (g_Host.window.Exists && g_Host.window.Exists()) g_Host.window.Destroy();
}

void Window_Proc(const HostMessage& message)
{
    switch (message.type) {
        case HostMessageType::KeyDown:
        case HostMessageType::KeyUp:
            KeyMessage(message);
            return;
        case HostMessageType::Char:
            Key_Char(message.unit);
            return;
        case HostMessageType::MouseMove:
        case HostMessageType::ButtonDown:
        case HostMessageType::ButtonUp:
        case HostMessageType::Wheel:
            MouseMessage(message);
            return;
        case HostMessageType::Sizing:
        case HostMessageType::Size:
        case HostMessageType::SizeEnd:
            SizeMessage(message.type);
            return;
        case HostMessageType::Focus:
            g_WindowFocus = message.flag;
            return;
        case HostMessageType::ActivateApp:
            IO_Clear();
            g_WindowFocus = message.flag;
            return;
        case HostMessageType::Close:
            PostQuit();
            return;
        case HostMessageType::DeviceChange:
            GamePad_Rescan();
            return;
        case HostMessageType::Quit:
            return;
    }
}

void Window_SetFullscreen(bool on)
{
    if (on == g_Display.fullscreen) return;
    if (on) {
        g_Display.savedWidth = g_Display.clientWidth;
        g_Display.savedHeight = g_Display.clientHeight;
    }
    g_Display.fullscreen = on;
    g_Display.resetCountdown = 1;
}

void Window_SetSize(int32_t width, int32_t height)
{
    if (width <= 0 || height <= 0) return;
    g_Display.pendingWidth = width;
    g_Display.pendingHeight = height;
    const bool differs = width != g_Display.clientWidth || height != g_Display.clientHeight;
    if (differs && !g_Display.fullscreen && g_Display.resetCountdown != 1 &&
        g_Display.resetCountdown <= kSettleFrames)
        g_Display.resetCountdown = kSettleFrames;
}

void Window_SetCaption(const char* caption)
{
    g_Display.caption = caption;
    g_Host.window.SetCaption(caption);
}

void Window_AllowCursor(bool option)
{
    g_cursorAllowed = option && (g_infoFlags & INFO_CURSOR) != 0;
    Window_SetCursorValue(g_cursorAllowed ? 0 : -1);
}

void Window_Centre(int32_t width, int32_t height)
{
    const HostRect desktop = g_Host.window.Desktop();
    g_Host.window.SetClientPosition(desktop.x + (desktop.width - width) / 2,
                                    desktop.y + (desktop.height - height) / 2);
}

void Window_SetCursorValue(int32_t value)
{
    g_Display.cursor = value;
    g_Display.cursorShown = g_cursorAllowed;
    if (!g_Host.window.SetCursor) return;
    if (!g_cursorAllowed) {
        g_Host.window.SetCursor(-1);
        return;
    }
    for (const CursorRow& row : kCursorRows)
        if (row.value == value) g_Host.window.SetCursor(row.row);
}

void Window_SetDeviceSize(int32_t width, int32_t height)
{
    const HostRect desktop = g_Host.window.Desktop();
    if (width > desktop.width) width = desktop.width;
    if (height > desktop.height) height = desktop.height;
    if (width == g_Display.deviceWidth && height == g_Display.deviceHeight) return;
    g_Display.deviceWidth = width;
    g_Display.deviceHeight = height;
    View_SetPort(0, 0, width, height);
    View_SetArea(0, 0, static_cast<float>(width), static_cast<float>(height), 0);
}

void Window_RequestReset(int32_t antialias, bool vsync)
{
    const bool level = antialias == 2 || antialias == 4 || antialias == 8 || antialias == 16;
    g_Display.samples = level ? antialias : 0;
    g_Display.vsync = vsync;
    g_Display.resetCountdown = 1;
}

bool Window_Borderless()
{
    return Borderless();
}

Letterbox Window_Letterbox()
{
    return Window_LetterboxIn(g_Display.clientWidth, g_Display.clientHeight);
}

Letterbox Window_LetterboxIn(int32_t areaWidth, int32_t areaHeight)
{
    const auto clientWidth = static_cast<float>(areaWidth);
    const auto clientHeight = static_cast<float>(areaHeight);
    const auto width = static_cast<float>(g_AppSurface.appSurfaceWidth);
    const auto height = static_cast<float>(g_AppSurface.appSurfaceHeight);
    Letterbox box = {0, 0, clientWidth, clientHeight};
    if (!g_Display.keepAspect || width <= 0 || height <= 0) return box;
    const float aspect = width / height;
    if (clientWidth / aspect < clientHeight) {
        const float pictureHeight = height / width * clientWidth;
        box.top = (clientHeight - pictureHeight) * 0.5F;
        box.bottom = box.top + pictureHeight;
    } else if (clientHeight < clientWidth / aspect) {
        const float pictureWidth = clientHeight * aspect;
        box.left = (clientWidth - pictureWidth) * 0.5F;
        box.right = box.left + pictureWidth;
    }
    return box;
}

void Window_LetterboxOffsets(int32_t* left, int32_t* top)
{
    *left = *top = 0;
    if (!g_Display.keepAspect || !g_AppSurface.appSurfaceEnabled) return;
    const auto clientWidth = static_cast<float>(g_Display.clientWidth);
    const auto clientHeight = static_cast<float>(g_Display.clientHeight);
    const auto width = static_cast<float>(g_AppSurface.appSurfaceWidth);
    const auto height = static_cast<float>(g_AppSurface.appSurfaceHeight);
    if (width <= 0 || height <= 0) return;
    const float aspect = width / height;
    if (clientHeight > clientWidth / aspect)
        *top = static_cast<int32_t>((clientHeight - height / width * clientWidth) * 0.5F);
    else
        *left = static_cast<int32_t>((clientWidth - clientHeight * aspect) * 0.5F);
}
