// The tables of systems and types, and the birth of particles.

#include "Files/Particle/Particle_Main.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "Files/Function/Function_Graphic.h"
#include "Files/Function/Function_Registry.h"
#include "Files/Particle/Particle_Internal.h"

namespace {

constexpr int32_t kGrowth = 100;  // particles
constexpr int32_t kImages = 10000, kRandoms = 100000;
constexpr double kSpreadReach = 3;  // standard deviations from middle to edge

VxVector<CParticleSystem*> s_systems;
VxVector<CParticleType*> s_types;

template <class T>
int32_t Put(VxVector<T*>* table, T* made)
{
    const auto free = std::find(table->begin(), table->end(), nullptr);
    const auto place = static_cast<int32_t>(free - table->begin());
    if (free == table->end())
        table->push_back(made);
    else
        *free = made;
    return place;
}

template <class T>
T* At(const VxVector<T*>& table, int32_t index)
{
    return index >= 0 && static_cast<size_t>(index) < table.size()
               ? table[static_cast<size_t>(index)]
               : nullptr;
}

template <class T>
void Remove(VxVector<T*>* table, int32_t index)
{
    if (T* gone = At(*table, index)) {
        VxDelete(gone);
        (*table)[static_cast<size_t>(index)] = nullptr;
    }
}

template <class T>
void RemoveAll(VxVector<T*>* table)
{
    for (T* gone : *table) VxDelete(gone);
    VxVector<T*>().swap(*table);
}

int32_t RandomBelow(int32_t limit)
{
    return static_cast<int32_t>(Random_Integer(limit - 1));
}

double RandomChannel(const uint8_t limits[2])
{
    return static_cast<double>(std::lrint(Particle_Random(limits[0], limits[1])));
}

uint32_t FirstColour(const CParticleType& look)
{
    if (look.colourMode == ParticleColours::Mix)
        return Particle_Blend(look.colours[0], look.colours[1], Particle_Random(0, 1));
    if (look.colourMode != ParticleColours::Rgb && look.colourMode != ParticleColours::Hsv)
        return look.colours[0];
    const double a = RandomChannel(look.channels[0]), b = RandomChannel(look.channels[1]),
                 c = RandomChannel(look.channels[2]);
    return look.colourMode == ParticleColours::Rgb ? Colour_FromRgb(a, b, c)
                                                   : Colour_FromHsv(a, b, c);
}

// The record behind the living ones.
CParticle* NextRecord(CParticleSystem* system)
{
    if (system->count == system->capacity) {
        system->capacity += kGrowth;
        MemoryManager::SetLength(&system->particles,
                                 static_cast<size_t>(system->capacity) * sizeof(CParticle*));
    }
    CParticle*& record = system->particles[system->count++];
    if (!record) record = static_cast<CParticle*>(MemoryManager::Alloc(sizeof(CParticle)));
    return record;
}

int32_t Chance(int32_t number)
{
    if (number >= 0) return number;
    return Random_Integer(-(static_cast<int64_t>(number) + 1)) == 0 ? 1 : 0;
}

// A normal variate within kSpreadReach, as a share of the reach from -1 to 1 (G. E. P.
// Box, M. E. Muller, "A Note on the Generation of Random Normal Deviates", 1958).
double Normal()
{
    const double radius = std::sqrt(-2 * std::log(1 - Random_Real(1)));
    return std::clamp(radius * std::cos(Random_Real(kTurn)) / kSpreadReach, -1.0, 1.0);
}

// From -1 at one edge to 1 at the other.
double Across(EmitterSpread spread)
{
    if (spread == EmitterSpread::Linear) return Random_Real(2) - 1;
    const double normal = Normal();
    if (spread == EmitterSpread::Gaussian) return normal;
    return normal < 0 ? -1 - normal : 1 - normal;
}

// From 0 in the middle to 1 at the rim, for an even cover of a disc.
double Outward(EmitterSpread spread)
{
    if (spread == EmitterSpread::Linear) return std::sqrt(Random_Real(1));
    const double normal = std::fabs(Normal());
    return spread == EmitterSpread::Gaussian ? normal : 1 - normal;
}

struct Offset {
    double x, y;  // -1 to 1, from the middle of the region to its edges
};

Offset PlaceIn(const CParticleEmitter& emitter)
{
    if (emitter.shape == EmitterShape::Ellipse) {
        const double radius = Outward(emitter.spread), angle = Random_Real(kTurn);
        return {radius * std::cos(angle), radius * std::sin(angle)};
    }
    const double a = Across(emitter.spread);
    if (emitter.shape == EmitterShape::Line) return {a, a};
    const double b = Across(emitter.spread);
    // A square turned by an eighth is a diamond.
    if (emitter.shape == EmitterShape::Diamond) return {(a + b) / 2, (a - b) / 2};
    return {a, b};
}

}  // namespace

