// Every level is drawn in few calls, and can be read: box, target, figure and wall stand
// out from the ground by
// luminance in every level under a clear sky, also for eyes that do not tell red from green.

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <filesystem>
#include <functional>

#include "Files/Graphics/Batch.h"
#include "Files/Object/CInstance.h"
#include "Names.h"
#include "tests/support/Stage.h"

using namespace names;

namespace {

constexpr double kContrast = 1.6;  // of a thing to its ground, by luminance
constexpr int kCellSize = 52;      // pixels
constexpr int kFrameNoise = 40;    // below it two frames show the same
constexpr int kFewPixels = 200;    // a thing with fewer lies off the screen

struct Colour {
    double red, green, blue;  // linear, 0 to 1
};

Colour Linear(uint32_t pixel)
{
    const auto channel = [&](int shift) {
        const double v = (pixel >> shift & 255) / 255.0;
        return v <= 0.04045 ? v / 12.92 : std::pow((v + 0.055) / 1.055, 2.4);
    };
    return {channel(16), channel(8), channel(0)};
}

double Luminance(const Colour& c)
{
    return 0.2126 * c.red + 0.7152 * c.green + 0.0722 * c.blue;
}

// Three pairs of eyes: the usual ones, and those that lack one kind of cone, after
// Machado, Oliveira and Fernandes, "A Physiologically-based Model for Simulation of Color
// Vision Deficiency" (2009), full severity.
struct Eyes {
    const char* name;
    std::array<double, 9> matrix;
};
constexpr Eyes kEyes[] = {
    {"usual", {1, 0, 0, 0, 1, 0, 0, 0, 1}},
    {"protanopia",
     {0.152286, 1.052583, -0.204868, 0.114503, 0.786281, 0.099216, -0.003882, -0.048116, 1.051998}},
    {"deuteranopia",
     {0.367322, 0.860646, -0.227968, 0.280085, 0.672501, 0.047413, -0.011820, 0.042940, 0.968881}}};

double Seen(const Eyes& eyes, uint32_t pixel)
{
    const Colour c = Linear(pixel);
    const auto& m = eyes.matrix;
    const auto mix = [&](size_t row) {
        const double v = m[row] * c.red + m[row + 1] * c.green + m[row + 2] * c.blue;
        return std::min(1.0, std::max(0.0, v));
    };
    return Luminance({mix(0), mix(3), mix(6)});
}

struct Mean {
    double sum = 0;
    int count = 0;
    void Add(double value) { sum += value, ++count; }
    double Value() const { return count ? sum / count : 0; }
};

using Ground = std::array<Mean, std::size(kEyes)>;  // of the field, as each pair of eyes sees it

double Ratio(double a, double b)
{
    return (std::max(a, b) + 0.05) / (std::min(a, b) + 0.05);
}

void Area(const Picture& picture, int left, int top, int right, int bottom,
          const std::function<void(size_t at)>& visit)
{
    for (int y = std::max(0, top); y < std::min(picture.height, bottom); ++y)
        for (int x = std::max(0, left); x < std::min(picture.width, right); ++x)
            visit(static_cast<size_t>(y) * static_cast<size_t>(picture.width) +
                  static_cast<size_t>(x));
}

bool Differs(uint32_t a, uint32_t b)
{
    for (int shift = 0; shift < 24; shift += 8)
        if (std::abs(static_cast<int>(a >> shift & 255) - static_cast<int>(b >> shift & 255)) >
            kFrameNoise)
            return true;
    return false;
}

struct Worst {
    double ratio = 99;
    std::string where;
    void Take(double value, const std::string& at)
    {
        if (value < ratio) ratio = value, where = at;
    }
};

const std::vector<std::pair<const char*, Object>> kThings = {
    {"box", oMonte}, {"target", oFechado}, {"target", oFechado2}, {"figure", oPlayerArrows}};

// Light and clouds differ from cell to cell and drift.
const Object kWeather[] = {oRaiosDeSol,       oChuva,           oNuvemMundo4, oNuvemMundo5,
                           oNuvemMundo4Chuva, oNuvemMundo5Chuva};

void Hide(const Stage& stage, Object object)
{
    for (int i = 0; i < stage.count(object); ++i) stage.find(object, i)->visible = false;
}

// Each thing by the pixels that it covers, against the same pixels of the bare ground.
void JudgeThings(Stage& stage, const Picture& full, const Picture& bare, const std::string& room,
                 Worst& worst, Ground& ground)
{
    for (const auto& [name, object] : kThings) {
        for (int i = 0; i < stage.count(object); ++i) {
            const CInstance* thing = stage.find(object, i);
            const int x = static_cast<int>(thing->x), y = static_cast<int>(thing->y);
            for (const Eyes& eyes : kEyes) {
                Mean shown, under;
                Area(full, x, y, x + kCellSize, y + kCellSize, [&](size_t at) {
                    if (!Differs(full.pixels[at], bare.pixels[at])) return;
                    shown.Add(Seen(eyes, full.pixels[at]));
                    under.Add(Seen(eyes, bare.pixels[at]));
                });
                if (shown.count < kFewPixels) continue;
                ground[static_cast<size_t>(&eyes - kEyes)].Add(under.Value());
                worst.Take(Ratio(shown.Value(), under.Value()),
                           room + " " + name + " " + eyes.name + " at " + std::to_string(x) + "," +
                               std::to_string(y));
            }
        }
    }
}

// The middle of each wall cell against the ground of the field.
void JudgeWalls(Stage& stage, const Picture& bare, const std::string& room, const Ground& ground,
                Worst& worst)
{
    constexpr int rim = 8;  // pixels of a cell that its neighbours share
    for (int i = 0; i < stage.count(oWall); ++i) {
        const CInstance* wall = stage.find(oWall, i);
        if (wall->object_index != oWall.index) continue;  // a box
        const int columns = static_cast<int>(wall->image_xscale);
        const int rows = static_cast<int>(wall->image_yscale);
        for (int cell = 0; cell < columns * rows; ++cell) {
            const int x = static_cast<int>(wall->x) + cell % columns * kCellSize;
            const int y = static_cast<int>(wall->y) + cell / columns * kCellSize;
            if (x + kCellSize > bare.width || y < 0 || y + kCellSize > bare.height) continue;
            for (const Eyes& eyes : kEyes) {
                Mean shown;
                Area(bare, x + rim, y + rim, x + kCellSize - rim, y + kCellSize - rim,
                     [&](size_t at) { shown.Add(Seen(eyes, bare.pixels[at])); });
                worst.Take(Ratio(shown.Value(), ground[static_cast<size_t>(&eyes - kEyes)].Value()),
                           room + " wall " + eyes.name + " at " + std::to_string(x) + "," +
                               std::to_string(y));
            }
        }
    }
}

}  // namespace

