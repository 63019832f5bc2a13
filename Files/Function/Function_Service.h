#pragma once
// Achievements, score boards and virtual keys, registered with the families that name
// them.

#include "Files/Function/Function_Registry.h"

void Function_Achievements_Register();
void Function_Steam_Register();
void Function_VirtualKeys_Register();  // Files/Function/Function_VirtualKeys.cpp
