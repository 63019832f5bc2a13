// draw_self, draw_sprite* and draw_background*.

#include <cmath>

#include "Files/Background/CBackground.h"
#include "Files/Base/Error.h"
#include "Files/Function/Function_Graphic.h"
#include "Files/Function/Function_Registry.h"
#include "Files/Graphics/Draw_Room.h"
#include "Files/Graphics/Quad.h"
#include "Files/Object/CInstance.h"
#include "Files/Sprite/CSprite.h"

namespace {

enum SpriteKind : int32_t { KIND_VECTOR = 1, KIND_SKELETON = 2 };

// The sprite of argument 0, or null after the report.
CSprite* SpriteArgument(const RValue* args, int argc)
{
    CSprite* sprite = Sprite_Data(ArgInt(args, argc, 0, -1));
    if (!sprite) Error_Show("Trying to draw non-existing sprite.", false);
    return sprite;
}

// As SpriteArgument, for a draw that only pictures can do; reports other kinds.
CSprite* PictureArgument(const RValue* args, int argc, const char* function)
{
    CSprite* sprite = SpriteArgument(args, argc);
    if (!sprite || (sprite->kind != KIND_VECTOR && sprite->kind != KIND_SKELETON)) return sprite;
    Error_Showf("%s: not supported for %s sprites", function,
                sprite->kind == KIND_VECTOR ? "vector" : "skeleton based");
    return nullptr;
}

// A number below 0 stands for the picture that the caller shows.
int32_t Subimage(const RValue* args, int argc, const CInstance* self)
{
    const int32_t subimage = ArgInt(args, argc, 1);
    if (subimage >= 0 || !self) return subimage;
    return static_cast<int32_t>(std::floor(self->image_index));
}

void ReadFloats(const RValue* args, int argc, int first, float* out, int count)
{
    for (int i = 0; i < count; ++i) out[i] = ArgFloat(args, argc, first + i);
}

void ReadColours(const RValue* args, int argc, int first, uint32_t colours[4])
{
    for (int i = 0; i < 4; ++i) colours[i] = ArgColour(args, argc, first + i);
}

CBackground* BackgroundArgument(const RValue* args, int argc)
{
    CBackground* background = Background_Data(ArgInt(args, argc, 0, -1));
    if (!background) Error_Show("Trying to draw non-existing background.", false);
    return background;
}

void BackgroundExt(CBackground* background, float x, float y, float xscale, float yscale,
                   float angle, uint32_t colour, float alpha)
{
    if (background->entry)
        Quad_EntryExt(background->entry, 0, 0, x, y, xscale, yscale, angle, colour, alpha);
    else
        Quad_TextureExt(background->Texture(), 0, 0, x, y, xscale, yscale, angle, colour, alpha);
}

void BackgroundStretched(CBackground* background, const float box[4], uint32_t colour, float alpha)
{
    if (background->width <= 0 || background->height <= 0 || !(box[2] > 0) || !(box[3] > 0)) return;
    BackgroundExt(background, box[0], box[1], box[2] / static_cast<float>(background->width),
                  box[3] / static_cast<float>(background->height), 0, colour, alpha);
}

// part: left, top, width, height, x, y.
void BackgroundPart(CBackground* background, const float part[6], float xscale, float yscale,
                    uint32_t colour, float alpha)
{
    if (background->entry)
        Quad_EntryPart(background->entry, part[0], part[1], part[2], part[3], part[4], part[5],
                       xscale, yscale, 0, colour, alpha);
    else
        Quad_TexturePart(background->Texture(), part[0], part[1], part[2], part[3], part[4],
                         part[5], xscale, yscale, 0, colour, alpha);
}

void BackgroundTiled(CBackground* background, float x, float y, float xscale, float yscale,
                     uint32_t colour, float alpha)
{
    if (background->entry)
        Quad_EntryTiled(background->entry, 0, 0, x, y, xscale, yscale, true, true, colour, alpha);
    else
        Quad_TextureTiled(background->Texture(), 0, 0, x, y, xscale, yscale, true, true, colour,
                          alpha);
}

}  // namespace

BUILTIN(draw_self)
{
    if (self) DrawSelf(self);
}

// sprite, subimage, x, y
BUILTIN(draw_sprite)
{
    if (CSprite* sprite = SpriteArgument(args, argc))
        sprite->Draw(Subimage(args, argc, self), ArgFloat(args, argc, 2), ArgFloat(args, argc, 3));
}

// sprite, subimage, x, y, xscale, yscale, rotation, colour, alpha
BUILTIN(draw_sprite_ext)
{
    CSprite* sprite = SpriteArgument(args, argc);
    if (!sprite) return;
    float f[5];
    ReadFloats(args, argc, 2, f, 5);
    sprite->DrawExt(Subimage(args, argc, self), f[0], f[1], f[2], f[3], f[4],
                    ArgColour(args, argc, 7), ArgFloat(args, argc, 8));
}