TEST(Readable, ThingsStandOutInEveryLevel)
{
    Worst things, walls;
    int levels = 0, calls = 0;
    Stage stage;
    playerMode = "onePlayer";
    for (int number = 1; number <= 100; ++number) {
        const std::string room = "room_level" + std::to_string(number);
        stage.room(room).frames(1);
        if (!stage.find(oMonte)) continue;  // not drawn yet
        ++levels;
        calls = std::max(calls, static_cast<int>(g_GraphicsStats.drawCalls));
        for (const Object weather : kWeather) Hide(stage, weather);
        stage.frames(1);
        const Picture full = stage.picture();
        for (const auto& [name, object] : kThings) Hide(stage, object);
        stage.frames(1);
        const Picture bare = stage.picture();
        Ground ground;
        JudgeThings(stage, full, bare, room, things, ground);
        JudgeWalls(stage, bare, room, ground, walls);
    }
    EXPECT_GE(levels, 2);
    EXPECT_GE(things.ratio, kContrast) << things.where;
    EXPECT_GE(walls.ratio, kContrast) << walls.where;
    EXPECT_LE(calls, 40) << "draw calls of the busiest level";
    RecordProperty("calls", calls);
    RecordProperty("things", things.where + " " + std::to_string(things.ratio));
    RecordProperty("walls", walls.where + " " + std::to_string(walls.ratio));
}
