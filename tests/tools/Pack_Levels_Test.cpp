// Levels: maps become rooms, and the rooms of the game are what they are drawn as.

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <map>
#include <set>

#include "tests/tools/Pack_Game.h"
#include "tools/pack/Pages.h"
#include "tools/pack/Pictures.h"
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
    for (const archive::Room& room : game.built.content.rooms) {
        if (room.tiles.empty() || room.name.rfind("room_level", 0) != 0) continue;
        std::set<std::pair<int, int>> ground;
        for (const archive::RoomTile& tile : room.tiles) {
            if (tile.depth == 1000000) {
                EXPECT_TRUE(ground.emplace(tile.x, tile.y).second) << room.name;
            }
            EXPECT_EQ(tile.scaleX, 1);
        }
        const bool quilted = room.name == "room_level61";
        EXPECT_GE(room.tiles.size(), quilted ? 346U : 175U) << room.name;
        EXPECT_LE(room.tiles.size(), quilted ? 346U : 235U) << room.name;
        if (room.tiles.size() < 235) {
            EXPECT_EQ(ground.size(), 170U) << room.name;
        }
    }
    // The room's corners in level 1, by their place among the 47 shapes.
    std::map<std::pair<int, int>, int> places;
    for (const archive::RoomTile& tile : game.Room("room_level1").tiles) {
        const int place = (tile.sourceY / kCell - 4) * 8 + tile.sourceX / kCell;
        if (tile.depth == 999999 && place < 48) places[{tile.x, tile.y}] = place;
    }
    EXPECT_EQ(places.at({104, 52}), Tiles_WallPlace(2 + 4));
    EXPECT_EQ(places.at({104, 364}), Tiles_WallPlace(1 + 2));
    EXPECT_EQ(places.at({676, 364}), Tiles_WallPlace(1 + 8));
    EXPECT_EQ(places.at({364, 52}), Tiles_WallPlace(1 + 2 + 8)) << "up to the gate's post";
    EXPECT_EQ(places.count({416, 52}), 0U) << "no wall under the gate";
}

// Each of the 47 shapes has a place of its own; a corner counts between joined sides only.
TEST(PackTiles, WallShapesHaveTheirPlaces)
{
    std::set<int> places;
    for (unsigned shape = 0; shape < 256; ++shape) places.insert(Tiles_WallPlace(shape));
    EXPECT_EQ(places.size(), 47U);
    EXPECT_EQ(*places.rbegin(), 46);
    EXPECT_EQ(Tiles_WallPlace(0), 0);
    EXPECT_EQ(Tiles_WallPlace(3 + 16), Tiles_WallPlace(3) + 1);
    EXPECT_EQ(Tiles_WallPlace(5 + 16), Tiles_WallPlace(5));
    EXPECT_EQ(Tiles_WallPlace(255), 46);
}

// ---- scenery

namespace {

struct Area {
    int left, top, right, bottom;
};

// What a level room shows of the puzzle: floor, gate and corridor on screen.
std::vector<Area> FieldOf(const Level& level)
{
    std::vector<Area> cells;
    const std::vector<std::vector<bool>> floor = Level_Floor(level);
    for (int row = -kMapTop / kCell; row < static_cast<int>(floor.size()); ++row) {
        for (int column = 0; column < static_cast<int>(floor[0].size()); ++column) {
            if (!floor[static_cast<size_t>(row)][static_cast<size_t>(column)]) continue;
            const int x = column * kCell, y = kMapTop + row * kCell;
            cells.push_back({x, y, x + kCell, y + kCell});
        }
    }
    return cells;
}

// How far an area reaches into a cell of the field from below, pixels; the whole cell
// where it covers more than a strip.
int Hidden(const Area& area, const std::vector<Area>& field)
{
    int most = 0;
    for (const Area& cell : field) {
        if (area.left >= cell.right || area.right <= cell.left) continue;
        if (area.top >= cell.bottom || area.bottom <= cell.top) continue;
        most = std::max(most, cell.bottom - area.top);
    }
    return most;
}

constexpr int kPeep = 16;  // pixels of a cell that the thing in front of it may hide

}  // namespace

