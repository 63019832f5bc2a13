// Built-ins of motion, of room changes and of the game's end.

#include <cmath>

#include "Files/Function/Function_Registry.h"
#include "Files/Function/Motion.h"
#include "Files/Object/CInstance.h"
#include "Files/Room/Room_Main.h"
#include "Files/Run/Run_State.h"
#include "Files/Run/Services.h"

void Function_Game_RegisterInstances();
void Function_Game_RegisterCollision();
void Function_Game_RegisterTemplates();

namespace {

constexpr double kDegree = 3.14159265358979323846 / 180.0;

// ---- motion
BUILTIN(F_MotionSet)
{
    Motion_SetDirection(self, VXGetFloat(args, 0));
    Motion_SetSpeed(self, VXGetFloat(args, 1));
}

BUILTIN(F_MotionAdd)
{
    const double direction = VXGetReal(args, 0) * kDegree;
    const double speed = VXGetReal(args, 1);
    self->hspeed += static_cast<float>(std::cos(direction) * speed);
    self->vspeed -= static_cast<float>(std::sin(direction) * speed);
    self->ComputeDirectionFromSpeed();
}

BUILTIN(F_MoveTowardsPoint)
{
    const double dx = VXGetReal(args, 0) - self->x;
    const double dy = VXGetReal(args, 1) - self->y;
    Motion_SetDirection(self, static_cast<float>(-std::atan2(dy, dx) / kDegree));
    Motion_SetSpeed(self, VXGetFloat(args, 2));
}

// ---- rooms
BUILTIN(F_RoomGoto)
{
    Room_Goto(VXGetInt32(args, 0));
}
BUILTIN(F_RoomGotoNext)
{
    Room_GotoNext();
}
BUILTIN(F_RoomGotoPrevious)
{
    Room_GotoPrevious();
}
BUILTIN(F_RoomRestart)
{
    Room_Goto(Current_Room);
}
BUILTIN(F_RoomNext)
{
    SetReal(result, Room_Next(VXGetInt32(args, 0)));
}
BUILTIN(F_RoomPrevious)
{
    SetReal(result, Room_Previous(VXGetInt32(args, 0)));
}
BUILTIN(F_RoomExists)
{
    SetBool(result, Room_Exists(VXGetInt32(args, 0)));
}
BUILTIN(F_RoomGetName)
{
    VXCreateString(&result, Room_Name(VXGetInt32(args, 0)));
}

// ---- the game
BUILTIN(F_GameEnd)
{
    New_Room = ROOM_END_GAME;
}
BUILTIN(F_GameRestart)
{
    New_Room = ROOM_RESTART_GAME;
}
BUILTIN(F_GameLoad)
{
    Services_RequestLoad(VXGetString(args, 0));
    New_Room = ROOM_LOAD_GAME;
}
BUILTIN(F_Sleep)
{
    Run_Wait(static_cast<int64_t>(VXGetReal(args, 0) * 1000));
}

constexpr BuiltinRow kRows[] = {
    {"motion_set", F_MotionSet, 2},
    {"motion_add", F_MotionAdd, 2},
    {"move_towards_point", F_MoveTowardsPoint, 3},
    {"room_goto", F_RoomGoto, 1},
    {"room_goto_next", F_RoomGotoNext, 0},
    {"room_goto_previous", F_RoomGotoPrevious, 0},
    {"room_restart", F_RoomRestart, 0},
    {"room_next", F_RoomNext, 1},
    {"room_previous", F_RoomPrevious, 1},
    {"room_exists", F_RoomExists, 1},
    {"room_get_name", F_RoomGetName, 1},
    {"game_end", F_GameEnd, 0},
    {"game_restart", F_GameRestart, 0},
    {"game_load", F_GameLoad, 1},
    {"sleep", F_Sleep, 1},
};

}  // namespace

void Motion_SetSpeed(CInstance* instance, float speed)
{
    if (instance->speed == speed) return;
    instance->speed = speed;
    instance->ComputeSpeedFromDirection();
}

void Motion_SetDirection(CInstance* instance, float direction)
{
    float turned = std::fmod(direction, 360.0F);
    if (turned < 0) turned = std::fmod(turned + 360.0F, 360.0F);
    instance->direction = turned;
    instance->ComputeSpeedFromDirection();
}

void Function_Game_Register()
{
    Function_AddRows(kRows);
    Function_Game_RegisterTemplates();
    Function_Game_RegisterInstances();
    Function_Game_RegisterCollision();
}
