#include "tests/Files/support_World.h"

#include <list>

#include "Files/Base/Console.h"
#include "Files/Base/Error.h"
#include "Files/Code/Script_Interface.h"
#include "Files/Function/Function_Registry.h"
#include "Files/Graphics/Window.h"
#include "Files/IO/IO.h"
#include "Files/Run/Run_Modules.h"
#include "Files/Run/Services.h"
#include "Files/Sprite/CSprite.h"
#include "Files/TimeLine/TimeLine_Main.h"
#include "Files/Variable/Variable_BuiltIn.h"
#include "Host/Host_Stage.h"

namespace {

World* s_world = nullptr;

void EventFunction_Record(CInstance* self, CInstance* other)
{
    const std::string called = g_CalledRow;
    if (called != "event") {
        World::Current()->Ran(self, other, called + "#" + std::to_string(self->id));
        return;
    }
    World::Current()->Ran(self, other,
                          std::string(Object_Name(Current_Event_Object)) + "." +
                              EventLabel(Current_Event_Type, Current_Event_Number));
}

std::string OtherLabel(int32_t subtype)
{
    static const char* const kNames[] = {"Outside",   "Boundary",    "GameStart",   "GameEnd",
                                         "RoomStart", "RoomEnd",     "NoMoreLives", "AnimationEnd",
                                         "EndOfPath", "NoMoreHealth"};
    if (subtype < 10) return kNames[subtype];
    if (subtype < 26) return "User" + std::to_string(subtype - 10);
    return "Other" + std::to_string(subtype);
}

void Swallow(void*, const char*) {}

void NoteNetwork()
{
    World::Current()->Ran(nullptr, nullptr, "network");
}
void NoteSteam()
{
    World::Current()->Ran(nullptr, nullptr, "steam");
}
void NoteAsync()
{
    World::Current()->Ran(nullptr, nullptr, "async");
}
void NoteParticles()
{
    World::Current()->Ran(nullptr, nullptr, "particles");
}

}  // namespace

std::string EventLabel(int32_t type, int32_t subtype)
{
    const std::string number = std::to_string(subtype);
    switch (type) {
        case EVENT_CREATE:
            return "Create";
        case EVENT_DESTROY:
            return "Destroy";
        case EVENT_ALARM:
            return "Alarm" + number;
        case EVENT_STEP:
            return subtype == STEP_BEGIN ? "Begin" : subtype == STEP_END ? "End" : "Step";
        case EVENT_COLLISION:
            return std::string("Hit(") + Object_Name(subtype) + ")";
        case EVENT_KEYBOARD:
            return "Key" + number;
        case EVENT_MOUSE:
            return "Mouse" + number;
        case EVENT_OTHER:
            return OtherLabel(subtype);
        case EVENT_DRAW:
            return "Draw" + number;
        case EVENT_KEYPRESS:
            return "Press" + number;
        case EVENT_KEYRELEASE:
            return "Release" + number;
        case EVENT_CLEANUP:
            return "CleanUp";
        case EVENT_PRECREATE:
            return "PreCreate";
        case kTimelineEvent:
            return "Moment" + number;
        default:
            return "Event" + std::to_string(type) + "." + number;
    }
}

World* World::Current()
{
    return s_world;
}

void World::SetUp()
{
    s_world = this;
    Host_UseStage();
    Stage_Reset();
    Console_Init();
    Console_SetSink(Swallow, nullptr);
    Error_Init();
    RunState_Reset();
    g_Switches = Switches();
    RValue_Init();
    Variable_BuiltIn_Init();
    Variable_ResetGame();
    Function_Init();
    g_RunnerData = RunnerData();
    rows_.reserve(64);
    rows_.emplace_back("event", EventFunction_Record);
    g_RunnerData.codeTable = rows_.data();
    g_RunnerData.codeCount = 1;
    Code_Init();
    Sprite_Init();
    Object_Init();
    Instance_Init();
    Room_Init();
    TimeLine_Init();
    IO_Init();
    g_DrawEnabled = false;
    g_Display.clientWidth = 640;
    g_Display.clientHeight = 480;
    g_Display.keepAspect = false;
}

void World::TearDown()
{
    TimeLine_Quit();
    Room_Quit();
    Instance_Quit();
    Object_Quit();
    Sprite_Quit();
    Code_Quit();
    IO_Quit();
    g_RunnerData = RunnerData();
    Console_SetSink(nullptr, nullptr);
    Console_Quit();
    s_world = nullptr;
}

