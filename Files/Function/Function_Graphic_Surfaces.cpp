// Surfaces, clears, the application surface and the GUI's size.

#include <algorithm>

#include "Files/Base/Error.h"
#include "Files/Function/Function_Graphic.h"
#include "Files/Function/Function_Registry.h"
#include "Files/Graphics/Batch.h"
#include "Files/Graphics/Draw_Room.h"
#include "Files/Graphics/Gui.h"
#include "Files/Graphics/Picture_Files.h"
#include "Files/Graphics/Quad.h"
#include "Files/Graphics/Surface.h"
#include "Files/Graphics/Window.h"
#include "Platform/MemoryManager.h"

namespace {

constexpr int32_t kLargestSurface = 8192;  // pixels a side, of surface_resize

// The surface of an argument, or null after the report.
const CSurface* SurfaceArgument(const RValue* args, int argc, int i)
{
    const CSurface* surface = Surface_Get(ArgInt(args, argc, i, -1));
    if (!surface) Error_Show("Trying to use non-existing surface.", false);
    return surface;
}

bool IsApplication(int32_t id)
{
    return id == g_AppSurface.appSurfaceId;
}

void Create(RValue& result, const RValue* args, int argc)
{
    const int32_t width = ArgInt(args, argc, 0), height = ArgInt(args, argc, 1);
    if (width == 0 || height == 0) {
        Error_Show("Can't create a surface with either a width or height of 0", true);
        SetReal(result, -1);
        return;
    }
    SetReal(result, Surface_Create(width, height));
}

// One pixel of a surface, or of the back buffer for null; 0 outside.
uint32_t Pixel(const CSurface* surface, int32_t x, int32_t y)
{
    uint32_t pixel = 0;
    const int32_t width = surface ? surface->width : g_Display.backbufferWidth;
    const int32_t height = surface ? surface->height : g_Display.backbufferHeight;
    if (!g_Device || x < 0 || y < 0 || x >= width || y >= height) return 0;
    Batch_Flush();
    const DeviceRect area{x, y, x + 1, y + 1};
    if (surface)
        Texture_ReadPixels(surface->texture, area, &pixel);
    else
        g_Device->ReadPixels(nullptr, area, &pixel, sizeof pixel);
    return pixel;
}

struct PixelBox {
    int32_t x, y, width, height;
};

// The part of a box that lies in a picture of that size; false when there is none.
bool CutBox(PixelBox* box, int32_t width, int32_t height)
{
    const int32_t left = std::clamp(box->x, 0, width), top = std::clamp(box->y, 0, height);
    const int64_t right = std::min<int64_t>(int64_t{box->x} + box->width, width);
    const int64_t bottom = std::min<int64_t>(int64_t{box->y} + box->height, height);
    *box = {left, top, static_cast<int32_t>(right - left), static_cast<int32_t>(bottom - top)};
    return right > left && bottom > top;
}

// Writes a part of the back buffer (null) or of a surface.
void SavePart(const CSurface* surface, const char* name, PixelBox box)
{
    const int32_t width = surface ? surface->width : g_Display.backbufferWidth;
    const int32_t height = surface ? surface->height : g_Display.backbufferHeight;
    if (!g_Device || !CutBox(&box, width, height)) return;
    Batch_Flush();
    auto* pixels = static_cast<uint32_t*>(
        MemoryManager::Alloc(static_cast<size_t>(box.width) * static_cast<size_t>(box.height) * 4));
    const DeviceRect area{box.x, box.y, box.x + box.width, box.y + box.height};
    const bool read = surface ? Texture_ReadPixels(surface->texture, area, pixels)
                              : g_Device->ReadPixels(nullptr, area, pixels, box.width * 4);
    if (read) Picture_Save(name, pixels, box.width, box.height);
    MemoryManager::Free(pixels);
}

PixelBox BoxArgument(const RValue* args, int argc, int first)
{
    return {ArgInt(args, argc, first), ArgInt(args, argc, first + 1), ArgInt(args, argc, first + 2),
            ArgInt(args, argc, first + 3)};
}

}  // namespace

BUILTIN(surface_create)
{
    Create(result, args, argc);
}

// The two further formats hold what the plain one holds.
BUILTIN(surface_create_special)
{
    Create(result, args, argc);
}

BUILTIN(surface_create_ext)
{
    Error_Show("surface_create_ext() not supported", false);
    SetReal(result, -1);
}

