// The `with` statement of compiled code: a snapshot of the instances that a target
// names, visited from its end.

#include <algorithm>

#include "Files/Code/Script_Interface.h"
#include "Files/Object/CInstance.h"
#include "Files/Object/Instance_Main.h"
#include "Files/Object/Object_Main.h"
#include "Files/Room/Room_Main.h"

namespace {

constexpr int32_t kTargetSelf2 = -6;  // a second number for `self`

// A snapshot's memory. Blocks wait in a list between uses, so that a loop body that
// runs each frame allocates nothing once its block has grown.
struct Block {
    Block* next;
    int32_t capacity;
    CInstance** Cells() { return reinterpret_cast<CInstance**>(this + 1); }
};
Block* s_FreeBlocks = nullptr;

CInstance** TakeCells(int32_t count)
{
    Block* block = s_FreeBlocks;
    if (block) s_FreeBlocks = block->next;
    if (!block || block->capacity < count) {
        int32_t capacity = 16;
        while (capacity < count) capacity *= 2;
        MemoryManager::Free(block);
        block = static_cast<Block*>(MemoryManager::Alloc(
            sizeof(Block) + static_cast<size_t>(capacity) * sizeof(CInstance*)));
        block->capacity = capacity;
    }
    return block->Cells();
}

void GiveCells(CInstance** cells)
{
    Block* block = reinterpret_cast<Block*>(cells) - 1;
    block->next = s_FreeBlocks;
    s_FreeBlocks = block;
}

// Collects into cells that were taken with room enough; the first is the null at
// which the walk ends.
class Snapshot {
public:
    explicit Snapshot(int32_t capacity) : cells_(TakeCells(capacity + 1)) { cells_[0] = nullptr; }
    void Add(CInstance* instance)
    {
        if (instance->Alive()) cells_[++count_] = instance;
    }
    void AddOnce(CInstance* instance)
    {
        if (std::find(cells_ + 1, cells_ + 1 + count_, instance) == cells_ + 1 + count_)
            Add(instance);
    }
    void Force(CInstance* instance) { cells_[++count_] = instance; }
    int32_t Count() const { return count_; }
    CInstance** Cells() const { return cells_; }

private:
    CInstance** cells_;
    int32_t count_ = 0;
};

Snapshot OfOne(CInstance* instance, bool anyState)
{
    Snapshot snapshot(1);
    if (instance && anyState) snapshot.Force(instance);
    if (instance && !anyState) snapshot.Add(instance);
    return snapshot;
}

Snapshot OfAll()
{
    Snapshot snapshot(Run_Room ? Run_Room->activeCount : 0);
    if (Run_Room)
        for (CInstance* instance = Run_Room->activeHead; instance; instance = instance->next)
            snapshot.Add(instance);
    return snapshot;
}

Snapshot OfObject(int32_t objectIndex)
{
    CObjectSW* object = Object_Data(objectIndex);
    const size_t pending = g_ObjectChanges.size() + g_ActivationChanges.size();
    Snapshot snapshot((object ? object->instancesRecursive.Count() : 0) +
                      static_cast<int32_t>(pending));
    if (object)
        for (auto* node = object->instancesRecursive.Head(); node; node = node->next)
            snapshot.Add(node->item);
    for (const auto* list : {&g_ObjectChanges, &g_ActivationChanges})
        for (CInstance* instance : *list)
            if (instance->object_index == objectIndex) snapshot.AddOnce(instance);
    return snapshot;
}

Snapshot OfTarget(CInstance* self, CInstance* other, int32_t target)
{
    if (target == INSTANCE_SELF || target == kTargetSelf2) return OfOne(self, true);
    if (target == INSTANCE_OTHER) return OfOne(other, true);
    if (target == INSTANCE_ALL) return OfAll();
    if (target >= kFirstInstanceId) return OfOne(Instance_FromId(target), false);
    if (target >= 0) return OfObject(target);
    return OfOne(nullptr, false);
}

}  // namespace

int32_t With_Begin(WithState* state, CInstance** self, CInstance** other, int32_t target)
{
    const Snapshot snapshot = OfTarget(*self, *other, target);
    state->savedSelf = *self;
    state->savedOther = *other;
    state->instances = snapshot.Cells();
    state->position = snapshot.Count();
    if (snapshot.Count() > 0) {
        *self = snapshot.Cells()[state->position];
        *other = state->savedSelf;
    }
    return snapshot.Count();
}

bool With_Next(WithState* state, CInstance** self)
{
    if (!state->instances || state->position <= 0) return false;
    CInstance* next = state->instances[--state->position];
    if (!next) return false;
    *self = next;
    return true;
}

void With_End(WithState* state, CInstance** self, CInstance** other)
{
    if (state->instances) GiveCells(state->instances);
    state->instances = nullptr;
    state->position = 0;
    *self = state->savedSelf;
    *other = state->savedOther;
}

void With_ReleaseBuffers()
{
    while (s_FreeBlocks) {
        Block* next = s_FreeBlocks->next;
        MemoryManager::Free(s_FreeBlocks);
        s_FreeBlocks = next;
    }
}
