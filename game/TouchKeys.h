#pragma once
// The on-screen buttons of a level: virtual keys that press the letters of the figures.
// They exist only while touch controls are on.

void add_touch_keys_of_player_two();
void delete_touch_keys_of_player_two();
void add_touch_keys();  // all of a level's
void delete_touch_keys();

// While the pause is open, with the button that turns them on and off.
void let_touch_keys_rest();
void bring_touch_keys_back();
