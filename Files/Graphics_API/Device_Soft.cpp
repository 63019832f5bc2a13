#include "Files/Graphics_API/Device_Soft.h"

#include <algorithm>
#include <cstdio>
#include <cstring>

#include "Files/Graphics_API/Soft_State.h"
#include "Host/Host.h"

SoftState* g_Soft = nullptr;
const SoftKernels* g_SoftKernels = nullptr;

namespace {

constexpr size_t kPixelAlignment = 64;
constexpr uint32_t kFarDepth = 0xFFFFFF00;
constexpr uint32_t kMaxBuffer = 1U << 30;

SoftTexture* AsSoft(DeviceTexture* texture)
{
    return reinterpret_cast<SoftTexture*>(texture);
}
SoftBuffer* AsSoft(DeviceBuffer* buffer)
{
    return reinterpret_cast<SoftBuffer*>(buffer);
}

SoftTexture* Target(DeviceTexture* texture)
{
    return texture ? AsSoft(texture) : g_Soft->backBuffer;
}

size_t PixelCount(const SoftTexture* texture)
{
    return static_cast<size_t>(texture->width) * static_cast<size_t>(texture->height);
}

template <class T>
void Link(T** head, T* item)
{
    item->next = *head;
    item->previous = nullptr;
    if (*head) (*head)->previous = item;
    *head = item;
}

template <class T>
void Unlink(T** head, T* item)
{
    (item->previous ? item->previous->next : *head) = item->next;
    if (item->next) item->next->previous = item->previous;
}

// ---- textures

SoftTexture* NewTexture(int32_t width, int32_t height)
{
    SoftTexture* texture = VxNew<SoftTexture>(SoftTexture{});
    texture->width = width;
    texture->height = height;
    texture->format = DeviceFormat::Argb8888;
    texture->depthClear = kFarDepth;
    texture->pixels = static_cast<uint32_t*>(
        MemoryManager::AllocAligned(PixelCount(texture) * 4, kPixelAlignment, true));
    return texture;
}

void DeleteTexture(SoftTexture* texture)
{
    MemoryManager::Free(texture->pixels);
    MemoryManager::Free(texture->depth);
    VxDelete(texture);
}

void FillDepth(SoftTexture* texture)
{
    if (texture->depth) std::fill_n(texture->depth, PixelCount(texture), texture->depthClear);
}

DeviceTexture* CreateTexture(int32_t width, int32_t height, DeviceFormat format, bool renderTarget,
                             bool depth)
{
    if (width < 1 || height < 1 || width > kSoftMaxSize || height > kSoftMaxSize) return nullptr;
    if (format == DeviceFormat::Dxt5) return nullptr;
    SoftTexture* texture = NewTexture(width, height);
    texture->format = format == DeviceFormat::Argb4444 ? format : DeviceFormat::Argb8888;
    texture->target = renderTarget;
    texture->hasDepth = renderTarget && depth;
    texture->seen = {width, height, 0, 0};
    if (renderTarget) texture->seen = {0, 0, width, height};
    Link(&g_Soft->textures, texture);
    return reinterpret_cast<DeviceTexture*>(texture);
}

void FreeTexture(DeviceTexture* handle)
{
    SoftTexture* texture = AsSoft(handle);
    if (!texture) return;
    for (SoftTexture*& stage : g_Soft->stage)
        if (stage == texture) stage = nullptr;
    for (SoftTexture*& target : g_Soft->target)
        if (target == texture) target = nullptr;
    if (!g_Soft->target[0]) g_Soft->target[0] = g_Soft->backBuffer;
    Unlink(&g_Soft->textures, texture);
    DeleteTexture(texture);
}

bool Inside(const SoftTexture* texture, const DeviceRect& area)
{
    return area.left >= 0 && area.top >= 0 && area.left <= area.right && area.top <= area.bottom &&
           area.right <= texture->width && area.bottom <= texture->height;
}

uint32_t* PixelAt(const SoftTexture* texture, int32_t x, int32_t y)
{
    return texture->pixels + static_cast<int64_t>(y) * texture->width + x;
}

// Takes what is not clear of an area that was written to into `seen`.
void See(SoftTexture* texture, const DeviceRect& area)
{
    DeviceRect& seen = texture->seen;
    if (area.left == 0 && area.top == 0 && area.right == texture->width &&
        area.bottom == texture->height)
        seen = {area.right, area.bottom, 0, 0};  // of no texel at all
    const auto isClear = [](uint32_t texel) { return texel >> 24 == 0; };
    for (int32_t y = area.top; y < area.bottom; y++) {
        const uint32_t* row = PixelAt(texture, 0, y);
        int32_t left = area.left, right = area.right;
        while (left < right && isClear(row[left])) left++;
        if (left == right) continue;
        while (isClear(row[right - 1])) right--;
        seen = {std::min(seen.left, left), std::min(seen.top, y), std::max(seen.right, right),
                std::max(seen.bottom, y + 1)};
    }
}

bool UpdateTexture(DeviceTexture* handle, const DeviceRect& area, const void* pixels, int32_t pitch)
{
    SoftTexture* texture = AsSoft(handle);
    if (!texture || !pixels || !Inside(texture, area)) return false;
    const size_t columns = static_cast<size_t>(area.right - area.left);
    for (int32_t y = area.top; y < area.bottom; y++) {
        const uint8_t* row =
            static_cast<const uint8_t*>(pixels) + static_cast<int64_t>(y - area.top) * pitch;
        uint32_t* to = PixelAt(texture, area.left, y);
        if (texture->format != DeviceFormat::Argb4444) {
            std::memcpy(to, row, columns * 4);
            continue;
        }
        for (size_t x = 0; x < columns; x++) {
            uint16_t word;
            std::memcpy(&word, row + x * 2, sizeof(word));
            to[x] = Device_From4444(word);
        }
    }
    if (!texture->target) See(texture, area);
    return true;
}

bool ReadPixels(DeviceTexture* handle, const DeviceRect& area, void* pixels, int32_t pitch)
{
    const SoftTexture* texture = Target(handle);
    if (!pixels || !Inside(texture, area)) return false;
    for (int32_t y = area.top; y < area.bottom; y++)
        std::memcpy(static_cast<uint8_t*>(pixels) + static_cast<int64_t>(y - area.top) * pitch,
                    PixelAt(texture, area.left, y),
                    static_cast<size_t>(area.right - area.left) * 4);
    return true;
}

const uint32_t* CopyOf(const SoftTexture* texture)
{
    VxVector<uint32_t>& copy = g_Soft->copy;
    const size_t count = PixelCount(texture);
    if (copy.size() < count) copy.resize(count);
    std::memcpy(copy.data(), texture->pixels, count * 4);
    return copy.data();
}

// The filter stays within the source rectangle.
bool StretchRect(DeviceTexture* source, const DeviceRect& from, DeviceTexture* dest,
                 const DeviceRect& to, bool linear)
{
    const SoftTexture* in = Target(source);
    SoftTexture* out = Target(dest);
    if (!Inside(in, from) || !Inside(out, to)) return false;
    const int32_t width = from.right - from.left, height = from.bottom - from.top;
    if (width == 0 || height == 0 || to.left == to.right || to.top == to.bottom) return true;
    out->seen = {0, 0, out->width, out->height};
    SoftDraw draw = {};
    draw.kernels = g_SoftKernels;
    draw.pixels = out->pixels;
    draw.pitch = out->width;
    draw.left = to.left;
    draw.top = to.top;
    draw.right = to.right;
    draw.bottom = to.bottom;
    draw.texels = (in == out ? CopyOf(in) : in->pixels) +
                  static_cast<int64_t>(from.top) * in->width + from.left;
    draw.texPitch = in->width;
    draw.texWidth = width;
    draw.texHeight = height;
    draw.linear = draw.linearMin = linear;
    draw.blend = g_SoftKernels->Blend[static_cast<int32_t>(SoftBlend::Copy)];
    draw.writeMask = 0xFFFFFFFF;
    draw.plain = true;
    Soft_Rectangle(draw, {to.left * kSubpixel, to.top * kSubpixel, to.right * kSubpixel,
                          to.bottom * kSubpixel, 0, 0, static_cast<int64_t>(width) << 16,
                          static_cast<int64_t>(height) << 16, 0xFFFFFFFF});
    return true;
}

// ---- states

void SetTexture(int32_t stage, DeviceTexture* texture)
{
    if (stage >= 0 && stage < kDeviceStages) g_Soft->stage[stage] = AsSoft(texture);
}

void SetModulate(bool on)
{
    g_Soft->modulate = on;
}

void SetViewport(int32_t x, int32_t y, int32_t width, int32_t height)
{
    g_Soft->viewport = {x, y, std::max(width, 0), std::max(height, 0)};
    g_Soft->transformKnown = false;
}

void SetTarget(int32_t index, DeviceTexture* texture)
{
    if (index < 0 || index >= kDeviceTargets) return;
    if (texture && !AsSoft(texture)->target) return;
    g_Soft->target[index] = AsSoft(texture);
    if (index != 0) return;
    g_Soft->target[0] = Target(texture);
    SetViewport(0, 0, g_Soft->target[0]->width, g_Soft->target[0]->height);
}

void SetMatrix(DeviceMatrix which, const float matrix[16])
{
    std::memcpy(g_Soft->matrix[static_cast<int32_t>(which)], matrix, sizeof(g_Soft->matrix[0]));
    g_Soft->transformKnown = false;
}

void SetRenderState(int32_t state, uint32_t value)
{
    if (state >= 0 && state < STATE_COUNT) g_Soft->render[state] = value;
}

void SetSamplerState(int32_t stage, int32_t kind, uint32_t value)
{
    if (stage < 0 || stage >= kDeviceStages || kind < 0 || kind >= SAMPLER_COUNT) return;
    g_Soft->sampler[stage][kind] = value;
}

void ClearDepth(SoftTexture* target, uint32_t flags, float depth, uint32_t stencil)
{
    if (!target->hasDepth || !(flags & (CLEAR_DEPTH | CLEAR_STENCIL))) return;
    const double limited = depth > 0 ? (depth < 1 ? static_cast<double>(depth) : 1.0) : 0.0;
    uint32_t mask = 0;
    if (flags & CLEAR_DEPTH) mask |= 0xFFFFFF00;
    if (flags & CLEAR_STENCIL) mask |= 0xFF;
    const auto steps = static_cast<uint32_t>(limited * 16777215.0 + 0.5);
    const uint32_t value = ((steps << 8) | (stencil & 255)) & mask;
    target->depthClear = (target->depthClear & ~mask) | value;
    if (mask == 0xFFFFFFFF) {
        FillDepth(target);
        return;
    }
    for (size_t i = 0; target->depth && i < PixelCount(target); i++)
        target->depth[i] = (target->depth[i] & ~mask) | value;
}

void Clear(uint32_t flags, uint32_t colour, float depth, uint32_t stencil)
{
    for (SoftTexture* target : g_Soft->target) {
        if (!target || !(flags & CLEAR_COLOUR)) continue;
        for (int32_t y = 0; y < target->height; y++)
            g_SoftKernels->Fill(PixelAt(target, 0, y), colour, target->width);
    }
    ClearDepth(g_Soft->target[0], flags, depth, stencil);
}

void SetDefaults()
{
    Device_DefaultStates(g_Soft->render, g_Soft->sampler);
    for (auto& matrix : g_Soft->matrix) std::memcpy(matrix, kDeviceIdentity, sizeof(matrix));
    g_Soft->modulate = true;
}

// ---- vertices

DeviceBuffer* CreateBuffer(uint32_t bytes, bool)
{
    if (bytes == 0 || bytes > kMaxBuffer) return nullptr;
    SoftBuffer* buffer = VxNew<SoftBuffer>(SoftBuffer{});
    buffer->bytes = bytes;
    buffer->data = static_cast<uint8_t*>(MemoryManager::Alloc(bytes, true));
    Link(&g_Soft->buffers, buffer);
    return reinterpret_cast<DeviceBuffer*>(buffer);
}

void FreeBuffer(DeviceBuffer* handle)
{
    SoftBuffer* buffer = AsSoft(handle);
    if (!buffer) return;
    Unlink(&g_Soft->buffers, buffer);
    MemoryManager::Free(buffer->data);
    VxDelete(buffer);
}

// Drawing is done when a call returns, so a lock never waits and never moves.
void* LockBuffer(DeviceBuffer* handle, uint32_t offset, uint32_t bytes, DeviceLock)
{
    SoftBuffer* buffer = AsSoft(handle);
    if (!buffer || offset > buffer->bytes || bytes > buffer->bytes - offset) return nullptr;
    return buffer->data + offset;
}

void UnlockBuffer(DeviceBuffer*) {}

void Draw(DevicePrimitive primitive, int32_t stride, DeviceBuffer* handle, uint32_t offset,
          int32_t count)
{
    const SoftBuffer* buffer = AsSoft(handle);
    if (!buffer || stride <= 0 || count <= 0 || offset > buffer->bytes) return;
    if (static_cast<uint64_t>(stride) * static_cast<uint64_t>(count) > buffer->bytes - offset)
        return;
    Soft_DrawVertices(primitive, stride, buffer->data + offset, count);
}

void DrawUp(DevicePrimitive primitive, int32_t stride, const void* vertices, int32_t count)
{
    if (vertices)
        Soft_DrawVertices(primitive, stride, static_cast<const uint8_t*>(vertices), count);
}

// ---- the device's life

bool MakeBackBuffer(const DeviceParams& params)
{
    if (params.width < 1 || params.height < 1 || params.width > kSoftMaxSize ||
        params.height > kSoftMaxSize)
        return false;
    SoftTexture* made = NewTexture(params.width, params.height);
    made->target = made->hasDepth = true;
    if (g_Soft->backBuffer) DeleteTexture(g_Soft->backBuffer);
    g_Soft->backBuffer = made;
    g_Soft->params = params;
    std::memset(g_Soft->target, 0, sizeof(g_Soft->target));
    SetTarget(0, nullptr);
    return true;
}

void Close()
{
    if (!g_Soft) return;
    while (g_Soft->buffers) FreeBuffer(reinterpret_cast<DeviceBuffer*>(g_Soft->buffers));
    while (g_Soft->textures) FreeTexture(reinterpret_cast<DeviceTexture*>(g_Soft->textures));
    if (g_Soft->backBuffer) DeleteTexture(g_Soft->backBuffer);
    VxDelete(g_Soft);
    g_Soft = nullptr;
}

bool Open(const DeviceParams& params, char* error, int32_t errorSize)
{
    Close();
    if (!g_SoftKernels) g_SoftKernels = &Soft_BestKernels();
    g_Soft = VxNew<SoftState>();
    g_Soft->caps = {.maxTextureSize = kSoftMaxSize,
                    .sampleLevels = 0,
                    .targets = kDeviceTargets,
                    .dxt5 = false};
    SetDefaults();
    if (MakeBackBuffer(params)) return true;
    std::snprintf(error, static_cast<size_t>(errorSize),
                  "The software device can not make a picture of %d by %d pixels; "
                  "the sides go from 1 to %d.",
                  params.width, params.height, kSoftMaxSize);
    Close();
    return false;
}

bool Reset(const DeviceParams& params)
{
    if (!MakeBackBuffer(params)) return false;
    for (SoftTexture* texture = g_Soft->textures; texture; texture = texture->next) {
        if (!texture->target) continue;
        std::memset(texture->pixels, 0, PixelCount(texture) * 4);
        texture->depthClear = kFarDepth;
        FillDepth(texture);
    }
    return true;
}

bool Lost()
{
    return false;
}

const DeviceCaps& Caps()
{
    return g_Soft->caps;
}

DeviceCounts Counts()
{
    DeviceCounts counts = {0, 0};
    for (const SoftTexture* t = g_Soft->textures; t; t = t->next) counts.textures++;
    for (const SoftBuffer* b = g_Soft->buffers; b; b = b->next) counts.buffers++;
    return counts;
}

bool BeginScene()
{
    return true;
}
void EndScene() {}

void Present()
{
    const SoftTexture* back = g_Soft->backBuffer;
    if (g_Host.window.PresentPixels)
        g_Host.window.PresentPixels(back->pixels, back->width, back->height, back->width * 4);
}

}  // namespace

