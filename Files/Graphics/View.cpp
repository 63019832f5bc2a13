// The area of the room that is shown, where it goes on the target, and what the
// device's matrices make of it.

#include <algorithm>
#include <cmath>

#include "Files/Graphics/Batch.h"
#include "Files/Graphics/Draw_Room.h"
#include "Files/Graphics/GpuState.h"
#include "Files/Graphics/Gui.h"
#include "Files/Graphics/Surface.h"
#include "Files/Graphics/View_Matrix.h"
#include "Files/Graphics/Window.h"

ViewArea g_ViewArea;
ViewPort g_ViewPort;
bool g_CullingOff;

namespace {

constexpr uint32_t kAllChannels = 15;  // of the colour mask
constexpr float kCameraZ = -16000.0F;
constexpr float kDegree = 3.1415927F / 180.0F;

struct CullBox {
    float left, top, right, bottom;
    bool stale;
};
CullBox s_cull;

// The box around the area, turned about its middle.
void RefreshCullBox()
{
    s_cull.stale = false;
    if (g_Gui.inGuiPass && Surface_StackDepth() == 0) {
        s_cull = {g_Gui.left, g_Gui.top, g_Gui.right, g_Gui.bottom, false};
        return;
    }
    const float c = std::fabs(std::cos(g_ViewArea.angle * kDegree));
    const float s = std::fabs(std::sin(g_ViewArea.angle * kDegree));
    const bool turned = g_ViewArea.angle != 0;
    const float width = std::fabs(g_ViewArea.width), height = std::fabs(g_ViewArea.height);
    const float halfWidth = (turned ? c * width + s * height : width) * 0.5F;
    const float halfHeight = (turned ? s * width + c * height : height) * 0.5F;
    const float x = g_ViewArea.x + g_ViewArea.width * 0.5F;
    const float y = g_ViewArea.y + g_ViewArea.height * 0.5F;
    s_cull = {x - halfWidth, y - halfHeight, x + halfWidth, y + halfHeight, false};
}

// The camera looks along z from the middle of the area; its up vector is
// (sin angle, cos angle, 0), and the projection turns y downward.
void SetAreaMatrices()
{
    const float s = std::sin(g_ViewArea.angle * kDegree);
    const float c = std::cos(g_ViewArea.angle * kDegree);
    const float x = g_ViewArea.x + g_ViewArea.width * 0.5F;
    const float y = g_ViewArea.y + g_ViewArea.height * 0.5F;
    const float view[16] = {c, -s, 0, s * y - c * x,   //
                            s, c,  0, -s * x - c * y,  //
                            0, 0,  1, -kCameraZ,       //
                            0, 0,  0, 1};
    Matrix_SetDevice(DeviceMatrix::View, view);
    Matrix_SetOrthographic(g_ViewArea.width, g_ViewArea.height);
}

bool PortCoversTarget()
{
    int32_t width, height;
    Surface_TargetSize(&width, &height);
    return g_ViewPort.x <= 0 && g_ViewPort.y <= 0 && g_ViewPort.x + g_ViewPort.width >= width &&
           g_ViewPort.y + g_ViewPort.height >= height;
}

// A clear as a quad over the whole port, untouched by blending and tests.
void ClearByQuad(uint32_t flags, uint32_t colour)
{
    if (!(flags & CLEAR_COLOUR)) return;
    const bool modulate = GpuState_Modulate();
    GpuState_SetModulate(true);
    GpuState_Push();
    for (const int32_t state : {STATE_Z_ENABLE, STATE_ALPHA_TEST, STATE_FOG_ENABLE,
                                STATE_ALPHA_BLEND, STATE_STENCIL_ENABLE})
        GpuState_Set(state, 0);
    GpuState_Set(STATE_COLOUR_WRITE, kAllChannels);  // a clear knows no mask
    Matrix_SetDevice(DeviceMatrix::View, kIdentityMatrix);
    Matrix_SetDevice(DeviceMatrix::Projection, kIdentityMatrix);
    auto* v = static_cast<VertexTextured*>(
        Batch_Alloc(PRIMITIVE_TRIANGLE_STRIP, Texture_White(), kStrideTextured, 4));
    if (v) {
        v[0] = {-1, 1, 0.5F, colour, 0, 0};
        v[1] = {1, 1, 0.5F, colour, 1, 0};
        v[2] = {-1, -1, 0.5F, colour, 0, 1};
        v[3] = {1, -1, 0.5F, colour, 1, 1};
    }
    GpuState_Pop();
    GpuState_SetModulate(modulate);
    if (g_Gui.inGuiPass && Surface_StackDepth() == 0)
        Gui_SetTransform();
    else
        SetAreaMatrices();
}

}  // namespace

void Matrix_SetDevice(DeviceMatrix which, const float matrix[16])
{
    if (g_Device) g_Device->SetMatrix(which, matrix);
}

void Matrix_SetOrthographic(float width, float height)
{
    constexpr float zNear = 1.0F, zFar = 32000.0F;
    const float matrix[16] = {2.0F / width,
                              0,
                              0,
                              0,  //
                              0,
                              -2.0F / height,
                              0,
                              0,  //
                              0,
                              0,
                              1.0F / (zFar - zNear),
                              -zNear / (zFar - zNear),  //
                              0,
                              0,
                              0,
                              1};
    Matrix_SetDevice(DeviceMatrix::Projection, matrix);
}

void View_SetArea(float x, float y, float width, float height, float angle)
{
    Batch_Flush();
    g_ViewArea = {x, y, width, height, angle};
    View_MarkNew();
    SetAreaMatrices();
}

void View_SetPort(int32_t x, int32_t y, int32_t width, int32_t height)
{
    Batch_Flush();
    g_ViewPort = {x, y, width, height};
    if (g_Device) g_Device->SetViewport(x, y, width, height);
}

void View_SetWindow()
{
    View_SetPort(0, 0, g_Display.backbufferWidth, g_Display.backbufferHeight);
    View_SetArea(0, 0, static_cast<float>(g_Display.clientWidth),
                 static_cast<float>(g_Display.clientHeight), 0);
}

void View_MarkNew()
{
    s_cull.stale = true;
}

bool View_Meets(float x, float y, float radius)
{
    if (g_CullingOff) return true;
    if (s_cull.stale) RefreshCullBox();
    return !(radius < s_cull.top - y || radius < y - s_cull.bottom || radius < s_cull.left - x ||
             radius < x - s_cull.right);
}

void View_Clear(uint32_t deviceClearFlags, uint32_t colour)
{
    Batch_Flush();
    if (!g_Device) return;
    if (g_IntelMode || !PortCoversTarget())
        ClearByQuad(deviceClearFlags, colour);
    else
        g_Device->Clear(deviceClearFlags | CLEAR_DEPTH | CLEAR_STENCIL, colour, 1.0F, 0);
}

void Draw_Clear(uint32_t colour, int32_t alpha)
{
    const uint32_t swapped = (colour & 0xFF00U) | (colour & 0xFFU) << 16 | (colour >> 16 & 0xFFU);
    const auto top = static_cast<uint32_t>(std::clamp(alpha, 0, 255));
    View_Clear(CLEAR_COLOUR, swapped | top << 24);
}
