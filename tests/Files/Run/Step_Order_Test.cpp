// The order of a frame: phases, walks, alarms, and what a change of the world in
// the middle of a phase does to that phase and to the next.

#include <algorithm>

#include "Files/Base/Archive_Main.h"
#include "Files/Base/Error.h"
#include "Files/Code/Script_Interface.h"
#include "Files/Graphics/Draw_Room.h"
#include "Files/Graphics/GpuState.h"
#include "Files/Graphics/Window.h"
#include "Files/Graphics_API/Device_Soft.h"
#include "Files/IO/IO.h"
#include "Files/Run/Run_State.h"
#include "Files/Run/Services.h"
#include "tests/Files/support_World.h"

namespace {

constexpr int32_t kKeyA = 65;
constexpr int32_t kLeftHeldAnywhere = 50;
constexpr int32_t kOutsideX = -100;

const std::vector<EventKey> kEverything = {
    {EVENT_CREATE, 0},
    {EVENT_DESTROY, 0},
    {EVENT_OTHER, OTHER_ANIMATION_END},
    {EVENT_STEP, STEP_BEGIN},
    {EVENT_ALARM, 0},
    {EVENT_KEYBOARD, kKeyA},
    {EVENT_MOUSE, kLeftHeldAnywhere},
    {EVENT_STEP, STEP_NORMAL},
    {EVENT_OTHER, OTHER_OUTSIDE},
    {EVENT_COLLISION, 2},
    {EVENT_STEP, STEP_END},
};

// The phases of a frame in which an instance with all these events is reached.
const char* const kPhases[] = {"AnimationEnd", "Begin",   "Alarm0",    "Key65", "Mouse50",
                               "Step",         "Outside", "Hit(Wall)", "End"};
constexpr size_t kPhaseCount = sizeof kPhases / sizeof kPhases[0];

// Objects A (0), B (1) and Wall (2), with one of each in the room. A and B respond to
// everything; they stand outside the room, in the wall.
class EachPhase : public World, public ::testing::WithParamInterface<size_t> {
protected:
    void SetUp() override
    {
        World::SetUp();
        sprite_ = AddBoxSprite(16, 16);
        a_ = AddObject("A", kEverything);
        b_ = AddObject("B", kEverything);
        wall_ = AddObject("Wall", {});
        for (const int32_t object : {a_, b_, wall_}) Object(object).spriteIndex = sprite_;
        room_ = AddRoom("room_one");
        next_ = AddRoom("room_two");
        Place(room_, wall_, kOutsideX, 0);
    }

    // Makes each phase of the next frame reach the instance.
    void Arm(CInstance* instance)
    {
        instance->image_speed = 1;
        instance->alarm[0] = 1;
        instance->outsideRoom = false;
    }
    void ArmInput()
    {
        Key_Down(kKeyA, false);
        Mouse_ButtonDown(1, 5, 5);
    }
    std::string Phase() const { return kPhases[GetParam()]; }
    // "<name>.<phase>" for all phases from `first`.
    Log PhasesOf(const std::string& name, size_t first) const
    {
        Log log;
        for (size_t i = first; i < kPhaseCount; ++i) log.push_back(name + "." + kPhases[i]);
        return log;
    }
    // The log's entries of one object.
    Log Only(const Log& log, const std::string& name) const
    {
        Log only;
        for (const std::string& entry : log)
            if (entry.rfind(name + ".", 0) == 0) only.push_back(entry);
        return only;
    }

