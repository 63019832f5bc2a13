#pragma once
// What the pause and the options are made of: a still picture of what they stop, under a
// dark veil, and buttons over it that both of them share.

#include "game/Menu.h"

// A table of cursor moves: the new place for each old one.
struct Steering {
    std::span<const int> up, down, left, right;
};

// ---- opening and closing, for the one who owns the panel
void freeze(CInstance* self);  // all but self sleep; the picture is kept in `sprite`
void forget_picture(CInstance* self);
void turn_music_down();  // with the sound of the pause
void turn_music_up();
void wake_or_create(CInstance* self, Object object, const Spot& spot);
void bring_buttons(CInstance* self, MenuEntries entries);
void put_buttons_away(CInstance* self);  // they sleep until the panel opens again

void draw_panel(CInstance* self);
void draw_banner(CInstance* self, Sprite banner);

// ---- its menu
void steer_panel(CInstance* self, const Steering& steering);
bool panel_confirmed(CInstance* self);  // Enter and the start button end the pause instead

// ---- its buttons: what a click does, and the entry that uses them
void use_button(CInstance* self, Object button);
void open_screen(CInstance* self, Object button);  // help or credits
void switch_sound();
void switch_language();
void show_achievements(CInstance* self);
void show_score_boards(CInstance* self);

// The mouse comes to a button: the cursor of the panel that is up goes to it.
void point_at(CInstance* self);
MenuEntries entries_of_pause();
MenuEntries entries_of_options();
