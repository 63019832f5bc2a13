#pragma once
// Positions that no solution leads through, and pushes that need not be tried.

#include "tools/levels/Board.h"

namespace levels {

// Whether the box on `cell` can never move again and either it or a box that holds it
// stands off the targets. Method: freeze deadlocks, box by box with the box under
// question taken as a wall (B. Damgaard and others, the Sokoban wiki).
bool Frozen(const Board& board, Bits live, Bits boxes, Cell cell);

// Of all pushes in a position, those that suffice: one set of boxes by direction.
struct Allowed {
    Bits pushes[4];  // boxes that may be pushed, by direction
    bool dead = false;
};

// If some corral, that is a part of the floor that boxes shut off from the figure, has a
// fence whose first push must lead into it, can be made now, and must come some day,
// then the pushes into it alone suffice: they disturb none of the others. Method: PI-
// corral pruning (B. Damgaard, YASC). `pushes` holds all pushes that are possible. Not to
// be used where covering all targets can be a dead end, as it changes their order.
Allowed PruneCorrals(const Board& board, Bits live, Bits boxes, Bits area, const Allowed& pushes);

}  // namespace levels
