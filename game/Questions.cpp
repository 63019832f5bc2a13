// Questions over the title: leave the game, begin the campaign anew. "Yes" stands in the
// middle of the screen, "No" is the close button in its corner.

#include "game/Menu.h"
#include "game/Transition.h"

namespace {

struct Question {
    Object screen, yes, no, menu;
};
constexpr Question leaving{oTelaSair, oConfirma, oConfirmaVoltar, oMenuSair};
constexpr Question beginningAnew{oTelaConfirmaRecomeca, oConfirmaRecomeca, oConfirmaRecomecaVoltar,
                                 oMenuConfirmaRecomeca};

constexpr Spot middleButton{0.5, -30, 0.5, -70};
constexpr MenuEntry yesAndNo[] = {{"confirma", middleButton, overSmallIcon},
                                  {"volta", closeCorner, overSmallIcon}};
// Who has not rated the game yet, on a touch platform, is asked to.
constexpr MenuEntry rateYesAndNo[] = {{"avaliar", {0.5, -100, 0.5, -70}, overIcon},
                                      {"confirma", {0.5, 30, 0.5, -70}, overSmallIcon},
                                      {"volta", closeCorner, overSmallIcon}};

// ---- a question opens
// All sleeps meanwhile, also what asks.
void ask(CInstance* self, const Question& question)
{
    keyboard_clear(keyBackspace);
    if (!passaTela || fading(self)) return;
    instance_deactivate_all(self, true);
    instance_create(0, 0, question.screen);
    instance_create(closeCorner.x(), closeCorner.y(), question.no);
    instance_deactivate_object(self, self);
}

// ---- and closes: the title comes back as it was
void go_back(CInstance* self, const Question& question)
{
    question.no.var(image_index) = 0;
    click();
    for (const Object part : {question.screen, oAvaliar, question.yes})
        instance_destroy(self, part);
    for (const Object sleeper : {oConfiguracoes, oTitulo, oPersonagemCapa, oPersonagemCapa2,
                                 oMenuNovo, oGooglePlus, oFacebook, oRaiosDeSol, oMusica})
        instance_activate_object(self, sleeper);
    for (const Object part : {question.no, question.menu}) instance_destroy(self, part);
}

// ---- the answers to the question whether to leave
enum Answer { rate, yes, no };

bool has_rated()
{
    return static_cast<bool>(oTelaSair.var(qualifica));
}

MenuEntries answers()
{
    if (has_rated()) return yesAndNo;
    return rateYesAndNo;
}

Answer answer_under_cursor(CInstance* self)
{
    const int at = static_cast<int>(double(self->var(mpos)));
    return static_cast<Answer>(has_rated() ? at + 1 : at);
}

void put_cursor_on(CInstance* self, Answer answer)
{
    put_cursor(self, oMenuSair, has_rated() ? answer - 1 : answer);
}

void leave_game()
{
    oConfirma.var(image_index) = 0;
    show_debug_message("Apertou o botão de confirmação de saída");
    game_end();
}

// The store's page opens, and the game says thank you when its player comes back.
void rate_game(CInstance* self)
{
    oAvaliar.var(image_index) = 0;
    ini_open("SaveGame.sav");
    ini_write_string("preferencias", "qualificacao", "true");
    ini_close();
    url_open("https://store.example/marlowick");
    instance_deactivate_all(self, true);
    instance_create(0, 0, oTelaObrigado);
    instance_destroy(self);
}

void begin_anew(CInstance* self)
{
    oConfirmaRecomeca.var(image_index) = 0;
    show_debug_message("Apertou o botão de confirmação de recomeçar campanha");
    RValue nothing;
    vxl_Script_scr_recomeca(self, self, nothing, 0, nullptr);
}

}  // namespace

// ==== leave the game?

RValue& vxl_Script_scr_sair(CInstance* self, CInstance* other, RValue& result, int, RValue**)
{
    Frame frame(self, other);
    ask(self, leaving);
    return result;
}

void vxl_Object_oTelaSair_Create(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    self->var(qualifica) = 1;
    if (on_touch_platform()) {
        ini_open("SaveGame.sav");
        self->var(qualifica) = ini_read_string("preferencias", "qualificacao", "false") == "true";
        ini_close();
    }
    if (has_rated()) {
        instance_create(middleButton.x(), middleButton.y(), oConfirma);
    } else {
        instance_create(rateYesAndNo[rate].spot.x(), rateYesAndNo[rate].spot.y(), oAvaliar);
        instance_create(rateYesAndNo[yes].spot.x(), rateYesAndNo[yes].spot.y(), oConfirma);
    }
    instance_create(0, 0, oMenuSair);
}

void vxl_Object_oTelaSair_Draw(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    draw_self(self);
    centre_texts(fInterfaceSmall, white);
    draw_words({0.5, 0, 0.5, -135}, {"Do you really want to exit?", "Deseja realmente sair?"});
    centre_texts(fUltraSmall, white);
    if (has_rated()) {
        draw_words({0.5, 0, 0.5, 10}, {"Yes", "Sim"});
    } else {
        draw_words({0.5, -65, 0.5, 10}, {"Rate", "Avaliar"});
        draw_words({0.5, 65, 0.5, 10}, {"Yes", "Sim"});
    }
    draw_words({1, -45, 0, 95}, {"No", "Não"});
    if (has_rated()) return;
    draw_set_colour(darkGrey);
    draw_words({0.5, 0, 0.5, 175},
               {"If you like this game,\nplease leave a gentle review\nat Google Play Store",
                "Se você gostou do jogo,\npor favor deixe seu review positivo\nna Google Play "
                "Store"});
}

