// Making, changing and ending instances; the id table; the per-step updates.

#include "Files/Object/Instance_Main.h"

#include <algorithm>
#include <cmath>

#include "Files/Base/Error.h"
#include "Files/Function/Function_Registry.h"
#include "Files/Object/Object_Main.h"
#include "Files/Room/Room_Main.h"
#include "Platform/Hash.h"

uint64_t g_PhaseCounter;
int32_t g_MarkedCount;
int32_t lastInstanceId;

namespace {

constexpr uint32_t kIdBuckets = 1024;
constexpr size_t kTableStart = 256;
constexpr double kDegree = kScriptPi / 180.0;

Hash<CInstance>* g_ids;

struct InstanceTable {
    VxVector<CInstance*> slots;
    size_t count = 0;
    size_t search = 0;  // where the search for a free slot goes on
};
InstanceTable g_table;

int32_t NextId()
{
    return ++lastInstanceId;
}

void EnterWorld(CInstance* instance)
{
    Run_Room->InsertByDepth(instance);
    Instance_AddId(instance);
}

void Mark(CInstance* instance)
{
    if (instance->marked) return;
    instance->marked = true;
    instance->deactivated = false;
    ++g_MarkedCount;
}

void LeaveList(VxVector<CInstance*>* list, const CInstance* instance)
{
    if (!list->empty()) list->erase(std::remove(list->begin(), list->end(), instance), list->end());
}

}  // namespace

void Instance_Init()
{
    Instance_Quit();
    g_ids = VxNew<Hash<CInstance>>(kIdBuckets);
    lastInstanceId = kFirstInstanceId;
}

void Instance_Quit()
{
    VxDelete(g_ids);
    g_ids = nullptr;
    VxVector<CInstance*>().swap(g_table.slots);
    g_table.count = g_table.search = 0;
    Instance_FreeBuffers();
    g_PhaseCounter = 0;
    g_MarkedCount = 0;
}

int32_t Instance_TakeSlot(CInstance* instance)
{
    VxVector<CInstance*>& slots = g_table.slots;
    if (g_table.count >= slots.size())
        slots.resize(std::max(kTableStart, slots.size() * 3 / 2), nullptr);
    size_t slot = g_table.search;
    while (slots[slot]) slot = (slot + 1) % slots.size();
    slots[slot] = instance;
    ++g_table.count;
    g_table.search = (slot + 1) % slots.size();
    return static_cast<int32_t>(slot);
}

void Instance_GiveSlot(int32_t slot)
{
    const auto at = static_cast<size_t>(slot);
    if (slot < 0 || at >= g_table.slots.size()) return;
    g_table.slots[at] = nullptr;
    --g_table.count;
    g_table.search = std::min(g_table.search, at);
}

CInstance* Instance_FromId(int32_t id)
{
    return g_ids ? g_ids->Find(id) : nullptr;
}

void Instance_AddId(CInstance* instance)
{
    g_ids->Add(instance->id, instance);
}

void Instance_RemoveId(CInstance* instance)
{
    if (g_ids) g_ids->Remove(instance->id, instance);
}

CInstance* Room_CreateInstance(float x, float y, int32_t objectIndex)
{
    if (!Object_Data(objectIndex)) {
        Error_Showf("Creating instance for non-existing object: %d", objectIndex);
        return nullptr;
    }
    if (!Run_Room) return nullptr;
    CInstance* instance = VxNew<CInstance>(x, y, NextId(), objectIndex, true);
    EnterWorld(instance);
    Perform_Event(instance, instance, EVENT_PRECREATE, 0);
    Perform_Event(instance, instance, EVENT_CREATE, 0);
    instance->created = true;
    return instance;
}

int32_t Instance_CreateDirect(float x, float y, int32_t objectIndex)
{
    const CInstance* instance = Room_CreateInstance(x, y, objectIndex);
    return instance ? instance->id : -1;
}

