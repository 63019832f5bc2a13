#pragma once
// A level as the searches see it: sets of cells as bits, with the rules of pushing.
//
// The floor of every level lies in the map's rows 3 to 10 (y = 52 to 416) and columns 1
// to 15, so a set of cells is 128 bits, 16 a row. Column 0 is never floor: it keeps a
// step to the side from running into the next row. The gate's cell is not floor, since
// nothing but a figure enters it, and that only when the puzzle is over.

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace levels {

__extension__ typedef unsigned __int128 Bits;
using Cell = int;  // row * kStride + column, from the upper left

inline constexpr int kStride = 16, kBoardRows = 8, kCells = kStride * kBoardRows;
inline constexpr int kFirstMapRow = 3;  // the map's row of the board's row 0
inline constexpr Cell kNoCell = -1;

enum Direction { kUp, kDown, kLeft, kRight };
inline constexpr std::array<Direction, 4> kDirections = {kUp, kDown, kLeft, kRight};
inline constexpr std::array<int, 4> kSteps = {-kStride, kStride, -1, 1};
inline constexpr char kKeys[] = "WSAD";  // of player one, by direction

constexpr Direction Opposite(Direction direction)
{
    return static_cast<Direction>(direction ^ 1);
}
constexpr Bits Bit(Cell cell)
{
    return static_cast<Bits>(1) << cell;
}
constexpr bool Has(Bits set, Cell cell)
{
    return (set >> cell & 1) != 0;
}
// The set moved one cell. Cells that leave the board are lost.
constexpr Bits Shift(Bits set, Direction direction)
{
    switch (direction) {
        case kUp:
            return set >> kStride;
        case kDown:
            return set << kStride;
        case kLeft:
            return set >> 1;
        default:
            return set << 1;
    }
}
constexpr Bits Beside(Bits set)
{
    return set >> kStride | set << kStride | set >> 1 | set << 1;
}
inline int Count(Bits set)
{
    return __builtin_popcountll(static_cast<uint64_t>(set)) +
           __builtin_popcountll(static_cast<uint64_t>(set >> 64));
}
// The lowest cell of a set that is not empty.
inline Cell First(Bits set)
{
    const uint64_t low = static_cast<uint64_t>(set);
    return low ? __builtin_ctzll(low) : 64 + __builtin_ctzll(static_cast<uint64_t>(set >> 64));
}
inline Cell TakeFirst(Bits& set)
{
    const Cell cell = First(set);
    set &= set - 1;
    return cell;
}
// `from` and all cells of `free` that a figure reaches from there.
inline Bits Reach(Bits free, Bits from)
{
    for (Bits area = from & free;;) {
        Bits next = (area | Beside(area)) & free;
        next = (next | Beside(next)) & free;
        if (next == area) return area;
        area = next;
    }
}

constexpr Cell CellAt(int column, int mapRow)
{
    return (mapRow - kFirstMapRow) * kStride + column;
}
constexpr int ColumnOf(Cell cell)
{
    return cell % kStride;
}
constexpr int MapRowOf(Cell cell)
{
    return cell / kStride + kFirstMapRow;
}

// A level at its start.
struct Board {
    Bits floor = 0;  // what a figure reaches, boxes aside
    Bits boxes = 0, targets = 0;
    Cell start = kNoCell;
    Cell exit = kNoCell;  // the floor cell below the gate

    // Where player two is put: the first of right, left, below and above of the start
    // that is floor without a box; kNoCell when there is none.
    Cell PlayerTwo() const;
};

// Reads a map as level files have it. An empty result means it is one; else the
// sentence says why it is none that the searches can take.
std::string Board_Parse(const std::vector<std::string>& map, Board& board);

// The map of a board, corridor and walls around the floor included. `gateRow` is the
// map's row of the gate, 2 or 3.
std::vector<std::string> Board_Map(const Board& board, int gateRow);

// A push: the box on `box` moves one cell.
struct Push {
    Cell box;
    Direction direction;
    friend bool operator==(const Push&, const Push&) = default;
};
using Pushes = std::vector<Push>;

// How many pushes a lone box needs from a cell to each target, whatever the figure has
// to walk. Targets are numbered by their cells' order.
class Distances {
public:
    static constexpr uint8_t kNever = 255;

    explicit Distances(const Board& board);
    int Targets() const { return targets_; }
    uint8_t From(Cell cell, int target) const { return table_[cell][target]; }
    const uint8_t* Row(Cell cell) const { return table_[cell]; }
    // Cells from which some target can be reached; on the others a box is lost.
    Bits Live() const { return live_; }

private:
    static constexpr int kMost = 32;
    int targets_ = 0;
    Bits live_ = 0;
    uint8_t table_[kCells][kMost];
};

}  // namespace levels
