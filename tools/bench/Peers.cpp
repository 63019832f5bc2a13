#include "tools/bench/Peers.h"

#include <time.h>

#include <algorithm>
#include <cmath>

namespace {

constexpr double kTurn = 0.002;  // seconds: a turn does as many rounds as fill it

double Seconds(clockid_t clock)
{
    timespec time;
    clock_gettime(clock, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
}

// One side of a duel.
class Side {
public:
    Side(const std::function<void()>& round, const std::function<void()>& enter, bool allThreads)
        : round_(round), enter_(enter), allThreads_(allThreads)
    {
        Turn();  // warms the caches, and what grows on first use
        rounds_ = std::max(1, static_cast<int>(kTurn / Turn()));
        best_ = 1e9;
    }
    double Turn()
    {
        if (enter_) enter_();
        const double start = Now();
        for (int i = 0; i < rounds_; i++) round_();
        const double passed = (Now() - start) / rounds_;
        best_ = std::min(best_, passed);
        return passed;
    }
    double Best() const { return best_; }

private:
    double Now() const { return allThreads_ ? ProcessSeconds() : ThreadSeconds(); }
    const std::function<void()>&round_, &enter_;
    bool allThreads_;
    int rounds_ = 1;
    double best_ = 1e9;
};

}  // namespace

double ThreadSeconds()
{
    return Seconds(CLOCK_THREAD_CPUTIME_ID);
}
double ProcessSeconds()
{
    return Seconds(CLOCK_PROCESS_CPUTIME_ID);
}

void FightAll(const std::vector<Duel>& duels, const PeerOptions& options, ScoreList* scores)
{
    for (const Duel& duel : duels) {
        if (!options.only.empty() && duel.name != options.only) continue;
        Side ours(duel.ours, duel.enterOurs, duel.allThreads);
        Side theirs(duel.theirs, duel.enterTheirs, duel.allThreads);
        for (int i = 0; i < options.repeats; i++) {
            ours.Turn();
            theirs.Turn();
        }
        scores->push_back({duel.name, duel.peer, ours.Best(), theirs.Best()});
    }
}

Pixels Noise(int width, int height)
{
    Random random;
    Pixels pixels(static_cast<size_t>(width) * static_cast<size_t>(height));
    for (uint32_t& pixel : pixels) {
        const uint32_t alpha = 1 + random.Next() % 254;
        pixel = (random.Next() & 0xFFFFFF) | (alpha << 24);
    }
    return pixels;
}

Pixels Disc(int size)
{
    Pixels pixels = Noise(size, size);
    const double radius = size / 2.0;
    for (int i = 0; i < size * size; i++) {
        const double x = i % size + 0.5 - radius, y = i / size + 0.5 - radius;
        const double inside = std::clamp(radius - std::sqrt(x * x + y * y), 0.0, 1.5) / 1.5;
        uint32_t& pixel = pixels[static_cast<size_t>(i)];
        pixel = (pixel & 0xFFFFFF) | (static_cast<uint32_t>(inside * 255 + 0.5) << 24);
    }
    return pixels;
}

std::vector<Spot> Spots()
{
    Random random;
    std::vector<Spot> places;
    for (int i = 0; i < kSprites; i++)
        places.push_back(
            {random.Below(kPictureWidth - kSprite), random.Below(kPictureHeight - kSprite)});
    return places;
}
