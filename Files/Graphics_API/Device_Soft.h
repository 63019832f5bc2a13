#pragma once
// The rasteriser behind -software, and the reference of all picture tests.
// Exact: the same vertices give the same bytes on every machine.
//
// Fill rule: a pixel is covered when its centre (x + 0.5, y + 0.5) lies inside the
// shape, or on a top or left edge of it. Positions are rounded to 1/256 pixel; the
// shapes of lines and points are told in Device_Primitives.h. Colours and texture
// coordinates are interpolated straight across the screen (projections with a
// perspective place vertices, and bend no texture). Depth is clamped to its range
// instead of clipped. The linear filter has fractions of 1/256 texel and no mip
// levels; products of channels are rounded to the nearest of 255 steps.

#include "Files/Graphics_API/Device.h"

// The back buffer's pixels, rows top first, for tests and tools; valid until the
// next Reset or Close. Null and sizes 0 while closed.
const uint32_t* Device_Soft_BackBuffer(int32_t* width, int32_t* height);
// Runs the scalar twins of the vector loops when off; the pictures are equal.
void Device_Soft_SetVector(bool on);
// Runs the loops of this name, "avx2", "sse2" or "scalar", or the best for "". False
// where the build or the processor has none of them.
bool Device_Soft_SetLoops(const char* name);
