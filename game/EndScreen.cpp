// The screen at the end of a level, and its three rows: on to the next level, once
// again, back to the map. Each row answers a letter key, which its on-screen button
// presses.

#include "game/Gamepad.h"
#include "game/Map.h"
#include "game/TouchKeys.h"
#include "game/Transition.h"

namespace {

constexpr double rowWidth = 226, rowHeight = 50;  // pixels

struct Row {
    Object object;
    Sprite sprite;
    double fraction;  // of the room's height
    int32_t key;
    InstanceVar touch;  // the virtual key
    InstanceVar held;
};
constexpr Row rows[] = {
    {oProximo, sProximo, 0.25, 'N', key_n, apertado_n},
    {oRecomecarPause, sRecomecarPause, 0.4, 'E', key_e, apertado_e},
    {oVoltarMenu, sVoltarMenu, 0.55, 'M', key_m, apertado_m},
};

const Row& row_of(const CInstance* self)
{
    for (const Row& row : rows)
        if (row.object.index == self->object_index) return row;
    return rows[0];
}

bool there_is_a_next_level()
{
    return room_exists(room_next(room));
}

// The music, which a pause turned down, comes back while the screen darkens.
void leave_to(double target)
{
    click();
    audio_sound_gain(musica, 1, 500);
    fade_to(target);
}

void go_to_next_level()
{
    if (there_is_a_next_level()) leave_to(room_next(room));
}

void play_again()
{
    leave_to(room);
}

void go_to_map(CInstance* self)
{
    click();
    fade_to_map(self);
}

int in_language(int english, int portuguese)
{
    return idioma == "portugues" ? portuguese : english;
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

// The entry under the cursor of the menu that calls.
RValue& vxl_Script_scr_menu_fim_fase(CInstance* self, CInstance* other, RValue& result, int,
                                     RValue**)
{
    Frame frame(self, other);
    if (self->var(mpos) == 0) go_to_next_level();
    if (self->var(mpos) == 1) play_again();
    if (self->var(mpos) == 2) go_to_map(self);
    return result;
}

// ==== the rows

void vxl_Object_oProximo_Create(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    const Row& row = row_of(self);
    self->var(row.touch) =
        virtual_key_add(display_get_gui_width() * 0.5 - rowWidth / 2, room_height * row.fraction,
                        rowWidth, rowHeight, row.key);
    self->var(row.held) = 0;
}

void vxl_Object_oProximo_Keyboard_NoKey(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    self->var(row_of(self).held) = 0;
}

void vxl_Object_oProximo_Keyboard_N(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    self->var(apertado_n) = 1;
}

void vxl_Object_oRecomecarPause_Keyboard_E(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    self->var(apertado_e) = 1;
}

void vxl_Object_oVoltarMenu_Keyboard_M(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    self->var(apertado_m) = 1;
}

void vxl_Object_oProximo_KeyRelease_N(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    go_to_next_level();
}

void vxl_Object_oRecomecarPause_KeyRelease_E(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    play_again();
}

void vxl_Object_oVoltarMenu_KeyRelease_M(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    go_to_map(self);
}

// English and Portuguese, then both held; the last pair shows that nothing follows.
void vxl_Object_oProximo_Draw_Gui(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    const Row& row = row_of(self);
    int picture = in_language(0, 1);
    if (self->var(row.held)) picture += 2;
    if (row.object.index == oProximo.index && !there_is_a_next_level()) picture = in_language(4, 5);
    draw_sprite(self, row.sprite, picture, room_width * 0.5 - rowWidth / 2,
                room_height * row.fraction);
}
