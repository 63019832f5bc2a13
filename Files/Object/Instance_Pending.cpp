// Changes that wait until no walk is under way, and the numbers that name instances.

#include <algorithm>

#include "Files/Object/Instance_Main.h"
#include "Files/Object/Object_Main.h"
#include "Files/Room/Room_Main.h"

VxVector<CInstance*> g_DepthChanges, g_ObjectChanges, g_ActivationChanges;

namespace {

VxVector<CInstance*> g_visits;  // what the iterators under way still have to yield, stacked

void ApplyActivation()
{
    CRoom* room = Run_Room;
    for (CInstance* instance = room->deactivatedHead; instance;) {
        CInstance* following = instance->next;
        if (!instance->deactivated) {
            room->RemoveDeactivated(instance);
            room->InsertByDepth(instance);
            instance->AddToObjectLists();
        }
        instance = following;
    }
    for (CInstance* instance = room->activeHead; instance;) {
        CInstance* following = instance->next;
        if (instance->deactivated) {
            room->RemoveActive(instance);
            room->AddDeactivated(instance);
            instance->RemoveFromObjectLists();
        }
        instance = following;
    }
    g_ActivationChanges.clear();
}

void ApplyObjectChanges()
{
    for (CInstance* instance : g_ObjectChanges) {
        // One that was deactivated meanwhile has left the lists already.
        if (!instance->changedFrom) continue;
        instance->RemoveFromObjectLists();
        if (instance->deactivated) continue;
        instance->AddToObjectLists();
        Run_Room->RemoveActive(instance);
        Run_Room->InsertByDepth(instance);
    }
    g_ObjectChanges.clear();
}

void ApplyDepthChanges()
{
    for (CInstance* instance : g_DepthChanges)
        if (!instance->deactivated) Run_Room->RemoveActive(instance);
    for (CInstance* instance : g_DepthChanges) {
        instance->depthPending = false;
        if (!instance->deactivated) Run_Room->InsertByDepth(instance);
    }
    g_DepthChanges.clear();
}

void VisitOne(CInstance* instance)
{
    if (instance) g_visits.push_back(instance);
}

void VisitList(CInstance* head)
{
    for (CInstance* instance = head; instance; instance = instance->next)
        g_visits.push_back(instance);
}

void VisitOnce(CInstance* instance, size_t base)
{
    const auto first = g_visits.begin() + static_cast<std::ptrdiff_t>(base);
    if (std::find(first, g_visits.end(), instance) == g_visits.end()) g_visits.push_back(instance);
}

void VisitObject(int32_t number, bool withDeactivated, size_t base)
{
    CObjectSW* object = Object_Data(number);
    if (!object) return;
    for (auto* node = object->instancesRecursive.Head(); node; node = node->next)
        g_visits.push_back(node->item);
    for (const auto* list : {&g_ObjectChanges, &g_ActivationChanges})
        for (CInstance* instance : *list)
            if (instance->object_index == number) VisitOnce(instance, base);
    if (!withDeactivated || !Run_Room) return;
    for (CInstance* instance = Run_Room->deactivatedHead; instance; instance = instance->next)
        if (instance->object && instance->object->IsOrDescendsFrom(number))
            VisitOnce(instance, base);
}

}  // namespace

void Instance_FreeBuffers()
{
    for (auto* list : {&g_DepthChanges, &g_ObjectChanges, &g_ActivationChanges, &g_visits})
        VxVector<CInstance*>().swap(*list);
}

void ApplyPendingChanges()
{
    if (!Run_Room) return;
    if (!g_ActivationChanges.empty()) ApplyActivation();
    if (!g_ObjectChanges.empty()) ApplyObjectChanges();
    if (!g_DepthChanges.empty()) ApplyDepthChanges();
}

void Instance_SetDepth(CInstance* instance, float depth)
{
    if (instance->depth == depth) return;
    instance->depth = depth;
    if (instance->depthPending) return;
    instance->depthPending = true;
    g_DepthChanges.push_back(instance);
}

void Instance_Deactivate(CInstance* instance)
{
    if (!instance->Alive()) return;
    instance->deactivated = true;
    g_ActivationChanges.push_back(instance);
}

void Instance_Activate(CInstance* instance)
{
    if (!instance->deactivated) return;
    instance->deactivated = false;
    g_ActivationChanges.push_back(instance);
}

InstanceIterator::InstanceIterator(int32_t number, CInstance* self, CInstance* other,
                                   bool withDeactivated)
    : position_(g_visits.size()), end_(position_), base_(position_)
{
    if (number == INSTANCE_SELF) {
        VisitOne(self);
    } else if (number == INSTANCE_OTHER) {
        VisitOne(other);
    } else if (number == INSTANCE_ALL) {
        if (Run_Room) VisitList(Run_Room->activeHead);
        if (Run_Room && withDeactivated) VisitList(Run_Room->deactivatedHead);
    } else if (number >= kFirstInstanceId) {
        VisitOne(Instance_FromId(number));
    } else if (number >= 0) {
        VisitObject(number, withDeactivated, base_);
    }
    end_ = g_visits.size();
}

InstanceIterator::~InstanceIterator()
{
    g_visits.resize(base_);
}

CInstance* InstanceIterator::Next()
{
    return position_ < end_ ? g_visits[position_++] : nullptr;
}

int32_t Instance_Number(int32_t number, CInstance* self, CInstance* other)
{
    int32_t count = 0;
    const CObjectSW* object =
        number >= 0 && number < kFirstInstanceId ? Object_Data(number) : nullptr;
    if (object) {
        for (auto* node = object->instancesRecursive.Head(); node; node = node->next)
            count += node->item->Alive();
        // Not those that the lists hold already, having changed within the family.
        for (const CInstance* instance : g_ObjectChanges)
            if (instance->object_index == number && instance->Alive() && instance->changedFrom &&
                !instance->changedFrom->IsOrDescendsFrom(number))
                ++count;
        return count;
    }
    InstanceIterator named(number, self, other);
    while (const CInstance* instance = named.Next()) count += instance->Alive();
    return count;
}

bool Instance_Exists(int32_t number, CInstance* self, CInstance* other)
{
    InstanceIterator named(number, self, other);
    while (const CInstance* instance = named.Next())
        if (instance->Alive()) return true;
    return false;
}
