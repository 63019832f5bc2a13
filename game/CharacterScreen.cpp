// How many play, and who: the mode in the upper row, the character or the two of them
// below it, and the row that goes on to the map. What is chosen is stored at once.

#include "game/Figure.h"
#include "game/Map.h"
#include "game/Menu.h"
#include "game/Transition.h"

namespace {

constexpr int gameMode = 0, changePlayer = 1, goOn = 2;  // entries of the menu
constexpr MenuEntry entries[] = {
    {"gameMode", {0.5, -35, 0.5, -120}, overIcon},
    {"changePlayer", {0.5, -35, 0.5, 0}, overIcon},
    {"continue", {0.5, -115, 0.5, 150}, overRow},
};

// A single character stands where both would, in the middle.
constexpr Spot singlePicture{0.5, -26, 0.5, 10}, swapButton = entries[changePlayer].spot;
constexpr Spot pictureOfOne{0.5, -104, 0.5, 10}, pictureOfTwo{0.5, 52, 0.5, 10};

struct Mode {
    const char* word;
    Words title;
    const char* next;
};
constexpr Mode modes[] = {
    {"onePlayer", {"1 Player", "1 Jogador"}, "twoPlayersOne"},
    {"twoPlayersOne", {"2 Players", "2 Jogadores"}, "twoPlayersTwo"},
    {"twoPlayersTwo", {"2 Players (co-op)", "2 Jogadores (cooperativo)"}, "onePlayer"},
};

// A word that nobody knows counts as the first mode.
const Mode& mode()
{
    for (const Mode& each : modes)
        if (playerMode.is(each.word)) return each;
    return modes[0];
}

bool two_play()
{
    return mode().word != modes[0].word;
}

constexpr Words firstPlayer{"Player 1", "Jogador 1"}, secondPlayer{"Player 2", "Jogador 2"};

void store(const char* key, const char* word)
{
    ini_open("SaveGame.sav");
    ini_write_string("preferencias", key, word);
    ini_close();
}

void create_at(CInstance* self, const Spot& spot, Object object)
{
    if (!instance_exists(self, object)) instance_create(spot.x(), spot.y(), object);
}

// Both characters are shown while two play.
void show_characters(CInstance* self)
{
    if (two_play()) {
        create_at(self, pictureOfOne, oJogadorUm);
        create_at(self, pictureOfTwo, oJogadorDois);
    } else {
        instance_destroy(self, oJogadorUm);
        instance_destroy(self, oJogadorDois);
    }
}

void next_mode(CInstance* self)
{
    click();
    const char* next = mode().next;
    playerMode = next;
    show_characters(self);
    store("modo", next);
}

void swap_character(Global character, const char* key)
{
    const char* next = character == "menino" ? "menina" : "menino";
    character = next;
    store(key, next);
}

void swap_characters()
{
    click();
    if (oChangePlayer.var(sprite_index) == sChangePlayer.index) oChangePlayer.var(image_index) = 0;
    swap_character(jogadorUm, "jogador_um");
    swap_character(jogadorDois, "jogador_dois");
}

void go_on(CInstance* self)
{
    RValue nothing;
    vxl_Script_scr_continua(self, self, nothing, 0, nullptr);
}

// The picture keeps its place in the animation while it stays the same.
void show_sprite(CInstance* self, Sprite sprite, double speed)
{
    if (self->var(sprite_index) == sprite.index) return;
    self->var(sprite_index) = sprite;
    self->var(image_index) = 0;
    self->var(image_speed) = speed;
}

// Back to the title.
void hold_back(CInstance* self, bool down)
{
    if (down) {
        keyboard_key_press(keyBackspace);
        show_debug_message("vk_backspace ativa!!");
    } else if (self->var(key_voltar)) {
        keyboard_key_release(keyBackspace);
    }
    self->var(key_voltar) = down;
}

}  // namespace

// ==== the screen

void vxl_Object_oGameMode_Create(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    self->var(image_speed) = 0;
    ini_open("SaveGame.sav");
    playerMode = ini_read_string("preferencias", "modo", "onePlayer");
    jogadorUm = ini_read_string("preferencias", "jogador_um", "menino");
    jogadorDois = ini_read_string("preferencias", "jogador_dois", "menina");
    ini_close();
    self->var(image_index) = in_language(0, 1);
    create_at(self, entries[gameMode].spot, oPlayerMode);
    create_at(self, entries[changePlayer].spot, oChangePlayer);
    create_at(self, entries[goOn].spot, oContinueProgresso);
    if (!instance_exists(self, oMenuGameMode)) instance_create(0, 0, oMenuGameMode);
    show_characters(self);
}

