// The splash picture: "splash.png" of the working directory, scaled into the
// window with its aspect kept, for five frames.

#include "Files/Base/Archive_Main.h"
#include "Files/Graphics/Batch.h"
#include "Files/Graphics/Draw_Room.h"
#include "Files/Graphics/Quad.h"
#include "Files/Graphics/Window.h"
#include "Files/Run/Run_Modules.h"
#include "Host/Host.h"

namespace {

constexpr int kSplashFrames = 5;
constexpr uint32_t kBlack = 0xFF000000U, kWhite = 0xFFFFFFU;

void DrawFitted(int32_t slot, const TextureSlot& picture)
{
    const auto width = static_cast<float>(g_Display.clientWidth);
    const auto height = static_cast<float>(g_Display.clientHeight);
    View_SetPort(0, 0, g_Display.clientWidth, g_Display.clientHeight);
    View_SetArea(0, 0, width, height, 0);
    g_Device->Clear(CLEAR_COLOUR, kBlack, 1.0F, 0);
    const float across = width / static_cast<float>(picture.width);
    const float down = height / static_cast<float>(picture.height);
    const float scale = across < down ? across : down;
    const float left = (width - static_cast<float>(picture.width) * scale) * 0.5F;
    const float top = (height - static_cast<float>(picture.height) * scale) * 0.5F;
    Quad_TextureExt(slot, 0, 0, left, top, scale, scale, 0, kWhite, 1);
}

}  // namespace

void Splash_Show()
{
    const VxString path = g_WorkingDirectory + "splash.png";
    if (!g_Host.files.Exists(path.c_str())) return;
    uint32_t size = 0;
    uint8_t* data = g_Host.files.ReadAll(path.c_str(), &size);
    if (!data) return;
    const int32_t slot = Texture_CreateFromFile(data, size);
    const TextureSlot* picture = Texture_Get(slot);
    for (int frame = 0;
         picture && picture->width > 0 && picture->height > 0 && frame < kSplashFrames; ++frame) {
        Frame_Begin();
        DrawFitted(slot, *picture);
        Frame_End(true);
        Process_Messages();
    }
    if (picture) Texture_Free(slot);
    MemoryManager::Free(data);
}
