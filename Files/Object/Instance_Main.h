#pragma once
// Making, finding and changing instances; the pending lists; the per-step image
// and motion updates.

#include <cstdint>

#include "Files/Object/CInstance.h"
#include "Platform/MemoryManager.h"

class CRoom;

extern uint64_t g_PhaseCounter;  // raised by every walk over instances
extern int32_t g_MarkedCount;    // instances marked since the last purge
extern int32_t lastInstanceId;   // highest id given

extern VxVector<CInstance*> g_DepthChanges, g_ObjectChanges, g_ActivationChanges;

// A walk's snapshot: takes the counter and raises it.
inline uint64_t Walk_Begin()
{
    return g_PhaseCounter++;
}
// The test of every walk: alive and not made during it.
inline bool Walk_Takes(const CInstance* instance, uint64_t snapshot)
{
    return !instance->marked && !instance->deactivated && instance->createCounter <= snapshot;
}

void Instance_Init();
void Instance_Quit();  // after the rooms: no instance is left

// ---- the global table of instances, by slot
int32_t Instance_TakeSlot(CInstance* instance);
void Instance_GiveSlot(int32_t slot);
void Instance_FreeBuffers();  // the pending lists and the iterators' memory

// ---- id table
CInstance* Instance_FromId(int32_t id);  // null when there is none
void Instance_AddId(CInstance* instance);
void Instance_RemoveId(CInstance* instance);

// ---- creation and the end
CInstance* Room_CreateInstance(float x, float y, int32_t objectIndex);  // null after a report
int32_t Instance_CreateDirect(float x, float y, int32_t objectIndex);   // id, -1 after a report
void Instance_Destroy(CInstance* instance, bool withEvents);
void Instance_Change(CInstance* instance, int32_t objectIndex, bool withEvents);
CInstance* Instance_Copy(CInstance* instance, bool withEvents);
// Takes the instance out of the pending lists, the id table and its object's
// lists, and frees it. The room list is the caller's.
void Instance_Free(CInstance* instance);

// Activation changes, then object changes, then depth changes: the only place but
// creation and the purge where the lists change. Call it between two walks.
void ApplyPendingChanges();
void PurgeInstances();  // frees the marked instances of the active list
void Instance_SetDepth(CInstance* instance, float depth);  // on a change: store and enter once

// ---- activation; all enter g_ActivationChanges
void Instance_Deactivate(CInstance* instance);  // neither marked nor deactivated ones
void Instance_Activate(CInstance* instance);    // deactivated ones

// ---- naming
// Yields the instances that a number names, in the order of the built-ins: the
// one instance; the active list from the head; an object's instancesRecursive,
// then the pending object and activation changes of that object, then, when
// asked for, the deactivated list; an id. Each comes once. Skips nothing: users test
// Alive().
// Collected before the first visit into a reused buffer, so visits may change
// the world. Nested use is safe.
class InstanceIterator {
public:
    InstanceIterator(int32_t number, CInstance* self, CInstance* other,
                     bool withDeactivated = false);
    ~InstanceIterator();
    InstanceIterator(const InstanceIterator&) = delete;
    InstanceIterator& operator=(const InstanceIterator&) = delete;
    CInstance* Next();  // null at the end

private:
    size_t position_, end_, base_;
};
int32_t Instance_Number(int32_t number, CInstance* self, CInstance* other);
bool Instance_Exists(int32_t number, CInstance* self, CInstance* other);

// ---- per-step updates
void Instance_Animate(CInstance* instance);  // can fire Animation End
void Instance_FrictionAndGravity(CInstance* instance);
bool Instance_UpdatePath(CInstance* instance);  // true when a path ended
