#pragma once
// Surfaces, the target stack and the application surface.

#include <cstdint>

struct GpuTexture;

inline constexpr int32_t kNoAppSurface = -17899859;  // 0xFEEEDEAD
inline constexpr int32_t kNoTarget = -1;             // the back buffer, or no second target

struct CSurface {
    int32_t id;
    int32_t texture;  // slot
    int32_t width, height;
};

struct AppSurface {
    int32_t appSurfaceId;
    bool appSurfaceEnabled, appSurfaceWasEnabled, appSurfaceAutoDraw;
    int32_t appSurfaceWidth, appSurfaceHeight;
    int32_t appSurfaceSavedWidth, appSurfaceSavedHeight;
    int32_t appSurfaceResizeWidth, appSurfaceResizeHeight;
    bool appSurfaceResizePending;
};
extern AppSurface g_AppSurface;
// surface_depth_disable. Plain drawing tests no depth: surfaces have none either way.
extern bool g_SurfaceDepthDisable;

void Surface_Init();
void Surface_Quit();
void Surface_LoseAll();  // a device reset: the table is emptied, ids are gone
CSurface* Surface_Get(int32_t id);
int32_t Surface_Create(int32_t width, int32_t height);  // -1 on failure
// Anew under the same id, sizes 1 to 8192; the old contents are gone.
bool Surface_Rebuild(int32_t id, int32_t width, int32_t height);
void Surface_Free(int32_t id);
// Index 0 enters the stack, 36 deep; 1 to 3 only set a further target.
bool Surface_SetTarget(int32_t index, int32_t id);
bool Surface_ResetTarget();
int32_t Surface_StackDepth();  // targets that wait for their surface_reset_target
void Surface_LeaveAll();       // back to the back buffer, whatever is on the stack
void Surface_TargetSize(int32_t* width, int32_t* height);
void Surface_UpdateApplication();  // at the start of DrawRoom
void AppSurface_Enable(bool on);
// All of `src`, or a rectangle of it, to (x, y) in `dest` without blending; both exist.
void Surface_Copy(int32_t dest, int32_t x, int32_t y, int32_t src, int32_t xs, int32_t ys,
                  int32_t width, int32_t height);
// A block of width * height pixels 0xAARRGGBB for the caller to free; what lies
// outside the surface is 0. Null when there is no surface or the size is not above 0.
uint32_t* Surface_Grab(int32_t id, int32_t x, int32_t y, int32_t width, int32_t height);

// ---- for the texture table; slots
bool Surface_IsSavedTarget(int32_t slot);  // waits on the stack
void Surface_TakeOffTargets(int32_t slot);
bool Surface_IsTargeted(const GpuTexture* texture);

// Factor from port units to application surface pixels, and the views of the mouse.
extern float portScaleX, portScaleY;
inline constexpr int kMouseViews = 32;
struct MouseView {
    bool active;
    float xview, yview, wview, hview;
    int32_t xport, yport, wport, hport;
    float angle;
    int32_t surfaceId;
    int32_t camera;  // -1: views have no camera of their own
};
extern MouseView g_MouseViews[kMouseViews];
