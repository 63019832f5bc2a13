// The action library, event built-ins and the room built-ins that work on templates.

#include <algorithm>

#include "Files/Code/Script_Interface.h"
#include "Files/Function/Function_Action.h"
#include "Files/Function/Function_Registry.h"
#include "Files/Run/Run_State.h"
#include "Files/Run/Services.h"
#include "Host/Host_Stage.h"
#include "tests/Files/support_World.h"

namespace {

class Actions : public World {
protected:
    void SetUp() override
    {
        World::SetUp();
        Function_Action_Register();
        Function_Interaction_Register();
        Function_Game_Register();
        sprite_ = AddBoxSprite(32, 32);
        solid_ = AddObject("Solid", {});
        mover_ = AddObject("Mover", {{EVENT_CREATE, 0}, {EVENT_DESTROY, 0}});
        Object(solid_).flags |= OBJECT_SOLID;
        Object(solid_).spriteIndex = Object(mover_).spriteIndex = sprite_;
        room_ = AddRoom("room_one");
        Place(room_, mover_, 100, 100);
        Place(room_, solid_, 132, 100);
    }

    // Calls a built-in with numbers; the number that it gives.
    double Call(const char* name, const std::vector<double>& numbers, CInstance* self = nullptr)
    {
        std::vector<RValue> values(numbers.begin(), numbers.end());
        return CallWith(name, values, self);
    }
    double CallWith(const char* name, std::vector<RValue>& values, CInstance* self = nullptr)
    {
        std::vector<RValue*> pointers;
        for (RValue& value : values) pointers.push_back(&value);
        CInstance* caller = self ? self : First(mover_);
        RValue result;
        const int32_t id = Function_Find(name);
        EXPECT_GE(id, 0) << name;
        CallBuiltin(caller, caller, result, static_cast<int>(pointers.size()), id, pointers.data());
        const double number = result.Kind() == VALUE_REAL ? result.real : -12345;
        FREE_RValue(&result);
        return number;
    }
    double Move(const char* directions, double speed)
    {
        std::vector<RValue> values(2);
        VXCreateString(&values[0], directions);
        values[1] = RValue(speed);
        const double given = CallWith("action_move", values);
        FREE_RValue(&values[0]);
        return given;
    }

