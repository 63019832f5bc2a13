#include "tools/levels/Shapes.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>

namespace levels {
namespace {

constexpr int kGateColumn = 8, kTop = 3, kBottom = 9, kWest = 1, kEast = 15;

Bits At(int column, int row)
{
    const bool inside = column >= kWest && column <= kEast && row >= kTop && row <= kBottom;
    return inside ? Bit(CellAt(column, row)) : 0;
}

Bits Rectangle(int column, int row, int columns, int rows)
{
    Bits cells = 0;
    for (int y = row; y < row + rows; ++y) {
        for (int x = column; x < column + columns; ++x) cells |= At(x, y);
    }
    return cells;
}

Cell Any(Bits cells, Random& random)
{
    for (int skip = random.Below(Count(cells)); skip > 0; --skip) TakeFirst(cells);
    return First(cells);
}

Bits Mirrored(Bits cells)
{
    Bits mirrored = 0;
    while (cells) {
        const Cell cell = TakeFirst(cells);
        mirrored |= At(2 * kGateColumn - ColumnOf(cell), MapRowOf(cell));
    }
    return mirrored;
}

bool HangsTogether(Bits floor)
{
    return floor && Reach(floor, Bit(First(floor))) == floor;
}

// Takes away up to `count` cells that have floor on all eight sides or on most. Beyond
// the first row lies the last, and the other way round.
void PlantBushes(Bits& floor, int count, Bits keep, Random& random)
{
    for (int tries = 0; tries < 40 && count > 0; ++tries) {
        const Cell cell = Any(floor, random);
        const Bits without = floor & ~Bit(cell);
        int around = 0;
        for (int dy = -1; dy <= 1; ++dy) {
            for (int dx = -1; dx <= 1; ++dx) {
                const Cell beside = CellAt(ColumnOf(cell) + dx, MapRowOf(cell)) + dy * kStride;
                around += Has(floor, (beside + kCells) % kCells);
            }
        }
        if (around < 7 || (keep & Bit(cell)) || !HangsTogether(without)) continue;
        floor = without;
        --count;
    }
}

Shape Grass(const ShapeSettings& s, Random& random)
{
    static constexpr std::array<std::pair<int, int>, 6> kSizes = {
        {{2, 2}, {3, 2}, {2, 3}, {3, 3}, {4, 2}, {1, 3}}};
    Bits floor = 0;
    // A winding way from the gate to the start, then clearings along it.
    int column = kGateColumn;
    for (int row = s.gateRow + 1; row <= s.startRow; ++row) {
        const bool turn = row > s.gateRow + 1 && row < s.startRow - 1 && random.Chance(55);
        const int to = row >= s.startRow - 1 ? kGateColumn
                       : turn                ? std::clamp(column + random.Between(-2, 2), 4, 12)
                                             : column;
        for (int x = std::min(column, to); x <= std::max(column, to); ++x) floor |= At(x, row);
        column = to;
    }
    while (Count(floor) < s.area) {
        const Cell near = Any(floor, random);
        auto [columns, rows] = kSizes[static_cast<size_t>(random.Below(kSizes.size()))];
        floor |= Rectangle(ColumnOf(near) - random.Below(columns),
                           MapRowOf(near) - random.Below(rows), columns, rows);
    }
    PlantBushes(floor, random.Between(1, 2 + s.area / 16), 0, random);
    return {floor, "clearing"};
}

Shape Sand(const ShapeSettings& s, Random& random)
{
    // The middle hall, then halls on either side, each behind a door of one cell.
    const int width = random.Between(2, 4), left = kGateColumn - random.Below(width);
    const int top = random.Between(4, 5), bottom = random.Between(8, 9);
    Bits floor = Rectangle(left, top, width, bottom - top + 1);
    floor |= Rectangle(kGateColumn, s.gateRow + 1, 1, s.startRow - s.gateRow);
    int edges[2] = {left - 1, left + width};  // the wall's column on each side
    int stopped = 0;
    for (int side = random.Below(2); Count(floor) < s.area && stopped < 6; side = 1 - side) {
        const int columns = random.Between(2, 4), rows = random.Between(2, 4);
        const int row = random.Between(kTop, kBottom - rows + 1);
        const int from = side ? edges[1] + 1 : edges[0] - columns;
        if (from < kWest || from + columns - 1 > kEast) {
            ++stopped;
            continue;
        }
        const Bits hall = Rectangle(from, row, columns, rows);
        floor |= hall;
        for (int doors = random.Between(1, 2), tries = 0; doors > 0 && tries < 12; ++tries) {
            const int y = random.Between(row, row + rows - 1);
            const Bits both = At(edges[side] - 1, y) | At(edges[side] + 1, y);
            if ((both & ~floor) != 0) continue;
            floor |= At(edges[side], y);
            --doors;
        }
        if (random.Chance(30)) {  // a second hall above or below the same wall's column
            const int second = row > 6 ? kTop : 7;
            floor |= Rectangle(from, second, columns, 2) | At(edges[side], second);
        }
        edges[side] = side ? from + columns : from - 1;
    }
    // Pillars, where walls of a courtyard leave room.
    PlantBushes(floor, random.Between(1, 4), 0, random);
    return {floor, "court"};
}

Shape Candy(const ShapeSettings& s, Random& random)
{
    const double wide = 1.8 + s.area / 14.0 + random.Below(3) * 0.5,
                 high = 2.4 + random.Below(3) * 0.5;
    const double middle = 6.0 + (random.Chance(30) ? 0.5 : 0);
    const double hole = random.Chance(50) ? 0.2 + random.Below(30) / 100.0 : 0;
    Bits floor = 0;
    for (int row = kTop; row <= kBottom; ++row) {
        for (int column = kWest; column <= kEast; ++column) {
            const double x = (column - kGateColumn) / wide, y = (row - middle) / high;
            const double r = std::sqrt(x * x + y * y);
            if (r <= 1.02 && r >= hole) floor |= At(column, row);
        }
    }
    floor |= Rectangle(kGateColumn, s.gateRow + 1, 1, 2) |
             Rectangle(kGateColumn - random.Below(2), s.startRow - 1, 1, 2) |
             Rectangle(kGateColumn, s.startRow - 1, 1, 2);
    floor |= Mirrored(floor);
    if (random.Chance(60)) {  // lobes
        const int column = random.Between(9, 13), row = random.Between(kTop, kBottom - 1);
        const Bits lobe = Rectangle(column, row, 2, 2);
        floor |= lobe | Mirrored(lobe);
    }
    // Drops of wall, alike on both sides.
    for (int tries = 0, drops = random.Between(1, 5); tries < 30 && drops > 0; ++tries) {
        const Bits drop = Bit(Any(floor, random));
        const Bits without = floor & ~(drop | Mirrored(drop));
        if (!HangsTogether(without)) continue;
        if (Count(Beside(drop) & floor) < 3) continue;
        floor = without;
        --drops;
    }
    return {floor, "ring"};
}

Shape Patch(const ShapeSettings& s, Random& random)
{
    static constexpr std::array<const char*, 14> kPatterns = {
        "...   ...", "... # ...", "#. ... ..", "... . .#.", "#.#...#.#", ".. ....  ", ".........",
        "......#..", "#..... ..", "#.. ...##", ".#. ...#.", "..#... ..", "#........", "...#.#..."};
    static constexpr std::array<int, 5> kColumns = {7, 4, 10, 1, 13};
    const int shift = random.Chance(50) ? 1 : 0;  // the quilt's rows lie one lower
    Bits floor = 0;
    auto sew = [&](int block, int half) {
        std::string pattern =
            kPatterns[static_cast<size_t>(random.Below(static_cast<int>(kPatterns.size())))];
        const int turns = random.Below(8);
        for (int y = 0; y < 3; ++y) {
            for (int x = 0; x < 3; ++x) {
                int u = turns & 1 ? 2 - x : x, v = turns & 2 ? 2 - y : y;
                if (turns & 4) std::swap(u, v);
                if (pattern[static_cast<size_t>(v * 3 + u)] == '#') continue;
                floor |= At(kColumns[static_cast<size_t>(block)] + x, 3 + shift + half * 3 + y);
            }
        }
    };
    sew(0, 0);
    sew(0, 1);
    for (int tries = 0; Count(floor) < s.area && tries < 12; ++tries) {
        const int block = random.Below(s.area > 38 ? 5 : 3), half = random.Below(2);
        const Bits there =
            Rectangle(kColumns[static_cast<size_t>(block)], 3 + shift + half * 3, 3, 3);
        if ((floor & there) == 0) sew(block, half);
    }
    floor |=
        Rectangle(kGateColumn, s.gateRow + 1, 1, 2) | Rectangle(kGateColumn, s.startRow - 1, 1, 2);
    return {floor, "quilt"};
}

}  // namespace

Shape Shape_Make(const ShapeSettings& settings, Random& random)
{
    Shape shape;
    switch (settings.world) {
        case 1:
            shape = Grass(settings, random);
            break;
        case 2:
            shape = Sand(settings, random);
            break;
        case 3:
            shape = Candy(settings, random);
            break;
        case 4:
            shape = Patch(settings, random);
            break;
        default:
            shape = Shape_Drawing(settings.drawing, settings.area, random);
            break;
    }
    // Rows above a low gate are the corridor's.
    if (settings.gateRow >= kTop) shape.floor &= ~Rectangle(kWest, kTop, kEast, 1);
    const Bits exit = At(kGateColumn, settings.gateRow + 1);
    const Bits start = At(kGateColumn, settings.startRow);
    shape.floor |= exit | start;
    // Room for a second figure beside the start.
    const Bits beside = At(kGateColumn + 1, settings.startRow);
    if (!(shape.floor & (beside | At(kGateColumn - 1, settings.startRow)))) shape.floor |= beside;
    shape.floor = Reach(shape.floor, start);
    if (!(shape.floor & exit)) shape.floor = 0;
    return shape;
}

}  // namespace levels