// Each icon of the map has a stretch of the path on either side, but for the first and the
// last of all, and no scenery stands on it.
TEST(PackTiles, APathLeadsFromIconToIcon)
{
    const Game& game = Game::Get();
    constexpr int kHalf = 78;  // pixels from the middle of an icon to that of a stretch
    for (int page = 1; page <= 10; ++page) {
        const archive::Room& room = game.Room("room_menu" + std::to_string(page));
        const int path =
            game.tables.backgroundNames.Find("bCaminhoMundo" + std::to_string((page + 1) / 2));
        std::set<std::pair<int, int>> middles;
        for (const archive::RoomTile& tile : room.tiles) {
            if (tile.backgroundIndex != path) continue;
            const int x = tile.x + tile.width / 2, y = tile.y + tile.height / 2;
            middles.emplace(x, y);
            for (const archive::RoomTile& piece : room.tiles) {
                const bool away = piece.depth > 0 || piece.x >= x || piece.x + piece.width <= x ||
                                  piece.y >= y || piece.y + piece.height <= y;
                EXPECT_TRUE(away) << room.name << " " << x << "," << y;
            }
        }
        for (const archive::RoomInstance& i : room.instances) {
            const std::string& name =
                game.tables.objectNames.List()[static_cast<size_t>(i.objectIndex)];
            if (name.rfind("oLevel", 0) != 0) continue;
            const int x = i.x + kCell, y = i.y + kCell;
            const size_t touched = middles.count({x - kHalf, y}) + middles.count({x + kHalf, y}) +
                                   middles.count({x, y - kHalf}) + middles.count({x, y + kHalf});
            EXPECT_EQ(touched, name == "oLevel1" || name == "oLevel100" ? 1U : 2U) << name;
        }
    }
}

// Neither a tile in front nor an object beside or within the walls hides a cell of the
// field, but for the strip that a box hides too. Clouds and weather drift over all.
TEST(PackScenery, NothingHidesTheField)
{
    const Game& game = Game::Get();
    std::map<std::string, Area> drawn;  // the drawn part of each scenery object, from its origin
    PictureLibrary library;
    std::string error;
    ASSERT_TRUE(Pictures_Load(std::string(CONTENT_FOLDER) + "/art", library, error)) << error;
    const std::vector<SceneryRow> rows =
        Scenery_Parse(game.tables, Table_Read(CONTENT_FOLDER, "scenery.txt"));
    for (const SceneryRow& row : rows) {
        if (row.stand == Stand::sky) continue;
        const ObjectRow& object = game.tables.objects[static_cast<size_t>(row.object)];
        const SpriteRow& sprite =
            game.tables.sprites[static_cast<size_t>(object.object.spriteIndex)];
        std::vector<Image> images;
        ASSERT_TRUE(Pictures_Render(library, sprite.sprite.name, row.width, row.height,
                                    sprite.frames, images, error))
            << error;
        Area box{};
        Pages_Box(images, box.left, box.top, box.right, box.bottom);
        drawn[object.object.name] = {box.left - row.originX, box.top - row.originY,
                                     box.right + 1 - row.originX, box.bottom + 1 - row.originY};
    }
    for (const RoomRow& row : game.tables.rooms) {
        const std::string file = "levels/" + row.level + ".txt";
        if (row.level.empty() || !std::filesystem::exists(CONTENT_FOLDER "/" + file)) continue;
        const std::vector<Area> field =
            FieldOf(Level_Parse(game.tables, file, File_Text(CONTENT_FOLDER "/" + file, file)));
        const archive::Room& room = game.Room(row.name);
        for (const archive::RoomTile& tile : room.tiles) {
            if (tile.depth > 0) continue;
            const Area area{tile.x, tile.y, tile.x + tile.width, tile.y + tile.height};
            EXPECT_EQ(Hidden(area, field), 0) << row.name << " " << tile.x << "," << tile.y;
        }
        for (const archive::RoomInstance& i : room.instances) {
            const std::string& name =
                game.tables.objectNames.List()[static_cast<size_t>(i.objectIndex)];
            const auto found = drawn.find(name);
            if (found == drawn.end()) continue;
            const Area& box = found->second;
            const Area area{i.x + box.left, i.y + box.top, i.x + box.right, i.y + box.bottom};
            EXPECT_LE(Hidden(area, field), kPeep)
                << row.name << " " << name << " " << i.x << "," << i.y;
        }
    }
}

// What stands in a level in numbers is not all alike, and takes no colour of its own.
TEST(PackScenery, ThingsTakeTheTintsOfTheirRow)
{
    const Game& game = Game::Get();
    for (const SceneryRow& row :
         Scenery_Parse(game.tables, Table_Read(CONTENT_FOLDER, "scenery.txt"))) {
        std::set<uint32_t> given(row.tints.begin(), row.tints.end()), seen;
        if (given.empty()) given.insert(0xFFFFFFFFU);
        for (const archive::Room& room : game.built.content.rooms) {
            for (const archive::RoomInstance& i : room.instances) {
                if (i.objectIndex == row.object) seen.insert(i.colour);
            }
        }
        EXPECT_EQ(seen, given) << game.tables.objectNames.List()[static_cast<size_t>(row.object)];
    }
}

