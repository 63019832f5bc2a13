// The box. It has no logic of its own for being pushed: the figure that touches it
// moves it.

#include "game/Rules.h"

namespace {

constexpr double rows = 10;  // rows of cells on the screen

}  // namespace

// Lower rows are drawn in front of higher ones. A box in mid-move keeps the depth of
// the row that it left.
void vxl_Object_oMonte_Step(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    const double row = floor_real(self->var(y)) / cell;
    if (row < 0 || row >= rows || row != floor_real(row)) return;
    self->var(depth) = -row;
}

// A box has a speed of its own only while a step is undone; that move ends on the
// grid.
void vxl_Object_oMonte_KeyPress_NoKey(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    if (action_if_aligned(self, cell, cell)) action_move(self, "000010000", 0);
}
