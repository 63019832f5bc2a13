// Every level is drawn in few calls, and can be read: box, target, figure and wall stand
// out from the ground by luminance, under a clear sky and, by less, under every weather
// of the level, also for eyes that do not tell red from green.

#include <gtest/gtest.h>

#include <array>

#include "Files/Graphics/Batch.h"
#include "Files/Object/CInstance.h"
#include "Files/Particle/Particle_Main.h"
#include "Files/Run/Run_State.h"
#include "Names.h"
#include "tests/support/Sight.h"
#include "tests/support/Stage.h"

using namespace names;

namespace {

constexpr double kContrast = 1.6;   // of a thing to its ground, by luminance
constexpr double kInWeather = 1.3;  // the same under clouds, rays, rain and flash
constexpr int kCellSize = 52;       // pixels
constexpr int kFrameNoise = 40;     // below it two frames show the same
constexpr float kBrightest = 2;     // picture of the flash
constexpr int kFewCalls = 40;       // of drawing, a frame
constexpr int kFewPixels = 200;     // a thing with fewer lies off the screen

struct Mean {
    double sum = 0;
    int count = 0;
    void Add(double value) { sum += value, ++count; }
    double Value() const { return count ? sum / count : 0; }
};

using Ground = std::array<Mean, std::size(kEyes)>;  // of the field, as each pair of eyes sees it

// Calls `visit` with the index of each pixel of the area that lies in the picture.
template <class Visit>
void Area(const Picture& picture, int left, int top, int right, int bottom, const Visit& visit)
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

const std::vector<std::pair<const char*, Object>> kThings = {{"box", oMonte},
                                                             {"target", oFechado},
                                                             {"target", oFechado2},
                                                             {"figure", oPlayerArrows},
                                                             {"second figure", oPlayerArrows2}};

const Object kClouds[] = {oNuvemMundo4, oNuvemMundo5, oNuvemMundo4Chuva, oNuvemMundo5Chuva};

struct Place {
    int x, y;  // pixels, upper left corner of a cell
};

std::string Name(const std::string& room, const char* what, const Eyes& eyes, Place at)
{
    return room + " " + what + " " + eyes.name + " at " + std::to_string(at.x) + "," +
           std::to_string(at.y);
}

// One level as a player sees it, with and without the things, under one weather.
class Level {
public:
    Level(Stage& stage, const std::string& room) : stage_(stage), room_(room)
    {
        for (const auto& [name, object] : kThings)
            for (int i = 0; i < stage.count(object); ++i)
                things_.push_back({name, stage.find(object, i)});
        for (int i = 0; i < stage.count(oWall); ++i) {
            const CInstance* wall = stage.find(oWall, i);
            if (wall->object_index == oWall.index) AddWall(wall);  // no box
        }
    }

    // The weather as the stage has it, over the whole room.
    void Judge(Worst& things, Worst& walls)
    {
        Shoot(true);
        Ground ground;
        for (const Thing& thing : things_) JudgeThing(thing, ground, things);
        for (const Place wall : walls_) JudgeWall(wall, ground, walls);
    }

    // The thickest cloud over each cell in turn.
    void JudgeUnder(CInstance* cloud, Worst& things, Worst& walls)
    {
        Ground ground;
        for (const Thing& thing : things_) {
            Move(cloud, {static_cast<int>(thing.instance->x), static_cast<int>(thing.instance->y)});
            Shoot(true);
            JudgeThing(thing, ground, things);
        }
        for (const Place wall : walls_) {
            Move(cloud, wall);
            Shoot(false);
            JudgeWall(wall, ground, walls);
        }
    }

private:
    struct Thing {
        const char* name;
        CInstance* instance;
    };

    void AddWall(const CInstance* wall)
    {
        const int columns = static_cast<int>(wall->image_xscale);
        const int rows = static_cast<int>(wall->image_yscale);
        for (int cell = 0; cell < columns * rows; ++cell) {
            const Place at = {static_cast<int>(wall->x) + cell % columns * kCellSize,
                              static_cast<int>(wall->y) + cell / columns * kCellSize};
            if (at.x + kCellSize <= kWidth && at.y >= 0 && at.y + kCellSize <= kHeight)
                walls_.push_back(at);
        }
    }

    static void Move(CInstance* cloud, Place cell)
    {
        cloud->SetPosition(static_cast<float>(cell.x + kCellSize / 2),
                           static_cast<float>(cell.y + kCellSize / 2));
    }

    void Shoot(bool withThings)
    {
        if (withThings) {
            stage_.frames(1);
            full_ = stage_.picture();
        }
        for (const Thing& thing : things_) thing.instance->visible = false;
        stage_.frames(1);
        bare_ = stage_.picture();
        for (const Thing& thing : things_) thing.instance->visible = true;
    }

