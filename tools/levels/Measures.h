#pragma once
// What can be counted about a level and its solution, and the lines that a level has to
// reach.

#include <string>
#include <vector>

#include "tools/levels/Board.h"

namespace levels {

struct Measures {
    int boxes = 0, floor = 0;
    int pushes = 0, moves = 0;
    int matching = 0;       // lower bound: pushes if no box were in another's way
    int changes = 0;        // of the pushed box
    int unmoved = 0;        // boxes that the solution leaves alone
    int startOnTarget = 0;  // boxes
    int unused = 0;         // floor that the solution does not need
    bool idleTwo = false;   // solved by player one with player two standing at his place
    bool bothTwo = false;   // solved by both together
    bool turnsTwo = false;  // solved by both in turns

    int Gap() const { return pushes - matching; }
};

// `keys` must solve the level.
Measures Measure(const Board& board, const std::string& keys);

// The least pushes that the best known solution of a level with so many boxes takes.
int LeastPushes(int boxes);

// The first rectangle of 3 by 4 floor cells without a target in it; kNoCell if there is
// none.
Cell OpenArea(const Board& board);

// Floor in the corner of its rectangle: the same for levels that differ by place only.
// `symmetry` counts the eight turns and mirrors.
Board Cropped(const Board& board, int symmetry);

// The smallest part, 0 to 1, by which the floors of two levels differ under the eight
// symmetries: cells of one alone, by the cells of the larger.
double FloorDifference(const Board& one, const Board& other);

// How hard a level is for a person, in no unit: what orders the levels of a world.
double Difficulty(const Measures& measures, uint32_t positionsSeen);

}  // namespace levels
