// Drawing of sprites, and their frames.

#include "Files/Sprite/CSprite.h"

#include <algorithm>
#include <cmath>
#include <cstring>

#include "Files/Base/Archive_Records.h"
#include "Files/Base/Console.h"
#include "Files/Graphics/Bitmap.h"
#include "Files/Graphics/Draw_Room.h"
#include "Files/Graphics/Picture_Files.h"
#include "Files/Graphics/Quad.h"
#include "Files/Graphics/TextureSlots.h"

namespace {

constexpr float kDegree = 3.1415927F / 180.0F;
constexpr uint32_t kWhite = 0xFFFFFFU;

void Report(const CSprite& sprite, bool drawn)
{
    if (!drawn) g_DebugConsole->Output("Error attempting to draw sprite %s\n", sprite.name);
}

// One entry more, at the end of a block of `count`.
template <class T>
void Append(T** block, int32_t count, T value)
{
    MemoryManager::SetLength(block, static_cast<size_t>(count + 1) * sizeof(T));
    (*block)[count] = value;
}

}  // namespace

CSprite::~CSprite()
{
    FreeFrames();
    MemoryManager::Free(expandedMasks);
    if (nameOwned) MemoryManager::Free(const_cast<char*>(name));
}

void CSprite::FreeFrames()
{
    for (int32_t frame = 0; frame < frameCount; ++frame) {
        if (entries && entriesOwned) MemoryManager::Free(entries[frame]);
        if (textures) Texture_Free(textures[frame]);
        if (bitmaps) VxDelete(bitmaps[frame]);
    }
    MemoryManager::Free(entries);
    MemoryManager::Free(textures);
    MemoryManager::Free(bitmaps);
    entries = nullptr;
    textures = nullptr;
    bitmaps = nullptr;
    frameCount = 0;
}

void CSprite::AddFrame(CBitmap32* bitmap)
{
    Append(&bitmaps, frameCount, bitmap);
    Append(&textures, frameCount, int32_t{-1});
    if (frameCount++ > 0) return;
    width = bitmap->width;
    height = bitmap->height;
    bboxLeft = bboxTop = 0;
    bboxRight = width - 1;
    bboxBottom = height - 1;
    ComputeCullRadius();
}

void CSprite::ComputeCullRadius()
{
    cullRadius = 0;
    for (const int32_t cornerX : {0, width})
        for (const int32_t cornerY : {0, height}) {
            const double distance = std::hypot(static_cast<double>(cornerX) - originX,
                                               static_cast<double>(cornerY) - originY);
            cullRadius = std::max(cullRadius, static_cast<int32_t>(std::ceil(distance)));
        }
}

int32_t CSprite::Frame(int32_t subimage) const
{
    if (frameCount <= 0) return -1;
    const int32_t frame = subimage % frameCount;
    return frame < 0 ? frame + frameCount : frame;
}

ArchivePageEntry* CSprite::Entry(int32_t frame) const
{
    return entries && frame >= 0 && frame < frameCount ? entries[frame] : nullptr;
}

int32_t CSprite::Texture(int32_t frame)
{
    if (!textures || frame < 0 || frame >= frameCount) return -1;
    const CBitmap32* bitmap = bitmaps ? bitmaps[frame] : nullptr;
    if (textures[frame] < 0 && bitmap)
        textures[frame] = Texture_CreateFromPixels(
            bitmap->width, bitmap->height, bitmap->data,
            static_cast<uint32_t>(bitmap->width) * static_cast<uint32_t>(bitmap->height) * 4);
    return textures[frame];
}

uint32_t* CSprite::FramePixels(int32_t frame)
{
    if (frame < 0 || frame >= frameCount || width <= 0 || height <= 0) return nullptr;
    if (const ArchivePageEntry* entry = Entry(frame)) {
        const bool whole = entry->sourceWidth == width && entry->sourceHeight == height;
        return whole ? Picture_OfEntry(*entry) : nullptr;
    }
    const CBitmap32* bitmap = bitmaps ? bitmaps[frame] : nullptr;
    if (!bitmap) return nullptr;
    const size_t count = static_cast<size_t>(width) * static_cast<size_t>(height);
    auto* pixels = static_cast<uint32_t*>(MemoryManager::Alloc(count * 4, true));
    const size_t columns = static_cast<size_t>(std::min(width, bitmap->width));
    for (int32_t y = 0; y < std::min(height, bitmap->height); ++y)
        std::memcpy(pixels + static_cast<ptrdiff_t>(y) * width,
                    bitmap->data + static_cast<ptrdiff_t>(y) * bitmap->width, columns * 4);
    return pixels;
}

