#pragma once
// Achievements and score boards. The desktop's service knows names, the other one
// numbered entries.

#include "game/Rules.h"

// Boards take times in thousandths of a second.
inline constexpr double thousandths = 1000;

// A finished level that ends a part of the game.
void post_level_milestones(int level);

// The whole time of play, in seconds.
void post_time_milestones(double played);

// The id of an entry of the other service.
struct EntryId {
    char text[32];  // 18 characters
    explicit EntryId(int entry);
};
