#pragma once
// Matrices for the device: column vectors, rows first in memory.

#include "Files/Graphics_API/Device.h"

inline constexpr float kIdentityMatrix[16] = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};

void Matrix_SetDevice(DeviceMatrix which, const float matrix[16]);  // nothing without a device
// Orthographic about the middle, y downward, z from 1 to 32000.
void Matrix_SetOrthographic(float width, float height);
void View_MarkNew();  // the cull box is worked out anew before its next use
