#include "Files/Graphics/Draw_State.h"

#include <algorithm>
#include <cmath>

#include "Files/Graphics/Batch.h"

uint32_t drawColourARGB = 0xFF000000U;
int32_t drawAlpha = 255;
uint32_t g_StartDrawColour;

namespace {

constexpr int32_t kPrimitiveVertices = 1000;

VertexTextured s_primitive[kPrimitiveVertices];
int32_t primitiveKind, primitiveCount, primitiveTexture = -1;

uint32_t SwapRedBlue(uint32_t colour)
{
    return (colour & 0xFF00U) | (colour & 0xFFU) << 16 | (colour >> 16 & 0xFFU);
}

// Vertices that whole primitives of a kind need out of `count`; 0 for no kind.
int32_t WholePrimitives(int32_t kind, int32_t count)
{
    if (Batch_PrimitiveCount(kind, count) <= 0) return 0;
    if (kind == PRIMITIVE_LINES) return count - count % 2;
    if (kind == PRIMITIVE_TRIANGLES) return count - count % 3;
    return count;
}

}  // namespace

void DrawState_Init()
{
    drawAlpha = 255;
    Draw_SetColour(g_StartDrawColour);
    primitiveOffsetX = primitiveOffsetY = 1.0F;
    Draw_SetCirclePrecision(24);
    primitiveKind = primitiveCount = 0;
    primitiveTexture = -1;
}

uint32_t Draw_VertexWord(uint32_t colour)
{
    return SwapRedBlue(colour) | static_cast<uint32_t>(drawAlpha) << 24;
}

void Draw_SetColour(uint32_t colour)
{
    drawColourARGB = Draw_VertexWord(colour);
}

uint32_t Draw_GetColour()
{
    return SwapRedBlue(drawColourARGB);
}

void Draw_SetAlpha(double alpha)
{
    const double inside = alpha > 0 ? std::min(alpha, 1.0) : 0.0;
    drawAlpha = static_cast<int32_t>(std::lrint(inside * 255.0));
    drawColourARGB = (drawColourARGB & 0xFFFFFFU) | static_cast<uint32_t>(drawAlpha) << 24;
}

double Draw_GetAlpha()
{
    return drawAlpha / 255.0;
}

void Primitive_Begin(int32_t kind, int32_t textureSlot)
{
    primitiveKind = kind;
    primitiveCount = 0;
    primitiveTexture = textureSlot;
}

void Primitive_Vertex(float x, float y, float u, float v, uint32_t colour)
{
    if (primitiveCount == kPrimitiveVertices) return;
    s_primitive[primitiveCount++] = {x, y, 0, colour, u, v};
}

void Primitive_End()
{
    const int32_t count = WholePrimitives(primitiveKind, primitiveCount);
    primitiveCount = 0;
    if (count == 0) return;
    const TextureSlot* slot = Texture_Get(primitiveTexture);
    GpuTexture* texture = slot && slot->texture ? slot->texture : Texture_White();
    auto* v =
        static_cast<VertexTextured*>(Batch_Alloc(primitiveKind, texture, kStrideTextured, count));
    if (v) std::copy_n(s_primitive, count, v);
}
