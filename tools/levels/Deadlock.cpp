#include "tools/levels/Deadlock.h"

namespace levels {
namespace {

struct Freezer {
    Bits solid;  // walls, and boxes under question
    Bits live, boxes;
    Bits frozen = 0;

    bool IsFrozen(Cell cell)
    {
        const Bits known = frozen;
        solid |= Bit(cell);
        frozen |= Bit(cell);
        if (BlockedAlong(cell, kUp) && BlockedAlong(cell, kLeft)) return true;
        solid &= ~Bit(cell);
        frozen = known;
        return false;
    }

private:
    bool BlockedAlong(Cell cell, Direction direction)
    {
        const Bits one = Shift(Bit(cell), direction);
        const Bits other = Shift(Bit(cell), Opposite(direction));
        if (!one || !other || ((one | other) & solid)) return true;
        if (!((one | other) & live)) return true;
        return ((one & boxes) && IsFrozen(First(one))) ||
               ((other & boxes) && IsFrozen(First(other)));
    }
};

// What the cells on both sides of a box say about pushing it in one direction.
enum class Side { needless, inward, open };

struct Corral {
    Bits inside, fence;
};

Side Judge(const Board& board, Bits live, Bits boxes, Bits area, const Corral& corral, Cell box,
           Direction direction)
{
    const Bits to = Shift(Bit(box), direction) & board.floor;
    const Bits behind = Shift(Bit(box), Opposite(direction)) & board.floor;
    if (!to || !behind || !(to & live)) return Side::needless;
    // A push by a figure inside, or with a box of the fence in its way, is not the first.
    if ((behind & (corral.inside | corral.fence)) || (to & corral.fence)) return Side::needless;
    const bool now = (behind & area) && !(to & boxes);
    return now && (to & corral.inside) ? Side::inward : Side::open;
}

}  // namespace

bool Frozen(const Board& board, Bits live, Bits boxes, Cell cell)
{
    Freezer freezer{~board.floor, live, boxes};
    return freezer.IsFrozen(cell) && (freezer.frozen & ~board.targets);
}

Allowed PruneCorrals(const Board& board, Bits live, Bits boxes, Bits area, const Allowed& pushes)
{
    Allowed best = pushes;
    int fewest = 0;
    for (Bits push : pushes.pushes) fewest += Count(push);
    const Bits free = board.floor & ~boxes;
    for (Bits unreached = free & ~area; unreached;) {
        Corral corral;
        corral.inside = Reach(free, Bit(First(unreached)));
        unreached &= ~corral.inside;
        corral.fence = Beside(corral.inside) & boxes;
        const bool needed = (corral.fence & ~board.targets) || (corral.inside & board.targets);
        if (!needed) continue;
        Allowed inward{};
        int count = 0;
        bool closed = true;
        for (Bits rest = corral.fence; rest && closed;) {
            const Cell box = TakeFirst(rest);
            for (Direction direction : kDirections) {
                const Side side = Judge(board, live, boxes, area, corral, box, direction);
                if (side == Side::needless) continue;
                if (side == Side::inward && Has(pushes.pushes[direction], box)) {
                    inward.pushes[direction] |= Bit(box);
                    ++count;
                    continue;
                }
                // A push that freezes its box between the boxes of the fence is no way in,
                // now or later.
                const Cell to = box + kSteps[direction];
                const Bits fence = (corral.fence & ~Bit(box)) | Bit(to);
                closed = side == Side::inward && Frozen(board, live, fence, to);
                if (!closed) break;
            }
        }
        if (!closed) continue;
        if (count == 0) {
            inward.dead = true;
            return inward;
        }
        if (count < fewest) {
            fewest = count;
            best = inward;
        }
    }
    return best;
}

}  // namespace levels
