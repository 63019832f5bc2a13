// Scenes of blending, tests, masks, addressing, and the plain shapes.

#include <cmath>

#include "Files/Graphics/Window.h"
#include "tests/Files/Graphics/support_Scenes.h"

namespace {

// What a state meets: stripes of several colours, the lower half clear to a half.
void Stripes(SceneStage& s, int32_t width, int32_t height)
{
    s.call("draw_clear_alpha", kBlack, 1);
    const uint32_t colours[] = {kWhite, kRed, kGreen, kBlue, kGrey};
    for (int32_t x = 0, i = 0; x < width; x += 12, i++) {
        s.call("draw_set_colour", colours[i % 5]);
        s.call("draw_rectangle", x, 0, x + 5, height, 0);
    }
    s.call("draw_set_colour", kWhite);
}

void BlendModes(SceneStage& s)
{
    Stripes(s, 200, 130);
    for (int32_t mode = 0; mode < 5; mode++) {  // the last is no mode: normal
        s.call("draw_set_blend_mode", mode);
        s.call("draw_sprite", s.card, 0, 22 + mode * 40, 20);
        s.call("draw_sprite_ext", s.made, 0, 10 + mode * 40, 44, 1, 1, 0, kOrange, 0.5);
        s.call("draw_set_alpha", 0.6);
        s.call("draw_rectangle_colour", 4 + mode * 40, 66, 34 + mode * 40, 90, kRed, kYellow, kBlue,
               kWhite, 0);
        s.call("draw_set_alpha", 1);
    }
    // Back under the first mode: nothing of the last one stays.
    s.call("draw_set_blend_mode", 0);
    s.call("draw_sprite_ext", s.card, 0, 100, 112, 4, 1, 0, kWhite, 0.5);
}

// Every pair of the eleven factors: source from the left, destination from the top.
void BlendFactors(SceneStage& s)
{
    s.call("draw_clear_alpha", 0x60A0C0, 0.6);
    for (int32_t source = 1; source <= 11; source++)
        for (int32_t dest = 1; dest <= 11; dest++) {
            s.call("draw_set_blend_mode_ext", source, dest);
            s.call("draw_sprite_ext", s.made, 0, source * 12 - 2, dest * 12 - 2, 0.4, 0.5, 0,
                   0xC0FFE0, 0.8);
        }
    s.call("draw_set_blend_mode_ext", 0, 12);  // no factors: stays as it was
    s.call("draw_sprite_ext", s.made, 0, 142, 10, 0.4, 0.5, 0, 0xC0FFE0, 0.8);
    s.call("draw_set_blend_mode", 0);
}

void MasksAndTests(SceneStage& s)
{
    Stripes(s, 220, 150);
    for (int32_t mask = 0; mask < 16; mask++) {
        s.call("draw_set_colour_write_enable", mask & 1, mask & 2, mask & 4, mask & 8);
        s.call("draw_sprite_stretched", s.card, 0, 2 + mask % 8 * 27, 2 + mask / 8 * 24, 26, 22);
    }
    s.call("draw_set_colour_write_enable", 1, 1, 1, 1);
    s.call("draw_set_alpha_test", 1);
    for (int32_t i = 0; i < 4; i++) {
        const int32_t references[] = {0, 127, 128, 254};
        s.call("draw_set_alpha_test_ref_value", references[i]);
        s.call("draw_sprite", s.card, 0, 22 + i * 40, 68);
        s.call("draw_sprite_ext", s.made, 0, 10 + i * 40, 96, 1, 1, 0, kWhite, 0.5);
    }
    s.call("draw_set_alpha_test", 0);
    s.call("texture_set_blending", 0);  // the texture alone, without colour and alpha
    s.call("draw_sprite_ext", s.card, 0, 190, 68, 1, 1, 0, kBlue, 0.3);
    s.call("texture_set_blending", 1);
    s.call("draw_sprite_ext", s.card, 0, 190, 98, 1, 1, 0, kBlue, 0.3);
    const int32_t slot = Sprite_Data(s.made)->Texture(0);  // 24 by 20 of 32 by 32
    for (const int32_t repeat : {0, 1}) {
        s.call("texture_set_repeat", repeat);
        s.call("draw_primitive_begin_texture", 5, slot);
        const double x = 4 + repeat * 70;
        s.call("draw_vertex_texture", x, 116, -0.5, -0.5);
        s.call("draw_vertex_texture", x + 60, 116, 1.5, -0.5);
        s.call("draw_vertex_texture", x, 146, -0.5, 1.5);
        s.call("draw_vertex_texture", x + 60, 146, 1.5, 1.5);
        s.call("draw_primitive_end");
    }
    s.call("texture_set_repeat", 0);
}

void Shapes(SceneStage& s)
{
    s.call("draw_clear", 0x302820);
    s.call("draw_set_colour", kOrange);
    s.call("draw_rectangle", 4, 4, 30, 20, 0);
    s.call("draw_rectangle", 60, 20, 34, 4, 1);
    s.call("draw_rectangle_colour", 64, 4, 100, 20, kRed, kGreen, kBlue, kYellow, 0);
    s.call("draw_rectangle_colour", 104, 4, 140, 20, kRed, kGreen, kBlue, kYellow, 1);
    s.call("draw_roundrect", 144, 4, 180, 20, 0);
    s.call("draw_roundrect_ext", 184, 4, 216, 20, 6, 4, 1);
    s.call("draw_roundrect_colour_ext", 220, 4, 252, 20, 10, 10, kWhite, kBlue, 0);
    for (int32_t i = 0; i < 12; i++) {
        s.call("draw_point", 4 + i * 2, 28 + i % 3);
        const double angle = i * 0.5236;
        s.call("draw_line", 60, 50, std::round(60 + 22 * std::cos(angle)),
               std::round(50 + 22 * std::sin(angle)));
        s.call("draw_line_colour", 90 + i * 2, 28, 96 + i * 4, 72, kRed, kYellow);
    }
    s.call("draw_point_colour", 20, 40, kWhite);
    s.call("draw_line_width", 150, 30, 190, 70, 6);
    s.call("draw_line_width_colour", 190, 30, 160, 70, 3, kRed, kGreen);
    s.call("draw_triangle", 200, 30, 230, 40, 206, 70, 0);
    s.call("draw_triangle_colour", 226, 30, 252, 36, 240, 70, kRed, kGreen, kBlue, 0);
    s.call("draw_triangle", 206, 44, 252, 50, 230, 74, 1);
    s.call("draw_circle", 20, 98, 15, 0);
    s.call("draw_circle", 54, 98, 15, 1);
    s.call("draw_circle_colour", 88, 98, 15, kWhite, kRed, 0);
    s.call("draw_ellipse", 108, 84, 150, 112, 0);
    s.call("draw_set_circle_precision", 8);
    s.call("draw_ellipse_colour", 154, 84, 196, 112, kYellow, kGreen, 0);
    s.call("draw_ellipse", 200, 84, 250, 112, 1);
    s.call("draw_set_circle_precision", 24);
    s.call("draw_arrow", 6, 122, 50, 140, 14);
    s.call("draw_button", 60, 122, 90, 140, 1);
    s.call("draw_button", 96, 122, 126, 140, 0);
    s.call("draw_healthbar", 134, 122, 190, 140, 35, kBlack, kRed, kGreen, 0, 1, 1);
    s.call("draw_healthbar", 196, 122, 250, 140, 70, kGrey, kRed, kGreen, 3, 1, 1);
}

// The six kinds, collected vertex by vertex; what fills no whole primitive is dropped.
void Primitives(SceneStage& s)
{
    s.call("draw_clear", 0x302820);
    s.call("draw_set_colour", kYellow);
    for (int32_t kind = 1; kind <= 6; kind++) {
        s.call("draw_primitive_begin", kind);
        for (int32_t i = 0; i < 7; i++)
            s.call("draw_vertex_colour", 8 + kind % 3 * 60 + i * 8, 8 + kind / 3 * 50 + i % 2 * 30,
                   i % 2 ? kRed : kWhite, 0.4 + i * 0.1);
        s.call("draw_primitive_end");
    }
    s.call("draw_primitive_begin_texture", 6, s.entry(s.card)->texture);
    for (int32_t i = 0; i < 6; i++) {
        const double angle = i * 1.2566, u = 27 / 64.0, v = 31 / 64.0;
        s.call("draw_vertex_texture_colour", 150 + 24 * std::cos(angle), 130 + 24 * std::sin(angle),
               u + 0.2 * std::cos(angle), v + 0.16 * std::sin(angle), i % 2 ? kOrange : kWhite, 1);
    }
    s.call("draw_primitive_end");
    s.call("draw_primitive_begin", 7);  // no kind
    s.call("draw_vertex", 0, 0);
    s.call("draw_primitive_end");
}

// Clears that are drawn as quads look like any other, whatever the states are.
void ManualClears(SceneStage& s)
{
    const bool manual = g_IntelMode;
    g_IntelMode = true;
    s.call("texture_set_blending", 0);
    s.call("draw_set_alpha_test", 1);
    s.call("draw_set_alpha_test_ref_value", 200);
    s.call("draw_set_colour_write_enable", 1, 0, 0, 0);
    s.call("draw_clear_alpha", kOrange, 0.25);
    s.call("draw_set_colour_write_enable", 1, 1, 1, 1);
    s.call("draw_set_alpha_test", 0);
    s.call("texture_set_blending", 1);
    View_SetPort(10, 10, 30, 20);
    s.call("draw_clear", kBlue);
    View_SetWindow();
    s.call("draw_sprite", s.card, 0, 60, 30);
    g_IntelMode = manual;
}

constexpr SceneRow kScenes[] = {
    {"blend_modes", 200, 130, BlendModes},        {"blend_factors", 156, 146, BlendFactors},
    {"masks_and_tests", 220, 150, MasksAndTests}, {"shapes", 256, 144, Shapes},
    {"primitives", 200, 160, Primitives},         {"manual_clears", 90, 60, ManualClears},
};

}  // namespace

std::span<const SceneRow> Scenes_States()
{
    return kScenes;
}
