#include "Files/Function/Function_Registry.h"
#include "Host/Host.h"

namespace {

constexpr int kWords = 16;
constexpr uint32_t kMask = 0xDA442D24U, kOldMask = 0xDA442D20U;
constexpr double kWordToUnit = 2.3283064365386963e-10;  // 2 to the -32

struct Generator {
    uint32_t state[kWords] = {};
    uint32_t index = 0;
    uint32_t mask = kMask;
    uint32_t seed = 0;

    constexpr Generator() { Seed(0); }
    constexpr void Seed(uint32_t value)
    {
        seed = value;
        uint32_t x = value;
        for (uint32_t& word : state) {
            const int32_t next = static_cast<int32_t>(x * 0x343FDU + 0x269EC3U);
            x = static_cast<uint32_t>(next >> 16) & 0x7FFFFFFFU;
            word = x;
        }
        index = 0;
    }
};

// Seeded before main, once for the life of the process: a game that starts over
// goes on with its numbers.
constinit Generator g_generator;

}  // namespace

void Random_Seed(uint32_t seed)
{
    g_generator.Seed(seed);
}
uint32_t Random_GetSeed()
{
    return g_generator.seed;
}
void Random_UseOldVersion(bool old)
{
    g_generator.mask = old ? kOldMask : kMask;
}

uint32_t Random_Word()
{
    uint32_t(&state)[kWords] = g_generator.state;
    uint32_t& index = g_generator.index;
    uint32_t a = state[index];
    uint32_t c = state[(index + 13) & 15];
    const uint32_t b = a ^ c ^ (a << 16) ^ (c << 15);
    c = state[(index + 9) & 15];
    c ^= c >> 11;
    a = state[index] = b ^ c;
    const uint32_t d = a ^ ((a << 5) & g_generator.mask);
    index = (index + 15) & 15;
    a = state[index];
    state[index] = a ^ b ^ d ^ (a << 2) ^ (b << 18) ^ (c << 28);
    return state[index];
}

uint32_t Random_Randomize()
{
    const uint64_t clock = static_cast<uint64_t>(g_Host.clock.Micros());
    const uint32_t low = static_cast<uint32_t>(clock), high = static_cast<uint32_t>(clock >> 32);
    Random_Seed((low + high) ^ ((low >> 16) & 0xFFFFU) ^ (low << 16));
    return Random_GetSeed();
}

double Random_Real(double x)
{
    return Random_Word() * kWordToUnit * x;
}

int64_t Random_Integer(int64_t n)
{
    const uint64_t magnitude = n >= 0 ? static_cast<uint64_t>(n) + 1 : 1 - static_cast<uint64_t>(n);
    const uint64_t low = Random_Word();
    const uint64_t high = Random_Word() & 0x7FFFFFFFU;
    const int64_t drawn = static_cast<int64_t>((high << 32 | low) % magnitude);
    return n >= 0 ? drawn : -drawn;
}
