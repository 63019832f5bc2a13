// The sky: clouds that drift to and fro, rain and its flashes, rays of the sun.

#include "game/Rules.h"

namespace {

// A small cloud is a faint one.
void form_cloud(CInstance* self)
{
    self->var(image_index) = 0;
    self->var(image_speed) = 0;
    randomize();
    self->var(tamanho) = (irandom(50) + 50) / 100;
    self->var(image_xscale) = self->var(tamanho);
    self->var(image_yscale) = self->var(tamanho);
    self->var(image_alpha) = self->var(tamanho);
}

// No cloud stands still.
void let_cloud_drift(CInstance* self)
{
    randomize();
    self->var(anda) = irandom(4) - 2;
    if (self->var(anda) == 0) self->var(anda) = 1;
    self->var(hspeed) = self->var(anda);
}

// The next flash comes in one second to that many more.
void wait_for_flash(CInstance* self, double seconds)
{
    randomize();
    self->var(alarm)[0] = room_speed + irandom(room_speed * seconds);
}

}  // namespace

// ---- clouds

void vxl_Object_oNuvemMundo4_Create(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    form_cloud(self);
    let_cloud_drift(self);
}

// Two of three are mirrored.
void vxl_Object_oNuvemMundo5_Create(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    form_cloud(self);
    let_cloud_drift(self);
    self->var(lado) = irandom(2);
    if (self->var(lado) != 2) self->var(image_xscale) = -self->var(tamanho);
}

// A cloud turns at the edges of the room.
void vxl_Object_oNuvemMundo4_Step(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    if (self->var(x) < 0 || self->var(x) > room_width) self->var(hspeed) = -self->var(hspeed);
}

// ---- rain. Its picture is the flash: one clear frame but for the moment when it plays.

void vxl_Object_oChuva_Create(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    self->var(image_speed) = 0;
    self->var(image_index) = 0;
    habilitaClima = 1;
    wait_for_flash(self, 3);
}

void vxl_Object_oChuva_Step(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    constexpr int32_t rain = 10;  // ef_rain
    constexpr double size = 854;  // neither a small rain, 0, nor a large one, 2
    constexpr Colour silver = 0xC0C0C0;
    if (habilitaClima) effect_create_above(rain, 0, 0, size, silver);
}

void vxl_Object_oChuva_Alarm_0(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    wait_for_flash(self, 5);
    self->var(image_index) = 0;
    self->var(image_speed) = (irandom(5) + 5) * 0.1;
}

void vxl_Object_oChuva_Other_AnimationEnd(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    self->var(image_speed) = 0;
    self->var(image_index) = 0;
}

// ---- sun

void vxl_Object_oRaiosDeSol_Create(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    self->var(image_index) = 0;
    self->var(image_speed) = 0.2;
}
