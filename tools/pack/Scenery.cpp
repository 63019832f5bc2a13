#include "tools/pack/Scenery.h"

#include <algorithm>
#include <cstdlib>
#include <sstream>

namespace pack {
namespace {

constexpr int kReach = 16;  // pixels that a thing may reach over the cell behind it
// Pixels: the middle of a cloud drifts within a band this high at an edge, most of it
// beyond, so that gates and the rows beside them can be seen.
constexpr int kSkyBand = 30, kSkyBeyond = 25;
constexpr int kPieceTries = 90;
constexpr int kStopStep = 3 * kCell;  // pixels from icon to icon on a page of the map

constexpr int CellsIn(int pixels)
{
    return (pixels + kCell - 1) / kCell;
}

int BottomOf(int row)
{
    return kMapTop + (row + 1) * kCell;
}

// Finds the place of one more instance of a row in a site.
class Placer {
public:
    Placer(const SceneryRow& row, Site& site)
        : row_(row),
          site_(site),
          columns_(CellsIn(row.width)),
          stands_(row.stand == Stand::inner ? 1 : CellsIn(row.height - kReach))
    {
    }

    bool PlaceOne(int index)
    {
        if (row_.stand == Stand::sky) return PlaceCloud(index);
        int bestRank = kNowhere, bestColumn = 0, bestRow = 0;
        uint32_t bestOrder = 0;
        for (int row = 0; row < Site::kBottom; ++row) {
            for (int column = Site::kLeft; column < Site::kRight; ++column) {
                const int rank = Seen(column, row) ? Rank(column, row) : kNowhere;
                const uint32_t order =
                    Scatter(site_.Seed(), column, row, 100 + static_cast<uint32_t>(row_.object));
                if (rank > bestRank || (rank == bestRank && order >= bestOrder)) continue;
                if (rank == kNowhere) continue;
                bestRank = rank, bestOrder = order, bestColumn = column, bestRow = row;
            }
        }
        if (bestRank == kNowhere) return false;
        Settle(bestColumn, bestRow);
        return true;
    }

private:
    static constexpr int kNowhere = 9;  // ranks below it are places, the lowest is the best

    // Its middle is on screen; water may go on to the lower edge.
    bool Seen(int column, int row) const
    {
        const bool goesOn = row_.stand == Stand::water && site_.At(column, row - 1).water;
        const bool pond = row_.stand == Stand::shore || row_.stand == Stand::water;
        const int x = column * kCell + (pond ? 1 : row_.width / 2);
        const int y = BottomOf(row) - (goesOn ? row_.height - 1 : row_.height / 2);
        return x > 0 && x < kRoomWidth && y > 0 && y < kRoomHeight;
    }

    int Rank(int column, int row) const
    {
        switch (row_.stand) {
            case Stand::inner: {
                const Site::Cell& cell = site_.At(column, row);
                if (cell.ground == Site::Ground::lone && !cell.taken) return 0;
                return RankBeside(column, row);
            }
            case Stand::shore:
                return RankShore(column, row);
            case Stand::water:
                return RankWater(column, row);
            default:
                return RankBeside(column, row);
        }
    }

    // 1 where all of it stands on free ground beyond the walls, 1 more where a large one
    // is cut by the edge of the screen, 2 more where it leans over a wall or over what
    // stands behind it, or stands in a row of its like on a page; nowhere over the field.
    int RankBeside(int column, int row) const
    {
        const bool leftIn = column >= 0, rightIn = column * kCell + row_.width <= kRoomWidth;
        const bool topIn = BottomOf(row) >= row_.height, bottomIn = BottomOf(row) <= kRoomHeight;
        bool leans =
            site_.IsPage() && (site_.At(column, row - 1).taken || site_.At(column, row + 1).taken);
        for (int c = column; c < column + columns_; ++c) {
            if (!site_.Free(c, row)) return kNowhere;
            for (int r = row - CellsIn(row_.height) + 1; r < row; ++r) {
                const Site::Ground ground = site_.At(c, r).ground;
                if (ground == Site::Ground::field || ground == Site::Ground::lone) return kNowhere;
                leans = leans || (r > row - stands_ && !site_.Free(c, r));
            }
        }
        const bool whole = columns_ == 1 || (leftIn && rightIn && topIn && bottomIn);
        return 1 + (whole ? 0 : 1) + (leans ? 2 : 0);
    }

