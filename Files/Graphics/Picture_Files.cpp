#include "Files/Graphics/Picture_Files.h"

#include <algorithm>
#include <cstring>

#include "Files/Base/Archive_Records.h"
#include "Files/Base/Console.h"
#include "Files/Graphics/Batch.h"
#include "Files/Graphics/Bitmap.h"
#include "Files/Graphics/TextureSlots.h"
#include "Files/IO/File_Disk.h"
#include "Files/IO/File_Names.h"

namespace {

constexpr uint32_t kColourBits = 0xFFFFFFU;

size_t Count(int32_t width, int32_t height)
{
    return static_cast<size_t>(width) * static_cast<size_t>(height);
}

bool Transparent(const uint32_t* pixels, int32_t width, int32_t height, int32_t x, int32_t y)
{
    return x < 0 || y < 0 || x >= width || y >= height ||
           pixels[static_cast<ptrdiff_t>(y) * width + x] >> 24 == 0;
}

int32_t TransparentNeighbours(const uint32_t* pixels, int32_t width, int32_t height, int32_t x,
                              int32_t y)
{
    int32_t count = 0;
    for (int32_t dy = -1; dy <= 1; ++dy)
        for (int32_t dx = -1; dx <= 1; ++dx)
            count += Transparent(pixels, width, height, x + dx, y + dy) ? 1 : 0;
    return count;
}

bool IsGIF(const uint8_t* bytes, uint32_t size)
{
    return size >= 4 && std::memcmp(bytes, "GIF8", 4) == 0;
}

}  // namespace

uint8_t* Picture_ReadFile(const char* name, uint32_t* size)
{
    return ReadNamedFile(name, size);
}

uint32_t* Picture_OfEntry(const ArchivePageEntry& entry)
{
    const int32_t width = entry.sourceWidth, height = entry.sourceHeight;
    if (width == 0 || height == 0 || entry.targetX + entry.width > width ||
        entry.targetY + entry.height > height)
        return nullptr;
    const DeviceRect area{entry.x, entry.y, entry.x + entry.width, entry.y + entry.height};
    const TextureSlot* slot = Texture_Get(entry.texture);
    if (!slot || area.right > slot->width || area.bottom > slot->height) return nullptr;
    Batch_Flush();
    auto* trimmed = static_cast<uint32_t*>(
        MemoryManager::Alloc(std::max<size_t>(Count(entry.width, entry.height) * 4, 4)));
    uint32_t* pixels = nullptr;
    if (Texture_ReadPixels(entry.texture, area, trimmed)) {
        pixels = static_cast<uint32_t*>(MemoryManager::Alloc(Count(width, height) * 4, true));
        for (int32_t y = 0; y < entry.height; ++y)
            std::memcpy(pixels + static_cast<ptrdiff_t>(entry.targetY + y) * width + entry.targetX,
                        trimmed + static_cast<ptrdiff_t>(y) * entry.width,
                        static_cast<size_t>(entry.width) * 4);
    }
    MemoryManager::Free(trimmed);
    return pixels;
}

CBitmap32* Picture_Load(const char* name)
{
    uint32_t size = 0;
    uint8_t* bytes = Picture_ReadFile(name, &size);
    if (!bytes) {
        g_DebugConsole->Output("Picture file %s was not found\n", name);
        return nullptr;
    }
    CBitmap32* bitmap = nullptr;
    if (IsGIF(bytes, size))
        g_DebugConsole->Output("Picture file %s is a GIF, which is not read: save it as a PNG\n",
                               name);
    else if (!(bitmap = CBitmap32::FromBytes(bytes, size)))
        g_DebugConsole->Output("Picture file %s can't be read: a PNG or JPEG is expected\n", name);
    MemoryManager::Free(bytes);
    return bitmap;
}

bool Picture_Save(const char* name, const uint32_t* pixels, int32_t width, int32_t height)
{
    const MappedPath path(GetSaveFileName, name);
    if (path.Empty() || !pixels || width <= 0 || height <= 0) {
        g_DebugConsole->Output("Picture file %s can't be written\n", name);
        return false;
    }
    const size_t count = Count(width, height);
    auto* swapped = static_cast<uint32_t*>(MemoryManager::Alloc(count * 4));
    for (size_t i = 0; i < count; ++i) {
        const uint32_t pixel = pixels[i];
        swapped[i] = (pixel & 0xFF00FF00U) | (pixel & 0xFFU) << 16 | (pixel >> 16 & 0xFFU);
    }
    // The empty file first: it is the user's alone, and stays so.
    const bool written = WriteSaveFile(name, "", 0) &&
                         WritePNG(path, reinterpret_cast<const uint8_t*>(swapped), width, height);
    MemoryManager::Free(swapped);
    return written;
}

void Picture_RemoveBackground(uint32_t* pixels, int32_t width, int32_t height)
{
    const uint32_t key = pixels[static_cast<ptrdiff_t>(height - 1) * width] & kColourBits;
    for (size_t i = 0; i < Count(width, height); ++i)
        if ((pixels[i] & kColourBits) == key) pixels[i] = key;
}

void Picture_SmoothEdges(uint32_t* pixels, int32_t width, int32_t height)
{
    constexpr uint32_t kNeighbours = 9;
    VxVector<uint32_t> before(pixels, pixels + Count(width, height));
    for (int32_t y = 0; y < height; ++y)
        for (int32_t x = 0; x < width; ++x) {
            uint32_t& pixel = pixels[static_cast<ptrdiff_t>(y) * width + x];
            const auto open =
                static_cast<uint32_t>(TransparentNeighbours(before.data(), width, height, x, y));
            const uint32_t alpha = (pixel >> 24) * (kNeighbours - open) / kNeighbours;
            pixel = (pixel & kColourBits) | alpha << 24;
        }
}
