// The vertices of each quad operation.

#include <cmath>

#include "tests/Files/Graphics/support_Drawing.h"

namespace {

class QuadTest : public DrawingTest {
protected:
    // A 64 by 64 page; the picture stands at (8, 16) with 20 by 10 pixels, trimmed out
    // of a 40 by 30 image at (5, 7).
    void SetUp() override
    {
        DrawingTest::SetUp();
        Batch_SetMethod(BATCH_MEMORY);
        slot_ = Page(64, 64, kRed);
        entry_ = {8, 16, 20, 10, 5, 7, 20, 10, 40, 30, static_cast<int16_t>(slot_)};
    }
    std::vector<VertexTextured> Flushed()
    {
        Batch_Flush();
        std::vector<VertexTextured> vertices;
        for (const Sent& sent : Draws())
            vertices.insert(vertices.end(), sent.vertices.begin(), sent.vertices.end());
        Log().clear();
        return vertices;
    }
    static void ExpectAt(const VertexTextured& v, double x, double y)
    {
        EXPECT_NEAR(v.x, x, 1e-3);
        EXPECT_NEAR(v.y, y, 1e-3);
        EXPECT_EQ(v.z, 0.0F);
    }
    static void ExpectTexel(const VertexTextured& v, double u, double w)
    {
        EXPECT_NEAR(v.u, u / 64, 1e-6);
        EXPECT_NEAR(v.v, w / 64, 1e-6);
    }
    int32_t slot_ = -1;
    ArchivePageEntry entry_{};
};

}  // namespace

TEST_F(QuadTest, APlainEntryStandsAtItsTrimOffsetUnderTheDrawAlpha)
{
    Draw_SetAlpha(0.5);
    ASSERT_TRUE(Quad_Entry(&entry_, 100, 200));
    const auto v = Flushed();
    ASSERT_EQ(v.size(), 6U);
    ExpectAt(v[0], 105, 207);
    ExpectAt(v[1], 125, 207);
    ExpectAt(v[2], 125, 217);
    ExpectAt(v[4], 105, 217);
    ExpectTexel(v[0], 8, 16);
    ExpectTexel(v[2], 28, 26);
    EXPECT_EQ(v[0].colour, 0x80FFFFFFU);
    ASSERT_TRUE(Quad_Texture(slot_, 3, 4));
    const auto whole = Flushed();
    ExpectAt(whole[2], 67, 68);
    ExpectTexel(whole[2], 64, 64);
}

// A trimmed frame turns about the origin of the untrimmed image.
TEST_F(QuadTest, ATurnedEntryKeepsItsOrigin)
{
    const float quarter = 3.1415927F / 2;
    ASSERT_TRUE(Quad_EntryExt(&entry_, 20, 15, 50, 60, 2, -1, 0, 0x102030, 0.5F));
    auto v = Flushed();
    ExpectAt(v[0], 50 - 30, 60 + 8);
    ExpectAt(v[2], 50 + 10, 60 - 2);
    EXPECT_EQ(v[0].colour, 0x7F302010U);  // the byte of alpha 0.5 is 127
    ASSERT_TRUE(Quad_EntryExt(&entry_, 20, 15, 50, 60, 1, 1, quarter, 0xFFFFFF, 2.0F));
    v = Flushed();
    // Local (-15, -8) turned anticlockwise by a quarter: (-8, 15).
    ExpectAt(v[0], 50 - 8, 60 + 15);
    ExpectAt(v[1], 50 - 8, 60 - 5);
    ExpectAt(v[2], 50 + 2, 60 - 5);
    EXPECT_EQ(v[0].colour >> 24, 255U);
    ASSERT_TRUE(Quad_EntryExt(&entry_, 20, 15, 50, 60, 1, 1, 0.0005F, 0xFFFFFF, 1));
    ExpectAt(Flushed()[0], 35, 52);  // too little a turn to count
}

