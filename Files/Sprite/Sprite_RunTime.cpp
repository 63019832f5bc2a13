// Sprites made while the game runs: from files, from surfaces, from other sprites.

#include <algorithm>
#include <cstring>

#include "Files/Base/Archive_Records.h"
#include "Files/Graphics/Bitmap.h"
#include "Files/Graphics/Picture_Files.h"
#include "Files/Graphics/Surface.h"
#include "Files/Sprite/CSprite.h"

namespace {

struct Box {
    int32_t left, top, right, bottom;  // both ends inside
};

void Finish(CBitmap32* bitmap, bool removeBackground, bool smoothEdges)
{
    if (removeBackground) Picture_RemoveBackground(bitmap->data, bitmap->width, bitmap->height);
    if (smoothEdges) Picture_SmoothEdges(bitmap->data, bitmap->width, bitmap->height);
}

CBitmap32* CutFrame(const CBitmap32& strip, int32_t left, int32_t width)
{
    auto* frame = VxNew<CBitmap32>(width, strip.height);
    for (int32_t y = 0; y < strip.height; ++y)
        std::memcpy(frame->data + static_cast<ptrdiff_t>(y) * width,
                    strip.data + static_cast<ptrdiff_t>(y) * strip.width + left,
                    static_cast<size_t>(width) * 4);
    return frame;
}

// Marks the pixels above the tolerance, and widens the box to hold them.
void MarkFrame(const uint32_t* pixels, int32_t width, int32_t height, int32_t tolerance,
               uint8_t* mask, Box* box)
{
    for (int32_t y = 0; y < height; ++y)
        for (int32_t x = 0; x < width; ++x) {
            const size_t at =
                static_cast<size_t>(y) * static_cast<size_t>(width) + static_cast<size_t>(x);
            if (static_cast<int32_t>(pixels[at] >> 24) <= tolerance) continue;
            mask[at] = 1;
            *box = {std::min(box->left, x), std::min(box->top, y), std::max(box->right, x),
                    std::max(box->bottom, y)};
        }
}

}  // namespace

void CSprite::MakeMasks(bool separate, int32_t tolerance)
{
    MemoryManager::Free(expandedMasks);
    expandedMasks = nullptr;
    packedMasks = nullptr;
    maskCount = separate ? frameCount : std::min(frameCount, 1);
    sepMasks = separate;
    precise = masksExpanded = maskCount > 0;
    if (maskCount <= 0 || width <= 0 || height <= 0) return;
    const size_t area = static_cast<size_t>(width) * static_cast<size_t>(height);
    expandedMasks =
        static_cast<uint8_t*>(MemoryManager::Alloc(area * static_cast<size_t>(maskCount), true));
    Box box{width, height, -1, -1};
    for (int32_t frame = 0; frame < frameCount; ++frame) {
        uint32_t* pixels = FramePixels(frame);
        if (!pixels) continue;
        uint8_t* mask = expandedMasks + (separate ? area * static_cast<size_t>(frame) : 0);
        MarkFrame(pixels, width, height, tolerance, mask, &box);
        MemoryManager::Free(pixels);
    }
    if (bboxMode == 1 || box.right < 0) box = {0, 0, width - 1, height - 1};
    bboxLeft = box.left;
    bboxTop = box.top;
    bboxRight = box.right;
    bboxBottom = box.bottom;
}

CSprite* Sprite_Copy(const CSprite& from)
{
    auto* copy = VxNew<CSprite>();
    for (int32_t frame = 0; frame < from.frameCount; ++frame) {
        uint32_t* pixels = const_cast<CSprite&>(from).FramePixels(frame);
        if (!pixels) {
            VxDelete(copy);
            return nullptr;
        }
        auto* bitmap = VxNew<CBitmap32>(from.width, from.height);
        std::memcpy(bitmap->data, pixels,
                    static_cast<size_t>(from.width) * static_cast<size_t>(from.height) * 4);
        MemoryManager::Free(pixels);
        copy->AddFrame(bitmap);
    }
    copy->width = from.width;
    copy->height = from.height;
    copy->originX = from.originX;
    copy->originY = from.originY;
    copy->bboxLeft = from.bboxLeft;
    copy->bboxTop = from.bboxTop;
    copy->bboxRight = from.bboxRight;
    copy->bboxBottom = from.bboxBottom;
    copy->bboxMode = from.bboxMode;
    copy->transparent = from.transparent;
    copy->smooth = from.smooth;
    copy->preload = from.preload;
    copy->sepMasks = from.sepMasks;
    copy->precise = from.precise;
    copy->ComputeCullRadius();
    const uint8_t* masks = const_cast<CSprite&>(from).ExpandedMasks();
    if (!masks) return copy;
    const size_t bytes = static_cast<size_t>(from.width) * static_cast<size_t>(from.height) *
                         static_cast<size_t>(from.maskCount);
    copy->maskCount = from.maskCount;
    copy->expandedMasks = static_cast<uint8_t*>(MemoryManager::Alloc(bytes));
    std::memcpy(copy->expandedMasks, masks, bytes);
    copy->masksExpanded = true;
    return copy;
}

CSprite* Sprite_FromFile(const char* path, int32_t frames, bool removeBackground, bool smoothEdges)
{
    CBitmap32* strip = Picture_Load(path);
    if (!strip) return nullptr;
    Finish(strip, removeBackground, smoothEdges);
    auto* sprite = VxNew<CSprite>();
    const int32_t count = std::clamp(frames, 1, strip->width);
    const int32_t width = strip->width / count;
    for (int32_t frame = 0; frame < count; ++frame)
        sprite->AddFrame(CutFrame(*strip, frame * width, width));
    VxDelete(strip);
    sprite->transparent = removeBackground;
    sprite->smooth = smoothEdges;
    return sprite;
}

CSprite* Sprite_FromSurface(int32_t surface, int32_t x, int32_t y, int32_t w, int32_t h,
                            bool removeBackground, bool smoothEdges)
{
    auto* sprite = VxNew<CSprite>();
    sprite->transparent = removeBackground;
    sprite->smooth = smoothEdges;
    uint32_t* pixels = Surface_Grab(surface, x, y, w, h);
    if (!pixels) return sprite;
    auto* bitmap = VxNew<CBitmap32>(w, h);
    std::memcpy(bitmap->data, pixels, static_cast<size_t>(w) * static_cast<size_t>(h) * 4);
    MemoryManager::Free(pixels);
    Finish(bitmap, removeBackground, smoothEdges);
    sprite->AddFrame(bitmap);
    return sprite;
}
