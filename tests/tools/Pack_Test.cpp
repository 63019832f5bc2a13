// The packer's reading: bad content stops it with file, line and what was expected,
// and the tables of the game say what the rules rely on.

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <functional>
#include <map>
#include <set>

#include "tests/tools/Pack_Game.h"
#include "tools/pack/Tiles.h"

using namespace pack;

namespace {

// The message that `read` stops with; empty when it does not.
std::string Stops(const std::function<void()>& read)
{
    try {
        read();
    } catch (const ContentError& error) {
        return error.what();
    }
    return "";
}

// A small game: two sprites, a wall, a box on it, and what every level places.
Tables SmallGame()
{
    Tables tables;
    Tables_Sprites(tables, Table_Parse("sprites.txt", "sWall size=52x52\nsBox size=52x65\n"));
    Tables_Backgrounds(tables, Table_Parse("backgrounds.txt", "bGround size=416x468\n"));
    Tables_Objects(tables, Table_Parse("objects.txt",
                                       "oWall sprite=sWall solid\n"
                                       "oMonte sprite=sBox parent=oWall\n  Step\n"
                                       "oPlayerArrows\noControl\noPause\noFinal\noPortaoFechado\n"
                                       "oMusica\noPortaoFechadoBaixo\noFechado\noFechado2\n"
                                       "oRaiosDeSol\noChuva\noClock\n"));
    return tables;
}

Level Parse(const std::string& text)
{
    return Level_Parse(SmallGame(), "levels/level.txt", text);
}

}  // namespace

// ---- bad content

TEST(PackErrors, TablesStopWithLineAndExpectation)
{
    struct Case {
        const char* text;
        void (*read)(Tables&, const std::vector<Row>&);
        const char* message;
    };
    const Case cases[] = {
        {"sA size=10x10\nsB\n", Tables_Sprites, "t.txt:2: expected size= for sB"},
        {"sA size=ten\n", Tables_Sprites, "t.txt:1: expected size=number"},
        {"sA size=2000x10\n", Tables_Sprites, "t.txt:1: expected a size from 1x1"},
        {"sA size=10x10\nsA size=9x9\n", Tables_Sprites, "t.txt:2: expected a name of its own"},
        {"sA size=10x10 box=0,0,10,9\n", Tables_Sprites, "t.txt:1: expected box="},
        {"sA size=10x10 colour=red\n", Tables_Sprites, "t.txt:1: expected no colour="},
        {"sA size=10x10 mask=some\n", Tables_Sprites, "t.txt:1: expected mask=box"},
        {"s-A size=10x10\n", Tables_Sprites, "t.txt:1: expected a name of letters"},
        {"sA{1..} size=10x10\n", Tables_Sprites, "t.txt:1: expected {first..last}"},
        {"\n# note\nsA size=\"10x10\n", Tables_Sprites, "t.txt:3: expected a closing quotation"},
        {"  Step\n", Tables_Objects, "t.txt:1: expected a row that this indented one"},
        {"oA sprite=sMissing\n", Tables_Objects, "t.txt:1: expected a sprite, not sMissing"},
        {"oA parent=oB\noB parent=oA\n", Tables_Objects, "expected parents that do not go round"},
        {"oA\n  Jump\n", Tables_Objects, "t.txt:2: expected an event such as"},
        {"oA\n  Keyboard Wx\n", Tables_Objects, "t.txt:2: expected a key such as"},
        {"oA\n  Keyboard\n", Tables_Objects, "t.txt:2: expected a key such as"},
        {"oA\n  Alarm 12\n", Tables_Objects, "t.txt:2: expected an alarm from 0 to 11"},
        {"oA\n  Collision oB\n", Tables_Objects, "t.txt:2: expected the name of an object"},
        {"oA\n  Step\n  Step later\n", Tables_Objects, "t.txt:3: expected each event of oA once"},
        {"oA\noB\n  Step = oA\n", Tables_Objects, "t.txt:3: expected oA to have Step of its own"},
        {"oA\n  Step later\noB\n  Step = oA\n", Tables_Objects, "t.txt:4: expected oA to have"},
        {"room_a\n  oMissing 0,0\n", Tables_Rooms, "t.txt:2: expected an object, not oMissing"},
        {"room_a colour=blue\n", Tables_Rooms, "t.txt:1: expected colour=#rrggbb"},
        {"xA\n", Tables_Sounds, "t.txt:1: expected either file= or tones="},
        {"xA tones=0:1:440\n", Tables_Sounds, "t.txt:1: expected a note start:length"},
        {"xA tones=0:0:440:1\n", Tables_Sounds, "t.txt:1: expected a note within"},
        {"instance a\nglobal b\n", Tables_Variables, "t.txt:2: expected the kinds in the order"},
        {"global a\ninstance a\n", Tables_Variables, "t.txt:2: expected a name of its own"},
        {"f : real (number n)\n", Tables_Functions, "t.txt:1: expected a parameter such as"},
        {"f real\n", Tables_Functions, "t.txt:1: expected `name [self] : result"},
        {"version 1.0\n", Tables_Game, "t.txt:1: expected a version such as"},
        {"speed 30\n", Tables_Game, "t.txt:1: expected a value of the header"},
    };
    for (const Case& test : cases) {
        Tables tables;
        std::string message = Stops([&] { test.read(tables, Table_Parse("t.txt", test.text)); });
        EXPECT_NE(message.find(test.message), std::string::npos)
            << test.text << "-> " << message << "\nwanted " << test.message;
    }
    EXPECT_EQ(Stops([] { Table_Read(CONTENT_FOLDER, "none.txt"); }),
              "none.txt:1: expected a readable file");
}