    // A shore goes on beside another piece of it first, and below another pond last.
    int RankShore(int column, int row) const
    {
        if (!site_.Free(column, row) || !site_.Free(column, row + 1)) return kNowhere;
        const bool goesOn = site_.At(column - 1, row).water || site_.At(column + 1, row).water;
        const bool below = site_.At(column, row - 1).kept || site_.At(column, row + 2).water;
        return (goesOn ? 1 : 2) + (below ? 2 : 0);
    }

    // Below a shore, then where most of it touches water, so that ponds are broad and grow
    // downward.
    int RankWater(int column, int row) const
    {
        if (site_.At(column, row).kept) return 0;
        if (!site_.Free(column, row)) return kNowhere;
        const int touched = site_.At(column, row - 1).water + site_.At(column - 1, row).water +
                            site_.At(column + 1, row).water;
        if (site_.At(column, row + 1).water) return 5;
        if (touched > 0) return touched > 1 ? 1 : 2;
        return site_.Free(column + 1, row) && site_.Free(column, row + 1) ? 3 : 4;
    }

    bool PlaceCloud(int index)
    {
        const uint32_t number = Scatter(site_.Seed(), index, row_.object, 7);
        const int fromEdge = static_cast<int>(number / 1024 % kSkyBand) - kSkyBeyond;
        const bool above = index % 2 == 0 && !site_.IsPage();  // a page has its name there
        Put(static_cast<int>(number % kRoomWidth), above ? fromEdge : kRoomHeight - fromEdge);
        return true;
    }

    void Settle(int column, int row)
    {
        const bool lone = site_.At(column, row).ground == Site::Ground::lone;
        for (int c = column; c < column + columns_; ++c) {
            for (int r = row; r > row - (lone ? 1 : stands_); --r) {
                Site::Cell& cell = site_.At(c, r);
                // What leans over a wall does not take its place.
                cell.taken = cell.taken || cell.ground == Site::Ground::outside || lone;
            }
        }
        const bool wet = row_.stand == Stand::shore || row_.stand == Stand::water;
        site_.At(column, row).water = wet;
        site_.At(column, row).kept = false;
        if (row_.stand == Stand::shore) {
            site_.At(column, row + 1).taken = true;
            site_.At(column, row + 1).kept = true;
        }
        Put(column * kCell + row_.originX, BottomOf(row) - row_.height + row_.originY);
    }

    void Put(int x, int y)
    {
        PlacedInstance placed;
        placed.object = row_.object;
        placed.x = x;
        placed.y = y;
        if (!row_.tints.empty()) {
            const uint32_t number = Scatter(site_.Seed(), x, y, 11);
            placed.colour = row_.tints[number % row_.tints.size()];
        }
        site_.placed.push_back(placed);
    }

