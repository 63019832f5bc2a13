#include "tools/levels/Board.h"

#include <algorithm>
#include <cstring>

namespace levels {
namespace {

struct Map {
    const std::vector<std::string>& lines;

    char At(int column, int row) const
    {
        if (row < 0 || row >= static_cast<int>(lines.size()) || column < 0) return ' ';
        const std::string& line = lines[static_cast<size_t>(row)];
        return column < static_cast<int>(line.size()) ? line[static_cast<size_t>(column)] : ' ';
    }
    // The only cell that holds one of `characters`; false when there are none or more.
    bool Find(const char* characters, int& column, int& row) const
    {
        int found = 0;
        for (int y = 0; y < static_cast<int>(lines.size()); ++y) {
            for (int x = 0; x < static_cast<int>(lines[static_cast<size_t>(y)].size()); ++x) {
                if (!std::strchr(characters, At(x, y))) continue;
                column = x;
                row = y;
                ++found;
            }
        }
        return found == 1;
    }
};

}  // namespace

Cell Board::PlayerTwo() const
{
    for (Direction direction : {kRight, kLeft, kDown, kUp}) {
        const Cell cell = start + kSteps[direction];
        if (cell >= 0 && cell < kCells && Has(floor & ~boxes, cell)) return cell;
    }
    return kNoCell;
}

std::string Board_Parse(const std::vector<std::string>& lines, Board& board)
{
    const Map map{lines};
    int startColumn = 0, startRow = 0, gateColumn = 0, gateRow = 0;
    if (!map.Find("@+", startColumn, startRow)) return "expected exactly one start";
    if (!map.Find("G", gateColumn, gateRow)) return "expected exactly one gate";
    board = Board();
    std::vector<std::pair<int, int>> pending = {{startColumn, startRow}};
    while (!pending.empty()) {
        auto [column, row] = pending.back();
        pending.pop_back();
        const char c = map.At(column, row);
        if (c == '#' || c == 'G') continue;
        const int lastRow = kFirstMapRow + kBoardRows - 1;
        if (column < 1 || column >= kStride || row < kFirstMapRow || row > lastRow) {
            return "expected walls all around: the floor runs out at column " +
                   std::to_string(column) + " of line " + std::to_string(row + 1) + " of the map";
        }
        const Bits bit = Bit(CellAt(column, row));
        if (board.floor & bit) continue;
        board.floor |= bit;
        if (std::strchr("$*", c)) board.boxes |= bit;
        if (std::strchr(".*+", c)) board.targets |= bit;
        pending.insert(
            pending.end(),
            {{column - 1, row}, {column + 1, row}, {column, row - 1}, {column, row + 1}});
    }
    board.start = CellAt(startColumn, startRow);
    if (gateRow + 1 < kFirstMapRow) return "expected the gate at the upper end of the floor";
    board.exit = CellAt(gateColumn, gateRow + 1);
    if (!Has(board.floor, board.exit)) return "expected floor below the gate";
    return "";
}

std::vector<std::string> Board_Map(const Board& board, int gateRow)
{
    constexpr int kRows = 12, kColumns = 17;
    std::vector<std::string> lines(kRows, std::string(kColumns, ' '));
    auto put = [&](int column, int row, char c) {
        lines[static_cast<size_t>(row)][static_cast<size_t>(column)] = c;
    };
    Bits rest = board.floor;
    while (rest) {
        const Cell cell = TakeFirst(rest);
        for (int dy = -1; dy <= 1; ++dy) {
            for (int dx = -1; dx <= 1; ++dx) put(ColumnOf(cell) + dx, MapRowOf(cell) + dy, '#');
        }
    }
    const int gateColumn = ColumnOf(board.exit);
    for (int row = 0; row <= gateRow; ++row) {
        put(gateColumn - 1, row, '#');
        put(gateColumn + 1, row, '#');
        put(gateColumn, row, row == 0 ? '#' : row == 1 ? 'F' : row == gateRow ? 'G' : ' ');
    }
    put(gateColumn, 10, '#');  // under the lower gate
    for (rest = board.floor; rest;) {
        const Cell cell = TakeFirst(rest);
        const bool box = Has(board.boxes, cell), target = Has(board.targets, cell);
        char c = box ? (target ? '*' : '$') : target ? '.' : ' ';
        if (cell == board.start) c = target ? '+' : '@';
        put(ColumnOf(cell), MapRowOf(cell), c);
    }
    while (lines.back().find_first_not_of(' ') == std::string::npos) lines.pop_back();
    for (std::string& line : lines) line.erase(line.find_last_not_of(' ') + 1);
    return lines;
}

Distances::Distances(const Board& board)
{
    std::memset(table_, kNever, sizeof table_);
    for (Bits rest = board.targets; rest && targets_ < kMost; ++targets_) {
        const Cell target = TakeFirst(rest);
        table_[target][targets_] = 0;
        live_ |= Bit(target);
        std::vector<Cell> queue = {target};
        for (size_t head = 0; head < queue.size(); ++head) {
            const Cell to = queue[head];
            for (Direction direction : kDirections) {
                // Pushed from `from` to `to`, with the figure behind it on `behind`.
                const Cell from = to - kSteps[direction], behind = from - kSteps[direction];
                if (from < 0 || from >= kCells || behind < 0 || behind >= kCells) continue;
                if (!Has(board.floor, from) || !Has(board.floor, behind)) continue;
                if (table_[from][targets_] != kNever) continue;
                table_[from][targets_] = static_cast<uint8_t>(table_[to][targets_] + 1);
                live_ |= Bit(from);
                queue.push_back(from);
            }
        }
    }
}

}  // namespace levels
