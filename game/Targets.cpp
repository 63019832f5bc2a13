// The targets. A level is solved once every target is covered: the gate opens and
// the boxes freeze.

#include "game/Rules.h"

namespace {

// The gate gives way to an open one, and an arrow shows the way out.
void open_gate(CInstance* self)
{
    moveCaixa = 0;
    if (music_plays()) audio_play_sound(xAbriu, 1, false);
    self->var(portaoX) = oPortaoFechado.var(x);
    self->var(portaoY) = oPortaoFechado.var(y);
    self->var(setaX) = oFinal.var(x);
    self->var(setaY) = oFinal.var(y);
    instance_destroy(self, oPortaoFechado);
    instance_create(self->var(portaoX), self->var(portaoY), oPortaoAberto);
    instance_create(self->var(setaX), self->var(setaY) + cell, oSeta);
}

// A box that stands exactly on an empty target covers it. The last one opens the
// gate, even when the box was only passing over.
void cover(CInstance* self, CInstance* box, Object empty, Object covered)
{
    if (!on_grid(box)) return;
    action_create_object(self, covered, here);
    if (action_if_number(self, empty, 1, 0)) open_gate(self);
    action_kill_object(self);
}

// A box that is pushed off its target leaves the target empty again.
void uncover(CInstance* self, CInstance* box, Object empty)
{
    if (on_grid(box)) return;
    action_create_object(self, empty, here);
    action_kill_object(self);
}

}  // namespace

void vxl_Object_oFechado_Collision_oMonte(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    cover(self, other, oFechado, oAberto);
}

void vxl_Object_oFechado2_Collision_oMonte(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    cover(self, other, oFechado2, oAberto2);
}

void vxl_Object_oAberto_Collision_oMonte(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    uncover(self, other, oFechado);
}

void vxl_Object_oAberto2_Collision_oMonte(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    uncover(self, other, oFechado2);
}

// The arrow above the open gate.
void vxl_Object_oSeta_Create(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    self->var(image_index) = 0;
    self->var(image_speed) = 0.3;
}
