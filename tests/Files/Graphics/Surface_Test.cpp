// Surfaces: their life, the stack of targets, copies, and what scripts see of them.

#include "Files/Base/Console.h"
#include "Files/Function/Function_Registry.h"
#include "Host/Host_Stage.h"
#include "tests/Files/Graphics/support_Drawing.h"

namespace {

std::vector<std::string> s_lines;

class SurfaceTest : public DrawingTest {
protected:
    void SetUp() override
    {
        DrawingTest::SetUp();
        Function_Graphic_Register();
        Function_Resource_Register();
        s_lines.clear();
        Console_SetSink([](void*, const char* text) { s_lines.emplace_back(text); }, nullptr);
    }
    double Call(const char* name, std::initializer_list<double> arguments = {})
    {
        RValue values[16];
        int count = 0;
        for (const double argument : arguments) values[count++] = RValue(argument);
        RValue result;
        const FunctionRecord* record = Function_Record(Function_Find(name));
        EXPECT_NE(record, nullptr) << name;
        if (!record) return 0;
        g_CurrentFunction = record;
        record->routine(result, nullptr, nullptr, count, values);
        const double number = result.Kind() == VALUE_REAL ? result.real : 0;
        FREE_RValue(&result);
        return number;
    }
    int32_t Filled(int32_t width, int32_t height, uint32_t colour)
    {
        const int32_t id = Surface_Create(width, height);
        Surface_SetTarget(0, id);
        View_Clear(CLEAR_COLOUR, colour);
        Surface_ResetTarget();
        return id;
    }
    static size_t Reports(const char* words)
    {
        size_t count = 0;
        for (const VxString& text : Stage_ErrorTexts())
            count += text.find(words) != VxString::npos ? 1 : 0;
        return count;
    }
};

}  // namespace

TEST_F(SurfaceTest, ThirtySixTargetsNestAndEachIsGivenBack)
{
    View_SetPort(1, 2, 30, 40);
    View_SetArea(5, 6, 70, 80, 90);
    std::vector<int32_t> ids;
    for (int i = 0; i < 37; ++i) {
        ids.push_back(Surface_Create(4 + i, 8));
        EXPECT_EQ(Surface_SetTarget(0, ids.back()), i < 36) << i;
    }
    EXPECT_EQ(g_ViewPort.width, 4 + 35);
    EXPECT_TRUE(g_CullingOff);
    for (int i = 35; i >= 0; --i) {
        int32_t width = 0, height = 0;
        Surface_TargetSize(&width, &height);
        EXPECT_EQ(width, 4 + i);
        EXPECT_TRUE(Surface_ResetTarget());
    }
    EXPECT_FALSE(Surface_ResetTarget());
    EXPECT_EQ(g_ViewPort.x, 1);
    EXPECT_EQ(g_ViewPort.height, 40);
    EXPECT_FLOAT_EQ(g_ViewArea.width, 70);
    EXPECT_FLOAT_EQ(g_ViewArea.angle, 90);
    EXPECT_FALSE(g_CullingOff);
    EXPECT_FALSE(Surface_SetTarget(0, 999));
    EXPECT_FALSE(Surface_SetTarget(4, ids[0]));
}

TEST_F(SurfaceTest, WhatIsDrawnGoesToTheTargetOfItsTime)
{
    const int32_t id = Filled(20, 20, 0);
    View_SetWindow();
    Draw_SetColour(0x0000FF);
    Draw_Rectangle(0, 0, 5, 5, false);
    Surface_SetTarget(0, id);
    Draw_SetColour(0x00FF00);
    Draw_Rectangle(10, 10, 15, 15, false);
    Surface_ResetTarget();
    Draw_Rectangle(50, 50, 55, 55, false);
    EXPECT_EQ(BackBuffer(2, 2), kRed);
    EXPECT_EQ(BackBuffer(12, 12), 0xFF000000U);
    EXPECT_EQ(BackBuffer(52, 52), kGreen);
    EXPECT_EQ(SurfacePixel(id, 12, 12), kGreen);
    EXPECT_EQ(SurfacePixel(id, 2, 2), 0U);
    // Drawn onto itself, a surface shows what it held before.
    Surface_SetTarget(0, id);
    Quad_Texture(Surface_Get(id)->texture, -10, -10);
    Surface_ResetTarget();
    EXPECT_EQ(SurfacePixel(id, 2, 2), kGreen);
    EXPECT_EQ(SurfacePixel(id, 12, 12), kGreen);
    EXPECT_EQ(SurfacePixel(id, 8, 8), 0U);
}

