#pragma once
// Lays the tiles of a level: ground under every cell on screen, walls by the shape
// that their neighbours make, scenery beyond them.

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "tools/pack/Scenery.h"

namespace pack {

struct TileCell {
    int column = 0, row = 0;
};

// One background of tilesets.txt.
struct TileSet {
    int background = -1, world = 1;
    int cellWidth = kCell, cellHeight = kCell, columns = 1, rows = 1;
    std::map<std::string, std::vector<TileCell>> cells;  // by use: ground, wall, piece...
    bool crowns = false;                                 // pieces may stand one before the other
    int quiltedLevel = 0, quiltedTiles = 0;  // a level laid over with stitches, and its tiles
};

std::vector<TileSet> TileSets_Parse(const Tables& tables, const std::vector<Row>& rows);

// The place of a wall's shape among the 47 of a tile set. Shape: 1 (north) + 2 (east) +
// 4 (south) + 8 (west), and for the corner between two joined sides 16 (north-east) +
// 32 (south-east) + 64 (south-west) + 128 (north-west) where it is wall too. Ordered by
// sides, then by corners.
int Tiles_WallPlace(unsigned shape);

// The tiles of a level, without ids. `site` is the level's, with its objects placed;
// takes the feet of what stands in front. `drawn` tells whether a background has a
// picture; scenery of one that has none is left out.
std::vector<archive::RoomTile> Tiles_Lay(const std::vector<TileSet>& sets, const Level& level,
                                         Site& site,
                                         const std::function<bool(int background)>& drawn);

// The same for a page of the map: open ground, and pieces around its icons.
std::vector<archive::RoomTile> Tiles_LayPage(const std::vector<TileSet>& sets, Site& site,
                                             const std::function<bool(int background)>& drawn);

}  // namespace pack
