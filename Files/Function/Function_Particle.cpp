// Particle types and effects.

#include "Files/Function/Function_Particle.h"

#include <algorithm>

#include "Files/Function/Arguments.h"
#include "Files/Function/Function_Graphic.h"

namespace {

// ---- types. Argument 0 names the type; one that does not exist is left alone.

BUILTIN(part_type_create)
{
    SetReal(result, ParticleType_Create());
}

BUILTIN(part_type_exists)
{
    SetBool(result, ParticleType_Data(ArgInt(args, argc, 0, -1)) != nullptr);
}

BUILTIN(part_type_destroy)
{
    ParticleType_Destroy(ArgInt(args, argc, 0, -1));
}

using TypeSetter = void (*)(CParticleType& type, int argc, RValue* args);
template <TypeSetter Set>
void OnType(RValue&, CInstance*, CInstance*, int argc, RValue* args)
{
    if (CParticleType* type = ParticleType_Data(ArgInt(args, argc, 0, -1))) Set(*type, argc, args);
}

void Clear(CParticleType& type, int, RValue*)
{
    type = CParticleType();
}

void SetShape(CParticleType& type, int argc, RValue* args)
{
    const int32_t shape = ArgInt(args, argc, 1);
    if (shape < 0 || shape >= kParticleShapes) return;
    type.shape = shape;
    type.sprite = -1;
}

void SetSprite(CParticleType& type, int argc, RValue* args)
{
    type.sprite = ArgInt(args, argc, 1, -1);
    type.animate = ArgBool(args, argc, 2);
    type.stretch = ArgBool(args, argc, 3);
    type.randomFrame = ArgBool(args, argc, 4);
}

void SetSize(CParticleType& type, int argc, RValue* args)
{
    type.sizeMin = ArgFloat(args, argc, 1);
    type.sizeMax = ArgFloat(args, argc, 2);
    type.sizeIncrease = ArgFloat(args, argc, 3);
    type.sizeWiggle = ArgFloat(args, argc, 4);
}

void SetScale(CParticleType& type, int argc, RValue* args)
{
    type.xscale = ArgFloat(args, argc, 1, 1);
    type.yscale = ArgFloat(args, argc, 2, 1);
}

void SetLife(CParticleType& type, int argc, RValue* args)
{
    type.lifeMin = ArgInt(args, argc, 1);
    type.lifeMax = ArgInt(args, argc, 2);
}

// A new pair of types may be in order where the old one was not.
void SetStep(CParticleType& type, int argc, RValue* args)
{
    type.stepNumber = ArgInt(args, argc, 1);
    type.stepType = ArgInt(args, argc, 2, -1);
    type.selfSpawnReported = false;
}

void SetDeath(CParticleType& type, int argc, RValue* args)
{
    type.deathNumber = ArgInt(args, argc, 1);
    type.deathType = ArgInt(args, argc, 2, -1);
    type.selfSpawnReported = false;
}

void SetSpeed(CParticleType& type, int argc, RValue* args)
{
    type.speedMin = ArgFloat(args, argc, 1);
    type.speedMax = ArgFloat(args, argc, 2);
    type.speedIncrease = ArgFloat(args, argc, 3);
    type.speedWiggle = ArgFloat(args, argc, 4);
}

void SetDirection(CParticleType& type, int argc, RValue* args)
{
    type.directionMin = ArgFloat(args, argc, 1);
    type.directionMax = ArgFloat(args, argc, 2);
    type.directionIncrease = ArgFloat(args, argc, 3);
    type.directionWiggle = ArgFloat(args, argc, 4);
}

void SetGravity(CParticleType& type, int argc, RValue* args)
{
    type.gravityAmount = ArgFloat(args, argc, 1);
    type.gravityDirection = ArgFloat(args, argc, 2);
}

void SetOrientation(CParticleType& type, int argc, RValue* args)
{
    type.angleMin = ArgFloat(args, argc, 1);
    type.angleMax = ArgFloat(args, argc, 2);
    type.angleIncrease = ArgFloat(args, argc, 3);
    type.angleWiggle = ArgFloat(args, argc, 4);
    type.angleRelative = ArgBool(args, argc, 5);
}

template <ParticleColours Mode, int Count>
void SetColours(CParticleType& type, int argc, RValue* args)
{
    type.colourMode = Mode;
    for (int i = 0; i < Count; ++i) type.colours[i] = ArgColour(args, argc, 1 + i);
}

template <ParticleColours Mode>
void SetChannels(CParticleType& type, int argc, RValue* args)
{
    type.colourMode = Mode;
    for (int i = 0; i < 6; ++i)
        type.channels[i / 2][i % 2] =
            static_cast<uint8_t>(std::clamp(ArgInt(args, argc, 1 + i), 0, 255));
}

void SetAlpha1(CParticleType& type, int argc, RValue* args)
{
    type.alphaStart = type.alphaMiddle = type.alphaEnd = ArgFloat(args, argc, 1);
}

void SetAlpha2(CParticleType& type, int argc, RValue* args)
{
    type.alphaStart = ArgFloat(args, argc, 1);
    type.alphaEnd = ArgFloat(args, argc, 2);
    type.alphaMiddle = (type.alphaStart + type.alphaEnd) / 2;
}

void SetAlpha3(CParticleType& type, int argc, RValue* args)
{
    type.alphaStart = ArgFloat(args, argc, 1);
    type.alphaMiddle = ArgFloat(args, argc, 2);
    type.alphaEnd = ArgFloat(args, argc, 3);
}

void SetBlend(CParticleType& type, int argc, RValue* args)
{
    type.additiveBlend = ArgBool(args, argc, 1);
}

// ---- effects

template <bool Above>
void CreateEffect(RValue&, CInstance*, CInstance*, int argc, RValue* args)
{
    Effect_Create(Above, ArgInt(args, argc, 0), ArgFloat(args, argc, 1), ArgFloat(args, argc, 2),
                  ArgInt(args, argc, 3), ArgColour(args, argc, 4));
}

BUILTIN(effect_clear)
{
    Effect_Clear();
}

constexpr auto kOneColour = SetColours<ParticleColours::One, 1>;
constexpr auto kTwoColours = SetColours<ParticleColours::Two, 2>;
constexpr auto kThreeColours = SetColours<ParticleColours::Three, 3>;
constexpr auto kMixedColours = SetColours<ParticleColours::Mix, 2>;
constexpr auto kRgbColours = SetChannels<ParticleColours::Rgb>;
constexpr auto kHsvColours = SetChannels<ParticleColours::Hsv>;

constexpr BuiltinRow kRows[] = {
    {"effect_create_below", CreateEffect<false>, 5},
    {"effect_create_above", CreateEffect<true>, 5},
    {"effect_clear", effect_clear, 0},
    {"part_type_create", part_type_create, 0},
    {"part_type_destroy", part_type_destroy, 1},
    {"part_type_exists", part_type_exists, 1},
    {"part_type_clear", OnType<Clear>, 1},
    {"part_type_shape", OnType<SetShape>, 2},
    {"part_type_sprite", OnType<SetSprite>, 5},
    {"part_type_size", OnType<SetSize>, 5},
    {"part_type_scale", OnType<SetScale>, 3},
    {"part_type_life", OnType<SetLife>, 3},
    {"part_type_step", OnType<SetStep>, 3},
    {"part_type_death", OnType<SetDeath>, 3},
    {"part_type_speed", OnType<SetSpeed>, 5},
    {"part_type_direction", OnType<SetDirection>, 5},
    {"part_type_gravity", OnType<SetGravity>, 3},
    {"part_type_orientation", OnType<SetOrientation>, 6},
    {"part_type_colour1", OnType<kOneColour>, 2},
    {"part_type_color1", OnType<kOneColour>, 2},
    {"part_type_colour2", OnType<kTwoColours>, 3},
    {"part_type_color2", OnType<kTwoColours>, 3},
    {"part_type_colour3", OnType<kThreeColours>, 4},
    {"part_type_color3", OnType<kThreeColours>, 4},
    {"part_type_colour_mix", OnType<kMixedColours>, 3},
    {"part_type_color_mix", OnType<kMixedColours>, 3},
    {"part_type_colour_rgb", OnType<kRgbColours>, 7},
    {"part_type_color_rgb", OnType<kRgbColours>, 7},
    {"part_type_colour_hsv", OnType<kHsvColours>, 7},
    {"part_type_color_hsv", OnType<kHsvColours>, 7},
    {"part_type_alpha1", OnType<SetAlpha1>, 2},
    {"part_type_alpha2", OnType<SetAlpha2>, 3},
    {"part_type_alpha3", OnType<SetAlpha3>, 4},
    {"part_type_blend", OnType<SetBlend>, 2},
};

}  // namespace

void Function_Particle_Register()
{
    Function_AddRows(kRows);
    Function_Particle_RegisterSystems();
}
