// The action library: what one action of the game's source does.

#include "Files/Function/Function_Action.h"

#include <cstring>

#include "Files/Base/Error.h"
#include "Files/Function/Function_Registry.h"
#include "Files/Function/Motion.h"
#include "Files/Object/Collision.h"
#include "Files/Object/Instance_Main.h"
#include "Files/Room/Room_Main.h"

bool g_ActionRelative = false;

namespace {

constexpr int kDirections = 9;
constexpr int kStop = 4;
// Degrees of the grid's cells, from the lower left, row by row upward.
constexpr float kDirectionOf[kDirections] = {225, 270, 315, 180, 0, 0, 135, 90, 45};

enum NumberTest : int32_t { TEST_BELOW = 1, TEST_ABOVE = 2 };
enum VariableTest : int32_t { TEST_NOT_ABOVE = 3, TEST_NOT_BELOW = 4 };

struct At {
    float x, y;
};

At Resolve(const CInstance* self, double x, double y)
{
    if (g_ActionRelative && self)
        return {static_cast<float>(self->x + x), static_cast<float>(self->y + y)};
    return {static_cast<float>(x), static_cast<float>(y)};
}

BUILTIN(F_ActionSetRelative)
{
    g_ActionRelative = VXGetBool(args, 0);
}

BUILTIN(F_ActionIfAligned)
{
    SetBool(result, Place_Snapped(self, VXGetReal(args, 0), VXGetReal(args, 1)));
}

BUILTIN(F_ActionIfEmpty)
{
    SetBool(result,
            Action_IfEmpty(self, VXGetReal(args, 0), VXGetReal(args, 1), VXGetInt32(args, 2) != 0));
}

BUILTIN(F_ActionIfObject)
{
    SetBool(result, Action_IfObject(self, other, VXGetInt32(args, 0), VXGetReal(args, 1),
                                    VXGetReal(args, 2)));
}

BUILTIN(F_ActionIfNumber)
{
    const double count = Instance_Number(VXGetInt32(args, 0), self, other);
    const double number = VXGetReal(args, 1);
    switch (VXGetInt32(args, 2)) {
        case TEST_BELOW:
            SetBool(result, count < number);
            break;
        case TEST_ABOVE:
            SetBool(result, count > number);
            break;
        default:
            SetBool(result, count == number);
    }
}

BUILTIN(F_ActionIfVariable)
{
    const int order = VXCompareVal(&args[0], &args[1], g_MathEpsilon);
    switch (VXGetInt32(args, 2)) {
        case TEST_BELOW:
            SetBool(result, order < 0);
            break;
        case TEST_ABOVE:
            SetBool(result, order > 0);
            break;
        case TEST_NOT_ABOVE:
            SetBool(result, order <= 0);
            break;
        case TEST_NOT_BELOW:
            SetBool(result, order >= 0);
            break;
        default:
            SetBool(result, order == 0);
    }
}

BUILTIN(F_ActionCurrentRoom)
{
    Room_Goto(Current_Room);
}

BUILTIN(F_ActionCreateObject)
{
    Action_CreateObject(self, VXGetInt32(args, 0), VXGetReal(args, 1), VXGetReal(args, 2));
}

BUILTIN(F_ActionKillObject)
{
    if (self && self->Alive()) Instance_Destroy(self, true);
}

BUILTIN(F_ActionEndGame)
{
    New_Room = ROOM_END_GAME;
}

BUILTIN(F_ActionMove)
{
    const VXText directions = VXGetString(args, 0);
    Action_Move(self, directions.IsNull() ? nullptr : directions.get(), VXGetReal(args, 1));
}

constexpr BuiltinRow kRows[] = {
    {"action_set_relative", F_ActionSetRelative, 1},
    {"action_if_aligned", F_ActionIfAligned, 2},
    {"action_if_empty", F_ActionIfEmpty, 3},
    {"action_if_object", F_ActionIfObject, 3},
    {"action_if_number", F_ActionIfNumber, 3},
    {"action_if_variable", F_ActionIfVariable, 3},
    {"action_current_room", F_ActionCurrentRoom, 0},
    {"action_create_object", F_ActionCreateObject, 3},
    {"action_kill_object", F_ActionKillObject, 0},
    {"action_end_game", F_ActionEndGame, 0},
    {"action_move", F_ActionMove, 2},
};

}  // namespace

bool Action_IfEmpty(CInstance* self, double x, double y, bool allObjects)
{
    const At at = Resolve(self, x, y);
    return allObjects ? Place_Empty(self, at.x, at.y) : Place_Free(self, at.x, at.y);
}

bool Action_IfObject(CInstance* self, CInstance* other, int32_t object, double x, double y)
{
    const At at = Resolve(self, x, y);
    return Place_Find(self, other, at.x, at.y, object) != nullptr;
}

CInstance* Action_CreateObject(CInstance* self, int32_t object, double x, double y)
{
    const At at = Resolve(self, x, y);
    return Room_CreateInstance(at.x, at.y, object);
}

void Action_Move(CInstance* self, const char* directions, double speed)
{
    if (!directions || std::strlen(directions) != kDirections) {
        Error_Show("Wrong argument to action_move().", false);
        return;
    }
    if (!std::strchr(directions, '1')) return;
    if (g_ActionRelative) speed += self->speed;
    Motion_SetSpeed(self, static_cast<float>(speed));
    uint32_t drawn = Random_Word() % kDirections;
    while (directions[drawn] != '1') drawn = Random_Word() % kDirections;
    Motion_SetDirection(self, kDirectionOf[drawn]);
    if (drawn == kStop) Motion_SetSpeed(self, 0);
}

void Function_Action_Register()
{
    g_ActionRelative = false;
    Function_AddRows(kRows);
}
