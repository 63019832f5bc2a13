// Who responds to what, and the running of events.

#include <cstring>

#include "Files/Base/Error.h"
#include "Files/Code/CCode.h"
#include "Files/Object/CInstance.h"
#include "Files/Object/Object_Internal.h"
#include "Files/Object/Object_Main.h"
#include "Files/Room/Room_Main.h"

EventObjects g_EventObjects[kEventRows][kEventSubtypes];
CollisionPair* g_CollisionPairs;
int32_t g_CollisionPairCount;
int32_t Current_Event_Object, Current_Event_Type, Current_Event_Number;

namespace {

constexpr int32_t kEventDepth = 32;  // nested events
constexpr int32_t kPairGrowth = 5;

int32_t g_eventDepth;

// Subtypes scanned for each event type, 0 for a type that no table lists.
constexpr int32_t kScanned[kEventRows] = {1, 1,   13,  17, 0, 129, 129, 129,
                                          1, 129, 129, 0,  0, 129, 1};

FoundEvent FindInChain(const CObjectSW* object, int32_t type, int32_t subtype)
{
    for (; object; object = object->parent)
        if (CEvent* event = object->OwnEvent(type, subtype)) return {event, object};
    return {nullptr, nullptr};
}

void ListResponders(int32_t type, int32_t subtype, VxVector<int32_t>* scratch)
{
    scratch->clear();
    for (int32_t i = 0; i < Object_Count(); ++i)
        if (FindInChain(Object_Data(i), type, subtype).event) scratch->push_back(i);
    if (scratch->empty()) return;
    EventObjects& entry = g_EventObjects[type][subtype];
    entry.count = static_cast<int32_t>(scratch->size());
    const size_t bytes = scratch->size() * sizeof(int32_t);
    entry.objects = static_cast<int32_t*>(MemoryManager::Alloc(bytes));
    std::memcpy(entry.objects, scratch->data(), bytes);
}

bool PairExists(int32_t first, int32_t second)
{
    for (int32_t i = 0; i < g_CollisionPairCount; ++i)
        if (g_CollisionPairs[i].first == first && g_CollisionPairs[i].second == second) return true;
    return false;
}

void AddPair(CObjectSW* a, CObjectSW* b)
{
    CObjectSW* first = a->index <= b->index ? a : b;
    CObjectSW* second = first == a ? b : a;
    if (PairExists(first->index, second->index)) return;
    if (g_CollisionPairCount % kPairGrowth == 0) {
        const auto length = static_cast<size_t>(g_CollisionPairCount + kPairGrowth);
        MemoryManager::SetLength(&g_CollisionPairs, length * sizeof(CollisionPair));
    }
    g_CollisionPairs[g_CollisionPairCount++] = {first->index, second->index, first, second, true};
    first->flags |= OBJECT_COLLIDES;
    second->flags |= OBJECT_COLLIDES;
}

bool ChainHasCollisions(const CObjectSW* object)
{
    for (; object; object = object->parent)
        if (object->events[EVENT_COLLISION].count > 0) return true;
    return false;
}

void BuildCollisionPairs()
{
    bool allPhysics = true;
    for (int32_t i = 0; i < Object_Count(); ++i) {
        CObjectSW* object = Object_Data(i);
        if (!object) continue;
        object->flags &= ~static_cast<uint32_t>(OBJECT_COLLIDES);
        if (!object->physics) allPhysics = false;
    }
    if (allPhysics) return;
    for (int32_t a = 0; a < Object_Count(); ++a) {
        CObjectSW* object = Object_Data(a);
        if (!ChainHasCollisions(object)) continue;
        for (int32_t b = 0; b < Object_Count(); ++b) {
            CObjectSW* with = Object_Data(b);
            if (with && Object_FindEvent(object, EVENT_COLLISION, b).event) AddPair(object, with);
        }
    }
}

// A room change that was asked for silences events, but for those that finish what
// persistent things have begun.
bool Silenced(const CInstance* self, int32_t type)
{
    if (type == EVENT_CLEANUP) return g_ErrorPending;
    if (New_Room == ROOM_NONE) return false;
    switch (type) {
        case EVENT_CREATE:
        case EVENT_PRECREATE:
        case EVENT_DESTROY:
        case EVENT_ALARM:
        case EVENT_OTHER:
            return !self->persistent && !(Run_Room && Run_Room->persistent);
        default:
            return true;
    }
}

void RunEvent(CInstance* self, CInstance* other, const FoundEvent& found, int32_t type,
              int32_t subtype)
{
    const int32_t object = Current_Event_Object, outerType = Current_Event_Type,
                  number = Current_Event_Number;
    Current_Event_Object = found.object->index;
    Current_Event_Type = type;
    Current_Event_Number = subtype;
    RValue result;
    Code_Execute(self, other, found.event->code, &result, 0);
    FREE_RValue(&result);
    Current_Event_Object = object;
    Current_Event_Type = outerType;
    Current_Event_Number = number;
}

void Perform(CInstance* self, CInstance* other, const CObjectSW* from, int32_t type,
             int32_t subtype)
{
    if (Silenced(self, type)) return;
    if (type < 0 || type >= kEventRows || subtype < 0) {
        Error_Show("Invalid event argument", true);
        return;
    }
    const FoundEvent found = Object_FindEvent(from, type, subtype);
    if (!found.event) return;
    ++g_eventDepth;
    if (g_eventDepth > kEventDepth) {
        Error_Show(
            "PerformEvent recursion depth failure - check for infinite loops, check objects for "
            "parenting",
            true);
    } else {
        RunEvent(self, other, found, type, subtype);
    }
    --g_eventDepth;
}

}  // namespace

void Object_ResetEvents()
{
    g_eventDepth = 0;
    Current_Event_Object = Current_Event_Type = Current_Event_Number = 0;
}

void Object_FreeEventTables()
{
    for (auto& row : g_EventObjects) {
        for (EventObjects& entry : row) {
            MemoryManager::Free(entry.objects);
            entry = EventObjects{};
        }
    }
    MemoryManager::Free(g_CollisionPairs);
    g_CollisionPairs = nullptr;
    g_CollisionPairCount = 0;
}

void Object_BuildEventTables()
{
    Object_FreeEventTables();
    VxVector<int32_t> scratch;
    for (int32_t type = 0; type < kEventRows; ++type)
        for (int32_t subtype = 0; subtype < kScanned[type]; ++subtype)
            ListResponders(type, subtype, &scratch);
    BuildCollisionPairs();
}

FoundEvent Object_FindEvent(const CObjectSW* object, int32_t type, int32_t subtype)
{
    FoundEvent found = FindInChain(object, type, subtype);
    if (found.event || type != EVENT_COLLISION) return found;
    const CObjectSW* with = Object_Data(subtype);
    if (!with) return found;
    for (with = with->parent; with && !found.event; with = with->parent)
        found = FindInChain(object, type, with->index);
    return found;
}

bool Has_Event(int32_t objectIndex, int32_t type, int32_t subtype)
{
    return Object_FindEvent(Object_Data(objectIndex), type, subtype).event != nullptr;
}

void Perform_Event(CInstance* self, CInstance* other, int32_t type, int32_t subtype)
{
    if (self) Perform(self, other, self->object, type, subtype);
}

void Perform_Event_Object(CInstance* self, CInstance* other, int32_t objectIndex, int32_t type,
                          int32_t subtype)
{
    if (self) Perform(self, other, Object_Data(objectIndex), type, subtype);
}
