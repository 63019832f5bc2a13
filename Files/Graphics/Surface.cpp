#include "Files/Graphics/Surface.h"

#include <algorithm>
#include <cstring>

#include "Files/Base/Archive_Main.h"
#include "Files/Base/Console.h"
#include "Files/Graphics/Batch.h"
#include "Files/Graphics/Bitmap.h"
#include "Files/Graphics/Draw_Room.h"
#include "Files/Graphics/Gui.h"
#include "Files/Graphics/View_Matrix.h"
#include "Files/Graphics/Window.h"
#include "Platform/CHashMap.h"

AppSurface g_AppSurface;
bool g_SurfaceDepthDisable;
float portScaleX = 1, portScaleY = 1;
MouseView g_MouseViews[kMouseViews];

namespace {

// What one target saves of the one before it: 14 words of a stack of 497.
struct SavedTarget {
    ViewPort port;
    ViewArea area;
    int32_t cullingOff;
    int32_t targets[kDeviceTargets];
};
static_assert(sizeof(SavedTarget) == 14 * 4);
constexpr int32_t kSavedWords = sizeof(SavedTarget) / 4;
constexpr int32_t kStackWords = 0x1F1;
constexpr int32_t kStackTargets = kStackWords / kSavedWords + 1;

CHashMap<int32_t, CSurface*>* s_surfaces;
int32_t s_nextSurfaceId;
SavedTarget s_stack[kStackTargets];
int32_t s_depth;
int32_t s_targets[kDeviceTargets] = {kNoTarget, kNoTarget, kNoTarget, kNoTarget};

GpuTexture* TextureOf(int32_t id)
{
    const CSurface* surface = Surface_Get(id);
    const TextureSlot* slot = surface ? Texture_Get(surface->texture) : nullptr;
    return slot && slot->texture && slot->texture->colourSurface ? slot->texture : nullptr;
}

void SendTarget(int32_t index)
{
    if (!g_Device) return;
    const GpuTexture* texture = TextureOf(s_targets[index]);
    g_Device->SetTarget(index, texture ? texture->colourSurface : nullptr);
}

int32_t CreateTexture(int32_t width, int32_t height)
{
    return Texture_CreateEmpty(width, height, true, false,
                               static_cast<int32_t>(DeviceFormat::Argb8888));
}

void RestoreView(const SavedTarget& saved)
{
    g_CullingOff = saved.cullingOff != 0;
    std::copy_n(saved.targets, kDeviceTargets, s_targets);
    for (int32_t index = 0; index < kDeviceTargets; ++index) SendTarget(index);
    View_SetPort(saved.port.x, saved.port.y, saved.port.width, saved.port.height);
    const ViewArea& area = saved.area;
    View_SetArea(area.x, area.y, area.width, area.height, area.angle);
    if (g_Gui.inGuiPass && s_depth == 0) Gui_SetTransform();
    View_MarkNew();
}

bool PushTarget(int32_t id)
{
    if (s_depth * kSavedWords >= kStackWords) return false;
    SavedTarget& saved = s_stack[s_depth++];
    saved.port = g_ViewPort;
    saved.area = g_ViewArea;
    saved.cullingOff = g_CullingOff ? 1 : 0;
    std::copy_n(s_targets, kDeviceTargets, saved.targets);
    s_targets[0] = id;
    SendTarget(0);
    // The application surface shows the room, whose area bounds what can be seen.
    g_CullingOff = id != g_AppSurface.appSurfaceId;
    const CSurface* surface = Surface_Get(id);
    View_SetPort(0, 0, surface->width, surface->height);
    View_SetArea(0, 0, static_cast<float>(surface->width), static_cast<float>(surface->height), 0);
    return true;
}

void EmptyTable()
{
    if (!s_surfaces) return;
    for (uint32_t i = 0; i < s_surfaces->Size(); ++i) {
        auto* entry = s_surfaces->At(i);
        if (!entry) continue;
        Texture_Free(entry->value->texture);
        VxDelete(entry->value);
    }
    VxDelete(s_surfaces);
    s_surfaces = VxNew<CHashMap<int32_t, CSurface*>>();
}

// One axis of a copy: starts and length, cut to both textures.
void CutSpan(int32_t* dest, int32_t destSize, int32_t* src, int32_t srcSize, int32_t* length)
{
    const int64_t before = std::max({int64_t{0}, -int64_t{*dest}, -int64_t{*src}});
    const int64_t from = *src + before, to = *dest + before;
    const int64_t rest = std::min({*length - before, srcSize - from, destSize - to});
    *src = static_cast<int32_t>(std::clamp<int64_t>(from, 0, INT32_MAX));
    *dest = static_cast<int32_t>(std::clamp<int64_t>(to, 0, INT32_MAX));
    *length = static_cast<int32_t>(std::max<int64_t>(rest, 0));
}

void TellOutside(int32_t x, int32_t y, int32_t width, int32_t height)
{
    g_DebugConsole->Output(
        "Trying to grab data from outside surface bounds: x = %d, y = %d, w = %d, h = %d\n", x, y,
        width, height);
}

}  // namespace