    // By the pixels that the thing covers, against the same pixels of the bare ground.
    void JudgeThing(const Thing& thing, Ground& ground, Worst& worst) const
    {
        const Place at = {static_cast<int>(thing.instance->x), static_cast<int>(thing.instance->y)};
        for (const Eyes& eyes : kEyes) {
            Mean shown, under;
            Area(full_, at.x, at.y, at.x + kCellSize, at.y + kCellSize, [&](size_t pixel) {
                if (!Differs(full_.pixels[pixel], bare_.pixels[pixel])) return;
                shown.Add(Seen(eyes, full_.pixels[pixel]));
                under.Add(Seen(eyes, bare_.pixels[pixel]));
            });
            if (shown.count < kFewPixels) continue;
            ground[static_cast<size_t>(&eyes - kEyes)].Add(under.Value());
            worst.Take(Contrast(shown.Value(), under.Value()), Name(room_, thing.name, eyes, at));
        }
    }

    // The middle of a wall cell against the ground of the field.
    void JudgeWall(Place at, const Ground& ground, Worst& worst) const
    {
        constexpr int rim = 8;  // pixels of a cell that its neighbours share
        for (const Eyes& eyes : kEyes) {
            Mean shown;
            Area(bare_, at.x + rim, at.y + rim, at.x + kCellSize - rim, at.y + kCellSize - rim,
                 [&](size_t pixel) { shown.Add(Seen(eyes, bare_.pixels[pixel])); });
            worst.Take(Contrast(shown.Value(), ground[static_cast<size_t>(&eyes - kEyes)].Value()),
                       Name(room_, "wall", eyes, at));
        }
    }

    static constexpr int kWidth = 854, kHeight = 480;
    Stage& stage_;
    std::string room_;
    std::vector<Thing> things_;
    std::vector<Place> walls_;
    Picture full_, bare_;
};

void Show(const Stage& stage, Object object, bool shown)
{
    for (int i = 0; i < stage.count(object); ++i) stage.find(object, i)->visible = shown;
}

// A target of the level as it is, covered, under its box, and that box without it; to be
// told apart by their shapes. Ends the level as it was.
struct Shapes {
    Picture empty, covered, boxed, box;
    Place at;
};

Shapes CoverATarget(Stage& stage)
{
    Shapes shapes;
    for (const auto& [name, object] : kThings) Show(stage, object, false);
    const bool usual = stage.find(oFechado) != nullptr;
    CInstance* target = stage.find(usual ? oFechado : oFechado2);
    target->visible = true;
    shapes.at = {static_cast<int>(target->x), static_cast<int>(target->y)};
    stage.frames(1);
    shapes.empty = stage.picture();

    CInstance* box = stage.find(oMonte);
    box->SetPosition(target->x, target->y);
    box->visible = true;
    stage.frames(2);
    shapes.boxed = stage.picture();

    CInstance* covered = stage.find(usual ? oAberto : oAberto2);
    covered->visible = false;
    stage.frames(1);
    shapes.box = stage.picture();

    covered->visible = true;
    box->visible = false;
    stage.frames(1);
    shapes.covered = stage.picture();
    return shapes;
}

// The share of a cell's pixels that differ by the contrast, without colour.
double Apart(const Picture& a, const Picture& b, Place at, const Eyes& eyes)
{
    Mean apart;
    Area(a, at.x, at.y, at.x + kCellSize, at.y + kCellSize, [&](size_t pixel) {
        const double contrast = Contrast(Seen(eyes, a.pixels[pixel]), Seen(eyes, b.pixels[pixel]));
        apart.Add(contrast >= kContrast ? 1 : 0);
    });
    return apart.Value();
}

// Rain at its most, standing still, so that two pictures have the same drops.
void LetItRain(Stage& stage)
{
    CParticleSystem* drops = nullptr;
    stage.frames(1);
    for (int i = 0; CParticleSystem* system = ParticleSystem_Data(i); ++i)
        if (system->depth < 0) drops = system;
    ASSERT_NE(drops, nullptr);
    g_DrawEnabled = false;
    stage.frames(100);
    g_DrawEnabled = true;
    EXPECT_GE(drops->count, 475);
    drops->automaticUpdate = false;
}

}  // namespace

