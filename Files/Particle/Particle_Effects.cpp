// The twelve effects: two systems of their own, one under and one over the room, and a
// type for each part of an effect in each size.

#include <algorithm>
#include <cmath>
#include <iterator>

#include "Files/Function/Function_Registry.h"
#include "Files/Particle/Particle_Internal.h"
#include "Files/Room/Room_Main.h"
#include "Files/Run/Run_State.h"

namespace {

enum EffectKind : int32_t {
    kEfExplosion,
    kEfRing,
    kEfEllipse,
    kEfFirework,
    kEfSmoke,
    kEfSmokeUp,
    kEfStar,
    kEfSpark,
    kEfFlare,
    kEfCloud,
    kEfRain,
    kEfSnow,
};
enum Shape : int32_t {
    kShapeLine = 3,
    kShapeStar = 4,
    kShapeCircle = 5,
    kShapeRing = 6,
    kShapeFlare = 8,
    kShapeSpark = 9,
    kShapeExplosion = 10,
    kShapeCloud = 11,
    kShapeSmoke = 12,
    kShapeSnow = 13,
};
enum Size : int32_t { kSmall, kMedium, kLarge };

constexpr float kBelowDepth = 100000, kAboveDepth = -100000;

// One part of an effect at medium size and 30 steps a second: how its particles look,
// how many there are for each size, and how far about the place they start.
struct EffectPart {
    int32_t kind;
    CParticleType look;
    int32_t count[3];
    float radius;     // pixels
    float shade = 0;  // how much darker than the effect's colour, 0 to 1
};

constexpr EffectPart kParts[] = {
    // Smoke that rises, flames that roll outward, a hot heart, and a flash.
    {kEfExplosion,
     {.shape = kShapeSmoke,
      .sizeMin = 0.3F,
      .sizeMax = 0.6F,
      .sizeIncrease = 0.03F,
      .lifeMin = 25,
      .lifeMax = 40,
      .speedMin = 0.5F,
      .speedMax = 1.5F,
      .directionMin = 30,
      .directionMax = 150,
      .angleMax = 360,
      .angleIncrease = 1,
      .alphaStart = 0,
      .alphaMiddle = 0.35F,
      .alphaEnd = 0},
     {4, 7, 12},
     18,
     0.75F},
    {kEfExplosion,
     {.shape = kShapeExplosion,
      .sizeMin = 0.25F,
      .sizeMax = 0.5F,
      .sizeIncrease = 0.035F,
      .lifeMin = 12,
      .lifeMax = 22,
      .speedMin = 0.5F,
      .speedMax = 3.5F,
      .speedIncrease = -0.12F,
      .directionMax = 360,
      .angleMax = 360,
      .angleIncrease = 3,
      .alphaStart = 0.7F,
      .alphaMiddle = 0.5F,
      .alphaEnd = 0},
     {5, 8, 13},
     6,
     0.35F},
    {kEfExplosion,
     {.shape = kShapeExplosion,
      .sizeMin = 0.15F,
      .sizeMax = 0.3F,
      .sizeIncrease = 0.02F,
      .lifeMin = 10,
      .lifeMax = 16,
      .speedMin = 0.2F,
      .speedMax = 2,
      .directionMax = 360,
      .angleMax = 360,
      .angleIncrease = -4,
      .alphaStart = 0.8F,
      .alphaMiddle = 0.5F,
      .alphaEnd = 0,
      .additiveBlend = true},
     {3, 5, 8},
     6},
    {kEfExplosion,
     {.shape = kShapeFlare,
      .sizeMin = 1,
      .sizeMax = 1,
      .sizeIncrease = 0.3F,
      .lifeMin = 7,
      .lifeMax = 7,
      .alphaMiddle = 0.5F,
      .alphaEnd = 0,
      .additiveBlend = true},
     {1, 1, 1},
     0},
    {kEfRing,
     {.shape = kShapeRing,
      .sizeMin = 0,
      .sizeMax = 0,
      .sizeIncrease = 0.15F,
      .lifeMin = 15,
      .lifeMax = 15,
      .alphaMiddle = 0.7F,
      .alphaEnd = 0},
     {1, 1, 1},
     0},
    {kEfEllipse,
     {.shape = kShapeRing,
      .sizeMin = 0,
      .sizeMax = 0,
      .sizeIncrease = 0.15F,
      .yscale = 0.45F,
      .lifeMin = 15,
      .lifeMax = 15,
      .alphaMiddle = 0.7F,
      .alphaEnd = 0},
     {1, 1, 1},
     0},
    // Sparks fly apart, slow down and sink.
    {kEfFirework,
     {.shape = kShapeFlare,
      .sizeMin = 0.06F,
      .sizeMax = 0.18F,
      .sizeIncrease = -0.002F,
      .sizeWiggle = 0.04F,
      .lifeMin = 25,
      .lifeMax = 40,
      .speedMin = 0.5F,
      .speedMax = 6,
      .speedIncrease = -0.16F,
      .directionMax = 360,
      .gravityAmount = 0.09F,
      .alphaMiddle = 0.9F,
      .alphaEnd = 0,
      .additiveBlend = true},
     {50, 90, 150},
     0},
    {kEfSmoke,
     {.shape = kShapeSmoke,
      .sizeMin = 0.4F,
      .sizeMax = 0.8F,
      .sizeIncrease = 0.012F,
      .lifeMin = 25,
      .lifeMax = 40,
      .speedMin = 0.1F,
      .speedMax = 0.6F,
      .directionMax = 360,
      .angleMax = 360,
      .angleIncrease = 1,
      .alphaStart = 0,
      .alphaMiddle = 0.45F,
      .alphaEnd = 0},
     {6, 10, 16},
     18},
    {kEfSmokeUp,
     {.shape = kShapeSmoke,
      .sizeMin = 0.3F,
      .sizeMax = 0.6F,
      .sizeIncrease = 0.02F,
      .lifeMin = 30,
      .lifeMax = 50,
      .speedMin = 1.5F,
      .speedMax = 3.5F,
      .speedIncrease = -0.03F,
      .directionMin = 75,
      .directionMax = 105,
      .directionWiggle = 12,
      .angleMax = 360,
      .angleIncrease = 1,
      .alphaStart = 0.5F,
      .alphaMiddle = 0.4F,
      .alphaEnd = 0},
     {6, 10, 16},
     12},
    {kEfStar,
     {.shape = kShapeStar,
      .sizeMin = 0.2F,
      .sizeMax = 0.2F,
      .sizeIncrease = 0.035F,
      .lifeMin = 20,
      .lifeMax = 20,
      .angleMax = 72,
      .angleIncrease = 5,
      .alphaMiddle = 0.9F,
      .alphaEnd = 0},
     {1, 1, 1},
     0},
    {kEfSpark,
     {.shape = kShapeSpark,
      .sizeMin = 0.3F,
      .sizeMax = 0.3F,
      .sizeIncrease = 0.06F,
      .lifeMin = 16,
      .lifeMax = 16,
      .angleMax = 90,
      .angleIncrease = 4,
      .alphaMiddle = 0.9F,
      .alphaEnd = 0,
      .additiveBlend = true},
     {1, 1, 1},
     0},
    {kEfFlare,
     {.shape = kShapeFlare,
      .sizeMin = 0.4F,
      .sizeMax = 0.4F,
      .sizeIncrease = 0.07F,
      .lifeMin = 18,
      .lifeMax = 18,
      .alphaMiddle = 0.8F,
      .alphaEnd = 0,
      .additiveBlend = true},
     {1, 1, 1},
     0},
    {kEfCloud,
     {.shape = kShapeCloud,
      .sizeMin = 1.6F,
      .sizeMax = 2.2F,
      .xscale = 1.3F,
      .lifeMin = 90,
      .lifeMax = 120,
      .speedMin = 0.2F,
      .speedMax = 0.4F,
      .alphaStart = 0,
      .alphaMiddle = 0.5F,
      .alphaEnd = 0},
     {1, 2, 3},
     24},
    // What falls from the sky; the life comes from the height of the room.
    {kEfRain,
     {.shape = kShapeLine,
      .sizeMin = 0.2F,
      .sizeMax = 0.3F,
      .speedMin = 7,
      .speedMax = 7,
      .directionMin = 260,
      .directionMax = 260,
      .angleRelative = true,
      .alphaStart = 0.4F,
      .alphaMiddle = 0.4F,
      .alphaEnd = 0.4F},
     {2, 5, 9},
     0},
    {kEfSnow,
     {.shape = kShapeSnow,
      .sizeMin = 0.1F,
      .sizeMax = 0.25F,
      .speedMin = 2.5F,
      .speedMax = 3.5F,
      .directionMin = 250,
      .directionMax = 290,
      .directionWiggle = 25,
      .angleMax = 60,
      .angleIncrease = 1.5F,
      .alphaStart = 0.8F,
      .alphaMiddle = 0.8F,
      .alphaEnd = 0.8F},
     {1, 3, 7},
     0},
};
constexpr size_t kPartCount = std::size(kParts);
constexpr float kGrowth[3] = {0.5F, 1, 2};  // of small, medium and large

int32_t effectSystemBelow = -1, effectSystemAbove = -1;  // the two systems
int32_t s_types[kPartCount][3];                          // one for each part and size
bool s_made;

// A script may have destroyed what was there, and have put something of its own in the
// same place.
template <class T>
bool IsOurs(const T* found)
{
    return found && found->ofEffects;
}

int32_t MakeSystem(int32_t index, float depth)
{
    if (IsOurs(ParticleSystem_Data(index))) return index;
    const int32_t made = ParticleSystem_Create();
    ParticleSystem_Data(made)->depth = depth;
    ParticleSystem_Data(made)->ofEffects = true;
    return made;
}

int32_t MakeType(int32_t index)
{
    if (IsOurs(ParticleType_Data(index))) return index;
    const int32_t made = ParticleType_Create();
    ParticleType_Data(made)->ofEffects = true;
    return made;
}

void MakeSure()
{
    if (!s_made)
        for (auto& sizes : s_types) std::fill(std::begin(sizes), std::end(sizes), -1);
    s_made = true;
    effectSystemBelow = MakeSystem(effectSystemBelow, kBelowDepth);
    effectSystemAbove = MakeSystem(effectSystemAbove, kAboveDepth);
    for (auto& sizes : s_types)
        for (int32_t& type : sizes) type = MakeType(type);
}

// A room that is faster than 30 steps a second gets slower particles that live longer.
float SpeedFactor()
{
    const auto roomSpeed = static_cast<float>(Run_Room->speed);
    const auto measured = static_cast<float>(g_FpsReal);
    if (roomSpeed <= 30 || measured <= 30) return 1;
    return 30 / (roomSpeed / measured < 1.2F ? roomSpeed : measured);
}

int32_t Steps(float steps)
{
    return static_cast<int32_t>(std::lrint(steps));
}

// At 7 pixels a step a fifth of the height leads rain out of the room; snow falls at no
// less than a third of that.
int32_t StepsToTheGround(int32_t kind, float pace)
{
    const float share = kind == kEfRain ? 0.2F : 0.6F;
    return Steps(static_cast<float>(Run_Room->height) * share / pace);
}

// The look with all lengths times `growth`, and its time running `pace` times as fast.
CParticleType Scaled(CParticleType look, float growth, float pace)
{
    look.sizeMin *= growth;
    look.sizeMax *= growth;
    look.sizeIncrease *= growth * pace;
    look.sizeWiggle *= growth;
    look.lifeMin = Steps(static_cast<float>(look.lifeMin) / pace);
    look.lifeMax = Steps(static_cast<float>(look.lifeMax) / pace);
    look.speedMin *= growth * pace;
    look.speedMax *= growth * pace;
    look.speedIncrease *= growth * pace * pace;
    look.gravityAmount *= growth * pace * pace;
    look.angleIncrease *= pace;
    return look;
}

// Over and beside the top edge of the room, from where it drifts in.
void FromTheSky(CParticleSystem* system, int32_t type, const CParticleType& look, int32_t count,
                uint32_t colour)
{
    for (; count > 0; --count) {
        const double x = Random_Real(1) * 1.2 * Run_Room->width, y = Random_Real(20) - 30;
        Particle_MakeOne(system, static_cast<float>(x), static_cast<float>(y), type, look)->colour =
            colour;
    }
}

void AboutAPlace(CParticleSystem* system, float x, float y, float radius, int32_t type,
                 const CParticleType& look, int32_t count, uint32_t colour)
{
    for (; count > 0; --count) {
        const double off = radius > 0 ? radius * std::sqrt(Random_Real(1)) : 0;
        const double angle = radius > 0 ? Random_Real(kTurn) : 0;
        Particle_MakeOne(system, x + static_cast<float>(off * std::cos(angle)),
                         y + static_cast<float>(off * std::sin(angle)), type, look)
            ->colour = colour;
    }
}

}  // namespace

