// The soft device by bytes: coverage, filters, blends, tests, targets and copies,
// and its vector loops against their plain twins.
#include "Files/Graphics_API/Device_Soft.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <memory>

#include "Files/Graphics_API/Soft_Kernels.h"
#include "Host/Host.h"
#include "Platform/MemoryManager.h"
#include "tests/Files/Graphics_API/Device_Scene.h"

namespace {

constexpr uint32_t kBlack = 0xFF000000, kWhite = 0xFFFFFFFF;
const DeviceTable& g_soft = Device_Soft;

class SoftDevice : public testing::Test {
protected:
    void SetUp() override { Host_UseStage(); }
    void TearDown() override { Device_Soft_SetVector(true); }
};

// Pixels of a picture that are not black, as rows of '#' and '.'.
std::string Shape(Scene& scene, int32_t width, int32_t height)
{
    std::string text;
    for (int32_t y = 0; y < height; y++) {
        for (int32_t x = 0; x < width; x++) text += scene.Pixel(x, y) == kBlack ? '.' : '#';
        text += '\n';
    }
    return text;
}

TEST_F(SoftDevice, WholePositionsCoverTheirPixels)
{
    Scene scene(g_soft, 8, 5);
    scene.Rect(2, 1, 5, 4);
    EXPECT_EQ(Shape(scene, 8, 5),
              "........\n"
              "..###...\n"
              "..###...\n"
              "..###...\n"
              "........\n");
}

TEST_F(SoftDevice, EdgesOnCentresAreInAtTopAndLeftOnly)
{
    Scene scene(g_soft, 6, 6);
    scene.Rect(1.5, 1.5, 4.5, 3.5);
    EXPECT_EQ(Shape(scene, 6, 6), "......\n.###..\n.###..\n......\n......\n......\n");
    g_soft.Clear(CLEAR_COLOUR, kBlack, 1, 0);
    // The same outline as two triangles that the rectangle path does not take.
    scene.Send(DevicePrimitive::TriangleList, {At(1.5, 1.5), At(4.5, 1.5), At(4.5, 3.5),
                                               At(1.5, 3.5), At(1.5, 1.5), At(4.5, 3.5)});
    EXPECT_EQ(Shape(scene, 6, 6), "......\n.###..\n.###..\n......\n......\n......\n");
}

// A fan around an odd centre: each pixel of the square once, although all inner
// edges are shared, and also with a centre on pixel centres.
TEST_F(SoftDevice, TrianglesThatShareEdgesCoverEachPixelOnce)
{
    for (const double centre : {31.37, 30.5, 32.0}) {
        Scene scene(g_soft, 64, 64);
        scene.Blend(DeviceBlend::One, DeviceBlend::One);
        std::vector<VertexTextured> fan = {At(centre, centre + 1, 0x01010101)};
        for (int32_t i = 0; i <= 37; i++) {
            const double angle = i * 6.283185307179586 / 37;
            fan.push_back(At(32 + 90 * std::cos(i == 37 ? 0 : angle),
                             32 + 90 * std::sin(i == 37 ? 0 : angle), 0x01010101));
        }
        scene.Send(DevicePrimitive::TriangleFan, fan);
        for (uint32_t pixel : scene.Read()) ASSERT_EQ(pixel & 0xFFFFFF, 0x010101U) << centre;
    }
}

TEST_F(SoftDevice, LinesLeaveOutTheirLastPixelAndPointsHaveOne)
{
    Scene scene(g_soft, 8, 6);
    // A vertex on whole coordinates stands for the pixel before it.
    scene.Send(DevicePrimitive::LineList, {At(2, 2), At(6, 2)});
    scene.Send(DevicePrimitive::LineList, {At(6, 4), At(2, 4)});
    scene.Send(DevicePrimitive::PointList, {At(8, 6)});
    EXPECT_EQ(Shape(scene, 8, 6),
              "........\n"
              ".####...\n"
              "........\n"
              "..####..\n"
              "........\n"
              ".......#\n");
}

TEST_F(SoftDevice, ALineStripMeetsWithoutDoublePixels)
{
    Scene scene(g_soft, 10, 10);
    scene.Blend(DeviceBlend::One, DeviceBlend::One);
    const uint32_t dim = 0x10101010;
    scene.Send(DevicePrimitive::LineStrip,
               {At(2, 2, dim), At(9, 2, dim), At(9, 9, dim), At(2, 9, dim), At(2, 2, dim)});
    const Pixels pixels = scene.Read();
    EXPECT_EQ(std::count(pixels.begin(), pixels.end(), 0xFF101010), 28);
    EXPECT_EQ(std::count(pixels.begin(), pixels.end(), kBlack), 72);
    g_soft.Clear(CLEAR_COLOUR, kBlack, 1, 0);
    scene.Send(DevicePrimitive::LineList, {At(1, 1), At(10, 4)});  // one pixel for each column
    const Pixels slope = scene.Read();
    for (size_t x = 0; x < 9; x++) {
        int32_t count = 0;
        for (size_t y = 0; y < 10; y++) count += slope[y * 10 + x] != kBlack;
        EXPECT_EQ(count, 1) << x;
    }
}

TEST_F(SoftDevice, BlendModesByTheirSums)
{
    Scene scene(g_soft, 1, 1);
    const auto blend = [&](DeviceBlend source, DeviceBlend dest) {
        g_soft.Clear(CLEAR_COLOUR, 0x80646464, 1, 0);
        scene.Blend(source, dest);
        scene.Rect(0, 0, 1, 1, 0x40C80A64);
        return scene.Pixel(0, 0);
    };
    using B = DeviceBlend;
    // 64/255 of the source; for each channel round(s * f + d * g).
    EXPECT_EQ(blend(B::SrcAlpha, B::InvSrcAlpha), 0x707D4D64U);
    EXPECT_EQ(blend(B::SrcAlpha, B::One), 0x9096677DU);
    EXPECT_EQ(blend(B::SrcAlpha, B::InvSrcColour), 0x70486356U);
    EXPECT_EQ(blend(B::Zero, B::InvSrcColour), 0x6016603DU);
    EXPECT_EQ(blend(B::One, B::Zero), 0x40C80A64U);
    EXPECT_EQ(blend(B::DestColour, B::Zero), 0x204E0427U);
    EXPECT_EQ(blend(B::SrcAlphaSat, B::One), 0xC096677DU);
    EXPECT_EQ(blend(B::One, B::One), 0xC0FF6EC8U);
    EXPECT_EQ(blend(B::InvDestAlpha, B::DestAlpha), 0x60963764U);
    scene.State(STATE_ALPHA_BLEND, 0);
    EXPECT_EQ(blend(B::SrcAlpha, B::InvSrcAlpha), 0x40C80A64U);
}

TEST_F(SoftDevice, ColourMaskAndAlphaTestKeepTheRest)
{
    Scene scene(g_soft, 2, 1);
    scene.State(STATE_ALPHA_BLEND, 0);
    scene.State(STATE_COLOUR_WRITE, 1 | 8);  // red and alpha
    scene.Rect(0, 0, 2, 1, 0x11223344);
    EXPECT_EQ(scene.Pixel(0, 0), 0x11220000U);
    scene.State(STATE_COLOUR_WRITE, 15);
    scene.State(STATE_ALPHA_TEST, 1);
    scene.State(STATE_ALPHA_REF, 0x40);
    g_soft.SetTexture(0, scene.Texture(2, 1, {0x40AAAAAA, 0x41BBBBBB}));
    scene.Filter(false, true);
    scene.Rect(0, 0, 2, 1);
    EXPECT_EQ(scene.Pixel(0, 0), 0x11220000U);  // not above the reference
    EXPECT_EQ(scene.Pixel(1, 0), 0x41BBBBBBU);
    scene.State(STATE_ALPHA_FUNC, static_cast<uint32_t>(DeviceCompare::LessEqual));
    scene.Rect(0, 0, 2, 1);
    EXPECT_EQ(scene.Pixel(0, 0), 0x40AAAAAAU);
}

TEST_F(SoftDevice, FiltersAndAddressModes)
{
    Scene scene(g_soft, 8, 1);
    scene.State(STATE_ALPHA_BLEND, 0);
    g_soft.SetTexture(0, scene.Texture(2, 1, {0xFF000000, 0xFF0000FF}));
    const auto row = [&](bool linear, bool clamp) {
        scene.Filter(linear, clamp);
        scene.Rect(0, 0, 8, 1, kWhite, -0.5, 0, 1.5, 1);  // half a texel each pixel
        std::vector<uint32_t> blue;
        for (uint32_t pixel : scene.Read()) blue.push_back(pixel & 255);
        return blue;
    };
    using Row = std::vector<uint32_t>;
    EXPECT_EQ(row(false, true), Row({0, 0, 0, 0, 255, 255, 255, 255}));
    EXPECT_EQ(row(false, false), Row({255, 255, 0, 0, 255, 255, 0, 0}));
    EXPECT_EQ(row(true, true), Row({0, 0, 0, 64, 191, 255, 255, 255}));
    EXPECT_EQ(row(true, false), Row({191, 191, 64, 64, 191, 191, 64, 64}));
}

// Linear filtering at scale 1 on whole positions must not soften a picture, also when
// the texture's size is no power of two and 1 / size is no exact float.
TEST_F(SoftDevice, OneToOneIsExactUnderTheLinearFilter)
{
    for (const int32_t size : {13, 64, 427}) {
        Scene scene(g_soft, size + 3, size + 2);
        scene.State(STATE_ALPHA_BLEND, 0);
        scene.Filter(true, true);
        const Pixels noise = Noise(size, size, 5);
        g_soft.SetTexture(0, scene.Texture(size, size, noise));
        const float one = static_cast<float>(size) * (1.0F / static_cast<float>(size));
        scene.Rect(3, 2, size + 3, size + 2, kWhite, 0, 0, one, one);
        for (int32_t y = 0; y < size; y++)
            for (int32_t x = 0; x < size; x++)
                ASSERT_EQ(scene.Pixel(x + 3, y + 2), noise[static_cast<size_t>(y * size + x)]);
    }
}

// The same square through the rectangle path and, with a culling mode that lets both
// triangles pass, through the general one.
TEST_F(SoftDevice, RectanglesEqualTheirTriangles)
{
    for (uint32_t seed = 1; seed <= 40; seed++) {
        std::mt19937 random(seed);
        const auto real = [&](double low, double high) {
            return low + (high - low) * static_cast<double>(random()) / 4294967296.0;
        };
        Scene scene(g_soft, 90, 70);
        g_soft.SetTexture(0, scene.Texture(23, 17, Noise(23, 17, seed)));
        scene.Filter(seed & 1, seed & 2);
        const double x = real(-9, 40), y = real(-9, 40), u = real(-1, 0.6);
        const auto draw = [&](DeviceCull cull) {
            g_soft.Clear(CLEAR_COLOUR, 0xFF123456, 1, 0);
            scene.State(STATE_CULL_MODE, static_cast<uint32_t>(cull));
            scene.Rect(x, y, x + 61.7 - seed, y + 40.1, 0xE0FF80C0, u, 0.1, 1.1, 0.9);
            return scene.Read();
        };
        EXPECT_EQ(draw(DeviceCull::None), draw(DeviceCull::CounterClockwise)) << seed;
    }
}

// Exactly twice the size has a loop of its own, which must not be seen: whole and cut,
// with borders that repeat or stop, at odd places, tinted and as a plain copy.
TEST_F(SoftDevice, TwiceTheSizeEqualsItsTriangles)
{
    for (int32_t kind = 0; kind < 16; kind++) {
        Scene scene(g_soft, 70, 60);
        scene.Filter(true, kind & 1);
        scene.State(STATE_ALPHA_BLEND, kind & 2 ? 1 : 0);
        g_soft.SetTexture(0, scene.Texture(32, 16, Noise(32, 16, 3)));
        const double x = kind & 4 ? -13 : 3, u = kind & 8 ? -0.25 : 0;
        const auto draw = [&](DeviceCull cull) {
            g_soft.Clear(CLEAR_COLOUR, 0xFF123456, 1, 0);
            scene.State(STATE_CULL_MODE, static_cast<uint32_t>(cull));
            scene.Rect(x, 5, x + 64, 37, kind & 8 ? 0xC0FF80FF : kWhite, u, u, u + 1, u + 1);
            return scene.Read();
        };
        EXPECT_EQ(draw(DeviceCull::None), draw(DeviceCull::CounterClockwise)) << kind;
    }
}

// A picture with clear margins, whose clear texels have a colour all the same.
Pixels Island(int32_t size, int32_t left, int32_t top, int32_t right, int32_t bottom, uint32_t seed)
{
    Pixels pixels = Noise(size, size, seed);
    for (int32_t y = 0; y < size; y++)
        for (int32_t x = 0; x < size; x++)
            if (x < left || x >= right || y < top || y >= bottom)
                pixels[static_cast<size_t>(y * size + x)] &= 0x00FFFFFF;
    return pixels;
}

// Turned quads, small and large, some at a right angle, some beyond the target's edges:
// as six vertices each, or as the same two triangles in a strip.
void TurnedQuads(Scene& scene, uint32_t seed, bool strips = false)
{
    std::mt19937 random(seed);
    const auto real = [&](double low, double high) {
        return low + (high - low) * static_cast<double>(random()) / 4294967296.0;
    };
    for (int32_t i = 0; i < 24; i++) {
        const double x = real(-5, 95), y = real(-5, 85), half = i % 3 ? real(3, 12) : real(12, 70);
        const double angle = i % 5 ? real(0, 6.28) : 1.5707963 * (i % 4);
        const double far = seed % 4 == 3 ? 1.3 : 1, near = 1 - far;  // beyond the texture
        const auto corner = [&](double right, double down) {
            const double px = (right * 2 - 1) * half, py = (down * 2 - 1) * half;
            return At(x + std::cos(angle) * px + std::sin(angle) * py,
                      y - std::sin(angle) * px + std::cos(angle) * py, i % 2 ? 0x66C0C0C0 : kWhite,
                      right > 0 ? far : near, down > 0 ? far : near);
        };
        const VertexTextured a = corner(0, 0), b = corner(1, 0), c = corner(1, 1), d = corner(0, 1);
        if (strips)
            scene.Send(DevicePrimitive::TriangleStrip, {a, b, d, c});
        else
            scene.Send(DevicePrimitive::TriangleList, {a, b, d, b, c, d});
    }
}

TEST_F(SoftDevice, QuadsEqualTheirTriangles)
{
    for (uint32_t seed = 0; seed < 40; seed++) {
        Pixels pictures[2];
        for (int32_t way = 0; way < 2; way++) {
            Scene scene(g_soft, 90, 80);
            g_soft.SetTexture(0, scene.Texture(23, 17, Noise(23, 17, seed)));
            scene.Filter(seed & 1, seed & 2);
            g_soft.SetViewport(11, 7, 60, 50);
            scene.Project(60, 50);
            TurnedQuads(scene, seed, way == 1);
            pictures[way] = scene.Read();
        }
        ASSERT_EQ(pictures[0], pictures[1]) << seed;
    }
}

// What is clear around a picture is passed over, which must not be seen: a target with
// the same texels, of which nothing is known, gives the same bytes, in every filling.
TEST_F(SoftDevice, ClearMarginsArePassedOverUnseen)
{
    constexpr DeviceBlend kDest[] = {DeviceBlend::InvSrcAlpha, DeviceBlend::One,
                                     DeviceBlend::InvSrcColour, DeviceBlend::InvSrcAlpha};
    const DeviceRect islands[] = {{4, 28, 60, 36}, {2, 2, 62, 62},  {1, 0, 64, 63}, {0, 20, 3, 64},
                                  {30, 5, 33, 58}, {63, 0, 64, 64}, {9, 9, 9, 9},   {0, 0, 64, 64}};
    for (uint32_t seed = 0; seed < 64; seed++) {
        const DeviceRect& island = islands[seed % 8];
        const Pixels texels =
            Island(64, island.left, island.top, island.right, island.bottom, seed);
        std::vector<Pixels> pictures;
        for (int32_t way = 0; way < 4; way++) {
            Device_Soft_SetVector(way & 1);
            Scene scene(g_soft, 90, 80);
            DeviceTexture* target = scene.Target(64, 64);
            g_soft.UpdateTexture(target, {0, 0, 64, 64}, texels.data(), 64 * 4);
            g_soft.SetTexture(0, way & 2 ? target : scene.Texture(64, 64, texels));
            scene.Filter(seed % 3 != 0, seed & 8);
            scene.Blend(DeviceBlend::SrcAlpha, kDest[seed / 8 % 4]);
            if (seed / 32 == 1) g_soft.SetModulate(seed & 1);
            scene.State(STATE_ALPHA_TEST, seed % 7 == 0);
            g_soft.Clear(CLEAR_COLOUR, 0x90305070, 1, 0);
            TurnedQuads(scene, seed);
            pictures.push_back(scene.Read());
        }
        for (size_t way = 1; way < 4; way++) ASSERT_EQ(pictures[0], pictures[way]) << seed;
    }
}

TEST_F(SoftDevice, WhatIsWrittenIntoAClearMarginIsSeen)
{
    for (int32_t way = 0; way < 3; way++) {
        Scene scene(g_soft, 40, 40);
        const Pixels clear(16 * 16, 0), dot = {kWhite};
        Pixels island = clear;
        island[8 * 16 + 8] = 0xFF0000FF;
        DeviceTexture* texture = scene.Texture(16, 16, island);
        scene.Filter(false, true);
        g_soft.SetTexture(0, texture);
        if (way == 0) g_soft.UpdateTexture(texture, {2, 3, 3, 4}, dot.data(), 4);
        if (way == 1)
            g_soft.StretchRect(scene.Texture(1, 1, dot), {0, 0, 1, 1}, texture, {2, 3, 3, 4},
                               false);
        if (way == 2) {
            g_soft.UpdateTexture(texture, {0, 0, 16, 16}, clear.data(), 64);
            g_soft.UpdateTexture(texture, {2, 3, 3, 4}, dot.data(), 4);
        }
        // Turned by a right angle, and a hair more, at twice the size.
        const VertexTextured a = At(36, 4), b = At(36.1, 36, kWhite, 1, 0),
                             c = At(4.1, 36.1, kWhite, 1, 1), d = At(4, 4.1, kWhite, 0, 1);
        scene.Send(DevicePrimitive::TriangleList, {a, b, c, c, d, a});
        EXPECT_EQ(scene.Pixel(36 - 7, 4 + 5), kWhite) << way;
        EXPECT_EQ(scene.Pixel(36 - 17, 4 + 17), way == 2 ? kBlack : 0xFF0000FF) << way;
    }
}

TEST_F(SoftDevice, CullingTakesOneTurn)
{
    Scene scene(g_soft, 4, 4);
    scene.State(STATE_CULL_MODE, static_cast<uint32_t>(DeviceCull::Clockwise));
    scene.Rect(0, 0, 4, 4);
    EXPECT_EQ(scene.Pixel(1, 1), kBlack);
    scene.Rect(4, 0, 0, 4);
    EXPECT_EQ(scene.Pixel(1, 1), kWhite);
}

TEST_F(SoftDevice, ColoursRunBetweenCorners)
{
    Scene scene(g_soft, 256, 2);
    scene.Send(DevicePrimitive::TriangleStrip, {At(0, 0, 0xFF000000), At(256, 0, 0xFFFF8000),
                                                At(0, 2, 0xFF000000), At(256, 2, 0xFFFF8000)});
    for (int32_t x = 0; x < 256; x++) {
        const uint32_t red = (scene.Pixel(x, 1) >> 16) & 255;
        EXPECT_NEAR(red, (x + 0.5) * 255 / 256, 0.51) << x;
        EXPECT_EQ(scene.Pixel(x, 0), scene.Pixel(x, 1));
    }
}

TEST_F(SoftDevice, TheViewportCutsAndPlaces)
{
    Scene scene(g_soft, 8, 8);
    g_soft.SetViewport(2, 3, 4, 2);
    scene.Project(4, 2);
    scene.Rect(-50, -50, 50, 50);
    EXPECT_EQ(Shape(scene, 8, 8),
              "........\n........\n........\n..####..\n..####..\n........\n........\n........\n");
    g_soft.Clear(CLEAR_COLOUR, 0xFF00FF00, 1, 0);
    EXPECT_EQ(scene.Pixel(0, 0), 0xFF00FF00U);  // clearing is not cut
    g_soft.SetViewport(-4, 0, 8, 8);  // partly outside: nothing beyond the target is touched
    scene.Project(8, 8);
    scene.Rect(0, 0, 8, 8, 0xFFFF0000);
    EXPECT_EQ(scene.Pixel(3, 7), 0xFFFF0000U);
    EXPECT_EQ(scene.Pixel(4, 7), 0xFF00FF00U);
}

// Far away vertices are clipped, not wrapped; broken numbers draw nothing.
TEST_F(SoftDevice, HugeAndBrokenVertices)
{
    Scene scene(g_soft, 16, 16);
    scene.Send(DevicePrimitive::TriangleList, {At(-1e9, -1e9), At(3e9, -1e9), At(-1e9, 3e9)});
    for (uint32_t pixel : scene.Read()) ASSERT_EQ(pixel, kWhite);
    g_soft.Clear(CLEAR_COLOUR, kBlack, 1, 0);
    scene.Send(DevicePrimitive::LineList, {At(-1e7, 8), At(1e7, 8)});
    for (int32_t x = 0; x < 16; x++) EXPECT_EQ(scene.Pixel(x, 7), kWhite);
    g_soft.Clear(CLEAR_COLOUR, kBlack, 1, 0);
    const double nan = std::nan(""), inf = HUGE_VAL;
    scene.Send(DevicePrimitive::TriangleList, {At(nan, 0), At(9, 0), At(0, 9)});
    scene.Send(DevicePrimitive::TriangleList, {At(0, 0), At(inf, 0), At(0, 9)});
    scene.Rect(0, 0, inf, 9);
    for (uint32_t pixel : scene.Read()) ASSERT_EQ(pixel, kBlack);
    // Texture coordinates of any size address some texel.
    g_soft.SetTexture(0, scene.Texture(1, 2, {0xFF00FF00, 0xFF00FF00}));
    for (int32_t mode = 0; mode < 4; mode++) {
        scene.Filter(mode & 1, mode & 2);
        scene.Rect(0, 0, 16, 16, kWhite, nan, -inf, 1e30, 1e30);
        scene.Send(DevicePrimitive::TriangleList,
                   {At(0, 0, kWhite, -1e30, 0), At(16, 0, kWhite, 7e9, -1e20), At(0, 16)});
        EXPECT_EQ(scene.Pixel(3, 3), 0xFF00FF00U);
    }
}

TEST_F(SoftDevice, StretchCopiesExactlyAndFiltersInsideItsRectangle)
{
    Scene scene(g_soft, 16, 16);
    const Pixels noise = Noise(16, 16, 9);
    DeviceTexture* source = scene.Texture(16, 16, noise);
    DeviceTexture* dest = scene.Target(16, 16);
    g_soft.StretchRect(source, {0, 0, 16, 16}, dest, {0, 0, 16, 16}, true);
    EXPECT_EQ(scene.Read(dest), noise);
    g_soft.StretchRect(source, {4, 4, 6, 6}, nullptr, {0, 0, 8, 8}, true);
    EXPECT_EQ(scene.Pixel(0, 0), noise[4 * 16 + 4]);
    EXPECT_EQ(scene.Pixel(7, 7), noise[5 * 16 + 5]);
    g_soft.StretchRect(source, {4, 4, 6, 6}, nullptr, {0, 0, 8, 8}, false);
    EXPECT_EQ(scene.Pixel(3, 4), noise[5 * 16 + 4]);
    // Onto itself, overlapping: as if from a copy.
    g_soft.StretchRect(dest, {0, 0, 15, 15}, dest, {1, 1, 16, 16}, false);
    const Pixels moved = scene.Read(dest);
    for (size_t y = 1; y < 16; y++)
        for (size_t x = 1; x < 16; x++) ASSERT_EQ(moved[y * 16 + x], noise[y * 16 + x - 17]);
    EXPECT_FALSE(g_soft.StretchRect(source, {0, 0, 17, 16}, dest, {0, 0, 16, 16}, true));
}

// A texture drawn into itself is sampled as it was before the call.
TEST_F(SoftDevice, ATargetCanBeItsOwnTexture)
{
    Scene scene(g_soft, 8, 1);
    DeviceTexture* target = scene.Target(8, 1);
    const Pixels row = {1, 2, 3, 4, 5, 6, 7, 8};
    g_soft.UpdateTexture(target, {0, 0, 8, 1}, row.data(), 32);
    g_soft.SetTarget(0, target);
    g_soft.SetTexture(0, target);
    scene.Filter(false, true);
    scene.State(STATE_ALPHA_BLEND, 0);
    scene.Rect(1, 0, 8, 1, kWhite, 0, 0, 7.0 / 8, 1);
    EXPECT_EQ(scene.Read(target), Pixels({1, 1, 2, 3, 4, 5, 6, 7}));
}

TEST_F(SoftDevice, ClearReachesAllTargetsAndResetForgetsThem)
{
    Scene scene(g_soft, 4, 4);
    DeviceTexture* targets[3] = {scene.Target(4, 4), scene.Target(4, 4), scene.Target(4, 4)};
    for (int32_t i = 0; i < 3; i++) g_soft.SetTarget(i, targets[i]);
    g_soft.Clear(CLEAR_COLOUR, 0x12345678, 1, 0);
    for (DeviceTexture* target : targets) EXPECT_EQ(scene.Read(target)[15], 0x12345678U);
    EXPECT_EQ(scene.Pixel(0, 0), kBlack);
    EXPECT_EQ(g_soft.Counts().textures, 3);
    ASSERT_TRUE(g_soft.Reset({6, 5, false, 0, 0}));
    EXPECT_EQ(scene.Read(targets[1])[15], 0U);
    int32_t width = 0, height = 0;
    ASSERT_NE(Device_Soft_BackBuffer(&width, &height), nullptr);
    EXPECT_EQ(width * 10 + height, 65);
    EXPECT_FALSE(g_soft.Reset({0, 5, false, 0, 0}));
    EXPECT_FALSE(g_soft.Reset({20000, 5, false, 0, 0}));
}

TEST_F(SoftDevice, DepthAndStencilDecide)
{
    Scene scene(g_soft, 4, 1);
    scene.State(STATE_Z_ENABLE, 1);
    const auto rect = [&](double x0, double x1, float z, uint32_t colour) {
        std::vector<VertexTextured> v = {At(x0, 0, colour), At(x1, 0, colour), At(x1, 1, colour),
                                         At(x0, 1, colour)};
        for (VertexTextured& vertex : v) vertex.z = z;
        scene.Send(DevicePrimitive::TriangleFan, v);
    };
    rect(0, 2, 100, 0xFF0000FF);
    rect(0, 4, 200, 0xFFFF0000);
    EXPECT_EQ(scene.Read(), Pixels({0xFF0000FF, 0xFF0000FF, 0xFFFF0000, 0xFFFF0000}));
    rect(1, 3, -300, 0xFF00FF00);
    EXPECT_EQ(scene.Read(), Pixels({0xFF0000FF, 0xFF00FF00, 0xFF00FF00, 0xFFFF0000}));
    scene.State(STATE_Z_ENABLE, 0);
    scene.State(STATE_STENCIL_ENABLE, 1);
    scene.State(STATE_STENCIL_REF, 7);
    scene.State(STATE_STENCIL_PASS, static_cast<uint32_t>(DeviceStencil::Replace));
    rect(0, 1, 0, kWhite);
    scene.State(STATE_STENCIL_FUNC, static_cast<uint32_t>(DeviceCompare::Equal));
    scene.State(STATE_STENCIL_PASS, static_cast<uint32_t>(DeviceStencil::Keep));
    rect(0, 4, 0, 0xFF112233);
    EXPECT_EQ(scene.Read(), Pixels({0xFF112233, 0xFF00FF00, 0xFF00FF00, 0xFFFF0000}));
}

TEST_F(SoftDevice, TexturesOfFourBitsAndBufferedVertices)
{
    Scene scene(g_soft, 2, 1);
    DeviceTexture* texture = g_soft.CreateTexture(2, 1, DeviceFormat::Argb4444, false, false);
    const uint16_t words[2] = {0xF12A, 0x8FFF};
    ASSERT_TRUE(g_soft.UpdateTexture(texture, {0, 0, 2, 1}, words, 4));
    EXPECT_FALSE(g_soft.UpdateTexture(texture, {0, 0, 3, 1}, words, 4));
    g_soft.SetTexture(0, texture);
    scene.Filter(false, true);
    scene.State(STATE_ALPHA_BLEND, 0);
    DeviceBuffer* buffer = g_soft.CreateBuffer(24 * 8, true);
    EXPECT_EQ(g_soft.LockBuffer(buffer, 24, 24 * 8, DeviceLock::Discard), nullptr);
    void* place = g_soft.LockBuffer(buffer, 48, 24 * 4, DeviceLock::NoOverwrite);
    const VertexTextured fan[4] = {At(0, 0), At(2, 0, kWhite, 1, 0), At(2, 1, kWhite, 1, 1),
                                   At(0, 1, kWhite, 0, 1)};
    std::memcpy(place, fan, sizeof(fan));
    g_soft.UnlockBuffer(buffer);
    g_soft.Draw(DevicePrimitive::TriangleFan, 24, buffer, 48, 7);  // more than the buffer holds
    EXPECT_EQ(scene.Pixel(0, 0), kBlack);
    g_soft.Draw(DevicePrimitive::TriangleFan, 24, buffer, 48, 4);
    EXPECT_EQ(scene.Pixel(0, 0), 0xFF1122AAU);
    EXPECT_EQ(scene.Pixel(1, 0), 0x88FFFFFFU);
    g_soft.FreeTexture(texture);
    g_soft.FreeBuffer(buffer);
}

TEST_F(SoftDevice, ScenesAreTheSameInEveryFilling)
{
    for (uint32_t seed = 0; seed < 60; seed++) {
        Pixels pictures[2];
        for (int32_t i = 0; i < 2; i++) {
            Device_Soft_SetVector(i == 1);
            Scene scene(g_soft, 101, 67);
            scene.Random(seed);
            pictures[i] = scene.Read();
        }
        ASSERT_EQ(pictures[0], pictures[1]) << seed;
    }
}

// One number signs the pictures of many scenes: it is the same on every machine, with
// every compiler and at every level of optimisation. A change of a rule alters it.
TEST_F(SoftDevice, PicturesAreSignedByOneNumber)
{
    uint64_t hash = 14695981039346656037U;
    for (uint32_t seed = 100; seed < 130; seed++) {
        Scene scene(g_soft, 120, 90);
        scene.Random(seed);
        for (uint32_t pixel : scene.Read()) hash = (hash ^ pixel) * 1099511628211U;
    }
    EXPECT_EQ(hash, 1588685220645810909U);
}

TEST_F(SoftDevice, AFrameAllocatesNothing)
{
    Scene scene(g_soft, 64, 64);
    DeviceTexture* target = scene.Target(64, 64);
    g_soft.SetTexture(0, target);
    g_soft.SetTarget(0, target);
    uint64_t calls = 0;
    for (int32_t frame = 0; frame < 3; frame++) {
        calls = MemoryManager::GetStats().calls;
        const VertexTextured fan[4] = {At(0, 0), At(64, 0, kWhite, 1, 0), At(64, 64, kWhite, 1, 1),
                                       At(0, 64, kWhite, 0, 1)};
        g_soft.DrawUp(DevicePrimitive::TriangleFan, 24, fan, 4);
        g_soft.StretchRect(target, {0, 0, 64, 64}, nullptr, {3, 3, 50, 60}, true);
        g_soft.Present();
    }
    EXPECT_EQ(MemoryManager::GetStats().calls, calls);
}

// Every pair of channel and alpha through each loop, at run lengths that leave tails.
TEST(SoftKernelsTest, VectorLoopsEqualTheirTwins)
{
    std::vector<uint32_t> source, dest;
    for (uint32_t s = 0; s < 256; s++) {
        for (uint32_t a = 0; a < 256; a++) {
            source.push_back((a << 24) | (s * 0x010101));
            dest.push_back((s << 24) | (a << 16) | (((a * 7 + s) & 255) << 8) | (255 - s));
        }
    }
    const auto count = static_cast<int32_t>(source.size());
    for (const SoftKernels* kernels : {Soft_Sse2Kernels(), Soft_Avx2Kernels()}) {
        if (!kernels) continue;
        for (int32_t blend = 0; blend < static_cast<int32_t>(SoftBlend::Count); blend++) {
            std::vector<uint32_t> a = dest, b = dest;
            g_SoftScalar.Blend[blend](a.data(), source.data(), count - 3);
            kernels->Blend[blend](b.data(), source.data(), count - 3);
            EXPECT_EQ(a, b) << kernels->name << " " << blend;
        }
        std::vector<uint32_t> a(source.size()), b(source.size());
        g_SoftScalar.ModulateRow(a.data(), source.data(), dest.data(), count - 5);
        kernels->ModulateRow(b.data(), source.data(), dest.data(), count - 5);
        EXPECT_EQ(a, b) << kernels->name;
        for (int32_t fraction = 0; fraction < 256; fraction++) {
            auto columns = std::make_unique<SoftColumns>();
            const int32_t apart = fraction & 1 ? 97 : fraction & 2 ? 2 : 1;
            for (int32_t i = 0; i < 61; i++)
                columns->Set(i, i * apart + fraction, i * apart + fraction + 1,
                             i % 7 ? fraction : (i & 1) * 256);
            // Close ones end with the row, so that no load may begin too late.
            columns->Complete(61, 60 * apart + fraction + 2);
            EXPECT_EQ(columns->close, apart <= 2);
            uint16_t rows[4][64 * 4];
            uint32_t out[2][61];
            for (int32_t i = 0; i < 4; i++) {
                const SoftKernels& k = i < 2 ? g_SoftScalar : *kernels;
                k.StretchColumns(rows[i], (i & 1 ? dest : source).data(), *columns, 61);
            }
            g_SoftScalar.StretchRows(out[0], rows[0], rows[1], 255 - fraction, 61);
            kernels->StretchRows(out[1], rows[2], rows[3], 255 - fraction, 61);
            ASSERT_EQ(std::memcmp(out[0], out[1], sizeof(out[0])), 0) << fraction;
            if (kernels->StretchBoth) {
                kernels->StretchBoth(out[1], source.data(), dest.data(), *columns, 255 - fraction,
                                     61);
                ASSERT_EQ(std::memcmp(out[0], out[1], sizeof(out[0])), 0) << fraction;
            }
            const uint32_t* four = &source[static_cast<size_t>(fraction * 200)];
            ASSERT_EQ(g_SoftScalar.Bilinear(four, fraction, 77),
                      kernels->Bilinear(four, fraction, 77));
            // A walk in one go, over the table as rows of 256 texels.
            const SoftWalk walk = {source.data(),
                                   256,
                                   int64_t{fraction} << 30,
                                   int64_t{255 - fraction} << 30,
                                   0x1C0000000,
                                   int64_t{0x2500000} * fraction};
            const uint32_t colour = static_cast<uint32_t>(fraction) * 0x01030507;
            std::copy_n(dest.begin() + fraction * 9, 61, out[0]);
            std::copy_n(dest.begin() + fraction * 9, 61, out[1]);
            g_SoftScalar.NormalWalk(out[0], walk, colour, 61);
            kernels->NormalWalk(out[1], walk, colour, 61);
            ASSERT_EQ(std::memcmp(out[0], out[1], sizeof(out[0])), 0) << fraction;
        }
        std::vector<uint32_t> twice(source.size() * 2), twin(source.size() * 2);
        const int32_t pairs = count / 2 - 6;
        g_SoftScalar.DoubleRows(twice.data(), &twice[source.size()], source.data(), dest.data(),
                                pairs);
        kernels->DoubleRows(twin.data(), &twin[source.size()], source.data(), dest.data(), pairs);
        EXPECT_EQ(twice, twin) << kernels->name;
    }
}

}  // namespace