TEST_F(SurfaceTest, CopiesAreCutToBothAndKeepTheAlpha)
{
    const int32_t source = Filled(10, 10, 0x40FF0000U), dest = Filled(20, 20, kBlue);
    Call("surface_copy", {static_cast<double>(dest), -4, 15, static_cast<double>(source)});
    EXPECT_EQ(SurfacePixel(dest, 0, 15), 0x40FF0000U);
    EXPECT_EQ(SurfacePixel(dest, 5, 19), 0x40FF0000U);
    EXPECT_EQ(SurfacePixel(dest, 6, 15), kBlue);
    EXPECT_EQ(SurfacePixel(dest, 0, 14), kBlue);
    Surface_Copy(dest, 12, 0, source, 8, -3, 100, 100);
    EXPECT_EQ(SurfacePixel(dest, 13, 3), 0x40FF0000U);
    EXPECT_EQ(SurfacePixel(dest, 14, 3), kBlue);
    EXPECT_EQ(SurfacePixel(dest, 12, 2), kBlue);
    Surface_Copy(dest, 30, 0, source, 0, 0, 10, 10);
    Surface_Copy(dest, INT32_MIN, 0, source, INT32_MAX, 0, INT32_MAX, 10);
    Surface_Copy(dest, 0, 0, dest, 0, 0, 10, 10);
    EXPECT_EQ(SurfacePixel(dest, 19, 0), kBlue);
    EXPECT_EQ(Surface_StackDepth(), 0);
}

TEST_F(SurfaceTest, IdsAreNotUsedAgainAndVanishAtAReset)
{
    const int32_t first = Surface_Create(4, 4);
    Surface_Free(first);
    const int32_t second = Surface_Create(4, 4);
    EXPECT_GT(second, first);
    const int32_t slots = Texture_Count();
    Surface_SetTarget(0, second);
    Surface_LoseAll();
    EXPECT_EQ(Surface_StackDepth(), 0);
    EXPECT_EQ(Call("surface_exists", {static_cast<double>(second)}), 0);
    EXPECT_GT(Surface_Create(4, 4), second);
    EXPECT_EQ(Texture_Count(), slots);  // the slot was free again
}

TEST_F(SurfaceTest, AWaitingTargetCannotBeFreedButTheShownOneCan)
{
    const int32_t below = Filled(8, 8, kRed), above = Filled(8, 8, kBlue);
    Surface_SetTarget(0, below);
    Surface_SetTarget(0, above);
    Surface_Free(below);
    ASSERT_NE(Surface_Get(below), nullptr);
    Surface_Free(above);
    EXPECT_EQ(Surface_Get(above), nullptr);
    EXPECT_TRUE(Surface_ResetTarget());
    EXPECT_TRUE(Surface_ResetTarget());
    Surface_Free(below);
    EXPECT_EQ(Surface_Get(below), nullptr);
}

TEST_F(SurfaceTest, GrabbingPastTheEdgeGivesZerosThere)
{
    const int32_t id = Filled(10, 10, kRed);
    uint32_t* pixels = Surface_Grab(id, -2, 6, 5, 8);
    ASSERT_NE(pixels, nullptr);
    EXPECT_EQ(pixels[0], 0U);
    EXPECT_EQ(pixels[1], 0U);
    EXPECT_EQ(pixels[2], kRed);
    EXPECT_EQ(pixels[3 * 5 + 4], kRed);
    EXPECT_EQ(pixels[4 * 5 + 4], 0U);
    MemoryManager::Free(pixels);
    EXPECT_EQ(Surface_Grab(999, 0, 0, 1, 1), nullptr);
    EXPECT_EQ(Surface_Grab(id, 0, 0, 0, 1), nullptr);
}

