#include "tools/levels/Matching.h"

#include <algorithm>

namespace levels {
namespace {

int CostOf(uint8_t distance)
{
    return distance == Distances::kNever ? Matching::kNever : distance;
}

}  // namespace

Matching::Matching(const Distances& distances, Bits boxes) : distances_(distances)
{
    while (boxes) {
        const Cell cell = TakeFirst(boxes);
        cells_[++count_] = cell;
        rows_[count_] = distances.Row(cell);
    }
    for (int row = 1; row <= count_; ++row) Insert(row);
    for (int column = 1; column <= distances_.Targets(); ++column) {
        if (rowOf_[column]) cost_ += CostOf(rows_[rowOf_[column]][column - 1]);
    }
    cost_ = std::min(cost_, kNever);
}

// Finds the cheapest chain of changes that gives `row` a target.
void Matching::Insert(int row)
{
    constexpr int kFar = 1 << 28;
    const int columns = distances_.Targets();
    int slack[kMost + 1], before[kMost + 1];
    bool used[kMost + 1];
    for (int column = 0; column <= columns; ++column) {
        slack[column] = kFar;
        used[column] = false;
    }
    rowOf_[0] = row;
    rowPotential_[row] = 0;
    int at = 0;
    do {
        used[at] = true;
        const int from = rowOf_[at];
        int next = 0, delta = kFar;
        for (int column = 1; column <= columns; ++column) {
            if (used[column]) continue;
            const int reduced =
                CostOf(rows_[from][column - 1]) - rowPotential_[from] - columnPotential_[column];
            if (reduced < slack[column]) {
                slack[column] = reduced;
                before[column] = at;
            }
            if (slack[column] < delta) {
                delta = slack[column];
                next = column;
            }
        }
        for (int column = 0; column <= columns; ++column) {
            if (used[column]) {
                rowPotential_[rowOf_[column]] += delta;
                columnPotential_[column] -= delta;
            } else {
                slack[column] -= delta;
            }
        }
        at = next;
    } while (rowOf_[at] != 0);
    while (at != 0) {
        rowOf_[at] = rowOf_[before[at]];
        at = before[at];
    }
}

int Matching::CostMoved(Cell from, Cell to) const
{
    Matching moved = *this;
    int row = 1;
    while (moved.cells_[row] != from) ++row;
    for (int column = 1; column <= distances_.Targets(); ++column) {
        if (moved.rowOf_[column] == row) moved.rowOf_[column] = 0;
    }
    moved.rows_[row] = distances_.Row(to);
    moved.Insert(row);
    int cost = 0;
    for (int column = 1; column <= distances_.Targets(); ++column) {
        if (moved.rowOf_[column]) cost += CostOf(moved.rows_[moved.rowOf_[column]][column - 1]);
    }
    return std::min(cost, kNever);
}

}  // namespace levels
