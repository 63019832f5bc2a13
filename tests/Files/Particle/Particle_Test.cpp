// Particles by the functions that scripts have: their life, their motion, and how they
// are drawn.

#include "Files/Particle/Particle_Internal.h"

#include <cmath>
#include <set>

#include "Files/Base/Console.h"
#include "Files/Run/Run_State.h"
#include "Files/Run/Services.h"
#include "tests/Files/Graphics/support_Drawing.h"
#include "tests/Files/support_Script.h"

namespace {

class ParticleTest : public DrawingTest {
protected:
    void SetUp() override
    {
        DrawingTest::SetUp();
        InitVXLFunctions();
        Particle_Init();
        Particle_CreateTextures();
        AddRoom("room");
        Begin();
        Run_Room->width = g_Display.deviceWidth = kWidth;
        Run_Room->height = g_Display.deviceHeight = kHeight;
        Run_Room->colour = 0;
        system = static_cast<int32_t>(call("part_system_create"));
        type = static_cast<int32_t>(call("part_type_create"));
    }
    void TearDown() override
    {
        Particle_Quit();
        DrawingTest::TearDown();
    }
    template <class... Numbers>
    double call(const char* name, Numbers... numbers)
    {
        return CallFunction(nullptr, name, {static_cast<double>(numbers)...});
    }
    CParticleSystem& System() { return *ParticleSystem_Data(system); }
    CParticle& Particle(int32_t i) { return *System().particles[i]; }
    void Make(int32_t number, double x = 50, double y = 40)
    {
        call("part_particles_create", system, x, y, type, number);
    }
    int32_t Count() { return static_cast<int32_t>(call("part_particles_count", system)); }
    int32_t Steps(int count)
    {
        for (int i = 0; i < count; ++i) Services_UpdateParticles();
        return Count();
    }
    uint32_t Drawn(int32_t x, int32_t y)
    {
        DrawRoom();
        return BackBuffer(x, y) & 0xFFFFFFU;
    }

