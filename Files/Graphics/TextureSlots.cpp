#include "Files/Graphics/TextureSlots.h"

#include <cstring>

#include "Files/Base/Console.h"
#include "Files/Graphics/Batch.h"
#include "Files/Graphics/Bitmap.h"
#include "Files/Graphics/Page_Decoder.h"
#include "Files/Graphics/Surface.h"
#include "Platform/MemoryManager.h"

bool g_TexturesOnDemand, g_CompressTextures;
int32_t g_TextureGlobalScale = 1;

namespace {

constexpr int32_t kSizeLimit = 8192;  // of a device that names none
constexpr size_t kShadowAlignment = 16;
constexpr uint32_t kWhite = 0xFFFFFFU;

VxVector<TextureSlot*> s_slots;
GpuTexture* s_textures;  // all records, newest first
GpuTexture* s_white;
int32_t s_decodes;
DeviceTexture* s_bound[kDeviceStages];
// A second texture for a target that is drawn onto itself.
DeviceTexture* s_selfCopy;
int32_t s_selfCopyWidth, s_selfCopyHeight;

GpuTexture* NewRecord(int32_t width, int32_t height, int32_t format, uint32_t flags)
{
    auto* texture = VxNew<GpuTexture>();
    *texture = GpuTexture{};
    texture->format = format;
    texture->width = width;
    texture->height = height;
    texture->levels = 1;
    texture->flags = flags;
    texture->next = s_textures;
    s_textures = texture;
    return texture;
}

void ReleaseDevice(GpuTexture* texture)
{
    Batch_ForgetTexture(texture);
    if (!texture->deviceTexture) return;
    for (int32_t stage = 0; stage < kDeviceStages; ++stage) {
        if (s_bound[stage] != texture->deviceTexture) continue;
        s_bound[stage] = nullptr;
        if (g_Device) g_Device->SetTexture(stage, nullptr);
    }
    if (g_Device) g_Device->FreeTexture(texture->deviceTexture);
    texture->deviceTexture = texture->colourSurface = texture->depthSurface = nullptr;
}

void FreeRecord(GpuTexture* texture)
{
    if (!texture) return;
    ReleaseDevice(texture);
    GpuTexture** link = &s_textures;
    while (*link != texture) link = &(*link)->next;
    *link = texture->next;
    MemoryManager::Free(texture->shadowRaw);
    int32_t width, height;  // of a page that nobody will need
    if (texture->sourceData)
        MemoryManager::Free(PageDecoder_Take(texture->sourceData, &width, &height));
    VxDelete(texture);
}

int32_t PowerOfTwo(int32_t size, int32_t limit)
{
    int32_t power = 1;
    while (power < size && power < limit) power *= 2;
    return power;
}

int32_t StoredSize(int32_t size, bool exact)
{
    if (exact || g_TexturesOnDemand) return size;
    const int32_t most = g_Device ? g_Device->Caps().maxTextureSize : 0;
    return PowerOfTwo(size, most > 0 ? most : kSizeLimit);
}

DeviceTexture* MakeDevice(const GpuTexture& texture, bool target, bool depth)
{
    DeviceTexture* made =
        g_Device ? g_Device->CreateTexture(texture.width, texture.height,
                                           static_cast<DeviceFormat>(texture.format), target, depth)
                 : nullptr;
    if (!made) g_DebugConsole->Output("CreateTexture failed - %08x\n", 0U);
    return made;
}

// The format of pictures that come encoded.
DeviceFormat SourceFormat(const uint8_t* data, uint32_t size)
{
    return g_CompressTextures && TextureSource_Compresses(data, size) ? DeviceFormat::Dxt5
                                                                      : DeviceFormat::Argb8888;
}

// Writes the pixels into the top left of the texture.
bool Upload(GpuTexture* texture, int32_t width, int32_t height, const uint32_t* pixels)
{
    if (!texture->deviceTexture) texture->deviceTexture = MakeDevice(*texture, false, false);
    if (!texture->deviceTexture) return false;
    const DeviceRect area{0, 0, width < texture->width ? width : texture->width,
                          height < texture->height ? height : texture->height};
    return g_Device->UpdateTexture(texture->deviceTexture, area, pixels, width * 4);
}

void KeepShadow(GpuTexture* texture, int32_t width, int32_t height, const uint32_t* pixels)
{
    const size_t bytes = static_cast<size_t>(texture->width) * texture->height * 4;
    texture->shadowRaw = MemoryManager::Alloc(bytes + kShadowAlignment, true);
    const auto address = reinterpret_cast<uintptr_t>(texture->shadowRaw);
    texture->shadow = reinterpret_cast<uint32_t*>((address + kShadowAlignment - 1) &
                                                  ~static_cast<uintptr_t>(kShadowAlignment - 1));
    const int32_t columns = width < texture->width ? width : texture->width;
    for (int32_t y = 0; y < height && y < texture->height; ++y)
        std::memcpy(texture->shadow + static_cast<ptrdiff_t>(y) * texture->width,
                    pixels + static_cast<ptrdiff_t>(y) * width, static_cast<size_t>(columns) * 4);
}

void SetSlotSize(TextureSlot* slot, int32_t width, int32_t height)
{
    slot->width = static_cast<int16_t>(width);
    slot->height = static_cast<int16_t>(height);
    slot->invWidth = slot->invHeight = 1.0F;
    if (!slot->texture) return;
    slot->invWidth = 1.0F / static_cast<float>(slot->texture->width);
    slot->invHeight = 1.0F / static_cast<float>(slot->texture->height);
}

// The picture of a record that keeps its pixels or its source, in full size: a block for
// the caller to free, or null.
uint32_t* KeptPixels(const GpuTexture& texture, int32_t* width, int32_t* height)
{
    if (!texture.shadow) {
        if (uint8_t* ready = PageDecoder_Take(texture.sourceData, width, height))
            return reinterpret_cast<uint32_t*>(ready);
        ++s_decodes;
        return TextureSource_Decode(texture.sourceData, texture.sourceSize, width, height);
    }
    *width = texture.width;
    *height = texture.height;
    const size_t bytes = static_cast<size_t>(texture.width) * texture.height * 4;
    auto* pixels = static_cast<uint32_t*>(MemoryManager::Alloc(bytes));
    std::memcpy(pixels, texture.shadow, bytes);
    return pixels;
}

// A texture of that size with those pixels for a record that is stored larger or alike.
bool UploadScaled(GpuTexture* texture, int32_t width, int32_t height, const uint32_t* pixels)
{
    const int32_t storedWidth = texture->width, storedHeight = texture->height;
    texture->width = width;
    texture->height = height;
    const bool made = Upload(texture, width, height, pixels);
    texture->width = storedWidth;
    texture->height = storedHeight;
    texture->flags &= ~static_cast<uint32_t>(TEXTURE_SCALED);
    if (width != storedWidth || height != storedHeight) texture->flags |= TEXTURE_SCALED;
    return made;
}

// The device's texture of a record that has lost or never had one.
bool MakeAnew(GpuTexture* texture)
{
    if (texture->flags & TEXTURE_FAILED) return false;
    const bool scales = g_TexturesOnDemand && g_TextureGlobalScale > 1;
    if (texture->shadow && !scales)
        return UploadScaled(texture, texture->width, texture->height, texture->shadow);
    int32_t width = 0, height = 0;
    uint32_t* pixels = KeptPixels(*texture, &width, &height);
    if (pixels && scales) Picture_ScaleDown(reinterpret_cast<uint8_t*>(pixels), &width, &height);
    const bool made = pixels && UploadScaled(texture, width, height, pixels);
    MemoryManager::Free(pixels);
    if (made) return true;
    g_DebugConsole->Output("SetupD3DTexture failed - %08x\n", 0U);
    texture->flags |= TEXTURE_FAILED;
    return false;
}

// Whether the device holds less than the record's own picture.
bool DeviceHasLess(const GpuTexture& texture)
{
    return (texture.flags & TEXTURE_SCALED) ||
           texture.format == static_cast<int32_t>(DeviceFormat::Dxt5);
}

// An area of the picture that the record keeps.
bool ReadKept(const GpuTexture& texture, const DeviceRect& area, uint32_t* pixels)
{
    int32_t width = 0, height = 0;
    uint32_t* kept = KeptPixels(texture, &width, &height);
    const bool inside = kept && area.right <= width && area.bottom <= height;
    const auto columns = static_cast<size_t>(area.right - area.left);
    for (int32_t y = area.top; inside && y < area.bottom; ++y, pixels += columns)
        std::memcpy(pixels, kept + static_cast<ptrdiff_t>(y) * width + area.left, columns * 4);
    MemoryManager::Free(kept);
    return inside;
}

// The picture of a target that is being drawn onto itself, as it was before.
DeviceTexture* CopyOfTarget(const GpuTexture& texture)
{
    if (s_selfCopyWidth != texture.width || s_selfCopyHeight != texture.height) {
        if (s_selfCopy) g_Device->FreeTexture(s_selfCopy);
        s_selfCopy = g_Device->CreateTexture(texture.width, texture.height, DeviceFormat::Argb8888,
                                             true, false);
        s_selfCopyWidth = s_selfCopy ? texture.width : 0;
        s_selfCopyHeight = s_selfCopy ? texture.height : 0;
    }
    if (!s_selfCopy) return nullptr;
    const DeviceRect whole{0, 0, texture.width, texture.height};
    g_Device->StretchRect(texture.colourSurface, whole, s_selfCopy, whole, false);
    return s_selfCopy;
}

}  // namespace