void Effect_Create(bool above, int32_t kind, float x, float y, int32_t size, uint32_t colour)
{
    if (!Run_Room) return;
    MakeSure();
    if (size != kSmall && size != kLarge) size = kMedium;
    const float pace = SpeedFactor();
    const bool falls = kind == kEfRain || kind == kEfSnow;
    const float growth = falls ? 1 : kGrowth[size];  // more of what falls, not larger ones
    CParticleSystem* system = ParticleSystem_Data(above ? effectSystemAbove : effectSystemBelow);
    for (size_t part = 0; part < kPartCount; ++part) {
        const EffectPart& row = kParts[part];
        if (row.kind != kind) continue;
        const int32_t type = s_types[part][size];
        CParticleType& look = *ParticleType_Data(type);
        const uint32_t shaded = Particle_Blend(colour, 0, row.shade);
        look = Scaled(row.look, growth, pace);
        look.ofEffects = true;
        if (falls) {
            look.lifeMin = look.lifeMax = StepsToTheGround(kind, pace);
            FromTheSky(system, type, look, row.count[size], shaded);
        } else {
            AboutAPlace(system, x, y, row.radius * growth, type, look, row.count[size], shaded);
        }
    }
}

void Effect_Clear()
{
    for (const int32_t index : {effectSystemBelow, effectSystemAbove})
        if (CParticleSystem* system = ParticleSystem_Data(index); IsOurs(system))
            Particle_Clear(system);
}

void Effect_Forget()
{
    effectSystemBelow = effectSystemAbove = -1;
    s_made = false;
}
