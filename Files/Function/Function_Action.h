#pragma once
// The actions that game code calls directly; the built-ins of the same names are
// made of them.

#include <cstdint>

class CInstance;

extern bool g_ActionRelative;  // set by action_set_relative, reset by nobody

// x and y are relative to the instance when the flag is set.
bool Action_IfEmpty(CInstance* self, double x, double y, bool allObjects);
bool Action_IfObject(CInstance* self, CInstance* other, int32_t object, double x, double y);
CInstance* Action_CreateObject(CInstance* self, int32_t object, double x, double y);
void Action_Move(CInstance* self, const char* directions, double speed);