int32_t World::AddCode(const char* name)
{
    // Names outlive the rows that point to them.
    static std::list<std::string> kept;
    kept.emplace_back(name);
    EXPECT_LT(rows_.size(), rows_.capacity());
    rows_.emplace_back(kept.back().c_str(), EventFunction_Record);
    g_RunnerData.codeCount = static_cast<int32_t>(rows_.size());
    return Code_Make(g_RunnerData.codeCount - 1)->number;
}

int32_t World::AddObject(const char* name, const std::vector<EventKey>& events, int32_t parent)
{
    CObjectSW* object = VxNew<CObjectSW>();
    object->name = name;
    object->parentIndex = parent;
    for (const EventKey& key : events) object->SetEvent(key.type, key.subtype, Code_Make(0));
    return Object_Add(object);
}

int32_t World::AddRoom(const char* name)
{
    const int32_t index = Room_AddTemplate();
    CRoom* room = Room_Template(index);
    room->ownName = name;
    room->name = room->ownName.c_str();
    order_.push_back(index);
    return index;
}

int32_t World::Place(int32_t room, int32_t object, int32_t x, int32_t y, const char* createCode,
                     const char* preCreateCode)
{
    ArchiveRoomInstance record{};
    record.x = x;
    record.y = y;
    record.objectIndex = object;
    record.id = ++lastInstanceId;
    record.creationCode = createCode ? AddCode(createCode) : -1;
    record.preCreateCode = preCreateCode ? AddCode(preCreateCode) : -1;
    record.scaleX = record.scaleY = 1;
    record.colour = 0xFFFFFFFFU;
    Room_OwnContent(Room_Template(room))->instances.push_back(record);
    return record.id;
}

void World::SetRoomCode(int32_t room, const char* name)
{
    Room_Template(room)->creationCode = Code_FromNumber(AddCode(name));
}

int32_t World::AddBoxSprite(int32_t width, int32_t height, int32_t frames)
{
    CSprite* sprite = VxNew<CSprite>();
    sprite->name = "box";
    sprite->width = width;
    sprite->height = height;
    sprite->frameCount = frames;
    sprite->bboxRight = width - 1;
    sprite->bboxBottom = height - 1;
    return Sprite_Add(sprite);
}

void World::Begin(bool keepLog)
{
    ASSERT_TRUE(Object_Prepare());
    Room_SetOrder(order_.data(), static_cast<int32_t>(order_.size()));
    ASSERT_TRUE(Room_Prepare());
    Object_BuildEventTables();
    Room_ResetRunning();
    StartRoom(Room_OrderAt(0), true);
    if (!keepLog) log_.clear();
}

void World::StepOnly()
{
    Stage_MoveClock(33333);
    DoAStep();
}

void World::Frame()
{
    StepOnly();
    if (New_Room < 0) return;
    const int32_t next = New_Room;
    EndRoom(false);
    StartRoom(next, false);
}

Log World::Take()
{
    Log taken;
    taken.swap(log_);
    return taken;
}

void World::Note(const std::string& text)
{
    log_.push_back(text);
}
void World::On(const std::string& label, Reaction reaction)
{
    reactions_[label] = reaction;
}
void World::Forget(const std::string& label)
{
    silent_[label] = true;
}

void World::Ran(CInstance* self, CInstance* other, const std::string& label)
{
    if (!silent_[label]) log_.push_back(label);
    const auto reaction = reactions_.find(label);
    if (reaction != reactions_.end()) Reaction(reaction->second)(self, other);
}

CInstance* World::First(int32_t object)
{
    auto* node = Object_Data(object)->instances.Head();
    return node ? node->item : nullptr;
}

std::vector<int32_t> World::ActiveIds()
{
    std::vector<int32_t> ids;
    for (CInstance* at = Run_Room->activeHead; at; at = at->next) ids.push_back(at->id);
    return ids;
}

void World_HookServices()
{
    Service_Hook(ServicePlace::Network, NoteNetwork);
    Service_Hook(ServicePlace::Steam, NoteSteam);
    Service_Hook(ServicePlace::Async, NoteAsync);
    Service_Hook(ServicePlace::Particles, NoteParticles);
}

void World_UnhookServices()
{
    Service_Unhook(ServicePlace::Network, NoteNetwork);
    Service_Unhook(ServicePlace::Steam, NoteSteam);
    Service_Unhook(ServicePlace::Async, NoteAsync);
    Service_Unhook(ServicePlace::Particles, NoteParticles);
}
