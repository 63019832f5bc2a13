// What a room shows: the size of the game area, scrolling backgrounds, and views
// that follow an instance.

#include <algorithm>
#include <cmath>

#include "Files/Graphics/Draw_Room.h"
#include "Files/Graphics/Window.h"
#include "Files/Object/Instance_Main.h"
#include "Files/Object/Object_Main.h"
#include "Files/Room/Room_Main.h"

namespace {

constexpr int32_t kSmallestArea = 8;  // pixels

CInstance* FollowTarget(int32_t target)
{
    if (target >= kFirstInstanceId) {
        CInstance* instance = Instance_FromId(target);
        return instance && instance->Alive() ? instance : nullptr;
    }
    const CObjectSW* object = Object_Data(target);
    if (!object) return nullptr;
    for (auto* node = object->instancesRecursive.Head(); node; node = node->next)
        if (node->item->Alive()) return node->item;
    return nullptr;
}

// One axis of a view that keeps `target` inside its borders. All in room pixels.
float Follow(float view, float size, float target, int32_t border, int32_t speed, int32_t room)
{
    const float edge = static_cast<float>(border);
    float wanted = view;
    if (2 * edge < size) {
        if (target - edge < view)
            wanted = target - edge;
        else if (target + edge - size > view)
            wanted = target + edge - size;
    } else {
        wanted = target - size * 0.5F;
    }
    if (wanted < 0) wanted = 0;
    if (wanted + size > static_cast<float>(room)) wanted = static_cast<float>(room) - size;
    if (speed < 0) return wanted;
    const float step = static_cast<float>(speed);
    return std::clamp(wanted, view - step, view + step);
}

}  // namespace

void Room_FitGameArea()
{
    int32_t width = Run_Room->width;
    int32_t height = Run_Room->height;
    if (Run_Room->viewsEnabled) {
        width = height = kSmallestArea;
        for (const CView& view : Run_Room->views) {
            if (!view.visible) continue;
            width = std::max(width, view.xport + view.wport);
            height = std::max(height, view.yport + view.hport);
        }
    }
    const HostRect desktop = g_Host.window.Desktop();
    width = std::min(width, desktop.width);
    height = std::min(height, desktop.height);
    if (width == g_Display.deviceWidth && height == g_Display.deviceHeight) return;
    g_Display.deviceWidth = width;
    g_Display.deviceHeight = height;
    View_SetPort(0, 0, width, height);
    View_SetArea(0, 0, static_cast<float>(width), static_cast<float>(height), 0);
}

void Room_ScrollBackgrounds()
{
    if (!Run_Room) return;
    for (CRoomBackground& background : Run_Room->backgrounds) {
        background.x += background.hspeed;
        background.y += background.vspeed;
    }
}

void Room_FollowViews()
{
    if (!Run_Room || !Run_Room->viewsEnabled) return;
    for (CView& view : Run_Room->views) {
        if (!view.visible) continue;
        const CInstance* target = FollowTarget(view.object);
        if (!target) continue;
        view.xview = Follow(view.xview, view.wview, std::floor(target->x), view.hborder,
                            view.hspeed, Run_Room->width);
        view.yview = Follow(view.yview, view.hview, std::floor(target->y), view.vborder,
                            view.vspeed, Run_Room->height);
    }
}
