// The instructions before the first level: pages that turn by key, pad or mouse.

#include "game/Gamepad.h"
#include "game/Transition.h"

namespace {

constexpr int languages = 2;  // the pages of both stand in turn
constexpr double lastOfEnglish = 8;

bool asks_for_next_page(CInstance* self)
{
    return keyboard_check_pressed(keySpace) || enter_pressed() || pad_accepts(self) ||
           mouse_check_button_pressed(1);
}

}  // namespace

void vxl_Object_oTelaTutorial_Create(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    self->var(image_speed) = 0;
    self->var(image_index) = idioma == "portugues" ? 1 : 0;
    set_up_gamepad(self);
}

void vxl_Object_oTelaTutorial_Step(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    if (!asks_for_next_page(self)) return;
    if (self->var(image_index) < lastOfEnglish)
        self->var(image_index) += languages;
    else if (!fading(self))
        fade_to(room_level1.index);
}
