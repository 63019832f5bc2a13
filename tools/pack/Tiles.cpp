#include "tools/pack/Tiles.h"

#include <algorithm>

namespace pack {
namespace {

constexpr int kGroundDepth = 1000000, kWallDepth = 999999, kSceneryDepth = -10;
constexpr int kColumns = (kRoomWidth + kCell - 1) / kCell;  // on screen, the last one cut
constexpr int kRows = (kRoomHeight + kCell - 1) / kCell;
constexpr int kFirstRow = -kMapTop / kCell;  // map row of y = 0
constexpr int kTreeTries = 60, kTrees = 7, kBushTries = 60, kBushes = 9;

// A fixed scatter of a cell's choices: the mixing steps of MurmurHash3 (Austin
// Appleby).
uint32_t Scatter(uint32_t seed, int column, int row, uint32_t salt)
{
    uint32_t h = seed * 0x9E3779B1U + salt;
    for (uint32_t part : {static_cast<uint32_t>(column + 64), static_cast<uint32_t>(row + 64)}) {
        h ^= part * 0xCC9E2D51U;
        h ^= h >> 16;
        h *= 0x85EBCA6BU;
        h ^= h >> 13;
        h *= 0xC2B2AE35U;
        h ^= h >> 16;
    }
    return h;
}

class Layer {
public:
    Layer(const std::vector<TileSet>& sets, const Level& level) : sets_(sets), level_(level)
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
        LayPieces(Find(2 * kCell, 3 * kCell), drawn, kTreeTries, kTrees, 3);
        LayPieces(Find(kCell, 2 * kCell), drawn, kBushTries, kBushes, 5);
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
        }
        Add(*ground_, Choose(use, column, row), column, row, kGroundDepth);
    }

    void LayWall(int column, int row)
    {
        if (!level_.Wall(column, row)) return;
        if (level_.inner >= 0 && level_.Lone(column, row)) return;
        // A gate stands between posts: the wall goes up to it from both sides.
        auto joins = [&](int c, int r) { return level_.Wall(c, r); };
        auto joinsSide = [&](int c, int r) { return level_.Wall(c, r) || level_.At(c, r) == 'G'; };
        int shape = (joins(column, row - 1) ? 1 : 0) + (joinsSide(column + 1, row) ? 2 : 0) +
                    (joins(column, row + 1) ? 4 : 0) + (joinsSide(column - 1, row) ? 8 : 0);
        TileCell first = ground_->cells.at("wall")[0];
        int place = first.row * ground_->columns + first.column + shape;
        Add(*ground_, {place % ground_->columns, place / ground_->columns}, column, row,
            kWallDepth);
    }

    // Scenery stands where all of its cells lie beyond the walls, and on none twice.
    void LayPieces(const TileSet* set, const std::function<bool(int)>& drawn, int tries, int most,
                   uint32_t salt)
    {
        if (!set || !drawn(set->background)) return;
        int width = set->cellWidth / kCell, height = set->cellHeight / kCell;
        const std::vector<TileCell>& pieces = set->cells.at("piece");
        std::vector<TileCell> found;
        for (int i = 0; i < tries && static_cast<int>(found.size()) < most; ++i) {
            uint32_t number = Scatter(level_.seed, i, 0, salt);
            int column = static_cast<int>(number % (kColumns + 1)) - 1;
            int row = static_cast<int>(number / 64 % (kRows + 1)) + kFirstRow - height + 1;
            if (!Free(column, row, width, height)) continue;
            Take(column, row, width, height);
            found.push_back({column, row});
        }
        // Nearer pieces cover farther ones.
        std::stable_sort(found.begin(), found.end(),
                         [](TileCell a, TileCell b) { return a.row < b.row; });
        for (TileCell at : found) {
            uint32_t number = Scatter(level_.seed, at.column, at.row, salt + 1);
            Add(*set, pieces[number % pieces.size()], at.column, at.row, kSceneryDepth);
        }
    }

    bool Free(int column, int row, int width, int height) const
    {
        for (int r = row; r < row + height; ++r) {
            for (int c = column; c < column + width; ++c) {
                bool taken = std::any_of(taken_.begin(), taken_.end(), [&](TileCell cell) {
                    return cell.column == c && cell.row == r;
                });
                if (taken || !Outside(c, r)) return false;
            }
        }
        return true;
    }

    // Only the foot is taken, so that crowns overlap.
    void Take(int column, int row, int width, int height)
    {
        for (int c = column; c < column + width; ++c) taken_.push_back({c, row + height - 1});
    }

    const std::vector<TileSet>& sets_;
    const Level& level_;
    const TileSet* ground_ = nullptr;
    std::vector<std::vector<bool>> floor_;
    std::vector<TileCell> taken_;
    std::vector<archive::RoomTile> tiles_;
};

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
    if (row.name == "wall") {
        TileCell first = set.cells["wall"][0];
        if (first.row * set.columns + first.column + 16 > set.columns * set.rows) {
            row.Fail("expected room for 16 cells from the first wall cell on");
        }
    }
}

void NeedUses(const Row& row, const TileSet& set)
{
    bool ground = set.cellWidth == kCell && set.cellHeight == kCell;
    std::vector<const char*> uses{"piece"};
    if (ground) uses = {"ground", "outside", "path", "mat", "wall"};
    for (const char* use : uses) {
        if (!set.cells.count(use)) row.Fail(std::string("expected cells for ") + use);
    }
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

std::vector<archive::RoomTile> Tiles_Lay(const std::vector<TileSet>& sets, const Level& level,
                                         const std::function<bool(int background)>& drawn)
{
    return Layer(sets, level).Lay(drawn);
}

}  // namespace pack
