#pragma once
// Whether the levels are what the game promises: the facts that every level meets, the
// solution, the lines that made levels have to reach, and no level twice.

#include <string>
#include <vector>

#include "tools/levels/Level_File.h"
#include "tools/levels/Measures.h"

namespace levels {

struct Rating {
    int number = 0, world = 1;
    std::string title;
    Measures measures;
    bool fewest = false;     // the stored solution is proved to have the fewest pushes
    int bound = 0;           // of pushes, where it is not
    uint32_t positions = 0;  // that the proof looked at
    double difficulty = 0;
};

struct Report {
    std::vector<Rating> ratings;          // of the levels that can be measured
    std::vector<std::string> faults;      // "level 8: ..."
    std::vector<std::string> shortfalls;  // known ones, as the levels' heads tell them
};

// Checks levels; `whole` asks for all hundred and the lines that they meet together.
Report Check(const pack::Tables& tables, const std::vector<LevelFile>& files, bool whole);

// The faults of one level alone.
std::vector<std::string> CheckFacts(const pack::Tables& tables, const LevelFile& file);

// What is wrong with the order of a hundred levels. A world goes from easy to hard, five
// levels by five, and every fifth level is a breather, easier than its two neighbours are on
// average; the last of a world is none.
std::vector<std::string> OrderFaults(const std::vector<Rating>& ratings);

// The table with what is wrong under it; `summary` adds the worlds.
std::string Report_Table(const Report& report, bool summary);

}  // namespace levels