    int32_t system = -1, type = -1;
};

TEST_F(ParticleTest, TheyLiveTheirStepsAndTheDeadMakeRoomForTheNew)
{
    call("part_type_life", type, 3, 3);
    Make(120);
    EXPECT_EQ(Steps(1), 120);
    call("part_type_life", type, 9, 9);
    Make(5, 7, 7);
    EXPECT_EQ(Steps(1), 125);
    EXPECT_EQ(Steps(1), 5) << "those of three steps are gone";
    EXPECT_EQ(Particle(0).xprev, 7);
    const uint64_t before = MemoryManager::GetStats().calls;
    Make(190);
    EXPECT_EQ(Steps(6), 195);
    EXPECT_EQ(System().capacity, 200);
    EXPECT_LE(MemoryManager::GetStats().calls - before, 71U) << "70 new records at most";
    EXPECT_EQ(Steps(1), 190);
    EXPECT_EQ(Steps(2), 0);
    call("part_system_automatic_update", system, 0);
    Make(1);
    EXPECT_EQ(Steps(20), 1);
    for (int i = 0; i < 9; ++i) call("part_system_update", system);
    EXPECT_EQ(Count(), 0);
}

TEST_F(ParticleTest, MotionColourAndAlphaFollowTheAge)
{
    call("part_type_life", type, 10, 10);
    call("part_type_speed", type, 4, 4, -1, 0);
    call("part_type_direction", type, 90, 90, 0, 0);
    call("part_type_orientation", type, 0, 0, 5, 0, 0);
    call("part_type_size", type, 1, 1, 0.5, 0);
    call("part_type_alpha3", type, 1, 0.5, 0);
    call("part_type_colour3", type, 0x000000, 0x0000C8, 0xFF0000);
    Make(1);
    Steps(2);
    CParticle& particle = Particle(0);
    EXPECT_NEAR(particle.x, 50, 1e-4);
    EXPECT_NEAR(particle.y, 40 - 3 - 2, 1e-4) << "90 degrees is up";
    EXPECT_NEAR(particle.yprev, 37, 1e-4);
    EXPECT_EQ(particle.angle, 10);
    EXPECT_EQ(particle.size, 2);
    EXPECT_NEAR(particle.alpha, 0.8, 1e-5);
    EXPECT_EQ(particle.colour, 80U);
    Steps(5);
    EXPECT_EQ(particle.speed, 0) << "never backward";
    EXPECT_NEAR(particle.alpha, 0.3, 1e-5);
    EXPECT_EQ(particle.colour, 0x660078U);
    call("part_type_gravity", type, 2, 270);
    Steps(1);
    EXPECT_NEAR(particle.y, 34 + 2, 1e-3) << "a pull from rest";
    call("part_type_destroy", type);
    EXPECT_EQ(Steps(1), 1) << "without its type it stands until its end";
    EXPECT_EQ(Steps(1), 0);
}

TEST_F(ParticleTest, WigglesSwingAboutTheMiddle)
{
    call("part_type_speed", type, 10, 10, 0, 4);
    Make(1, 0, 0);
    Particle(0).random = 0;
    float least = 100, most = 0;
    for (int i = 0; i < 20; ++i) {
        Steps(1);
        const float gone = Particle(0).x - Particle(0).xprev;
        least = std::fmin(least, gone);
        most = std::fmax(most, gone);
    }
    EXPECT_NEAR(least, 6, 1e-3);
    EXPECT_NEAR(most, 14, 1e-3);
    EXPECT_NEAR(Particle(0).x, 200, 1e-2);
}

TEST_F(ParticleTest, SomeLeaveOthersBehindButNeverTheirOwnKind)
{
    const auto child = static_cast<int32_t>(call("part_type_create"));
    call("part_type_life", type, 3, 3);
    call("part_type_step", type, 2, child);
    call("part_type_death", type, 5, child);
    Make(1);
    EXPECT_EQ(Steps(2), 1 + 2 + 2);
    EXPECT_EQ(Steps(1), 4 + 5);
    call("part_system_clear", system);
    call("part_type_life", type, 100, 100);
    call("part_type_step", type, -10, child);  // one chance in ten
    Make(200);
    EXPECT_NEAR(Steps(5), 300, 40);
    EXPECT_EQ(LastReport(), "");
    call("part_type_step", type, 1, type);
    const int32_t before = Count();
    EXPECT_EQ(Steps(3), before);
    EXPECT_NE(LastReport().find("Error: a particle cannot spawn another of the same type"),
              std::string::npos);
}

TEST_F(ParticleTest, EmittersStayInTheirRegion)
{
    const auto emitter = static_cast<int32_t>(call("part_emitter_create", system));
    const char* shapes[] = {"rectangle", "ellipse", "diamond", "line"};
    for (int shape = 0; shape < 4; ++shape) {
        double spread[3] = {};
        for (int distribution = 0; distribution < 3; ++distribution) {
            call("part_emitter_region", system, emitter, 10, 30, 100, 140, shape, distribution);
            call("part_particles_clear", system);
            call("part_emitter_burst", system, emitter, type, 1000);
            for (int i = 0; i < 1000; ++i) {
                const double x = (Particle(i).x - 20) / 10, y = (Particle(i).y - 120) / 20;
                const double off[] = {std::fmax(std::fabs(x), std::fabs(y)), std::hypot(x, y),
                                      std::fabs(x) + std::fabs(y),
                                      std::fabs(x - y) < 1e-4 ? std::fabs(x) : 9};
                ASSERT_LE(off[shape], 1.0001) << shapes[shape];
                spread[distribution] += off[shape] / 1000;
            }
        }
        EXPECT_LT(spread[1], spread[0]) << shapes[shape] << ": dense in the middle";
        EXPECT_GT(spread[2], spread[0]) << shapes[shape] << ": dense at the rim";
    }
    call("part_particles_clear", system);
    call("part_emitter_stream", system, emitter, type, 3);
    EXPECT_EQ(Steps(4), 12);
    call("part_emitter_destroy", system, emitter);
    EXPECT_EQ(Steps(4), 12);
    EXPECT_EQ(call("part_emitter_create", system), emitter) << "a place is used again";
}

TEST_F(ParticleTest, ColoursAreDrawnFromTheirLimits)
{
    struct {
        const char* function;
        std::vector<double> limits;
        bool (*holds)(uint32_t);
    } modes[] = {
        {"part_type_color_mix", {0, 0x0000FF}, [](uint32_t c) { return c <= 0xFF; }},
        {"part_type_color_rgb",
         {10, 20, 0, 0, 5, 5},
         [](uint32_t c) { return c >> 8 == 0x500 && (c & 0xFF) >= 10 && (c & 0xFF) <= 20; }},
        {"part_type_color_hsv", {0, 255, 0, 0, 90, 90}, [](uint32_t c) { return c == 0x5A5A5A; }},
    };
    for (const auto& mode : modes) {
        call("part_system_clear", system);
        std::vector<double> arguments = {static_cast<double>(type)};
        arguments.insert(arguments.end(), mode.limits.begin(), mode.limits.end());
        CallFunction(nullptr, mode.function, arguments);
        Make(100);
        std::set<uint32_t> seen;
        for (int i = 0; i < 100; ++i) {
            EXPECT_TRUE(mode.holds(Particle(i).colour)) << mode.function << Particle(i).colour;
            seen.insert(Particle(i).colour);
        }
        EXPECT_EQ(seen.size() > 5, mode.limits.back() != 90) << mode.function;
    }
    call("part_particles_create_color", system, 0, 0, type, 0x123456, 2);
    EXPECT_EQ(Particle(101).colour, 0x123456U);
}

TEST_F(ParticleTest, WhatIsMissingIsToldAndMakesNothing)
{
    static std::string told;
    told.clear();
    Console_SetSink([](void*, const char* text) { told += text; }, nullptr);
    g_DebugConsole = g_ErrorConsole;
    call("part_particles_create", 77, 0, 0, type, 1);
    call("part_particles_create", system, 0, 0, 77, 1);
    call("part_type_destroy", type);
    call("part_particles_create", system, 0, 0, type, 1);
    EXPECT_EQ(Count(), 0);
    EXPECT_EQ(told,
              "part_particles_create :: particle system does not exist!\n"
              "part_particles_create :: particle type does not exist!\n"
              "part_particles_create :: particle type does not exist!\n");
    EXPECT_EQ(call("part_type_exists", type), 0);
    EXPECT_EQ(call("part_type_create"), type);
    call("part_system_destroy", system);
    EXPECT_EQ(call("part_system_exists", system), 0);
    EXPECT_EQ(call("part_particles_count", system), 0);
}

TEST_F(ParticleTest, EachSystemIsDrawnOnceAtItsDepth)
{
    call("part_type_shape", type, 2);  // a square of 60 pixels
    const auto second = static_cast<int32_t>(call("part_system_create"));
    const auto third = static_cast<int32_t>(call("part_system_create"));
    const auto draw = [&](int32_t where, double depth, uint32_t colour) {
        call("part_system_clear", where);
        call("part_system_depth", where, depth);
        call("part_particles_create_color", where, 50, 40, type, colour, 1);
    };
    draw(system, 5, 0x0000FF);
    draw(second, 3, 0x00FF00);
    EXPECT_EQ(Drawn(50, 40), 0x00FF00U);
    draw(system, -5, 0x0000FF);
    EXPECT_EQ(Drawn(50, 40), 0xFF0000U);
    EXPECT_EQ(Drawn(5, 40), 0U);
    call("part_system_position", system, -40, 0);
    EXPECT_EQ(Drawn(5, 40), 0xFF0000U);
    EXPECT_EQ(Drawn(78, 40), 0x00FF00U);
    call("part_type_alpha1", type, 0.5);
    call("part_system_position", system, 0, 0);
    draw(system, 3.005, 0x0000FF);
    draw(second, 3, 0x0000FF);
    const uint32_t twice = Drawn(50, 40) >> 16;
    EXPECT_NEAR(twice, 191, 3) << "depths that close share one turn, and none has two";
    // A chain of depths, each close to the next, is two turns; nothing shines twice.
    draw(system, 3.015, 0x0000FF);
    draw(second, 3.007, 0x0000FF);
    EXPECT_NEAR(Drawn(50, 40) >> 16, 191, 3);
    call("part_particles_create_color", third, 50, 40, type, 0x0000FF, 1);
    call("part_system_depth", third, 3);
    EXPECT_NEAR(Drawn(50, 40) >> 16, 223, 3);
    call("part_system_clear", third);
    call("part_system_automatic_draw", second, 0);
    EXPECT_NEAR(Drawn(50, 40) >> 16, 127, 3);
    call("part_type_blend", type, 1);
    draw(system, 3, 0x0000FF);
    call("part_particles_create_color", system, 50, 40, type, 0x0000FF, 1);
    EXPECT_NEAR(Drawn(50, 40) >> 16, 254, 3) << "light adds up";
    EXPECT_EQ(GpuState_Get(STATE_DEST_BLEND), static_cast<uint32_t>(DeviceBlend::InvSrcAlpha));
    call("part_type_blend", type, 0);
    call("part_type_life", type, 0, 0);
    call("part_system_clear", system);
    Make(1);
    EXPECT_EQ(Drawn(50, 40), 0U) << "without a life there is no picture";
}

TEST_F(ParticleTest, TurnSizeAndOrderAreThoseOfTheParticle)
{
    call("part_type_shape", type, 3);  // a line of 56 pixels
    call("part_type_direction", type, 90, 90, 0, 0);
    Make(1);
    EXPECT_NE(Drawn(70, 40), 0U);
    EXPECT_EQ(Drawn(50, 60), 0U);
    call("part_type_orientation", type, 0, 0, 0, 0, 1);
    EXPECT_EQ(Drawn(70, 40), 0U);
    EXPECT_NE(Drawn(50, 60), 0U) << "along the way it goes";
    call("part_type_scale", type, 0.25, 1);
    EXPECT_EQ(Drawn(50, 60), 0U);
    call("part_system_clear", system);
    call("part_type_clear", type);
    const int32_t sprite = PlainSprite(16, kGreen);
    call("part_type_sprite", type, sprite, 0, 0, 0);
    call("part_particles_create_color", system, 10, 10, type, 0xFFFFFF, 1);
    call("part_particles_create_color", system, 10, 10, type, 0x008000, 1);
    EXPECT_EQ(Drawn(12, 12), 0x008000U) << "the youngest lies on top";
    call("part_system_draw_order", system, 0);
    EXPECT_EQ(Drawn(12, 12), 0x00FF00U);
    call("sprite_delete", sprite);
    EXPECT_EQ(Drawn(12, 12), 0U);
}

// ---- the shapes and the effects

TEST_F(ParticleTest, EveryShapeIsAPictureOfItsOwn)
{
    std::set<std::vector<uint8_t>> seen;
    for (int32_t shape = 0; shape < kParticleShapes; ++shape) {
        std::vector<uint8_t> alpha(kParticleShapeSize * kParticleShapeSize);
        Particle_PaintShape(shape, alpha.data());
        EXPECT_TRUE(seen.insert(alpha).second) << shape;
        for (int32_t i = 0; i < kParticleShapeSize; ++i)
            for (const int32_t rim : {i, i * 64, i * 64 + 63, 63 * 64 + i})
                ASSERT_LE(alpha[static_cast<size_t>(rim)], 16) << shape << " is cut off";
        if (shape != 3) continue;
        int32_t length = 0, height = 0;
        for (int32_t i = 0; i < kParticleShapeSize; ++i) {
            length += alpha[static_cast<size_t>(32 * 64 + i)] > 0;
            height += alpha[static_cast<size_t>(i * 64 + 32)] > 0;
        }
        EXPECT_NEAR(length, 56, 1);
        EXPECT_NEAR(height, 6, 1);
    }
}

TEST_F(ParticleTest, TheEndOfARoomEmptiesWhatHangsOnItsLayers)
{
    Make(3);
    Services_ClearRoom();
    EXPECT_EQ(Count(), 3);
    System().layer = 0;
    Services_ClearRoom();
    EXPECT_EQ(Count(), 0);
}

TEST_F(ParticleTest, AChildWithoutALifeIsGoneAtTheNextStep)
{
    const auto child = static_cast<int32_t>(call("part_type_create"));
    call("part_type_life", child, 0, 0);
    call("part_type_step", type, 1, child);
    Make(1);
    ASSERT_EQ(Steps(1), 2);
    EXPECT_EQ(Particle(1).alpha, 1);
    EXPECT_EQ(Steps(1), 2) << "one goes, one comes";
}

// A sprite of a shape's name takes its place and its size, wherever its own origin is.
TEST_F(ParticleTest, AnArchivesSpriteStandsInForAShape)
{
    const int32_t sprite = PlainSprite(16, kGreen, "pt_shape_square");
    call("part_type_shape", type, 2);
    Make(1);
    for (const auto& [originX, angle] : {std::pair{0, 0}, {16, 90}}) {
        Sprite_Data(sprite)->originX = originX;
        call("part_type_clear", type);
        call("part_type_shape", type, 2);
        Particle(0).angle = static_cast<float>(angle);
        for (const auto& [x, y] : {std::pair{20, 10}, {80, 10}, {20, 70}, {80, 70}})
            EXPECT_EQ(Drawn(x, y), 0x00FF00U) << x << ' ' << y << ' ' << angle;
        for (const auto& [x, y] : {std::pair{16, 40}, {84, 40}, {50, 6}, {50, 74}})
            EXPECT_EQ(Drawn(x, y), 0U) << x << ' ' << y << ' ' << angle;
    }
}

// The systems of the effects belong to them alone, also when a script destroyed them and
// got their places for its own.
TEST_F(ParticleTest, AScriptsSystemIsNotTakenForAnEffects)
{
    call("effect_create_above", 10, 0, 0, 1, 0xFFFFFF);
    for (int32_t i = 0; i < 100; ++i)
        if (i != system && ParticleSystem_Data(i)) call("part_system_destroy", i);
    for (int32_t i = 0; i < 100; ++i)
        if (i != type && ParticleType_Data(i)) call("part_type_destroy", i);
    system = static_cast<int32_t>(call("part_system_create"));
    type = static_cast<int32_t>(call("part_type_create"));
    call("part_type_life", type, 7, 7);
    Make(1);
    for (int32_t kind = 0; kind < 12; ++kind)
        for (const int32_t size : {0, 1, 2}) call("effect_create_below", kind, 0, 0, size, 0);
    EXPECT_EQ(Count(), 1);
    EXPECT_EQ(ParticleType_Data(type)->lifeMax, 7);
    call("effect_clear");
    EXPECT_EQ(Count(), 1);
}

TEST_F(ParticleTest, AFasterRoomHasSlowerRainThatLivesLonger)
{
    Run_Room->height = 480;
    const auto drop = [&](double roomSpeed, double measured) {
        Run_Room->speed = static_cast<decltype(Run_Room->speed)>(roomSpeed);
        g_FpsReal = static_cast<decltype(g_FpsReal)>(measured);
        call("effect_clear");
        call("effect_create_above", 10, 0, 0, 1, 0xFFFFFF);
        for (int32_t i = 0;; ++i)
            if (CParticleSystem* other = ParticleSystem_Data(i); other->depth == -100000)
                return std::pair(other->particles[0]->speed, other->particles[0]->lifetime);
    };
    EXPECT_EQ(drop(30, 500), std::pair(7.0F, 96));
    EXPECT_EQ(drop(60, 60), std::pair(3.5F, 192));
    EXPECT_EQ(drop(120, 60), std::pair(3.5F, 192)) << "one that it does not reach";
    EXPECT_EQ(drop(60, 25), std::pair(7.0F, 96));
}

TEST_F(ParticleTest, RainIsExact)
{
    Run_Room->width = 854;
    Run_Room->height = 480;
    for (const auto& [size, number] : {std::pair{0, 2}, {1, 5}, {2, 9}, {854, 5}}) {
        call("effect_clear");
        call("effect_create_above", 10, 300, 200, size, 0xC0C0C0);
        const CParticleSystem* rain = nullptr;
        for (int i = 0; CParticleSystem* other = ParticleSystem_Data(i); ++i)
            if (other->depth == -100000) rain = other;
        ASSERT_NE(rain, nullptr);
        ASSERT_EQ(rain->count, number);
        for (int i = 0; i < number; ++i) {
            const CParticle& drop = *rain->particles[i];
            EXPECT_TRUE(drop.x >= 0 && drop.x < 854 * 1.2 && drop.y >= -30 && drop.y < -10);
            EXPECT_TRUE(drop.size >= 0.2F && drop.size <= 0.3F);
            EXPECT_EQ(drop.speed, 7);
            EXPECT_EQ(drop.direction, 260);
            EXPECT_EQ(drop.lifetime, 96);
            EXPECT_EQ(drop.alpha, 0.4F);
            EXPECT_EQ(drop.colour, 0xC0C0C0U);
        }
        const float y = rain->particles[0]->y;
        Services_UpdateParticles();
        EXPECT_NEAR(rain->particles[0]->y - y, 6.894, 0.001) << "ten degrees from straight down";
    }
}

TEST_F(ParticleTest, EveryEffectIsSeenAndGrowsWithItsSize)
{
    for (int32_t kind = 0; kind <= 11; ++kind) {
        const bool falls = kind == 10 || kind == 11;
        int64_t light[3] = {};
        for (const int32_t size : {0, 1, 2}) {
            call("effect_clear");
            call(size == 1 ? "effect_create_below" : "effect_create_above", kind, 50, 40, size,
                 0xFFFFFF);
            for (int step = 0; step < (falls ? 14 : 4); ++step) Services_UpdateParticles();
            DrawRoom();
            for (int32_t y = 0; y < kHeight; ++y)
                for (int32_t x = 0; x < kWidth; ++x) light[size] += BackBuffer(x, y) & 0xFFU;
        }
        EXPECT_GT(light[falls ? 2 : 0], 0) << kind;
        if (falls) continue;  // a few drops over a small room: mostly beside it
        EXPECT_GT(light[1], light[0]) << kind;
        EXPECT_GT(light[2], light[1]) << kind;
    }
    Services_ClearEffects();
    EXPECT_EQ(Drawn(50, 40), 0U) << "a room starts without them";
    call("effect_create_above", 12, 50, 40, 1, 0xFFFFFF);
    EXPECT_EQ(Drawn(50, 40), 0U);
}

}  // namespace
