#pragma once
// The fewest pushes that bring all boxes to targets of their own, were each box alone:
// an assignment of least cost. A lower bound for every solution.
//
// Method: shortest augmenting paths with potentials (H. W. Kuhn, "The Hungarian method
// for the assignment problem", 1955; J. Munkres, 1957). A changed row is put in again
// alone: its potentials stay valid for the others, so one augmentation mends the whole.

#include "tools/levels/Board.h"

namespace levels {

class Matching {
public:
    static constexpr int kNever = 1 << 20;  // at least this: some box has no target left

    // Assigns the boxes in the order of their cells.
    Matching(const Distances& distances, Bits boxes);

    int Cost() const { return cost_; }
    // The cost were the box on `from` on `to`. Leaves this matching as it is.
    int CostMoved(Cell from, Cell to) const;

private:
    static constexpr int kMost = 32;

    void Insert(int row);

    const Distances& distances_;
    int count_ = 0, cost_ = 0;
    const uint8_t* rows_[kMost + 1] = {};  // distances of each box; rows count from 1
    Cell cells_[kMost + 1] = {};           // of the boxes
    int rowPotential_[kMost + 1] = {};     // the usual dual variables
    int columnPotential_[kMost + 1] = {};
    int rowOf_[kMost + 1] = {};  // the box that a target has, 0 for none
};

}  // namespace levels