TEST(PackErrors, LevelsStopWithLineAndExpectation)
{
    const std::pair<const char*, const char*> cases[] = {
        {"world 1\n", "level.txt:1: expected a map"},
        {"world 6\n", "level.txt:1: expected a world from 1 to 5"},
        {"map\n #F#\n #x#\n", "level.txt:3: expected only the characters"},
        {"map\n #F#\n #G#\n $.\n", "level.txt:2: expected exactly one @"},
        {"map\n #F#\n #G#\n @$\n", "level.txt:2: expected as many targets as boxes"},
        {"map\n #F#\n #G#\n @$.\n\nsolution W2 X\n", "level.txt:6: expected steps such as"},
        {"map\n #F#\n #G#\n @$.\n\ninstances\n  oWall 52,-104\n",
         "level.txt:2: expected the listed instances of oWall"},
        {"map\n #F#\n #G#\n @$.\n\ninstances\n  oNone 52,-104\n",
         "level.txt:7: expected an object"},
    };
    for (const auto& [text, wanted] : cases) {
        std::string message = Stops([&, t = text] { Parse(t); });
        EXPECT_NE(message.find(wanted), std::string::npos) << text << "-> " << message;
    }
}

TEST(PackErrors, SceneryNamesAnObjectItsRoomsAndACount)
{
    auto read = [](const std::string& text) {
        return Stops([&] { Scenery_Parse(SmallGame(), Table_Parse("scenery.txt", text)); });
    };
    EXPECT_NE(read("oNone levels=1 count=1\n").find(":1: expected an object"), std::string::npos);
    EXPECT_NE(read("oWall levels=4..2 count=1\n").find("expected levels= with numbers"),
              std::string::npos);
    EXPECT_NE(read("oWall levels=1,x count=1\n").find("expected levels= with numbers"),
              std::string::npos);
    EXPECT_NE(read("oWall levels=1\n").find("count= above 0"), std::string::npos);
    EXPECT_NE(read("oWall count=3\n").find("expected levels= or pages="), std::string::npos);
}