    const SceneryRow& row_;
    Site& site_;
    const int columns_, stands_;  // cells that it takes
};

// "2,4..20"
std::set<int> Numbers(const Row& row, const std::string& key)
{
    std::set<int> numbers;
    std::string text = row.Text(key, "");
    while (!text.empty()) {
        const size_t comma = text.find(',');
        const std::string part = text.substr(0, comma);
        text = comma == std::string::npos ? "" : text.substr(comma + 1);
        const size_t dots = part.find("..");
        long long first = 0, last = 0;
        if (!Parse_Number(part.substr(0, dots), first) ||
            !Parse_Number(dots == std::string::npos ? part : part.substr(dots + 2), last) ||
            first < 1 || last < first || last > 100) {
            row.Fail("expected " + key + "= with numbers such as 2,4..20");
        }
        for (long long number = first; number <= last; ++number) {
            numbers.insert(static_cast<int>(number));
        }
    }
    return numbers;
}

// "ffffff,2fa98c", red, green and blue of each.
std::vector<uint32_t> Tints(const Row& row)
{
    std::vector<uint32_t> tints;
    std::istringstream words(row.Text("tints", ""));
    for (std::string word; std::getline(words, word, ',');) {
        char* end = nullptr;
        const auto rgb = static_cast<uint32_t>(std::strtoul(word.c_str(), &end, 16));
        if (word.size() != 6 || *end) row.Fail("expected tints= with colours such as ffe0b0");
        tints.push_back(0xFF000000U | (rgb & 0xFFU) << 16 | (rgb & 0xFF00U) | rgb >> 16);
    }
    return tints;
}

Stand StandOf(const Row& row)
{
    if (row.Flag("inner")) return Stand::inner;
    if (row.Flag("shore")) return Stand::shore;
    if (row.Flag("water")) return Stand::water;
    if (row.Flag("sky")) return Stand::sky;
    return Stand::beside;
}

// Rows that share their rooms and their size take turns.
bool TakeTurns(const SceneryRow& a, const SceneryRow& b)
{
    return a.stand == b.stand && a.levels == b.levels && a.pages == b.pages && a.width == b.width;
}

}  // namespace

Site::Site(const Level& level, int levelNumber) : number_(levelNumber), seed_(level.seed)
{
    const std::vector<std::vector<bool>> floor = Level_Floor(level);
    for (int row = 0; row < static_cast<int>(floor.size()); ++row) {
        for (int column = 0; column < static_cast<int>(floor[0].size()); ++column) {
            Ground& ground = At(column, row).ground;
            if (level.Wall(column, row)) {
                ground = level.Lone(column, row) ? Ground::lone : Ground::wall;
            } else if (floor[static_cast<size_t>(row)][static_cast<size_t>(column)]) {
                ground = Ground::field;
            }
        }
    }
    // Nothing stands before the lower gate.
    Keep(kLowerGateX, kLowerGateY + kCell, kLowerGateX + kCell, kLowerGateY + 2 * kCell);
}

Site::Site(const Tables& tables, const RoomRow& page, int pageNumber)
    : page_(true), number_(pageNumber), seed_(1000 + static_cast<uint32_t>(pageNumber))
{
    for (const PlacedInstance& thing : page.instances) {
        const ObjectRow& object = tables.objects[static_cast<size_t>(thing.object)];
        if (object.object.spriteIndex < 0 || object.object.depth < 0) continue;  // weather
        const archive::Sprite& sprite =
            tables.sprites[static_cast<size_t>(object.object.spriteIndex)].sprite;
        const int left = thing.x - sprite.originX, top = thing.y - sprite.originY;
        Keep(left, top, left + static_cast<int>(sprite.width),
             top + static_cast<int>(sprite.height));
    }
    LayPath(tables, page);
}

// Every cell that the area touches is the field. Pixels, ends not inside.
void Site::Keep(int left, int top, int right, int bottom)
{
    for (int row = 0; row < kBottom; ++row) {
        for (int column = 0; column < kRight; ++column) {
            const bool clear = column * kCell >= right || (column + 1) * kCell <= left ||
                               BottomOf(row) <= top || BottomOf(row) - kCell >= bottom;
            if (!clear) At(column, row).ground = Ground::field;
        }
    }
}

// From icon to icon in the order of the levels, and out to the pages before and after.
void Site::LayPath(const Tables& tables, const RoomRow& page)
{
    std::vector<std::pair<int, int>> stops;  // middles of icons
    bool before = false, after = false;
    for (const PlacedInstance& thing : page.instances) {
        const std::string& name = tables.objectNames.List()[static_cast<size_t>(thing.object)];
        if (name.rfind("oLevel", 0) == 0) stops.emplace_back(thing.x + kCell, thing.y + kCell);
        before = before || name == "oVoltaMundo";
        after = after || name == "oAvancaMundo";
    }
    if (stops.empty()) return;
    if (before)
        stops.insert(stops.begin(), {stops.front().first - kStopStep, stops.front().second});
    if (after) stops.emplace_back(stops.back().first + kStopStep, stops.back().second);
    for (size_t i = 1; i < stops.size(); ++i) {
        Stretch stretch;
        stretch.down = stops[i].first == stops[i - 1].first;
        stretch.x = (stops[i].first + stops[i - 1].first) / 2;
        stretch.y = (stops[i].second + stops[i - 1].second) / 2;
        Keep(stretch.x - kCell / 2, stretch.y - kCell / 2, stretch.x + kCell / 2,
             stretch.y + kCell / 2);
        path_.push_back(stretch);
    }
}

Site::Cell& Site::At(int column, int row)
{
    if (column < kLeft || column >= kRight || row < kTop || row >= kBottom) return beyond_ = Cell();
    return cells_[static_cast<size_t>((row - kTop) * (kRight - kLeft) + column - kLeft)];
}

bool Site::Free(int column, int row) const
{
    const Cell& cell = At(column, row);
    return cell.ground == Ground::outside && !cell.taken;
}

std::vector<SceneryRow> Scenery_Parse(const Tables& tables, const std::vector<Row>& rows)
{
    std::vector<SceneryRow> out;
    for (const Row& row : rows) {
        SceneryRow scenery;
        scenery.object = tables.objectNames.Need(row, row.name, "object");
        const int sprite = tables.objects[static_cast<size_t>(scenery.object)].object.spriteIndex;
        if (sprite < 0) row.Fail("expected an object with a sprite");
        const archive::Sprite& picture = tables.sprites[static_cast<size_t>(sprite)].sprite;
        scenery.width = static_cast<int>(picture.width);
        scenery.height = static_cast<int>(picture.height);
        scenery.originX = picture.originX;
        scenery.originY = picture.originY;
        scenery.levels = Numbers(row, "levels");
        scenery.pages = Numbers(row, "pages");
        scenery.count = row.Int("count", 0);
        scenery.tints = Tints(row);
        scenery.stand = StandOf(row);
        row.Done();
        if (scenery.count < 1 || scenery.levels.size() + scenery.pages.size() == 0) {
            row.Fail("expected levels= or pages=, and count= above 0");
        }
        out.push_back(std::move(scenery));
    }
    return out;
}

std::vector<std::string> Scenery_Place(const Tables& tables, const std::vector<SceneryRow>& rows,
                                       std::vector<Site>& sites)
{
    std::vector<int> rest;  // still to place, by row
    for (const SceneryRow& row : rows) {
        const auto there = std::count_if(sites.begin(), sites.end(),
                                         [&](const Site& site) { return row.In(site); });
        const int rooms = static_cast<int>(row.levels.size() + row.pages.size());
        rest.push_back(row.count * static_cast<int>(there) / rooms);
    }
    std::vector<std::string> shortages;
    for (size_t first = 0; first < rows.size();) {
        size_t end = first + 1;
        while (end < rows.size() && TakeTurns(rows[first], rows[end])) ++end;
        bool found = true;
        for (int round = 0; found; ++round) {
            found = false;
            for (size_t i = first; i < end; ++i) {
                for (Site& site : sites) {
                    if (rest[i] == 0 || !rows[i].In(site)) continue;
                    // A page has its icons and its path: half as much for it.
                    if (site.IsPage() && round % 2 == 1) continue;
                    if (!Placer(rows[i], site).PlaceOne(round)) continue;
                    --rest[i];
                    found = true;
                }
            }
        }
        for (; first < end; ++first) {
            if (rest[first] == 0) continue;
            shortages.push_back(tables.objectNames.List()[static_cast<size_t>(rows[first].object)] +
                                " finds no " + "place for " + std::to_string(rest[first]) + " of " +
                                std::to_string(rows[first].count));
        }
    }
    return shortages;
}

std::vector<PiecePlace> Scenery_Pieces(Site& site, int columns, int rows, int most, uint32_t salt,
                                       bool crowns)
{
    // Of a tall one no more than the upper third is cut off, and only of one with a crown;
    // of any one a sliver is not worth a tile.
    constexpr int kColumns = CellsIn(kRoomWidth), kRows = CellsIn(kRoomHeight);
    constexpr int kFirstRow = -kMapTop / kCell;
    const int columnsSeen = kColumns + columns - 2, above = crowns || rows < 3 ? 1 : 0;
    const int rowsSeen = kRows + 2 - rows + above;
    std::vector<PiecePlace> found;
    for (int i = 0; i < kPieceTries && static_cast<int>(found.size()) < most; ++i) {
        const uint32_t number = Scatter(site.Seed(), i, 0, salt);
        const int column =
            static_cast<int>(number % static_cast<uint32_t>(columnsSeen)) + 1 - columns;
        const int row =
            static_cast<int>(number / 64 % static_cast<uint32_t>(rowsSeen)) + kFirstRow - above;
        bool free = true;
        for (int r = row; r < row + rows; ++r) {
            for (int c = column; c < column + columns; ++c) free = free && site.Free(c, r);
        }
        if (!free) continue;
        // Of one with a crown only the foot is taken for now, so that crowns overlap.
        for (int r = crowns ? row + rows - 1 : row; r < row + rows; ++r) {
            for (int c = column; c < column + columns; ++c) site.At(c, r).taken = true;
        }
        found.push_back({column, row});
    }
    for (PiecePlace at : found) {
        for (int r = at.row; r < at.row + rows; ++r) {
            for (int c = at.column; c < at.column + columns; ++c) site.At(c, r).taken = true;
        }
    }
    std::stable_sort(found.begin(), found.end(),
                     [](PiecePlace a, PiecePlace b) { return a.row < b.row; });
    return found;
}

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

}  // namespace pack