void Texture_Init()
{
    for (DeviceTexture*& bound : s_bound) bound = nullptr;
    s_decodes = 0;
    constexpr uint32_t pixel = 0xFF000000U | kWhite;
    s_white = NewRecord(1, 1, static_cast<int32_t>(DeviceFormat::Argb8888), TEXTURE_POOL);
    KeepShadow(s_white, 1, 1, &pixel);
    Upload(s_white, 1, 1, &pixel);
}

void Texture_FreeAll()
{
    for (TextureSlot* slot : s_slots) {
        FreeRecord(slot->texture);
        VxDelete(slot);
    }
    VxVector<TextureSlot*>().swap(s_slots);
}

void Texture_Quit()
{
    PageDecoder_Stop();
    Texture_FreeAll();
    FreeRecord(s_white);
    s_white = nullptr;
    if (s_selfCopy && g_Device) g_Device->FreeTexture(s_selfCopy);
    s_selfCopy = nullptr;
    s_selfCopyWidth = s_selfCopyHeight = 0;
    g_TexturesOnDemand = g_CompressTextures = false;
    g_TextureGlobalScale = 1;
    Bitmap_Quit();
}

int32_t TextureSlot_Find()
{
    size_t index = 0;
    while (index < s_slots.size() && s_slots[index]->inUse) ++index;
    if (index == s_slots.size()) s_slots.push_back(VxNew<TextureSlot>());
    *s_slots[index] = TextureSlot{nullptr, 0, 0, 1.0F, 1.0F, true};
    return static_cast<int32_t>(index);
}

