#pragma once
// Ways to the map of the levels.

#include "game/Rules.h"

// The map opens on the page of the farthest level that is unlocked.
void fade_to_map(CInstance* self);

// Backspace in a level, which both a figure and the pause answer: one fade for all.
void leave_level(CInstance* self);
