// The mouse in the room: from client pixels through the letterbox and the views.

#include <algorithm>
#include <cmath>

#include "Files/Graphics/Surface.h"
#include "Files/Graphics/Window.h"
#include "Files/IO/IO.h"
#include "Files/Object/Collision.h"
#include "Files/Room/Room_Main.h"

int32_t g_MouseRoomX, g_MouseRoomY, g_MousePreviousX, g_MousePreviousY;

namespace {

constexpr float kNoAngle = 0.0001F;
constexpr double kDegree = 3.14159265358979323846 / 180.0;

// A view without a width gives positions beyond all pixels.
int32_t Trunc(float value)
{
    constexpr float kFarthest = 1e9F;
    return std::isnan(value) ? 0 : static_cast<int32_t>(std::clamp(value, -kFarthest, kFarthest));
}

// Whole pixels of the room, cut toward zero.
int32_t Scale(int32_t pixels, int32_t roomSize, int32_t clientSize)
{
    return static_cast<int32_t>(int64_t{pixels} * roomSize / clientSize);
}

// As drawing does, a view whose surface is gone falls back to the window.
bool ShownOnWindow(const CView& view)
{
    return view.visible && !Surface_Get(view.surface_id);
}

bool AnyViewShown()
{
    if (!Run_Room->viewsEnabled) return false;
    for (const CView& view : Run_Room->views)
        if (ShownOnWindow(view)) return true;
    return false;
}

// Client pixels without the bars of the letterbox.
struct ClientPoint {
    int32_t x, y, width, height;
};

ClientPoint InsideBars()
{
    int32_t left, top;
    Window_LetterboxOffsets(&left, &top);
    return {g_IOFrame.mouseX[0] - left, g_IOFrame.mouseY[0] - top, g_Display.clientWidth - 2 * left,
            g_Display.clientHeight - 2 * top};
}

void ThroughView(const CView& view, const ClientPoint& at, int32_t* x, int32_t* y)
{
    const float across = static_cast<float>(g_AppSurface.appSurfaceWidth) /
                         static_cast<float>(at.width) / portScaleX;
    const float down = static_cast<float>(g_AppSurface.appSurfaceHeight) /
                       static_cast<float>(at.height) / portScaleY;
    const auto portX =
        static_cast<float>(int64_t{Trunc(across * static_cast<float>(at.x))} - view.xport);
    const auto portY =
        static_cast<float>(int64_t{Trunc(down * static_cast<float>(at.y))} - view.yport);
    const float fx = portX * view.wview / static_cast<float>(view.wport);
    const float fy = portY * view.hview / static_cast<float>(view.hport);
    if (std::fabs(view.angle) < kNoAngle) {
        *x = RoundToEven(view.xview + fx);
        *y = RoundToEven(view.yview + fy);
        return;
    }
    const double angle = -static_cast<double>(view.angle) * kDegree;
    const double c = std::cos(angle), s = std::sin(angle);
    const double dx = fx - view.wview / 2, dy = fy - view.hview / 2;
    *x = RoundToEven(view.xview + view.wview / 2 + c * dx + s * dy);
    *y = RoundToEven(view.yview + view.hview / 2 - s * dx + c * dy);
}

bool Holds(const CView& view, int32_t x, int32_t y)
{
    const auto fx = static_cast<float>(x), fy = static_cast<float>(y);
    return fx >= view.xview && fx < view.xview + view.wview && fy >= view.yview &&
           fy < view.yview + view.hview;
}

}  // namespace

void IO_MouseRoomPosition(int32_t* x, int32_t* y)
{
    *x = g_IOFrame.mouseX[0];
    *y = g_IOFrame.mouseY[0];
    if (!Run_Room) return;
    const ClientPoint at = InsideBars();
    if (at.width <= 0 || at.height <= 0) return;
    if (!AnyViewShown()) {
        *x = Scale(at.x, Run_Room->width, at.width);
        *y = Scale(at.y, Run_Room->height, at.height);
        return;
    }
    for (int32_t n = kRoomSlots - 1; n >= 0; --n) {
        const CView& view = Run_Room->views[n];
        if (!ShownOnWindow(view)) continue;
        ThroughView(view, at, x, y);
        if (Holds(view, *x, *y)) return;
    }
}

void IO_MouseViewPosition(int32_t number, int32_t* x, int32_t* y)
{
    *x = *y = 0;
    if (!Run_Room || number < 0 || number >= kRoomSlots) return;
    const ClientPoint at = InsideBars();
    if (at.width > 0 && at.height > 0) ThroughView(Run_Room->views[number], at, x, y);
}