void Surface_Init()
{
    if (!s_surfaces) s_surfaces = VxNew<CHashMap<int32_t, CSurface*>>();
    s_nextSurfaceId = 0;
    s_depth = 0;
    std::fill_n(s_targets, kDeviceTargets, kNoTarget);
    g_SurfaceDepthDisable = false;
    g_CullingOff = false;
    portScaleX = portScaleY = 1;
    std::fill_n(g_MouseViews, kMouseViews, MouseView{});
    const bool header = g_GameHeader.defaultWindowWidth > 0;
    g_AppSurface = {kNoAppSurface,
                    true,
                    true,
                    true,
                    header ? g_GameHeader.defaultWindowWidth : g_Display.windowWidth,
                    header ? g_GameHeader.defaultWindowHeight : g_Display.windowHeight,
                    -1,
                    -1,
                    -1,
                    -1,
                    false};
}

void Surface_Quit()
{
    Surface_LeaveAll();
    EmptyTable();
    VxDelete(s_surfaces);
    s_surfaces = nullptr;
    g_AppSurface.appSurfaceId = kNoAppSurface;
}

void Surface_LoseAll()
{
    Surface_LeaveAll();
    EmptyTable();
    g_AppSurface.appSurfaceId = kNoAppSurface;
}

CSurface* Surface_Get(int32_t id)
{
    CSurface** surface = s_surfaces ? s_surfaces->Find(id) : nullptr;
    return surface ? *surface : nullptr;
}

int32_t Surface_Create(int32_t width, int32_t height)
{
    if (!s_surfaces) return -1;
    const int32_t slot = CreateTexture(width, height);
    if (slot < 0) return -1;
    while (s_surfaces->Find(s_nextSurfaceId)) ++s_nextSurfaceId;
    const int32_t id = s_nextSurfaceId++;
    auto* surface = VxNew<CSurface>();
    *surface = {id, slot, width, height};
    s_surfaces->Set(id, surface);
    return id;
}

bool Surface_Rebuild(int32_t id, int32_t width, int32_t height)
{
    CSurface* surface = Surface_Get(id);
    if (!surface) return false;
    Batch_Flush();
    Texture_Free(surface->texture);
    if (Texture_Exists(surface->texture)) return false;  // it waits on the target stack
    surface->texture = CreateTexture(width, height);
    surface->width = width;
    surface->height = height;
    if (surface->texture >= 0) return true;
    s_surfaces->Remove(id);
    VxDelete(surface);
    return false;
}

void Surface_Free(int32_t id)
{
    CSurface* surface = Surface_Get(id);
    if (!surface) return;
    Batch_Flush();
    Texture_Free(surface->texture);
    if (Texture_Exists(surface->texture)) return;  // it waits on the target stack
    s_surfaces->Remove(id);
    VxDelete(surface);
}

bool Surface_SetTarget(int32_t index, int32_t id)
{
    if (index < 0 || index >= kDeviceTargets || !g_Device) return false;
    Batch_Flush();
    if (!TextureOf(id)) return false;
    if (index == 0) return PushTarget(id);
    s_targets[index] = id;
    SendTarget(index);
    return true;
}

bool Surface_ResetTarget()
{
    Batch_Flush();
    if (s_depth == 0) {
        s_targets[0] = kNoTarget;
        return false;
    }
    --s_depth;
    RestoreView(s_stack[s_depth]);
    return true;
}

int32_t Surface_StackDepth()
{
    return s_depth;
}

void Surface_LeaveAll()
{
    while (s_depth > 0) Surface_ResetTarget();
    for (int32_t index = 0; index < kDeviceTargets; ++index) {
        if (s_targets[index] == kNoTarget) continue;
        s_targets[index] = kNoTarget;
        SendTarget(index);
    }
}

void Surface_TargetSize(int32_t* width, int32_t* height)
{
    const CSurface* surface = Surface_Get(s_targets[0]);
    *width = surface ? surface->width : g_Display.backbufferWidth;
    *height = surface ? surface->height : g_Display.backbufferHeight;
}

