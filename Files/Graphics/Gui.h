#pragma once
// The coordinates of the GUI pass.

#include <cstdint>

inline constexpr double kNoGuiOffset = 2147483648.0;

struct GuiState {
    int32_t guiWidth, guiHeight;  // -1: the window's size
    bool guiMaximise;
    float guiScaleX, guiScaleY;
    double guiOffsetX, guiOffsetY;  // window pixels, kNoGuiOffset for none
    bool inGuiPass;
    float guiInverse[16];  // window pixels to GUI units, laid out as the device's matrices
    float left, top, right, bottom;  // GUI units that the window shows, for culling
};
extern GuiState g_Gui;

void Gui_Init();
void Gui_SetSize(int32_t width, int32_t height);  // display_set_gui_size
// display_set_gui_maximise; kNoGuiOffset for an offset of none.
void Gui_SetMaximise(float xscale, float yscale, double xoffset, double yoffset);
int32_t Gui_Width();
int32_t Gui_Height();
// Viewport, projection and view matrix of the pass.
void Gui_SetTransform();
