#pragma once
// Rows of built-ins that are still to come.

#include "Files/Function/Function_Registry.h"

// The routine of such a row: reports that the built-in under way is not there yet.
void NotThereYet(RValue& result, CInstance* self, CInstance* other, int argc, RValue* args);
