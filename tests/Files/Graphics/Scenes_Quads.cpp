// Scenes of the quad operations: trims, scales, turns, parts, corner colours and tiles.

#include "Files/Graphics/Draw_State.h"
#include "Files/Graphics/Quad.h"
#include "tests/Files/Graphics/support_Scenes.h"

namespace {

constexpr float kDegree = 3.1415927F / 180.0F;

void Backdrop(SceneStage& stage, uint32_t colour = 0x504840)
{
    stage.call("draw_clear", colour);
}

// At whole positions a picture comes out as it is, filter or not; between them the filter
// shows. The draw alpha counts for the plain operations alone.
void Plain(SceneStage& s)
{
    Backdrop(s);
    for (const int32_t filter : {0, 1}) {
        const double y = filter * 64;
        s.call("texture_set_interpolation", filter);
        s.call("draw_sprite", s.card, 0, 28, 24 + y);
        s.call("draw_sprite", s.card, 7, 72.5, 24.25 + y);
        s.call("draw_sprite", s.made, 0, 100, 14 + y);
        s.call("draw_background", s.bricks, 130, 10 + y);
        s.call("draw_background", s.weave, 150, 10 + y);
        s.call("draw_set_alpha", 0.5);
        s.call("draw_sprite", s.card, 0, 28, 50 + y);
        s.call("draw_sprite", s.made, 0, 72, 44 + y);
        s.call("draw_background", s.bricks, 100.75, 36.5 + y);
        s.call("draw_sprite_ext", s.card, 0, 145, 46 + y, 1, 1, 0, kWhite, 1);
        s.call("draw_set_alpha", 1);
    }
}

void Scaled(SceneStage& s)
{
    Backdrop(s);
    for (const int32_t filter : {0, 1}) {
        const double y = filter * 100;
        s.call("texture_set_interpolation", filter);
        const double scales[][2] = {{2, 1.5}, {-2, 1.5}, {1, -1}, {-0.6, -0.6}, {0.37, 2.3}};
        double x = 44;
        for (const auto& scale : scales) {
            s.call("draw_sprite_ext", s.card, 0, x, 30 + y, scale[0], scale[1], 0, kWhite, 1);
            s.mark(static_cast<float>(x), static_cast<float>(30 + y));
            x += 54;
        }
        s.call("draw_sprite_ext", s.made, 0, 20, 70 + y, 1.7, 1.3, 0, kOrange, 1);
        s.call("draw_sprite_ext", s.made, 0, 90, 90 + y, -1, -1, 0, kWhite, 0.5);
        s.call("draw_sprite_stretched", s.card, 0, 104, 62 + y, 60, 30);
        s.call("draw_sprite_stretched_ext", s.made, 0, 170, 62 + y, 20, 34, kGreen, 0.8);
        s.call("draw_background_ext", s.bricks, 200, 62 + y, 1.5, 2.1, 0, kYellow, 1);
        s.call("draw_background_stretched", s.weave, 236, 62 + y, 40, 30);
    }
}

void Turned(SceneStage& s)
{
    Backdrop(s);
    const double angles[] = {0, 30, 45, 90, 135, 180, 270, 359.99};
    for (int32_t i = 0; i < 8; i++) {
        const double x = 36 + i % 4 * 64, y = 32 + i / 4 * 60;
        s.call("texture_set_interpolation", i / 4);
        s.call("draw_sprite_ext", s.card, 0, x, y, 1, 1, angles[i], kWhite, 1);
        s.mark(static_cast<float>(x), static_cast<float>(y));
    }
    s.call("draw_sprite_ext", s.card, 0, 40, 160, -1.4, 1, 30, kWhite, 1);
    s.call("draw_sprite_ext", s.made, 0, 100, 160, 1.5, -1.5, -60, kYellow, 0.6);
    s.call("draw_background_ext", s.bricks, 160, 170, 2, 2, 20, kWhite, 1);
    s.call("draw_background_ext", s.weave, 220, 170, 3, 3, 75, kWhite, 1);
}

// Parts of the untrimmed image, each with the outline of where all of it would be.
void Parts(SceneStage& s)
{
    Backdrop(s);
    struct Part {
        double left, top, width, height;
    };
    const Part parts[] = {{0, 0, 40, 32},   {10, 8, 14, 12}, {0, 0, 20, 16}, {20, 16, 40, 40},
                          {-8, -4, 30, 30}, {0, 0, 6, 32},   {3, 2, 5, 5}};
    double x = 6;
    for (const Part& part : parts) {
        s.call("draw_set_colour", kGrey);
        s.call("draw_rectangle", x - 1, 5, x - 1 + part.width, 5 + part.height, 1);
        s.call("draw_sprite_part", s.card, 0, part.left, part.top, part.width, part.height, x, 6);
        x += part.width + 6;
    }
    s.call("draw_sprite_part_ext", s.card, 0, 2, 2, 20, 20, 10, 60, 2, 1.5, kOrange, 1);
    s.call("draw_sprite_part_ext", s.card, 0, 2, 2, 20, 20, 110, 60, -2, 1.5, kWhite, 1);
    s.call("draw_sprite_part_ext", s.card, 0, 2, 2, 20, 20, 130, 100, 1, -2, kWhite, 0.5);
    s.call("draw_sprite_part", s.made, 0, 8, 4, 14, 10, 160, 60);
    s.call("draw_sprite_part_ext", s.made, 0, 8, 4, 14, 10, 180, 60, 2.5, 2.5, kWhite, 1);
    s.call("draw_background_part", s.bricks, 4, 4, 30, 8, 160, 90);
    s.call("draw_background_part_ext", s.weave, 0, 0, 6, 5, 230, 60, 4, 6, kGreen, 1);
    // Turned about the corner of the part; what the trim takes away moves the rest along.
    for (int32_t i = 0; i < 5; i++) {
        const auto px = static_cast<float>(40 + i * 50);
        Quad_EntryPart(s.entry(s.card), 0, 0, 30, 20, px, 140, 1, 1.5F,
                       static_cast<float>(i) * 72 * kDegree, 0xFFFFFF, 1);
        s.mark(px, 140);
    }
    Quad_TexturePart(Sprite_Data(s.made)->Texture(0), 2, 2, 20, 10, 290, 90, 1.5F, 1.5F,
                     40 * kDegree, 0xFFFFFF, 1);
}

void General(SceneStage& s)
{
    Backdrop(s);
    s.call("draw_sprite_general", s.card, 0, 10, 8, 20, 16, 10, 10, 2, 2, 0, kRed, kGreen, kBlue,
           kYellow, 1);
    s.call("draw_sprite_general", s.card, 0, 0, 0, 26, 20, 70, 10, 1, 2, 0, kWhite, kWhite, kBlack,
           kBlack, 1);
    s.call("draw_sprite_general", s.card, 0, 8, 6, 26, 20, 130, 50, 1.5, 1.5, 35, kWhite, kRed,
           kRed, kWhite, 0.7);
    s.call("draw_sprite_general", s.made, 0, 0, 0, 24, 20, 200, 10, 2, -1, 0, kWhite, kBlue, kBlue,
           kWhite, 1);
    s.call("draw_background_general", s.weave, 0, 0, 12, 10, 200, 30, 4, 4, -15, kWhite, kYellow,
           kGreen, kOrange, 1);
    s.call("draw_sprite_pos", s.card, 0, 10, 80, 70, 90, 60, 130, 20, 110, 1);
    s.call("draw_sprite_pos", s.card, 0, 130, 80, 80, 80, 80, 120, 130, 120, 0.5);
    // The lowest bits of red and blue name the corner.
    s.call("shader_enable_corner_id", 1);
    s.call("draw_sprite_ext", s.made, 0, 150, 90, 2, 2, 0, kWhite, 1);
    s.call("draw_sprite_general", s.card, 0, 10, 8, 10, 10, 210, 90, 3, 3, 0, kRed, kGreen, kBlue,
           kWhite, 1);
    s.call("shader_enable_corner_id", 0);
}

// Tiles fill the view's area, which begins at (-7, 5) here.
void Tiled(SceneStage& s)
{
    Backdrop(s);
    View_SetArea(-7, 5, 256, 192, 0);
    s.call("draw_background_tiled_ext", s.bricks, 3, 2, 1.3, 0.85, kWhite, 1);
    s.call("texture_set_interpolation", 0);
    // A row whose height is no whole number, the last of them, has no place for a tile.
    const float scales[] = {0.5F, 2.75F, 1.3F};
    for (int32_t i = 0; i < 3; i++)
        Quad_EntryTiled(s.entry(s.card), 20, 16, 10, static_cast<float>(20 + i * 50), scales[i],
                        scales[i], true, false, 0xFFFFFF, 0.9F);
    Quad_EntryTiled(s.entry(s.card), 0, 0, 200.6F, 0, 0.5F, 0.75F, false, true, 0xA0FFA0, 1);
    Quad_EntryTiled(s.entry(s.card), 20, 16, 30, 180, 1, 1, false, false, 0xFFFFFF, 1);
}

// The same of pictures without a page: whole pixels, and what a fraction leaves is cut off.
void TiledPixels(SceneStage& s)
{
    Backdrop(s);
    View_SetArea(12, -9, 200, 160, 0);
    s.call("draw_background_tiled_ext", s.weave, 5.5, 4.5, 1.3, 0.75, kGrey, 1);
    const int32_t slot = Sprite_Data(s.made)->Texture(0);
    Quad_TextureTiled(slot, 4, 4, 30.4F, 10, 1, 1, true, false, 0xFFFFFF, 1);
    Quad_TextureTiled(slot, 4, 4, 30, 70, 1.6F, 0.8F, false, true, 0xFFFFFF, 0.7F);
    Quad_TextureTiled(slot, 0, 0, 100, 60, 2, 2, false, false, 0x80FFFF, 1);
    s.call("draw_sprite_tiled_ext", s.card, 0, 100, 90, 2, 2, kGreen, 0.25);
}

constexpr SceneRow kScenes[] = {
    {"quads_plain", 180, 128, Plain},
    {"quads_scaled", 300, 200, Scaled},
    {"quads_turned", 264, 200, Turned},
    {"quads_parts", 330, 190, Parts},
    {"quads_general", 270, 140, General},
    {"quads_tiled", 256, 192, Tiled},
    {"quads_tiled_pixels", 200, 160, TiledPixels},
};

}  // namespace

std::span<const SceneRow> Scenes_Quads()
{
    return kScenes;
}
