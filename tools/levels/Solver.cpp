#include "tools/levels/Solver.h"

#include <algorithm>

#include "tools/levels/Deadlock.h"
#include "tools/levels/Matching.h"
#include "tools/levels/Packing.h"
#include "tools/levels/Position_Table.h"

namespace levels {
namespace {

// Open positions by their estimate, and among equals those nearest to the end first.
class Queue {
public:
    struct Entry {
        uint32_t node;
        int pushes;  // when it was put in; a cheaper way may have come since
    };

    void Put(int estimate, int left, Entry entry)
    {
        const size_t row = static_cast<size_t>(estimate), column = static_cast<size_t>(left);
        if (buckets_.size() <= row) buckets_.resize(row + 1);
        if (buckets_[row].size() <= column) buckets_[row].resize(column + 1);
        buckets_[row][column].push_back(entry);
        lowest_ = std::min(lowest_, row);
    }
    bool Take(Entry& entry, int& estimate)
    {
        for (; lowest_ < buckets_.size(); ++lowest_) {
            for (std::vector<Entry>& bucket : buckets_[lowest_]) {
                if (bucket.empty()) continue;
                entry = bucket.back();
                bucket.pop_back();
                estimate = static_cast<int>(lowest_);
                return true;
            }
        }
        return false;
    }

private:
    std::vector<std::vector<std::vector<Entry>>> buckets_;
    size_t lowest_ = 0;
};

class Search {
public:
    Search(const Board& board, const SolveLimits& limits)
        : board_(board), limits_(limits), distances_(board), packing_(board)
    {
        // With all targets covered the rest of the floor must hang together, or the order
        // of pushes can decide between won and lost.
        const Bits rest = board.floor & ~board.targets;
        corrals_ = limits.corrals && Has(rest, board.exit) && Reach(rest, Bit(board.exit)) == rest;
        packs_ = limits.weight > 1 && Count(board.boxes) >= limits.packed;
    }

    Solution Run()
    {
        Solution result;
        if (Count(board_.boxes) != Count(board_.targets) || board_.boxes == 0) {
            result.verdict = Verdict::unsolvable;
            return result;
        }
        const int bound = Matching(distances_, board_.boxes).Cost();
        if (bound >= Matching::kNever || Lost(board_.boxes)) {
            result.verdict = Verdict::unsolvable;
            return result;
        }
        Reached(board_.boxes, Bit(board_.start), 0, kNone, Push{0, kUp}, bound);
        Queue::Entry entry;
        for (int estimate = 0; Take(entry, estimate);) {
            if (limits_.weight == 1) result.bound = std::max(result.bound, estimate);
            Node& node = nodes_[entry.node];
            if (node.closed || node.pushes != entry.pushes) continue;
            if (table_.At(entry.node).boxes == board_.targets) {
                result.verdict = Verdict::solved;
                result.pushes = Way(entry.node);
                result.fewest = limits_.weight == 1;
                if (!result.fewest) result.bound = bound;
                result.nodes = static_cast<uint32_t>(nodes_.size());
                return result;
            }
            if (nodes_.size() >= limits_.nodes) {
                result.nodes = static_cast<uint32_t>(nodes_.size());
                result.bound = std::max(result.bound, bound);
                return result;
            }
            node.closed = true;
            Expand(entry.node);
        }
        // Packing passes over some ways out: without it there may be one.
        if (packs_) {
            SolveLimits whole = limits_;
            whole.packed = Count(board_.boxes) + 1;
            return Search(board_, whole).Run();
        }
        result.verdict = Verdict::unsolvable;
        result.nodes = static_cast<uint32_t>(nodes_.size());
        return result;
    }

private:
    static constexpr uint32_t kNone = ~0u;
    static constexpr int kParts = 8;  // of the floor; more count as so many

    struct Node {
        uint32_t before;
        uint16_t pushes;
        uint8_t box, direction;  // the push that led here: where the box was
        uint8_t figure;          // a cell of the area
        bool closed;
    };

    bool Lost(Bits boxes) const
    {
        if (boxes & ~distances_.Live()) return true;
        for (Bits rest = boxes; rest;) {
            if (Frozen(board_, distances_.Live(), boxes, TakeFirst(rest))) return true;
        }
        return false;
    }

    void Reached(Bits boxes, Bits figure, int pushes, uint32_t before, Push push, int left)
    {
        const Bits area = Reach(board_.floor & ~boxes, figure);
        if (boxes == board_.targets && !Has(area, board_.exit)) return;
        bool added = false;
        const uint32_t number = table_.Add({boxes, First(area)}, added);
        if (added) {
            nodes_.push_back({});
        } else if (nodes_[number].pushes <= pushes) {
            return;
        }
        nodes_[number] = {before,
                          static_cast<uint16_t>(pushes),
                          static_cast<uint8_t>(push.box),
                          static_cast<uint8_t>(push.direction),
                          static_cast<uint8_t>(First(figure)),
                          false};
        const size_t group = packs_ ? Group(boxes) : 0;
        if (groups_.size() <= group) groups_.resize(group + 1);
        groups_[group].Put(pushes + limits_.weight * left, left, {number, pushes});
    }

    // The next open position, one of each group in turn.
    bool Take(Queue::Entry& entry, int& estimate)
    {
        for (size_t tried = 0; tried < groups_.size(); ++tried) {
            turn_ = turn_ + 1 < groups_.size() ? turn_ + 1 : 0;
            if (groups_[turn_].Take(entry, estimate)) return true;
        }
        return false;
    }

