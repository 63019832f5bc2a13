#pragma once
// Levels: a map drawn in characters becomes the instances of a room.
//
// One character a cell of 52 pixels; the first line is the row y = -104, the first
// character the column x = 0:
//   #  wall                $  box               *  box on a target
//   .  target              @  start             +  start on a target
//   G  gate, which fills the cell               F  end marker
// A blank is floor or outside: what the start reaches is floor.

#include <string>
#include <vector>

#include "tools/pack/Tables.h"

namespace pack {

inline constexpr int kCell = 52;                            // pixels
inline constexpr int kMapTop = -2 * kCell;                  // y of the map's first line, pixels
inline constexpr int kRoomWidth = 854, kRoomHeight = 480;   // pixels
inline constexpr int kLowerGateX = 416, kLowerGateY = 416;  // behind the start, pixels

struct Level {
    std::string file, title;
    int world = 1;      // 1 to 5
    uint32_t seed = 0;  // of the choice among equal tiles
    bool rain = false;  // else sun rays
    std::vector<std::string> map;
    int mapLine = 0;                        // line of the map's first row in the file
    std::string solution;                   // one of W, A, S, D a step
    std::string made;                       // what vexo-levels made it with, if it did
    int optimum = 0;                        // pushes, proved to be the fewest; 0 for not
    int bound = 0;                          // pushes that every solution has at least
    std::vector<std::string> shortfalls;    // known faults, told by vexo-levels check
    std::vector<PlacedInstance> instances;  // in the order of making

    // The character of a cell; a blank outside the drawing. Row 0 is y = -104.
    char At(int column, int row) const;
    bool Wall(int column, int row) const { return At(column, row) == '#'; }
    // A wall cell that joins no other and no gate: scenery may stand on it.
    bool Lone(int column, int row) const;
};

// A straight run of wall cells, in cells.
struct Run {
    int column, row, columns, rows;
};

// Covers all wall cells with few straight runs: the longest first, of equal ones the
// level ones before the upright, then the upper, then the left. A cell is covered once.
std::vector<Run> Level_Runs(const Level& level);

// Cells that the start reaches without crossing a wall, gate and marker included;
// [row][column], as large as the drawing.
std::vector<std::vector<bool>> Level_Floor(const Level& level);

// `text` is the content of `file`, which is only named in messages. Throws
// ContentError.
Level Level_Parse(const Tables& tables, const std::string& file, const std::string& text);

}  // namespace pack