// sprite, subimage, x, y, width, height
BUILTIN(draw_sprite_stretched)
{
    CSprite* sprite = SpriteArgument(args, argc);
    if (!sprite) return;
    float f[4];
    ReadFloats(args, argc, 2, f, 4);
    sprite->DrawStretched(Subimage(args, argc, self), f[0], f[1], f[2], f[3], kScriptWhite,
                          Graphic_PlainAlpha());
}

// sprite, subimage, x, y, width, height, colour, alpha
BUILTIN(draw_sprite_stretched_ext)
{
    CSprite* sprite = SpriteArgument(args, argc);
    if (!sprite) return;
    float f[4];
    ReadFloats(args, argc, 2, f, 4);
    sprite->DrawStretched(Subimage(args, argc, self), f[0], f[1], f[2], f[3],
                          ArgColour(args, argc, 6), ArgFloat(args, argc, 7));
}

// sprite, subimage, left, top, width, height, x, y
BUILTIN(draw_sprite_part)
{
    CSprite* sprite = PictureArgument(args, argc, "draw_sprite_part");
    if (!sprite) return;
    float f[6];
    ReadFloats(args, argc, 2, f, 6);
    sprite->DrawPart(Subimage(args, argc, self), f[0], f[1], f[2], f[3], f[4], f[5], 1, 1,
                     kScriptWhite, Graphic_PlainAlpha());
}

// sprite, subimage, left, top, width, height, x, y, xscale, yscale, colour, alpha
BUILTIN(draw_sprite_part_ext)
{
    CSprite* sprite = PictureArgument(args, argc, "draw_sprite_part_ext");
    if (!sprite) return;
    float f[8];
    ReadFloats(args, argc, 2, f, 8);
    sprite->DrawPart(Subimage(args, argc, self), f[0], f[1], f[2], f[3], f[4], f[5], f[6], f[7],
                     ArgColour(args, argc, 10), ArgFloat(args, argc, 11));
}

// sprite, subimage, x, y
BUILTIN(draw_sprite_tiled)
{
    if (CSprite* sprite = SpriteArgument(args, argc))
        sprite->DrawTiled(Subimage(args, argc, self), ArgFloat(args, argc, 2),
                          ArgFloat(args, argc, 3), 1, 1, true, true, kScriptWhite,
                          Graphic_PlainAlpha());
}

// sprite, subimage, x, y, xscale, yscale, colour, alpha
BUILTIN(draw_sprite_tiled_ext)
{
    CSprite* sprite = SpriteArgument(args, argc);
    if (!sprite) return;
    float f[4];
    ReadFloats(args, argc, 2, f, 4);
    sprite->DrawTiled(Subimage(args, argc, self), f[0], f[1], f[2], f[3], true, true,
                      ArgColour(args, argc, 6), ArgFloat(args, argc, 7));
}

// sprite, subimage, left, top, width, height, x, y, xscale, yscale, rotation, four colours, alpha
BUILTIN(draw_sprite_general)
{
    CSprite* sprite = PictureArgument(args, argc, "draw_sprite_general");
    if (!sprite) return;
    float f[9];
    uint32_t colours[4];
    ReadFloats(args, argc, 2, f, 9);
    ReadColours(args, argc, 11, colours);
    sprite->DrawGeneral(Subimage(args, argc, self), f[0], f[1], f[2], f[3], f[4], f[5], f[6], f[7],
                        f[8], colours, ArgFloat(args, argc, 15));
}

// sprite, subimage, four corners, alpha
BUILTIN(draw_sprite_pos)
{
    CSprite* sprite = PictureArgument(args, argc, "draw_sprite_pos");
    if (!sprite) return;
    float corners[8];
    ReadFloats(args, argc, 2, corners, 8);
    sprite->DrawPos(Subimage(args, argc, self), corners, ArgFloat(args, argc, 10));
}

// background, x, y
BUILTIN(draw_background)
{
    CBackground* background = BackgroundArgument(args, argc);
    if (!background) return;
    const float x = ArgFloat(args, argc, 1), y = ArgFloat(args, argc, 2);
    if (background->entry)
        Quad_Entry(background->entry, x, y);
    else
        Quad_Texture(background->Texture(), x, y);
}

// background, x, y, xscale, yscale, rotation, colour, alpha
BUILTIN(draw_background_ext)
{
    CBackground* background = BackgroundArgument(args, argc);
    if (!background) return;
    float f[5];
    ReadFloats(args, argc, 1, f, 5);
    BackgroundExt(background, f[0], f[1], f[2], f[3], f[4] * kDegreeFloat, ArgColour(args, argc, 6),
                  ArgFloat(args, argc, 7));
}

