// Sprites by number: what they hold, and making and changing them while the game runs.

#include <algorithm>
#include <cstring>

#include "Files/Base/Archive_Records.h"
#include "Files/Base/Error.h"
#include "Files/Function/Function_Registry.h"
#include "Files/Function/Function_Resource.h"
#include "Files/Graphics/Bitmap.h"
#include "Files/Graphics/Picture_Files.h"
#include "Files/Graphics/TextureSlots.h"
#include "Files/Sprite/CSprite.h"

namespace {

CSprite* SpriteArgument(const RValue* args, int argc, int i = 0)
{
    return Sprite_Data(ArgInt(args, argc, i, -1));
}

// A number of a sprite; -1 for none.
template <auto Member>
void GetField(RValue& result, CInstance*, CInstance*, int argc, RValue* args)
{
    const CSprite* sprite = SpriteArgument(args, argc);
    SetReal(result, sprite ? sprite->*Member : -1);
}

void SetOrigin(CSprite* sprite, int32_t x, int32_t y)
{
    sprite->originX = x;
    sprite->originY = y;
    sprite->ComputeCullRadius();
}

// file, frames, remove background, smooth edges, origin x, origin y; `first` is the file
CSprite* FromFile(const RValue* args, int argc, int first)
{
    CSprite* sprite =
        Sprite_FromFile(ArgText(args, argc, first), ArgInt(args, argc, first + 1, 1),
                        ArgBool(args, argc, first + 2), ArgBool(args, argc, first + 3));
    if (sprite) SetOrigin(sprite, ArgInt(args, argc, first + 4), ArgInt(args, argc, first + 5));
    return sprite;
}

// Frames of `from` behind those of `to`, cut or filled to its size.
void AppendFrames(CSprite* to, CSprite* from)
{
    for (int32_t frame = 0; frame < from->frameCount; ++frame) {
        uint32_t* pixels = from->FramePixels(frame);
        if (!pixels) continue;
        const int32_t width = to->frameCount > 0 ? to->width : from->width;
        const int32_t height = to->frameCount > 0 ? to->height : from->height;
        auto* bitmap = VxNew<CBitmap32>(width, height);
        const auto columns = static_cast<size_t>(std::min(width, from->width));
        for (int32_t y = 0; y < std::min(height, from->height); ++y)
            std::memcpy(bitmap->data + static_cast<ptrdiff_t>(y) * width,
                        pixels + static_cast<ptrdiff_t>(y) * from->width, columns * 4);
        MemoryManager::Free(pixels);
        to->AddFrame(bitmap);
    }
}

// A sprite whose frames can be changed, in the place of one of the archive; null
// after a report when there is none.
CSprite* Changeable(int32_t index)
{
    CSprite* sprite = Sprite_Data(index);
    if (!sprite || !sprite->entries) return sprite;
    CSprite* copy = Sprite_Copy(*sprite);
    if (copy) Sprite_Replace(index, copy);
    return copy;
}

}  // namespace

BUILTIN(sprite_exists)
{
    SetBool(result, SpriteArgument(args, argc) != nullptr);
}

BUILTIN(sprite_get_name)
{
    VXCreateString(&result, Sprite_Name(ArgInt(args, argc, 0, -1)));
}

// sprite, subimage
BUILTIN(sprite_get_texture)
{
    SetReal(result, -1);
    CSprite* sprite = SpriteArgument(args, argc);
    const int32_t frame = sprite ? sprite->Frame(ArgInt(args, argc, 1)) : -1;
    if (frame < 0) return;
    const ArchivePageEntry* entry = sprite->Entry(frame);
    SetReal(result, entry ? entry->texture : sprite->Texture(frame));
}

// sprite, subimage: left, top, right, bottom, trimmed left and top, kept share of width and height
BUILTIN(sprite_get_uvs)
{
    CSprite* sprite = SpriteArgument(args, argc);
    const int32_t frame = sprite ? sprite->Frame(ArgInt(args, argc, 1)) : -1;
    double uvs[8] = {0, 0, 1, 1, 0, 0, 1, 1};
    if (const ArchivePageEntry* entry = frame >= 0 ? sprite->Entry(frame) : nullptr) {
        const TextureSlot* slot = Texture_Get(entry->texture);
        const double u = slot ? slot->invWidth : 1.0, v = slot ? slot->invHeight : 1.0;
        uvs[0] = entry->x * u;
        uvs[1] = entry->y * v;
        uvs[2] = (entry->x + entry->width) * u;
        uvs[3] = (entry->y + entry->height) * v;
        uvs[4] = entry->targetX;
        uvs[5] = entry->targetY;
        uvs[6] = entry->sourceWidth ? entry->width / static_cast<double>(entry->sourceWidth) : 1;
        uvs[7] = entry->sourceHeight ? entry->height / static_cast<double>(entry->sourceHeight) : 1;
    }
    Resource_SetArray(result, uvs, 8);
}

// sprite, x, y
BUILTIN(sprite_set_offset)
{
    if (CSprite* sprite = SpriteArgument(args, argc))
        SetOrigin(sprite, ArgInt(args, argc, 1), ArgInt(args, argc, 2));
}

