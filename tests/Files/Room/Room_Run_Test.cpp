// The start and end of rooms: the order of events and codes, what is carried over,
// what rests, and what a request in the middle does.

#include <algorithm>

#include "Files/Base/Error.h"
#include "Files/Run/Run_State.h"
#include "Files/Run/Services.h"
#include "Host/Host_Stage.h"
#include "tests/Files/support_World.h"

namespace {

const std::vector<EventKey> kLife = {
    {EVENT_PRECREATE, 0},
    {EVENT_CREATE, 0},
    {EVENT_DESTROY, 0},
    {EVENT_CLEANUP, 0},
    {EVENT_OTHER, OTHER_GAME_START},
    {EVENT_OTHER, OTHER_GAME_END},
    {EVENT_OTHER, OTHER_ROOM_START},
    {EVENT_OTHER, OTHER_ROOM_END},
};

std::string Code(const char* name, int32_t id)
{
    return std::string(name) + "#" + std::to_string(id);
}

class RoomRun : public World {
protected:
    void Go(int32_t room)
    {
        EndRoom(false);
        StartRoom(room, false);
    }
};

TEST_F(RoomRun, StartOfAGameAndOfARoom)
{
    const int32_t a = AddObject("A", kLife);
    const int32_t b = AddObject("B", kLife);
    Object(b).depth = -5;
    const int32_t one = AddRoom("room_one");
    const int32_t two = AddRoom("room_two");
    const int32_t first = Place(one, a, 1, 1, "create", "preCreate");
    Place(one, -1);
    const int32_t second = Place(one, b, 2, 2, "create2");
    Place(two, a);
    SetRoomCode(one, "roomCode");
    On("A.PreCreate", [&](CInstance*, CInstance*) {
        CInstance* later = Instance_FromId(second);
        if (!later) return;
        EXPECT_FALSE(later->created);
        EXPECT_EQ(later->x, 2) << "all stand before the first Create";
        EXPECT_EQ(Object(b).instances.Count(), 1);
    });
    On(Code("roomCode", 0), [&](CInstance* self, CInstance* other) {
        EXPECT_EQ(self, other);
        EXPECT_EQ(Instance_FromId(0), nullptr);
        EXPECT_EQ(Run_Room->activeCount, 2) << "a stand-in that no list holds";
    });
    Begin(true);
    // Creation goes by record; the room events by depth, so B comes first.
    EXPECT_EQ(Take(),
              (Log{"A.PreCreate", Code("preCreate", first), "A.Create", Code("create", first),
                   "B.PreCreate", "B.Create", Code("create2", second), "B.GameStart", "A.GameStart",
                   Code("roomCode", 0), "B.RoomStart", "A.RoomStart"}));
    Go(two);
    EXPECT_EQ(Take(), (Log{"B.RoomEnd", "A.RoomEnd", "A.PreCreate", "A.Create", "A.RoomStart"}))
        << "no Destroy, no Clean up for what goes with its room";
    EXPECT_EQ(Instance_FromId(first), nullptr);
    EndRoom(true);
    EXPECT_EQ(Take(), (Log{"A.RoomEnd", "A.GameEnd"}));
}

// The services' places: effects go at a start, what belongs to the room at its end.
TEST_F(RoomRun, EndOfTheGameWithPersistentInstances)
{
    const int32_t a = AddObject("A", kLife);
    const int32_t b = AddObject("B", kLife);
    Object(b).flags |= OBJECT_PERSISTENT;
    const int32_t room = AddRoom("room_one");
    Place(room, a);
    Place(room, b);
    Begin();
    static World* world;
    world = this;
    const ServiceHook cleared = [] { world->Ran(nullptr, nullptr, "clearRoom"); };
    Service_Hook(ServicePlace::ClearRoom, cleared);
    EndRoom(true);
    Service_Unhook(ServicePlace::ClearRoom, cleared);
    EXPECT_EQ(Take(),
              (Log{"A.RoomEnd", "B.RoomEnd", "B.CleanUp", "A.GameEnd", "B.GameEnd", "clearRoom"}));
    // A restart in the process does not bring the carried ones back.
    Room_ResetRunning();
    StartRoom(room, true);
    EXPECT_EQ(Object(b).instances.Count(), 1);
}

TEST_F(RoomRun, PersistentInstanceKeepsItself)
{
    const int32_t a = AddObject("A", kLife);
    Object(a).flags |= OBJECT_PERSISTENT;
    const int32_t one = AddRoom("room_one");
    const int32_t two = AddRoom("room_two");
    const int32_t id = Place(one, a, 10, 20);
    Begin();
    CInstance* before = Instance_FromId(id);
    before->alarm[3] = 17;
    before->SetPosition(50, 60);
    *before->InternalGetVar(4) = RValue(2.5);
    Go(two);
    EXPECT_EQ(Take(), (Log{"A.RoomEnd", "A.RoomStart"}));
    CInstance* after = Instance_FromId(id);
    ASSERT_NE(after, nullptr);
    EXPECT_EQ(after->alarm[3], 17);
    EXPECT_EQ(after->x, 50);
    EXPECT_EQ(after->xstart, 10);
    EXPECT_EQ(REAL_RValue(after->InternalGetVar(4)), 2.5);
    EXPECT_TRUE(after->created);
    EXPECT_EQ(Object(a).instances.Count(), 1);
    EXPECT_EQ(Object(a).instancesRecursive.Count(), 1);
    // Back in its first room it meets its record's twin: one instance, no Create.
    after->depth = 30;
    Go(one);
    EXPECT_EQ(Take(), (Log{"A.RoomEnd", "A.RoomStart"}));
    EXPECT_EQ(Run_Room->activeCount, 1);
    EXPECT_EQ(Object(a).instances.Count(), 1);
    EXPECT_EQ(First(a)->x, 50);
    EXPECT_EQ(First(a)->sortedDepth, 30);
    // The same at a restart of the room.
    Go(one);
    EXPECT_EQ(Take(), (Log{"A.RoomEnd", "A.RoomStart"}));
}

// A carried instance that was changed into another object meets its twin: it stands in
// the lists of the object that it is.
TEST_F(RoomRun, ChangedInstanceMeetsItsTwin)
{
    const int32_t a = AddObject("A", {});
    const int32_t b = AddObject("B", {});
    Object(a).flags |= OBJECT_PERSISTENT;
    Object(b).flags |= OBJECT_PERSISTENT;
    const int32_t room = AddRoom("room_one");
    const int32_t id = Place(room, a);
    Begin();
    Instance_Change(Instance_FromId(id), b, false);
    ApplyPendingChanges();
    Go(room);
    EXPECT_EQ(Object(a).instances.Count(), 0);
    EXPECT_EQ(Object(b).instances.Count(), 1);
    EXPECT_EQ(Instance_FromId(id)->object_index, b);
    EXPECT_EQ(Run_Room->activeCount, 1);
}

TEST_F(RoomRun, PersistentRoomRests)
{
    const int32_t a = AddObject("A", kLife);
    const int32_t one = AddRoom("room_one");
    const int32_t two = AddRoom("room_two");
    const int32_t id = Place(one, a, 10, 20, "create");
    const int32_t asleep = Place(one, a, 30, 40);
    SetRoomCode(one, "roomCode");
    Begin();
    Run_Room->persistent = true;
    Run_Room->speed = 77;
    Instance_FromId(id)->SetPosition(11, 22);
    Instance_Deactivate(Instance_FromId(asleep));
    ApplyPendingChanges();
    // A change that is still pending when the room ends takes effect in this room.
    On("A.RoomEnd", [](CInstance* self, CInstance*) { Instance_SetDepth(self, 9); });
    Go(two);
    EXPECT_EQ(Take(), Log{"A.RoomEnd"});
    EXPECT_EQ(Object(a).instances.Count(), 0) << "no other room sees them";
    EXPECT_EQ(Instance_FromId(id), nullptr);
    Frame();
    Go(one);
    EXPECT_EQ(Take(), Log{"A.RoomStart"});
    EXPECT_EQ(Run_Room->speed, 77);
    EXPECT_EQ(First(a)->x, 11);
    EXPECT_EQ(First(a)->sortedDepth, 9);
    EXPECT_EQ(Run_Room->deactivatedCount, 1);
    // The game's end frees resting rooms as well.
    Go(two);
    EndRoom(true);
    Room_DeleteRunning();
    EXPECT_EQ(Run_Room, nullptr);
}

// What is deactivated rests with its room: its id names nothing in another room, where
// waking and moving it would tear that room's lists. What was destroyed or woken in the
// last phase neither comes back nor stands in the id table twice.
TEST_F(RoomRun, DeactivatedInstancesRestWithTheirRoom)
{
    const int32_t a = AddObject("A", {});
    const int32_t keeper = AddObject("Keeper", {});
    Object(keeper).flags |= OBJECT_PERSISTENT;
    const int32_t one = AddRoom("room_one");
    const int32_t two = AddRoom("room_two");
    const int32_t asleep = Place(one, a), killed = Place(one, a), kept = Place(one, keeper);
    Place(two, a);
    Begin();
    Run_Room->persistent = true;
    for (const int32_t id : {asleep, killed, kept}) Instance_Deactivate(Instance_FromId(id));
    ApplyPendingChanges();
    for (const int32_t id : {killed, kept}) Instance_Activate(Instance_FromId(id));
    Instance_Destroy(Instance_FromId(killed), false);
    Go(two);
    for (const int32_t id : {asleep, killed, kept}) EXPECT_EQ(Instance_FromId(id), nullptr);
    EXPECT_TRUE(Object(keeper).instances.Empty());
    EXPECT_EQ(Object(a).instances.Count(), 1);
    Go(one);
    EXPECT_EQ(Run_Room->deactivatedHead, Instance_FromId(asleep));
    EXPECT_EQ(ActiveIds(), std::vector<int32_t>{kept});
    EXPECT_EQ(Object(keeper).instances.Count(), 1);
    Instance_Destroy(Instance_FromId(kept), false);
    PurgeInstances();
    EXPECT_EQ(Instance_FromId(kept), nullptr);
    Instance_Activate(Instance_FromId(asleep));
    ApplyPendingChanges();
    EXPECT_EQ(ActiveIds(), std::vector<int32_t>{asleep});
}

// A change that is asked for in a Create event: the other instances' events are dropped,
// their codes run, and so does the room's; no Room Start.
TEST_F(RoomRun, RequestInACreateEvent)
{
    const int32_t a = AddObject("A", kLife);
    const int32_t keeper = AddObject("Keeper", kLife);
    Object(keeper).flags |= OBJECT_PERSISTENT;
    const int32_t one = AddRoom("room_one");
    AddRoom("room_two");
    const int32_t first = Place(one, a, 0, 0, "code1");
    const int32_t second = Place(one, a, 0, 0, "code2", "pre2");
    Place(one, keeper);
    SetRoomCode(one, "roomCode");
    On("A.Create", [](CInstance*, CInstance*) { Room_Goto(1); });
    Begin(true);
    EXPECT_EQ(Take(), (Log{"A.PreCreate", "A.Create", Code("code1", first), Code("pre2", second),
                           Code("code2", second), "Keeper.PreCreate", "Keeper.Create",
                           Code("roomCode", 0)}));
    EXPECT_EQ(New_Room, 1);
    // In a persistent room nothing is dropped.
    Room_Template(one)->persistent = true;
    Room_ResetRunning();
    StartRoom(one, false);
    const Log log = Take();
    EXPECT_EQ(std::count(log.begin(), log.end(), "A.Create"), 2);
}

// A request in Room Start: the walk goes on, and only what is persistent hears it.
TEST_F(RoomRun, RequestInRoomStart)
{
    const int32_t a = AddObject("A", kLife);
    const int32_t keeper = AddObject("Keeper", kLife);
    Object(keeper).flags |= OBJECT_PERSISTENT;
    const int32_t one = AddRoom("room_one");
    AddRoom("room_two");
    Place(one, a);
    Place(one, a);
    Place(one, keeper);
    On("A.RoomStart", [](CInstance*, CInstance*) { Room_Goto(1); });
    for (const char* label : {"A.PreCreate", "A.Create", "Keeper.PreCreate", "Keeper.Create",
                              "A.GameStart", "Keeper.GameStart"})
        Forget(label);
    Begin(true);
    EXPECT_EQ(Take(), (Log{"A.RoomStart", "Keeper.RoomStart"}));
    // Room End runs although a change is under way, and the request outlives it.
    On("A.RoomStart", [](CInstance*, CInstance*) {});
    On("A.RoomEnd", [](CInstance* self, CInstance*) {
        EXPECT_EQ(New_Room, ROOM_NONE);
        Instance_Destroy(self, false);
    });
    EndRoom(false);
    EXPECT_EQ(New_Room, 1);
}

// What a Room End event destroys is not carried.
TEST_F(RoomRun, DestroyedInRoomEnd)
{
    const int32_t a = AddObject("A", kLife);
    Object(a).flags |= OBJECT_PERSISTENT;
    const int32_t one = AddRoom("room_one");
    AddRoom("room_two");
    Place(one, a);
    Begin();
    On("A.RoomEnd", [](CInstance* self, CInstance*) { Instance_Destroy(self, true); });
    Go(1);
    EXPECT_EQ(Take(), (Log{"A.RoomEnd", "A.Destroy", "A.CleanUp"}));
    EXPECT_EQ(Run_Room->activeCount, 0);
}

int s_exitCode;

// Without a window the program leaves behind the place of the first creation code.
TEST_F(RoomRun, HeadlessLeavesBeforeRoomStart)
{
    const int32_t a = AddObject("A", kLife);
    Place(AddRoom("room_one"), a);
    g_Switches.headless = true;
    s_exitCode = -5;
    static Log seen;
    Error_SetExitHook([](int code) {
        s_exitCode = code;
        seen = World::Current()->Take();
    });
    Begin(true);
    Error_SetExitHook(nullptr);
    EXPECT_EQ(s_exitCode, 0);
    EXPECT_EQ(seen, (Log{"A.PreCreate", "A.Create", "A.GameStart"}));
}

TEST_F(RoomRun, RequestsAndTheRoomOrder)
{
    for (const char* name : {"room_a", "room_b", "room_c"}) AddRoom(name);
    Begin();
    const int32_t order[] = {2, 0, 1};
    Room_SetOrder(order, 3);
    EXPECT_EQ(Room_Next(2), 0);
    EXPECT_EQ(Room_Next(1), -1);
    EXPECT_EQ(Room_Previous(2), -1);
    EXPECT_EQ(Room_Next(7), -1);
    EXPECT_EQ(Room_Find("room_b"), 1);
    EXPECT_STREQ(Room_Name(9), "<undefined>");

    Current_Room = 0;
    Room_GotoNext();
    EXPECT_EQ(New_Room, 1);
    Room_GotoPrevious();
    EXPECT_EQ(New_Room, 2);
    struct Refusal {
        int32_t current;
        void (*ask)();
        const char* words;
    };
    const Refusal refusals[] = {
        {1, Room_GotoNext, "Moving to next room after the last room."},
        {2, Room_GotoPrevious, "Moving to previous room before the first room."},
        {0, [] { Room_Goto(12); }, "Unexisting room number: 12"},
    };
    for (const Refusal& refusal : refusals) {
        Error_Init();
        New_Room = ROOM_NONE;
        Current_Room = refusal.current;
        refusal.ask();
        EXPECT_EQ(New_Room, ROOM_STOP);
        EXPECT_NE(Stage_ErrorTexts().back().find(refusal.words), VxString::npos);
    }
}

// A view keeps its target inside its borders, within the room, at its own speed.
TEST_F(RoomRun, ViewsFollow)
{
    const int32_t a = AddObject("A", {});
    const int32_t room = AddRoom("room_one");
    CRoom* source = Room_Template(room);
    source->width = 1000;
    source->height = 800;
    source->viewsEnabled = true;
    CView& view = source->views[0];
    view.visible = true;
    view.wview = 200;
    view.hview = 100;
    view.hborder = 40;
    view.vborder = 60;
    view.object = a;
    Place(room, a, 500, 400);
    Begin();
    CView& live = Run_Room->views[0];
    Room_FollowViews();
    EXPECT_EQ(live.xview, 500 + 40 - 200);
    EXPECT_EQ(live.yview, 400 - 50) << "borders that meet: the target in the middle";
    First(a)->SetPosition(399.9F, 790);
    Room_FollowViews();
    EXPECT_EQ(live.xview, 340) << "within the borders";
    EXPECT_EQ(live.yview, 700) << "the room's edge";
    live.hspeed = 5;
    First(a)->SetPosition(100, 790);
    Room_FollowViews();
    EXPECT_EQ(live.xview, 335);
    First(a)->marked = true;
    Room_FollowViews();
    EXPECT_EQ(live.xview, 335) << "no target, no move";
    First(a)->marked = false;
}

TEST_F(RoomRun, BackgroundsScrollSeenOrNot)
{
    AddRoom("room_one");
    Begin();
    Run_Room->backgrounds[3].hspeed = 2;
    Run_Room->backgrounds[3].vspeed = -1.5F;
    Frame();
    Frame();
    EXPECT_EQ(Run_Room->backgrounds[3].x, 4);
    EXPECT_EQ(Run_Room->backgrounds[3].y, -3);
}

}  // namespace
