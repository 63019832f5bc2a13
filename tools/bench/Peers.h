#pragma once
// The devices beside the same work done by other rasterisers: both in one run, turn by
// turn, and the ratio of the fastest turns.

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

// Two ways to do the same work.
struct Duel {
    std::string name;
    std::string peer;
    std::function<void()> ours, theirs;
    // Before a turn, not measured.
    std::function<void()> enterOurs = nullptr, enterTheirs = nullptr;
    // Measured in the processor time of all threads, not of this one: what is done is
    // done by others too.
    bool allThreads = false;
};

struct Score {
    std::string name, peer;
    double ours, theirs;  // seconds of processor time a round, the fastest turn
};
using ScoreList = std::vector<Score>;

struct PeerOptions {
    std::string only;  // one comparison alone; empty for all
    int repeats = 12;  // turns of each side
};

// Fights every duel that is asked for, interleaved, and adds its score.
void FightAll(const std::vector<Duel>& duels, const PeerOptions& options, ScoreList* scores);
double ThreadSeconds();   // processor time of this thread
double ProcessSeconds();  // of all threads

// ---- the groups of comparisons
void PeersSoft(const PeerOptions& options, ScoreList* scores);
// The GL device's own work, without any drawing: another process under Mesa's driver
// that does nothing. Needs a display.
void PeersSubmit(const PeerOptions& options, ScoreList* scores);
void PeersGL(const PeerOptions& options, ScoreList* scores);     // drawn, by whatever GL there is
void PeersFrame(const PeerOptions& options, ScoreList* scores);  // a whole frame of level 1
// What that other process does: prints its scores, one to a line, fields between tabs.
int SubmitProcess(const PeerOptions& options);

// ---- pictures

using Pixels = std::vector<uint32_t>;

class Random {
public:
    uint32_t Next()
    {
        state_ ^= state_ << 13;
        state_ ^= state_ >> 17;
        state_ ^= state_ << 5;
        return state_;
    }
    int Below(int limit) { return static_cast<int>(Next() % static_cast<uint32_t>(limit)); }

private:
    uint32_t state_ = 2463534242U;
};

// Any colour with any alpha but the two that loops may leave out.
Pixels Noise(int width, int height);
// A disc as sprites are: clear corners, a soft rim, a solid middle.
Pixels Disc(int size);

struct Spot {
    int x, y;
};
inline constexpr int kPictureWidth = 854, kPictureHeight = 480;
inline constexpr int kSprite = 52, kSprites = 2000;
std::vector<Spot> Spots();  // of kSprites inside the picture
