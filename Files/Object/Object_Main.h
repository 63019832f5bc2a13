#pragma once
// Objects, their events, and the lists that tell the frame loop who responds to
// what.

#include <cstdint>

#include "Platform/MemoryManager.h"
#include "Platform/SLinkedList.h"

class CInstance;
struct CCode;

inline constexpr int kEventRows = 15;
inline constexpr int kEventSubtypes = 256;
inline constexpr int kObjectLimit = 100000;  // indices are below: ids of instances begin here

enum EventType : int32_t {
    EVENT_CREATE = 0,
    EVENT_DESTROY = 1,
    EVENT_ALARM = 2,
    EVENT_STEP = 3,
    EVENT_COLLISION = 4,
    EVENT_KEYBOARD = 5,
    EVENT_MOUSE = 6,
    EVENT_OTHER = 7,
    EVENT_DRAW = 8,
    EVENT_KEYPRESS = 9,
    EVENT_KEYRELEASE = 10,
    EVENT_TRIGGER = 11,
    EVENT_CLEANUP = 12,
    EVENT_GESTURE = 13,
    EVENT_PRECREATE = 14,
};

enum StepSubtype : int32_t { STEP_NORMAL = 0, STEP_BEGIN = 1, STEP_END = 2 };

enum OtherSubtype : int32_t {
    OTHER_OUTSIDE = 0,
    OTHER_BOUNDARY = 1,
    OTHER_GAME_START = 2,
    OTHER_GAME_END = 3,
    OTHER_ROOM_START = 4,
    OTHER_ROOM_END = 5,
    OTHER_NO_MORE_LIVES = 6,
    OTHER_ANIMATION_END = 7,
    OTHER_END_OF_PATH = 8,
    OTHER_NO_MORE_HEALTH = 9,
    OTHER_USER0 = 10,
    OTHER_OUTSIDE_VIEW0 = 40,
    OTHER_BOUNDARY_VIEW0 = 50,
    OTHER_ASYNC_FIRST = 60,
};

enum DrawSubtype : int32_t {
    DRAW_NORMAL = 0,
    DRAW_GUI = 64,
    DRAW_BEGIN = 72,
    DRAW_END = 73,
    DRAW_GUI_BEGIN = 74,
    DRAW_GUI_END = 75,
    DRAW_PRE = 76,
    DRAW_POST = 77,
};

inline constexpr int32_t kTimelineEvent = 100000;  // Current_Event_Type during a timeline moment

struct CEvent {
    CCode* code;
    const char* owner;  // the object's name
};

enum ObjectFlags : uint32_t {
    OBJECT_SOLID = 1,
    OBJECT_VISIBLE = 2,
    OBJECT_PERSISTENT = 4,
    OBJECT_COLLIDES = 8,  // member of a collision pair
    OBJECT_DEFAULT = 16,
};

struct EventRow {
    int32_t count = 0;
    CEvent** events = nullptr;  // by subtype, null for none
};

class CObjectSW {
public:
    CObjectSW() = default;
    ~CObjectSW();
    CObjectSW(const CObjectSW&) = delete;
    CObjectSW& operator=(const CObjectSW&) = delete;

    bool Solid() const { return (flags & OBJECT_SOLID) != 0; }
    bool Visible() const { return (flags & OBJECT_VISIBLE) != 0; }
    bool Persistent() const { return (flags & OBJECT_PERSISTENT) != 0; }
    CEvent* OwnEvent(int32_t type, int32_t subtype) const;  // null for none or empty code
    // Stores an event, replacing one of the same type and subtype. False for a type
    // or a subtype out of range. Code is not owned.
    bool SetEvent(int32_t type, int32_t subtype, CCode* code);
    bool IsOrDescendsFrom(int32_t objectIndex) const;

    uint32_t flags = OBJECT_DEFAULT | OBJECT_VISIBLE;
    int32_t spriteIndex = -1;
    int32_t depth = 0;
    int32_t parentIndex = -1;
    int32_t maskIndex = -1;
    const char* name = "";
    int32_t index = -1;
    bool physics = false;
    CObjectSW* parent = nullptr;
    EventRow events[kEventRows];
    SLinkedList<CInstance> instances;           // own instances, by age
    SLinkedList<CInstance> instancesRecursive;  // and those of descendants
};

// ---- the table of objects
void Object_Init();  // at start-up
void Object_Quit();  // frees all objects
bool Object_Load(const uint8_t* chunk, uint32_t size, const uint8_t* archiveBase);
bool Object_Prepare();           // binds events and parents; false ends start-up
void Object_BuildEventTables();  // at StartGame: g_EventObjects and the collision pairs
// Enters an object made by hand, for tests and tools: owned by the table from here.
// Takes object->index, or the next free index when that is -1. The index, or -1 when
// it is taken; the object is then deleted.
int32_t Object_Add(CObjectSW* object);
int32_t Object_Count();                  // highest index + 1, empty slots included
CObjectSW* Object_Data(int32_t index);   // null when there is none
const char* Object_Name(int32_t index);  // "<undefined>" when there is none
int32_t Object_Find(const char* name);   // -1 when there is none

// ---- who responds
struct EventObjects {
    int32_t count = 0;
    int32_t* objects = nullptr;  // ascending object indices
};
extern EventObjects g_EventObjects[kEventRows][kEventSubtypes];

struct CollisionPair {
    int32_t first, second;  // first <= second
    CObjectSW* firstObject;
    CObjectSW* secondObject;
    bool live;
};
extern CollisionPair* g_CollisionPairs;
extern int32_t g_CollisionPairCount;

bool Has_Event(int32_t objectIndex, int32_t type, int32_t subtype);

// Where an event of an object is found: on the object itself, else on the nearest
// ancestor; a collision also by the ancestors of the other object. Null for none.
struct FoundEvent {
    CEvent* event;
    const CObjectSW* object;
};
FoundEvent Object_FindEvent(const CObjectSW* object, int32_t type, int32_t subtype);

// ---- running events
// The event under way, 0 before the first. Errors: "Invalid event argument" and, above
// 32 nested events, the recursion text; both are fatal reports and run nothing.
extern int32_t Current_Event_Object, Current_Event_Type, Current_Event_Number;
void Perform_Event(CInstance* self, CInstance* other, int32_t type, int32_t subtype);
void Perform_Event_Object(CInstance* self, CInstance* other, int32_t objectIndex, int32_t type,
                          int32_t subtype);
