// The main menu over the title, and the two buttons of social pages beside it on touch
// platforms. Who has come to the second level may go on with the campaign or begin anew.

#include "game/Menu.h"
#include "game/Transition.h"

namespace {

// ---- the rows
struct Row {
    Sprite sprite;  // English and Portuguese
    void (*act)(CInstance*);
};

void go_to_players(CInstance*)
{
    fade_to(room_personagem);
}

void ask_to_begin_anew(CInstance* self)
{
    RValue nothing;
    vxl_Script_scr_questao_recomeca(self, self, nothing, 0, nullptr);
}

// The options screen opens itself in its next step.
void open_options(CInstance*)
{
    options = 1;
}

void ask_to_leave(CInstance* self)
{
    RValue nothing;
    vxl_Script_scr_sair(self, self, nothing, 0, nullptr);
}

constexpr Row rowsOfNewcomer[] = {
    {sStart, go_to_players}, {sOptions, open_options}, {sExit, ask_to_leave}};
constexpr Row rowsOfReturner[] = {{sContinueProgresso, go_to_players},
                                  {sRecomecarPause, ask_to_begin_anew},
                                  {sOptions, open_options},
                                  {sExit, ask_to_leave}};

std::span<const Row> rows_of(CInstance* self)
{
    if (self->var(continuando)) return rowsOfReturner;
    return rowsOfNewcomer;
}

double top_of_row(CInstance* self, double row)
{
    return self->var(y) + row * self->var(space);
}

void run_entry(CInstance* self)
{
    RValue nothing;
    vxl_Script_scr_menu(self, self, nothing, 0, nullptr);
}

// ---- the social buttons: two more places of the cursor, behind those of the rows
struct Social {
    Object button;
    Spot spot;
    const char* line;  // of the console
    const char* page;
};
constexpr Social socials[] = {
    {oGooglePlus,
     {0, 10, 0, 15},
     "Apertou o botão Google Plus",
     "https://social-one.example/marlowick"},
    {oFacebook, {0, 10, 0, 90}, "Apertou o botão Facebook", "https://social-two.example/marlowick"},
};

void open_page(const Social& social)
{
    show_debug_message(social.line);
    social.button.var(image_index) = 0;
    url_open(social.page);
}

int social_of(const CInstance* button)
{
    return button->object_index == oGooglePlus.index ? 0 : 1;
}

// Right jumps from the rows to the first button and from the buttons to the first row;
// left from the rows to the second button and from the buttons to the last row.
void jump_between_rows_and_buttons(CInstance* self)
{
    const double rows = static_cast<double>(rows_of(self).size());
    const double steps = menu_steps(self, menuLeft, menuRight);
    if (steps == 0) return;
    const bool onRow = self->var(mpos) < rows;
    if (steps > 0)
        self->var(mpos) = onRow ? rows : 0;
    else
        self->var(mpos) = onRow ? rows + 1 : rows - 1;
}

// ---- the mouse
void keep_hit_areas(CInstance* self)
{
    if (wake_hit_areas(self)) return;
    const auto rows = static_cast<int>(rows_of(self).size());
    for (int row = 0; row < rows; ++row) add_hit_area(self, self->var(x), top_of_row(self, row));
}

}  // namespace

void vxl_Object_oMenuNovo_Create(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    set_up_menu(self);
    ini_open("SaveGame.sav");
    self->var(continuando) = ini_read_real("Levels", "Level2", 0);
    self->var(idiomaAuxiliar) = ini_read_string("preferencias", "idioma", "ingles");
    ini_close();
    idioma = self->var(idiomaAuxiliar).get();
    double next = 0;
    for (const Row& row : rows_of(self)) self->var(menu)[next++] = row.sprite;
}

void vxl_Object_oMenuNovo_Step(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    if (!passaTela) {
        instance_deactivate_object(self, oHitMenuNovo);
        return;
    }
    keep_hit_areas(self);
    read_menu_stick(self);
    move_cursor(self, menu_steps(self, menuUp, menuDown));
    if (on_touch_platform()) jump_between_rows_and_buttons(self);
    if (menu_confirmed(self)) run_entry(self);

    // The mouse has the last word.
    const int pointed = entry_under_mouse(self);
    if (pointed < 0) return;
    self->var(mpos) = pointed;
    if (mouse_check_button_pressed(1)) run_entry(self);
}

void vxl_Object_oMenuNovo_Draw(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    if (!passaTela) return;
    draw_set_halign(fa_left);
    draw_set_valign(fa_top);
    draw_set_font(fSmall);
    draw_set_colour(white);
    const int language = idioma == "ingles" ? 0 : 1;
    const std::span<const Row> rows = rows_of(self);
    if (instance_exists(self, oHitMenuNovo))
        for (size_t i = 0; i < rows.size(); ++i)
            draw_sprite(self, rows[i].sprite, language, self->var(x),
                        top_of_row(self, static_cast<double>(i)));

    const auto at = static_cast<size_t>(double(self->var(mpos)));
    if (at < rows.size())
        draw_sprite(self, overRow.sprite, overRow.frame, self->var(x),
                    top_of_row(self, self->var(mpos)));
    else if (at < rows.size() + std::size(socials))
        draw_sprite(self, overIcon.sprite, overIcon.frame, socials[at - rows.size()].spot.x(),
                    socials[at - rows.size()].spot.y());
}

// The highlight has grown to its last picture and stays so.
void vxl_Object_oMenuNovo_Other_AnimationEnd(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    self->var(image_speed) = 0;
    self->var(image_index) = overRow.frame;
}

// The entry under the cursor of the menu that calls.
RValue& vxl_Script_scr_menu(CInstance* self, CInstance* other, RValue& result, int, RValue**)
{
    Frame frame(self, other);
    const auto at = static_cast<size_t>(double(self->var(mpos)));
    const std::span<const Row> rows = rows_of(self);
    if (at < rows.size())
        rows[at].act(self);
    else if (at < rows.size() + std::size(socials))
        open_page(socials[at - rows.size()]);
    return result;
}

// ==== the social buttons

void vxl_Object_oGooglePlus_Mouse_LeftReleased(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    open_page(socials[social_of(self)]);
}

void vxl_Object_oGooglePlus_Mouse_Enter(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    for (CInstance* controller : With(self, oMenuNovo)) {
        const auto rows = static_cast<double>(rows_of(controller).size());
        controller->var(mpos) = rows + social_of(self);
    }
}
