// The life of an instance, the lists that it stands in, and its motion.

#include <algorithm>
#include <cmath>

#include "Files/Run/Run_State.h"
#include "tests/Files/support_Script.h"
#include "tests/Files/support_World.h"

namespace {

const std::vector<EventKey> kLife = {
    {EVENT_PRECREATE, 0}, {EVENT_CREATE, 0}, {EVENT_DESTROY, 0}, {EVENT_CLEANUP, 0}};

class Instance : public World {
protected:
    void SetUp() override
    {
        World::SetUp();
        g_Switches.noErrors = true;
        a_ = AddObject("A", kLife);
        b_ = AddObject("B", kLife);
        child_ = AddObject("Child", {}, a_);
        Object(b_).depth = 5;
        AddRoom("room_one");
        Begin();
    }
    CInstance* Make(int32_t object)
    {
        CInstance* instance = Room_CreateInstance(10, 20, object);
        Take();
        return instance;
    }
    // Ids of the instances that a number names, in the iterator's order.
    std::vector<int32_t> Named(int32_t number, bool withDeactivated = false)
    {
        std::vector<int32_t> ids;
        InstanceIterator iterator(number, nullptr, nullptr, withDeactivated);
        while (const CInstance* instance = iterator.Next()) ids.push_back(instance->id);
        return ids;
    }
    bool ReportSays(const std::string& text)
    {
        return LastReport().find(text) != std::string::npos;
    }
    int32_t a_ = -1, b_ = -1, child_ = -1;
    const int32_t firstId_ = kFirstInstanceId + 1;
};

TEST_F(Instance, CreationRunsItsEventsInsideTheCall)
{
    int32_t nested = 0;
    bool inside = false;
    On("A.Create", [&](CInstance* self, CInstance* other) {
        EXPECT_EQ(self, other);
        EXPECT_FALSE(self->created);
        if (inside) return;
        inside = true;
        nested = Instance_CreateDirect(0, 0, a_);
        EXPECT_TRUE(Instance_FromId(nested)->created);
    });
    const CInstance* made = Room_CreateInstance(3.5F, -2, a_);
    EXPECT_EQ(Take(), (Log{"A.PreCreate", "A.Create", "A.PreCreate", "A.Create"}));
    EXPECT_EQ(nested, made->id + 1);
    EXPECT_EQ(lastInstanceId, nested);
    EXPECT_TRUE(made->created);
    EXPECT_FLOAT_EQ(made->xstart, 3.5F);
    EXPECT_FLOAT_EQ(made->yprevious, -2);
    EXPECT_EQ(ActiveIds(), (std::vector<int32_t>{made->id, nested}));
    EXPECT_EQ(Object(a_).instances.Count(), 2);
}

TEST_F(Instance, WhatDoesNotExistIsReportedAndChangesNothing)
{
    EXPECT_EQ(Instance_CreateDirect(0, 0, 77), -1);
    EXPECT_TRUE(ReportSays("Creating instance for non-existing object: 77"));
    CInstance* instance = Make(a_);
    Instance_Change(instance, 78, true);
    EXPECT_TRUE(ReportSays("Asking to change into non-existing object: 78"));
    EXPECT_EQ(instance->object_index, a_);
    EXPECT_EQ(Take(), Log{});
    EXPECT_EQ(New_Room, ROOM_NONE) << "these reports do not end the game";
}

TEST_F(Instance, TheActiveListIsSortedByDepthAndAge)
{
    CInstance* near = Make(a_);
    CInstance* far = Make(b_);
    CInstance* nearToo = Make(a_);
    EXPECT_EQ(ActiveIds(), (std::vector<int32_t>{near->id, nearToo->id, far->id}));
    Instance_SetDepth(near, 9);
    Instance_SetDepth(near, 0);
    Instance_SetDepth(near, 5);
    Instance_SetDepth(far, 5);  // no change, so not entered
    EXPECT_EQ(ActiveIds(), (std::vector<int32_t>{near->id, nearToo->id, far->id}));
    EXPECT_EQ(g_DepthChanges.size(), 1U);
    ApplyPendingChanges();
    EXPECT_EQ(ActiveIds(), (std::vector<int32_t>{nearToo->id, far->id, near->id}));
    EXPECT_EQ(Run_Room->activeTail, near);
    EXPECT_EQ(near->sortedDepth, 5);
    Instance_SetDepth(near, -1);
    ApplyPendingChanges();
    EXPECT_EQ(ActiveIds(), (std::vector<int32_t>{near->id, nearToo->id, far->id}));
    EXPECT_EQ(Run_Room->activeHead, near);
}

TEST_F(Instance, DestructionMarksAndThePurgeFrees)
{
    CInstance* instance = Make(a_);
    On("A.Destroy", [](CInstance* self, CInstance*) { Instance_Destroy(self, true); });
    Instance_Destroy(instance, true);
    Instance_Destroy(instance, true);
    EXPECT_EQ(Take(), (Log{"A.Destroy", "A.CleanUp"}));
    EXPECT_TRUE(instance->marked);
    EXPECT_EQ(g_MarkedCount, 1);
    EXPECT_FALSE(Instance_Exists(a_, nullptr, nullptr));
    EXPECT_EQ(Instance_FromId(instance->id), instance) << "its memory lasts until the purge";
    EXPECT_EQ(Run_Room->activeCount, 1);
    const int32_t id = instance->id;
    Instance_SetDepth(instance, 3);
    PurgeInstances();
    EXPECT_EQ(Instance_FromId(id), nullptr);
    EXPECT_EQ(Run_Room->activeCount, 0);
    EXPECT_TRUE(Object(a_).instances.Empty());
    EXPECT_TRUE(g_DepthChanges.empty());
    EXPECT_EQ(g_MarkedCount, 0);

    CInstance* silent = Make(b_);
    Instance_Destroy(silent, false);
    EXPECT_EQ(Take(), Log{"B.CleanUp"});
    EXPECT_FALSE(silent->destroyed);
}

TEST_F(Instance, ChangeTakesTheNewObjectsValuesAtOnceAndItsListsLater)
{
    CInstance* instance = Make(a_);
    Instance_Change(instance, a_, true);
    EXPECT_EQ(Take(), Log{}) << "a change to the own object is none";
    Instance_Change(instance, b_, true);
    EXPECT_EQ(Take(), (Log{"A.Destroy", "A.CleanUp", "B.PreCreate", "B.Create"}));
    EXPECT_FALSE(instance->destroyed);
    EXPECT_EQ(instance->depth, 5);
    EXPECT_EQ(Object(a_).instances.Count(), 1);
    EXPECT_EQ(Instance_Number(a_, nullptr, nullptr), 1);
    EXPECT_EQ(Instance_Number(b_, nullptr, nullptr), 1);
    EXPECT_EQ(Named(b_), std::vector<int32_t>{instance->id});
    Instance_Change(instance, child_, false);  // before the first change was applied
    EXPECT_EQ(Take(), Log{});
    EXPECT_EQ(Named(a_), std::vector<int32_t>{instance->id}) << "named once, though it stays in A";
    EXPECT_EQ(Instance_Number(a_, nullptr, nullptr), 1);
    ApplyPendingChanges();
    EXPECT_TRUE(Object(a_).instances.Empty());
    EXPECT_EQ(Object(a_).instancesRecursive.Count(), 1);
    EXPECT_EQ(Object(child_).instances.Count(), 1);
    EXPECT_TRUE(Object(b_).instancesRecursive.Empty());
    EXPECT_EQ(instance->changedFrom, nullptr);

    Instance_Change(instance, b_, false);
    Instance_Destroy(instance, false);
    PurgeInstances();  // without the change having been applied
    EXPECT_TRUE(g_ObjectChanges.empty());
    EXPECT_TRUE(Object(a_).instancesRecursive.Empty());
    EXPECT_TRUE(Object(b_).instancesRecursive.Empty());
}

TEST_F(Instance, CopyIsANewInstanceOfTheSameState)
{
    CInstance* instance = Make(a_);
    instance->alarm[3] = 12;
    instance->hspeed = 2;
    instance->depth = instance->sortedDepth = -4;
    const RValue number(42.0);
    ASSIGN_RValue(instance->InternalGetVar(5), &number);
    const uint64_t snapshot = Walk_Begin();
    CInstance* copy = Instance_Copy(instance, true);
    EXPECT_EQ(Take(), (Log{"A.PreCreate", "A.Create"}));
    EXPECT_EQ(copy->id, instance->id + 1);
    EXPECT_EQ(Instance_FromId(copy->id), copy);
    EXPECT_EQ(copy->alarm[3], 12);
    EXPECT_EQ(copy->hspeed, 2);
    EXPECT_EQ(copy->InternalGetVar(5)->real, 42.0);
    EXPECT_TRUE(Walk_Takes(instance, snapshot));
    EXPECT_FALSE(Walk_Takes(copy, snapshot)) << "a walk that copies would never end";
    ApplyPendingChanges();
    EXPECT_EQ(ActiveIds(), (std::vector<int32_t>{instance->id, copy->id}));
    EXPECT_EQ(Object(a_).instances.Count(), 2);
}

TEST_F(Instance, DeactivationTakesOutOfWalksAtOnceAndOutOfListsLater)
{
    CInstance* kept = Make(a_);
    CInstance* gone = Make(child_);
    Instance_Deactivate(gone);
    EXPECT_FALSE(Walk_Takes(gone, g_PhaseCounter));
    EXPECT_EQ(Instance_Number(a_, nullptr, nullptr), 1);
    EXPECT_FALSE(Instance_Exists(gone->id, nullptr, nullptr));
    EXPECT_EQ(Run_Room->activeCount, 2);
    ApplyPendingChanges();
    EXPECT_EQ(ActiveIds(), std::vector<int32_t>{kept->id});
    EXPECT_EQ(Run_Room->deactivatedHead, gone);
    EXPECT_EQ(Run_Room->deactivatedCount, 1);
    EXPECT_EQ(Object(a_).instancesRecursive.Count(), 1);
    EXPECT_EQ(Instance_FromId(gone->id), gone);
    EXPECT_EQ(Named(a_), std::vector<int32_t>{kept->id});
    EXPECT_EQ(Named(a_, true), (std::vector<int32_t>{kept->id, gone->id}));
    Instance_Destroy(gone, true);
    EXPECT_FALSE(gone->marked) << "what is deactivated can't be destroyed";

    gone->depth = -1;
    Instance_Activate(gone);
    EXPECT_EQ(Named(child_), std::vector<int32_t>{gone->id}) << "found before it is moved back";
    ApplyPendingChanges();
    EXPECT_EQ(ActiveIds(), (std::vector<int32_t>{gone->id, kept->id}));
    EXPECT_EQ(Run_Room->deactivatedCount, 0);
    EXPECT_EQ(Object(a_).instancesRecursive.Count(), 2);
    EXPECT_TRUE(g_ActivationChanges.empty());

    Instance_Deactivate(gone);
    Instance_Activate(gone);
    EXPECT_EQ(Named(child_), std::vector<int32_t>{gone->id}) << "named once";
    ApplyPendingChanges();
    EXPECT_EQ(ActiveIds(), (std::vector<int32_t>{gone->id, kept->id}));
}

TEST_F(Instance, ChangesOfADeactivatedInstanceDoNotDisturbTheLists)
{
    CInstance* instance = Make(a_);
    Make(a_);
    Instance_Change(instance, b_, false);
    Instance_SetDepth(instance, 8);
    Instance_Deactivate(instance);
    ApplyPendingChanges();
    EXPECT_EQ(Run_Room->activeCount, 1);
    EXPECT_EQ(Run_Room->deactivatedCount, 1);
    EXPECT_TRUE(Object(b_).instances.Empty());
    Instance_SetDepth(instance, -8);
    ApplyPendingChanges();
    EXPECT_EQ(Run_Room->activeCount, 1);
    Instance_Activate(instance);
    ApplyPendingChanges();
    EXPECT_EQ(Run_Room->activeHead, instance);
    EXPECT_EQ(Object(b_).instances.Count(), 1);
}

TEST_F(Instance, NumbersNameInstances)
{
    CInstance* self = Make(b_);
    CInstance* other = Make(child_);
    const auto named = [&](int32_t number) {
        InstanceIterator iterator(number, self, other);
        std::vector<const CInstance*> found;
        while (const CInstance* instance = iterator.Next()) found.push_back(instance);
        return found;
    };
    using Found = std::vector<const CInstance*>;
    EXPECT_EQ(named(INSTANCE_SELF), Found{self});
    EXPECT_EQ(named(INSTANCE_OTHER), Found{other});
    EXPECT_EQ(named(INSTANCE_ALL), (Found{other, self})) << "the active list from its head";
    for (const int32_t number : {-4, -5, -6, -7, -100, 99, 99999, lastInstanceId + 1})
        EXPECT_EQ(named(number), Found{}) << number;
    EXPECT_EQ(named(a_), Found{other});
    EXPECT_EQ(named(self->id), Found{self});
}

TEST_F(Instance, IteratorsNestAndOutliveChanges)
{
    Make(a_);
    Make(a_);
    int visits = 0;
    InstanceIterator outer(a_, nullptr, nullptr);
    while (outer.Next()) {
        InstanceIterator inner(INSTANCE_ALL, nullptr, nullptr);
        while (CInstance* instance = inner.Next()) {
            Make(a_);
            Instance_Destroy(instance, false);
            ++visits;
        }
    }
    EXPECT_EQ(visits, 2 + 4);
}

TEST_F(Instance, ManyInstancesComeAndGo)
{
    std::vector<int32_t> slots;
    for (int i = 0; i < 1000; ++i) slots.push_back(Make(a_)->tableSlot);
    std::sort(slots.begin(), slots.end());
    EXPECT_TRUE(std::unique(slots.begin(), slots.end()) == slots.end());
    for (int32_t id = firstId_; id < firstId_ + 1000; ++id)
        if (id % 3) Instance_Destroy(Instance_FromId(id), false);
    PurgeInstances();
    EXPECT_EQ(Run_Room->activeCount, Object(a_).instances.Count());
    for (int i = 0; i < 500; ++i) EXPECT_LT(Make(a_)->tableSlot, 1000) << "freed slots are used";
}

// ---- image and motion
class Motion : public World {
protected:
    void SetUp() override
    {
        World::SetUp();
        object_ = AddObject("A", {{EVENT_OTHER, OTHER_ANIMATION_END}});
        sprite_ = AddBoxSprite(4, 4, 3);
        AddRoom("room_one");
        Begin();
        instance_ = Room_CreateInstance(0, 0, object_);
    }
    // One step of the animation from `index` at `speed`; true when the end was told.
    bool Animate(float index, float speed)
    {
        instance_->image_index = index;
        instance_->image_speed = speed;
        Instance_Animate(instance_);
        return !Take().empty();
    }
    void Aim(float direction, float speed)
    {
        instance_->direction = direction;
        instance_->speed = speed;
        instance_->ComputeSpeedFromDirection();
    }
    int32_t object_ = -1, sprite_ = -1;
    CInstance* instance_ = nullptr;
};

TEST_F(Motion, AnimationWrapsOnceAndTellsItsEnd)
{
    EXPECT_TRUE(Animate(-0.5F, 0)) << "without a sprite every step is an end";
    EXPECT_TRUE(Animate(0, 0));
    EXPECT_EQ(instance_->image_index, 0);
    instance_->SetSprite(sprite_);
    EXPECT_FALSE(Animate(1.5F, 1));
    EXPECT_TRUE(Animate(2.5F, 1));
    EXPECT_FLOAT_EQ(instance_->image_index, 0.5F);
    EXPECT_TRUE(Animate(0.25F, -1));
    EXPECT_FLOAT_EQ(instance_->image_index, 2.25F);
    EXPECT_TRUE(Animate(0, 10));
    EXPECT_FLOAT_EQ(instance_->image_index, 7) << "one subtraction, however far the step";
    instance_->image_index = 3.5F;
    instance_->SetSprite(sprite_);
    EXPECT_EQ(instance_->image_index, 0);
    instance_->image_index = 2.5F;
    instance_->SetSprite(sprite_);
    EXPECT_EQ(instance_->image_index, 2.5F);
}

TEST_F(Motion, SpeedAndDirectionAgree)
{
    Aim(90, 3);
    EXPECT_EQ(instance_->hspeed, 0);
    EXPECT_EQ(instance_->vspeed, -3);
    Aim(225, 2);
    EXPECT_NEAR(instance_->hspeed, -std::sqrt(2.0), 1e-5);
    EXPECT_NEAR(instance_->vspeed, std::sqrt(2.0), 1e-5);
    struct {
        float h, v, direction, speed;
    } const cases[] = {{0, 4, 270, 4},       {0, -4, 90, 4},         {0, 0, 0, 0},
                       {5, 0, 0, 5},         {-5, 0, 180, 5},        {3, -4, 53.1301F, 5},
                       {3, 4, 306.8699F, 5}, {-2, 2, 225, 2.828427F}};
    for (const auto& c : cases) {
        instance_->hspeed = c.h;
        instance_->vspeed = c.v;
        instance_->bboxDirty = false;
        instance_->ComputeDirectionFromSpeed();
        EXPECT_NEAR(instance_->direction, c.direction, 1e-3) << c.h << ", " << c.v;
        EXPECT_NEAR(instance_->speed, c.speed, 1e-5) << c.h << ", " << c.v;
        EXPECT_TRUE(instance_->bboxDirty);
    }
}

TEST_F(Motion, FrictionStopsAtRest)
{
    struct {
        float speed, friction, after;
    } const cases[] = {{3, 1, 2}, {0.5F, 1, 0}, {-0.5F, 1, 0}, {-3, 1, -2},
                       {0, 1, 0}, {2, -1, 3},   {-2, -1, -3},  {1, 1, 0}};
    for (const auto& c : cases) {
        Aim(0, c.speed);
        instance_->friction = c.friction;
        Instance_FrictionAndGravity(instance_);
        EXPECT_EQ(instance_->speed, c.after) << c.speed << " slowed by " << c.friction;
        EXPECT_EQ(instance_->hspeed, c.after);
    }
    // At rest nothing is computed: what was set apart stays apart.
    Aim(0, 0);
    instance_->friction = 1;
    instance_->hspeed = 7;
    Instance_FrictionAndGravity(instance_);
    EXPECT_EQ(instance_->hspeed, 7);
}

TEST_F(Motion, GravityPullsAfterFriction)
{
    Aim(0, 3);
    instance_->friction = 1;
    instance_->gravity = 2;
    Instance_FrictionAndGravity(instance_);
    EXPECT_NEAR(instance_->hspeed, 2, 1e-5);
    EXPECT_NEAR(instance_->vspeed, 2, 1e-5);
    EXPECT_NEAR(instance_->direction, 315, 1e-3);
    EXPECT_NEAR(instance_->speed, std::sqrt(8.0), 1e-5);
}

TEST_F(Motion, OnlyAMoveMakesTheBoxStale)
{
    instance_->bboxDirty = false;
    instance_->SetPosition(instance_->x, instance_->y);
    EXPECT_FALSE(instance_->bboxDirty);
    instance_->SetPosition(instance_->x, instance_->y + 0.25F);
    EXPECT_TRUE(instance_->bboxDirty);
}

}  // namespace
