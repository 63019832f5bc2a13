#pragma once
// The code table of the game, and the sources that tie names in tables to names in
// rules.

#include <string>
#include <vector>

#include "tools/pack/Tables.h"

namespace pack {

// A row of the code table. Its number is the code id of archive records.
struct CodeRowPlan {
    std::string name;      // "vxl_Object_oAberto_Collision_176"
    std::string function;  // "vxl_Object_oAberto_Collision_oMonte"
    bool script = false;
};

// Code ids are -1 for what is still to come.
struct CodePlan {
    std::vector<CodeRowPlan> rows;  // scripts, then objects, then rooms
    std::vector<int> scripts;
    std::vector<std::vector<int>> events;  // by object, in the order of its events
    std::vector<int> rooms;
    std::vector<std::string> later;  // row names without a row
};

CodePlan Code_Plan(const Tables& tables);

// The three generated files.
std::string Code_Names(const Tables& tables, const CodePlan& plan);
std::string Code_Builtins(const Tables& tables);
std::string Code_Table(const Tables& tables, const CodePlan& plan);

}  // namespace pack