TEST(Readable, ThingsStandOutInEveryLevel)
{
    Worst things, walls;
    int levels = 0, calls = 0;
    Stage stage;
    playerMode = "twoPlayersOne";
    for (int number = 1; number <= 100; ++number) {
        const std::string name = "room_level" + std::to_string(number);
        stage.room(name).frames(1);
        Show(stage, oControl, false);  // whose symbol lies over the corner
        if (stage.find(oMonte)) ++levels;
        calls = std::max(calls, static_cast<int>(g_GraphicsStats.drawCalls));
        for (const Object cloud : kClouds) Show(stage, cloud, false);
        for (const Object light : {oRaiosDeSol, oChuva}) Show(stage, light, false);
        Level(stage, name).Judge(things, walls);
    }
    EXPECT_EQ(levels, 100);
    EXPECT_GE(things.ratio, kContrast) << things.where;
    EXPECT_GE(walls.ratio, kContrast) << walls.where;
    EXPECT_LE(calls, kFewCalls) << "draw calls of the busiest level";
    RecordProperty("calls", calls);
    RecordProperty("things", things.where + " " + std::to_string(things.ratio));
    RecordProperty("walls", walls.where + " " + std::to_string(walls.ratio));
}

// On the ground of every level, for all eyes, and without colour.
TEST(Readable, ACoveredTargetIsToldByItsShape)
{
    Worst fromEmpty, underItsBox, boxFromEmpty;
    Stage stage;
    playerMode = "onePlayer";
    for (int number = 1; number <= 100; ++number) {
        const std::string room = "room_level" + std::to_string(number);
        stage.room(room).frames(1);
        for (const Object cloud : kClouds) Show(stage, cloud, false);
        for (const Object light : {oRaiosDeSol, oChuva}) Show(stage, light, false);
        const Shapes shapes = CoverATarget(stage);
        for (const Eyes& eyes : kEyes) {
            const auto apart = [&](const Picture& a, const Picture& b) {
                return Apart(a, b, shapes.at, eyes);
            };
            const std::string name = Name(room, "target", eyes, shapes.at);
            fromEmpty.Take(apart(shapes.covered, shapes.empty), name);
            underItsBox.Take(apart(shapes.boxed, shapes.box), name);
            boxFromEmpty.Take(apart(shapes.boxed, shapes.empty), name);
        }
    }
    EXPECT_GE(fromEmpty.ratio, 0.4) << fromEmpty.where;
    EXPECT_GE(underItsBox.ratio, 0.06) << underItsBox.where;
    EXPECT_GE(boxFromEmpty.ratio, 0.6) << boxFromEmpty.where;
    RecordProperty("covered", std::to_string(fromEmpty.ratio));
    RecordProperty("boxed", std::to_string(underItsBox.ratio));
    RecordProperty("box", std::to_string(boxFromEmpty.ratio));
}

// Rays at several of their pictures, rain with its brightest flash, and the thickest
// cloud over each cell in turn, through the rain where there is some.
TEST(Readable, ThingsStandOutUnderEveryWeather)
{
    Worst things, walls;
    int rays = 0, rains = 0, clouds = 0, calls = 0;
    Stage stage;
    playerMode = "twoPlayersOne";
    for (int number = 1; number <= 100; ++number) {
        const std::string name = "room_level" + std::to_string(number);
        stage.room(name).frames(1);
        Show(stage, oControl, false);
        CInstance* cloud = nullptr;
        for (const Object kind : kClouds) {
            Show(stage, kind, false);
            if (CInstance* one = stage.find(kind)) cloud = one;
        }
        Level level(stage, name);
        if (CInstance* light = stage.find(oRaiosDeSol)) {
            ++rays;
            light->image_speed = 0;
            for (int picture = 0; picture < 8; picture += 2) {
                light->image_index = static_cast<float>(picture);
                level.Judge(things, walls);
            }
        }
        if (CInstance* rain = stage.find(oChuva)) {
            ++rains;
            LetItRain(stage);
            rain->alarm[0] = -1;
            rain->image_speed = 0;
            rain->image_index = kBrightest;
            level.Judge(things, walls);
            calls = std::max(calls, static_cast<int>(g_GraphicsStats.drawCalls));
        }
        if (!cloud) continue;
        ++clouds;
        cloud->visible = true;
        cloud->hspeed = 0;
        cloud->image_xscale = cloud->image_yscale = cloud->image_alpha = 1;
        level.JudgeUnder(cloud, things, walls);
    }
    EXPECT_LE(calls, kFewCalls) << "under 480 drops and a flash";
    EXPECT_EQ(rays, 80);
    EXPECT_EQ(rains, 20);
    EXPECT_EQ(clouds, 40);
    EXPECT_GE(things.ratio, kInWeather) << things.where;
    EXPECT_GE(walls.ratio, kInWeather) << walls.where;
    RecordProperty("things", things.where + " " + std::to_string(things.ratio));
    RecordProperty("walls", walls.where + " " + std::to_string(walls.ratio));
}