CParticleSystem::~CParticleSystem()
{
    // Records were made from the first place on.
    for (int32_t i = 0; i < capacity && particles[i]; ++i) MemoryManager::Free(particles[i]);
    MemoryManager::Free(particles);
}

void ParticleTables_Free()
{
    RemoveAll(&s_systems);
    RemoveAll(&s_types);
}

int32_t ParticleSystem_Create()
{
    return Put(&s_systems, VxNew<CParticleSystem>());
}
CParticleSystem* ParticleSystem_Data(int32_t index)
{
    return At(s_systems, index);
}
void ParticleSystem_Destroy(int32_t index)
{
    Remove(&s_systems, index);
}
const VxVector<CParticleSystem*>& ParticleSystem_Table()
{
    return s_systems;
}

int32_t ParticleType_Create()
{
    return Put(&s_types, VxNew<CParticleType>());
}
CParticleType* ParticleType_Data(int32_t index)
{
    return At(s_types, index);
}
void ParticleType_Destroy(int32_t index)
{
    Remove(&s_types, index);
}

int32_t ParticleEmitter_Create(CParticleSystem* system)
{
    VxVector<CParticleEmitter>& emitters = system->emitters;
    const auto free = std::find_if(emitters.begin(), emitters.end(),
                                   [](const CParticleEmitter& emitter) { return !emitter.inUse; });
    const auto place = static_cast<int32_t>(free - emitters.begin());
    CParticleEmitter made;
    made.inUse = true;
    if (free == emitters.end())
        emitters.push_back(made);
    else
        *free = made;
    return place;
}

CParticleEmitter* ParticleEmitter_Data(CParticleSystem* system, int32_t index)
{
    if (!system || index < 0 || static_cast<size_t>(index) >= system->emitters.size())
        return nullptr;
    CParticleEmitter& emitter = system->emitters[static_cast<size_t>(index)];
    return emitter.inUse ? &emitter : nullptr;
}

float Particle_Random(float least, float most)
{
    if (least == most) return least;
    return least + static_cast<float>(Random_Real(static_cast<double>(most - least)));
}

uint32_t Particle_Blend(uint32_t from, uint32_t to, float share)
{
    uint32_t blended = 0;
    for (uint32_t shift = 0; shift <= 16; shift += 8) {
        const auto a = static_cast<float>(from >> shift & 0xFFU);
        const auto b = static_cast<float>(to >> shift & 0xFFU);
        blended |= static_cast<uint32_t>(std::lrint(a + (b - a) * share)) << shift;
    }
    return blended;
}

CParticle* Particle_MakeOne(CParticleSystem* system, float x, float y, int32_t type,
                            const CParticleType& look)
{
    CParticle* made = NextRecord(system);
    made->alive = true;
    made->type = type;
    made->x = made->xprev = x;
    made->y = made->yprev = y;
    made->speed = Particle_Random(look.speedMin, look.speedMax);
    made->direction = Particle_Random(look.directionMin, look.directionMax);
    made->angle = Particle_Random(look.angleMin, look.angleMax);
    made->lifetime = static_cast<int32_t>(std::lrint(
        Particle_Random(static_cast<float>(look.lifeMin), static_cast<float>(look.lifeMax))));
    made->age = 0;
    made->colour = FirstColour(look);
    made->alpha = look.alphaStart;
    made->size = Particle_Random(look.sizeMin, look.sizeMax);
    made->image = look.randomFrame ? RandomBelow(kImages) : 0;
    made->random = RandomBelow(kRandoms);
    return made;
}

bool Particle_Make(CParticleSystem* system, float x, float y, int32_t type, int32_t number)
{
    const CParticleType* look = ParticleType_Data(type);
    if (!look) return false;
    for (int32_t left = Chance(number); left > 0; --left)
        Particle_MakeOne(system, x, y, type, *look);
    return true;
}

bool Particle_Burst(CParticleSystem* system, const CParticleEmitter& emitter, int32_t type,
                    int32_t number)
{
    const CParticleType* look = ParticleType_Data(type);
    if (!look) return false;
    const double xmiddle = (emitter.xmin + emitter.xmax) / 2, xreach = emitter.xmax - xmiddle;
    const double ymiddle = (emitter.ymin + emitter.ymax) / 2, yreach = emitter.ymax - ymiddle;
    for (int32_t left = Chance(number); left > 0; --left) {
        const Offset at = PlaceIn(emitter);
        Particle_MakeOne(system, static_cast<float>(xmiddle + at.x * xreach),
                         static_cast<float>(ymiddle + at.y * yreach), type, *look);
    }
    return true;
}

void Particle_Clear(CParticleSystem* system)
{
    system->count = 0;
}
