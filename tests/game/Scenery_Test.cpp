// What lives in a level and blocks nothing: it starts out of step, sways, flows and shines.

#include <gtest/gtest.h>

#include <map>
#include <set>

#include "Files/Object/Instance_Main.h"
#include "Files/Particle/Particle_Main.h"
#include "Files/Room/Room_Main.h"
#include "Names.h"
#include "tests/support/Stage.h"

using namespace names;

namespace {

// A level without rain or scenery of its own, whose clock the stories let run for seeds.
class Scenery : public testing::Test {
protected:
    Scenery() { stage.room("room_level1").frames(1); }

    // What an object shows when it is made: how often each frame, and how fast.
    struct Starts {
        std::map<int, int> frames;
        std::map<float, int> speeds;
    };
    Starts Make(Object object, int number)
    {
        Starts seen;
        for (int i = 0; i < number; ++i) {
            stage.frames(1);  // the clock goes on, and with it the seed
            CInstance* made = Room_CreateInstance(0, 104, object.index);
            ++seen.frames[static_cast<int>(made->image_index)];
            ++seen.speeds[made->image_speed];
            Instance_Destroy(made, true);
        }
        return seen;
    }

    Stage stage;
};

TEST_F(Scenery, AnimalsStartOnAnyOfTheirFrames)
{
    for (const Object animal : {oCamelo, oCamelo2, oCorujinha, oCachorrinho}) {
        const Starts seen = Make(animal, 150);
        EXPECT_EQ(seen.speeds.size(), 1U);
        EXPECT_EQ(seen.speeds.begin()->first, 0.3F);
        EXPECT_EQ(seen.frames.begin()->first, 0);
        EXPECT_EQ(seen.frames.rbegin()->first, 19);
        EXPECT_GE(seen.frames.size(), 18U);
    }
}

TEST_F(Scenery, TreesStartOnAnyOfNineFramesAndMostlySwayBackward)
{
    for (const Object tree :
         {oArvorezinha1, oArvorezinha2, oObstaculoInterno1Mundo5, oObstaculoInterno2Mundo5}) {
        Starts seen = Make(tree, 150);
        EXPECT_EQ(seen.frames.begin()->first, 0);
        EXPECT_EQ(seen.frames.rbegin()->first, 8);
        ASSERT_EQ(seen.speeds.size(), 2U);
        EXPECT_NEAR(seen.speeds[-0.3F], 100, 25) << "two of three";
        EXPECT_EQ(seen.speeds[-0.3F] + seen.speeds[0.3F], 150);
    }
}

TEST_F(Scenery, WaterMovesAsOneAndTheSunShinesSlowly)
{
    const std::pair<Object, float> rows[] = {
        {oAnimaAgua, 0.5F}, {oAnimaOndinhas, 0.5F}, {oRaiosDeSol, 0.2F}, {oSeta, 0.3F}};
    for (const auto& [object, speed] : rows) {
        const Starts seen = Make(object, 3);
        ASSERT_EQ(seen.frames.size(), 1U);
        EXPECT_EQ(seen.frames.begin()->first, 0);
        ASSERT_EQ(seen.speeds.size(), 1U);
        EXPECT_EQ(seen.speeds.begin()->first, speed);
    }
}

TEST_F(Scenery, AFlashComesInOneToFourSecondsThenInOneToSixAndPlaysOnce)
{
    std::set<int> first, next;
    std::set<float> speeds;
    for (int i = 0; i < 120; ++i) {
        stage.frames(1);
        CInstance* rain = Room_CreateInstance(0, 0, oChuva.index);
        EXPECT_EQ(rain->image_speed, 0);
        first.insert(rain->alarm[0]);
        rain->alarm[0] = 1;
        stage.frames(1);
        ASSERT_GT(rain->image_speed, 0);
        next.insert(rain->alarm[0]);
        speeds.insert(rain->image_speed);
        Instance_Destroy(rain, true);
    }
    EXPECT_TRUE(*first.begin() >= 30 && *first.begin() < 40 && *first.rbegin() <= 120);
    EXPECT_GT(*first.rbegin(), 110);
    EXPECT_TRUE(*next.begin() >= 30 && *next.begin() < 45 && *next.rbegin() <= 180);
    EXPECT_GT(*next.rbegin(), 165);
    ASSERT_EQ(speeds.size(), 6U);
    EXPECT_NEAR(*speeds.begin(), 0.5, 1e-6);
    EXPECT_NEAR(*speeds.rbegin(), 1.0, 1e-6);
}

TEST_F(Scenery, WithoutWeatherNoDropFallsButItFlashesOn)
{
    CInstance* rain = Room_CreateInstance(0, 0, oChuva.index);
    EXPECT_EQ(static_cast<double>(habilitaClima), 1);
    habilitaClima = 0;
    rain->alarm[0] = 3;
    stage.frames(4);
    EXPECT_GT(rain->image_speed, 0);
    for (int i = 0; CParticleSystem* system = ParticleSystem_Data(i); ++i)
        EXPECT_EQ(system->count, 0);
    habilitaClima = 1;
    stage.frames(1);
    int drops = 0;
    for (int i = 0; CParticleSystem* system = ParticleSystem_Data(i); ++i) drops += system->count;
    EXPECT_EQ(drops, 5);
}

}  // namespace
