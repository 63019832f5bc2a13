#pragma once
// The families of asset built-ins.

#include <cstdint>

#include "Files/Base/RValue.h"
#include "Files/Function/Arguments.h"

void Function_Resource_RegisterSprites();
void Function_Resource_RegisterBackgrounds();
void Function_Resource_RegisterTiles();
void Function_Resource_RegisterFonts();

// An array of numbers as a result.
void Resource_SetArray(RValue& result, const double* numbers, int32_t count);