TEST_F(QuadTest, APartIsCutToThePictureAndMovesByWhatWasCut)
{
    // From inside the margin: 3 columns and 2 rows of it fall away.
    ASSERT_TRUE(Quad_EntryPart(&entry_, 2, 5, 13, 12, 100, 50, 2, 3, 0, 0xFFFFFF, 1));
    auto v = Flushed();
    ASSERT_EQ(v.size(), 6U);
    ExpectAt(v[0], 106, 56);
    ExpectAt(v[4], 106 + 20, 56 + 30);
    ExpectTexel(v[0], 8, 16);
    ExpectTexel(v[4], 18, 26);
    ExpectAt(v[2], 106, 86);  // top left, top right, bottom left, ...
    // Turned by a quarter: what falls away moves it up by 3 * 3 and right by 2 * 2.
    ASSERT_TRUE(Quad_EntryPart(&entry_, 2, 5, 13, 12, 100, 50, 2, 3, 3.1415927F / 2, 0xFFFFFF, 1));
    v = Flushed();
    ExpectAt(v[0], 104, 41);
    ExpectAt(v[1], 104, 41 - 20);
    // Past the right and lower edge of the picture.
    ASSERT_TRUE(Quad_EntryPart(&entry_, 15, 12, 40, 40, 0, 0, 1, 1, 0, 0xFFFFFF, 1));
    v = Flushed();
    ExpectAt(v[4], 10, 5);
    ExpectTexel(v[0], 18, 21);
    ExpectTexel(v[4], 28, 26);
    // Wholly in the margin: nothing, and no failure.
    EXPECT_TRUE(Quad_EntryPart(&entry_, 0, 0, 5, 30, 0, 0, 1, 1, 0, 0xFFFFFF, 1));
    EXPECT_TRUE(Flushed().empty());
}

TEST_F(QuadTest, AGeneralPartCutsByTheSizeAloneAndColoursEachCorner)
{
    const uint32_t colours[4] = {0x0000FF, 0x00FF00, 0xFF0000, 0xFFFFFF};
    ASSERT_TRUE(Quad_EntryGeneral(&entry_, 15, 12, 40, 40, 0, 0, 1, 1, 0, colours, 1));
    auto v = Flushed();
    ExpectAt(v[2], 20, 10);  // left is not taken into account
    ExpectTexel(v[0], 18, 21);
    ExpectTexel(v[2], 38, 31);
    EXPECT_EQ(v[0].colour, 0xFFFF0000U);
    EXPECT_EQ(v[1].colour, 0xFF00FF00U);
    EXPECT_EQ(v[2].colour, 0xFF0000FFU);
    EXPECT_EQ(v[4].colour, 0xFFFFFFFFU);
    g_CornerId = true;
    Quad_TexturePart(slot_, 1, 2, 10, 20, 5, 5, 1, 1, 0, 0, 1);
    v = Flushed();
    g_CornerId = false;
    ExpectAt(v[2], 15, 25);
    ExpectTexel(v[0], 1, 2);
    EXPECT_EQ(v[0].colour, 0xFF000000U);
    EXPECT_EQ(v[1].colour, 0xFF000001U);
    EXPECT_EQ(v[2].colour, 0xFF010000U);
    EXPECT_EQ(v[4].colour, 0xFF010001U);
}

TEST_F(QuadTest, RefusesBadSlotsAndMendsEmptySizes)
{
    EXPECT_FALSE(Quad_Entry(nullptr, 0, 0));
    EXPECT_FALSE(Quad_Texture(-1, 0, 0));
    EXPECT_FALSE(Quad_Texture(99, 0, 0));
    const int32_t freed = Page(4, 4, kBlue);
    Texture_Free(freed);
    ArchivePageEntry gone = Entry(freed, 4);
    EXPECT_FALSE(Quad_EntryExt(&gone, 0, 0, 0, 0, 1, 1, 0, 0, 1));
    entry_.targetWidth = 0;
    EXPECT_TRUE(Quad_EntryExt(&entry_, 0, 0, 0, 0, 1, 1, 0, 0, 1));
    EXPECT_EQ(entry_.targetWidth, 1);
    const float corners[8] = {1, 2, 9, 3, 8, 12, 0, 11};
    Flushed();
    EXPECT_TRUE(Quad_EntryCorners(&entry_, corners, 0xFFFFFF, 1));
    ExpectAt(Flushed()[4], 0, 11);
}

