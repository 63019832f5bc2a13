// The GL device against the soft one: the same scenes within two steps a channel on
// nearly all pixels. Skipped where no window or no GL can be had.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstring>

#include "Files/Graphics_API/Device_Soft.h"
#include "Host/Host.h"
#include "tests/Files/Graphics_API/Device_Scene.h"

namespace {

constexpr int32_t kWidth = 160, kHeight = 120;
constexpr uint32_t kWhite = 0xFFFFFFFF;
const DeviceTable& g_gl = Device_GL;

class GLDevice : public testing::Test {
protected:
    void SetUp() override
    {
        if (!std::getenv("DISPLAY") && !std::getenv("WAYLAND_DISPLAY"))
            GTEST_SKIP() << "no display";
        Host_UseSDL();
        const HostWindowRequest request = {.clientWidth = kWidth,
                                           .clientHeight = kHeight,
                                           .border = true,
                                           .sizeable = false,
                                           .fullscreen = false,
                                           .gl = true,
                                           .samples = 0,
                                           .caption = "device test"};
        if (!g_Host.window.Create(request)) GTEST_SKIP() << g_Host.window.LastError();
        char error[256] = {};
        if (!g_gl.Open({kWidth, kHeight, false, 0, 0}, error, sizeof(error))) GTEST_SKIP() << error;
        g_gl.Close();
    }
    void TearDown() override
    {
        g_gl.Close();
        if (g_Host.window.Exists && g_Host.window.Exists()) g_Host.window.Destroy();
    }
};

// Share of pixels with a channel more than two steps apart.
double Difference(const Pixels& a, const Pixels& b)
{
    size_t apart = 0;
    for (size_t i = 0; i < a.size(); i++) {
        int32_t most = 0;
        for (int32_t shift = 0; shift < 32; shift += 8) {
            const auto x = static_cast<int32_t>((a[i] >> shift) & 255);
            const auto y = static_cast<int32_t>((b[i] >> shift) & 255);
            most = std::max(most, std::abs(x - y));
        }
        apart += most > 2;
    }
    return static_cast<double>(apart) / static_cast<double>(a.size());
}

template <class Draw>
double Compare(Draw draw)
{
    Pixels pictures[2];
    const DeviceTable* devices[2] = {&Device_Soft, &g_gl};
    for (int32_t i = 0; i < 2; i++) {
        Scene scene(*devices[i], kWidth, kHeight);
        EXPECT_TRUE(scene.open()) << scene.error();
        draw(scene, *devices[i]);
        pictures[i] = scene.Read();
    }
    return Difference(pictures[0], pictures[1]);
}

TEST_F(GLDevice, RandomScenesAgree)
{
    double worst = 0;
    uint32_t worstSeed = 0;
    for (uint32_t seed = 0; seed < 24; seed++) {
        const double apart =
            Compare([&](Scene& scene, const DeviceTable&) { scene.Sprites(seed); });
        if (apart > worst) worstSeed = seed;
        worst = std::max(worst, apart);
    }
    std::printf("worst scene %u: %.3f%% of pixels apart\n", worstSeed, worst * 100);
    EXPECT_LE(worst, 0.005);
}

// Fill rule, lines and points are the soft device's, not the driver's.
TEST_F(GLDevice, LinesAndPointsHaveTheSamePixels)
{
    EXPECT_EQ(Compare([](Scene& scene, const DeviceTable&) {
                  for (int32_t i = 0; i < 12; i++) {
                      const double angle = i * 0.5236 + 0.1;
                      scene.Send(DevicePrimitive::LineList,
                                 {At(80, 60), At(80 + std::round(50 * std::cos(angle)),
                                                 60 + std::round(50 * std::sin(angle)))});
                      scene.Send(DevicePrimitive::PointList, {At(10 + i * 3, 5 + i)});
                  }
                  scene.Send(
                      DevicePrimitive::LineStrip,
                      {At(5, 70, 0x8000FF00), At(150, 70, 0x8000FF00), At(150, 110, 0x8000FF00),
                       At(5, 110, 0x8000FF00), At(5, 70, 0x8000FF00)});
              }),
              0.0);
}

TEST_F(GLDevice, TargetsCopiesAndReadBackHaveTheirFirstRowOnTop)
{
    EXPECT_EQ(Compare([](Scene& scene, const DeviceTable& device) {
                  DeviceTexture* noise = scene.Texture(64, 64, Noise(64, 64, 3));
                  DeviceTexture* target = scene.Target(kWidth, kHeight);
                  device.SetTarget(0, target);
                  device.Clear(CLEAR_COLOUR, 0x40102030, 1, 0);
                  scene.Project(kWidth, kHeight);
                  scene.Filter(false, true);
                  scene.State(STATE_ALPHA_BLEND, 0);
                  device.SetTexture(0, noise);
                  scene.Rect(10, 5, 74, 69);
                  // Into itself: sampled as it was.
                  device.SetTexture(0, target);
                  scene.Rect(80, 0, 160, 120, kWhite, 0, 0, 0.5, 1);
                  device.StretchRect(target, {10, 5, 74, 69}, target, {12, 50, 76, 114}, false);
                  device.SetTarget(0, nullptr);
                  scene.Project(kWidth, kHeight);
                  device.SetTexture(0, target);
                  device.SetViewport(20, 10, 100, 90);
                  scene.Project(100, 90);
                  scene.Rect(-5, -5, 155, 115);
                  device.StretchRect(target, {0, 0, 30, 20}, nullptr, {130, 100, 160, 120}, true);
                  device.StretchRect(nullptr, {20, 10, 60, 30}, nullptr, {0, 100, 40, 120}, true);
              }),
              0.0);
}

TEST_F(GLDevice, BuffersMasksTestsAndStencil)
{
    EXPECT_EQ(
        Compare([](Scene& scene, const DeviceTable& device) {
            device.SetTexture(0, scene.Texture(16, 16, Noise(16, 16, 8)));
            scene.Filter(false, false);
            scene.State(STATE_ALPHA_TEST, 1);
            scene.State(STATE_ALPHA_REF, 90);
            scene.Rect(0, 0, 64, 64, kWhite, 0, 0, 4, 4);
            scene.State(STATE_ALPHA_TEST, 0);
            scene.State(STATE_COLOUR_WRITE, 1 | 8);
            scene.Rect(32, 32, 96, 96, kWhite, 0, 0, 4, 4);
            scene.State(STATE_COLOUR_WRITE, 15);
            scene.State(STATE_STENCIL_ENABLE, 1);
            scene.State(STATE_STENCIL_REF, 3);
            scene.State(STATE_STENCIL_PASS, static_cast<uint32_t>(DeviceStencil::Replace));
            scene.Rect(96, 10, 160, 42, kWhite, 0, 0, 2, 2);
            scene.State(STATE_STENCIL_FUNC, static_cast<uint32_t>(DeviceCompare::NotEqual));
            device.SetTexture(0, nullptr);
            scene.Rect(90, 0, 160, 60, 0xFF40C080);
            scene.State(STATE_STENCIL_ENABLE, 0);
            scene.State(STATE_CULL_MODE, static_cast<uint32_t>(DeviceCull::Clockwise));
            scene.Rect(100, 70, 120, 90, 0xFFFF0000);
            scene.Rect(150, 70, 130, 90, 0xFF0000FF);
            scene.State(STATE_CULL_MODE, 0);
            DeviceBuffer* buffer = device.CreateBuffer(4096, true);
            for (int32_t i = 0; i < 60; i++) {
                const uint32_t offset = static_cast<uint32_t>(i % 40) * 96;
                void* place = device.LockBuffer(
                    buffer, offset, 96, offset ? DeviceLock::NoOverwrite : DeviceLock::Discard);
                const VertexTextured fan[4] = {
                    At(i * 2, 100, 0xFF00FFFF), At(i * 2 + 1, 100, 0xFF00FFFF),
                    At(i * 2 + 1, 100 + i / 4, 0xFF00FFFF), At(i * 2, 100 + i / 4, 0xFF00FFFF)};
                std::memcpy(place, fan, sizeof(fan));
                device.UnlockBuffer(buffer);
                device.Draw(DevicePrimitive::TriangleFan, 24, buffer, offset, 4);
            }
            EXPECT_EQ(device.Counts().buffers, 1);
            device.FreeBuffer(buffer);
        }),
        0.0);
}

TEST_F(GLDevice, ResetChangesSizeAndSamplesAndForgetsTargets)
{
    Scene scene(g_gl, kWidth, kHeight);
    DeviceTexture* target = scene.Target(8, 8);
    g_gl.SetTarget(0, target);
    g_gl.Clear(CLEAR_COLOUR, kWhite, 1, 0);
    uint32_t pixel = 0;
    ASSERT_TRUE(g_gl.ReadPixels(target, {7, 7, 8, 8}, &pixel, 4));
    EXPECT_EQ(pixel, kWhite);
    const int32_t samples = g_gl.Caps().sampleLevels & 4 ? 4 : 0;
    ASSERT_TRUE(g_gl.Reset({64, 48, false, samples, 0}));
    g_gl.ReadPixels(target, {7, 7, 8, 8}, &pixel, 4);
    EXPECT_EQ(pixel, 0U);
    // Drawing, copying onto and reading several samples.
    scene.Project(64, 48);
    scene.Rect(0, 0, 10, 48, 0xFF112233);
    DeviceTexture* noise = scene.Texture(4, 4, Pixels(16, 0xFF00FF00));
    EXPECT_TRUE(g_gl.StretchRect(noise, {0, 0, 4, 4}, nullptr, {20, 0, 40, 20}, true));
    g_gl.ReadPixels(nullptr, {3, 40, 4, 41}, &pixel, 4);
    EXPECT_EQ(pixel, 0xFF112233U);
    g_gl.ReadPixels(nullptr, {30, 5, 31, 6}, &pixel, 4);
    EXPECT_EQ(pixel, 0xFF00FF00U);
    g_gl.Present();
    EXPECT_FALSE(g_gl.Reset({64, 48, false, 3, 0}));
}

}  // namespace