BUILTIN(surface_resize)
{
    const int32_t id = ArgInt(args, argc, 0, -1);
    const int32_t width = ArgInt(args, argc, 1), height = ArgInt(args, argc, 2);
    SetBool(result, false);
    if (width < 1 || height < 1 || width > kLargestSurface || height > kLargestSurface) {
        Error_Show("Invalid surface dimensions", false);
        return;
    }
    if (IsApplication(id)) {
        g_AppSurface.appSurfaceResizeWidth = width;
        g_AppSurface.appSurfaceResizeHeight = height;
        g_AppSurface.appSurfaceResizePending = true;
        SetBool(result, true);
        return;
    }
    if (!Surface_Get(id)) {
        Error_Show("Surface does not exist", false);
        return;
    }
    SetBool(result, Surface_Rebuild(id, width, height));
}

BUILTIN(surface_exists)
{
    SetBool(result, Surface_Get(ArgInt(args, argc, 0, -1)) != nullptr);
}

BUILTIN(surface_free)
{
    const int32_t id = ArgInt(args, argc, 0, -1);
    if (!IsApplication(id)) Surface_Free(id);
}

BUILTIN(surface_get_width)
{
    const int32_t id = ArgInt(args, argc, 0, -1);
    const CSurface* surface = Surface_Get(id);
    SetReal(result, IsApplication(id) ? g_AppSurface.appSurfaceWidth
                    : surface         ? surface->width
                                      : -1);
}

BUILTIN(surface_get_height)
{
    const int32_t id = ArgInt(args, argc, 0, -1);
    const CSurface* surface = Surface_Get(id);
    SetReal(result, IsApplication(id) ? g_AppSurface.appSurfaceHeight
                    : surface         ? surface->height
                                      : -1);
}

BUILTIN(surface_get_texture)
{
    const CSurface* surface = Surface_Get(ArgInt(args, argc, 0, -1));
    SetReal(result, surface ? surface->texture : -1);
}

BUILTIN(surface_set_target)
{
    SetBool(result, Surface_SetTarget(0, ArgInt(args, argc, 0, -1)));
}

// index of the target, surface
BUILTIN(surface_set_target_ext)
{
    SetBool(result, Surface_SetTarget(ArgInt(args, argc, 0, -1), ArgInt(args, argc, 1, -1)));
}

BUILTIN(surface_reset_target)
{
    SetBool(result, Surface_ResetTarget());
}

BUILTIN(surface_depth_disable)
{
    g_SurfaceDepthDisable = ArgBool(args, argc, 0);
}

BUILTIN(surface_get_depth_disable)
{
    SetBool(result, g_SurfaceDepthDisable);
}

// surface, x, y
BUILTIN(draw_surface)
{
    if (const CSurface* surface = SurfaceArgument(args, argc, 0))
        Quad_Texture(surface->texture, ArgFloat(args, argc, 1), ArgFloat(args, argc, 2));
}

// surface, x, y, xscale, yscale, rotation, colour, alpha
BUILTIN(draw_surface_ext)
{
    const CSurface* surface = SurfaceArgument(args, argc, 0);
    if (!surface) return;
    Quad_TextureExt(surface->texture, 0, 0, ArgFloat(args, argc, 1), ArgFloat(args, argc, 2),
                    ArgFloat(args, argc, 3), ArgFloat(args, argc, 4),
                    ArgFloat(args, argc, 5) * kDegreeFloat, ArgColour(args, argc, 6),
                    ArgFloat(args, argc, 7));
}

namespace {

void Stretched(const RValue* args, int argc, uint32_t colour, float alpha)
{
    const CSurface* surface = SurfaceArgument(args, argc, 0);
    if (!surface) return;
    Quad_TextureExt(surface->texture, 0, 0, ArgFloat(args, argc, 1), ArgFloat(args, argc, 2),
                    ArgFloat(args, argc, 3) / static_cast<float>(surface->width),
                    ArgFloat(args, argc, 4) / static_cast<float>(surface->height), 0, colour,
                    alpha);
}

void Part(const RValue* args, int argc, float xscale, float yscale, uint32_t colour, float alpha)
{
    const CSurface* surface = SurfaceArgument(args, argc, 0);
    if (!surface) return;
    Quad_TexturePart(surface->texture, ArgFloat(args, argc, 1), ArgFloat(args, argc, 2),
                     ArgFloat(args, argc, 3), ArgFloat(args, argc, 4), ArgFloat(args, argc, 5),
                     ArgFloat(args, argc, 6), xscale, yscale, 0, colour, alpha);
}

void Tiled(const RValue* args, int argc, float xscale, float yscale, uint32_t colour, float alpha)
{
    const CSurface* surface = SurfaceArgument(args, argc, 0);
    if (!surface) return;
    Quad_TextureTiled(surface->texture, 0, 0, ArgFloat(args, argc, 1), ArgFloat(args, argc, 2),
                      xscale, yscale, true, true, colour, alpha);
}

}  // namespace

// surface, x, y, width, height
BUILTIN(draw_surface_stretched)
{
    Stretched(args, argc, kScriptWhite, Graphic_PlainAlpha());
}

