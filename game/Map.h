#pragma once
// Ways to the map of the levels, and their state in the save file.

#include <cstdio>

#include "game/Rules.h"

// A level's state in the save file, and its key there.
inline constexpr double levelLocked = 0, levelOpen = 1, levelFinished = 2;
struct LevelKey {
    char text[24];
    explicit LevelKey(int level) { snprintf(text, sizeof text, "Level%d", level); }
};

// The map opens on the page of the farthest level that is unlocked.
void fade_to_map(CInstance* self);

// Backspace in a level, which both a figure and the pause answer: one fade for all.
void leave_level(CInstance* self);
