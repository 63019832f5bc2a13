// Particles on the screen: one quad each, and the place of their systems among the
// depths of a room.

#include <algorithm>
#include <cmath>

#include "Files/Graphics/Draw_Room.h"
#include "Files/Graphics/GpuState.h"
#include "Files/Graphics/Quad_Emit.h"
#include "Files/Particle/Particle_Internal.h"
#include "Files/Sprite/CSprite.h"

namespace {

constexpr float kTurnDepth = 0.01F;    // systems of nearly one depth share a turn
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

// A sprite in a shape's place takes the shape's size, and its middle is the particle's.
void DrawStandIn(CSprite* sprite, int32_t frame, const Picture& at, uint32_t colour, float alpha)
{
    const auto side = static_cast<float>(kParticleShapeSize);
    const auto width = static_cast<float>(sprite->width),
               height = static_cast<float>(sprite->height);
    const float xscale = at.xscale * side / width, yscale = at.yscale * side / height;
    const float right = (width / 2 - static_cast<float>(sprite->originX)) * xscale;
    const float down = (height / 2 - static_cast<float>(sprite->originY)) * yscale;
    const float sine = std::sin(at.angle * kRadian), cosine = std::cos(at.angle * kRadian);
    sprite->DrawExt(frame, at.x - right * cosine - down * sine, at.y + right * sine - down * cosine,
                    xscale, yscale, at.angle, colour, alpha);
}

void DrawOne(const CParticle& particle, const CParticleType& look, float x, float y)
{
    const float wiggle = Particle_Wiggle(particle.age + particle.random, kWigglePeriod);
    const float size = particle.size + wiggle * look.sizeWiggle;
    const Picture at = {
        particle.x + x, particle.y + y, look.xscale * size, look.yscale * size,
        particle.angle + (look.angleRelative ? particle.direction : 0) + wiggle * look.angleWiggle};
    if (look.sprite >= 0) {
        if (CSprite* sprite = Sprite_Data(look.sprite))
            sprite->DrawExt(FrameOf(particle, look, *sprite), at.x, at.y, at.xscale, at.yscale,
                            at.angle, particle.colour, particle.alpha);
    } else if (CSprite* standIn = Sprite_Data(ParticleShape_Sprite(look.shape))) {
        DrawStandIn(standIn, FrameOf(particle, look, *standIn), at, particle.colour,
                    particle.alpha);
    } else {
        DrawShape(look.shape, at, particle.colour, particle.alpha);
    }
}

// A turn reaches from its depth a little downward, so that no system has two.
bool Below(float turn, const CParticleSystem& system)
{
    return system.depth <= turn - kTurnDepth;
}

bool InTurn(float turn, const CParticleSystem& system)
{
    return system.depth <= turn && !Below(turn, system);
}

constexpr float kAboveAll = 1e9F;

}  // namespace

void Particle_Draw(const CParticleSystem& system)
{
    bool additive = false;
    for (int32_t i = 0; i < system.count; ++i) {
        const CParticle& particle = *system.particles[system.order ? i : system.count - 1 - i];
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
    float next = kNoParticles;
    for (const CParticleSystem* system : ParticleSystem_Table())
        if (system && system->automaticDraw && Below(depth, *system))
            next = std::max(next, system->depth);
    return next;
}

void Particle_DrawDepth(float depth)
{
    for (const CParticleSystem* system : ParticleSystem_Table())
        if (system && system->automaticDraw && InTurn(depth, *system)) Particle_Draw(*system);
}
