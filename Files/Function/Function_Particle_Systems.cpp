// Particle systems, their particles and their emitters.

#include "Files/Base/Console.h"
#include "Files/Function/Arguments.h"
#include "Files/Function/Function_Graphic.h"
#include "Files/Function/Function_Particle.h"

namespace {

// ---- systems. Argument 0 names the system; one that does not exist is left alone.

CParticleSystem* SystemArgument(const RValue* args, int argc)
{
    return ParticleSystem_Data(ArgInt(args, argc, 0, -1));
}

BUILTIN(part_system_create)
{
    SetReal(result, ParticleSystem_Create());
}

BUILTIN(part_system_exists)
{
    SetBool(result, SystemArgument(args, argc) != nullptr);
}

BUILTIN(part_system_destroy)
{
    ParticleSystem_Destroy(ArgInt(args, argc, 0, -1));
}

BUILTIN(part_system_clear)
{
    if (CParticleSystem* system = SystemArgument(args, argc)) Particle_Clear(system);
}

BUILTIN(part_system_depth)
{
    if (CParticleSystem* system = SystemArgument(args, argc))
        system->depth = ArgFloat(args, argc, 1);
}

BUILTIN(part_system_position)
{
    CParticleSystem* system = SystemArgument(args, argc);
    if (!system) return;
    system->xdraw = ArgFloat(args, argc, 1);
    system->ydraw = ArgFloat(args, argc, 2);
}

template <bool CParticleSystem::*Switch>
void SetSwitch(RValue&, CInstance*, CInstance*, int argc, RValue* args)
{
    if (CParticleSystem* system = SystemArgument(args, argc))
        system->*Switch = ArgBool(args, argc, 1);
}

BUILTIN(part_system_update)
{
    if (CParticleSystem* system = SystemArgument(args, argc)) Particle_Update(system);
}

BUILTIN(part_system_drawit)
{
    if (const CParticleSystem* system = SystemArgument(args, argc)) Particle_Draw(*system);
}

// ---- particles

void NoType()
{
    g_DebugConsole->Output("part_particles_create :: particle type does not exist!\n");
}

// The system of argument 0 when the type exists too; null after a word otherwise.
CParticleSystem* SystemFor(int32_t type, const RValue* args, int argc)
{
    CParticleSystem* system = SystemArgument(args, argc);
    if (!system)
        g_DebugConsole->Output("part_particles_create :: particle system does not exist!\n");
    else if (!ParticleType_Data(type))
        NoType();
    return ParticleType_Data(type) ? system : nullptr;
}

BUILTIN(part_particles_create)
{
    const int32_t type = ArgInt(args, argc, 3, -1);
    if (CParticleSystem* system = SystemFor(type, args, argc))
        Particle_Make(system, ArgFloat(args, argc, 1), ArgFloat(args, argc, 2), type,
                      ArgInt(args, argc, 4));
}

BUILTIN(part_particles_create_colour)
{
    const int32_t type = ArgInt(args, argc, 3, -1);
    CParticleSystem* system = SystemFor(type, args, argc);
    if (!system) return;
    const int32_t before = system->count;
    Particle_Make(system, ArgFloat(args, argc, 1), ArgFloat(args, argc, 2), type,
                  ArgInt(args, argc, 5));
    for (int32_t i = before; i < system->count; ++i)
        system->particles[i]->colour = ArgColour(args, argc, 4);
}

BUILTIN(part_particles_count)
{
    const CParticleSystem* system = SystemArgument(args, argc);
    SetReal(result, system ? system->count : 0);
}

// ---- emitters. Argument 0 names the system, argument 1 the emitter.

CParticleEmitter* EmitterArgument(const RValue* args, int argc)
{
    return ParticleEmitter_Data(SystemArgument(args, argc), ArgInt(args, argc, 1, -1));
}

BUILTIN(part_emitter_create)
{
    CParticleSystem* system = SystemArgument(args, argc);
    SetReal(result, system ? ParticleEmitter_Create(system) : -1);
}

BUILTIN(part_emitter_exists)
{
    SetBool(result, EmitterArgument(args, argc) != nullptr);
}

BUILTIN(part_emitter_destroy)
{
    if (CParticleEmitter* emitter = EmitterArgument(args, argc)) *emitter = CParticleEmitter();
}

BUILTIN(part_emitter_destroy_all)
{
    if (CParticleSystem* system = SystemArgument(args, argc)) system->emitters.clear();
}

BUILTIN(part_emitter_clear)
{
    CParticleEmitter* emitter = EmitterArgument(args, argc);
    if (!emitter) return;
    *emitter = CParticleEmitter();
    emitter->inUse = true;
}

template <class Word>
Word ArgWord(const RValue* args, int argc, int i, Word last)
{
    const int32_t word = ArgInt(args, argc, i);
    return word > 0 && word <= static_cast<int32_t>(last) ? static_cast<Word>(word) : Word();
}

BUILTIN(part_emitter_region)
{
    CParticleEmitter* emitter = EmitterArgument(args, argc);
    if (!emitter) return;
    emitter->xmin = ArgFloat(args, argc, 2);
    emitter->xmax = ArgFloat(args, argc, 3);
    emitter->ymin = ArgFloat(args, argc, 4);
    emitter->ymax = ArgFloat(args, argc, 5);
    emitter->shape = ArgWord(args, argc, 6, EmitterShape::Line);
    emitter->spread = ArgWord(args, argc, 7, EmitterSpread::InverseGaussian);
}

BUILTIN(part_emitter_burst)
{
    const CParticleEmitter* emitter = EmitterArgument(args, argc);
    if (emitter && !Particle_Burst(SystemArgument(args, argc), *emitter, ArgInt(args, argc, 2, -1),
                                   ArgInt(args, argc, 3)))
        NoType();
}

BUILTIN(part_emitter_stream)
{
    CParticleEmitter* emitter = EmitterArgument(args, argc);
    if (!emitter) return;
    emitter->streamType = ArgInt(args, argc, 2, -1);
    emitter->streamNumber = ArgInt(args, argc, 3);
}

constexpr BuiltinRow kRows[] = {
    {"part_system_create", part_system_create, 0},
    {"part_system_destroy", part_system_destroy, 1},
    {"part_system_exists", part_system_exists, 1},
    {"part_system_clear", part_system_clear, 1},
    {"part_system_depth", part_system_depth, 2},
    {"part_system_position", part_system_position, 3},
    {"part_system_draw_order", SetSwitch<&CParticleSystem::order>, 2},
    {"part_system_automatic_update", SetSwitch<&CParticleSystem::automaticUpdate>, 2},
    {"part_system_automatic_draw", SetSwitch<&CParticleSystem::automaticDraw>, 2},
    {"part_system_update", part_system_update, 1},
    {"part_system_drawit", part_system_drawit, 1},
    {"part_particles_create", part_particles_create, 5},
    {"part_particles_create_colour", part_particles_create_colour, 6},
    {"part_particles_create_color", part_particles_create_colour, 6},
    {"part_particles_clear", part_system_clear, 1},
    {"part_particles_count", part_particles_count, 1},
    {"part_emitter_create", part_emitter_create, 1},
    {"part_emitter_destroy", part_emitter_destroy, 2},
    {"part_emitter_destroy_all", part_emitter_destroy_all, 1},
    {"part_emitter_exists", part_emitter_exists, 2},
    {"part_emitter_clear", part_emitter_clear, 2},
    {"part_emitter_region", part_emitter_region, 8},
    {"part_emitter_burst", part_emitter_burst, 4},
    {"part_emitter_stream", part_emitter_stream, 4},
};

}  // namespace

void Function_Particle_RegisterSystems()
{
    Function_AddRows(kRows);
}
