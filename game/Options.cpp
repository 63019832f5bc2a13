// The options: the title stands still behind a dark veil, with the buttons that the pause
// has too. The gear in the title's corner opens and closes them.

#include "game/Panel.h"

namespace {

constexpr MenuEntry entries[] = {
    {"conquistas", {0, 10, 0, 15}, overIcon, oConquistas},
    {"rankings", {0, 85, 0, 15}, overIcon, oRankings},
    {"comoJogar", {0, 280, 0.5, -95}, overCard, oAjuda},
    {"info", {1, -390, 0.5, -95}, overCard, oCreditos},
    {"sons", {0, 20, 1, -85}, overSwitch, oSons},
    {"idioma", {1, -143, 1, -85}, overSwitch, oIdioma},
    {"velocidade", {0.5, -61, 1, -85}, overSwitch, oGameSpeed},
};
constexpr int first = 2;  // how to play

//                      from 0  1  2  3  4  5  6
constexpr int stepDown[] = {4, 4, 6, 6, 2, 3, 2};
constexpr int stepUp[] = {4, 4, 6, 6, 2, 3, 2};
constexpr int stepRight[] = {1, 2, 3, 2, 6, 4, 5};
constexpr int stepLeft[] = {5, 0, 3, 2, 5, 6, 4};
constexpr Steering steering{stepUp, stepDown, stepLeft, stepRight};

constexpr Label labels[] = {
    {{0, 81, 1, -105}, {"Sounds", "Sons"}},
    {{1, -81, 1, -105}, {"Language", "Idioma"}},
    {{0, 335, 0.5, 30}, {"How to play", "Como jogar"}},
    {{1, -335, 0.5, 30}, {"Info", "Info"}},
    {{0.5, 0, 1, -105}, {"Game Speed", "Velocidade do Jogo"}},
};

void flip_options()
{
    options = options ? 0 : 1;
}

void open_options(CInstance* self)
{
    turn_music_down();
    freeze(self);
    bring_buttons(self, entries);
    wake_or_create(self, oMenuOptionsNovo, {0, 0, 0, 0});
}

void close_options(CInstance* self)
{
    turn_music_up();
    instance_activate_all();
    forget_picture(self);
    put_buttons_away(self);
    instance_destroy(self, oMenuOptionsNovo);
}

}  // namespace

MenuEntries entries_of_options()
{
    return entries;
}

void vxl_Object_oConfiguracoes_Create(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    self->var(image_speed) = 0;
    self->var(image_index) = 0;
    self->var(sprite) = -1;
    self->var(paused) = 0;
    options = 0;
    set_up_gamepad(self);
}

void vxl_Object_oConfiguracoes_Step(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    self->var(key_config) = gamepad_button_check_pressed(self->var(pad), gp_start) ||
                            gamepad_button_check_pressed(self->var(pad), gp_face2);
    if (self->var(paused) && self->var(key_config)) flip_options();
    if (!options) return;
    options = 0;
    if (self->var(paused)) {
        self->var(paused) = 0;
        close_options(self);
    } else {
        self->var(paused) = 1;
        open_options(self);
    }
}

void vxl_Object_oConfiguracoes_Mouse_LeftReleased(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    if (passaTela) flip_options();
}

// The way back for who has keys alone.
void vxl_Object_oConfiguracoes_KeyPress_Backspace(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    if (!self->var(paused)) return;
    keyboard_clear(keyBackspace);
    flip_options();
}

void vxl_Object_oConfiguracoes_Draw(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    if (!self->var(paused)) {
        draw_self(self);
        return;
    }
    draw_panel(self);
    centre_texts(fSuperSmall, white);
    draw_labels(labels);
    draw_banner(self, sTextoConfiguracoes);
}

void vxl_Object_oConfiguracoes_Draw_Gui(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    if (self->var(paused)) draw_sprite(self, sFechar, 0, display_get_gui_width() - 75, 15);
}

// ==== its menu

void vxl_Object_oMenuOptionsNovo_Create(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    set_up_menu(self, scattered, entries);
    self->var(mpos) = first;
}

void vxl_Object_oMenuOptionsNovo_Step(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    read_menu_stick(self);
    steer_panel(self, steering);
    RValue nothing;
    if (panel_confirmed(self)) vxl_Script_scr_menu_options(self, other, nothing, 0, nullptr);
}

void vxl_Object_oMenuOptionsNovo_Draw_Gui(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    draw_highlight(self, entries);
}

// The entry under the cursor of the menu that calls.
RValue& vxl_Script_scr_menu_options(CInstance* self, CInstance* other, RValue& result, int,
                                    RValue**)
{
    Frame frame(self, other);
    const auto entry = static_cast<size_t>(double(self->var(mpos)));
    if (entry < std::size(entries)) use_button(self, entries[entry].button);
    return result;
}
