// Room records of an archive: what a template takes from them, and what a running
// room makes of it.

#include <cstring>

#include "Files/Background/CBackground.h"
#include "Files/Base/Archive_Writer.h"
#include "Files/Run/Run_State.h"
#include "tests/Files/support_World.h"

namespace {

class RoomLoad : public World {
protected:
    void SetUp() override
    {
        World::SetUp();
        Background_Init();
        object_ = AddObject("A", {{EVENT_CREATE, 0}});
        AddCode("pre");
        AddCode("created");
        AddCode("roomCode");
    }
    void TearDown() override
    {
        World::TearDown();
        Background_Quit();
    }
    void Load(const archive::Content& content)
    {
        bytes_ = archive::Write(content);
        for (size_t at = 8; at + 8 <= bytes_.size();) {
            uint32_t size;
            std::memcpy(&size, &bytes_[at + 4], sizeof size);
            if (std::memcmp(&bytes_[at], "ROOM", 4) == 0) {
                EXPECT_TRUE(Room_Load(&bytes_[at + 8], size, bytes_.data()));
            }
            at += 8 + size;
        }
    }

    std::vector<uint8_t> bytes_;
    int32_t object_;
};

archive::Content OneRoom()
{
    archive::Content content;
    archive::Room room;
    room.name = "room_one";
    room.caption = "One";
    room.width = 1000;
    room.height = 500;
    room.speed = 45;
    room.colour = 0x112233;
    room.codeId = 3;
    room.flags = 1;
    room.backgrounds[1].visible = true;
    room.backgrounds[1].backgroundIndex = 0;
    room.backgrounds[1].x = -7;
    room.backgrounds[1].verticalSpeed = 3;
    room.backgrounds[1].stretch = true;
    room.views[2].viewWidth = 321;
    room.views[2].followObject = 12;
    archive::RoomInstance instance;
    instance.x = 5;
    instance.y = -6;
    instance.objectIndex = 0;
    instance.id = 100042;
    instance.preCreateCode = 1;
    instance.creationCode = 2;
    instance.scaleX = -1;
    instance.colour = 0x80AABBCCU;
    instance.rotation = 30;
    room.instances.push_back(instance);
    instance.id = 100043;
    instance.objectIndex = -1;
    room.instances.push_back(instance);
    instance.objectIndex = 55;  // no such object
    room.instances.push_back(instance);
    archive::RoomTile tile;
    tile.x = 52;
    tile.backgroundIndex = 4;
    tile.sourceY = 104;
    tile.width = 52;
    tile.depth = 1000000;
    tile.id = 10000001;
    tile.colour = 0x33FFFFFFU;
    room.tiles.push_back(tile);
    content.rooms.resize(2);  // an empty slot in front
    content.rooms[1] = room;
    return content;
}

TEST_F(RoomLoad, TemplateAndRunningRoom)
{
    CBackground* picture = VxNew<CBackground>();
    picture->width = 500;
    picture->height = 250;
    Background_Add(picture);
    Load(OneRoom());
    EXPECT_EQ(Room_Count(), 2);
    EXPECT_FALSE(Room_Exists(0));
    ASSERT_TRUE(Room_Exists(1));
    const CRoom& source = *Room_Template(1);
    EXPECT_STREQ(source.name, "room_one");
    EXPECT_TRUE(source.viewsEnabled);
    EXPECT_FALSE(source.clearViewBackground);
    EXPECT_TRUE(source.clearDisplayBuffer) << "the bit is stored inverted";
    EXPECT_EQ(source.activeCount, 0);
    ASSERT_TRUE(Room_Prepare());
    EXPECT_STREQ(source.creationCodeName, "roomCode");

    Room_ResetRunning();
    Object_BuildEventTables();
    StartRoom(1, true);
    EXPECT_EQ(Take(), (Log{"pre#100042", "A.Create", "created#100042", "roomCode#0"}));
    EXPECT_EQ(Run_Room->speed, 45);
    EXPECT_EQ(Run_Room->colour, 0x112233);
    EXPECT_STREQ(Run_Room->caption.c_str(), "One");
    EXPECT_EQ(Run_Room->backgrounds[1].x, -7);
    EXPECT_EQ(Run_Room->backgrounds[1].vspeed, 3);
    EXPECT_EQ(Run_Room->backgrounds[1].xscale, 2);
    EXPECT_EQ(Run_Room->backgrounds[1].yscale, 2);
    EXPECT_EQ(Run_Room->backgrounds[0].xscale, 1);
    EXPECT_EQ(Run_Room->views[2].wview, 321);
    EXPECT_EQ(Run_Room->views[2].object, 12);

    ASSERT_EQ(Run_Room->activeCount, 1) << "no instance without an object";
    const CInstance& made = *Run_Room->activeHead;
    EXPECT_EQ(made.id, 100042);
    EXPECT_EQ(made.y, -6);
    EXPECT_EQ(made.image_xscale, -1);
    EXPECT_EQ(made.image_blend, 0xAABBCC);
    EXPECT_NEAR(made.image_alpha, 128 / 255.0, 1e-6);
    EXPECT_EQ(made.image_angle, 30);
    ASSERT_EQ(Run_Room->tiles.size(), 1U);
    EXPECT_EQ(Run_Room->tiles[0].sourceY, 104);
    EXPECT_EQ(Run_Room->tiles[0].depth, 1000000);
    EXPECT_EQ(Run_Room->tiles[0].blend, 0xFFFFFF);
    EXPECT_NEAR(Run_Room->tiles[0].alpha, 0.2, 1e-6);
}

// A second start makes the room anew with the same ids and codes: binding the codes in
// the loaded records is done once.
TEST_F(RoomLoad, RestartFromTheSameRecords)
{
    Load(OneRoom());
    Room_ResetRunning();
    Object_BuildEventTables();
    StartRoom(1, true);
    const Log first = Take();
    EndRoom(false);
    StartRoom(1, false);
    EXPECT_EQ(Take(), first);
    EXPECT_NE(Instance_FromId(100042), nullptr);
}

}  // namespace
