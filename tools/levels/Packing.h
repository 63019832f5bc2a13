#pragma once
// In which order targets can be filled, and whether boxes that stand on targets already are
// in the way of the rest.
//
// Method: goal packing (A. Junghanns, J. Schaeffer, "Sokoban: enhancing general single-agent
// search methods using domain knowledge", 2001), here backwards: from the solved level boxes
// are pulled out one by one, each all the way to a place where a box began, with the rest as
// walls; an order of leaving, reversed, is an order of filling. A box once out is gone, so a
// box that can leave now can leave later too, and the order of trying does not matter.
//
// What it says proves nothing: boxes may also step aside for others. A search that keeps to
// it and finds no way has to look again without it.

#include <unordered_map>
#include <vector>

#include "tools/levels/Board.h"

namespace levels {

class Packing {
public:
    explicit Packing(const Board& board);

    // All targets, the first to be filled first; fewer when no box can be brought to the
    // others with these full.
    std::vector<Cell> Order() const;

    // How many of the boxes on `filled`, a set of targets, stand in the way: so many have to
    // leave again before boxes can be brought to all other targets.
    int InTheWay(Bits filled);

private:
    bool CanLeave(Bits standing, Cell box) const;

    const Board board_;
    const Bits sources_;                       // where boxes come from
    std::unordered_map<uint64_t, int> known_;  // answers by the number of a set of targets
};

}  // namespace levels