// The whole view is covered, with a spare column and row on each side.
TEST_F(QuadTest, TilesCoverTheViewAtAnyScaleAndShift)
{
    entry_ = Entry(Page(16, 16, kGreen), 16);
    for (const float scale : {1.0F, 0.37F, 2.3F})
        for (const float shift : {-1000.5F, -3.0F, 0.0F, 777.25F}) {
            View_SetArea(13, -7, kWidth, kHeight, 0);
            ASSERT_TRUE(Quad_EntryTiled(&entry_, 0, 0, shift, shift, scale, scale, true, true,
                                        0xFFFFFF, 1));
            float left = 1e9F, top = 1e9F, right = -1e9F, bottom = -1e9F;
            for (const VertexTextured& v : Flushed()) {
                left = std::min(left, v.x);
                top = std::min(top, v.y);
                right = std::max(right, v.x);
                bottom = std::max(bottom, v.y);
            }
            EXPECT_LE(left, 13) << scale << " " << shift;
            EXPECT_LE(top, -7);
            EXPECT_GE(right, 13 + kWidth) << scale << " " << shift;
            EXPECT_GE(bottom, -7 + kHeight);
            // Tiles stand on the grid that the shift names.
            const double steps = (left - shift) / (16.0 * static_cast<double>(scale));
            EXPECT_NEAR(steps, std::round(steps), 1e-2);
        }
    EXPECT_FALSE(Quad_EntryTiled(&entry_, 0, 0, 0, 0, 0, 1, true, true, 0, 1));
}

TEST_F(QuadTest, AllTilesOfALargeFieldAreSentInPieces)
{
    entry_ = Entry(Page(1, 1, kGreen), 1);
    View_SetArea(0, 0, 200, 100, 0);
    ASSERT_TRUE(Quad_EntryTiled(&entry_, 0, 0, 0, 0, 1, 1, true, true, 0xFFFFFF, 1));
    // 202 by 102 tiles of 6 vertices, in pieces of at most 65532.
    Batch_Flush();
    int32_t vertices = 0;
    for (const Sent& sent : Draws()) {
        EXPECT_LE(sent.b, 65536);
        vertices += sent.b;
    }
    EXPECT_EQ(vertices, 202 * 102 * 6);
}

TEST_F(QuadTest, PixelTilesAreFansFromTheAreasEdgeOn)
{
    const int32_t slot = Page(30, 30, kBlue);
    View_SetArea(5, 5, kWidth, kHeight, 0);
    ASSERT_TRUE(Quad_TextureTiled(slot, 0, 0, 47.4F, 61, 1, 1, true, false, 0xFFFFFF, 1));
    Batch_Flush();
    const auto draws = Draws();
    ASSERT_EQ(draws.size(), 4U);  // from -13 in steps of 30, up to the right edge at 105
    EXPECT_EQ(draws[0].a, PRIMITIVE_TRIANGLE_FAN);
    ExpectAt(draws[0].vertices[0], -13, 61);
    ExpectAt(draws[3].vertices[2], 107, 91);
}

TEST_F(QuadTest, ARectangleReachesOnePixelPastItsFarCorner)
{
    Draw_Rectangle(20, 30, 10, 12, false);
    const auto v = Flushed();
    ASSERT_EQ(v.size(), 6U);
    ExpectAt(v[0], 10, 12);
    ExpectAt(v[2], 21, 31);
    Draw_Rectangle(2, 2, 9, 9, true);
    Batch_Flush();
    ASSERT_EQ(Draws().size(), 2U);
    EXPECT_EQ(Draws()[0].a, PRIMITIVE_LINE_STRIP);
    EXPECT_EQ(Draws()[0].b, 5);
    EXPECT_EQ(Draws()[1].b, 4);
}

TEST_F(QuadTest, DrawStateClampsAndKeepsItsAlpha)
{
    Draw_SetAlpha(1.5);
    EXPECT_EQ(drawAlpha, 255);
    Draw_SetAlpha(-1);
    EXPECT_EQ(drawAlpha, 0);
    Draw_SetAlpha(0.5);
    EXPECT_EQ(drawAlpha, 128);
    Draw_SetColour(0x112233);
    EXPECT_EQ(drawColourARGB, 0x80332211U);
    EXPECT_EQ(Draw_GetColour(), 0x112233U);
    for (const auto& [asked, kept] : {std::pair{30, 28}, {2, 4}, {100, 64}}) {
        Draw_SetCirclePrecision(asked);
        EXPECT_EQ(circlePrecision, kept);
        Draw_Ellipse(0, 0, 10, 10, kRed, kBlue, false);
        EXPECT_EQ(static_cast<int32_t>(Flushed().size()), kept * 3);
    }
    Primitive_Begin(PRIMITIVE_TRIANGLES, -1);
    for (int i = 0; i < 1005; ++i) Primitive_Vertex(static_cast<float>(i), 0, 0, 0, kRed);
    Primitive_End();
    EXPECT_EQ(Flushed().size(), 999U);
    Primitive_Begin(7, -1);
    Primitive_Vertex(0, 0, 0, 0, kRed);
    Primitive_End();
    EXPECT_TRUE(Flushed().empty());
}
