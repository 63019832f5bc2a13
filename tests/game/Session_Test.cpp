// A session that was played in a real window comes back frame by frame: on the stage,
// and in a window on the other device.

#include <gtest/gtest.h>

#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <random>
#include <set>

#include "tests/support/Solution.h"
#include "tests/support/Stage.h"
#include "tests/support/WindowRun.h"

namespace {

constexpr int kFrames = 2100;
constexpr int kStepFrames = 20;  // for one step of a walk, with time to spare

// A player who knows the first level, and then tries everything in no good order.
class Player {
public:
    Player(const Screen& screen, WindowRun* run) : screen_(screen), run_(run) {}

    // False when the first level was never reached.
    bool play()
    {
        screen_.hands("mousemove 640 512");
        while (run_->room_name() != "room_level1" && at_ < kFrames / 2) {
            if (run_->room_name() == "room_personagem") press("Up", 6);  // to the row that goes on
            press("Return", 16);
        }
        const bool there = run_->room_name() == "room_level1";
        for (const char step : Solution_Of(1))
            press(std::string(1, static_cast<char>(tolower(step))), kStepFrames);
        while (at_ < kFrames) fumble();
        return there;
    }

private:
    void rest(int frames)
    {
        at_ = run_->frame() + frames;
        run_->wait_for(at_);
    }
    void press(const std::string& key, int frames)
    {
        screen_.hands("keydown " + key);
        rest(3);
        screen_.hands("keyup " + key);
        rest(frames - 3);
    }
    void fumble()
    {
        static const char* const kKeys[] = {"w", "a", "s", "d", "Left", "Up", "space", "shift"};
        const int what = static_cast<int>(dice_() % 12);
        if (what < 8) {
            press(kKeys[what], 5 + static_cast<int>(dice_() % 30));
        } else if (what == 8) {
            screen_.hands("mousemove " + std::to_string(300 + dice_() % 700) + " " +
                          std::to_string(300 + dice_() % 400));
        } else {
            screen_.hands("click " + std::to_string(1 + dice_() % 5));
        }
        rest(2);
    }

    const Screen& screen_;
    WindowRun* run_;
    int at_ = 0;
    std::mt19937 dice_{7};
};

class Session : public testing::Test {
protected:
    void SetUp() override
    {
        if (!screen_.ready()) GTEST_SKIP() << "Xvfb and xdotool are needed";
    }
    void TearDown() override { std::remove(path_.c_str()); }

    static bool HasDisplay() { return std::getenv("DISPLAY") || std::getenv("WAYLAND_DISPLAY"); }

    // The first frame at which two runs differ, or -1.
    static int Difference(const std::vector<uint64_t>& a, const std::vector<uint64_t>& b)
    {
        for (size_t i = 0; i < a.size() && i < b.size(); ++i)
            if (a[i] != b[i]) return static_cast<int>(i);
        return a.size() == b.size() ? -1 : static_cast<int>(std::min(a.size(), b.size()));
    }

    Screen screen_;
    std::string path_ = testing::TempDir() + "session-" + std::to_string(getpid());
};

TEST_F(Session, ComesBackFrameByFrameOnBothDevices)
{
    WindowRun live(screen_, {{"-software", "-record", path_}, kFrames, 4});
    EXPECT_TRUE(Player(screen_, &live).play()) << "stuck in " << live.room_name();
    ASSERT_TRUE(live.finish());
    EXPECT_EQ(live.device(), "soft");
    const std::vector<uint64_t> world = live.hashes();
    ASSERT_EQ(world.size(), size_t{kFrames});
    EXPECT_GT(std::set<uint64_t>(world.begin(), world.end()).size(), size_t{kFrames} / 4)
        << "hardly anything happened";

    // Both at the same time; without a display the machine may have no GL at all.
    std::optional<WindowRun> gl;
    if (HasDisplay())
        gl.emplace(screen_, WindowRun::Options{{"-gl", "-playback", path_}, kFrames, 0});

    Stage::Options options;
    options.switches.insert(options.switches.end(), {"-playback", path_});
    Stage stage(options);
    std::vector<uint64_t> again;
    while (again.size() < world.size() && stage.running())
        again.push_back(stage.frames(1).state_hash());
    EXPECT_EQ(Difference(world, again), -1) << "on the stage, in " << stage.room_name();

    if (!gl) return;
    ASSERT_TRUE(gl->finish());
    EXPECT_EQ(gl->device(), "gl");
    EXPECT_EQ(Difference(world, gl->hashes()), -1) << "in a window on GL";
}

// The ways past the logo, for one who has chosen the language before.
TEST_F(Session, EachWayLeadsFromTheLogoToTheTitle)
{
    constexpr int kShown = 30, kSoon = 60, kLeavesByItself = 180, kEnd = 300;  // frames
    const std::string save = "[preferencias]\r\ntutorial=\"false\"\r\nidioma=\"ingles\"\r\n";
    screen_.hands("mousemove 640 512");
    for (const std::string way :
         {"keydown space sleep 0.1 keyup space", "mousedown 1 sleep 0.1 mouseup 1", ""}) {
        WindowRun run(screen_, {{"-software"}, kEnd, 2, save});
        ASSERT_TRUE(run.wait_for(kShown)) << way;
        EXPECT_EQ(run.room_name(), "room_intro") << way;
        if (!way.empty()) screen_.hands(way);
        const int soon = run.frame() + kSoon;
        const bool slowHands = soon > kLeavesByItself;  // of a busy machine: they tell nothing
        run.wait_for(way.empty() ? kLeavesByItself - 10 : soon);
        if (!slowHands) {
            EXPECT_EQ(run.room_name(), way.empty() ? "room_intro" : "room_titulo") << way;
        }
        if (way.empty()) run.wait_for(kLeavesByItself + kSoon);
        EXPECT_EQ(run.room_name(), "room_titulo") << way;
    }
}

}  // namespace
