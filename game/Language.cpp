// The choice of the language, before the first title: two buttons side by side, and the
// menu that steers them by keyboard and pad.

#include "game/Menu.h"
#include "game/Transition.h"

namespace {

struct Language {
    Object button;
    const char* word;
    double left, top;  // of the button, pixels
};
constexpr Language languages[] = {{oIngles, "ingles", 256, 128},
                                  {oPortugues, "portugues", 480, 128}};
constexpr int english = 0, portuguese = 1;  // rows of the menu

void choose(const Language& language)
{
    language.button.var(image_index) = 0;
    audio_play_sound(xClick, 1, false);
    ini_open("SaveGame.sav");
    ini_write_string("preferencias", "idioma", language.word);
    ini_write_string("preferencias", "tutorial", "false");
    ini_close();
    idioma = language.word;
    fade_to(room_titulo);
}

}  // namespace

void vxl_Room_room_idioma_Create(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    if (!instance_exists(self, oMenuIdiomaNovo)) instance_create(0, 0, oMenuIdiomaNovo);
}

// The row under the cursor of the menu that calls.
RValue& vxl_Script_scr_menu_idioma(CInstance* self, CInstance* other, RValue& result, int, RValue**)
{
    Frame frame(self, other);
    if (self->var(mpos) == english) choose(languages[english]);
    if (self->var(mpos) == portuguese) choose(languages[portuguese]);
    return result;
}

void vxl_Object_oMenuIdiomaNovo_Create(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    display_set_gui_size(view_wview[0], view_hview[0]);
    set_up_menu(self);
    for (const int row : {english, portuguese}) {
        self->var(menu)[row] = languages[row].button;
        self->var(menuX)[row] = languages[row].left;
        self->var(menuY)[row] = languages[row].top;
    }
}

void vxl_Object_oMenuIdiomaNovo_Step(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    read_menu_stick(self);
    move_cursor(self, menu_steps(self, menuLeft, menuRight));
    for (const int row : {english, portuguese})
        languages[row].button.var(image_index) = self->var(mpos) == row;
    RValue nothing;
    if (menu_confirmed(self)) vxl_Script_scr_menu_idioma(self, other, nothing, 0, nullptr);
}

void vxl_Object_oMenuIdiomaNovo_Draw(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    const double row = self->var(mpos);
    draw_sprite(self, sSelecionaIdioma, 0, self->var(menuX)[row], self->var(menuY)[row]);
}

// ---- the buttons. One is shown pressed while the mouse holds it.

void vxl_Object_oIngles_Create(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    self->var(image_speed) = 0;
    self->var(image_index) = 0;
}

void vxl_Object_oIngles_Mouse_NoButton(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    self->var(image_index) = 0;
}

void vxl_Object_oIngles_Mouse_LeftPressed(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    self->var(image_index) = 1;
}

void vxl_Object_oIngles_Mouse_LeftReleased(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    choose(languages[english]);
}

void vxl_Object_oPortugues_Mouse_LeftReleased(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    choose(languages[portuguese]);
}

void vxl_Object_oIngles_Mouse_Enter(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    oMenuIdiomaNovo.var(mpos) = english;
}

void vxl_Object_oPortugues_Mouse_Enter(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    oMenuIdiomaNovo.var(mpos) = portuguese;
}