TEST(PackScenery, NothingStandsBeforeTheLowerGate)
{
    const Game& game = Game::Get();
    std::set<int> scenery;
    for (const SceneryRow& row :
         Scenery_Parse(game.tables, Table_Read(CONTENT_FOLDER, "scenery.txt"))) {
        if (row.stand != Stand::sky) scenery.insert(row.object);
    }
    for (const archive::Room& room : game.built.content.rooms) {
        if (room.name.rfind("room_level", 0) != 0) continue;
        for (const archive::RoomInstance& i : room.instances) {
            if (scenery.count(i.objectIndex) == 0) continue;
            EXPECT_FALSE(i.x == kLowerGateX && i.y > kLowerGateY) << room.name;
        }
        for (const archive::RoomTile& tile : room.tiles) {
            if (tile.depth > 0) continue;
            EXPECT_FALSE(tile.x < kLowerGateX + kCell && tile.x + tile.width > kLowerGateX &&
                         tile.y + tile.height > kLowerGateY)
                << room.name;
        }
    }
}

// How many of each stand in how many rooms of the whole game. With all levels there,
// nothing is short.
TEST(PackScenery, EachObjectStandsInItsRoomsAndInItsNumber)
{
    const Game& game = Game::Get();
    const struct {
        const char* object;
        int number, rooms;
    } rows[] = {
        {"oMoitaInterna", 198, 18},
        {"oObstaculoInterno", 210, 19},
        {"oObstaculoInterno2", 227, 18},
        {"oObstaculoInterno1Mundo5", 180, 22},
        {"oObstaculoInterno2Mundo5", 148, 22},
        {"oCamelo", 28, 11},
        {"oCamelo2", 19, 11},
        {"oCorujinha", 6, 4},
        {"oCachorrinho", 2, 2},
        {"oArvorezinha1", 116, 22},
        {"oArvorezinha2", 44, 22},
        {"oAnimaAgua", 107, 11},
        {"oAnimaOndinhas", 72, 9},
        {"oNuvemMundo4", 29, 11},
        {"oNuvemMundo4Chuva", 30, 11},
        {"oNuvemMundo5", 45, 22},
        {"oNuvemMundo5Chuva", 23, 5},
        {"oChuva", 21, 21},
        {"oRaiosDeSol", 90, 90},
        {"oSeta", 0, 0},
    };
    for (const auto& row : rows) {
        const int object = game.tables.objectNames.Find(row.object);
        int number = 0, rooms = 0;
        for (const archive::Room& room : game.built.content.rooms) {
            const auto here = static_cast<int>(std::count_if(
                room.instances.begin(), room.instances.end(),
                [&](const archive::RoomInstance& i) { return i.objectIndex == object; }));
            number += here;
            rooms += here > 0;
        }
        EXPECT_EQ(number, row.number) << row.object;
        EXPECT_EQ(rooms, row.rooms) << row.object;
    }
    EXPECT_TRUE(game.built.shortages.empty()) << game.built.shortages[0];
}

// Rain in the rooms that are told, the sun in all others of the map and the campaign.
TEST(PackScenery, ItRainsOrTheSunShines)
{
    const Game& game = Game::Get();
    std::set<std::string> rainy = {"room_menu8"};
    for (const int level :
         {10, 20, 23, 27, 30, 34, 40, 71, 72, 73, 74, 75, 76, 77, 78, 79, 80, 90, 98, 99})
        rainy.insert("room_level" + std::to_string(level));
    for (const RoomRow& row : game.tables.rooms) {
        const bool played = row.name.rfind("room_level", 0) == 0 ||
                            (row.name.rfind("room_menu", 0) == 0 && row.name != "room_menu_novo");
        const std::vector<std::string> listed = game.Listed(game.Room(row.name));
        const auto stands = [&](const char* what) {
            return std::count(listed.begin(), listed.end(), what);
        };
        EXPECT_EQ(stands("oChuva 0,0"), rainy.count(row.name)) << row.name;
        const bool sunny = row.name == "room_titulo" || (played && !rainy.count(row.name));
        EXPECT_EQ(stands("oRaiosDeSol 0,0"), sunny) << row.name;
    }
}
