// Scenes of particles: the built-in shapes, and the effects under way.

#include "Files/Function/Function_Registry.h"
#include "Files/Particle/Particle_Main.h"
#include "Files/Run/Services.h"
#include "tests/Files/Graphics/support_Scenes.h"

namespace {

void Prepare(SceneStage& s, int32_t width, int32_t height)
{
    s.room(width, height).colour = 0x402820;
    Function_Particle_Register();
    Particle_Init();
    Particle_CreateTextures();
}

void Shapes(SceneStage& s)
{
    Prepare(s, 480, 140);
    const double system = s.call("part_system_create");
    for (int shape = 0; shape < kParticleShapes; ++shape) {
        const double type = s.call("part_type_create");
        s.call("part_type_shape", type, shape);
        s.call("part_particles_create", system, 36 + shape % 7 * 68, 36 + shape / 7 * 68, type, 1);
    }
    DrawRoom();
    Particle_Quit();
}

// A row for small ones and one for medium ones, a third of a second after they began.
// Rain and snow fall behind them.
void Effects(SceneStage& s)
{
    Prepare(s, 1100, 280);
    Random_Seed(7);
    constexpr uint32_t kColours[] = {kOrange, kYellow, kWhite, kYellow, kGrey,
                                     kWhite,  kYellow, kWhite, kOrange, kWhite};
    for (int step = 0; step < 90; ++step) {
        s.call("effect_create_below", 10, 0, 0, 1, 0xC0C0C0);
        if (step % 3 == 0) s.call("effect_create_below", 11, 0, 0, 1, kWhite);
        for (int kind = 0; step == 80 && kind < 10; ++kind)
            for (int size = 0; size < 2; ++size)
                s.call("effect_create_above", kind, 60 + kind * 108, 50 + size * 140, size,
                       kColours[kind]);
        Services_UpdateParticles();
    }
    DrawRoom();
    Particle_Quit();
}

constexpr SceneRow kScenes[] = {
    {"particle_shapes", 480, 140, Shapes},
    {"particle_effects", 1100, 280, Effects},
};

}  // namespace

std::span<const SceneRow> Scenes_Particles()
{
    return kScenes;
}
