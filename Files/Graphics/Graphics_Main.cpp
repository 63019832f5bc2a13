// The start, the reset and the end of everything that draws.

#include "Files/Base/Archive_Main.h"
#include "Files/Base/Console.h"
#include "Files/Graphics/Batch.h"
#include "Files/Graphics/Draw_Room.h"
#include "Files/Graphics/GpuState.h"
#include "Files/Graphics/Surface.h"
#include "Files/Graphics/View_Matrix.h"
#include "Files/Graphics/Window.h"
#include "Files/Run/Run_State.h"

namespace {

constexpr uint32_t kBlack = 0xFF000000U;

// The command line wins over options.ini.
int32_t ChosenBatchMethod()
{
    if (g_Switches.noVb) return BATCH_MEMORY;
    if (g_Switches.multiVb) return BATCH_POOL;
    return g_IniOptions.vertexBufferMethod >= 0 ? g_IniOptions.vertexBufferMethod : BATCH_DYNAMIC;
}

void ShowWholeBackBuffer()
{
    View_SetPort(0, 0, g_Display.backbufferWidth, g_Display.backbufferHeight);
    View_SetArea(0, 0, static_cast<float>(g_Display.backbufferWidth),
                 static_cast<float>(g_Display.backbufferHeight), 0);
}

void ClearBackBuffer()
{
    g_Device->Clear(CLEAR_COLOUR | CLEAR_DEPTH | CLEAR_STENCIL, kBlack, 1.0F, 0);
}

}  // namespace

bool Graphics_Start()
{
    if (!g_Device) return false;
    Batch_Init();
    Batch_SetMethod(ChosenBatchMethod());
    Matrix_SetDevice(DeviceMatrix::World, kIdentityMatrix);
    g_CompressTextures = g_Switches.compressTextures && g_Device->Caps().dxt5;
    if (g_Switches.compressTextures && !g_CompressTextures)
        g_DebugConsole->Output("Textures are not compressed: the plain format is used\n");
    g_TexturesOnDemand = g_IniOptions.createTexturesOnDemand;
    g_TextureGlobalScale = 1;
    Surface_Init();
    GpuState_Init();
    GpuState_SendAll();
    ClearBackBuffer();
    ShowWholeBackBuffer();
    Texture_Init();
    return Texture_White() != nullptr;
}

void Graphics_AfterReset()
{
    if (!g_Device) return;
    ClearBackBuffer();
    Matrix_SetDevice(DeviceMatrix::World, kIdentityMatrix);
    for (int32_t stage = 0; stage < kDeviceStages; ++stage) Texture_Bind(stage, nullptr);
    GpuState_Restart();
    GpuState_SendAll();
    ShowWholeBackBuffer();
}

void Graphics_Stop()
{
    Batch_Flush();
    Surface_Quit();
    Texture_Quit();
    Batch_Quit();
}
