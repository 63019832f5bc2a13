// The order of one frame.

#include "Files/Graphics/Draw_Room.h"

#include <algorithm>

#include "Files/Base/Error.h"
#include "Files/Graphics/Batch.h"
#include "Files/Graphics/Draw_Passes.h"
#include "Files/Graphics/Draw_State.h"
#include "Files/Graphics/Gui.h"
#include "Files/Graphics/Quad.h"
#include "Files/Graphics/Surface.h"
#include "Files/Graphics/View_Matrix.h"
#include "Files/Graphics/Window.h"
#include "Files/IO/IO.h"
#include "Files/Object/Instance_Main.h"
#include "Files/Object/Object_Main.h"
#include "Files/Room/Room_Main.h"
#include "Files/Sprite/CSprite.h"

int32_t g_CursorSprite = -1, g_CursorFrame;
int32_t view_current;

namespace {

constexpr uint32_t kWhite = 0xFFFFFFU;
constexpr int32_t kOpaque = 255;
constexpr int32_t kFarBound = 999999;  // start of the running bounds of the ports

bool s_windowClearDue;

void ClearToWindowColour()
{
    Draw_Clear(g_Display.windowColour & kWhite, kOpaque);
}

void ClearWindowOnce()
{
    if (!s_windowClearDue) return;
    s_windowClearDue = false;
    ClearToWindowColour();
}

// The mouse's table of views, and the factor that makes the ports fill the surface.
void NoteViews(const CRoom* room)
{
    std::fill_n(g_MouseViews, kRoomSlots, MouseView{});
    if (!room->viewsEnabled) return;
    int32_t left = kFarBound, top = kFarBound, right = -kFarBound, bottom = -kFarBound;
    for (int i = 0; i < kRoomSlots; ++i) {
        const CView& view = room->views[i];
        if (!view.visible) continue;
        left = std::min(left, view.xport);
        top = std::min(top, view.yport);
        right = std::max(right, view.xport + view.wport);
        bottom = std::max(bottom, view.yport + view.hport);
        g_MouseViews[i] = {true,       view.xview, view.yview,      view.wview,
                           view.hview, view.xport, view.yport,      view.wport,
                           view.hport, view.angle, view.surface_id, -1};
    }
    if (right > left)
        portScaleX =
            static_cast<float>(g_AppSurface.appSurfaceWidth) / static_cast<float>(right - left);
    if (bottom > top)
        portScaleY =
            static_cast<float>(g_AppSurface.appSurfaceHeight) / static_cast<float>(bottom - top);
}

void DrawWholeRoom(CRoom* room)
{
    view_current = 0;
    View_SetPort(0, 0, g_AppSurface.appSurfaceWidth, g_AppSurface.appSurfaceHeight);
    const auto width = static_cast<float>(room->width), height = static_cast<float>(room->height);
    View_SetArea(0, 0, width, height, 0);
    DrawTheRoom(room, {0, 0, width, height});
}

int32_t ScaledPort(int32_t port, float scale)
{
    return static_cast<int32_t>(static_cast<float>(port) * scale);
}

void DrawView(CRoom* room, const CView& view)
{
    const bool ownTarget = view.surface_id >= 0 && Surface_SetTarget(0, view.surface_id);
    if (!ownTarget)
        View_SetPort(ScaledPort(view.xport, portScaleX), ScaledPort(view.yport, portScaleY),
                     ScaledPort(view.wport, portScaleX), ScaledPort(view.hport, portScaleY));
    View_SetArea(view.xview, view.yview, view.wview, view.hview, view.angle);
    DrawTheRoom(room, {view.xview, view.yview, view.xview + view.wview, view.yview + view.hview});
    if (ownTarget) Surface_ResetTarget();
}

void DrawViews(CRoom* room)
{
    if (room->clearViewBackground) ClearToWindowColour();
    for (int i = 0; i < kRoomSlots; ++i) {
        if (!room->views[i].visible) continue;
        view_current = i;
        DrawView(room, room->views[i]);
    }
    Batch_Flush();
}

void DrawGui(CRoom* room)
{
    g_Gui.inGuiPass = true;
    Gui_SetTransform();
    for (const int32_t subtype : {DRAW_GUI_BEGIN, DRAW_GUI, DRAW_GUI_END})
        Draw_RunEvents(room, subtype, nullptr);
    Batch_Flush();
    g_Gui.inGuiPass = false;
    View_SetWindow();
}

void DrawCursor()
{
    CSprite* sprite = Sprite_Data(g_CursorSprite);
    if (!sprite) return;
    View_SetWindow();
    const bool culling = g_CullingOff;
    g_CullingOff = true;
    sprite->DrawExt(g_CursorFrame, static_cast<float>(g_IOFrame.mouseX[0]),
                    static_cast<float>(g_IOFrame.mouseY[0]), 1, 1, 0, kWhite, 1);
    g_CullingOff = culling;
}

// The room on the application surface, or straight on the back buffer.
void DrawRoomOnTarget(CRoom* room)
{
    const bool onSurface =
        g_AppSurface.appSurfaceWasEnabled && Surface_SetTarget(0, g_AppSurface.appSurfaceId);
    Room_FollowViews();
    NoteViews(room);
    Draw_SortTiles(room);
    if (room->viewsEnabled)
        DrawViews(room);
    else
        DrawWholeRoom(room);
    if (onSurface) Surface_ResetTarget();
}

}  // namespace

bool Draw_ObjectHas(const CObjectSW* object, int32_t subtype)
{
    for (; object; object = object->parent)
        if (subtype < object->events[EVENT_DRAW].count && object->OwnEvent(EVENT_DRAW, subtype))
            return true;
    return false;
}

bool Draw_Takes(const CInstance* instance)
{
    return instance->visible && instance->Alive();
}

void Draw_RunEvents(CRoom* room, int32_t subtype, void (*first)())
{
    const uint64_t snapshot = Walk_Begin();
    for (CInstance* instance = room->activeTail; instance;) {
        CInstance* following = instance->previous;
        if (Draw_Takes(instance) && Walk_Takes(instance, snapshot) &&
            Draw_ObjectHas(instance->object, subtype)) {
            if (first) first();
            first = nullptr;
            Perform_Event(instance, instance, EVENT_DRAW, subtype);
        }
        instance = following;
    }
}

void Draw_Init()
{
    g_StartDrawColour = 0;
    DrawState_Init();
    Gui_Init();
    g_CursorSprite = -1;
    g_CursorFrame = 0;
    view_current = 0;
    g_ParticleLayers = nullptr;
    g_CornerId = false;
}

void DrawRoom()
{
    CRoom* room = Run_Room;
    if (!room || !g_Device) return;
    Surface_UpdateApplication();
    View_SetWindow();
    portScaleX = portScaleY = 1;
    s_windowClearDue = room->clearDisplayBuffer && g_AppSurface.appSurfaceWasEnabled;
    Draw_RunEvents(room, DRAW_PRE, ClearWindowOnce);
    DrawRoomOnTarget(room);
    View_SetWindow();
    ClearWindowOnce();
    Draw_RunEvents(room, DRAW_POST, nullptr);
    if (Surface_StackDepth() != 0) {
        Error_Show("Unbalanced surface stack. You MUST use surface_reset_target() for each set.",
                   false);
        Surface_LeaveAll();
    } else {
        if (g_AppSurface.appSurfaceWasEnabled && g_AppSurface.appSurfaceAutoDraw)
            Surface_DrawToWindow(0, 0, g_Display.clientWidth, g_Display.clientHeight);
        DrawGui(room);
        DrawCursor();
        Batch_Flush();
    }
}
