// The box. It has no logic of its own for being pushed: the figure that touches it
// moves it.

#include "game/Figure.h"

namespace {

constexpr double rows = 10;  // rows of cells on the screen

// A box has a speed of its own only while a step is undone; that move ends on the
// grid.
void settle(CInstance* self)
{
    if (on_grid(self)) action_move(self, stop, 0);
}

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

void vxl_Object_oMonte_KeyPress_NoKey(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    settle(self);
}

// The move is one cell long, also when a key goes down as the box lands.
void vxl_Object_oMonte_Step_End(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    settle(self);
}
