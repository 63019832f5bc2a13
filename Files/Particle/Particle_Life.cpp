// The module's start and end, and the textures of the shapes.

#include <algorithm>
#include <iterator>

#include "Files/Graphics/Draw_Room.h"
#include "Files/Graphics/TextureSlots.h"
#include "Files/Particle/Particle_Internal.h"
#include "Files/Run/Services.h"
#include "Files/Sprite/CSprite.h"

namespace {

// A sprite of the archive with such a name stands in for the shape.
constexpr const char* kShapeNames[kParticleShapes] = {
    "pt_shape_pixel",     "pt_shape_disk",  "pt_shape_square", "pt_shape_line",  "pt_shape_star",
    "pt_shape_circle",    "pt_shape_ring",  "pt_shape_sphere", "pt_shape_flare", "pt_shape_spark",
    "pt_shape_explosion", "pt_shape_cloud", "pt_shape_smoke",  "pt_shape_snow"};

constexpr int32_t kNotLooked = -2;

int32_t s_slots[kParticleShapes];
int32_t s_sprites[kParticleShapes];  // looked for at the first use: the archive is read later

constexpr ParticleLayers kLayers = {Particle_FirstDepth, Particle_NextDepth, Particle_DrawDepth};

}  // namespace

void Particle_Init()
{
    std::fill(std::begin(s_slots), std::end(s_slots), -1);
    std::fill(std::begin(s_sprites), std::end(s_sprites), kNotLooked);
    g_ParticleLayers = &kLayers;
    Service_Hook(ServicePlace::Particles, Particle_UpdateAll);
    Service_Hook(ServicePlace::ClearRoom, Particle_ClearRoom);
    Service_Hook(ServicePlace::ClearEffects, Effect_Clear);
}

void Particle_Quit()
{
    Service_Unhook(ServicePlace::Particles, Particle_UpdateAll);
    Service_Unhook(ServicePlace::ClearRoom, Particle_ClearRoom);
    Service_Unhook(ServicePlace::ClearEffects, Effect_Clear);
    g_ParticleLayers = nullptr;
    for (int32_t& slot : s_slots) {
        if (slot >= 0) Texture_Free(slot);
        slot = -1;
    }
    ParticleTables_Free();
    Effect_Forget();
}

void Particle_CreateTextures()
{
    constexpr int32_t kPixels = kParticleShapeSize * kParticleShapeSize;
    VxVector<uint8_t> alpha(kPixels);
    VxVector<uint32_t> pixels(kPixels);
    for (int32_t shape = 0; shape < kParticleShapes; ++shape) {
        Particle_PaintShape(shape, alpha.data());
        std::transform(alpha.begin(), alpha.end(), pixels.begin(),
                       [](uint8_t a) { return static_cast<uint32_t>(a) << 24 | 0xFFFFFFU; });
        s_slots[shape] = Texture_CreateFromPixels(kParticleShapeSize, kParticleShapeSize,
                                                  pixels.data(), kPixels * sizeof(uint32_t));
    }
}

int32_t ParticleShape_Slot(int32_t shape)
{
    return shape >= 0 && shape < kParticleShapes ? s_slots[shape] : -1;
}

int32_t ParticleShape_Sprite(int32_t shape)
{
    if (shape < 0 || shape >= kParticleShapes) return -1;
    if (s_sprites[shape] == kNotLooked) s_sprites[shape] = Sprite_Find(kShapeNames[shape]);
    return s_sprites[shape];
}