    int32_t sprite_, a_, b_, wall_, room_, next_;
};

std::string PhaseName(const ::testing::TestParamInfo<size_t>& info)
{
    static const char* const kNames[] = {"AnimationEnd", "BeginStep", "Alarm",
                                         "Keyboard",     "Mouse",     "Step",
                                         "Outside",      "Collision", "EndStep"};
    return kNames[info.param];
}

INSTANTIATE_TEST_SUITE_P(AllPhases, EachPhase, ::testing::Range<size_t>(0, kPhaseCount), PhaseName);

// An instance made in a phase is complete at once, sits that phase out, and takes part
// from the next one; and so does one of the object that is being walked.
TEST_P(EachPhase, Creation)
{
    for (const char* made : {"A", "B"}) {
        SCOPED_TRACE(made);
        TearDown();
        SetUp();
        Place(room_, a_, kOutsideX, 0);
        Begin();
        Arm(First(a_));
        ArmInput();
        const int32_t object = made == std::string("A") ? a_ : b_;
        bool done = false;
        On("A." + Phase(), [&](CInstance*, CInstance*) {
            if (done) return;
            done = true;
            CInstance* instance = Room_CreateInstance(kOutsideX, 0, object);
            EXPECT_TRUE(instance->created);
            Arm(instance);
        });
        StepOnly();
        Log expected = {std::string(made) + ".Create"};
        // Each pair of objects is a walk of its own: B meets the wall after A does.
        const bool laterPair = object == b_ && Phase() == "Hit(Wall)";
        const size_t from = laterPair ? GetParam() : GetParam() + 1;
        const Log rest = PhasesOf(made, from);
        expected.insert(expected.end(), rest.begin(), rest.end());
        Log seen = Only(Take(), made);
        if (object == a_) {
            // Take out the maker's own events: one for each phase, the first of a kind.
            for (const std::string& own : PhasesOf("A", 0))
                seen.erase(std::find(seen.begin(), seen.end(), own));
        }
        EXPECT_EQ(seen, expected);
    }
}

// Destroying only marks: Destroy runs at once, no further event reaches the instance,
// and it stays in the lists until the purge.
TEST_P(EachPhase, Destruction)
{
    Place(room_, a_, kOutsideX, 0);
    const int32_t victim = Place(room_, b_, kOutsideX, 0);
    Begin();
    Arm(First(a_));
    Arm(First(b_));
    ArmInput();
    On("A." + Phase(), [&](CInstance*, CInstance*) {
        CInstance* instance = Instance_FromId(victim);
        Instance_Destroy(instance, true);
        Instance_Destroy(instance, true);
        EXPECT_TRUE(instance->marked);
        EXPECT_EQ(Run_Room->activeCount, 3);
    });
    StepOnly();
    Log expected;
    for (size_t i = 0; i < GetParam(); ++i) expected.push_back(std::string("B.") + kPhases[i]);
    expected.push_back("B.Destroy");
    // The image animation tests nothing, so it reaches the dead as well.
    if (GetParam() == 0) expected.push_back("B.AnimationEnd");
    EXPECT_EQ(Only(Take(), "B"), expected);
    EXPECT_EQ(Instance_FromId(victim), nullptr);
    EXPECT_EQ(Run_Room->activeCount, 2);
}

// A deactivated instance gets no further event, and leaves its lists with the phase.
TEST_P(EachPhase, Deactivation)
{
    Place(room_, a_, kOutsideX, 0);
    const int32_t sleeper = Place(room_, b_, kOutsideX, 0);
    Begin();
    Arm(First(a_));
    Arm(First(b_));
    ArmInput();
    On("A." + Phase(), [&](CInstance*, CInstance*) {
        Instance_Deactivate(Instance_FromId(sleeper));
        EXPECT_EQ(Run_Room->activeCount, 3);
        EXPECT_EQ(Object(b_).instances.Count(), 1);
    });
    StepOnly();
    Log expected;
    for (size_t i = 0; i < GetParam(); ++i) expected.push_back(std::string("B.") + kPhases[i]);
    if (GetParam() == 0) expected.push_back("B.AnimationEnd");
    EXPECT_EQ(Only(Take(), "B"), expected);
    EXPECT_EQ(Run_Room->activeCount, 2);
    EXPECT_EQ(Run_Room->deactivatedCount, 1);
    EXPECT_EQ(Object(b_).instances.Count(), 0);

    Forget("A." + Phase());
    On("A." + Phase(),
       [&](CInstance*, CInstance*) { Instance_Activate(Instance_FromId(sleeper)); });
    Arm(First(a_));
    Arm(Instance_FromId(sleeper));
    StepOnly();
    // Activated in a phase: back from the next one on.
    const size_t from = GetParam() == 0 ? 2 : GetParam() + 1;
    EXPECT_EQ(Only(Take(), "B"), PhasesOf("B", from));
    EXPECT_EQ(Run_Room->activeCount, 3);
}

// A changed instance is walked under its old object to the end of the phase, with the
// events of the new one; then it stands in the lists of the new.
TEST_P(EachPhase, Change)
{
    const int32_t changer = AddObject("Z", {}, a_);
    Object(changer).spriteIndex = sprite_;
    Place(room_, a_, kOutsideX, 0);
    const int32_t changed = Place(room_, b_, kOutsideX, 0);
    Begin();
    Arm(First(a_));
    Arm(First(b_));
    ArmInput();
    bool done = false;
    On("A." + Phase(), [&](CInstance*, CInstance*) {
        if (done) return;
        done = true;
        Instance_Change(Instance_FromId(changed), changer, false);
        EXPECT_EQ(Object(b_).instances.Count(), 1);
        EXPECT_EQ(Object(changer).instances.Count(), 0);
        EXPECT_EQ(Instance_Number(changer, nullptr, nullptr), 1);
    });
    StepOnly();
    const Log log = Take();
    Log expected;
    for (size_t i = 0; i < GetParam(); ++i) expected.push_back(std::string("B.") + kPhases[i]);
    EXPECT_EQ(Only(log, "B"), expected);
    // A's own phases, and the changed instance's from this phase on, all with A's code.
    EXPECT_EQ(Only(log, "A").size(), kPhaseCount + (kPhaseCount - GetParam()));
    EXPECT_EQ(Object(b_).instances.Count(), 0);
    EXPECT_EQ(Object(changer).instances.Count(), 1);
}

// A new depth is read back at once; the list is sorted again after the phase.
TEST_P(EachPhase, Depth)
{
    const int32_t a = Place(room_, a_, kOutsideX, 0);
    const int32_t b = Place(room_, b_, kOutsideX, 0);
    Begin();
    Arm(First(a_));
    Arm(First(b_));
    ArmInput();
    const std::vector<int32_t> before = ActiveIds();
    On("A." + Phase(), [&](CInstance* self, CInstance*) {
        Instance_SetDepth(self, 7);
        EXPECT_EQ(self->depth, 7);
        EXPECT_EQ(ActiveIds(), before);
    });
    StepOnly();
    EXPECT_EQ(ActiveIds(), (std::vector<int32_t>{before[0], b, a}));
    EXPECT_EQ(Only(Take(), "B"), PhasesOf("B", 0));
}

// A room change that is asked for lets the phase run to its end, mostly in silence, and
// ends the frame there: no later phase, no purge, no picture, no frame counted.
TEST_P(EachPhase, RoomChange)
{
    Place(room_, a_, kOutsideX, 0);
    Place(room_, b_, kOutsideX, 0);
    World_HookServices();
    Begin();
    Arm(First(a_));
    Arm(First(b_));
    ArmInput();
    Take();
    On("A." + Phase(), [&](CInstance*, CInstance*) { Room_Goto(next_); });
    const int64_t frames = g_FrameCount;
    StepOnly();
    const Log log = Take();
    World_UnhookServices();
    EXPECT_EQ(log.back(), "A." + Phase());
    for (size_t i = GetParam() + 1; i < kPhaseCount; ++i)
        EXPECT_TRUE(std::find(log.begin(), log.end(), std::string("A.") + kPhases[i]) == log.end());
    EXPECT_EQ(Only(log, "B").size(), GetParam());
    EXPECT_EQ(g_FrameCount, frames);
    EXPECT_EQ(New_Room, next_);
    EXPECT_EQ(Current_Room, room_);
}

class StepOrder : public World {
protected:
    int32_t OneRoom() { return AddRoom("room_one"); }
};

// Every phase of a frame, with the services between them.
TEST_F(StepOrder, PhasesOfAFrame)
{
    std::vector<EventKey> all = kEverything;
    const std::vector<EventKey> more = {
        {EVENT_ALARM, 11},
        {EVENT_KEYBOARD, 1},
        {EVENT_KEYPRESS, kKeyA},
        {EVENT_KEYPRESS, 1},
        {EVENT_KEYRELEASE, 66},
        {EVENT_KEYRELEASE, 1},
        {EVENT_MOUSE, 53},
        {EVENT_MOUSE, 60},
        {EVENT_OTHER, OTHER_BOUNDARY},
        {EVENT_OTHER, OTHER_OUTSIDE_VIEW0},
        {EVENT_OTHER, OTHER_BOUNDARY_VIEW0},
        {EVENT_OTHER, OTHER_NO_MORE_LIVES},
        {EVENT_DRAW, DRAW_NORMAL},
    };
    all.insert(all.end(), more.begin(), more.end());
    const int32_t sprite = AddBoxSprite(16, 16);
    const int32_t a = AddObject("A", all);
    AddObject("Unused", {});
    const int32_t wall = AddObject("Wall", {});
    Object(a).spriteIndex = Object(wall).spriteIndex = sprite;
    const int32_t room = OneRoom();
    Place(room, a, kOutsideX, 0);
    Place(room, wall, kOutsideX, 0);
    Room_Template(room)->viewsEnabled = true;
    Room_Template(room)->views[0].visible = true;
    Begin();
    First(a)->alarm[0] = First(a)->alarm[11] = 1;
    Key_Down(66, false);
    Key_Up(66);
    Key_Down(kKeyA, false);
    Mouse_ButtonDown(1, 5, 5);
    Mouse_Wheel(1);
    World_HookServices();
    StepOnly();
    World_UnhookServices();
    EXPECT_EQ(Take(),
              (Log{"A.AnimationEnd", "A.Begin",     "network",    "steam",       "A.Alarm0",
                   "A.Alarm11",      "A.Key65",     "A.Press65",  "A.Release66", "A.Key1",
                   "A.Press1",       "A.Release1",  "A.Mouse50",  "A.Mouse53",   "A.Mouse60",
                   "A.Step",         "A.Outside",   "A.Boundary", "A.Other40",   "A.Other50",
                   "async",          "A.Hit(Wall)", "A.End",      "particles"}));
    EXPECT_EQ(g_FrameCount, 1);
}

// Positions: the previous one is taken before Begin Step; motion lies between Step and
// the outside tests, after friction; the solid rule puts back to it.
TEST_F(StepOrder, WhereThingsMove)
{
    const int32_t a = AddObject("A", {{EVENT_STEP, STEP_BEGIN},
                                      {EVENT_STEP, STEP_NORMAL},
                                      {EVENT_STEP, STEP_END},
                                      {EVENT_OTHER, OTHER_BOUNDARY}});
    const int32_t room = OneRoom();
    Place(room, a, 639, 10);
    Begin();
    auto note = [this](const char* where) {
        return [this, where](CInstance* self, CInstance*) {
            Note(std::string(where) + " " + std::to_string(static_cast<int>(self->x)) + " from " +
                 std::to_string(static_cast<int>(self->xprevious)));
        };
    };
    First(a)->hspeed = 4;
    First(a)->speed = 4;
    First(a)->friction = 1;
    On("A.Begin", note("begin"));
    On("A.Step", [&, inner = note("step")](CInstance* self, CInstance* other) {
        self->SetPosition(self->x + 10, self->y);
        inner(self, other);
    });
    On("A.Boundary", note("boundary"));
    On("A.End", note("end"));
    StepOnly();
    EXPECT_EQ(Take(), (Log{"A.Begin", "begin 639 from 639", "A.Step", "step 649 from 639",
                           "A.Boundary", "boundary 652 from 639", "A.End", "end 652 from 639"}));
}

// Objects by index and not by depth, instances of one object by age; a child's
// instances stand under the child's own entry.
TEST_F(StepOrder, WalksGoByObjectAndAge)
{
    const int32_t parent = AddObject("Parent", {{EVENT_STEP, STEP_NORMAL}});
    const int32_t other = AddObject("Other", {{EVENT_STEP, STEP_NORMAL}});
    const int32_t child = AddObject("Child", {}, parent);
    const int32_t room = OneRoom();
    const int32_t c = Place(room, child), p2 = Place(room, parent), o = Place(room, other),
                  p1 = Place(room, parent);
    Object(other).depth = 100;
    Begin();
    std::vector<int32_t> ids;
    for (const char* label : {"Parent.Step", "Other.Step"})
        On(label, [&](CInstance* self, CInstance* with) {
            EXPECT_EQ(self, with);
            ids.push_back(self->id);
        });
    StepOnly();
    EXPECT_EQ(ids, (std::vector<int32_t>{p2, p1, o, c}));
}

// All of alarm 0 before any of alarm 1; 1 fires in the next step, 0 never, and an alarm
// without an event is not counted.
TEST_F(StepOrder, Alarms)
{
    const int32_t a = AddObject("A", {{EVENT_ALARM, 0}, {EVENT_ALARM, 1}, {EVENT_ALARM, 2}});
    const int32_t b = AddObject("B", {{EVENT_ALARM, 0}, {EVENT_ALARM, 1}});
    const int32_t room = OneRoom();
    Place(room, a);
    Place(room, b);
    Begin();
    for (const int32_t object : {a, b}) First(object)->alarm[0] = First(object)->alarm[1] = 2;
    First(a)->alarm[2] = 0;
    First(b)->alarm[2] = 5;
    StepOnly();
    EXPECT_EQ(Take(), Log{});
    EXPECT_EQ(First(a)->alarm[2], -1);
    EXPECT_EQ(First(b)->alarm[2], 5);

    // Setting a later alarm from an earlier one: it is counted in the same step.
    On("A.Alarm0", [](CInstance* self, CInstance*) {
        self->alarm[0] = 1;
        self->alarm[2] = 1;
    });
    StepOnly();
    EXPECT_EQ(Take(), (Log{"A.Alarm0", "B.Alarm0", "A.Alarm1", "B.Alarm1", "A.Alarm2"}));
    StepOnly();
    EXPECT_EQ(Take(), (Log{"A.Alarm0", "A.Alarm2"}));
}

// While a change is asked for, alarms of persistent instances still run, steps do not.
TEST_F(StepOrder, PersistentInstancesFinishTheirAlarms)
{
    const int32_t a = AddObject("A", {{EVENT_ALARM, 0}, {EVENT_STEP, STEP_NORMAL}});
    const int32_t b = AddObject("B", {{EVENT_ALARM, 0}, {EVENT_STEP, STEP_NORMAL}});
    const int32_t c = AddObject("C", {{EVENT_ALARM, 0}});
    const int32_t room = OneRoom();
    AddRoom("room_two");
    for (const int32_t object : {a, b, c}) Place(room, object);
    Object(b).flags |= OBJECT_PERSISTENT;
    Begin();
    for (const int32_t object : {a, b, c}) First(object)->alarm[0] = 1;
    On("A.Alarm0", [](CInstance*, CInstance*) { Room_Goto(1); });
    StepOnly();
    EXPECT_EQ(Take(), (Log{"A.Alarm0", "B.Alarm0"}));
    EXPECT_EQ(First(c)->alarm[0], 0) << "the alarm went by unheard";
}

// Keys in ascending order, each with its held, pressed and released event, then "any"
// and "no" key; a key of the last frame is held and not pressed.
TEST_F(StepOrder, KeyEvents)
{
    std::vector<EventKey> events;
    for (const int32_t type : {EVENT_KEYBOARD, EVENT_KEYPRESS, EVENT_KEYRELEASE})
        for (const int32_t key : {0, 1, 37, kKeyA}) events.push_back({type, key});
    const int32_t a = AddObject("A", events);
    Place(OneRoom(), a);
    Begin();
    StepOnly();
    EXPECT_EQ(Take(), (Log{"A.Key0", "A.Press0", "A.Release0"}));
    Key_Down(kKeyA, false);
    Key_Down(37, false);
    Key_Up(37);
    StepOnly();
    EXPECT_EQ(Take(), (Log{"A.Key37", "A.Press37", "A.Release37", "A.Key65", "A.Press65", "A.Key1",
                           "A.Press1", "A.Release1"}));
    Key_Down(kKeyA, true);
    StepOnly();
    EXPECT_EQ(Take(), (Log{"A.Key65", "A.Key1", "A.Press0", "A.Release0"}));
    // Keys above the table have no event of their own but count for "any".
    Key_Up(kKeyA);
    Key_Down(200, false);
    StepOnly();
    EXPECT_EQ(Take(), (Log{"A.Release65", "A.Key1", "A.Press1", "A.Release1"}));
}

// An instance made in one key's walk takes part in the next key's.
TEST_F(StepOrder, EachKeyIsAWalkOfItsOwn)
{
    const int32_t a = AddObject("A", {{EVENT_KEYBOARD, 65}, {EVENT_KEYBOARD, 66}});
    Place(OneRoom(), a);
    Begin();
    bool done = false;
    On("A.Key65", [&](CInstance*, CInstance*) {
        if (!done) Room_CreateInstance(0, 0, a);
        done = true;
    });
    Key_Down(65, false);
    Key_Down(66, false);
    StepOnly();
    EXPECT_EQ(Take(), (Log{"A.Key65", "A.Key66", "A.Key66"}));
}

// Mouse: held, pressed, released, enter and leave, wheel; the over forms only reach
// what lies under the pointer.
TEST_F(StepOrder, MouseEvents)
{
    std::vector<EventKey> events;
    for (const int32_t subtype : {0, 3, 4, 7, 10, 11, 12, 13, 50, 53, 56, 60, 61})
        events.push_back({EVENT_MOUSE, subtype});
    const int32_t a = AddObject("A", events);
    Object(a).spriteIndex = AddBoxSprite(20, 20);
    const int32_t room = OneRoom();
    Place(room, a, 100, 100);
    Begin();
    CInstance* instance = First(a);
    auto over = [&](bool on) {
        int32_t x, y;
        IO_MouseRoomPosition(&x, &y);
        instance->SetPosition(static_cast<float>(on ? x - 5 : x + 200),
                              static_cast<float>(on ? y - 5 : y + 200));
    };
    over(false);
    StepOnly();
    EXPECT_EQ(Take(), Log{}) << "made away from the pointer: no leave";
    over(true);
    StepOnly();
    EXPECT_EQ(Take(), (Log{"A.Mouse3", "A.Mouse10"}));
    Mouse_ButtonDown(1, 0, 0);
    Mouse_Wheel(-1);
    StepOnly();
    EXPECT_EQ(Take(),
              (Log{"A.Mouse0", "A.Mouse50", "A.Mouse4", "A.Mouse12", "A.Mouse53", "A.Mouse61"}));
    over(false);
    StepOnly();
    EXPECT_EQ(Take(), (Log{"A.Mouse50", "A.Mouse11"}));
    Mouse_ButtonUp(1, 0, 0);
    StepOnly();
    EXPECT_EQ(Take(), (Log{"A.Mouse13", "A.Mouse56"}));
}

// Draw walks from the tail of the list: the highest depth first, and of one depth the
// last made first. What it makes, ends or asks for waits for the walk's or the frame's
// end, and a room change asked for there lets the frame finish.
TEST_F(StepOrder, DrawEvents)
{
    const int32_t a = AddObject("A", {{EVENT_DRAW, DRAW_NORMAL}});
    const int32_t b = AddObject("B", {{EVENT_DRAW, DRAW_NORMAL}, {EVENT_STEP, STEP_END}});
    const int32_t room = OneRoom();
    AddRoom("room_two");
    const int32_t a1 = Place(room, a), b1 = Place(room, b), a2 = Place(room, a);
    Object(b).depth = 10;
    Begin();
    g_DrawEnabled = true;
    char error[256];
    g_Display.backbufferWidth = g_Display.clientWidth;
    g_Display.backbufferHeight = g_Display.clientHeight;
    ASSERT_TRUE(Device_Soft.Open({640, 480, false, 0, 0}, error, sizeof error)) << error;
    g_Device = &Device_Soft;
    Draw_Init();
    ASSERT_TRUE(Graphics_Start());
    std::vector<int32_t> drawn;
    for (const char* label : {"A.Draw0", "B.Draw0"})
        On(label, [&](CInstance* self, CInstance*) { drawn.push_back(self->id); });
    StepOnly();
    EXPECT_EQ(Take().front(), "B.End") << "the step comes before the picture";
    EXPECT_EQ(drawn, (std::vector<int32_t>{b1, a2, a1}));

    Run_Room->backgrounds[0].hspeed = 1;
    On("B.Draw0", [&](CInstance* self, CInstance*) {
        Room_CreateInstance(0, 0, a);
        Instance_SetDepth(self, -10);
        Instance_Destroy(Instance_FromId(a2), false);
        Room_Goto(1);
    });
    drawn.clear();
    Take();
    StepOnly();
    EXPECT_EQ(Take(), (Log{"B.End", "B.Draw0"})) << "draw events are silent after the request";
    EXPECT_EQ(g_FrameCount, 2);
    EXPECT_EQ(Run_Room->backgrounds[0].x, 1);
    EXPECT_EQ(ActiveIds().front(), b1) << "sorted when the picture is done";
    EXPECT_TRUE(Instance_FromId(a2)->marked) << "the purge lies before the draw";
    Graphics_Stop();
    g_Device->Close();
    g_Device = nullptr;
}

// The frame stops at once, before anything of the game, while the window is not active
// and the option says so.
TEST_F(StepOrder, FreezeWithoutFocus)
{
    const int32_t a = AddObject("A", {{EVENT_STEP, STEP_NORMAL}});
    Place(OneRoom(), a);
    Begin();
    const bool focus = g_WindowFocus;
    g_WindowFocus = false;
    StepOnly();
    EXPECT_EQ(Take(), Log{"A.Step"});
    g_GameOptions.bits |= OPTION_FREEZE;
    StepOnly();
    EXPECT_EQ(Take(), Log{});
    EXPECT_EQ(g_FrameCount, 1);
    g_WindowFocus = true;
    StepOnly();
    EXPECT_EQ(Take(), Log{"A.Step"});
    g_GameOptions.bits = 0;
    g_WindowFocus = focus;
}

// An error that stops the game ends the frame at the next check.
TEST_F(StepOrder, AbortEndsTheFrame)
{
    const int32_t a = AddObject("A", {{EVENT_STEP, STEP_BEGIN}, {EVENT_STEP, STEP_NORMAL}});
    Place(OneRoom(), a);
    Begin();
    On("A.Begin", [](CInstance*, CInstance*) { Error_Show("no", true); });
    StepOnly();
    EXPECT_EQ(Take(), Log{"A.Begin"});
    EXPECT_EQ(New_Room, ROOM_STOP);
}

// A frame in which nothing new happens calls the allocator zero times, with walks,
// motion, collisions and nested `with` loops in it.
TEST_F(StepOrder, SteadyFramesAllocateNothing)
{
    const int32_t sprite = AddBoxSprite(16, 16);
    const int32_t a = AddObject("A", {{EVENT_STEP, STEP_NORMAL}, {EVENT_COLLISION, 1}});
    const int32_t b = AddObject("B", {});
    Object(a).spriteIndex = Object(b).spriteIndex = sprite;
    const int32_t room = OneRoom();
    for (int i = 0; i < 40; ++i) Place(room, b, 20 * i, 0);
    Place(room, a, 5, 5);
    Begin();
    First(a)->image_speed = 0;
    Forget("A.Step");
    Forget("A.Hit(B)");
    On("A.Step", [b](CInstance* self, CInstance* other) {
        WithState outer, inner;
        With_Begin(&outer, &self, &other, b);
        With_Begin(&inner, &self, &other, INSTANCE_ALL);
        With_End(&inner, &self, &other);
        With_End(&outer, &self, &other);
    });
    for (int i = 0; i < 3; ++i) StepOnly();
    const uint64_t calls = MemoryManager::GetStats().calls;
    for (int i = 0; i < 10; ++i) StepOnly();
    EXPECT_EQ(MemoryManager::GetStats().calls, calls);
}

}  // namespace