TEST(PackErrors, TileSetsMustFillTheirBackground)
{
    auto read = [](const std::string& text) {
        return Stops([&] { TileSets_Parse(SmallGame(), Table_Parse("tilesets.txt", text)); });
    };
    EXPECT_NE(read("bGround cell=52x52 columns=8 rows=3\n").find(":1: expected columns and rows"),
              std::string::npos);
    const std::string head =
        "bGround cell=52x52 columns=8 rows=9\n  ground 0,0\n  outside 1,0\n"
        "  path 2,0\n  mat 3,0\n  edge 0,1\n";
    EXPECT_NE(read(head).find("expected cells for wall"), std::string::npos);
    EXPECT_NE(read(head + "  wall 2,3\n").find(":7: expected room for 47"), std::string::npos);
    EXPECT_NE(read(head + "  wall 8,0\n").find(":7: expected a cell inside"), std::string::npos);
    EXPECT_EQ(read(head + "  wall 0,3\n"), "");
}

// ---- tables

TEST(PackTables, NumberedRowsAndQuotesAreReadWhole)
{
    std::vector<Row> rows = Table_Parse(
        "t.txt", "a{9..10} x=s{n} \"two words\" file=l{nnn}  # note\n  Step = b{n}\nlast k=\"\"\n");
    ASSERT_EQ(rows.size(), 3U);
    EXPECT_EQ(rows[1].name, "a10");
    EXPECT_EQ(rows[1].Text("x"), "s10");
    EXPECT_EQ(rows[0].Text("file"), "l009");
    EXPECT_EQ(rows[1].Words(), std::vector<std::string>{"two words"});
    EXPECT_EQ(rows[0].rows[0].Words(), (std::vector<std::string>{"=", "b9"}));
    EXPECT_EQ(rows[2].Text("k"), "");
}

// The rules and the names of code rows rely on these numbers.
TEST(PackTables, NumbersThatTheGameReliesOn)
{
    const Tables& tables = Game::Get().tables;
    EXPECT_EQ(tables.objectNames.Find("oMonte"), 176);
    for (const char* figure : {"oPlayerArrows", "oPlayerArrows2"}) {
        for (const char* target : {"oFechado", "oAberto", "oFechado2", "oAberto2"}) {
            EXPECT_LT(tables.objectNames.Find(figure), tables.objectNames.Find(target));
        }
    }
    EXPECT_EQ(tables.roomNames.Count(), 117);
    EXPECT_EQ(tables.roomNames.Find("room_menu1"), 4);
    EXPECT_EQ(tables.roomNames.Find("room_level1"), 17);
    EXPECT_EQ(tables.roomNames.Find("room_level100"), 116);
    EXPECT_EQ(tables.soundNames.Find("xMundo1"), 5);
    EXPECT_EQ(tables.soundNames.Find("xFase7"), 12);
    EXPECT_GE(tables.functions.size(), 99U);
    EXPECT_EQ(tables.functions[95].name, "instance_number");
    EXPECT_EQ(tables.functions[98].name, "instance_destroy");
    EXPECT_EQ(tables.general.functionClasses & 4, 4U) << "pads are polled";
}

TEST(PackTables, BoxIsAWallThatIsNotSolid)
{
    const Game& game = Game::Get();
    auto object = [&](const char* name) { return game.Object(name); };
    EXPECT_EQ(object("oMonte").parentIndex, game.tables.objectNames.Find("oWall"));
    std::set<std::string> solid;
    for (const archive::Object& each : game.built.content.objects) {
        if (each.solid) solid.insert(each.name);
    }
    EXPECT_EQ(solid, (std::set<std::string>{"oPlayerArrows", "oPlayerArrows2", "oWall",
                                            "oPortaoFechado"}));
    EXPECT_FALSE(object("oFinal").visible);
    EXPECT_FALSE(object("oWall").visible);
    EXPECT_FALSE(object("oHitMenuNovo").visible);
    EXPECT_TRUE(object("oTransicao").persistent);
    EXPECT_EQ(object("oAberto2").depth, 10);
    EXPECT_EQ(object("oClock").depth, -100010);
    const archive::Sprite& box =
        game.tables.sprites[static_cast<size_t>(game.tables.spriteNames.Find("sMonte"))].sprite;
    EXPECT_EQ(box.originY, 13);
    EXPECT_EQ(box.bboxTop, 13);
    EXPECT_EQ(box.bboxBottom, 64);
}