void Surface_UpdateApplication()
{
    AppSurface& app = g_AppSurface;
    if (!app.appSurfaceEnabled) {
        app.appSurfaceWidth = g_Display.deviceWidth;
        app.appSurfaceHeight = g_Display.deviceHeight;
        Surface_Free(app.appSurfaceId);
        app.appSurfaceId = kNoAppSurface;
        app.appSurfaceWasEnabled = false;
        return;
    }
    if (!app.appSurfaceWasEnabled && app.appSurfaceSavedWidth > 0) {
        app.appSurfaceWidth = app.appSurfaceSavedWidth;
        app.appSurfaceHeight = app.appSurfaceSavedHeight;
    }
    if (app.appSurfaceId < 0 || !Surface_Get(app.appSurfaceId)) {
        const int32_t id = Surface_Create(app.appSurfaceWidth, app.appSurfaceHeight);
        app.appSurfaceId = id < 0 ? kNoAppSurface : id;
        if (id < 0) app.appSurfaceWidth = app.appSurfaceHeight = 1;
    }
    if (app.appSurfaceResizePending) {
        app.appSurfaceResizePending = false;
        Surface_Rebuild(app.appSurfaceId, app.appSurfaceResizeWidth, app.appSurfaceResizeHeight);
        app.appSurfaceWidth = app.appSurfaceResizeWidth;
        app.appSurfaceHeight = app.appSurfaceResizeHeight;
    }
    app.appSurfaceWasEnabled = true;
}

void AppSurface_Enable(bool on)
{
    if (g_AppSurface.appSurfaceEnabled) {
        g_AppSurface.appSurfaceSavedWidth = g_AppSurface.appSurfaceWidth;
        g_AppSurface.appSurfaceSavedHeight = g_AppSurface.appSurfaceHeight;
    }
    g_AppSurface.appSurfaceEnabled = on;
}

void Surface_Copy(int32_t dest, int32_t x, int32_t y, int32_t src, int32_t xs, int32_t ys,
                  int32_t width, int32_t height)
{
    const CSurface* to = Surface_Get(dest);
    const CSurface* from = Surface_Get(src);
    Batch_Flush();
    if (dest == src || !TextureOf(dest) || !TextureOf(src)) return;
    CutSpan(&x, to->width, &xs, from->width, &width);
    CutSpan(&y, to->height, &ys, from->height, &height);
    if (width <= 0 || height <= 0) return;
    g_Device->StretchRect(TextureOf(src)->colourSurface, {xs, ys, xs + width, ys + height},
                          TextureOf(dest)->colourSurface, {x, y, x + width, y + height}, true);
}

uint32_t* Surface_Grab(int32_t id, int32_t x, int32_t y, int32_t width, int32_t height)
{
    const GpuTexture* texture = TextureOf(id);
    if (!texture || width <= 0 || height <= 0) return nullptr;
    Batch_Flush();
    if (width > kMaxPictureSize || height > kMaxPictureSize) {
        TellOutside(x, y, width, height);
        return nullptr;
    }
    const size_t count = static_cast<size_t>(width) * static_cast<size_t>(height);
    auto* pixels = static_cast<uint32_t*>(MemoryManager::Alloc(count * 4, true));
    int32_t left = 0, top = 0, columns = width, rows = height;
    const int32_t askedX = x, askedY = y;
    CutSpan(&left, width, &x, texture->width, &columns);
    CutSpan(&top, height, &y, texture->height, &rows);
    if (columns != width || rows != height) TellOutside(askedX, askedY, width, height);
    if (columns > 0 && rows > 0)
        g_Device->ReadPixels(texture->colourSurface, {x, y, x + columns, y + rows},
                             pixels + static_cast<ptrdiff_t>(top) * width + left, width * 4);
    return pixels;
}

bool Surface_IsSavedTarget(int32_t slot)
{
    for (int32_t i = 0; i < s_depth; ++i)
        for (const int32_t id : s_stack[i].targets) {
            const CSurface* surface = Surface_Get(id);
            if (surface && surface->texture == slot) return true;
        }
    return false;
}

void Surface_TakeOffTargets(int32_t slot)
{
    for (int32_t index = 0; index < kDeviceTargets; ++index) {
        const CSurface* surface = Surface_Get(s_targets[index]);
        if (!surface || surface->texture != slot) continue;
        s_targets[index] = kNoTarget;
        if (g_Device) g_Device->SetTarget(index, nullptr);
    }
}

bool Surface_IsTargeted(const GpuTexture* texture)
{
    if (!(texture->flags & TEXTURE_TARGET)) return false;
    for (const int32_t id : s_targets)
        if (id != kNoTarget && TextureOf(id) == texture) return true;
    return false;
}
