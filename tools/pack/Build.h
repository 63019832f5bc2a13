#pragma once
// Puts the archive together: tables, levels, pictures, fonts and sounds.

#include <string>
#include <vector>

#include "tools/pack/Code.h"
#include "tools/pack/Levels.h"
#include "tools/pack/Tables.h"

namespace pack {

struct Built {
    archive::Content content;
    std::vector<std::string> placeholders;  // sprites and backgrounds without a drawing
    std::vector<std::string> emptyLevels;   // rooms whose level file does not exist yet
    std::vector<std::string> shortages;     // scenery that found too little room
    double pageUse = 0;                     // share of the pages' area in use, 0 to 1
};

// Fills the archive's content from the tables and from levels/, art/, tilesets.txt and
// scenery.txt in `folder`. Throws ContentError, or std::runtime_error with "file:line: what was
// expected" from the pictures. Pictures are kept in `cacheFolder`, where there is one.
Built Build_Archive(const std::string& folder, const Tables& tables, const CodePlan& plan,
                    const std::string& cacheFolder = "");

// The rooms alone, without tiles for backgrounds that are not `drawn`.
void Build_Rooms(const std::string& folder, const Tables& tables, const CodePlan& plan,
                 const std::vector<bool>& drawn, Built& built);

// The objects alone.
void Build_Objects(const Tables& tables, const CodePlan& plan, archive::Content& content);

}  // namespace pack
