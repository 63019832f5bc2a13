// A bot that presses random keys for both figures, while every frame is looked at.
//
// MARLOWICK_BOT_LEVELS says how many levels' worth of frames it plays (a short share
// when it is not given), MARLOWICK_BOT_SEED repeats a run that it printed.

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <numeric>
#include <random>
#include <sstream>
#include <vector>

#include "Files/Object/Collision.h"
#include "Files/Run/Run_State.h"
#include "tests/game/support_Level.h"
#include "tests/support/Solution.h"

using namespace names;

namespace {

constexpr int kFramesOfALevel = 600;  // 20 seconds of play
constexpr int kShortShare = 150;      // levels
constexpr int kLevelsOfAStage = 20;   // then a fresh program plays on
constexpr int kLevels = 100;
constexpr float kCell = 52;        // pixels
constexpr int kHandsOff = 120;     // one frame in so many lifts all hands,
constexpr int kFramesToRest = 60;  // for so long; by then everything stands on its cell
// Frames that are told when something is wrong.
constexpr size_t kStory = kFramesToRest + 24;

// Level 1's floor in cells, and the boxes that make it a crowd.
constexpr int kFloorAcross = 10, kFloorDown = 5, kCrowd = 6;
constexpr float kFloorX = 156, kFloorY = 104;  // its upper left cell

int Setting(const char* name, int fallback)
{
    const char* text = std::getenv(name);
    return text ? std::atoi(text) : fallback;
}

bool OnGrid(const CInstance* instance)
{
    return std::fmod(instance->x, kCell) == 0 && std::fmod(instance->y, kCell) == 0;
}

bool Still(const CInstance* instance)
{
    return instance->hspeed == 0 && instance->vspeed == 0;
}

bool Overlap(const CInstance* a, const CInstance* b)
{
    return std::fabs(a->x - b->x) < kCell && std::fabs(a->y - b->y) < kCell;
}

using Instances = std::vector<CInstance*>;

Instances All(const Stage& stage, std::initializer_list<Object> objects)
{
    Instances found;
    for (const Object object : objects)
        for (int i = 0; CInstance* instance = stage.find(object, i); ++i)
            if (instance->object_index == object.index) found.push_back(instance);
    return found;
}

// A key that goes down now and then and stays down for a while.
struct Finger {
    int key;
    char sign;
    int rarity;  // one frame in so many presses it
    bool down = false;
};
constexpr int kLetGo = 14;  // one frame in so many lets a held key go

// One level under random keys.
class Bot {
public:
    Bot(Stage& stage, std::mt19937& chance) : stage_(stage), chance_(chance) {}

    // Both tell the first thing that is wrong with its last frames, or nothing.
    std::string PlayLevel(const std::string& room)
    {
        stage_.room(room).frames(1);
        return PlayOn(room);
    }

    // Two figures and their boxes on any cells of a floor that nobody restarts: they are in
    // each other's way far more than in a level.
    std::string PlayInACrowd()
    {
        stage_.room("room_level1").frames(2);
        for (int i = 1; i < kCrowd; ++i) Room_CreateInstance(0, 0, oMonte.index);
        Room_CreateInstance(0, 0, oFechado2.index);  // keeps the gate shut
        std::vector<int> cells(kFloorAcross * kFloorDown);
        std::iota(cells.begin(), cells.end(), 0);
        std::shuffle(cells.begin(), cells.end(), chance_);
        auto cell = cells.begin();
        for (CInstance* each : All(stage_, {oPlayerArrows, oPlayerArrows2, oMonte})) {
            const auto across = static_cast<float>(*cell % kFloorAcross);
            const auto down = static_cast<float>(*cell / kFloorAcross);
            Put(each, kFloorX + kCell * across, kFloorY + kCell * down);
            ++cell;
        }
        stage_.frames(1);
        fingers_.resize(kWalkingFingers);
        return PlayOn("a crowd");
    }

private:
    std::string PlayOn(const std::string& room)
    {
        boxes_ = stage_.count(oMonte);
        targets_ = Targets();
        std::string wrong;
        for (int i = 0; i < kFramesOfALevel && wrong.empty(); ++i) {
            if (stage_.count(oFimFase) > 0) break;
            Press();
            stage_.clear_console();
            stage_.frames(1);
            Remember();
            wrong = Look();
            if (wrong.empty()) wrong = LookForRest();
        }
        LiftHands();
        for (int i = 0; i <= kFramesToRest && wrong.empty(); ++i) {
            stage_.frames(1);
            Remember();
            wrong = LookForRest();
        }
        return wrong.empty() ? "" : room + ": " + wrong + Story();
    }

    int Chance(int n) { return static_cast<int>(chance_() % static_cast<unsigned>(n)); }

    void Press()
    {
        if (handsOff_ == 0 && Chance(kHandsOff) == 0) LiftHands();
        if (handsOff_ > 0) {
            --handsOff_;
            return;
        }
        for (Finger& finger : fingers_) {
            if (Chance(finger.down ? kLetGo : finger.rarity) != 0) continue;
            finger.down = !finger.down;
            finger.down ? stage_.hold(finger.key) : stage_.release(finger.key);
        }
    }

    void LiftHands()
    {
        for (Finger& finger : fingers_) {
            if (finger.down) stage_.release(finger.key);
            finger.down = false;
        }
        handsOff_ = kFramesToRest + 1;
    }

