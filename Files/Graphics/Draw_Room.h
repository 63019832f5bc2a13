#pragma once
// One frame of a room: views, backgrounds, the merge of instances, tiles and
// particles by depth, the GUI pass.

#include <cstdint>

class CInstance;

void DrawRoom();
void DrawInstance(CInstance* instance);  // Draw event, or the default drawing
void DrawSelf(CInstance* instance);      // draw_self
void Draw_Init();                        // start-up
extern int32_t g_CursorSprite, g_CursorFrame;
extern int32_t view_current;

// Particle systems join the merge of a room through this table; null while there
// are none. A depth of kNoParticles or below: no further system.
inline constexpr float kNoParticles = -1e8F;
struct ParticleLayers {
    float (*FirstDepth)();            // the highest depth of a visible system
    float (*NextDepth)(float depth);  // the highest one below `depth`
    void (*Draw)(float depth);        // all systems of that depth
};
extern const ParticleLayers* g_ParticleLayers;

// ---- the area being shown, in room pixels; the cull box follows it
struct ViewArea {
    float x, y, width, height, angle;  // angle in degrees, about the middle
};
struct ViewPort {
    int32_t x, y, width, height;  // in pixels of the target
};
extern ViewArea g_ViewArea;
extern ViewPort g_ViewPort;
void View_SetArea(float x, float y, float width, float height, float angle);
void View_SetPort(int32_t x, int32_t y, int32_t width, int32_t height);
// The whole back buffer shows the window's client area, one unit a client pixel.
void View_SetWindow();
extern bool g_CullingOff;
// False when a circle of `radius` about (x, y) lies wholly outside the cull box.
bool View_Meets(float x, float y, float radius);
// Clears the port of the present target, and depth and stencil to 1.0 and 0, after a
// flush. colour is 0xAARRGGBB.
void View_Clear(uint32_t deviceClearFlags, uint32_t colour);
// draw_clear_alpha: colour 0x00BBGGRR, alpha 0 to 255.
void Draw_Clear(uint32_t colour, int32_t alpha);
