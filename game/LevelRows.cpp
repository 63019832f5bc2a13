#include "game/LevelRows.h"

#include "game/Map.h"
#include "game/Transition.h"

namespace {

struct Row {
    Object object;
    Sprite sprite;
    Spot spot;
    int32_t key;
    InstanceVar touch;  // the virtual key
    InstanceVar held;
};
constexpr Row rows[] = {
    {oContinuar, sContinuar, firstRow, 'C', key_c, apertado_c},
    {oProximo, sProximo, firstRow, 'N', key_n, apertado_n},
    {oRecomecarPause, sRecomecarPause, secondRow, 'E', key_e, apertado_e},
    {oVoltarMenu, sVoltarMenu, thirdRow, 'M', key_m, apertado_m},
    {oSubmit, sSubmit, firstRow, 'S', key_s, apertado_s},
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

// The music, which a pause turned down, comes back while the screen darkens. A second
// press on the way into a level would only show the level's title twice.
void leave_to(CInstance* self, double target)
{
    if (fading(self)) return;
    click();
    audio_sound_gain(musica, 1, 500);
    fade_to(target);
}

}  // namespace

void go_on_playing()
{
    pausado = pausado ? 0 : 1;
}

void go_to_next_level(CInstance* self)
{
    if (there_is_a_next_level()) leave_to(self, room_next(room));
}

void play_again(CInstance* self)
{
    leave_to(self, room);
}

void go_to_map(CInstance* self)
{
    click();
    fade_to_map(self);
}

bool row_clicked()
{
    return !on_touch_platform() && mouse_check_button_released(1);
}

void destroy_pause_rows(CInstance* self)
{
    for (const Object object : {oVoltarMenu, oContinuar, oRecomecarPause}) {
        for (CInstance* found : With(self, object))
            virtual_key_delete(found->var(row_of(found).touch));
        instance_destroy(self, object);
    }
}

void vxl_Object_oProximo_Create(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    const Row& row = row_of(self);
    self->var(row.touch) = virtual_key_add(display_get_gui_width() * 0.5 - rowWidth / 2,
                                           row.spot.y(), rowWidth, rowHeight, row.key);
    self->var(row.held) = 0;
}

void vxl_Object_oProximo_Keyboard_NoKey(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    self->var(row_of(self).held) = 0;
}

void vxl_Object_oContinuar_Keyboard_C(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    self->var(row_of(self).held) = 1;
}

void vxl_Object_oProximo_Keyboard_N(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    self->var(row_of(self).held) = 1;
}

void vxl_Object_oRecomecarPause_Keyboard_E(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    self->var(row_of(self).held) = 1;
}

void vxl_Object_oVoltarMenu_Keyboard_M(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    self->var(row_of(self).held) = 1;
}

void vxl_Object_oSubmit_Keyboard_S(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    self->var(row_of(self).held) = 1;
}

void vxl_Object_oContinuar_KeyRelease_C(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    go_on_playing();
}

void vxl_Object_oProximo_KeyRelease_N(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    go_to_next_level(self);
}

void vxl_Object_oRecomecarPause_KeyRelease_E(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    play_again(self);
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
    draw_sprite(self, row.sprite, picture, row.spot.x(), row.spot.y());
}