    // Positions are of one group that are as far with packing and have the floor in as many
    // parts: taken in turn, those who pack well get on without the others being left.
    size_t Group(Bits boxes)
    {
        const Bits filled = boxes & board_.targets;
        const int packed = std::max(0, Count(filled) - 2 * packing_.InTheWay(filled));
        int parts = 0;
        for (Bits free = board_.floor & ~boxes; free; ++parts) {
            free &= ~Reach(free, Bit(First(free)));
        }
        return static_cast<size_t>(packed * kParts + std::min(parts, kParts) - 1);
    }

    void Expand(uint32_t number)
    {
        const Bits boxes = table_.At(number).boxes;
        const Bits free = board_.floor & ~boxes;
        const Bits area = Reach(free, Bit(nodes_[number].figure));
        const Bits live = distances_.Live();
        const int pushes = nodes_[number].pushes + 1;
        const Bits movable = boxes & ~Packed(number);
        Allowed allowed{};
        for (Direction direction : kDirections) {
            Bits candidates =
                movable & Shift(area, direction) & Shift(free & live, Opposite(direction));
            while (candidates) {
                const Cell box = TakeFirst(candidates), to = box + kSteps[direction];
                const Bits next = (boxes & ~Bit(box)) | Bit(to);
                if (!Frozen(board_, live, next, to)) allowed.pushes[direction] |= Bit(box);
            }
        }
        if (corrals_) allowed = PruneCorrals(board_, live, boxes, area, allowed);
        if (allowed.dead) return;
        const Matching matching(distances_, boxes);
        for (Direction direction : kDirections) {
            for (Bits rest = allowed.pushes[direction]; rest;) {
                const Cell box = TakeFirst(rest), to = box + kSteps[direction];
                const int left = matching.CostMoved(box, to);
                if (left >= Matching::kNever) continue;
                Reached((boxes & ~Bit(box)) | Bit(to), Bit(box), pushes, number,
                        Push{box, direction}, left);
            }
        }
    }

    // Boxes on targets that stay, as none is in the way of another. The box pushed last may
    // go on over its target.
    Bits Packed(uint32_t number)
    {
        const Bits filled = table_.At(number).boxes & board_.targets;
        if (!packs_ || packing_.InTheWay(filled)) return 0;
        const Node& node = nodes_[number];
        if (node.before == kNone) return filled;
        return filled & ~Bit(node.box + kSteps[node.direction]);
    }

    Pushes Way(uint32_t number) const
    {
        Pushes pushes;
        for (; nodes_[number].before != kNone; number = nodes_[number].before) {
            pushes.push_back(
                {nodes_[number].box, static_cast<Direction>(nodes_[number].direction)});
        }
        std::reverse(pushes.begin(), pushes.end());
        return pushes;
    }

    const Board& board_;
    const SolveLimits limits_;
    const Distances distances_;
    Packing packing_;
    bool corrals_ = false, packs_ = false;
    PositionTable table_;
    std::vector<Node> nodes_;  // by the table's numbers
    std::vector<Queue> groups_;
    size_t turn_ = 0;
};

}  // namespace

Solution Solve(const Board& board, const SolveLimits& limits)
{
    return Search(board, limits).Run();
}

Solution SolveHastily(const Board& board, uint32_t nodes)
{
    Solution best;
    for (int weight : {2, 3, 5}) {
        SolveLimits limits;
        limits.nodes = nodes;
        limits.weight = weight;
        Solution solution = Solve(board, limits);
        if (solution.verdict != Verdict::solved) continue;
        for (size_t window : {20u, 32u, 48u, 24u}) {
            solution.pushes = Polish(board, solution.pushes, window, nodes / 10);
        }
        const bool shorter =
            best.verdict != Verdict::solved || solution.pushes.size() < best.pushes.size();
        if (shorter) best = solution;
    }
    best.fewest =
        best.verdict == Verdict::solved && static_cast<int>(best.pushes.size()) == best.bound;
    return best;
}

Pushes Polish(const Board& board, const Pushes& pushes, size_t window, uint32_t nodes)
{
    Pushes way = pushes;
    const size_t step = std::max<size_t>(1, window / 4);
    for (size_t from = 0; from < way.size(); from += step) {
        const size_t to = std::min(way.size(), from + window);
        // The level that begins before the window and ends behind it.
        Board part = board;
        for (size_t i = 0; i < from; ++i) {
            part.boxes = (part.boxes & ~Bit(way[i].box)) | Shift(Bit(way[i].box), way[i].direction);
            part.start = way[i].box;
        }
        part.targets = part.boxes;
        for (size_t i = from; i < to; ++i) {
            part.targets =
                (part.targets & ~Bit(way[i].box)) | Shift(Bit(way[i].box), way[i].direction);
            part.exit = way[i].box;
        }
        if (to == way.size()) part.exit = board.exit;
        if (part.targets == part.boxes) continue;
        SolveLimits limits;
        limits.nodes = nodes;
        const Solution better = Solve(part, limits);
        if (better.verdict != Verdict::solved || better.pushes.size() >= to - from) continue;
        Pushes next(way.begin(), way.begin() + static_cast<long>(from));
        next.insert(next.end(), better.pushes.begin(), better.pushes.end());
        next.insert(next.end(), way.begin() + static_cast<long>(to), way.end());
        way = next;
    }
    return way;
}

}  // namespace levels