    int32_t sprite_, solid_, mover_, room_;
};

TEST_F(Actions, TestsOfPlaces)
{
    Begin();
    Call("action_set_relative", {0});
    EXPECT_EQ(Call("action_if_object", {double(solid_), 32, 0}), 0) << "absolute: far away";
    Call("action_set_relative", {1});
    EXPECT_EQ(Call("action_if_object", {double(solid_), 32, 0}), 1);
    EXPECT_EQ(Call("action_if_object", {double(solid_), -32, 0}), 0);
    EXPECT_EQ(Call("action_if_empty", {32, 0, 0}), 0);
    EXPECT_EQ(Call("action_if_empty", {0, 32, 0}), 1);
    First(solid_)->solid = false;
    EXPECT_EQ(Call("action_if_empty", {32, 0, 0}), 1) << "only solid ones count";
    EXPECT_EQ(Call("action_if_empty", {32, 0, 1}), 0);
    EXPECT_EQ(First(mover_)->x, 100) << "the place was only lent";
    EXPECT_EQ(Call("action_if_aligned", {50, 25}), 1);
    EXPECT_EQ(Call("action_if_aligned", {32, 0}), 0);
}

TEST_F(Actions, TestsOfNumbersAndVariables)
{
    Begin();
    const struct {
        double number, operation, holds;
    } counts[] = {{1, 0, 1}, {2, 0, 0}, {2, 1, 1}, {1, 1, 0}, {0, 2, 1}, {1, 2, 0}, {1, 9, 1}};
    for (const auto& row : counts)
        EXPECT_EQ(Call("action_if_number", {double(solid_), row.number, row.operation}), row.holds);
    Instance_Destroy(First(solid_), false);
    EXPECT_EQ(Call("action_if_number", {double(solid_), 0, 0}), 1);

    const struct {
        double a, b, operation, holds;
    } compared[] = {{1, 2, 1, 1}, {2, 2, 1, 0}, {3, 2, 2, 1}, {2, 2, 3, 1},        {3, 2, 3, 0},
                    {2, 2, 4, 1}, {1, 2, 4, 0}, {2, 2, 0, 1}, {2, 2 + 1e-12, 0, 1}};
    for (const auto& row : compared)
        EXPECT_EQ(Call("action_if_variable", {row.a, row.b, row.operation}), row.holds);
    std::vector<RValue> texts(3);
    VXCreateString(&texts[0], "abc");
    VXCreateString(&texts[1], "abd");
    texts[2] = RValue(1.0);
    EXPECT_EQ(CallWith("action_if_variable", texts), 1);
    FREE_RValue(&texts[0]);
    FREE_RValue(&texts[1]);
}

TEST_F(Actions, CreateKillAndRequests)
{
    Begin();
    CInstance* mover = First(mover_);
    On("Mover.Create", [](CInstance* self, CInstance* other) { EXPECT_EQ(self, other); });
    Call("action_set_relative", {1});
    Call("action_create_object", {double(mover_), 5, -5});
    CInstance* made = Object(mover_).instances.Tail()->item;
    EXPECT_EQ(made->x, 105);
    EXPECT_EQ(made->y, 95);
    Call("action_create_object", {77, 0, 0});
    EXPECT_NE(Stage_ErrorTexts().back().find("Creating instance for non-existing object: 77"),
              VxString::npos);
    Take();
    Call("action_kill_object", {}, mover);
    Call("action_kill_object", {}, mover);
    EXPECT_EQ(Take(), Log{"Mover.Destroy"});
    Call("action_current_room", {});
    EXPECT_EQ(New_Room, room_);
    Call("action_end_game", {});
    EXPECT_EQ(New_Room, ROOM_END_GAME);
}

TEST_F(Actions, ActionMove)
{
    Begin();
    CInstance* mover = First(mover_);
    Call("action_set_relative", {0});
    Move("000000010", 3);
    EXPECT_EQ(mover->direction, 90);
    EXPECT_EQ(mover->hspeed, 0);
    EXPECT_EQ(mover->vspeed, -3);
    Call("action_set_relative", {1});
    Move("000100000", 2);
    EXPECT_EQ(mover->speed, 5);
    EXPECT_EQ(mover->direction, 180);

    // Stopping draws from the generator until the middle comes up.
    Random_Seed(5);
    uint32_t draws = 0;
    while (Random_Word() % 9 != 4) ++draws;
    const uint32_t next = Random_Word();
    Random_Seed(5);
    Move("000010000", 0);
    EXPECT_GT(draws, 0U);
    EXPECT_EQ(Random_Word(), next);
    EXPECT_EQ(mover->speed, 0);
    EXPECT_EQ(mover->hspeed, 0);
    EXPECT_EQ(mover->direction, 0);

    Random_Seed(5);
    const uint32_t first = Random_Word();
    Random_Seed(5);
    Move("000000000", 9);
    EXPECT_EQ(Random_Word(), first) << "nothing to choose from: nothing drawn";
    EXPECT_EQ(mover->speed, 0);
    Move("0101", 9);
    EXPECT_NE(Stage_ErrorTexts().back().find("Wrong argument to action_move()."), VxString::npos);
}

TEST_F(Actions, EventsByCall)
{
    const int32_t base = AddObject("Base", {{EVENT_OTHER, OTHER_USER0 + 3}});
    const int32_t middle = AddObject("Middle", {{EVENT_OTHER, OTHER_USER0 + 3}}, base);
    const int32_t leaf = AddObject("Leaf", {{EVENT_OTHER, OTHER_USER0 + 3}}, middle);
    Place(room_, leaf);
    Begin();
    CInstance* self = First(leaf);
    for (const char* label : {"Leaf.User3", "Middle.User3", "Base.User3"})
        On(label, [this, self](CInstance* running, CInstance*) {
            EXPECT_EQ(running, self);
            Call("event_inherited", {}, running);
        });
    Call("event_user", {3}, self);
    EXPECT_EQ(Take(), (Log{"Leaf.User3", "Middle.User3", "Base.User3"}));
    Call("event_perform_object", {double(base), EVENT_OTHER, 13}, self);
    EXPECT_EQ(Take(), Log{"Base.User3"});
    Call("event_perform", {EVENT_OTHER, 13}, First(mover_));
    EXPECT_EQ(Take(), Log{});
}

// Changes of a template show at the next start of the room and not before.
TEST_F(Actions, Templates)
{
    Begin();
    const double copy = Call("room_duplicate", {double(room_)});
    const double room = room_;
    const double id = Call("room_instance_add", {room, 8, 9, double(solid_)});
    EXPECT_GT(id, kFirstInstanceId);
    Call("room_tile_add", {room, 2, 1, 2, 3, 4, 50, 60, 1000});
    Call("room_tile_add_ext", {room, 2, 1, 2, 3, 4, 50, 60, 1000, 2, 0.5, 0.5});
    Call("room_set_width", {room, 1234});
    Call("room_set_persistent", {room, 1});
    Call("room_set_view", {room, 3, 1, 1, 2, 30, 40, 5, 6, 70, 80, 9, 10, -1, 11, 12});
    Call("room_set_view_enabled", {room, 1});
    EXPECT_EQ(Run_Room->width, 640);
    EXPECT_EQ(Run_Room->activeCount, 2);
    EndRoom(false);
    StartRoom(room_, false);
    EXPECT_EQ(Run_Room->width, 1234);
    EXPECT_TRUE(Run_Room->persistent);
    EXPECT_TRUE(Run_Room->viewsEnabled);
    EXPECT_EQ(Run_Room->views[3].hport, 80);
    EXPECT_EQ(Run_Room->views[3].vspeed, 11);
    EXPECT_EQ(Run_Room->activeCount, 3);
    EXPECT_EQ(Instance_FromId(static_cast<int32_t>(id))->y, 9);
    ASSERT_EQ(Run_Room->tiles.size(), 2U);
    EXPECT_EQ(Run_Room->tiles[0].sourceY, 2);
    EXPECT_EQ(Run_Room->tiles[1].xscale, 2);
    EXPECT_NEAR(Run_Room->tiles[1].alpha, 0.5, 0.01);
    EXPECT_EQ(Run_Room->tiles[1].id, Run_Room->tiles[0].id + 1);

    // The copy was made before all that.
    EXPECT_EQ(Room_Template(static_cast<int32_t>(copy))->width, 640);
    Call("room_assign", {copy, room});
    EXPECT_EQ(Room_Template(static_cast<int32_t>(copy))->width, 1234);
    Call("room_instance_clear", {copy});
    Call("room_tile_clear", {copy});
    const double empty = Call("room_add", {});
    for (const double index : {copy, empty}) {
        EndRoom(false);
        StartRoom(static_cast<int32_t>(index), false);
        EXPECT_EQ(Run_Room->activeCount, 0);
        EXPECT_EQ(Run_Room->tiles.size(), 0U);
    }
    EXPECT_EQ(Call("room_exists", {empty}), 1);
    EXPECT_EQ(Call("room_exists", {empty + 1}), 0);
    EXPECT_EQ(Call("room_instance_add", {empty + 1, 0, 0, 0}), -1);
}

TEST_F(Actions, RequestsOfTheGame)
{
    AddRoom("room_two");
    Begin();
    EXPECT_EQ(Call("room_next", {0}), 1);
    EXPECT_EQ(Call("room_previous", {0}), -1);
    Call("room_goto_next", {});
    EXPECT_EQ(New_Room, 1);
    Call("room_restart", {});
    EXPECT_EQ(New_Room, 0);
    Call("game_restart", {});
    EXPECT_EQ(New_Room, ROOM_RESTART_GAME);
    std::vector<RValue> file(1);
    VXCreateString(&file[0], "state.sav");
    CallWith("game_load", file);
    FREE_RValue(&file[0]);
    EXPECT_EQ(New_Room, ROOM_LOAD_GAME);
    EXPECT_STREQ(Services_LoadFile(), "state.sav");
    Call("game_end", {});
    EXPECT_EQ(New_Room, ROOM_END_GAME);
}

TEST_F(Actions, Motion)
{
    Begin();
    CInstance* mover = First(mover_);
    Call("motion_set", {-90, 4});
    EXPECT_EQ(mover->direction, 270);
    EXPECT_EQ(mover->vspeed, 4);
    Call("motion_add", {0, 3});
    EXPECT_EQ(mover->speed, 5);
    Call("move_towards_point", {100, 50, 2});
    EXPECT_EQ(mover->direction, 90);
    EXPECT_EQ(mover->vspeed, -2);
}

}  // namespace
