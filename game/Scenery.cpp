// What moves at the edges of a level and blocks nothing.

#include "game/Rules.h"

void vxl_Object_oRaiosDeSol_Create(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    self->var(image_index) = 0;
    self->var(image_speed) = 0.2;
}