    int Targets() const
    {
        int targets = 0;
        for (const Object object : {oFechado, oAberto, oFechado2, oAberto2})
            targets += stage_.count(object);
        return targets;
    }

    std::string Look()
    {
        const std::string console = stage_.console();
        if (console.find("ERROR") != std::string::npos) return "a report: " + console;
        if (stage_.count(oMonte) != boxes_) return "a box came or went";
        if (Targets() != targets_) return "a target came or went";

        bool allStill = true;
        for (const CInstance* figure : All(stage_, {oPlayerArrows, oPlayerArrows2})) {
            allStill = allStill && Still(figure);
            if (Still(figure) && !OnGrid(figure)) return "a figure rests off the grid";
        }
        const Instances boxes = All(stage_, {oMonte}), walls = All(stage_, {oWall, oPortaoFechado});
        for (size_t i = 0; i < boxes.size(); ++i) {
            if (allStill && Still(boxes[i]) && !OnGrid(boxes[i])) return "a box rests off the grid";
            for (size_t j = 0; j < i; ++j)
                if (Overlap(boxes[i], boxes[j])) return "two boxes in one place";
            for (CInstance* wall : walls)
                if (CollisionInstance(boxes[i], wall, true)) return "a box in a wall";
        }
        return "";
    }

    // With all hands off the keys, whatever walks reaches its cell and stops.
    std::string LookForRest()
    {
        quiet_ = std::any_of(fingers_.begin(), fingers_.end(),
                             [](const Finger& finger) { return finger.down; })
                     ? 0
                     : quiet_ + 1;
        if (quiet_ < kFramesToRest) return "";
        for (const CInstance* each : All(stage_, {oPlayerArrows, oPlayerArrows2, oMonte}))
            if (!Still(each) || !OnGrid(each)) return "something does not come to rest";
        return "";
    }

    // ---- the last frames in words
    void Remember()
    {
        std::ostringstream text;
        for (const Finger& finger : fingers_)
            if (finger.down) text << finger.sign;
        for (const CInstance* each : All(stage_, {oPlayerArrows, oPlayerArrows2, oMonte}))
            text << " (" << each->x << ' ' << each->y << " by " << each->hspeed << ' '
                 << each->vspeed << ')';
        story_[frame_++ % kStory] = text.str();
    }
    std::string Story() const
    {
        std::string text;
        for (size_t i = 0; i < kStory; ++i) text += "\n" + story_[(frame_ + i) % kStory];
        return text;
    }

    Stage& stage_;
    std::mt19937& chance_;
    static constexpr size_t kWalkingFingers = 10;
    std::vector<Finger> fingers_ = {{'W', 'W', 30},   {'A', 'A', 30},    {'S', 'S', 30},
                                    {'D', 'D', 30},   {kUp, 'u', 30},    {kLeft, 'l', 30},
                                    {kDown, 'd', 30}, {kRight, 'r', 30}, {'Z', 'Z', 60},
                                    {'U', 'U', 60},   {'T', 'T', 900},   {'P', 'P', 400}};
    int boxes_ = 0, targets_ = 0;
    int handsOff_ = 0;  // frames that the hands stay off
    int quiet_ = 0;     // frames since a key was held
    std::string story_[kStory];
    size_t frame_ = 0;
};

std::vector<std::string> RoomsThatStand()
{
    std::vector<std::string> rooms;
    for (int level = 1; level <= kLevels; ++level)
        if (!Solution_Of(level).empty()) rooms.push_back("room_level" + std::to_string(level));
    return rooms;
}

// Plays the share that was asked for; a fresh program at another speed every so often.
template <class Play>
void PlayShare(Play play)
{
    const int share = Setting("MARLOWICK_BOT_LEVELS", kShortShare);
    const auto seed = static_cast<unsigned>(Setting("MARLOWICK_BOT_SEED", 20180607));
    std::mt19937 chance(seed);
    for (int played = 0; played < share;) {
        static constexpr const char* speeds[] = {"fast", "normal", "slow"};
        LevelStory level("onePlayer", speeds[played / kLevelsOfAStage % 3]);
        g_DrawEnabled = false;  // rules alone
        for (int i = 0; i < kLevelsOfAStage && played < share; ++i, ++played) {
            static constexpr const char* modes[] = {"onePlayer", "twoPlayersOne", "twoPlayersTwo"};
            playerMode = modes[played % 3];
            EXPECT_EQ(play(level.stage, chance), "") << "seed " << seed << ", level " << played
                                                     << ", " << level.stage.global_text("gameType");
        }
    }
    std::printf("seed %u: %d levels' worth\n", seed, share);
}

TEST(Bot, RandomKeysBreakNothing)
{
    const std::vector<std::string> rooms = RoomsThatStand();
    PlayShare([&](Stage& stage, std::mt19937& chance) {
        Bot bot(stage, chance);
        return bot.PlayLevel(rooms[chance() % rooms.size()]);
    });
}

TEST(Bot, NorDoTheyInACrowd)
{
    PlayShare([](Stage& stage, std::mt19937& chance) {
        playerMode = "twoPlayersOne";
        return Bot(stage, chance).PlayInACrowd();
    });
}

}  // namespace
