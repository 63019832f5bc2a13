#include "tools/pack/Levels.h"

#include <algorithm>
#include <set>
#include <sstream>
#include <utility>

namespace pack {
namespace {

// Where the unseen objects of every level stand, pixels.
constexpr std::pair<int, int> kControlAt{728, 0}, kPauseAt{780, 0}, kMusicAt{260, 0};

using Cell = std::pair<int, int>;  // row, column

int CellX(int column)
{
    return column * kCell;
}
int CellY(int row)
{
    return kMapTop + row * kCell;
}

[[noreturn]] void FailAt(const Level& level, int row, const std::string& expected)
{
    throw ContentError(level.file, level.mapLine + row, expected);
}

std::vector<Cell> Cells(const Level& level, const std::string& characters)
{
    std::vector<Cell> cells;
    for (int row = 0; row < static_cast<int>(level.map.size()); ++row) {
        const std::string& line = level.map[static_cast<size_t>(row)];
        for (int column = 0; column < static_cast<int>(line.size()); ++column) {
            if (characters.find(line[static_cast<size_t>(column)]) != std::string::npos) {
                cells.emplace_back(row, column);
            }
        }
    }
    return cells;
}

// ---- reading

// Takes the lines of the map out of the text, so that the rest reads as a table.
std::string TakeMap(const std::string& text, Level& level)
{
    std::istringstream stream(text);
    std::string rest;
    bool inMap = false;
    int number = 0;
    for (std::string line; std::getline(stream, line);) {
        ++number;
        while (!line.empty() && (line.back() == ' ' || line.back() == '\r')) line.pop_back();
        if (inMap && line.empty()) inMap = false;
        if (inMap) {
            level.map.push_back(line);
            line.clear();
        } else if (line == "map") {
            inMap = true;
            level.mapLine = number + 1;
            line.clear();
        }
        rest += line + "\n";
    }
    return rest;
}

void CheckMap(const Level& level)
{
    if (level.map.empty()) throw ContentError(level.file, 1, "expected a map");
    for (int row = 0; row < static_cast<int>(level.map.size()); ++row) {
        const std::string& line = level.map[static_cast<size_t>(row)];
        if (line.find_first_not_of(" #$.*@+GF") != std::string::npos) {
            FailAt(level, row, "expected only the characters # $ . * @ + G F and blanks");
        }
    }
    for (const char* one : {"@+", "G", "F"}) {
        if (Cells(level, one).size() != 1) {
            FailAt(level, 0, std::string("expected exactly one ") + one[0] + " in the map");
        }
    }
    size_t boxes = Cells(level, "$*").size(), targets = Cells(level, ".*+").size();
    if (boxes == 0 || boxes != targets) {
        FailAt(level, 0,
               "expected as many targets as boxes, not " + std::to_string(targets) +
                   " targets and " + std::to_string(boxes) + " boxes");
    }
}

// "A3 W D" to "AAAWD".
void ReadSolution(const Row& row, Level& level)
{
    for (const std::string& word : row.Words()) {
        for (size_t at = 0; at < word.size();) {
            char step = word[at++];
            size_t digits = at;
            while (at < word.size() && word[at] >= '0' && word[at] <= '9') ++at;
            long long count = 1;
            bool counted = at == digits || Parse_Number(word.substr(digits, at - digits), count);
            if (std::string("WASD").find(step) == std::string::npos || !counted || count < 1 ||
                count > 999) {
                row.Fail("expected steps such as W, A3 or DD in the solution, not " + word);
            }
            level.solution.append(static_cast<size_t>(count), step);
        }
    }
}

PlacedInstance ReadInstance(const Tables& tables, const Row& row)
{
    PlacedInstance placed;
    placed.object = tables.objectNames.Need(row, row.name, "object");
    std::vector<std::string> words = row.Words();
    if (words.empty() || words.size() > 2) row.Fail("expected `object x,y [columnsxrows]`");
    Row numbers = row;
    numbers.fields = {Field{"place", words[0]},
                      Field{"scale", words.size() > 1 ? words[1] : "1x1"}};
    numbers.Pair("place", ',', placed.x, placed.y);
    int columns = 1, rows = 1;
    numbers.Pair("scale", 'x', columns, rows);
    placed.scaleX = columns;
    placed.scaleY = rows;
    return placed;
}

// All that stands behind the row's name, as one text.
std::string HeadText(const Row& row)
{
    std::string text;
    for (const Field& field : row.fields) {
        field.used = true;
        text += text.empty() ? "" : " ";
        text += field.key.empty() ? field.value : field.key + "=" + field.value;
    }
    return text;
}

int HeadNumber(const Row& row)
{
    std::vector<std::string> words = row.Words();
    long long number = 0;
    if (words.size() != 1 || !Parse_Number(words[0], number) || number < 0 || number > 1000000) {
        row.Fail("expected a number behind " + row.name);
    }
    return static_cast<int>(number);
}

void ReadHead(const Tables& tables, const Row& row, Level& level)
{
    if (row.name == "title") {
        level.title = HeadText(row);
    } else if (row.name == "made") {
        level.made = HeadText(row);
    } else if (row.name == "shortfall") {
        level.shortfalls.push_back(HeadText(row));
    } else if (row.name == "optimum") {
        level.optimum = HeadNumber(row);
    } else if (row.name == "bound") {
        level.bound = HeadNumber(row);
    } else if (row.name == "world") {
        level.world = HeadNumber(row);
        if (level.world < 1 || level.world > 5) row.Fail("expected a world from 1 to 5");
    } else if (row.name == "seed") {
        level.seed = static_cast<uint32_t>(HeadNumber(row));
    } else if (row.name == "weather") {
        level.rain = row.Flag("rain");
        if (!level.rain && !row.Flag("sun")) row.Fail("expected weather sun or weather rain");
    } else if (row.name == "solution") {
        ReadSolution(row, level);
    } else if (row.name == "instances") {
        for (const Row& line : row.rows) level.instances.push_back(ReadInstance(tables, line));
    } else {
        row.Fail(
            "expected title, world, seed, weather, made, optimum, bound, shortfall, map, "
            "solution or instances");
    }
    row.Done();
}

// ---- instances

class Placer {
public:
    Placer(const Tables& tables, Level& level) : tables_(tables), level_(level) {}

