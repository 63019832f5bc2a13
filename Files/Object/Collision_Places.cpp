// Place tests: what an instance, or a point, would touch.

#include "Files/Object/Collision.h"
#include "Files/Object/Instance_Main.h"
#include "Files/Object/Object_Main.h"
#include "Files/Room/Room_Main.h"

namespace {

constexpr double kAligned = 0.001;  // pixels off the grid that still count as on it

// Lends an instance to a point for the life of the object.
class Lent {
public:
    Lent(CInstance* instance, float x, float y)
        : instance_(instance), x_(instance->x), y_(instance->y)
    {
        instance_->SetPosition(x, y);
    }
    ~Lent() { instance_->SetPosition(x_, y_); }
    Lent(const Lent&) = delete;
    Lent& operator=(const Lent&) = delete;

private:
    CInstance* instance_;
    float x_, y_;
};

// The first instance of the active list that passes the test, from the head.
template <class Test>
CInstance* FirstActive(Test test)
{
    if (!Run_Room) return nullptr;
    for (CInstance* instance = Run_Room->activeHead; instance; instance = instance->next)
        if (test(instance)) return instance;
    return nullptr;
}

// The first live instance that `target` names and that passes the test.
template <class Test>
CInstance* FirstOf(CInstance* self, CInstance* other, int32_t target, Test test)
{
    const auto alive = [&](CInstance* instance) {
        return instance && instance->Alive() && test(instance);
    };
    if (target == INSTANCE_SELF) return alive(self) ? self : nullptr;
    if (target == INSTANCE_OTHER) return alive(other) ? other : nullptr;
    if (target == INSTANCE_ALL) return FirstActive(alive);
    if (target < 0) return nullptr;
    if (target >= kFirstInstanceId) {
        CInstance* instance = Instance_FromId(target);
        return alive(instance) ? instance : nullptr;
    }
    const CObjectSW* object = Object_Data(target);
    if (!object) return nullptr;
    for (auto* node = object->instancesRecursive.Head(); node; node = node->next)
        if (alive(node->item)) return node->item;
    return nullptr;
}

}  // namespace

bool Place_Free(CInstance* self, float x, float y)
{
    const Lent lent(self, x, y);
    return !FirstActive(
        [self](CInstance* with) { return with->solid && CollisionInstance(with, self, true); });
}

bool Place_Empty(CInstance* self, float x, float y)
{
    const Lent lent(self, x, y);
    return !FirstActive([self](CInstance* with) { return CollisionInstance(with, self, true); });
}

CInstance* Place_Find(CInstance* self, CInstance* other, float x, float y, int32_t target)
{
    const Lent lent(self, x, y);
    return FirstOf(self, other, target,
                   [self](CInstance* with) { return CollisionInstance(with, self, true); });
}

CInstance* Position_Find(CInstance* self, CInstance* other, float x, float y, int32_t target)
{
    return FirstOf(self, other, target,
                   [x, y](CInstance* with) { return CollisionPoint(with, x, y, true); });
}

bool Place_Snapped(const CInstance* self, double hsnap, double vsnap)
{
    const double x = self->x, y = self->y;
    if (hsnap > 0 && std::fabs(x - RoundToGrid(x, hsnap)) >= kAligned) return false;
    return !(vsnap > 0 && std::fabs(y - RoundToGrid(y, vsnap)) >= kAligned);
}