TEST_F(SurfaceTest, ScriptsMeetTheStatedErrors)
{
    Call("draw_surface", {77, 0, 0});
    Call("surface_copy", {77, 0, 0, 78});
    EXPECT_EQ(Reports("Trying to use non-existing surface."), 2U);
    EXPECT_EQ(Call("surface_resize", {77, 9, 9}), 0);
    EXPECT_EQ(Reports("Surface does not exist"), 1U);
    EXPECT_EQ(Call("surface_resize", {77, 8193, 9}), 0);
    EXPECT_EQ(Reports("Invalid surface dimensions"), 1U);
    EXPECT_EQ(Call("surface_get_width", {77}), -1);
    EXPECT_EQ(Call("surface_create_ext", {1, 2, 3}), -1);
    Call("draw_sprite", {500, 0, 0, 0});
    EXPECT_EQ(Reports("Trying to draw non-existing sprite."), 1U);
    Call("draw_background", {500, 0, 0});
    EXPECT_EQ(Reports("Trying to draw non-existing background."), 1U);
}

TEST_F(SurfaceTest, ResizingKeepsTheIdAndTheApplicationWaitsForItsFrame)
{
    const int32_t id = Surface_Create(4, 4);
    EXPECT_EQ(Call("surface_resize", {static_cast<double>(id), 30, 20}), 1);
    EXPECT_EQ(Call("surface_get_width", {static_cast<double>(id)}), 30);
    Surface_UpdateApplication();
    const double app = g_AppSurface.appSurfaceId;
    Call("surface_free", {app});
    EXPECT_EQ(Call("surface_exists", {app}), 1);
    EXPECT_EQ(Call("surface_resize", {app, 64, 32}), 1);
    EXPECT_EQ(Call("surface_get_width", {app}), kWidth);
    Surface_UpdateApplication();
    EXPECT_EQ(Call("surface_get_width", {app}), 64);
    EXPECT_EQ(g_AppSurface.appSurfaceId, static_cast<int32_t>(app));
}

TEST_F(SurfaceTest, ASpriteOfASurfaceLivesOnWithoutIt)
{
    const int32_t id = Filled(10, 10, kGreen);
    const double sprite =
        Call("sprite_create_from_surface", {static_cast<double>(id), 0, 0, 6, 4, 0, 0, 3, 2});
    Surface_Free(id);
    EXPECT_EQ(Call("sprite_get_width", {sprite}), 6);
    EXPECT_EQ(Call("sprite_get_number", {sprite}), 1);
    EXPECT_EQ(Call("sprite_get_xoffset", {sprite}), 3);
    View_SetWindow();
    Call("draw_sprite", {sprite, 0, 20, 20});
    EXPECT_EQ(BackBuffer(17, 18), kGreen);
    EXPECT_EQ(BackBuffer(22, 21), kGreen);
    EXPECT_EQ(BackBuffer(23, 20), 0xFF000000U);
    const double copy = Call("sprite_duplicate", {sprite});
    const int32_t slots = Texture_Count();
    EXPECT_EQ(Call("sprite_delete", {sprite}), 1);
    EXPECT_EQ(Call("sprite_exists", {sprite}), 0);
    Call("draw_sprite", {copy, 0, 60, 20});
    EXPECT_EQ(BackBuffer(60, 20), kGreen);
    EXPECT_EQ(Texture_Count(), slots);  // the freed slot serves the copy
    // Without a surface the sprite is there and empty.
    const double empty = Call("sprite_create_from_surface", {999, 0, 0, 6, 4, 0, 0, 0, 0});
    EXPECT_EQ(Call("sprite_exists", {empty}), 1);
    EXPECT_EQ(Call("sprite_get_number", {empty}), 0);
    Call("draw_sprite", {empty, 0, 0, 0});
}