// ---- code table

TEST(PackCode, RowsCarryTheNumberAndFunctionsTheWord)
{
    const Game& game = Game::Get();
    std::map<std::string, std::string> functions;
    for (const CodeRowPlan& row : game.plan.rows) {
        EXPECT_TRUE(functions.emplace(row.name, row.function).second) << row.name << " twice";
    }
    EXPECT_EQ(functions.at("vxl_Object_oAberto_Collision_176"),
              "vxl_Object_oAberto_Collision_oMonte");
    EXPECT_EQ(functions.at("vxl_Object_oPlayerArrows_Keyboard_87"),
              "vxl_Object_oPlayerArrows_Keyboard_W");
    EXPECT_EQ(functions.at("vxl_Object_oPlayerArrows_KeyPress_0"),
              "vxl_Object_oPlayerArrows_KeyPress_NoKey");
    EXPECT_EQ(functions.at("vxl_Object_oMonte_Step_0"), "vxl_Object_oMonte_Step");
    // Scenery stands on the grid as boxes do: one rule for both.
    EXPECT_EQ(functions.at("vxl_Object_oCamelo_Step_0"), "vxl_Object_oMonte_Step");
    EXPECT_EQ(functions.at("vxl_Room_room_intro_Create"), "vxl_Room_room_intro_Create");
}

TEST(PackCode, EventsLeadToTheirRowsOrToNone)
{
    const Game& game = Game::Get();
    int coded = 0, later = 0;
    for (const archive::Object& object : game.built.content.objects) {
        for (int type = 0; type < archive::kEventTypes; ++type) {
            const std::vector<archive::Event>& events = object.events[type];
            EXPECT_TRUE(std::is_sorted(events.begin(), events.end(),
                                       [](const archive::Event& a, const archive::Event& b) {
                                           return a.subtype < b.subtype;
                                       }));
            for (const archive::Event& event : events) {
                (event.codeId < 0 ? later : coded) += 1;
                if (event.codeId < 0) continue;
                const std::string& row = game.plan.rows[static_cast<size_t>(event.codeId)].name;
                EXPECT_EQ(row.find("vxl_Object_" + object.name + "_"), 0U) << row;
            }
        }
    }
    EXPECT_GE(coded, 20);
    EXPECT_GE(game.plan.later.size(), static_cast<size_t>(later));
}

TEST(PackCode, GeneratedSourcesNameSlotsInOrder)
{
    const Game& game = Game::Get();
    std::string names = Code_Names(game.tables, game.plan);
    std::string table = Code_Table(game.tables, game.plan);
    std::string builtins = Code_Builtins(game.tables);
    EXPECT_NE(names.find("inline constexpr Object oMonte{176};"), std::string::npos);
    EXPECT_NE(names.find("inline constexpr Global passaTela{0};"), std::string::npos);
    // The same script name as a global and as an instance's: two slots, two words.
    EXPECT_NE(names.find("inline constexpr Global targetRoom{1};"), std::string::npos);
    EXPECT_NE(names.find("inline constexpr InstanceVar ownTargetRoom{"), std::string::npos);
    EXPECT_EQ(names.find("void vxl_Object_oCamelo_Step("), std::string::npos);
    EXPECT_NE(table.find("{\"vxl_Object_oCamelo_Step_0\", vxl_Object_oMonte_Step}"),
              std::string::npos);
    std::string user = std::to_string(game.tables.UserVariables());
    EXPECT_NE(table.find("globalVarCount = " + user), std::string::npos);
    EXPECT_NE(table.find("instanceVarCount = " + user), std::string::npos);
    EXPECT_NE(
        builtins.find("inline bool place_snapped(CInstance* self, double hsnap, double vsnap,"),
        std::string::npos);
    EXPECT_EQ(builtins.find(" place_free("), std::string::npos) << "a plain function of the seam";
}
