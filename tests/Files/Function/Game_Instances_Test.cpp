// Built-ins over instances and collision, as scripts call them.

#include "Files/Run/Run_State.h"
#include "Files/Sprite/CSprite.h"
#include "tests/Files/support_Script.h"
#include "tests/Files/support_World.h"

void Function_Game_RegisterInstances();
void Function_Game_RegisterCollision();

namespace {

class GameFunctions : public World {
protected:
    void SetUp() override
    {
        World::SetUp();
        g_Switches.noErrors = true;
        Function_Game_RegisterInstances();
        Function_Game_RegisterCollision();
        sprite_ = AddBoxSprite(10, 10);
        a_ = AddObject("A", {{EVENT_CREATE, 0}, {EVENT_DESTROY, 0}});
        b_ = AddObject("B", {{EVENT_CREATE, 0}}, a_);
        c_ = AddObject("C", {});
        for (const int32_t object : {a_, b_, c_}) Object(object).spriteIndex = sprite_;
        AddRoom("room_one");
        Begin();
        self_ = Make(c_, 500, 500);
    }
    CInstance* Make(int32_t object, float x = 0, float y = 0)
    {
        CInstance* instance = Room_CreateInstance(x, y, object);
        Take();
        return instance;
    }
    double Call(const char* name, const std::vector<double>& arguments = {})
    {
        return CallFunction(self_, name, arguments);
    }
    int32_t sprite_ = -1, a_ = -1, b_ = -1, c_ = -1;
    CInstance* self_ = nullptr;
};

TEST_F(GameFunctions, CreateAndDestroy)
{
    const double id = Call("instance_create", {1.5, 2, static_cast<double>(a_)});
    EXPECT_EQ(id, lastInstanceId);
    EXPECT_EQ(Call("instance_create", {0, 0, 99}), -1);
    CInstance* child = Make(b_);
    Take();
    Call("instance_destroy", {static_cast<double>(a_)});
    EXPECT_EQ(Take(), (Log{"A.Destroy", "A.Destroy"})) << "an object names its descendants too";
    EXPECT_TRUE(child->marked);
    CInstance* quiet = Make(a_);
    Call("instance_destroy", {static_cast<double>(quiet->id), 0});
    EXPECT_TRUE(quiet->marked);
    EXPECT_EQ(Take(), Log{});
    Call("instance_destroy");
    EXPECT_TRUE(self_->marked);
    Call("instance_destroy", {static_cast<double>(INSTANCE_NOONE)});
}

TEST_F(GameFunctions, FindCountsTheLiving)
{
    const CInstance* first = Make(a_);
    CInstance* gone = Make(a_);
    CInstance* away = Make(b_);
    const CInstance* last = Make(a_);
    Instance_Destroy(gone, false);
    Instance_Deactivate(away);
    const double a = a_;
    EXPECT_EQ(Call("instance_number", {a}), 2);
    EXPECT_EQ(Call("instance_find", {a, 0}), first->id);
    EXPECT_EQ(Call("instance_find", {a, 1}), last->id);
    for (const double n : {2.0, -1.0}) EXPECT_EQ(Call("instance_find", {a, n}), INSTANCE_NOONE);
    EXPECT_EQ(Call("instance_number", {static_cast<double>(INSTANCE_ALL)}), 3);
    EXPECT_EQ(Call("instance_number", {static_cast<double>(gone->id)}), 0);
    EXPECT_EQ(Call("instance_number", {static_cast<double>(INSTANCE_SELF)}), 1);
    EXPECT_EQ(Call("instance_exists", {static_cast<double>(away->id)}), 0);
    EXPECT_EQ(Call("instance_exists", {a}), 1);
    EXPECT_EQ(Call("instance_id_get", {0}), self_->id);
    EXPECT_EQ(Call("instance_id_get", {9}), INSTANCE_NOONE);
}

TEST_F(GameFunctions, ActivationOfAllAndOfObjects)
{
    const CInstance* a = Make(a_);
    const CInstance* b = Make(b_);
    Call("instance_deactivate_all", {1});
    EXPECT_TRUE(a->deactivated && b->deactivated && !self_->deactivated);
    ApplyPendingChanges();
    EXPECT_EQ(ActiveIds(), std::vector<int32_t>{self_->id});
    Call("instance_activate_object", {static_cast<double>(a_)});
    EXPECT_FALSE(a->deactivated || b->deactivated);
    ApplyPendingChanges();
    EXPECT_EQ(Run_Room->activeCount, 3);
    Call("instance_deactivate_object", {static_cast<double>(b_)});
    EXPECT_TRUE(b->deactivated && !a->deactivated);
    Call("instance_activate_all");  // before the change was applied
    EXPECT_FALSE(b->deactivated);
    ApplyPendingChanges();
    Call("instance_deactivate_all", {0});
    ApplyPendingChanges();
    EXPECT_EQ(Run_Room->activeCount, 0);
    EXPECT_EQ(Run_Room->deactivatedCount, 3);
    Call("instance_activate_object", {static_cast<double>(a->id)});
    ApplyPendingChanges();
    EXPECT_EQ(ActiveIds(), std::vector<int32_t>{a->id});
    Call("instance_activate_object", {static_cast<double>(INSTANCE_ALL)});
    ApplyPendingChanges();
    EXPECT_EQ(Run_Room->activeCount, 3);
}

TEST_F(GameFunctions, ActivationByRegion)
{
    const CInstance* in = Make(a_, 0, 0);
    const CInstance* edge = Make(a_, 15, 0);
    const CInstance* out = Make(a_, 200, 0);
    Call("instance_deactivate_region", {0, 0, 20, 20, 1, 0});
    EXPECT_TRUE(in->deactivated && edge->deactivated);
    EXPECT_FALSE(out->deactivated || self_->deactivated);
    Call("instance_deactivate_region", {0, 0, 20, 20, 0, 1});
    EXPECT_TRUE(out->deactivated);
    EXPECT_FALSE(self_->deactivated) << "the caller was to be spared";
    ApplyPendingChanges();
    Call("instance_activate_region", {190, -5, 20, 20, 1});
    EXPECT_TRUE(in->deactivated && !out->deactivated);
    Call("instance_activate_region", {190, -5, 20, 20, 0});
    EXPECT_FALSE(in->deactivated || edge->deactivated);
}

TEST_F(GameFunctions, ChangesAtAPoint)
{
    const CInstance* first = Make(c_, 0, 0);
    const CInstance* second = Make(a_, 5, 5);
    const CInstance* beside = Make(a_, 50, 5);
    Call("position_change", {7, 7, static_cast<double>(b_), 1});
    EXPECT_EQ(first->object_index, b_);
    EXPECT_EQ(second->object_index, b_);
    EXPECT_EQ(beside->object_index, a_);
    ApplyPendingChanges();
    Take();
    Call("position_destroy", {7, 7});
    EXPECT_TRUE(first->marked && second->marked && !beside->marked);
    EXPECT_EQ(Call("position_empty", {7, 7}), 1);
    EXPECT_EQ(Call("position_empty", {52, 7}), 0);
    Call("instance_sprite", {77});
    EXPECT_NE(LastReport().find("Setting instance to non-existing sprite: 77"), std::string::npos);
    EXPECT_EQ(self_->sprite_index, sprite_);
    Call("instance_change", {static_cast<double>(b_), 0});
    EXPECT_EQ(self_->object_index, b_);
    const double copy = Call("instance_copy", {0});
    EXPECT_EQ(Instance_FromId(static_cast<int32_t>(copy))->object_index, b_);
}

TEST_F(GameFunctions, PlacesAndNeighbours)
{
    CInstance* near = Make(a_, 520, 500);
    CInstance* far = Make(b_, 600, 500);
    near->solid = true;
    const double a = a_;
    EXPECT_EQ(Call("place_free", {515, 500}), 0);
    EXPECT_EQ(Call("place_free", {600, 500}), 1);
    EXPECT_EQ(Call("place_empty", {600, 500}), 0);
    EXPECT_EQ(Call("place_meeting", {600, 500, a}), 1);
    EXPECT_EQ(Call("place_meeting", {600, 500, static_cast<double>(INSTANCE_NOONE)}), 0);
    EXPECT_EQ(Call("instance_place", {600, 500, a}), far->id);
    EXPECT_EQ(Call("instance_place", {560, 500, a}), INSTANCE_NOONE);
    EXPECT_EQ(Call("position_meeting", {525, 505, a}), 1);
    EXPECT_EQ(Call("instance_position", {605, 505, a}), far->id);
    EXPECT_EQ(Call("instance_nearest", {500, 500, a}), near->id);
    EXPECT_EQ(Call("instance_furthest", {500, 500, a}), far->id);
    EXPECT_EQ(Call("distance_to_object", {a}), 520 - 509);
    EXPECT_EQ(Call("distance_to_point", {500 + 9 + 3, 500 + 9 + 4}), 5);
    EXPECT_EQ(Call("distance_to_point", {505, 505}), 0);
    self_->SetPosition(517, 47);
    Call("move_snap", {10, 0});
    EXPECT_EQ(self_->x, 520);
    EXPECT_EQ(self_->y, 47);
    EXPECT_EQ(Call("place_snapped", {10, 10}), 0);
    EXPECT_EQ(Call("place_snapped", {10, 47}), 1);
}

TEST_F(GameFunctions, Shapes)
{
    // A precise sprite of 10 by 10 whose only set pixel is at (9, 9).
    uint8_t packed[20] = {};
    packed[19] = 0x40;
    const int32_t dot = AddBoxSprite(10, 10);
    CSprite* sprite = Sprite_Data(dot);
    sprite->precise = true;
    sprite->maskCount = 1;
    sprite->packedMasks = packed;
    CInstance* instance = Make(a_, 100, 100);
    instance->SetSprite(dot);
    const double a = a_, hit = instance->id, miss = INSTANCE_NOONE;
    struct {
        const char* name;
        std::vector<double> shape;
        double byBox, byPixel;
    } const cases[] = {{"collision_point", {102, 102}, hit, miss},
                       {"collision_point", {109, 109}, hit, hit},
                       {"collision_point", {110, 109}, miss, miss},
                       {"collision_rectangle", {90, 90, 105, 105}, hit, miss},
                       {"collision_rectangle", {120, 120, 108, 108}, hit, hit},
                       {"collision_rectangle", {111, 90, 120, 120}, miss, miss},
                       {"collision_circle", {95, 105, 6}, hit, miss},
                       {"collision_circle", {112, 112, 5}, hit, hit},
                       {"collision_circle", {90, 90, 14}, miss, miss},
                       {"collision_ellipse", {80, 100, 104, 104}, hit, miss},
                       {"collision_ellipse", {60, 105, 130, 115}, hit, hit},
                       {"collision_line", {90, 102, 120, 102}, hit, miss},
                       {"collision_line", {120, 120, 100, 100}, hit, hit},
                       {"collision_line", {90, 100, 100, 90}, miss, miss},
                       {"collision_line", {105, 0, 105, 99}, miss, miss}};
    const auto call = [&](const char* name, const std::vector<double>& shape, double precise,
                          double notSelf) {
        std::vector<double> all = shape;
        all.insert(all.end(), {a, precise, notSelf});
        return CallFunction(instance, name, all);
    };
    for (const auto& c : cases) {
        EXPECT_EQ(call(c.name, c.shape, 0, 0), c.byBox) << c.name << " " << c.shape[0];
        EXPECT_EQ(call(c.name, c.shape, 1, 0), c.byPixel) << c.name << " " << c.shape[0];
        EXPECT_EQ(call(c.name, c.shape, 0, 1), miss) << c.name << " leaves the caller out";
    }
}

}  // namespace