// background, x, y, width, height
BUILTIN(draw_background_stretched)
{
    CBackground* background = BackgroundArgument(args, argc);
    if (!background) return;
    float box[4];
    ReadFloats(args, argc, 1, box, 4);
    BackgroundStretched(background, box, kScriptWhite, Graphic_PlainAlpha());
}

// background, x, y, width, height, colour, alpha
BUILTIN(draw_background_stretched_ext)
{
    CBackground* background = BackgroundArgument(args, argc);
    if (!background) return;
    float box[4];
    ReadFloats(args, argc, 1, box, 4);
    BackgroundStretched(background, box, ArgColour(args, argc, 5), ArgFloat(args, argc, 6));
}

// background, left, top, width, height, x, y
BUILTIN(draw_background_part)
{
    CBackground* background = BackgroundArgument(args, argc);
    if (!background) return;
    float part[6];
    ReadFloats(args, argc, 1, part, 6);
    BackgroundPart(background, part, 1, 1, kScriptWhite, Graphic_PlainAlpha());
}

// background, left, top, width, height, x, y, xscale, yscale, colour, alpha
BUILTIN(draw_background_part_ext)
{
    CBackground* background = BackgroundArgument(args, argc);
    if (!background) return;
    float f[8];
    ReadFloats(args, argc, 1, f, 8);
    BackgroundPart(background, f, f[6], f[7], ArgColour(args, argc, 9), ArgFloat(args, argc, 10));
}

// background, left, top, width, height, x, y, xscale, yscale, rotation, four colours, alpha
BUILTIN(draw_background_general)
{
    CBackground* background = BackgroundArgument(args, argc);
    if (!background) return;
    float f[9];
    uint32_t colours[4];
    ReadFloats(args, argc, 1, f, 9);
    ReadColours(args, argc, 10, colours);
    const float alpha = ArgFloat(args, argc, 14);
    if (background->entry)
        Quad_EntryGeneral(background->entry, f[0], f[1], f[2], f[3], f[4], f[5], f[6], f[7],
                          f[8] * kDegreeFloat, colours, alpha);
    else
        Quad_TextureGeneral(background->Texture(), f[0], f[1], f[2], f[3], f[4], f[5], f[6], f[7],
                            f[8] * kDegreeFloat, colours, alpha);
}

// background, x, y
BUILTIN(draw_background_tiled)
{
    if (CBackground* background = BackgroundArgument(args, argc))
        BackgroundTiled(background, ArgFloat(args, argc, 1), ArgFloat(args, argc, 2), 1, 1,
                        kScriptWhite, Graphic_PlainAlpha());
}

// background, x, y, xscale, yscale, colour, alpha
BUILTIN(draw_background_tiled_ext)
{
    CBackground* background = BackgroundArgument(args, argc);
    if (!background) return;
    float f[4];
    ReadFloats(args, argc, 1, f, 4);
    BackgroundTiled(background, f[0], f[1], f[2], f[3], ArgColour(args, argc, 5),
                    ArgFloat(args, argc, 6));
}

static constexpr BuiltinRow kRows[] = {
    {"draw_self", draw_self, 0},
    {"draw_sprite", draw_sprite, 4},
    {"draw_sprite_ext", draw_sprite_ext, 9},
    {"draw_sprite_stretched", draw_sprite_stretched, 6},
    {"draw_sprite_stretched_ext", draw_sprite_stretched_ext, 8},
    {"draw_sprite_part", draw_sprite_part, 8},
    {"draw_sprite_part_ext", draw_sprite_part_ext, 12},
    {"draw_sprite_tiled", draw_sprite_tiled, 4},
    {"draw_sprite_tiled_ext", draw_sprite_tiled_ext, 8},
    {"draw_sprite_general", draw_sprite_general, 16},
    {"draw_sprite_pos", draw_sprite_pos, 11},
    {"draw_background", draw_background, 3},
    {"draw_background_ext", draw_background_ext, 8},
    {"draw_background_stretched", draw_background_stretched, 5},
    {"draw_background_stretched_ext", draw_background_stretched_ext, 7},
    {"draw_background_part", draw_background_part, 7},
    {"draw_background_part_ext", draw_background_part_ext, 11},
    {"draw_background_general", draw_background_general, 15},
    {"draw_background_tiled", draw_background_tiled, 3},
    {"draw_background_tiled_ext", draw_background_tiled_ext, 7},
};

void Function_Graphic_RegisterSprites()
{
    Function_AddRows(kRows);
}