int32_t Texture_CreateFromFile(const uint8_t* data, uint32_t size)
{
    const int32_t index = TextureSlot_Find();
    int32_t width = 0, height = 0;
    if (!TextureSource_Header(data, size, &width, &height)) return index;
    GpuTexture* texture =
        NewRecord(width, height, static_cast<int32_t>(SourceFormat(data, size)), TEXTURE_POOL);
    texture->sourceData = data;
    texture->sourceSize = size;
    s_slots[index]->texture = texture;
    SetSlotSize(s_slots[index], width, height);
    return index;
}

int32_t Texture_CreateEmpty(int32_t width, int32_t height, bool renderTarget, bool depth,
                            int32_t format)
{
    if (width < 1 || height < 1 || width > kMaxPictureSize || height > kMaxPictureSize) return -1;
    const int32_t stored = format > 0 ? format : static_cast<int32_t>(DeviceFormat::Argb8888);
    GpuTexture* texture =
        NewRecord(StoredSize(width, renderTarget), StoredSize(height, renderTarget), stored,
                  TEXTURE_POOL | (renderTarget ? TEXTURE_TARGET : 0U));
    texture->deviceTexture = MakeDevice(*texture, renderTarget, depth);
    if (!texture->deviceTexture) {
        FreeRecord(texture);
        return -1;
    }
    if (renderTarget) texture->colourSurface = texture->deviceTexture;
    if (depth) texture->depthSurface = texture->deviceTexture;
    const int32_t index = TextureSlot_Find();
    s_slots[index]->texture = texture;
    SetSlotSize(s_slots[index], width, height);
    return index;
}

int32_t Texture_CreateFromPixels(int32_t width, int32_t height, const void* pixels, uint32_t size)
{
    const bool plain = width > 0 && height > 0 && width <= kMaxPictureSize &&
                       height <= kMaxPictureSize &&
                       size == static_cast<uint64_t>(width) * static_cast<uint64_t>(height) * 4;
    if (!plain) return Texture_CreateFromFile(static_cast<const uint8_t*>(pixels), size);
    const int32_t index = TextureSlot_Find();
    TextureSlot* slot = s_slots[index];
    slot->texture = NewRecord(StoredSize(width, false), StoredSize(height, false),
                              static_cast<int32_t>(DeviceFormat::Argb8888), TEXTURE_POOL);
    const auto* words = static_cast<const uint32_t*>(pixels);
    if (g_TexturesOnDemand) {
        KeepShadow(slot->texture, width, height, words);
    } else if (!Upload(slot->texture, width, height, words)) {
        FreeRecord(slot->texture);
        slot->texture = nullptr;
    }
    SetSlotSize(slot, width, height);
    return index;
}

