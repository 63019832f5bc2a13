#include "tools/levels/Measures.h"

#include <algorithm>
#include <cmath>

#include "tools/levels/Matching.h"
#include "tools/levels/Play.h"

namespace levels {
namespace {

int Unmoved(const Board& board, const Pushes& pushes)
{
    Bits still = board.boxes;
    for (const Push& push : pushes) still &= ~Bit(push.box);
    return Count(still);
}

// A set of cells, each mapped, moved to the board's upper left.
struct Turn {
    int symmetry;
    int top = 1 << 10, left = 1 << 10;

    std::pair<int, int> Map(Cell cell) const
    {
        int row = cell / kStride, column = cell % kStride;
        if (symmetry & 1) row = -row;
        if (symmetry & 2) column = -column;
        if (symmetry & 4) std::swap(row, column);
        return {row, column};
    }
    Turn(int s, Bits floor) : symmetry(s)
    {
        while (floor) {
            auto [row, column] = Map(TakeFirst(floor));
            top = std::min(top, row);
            left = std::min(left, column);
        }
    }
    Cell operator()(Cell cell) const
    {
        auto [row, column] = Map(cell);
        return (row - top) * kStride + column - left;
    }
};

}  // namespace

Measures Measure(const Board& board, const std::string& keys)
{
    Measures m;
    const Replay replay = PlayKeys(board, keys);
    const Pushes& pushes = replay.pushes;
    m.boxes = Count(board.boxes);
    m.floor = Count(board.floor);
    m.pushes = static_cast<int>(pushes.size());
    m.moves = static_cast<int>(keys.size());
    m.matching = Matching(Distances(board), board.boxes).Cost();
    m.changes = BoxChanges(pushes);
    m.unmoved = Unmoved(board, pushes);
    m.startOnTarget = Count(board.boxes & board.targets);
    m.unused = Count(board.floor & ~UsedCells(board, pushes));
    const Cell second = board.PlayerTwo();
    m.idleTwo = second != kNoCell && !Has(replay.trodden, second) &&
                std::none_of(pushes.begin(), pushes.end(), [&](const Push& push) {
                    return push.box + kSteps[push.direction] == second;
                });
    m.bothTwo = TwoCanPlay(board, pushes, false);
    m.turnsTwo = TwoCanPlay(board, pushes, true);
    return m;
}

int LeastPushes(int boxes)
{
    constexpr int kLeast[] = {0, 8, 14, 20, 26, 30, 33, 36, 40, 42, 45, 45, 50, 50, 55};
    return kLeast[std::min(boxes, 14)];
}

Cell OpenArea(const Board& board)
{
    for (auto [rows, columns] : {std::pair{3, 4}, std::pair{4, 3}}) {
        for (Cell corner = 0; corner < kCells; ++corner) {
            if (corner / kStride + rows > kBoardRows || corner % kStride + columns > kStride) {
                continue;
            }
            Bits area = 0;
            for (int row = 0; row < rows; ++row) {
                for (int column = 0; column < columns; ++column) {
                    area |= Bit(corner + row * kStride + column);
                }
            }
            if ((area & ~board.floor) == 0 && (area & board.targets) == 0) return corner;
        }
    }
    return kNoCell;
}

Board Cropped(const Board& board, int symmetry)
{
    // Upright forms of wide levels run past the board's lower edge; a level that is wider
    // than the board is high has none that could equal another level's.
    const Turn turn(symmetry, board.floor);
    Board cropped;
    auto map = [&](Bits cells) {
        Bits mapped = 0;
        while (cells) {
            const Cell cell = turn(TakeFirst(cells));
            if (cell < kCells) mapped |= Bit(cell);
        }
        return mapped;
    };
    cropped.floor = map(board.floor);
    cropped.boxes = map(board.boxes);
    cropped.targets = map(board.targets);
    return cropped;
}

double FloorDifference(const Board& one, const Board& other)
{
    const Bits fixed = Cropped(one, 0).floor;
    const int larger = std::max(Count(one.floor), Count(other.floor));
    int least = 2 * kCells;
    for (int symmetry = 0; symmetry < 8; ++symmetry) {
        least = std::min(least, Count(fixed ^ Cropped(other, symmetry).floor));
    }
    return static_cast<double>(least) / larger;
}

double Difficulty(const Measures& m, uint32_t positionsSeen)
{
    return 2.0 * std::log2(1.0 + positionsSeen) + 1.0 * m.Gap() + 0.8 * m.changes + 0.15 * m.pushes;
}

}  // namespace levels
