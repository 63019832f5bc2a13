// Collision events, pair of objects by pair, with the rule for solid instances.

#include "Files/Object/Collision.h"
#include "Files/Run/Step.h"
#include "Files/Run/Walk.h"

namespace {

void PutBack(CInstance* instance)
{
    instance->SetPosition(instance->xprevious, instance->yprevious);
    instance->path_position = instance->path_positionprevious;
}

void Advance(CInstance* instance)
{
    instance->SetPosition(instance->x + instance->hspeed, instance->y + instance->vspeed);
}

// Nothing solid is entered: both start from where they came, and what the events
// left of their speeds is tried once more.
void Collide(CInstance* first, CInstance* second)
{
    if (first->solid || second->solid) {
        PutBack(first);
        PutBack(second);
    }
    Perform_Event(first, second, EVENT_COLLISION, second->object_index);
    Perform_Event(second, first, EVENT_COLLISION, first->object_index);
    if (!first->solid && !second->solid) return;
    Instance_UpdatePath(first);
    Instance_UpdatePath(second);
    Advance(first);
    Advance(second);
    if (!CollisionInstance(first, second, true)) return;
    PutBack(first);
    PutBack(second);
}

void MeetAll(CInstance* first, const CObjectSW* object, uint64_t snapshot)
{
    for (auto* node = object->instances.Head(); node && first->Alive();) {
        auto* following = node->next;
        CInstance* second = node->item;
        if (Walk_Takes(second, snapshot) && CollisionInstance(first, second, true))
            Collide(first, second);
        node = following;
    }
}

}  // namespace

void Step_Collisions()
{
    for (int32_t i = 0; i < g_CollisionPairCount; ++i) {
        const CollisionPair pair = g_CollisionPairs[i];
        if (!pair.live || pair.firstObject->instances.Empty()) continue;
        const uint64_t snapshot = Walk_Begin();
        for (auto* node = pair.firstObject->instances.Head(); node;) {
            auto* following = node->next;
            if (Walk_Takes(node->item, snapshot)) MeetAll(node->item, pair.secondObject, snapshot);
            node = following;
        }
    }
}
