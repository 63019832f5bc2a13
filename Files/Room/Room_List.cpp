// The two lists of instances of a room, through the links of the instances.

#include "Files/Object/CInstance.h"
#include "Files/Room/CRoom.h"

namespace {

struct Ends {
    CInstance*& head;
    CInstance*& tail;
    int32_t& count;
};

// `before` is null for a place at the head.
void LinkBehind(const Ends& list, CInstance* before, CInstance* instance)
{
    CInstance* after = before ? before->next : list.head;
    instance->previous = before;
    instance->next = after;
    (before ? before->next : list.head) = instance;
    (after ? after->previous : list.tail) = instance;
    ++list.count;
}

void Unlink(const Ends& list, CInstance* instance)
{
    (instance->previous ? instance->previous->next : list.head) = instance->next;
    (instance->next ? instance->next->previous : list.tail) = instance->previous;
    instance->next = instance->previous = nullptr;
    --list.count;
}

}  // namespace

// From the tail: an instance goes behind all of its own depth, and those of great
// depth, the most numerous, find their place at once.
void CRoom::InsertByDepth(CInstance* instance)
{
    CInstance* before = activeTail;
    while (before && before->sortedDepth > instance->depth) before = before->previous;
    instance->sortedDepth = instance->depth;
    LinkBehind({activeHead, activeTail, activeCount}, before, instance);
}

void CRoom::RemoveActive(CInstance* instance)
{
    Unlink({activeHead, activeTail, activeCount}, instance);
}

void CRoom::AddDeactivated(CInstance* instance)
{
    LinkBehind({deactivatedHead, deactivatedTail, deactivatedCount}, deactivatedTail, instance);
}

void CRoom::RemoveDeactivated(CInstance* instance)
{
    Unlink({deactivatedHead, deactivatedTail, deactivatedCount}, instance);
}