// surface, x, y, width, height, colour, alpha
BUILTIN(draw_surface_stretched_ext)
{
    Stretched(args, argc, ArgColour(args, argc, 5), ArgFloat(args, argc, 6));
}

// surface, left, top, width, height, x, y
BUILTIN(draw_surface_part)
{
    Part(args, argc, 1, 1, kScriptWhite, Graphic_PlainAlpha());
}

// surface, left, top, width, height, x, y, xscale, yscale, colour, alpha
BUILTIN(draw_surface_part_ext)
{
    Part(args, argc, ArgFloat(args, argc, 7), ArgFloat(args, argc, 8), ArgColour(args, argc, 9),
         ArgFloat(args, argc, 10));
}

// surface, left, top, width, height, x, y, xscale, yscale, rotation, four colours, alpha
BUILTIN(draw_surface_general)
{
    const CSurface* surface = SurfaceArgument(args, argc, 0);
    if (!surface) return;
    float f[9];
    for (int i = 0; i < 9; ++i) f[i] = ArgFloat(args, argc, 1 + i);
    uint32_t colours[4];
    for (int i = 0; i < 4; ++i) colours[i] = ArgColour(args, argc, 10 + i);
    Quad_TextureGeneral(surface->texture, f[0], f[1], f[2], f[3], f[4], f[5], f[6], f[7],
                        f[8] * kDegreeFloat, colours, ArgFloat(args, argc, 14));
}

// surface, x, y
BUILTIN(draw_surface_tiled)
{
    Tiled(args, argc, 1, 1, kScriptWhite, Graphic_PlainAlpha());
}

// surface, x, y, xscale, yscale, colour, alpha
BUILTIN(draw_surface_tiled_ext)
{
    Tiled(args, argc, ArgFloat(args, argc, 3), ArgFloat(args, argc, 4), ArgColour(args, argc, 5),
          ArgFloat(args, argc, 6));
}

// surface, file
BUILTIN(surface_save)
{
    if (const CSurface* surface = SurfaceArgument(args, argc, 0))
        SavePart(surface, ArgText(args, argc, 1), {0, 0, surface->width, surface->height});
}

// surface, file, x, y, width, height
BUILTIN(surface_save_part)
{
    if (const CSurface* surface = SurfaceArgument(args, argc, 0))
        SavePart(surface, ArgText(args, argc, 1), BoxArgument(args, argc, 2));
}

// surface, x, y
BUILTIN(surface_getpixel)
{
    const CSurface* surface = SurfaceArgument(args, argc, 0);
    const uint32_t pixel =
        surface ? Pixel(surface, ArgInt(args, argc, 1), ArgInt(args, argc, 2)) : 0;
    SetReal(result, Graphic_PixelColour(pixel, false));
}

BUILTIN(surface_getpixel_ext)
{
    const CSurface* surface = SurfaceArgument(args, argc, 0);
    const uint32_t pixel =
        surface ? Pixel(surface, ArgInt(args, argc, 1), ArgInt(args, argc, 2)) : 0;
    SetReal(result, Graphic_PixelColour(pixel, true));
}

// dest, x, y, source
BUILTIN(surface_copy)
{
    const CSurface* dest = SurfaceArgument(args, argc, 0);
    const CSurface* source = dest ? SurfaceArgument(args, argc, 3) : nullptr;
    if (!source) return;
    Surface_Copy(dest->id, ArgInt(args, argc, 1), ArgInt(args, argc, 2), source->id, 0, 0,
                 source->width, source->height);
}

// dest, x, y, source, left, top, width, height
BUILTIN(surface_copy_part)
{
    const CSurface* dest = SurfaceArgument(args, argc, 0);
    const CSurface* source = dest ? SurfaceArgument(args, argc, 3) : nullptr;
    if (!source) return;
    const PixelBox box = BoxArgument(args, argc, 4);
    Surface_Copy(dest->id, ArgInt(args, argc, 1), ArgInt(args, argc, 2), source->id, box.x, box.y,
                 box.width, box.height);
}

BUILTIN(draw_clear)
{
    Draw_Clear(ArgColour(args, argc, 0), 255);
}

BUILTIN(draw_clear_alpha)
{
    const double alpha = std::clamp(ArgReal(args, argc, 1) * 255.0, 0.0, 255.0);
    Draw_Clear(ArgColour(args, argc, 0), static_cast<int32_t>(alpha));
}

BUILTIN(application_surface_enable)
{
    AppSurface_Enable(ArgBool(args, argc, 0));
}

BUILTIN(application_surface_is_enabled)
{
    SetBool(result, g_AppSurface.appSurfaceEnabled);
}

BUILTIN(application_surface_draw_enable)
{
    g_AppSurface.appSurfaceAutoDraw = ArgBool(args, argc, 0);
}

