#pragma once
// Solutions as pushes, as keys, and as two figures would play them.

#include <string>

#include "tools/levels/Board.h"

namespace levels {

// The keys of player one for a solution, by shortest walks, out through the gate to the
// end marker. `blocked` is a cell that the figure and the boxes keep clear of, as when
// somebody stands there. Empty when the pushes are no solution, or none that keeps clear.
std::string Keys(const Board& board, const Pushes& pushes, Cell blocked = kNoCell);

// "AAADWW" as "A3 D W2", and back is the level reader's.
std::string ShortKeys(const std::string& keys);

// What keys do, step by step.
struct Replay {
    std::string fault;  // empty when the keys solve the level and end on the end marker
    Pushes pushes;
    Bits trodden = 0;  // cells that the figure stood on
};
Replay PlayKeys(const Board& board, const std::string& keys);

// Cells that a solution uses: where boxes stand, and every shortest walk between pushes.
Bits UsedCells(const Board& board, const Pushes& pushes);

// How often the pushed box is another than before; the first box does not count.
int BoxChanges(const Pushes& pushes);

// The same pushes in an order with fewer box changes, as a person would play them: later
// pushes of a box join earlier ones where nothing stands against it.
Pushes Tidy(const Board& board, Pushes pushes);

// Whether two figures, player two starting at his place, can make the pushes in this
// order, both walking as they like: `inTurn` has them take turns, one stretch of pushes
// of one box each, player one first; else either may push at any time.
bool TwoCanPlay(const Board& board, const Pushes& pushes, bool inTurn);

}  // namespace levels
