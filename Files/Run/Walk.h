#pragma once
// The walk by which a phase reaches the instances that respond to an event. An
// event may do anything to the world: destroying only marks, new instances stand
// behind the snapshot, and all other changes wait in the pending lists.

#include "Files/Object/Instance_Main.h"
#include "Files/Object/Object_Main.h"

// Visits the walk's instances of all objects of one table, by object and then by age.
template <class Visit>
void Walk_Responders(uint64_t snapshot, int32_t type, int32_t subtype, Visit visit)
{
    const EventObjects& responders = g_EventObjects[type][subtype];
    for (int32_t i = 0; i < responders.count; ++i) {
        const CObjectSW* object = Object_Data(responders.objects[i]);
        if (!object) continue;
        for (auto* node = object->instances.Head(); node;) {
            auto* following = node->next;
            if (Walk_Takes(node->item, snapshot)) visit(node->item);
            node = following;
        }
    }
}

// Runs an event on all that respond to it; a walk of its own.
inline void Walk_RunEvent(int32_t type, int32_t subtype)
{
    Walk_Responders(Walk_Begin(), type, subtype, [type, subtype](CInstance* instance) {
        Perform_Event(instance, instance, type, subtype);
    });
}
