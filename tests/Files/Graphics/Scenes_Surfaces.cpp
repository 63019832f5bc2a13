// Scenes of surfaces: the target stack, copies, and what surfaces are drawn with.

#include "Files/Graphics/Surface.h"
#include "tests/Files/Graphics/support_Scenes.h"

namespace {

// The card on a half clear blue, 48 by 40.
double Painted(SceneStage& s)
{
    const double surface = s.call("surface_create", 48, 40);
    EXPECT_TRUE(s.call("surface_set_target", surface));
    s.call("draw_clear_alpha", kBlue, 0.4);
    s.call("draw_sprite", s.card, 0, 22, 18);
    EXPECT_TRUE(s.call("surface_reset_target"));
    return surface;
}

// Each surface paints a frame, lets the next one paint, and shows it inside its own.
void Nest(SceneStage& s, int32_t depth)
{
    const int32_t side = 150 - depth * 4;
    const double surface = s.call("surface_create", side, side);
    if (depth == 37) {
        EXPECT_FALSE(s.call("surface_set_target", surface));
        s.call("draw_set_colour", kWhite);
        s.call("draw_rectangle", 1, 1, 3, 3, 0);  // lands on the 36th
        return;
    }
    ASSERT_TRUE(s.call("surface_set_target", surface)) << depth;
    s.call("draw_clear", depth % 2 ? kOrange : 0x602000);
    s.call("draw_set_colour", depth % 3 ? kYellow : kGreen);
    s.call("draw_rectangle", 0, 0, side * depth / 36, 0, 0);
    Nest(s, depth + 1);
    ASSERT_TRUE(s.call("surface_reset_target")) << depth;
    // What was shown before is shown again: the port and the area are those of this level.
    s.call("draw_surface", surface, 2, 2);
    s.call("surface_free", surface);
}

void NestedTargets(SceneStage& s)
{
    s.call("draw_clear", kGrey);
    Nest(s, 1);
    EXPECT_FALSE(s.call("surface_reset_target"));
}

void DrawnInAllWays(SceneStage& s)
{
    const double surface = Painted(s);
    s.call("draw_clear", 0x505050);
    s.call("draw_surface", surface, 4, 4);
    s.call("draw_set_alpha", 0.5);
    s.call("draw_surface", surface, 56.5, 4);
    s.call("draw_set_alpha", 1);
    s.call("draw_surface_ext", surface, 110, 40, 1.5, -0.8, 0, kOrange, 1);
    s.call("draw_surface_ext", surface, 190, 40, 1, 1, 50, kWhite, 0.7);
    s.call("draw_surface_part", surface, 8, 4, 20, 30, 4, 60);
    s.call("draw_surface_part_ext", surface, 8, 4, 20, 30, 30, 60, 2, 1, kGreen, 1);
    s.call("draw_surface_stretched", surface, 80, 60, 80, 30);
    s.call("draw_surface_stretched_ext", surface, 166, 60, 20, 40, kYellow, 0.6);
    s.call("draw_surface_general", surface, 0, 0, 48, 40, 200, 100, 1, 1, 20, kRed, kWhite, kWhite,
           kBlue, 1);
    View_SetArea(0, 0, 270, 150, 0);
    s.call("draw_surface_tiled_ext", surface, 10, 130, 0.5, 0.5, kWhite, 0.3);
}

// Copies take the alpha along and blend with nothing; they are cut at both edges.
void Copies(SceneStage& s)
{
    const double from = Painted(s);
    const double onto = s.call("surface_create", 100, 80);
    s.call("surface_set_target", onto);
    s.call("draw_clear_alpha", kOrange, 1);
    s.call("surface_reset_target");
    s.call("surface_copy", onto, 4, 4, from);
    s.call("surface_copy", onto, -30, 50, from);
    s.call("surface_copy", onto, 80, -20, from);
    s.call("surface_copy", onto, 200, 0, from);
    s.call("surface_copy_part", onto, 60, 44, from, 10, 8, 24, 20);
    s.call("surface_copy_part", onto, 56, 70, from, 40, 30, 90, 90);
    s.call("surface_copy_part", onto, 20, 70, from, -4, -4, 12, 12);
    s.call("draw_clear", 0x302820);
    s.call("draw_surface", onto, 4, 4);
    EXPECT_EQ(s.call("surface_getpixel_ext", onto, 4, 4),
              s.call("surface_getpixel_ext", from, 0, 0));
    // A sprite of a part of it; what lies outside is clear.
    const double sprite = s.call("sprite_create_from_surface", onto, 70, 50, 50, 50, 0, 0, 25, 25);
    s.call("draw_sprite_ext", sprite, 0, 140, 40, 1, 1, 15, kWhite, 1);
    // Rebuilt under its own number, with nothing of what it held.
    s.call("surface_resize", onto, 20, 20);
    s.call("surface_set_target", onto);
    s.call("draw_clear", kGreen);
    s.call("draw_sprite", s.made, 0, 14, 14);
    s.call("surface_reset_target");
    s.call("draw_surface", onto, 150, 70);
}

constexpr SceneRow kScenes[] = {
    {"nested_targets", 154, 154, NestedTargets},
    {"surfaces", 270, 150, DrawnInAllWays},
    {"surface_copies", 180, 100, Copies},
};

}  // namespace

std::span<const SceneRow> Scenes_Surfaces()
{
    return kScenes;
}
