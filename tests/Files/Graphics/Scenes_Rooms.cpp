// Scenes of whole frames: depths, views, the letterbox, the GUI layer, the cursor.

#include "Files/Graphics/Draw_State.h"
#include "Files/Graphics/Surface.h"
#include "Files/Graphics/Window.h"
#include "Files/IO/IO.h"
#include "tests/Files/Graphics/support_Scenes.h"

namespace {

constexpr uint32_t kWindowColour = 0xFF604020U;

CRoomBackground& Show(SceneStage& s, int32_t number, int32_t index)
{
    (void)s;
    CRoomBackground& shown = Run_Room->backgrounds[number];
    shown.visible = true;
    shown.index = index;
    return shown;
}

// Two particle systems, bars across the whole room.
float BarsBelow(float depth)
{
    return depth > 10 ? 10.0F : depth > -3 ? -3.0F : -1e9F;
}
const ParticleLayers kBars = {[] { return BarsBelow(1e8F); }, BarsBelow,
                              [](float depth) {
                                  const float y = depth > 0 ? 40.0F : 64.0F;
                                  Draw_SetColour(depth > 0 ? kYellow : kOrange);
                                  Draw_Rectangle(0, y, 159, y + 5, false);
                              }};

// At depth 10 the instance lies under the yellow bar and both under the tile; the
// foreground covers all, whatever their depth.
void DepthMerge(SceneStage& s)
{
    s.room(160, 100).colour = 0x402010;
    g_ParticleLayers = &kBars;
    CRoomBackground& behind = Show(s, 0, s.bricks);
    behind.blend = kGrey;
    behind.vtiled = false;
    behind.y = 80;
    CRoomBackground& front = Show(s, 1, s.weave);
    front.foreground = true;
    front.htiled = false;
    front.x = 140;
    s.put(s.plain, 10, 30, 40, s.card);
    CTile& equal = s.tile(s.bricks, 10, 38, 36);
    equal.xscale = equal.yscale = 1.5F;
    s.put(s.plain, 5, 76, 44, s.card);
    s.tile(s.bricks, 6, 80, 36).blend = 0x80FF80;
    s.tile(s.bricks, 4, 66, 36).alpha = 0.6F;
    s.put(s.plain, -3, 120, 66, s.card);
    s.put(s.plain, -20000, 140, 30, s.made);
    s.tile(s.bricks, 20000, 20, 72).xscale = 3;
    CTile& part = s.tile(s.weave, 0, 100, 10);
    part.width = 6;
    part.height = 5;
    part.xscale = -3;
    part.yscale = 3;
    s.tile(s.bricks, 0, 4, 4).visible = false;
    s.put(s.plain, 0, 60, 12, s.card)->visible = false;
    DrawRoom();
}

// The plain path takes the draw alpha, the other one the image's own.
void DefaultDrawing(SceneStage& s)
{
    s.room(200, 110).colour = 0x403830;
    s.put(s.plain, 0, 24, 20, s.card);
    s.put(s.plain, 0, 70.5F, 20.25F, s.card);
    s.put(s.plain, 0, 120, 20, s.card)->image_angle = 40;
    CInstance* scaled = s.put(s.plain, 0, 168, 24, s.card);
    scaled->image_xscale = -1.4F;
    scaled->image_yscale = 0.7F;
    s.put(s.plain, 0, 24, 60, s.card)->image_blend = static_cast<int32_t>(kOrange);
    s.put(s.plain, 0, 70, 60, s.card)->image_alpha = 0.4F;
    s.put(s.drawer, 0, 120, 60, s.card)->image_angle = -90;
    s.put(s.plain, 0, 150, 60, s.made);
    s.draws([&](CInstance*, CInstance*) {
        s.call("draw_self");
        s.call("draw_sprite", s.card, -1, 190, 80);
        s.call("draw_set_alpha", 0.5);  // for all that comes after it
    });
    s.put(s.plain, -1, 24, 94, s.card);
    s.put(s.plain, -1, 70, 94, s.card)->image_xscale = 1.001F;
    DrawRoom();
}

void Backgrounds(SceneStage& s)
{
    s.room(160, 120).colour = 0x403830;
    CRoomBackground& whole = Show(s, 0, s.bricks);
    whole.xscale = 1.7F;
    whole.yscale = 1.2F;
    whole.x = 7.5F;
    whole.alpha = 0.5F;
    CRoomBackground& once = Show(s, 1, s.weave);
    once.htiled = once.vtiled = false;
    once.x = 30;
    once.y = 20;
    once.xscale = once.yscale = 3;
    CRoomBackground& column = Show(s, 2, s.bricks);
    column.htiled = false;
    column.x = 100;
    column.blend = static_cast<int32_t>(kGreen);
    CRoomBackground& row = Show(s, 5, s.weave);
    row.vtiled = false;
    row.y = 90;
    row.yscale = 2;
    Show(s, 6, 99);  // there is none
    DrawRoom();
}

// The last card that it hangs up, at (168, 108).
CInstance* Furnish(SceneStage& s, int32_t width, int32_t height)
{
    s.room(width, height).colour = 0x402010;
    Show(s, 0, s.bricks).blend = kGrey;
    CInstance* last = nullptr;
    for (int32_t i = 0; i < 4; i++)
        last = s.put(s.plain, 0, static_cast<float>(30 + i * 46), static_cast<float>(24 + i * 28),
                     s.card);
    return last;
}

CView& AddView(int32_t number, const ViewArea& area, const ViewPort& port)
{
    CView& view = Run_Room->views[number];
    Run_Room->viewsEnabled = view.visible = true;
    view.xview = area.x;
    view.yview = area.y;
    view.wview = area.width;
    view.hview = area.height;
    view.angle = area.angle;
    view.xport = port.x;
    view.yport = port.y;
    view.wport = port.width;
    view.hport = port.height;
    return view;
}

// The left view shows a corner of the room at half its size; the right one follows the
// last instance to the room's edge and is turned. Each port is framed by its view.
void TwoViews(SceneStage& s)
{
    const CInstance* last = Furnish(s, 200, 150);
    g_Display.windowColour = kWindowColour;
    AddView(0, {10, 5, 160, 200, 0}, {0, 0, 80, 100});
    CView& follower = AddView(1, {0, 0, 80, 90, 30}, {90, 10, 70, 90});
    follower.object = last->id;
    follower.hborder = follower.vborder = 40;
    s.put(s.drawer, -1, 0, 0);
    s.draws([&](CInstance*, CInstance*) {
        s.call("draw_set_colour", view_current ? kYellow : kWhite);
        const CView& view = Run_Room->views[view_current];
        s.call("draw_rectangle", view.xview + 2, view.yview + 2, view.xview + view.wview - 4,
               view.yview + view.hview - 4, 1);
    });
    DrawRoom();
    EXPECT_EQ(follower.xview, 200 - 80);       // 168 less a half, but not past the edge
    EXPECT_EQ(follower.yview, 108 + 40 - 90);  // the border keeps 40 below it
}

// A view that draws to a surface of its own, which the GUI then shows.
void ViewOnASurface(SceneStage& s)
{
    Furnish(s, 200, 150);
    AddView(0, {0, 0, 200, 150, 0}, {0, 0, 200, 150});
    const double surface = s.call("surface_create", 60, 60);
    AddView(1, {40, 30, 60, 60, -20}, {0, 0, 200, 150}).surface_id = static_cast<int32_t>(surface);
    s.put(s.gui, 0, 0, 0);
    s.draws_gui([&](CInstance*, CInstance*) {
        s.call("draw_surface", surface, 10, 80);
        s.call("draw_set_colour", kWhite);
        s.call("draw_rectangle", 9, 79, 69, 139, 1);
    });
    DrawRoom();
}

// The room is 120 by 80 in whatever window: bars where the shapes differ.
void Letterbox(SceneStage& s)
{
    Furnish(s, 120, 80);
    g_Display.windowColour = kWindowColour;
    DrawRoom();
}

// A frame around the GUI, its corners named, and what reaches out of it.
void GuiOf(SceneStage& s)
{
    s.call("draw_set_font", s.font);
    s.call("draw_set_colour", kYellow);
    const double right = s.call("display_get_gui_width"), bottom = s.call("display_get_gui_height");
    s.call("draw_rectangle", 0, 0, right - 2, bottom - 2, 1);
    s.call("draw_text", 3, 3, "A");
    s.call("draw_set_halign", 2);
    s.call("draw_text", right - 3, 3, "B");
    s.call("draw_set_halign", 0);
    s.call("draw_sprite", s.card, 0, right / 2, bottom);
    s.call("draw_sprite", s.made, 0, right + 60, bottom / 2);  // outside
}

void Gui(SceneStage& s)
{
    Letterbox(s);
    s.call("display_set_gui_size", 120, 80);
    s.put(s.gui, 0, 0, 0);
    s.draws_gui([&](CInstance*, CInstance*) { GuiOf(s); });
    DrawRoom();
}

void GuiOfTheWindow(SceneStage& s)
{
    Letterbox(s);
    s.put(s.gui, 0, 0, 0);
    s.draws_gui([&](CInstance*, CInstance*) { GuiOf(s); });
    DrawRoom();
}

// Changed inside the pass, and left alone by a surface that is drawn to in between.
void GuiMaximised(SceneStage& s)
{
    Letterbox(s);
    s.put(s.gui, 0, 0, 0);
    s.draws_gui([&](CInstance*, CInstance*) {
        s.call("display_set_gui_maximise", 2, 1.5, 20, 10);
        const double surface = s.call("surface_create", 30, 30);
        s.call("surface_set_target", surface);
        s.call("draw_clear_alpha", kBlue, 0.5);
        s.call("draw_sprite", s.card, 0, 15, 15);
        s.call("surface_reset_target");
        s.call("draw_sprite", s.card, 0, 20, 16);
        s.call("draw_surface", surface, 50, 10);
        s.call("display_set_gui_size", 60, -1);
        s.call("draw_sprite", s.card, 0, 40, 90);
    });
    DrawRoom();
}

// The surface has half the room's size, so its pixels show; the cursor has the window's.
void CursorOnASmallSurface(SceneStage& s)
{
    Furnish(s, 120, 80);
    g_AppSurface.appSurfaceWidth = 60;
    g_AppSurface.appSurfaceHeight = 40;
    g_Display.interpolate = false;  // for the way into the window alone
    s.call("texture_set_interpolation", 1);
    g_CursorSprite = s.card;
    g_IOFrame.mouseX[0] = 100;
    g_IOFrame.mouseY[0] = 30;
    DrawRoom();
}

constexpr SceneRow kScenes[] = {
    {"depth_merge", 160, 100, DepthMerge},
    {"default_drawing", 200, 110, DefaultDrawing},
    {"backgrounds", 160, 120, Backgrounds},
    {"two_views", 200, 150, TwoViews},
    {"view_on_a_surface", 200, 150, ViewOnASurface},
    {"letterbox_wide", 171, 80, Letterbox},
    {"letterbox_tall", 90, 130, Letterbox},
    {"gui_same_size", 120, 80, Gui},
    {"gui_doubled", 240, 160, Gui},
    {"gui_with_bars", 217, 100, Gui},
    {"gui_of_the_window", 170, 100, GuiOfTheWindow},
    {"gui_maximised", 170, 120, GuiMaximised},
    {"cursor", 120, 80, CursorOnASmallSurface},
};

}  // namespace

std::span<const SceneRow> Scenes_Rooms()
{
    return kScenes;
}