int32_t Texture_CreateAlpha(int32_t width, int32_t height, const uint8_t* bytes)
{
    if (width < 1 || height < 1 || width > kMaxPictureSize || height > kMaxPictureSize) return -1;
    const size_t count = static_cast<size_t>(width) * static_cast<size_t>(height);
    auto* pixels = static_cast<uint32_t*>(MemoryManager::Alloc(count * 4));
    for (size_t i = 0; i < count; ++i) pixels[i] = static_cast<uint32_t>(bytes[i]) << 24 | kWhite;
    const int32_t index =
        Texture_CreateFromPixels(width, height, pixels, static_cast<uint32_t>(count * 4));
    MemoryManager::Free(pixels);
    if (s_slots[index]->texture) return index;
    Texture_Free(index);
    return -1;
}

bool Texture_Update(int32_t index, const DeviceRect& area, const uint32_t* pixels)
{
    const TextureSlot* slot = Texture_Get(index);
    if (!slot || !slot->texture) return false;
    GpuTexture* texture = slot->texture;
    const int32_t width = area.right - area.left;
    if (texture->shadow)
        for (int32_t y = area.top; y < area.bottom; ++y)
            std::memcpy(texture->shadow + static_cast<ptrdiff_t>(y) * texture->width + area.left,
                        pixels + static_cast<ptrdiff_t>(y - area.top) * width,
                        static_cast<size_t>(width) * 4);
    if (texture->shadow && (texture->flags & TEXTURE_SCALED)) ReleaseDevice(texture);
    if (!texture->deviceTexture) return texture->shadow != nullptr;
    return g_Device->UpdateTexture(texture->deviceTexture, area, pixels, width * 4);
}

void Texture_Free(int32_t index)
{
    TextureSlot* slot = Texture_Get(index);
    if (!slot) return;
    if (Surface_IsSavedTarget(index)) {
        g_DebugConsole->Output(
            "Cannot free this surface - call surface_reset_target before calling surface_free\n");
        return;
    }
    if (slot->texture) {
        Batch_ForgetTexture(slot->texture);
        Surface_TakeOffTargets(index);
        FreeRecord(slot->texture);
    }
    *slot = TextureSlot{nullptr, 0, 0, 1.0F, 1.0F, false};
}

bool Texture_Exists(int32_t index)
{
    return Texture_Get(index) != nullptr;
}

TextureSlot* Texture_Get(int32_t index)
{
    if (static_cast<size_t>(static_cast<uint32_t>(index)) >= s_slots.size()) return nullptr;
    TextureSlot* slot = s_slots[static_cast<size_t>(index)];
    return slot->inUse ? slot : nullptr;
}

int32_t Texture_Count()
{
    return static_cast<int32_t>(s_slots.size());
}

int32_t Texture_Decodes()
{
    return s_decodes;
}

bool Texture_Bind(int32_t stage, GpuTexture* texture)
{
    DeviceTexture* device = nullptr;
    if (texture) {
        if (!texture->deviceTexture && !MakeAnew(texture)) return false;
        device = texture->deviceTexture;
        if (Surface_IsTargeted(texture)) device = CopyOfTarget(*texture);
        if (!device) return false;
    }
    if (s_bound[stage] != device) ++g_GraphicsStats.textureSwaps;
    s_bound[stage] = device;
    g_Device->SetTexture(stage, device);
    return true;
}

void Texture_ReleaseAll()
{
    if (!g_TexturesOnDemand) return;
    for (GpuTexture* texture = s_textures; texture; texture = texture->next)
        if (texture->shadow || texture->sourceData) ReleaseDevice(texture);
}

GpuTexture* Texture_White()
{
    return s_white;
}

bool Texture_ReadPixels(int32_t index, const DeviceRect& area, uint32_t* pixels)
{
    const TextureSlot* slot = Texture_Get(index);
    if (!slot || !slot->texture || !g_Device) return false;
    if (!slot->texture->deviceTexture && !MakeAnew(slot->texture)) return false;
    if (DeviceHasLess(*slot->texture)) return ReadKept(*slot->texture, area, pixels);
    return g_Device->ReadPixels(slot->texture->deviceTexture, area, pixels,
                                (area.right - area.left) * 4);
}
