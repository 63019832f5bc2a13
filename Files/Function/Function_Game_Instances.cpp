// Built-ins that make, find, change and end instances.

#include <cmath>

#include "Files/Base/Error.h"
#include "Files/Function/Arguments.h"
#include "Files/Function/Function_Registry.h"
#include "Files/Object/Collision.h"
#include "Files/Object/Instance_Main.h"
#include "Files/Object/Object_Main.h"
#include "Files/Room/Room_Main.h"
#include "Files/Sprite/CSprite.h"

void Function_Game_RegisterInstances();

namespace {

void SetId(RValue& result, const CInstance* instance)
{
    SetReal(result, instance ? instance->id : INSTANCE_NOONE);
}

// ---- creation and the end
BUILTIN(F_InstanceCreate)
{
    SetReal(result,
            Instance_CreateDirect(VXGetFloat(args, 0), VXGetFloat(args, 1), VXGetInt32(args, 2)));
}

BUILTIN(F_InstanceDestroy)
{
    const int32_t number = ArgInt(args, argc, 0, INSTANCE_SELF);
    const bool withEvents = ArgBool(args, argc, 1, true);
    InstanceIterator named(number, self, other);
    while (CInstance* instance = named.Next()) Instance_Destroy(instance, withEvents);
}

BUILTIN(F_InstanceChange)
{
    Instance_Change(self, VXGetInt32(args, 0), ArgBool(args, argc, 1));
}

BUILTIN(F_InstanceCopy)
{
    SetId(result, Instance_Copy(self, ArgBool(args, argc, 0)));
}

BUILTIN(F_InstanceSprite)
{
    const int32_t sprite = VXGetInt32(args, 0);
    if (Sprite_Exists(sprite))
        self->SetSprite(sprite);
    else
        Error_Showf("Setting instance to non-existing sprite: %d", sprite);
}

// Runs the operation on every live instance at a point, as they stood at the start.
template <class Operation>
void AtPoint(const RValue* args, Operation operation)
{
    const float x = VXGetFloat(args, 0), y = VXGetFloat(args, 1);
    InstanceIterator everything(INSTANCE_ALL, nullptr, nullptr);
    while (CInstance* instance = everything.Next())
        if (instance->Alive() && CollisionPoint(instance, x, y, true)) operation(instance);
}

BUILTIN(F_PositionDestroy)
{
    AtPoint(args, [](CInstance* instance) { Instance_Destroy(instance, true); });
}

BUILTIN(F_PositionChange)
{
    const int32_t object = VXGetInt32(args, 2);
    const bool withEvents = ArgBool(args, argc, 3);
    AtPoint(args, [=](CInstance* instance) { Instance_Change(instance, object, withEvents); });
}

// ---- finding
BUILTIN(F_InstanceExists)
{
    SetBool(result, Instance_Exists(VXGetInt32(args, 0), self, other));
}

BUILTIN(F_InstanceNumber)
{
    SetReal(result, Instance_Number(VXGetInt32(args, 0), self, other));
}

BUILTIN(F_InstanceFind)
{
    int32_t left = VXGetInt32(args, 1);
    InstanceIterator named(VXGetInt32(args, 0), self, other);
    const CInstance* instance = left < 0 ? nullptr : named.Next();
    while (instance && (!instance->Alive() || left-- > 0)) instance = named.Next();
    SetId(result, instance);
}

BUILTIN(F_InstanceIdGet)
{
    int32_t left = VXGetInt32(args, 0);
    const CInstance* instance = Run_Room && left >= 0 ? Run_Room->activeHead : nullptr;
    for (; instance && left > 0; --left) instance = instance->next;
    SetId(result, instance);
}

// The named instance whose position is nearest to or furthest from a point; of
// equals the first.
CInstance* Extreme(CInstance* self, CInstance* other, const RValue* args, bool furthest)
{
    const double x = VXGetReal(args, 0), y = VXGetReal(args, 1);
    CInstance* best = nullptr;
    double bestDistance = 0;
    InstanceIterator named(VXGetInt32(args, 2), self, other);
    while (CInstance* instance = named.Next()) {
        if (!instance->Alive()) continue;
        const double distance = std::hypot(instance->x - x, instance->y - y);
        if (best && (furthest ? distance <= bestDistance : distance >= bestDistance)) continue;
        best = instance;
        bestDistance = distance;
    }
    return best;
}

BUILTIN(F_InstanceNearest)
{
    SetId(result, Extreme(self, other, args, false));
}
BUILTIN(F_InstanceFurthest)
{
    SetId(result, Extreme(self, other, args, true));
}

// ---- activation
// Visits both lists of the room, as they stood at the start.
template <class Operation>
void Everywhere(Operation operation)
{
    InstanceIterator everything(INSTANCE_ALL, nullptr, nullptr, true);
    while (CInstance* instance = everything.Next()) operation(instance);
}

void SpareSelf(CInstance* self)
{
    if (self && !self->marked) Instance_Activate(self);
}

BUILTIN(F_InstanceDeactivateAll)
{
    Everywhere(Instance_Deactivate);
    if (ArgBool(args, argc, 0)) SpareSelf(self);
}

BUILTIN(F_InstanceActivateAll)
{
    Everywhere(Instance_Activate);
}

BUILTIN(F_InstanceDeactivateObject)
{
    InstanceIterator named(VXGetInt32(args, 0), self, other);
    while (CInstance* instance = named.Next()) Instance_Deactivate(instance);
}

BUILTIN(F_InstanceActivateObject)
{
    InstanceIterator named(VXGetInt32(args, 0), self, other, true);
    while (CInstance* instance = named.Next()) Instance_Activate(instance);
}

// left, top, width, height and the side: inside is a box that overlaps the rectangle.
class Territory {
public:
    Territory(const RValue* args, int argc)
        : left_(VXGetReal(args, 0)),
          top_(VXGetReal(args, 1)),
          right_(left_ + VXGetReal(args, 2)),
          bottom_(top_ + VXGetReal(args, 3)),
          inside_(ArgBool(args, argc, 4, true))
    {
    }
    bool Takes(CInstance* instance) const
    {
        EnsureBoundingBox(instance);
        const bool overlaps = instance->bbox_right >= left_ && instance->bbox_left <= right_ &&
                              instance->bbox_bottom >= top_ && instance->bbox_top <= bottom_;
        return overlaps == inside_;
    }

private:
    double left_, top_, right_, bottom_;
    bool inside_;
};

BUILTIN(F_InstanceDeactivateRegion)
{
    const Territory territory(args, argc);
    Everywhere([&](CInstance* instance) {
        if (territory.Takes(instance)) Instance_Deactivate(instance);
    });
    if (ArgBool(args, argc, 5)) SpareSelf(self);
}

BUILTIN(F_InstanceActivateRegion)
{
    const Territory territory(args, argc);
    Everywhere([&](CInstance* instance) {
        if (territory.Takes(instance)) Instance_Activate(instance);
    });
}

constexpr BuiltinRow kRows[] = {
    {"instance_create", F_InstanceCreate, 3},
    {"instance_destroy", F_InstanceDestroy, -1},
    {"instance_change", F_InstanceChange, 2},
    {"instance_copy", F_InstanceCopy, 1},
    {"instance_sprite", F_InstanceSprite, 1},
    {"position_destroy", F_PositionDestroy, 2},
    {"position_change", F_PositionChange, 4},
    {"instance_exists", F_InstanceExists, 1},
    {"instance_number", F_InstanceNumber, 1},
    {"instance_find", F_InstanceFind, 2},
    {"instance_id_get", F_InstanceIdGet, 1},
    {"instance_nearest", F_InstanceNearest, 3},
    {"instance_furthest", F_InstanceFurthest, 3},
    {"instance_deactivate_all", F_InstanceDeactivateAll, 1},
    {"instance_deactivate_object", F_InstanceDeactivateObject, 1},
    {"instance_deactivate_region", F_InstanceDeactivateRegion, 6},
    {"instance_activate_all", F_InstanceActivateAll, 0},
    {"instance_activate_object", F_InstanceActivateObject, 1},
    {"instance_activate_region", F_InstanceActivateRegion, 5},
};

}  // namespace

void Function_Game_RegisterInstances()
{
    Function_AddRows(kRows);
}
