#include "Files/Graphics/Gui.h"

#include <cmath>
#include <cstring>

#include "Files/Graphics/Batch.h"
#include "Files/Graphics/Draw_Room.h"
#include "Files/Graphics/Surface.h"
#include "Files/Graphics/View_Matrix.h"
#include "Files/Graphics/Window.h"

GuiState g_Gui;

namespace {

// Scale and move from GUI units to pixels about the middle of the window.
struct GuiMap {
    float sx, sy, ox, oy;
};

GuiMap MapOfMaximised(float width, float height)
{
    GuiMap map{g_Gui.guiScaleX, g_Gui.guiScaleY, -std::floor(width * 0.5F),
               -std::floor(height * 0.5F)};
    if (g_Gui.guiOffsetX != kNoGuiOffset) map.ox += static_cast<float>(g_Gui.guiOffsetX);
    if (g_Gui.guiOffsetY != kNoGuiOffset) map.oy += static_cast<float>(g_Gui.guiOffsetY);
    return map;
}

GuiMap MapOfSize()
{
    const Letterbox box = Window_Letterbox();
    const float width = box.right - box.left, height = box.bottom - box.top;
    GuiMap map{1, 1, -std::floor(width / 2), -std::floor(height / 2)};
    if (g_Gui.guiWidth >= 0) map.sx = width / static_cast<float>(g_Gui.guiWidth);
    if (g_Gui.guiHeight >= 0) map.sy = height / static_cast<float>(g_Gui.guiHeight);
    return map;
}

void SetInverse(const GuiMap& map, float width, float height)
{
    const float inverse[16] = {1 / map.sx, 0,          0, -((width / 2 + map.ox) / map.sx),   //
                               0,          1 / map.sy, 0, -((height / 2 + map.oy) / map.sy),  //
                               0,          0,          1, -1,                                 //
                               0,          0,          0, 1};
    std::memcpy(g_Gui.guiInverse, inverse, sizeof inverse);
    g_Gui.left = std::floor((-width / 2 - map.ox) / map.sx);
    g_Gui.right = std::ceil((width / 2 - map.ox) / map.sx);
    g_Gui.top = std::floor((-height / 2 - map.oy) / map.sy);
    g_Gui.bottom = std::ceil((height / 2 - map.oy) / map.sy);
}

void SetAgain()
{
    if (g_Gui.inGuiPass) Gui_SetTransform();
}

}  // namespace

void Gui_Init()
{
    g_Gui = GuiState{};
    g_Gui.guiWidth = g_Gui.guiHeight = -1;
    g_Gui.guiScaleX = g_Gui.guiScaleY = 1;
    g_Gui.guiOffsetX = g_Gui.guiOffsetY = kNoGuiOffset;
    std::memcpy(g_Gui.guiInverse, kIdentityMatrix, sizeof g_Gui.guiInverse);
}

void Gui_SetSize(int32_t width, int32_t height)
{
    g_Gui.guiWidth = width;
    g_Gui.guiHeight = height;
    g_Gui.guiMaximise = false;
    g_Gui.guiScaleX = g_Gui.guiScaleY = 1;
    g_Gui.guiOffsetX = g_Gui.guiOffsetY = kNoGuiOffset;
    SetAgain();
}

void Gui_SetMaximise(float xscale, float yscale, double xoffset, double yoffset)
{
    g_Gui.guiWidth = g_Gui.guiHeight = -1;
    g_Gui.guiMaximise = true;
    g_Gui.guiScaleX = xscale;
    g_Gui.guiScaleY = yscale;
    g_Gui.guiOffsetX = xoffset;
    g_Gui.guiOffsetY = yoffset;
    SetAgain();
}

int32_t Gui_Width()
{
    return g_Gui.guiWidth < 0 ? g_Display.clientWidth : g_Gui.guiWidth;
}

int32_t Gui_Height()
{
    return g_Gui.guiHeight < 0 ? g_Display.clientHeight : g_Gui.guiHeight;
}

void Gui_SetTransform()
{
    const auto width = static_cast<float>(g_Display.clientWidth);
    const auto height = static_cast<float>(g_Display.clientHeight);
    View_SetPort(0, 0, g_Display.backbufferWidth, g_Display.backbufferHeight);
    Matrix_SetOrthographic(width, height);
    const GuiMap map = g_Gui.guiMaximise ? MapOfMaximised(width, height) : MapOfSize();
    const float view[16] = {map.sx, 0,      0, map.ox,  //
                            0,      map.sy, 0, map.oy,  //
                            0,      0,      1, 1,       //
                            0,      0,      0, 1};
    Matrix_SetDevice(DeviceMatrix::View, view);
    SetInverse(map, width, height);
    View_MarkNew();
}