BUILTIN(sprite_set_bbox_mode)
{
    if (CSprite* sprite = SpriteArgument(args, argc)) sprite->bboxMode = ArgInt(args, argc, 1);
}

// sprite, left, top, right, bottom
BUILTIN(sprite_set_bbox)
{
    CSprite* sprite = SpriteArgument(args, argc);
    if (!sprite) return;
    sprite->bboxLeft = ArgInt(args, argc, 1);
    sprite->bboxTop = ArgInt(args, argc, 2);
    sprite->bboxRight = ArgInt(args, argc, 3);
    sprite->bboxBottom = ArgInt(args, argc, 4);
}

// sprite, a mask for each frame, box mode, left, top, right, bottom, kind (0 precise, else the
// box), tolerance
BUILTIN(sprite_collision_mask)
{
    CSprite* sprite = SpriteArgument(args, argc);
    if (!sprite) return;
    sprite->bboxMode = ArgInt(args, argc, 2);
    sprite->MakeMasks(ArgBool(args, argc, 1), ArgInt(args, argc, 8));
    if (sprite->bboxMode == 2) {
        sprite->bboxLeft = ArgInt(args, argc, 3);
        sprite->bboxTop = ArgInt(args, argc, 4);
        sprite->bboxRight = ArgInt(args, argc, 5);
        sprite->bboxBottom = ArgInt(args, argc, 6);
    }
    sprite->precise = ArgInt(args, argc, 7) == 0 && sprite->maskCount > 0;
}

// file, frames, remove background, smooth edges, origin x, origin y; -1 on failure
BUILTIN(sprite_add)
{
    CSprite* sprite = FromFile(args, argc, 0);
    const int32_t index = sprite ? Sprite_Add(sprite) : -1;
    Sprite_NameNew(index);
    SetReal(result, index);
}

// sprite, and the arguments of sprite_add
BUILTIN(sprite_replace)
{
    SetBool(result, false);
    const int32_t index = ArgInt(args, argc, 0, -1);
    if (!Sprite_Exists(index)) return;
    CSprite* sprite = FromFile(args, argc, 1);
    if (sprite) Sprite_Replace(index, sprite);
    SetBool(result, sprite != nullptr);
}

BUILTIN(sprite_delete)
{
    SetBool(result, Sprite_Delete(ArgInt(args, argc, 0, -1)));
}

BUILTIN(sprite_duplicate)
{
    const CSprite* sprite = SpriteArgument(args, argc);
    CSprite* copy = sprite ? Sprite_Copy(*sprite) : nullptr;
    const int32_t index = copy ? Sprite_Add(copy) : -1;
    Sprite_NameNew(index);
    SetReal(result, index);
}

// sprite, the one that it becomes a copy of
BUILTIN(sprite_assign)
{
    const int32_t index = ArgInt(args, argc, 0, -1);
    const CSprite* source = SpriteArgument(args, argc, 1);
    CSprite* copy = source && Sprite_Exists(index) ? Sprite_Copy(*source) : nullptr;
    if (copy) Sprite_Replace(index, copy);
}

// sprite, the one whose frames it takes over behind its own
BUILTIN(sprite_merge)
{
    CSprite* from = SpriteArgument(args, argc, 1);
    CSprite* to = from ? Changeable(ArgInt(args, argc, 0, -1)) : nullptr;
    from = SpriteArgument(args, argc, 1);
    if (to && from && to != from) AppendFrames(to, from);
}

// sprite, the one whose first frame's brightness becomes the alpha
BUILTIN(sprite_set_alpha_from_sprite)
{
    CSprite* from = SpriteArgument(args, argc, 1);
    uint32_t* alpha = from ? from->FramePixels(0) : nullptr;
    CSprite* to = alpha ? Changeable(ArgInt(args, argc, 0, -1)) : nullptr;
    for (int32_t frame = 0; to && to->bitmaps && frame < to->frameCount; ++frame) {
        CBitmap32& bitmap = *to->bitmaps[frame];
        for (int32_t y = 0; y < std::min(bitmap.height, from->height); ++y)
            for (int32_t x = 0; x < std::min(bitmap.width, from->width); ++x) {
                const uint32_t p = alpha[static_cast<ptrdiff_t>(y) * from->width + x];
                const uint32_t value = std::max({p & 0xFFU, p >> 8 & 0xFFU, p >> 16 & 0xFFU});
                uint32_t& pixel = bitmap.data[static_cast<ptrdiff_t>(y) * bitmap.width + x];
                pixel = (pixel & 0xFFFFFFU) | value << 24;
            }
        Texture_Free(to->textures[frame]);
        to->textures[frame] = -1;
    }
    MemoryManager::Free(alpha);
}

// sprite, subimage, file
BUILTIN(sprite_save)
{
    CSprite* sprite = SpriteArgument(args, argc);
    if (!sprite) return;
    uint32_t* pixels = sprite->FramePixels(sprite->Frame(ArgInt(args, argc, 1)));
    if (pixels) Picture_Save(ArgText(args, argc, 2), pixels, sprite->width, sprite->height);
    MemoryManager::Free(pixels);
}

