// The box. It has no logic of its own for being pushed: the figure that touches it
// moves it.

#include "game/Rules.h"

namespace {

constexpr double rows = 10;  // rows of cells on the screen

}  // namespace

void stand_in_row(CInstance* self, double nearer)
{
    const double row = floor_real(self->var(y)) / cell;
    if (row < 0 || row >= rows || row != floor_real(row)) return;
    self->var(depth) = -(row + nearer);
}

void vxl_Object_oMonte_Step(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    stand_in_row(self, 0);
}

// A box has a speed of its own only while a step is undone; that move ends on the
// grid.
void vxl_Object_oMonte_KeyPress_NoKey(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    if (action_if_aligned(self, cell, cell)) action_move(self, "000010000", 0);
}
