// Pads play by pressing the keys of the figures. A press goes the way of a real key, so
// the figure follows one frame later.

#include "game/Pads.h"

#include "game/Gamepad.h"

namespace {

// What a pad presses for each way, in the order of `directions`.
struct PadWay {
    PadButton button;
    InstanceVar held;  // the pad holds the key down
    const char* name;  // in the console's lines
};
constexpr PadWay padWays[ways] = {
    {gp_padu, controla_key_up, "vk_up"},
    {gp_padd, controla_key_down, "vk_down"},
    {gp_padl, controla_key_left, "key_left"},
    {gp_padr, controla_key_right, "vk_right"},
};

// The order in which they are looked at.
constexpr Way order[ways] = {wayLeft, wayRight, wayDown, wayUp};

// The part of a pad that leads a figure.
struct Grip {
    PadAxis across, along;
    bool buttons;  // the four direction buttons too
    PadButton undo;
};
constexpr Grip leftHand = {gp_axislh, gp_axislv, true, gp_shoulderl};
constexpr Grip rightHand = {gp_axisrh, gp_axisrv, false, gp_shoulderr};

// Holds a key down as long as the pad does.
void hold_key(CInstance* self, bool down, InstanceVar held, int32_t key, const char* name)
{
    if (down) {
        keyboard_key_press(key);
        self->var(held) = 1;
        say(name, " ativa!!", "");
    } else if (self->var(held) == 1) {
        keyboard_key_release(key);
        self->var(held) = 0;
        say(name, " desativa!!", "");
    }
}

void lead(CInstance* self, const Figure& figure, double slot, const Grip& grip)
{
    for (const Way i : order) {
        const Direction& way = directions[i];
        const PadWay& padWay = padWays[i];
        const double stick = gamepad_axis_value(slot, way.x != 0 ? grip.across : grip.along);
        const bool held = stick * (way.x + way.y) > 0 ||
                          (grip.buttons && gamepad_button_check(slot, padWay.button));
        hold_key(self, held, padWay.held, figure.keys[i], padWay.name);
    }
}

void restart_by_pad()
{
    if (gameOver == 0) {
        click();
        room_restart();
    }
    show_debug_message("ord(T) ativa!!");
}

// The back button holds Backspace down.
void hold_back(CInstance* self, bool down)
{
    const bool before = static_cast<bool>(self->var(key_voltar));
    self->var(key_voltar) = down;
    if (down) {
        keyboard_key_press(keyBackspace);
        show_debug_message("vk_backspace ativa!!");
    } else if (before) {
        keyboard_key_release(keyBackspace);
    }
}

}  // namespace

void pad_of_player_one(CInstance* self)
{
    const double slot = self->var(pad);
    lead(self, playerOne, slot, leftHand);
    self->var(key_restart) = gamepad_button_check_pressed(slot, gp_face2);
    self->var(key_modo) = gamepad_button_check_pressed(slot, gp_face4);
    self->var(key_desfaz) = gamepad_button_check_pressed(slot, leftHand.undo);
    self->var(key_pause) = gamepad_button_check(slot, gp_start);

    hold_key(self, static_cast<bool>(self->var(key_pause)), controla_key_pause, keyEnter,
             "vk_enter");
    hold_key(self, static_cast<bool>(self->var(key_modo)), controla_key_modo, keyP, "ord(P)");
    if (self->var(key_restart)) restart_by_pad();
    hold_key(self, static_cast<bool>(self->var(key_desfaz)), controla_key_desfaz, keyZ, "ord(Z)");
    hold_back(self, gamepad_button_check(slot, gp_select));
}

// Two players share a pad, each with a hand, or have one each.
void pad_of_player_two(CInstance* self)
{
    const bool shared = playerMode == "twoPlayersOne";
    const Grip& grip = shared ? rightHand : leftHand;
    const double slot = self->var(shared ? pad : padDois);
    lead(self, playerTwo, slot, grip);
    self->var(key_desfaz) = gamepad_button_check_pressed(slot, grip.undo);
    hold_key(self, static_cast<bool>(self->var(key_desfaz)), controla_key_desfaz, keyU, "ord(U)");
}
