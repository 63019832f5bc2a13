// How to play, and who made the game: screens over the pause and the options, with a
// button in the corner that closes them.

#include "game/Panel.h"

namespace {

struct Screen {
    Object button, screen;
};
constexpr Screen help{oAjuda, oTelaAjuda}, credits{oCreditos, oTelaCreditos};

constexpr double lastPage = 8;  // the last English one; each has its Portuguese one behind
constexpr double languages = 2;
constexpr double topOfPages = 90;  // pixels; above it lies the close button

constexpr Object asleepMeanwhile[] = {
    oPause, oConfiguracoes, oSons,       oIdioma,   oContinuar, oRecomecarPause, oVoltarMenu,
    oAjuda, oCreditos,      oConquistas, oRankings, oGameSpeed, oMenuPauseNovo,  oMenuOptionsNovo};
constexpr Object awakeAgain[] = {
    oPause,          oSons,           oIdioma,        oContinuar,       oRecomecarPause,
    oVoltarMenu,     oAjuda,          oCreditos,      oConfiguracoes,   oConquistas,
    oRankings,       oGameSpeed,      oMenuPauseNovo, oMenuOptionsNovo, oTitulo,
    oPersonagemCapa, oPersonagemCapa2};

// The pages go round, each language among its own.
void turn_page(CInstance* self, double pages)
{
    const double language = in_language(0, 1);
    double page = self->var(image_index) - language + pages * languages;
    if (page > lastPage) page = 0;
    if (page < 0) page = lastPage;
    self->var(image_index) = page + language;
}

bool key_closes()
{
    return enter_pressed() || keyboard_check_pressed(keySpace) ||
           keyboard_check_pressed(keyBackspace);
}

bool pad_closes(CInstance* self)
{
    for (const PadButton button : {gp_face1, gp_face2, gp_start, gp_select})
        if (gamepad_button_check_pressed(self->var(pad), button)) return true;
    return false;
}

void close(CInstance* self)
{
    keyboard_clear(keyBackspace);
    self->var(image_index) = 0;
    click();
    for (const Object screen : {oTelaCreditos, oTelaAjuda, oTelaSair, oAvaliar, oConfirma})
        instance_destroy(self, screen);
    for (const Object sleeper : awakeAgain) instance_activate_object(self, sleeper);
    instance_destroy(self);
}

}  // namespace

void open_screen(CInstance* self, Object button)
{
    const Screen& screen = button.index == oAjuda.index ? help : credits;
    click();
    button.var(image_index) = 0;
    for (const Object sleeper : asleepMeanwhile) instance_deactivate_object(self, sleeper);
    instance_create(0, 0, screen.screen);
    instance_create(closeCorner.x(), closeCorner.y(), oFechar);
}

void vxl_Object_oTelaAjuda_Create(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    self->var(image_speed) = 0;
    self->var(image_index) = in_language(0, 1);
    set_up_gamepad(self);
}

void vxl_Object_oTelaAjuda_Step(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    const double slot = self->var(pad);
    if (keyboard_check_pressed(keyRight) || gamepad_button_check_pressed(slot, gp_padr) ||
        gamepad_button_check_pressed(slot, gp_shoulderr))
        turn_page(self, 1);
    if (keyboard_check_pressed(keyLeft) || gamepad_button_check_pressed(slot, gp_padl) ||
        gamepad_button_check_pressed(slot, gp_shoulderl))
        turn_page(self, -1);
}

void vxl_Object_oTelaAjuda_Mouse_GlobalLeftPressed(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    if (mouse_y >= topOfPages) turn_page(self, 1);
}

void vxl_Object_oTelaCreditos_Create(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    self->var(image_speed) = 0;
    self->var(image_index) = in_language(0, 1);
}

// ==== the close button

void vxl_Object_oFechar_Step(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    if (pad_closes(self) || key_closes()) close(self);
}

void vxl_Object_oFechar_Mouse_LeftReleased(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    close(self);
}
