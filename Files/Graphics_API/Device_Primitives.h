#pragma once
// What both devices share on the way from vertices to the screen: vertex layouts,
// the transform into target pixels, and the shapes of lines and points.
//
// Pixels are squares between whole coordinates: a rectangle from (10, 10) to
// (20, 20) covers the pixels 10 to 19, and its texels are met at pixel centres.
// A line or point vertex at (x, y) stands for the pixel whose centre lies in
// [x - 0.5, x + 0.5), so (11, 11) is the pixel (10, 10). A line has one pixel in
// each step along its longer axis; it has its first pixel and leaves out its last,
// so the segments of a strip meet without a pixel drawn twice.

#include <cstdint>

#include "Files/Graphics_API/Device.h"

struct ScreenVertex {
    double x, y;      // target pixels, y down
    double z;         // depth, 0 near to 1 far
    double u, v;      // texture size is 1
    uint32_t colour;  // 0xAARRGGBB
};

struct DeviceViewport {
    int32_t x, y, width, height;
};

// Object space to target pixels, rows of a 4 by 4 matrix; `flat` when the last row
// divides by nothing.
struct DeviceTransform {
    double row[4][4];
    bool flat;
};

bool Device_KnownStride(int32_t stride);
DeviceTransform Device_BuildTransform(const float world[16], const float view[16],
                                      const float projection[16], const DeviceViewport& viewport);
// A vertex of the layout `stride` in target pixels; false when it has no place there
// (behind the eye, or not a number).
bool Device_TransformVertex(const DeviceTransform& transform, const uint8_t* vertex, int32_t stride,
                            ScreenVertex* out);
// Four corners of the parallelogram that covers a line's pixels; false for no pixel.
bool Device_LineCorners(const ScreenVertex& from, const ScreenVertex& to, ScreenVertex out[4]);
void Device_PointCorners(const ScreenVertex& point, ScreenVertex out[4]);
DeviceCull Device_CullOf(uint32_t value);  // unknown values cull nothing
// The states of a fresh device, the same as the runtime's own.
void Device_DefaultStates(uint32_t render[STATE_COUNT],
                          uint32_t sampler[kDeviceStages][SAMPLER_COUNT]);
inline constexpr float kDeviceIdentity[16] = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};
// A pixel of 4 bits a channel as one of 8, 0xAARRGGBB.
uint32_t Device_From4444(uint32_t word);
// Separate primitives in `count` vertices.
int32_t Device_PrimitiveCount(DevicePrimitive primitive, int32_t count);
// Vertex numbers of the n-th line of a list or strip, or triangle of a list, strip
// or fan, all triangles of a strip turning the same way.
void Device_PrimitiveVertices(DevicePrimitive primitive, int32_t n, int32_t index[3]);
