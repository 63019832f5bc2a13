#pragma once
// Particles: small moving pictures that live for a fixed number of steps. A system
// holds the living ones, a type tells how they look and move, an emitter makes them
// inside a region. Scripts know systems and types by their places in two tables, and
// an emitter by its place in its system; places are used again.

#include <cstdint>

#include "Platform/MemoryManager.h"

inline constexpr int32_t kParticleShapes = 14;     // pt_shape_pixel to pt_shape_snow
inline constexpr int32_t kParticleShapeSize = 64;  // pixels a side of a shape's picture

struct CParticle {
    bool alive;
    int32_t type;
    int32_t age, lifetime;  // steps
    float x, y, xprev, yprev;
    float speed, direction, angle;  // pixels a step, degrees
    uint32_t colour;                // 0x00BBGGRR
    float alpha, size;
    int32_t image, random;  // offsets that tell particles of a type apart: frame, wiggle
};
static_assert(sizeof(CParticle) == 16 * 4);

enum class ParticleColours : int32_t {
    One,
    Two,    // from the first to the second over the life
    Three,  // over the second one at half the life
    Mix,    // one between the first and the second
    Rgb,    // each channel between its limits
    Hsv,
};

struct CParticleType {
    int32_t shape = 0;    // 0 to kParticleShapes - 1
    int32_t sprite = -1;  // instead of the shape
    bool animate = false, stretch = false, randomFrame = false;
    float sizeMin = 1, sizeMax = 1, sizeIncrease = 0, sizeWiggle = 0;
    float xscale = 1, yscale = 1;
    int32_t lifeMin = 100, lifeMax = 100;
    // What each particle leaves behind at each step and at its end; a number below 0 is
    // one in that many chances of one.
    int32_t stepType = -1, stepNumber = 0, deathType = -1, deathNumber = 0;
    float speedMin = 0, speedMax = 0, speedIncrease = 0, speedWiggle = 0;
    float directionMin = 0, directionMax = 0, directionIncrease = 0, directionWiggle = 0;
    float gravityAmount = 0, gravityDirection = 270;
    float angleMin = 0, angleMax = 0, angleIncrease = 0, angleWiggle = 0;
    bool angleRelative = false;  // to the direction of motion
    ParticleColours colourMode = ParticleColours::One;
    uint32_t colours[3] = {0xFFFFFF, 0xFFFFFF, 0xFFFFFF};
    uint8_t channels[3][2] = {};  // least and most of red, green, blue or hue, saturation, value
    float alphaStart = 1, alphaMiddle = 1, alphaEnd = 1;
    bool additiveBlend = false;
    bool selfSpawnReported = false;  // once a type, not once a particle and step
    bool ofEffects = false;          // made for an effect, not by a script
};

enum class EmitterShape : int32_t { Rectangle, Ellipse, Diamond, Line };
enum class EmitterSpread : int32_t { Linear, Gaussian, InverseGaussian };

struct CParticleEmitter {
    bool inUse = false;
    float xmin = 0, xmax = 0, ymin = 0, ymax = 0;
    EmitterShape shape = EmitterShape::Rectangle;
    EmitterSpread spread = EmitterSpread::Linear;
    int32_t streamType = -1, streamNumber = 0;  // each step; below 0 as above
};

struct CParticleSystem {
    CParticleSystem() = default;
    ~CParticleSystem();
    CParticleSystem(const CParticleSystem&) = delete;
    CParticleSystem& operator=(const CParticleSystem&) = delete;

    // The first `count` are alive, oldest first; the records behind them wait for new ones.
    CParticle** particles = nullptr;
    int32_t capacity = 0, count = 0;
    VxVector<CParticleEmitter> emitters;
    float xdraw = 0, ydraw = 0, depth = 0;
    bool order = true;  // of drawing: oldest first
    bool automaticUpdate = true, automaticDraw = true;
    bool ofEffects = false;  // as in CParticleType
    int32_t layer = -1;      // of a room of the archive's newer format; -1 for none
};

// ---- life of the module
void Particle_Init();            // empty tables; joins the frame and the depth merge
void Particle_Quit();            // frees systems, types and shape pictures
void Particle_CreateTextures();  // the shape pictures; the device is open

// ---- the tables; null for a place that is empty or outside
int32_t ParticleSystem_Create();
CParticleSystem* ParticleSystem_Data(int32_t index);
void ParticleSystem_Destroy(int32_t index);
int32_t ParticleType_Create();
CParticleType* ParticleType_Data(int32_t index);
void ParticleType_Destroy(int32_t index);
int32_t ParticleEmitter_Create(CParticleSystem* system);
CParticleEmitter* ParticleEmitter_Data(CParticleSystem* system, int32_t index);

// ---- particles
// `number` below 0 is one in that many chances of one. False without such a type.
bool Particle_Make(CParticleSystem* system, float x, float y, int32_t type, int32_t number);
CParticle* Particle_MakeOne(CParticleSystem* system, float x, float y, int32_t type,
                            const CParticleType& look);
bool Particle_Burst(CParticleSystem* system, const CParticleEmitter& emitter, int32_t type,
                    int32_t number);
void Particle_Clear(CParticleSystem* system);

void Particle_Update(CParticleSystem* system);
void Particle_UpdateAll();  // systems with automaticUpdate
void Particle_ClearRoom();  // a room ends: systems that hang on one of its layers lose their
                            // particles

void Particle_Draw(const CParticleSystem& system);
float Particle_FirstDepth();  // as ParticleLayers has it
float Particle_NextDepth(float depth);
void Particle_DrawDepth(float depth);

// ---- effects
// An effect at a place of the room. size: 0 small, 2 large, anything else between.
void Effect_Create(bool above, int32_t kind, float x, float y, int32_t size, uint32_t colour);
void Effect_Clear();   // removes the particles of both effect systems
void Effect_Forget();  // the systems and types are gone
