#include "tools/pack/Tiles.h"

#include <algorithm>

namespace pack {
namespace {

constexpr int kGroundDepth = 1000000, kWallDepth = 999999, kSceneryDepth = -10;
constexpr int kColumns = (kRoomWidth + kCell - 1) / kCell;  // on screen, the last one cut
constexpr int kRows = (kRoomHeight + kCell - 1) / kCell;
constexpr int kFirstRow = -kMapTop / kCell;  // map row of y = 0
constexpr int kTrees = 7, kBushes = 9;       // pieces in front of a room at most
constexpr int kMostTiles = 235;              // of a room
constexpr int kWallShapes = 47;

// Neighbours of a wall cell: the four sides, then the corners between two joined sides.
constexpr unsigned kNorth = 1, kEast = 2, kSouth = 4, kWest = 8;
constexpr unsigned kNorthEast = 16, kSouthEast = 32, kSouthWest = 64, kNorthWest = 128;
struct Corner {
    unsigned corner, sides;
    int column, row;  // from the cell
};
constexpr Corner kCorners[] = {{kNorthEast, kNorth | kEast, 1, -1},
                               {kSouthEast, kEast | kSouth, 1, 1},
                               {kSouthWest, kSouth | kWest, -1, 1},
                               {kNorthWest, kNorth | kWest, -1, -1}};

class Layer {
public:
    Layer(const std::vector<TileSet>& sets, const Level& level, Site& site)
        : sets_(sets), level_(level), site_(site)
    {
        floor_ = Level_Floor(level);
        ground_ = Find(kCell, kCell);
    }

    std::vector<archive::RoomTile> Lay(const std::function<bool(int)>& drawn)
    {
        if (!ground_) return {};
        for (int row = 0; row < kRows; ++row) {
            for (int column = 0; column < kColumns; ++column) LayGround(column, row + kFirstRow);
        }
        for (int row = 0; row < kRows; ++row) {
            for (int column = 0; column < kColumns; ++column) LayWall(column, row + kFirstRow);
        }
        if (Room() < 0) SpareGround();
        LayBanks();
        LayPieces(Find(2 * kCell, 3 * kCell), drawn, kTrees, 3);
        LayPieces(Find(kCell, 2 * kCell), drawn, kBushes, 5);
        if (site_.Number() == ground_->quiltedLevel) LayQuilting();
        return std::move(tiles_);
    }

    std::vector<archive::RoomTile> LayPage(const std::function<bool(int)>& drawn)
    {
        if (!ground_) return {};
        for (int i = 0; i < kRows * kColumns; ++i) {
            const int column = i % kColumns, row = i / kColumns + kFirstRow;
            Add(*ground_, Choose("ground", column, row), column, row, kGroundDepth);
        }
        LayBanks();
        LayPath(Find(2 * kCell, 2 * kCell), drawn);
        LayPieces(Find(2 * kCell, 3 * kCell), drawn, kTrees, 3);
        LayPieces(Find(kCell, 2 * kCell), drawn, kBushes, 5);
        return std::move(tiles_);
    }

private:
    const TileSet* Find(int width, int height) const
    {
        for (const TileSet& set : sets_) {
            bool fits = set.cellWidth == width && set.cellHeight == height;
            if (fits && set.world == level_.world) return &set;
        }
        return nullptr;
    }

    bool Floor(int column, int row) const
    {
        return row >= 0 && row < static_cast<int>(floor_.size()) && column >= 0 &&
               column < static_cast<int>(floor_[0].size()) &&
               floor_[static_cast<size_t>(row)][static_cast<size_t>(column)];
    }

    bool Outside(int column, int row) const
    {
        return !Floor(column, row) && !level_.Wall(column, row);
    }

    void Add(const TileSet& set, TileCell cell, int column, int row, int depth)
    {
        archive::RoomTile tile;
        tile.x = column * kCell;
        tile.y = kMapTop + row * kCell;
        tile.backgroundIndex = set.background;
        tile.sourceX = cell.column * set.cellWidth;
        tile.sourceY = cell.row * set.cellHeight;
        tile.width = set.cellWidth;
        tile.height = set.cellHeight;
        tile.depth = depth;
        tiles_.push_back(tile);
    }