void CSprite::Draw(int32_t subimage, float x, float y)
{
    const int32_t frame = Frame(subimage);
    if (frame < 0 || !View_Meets(x, y, static_cast<float>(cullRadius))) return;
    const float left = x - static_cast<float>(originX), top = y - static_cast<float>(originY);
    Report(*this, entries ? Quad_Entry(entries[frame], left, top)
                          : Quad_Texture(Texture(frame), left, top));
}

void CSprite::DrawExt(int32_t subimage, float x, float y, float xscale, float yscale, float angle,
                      uint32_t colour, float alpha)
{
    const int32_t frame = Frame(subimage);
    const auto radius = static_cast<float>(cullRadius);
    if (frame < 0 ||
        !View_Meets(x, y, std::max(std::fabs(radius * xscale), std::fabs(radius * yscale))))
        return;
    const auto xorigin = static_cast<float>(originX), yorigin = static_cast<float>(originY);
    const float turn = angle * kDegree;
    Report(*this, entries ? Quad_EntryExt(entries[frame], xorigin, yorigin, x, y, xscale, yscale,
                                          turn, colour, alpha)
                          : Quad_TextureExt(Texture(frame), xorigin, yorigin, x, y, xscale, yscale,
                                            turn, colour, alpha));
}

void CSprite::DrawPart(int32_t subimage, float left, float top, float partWidth, float partHeight,
                       float x, float y, float xscale, float yscale, uint32_t colour, float alpha)
{
    const int32_t frame = Frame(subimage);
    if (frame < 0) return;
    Report(*this, entries ? Quad_EntryPart(entries[frame], left, top, partWidth, partHeight, x, y,
                                           xscale, yscale, 0, colour, alpha)
                          : Quad_TexturePart(Texture(frame), left, top, partWidth, partHeight, x, y,
                                             xscale, yscale, 0, colour, alpha));
}

void CSprite::DrawStretched(int32_t subimage, float x, float y, float toWidth, float toHeight,
                            uint32_t colour, float alpha)
{
    const int32_t frame = Frame(subimage);
    if (frame < 0 || width <= 0 || height <= 0 || !(toWidth > 0) || !(toHeight > 0)) return;
    const float xscale = toWidth / static_cast<float>(width);
    const float yscale = toHeight / static_cast<float>(height);
    Report(*this,
           entries ? Quad_EntryExt(entries[frame], 0, 0, x, y, xscale, yscale, 0, colour, alpha)
                   : Quad_TextureExt(Texture(frame), 0, 0, x, y, xscale, yscale, 0, colour, alpha));
}

void CSprite::DrawTiled(int32_t subimage, float x, float y, float xscale, float yscale, bool htile,
                        bool vtile, uint32_t colour, float alpha)
{
    const int32_t frame = Frame(subimage);
    if (frame < 0) return;
    const auto xorigin = static_cast<float>(originX), yorigin = static_cast<float>(originY);
    Report(*this, entries ? Quad_EntryTiled(entries[frame], xorigin, yorigin, x, y, xscale, yscale,
                                            htile, vtile, colour, alpha)
                          : Quad_TextureTiled(Texture(frame), xorigin, yorigin, x, y, xscale,
                                              yscale, htile, vtile, colour, alpha));
}

void CSprite::DrawGeneral(int32_t subimage, float left, float top, float partWidth,
                          float partHeight, float x, float y, float xscale, float yscale,
                          float angle, const uint32_t colours[4], float alpha)
{
    const int32_t frame = Frame(subimage);
    if (frame < 0) return;
    const float turn = angle * kDegree;
    Report(*this, entries ? Quad_EntryGeneral(entries[frame], left, top, partWidth, partHeight, x,
                                              y, xscale, yscale, turn, colours, alpha)
                          : Quad_TextureGeneral(Texture(frame), left, top, partWidth, partHeight, x,
                                                y, xscale, yscale, turn, colours, alpha));
}

void CSprite::DrawPos(int32_t subimage, const float corners[8], float alpha)
{
    const int32_t frame = Frame(subimage);
    if (frame < 0 || !entries) return;
    Report(*this, Quad_EntryCorners(entries[frame], corners, kWhite, alpha));
}
