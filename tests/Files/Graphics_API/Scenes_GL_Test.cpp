// The scenes of the picture tests on the GL device: within two steps of 255 a channel on
// 99.5 of 100 pixels. Skipped where no window or no GL can be had.

#include <cstdlib>

#include "Files/Graphics_API/Device_Soft.h"
#include "Host/Host.h"
#include "tests/Files/Graphics/support_Scenes.h"

namespace {

constexpr int32_t kTolerance = 2;
constexpr double kMostApart = 0.005;

TEST(ScenesOnGL, AreThoseOfTheSoftDevice)
{
    if (!std::getenv("DISPLAY") && !std::getenv("WAYLAND_DISPLAY")) GTEST_SKIP() << "no display";
    Host_UseSDL();
    const HostWindowRequest request = {.clientWidth = 320,
                                       .clientHeight = 320,
                                       .border = true,
                                       .sizeable = false,
                                       .fullscreen = false,
                                       .gl = true,
                                       .samples = 0,
                                       .caption = "scenes"};
    if (!g_Host.window.Create(request)) GTEST_SKIP() << g_Host.window.LastError();
    char error[256] = {};
    if (!Device_GL.Open({320, 320, false, 0, 0}, error, sizeof error)) {
        g_Host.window.Destroy();
        GTEST_SKIP() << error;
    }
    Device_GL.Close();
    double worst = 0;
    std::string worstName = "none";
    for (const SceneRow& row : AllScenes()) {
        const KeptPicture soft = SceneStage().Draw(row, Device_Soft, Host_UseSDL);
        const KeptPicture gl = SceneStage().Draw(row, Device_GL, Host_UseSDL);
        const double apart = ShareApart(soft, gl, kTolerance);
        EXPECT_LE(apart, kMostApart)
            << row.name << ": " << WriteAside(row.name + std::string("_gl"), gl) << " "
            << WriteAside(row.name + std::string("_gl_difference"), DifferenceOf(soft, gl));
        if (apart <= worst) continue;
        worst = apart;
        worstName = row.name;
    }
    std::printf("worst scene %s: %.3f%% of pixels apart\n", worstName.c_str(), worst * 100);
    Host_UseSDL();
    g_Host.window.Destroy();
}

}  // namespace
