// Particles on the screen: one quad each, and the place of their systems among the
// depths of a room.

#include <cmath>

#include "Files/Graphics/Draw_Room.h"
#include "Files/Graphics/GpuState.h"
#include "Files/Graphics/Quad_Emit.h"
#include "Files/Particle/Particle_Internal.h"
#include "Files/Sprite/CSprite.h"

namespace {

constexpr float kRadian = 3.1415927F / 180.0F;
constexpr float kSameDepth = 0.01F;
constexpr int32_t kWigglePeriod = 16;  // steps

void SetAdditive(bool additive)
{
    const auto source = static_cast<uint32_t>(DeviceBlend::SrcAlpha);
    const auto dest = static_cast<uint32_t>(additive ? DeviceBlend::One : DeviceBlend::InvSrcAlpha);
    GpuState_Set(STATE_SRC_BLEND, source);
    GpuState_Set(STATE_DEST_BLEND, dest);
    GpuState_Set(STATE_SRC_BLEND_ALPHA, source);
    GpuState_Set(STATE_DEST_BLEND_ALPHA, dest);
}

// Where and how one particle is drawn.
struct Picture {
    float x, y, xscale, yscale, angle;  // degrees
};

int32_t FrameOf(const CParticle& particle, const CParticleType& look, const CSprite& sprite)
{
    if (!look.animate) return particle.image;
    if (!look.stretch) return particle.image + particle.age;
    return particle.image + sprite.frameCount * particle.age / particle.lifetime;
}

void DrawShape(int32_t shape, const Picture& at, uint32_t colour, float alpha)
{
    const TextureSlot* slot = Quad_Slot(ParticleShape_Slot(shape));
    if (!slot) return;
    const float right = static_cast<float>(kParticleShapeSize) / 2 * at.xscale;
    const float bottom = static_cast<float>(kParticleShapeSize) / 2 * at.yscale;
    Quad_Emit(
        slot->texture,
        Quad_Turn(at.x, at.y, -right, -bottom, right, bottom, at.angle * kRadian, kNoTurnGeneral),
        Quad_SlotTexels(*slot), Quad_OneColour(VertexColour(colour, alpha)));
}

void DrawOne(const CParticle& particle, const CParticleType& look, float x, float y)
{
    const float wiggle = Particle_Wiggle(particle.age + particle.random, kWigglePeriod);
    const float size = particle.size + wiggle * look.sizeWiggle;
    const Picture at = {
        particle.x + x, particle.y + y, look.xscale * size, look.yscale * size,
        particle.angle + (look.angleRelative ? particle.direction : 0) + wiggle * look.angleWiggle};
    const int32_t index = look.sprite >= 0 ? look.sprite : ParticleShape_Sprite(look.shape);
    if (CSprite* sprite = Sprite_Data(index))
        sprite->DrawExt(FrameOf(particle, look, *sprite), at.x, at.y, at.xscale, at.yscale,
                        at.angle, particle.colour, particle.alpha);
    else if (look.sprite < 0)
        DrawShape(look.shape, at, particle.colour, particle.alpha);
}

bool SameDepth(float a, float b)
{
    return std::fabs(a - b) < kSameDepth;
}

constexpr float kAboveAll = 1e9F, kBelowAll = -1e9F;

}  // namespace

void Particle_Draw(const CParticleSystem& system)
{
    bool additive = false;
    for (int32_t i = 0; i < system.count; ++i) {
        const CParticle& particle = *system.particles[system.oldToNew ? i : system.count - 1 - i];
        if (particle.lifetime < 1) break;
        const CParticleType* look = ParticleType_Data(particle.type);
        if (!look) continue;
        if (look->additiveBlend != additive) SetAdditive(additive = look->additiveBlend);
        DrawOne(particle, *look, system.xdraw, system.ydraw);
    }
    if (additive) SetAdditive(false);
}

float Particle_FirstDepth()
{
    return Particle_NextDepth(kAboveAll);
}

float Particle_NextDepth(float depth)
{
    float next = kBelowAll;
    for (const CParticleSystem* system : ParticleSystem_Table())
        if (system && system->automaticDraw && system->depth < depth && system->depth > next &&
            !SameDepth(system->depth, depth))
            next = system->depth;
    return next;
}

void Particle_DrawDepth(float depth)
{
    for (const CParticleSystem* system : ParticleSystem_Table())
        if (system && system->automaticDraw && SameDepth(system->depth, depth))
            Particle_Draw(*system);
}