uint32_t* Soft_DepthPixels(SoftTexture* target)
{
    if (!target->depth) {
        target->depth = static_cast<uint32_t*>(
            MemoryManager::AllocAligned(PixelCount(target) * 4, kPixelAlignment));
        FillDepth(target);
    }
    return target->depth;
}

const uint32_t* Device_Soft_BackBuffer(int32_t* width, int32_t* height)
{
    *width = g_Soft ? g_Soft->backBuffer->width : 0;
    *height = g_Soft ? g_Soft->backBuffer->height : 0;
    return g_Soft ? g_Soft->backBuffer->pixels : nullptr;
}

void Device_Soft_SetVector(bool on)
{
    g_SoftKernels = on ? &Soft_BestKernels() : &g_SoftScalar;
}

bool Device_Soft_SetLoops(const char* name)
{
    const SoftKernels* const known[] = {&Soft_BestKernels(), Soft_Avx2Kernels(), Soft_Sse2Kernels(),
                                        &g_SoftScalar};
    for (const SoftKernels* kernels : known) {
        if (!kernels || (*name && std::strcmp(kernels->name, name) != 0)) continue;
        g_SoftKernels = kernels;
        return true;
    }
    return false;
}

const DeviceTable Device_Soft = {
    .name = "soft",
    .Open = Open,
    .Close = Close,
    .Reset = Reset,
    .Lost = Lost,
    .Caps = Caps,
    .CreateTexture = CreateTexture,
    .FreeTexture = FreeTexture,
    .UpdateTexture = UpdateTexture,
    .ReadPixels = ReadPixels,
    .StretchRect = StretchRect,
    .SetTexture = SetTexture,
    .SetModulate = SetModulate,
    .SetTarget = SetTarget,
    .SetViewport = SetViewport,
    .SetMatrix = SetMatrix,
    .SetRenderState = SetRenderState,
    .SetSamplerState = SetSamplerState,
    .Clear = Clear,
    .CreateBuffer = CreateBuffer,
    .FreeBuffer = FreeBuffer,
    .LockBuffer = LockBuffer,
    .UnlockBuffer = UnlockBuffer,
    .Draw = Draw,
    .DrawUp = DrawUp,
    .BeginScene = BeginScene,
    .EndScene = EndScene,
    .Present = Present,
    .Counts = Counts,
};
