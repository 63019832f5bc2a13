#pragma once
// Pads in a level: what they do to the keys, once a frame.

#include "game/Figure.h"

void pad_of_player_one(CInstance* self);
void pad_of_player_two(CInstance* self);