void vxl_Object_oMenuSair_Create(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    set_up_menu(self, asList, answers());
    self->var(mpos) = has_rated() ? 0 : 1;
}

void vxl_Object_oMenuSair_Step(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    read_menu_stick(self);
    move_cursor(self, menu_steps(self, menuLeft, menuRight));
    // Up and down lead from the buttons in the middle to the corner, and from there to "Yes".
    if (menu_steps(self, menuUp, menuDown) != 0)
        put_cursor_on(self, answer_under_cursor(self) == no ? yes : no);
    RValue nothing;
    if (menu_confirmed(self)) vxl_Script_scr_menu_sair(self, other, nothing, 0, nullptr);
}

void vxl_Object_oMenuSair_Draw_Gui(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    draw_highlight(self, answers());
}

// The answer under the cursor of the menu that calls.
RValue& vxl_Script_scr_menu_sair(CInstance* self, CInstance* other, RValue& result, int, RValue**)
{
    Frame frame(self, other);
    const Answer answer = answer_under_cursor(self);
    if (answer == rate) rate_game(self);
    if (answer == yes) leave_game();
    if (answer == no) go_back(self, leaving);
    return result;
}

void vxl_Object_oConfirma_Mouse_LeftReleased(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    leave_game();
}

void vxl_Object_oConfirma_Mouse_Enter(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    put_cursor_on(self, yes);
}

void vxl_Object_oConfirmaVoltar_Mouse_LeftReleased(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    go_back(self, leaving);
}

void vxl_Object_oConfirmaVoltar_Step(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    if (gamepad_button_check_pressed(self->var(pad), gp_face2)) go_back(self, leaving);
}

void vxl_Object_oConfirmaVoltar_Mouse_Enter(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    put_cursor_on(self, no);
}

// ---- the rating, on touch platforms

void vxl_Object_oAvaliar_Mouse_LeftReleased(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    rate_game(self);
}

void vxl_Object_oAvaliar_Mouse_Enter(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    put_cursor_on(self, rate);
}

void vxl_Object_oTelaObrigado_Create(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    self->var(image_speed) = 0;
    self->var(image_index) = in_language(0, 1);
    set_up_gamepad(self);
}

void vxl_Object_oTelaObrigado_Step(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    for (const PadButton button : {gp_face1, gp_face2, gp_face3, gp_face4, gp_select, gp_start})
        if (gamepad_button_check_pressed(self->var(pad), button)) game_end();
}

void vxl_Object_oTelaObrigado_Mouse_GlobalLeftPressed(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    game_end();
}

// ==== begin the campaign anew?

RValue& vxl_Script_scr_questao_recomeca(CInstance* self, CInstance* other, RValue& result, int,
                                        RValue**)
{
    Frame frame(self, other);
    ask(self, beginningAnew);
    return result;
}

void vxl_Object_oTelaConfirmaRecomeca_Create(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    instance_create(middleButton.x(), middleButton.y(), oConfirmaRecomeca);
    instance_create(0, 0, oMenuConfirmaRecomeca);
}

void vxl_Object_oTelaConfirmaRecomeca_Draw(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    draw_self(self);
    centre_texts(fInterfaceSmall, white);
    draw_words({0.5, 0, 0.5, -135},
               {"Do you really want to restart your progress?\nAll save data will be lost.",
                "Voce realmente deseja reiniciar seu progresso?\nTodos seus dados salvos serao "
                "perdidos."});
    centre_texts(fUltraSmall, white);
    draw_words({0.5, 0, 0.5, 10}, {"Yes", "Sim"});
    draw_words({1, -45, 0, 95}, {"No", "Não"});
}

void vxl_Object_oMenuConfirmaRecomeca_Create(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    set_up_menu(self, asList, yesAndNo);
}

void vxl_Object_oMenuConfirmaRecomeca_Step(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    read_menu_stick(self);
    move_cursor(self, menu_steps(self, menuLeft, menuRight));
    if (menu_steps(self, menuUp, menuDown) != 0) self->var(mpos) = self->var(mpos) == 0 ? 1 : 0;
    RValue nothing;
    if (menu_confirmed(self))
        vxl_Script_scr_menu_confirma_recomeca(self, other, nothing, 0, nullptr);
}

void vxl_Object_oMenuConfirmaRecomeca_Draw_Gui(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    draw_highlight(self, yesAndNo);
}

// The answer under the cursor of the menu that calls.
RValue& vxl_Script_scr_menu_confirma_recomeca(CInstance* self, CInstance* other, RValue& result,
                                              int, RValue**)
{
    Frame frame(self, other);
    if (self->var(mpos) == 0) begin_anew(self);
    if (self->var(mpos) == 1) go_back(self, beginningAnew);
    return result;
}

void vxl_Object_oConfirmaRecomeca_Mouse_LeftReleased(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    begin_anew(self);
}

void vxl_Object_oConfirmaRecomeca_Mouse_Enter(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    put_cursor(self, oMenuConfirmaRecomeca, 0);
}

void vxl_Object_oConfirmaRecomecaVoltar_Mouse_LeftReleased(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    go_back(self, beginningAnew);
}

void vxl_Object_oConfirmaRecomecaVoltar_Step(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    if (gamepad_button_check_pressed(self->var(pad), gp_face2)) go_back(self, beginningAnew);
}

void vxl_Object_oConfirmaRecomecaVoltar_Mouse_Enter(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    put_cursor(self, oMenuConfirmaRecomeca, 1);
}
