// Collision events and the rule for solid instances; the outside and boundary tests;
// timelines.

#include "Files/Code/CCode.h"
#include "Files/TimeLine/TimeLine_Main.h"
#include "tests/Files/support_World.h"

namespace {

class Meeting : public World {
protected:
    void SetUp() override
    {
        World::SetUp();
        sprite_ = AddBoxSprite(52, 52);
    }
    int32_t AddBox(const char* name, const std::vector<EventKey>& events, bool solid = false,
                   int32_t parent = -1)
    {
        const int32_t object = AddObject(name, events, parent);
        Object(object).spriteIndex = sprite_;
        if (solid) Object(object).flags |= OBJECT_SOLID;
        return object;
    }
    int32_t sprite_;
};

// The rule by which a box is pushed: the solid figure is put back, its event moves the
// box ahead, and the figure follows into the place that became free.
TEST_F(Meeting, PushFrameByFrame)
{
    const int32_t player = AddBox("Player", {{EVENT_COLLISION, 1}}, true);
    const int32_t box = AddBox("Box", {});
    const int32_t room = AddRoom("room_one");
    Place(room, player, 208, 208);
    Place(room, box, 260, 208);
    Begin();
    On("Player.Hit(Box)", [](CInstance* self, CInstance* other) {
        EXPECT_EQ(self->x, self->xprevious) << "put back before its event";
        other->SetPosition(other->x + self->hspeed, other->y);
    });
    First(player)->hspeed = 4;
    for (int frame = 1; frame <= 13; ++frame) {
        StepOnly();
        EXPECT_EQ(First(player)->x, static_cast<float>(208 + 4 * frame));
        EXPECT_EQ(First(box)->x, static_cast<float>(260 + 4 * frame));
    }
    // A box that does not give way holds the figure, frame after frame, with its speed.
    On("Player.Hit(Box)", [](CInstance*, CInstance*) {});
    Take();
    StepOnly();
    StepOnly();
    EXPECT_EQ(First(player)->x, 260);
    EXPECT_EQ(First(player)->hspeed, 4);
    EXPECT_EQ(Take(), (Log{"Player.Hit(Box)", "Player.Hit(Box)"}));
}

// Nothing solid: both stay where they are. The events run on the lower object first,
// also when only the other owns one, and both run although the first destroys.
TEST_F(Meeting, BothEventsOfAPair)
{
    const int32_t a = AddBox("A", {{EVENT_COLLISION, 1}});
    const int32_t b = AddBox("B", {{EVENT_COLLISION, 0}});
    const int32_t c = AddBox("C", {{EVENT_COLLISION, 0}});
    const int32_t room = AddRoom("room_one");
    Place(room, c, 0, 0);
    Place(room, b, 20, 0);
    Place(room, a, 30, 0);
    Begin();
    On("B.Hit(A)", [&](CInstance* self, CInstance* other) {
        EXPECT_EQ(self, First(b));
        EXPECT_EQ(other, First(a));
    });
    On("A.Hit(B)", [](CInstance*, CInstance* other) { Instance_Destroy(other, true); });
    StepOnly();
    EXPECT_EQ(Take(), (Log{"A.Hit(B)", "B.Hit(A)", "C.Hit(A)"}));
    EXPECT_EQ(First(a)->x, 30);
    EXPECT_EQ(First(b), nullptr);
}

// An event for a parent holds for children on either side; a pair of an object with
// itself meets twice.
TEST_F(Meeting, ParentsAndSelfPairs)
{
    const int32_t p = AddBox("P", {{EVENT_COLLISION, 1}});
    const int32_t q = AddBox("Q", {});
    const int32_t child = AddBox("ChildOfP", {}, false, p);
    const int32_t other = AddBox("ChildOfQ", {}, false, q);
    const int32_t twin = AddBox("Twin", {{EVENT_COLLISION, 4}});
    const int32_t room = AddRoom("room_one");
    Place(room, child, 0, 0);
    Place(room, other, 10, 0);
    Place(room, twin, 300, 0);
    Place(room, twin, 310, 0);
    Begin();
    StepOnly();
    EXPECT_EQ(Take(), (Log{"P.Hit(ChildOfQ)", "Twin.Hit(Twin)", "Twin.Hit(Twin)", "Twin.Hit(Twin)",
                           "Twin.Hit(Twin)"}));
}

// The event may make either instance solid: the second half of the rule looks again.
TEST_F(Meeting, SolidityIsReadTwice)
{
    const int32_t a = AddBox("A", {{EVENT_COLLISION, 1}});
    const int32_t b = AddBox("B", {});
    const int32_t room = AddRoom("room_one");
    Place(room, a, 0, 0);
    Place(room, b, 100, 0);
    Begin();
    First(a)->hspeed = 60;
    On("A.Hit(B)", [](CInstance* self, CInstance*) { self->solid = true; });
    StepOnly();
    EXPECT_EQ(First(a)->x, 0) << "60, moved on to 120, still in the box: back to the start";
}

// Outside fires once at the change, the boundary in every step; without a sprite the
// position decides, with both ends of the range inside.
TEST_F(Meeting, OutsideAndBoundary)
{
    const std::vector<EventKey> events = {{EVENT_OTHER, OTHER_OUTSIDE},
                                          {EVENT_OTHER, OTHER_BOUNDARY}};
    const int32_t boxed = AddBox("Boxed", events);
    const int32_t bare = AddObject("Bare", events);
    const int32_t room = AddRoom("room_one");
    Place(room, boxed, 300, 300);
    Place(room, bare, 640, 480);
    Begin();
    StepOnly();
    EXPECT_EQ(Take(), Log{});
    First(boxed)->SetPosition(-10, 300);
    First(bare)->SetPosition(640.5F, 480);
    StepOnly();
    StepOnly();
    EXPECT_EQ(Take(), (Log{"Bare.Outside", "Boxed.Boundary", "Bare.Boundary", "Boxed.Boundary",
                           "Bare.Boundary"}));
    First(bare)->SetPosition(0, 0);
    First(boxed)->SetPosition(-52, 300);
    StepOnly();
    EXPECT_EQ(Take(), (Log{"Boxed.Outside", "Boxed.Boundary"}));
    First(bare)->SetPosition(-1, 0);
    StepOnly();
    EXPECT_EQ(Take(), (Log{"Bare.Outside", "Boxed.Boundary", "Bare.Boundary"}));
}

// View events fire in every step; a turned view is tested as the rectangle it shows.
TEST_F(Meeting, OutsideViews)
{
    const int32_t a = AddBox(
        "A", {{EVENT_OTHER, OTHER_OUTSIDE_VIEW0 + 2}, {EVENT_OTHER, OTHER_BOUNDARY_VIEW0 + 2}});
    const int32_t room = AddRoom("room_one");
    Place(room, a, 250, 100);
    CRoom* source = Room_Template(room);
    source->viewsEnabled = true;
    source->views[2].visible = true;
    source->views[2].wview = 400;
    source->views[2].hview = 100;
    Begin();
    StepOnly();
    StepOnly();
    EXPECT_EQ(Take(), (Log{"A.Other52", "A.Other52"})) << "the edge of the view runs through it";
    First(a)->SetPosition(250, 120);
    StepOnly();
    EXPECT_EQ(Take(), (Log{"A.Other42", "A.Other52"}));
    // Turned by 90 degrees the view covers x from 150 to 250, y from -150 to 250.
    Run_Room->views[2].angle = 90;
    First(a)->SetPosition(160, 210);
    StepOnly();
    EXPECT_EQ(Take(), Log{"A.Other52"});
    First(a)->SetPosition(170, 100);
    StepOnly();
    EXPECT_EQ(Take(), Log{});
}

// Moments from the position up to, and not at, the next one; a moment that sets the
// position keeps it; a loop starts over behind the last moment.
TEST_F(Meeting, Timelines)
{
    const int32_t a = AddObject("A", {{EVENT_STEP, STEP_BEGIN}, {EVENT_ALARM, 0}});
    CTimeline* timeline = VxNew<CTimeline>();
    for (const int32_t time : {3, 0, 1})
        timeline->moments.push_back({time, Code_FromNumber(Code_Make(0)->number)});
    const int32_t index = TimeLine_Add(timeline);
    const int32_t room = AddRoom("room_one");
    Place(room, a, 0, 0);
    Begin();
    CInstance* instance = First(a);
    instance->timeline_index = index;
    instance->timeline_running = true;
    instance->timeline_speed = 2;
    instance->timeline_loop = true;
    instance->alarm[0] = 1;
    StepOnly();
    EXPECT_EQ(Take(), (Log{"A.Begin", "A.Moment0", "A.Moment1", "A.Alarm0"}));
    On("A.Moment3", [](CInstance* self, CInstance*) { self->timeline_position = 1; });
    StepOnly();
    EXPECT_EQ(Take(), (Log{"A.Begin", "A.Moment3"}));
    EXPECT_EQ(instance->timeline_position, 1);
    On("A.Moment3", [](CInstance*, CInstance*) {});
    StepOnly();
    EXPECT_EQ(Take(), (Log{"A.Begin", "A.Moment1"}));
    StepOnly();
    EXPECT_EQ(instance->timeline_position, 0) << "behind the last moment";
    instance->timeline_speed = -2;
    instance->timeline_position = 2;
    Take();
    StepOnly();
    EXPECT_EQ(Take(), (Log{"A.Begin", "A.Moment1"}));
}

}  // namespace
