// A page of the map: ten level icons at the corners of a zigzag, the cursor that keys,
// pad and mouse move from icon to icon, and the banner that names the page.

#include "game/Map.h"
#include "game/Menu.h"
#include "game/Transition.h"

namespace {

constexpr int slots = 10;  // icons of a page

// Places of the icons, pixels. An even page begins below, where an odd one ends.
constexpr double left[slots] = {52, 52, 208, 208, 364, 364, 520, 520, 676, 676};
constexpr double topOdd[slots] = {104, 260, 260, 104, 104, 260, 260, 104, 104, 260};
constexpr double topEven[slots] = {260, 104, 104, 260, 260, 104, 104, 260, 260, 104};

int page()  // from 0
{
    return static_cast<int>(room) - room_menu1.index;
}

bool odd_page()
{
    return page() % 2 == 0;
}

// The level of an icon, or of a slot of this page.
int level_of_icon(const CInstance* icon)
{
    return icon->object_index - oLevel1.index + 1;
}

int level_of_slot(double slot)
{
    return page() * slots + static_cast<int>(slot) + 1;
}

// Before level 1 has been finished once, the instructions come first.
Room way_into(int level, bool finishedOnce)
{
    if (level == 1 && !finishedOnce) return room_tutorial;
    return Room{room_level1.index + level - 1};
}

void enter_level(CInstance* self, int level)
{
    const Object icon{oLevel1.index + level - 1};
    if (icon.var(sprite_index) == sBlock.index || fading(self)) return;
    click();
    fade_to(way_into(level, icon.var(unlocked) == levelFinished).index);
}

void read_page(CInstance* self)
{
    ini_open("SaveGame.sav");
    for (int slot = 0; slot < slots; ++slot)
        self->var(desbloqueio)[slot] =
            ini_read_real("Levels", LevelKey(level_of_slot(slot)).text, levelLocked);
    ini_close();
}

void leave_map(CInstance* self)
{
    roomAnterior = room_get_name(room);
    keyboard_clear(keyBackspace);
    if (!fading(self)) fade_to(room_titulo.index);
}

}  // namespace

// ==== an icon

void vxl_Object_oLevel1_Create(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    const int level = level_of_icon(self);
    ini_open("SaveGame.sav");
    self->var(unlocked) = ini_read_real("Levels", LevelKey(level).text, levelLocked);
    ini_close();
    if (self->var(unlocked) == levelFinished) {
        instance_create(self->var(x), self->var(y), oFaseOK);
        if (level == levels) instance_create(self->var(x), self->var(y), oCoroaFinal);
    }
    // The first level is open from the start.
    if (self->var(unlocked) == levelLocked && level != 1) self->var(sprite_index) = sBlock;
}

void vxl_Object_oLevel1_Mouse_Enter(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    oMenuFasesNovo.var(mpos) = (level_of_icon(self) - 1) % slots;
}

void vxl_Object_oLevel1_Mouse_LeftPressed(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    enter_level(self, level_of_icon(self));
}

void vxl_Object_oCoroaFinal_Create(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    self->var(image_speed) = 0;
}

// ==== the cursor

void vxl_Object_oMenuFasesNovo_Create(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    set_up_menu(self);
    read_page(self);
    for (int slot = 0; slot < slots; ++slot) {
        self->var(faseX)[slot] = left[slot];
        self->var(faseY)[slot] = topOdd[slot];
        self->var(faseX2)[slot] = left[slot];
        self->var(faseY2)[slot] = topEven[slot];
        self->var(opcao)[slot] = slot;
        // The cursor begins on the last level that was reached.
        if (self->var(desbloqueio)[slot] != levelLocked) self->var(mpos) = slot;
    }
}

void vxl_Object_oMenuFasesNovo_Step(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    read_menu_stick(self);
    if (const double steps = menu_steps(self, menuLeft, menuRight)) {
        self->var(mpos) += steps;
        if (self->var(mpos) < 0) self->var(mpos) = slots - 1;
        if (self->var(mpos) > slots - 1) self->var(mpos) = 0;
        click();
    }
    // Up and down lead to the other icon of the column.
    if (menu_steps(self, menuDown, menuUp) != 0) {
        const int slot = static_cast<int>(double(self->var(mpos)));
        self->var(mpos) = slot % 2 == 0 ? slot + 1 : slot - 1;
        click();
    }
    RValue nothing;
    if (menu_confirmed(self)) vxl_Script_scr_menu_fases(self, other, nothing, 0, nullptr);
}

void vxl_Object_oMenuFasesNovo_Draw(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    const double slot = self->var(mpos);
    if (odd_page())
        draw_sprite(self, sSelecionaFase, 0, self->var(faseX)[slot], self->var(faseY)[slot]);
    else
        draw_sprite(self, sSelecionaFase, 0, self->var(faseX2)[slot], self->var(faseY2)[slot]);
}

// The level under the cursor of the menu that calls.
RValue& vxl_Script_scr_menu_fases(CInstance* self, CInstance* other, RValue& result, int, RValue**)
{
    Frame frame(self, other);
    enter_level(self, level_of_slot(self->var(mpos)));
    return result;
}

// ==== the banner

void vxl_Object_oMundo1p1_Create(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    self->var(image_index) = idioma == "portugues" ? 1 : 0;
    self->var(image_speed) = 0;
    if (!instance_exists(self, oMenuFasesNovo)) instance_create(0, 0, oMenuFasesNovo);
    set_up_gamepad(self);
}

// The pad's way back holds Backspace down.
void vxl_Object_oMundo1p1_Step(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    for (const PadButton button : {gp_select, gp_face2}) {
        if (gamepad_button_check_pressed(self->var(pad), button)) keyboard_key_press(keyBackspace);
        if (gamepad_button_check_released(self->var(pad), button))
            keyboard_key_release(keyBackspace);
    }
}

void vxl_Object_oMundo1p1_Keyboard_Backspace(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    leave_map(self);
}
