#pragma once
// What all menus share: an unseen controller holds the cursor `mpos` and the list of the
// entries; keys, pad, stick and mouse move the cursor, and the entry under it is confirmed.
// A picture over that entry shows where the cursor stands.

#include "game/Gamepad.h"
#include "game/Screen.h"

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

// ---- entries
struct Highlight {
    Sprite sprite;
    int frame;
    double aside = 0;  // pixels from the entry's corner, both ways
};
inline constexpr Highlight overRow{sSelecionaMenu, 4}, overIcon{sSelecionaConquistas, 0},
    overCard{sSelecionaAjuda, 0}, overSwitch{sSelecionaSom, 0};
inline constexpr Highlight overSmallIcon{sSelecionaConquistas, 0, -5};  // of 60 by 60 pixels

struct MenuEntry {
    const char* tag;
    Spot spot;
    Highlight highlight;
    Object button{-1};  // that shows the entry, where a screen makes it by this table
};
using MenuEntries = std::span<const MenuEntry>;

// Where a controller keeps its entries: in a list, or scattered over the screen.
struct MenuShape {
    InstanceVar tags, x, y;
};
inline constexpr MenuShape asList{menu, menuX, menuY}, scattered{opcoes, opcoesX, opcoesY};

// In the create event of a controller. One that draws in the room fills `menu` itself.
void set_up_menu(CInstance* self);
void set_up_menu(CInstance* self, const MenuShape& shape, MenuEntries entries);

void draw_highlight(CInstance* self, MenuEntries entries);

// ---- the mouse finds an entry by an unseen area over it
inline constexpr double rowWidth = 226, rowHeight = 50;       // pixels
bool wake_hit_areas(CInstance* self);                         // false: none has been made yet
void add_hit_area(CInstance* self, double left, double top);  // for the next entry
int entry_under_mouse(CInstance* self);                       // -1 for none

// ---- moving the cursor

// At the top of its step event. A stick that is held gives one step, not one a frame.
void read_menu_stick(CInstance* self);

// Steps asked for in this frame along a list: -1, 0 or 1.
double menu_steps(CInstance* self, const MenuWay& back, const MenuWay& forth);

// The cursor wraps at both ends of the list.
void move_cursor(CInstance* self, double steps);

// A new place for each old one.
void steer(CInstance* self, double steps, std::span<const int> back, std::span<const int> forth);

// A button that the mouse comes to draws the cursor of its menu, where that is up.
void put_cursor(CInstance* self, Object controller, double entry);

bool menu_confirmed(CInstance* self);
