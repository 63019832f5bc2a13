#pragma once
// The way out of a level, for stories of what happens there.

#include "tests/game/support_Level.h"

// A figure that came through the gate.
inline void StandOutside(LevelStory& level, CInstance* figure)
{
    if (CInstance* gate = level.stage.find(names::oPortaoFechado)) instance_destroy(gate);
    Put(figure, 416, 0);
}

inline void WalkOut(LevelStory& level)
{
    StandOutside(level, level.one);
    level.stage.frames(1).tap('W').frames(14);
}

inline void Finish(LevelStory& level, int number)
{
    level.Enter("room_level" + std::to_string(number));
    WalkOut(level);
}