void vxl_Object_oGameMode_Draw(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    draw_self(self);
    centre_texts(fInterfaceSmall, white);
    draw_words({0.5, 0, 0.5, -135}, mode().title);
    centre_texts(fSuperSmall, orange);
    if (two_play()) {
        draw_words({0.5, -80, 0.5, -20}, firstPlayer);
        draw_words({0.5, 80, 0.5, -20}, secondPlayer);
    } else {
        draw_words({0.5, 0, 0.5, -20}, firstPlayer);
    }
}

// ---- the mode

void vxl_Object_oPlayerMode_Create(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    self->var(image_speed) = 0;
    self->var(image_index) = player_mode_icon();
}

void vxl_Object_oPlayerMode_Step(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    self->var(image_index) = player_mode_icon();
}

void vxl_Object_oPlayerMode_Mouse_LeftReleased(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    next_mode(self);
}

void vxl_Object_oPlayerMode_Mouse_Enter(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    put_cursor(self, oMenuGameMode, gameMode);
}

// ---- the characters. A single one is its own button.

void vxl_Object_oChangePlayer_Create(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    self->var(posXplayer) = singlePicture.x();
    self->var(posYplayer) = singlePicture.y();
    self->var(posX) = swapButton.x();
    self->var(posY) = swapButton.y();
    self->var(image_speed) = 0;
}

void vxl_Object_oChangePlayer_Step(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    if (two_play()) {
        show_sprite(self, sChangePlayer, 0);
        self->var(x) = self->var(posX);
        self->var(y) = self->var(posY);
    } else {
        show_sprite(self, picture(playerOne, standing), idleImageSpeed);
        self->var(x) = self->var(posXplayer);
        self->var(y) = self->var(posYplayer);
    }
}

void vxl_Object_oChangePlayer_Mouse_LeftPressed(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    if (self->var(sprite_index) == sChangePlayer.index) self->var(image_index) = 1;
}

void vxl_Object_oChangePlayer_Mouse_NoButton(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    if (self->var(sprite_index) == sChangePlayer.index) self->var(image_index) = 0;
}

void vxl_Object_oChangePlayer_Mouse_Leave(CInstance* self, CInstance* other)
{
    vxl_Object_oChangePlayer_Mouse_NoButton(self, other);
}

void vxl_Object_oChangePlayer_Mouse_LeftReleased(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    swap_characters();
}

void vxl_Object_oChangePlayer_Mouse_Enter(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    put_cursor(self, oMenuGameMode, changePlayer);
}

void vxl_Object_oJogadorUm_Create(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    self->var(image_speed) = idleImageSpeed;
}

void vxl_Object_oJogadorUm_Step(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    show_sprite(self, picture(playerOne, standing), idleImageSpeed);
}

void vxl_Object_oJogadorDois_Step(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    show_sprite(self, picture(playerTwo, standing), idleImageSpeed);
}

// ---- on to the map

void vxl_Object_oContinueProgresso_Create(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    self->var(image_speed) = 0;
    self->var(image_index) = in_language(0, 1);
}

void vxl_Object_oContinueProgresso_Mouse_LeftReleased(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    go_on(self);
}

void vxl_Object_oContinueProgresso_Mouse_Enter(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    put_cursor(self, oMenuGameMode, goOn);
}

// ==== its menu

void vxl_Object_oMenuGameMode_Create(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    set_up_menu(self, asList, entries);
    self->var(key_voltar) = 0;
}

void vxl_Object_oMenuGameMode_Step(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    read_menu_stick(self);
    move_cursor(self, menu_steps(self, menuUp, menuDown));
    RValue nothing;
    if (menu_confirmed(self)) vxl_Script_scr_menu_game_mode(self, other, nothing, 0, nullptr);
    hold_back(self, gamepad_button_check(self->var(pad), gp_select) ||
                        gamepad_button_check(self->var(pad), gp_face2));
}

void vxl_Object_oMenuGameMode_KeyPress_Backspace(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    keyboard_clear(keyBackspace);
    fade_to(room_titulo);
}

void vxl_Object_oMenuGameMode_Draw_Gui(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    draw_highlight(self, entries);
}

// The entry under the cursor of the menu that calls.
RValue& vxl_Script_scr_menu_game_mode(CInstance* self, CInstance* other, RValue& result, int,
                                      RValue**)
{
    Frame frame(self, other);
    if (self->var(mpos) == gameMode) next_mode(self);
    if (self->var(mpos) == changePlayer) swap_characters();
    if (self->var(mpos) == goOn) go_on(self);
    return result;
}
