#pragma once
// Makes levels: a floor in the manner of a world, targets in one or two clusters, a
// search backwards from the end, and of the positions found the one that makes the best
// level. The same settings make the same level.

#include <optional>
#include <string>

#include "tools/levels/Board.h"
#include "tools/levels/Level_File.h"
#include "tools/levels/Measures.h"

namespace levels {

struct MakeSettings {
    int world = 1, boxes = 3;
    int gateRow = 2, startRow = 9;  // rows of the map
    int area = 0;                   // floor cells, about; 0 for what suits the boxes
    int least = 0, most = 0;        // pushes; 0 for what suits the number of boxes
    uint64_t seed = 1;
    std::string drawing;  // of world 5, by its name; empty for any

    // "world=1 boxes=3 gate=2 start=9 least=20 most=60 seed=1", and back. Words that are
    // none of these are passed over.
    std::string Text() const;
    static MakeSettings Parse(const std::string& text);
};

struct MadeLevel {
    Board board;
    Pushes pushes;
    std::string keys, shape;
    Measures measures;
    int lost = 0;            // cells of the form that became walls
    bool fewest = false;     // `pushes` is proved to be the fewest
    int bound = 0;           // of pushes
    uint32_t positions = 0;  // that the solver saw
};

// Nothing when this seed makes no level that reaches all lines.
std::optional<MadeLevel> Make(const MakeSettings& settings);

// As it is written to a file.
NewLevel AsNewLevel(const MakeSettings& settings, const MadeLevel& level);

// Why a level is not accepted, in words; empty when it reaches all lines that a level has
// to reach by itself.
std::string Refusal(const Board& board, const Measures& measures, int leastPushes);

}  // namespace levels
