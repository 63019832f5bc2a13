#pragma once
// Changing rooms in a way that a player sees.

#include "game/Rules.h"

// Starts the fade to a room. The figures and menus go on until the screen is black.
void fade_to(double target);
inline void fade_to(Room target)
{
    fade_to(target.index);
}

// A fade is under way. What answers a held key asks first, so that one press does not
// start a fade in every frame.
bool fading(CInstance* self);

// Fills the view with black of an opacity of 0 to 1, which stays set for what is drawn next.
void draw_black_over_view(double opacity);
