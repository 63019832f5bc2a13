#pragma once
// Lays the tiles of a level: ground under every cell on screen, walls by the shape
// that their neighbours make, scenery beyond them.

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "tools/pack/Levels.h"

namespace pack {

struct TileCell {
    int column = 0, row = 0;
};

// One background of tilesets.txt.
struct TileSet {
    int background = -1, world = 1;
    int cellWidth = kCell, cellHeight = kCell, columns = 1, rows = 1;
    std::map<std::string, std::vector<TileCell>> cells;  // by use: ground, wall, piece...
};

std::vector<TileSet> TileSets_Parse(const Tables& tables, const std::vector<Row>& rows);

// The tiles of a level, without ids. `drawn` tells whether a background has a picture;
// scenery of one that has none is left out.
std::vector<archive::RoomTile> Tiles_Lay(const std::vector<TileSet>& sets, const Level& level,
                                         const std::function<bool(int background)>& drawn);

}  // namespace pack
