#pragma once
// One frame of a room: views, backgrounds, the merge of instances, tiles and
// particles by depth, the GUI pass.

#include <cstdint>

class CInstance;

void DrawRoom();
void DrawInstance(CInstance* instance);   // Draw event, or the default drawing
void DrawSelf(CInstance* instance);       // draw_self
void Draw_Init();                         // start-up
extern int32_t g_CursorSprite, g_CursorFrame;
extern int32_t view_current;

// ---- the area being shown, in room pixels; the cull box follows it
struct ViewArea {
    float x, y, width, height, angle;
};
extern ViewArea g_ViewArea;
void View_SetArea(float x, float y, float width, float height, float angle);
void View_SetPort(int32_t x, int32_t y, int32_t width, int32_t height);
extern bool g_CullingOff;
// False when a circle of `radius` about (x, y) lies wholly outside the cull box.
bool View_Meets(float x, float y, float radius);
