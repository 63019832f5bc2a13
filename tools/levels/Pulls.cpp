#include "tools/levels/Pulls.h"

#include <algorithm>

#include "tools/levels/Matching.h"
#include "tools/levels/Random.h"

namespace levels {

PullSearch::PullSearch(const Board& board, const PullLimits& limits)
    : board_(board), distances_(board)
{
    const Bits free = board.floor & ~board.targets;
    if (!Has(free, board.exit)) return;
    bool added = false;
    table_.Add({board.targets, First(Reach(free, Bit(board.exit)))}, added);
    nodes_.push_back({0, 0, 0, 0});
    std::vector<uint32_t> layer = {0};
    for (int depth = 0; depth < limits.depth && !layer.empty(); ++depth) {
        for (uint32_t number : layer) Expand(number);
        layer.swap(next_);
        next_.clear();
        if (nodes_.size() > limits.positions) break;
        if (nodes_.size() > limits.uncut && layer.size() > limits.beam) {
            Cut(layer, limits);
            exact_ = false;
        }
    }
}

void PullSearch::Expand(uint32_t number)
{
    const Bits boxes = Boxes(number), area = Area(number);
    for (Direction direction : kDirections) {
        // The figure stands beside the box, and has room to step back.
        const Bits beside = area & Shift(area, Opposite(direction));
        for (Bits rest = boxes & Shift(beside, Opposite(direction)); rest;) {
            const Cell box = TakeFirst(rest), to = box + kSteps[direction];
            const Bits pulled = (boxes & ~Bit(box)) | Bit(to);
            if (pulled == board_.targets) continue;  // the puzzle would be over there
            const Bits reached = Reach(board_.floor & ~pulled, Shift(Bit(to), direction));
            bool added = false;
            const uint32_t found = table_.Add({pulled, First(reached)}, added);
            if (!added) continue;
            nodes_.push_back({number, static_cast<uint16_t>(nodes_[number].depth + 1),
                              static_cast<uint8_t>(to), static_cast<uint8_t>(Opposite(direction))});
            next_.push_back(found);
        }
    }
}

// Keeps the positions with most boxes off the targets and the highest bound, so that the
// beam leaves the targets rather than walks around them; chance keeps it wide.
void PullSearch::Cut(std::vector<uint32_t>& layer, const PullLimits& limits) const
{
    Random random(limits.seed + nodes_.size());
    std::vector<std::pair<int, uint32_t>> ranked;
    ranked.reserve(layer.size());
    for (uint32_t number : layer) {
        const Bits boxes = Boxes(number);
        const int rank = 3 * Count(boxes & ~board_.targets) + Matching(distances_, boxes).Cost() +
                         random.Below(14);
        ranked.emplace_back(-rank, number);
    }
    std::nth_element(ranked.begin(), ranked.begin() + limits.beam, ranked.end());
    ranked.resize(limits.beam);
    std::sort(ranked.begin(), ranked.end());
    layer.clear();
    for (auto [rank, number] : ranked) layer.push_back(number);
}

Pushes PullSearch::Way(uint32_t number) const
{
    Pushes pushes;
    for (; nodes_[number].depth > 0; number = nodes_[number].after) {
        pushes.push_back({nodes_[number].box, static_cast<Direction>(nodes_[number].direction)});
    }
    return pushes;
}

}  // namespace levels
