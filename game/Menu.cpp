#include "game/Menu.h"

namespace {

constexpr double rowSpacing = 60;  // pixels from row to row of a column

bool asked_for(CInstance* self, const MenuWay& way)
{
    return keyboard_check_pressed(way.arrow) || keyboard_check_pressed(way.letter) ||
           gamepad_button_check_pressed(self->var(pad), way.button) || self->var(way.moves);
}

}  // namespace

void set_up_menu(CInstance* self)
{
    self->var(x) = room_width / 2 - 115;
    self->var(y) = room_height / 2 - 10;
    self->var(space) = rowSpacing;
    self->var(mpos) = 0;
    for (const MenuWay& way : {menuUp, menuDown, menuLeft, menuRight}) {
        self->var(way.moves) = 0;
        self->var(way.leaned) = 0;
    }
    set_up_gamepad(self);
}

void read_menu_stick(CInstance* self)
{
    for (const MenuWay& way : {menuLeft, menuRight, menuUp, menuDown}) {
        if (gamepad_axis_value(self->var(pad), way.axis) * way.side > 0) {
            self->var(way.moves) = self->var(way.leaned) == 0;
            self->var(way.leaned) = 1;
        } else {
            self->var(way.leaned) = 0;
        }
    }
}

double menu_steps(CInstance* self, const MenuWay& back, const MenuWay& forth)
{
    return (asked_for(self, forth) ? 1 : 0) - (asked_for(self, back) ? 1 : 0);
}

void move_cursor(CInstance* self, double steps)
{
    if (steps == 0) return;
    const double last = array_length_1d(self->var(menu).get()) - 1;
    self->var(mpos) += steps;
    if (self->var(mpos) < 0)
        self->var(mpos) = last;
    else if (self->var(mpos) > last)
        self->var(mpos) = 0;
}

bool menu_confirmed(CInstance* self)
{
    return keyboard_check_pressed(keyEnter) || keyboard_check_pressed(keySpace) ||
           pad_accepts(self);
}