    void Place(const char* object, int x, int y, int columns = 1, int rows = 1)
    {
        PlacedInstance placed;
        placed.object = tables_.objectNames.Find(object);
        if (placed.object < 0) {
            throw ContentError(
                "objects.txt", 1,
                std::string("expected an object ") + object + ", which every level places");
        }
        placed.x = x;
        placed.y = y;
        placed.scaleX = columns;
        placed.scaleY = rows;
        level_.instances.push_back(placed);
    }
    void Place(const char* object, std::pair<int, int> at) { Place(object, at.first, at.second); }
    void PlaceAll(const char* object, const std::string& characters, int below = 0)
    {
        for (auto [row, column] : Cells(level_, characters)) {
            Place(object, CellX(column), CellY(row) + below);
        }
    }

private:
    const Tables& tables_;
    Level& level_;
};

void PlaceMap(const Tables& tables, Level& level)
{
    Placer placer(tables, level);
    placer.PlaceAll("oPlayerArrows", "@+");
    placer.Place("oControl", kControlAt);
    placer.Place("oPause", kPauseAt);
    placer.PlaceAll("oFinal", "F");
    placer.PlaceAll("oPortaoFechado", "G", kCell);  // its origin is its foot
    placer.Place("oMusica", kMusicAt);
    placer.Place("oPortaoFechadoBaixo", {kLowerGateX, kLowerGateY});
    placer.PlaceAll("oMonte", "$*");
    placer.PlaceAll(level.world == 1 ? "oFechado" : "oFechado2", ".*+");
    for (const Run& run : Level_Runs(level)) {
        placer.Place("oWall", CellX(run.column), CellY(run.row), run.columns, run.rows);
    }
    placer.Place(level.rain ? "oChuva" : "oRaiosDeSol", 0, 0);
    placer.Place("oClock", 0, 0);
}

// The cells that listed instances of `object` cover.
std::set<Cell> Covered(const Tables& tables, const Level& level, const std::string& object)
{
    std::set<Cell> cells;
    for (const PlacedInstance& placed : level.instances) {
        const std::string& name = tables.objectNames.List()[static_cast<size_t>(placed.object)];
        if (name.substr(0, object.size()) != object) continue;
        for (int row = 0; row < static_cast<int>(placed.scaleY); ++row) {
            for (int column = 0; column < static_cast<int>(placed.scaleX); ++column) {
                cells.emplace((placed.y - kMapTop) / kCell + row, placed.x / kCell + column);
            }
        }
    }
    return cells;
}

// A listed room must be the room that the map shows.
void CheckListed(const Tables& tables, const Level& level)
{
    const std::pair<const char*, const char*> kinds[] = {{"oWall", "#"},
                                                         {"oMonte", "$*"},
                                                         {"oFechado", ".*+"},
                                                         {"oPlayerArrows", "@+"},
                                                         {"oFinal", "F"}};
    for (auto [object, characters] : kinds) {
        std::vector<Cell> drawn = Cells(level, characters);
        if (Covered(tables, level, object) != std::set<Cell>(drawn.begin(), drawn.end())) {
            FailAt(level, 0,
                   std::string("expected the listed instances of ") + object +
                       " to cover the cells that the map shows");
        }
    }
}

}  // namespace

char Level::At(int column, int row) const
{
    if (row < 0 || row >= static_cast<int>(map.size()) || column < 0) return ' ';
    const std::string& line = map[static_cast<size_t>(row)];
    return column < static_cast<int>(line.size()) ? line[static_cast<size_t>(column)] : ' ';
}

bool Level::Lone(int column, int row) const
{
    const std::string joined = "#G";
    return Wall(column, row) && joined.find(At(column - 1, row)) == std::string::npos &&
           joined.find(At(column + 1, row)) == std::string::npos && !Wall(column, row - 1) &&
           !Wall(column, row + 1);
}

std::vector<Run> Level_Runs(const Level& level)
{
    std::vector<Cell> cells = Cells(level, "#");
    std::set<Cell> open(cells.begin(), cells.end());
    auto length = [&](Cell from, int down, int right) {
        int count = 0;
        while (open.count({from.first + count * down, from.second + count * right})) ++count;
        return count;
    };
    std::vector<Run> runs;
    while (!open.empty()) {
        Run best{0, 0, 0, 0};
        for (const auto& [down, right] : {std::pair{0, 1}, std::pair{1, 0}}) {
            for (const Cell& cell : open) {
                int count = length(cell, down, right);
                if (count <= std::max(best.columns, best.rows)) continue;
                best = Run{cell.second, cell.first, right ? count : 1, down ? count : 1};
            }
        }
        for (int row = 0; row < best.rows; ++row) {
            for (int column = 0; column < best.columns; ++column) {
                open.erase({best.row + row, best.column + column});
            }
        }
        runs.push_back(best);
    }
    return runs;
}

std::vector<std::vector<bool>> Level_Floor(const Level& level)
{
    size_t width = 0;
    for (const std::string& line : level.map) width = std::max(width, line.size());
    std::vector<std::vector<bool>> floor(level.map.size(), std::vector<bool>(width, false));
    std::vector<Cell> pending = Cells(level, "@+");
    while (!pending.empty()) {
        auto [row, column] = pending.back();
        pending.pop_back();
        bool inside = row >= 0 && row < static_cast<int>(floor.size()) && column >= 0 &&
                      column < static_cast<int>(width);
        if (!inside || level.Wall(column, row)) continue;
        std::vector<bool>::reference cell =
            floor[static_cast<size_t>(row)][static_cast<size_t>(column)];
        if (cell) continue;
        cell = true;
        pending.insert(
            pending.end(),
            {{row - 1, column}, {row + 1, column}, {row, column - 1}, {row, column + 1}});
    }
    return floor;
}

Level Level_Parse(const Tables& tables, const std::string& file, const std::string& text)
{
    Level level;
    level.file = file;
    std::string rest = TakeMap(text, level);
    for (const Row& row : Table_Parse(file, rest)) ReadHead(tables, row, level);
    CheckMap(level);
    if (level.instances.empty()) {
        PlaceMap(tables, level);
    } else {
        CheckListed(tables, level);
    }
    return level;
}

}  // namespace pack
