#pragma once
// Scenery: what stands beside the puzzle or drifts over it and never takes part in it.
// scenery.txt names each object with its rooms and how many there are in all. They are
// spread evenly over those rooms, by the seed of each level, where they hide nothing of
// the puzzle.

#include <set>
#include <string>
#include <vector>

#include "tools/pack/Levels.h"

namespace pack {

// The cells of a room as scenery sees them. Rows count from y = -104, as in a map;
// cells beyond the drawing are outside.
class Site {
public:
    enum class Ground : uint8_t { outside, wall, lone, field };
    struct Cell {
        Ground ground = Ground::outside;
        bool taken = false;  // something stands here
        bool water = false;  // a part of a pond
        bool kept = false;   // below a shore: water is to come
    };
    static constexpr int kLeft = -4, kRight = 20, kTop = -4, kBottom = 16;  // ends not inside
    // A stretch of the path that joins the icons of a page: its middle, and its way.
    struct Stretch {
        int x = 0, y = 0;
        bool down = false;  // else across
    };

    Site(const Level& level, int levelNumber);
    // A page of the map: its icons, banner and arrows are the field, and the path too.
    Site(const Tables& tables, const RoomRow& page, int pageNumber);

    Cell& At(int column, int row);
    const Cell& At(int column, int row) const { return const_cast<Site*>(this)->At(column, row); }
    bool Free(int column, int row) const;  // outside, and nothing stands there
    bool IsPage() const { return page_; }
    int Number() const { return number_; }  // of the level or of the page
    uint32_t Seed() const { return seed_; }

    const std::vector<Stretch>& Path() const { return path_; }

    std::vector<PlacedInstance> placed;  // in the order of making

private:
    void Keep(int left, int top, int right, int bottom);
    void LayPath(const Tables& tables, const RoomRow& page);

    std::vector<Cell> cells_{static_cast<size_t>((kRight - kLeft) * (kBottom - kTop))};
    Cell beyond_;
    std::vector<Stretch> path_;
    bool page_ = false;
    int number_ = 0;
    uint32_t seed_ = 0;
};

enum class Stand {
    beside,  // on cells beyond the walls
    inner,   // on lone wall cells first, then beyond the walls
    shore,   // the upper edge of a pond; the cell below it is kept for water
    water,   // below a shore first, then where a pond can grow
    sky      // over the upper or the lower edge of the room
};

struct SceneryRow {
    int object = -1;
    Stand stand = Stand::beside;
    int width = 0, height = 0, originX = 0, originY = 0;  // of its sprite, pixels
    std::set<int> levels, pages;
    int count = 0;                // in all its rooms together
    std::vector<uint32_t> tints;  // 0xFFBBGGRR, one of which each instance takes

    bool In(const Site& site) const
    {
        return (site.IsPage() ? pages : levels).count(site.Number()) != 0;
    }
};

std::vector<SceneryRow> Scenery_Parse(const Tables& tables, const std::vector<Row>& rows);

// Fills `placed` of the sites. While rooms of a row are missing, it places the share of
// those that are there. Returns a sentence for each row that found too little room.
std::vector<std::string> Scenery_Place(const Tables& tables, const std::vector<SceneryRow>& rows,
                                       std::vector<Site>& sites);

// Where tiles of `columns` by `rows` cells may stand in front of the room, at most
// `most`, the farthest first. Takes their cells. Those with crowns may stand one before the
// other.
struct PiecePlace {
    int column = 0, row = 0;  // of the upper left cell
};
std::vector<PiecePlace> Scenery_Pieces(Site& site, int columns, int rows, int most, uint32_t salt,
                                       bool crowns);

// A fixed scatter of numbers over cells: the mixing steps of MurmurHash3 (Austin
// Appleby).
uint32_t Scatter(uint32_t seed, int column, int row, uint32_t salt);

}  // namespace pack