TEST_F(SurfaceTest, TileLayersGoByExactDepthAndHalfOpenBoxes)
{
    AddObject("o", {});
    AddRoom("room");
    Begin();
    const double background = Background_Add(VxNew<CBackground>());
    EXPECT_EQ(Call("tile_add", {background + 1, 0, 0, 8, 8, 0, 0, 5}), -1);
    EXPECT_EQ(Reports("Background does not exist."), 1U);
    const double first = Call("tile_add", {background, 1, 2, 8, 8, 10, 10, 5});
    const double second = Call("tile_add", {background, 0, 0, 8, 8, 30, 10, 5.5});
    EXPECT_EQ(second, first + 1);
    EXPECT_EQ(Call("tile_layer_find", {5, 18, 12}), -1);  // the right edge is outside
    EXPECT_EQ(Call("tile_layer_find", {5, 17, 17}), first);
    Call("tile_layer_delete_at", {5, 18, 12});
    EXPECT_EQ(Call("tile_exists", {first}), 1);
    Call("tile_set_scale", {first, -1, 1});  // from 2 to 10
    EXPECT_EQ(Call("tile_layer_find", {5, 2, 10}), first);
    Call("tile_layer_shift", {5, 100, 0});
    EXPECT_EQ(Call("tile_get_x", {first}), 110);
    EXPECT_EQ(Call("tile_get_x", {second}), 30);
    Call("tile_layer_hide", {5});
    EXPECT_EQ(Call("tile_get_visible", {first}), 0);
    Call("tile_layer_depth", {5.5, 7});
    EXPECT_EQ(Call("tile_get_depth", {second}), 7);
    Call("tile_layer_delete", {7});
    EXPECT_EQ(Call("tile_get_count"), 1);
    Call("tile_delete", {second});
    EXPECT_EQ(Reports("Tile does not exist."), 1U);
}

TEST_F(SurfaceTest, ColoursGoAcrossAndBack)
{
    EXPECT_EQ(Call("make_colour_rgb", {10, 20, 30}), 10 + 20 * 256 + 30 * 65536);
    EXPECT_EQ(Call("colour_get_blue", {0x112233}), 0x11);
    EXPECT_EQ(Call("make_colour_hsv", {0, 255, 255}), 255);
    EXPECT_EQ(Call("make_colour_hsv", {85, 255, 255}), 0x00FF00);
    EXPECT_EQ(Call("make_colour_hsv", {170, 255, 128}), 0x800000);
    EXPECT_EQ(Call("colour_get_hue", {0xFF0000}), 170);
    EXPECT_EQ(Call("colour_get_saturation", {0x808080}), 0);
    EXPECT_EQ(Call("merge_colour", {0, 0xFFFFFF, 0.5}), 0x808080);
    for (const double colour : {0x123456, 0xFEDCBA, 0x0000FF, 0x010203})
        EXPECT_EQ(Call("make_colour_rgb",
                       {Call("colour_get_red", {colour}), Call("colour_get_green", {colour}),
                        Call("colour_get_blue", {colour})}),
                  colour);
    Call("draw_set_blend_mode", {2});
    EXPECT_EQ(GpuState_Get(STATE_DEST_BLEND), static_cast<uint32_t>(DeviceBlend::InvSrcColour));
    Call("draw_set_blend_mode", {9});
    EXPECT_EQ(GpuState_Get(STATE_DEST_BLEND), static_cast<uint32_t>(DeviceBlend::InvSrcAlpha));
    Call("draw_set_colour_write_enable", {1, 0, 0, 1});
    EXPECT_EQ(GpuState_Get(STATE_COLOUR_WRITE), 9U);
    Call("draw_set_colour_write_enable", {1, 1, 1, 1});
    Call("draw_clear_alpha", {0x0000FF, 0.5});
    EXPECT_EQ(BackBuffer(0, 0), 0x7FFF0000U);
    EXPECT_EQ(Call("draw_getpixel", {0, 0}), 0x0000FF);
    EXPECT_EQ(Call("draw_getpixel", {-1, 0}), 0);
}