    // The plain cell of a use for three cells of five, else one of its variants.
    TileCell Choose(const std::string& use, int column, int row) const
    {
        const std::vector<TileCell>& cells = ground_->cells.at(use);
        uint32_t number = Scatter(level_.seed, column, row, 1);
        if (cells.size() == 1 || number % 5 < 3) return cells[0];
        return cells[1 + number / 5 % (cells.size() - 1)];
    }

    // The corridor: the column of the gate, from the gate up.
    bool Corridor(int column, int row) const
    {
        for (int below = row; below < static_cast<int>(level_.map.size()); ++below) {
            if (level_.At(column, below) == 'G') return true;
            if (level_.Wall(column, below)) return false;
        }
        return false;
    }

    // A wall cell with something outside beside it: the ground of the outside lies under
    // it, so that no light rim of the field shows around the walls.
    bool Border(int column, int row) const
    {
        if (!level_.Wall(column, row)) return false;
        for (int r = row - 1; r <= row + 1; ++r) {
            for (int c = column - 1; c <= column + 1; ++c) {
                if (Outside(c, r)) return true;
            }
        }
        return false;
    }

    void LayGround(int column, int row)
    {
        const char* use = "ground";
        if (Outside(column, row) || Border(column, row)) {
            use = "outside";
        } else if (Floor(column, row) && Corridor(column, row)) {
            use = "path";
        } else if (level_.At(column, row - 1) == 'G') {
            use = "mat";
        } else if (const unsigned shape = Edge(column, row)) {
            Add(*ground_, Nth("edge", static_cast<int>(shape)), column, row, kGroundDepth);
            return;
        }
        Add(*ground_, Choose(use, column, row), column, row, kGroundDepth);
    }

    // The sides of a floor cell that lie at a wall; a lone wall throws no border.
    unsigned Edge(int column, int row) const
    {
        if (!Floor(column, row)) return 0;
        const auto wall = [&](int c, int r) { return Body(c, r) && !level_.Lone(c, r); };
        unsigned sides = 0;
        if (wall(column, row - 1)) sides |= kNorth;
        if (wall(column + 1, row)) sides |= kEast;
        if (wall(column, row + 1)) sides |= kSouth;
        if (wall(column - 1, row)) sides |= kWest;
        return sides;
    }

    // A wall cell that shows as a wall: no object stands there in its place.
    bool Body(int column, int row) const
    {
        return level_.Wall(column, row) && !site_.At(column, row).taken;
    }

    // The cell `number` places behind the first of a use, in reading order.
    TileCell Nth(const std::string& use, int number) const
    {
        const TileCell first = ground_->cells.at(use)[0];
        const int place = first.row * ground_->columns + first.column + number;
        return {place % ground_->columns, place / ground_->columns};
    }

    unsigned WallShape(int column, int row) const
    {
        // A gate stands between posts: the wall goes up to it from both sides.
        const auto joins = [&](int c) { return Body(c, row) || level_.At(c, row) == 'G'; };
        unsigned shape = 0;
        if (Body(column, row - 1)) shape |= kNorth;
        if (joins(column + 1)) shape |= kEast;
        if (Body(column, row + 1)) shape |= kSouth;
        if (joins(column - 1)) shape |= kWest;
        for (const Corner& corner : kCorners) {
            const bool sides = (shape & corner.sides) == corner.sides;
            if (sides && Body(column + corner.column, row + corner.row)) shape |= corner.corner;
        }
        return shape;
    }

    void LayWall(int column, int row)
    {
        if (!Body(column, row)) return;
        const unsigned shape = WallShape(column, row);
        const auto others = ground_->cells.find("other-" + std::to_string(shape));
        const uint32_t number = Scatter(level_.seed, column, row, 2);
        TileCell cell = Nth("wall", Tiles_WallPlace(shape));
        if (others != ground_->cells.end() && number % 4 == 0) {
            cell = others->second[number / 4 % others->second.size()];
        }
        if (shape == kAllJoined) solid_.push_back({column, row});
        Add(*ground_, cell, column, row, kWallDepth);
    }

    int Room() const { return kMostTiles - static_cast<int>(tiles_.size()); }

    // No ground under walls that fill their cell, where a room has too many tiles.
    void SpareGround()
    {
        std::erase_if(tiles_, [&](const archive::RoomTile& tile) {
            return tile.depth == kGroundDepth &&
                   std::any_of(solid_.begin(), solid_.end(), [&](TileCell cell) {
                       return tile.x == cell.column * kCell && tile.y == kMapTop + cell.row * kCell;
                   });
        });
    }

