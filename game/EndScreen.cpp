// The screen at the end of a level, and its menu of three rows: on to the next level, once
// again, back to the map.

#include "game/LevelRows.h"
#include "game/Map.h"
#include "game/TouchKeys.h"

namespace {

constexpr MenuEntry entries[] = {{"proximo", firstRow, overRow},
                                 {"recomecar", secondRow, overRow},
                                 {"voltarMenu", thirdRow, overRow}};

void keep_hit_areas(CInstance* self)
{
    if (wake_hit_areas(self)) return;
    for (const MenuEntry& entry : entries) add_hit_area(self, entry.spot.x(), entry.spot.y());
}

}  // namespace

void vxl_Object_oFimFase_Create(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    self->var(image_speed) = 0;
    if (level_of(room) == levels) {
        self->var(image_index) = in_language(2, 3);
        instance_create(-35, room_height - 20, oPersonagemFinal);
        instance_create(room_width - 335, room_height - 20, oPersonagemFinal2);
    } else {
        self->var(image_index) = in_language(0, 1);
    }
    instance_deactivate_object(self, oPause);
    if (touchControls) delete_touch_keys();
    set_up_gamepad(self);
    instance_create(0, 0, oMenuFimFaseNovo);
}

// ==== its menu

void vxl_Object_oMenuFimFaseNovo_Create(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    set_up_menu(self, asList, entries);
    keep_hit_areas(self);
}

void vxl_Object_oMenuFimFaseNovo_Step(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    keep_hit_areas(self);
    read_menu_stick(self);
    move_cursor(self, menu_steps(self, menuUp, menuDown));
    const int pointed = entry_under_mouse(self);
    if (pointed >= 0) self->var(mpos) = pointed;
    RValue nothing;
    if (menu_confirmed(self) || (pointed >= 0 && row_clicked()))
        vxl_Script_scr_menu_fim_fase(self, other, nothing, 0, nullptr);
}

void vxl_Object_oMenuFimFaseNovo_Draw_Gui(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    draw_highlight(self, entries);
}

// The entry under the cursor of the menu that calls.
RValue& vxl_Script_scr_menu_fim_fase(CInstance* self, CInstance* other, RValue& result, int,
                                     RValue**)
{
    Frame frame(self, other);
    if (self->var(mpos) == 0) go_to_next_level(self);
    if (self->var(mpos) == 1) play_again(self);
    if (self->var(mpos) == 2) go_to_map(self);
    return result;
}