void Instance_Destroy(CInstance* instance, bool withEvents)
{
    if (!instance->Alive()) return;
    if (withEvents) {
        if (instance->destroyed) return;
        instance->destroyed = true;
        Perform_Event(instance, instance, EVENT_DESTROY, 0);
    }
    Perform_Event(instance, instance, EVENT_CLEANUP, 0);
    Mark(instance);
}

void Instance_Change(CInstance* instance, int32_t objectIndex, bool withEvents)
{
    if (!Object_Data(objectIndex)) {
        Error_Showf("Asking to change into non-existing object: %d", objectIndex);
        return;
    }
    if (instance->object_index == objectIndex) return;
    if (withEvents && !instance->destroyed) {
        Perform_Event(instance, instance, EVENT_DESTROY, 0);
        Perform_Event(instance, instance, EVENT_CLEANUP, 0);
    }
    // A second change before the first is applied leaves the lists of the very first object.
    if (!instance->changedFrom) {
        instance->changedFrom = instance->object;
        g_ObjectChanges.push_back(instance);
    }
    instance->SetObject(objectIndex);
    if (withEvents) {
        Perform_Event(instance, instance, EVENT_PRECREATE, 0);
        Perform_Event(instance, instance, EVENT_CREATE, 0);
    }
}

CInstance* Instance_Copy(CInstance* instance, bool withEvents)
{
    if (!Run_Room) return nullptr;
    CInstance* copy =
        VxNew<CInstance>(instance->x, instance->y, NextId(), instance->object_index, true);
    copy->CopyFrom(*instance);
    EnterWorld(copy);
    copy->depthPending = true;
    g_DepthChanges.push_back(copy);
    if (withEvents) {
        Perform_Event(copy, copy, EVENT_PRECREATE, 0);
        Perform_Event(copy, copy, EVENT_CREATE, 0);
        copy->created = true;
    }
    return copy;
}

void Instance_Free(CInstance* instance)
{
    LeaveList(&g_DepthChanges, instance);
    LeaveList(&g_ObjectChanges, instance);
    LeaveList(&g_ActivationChanges, instance);
    Instance_RemoveId(instance);
    VxDelete(instance);
}

void PurgeInstances()
{
    g_MarkedCount = 0;
    if (!Run_Room) return;
    for (CInstance* instance = Run_Room->activeHead; instance;) {
        CInstance* following = instance->next;
        if (instance->marked) {
            Run_Room->RemoveActive(instance);
            Instance_Free(instance);
        }
        instance = following;
    }
}

void Instance_Animate(CInstance* instance)
{
    instance->image_index += instance->image_speed;
    const auto frames = static_cast<float>(instance->ImageNumber());
    // The whole part of the index is compared: with no frames it is at or above 0
    // from just above -1 on.
    const bool beyond = frames > 0 ? instance->image_index >= frames : instance->image_index > -1;
    if (beyond) {
        instance->image_index -= frames;
    } else if (instance->image_index < 0) {
        instance->image_index += frames;
    } else {
        return;
    }
    Perform_Event(instance, instance, EVENT_OTHER, OTHER_ANIMATION_END);
}

void Instance_FrictionAndGravity(CInstance* instance)
{
    const float speed = instance->speed;
    if (instance->friction != 0 && speed != 0) {
        float slowed = speed > 0 ? speed - instance->friction : speed + instance->friction;
        if ((speed > 0) != (slowed > 0)) slowed = 0;
        if (slowed != speed) {
            instance->speed = slowed;
            instance->ComputeSpeedFromDirection();
        }
    }
    if (instance->gravity != 0) {
        const double angle = static_cast<double>(instance->gravity_direction) * kDegree;
        const double pull = instance->gravity;
        instance->hspeed = static_cast<float>(instance->hspeed + std::cos(angle) * pull);
        instance->vspeed = static_cast<float>(instance->vspeed - std::sin(angle) * pull);
        instance->ComputeDirectionFromSpeed();
    }
}

// No archive of this system holds a path, so an index names none and none ends.
bool Instance_UpdatePath(CInstance*)
{
    return false;
}
