// The pause: the level stands still behind a dark veil, with the rows that lead on, again
// and to the map, and the buttons that it shares with the options.

#include "game/LevelRows.h"
#include "game/Panel.h"
#include "game/TouchKeys.h"

namespace {

constexpr MenuEntry entries[] = {
    {"continuar", firstRow, overRow},
    {"recomecar", secondRow, overRow},
    {"voltarMenu", thirdRow, overRow},
    {"conquistas", {0, 10, 0, 15}, overIcon, oConquistas},
    {"rankings", {0, 85, 0, 15}, overIcon, oRankings},
    {"comoJogar", {0, 50, 0.5, -95}, overCard, oAjuda},
    {"info", {1, -160, 0.5, -95}, overCard, oCreditos},
    {"sons", {0, 20, 1, -85}, overSwitch, oSons},
    {"idioma", {1, -143, 1, -85}, overSwitch, oIdioma},
    {"velocidade", {0.5, -61, 1, -85}, overSwitch, oGameSpeed},
};
constexpr int resume = 0, again = 1, toMap = 2;
constexpr int withoutHitArea = 6;  // entries at the end, whose buttons draw the cursor

//                      from 0  1  2  3  4  5  6  7  8  9
constexpr int stepDown[] = {1, 2, 9, 5, 5, 7, 8, 5, 6, 0};
constexpr int stepUp[] = {9, 0, 1, 7, 7, 7, 8, 5, 6, 2};
constexpr int stepRight[] = {6, 6, 6, 4, 0, 0, 5, 9, 7, 8};
constexpr int stepLeft[] = {5, 5, 5, 8, 3, 6, 0, 8, 9, 7};
constexpr Steering steering{stepUp, stepDown, stepLeft, stepRight};

constexpr Label labels[] = {
    {{0, 81, 1, -105}, {"Sounds", "Sons"}},
    {{1, -81, 1, -105}, {"Language", "Idioma"}},
    {{0, 105, 0.5, 30}, {"How to play", "Como jogar"}},
    {{1, -105, 0.5, 30}, {"Info", "Info"}},
    {{0.5, 0, 1, -105}, {"Game Speed", "Velocidade do Jogo"}},
};

void open_pause(CInstance* self)
{
    turn_music_down();
    if (touchControls) let_touch_keys_rest();
    // The start button, which pressed Enter, is let go while its figure sleeps.
    if (gamepad_button_check(self->var(pad), gp_start)) keyboard_key_release(keyEnter);
    freeze(self);
    // The clock stays awake and counts nothing.
    instance_activate_object(self, oClock);
    contaTempo = 0;
    for (const Object row : {oVoltarMenu, oContinuar, oRecomecarPause})
        wake_or_create(self, row, {0, 0, 0, 0});
    bring_buttons(self, entries);
    wake_or_create(self, oMenuPauseNovo, {0, 0, 0, 0});
}

void close_pause(CInstance* self)
{
    turn_music_up();
    instance_activate_all();
    contaTempo = 1;
    for (CInstance* clock : With(self, oClock)) clock->var(alarm)[0] = double(room_speed);
    if (touchControls) {
        display_set_gui_size(view_wview[0], view_hview[0]);
        bring_touch_keys_back();
    }
    forget_picture(self);
    put_buttons_away(self);
    destroy_pause_rows(self);
    instance_destroy(self, oMenuPauseNovo);
    instance_destroy(self, oHitMenuNovo);
}

// A pad's buttons only close the pause here; to open it, the figure presses Enter for its
// pad. One that closes it has to be let go before it opens it again.
void read_pad(CInstance* self)
{
    const double slot = self->var(pad);
    if (!gamepad_button_check(slot, gp_start)) self->var(esperaSoltar) = 0;
    self->var(key_pause) = gamepad_button_check_pressed(slot, gp_start) ||
                           gamepad_button_check_pressed(slot, gp_face2);
    if (!self->var(paused) || !self->var(key_pause)) return;
    go_on_playing();
    self->var(esperaSoltar) = 1;
}

}  // namespace

MenuEntries entries_of_pause()
{
    return entries;
}

void vxl_Object_oPause_Create(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    self->var(sprite) = -1;
    self->var(paused) = 0;
    self->var(esperaSoltar) = 0;
    pausado = 0;
    set_up_gamepad(self);
}

void vxl_Object_oPause_KeyPress_Enter(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    if (!self->var(esperaSoltar) && !keyboard_check(keyAlt)) go_on_playing();
}

void vxl_Object_oPause_Step(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    read_pad(self);
    if (!pausado) return;
    pausado = 0;
    if (self->var(paused)) {
        self->var(paused) = 0;
        close_pause(self);
    } else {
        self->var(paused) = 1;
        open_pause(self);
    }
}

void vxl_Object_oPause_Draw(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    if (!self->var(paused)) return;
    draw_panel(self);
    if (touchControls) draw_sprite(self, sPause, 1, closeCorner.x(), closeCorner.y());
    centre_texts(fSuperSmall, white);
    draw_labels(labels);
    draw_banner(self, sJogoPausado);
}

// A room that is left during the pause takes its picture along.
void vxl_Object_oPause_Other_RoomEnd(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    forget_picture(self);
}

// ==== its menu

void vxl_Object_oMenuPauseNovo_Create(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    set_up_menu(self, scattered, entries);
    self->var(botoesSemTouch) = withoutHitArea;
}

void vxl_Object_oMenuPauseNovo_Step(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    if (!wake_hit_areas(self))
        for (size_t i = 0; i < std::size(entries) - withoutHitArea; ++i)
            add_hit_area(self, entries[i].spot.x(), entries[i].spot.y());
    read_menu_stick(self);
    steer_panel(self, steering);
    RValue nothing;
    if (panel_confirmed(self)) vxl_Script_scr_menu_pause(self, other, nothing, 0, nullptr);

    const int pointed = entry_under_mouse(self);
    if (pointed < 0) return;
    self->var(mpos) = pointed;
    if (pointed <= toMap && row_clicked())
        vxl_Script_scr_menu_pause(self, other, nothing, 0, nullptr);
}

void vxl_Object_oMenuPauseNovo_Draw_Gui(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    draw_highlight(self, entries);
}

// The entry under the cursor of the menu that calls.
RValue& vxl_Script_scr_menu_pause(CInstance* self, CInstance* other, RValue& result, int, RValue**)
{
    Frame frame(self, other);
    const int entry = static_cast<int>(double(self->var(mpos)));
    if (entry == resume) go_on_playing();
    if (entry == again) play_again(self);
    if (entry == toMap) go_to_map(self);
    if (entry > toMap && entry < static_cast<int>(std::size(entries)))
        use_button(self, entries[entry].button);
    return result;
}
