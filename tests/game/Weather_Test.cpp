// Rain, its flashes, and the clouds.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <set>

#include "Files/Object/Instance_Main.h"
#include "Files/Particle/Particle_Main.h"
#include "Files/Room/Room_Main.h"
#include "Files/Run/Run_State.h"
#include "Files/Sprite/CSprite.h"
#include "Names.h"
#include "Platform/MemoryManager.h"
#include "tests/support/Sight.h"
#include "tests/support/Stage.h"

using namespace names;

namespace {

constexpr const char* kRainy = "room_level10";
constexpr int kEnter = 13;

// Drops that are alive.
int Drops()
{
    for (int i = 0; CParticleSystem* system = ParticleSystem_Data(i); ++i)
        if (system->depth < 0) return system->count;
    return 0;
}

TEST(Weather, RainFillsTheRoomInNinetySixStepsAndStartsAnew)
{
    Stage stage;
    stage.room("room_level1").frames(5);
    EXPECT_EQ(Drops(), 0);
    stage.room(kRainy);
    const int first = Drops();
    EXPECT_LE(first, 5) << "a room starts dry";
    int before = first;
    for (int frame = 0; frame < 94; ++frame) {
        stage.frames(1);
        EXPECT_EQ(Drops(), before + 5);
        before = Drops();
    }
    // Five come and five go: 480 live between a step and the drops' own.
    stage.frames(20);
    EXPECT_EQ(Drops() + 5, 480);
    stage.room("room_level20");
    EXPECT_LE(Drops(), 5);
}

// All instances rest, as the pause has it; the drops are no instances.
TEST(Weather, UnderAPauseTheLastDropsFall)
{
    Stage stage;
    stage.room(kRainy).frames(120);
    stage.tap(kEnter).frames(1);
    EXPECT_EQ(stage.find(oChuva), nullptr);
    int frames = 0;
    for (int left = Drops(); left > 0; left -= 5, ++frames) {
        EXPECT_EQ(Drops(), left);
        stage.frames(1);
    }
    EXPECT_LE(frames, 96);
    EXPECT_EQ(Drops(), 0);
    // It rains on when the game does.
    stage.tap(kEnter).frames(4);
    EXPECT_NE(stage.find(oChuva), nullptr);
    EXPECT_GT(Drops(), 0);
}

TEST(Weather, ARainyFrameAllocatesNothing)
{
    Stage stage;
    stage.room(kRainy).frames(320);  // every drop's record is there, and each flash was seen
    const uint64_t before = MemoryManager::GetStats().calls;
    stage.frames(200);
    EXPECT_EQ(MemoryManager::GetStats().calls, before);
}

// Mean of the whole picture, 0 to 1.
double MeanLuminance(const Picture& picture)
{
    double sum = 0;
    for (const uint32_t pixel : picture.pixels) sum += Luminance(LightOf(pixel));
    return sum / static_cast<double>(picture.pixels.size());
}

std::vector<std::string> RainyRooms()
{
    std::vector<std::string> rooms = {"room_menu8"};
    for (const int level :
         {10, 20, 23, 27, 30, 34, 40, 71, 72, 73, 74, 75, 76, 77, 78, 79, 80, 90, 98, 99})
        rooms.push_back("room_level" + std::to_string(level));
    return rooms;
}

// The flash plays at 0.5 to 1 pictures a frame: a picture follows itself, the one before
// it or, where a screen leaves one out, the one before that. No such step changes the
// whole screen by more than a tenth, of white and of what it was.
TEST(Weather, AFlashBrightensSoftlyInEveryRainyRoom)
{
    Stage stage;
    double highest = 0;
    for (const std::string& room : RainyRooms()) {
        stage.room(room).frames(1);
        CInstance* rain = stage.find(oChuva);
        ASSERT_NE(rain, nullptr) << room;
        rain->alarm[0] = -1;
        rain->image_speed = 0;
        std::vector<double> steps;
        const int pictures = Sprite_Data(rain->sprite_index)->frameCount;
        for (int picture = 0; picture <= pictures; ++picture) {
            rain->image_index = static_cast<float>(picture % pictures);
            stage.frames(1);
            steps.push_back(MeanLuminance(stage.picture()));
        }
        EXPECT_NEAR(steps.front(), steps.back(), 0.002) << room << " ends as dark as it began";
        EXPECT_GT(*std::max_element(steps.begin(), steps.end()), steps[0] * 1.005) << room;
        for (size_t i = 1; i < steps.size(); ++i)
            for (size_t back = 1; back <= std::min<size_t>(i, 2); ++back) {
                const double from = steps[i - back], change = std::fabs(steps[i] - from);
                EXPECT_LE(change, 0.1 * std::min(from, steps[i])) << room << " picture " << i;
                highest = std::max(highest, change / std::min(from, steps[i]));
            }
    }
    RecordProperty("highest", std::to_string(highest));
}

// A second passes between any two, so there are never more than two in one, and a flash
// is over long before the next.
TEST(Weather, FlashesAreOneToSixSecondsApart)
{
    Stage stage;
    std::set<int> gaps, speeds, lengths;
    g_DrawEnabled = false;
    for (int run = 0; run < 20; ++run) {
        stage.room("room_level1").frames(run).room(kRainy);
        const CInstance* rain = stage.find(oChuva);
        int last = 0;
        bool first = true;
        for (int frame = 1; frame < 700; ++frame) {
            const bool dark = rain->image_speed == 0;
            stage.frames(1);
            if (dark && rain->image_speed > 0) {
                if (first)
                    EXPECT_TRUE(frame >= 28 && frame <= 121) << frame;
                else
                    gaps.insert(frame - last);
                first = false;
                last = frame;
                speeds.insert(static_cast<int>(std::lround(rain->image_speed * 10)));
            } else if (!dark && rain->image_speed == 0) {
                lengths.insert(frame - last);
                EXPECT_EQ(rain->image_index, 0);
            }
        }
    }
    g_DrawEnabled = true;
    EXPECT_GE(gaps.size(), 30U) << "they come when they like";
    EXPECT_GE(*gaps.begin(), 30);
    EXPECT_LE(*gaps.rbegin(), 180);
    EXPECT_EQ(speeds, (std::set<int>{5, 6, 7, 8, 9, 10}));
    EXPECT_LE(*lengths.rbegin(), 13);
}

TEST(Weather, CloudsTurnAtTheEdgesOfTheRoom)
{
    Stage stage;
    stage.room("room_level1").frames(1);
    std::map<double, int> speeds;
    std::vector<const CInstance*> clouds;
    int mirrored = 0, plain = 0;
    for (int seed = 0; seed < 100; ++seed) {
        stage.frames(1);  // the clock goes on, and with it the seed
        for (const Object kind : {oNuvemMundo4, oNuvemMundo5}) {
            CInstance* cloud = Room_CreateInstance(seed % 2 ? 850.0F : 4.0F, 100, kind.index);
            clouds.push_back(cloud);
            cloud->visible = false;  // two hundred clouds take their time to draw
            const double size = stage.variable(cloud, "tamanho");
            EXPECT_TRUE(size >= 0.5 && size <= 1) << size;
            EXPECT_EQ(cloud->image_alpha, static_cast<float>(size));
            EXPECT_EQ(cloud->image_yscale, static_cast<float>(size));
            EXPECT_EQ(std::fabs(cloud->image_xscale), static_cast<float>(size));
            ++speeds[cloud->hspeed];
            if (kind.index == oNuvemMundo5.index) ++(cloud->image_xscale < 0 ? mirrored : plain);
        }
    }
    EXPECT_EQ(speeds.size(), 4U);
    for (const double speed : {-2.0, -1.0, 1.0, 2.0}) EXPECT_GT(speeds[speed], 0) << speed;
    EXPECT_GT(mirrored, plain);
    EXPECT_GT(plain, 0);
    std::set<const CInstance*> turned;
    for (int frame = 0; frame < 900; ++frame) {
        stage.frames(1);
        for (const CInstance* cloud : clouds) {
            ASSERT_TRUE(cloud->x >= -2 && cloud->x <= 856) << cloud->x;
            if (cloud->x < 0 || cloud->x > 854) turned.insert(cloud);
        }
    }
    EXPECT_EQ(turned.size(), 200U);
}

// ---- what stands among the weather

TEST(Weather, TreesStandARowNearerThanWhatElseIsOnTheGrid)
{
    Stage stage;
    stage.room("room_level1").frames(1);
    struct {
        Object object;
        float y, depth;
    } rows[] = {{oCamelo, 0, 0},           {oCamelo, 468, -9},    {oArvorezinha1, 0, -1},
                {oArvorezinha2, 468, -10}, {oCorujinha, 104, -2}, {oArvorezinha1, 52, -2}};
    for (const auto& row : rows) {
        CInstance* made = Room_CreateInstance(0, row.y, row.object.index);
        stage.frames(2);
        EXPECT_EQ(made->depth, row.depth) << row.y;
        made->SetPosition(0, row.y + 10);
        stage.frames(2);
        EXPECT_EQ(made->depth, row.depth) << "between two rows";
    }
    CInstance* water = Room_CreateInstance(0, 0, oAnimaAgua.index);
    EXPECT_EQ(water->image_speed, 0.5F);
}

}  // namespace
