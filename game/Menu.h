#pragma once
// What all menus share: an unseen controller holds the cursor `mpos` and the list `menu`;
// keys, pad and stick move the cursor, and a row is confirmed.

#include "game/Gamepad.h"

// One of the four ways to move a cursor.
struct MenuWay {
    Key arrow, letter;
    PadButton button;
    PadAxis axis;
    double side;         // of the axis: -1 or 1
    InstanceVar moves;   // the stick made a step this way
    InstanceVar leaned;  // the stick stands this way
};

inline constexpr MenuWay menuUp = {
    keyUp, keyW, gp_padu, gp_axislv, -1, moveAnalogicoCima, apertaAnalogicoCima};
inline constexpr MenuWay menuDown = {
    keyDown, keyS, gp_padd, gp_axislv, 1, moveAnalogicoBaixo, apertaAnalogicoBaixo};
inline constexpr MenuWay menuLeft = {
    keyLeft, keyA, gp_padl, gp_axislh, -1, moveAnalogicoEsquerda, apertaAnalogicoEsquerda};
inline constexpr MenuWay menuRight = {
    keyRight, keyD, gp_padr, gp_axislh, 1, moveAnalogicoDireita, apertaAnalogicoDireita};

// In the create event of a controller; the caller fills `menu` and its places.
void set_up_menu(CInstance* self);

// At the top of its step event. A stick that is held gives one step, not one a frame.
void read_menu_stick(CInstance* self);

// Steps asked for in this frame along a list: -1, 0 or 1.
double menu_steps(CInstance* self, const MenuWay& back, const MenuWay& forth);

// The cursor wraps at both ends of the list.
void move_cursor(CInstance* self, double steps);

bool menu_confirmed(CInstance* self);