// left, top, right, bottom of the picture in the window
BUILTIN(application_get_position)
{
    int32_t left = 0, top = 0;
    Window_LetterboxOffsets(&left, &top);
    const int32_t sides[4] = {left, top, g_Display.clientWidth - left,
                              g_Display.clientHeight - top};
    RELEASE_RValue(&result);
    for (int32_t i = 0; i < 4; ++i) {
        const RValue side(static_cast<double>(sides[i]));
        SET_RValue(&result, &side, i);
    }
}

BUILTIN(display_set_gui_size)
{
    Gui_SetSize(ArgInt(args, argc, 0, -1), ArgInt(args, argc, 1, -1));
}

// xscale, yscale, xoffset, yoffset; all may be left out
BUILTIN(display_set_gui_maximise)
{
    Gui_SetMaximise(ArgFloat(args, argc, 0, 1.0F), ArgFloat(args, argc, 1, 1.0F),
                    ArgReal(args, argc, 2, kNoGuiOffset), ArgReal(args, argc, 3, kNoGuiOffset));
}

BUILTIN(display_get_gui_width)
{
    SetReal(result, Gui_Width());
}

BUILTIN(display_get_gui_height)
{
    SetReal(result, Gui_Height());
}

BUILTIN(screen_save)
{
    SavePart(nullptr, ArgText(args, argc, 0),
             {0, 0, g_Display.backbufferWidth, g_Display.backbufferHeight});
}

// file, x, y, width, height
BUILTIN(screen_save_part)
{
    SavePart(nullptr, ArgText(args, argc, 0), BoxArgument(args, argc, 1));
}

BUILTIN(draw_getpixel)
{
    SetReal(result, Graphic_PixelColour(
                        Pixel(nullptr, ArgInt(args, argc, 0), ArgInt(args, argc, 1)), false));
}

BUILTIN(draw_getpixel_ext)
{
    SetReal(result, Graphic_PixelColour(
                        Pixel(nullptr, ArgInt(args, argc, 0), ArgInt(args, argc, 1)), true));
}

static constexpr BuiltinRow kRows[] = {
    {"surface_create", surface_create, 2},
    {"surface_create_special", surface_create_special, 3},
    {"surface_create_ext", surface_create_ext, -1},
    {"surface_resize", surface_resize, 3},
    {"surface_exists", surface_exists, 1},
    {"surface_free", surface_free, 1},
    {"surface_get_width", surface_get_width, 1},
    {"surface_get_height", surface_get_height, 1},
    {"surface_get_texture", surface_get_texture, 1},
    {"surface_set_target", surface_set_target, 1},
    {"surface_set_target_ext", surface_set_target_ext, 2},
    {"surface_reset_target", surface_reset_target, 0},
    {"surface_depth_disable", surface_depth_disable, 1},
    {"surface_get_depth_disable", surface_get_depth_disable, 0},
    {"draw_surface", draw_surface, 3},
    {"draw_surface_ext", draw_surface_ext, 8},
    {"draw_surface_stretched", draw_surface_stretched, 5},
    {"draw_surface_stretched_ext", draw_surface_stretched_ext, 7},
    {"draw_surface_part", draw_surface_part, 7},
    {"draw_surface_part_ext", draw_surface_part_ext, 11},
    {"draw_surface_general", draw_surface_general, 15},
    {"draw_surface_tiled", draw_surface_tiled, 3},
    {"draw_surface_tiled_ext", draw_surface_tiled_ext, 7},
    {"surface_save", surface_save, 2},
    {"surface_save_part", surface_save_part, 6},
    {"surface_getpixel", surface_getpixel, 3},
    {"surface_getpixel_ext", surface_getpixel_ext, 3},
    {"surface_copy", surface_copy, 4},
    {"surface_copy_part", surface_copy_part, 8},
    {"draw_clear", draw_clear, 1},
    {"draw_clear_alpha", draw_clear_alpha, 2},
    {"application_surface_enable", application_surface_enable, 1},
    {"application_surface_is_enabled", application_surface_is_enabled, 0},
    {"application_surface_draw_enable", application_surface_draw_enable, 1},
    {"application_get_position", application_get_position, 0},
    {"display_set_gui_size", display_set_gui_size, 2},
    {"display_set_gui_maximise", display_set_gui_maximise, -1},
    {"display_set_gui_maximize", display_set_gui_maximise, -1},
    {"display_get_gui_width", display_get_gui_width, 0},
    {"display_get_gui_height", display_get_gui_height, 0},
    {"screen_save", screen_save, 1},
    {"screen_save_part", screen_save_part, 5},
    {"draw_getpixel", draw_getpixel, 2},
    {"draw_getpixel_ext", draw_getpixel_ext, 2},
};

void Function_Graphic_RegisterSurfaces()
{
    Function_AddRows(kRows);
}