    void LayPieces(const TileSet* set, const std::function<bool(int)>& drawn, int most,
                   uint32_t salt)
    {
        if (!set || !drawn(set->background)) return;
        const std::vector<TileCell>& pieces = set->cells.at("piece");
        // Each kind in turn, so that the same two seldom stand side by side.
        uint32_t number = Scatter(level_.seed, 0, 0, salt + 1);
        for (PiecePlace at : Scenery_Pieces(site_, set->cellWidth / kCell, set->cellHeight / kCell,
                                            std::clamp(Room(), 0, most), salt, set->crowns)) {
            Add(*set, pieces[number++ % pieces.size()], at.column, at.row, kSceneryDepth);
        }
    }

    // Strips of bank around the ponds. Their cell holds one for the left and one for the
    // right of the water, then pieces of one above and of one below it.
    void LayBanks()
    {
        const auto bank = ground_->cells.find("bank");
        if (bank == ground_->cells.end()) return;
        constexpr int kWide = 8;                  // pixels of a strip
        constexpr int kLong = kCell - 2 * kWide;  // of a piece of those that lie level
        const int left = bank->second[0].column * kCell, top = bank->second[0].row * kCell;
        const auto add = [&](int x, int y, int fromX, int fromY, int width, int height) {
            if (Room() <= 0) return;
            archive::RoomTile tile;
            tile.x = x;
            tile.y = y;
            tile.sourceX = left + fromX;
            tile.sourceY = top + fromY;
            tile.width = width;
            tile.height = height;
            tile.backgroundIndex = ground_->background;
            tile.depth = kWallDepth;
            tiles_.push_back(tile);
        };
        for (int i = 0; i < kRows * kColumns; ++i) {
            const int column = i % kColumns, row = i / kColumns + kFirstRow;
            if (!site_.At(column, row).water) continue;
            const auto dry = [&](int c, int r) {
                return Outside(c, r) && !site_.At(c, r).water && c < kColumns;
            };
            const int x = column * kCell, y = kMapTop + row * kCell;
            if (dry(column - 1, row)) add(x - kWide, y, 0, 0, kWide, kCell);
            if (dry(column + 1, row)) add(x + kCell, y, kWide, 0, kWide, kCell);
            for (const bool above : {true, false}) {
                if (!dry(column, above ? row - 1 : row + 1)) continue;
                const int stripY = above ? y - kWide : y + kCell, fromY = above ? 0 : kWide;
                add(x, stripY, 2 * kWide, fromY, kLong, kWide);
                add(x + kLong, stripY, 2 * kWide, fromY, kCell - kLong, kWide);
            }
        }
    }

    // Each cell of the set holds two stretches: side by side where they lead down, one
    // above the other where they lead across.
    void LayPath(const TileSet* set, const std::function<bool(int)>& drawn)
    {
        if (!set || !drawn(set->background)) return;
        int number = 0;
        for (const Site::Stretch& stretch : site_.Path()) {
            const TileCell cell = set->cells.at(stretch.down ? "down" : "across")[0];
            const int half = ++number / 2 % 2;
            archive::RoomTile tile;
            tile.width = stretch.down ? kCell : 2 * kCell;
            tile.height = stretch.down ? 2 * kCell : kCell;
            tile.x = stretch.x - tile.width / 2;
            tile.y = stretch.y - tile.height / 2;
            tile.sourceX = cell.column * set->cellWidth + (stretch.down ? half * kCell : 0);
            tile.sourceY = cell.row * set->cellHeight + (stretch.down ? 0 : half * kCell);
            tile.backgroundIndex = set->background;
            tile.depth = kWallDepth;
            tiles_.push_back(tile);
        }
    }

    // Once over all but the walls, then with the other pattern over the outside.
    void LayQuilting()
    {
        const std::vector<TileCell>& patterns = ground_->cells.at("quilt");
        for (size_t pass = 0; pass < patterns.size(); ++pass) {
            for (int i = 0; i < kRows * kColumns; ++i) {
                const int column = i % kColumns, row = i / kColumns + kFirstRow;
                const bool full = static_cast<int>(tiles_.size()) >= ground_->quiltedTiles;
                if (full || level_.Wall(column, row) || (pass > 0 && !Outside(column, row))) {
                    continue;
                }
                Add(*ground_, patterns[pass], column, row, kWallDepth);
            }
        }
    }

