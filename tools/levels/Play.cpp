#include "tools/levels/Play.h"

#include <algorithm>
#include <cstring>

namespace levels {
namespace {

// Steps from a cell to all others.
struct Walks {
    static constexpr int kNever = 1 << 20;
    int steps[kCells];

    Walks(Bits free, Cell from)
    {
        std::fill(std::begin(steps), std::end(steps), kNever);
        Bits edge = Bit(from), seen = edge;
        for (int distance = 0; edge; ++distance) {
            for (Bits rest = edge; rest;) steps[TakeFirst(rest)] = distance;
            edge = Beside(edge) & free & ~seen;
            seen |= edge;
        }
    }
};

// Appends a shortest walk; false when there is none.
bool AppendWalk(Bits free, Cell from, Cell to, std::string& keys)
{
    const Walks walks(free, to);
    if (!Has(free, to) || walks.steps[from] == Walks::kNever) return false;
    while (from != to) {
        for (Direction direction : kDirections) {
            const Cell next = from + kSteps[direction];
            if (next < 0 || next >= kCells || !Has(free, next)) continue;
            if (walks.steps[next] != walks.steps[from] - 1) continue;
            keys += kKeys[direction];
            from = next;
            break;
        }
    }
    return true;
}

// Boxes after a push, or 0 when it cannot be made.
Bits Pushed(const Board& board, Bits boxes, Push push)
{
    const Bits to = Shift(Bit(push.box), push.direction) & board.floor & ~boxes;
    if (!Has(boxes, push.box) || !to || boxes == board.targets) return 0;
    return (boxes & ~Bit(push.box)) | to;
}

// From the exit's cell through the gate's to the end marker's.
int StepsOut(const Board& board)
{
    return MapRowOf(board.exit) - 1;
}

// Pairs of places of both figures: by player one's cell, the cells of player two.
struct Pairs {
    Bits two[kCells] = {};

