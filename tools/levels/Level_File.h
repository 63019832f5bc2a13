#pragma once
// Level files of the content folder, read by the packer's reader and written as it reads
// them.

#include <string>
#include <vector>

#include "tools/levels/Board.h"
#include "tools/pack/Levels.h"

namespace levels {

struct LevelFile {
    int number = 0;  // of the level, 0 for a file of another name
    pack::Level level;
    Board board;
    std::string fault;  // why it is no level that the searches can take; empty for none
};

// Reads a file. A level that the packer refuses comes back with the packer's message as
// its fault.
LevelFile LevelFile_Read(const pack::Tables& tables, const std::string& path);

// The same from a text that is not in a file.
LevelFile LevelFile_Parse(const pack::Tables& tables, const std::string& name,
                          const std::string& text);

// All levelNNN.txt of a folder, in the order of their numbers.
std::vector<std::string> LevelFile_List(const std::string& folder);

struct NewLevel {
    std::string title, made;
    int world = 1, gateRow = 2;
    uint32_t seed = 0;
    bool rain = false;
    Board board;
    std::string keys;
    int optimum = 0, bound = 0;  // 0 for none
};

// The text of a level file.
std::string LevelFile_Text(const NewLevel& level);

}  // namespace levels
