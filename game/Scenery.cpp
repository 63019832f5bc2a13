// What lives in a level and blocks nothing: it sways, walks on the spot and flows.

#include "game/Rules.h"

namespace {

constexpr double sway = 0.3;  // image speed

}  // namespace

// Neighbours do not move in step.
void vxl_Object_oCamelo_Create(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    randomize();
    self->var(image_index) = irandom(19);
    self->var(image_speed) = sway;
}

// Trees neither; two of three sway backward.
void vxl_Object_oArvorezinha1_Create(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    randomize();
    self->var(image_index) = irandom(8);
    self->var(animacao) = irandom(2);
    self->var(image_speed) = self->var(animacao) == 2 ? sway : -sway;
}

// A tree is taller than its cell: it stands as if one row lower.
void vxl_Object_oArvorezinha1_Step(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    stand_in_row(self, 1);
}

// Water starts everywhere on the same frame, so it moves as one.
void vxl_Object_oAnimaAgua_Create(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    self->var(image_index) = 0;
    self->var(velocidadeAgua) = 0.5;
    self->var(image_speed) = self->var(velocidadeAgua);
}
