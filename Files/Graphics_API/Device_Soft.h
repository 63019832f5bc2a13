#pragma once
// The rasteriser behind -software, and the reference of all picture tests.
// Exact: the same vertices give the same bytes on every machine.

#include "Files/Graphics_API/Device.h"

// The back buffer's pixels, rows top first, for tests and tools; valid until the
// next Reset or Close.
const uint32_t* Device_Soft_BackBuffer(int32_t* width, int32_t* height);
// Runs the scalar twins of the vector loops when off; the pictures are equal.
void Device_Soft_SetVector(bool on);
