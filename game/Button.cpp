// A button that the mouse presses: it shows its second picture while it is held, and acts
// when it is let go.

#include "game/Gamepad.h"

void vxl_Object_oFechar_Create(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    self->var(image_speed) = 0;
    self->var(image_index) = 0;
    set_up_gamepad(self);
}

void vxl_Object_oFechar_Mouse_LeftPressed(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    self->var(image_index) = 1;
}

void vxl_Object_oFechar_Mouse_NoButton(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    self->var(image_index) = 0;
}

void vxl_Object_oFechar_Mouse_Leave(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    self->var(image_index) = 0;
}
