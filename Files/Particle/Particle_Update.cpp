// One step of a particle system.

#include <cmath>
#include <utility>

#include "Files/Base/Error.h"
#include "Files/Particle/Particle_Internal.h"
#include "Files/Particle/Particle_Main.h"

namespace {

void Spawn(CParticleSystem* system, const CParticle& parent, CParticleType* look, int32_t type,
           int32_t number)
{
    if (number == 0 || !look) return;
    if (type != parent.type) {
        Particle_Make(system, parent.x, parent.y, type, number);
        return;
    }
    if (look->selfSpawnReported) return;
    look->selfSpawnReported = true;
    Error_Show("Error: a particle cannot spawn another of the same type", false);
}

void Age(CParticleSystem* system)
{
    const int32_t present = system->count;  // what is spawned now ages from the next step on
    for (int32_t i = 0; i < present; ++i) {
        CParticle& particle = *system->particles[i];
        CParticleType* look = ParticleType_Data(particle.type);
        particle.alive = ++particle.age < particle.lifetime;
        if (!look) continue;
        if (particle.alive)
            Spawn(system, particle, look, look->stepType, look->stepNumber);
        else
            Spawn(system, particle, look, look->deathType, look->deathNumber);
    }
}

// The living ones move down in their order, the records of the dead up.
void Compact(CParticleSystem* system)
{
    int32_t living = 0;
    for (int32_t i = 0; i < system->count; ++i)
        if (system->particles[i]->alive)
            std::swap(system->particles[living++], system->particles[i]);
    system->count = living;
}

void Attract(CParticle* particle, const CParticleType& look)
{
    const float own = particle->direction * kRadian, pull = look.gravityDirection * kRadian;
    const float right = std::cos(own) * particle->speed + std::cos(pull) * look.gravityAmount;
    const float up = std::sin(own) * particle->speed + std::sin(pull) * look.gravityAmount;
    particle->speed = std::hypot(right, up);
    particle->direction = std::atan2(up, right) / kRadian;
}

void Move(CParticle* particle, const CParticleType& look)
{
    particle->xprev = particle->x;
    particle->yprev = particle->y;
    particle->speed = std::fmax(particle->speed + look.speedIncrease, 0.0F);
    particle->direction += look.directionIncrease;
    particle->angle += look.angleIncrease;
    particle->size = std::fmax(particle->size + look.sizeIncrease, 0.0F);
    if (look.gravityAmount != 0) Attract(particle, look);
    const float wiggle = Particle_Wiggle(particle->age + particle->random * 4, 20);
    const float speed = particle->speed + wiggle * look.speedWiggle;
    // Bends have a rhythm of their own, or each one would come with the same push.
    const float bend = Particle_Wiggle(particle->age + particle->random * 3, 24);
    const float direction = (particle->direction + bend * look.directionWiggle) * kRadian;
    particle->x += std::cos(direction) * speed;
    particle->y -= std::sin(direction) * speed;
}

float Between(float from, float to, float share)
{
    return from + (to - from) * share;
}

void Fade(CParticle* particle, const CParticleType& look)
{
    if (particle->lifetime < 1) return;  // born to be gone at the next step
    const float life = static_cast<float>(particle->age) / static_cast<float>(particle->lifetime);
    const bool young = life < 0.5F;
    const float half = young ? life * 2 : life * 2 - 1;  // of the half under way
    particle->alpha = young ? Between(look.alphaStart, look.alphaMiddle, half)
                            : Between(look.alphaMiddle, look.alphaEnd, half);
    if (look.colourMode == ParticleColours::Two)
        particle->colour = Particle_Blend(look.colours[0], look.colours[1], life);
    else if (look.colourMode == ParticleColours::Three)
        particle->colour = young ? Particle_Blend(look.colours[0], look.colours[1], half)
                                 : Particle_Blend(look.colours[1], look.colours[2], half);
}

// Each living particle with its type; one whose type is gone stands still until its end.
template <class Do>
void ForEach(const CParticleSystem& system, Do act)
{
    for (int32_t i = 0; i < system.count; ++i)
        if (const CParticleType* look = ParticleType_Data(system.particles[i]->type))
            act(system.particles[i], *look);
}

}  // namespace

float Particle_Wiggle(int32_t phase, int32_t period)
{
    const float w = static_cast<float>(phase % period) * 4 / static_cast<float>(period);
    return (w > 2 ? 4 - w : w) - 1;
}

void Particle_Update(CParticleSystem* system)
{
    Age(system);
    Compact(system);
    ForEach(*system, Move);
    ForEach(*system, Fade);
    for (const CParticleEmitter& emitter : system->emitters)
        if (emitter.inUse && emitter.streamNumber != 0)
            Particle_Burst(system, emitter, emitter.streamType, emitter.streamNumber);
}

void Particle_UpdateAll()
{
    for (CParticleSystem* system : ParticleSystem_Table())
        if (system && system->automaticUpdate) Particle_Update(system);
}

void Particle_ClearRoom()
{
    for (CParticleSystem* system : ParticleSystem_Table())
        if (system && system->layer >= 0) Particle_Clear(system);
}
