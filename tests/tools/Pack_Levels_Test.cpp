// Levels: maps become rooms, and the rooms of the game are what they are drawn as.

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <map>
#include <set>

#include "tests/tools/Pack_Game.h"
#include "tools/pack/Tiles.h"

using namespace pack;

namespace {

// The game on the map alone: boxes and figure by cell. Plays a solution and tells
// whether it covers all targets and leads out to the end marker.
bool Solves(const Level& level)
{
    using Cell = std::pair<int, int>;
    std::set<Cell> boxes, targets;
    Cell at, end, gate;
    for (int row = 0; row < static_cast<int>(level.map.size()); ++row) {
        for (int column = 0; column < 20; ++column) {
            char c = level.At(column, row);
            if (c == '$' || c == '*') boxes.emplace(row, column);
            if (c == '.' || c == '*' || c == '+') targets.emplace(row, column);
            if (c == '@' || c == '+') at = {row, column};
            if (c == 'F') end = {row, column};
            if (c == 'G') gate = {row, column};
        }
    }
    const std::map<char, Cell> steps = {
        {'W', {-1, 0}}, {'S', {1, 0}}, {'A', {0, -1}}, {'D', {0, 1}}};
    bool open = false;
    for (char step : level.solution) {
        auto [down, right] = steps.at(step);
        Cell next{at.first + down, at.second + right};
        Cell beyond{next.first + down, next.second + right};
        if (level.Wall(next.second, next.first) || (next == gate && !open)) return false;
        if (boxes.count(next)) {
            bool blocked = open || boxes.count(beyond) || beyond == gate ||
                           level.Wall(beyond.second, beyond.first);
            if (blocked) return false;
            boxes.erase(next);
            boxes.insert(beyond);
        }
        at = next;
        open = open || boxes == targets;
    }
    return open && at == end;
}

}  // namespace

TEST(PackLevels, LevelOneStandsInItsOrder)
{
    const std::vector<std::string> wanted = {
        "oPlayerArrows 364,260",  "oControl 728,0",    "oPause 780,0",     "oFinal 416,-52",
        "oPortaoFechado 416,104", "oMusica 260,0",     "oMonte 260,208",   "oFechado2 520,208",
        "oWall 364,-104 3x1",     "oWall 468,-52 1x3", "oWall 520,52 4x1", "oWall 676,104 1x6",
        "oWall 104,364 11x1",     "oWall 104,52 1x6",  "oWall 156,52 4x1", "oWall 364,-52 1x3",
        "oRaiosDeSol 0,0",        "oClock 0,0"};
    EXPECT_EQ(Game::Get().Listed(Game::Get().Room("room_level1")), wanted);
}

TEST(PackLevels, LevelEightStandsAsDrawn)
{
    std::vector<std::string> lines = Game::Get().Listed(Game::Get().Room("room_level8"));
    std::set<std::string> listed(lines.begin(), lines.end());
    EXPECT_EQ(lines[0], "oPlayerArrows 416,364");
    for (const char* line : {"oFinal 416,-52", "oPortaoFechado 416,52",
                             "oPortaoFechadoBaixo 416,416", "oMonte 520,104", "oMonte 364,208",
                             "oMonte 416,208", "oFechado 312,156", "oFechado 312,260",
                             "oFechado 572,260", "oRaiosDeSol 0,0", "oClock 0,0", "oPause 780,0"}) {
        EXPECT_TRUE(listed.count(line)) << line;
    }
    EXPECT_EQ(std::count_if(lines.begin(), lines.end(),
                            [](const std::string& l) { return l.rfind("oMonte", 0) == 0; }),
              3);
}

// What a room shows can be played to its end by the moves that stand under it.
TEST(PackLevels, SolutionsLeadOut)
{
    int found = 0;
    const std::string folder = std::string(CONTENT_FOLDER) + "/levels";
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        if (entry.path().extension() != ".txt") continue;
        std::string name = entry.path().filename().string();
        Level level = Level_Parse(Game::Get().tables, name, File_Text(entry.path().string(), name));
        EXPECT_TRUE(Solves(level)) << name;
        ++found;
    }
    EXPECT_GE(found, 2);
}

TEST(PackLevels, IdsRiseThroughTheRooms)
{
    const archive::Content& content = Game::Get().built.content;
    int32_t instance = 99999, tile = 9999999;
    for (const archive::Room& room : content.rooms) {
        for (const archive::RoomInstance& i : room.instances) EXPECT_EQ(i.id, ++instance);
        for (const archive::RoomTile& t : room.tiles) EXPECT_EQ(t.id, ++tile);
        EXPECT_FALSE(room.views[0].visible);
        EXPECT_EQ(room.views[0].viewWidth, 854);
        EXPECT_EQ(room.flags, 2);
    }
    EXPECT_EQ(content.general.lastInstanceId, instance);
    EXPECT_EQ(content.general.lastTileId, tile);
    EXPECT_EQ(content.general.roomOrder.size(), 117U);
}

