#pragma once
// The rows of the pause and of the screen at the end of a level, and where they lead. Each
// answers a letter key, which its on-screen button presses on touch platforms.

#include "game/Menu.h"

inline constexpr Spot firstRow{0.5, -rowWidth / 2, 0.25, 0};
inline constexpr Spot secondRow{0.5, -rowWidth / 2, 0.4, 0};
inline constexpr Spot thirdRow{0.5, -rowWidth / 2, 0.55, 0};

void go_on_playing();  // the pause ends in its next step
void go_to_next_level(CInstance* self);
void play_again(CInstance* self);
void go_to_map(CInstance* self);

// The mouse lets a row go; on touch platforms the row's key answers.
bool row_clicked();

void destroy_pause_rows(CInstance* self);  // with their keys
