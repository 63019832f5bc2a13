#pragma once
// Numbers by chance, the same on every machine: splitmix64 (S. Vigna).

#include <cstdint>

namespace levels {

class Random {
public:
    explicit Random(uint64_t seed) : state_(seed * 0x9e3779b97f4a7c15u + 0x2545f4914f6cdd1du) {}

    uint64_t Next()
    {
        uint64_t z = state_ += 0x9e3779b97f4a7c15u;
        z = (z ^ z >> 30) * 0xbf58476d1ce4e5b9u;
        z = (z ^ z >> 27) * 0x94d049bb133111ebu;
        return z ^ z >> 31;
    }
    int Below(int count) { return static_cast<int>(Next() % static_cast<uint64_t>(count)); }
    int Between(int least, int most) { return least + Below(most - least + 1); }
    bool Chance(int percent) { return Below(100) < percent; }

private:
    uint64_t state_;
};

}  // namespace levels
