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

// Room for `count` vertices, all of which the caller fills at once; null when the
// device is gone. count is at most Batch_MaxVertices().
void* Batch_Alloc(int32_t primType, GpuTexture* texture, int32_t stride, int32_t count);
void Batch_Flush();
void Batch_Giveback(int32_t count);
int32_t Batch_MaxVertices();
int32_t Batch_MaxBytes();
void Batch_EndFrame();
void Batch_Init();
void Batch_Quit();
void Batch_SetMethod(int32_t method);  // 0 dynamic, 1 pool, 2 system memory
int32_t Batch_Method();

struct GraphicsStats {
    int64_t drawCalls, textureSwaps, vertices, sprites;  // since the frame's start
};
extern GraphicsStats g_GraphicsStats;
