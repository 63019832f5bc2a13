#pragma once
// Surfaces, the target stack and the application surface.

#include <cstdint>

inline constexpr int32_t kNoAppSurface = -17899859;  // 0xFEEEDEAD

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

void Surface_Init();
void Surface_Quit();
void Surface_LoseAll();  // a device reset: the table is emptied, ids are gone
CSurface* Surface_Get(int32_t id);
int32_t Surface_Create(int32_t width, int32_t height);  // -1 on failure
void Surface_Free(int32_t id);
bool Surface_SetTarget(int32_t index, int32_t id);
bool Surface_ResetTarget();
int32_t Surface_StackDepth();
void Surface_UpdateApplication();  // at the start of DrawRoom

// Factor from port units to application surface pixels, and the views of the mouse.
extern float portScaleX, portScaleY;
