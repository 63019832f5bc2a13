#include "game/Menu.h"

namespace {

constexpr double rowSpacing = 60;  // pixels from row to row of a column

bool asked_for(CInstance* self, const MenuWay& way)
{
    return keyboard_check_pressed(way.arrow) || keyboard_check_pressed(way.letter) ||
           gamepad_button_check_pressed(self->var(pad), way.button) || self->var(way.moves);
}

int hit_areas(CInstance* self)
{
    return static_cast<int>(array_length_1d(self->var(botao).get()));
}

Target hit_area(CInstance* self, int entry)
{
    return Target(static_cast<int32_t>(double(self->var(botao)[entry])));
}

}  // namespace

void set_up_menu(CInstance* self)
{
    self->var(x) = room_width / 2 - 115;
    self->var(y) = room_height / 2 - 10;
    self->var(space) = rowSpacing;
    self->var(mpos) = 0;
    self->var(botao) = 0;
    for (const MenuWay& way : {menuUp, menuDown, menuLeft, menuRight}) {
        self->var(way.moves) = 0;
        self->var(way.leaned) = 0;
    }
    set_up_gamepad(self);
}

void set_up_menu(CInstance* self, const MenuShape& shape, MenuEntries entries)
{
    display_set_gui_size(view_wview[0], view_hview[0]);
    set_up_menu(self);
    for (size_t i = 0; i < entries.size(); ++i) {
        const auto row = static_cast<double>(i);
        self->var(shape.tags)[row] = entries[i].tag;
        self->var(shape.x)[row] = entries[i].spot.x();
        self->var(shape.y)[row] = entries[i].spot.y();
    }
}

void draw_highlight(CInstance* self, MenuEntries entries)
{
    const auto at = static_cast<size_t>(double(self->var(mpos)));
    if (at >= entries.size()) return;
    const auto& [sprite_, frame, aside] = entries[at].highlight;
    draw_sprite(self, sprite_, frame, entries[at].spot.x() + aside, entries[at].spot.y() + aside);
}

bool wake_hit_areas(CInstance* self)
{
    const int made = hit_areas(self);
    for (int i = 0; i < made; ++i) instance_activate_object(self, hit_area(self, i));
    return made > 0;
}

void add_hit_area(CInstance* self, double left, double top)
{
    const int next = hit_areas(self);
    self->var(botao)[next] = instance_create(left, top, oHitMenuNovo)->id;
}

int entry_under_mouse(CInstance* self)
{
    int under = -1;
    const int made = hit_areas(self);
    for (int i = 0; i < made; ++i)
        if (position_meeting(self, mouse_x, mouse_y, hit_area(self, i))) under = i;
    return under;
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

void steer(CInstance* self, double steps, std::span<const int> back, std::span<const int> forth)
{
    if (steps == 0) return;
    const auto at = static_cast<size_t>(double(self->var(mpos)));
    self->var(mpos) = steps < 0 ? back[at] : forth[at];
}

void put_cursor(CInstance* self, Object controller, double entry)
{
    for (CInstance* found : With(self, controller)) found->var(mpos) = entry;
}

bool menu_confirmed(CInstance* self)
{
    return enter_pressed() || keyboard_check_pressed(keySpace) || pad_accepts(self);
}
