#pragma once
// The insides of the rasteriser: what a draw call is boiled down to, and the steps
// from triangles to pixels. Only the units of Device_Soft include it.
//
// Fixed point: positions have 8 bits below the pixel (24.8). Texel coordinates have
// 16 bits below the texel; their planes carry 16 more, and are worked out from
// whole numbers with one rounding, so that the two triangles of a rectangle agree.

#include <cstdint>

#include "Files/Graphics_API/Device_Primitives.h"
#include "Files/Graphics_API/Device_Soft.h"
#include "Files/Graphics_API/Soft_Kernels.h"
#include "Platform/MemoryManager.h"

inline constexpr int32_t kSoftMaxSize = 16384;  // pixels a side
inline constexpr int32_t kSubpixel = 256;

struct SoftTexture {
    int32_t width, height;
    bool target, hasDepth;
    DeviceFormat format;
    uint32_t* pixels;
    uint32_t* depth;  // 24 bits of depth above 8 of stencil; made when first needed
    uint32_t depthClear;
    DeviceRect seen;  // all texels outside are clear
    SoftTexture* next;
    SoftTexture* previous;
};

struct SoftBuffer {
    uint8_t* data;
    uint32_t bytes;
    SoftBuffer* next;
    SoftBuffer* previous;
};

// A value over the target: at a pixel's centre, from an anchor.
struct SoftPlane {
    int64_t anchor;        // 16 bits more than the value
    int32_t x, y;          // the anchor's place, 24.8
    int64_t stepX, stepY;  // for each pixel
};

struct SoftDepthState {
    bool on, test, write, stencil;
    DeviceCompare depthCompare, stencilCompare;
    uint32_t fail, depthFail, pass;
    uint32_t reference, mask, writeMask;
    SoftPlane plane;  // of the triangle at hand
};

struct SoftFactors {
    DeviceBlend source, dest;
};

struct SoftDraw {
    const SoftKernels* kernels;
    // target
    uint32_t* pixels;
    int32_t pitch;                     // pixels
    int32_t left, top, right, bottom;  // pixels that may be touched
    uint32_t* depthPixels;             // null without
    // texture
    const uint32_t* texels;  // null: white
    int32_t texPitch, texWidth, texHeight;
    bool linear, linearMin, wrapU, wrapV;  // linear: enlarging; linearMin: making smaller
    bool modulate, flatShade;
    DeviceCull cull;
    // Where clear texels change nothing: those that are not lie within. A flag is set
    // when there is something to gain.
    struct Seen {
        bool columns, rows;
        DeviceRect within;  // texels
    } seen;
    // pixels
    void (*blend)(uint32_t* dest, const uint32_t* source, int32_t count);  // null: factors
    SoftFactors factors;
    uint32_t writeMask;
    bool alphaTest;
    DeviceCompare alphaCompare;
    uint32_t alphaReference;
    bool plain;  // no test and no mask
    SoftDepthState depth;
};

struct SoftVertex {
    int32_t x, y;  // 24.8
    int64_t u, v;  // texels, 16 bits below
    int32_t z;     // 24 bits
    uint32_t colour;
};

// An upright rectangle with one colour: u0 at x0, u1 at x1.
struct SoftRectangle {
    int32_t x0, y0, x1, y1;  // 24.8
    int64_t u0, v0, u1, v1;
    uint32_t colour;
};

struct SoftScratch {
    uint32_t source[kSoftRun];
    uint32_t colours[kSoftRun];
    uint32_t result[kSoftRun];
    uint32_t cover[kSoftRun];
    SoftColumns columns;
    uint16_t rows[2][kSoftRun * 4];
};

struct SoftState {
    DeviceParams params;
    DeviceCaps caps;
    SoftTexture* backBuffer;
    SoftTexture* textures;  // all, newest first
    SoftBuffer* buffers;
    SoftTexture* stage[kDeviceStages];
    SoftTexture* target[kDeviceTargets];  // [0] is never null
    uint32_t render[STATE_COUNT];
    uint32_t sampler[kDeviceStages][SAMPLER_COUNT];
    float matrix[3][16];
    DeviceViewport viewport;
    bool modulate, transformKnown;
    DeviceTransform transform;
    VxVector<uint32_t> copy;  // of a texture that is drawn into itself
    SoftScratch scratch;
};

extern SoftState* g_Soft;  // null while closed
extern const SoftKernels* g_SoftKernels;

// Draw calls
void Soft_PrepareDraw(SoftDraw& draw);
void Soft_DrawVertices(DevicePrimitive primitive, int32_t stride, const uint8_t* vertices,
                       int32_t count);
uint32_t* Soft_DepthPixels(SoftTexture* target);  // makes them

// Shapes
// The nearest whole number of value * scale, within +-limit, which is a whole number.
inline int64_t Soft_ToFixed(double value, double scale, double limit)
{
    const double scaled = value * scale + 0.5;
    if (!(scaled > -limit)) return static_cast<int64_t>(-limit);
    if (!(scaled < limit)) return static_cast<int64_t>(limit);
    const auto cut = static_cast<int64_t>(scaled);
    return static_cast<double>(cut) > scaled ? cut - 1 : cut;
}
int64_t Soft_Slope(int64_t difference, int64_t length);
int64_t Soft_PlaneAt(const SoftPlane& plane, int32_t x, int32_t y);
void Soft_Triangle(SoftDraw& draw, const ScreenVertex& a, const ScreenVertex& b,
                   const ScreenVertex& c);
// Two triangles of four corners; order: three corners for each.
void Soft_Quad(SoftDraw& draw, const ScreenVertex corner[4], const int32_t (&order)[6]);
void Soft_Rectangle(const SoftDraw& draw, SoftRectangle rectangle);
// The texel that holds a plane's value. On a border, where rounding of the steps may
// leave a hair too little, it is the next one.
inline int64_t Soft_TexelOf(int64_t value)
{
    return (value + 32768) >> 32;
}
// A plane's value in 1/256 texel, the nearest, counted from texel centres.
inline int64_t Soft_TapOf(int64_t value)
{
    return ((value >> 16) - 32768 + 128) >> 8;
}
// The tap's texel and fraction stand in the upper 40 bits of this place.
inline int64_t Soft_WalkPlace(int64_t value)
{
    return value - (int64_t{32768 - 128} << 16);
}
// Texel number within 0 to size - 1.
int32_t Soft_Address(int64_t texel, int32_t size, bool wrap);

// `source` holds the shaded colours of `count` pixels from (x, y), all inside the
// area of the draw; at most kSoftRun.
void Soft_WriteRun(const SoftDraw& draw, int32_t x, int32_t y, const uint32_t* source,
                   int32_t count);
