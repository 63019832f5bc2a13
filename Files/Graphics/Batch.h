#pragma once
// The one vertex batch that all drawing goes through.

#include <cstdint>

#include "Files/Graphics/TextureSlots.h"

inline constexpr int32_t kStridePlain = 16, kStrideTextured = 24, kStrideNormal = 36;

struct VertexTextured {
    float x, y, z;
    uint32_t colour;  // 0xAARRGGBB
    float u, v;
};
static_assert(sizeof(VertexTextured) == kStrideTextured);

enum PrimitiveType : int32_t {
    PRIMITIVE_NONE = -1,
    PRIMITIVE_POINTS = 1,
    PRIMITIVE_LINES = 2,
    PRIMITIVE_LINE_STRIP = 3,
    PRIMITIVE_TRIANGLES = 4,
    PRIMITIVE_TRIANGLE_STRIP = 5,
    PRIMITIVE_TRIANGLE_FAN = 6,
};

enum BatchMethod : int32_t {
    BATCH_DYNAMIC = 0,  // one dynamic buffer, addressed in bytes
    BATCH_POOL = 1,     // a pool of buffers, one format each
    BATCH_MEMORY = 2,   // a block of system memory
};

// Room for `count` vertices, all of which the caller fills at once; null when the
// device is gone. count is at most Batch_MaxVertices().
void* Batch_Alloc(int32_t primType, GpuTexture* texture, int32_t stride, int32_t count);
void Batch_Flush();
void Batch_Giveback(int32_t count);  // the last vertices that were allocated
int32_t Batch_MaxVertices();
int32_t Batch_MaxBytes();
void Batch_EndFrame();
void Batch_Init();
void Batch_Quit();
void Batch_SetMethod(int32_t method);  // a BatchMethod; flushes
int32_t Batch_Method();
// Takes a texture that is about to go off the batch, after drawing with it.
void Batch_ForgetTexture(const GpuTexture* texture);
// Off: nothing reaches the device, the bookkeeping goes on.
void Batch_SetDrawing(bool on);

// Primitives that `count` vertices make; 0 or below for none.
int32_t Batch_PrimitiveCount(int32_t primType, int32_t count);

struct GraphicsStats {
    int64_t drawCalls, textureSwaps, vertices, sprites;  // since the frame's start
};
extern GraphicsStats g_GraphicsStats;