    // Adds all pairs that walking makes.
    void Walk(Bits free)
    {
        for (bool changed = true; changed;) {
            changed = false;
            for (Bits cells = free; cells;) {
                const Cell one = TakeFirst(cells);
                if (!two[one]) continue;
                two[one] = Reach(free & ~Bit(one), two[one]);
                for (Bits rest = Beside(Bit(one)) & free; rest;) {
                    const Cell next = TakeFirst(rest);
                    const Bits more = two[one] & ~Bit(next) & ~two[next];
                    if (more) changed = true;
                    two[next] |= more;
                }
            }
        }
    }
    Pairs Push(levels::Push push, bool byOne, bool byTwo) const
    {
        Pairs after;
        const Cell behind = push.box - kSteps[push.direction];
        const Cell to = push.box + kSteps[push.direction];
        if (byOne) after.two[push.box] |= two[behind] & ~Bit(to);
        for (Cell one = 0; byTwo && one < kCells; ++one) {
            if (one != to && Has(two[one], behind)) after.two[one] |= Bit(push.box);
        }
        return after;
    }
    bool Anyone(Cell cell) const
    {
        return two[cell] || std::any_of(std::begin(two), std::end(two),
                                        [&](Bits cells) { return Has(cells, cell); });
    }
};

}  // namespace

std::string Keys(const Board& board, const Pushes& pushes, Cell blocked)
{
    const Bits closed = blocked == kNoCell ? 0 : Bit(blocked);
    std::string keys;
    Bits boxes = board.boxes;
    Cell figure = board.start;
    for (Push push : pushes) {
        const Cell behind = push.box - kSteps[push.direction];
        if (!AppendWalk(board.floor & ~boxes & ~closed, figure, behind, keys)) return "";
        boxes = Pushed(board, boxes, push);
        if (!boxes || (boxes & closed)) return "";
        keys += kKeys[push.direction];
        figure = push.box;
    }
    if (boxes != board.targets) return "";
    if (!AppendWalk(board.floor & ~boxes & ~closed, figure, board.exit, keys)) return "";
    return keys + std::string(static_cast<size_t>(StepsOut(board)), kKeys[kUp]);
}

std::string ShortKeys(const std::string& keys)
{
    std::string text;
    for (size_t at = 0; at < keys.size();) {
        size_t end = at;
        while (end < keys.size() && keys[end] == keys[at]) ++end;
        text += (text.empty() ? "" : " ") + std::string(1, keys[at]);
        if (end - at > 1) text += std::to_string(end - at);
        at = end;
    }
    return text;
}

Replay PlayKeys(const Board& board, const std::string& keys)
{
    Replay replay;
    Bits boxes = board.boxes;
    Cell figure = board.start;
    replay.trodden = Bit(figure);
    int out = 0;  // steps from the exit's cell into the corridor
    for (size_t at = 0; at < keys.size(); ++at) {
        const char* key = std::strchr(kKeys, keys[at]);
        const Direction direction = static_cast<Direction>(key - kKeys);
        auto fault = [&](const char* what) {
            replay.fault =
                "step " + std::to_string(at + 1) + " of the solution, " + keys[at] + ", " + what;
            return replay;
        };
        if (out == StepsOut(board)) return fault("comes after the end");
        const bool open = boxes == board.targets;
        if (out > 0 || (figure == board.exit && direction == kUp && open)) {
            if (direction != kUp) return fault("leaves the straight way out");
            ++out;
            continue;
        }
        const Bits next = Shift(Bit(figure), direction) & board.floor;
        if (!next) return fault("runs into a wall or the closed gate");
        if (next & boxes) {
            const Push push{First(next), direction};
            const Bits after = Pushed(board, boxes, push);
            if (!after) return fault("pushes a box that cannot move");
            boxes = after;
            replay.pushes.push_back(push);
        }
        figure = First(next);
        replay.trodden |= next;
    }
    if (boxes != board.targets) {
        replay.fault = "the solution leaves " + std::to_string(Count(board.targets & ~boxes)) +
                       " targets empty";
    } else if (out != StepsOut(board)) {
        replay.fault = "the solution ends before the end marker";
    }
    return replay;
}

Bits UsedCells(const Board& board, const Pushes& pushes)
{
    Bits used = board.boxes | board.targets | Bit(board.start) | Bit(board.exit);
    Bits boxes = board.boxes;
    Cell figure = board.start;
    auto walk = [&](Cell to) {
        const Bits free = board.floor & ~boxes;
        const Walks before(free, figure), after(free, to);
        for (Bits rest = free; rest;) {
            const Cell cell = TakeFirst(rest);
            if (before.steps[cell] + after.steps[cell] == before.steps[to]) used |= Bit(cell);
        }
    };
    for (Push push : pushes) {
        walk(push.box - kSteps[push.direction]);
        boxes = Pushed(board, boxes, push);
        used |= boxes;
        figure = push.box;
    }
    walk(board.exit);
    return used;
}

int BoxChanges(const Pushes& pushes)
{
    int changes = 0;
    for (size_t i = 1; i < pushes.size(); ++i) {
        changes += pushes[i].box != pushes[i - 1].box + kSteps[pushes[i - 1].direction];
    }
    return changes;
}

Pushes Tidy(const Board& board, Pushes pushes)
{
    for (bool better = true; better;) {
        better = false;
        for (size_t i = 0; i + 1 < pushes.size() && !better; ++i) {
            const Cell box = pushes[i].box + kSteps[pushes[i].direction];
            if (pushes[i + 1].box == box) continue;
            size_t from = i + 1;
            while (from < pushes.size() && pushes[from].box != box) ++from;
            // The rest of that box's stretch moves forward as a whole, or its head alone.
            size_t to = from;
            for (Cell at = box; to < pushes.size() && pushes[to].box == at; ++to) {
                at += kSteps[pushes[to].direction];
            }
            for (; to > from && !better; --to) {
                Pushes moved = pushes;
                std::rotate(moved.begin() + static_cast<long>(i) + 1,
                            moved.begin() + static_cast<long>(from),
                            moved.begin() + static_cast<long>(to));
                if (BoxChanges(moved) < BoxChanges(pushes) && !Keys(board, moved).empty()) {
                    pushes = moved;
                    better = true;
                }
            }
        }
    }
    return pushes;
}

bool TwoCanPlay(const Board& board, const Pushes& pushes, bool inTurn)
{
    const Cell second = board.PlayerTwo();
    if (second == kNoCell) return false;
    Bits boxes = board.boxes;
    Pairs pairs;
    pairs.two[board.start] = Bit(second);
    bool one = true;
    for (size_t i = 0; i < pushes.size(); ++i) {
        const bool change =
            i > 0 && pushes[i].box != pushes[i - 1].box + kSteps[pushes[i - 1].direction];
        if (change) one = !one;
        pairs.Walk(board.floor & ~boxes);
        pairs = pairs.Push(pushes[i], !inTurn || one, !inTurn || !one);
        boxes = Pushed(board, boxes, pushes[i]);
        if (!boxes) return false;
    }
    pairs.Walk(board.floor & ~boxes);
    return boxes == board.targets && pairs.Anyone(board.exit);
}

}  // namespace levels