    static constexpr unsigned kAllJoined = 255;

    const std::vector<TileSet>& sets_;
    const Level& level_;
    Site& site_;
    const TileSet* ground_ = nullptr;
    std::vector<std::vector<bool>> floor_;
    std::vector<TileCell> solid_;  // walls that fill their cell
    std::vector<archive::RoomTile> tiles_;
};

// Uses whose first cell stands for several in reading order.
int Following(const std::string& use)
{
    return use == "wall" ? kWallShapes : use == "edge" ? 16 : 1;
}

void ReadUse(const Row& row, TileSet& set)
{
    for (const std::string& word : row.Words()) {
        Row place = row;
        place.fields = {Field{"cell", word}};
        TileCell cell;
        place.Pair("cell", ',', cell.column, cell.row);
        if (cell.column < 0 || cell.row < 0 || cell.column >= set.columns || cell.row >= set.rows) {
            row.Fail("expected a cell inside the tile set, not " + word);
        }
        set.cells[row.name].push_back(cell);
    }
    if (set.cells[row.name].empty()) row.Fail("expected cells behind " + row.name);
    const TileCell first = set.cells[row.name][0];
    const int following = Following(row.name);
    if (first.row * set.columns + first.column + following > set.columns * set.rows) {
        row.Fail("expected room for " + std::to_string(following) + " cells from the first " +
                 row.name + " cell on");
    }
}

void NeedUses(const Row& row, const TileSet& set)
{
    std::vector<const char*> uses{"piece"};
    if (set.cellWidth == kCell && set.cellHeight == kCell) {
        uses = {"ground", "outside", "path", "mat", "edge", "wall"};
    } else if (set.cellWidth == 2 * kCell && set.cellHeight == 2 * kCell) {
        uses = {"down", "across"};
    }
    for (const char* use : uses) {
        if (!set.cells.count(use)) row.Fail(std::string("expected cells for ") + use);
    }
    if (set.quiltedLevel && !set.cells.count("quilt")) row.Fail("expected cells for quilt");
}

}  // namespace

std::vector<TileSet> TileSets_Parse(const Tables& tables, const std::vector<Row>& rows)
{
    std::vector<TileSet> sets;
    for (const Row& row : rows) {
        TileSet set;
        set.background = tables.backgroundNames.Need(row, row.name, "background");
        set.world = row.Int("world", 1);
        row.Pair("cell", 'x', set.cellWidth, set.cellHeight);
        set.columns = row.Int("columns", 1);
        set.rows = row.Int("rows", 1);
        set.crowns = row.Flag("crowns");
        if (row.Has("quilted")) row.Pair("quilted", ',', set.quiltedLevel, set.quiltedTiles);
        row.Done();
        const BackgroundRow& background = tables.backgrounds[static_cast<size_t>(set.background)];
        if (set.columns * set.cellWidth != background.width ||
            set.rows * set.cellHeight != background.height) {
            row.Fail("expected columns and rows of cells that fill " + row.name);
        }
        for (const Row& use : row.rows) ReadUse(use, set);
        NeedUses(row, set);
        sets.push_back(std::move(set));
    }
    return sets;
}

int Tiles_WallPlace(unsigned shape)
{
    const auto corners = [](unsigned sides) {
        int count = 0;
        for (const Corner& corner : kCorners) count += (sides & corner.sides) == corner.sides;
        return count;
    };
    const unsigned sides = shape & 15;
    int place = 0, bit = 1;
    for (unsigned before = 0; before < sides; ++before) place += 1 << corners(before);
    for (const Corner& corner : kCorners) {
        if ((sides & corner.sides) != corner.sides) continue;
        if (shape & corner.corner) place += bit;
        bit *= 2;
    }
    return place;
}

std::vector<archive::RoomTile> Tiles_Lay(const std::vector<TileSet>& sets, const Level& level,
                                         Site& site,
                                         const std::function<bool(int background)>& drawn)
{
    return Layer(sets, level, site).Lay(drawn);
}

std::vector<archive::RoomTile> Tiles_LayPage(const std::vector<TileSet>& sets, Site& site,
                                             const std::function<bool(int background)>& drawn)
{
    Level page;  // all of it is outside
    page.world = (site.Number() + 1) / 2;
    page.seed = site.Seed();
    return Layer(sets, page, site).LayPage(drawn);
}

}  // namespace pack
