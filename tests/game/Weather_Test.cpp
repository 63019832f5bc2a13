// Rain, its flashes, and the clouds.

#include <gtest/gtest.h>

#include <cmath>
#include <map>
#include <set>

#include "Files/Object/Instance_Main.h"
#include "Files/Particle/Particle_Main.h"
#include "Files/Room/Room_Main.h"
#include "Names.h"
#include "Platform/MemoryManager.h"
#include "tests/support/Stage.h"

using namespace names;

namespace {

constexpr const char* kRainy = "room_level10";

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

TEST(Weather, UnderAPauseTheLastDropsFall)
{
    Stage stage;
    stage.room(kRainy).frames(120);
    Instance_Deactivate(stage.find(oChuva));
    stage.frames(1);
    for (int left = Drops(); left > 0; left -= 5) {
        EXPECT_EQ(Drops(), left);
        stage.frames(1);
    }
    EXPECT_EQ(Drops(), 0);
}

TEST(Weather, ARainyFrameAllocatesNothing)
{
    Stage stage;
    stage.room(kRainy).frames(320);  // every drop's record is there, and each flash was seen
    const uint64_t before = MemoryManager::GetStats().calls;
    stage.frames(200);
    EXPECT_EQ(MemoryManager::GetStats().calls, before);
}

double Luminance(const Picture& picture)  // 0 to 1, of the whole picture
{
    double sum = 0;
    for (const uint32_t pixel : picture.pixels)
        sum +=
            0.2126 * (pixel >> 16 & 0xFF) + 0.7152 * (pixel >> 8 & 0xFF) + 0.0722 * (pixel & 0xFF);
    return sum / 255 / static_cast<double>(picture.pixels.size());
}

TEST(Weather, AFlashIsSoftAndRare)
{
    Stage stage;
    stage.room(kRainy).frames(1);
    CInstance* rain = stage.find(oChuva);
    double before = -1;
    int flashes = 0, last = -100;
    for (int frame = 0; frame < 300; ++frame) {
        const bool dark = rain->image_speed == 0;
        stage.frames(1);
        if (dark && rain->image_speed > 0) {
            ++flashes;
            EXPECT_GE(frame - last, 30) << "at most one a second";
            last = frame;
        }
        if (frame - last > 14) {
            before = -1;
            continue;  // nothing flashes: the pictures need no look
        }
        const double now = Luminance(stage.picture());
        if (before >= 0) {
            EXPECT_LE(std::fabs(now - before), 0.1) << frame;
        }
        before = now;
    }
    EXPECT_GE(flashes, 1);
    EXPECT_LE(flashes, 9);
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