// The path of the icons zigzags and goes on from page to page.
TEST(PackLevels, MapPagesHoldTheirTenLevels)
{
    const Game& game = Game::Get();
    auto has = [&](const char* room, const std::string& line) {
        std::vector<std::string> lines = game.Listed(game.Room(room));
        return std::count(lines.begin(), lines.end(), line) == 1;
    };
    EXPECT_TRUE(has("room_menu1", "oLevel1 52,104"));
    EXPECT_TRUE(has("room_menu1", "oLevel10 676,260"));
    EXPECT_TRUE(has("room_menu2", "oLevel11 52,260"));
    EXPECT_TRUE(has("room_menu10", "oLevel100 676,104"));
    EXPECT_TRUE(has("room_menu8", "oChuva 0,0"));
    EXPECT_FALSE(has("room_menu8", "oRaiosDeSol 0,0"));
    EXPECT_FALSE(has("room_menu10", "oAvancaMundo 780,104"));
    EXPECT_TRUE(has("room_menu9", "oMundo5p1 416,52"));
}

TEST(PackLevels, RunsCoverEachWallOnce)
{
    for (const char* room : {"room_level1", "room_level8"}) {
        const Game& game = Game::Get();
        std::multiset<std::pair<int, int>> covered;
        for (const archive::RoomInstance& i : game.Room(room).instances) {
            if (i.objectIndex != game.tables.objectNames.Find("oWall")) continue;
            EXPECT_TRUE(i.scaleX == 1 || i.scaleY == 1) << "a run goes one way";
            for (int row = 0; row < static_cast<int>(i.scaleY); ++row) {
                for (int column = 0; column < static_cast<int>(i.scaleX); ++column) {
                    covered.emplace(i.x / kCell + column, i.y / kCell + row);
                }
            }
        }
        EXPECT_EQ(std::set(covered.begin(), covered.end()).size(), covered.size()) << room;
    }
    Level cross;
    cross.map = {" #  ", "####", " #  ", " #  "};
    std::vector<pack::Run> runs = Level_Runs(cross);
    ASSERT_EQ(runs.size(), 3U);
    EXPECT_EQ(runs[0].columns, 4);  // of two equal runs the level one comes first
    EXPECT_EQ(runs[1].rows, 2);
    EXPECT_EQ(runs[2].rows, 1);
}

// ---- tiles

TEST(PackTiles, GroundLiesUnderEveryCellAndWallsFollowTheirShape)
{
    const Game& game = Game::Get();
    for (const char* name : {"room_level1", "room_level8"}) {
        const archive::Room& room = game.Room(name);
        std::set<std::pair<int, int>> ground;
        for (const archive::RoomTile& tile : room.tiles) {
            if (tile.depth == 1000000) {
                EXPECT_TRUE(ground.emplace(tile.x, tile.y).second);
            }
            EXPECT_EQ(tile.scaleX, 1);
        }
        EXPECT_EQ(ground.size(), 170U);
        EXPECT_GE(room.tiles.size(), 175U);
        EXPECT_LE(room.tiles.size(), 235U);
    }
    // The room's corners in level 1, in the 16 shapes from (0, 52) on: north 1, east 2,
    // south 4, west 8.
    std::map<std::pair<int, int>, int> shapes;
    for (const archive::RoomTile& tile : game.Room("room_level1").tiles) {
        if (tile.depth == 999999) {
            shapes[{tile.x, tile.y}] = (tile.sourceY / kCell - 1) * 8 + tile.sourceX / kCell;
        }
    }
    EXPECT_EQ(shapes.at({104, 52}), 2 + 4);
    EXPECT_EQ(shapes.at({104, 364}), 1 + 2);
    EXPECT_EQ(shapes.at({676, 364}), 1 + 8);
    EXPECT_EQ(shapes.at({676, 208}), 1 + 4);
    EXPECT_EQ(shapes.at({364, 52}), 1 + 2 + 8) << "the wall goes up to the gate's post";
    EXPECT_EQ(shapes.count({416, 52}), 0U) << "no wall under the gate";
}

TEST(PackTiles, SceneryKeepsOffTheFieldAndWaitsForItsPicture)
{
    const Game& game = Game::Get();
    std::vector<TileSet> sets =
        TileSets_Parse(game.tables, Table_Read(CONTENT_FOLDER, "tilesets.txt"));
    const std::string file = "levels/level008.txt";
    Level level =
        Level_Parse(game.tables, file, File_Text(std::string(CONTENT_FOLDER) + "/" + file, file));
    std::vector<std::vector<bool>> floor = Level_Floor(level);
    int pieces = 0;
    for (const archive::RoomTile& tile : Tiles_Lay(sets, level, [](int) { return true; })) {
        if (tile.depth != -10) continue;
        ++pieces;
        for (int y = tile.y; y < tile.y + tile.height; y += kCell) {
            for (int x = tile.x; x < tile.x + tile.width; x += kCell) {
                int row = (y - kMapTop) / kCell, column = x / kCell;
                bool drawn = row >= 0 && row < static_cast<int>(floor.size()) && column >= 0 &&
                             column < static_cast<int>(floor[0].size());
                EXPECT_FALSE(drawn && floor[static_cast<size_t>(row)][static_cast<size_t>(column)]);
                EXPECT_FALSE(x >= 0 && level.Wall(column, row));
            }
        }
    }
    EXPECT_GT(pieces, 5);
    for (const archive::RoomTile& tile : Tiles_Lay(sets, level, [](int) { return false; })) {
        EXPECT_NE(tile.depth, -10);
    }
}
