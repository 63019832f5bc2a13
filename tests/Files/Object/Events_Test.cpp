// How an event is found and run, and who is listed for it.

#include "Files/Base/Error.h"
#include "Files/Run/Run_State.h"
#include "tests/Files/support_Script.h"
#include "tests/Files/support_World.h"

namespace {

void Function_RegisterForTest()
{
    Function_Game_Register();
    Function_Interaction_Register();
}

class Events : public World {
protected:
    void SetUp() override
    {
        World::SetUp();
        g_Switches.noErrors = true;
        Function_RegisterForTest();
        room_ = AddRoom("room_one");
    }
    bool Listed(int32_t type, int32_t subtype, const std::vector<int32_t>& objects)
    {
        const EventObjects& entry = g_EventObjects[type][subtype];
        return std::vector<int32_t>(entry.objects, entry.objects + entry.count) == objects;
    }
    CInstance* Make(int32_t object) { return Room_CreateInstance(0, 0, object); }

    int32_t room_ = -1;
};

TEST_F(Events, AChildRunsItsParentsEventAsTheParentsOwn)
{
    const int32_t root = AddObject("Root", {{EVENT_CREATE, 0}});
    const int32_t parent = AddObject("Parent", {{EVENT_CREATE, 0}}, root);
    const int32_t child = AddObject("Child", {}, parent);
    Begin();
    int32_t selfObject = -1, otherObject = -1;
    On("Parent.Create", [&](CInstance* self, CInstance* other) {
        selfObject = self->object_index;
        otherObject = other->object_index;
        CallFunction(self, other, "event_inherited");
        // What the nested event left behind is the outer event's context again.
        EXPECT_EQ(Current_Event_Object, parent);
    });
    On("Root.Create", [&](CInstance* self, CInstance* other) {
        EXPECT_EQ(Current_Event_Object, root);
        CallFunction(self, other, "event_inherited");
    });
    Make(child);
    EXPECT_EQ(Take(), (Log{"Parent.Create", "Root.Create"}));
    EXPECT_EQ(selfObject, child);
    EXPECT_EQ(otherObject, child);
}

TEST_F(Events, EmptyCodeCountsAsNoEvent)
{
    const int32_t parent = AddObject("Parent", {{EVENT_CREATE, 0}, {EVENT_STEP, 0}});
    const int32_t child = AddObject("Child", {{EVENT_STEP, 0}}, parent);
    CObjectSW& object = Object(child);
    EXPECT_TRUE(object.SetEvent(EVENT_CREATE, 0, Code_Make(-1)));
    EXPECT_FALSE(object.SetEvent(EVENT_CREATE, -1, Code_Make(0)));
    EXPECT_FALSE(object.SetEvent(kEventRows, 0, Code_Make(0)));
    Begin();
    Make(child);
    EXPECT_EQ(Take(), Log{"Parent.Create"});
}

TEST_F(Events, CollisionsAreInheritedOnBothSides)
{
    const int32_t thing = AddObject("Thing", {});
    const int32_t box = AddObject("Box", {}, thing);
    const int32_t player = AddObject("Player", {{EVENT_COLLISION, thing}});
    const int32_t girl = AddObject("Girl", {}, player);
    const int32_t other = AddObject("Other", {{EVENT_COLLISION, 4}});
    Begin();
    EXPECT_TRUE(Has_Event(girl, EVENT_COLLISION, box));
    EXPECT_FALSE(Has_Event(box, EVENT_COLLISION, girl));
    EXPECT_FALSE(Has_Event(thing, EVENT_COLLISION, thing));
    std::vector<std::pair<int32_t, int32_t>> pairs;
    for (int32_t i = 0; i < g_CollisionPairCount; ++i) {
        EXPECT_TRUE(g_CollisionPairs[i].live);
        EXPECT_EQ(g_CollisionPairs[i].firstObject, Object_Data(g_CollisionPairs[i].first));
        pairs.emplace_back(g_CollisionPairs[i].first, g_CollisionPairs[i].second);
    }
    const std::vector<std::pair<int32_t, int32_t>> expected = {
        {thing, player}, {box, player}, {thing, girl}, {box, girl}, {other, other}};
    EXPECT_EQ(pairs, expected);
    EXPECT_TRUE(Object(girl).flags & OBJECT_COLLIDES);
    Perform_Event(Make(girl), Make(box), EVENT_COLLISION, box);
    // The event's number is the object that was met, not the one it was found under.
    EXPECT_EQ(Take(), Log{"Player.Hit(Box)"});
}

TEST_F(Events, TablesListRespondersInAscendingOrder)
{
    const int32_t last = 128;
    const int32_t parent = AddObject("Parent", {{EVENT_STEP, 0},
                                                {EVENT_KEYPRESS, last},
                                                {EVENT_KEYPRESS, last + 1},
                                                {EVENT_ALARM, 12},
                                                {EVENT_DRAW, DRAW_GUI},
                                                {EVENT_CLEANUP, 0}});
    const int32_t plain = AddObject("Plain", {});
    const int32_t child = AddObject("Child", {{EVENT_DRAW, 0}}, parent);
    Begin();
    EXPECT_TRUE(Listed(EVENT_STEP, 0, {parent, child}));
    EXPECT_TRUE(Listed(EVENT_KEYPRESS, last, {parent, child}));
    EXPECT_TRUE(Listed(EVENT_KEYPRESS, last + 1, {}));
    EXPECT_TRUE(Listed(EVENT_ALARM, 12, {parent, child}));
    EXPECT_TRUE(Listed(EVENT_DRAW, 0, {child}));
    EXPECT_TRUE(Listed(EVENT_DRAW, DRAW_GUI, {}));
    EXPECT_TRUE(Listed(EVENT_CLEANUP, 0, {}));
    Object_BuildEventTables();  // a restart of the game builds them anew
    EXPECT_TRUE(Listed(EVENT_STEP, 0, {parent, child}));
    EXPECT_EQ(Object_Count(), plain + 2);
}

TEST_F(Events, AWorldOfPhysicsHasNoPairs)
{
    const int32_t a = AddObject("A", {{EVENT_COLLISION, 0}});
    Object(a).physics = true;
    Begin();
    EXPECT_EQ(g_CollisionPairCount, 0);
    EXPECT_FALSE(Object(a).flags & OBJECT_COLLIDES);
}

TEST_F(Events, AComingRoomChangeSilencesAllButWhatPersists)
{
    const std::vector<EventKey> events = {
        {EVENT_STEP, 0},   {EVENT_DRAW, 0},    {EVENT_ALARM, 0},   {EVENT_CREATE, 0},
        {EVENT_OTHER, 10}, {EVENT_DESTROY, 0}, {EVENT_CLEANUP, 0}, {EVENT_PRECREATE, 0}};
    const int32_t object = AddObject("A", events);
    Begin();
    CInstance* instance = Make(object);
    const auto performed = [&] {
        Take();
        for (const EventKey& key : events) Perform_Event(instance, instance, key.type, key.subtype);
        return Take();
    };
    const Log lasting = {"A.Alarm0",  "A.Create",  "A.User0",
                         "A.Destroy", "A.CleanUp", "A.PreCreate"};
    New_Room = room_;
    EXPECT_EQ(performed(), Log{"A.CleanUp"});
    instance->persistent = true;
    EXPECT_EQ(performed(), lasting);
    instance->persistent = false;
    Run_Room->persistent = true;
    EXPECT_EQ(performed(), lasting);
    g_ErrorPending = true;
    New_Room = ROOM_NONE;
    EXPECT_EQ(performed().size(), events.size() - 1) << "only Clean up stops after an abort";
    g_ErrorPending = false;
}

TEST_F(Events, NestingEndsAtThirtyTwo)
{
    const int32_t object = AddObject("A", {{EVENT_OTHER, OTHER_USER0}});
    Begin();
    CInstance* instance = Make(object);
    On("A.User0", [](CInstance* self, CInstance* other) {
        Perform_Event(self, other, EVENT_OTHER, OTHER_USER0);
    });
    Perform_Event(instance, instance, EVENT_OTHER, OTHER_USER0);
    EXPECT_EQ(Take().size(), 32U);
    EXPECT_NE(LastReport().find("PerformEvent recursion depth failure - check for infinite loops, "
                                "check objects for parenting"),
              std::string::npos);
    EXPECT_EQ(New_Room, ROOM_STOP);
    // The counter is down again.
    New_Room = ROOM_NONE;
    g_ErrorPending = false;
    Perform_Event(instance, instance, EVENT_OTHER, OTHER_USER0);
    EXPECT_EQ(Take().size(), 32U);
}

TEST_F(Events, ArgumentsOutOfRangeAreReported)
{
    const int32_t object = AddObject("A", {{EVENT_STEP, 0}});
    Begin();
    CInstance* instance = Make(object);
    Perform_Event(nullptr, nullptr, 99, -1);  // no self: nothing
    EXPECT_EQ(LastReport(), "");
    Perform_Event(instance, instance, EVENT_STEP, 100000);  // in range, but there is none
    EXPECT_EQ(LastReport(), "");
    for (const EventKey& key : {EventKey{kEventRows, 0}, EventKey{EVENT_STEP, -1}}) {
        Variable_ResetGame();
        g_ErrorPending = false;
        New_Room = ROOM_NONE;
        Perform_Event(instance, instance, key.type, key.subtype);
        EXPECT_NE(LastReport().find("Invalid event argument"), std::string::npos);
    }
    EXPECT_EQ(Take(), Log{});
}

TEST_F(Events, ParentsThatLoopEndTheStart)
{
    const int32_t a = AddObject("A", {}, 1);
    AddObject("B", {}, a);
    EXPECT_FALSE(Object_Prepare());
}

}  // namespace