// sprite, file: all frames side by side
BUILTIN(sprite_save_strip)
{
    CSprite* sprite = SpriteArgument(args, argc);
    if (!sprite || sprite->frameCount <= 0 || sprite->width <= 0 || sprite->height <= 0) return;
    CBitmap32 strip(sprite->width * sprite->frameCount, sprite->height);
    for (int32_t frame = 0; frame < sprite->frameCount; ++frame) {
        uint32_t* pixels = sprite->FramePixels(frame);
        for (int32_t y = 0; pixels && y < sprite->height; ++y)
            std::memcpy(strip.data + static_cast<ptrdiff_t>(y) * strip.width +
                            static_cast<ptrdiff_t>(frame) * sprite->width,
                        pixels + static_cast<ptrdiff_t>(y) * sprite->width,
                        static_cast<size_t>(sprite->width) * 4);
        MemoryManager::Free(pixels);
    }
    Picture_Save(ArgText(args, argc, 1), strip.data, strip.width, strip.height);
}

// surface, x, y, width, height, remove background, smooth edges, origin x, origin y; or with
// eleven arguments the flags precise, remove background, smooth edges and preload
BUILTIN(sprite_create_from_surface)
{
    const bool old = argc >= 11;
    const int flags = old ? 6 : 5, origin = old ? 9 : 7;
    CSprite* sprite =
        Sprite_FromSurface(ArgInt(args, argc, 0, -1), ArgInt(args, argc, 1), ArgInt(args, argc, 2),
                           ArgInt(args, argc, 3), ArgInt(args, argc, 4), ArgBool(args, argc, flags),
                           ArgBool(args, argc, flags + 1));
    SetOrigin(sprite, ArgInt(args, argc, origin), ArgInt(args, argc, origin + 1));
    if (old && ArgBool(args, argc, 5)) sprite->MakeMasks(false, 0);
    if (old) sprite->preload = ArgBool(args, argc, 8);
    const int32_t index = Sprite_Add(sprite);
    Sprite_NameNew(index);
    SetReal(result, index);
}

// sprite, surface, x, y, width, height, remove background, smooth edges
BUILTIN(sprite_add_from_surface)
{
    CSprite* sprite = Changeable(ArgInt(args, argc, 0, -1));
    if (!sprite) return;
    CSprite* added =
        Sprite_FromSurface(ArgInt(args, argc, 1, -1), ArgInt(args, argc, 2), ArgInt(args, argc, 3),
                           ArgInt(args, argc, 4), ArgInt(args, argc, 5), ArgBool(args, argc, 6),
                           ArgBool(args, argc, 7));
    AppendFrames(sprite, added);
    VxDelete(added);
}

static constexpr BuiltinRow kRows[] = {
    {"sprite_exists", sprite_exists, 1},
    {"sprite_get_name", sprite_get_name, 1},
    {"sprite_get_number", GetField<&CSprite::frameCount>, 1},
    {"sprite_get_width", GetField<&CSprite::width>, 1},
    {"sprite_get_height", GetField<&CSprite::height>, 1},
    {"sprite_get_xoffset", GetField<&CSprite::originX>, 1},
    {"sprite_get_yoffset", GetField<&CSprite::originY>, 1},
    {"sprite_get_bbox_mode", GetField<&CSprite::bboxMode>, 1},
    {"sprite_get_bbox_left", GetField<&CSprite::bboxLeft>, 1},
    {"sprite_get_bbox_top", GetField<&CSprite::bboxTop>, 1},
    {"sprite_get_bbox_right", GetField<&CSprite::bboxRight>, 1},
    {"sprite_get_bbox_bottom", GetField<&CSprite::bboxBottom>, 1},
    {"sprite_get_texture", sprite_get_texture, 2},
    {"sprite_get_uvs", sprite_get_uvs, 2},
    {"sprite_set_offset", sprite_set_offset, 3},
    {"sprite_set_bbox_mode", sprite_set_bbox_mode, 2},
    {"sprite_set_bbox", sprite_set_bbox, 5},
    {"sprite_collision_mask", sprite_collision_mask, 9},
    {"sprite_add", sprite_add, 6},
    {"sprite_replace", sprite_replace, 7},
    {"sprite_delete", sprite_delete, 1},
    {"sprite_duplicate", sprite_duplicate, 1},
    {"sprite_assign", sprite_assign, 2},
    {"sprite_merge", sprite_merge, 2},
    {"sprite_set_alpha_from_sprite", sprite_set_alpha_from_sprite, 2},
    {"sprite_save", sprite_save, 3},
    {"sprite_save_strip", sprite_save_strip, 2},
    {"sprite_create_from_surface", sprite_create_from_surface, -1},
    {"sprite_add_from_surface", sprite_add_from_surface, 8},
};

void Function_Resource_RegisterSprites()
{
    Function_AddRows(kRows);
}
