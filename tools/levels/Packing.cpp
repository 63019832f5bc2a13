#include "tools/levels/Packing.h"

#include <algorithm>

namespace levels {

Packing::Packing(const Board& board) : board_(board), sources_(board.boxes & ~board.targets) {}

// Whether the box can be pulled from its target to a source, the others staying.
bool Packing::CanLeave(Bits standing, Cell box) const
{
    struct State {
        Cell box;
        Bits area;  // of the figure
    };
    const Bits floor = board_.floor & ~(standing & ~Bit(box));
    std::vector<State> states = {{box, Reach(floor & ~Bit(box), Bit(board_.exit))}};
    std::array<Bits, kCells> seen{};  // by the box's cell, the first cells of areas
    for (size_t next = 0; next < states.size(); ++next) {
        const State state = states[next];
        if (Has(sources_, state.box)) return true;
        for (Direction direction : kDirections) {
            const Bits to = Shift(Bit(state.box), direction) & state.area;
            const Bits figure = Shift(to, direction) & state.area;
            if (!figure) continue;
            const Bits area = Reach(floor & ~to, figure);
            const Cell cell = First(to);
            if (Has(seen[static_cast<size_t>(cell)], First(area))) continue;
            seen[static_cast<size_t>(cell)] |= Bit(First(area));
            states.push_back({cell, area});
        }
    }
    return false;
}

std::vector<Cell> Packing::Order() const
{
    std::vector<Cell> left;
    Bits standing = board_.targets;
    for (bool moved = true; moved;) {
        moved = false;
        for (Bits rest = standing; rest;) {
            const Cell box = TakeFirst(rest);
            if (!CanLeave(standing, box)) continue;
            standing &= ~Bit(box);
            left.push_back(box);
            moved = true;
        }
    }
    std::reverse(left.begin(), left.end());
    return left;
}

int Packing::InTheWay(Bits filled)
{
    uint64_t number = 0;
    for (Bits rest = board_.targets; rest;) number = number << 1 | Has(filled, TakeFirst(rest));
    const auto found = known_.find(number);
    if (found != known_.end()) return found->second;
    int count = 0;
    Bits standing = board_.targets;
    auto leaves = [&](Bits some) {
        while (some) {
            const Cell box = TakeFirst(some);
            if (!CanLeave(standing, box)) continue;
            standing &= ~Bit(box);
            return true;
        }
        return false;
    };
    while (standing & ~filled) {
        if (leaves(standing & ~filled)) continue;
        ++count;  // of those that no order helps, all count
        if (!leaves(standing & filled)) standing &= standing - 1;
    }
    return known_[number] = count;
}

}  // namespace levels
