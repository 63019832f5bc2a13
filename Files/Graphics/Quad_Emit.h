#pragma once
// Shared by the quad operations: corners, colours and the six vertices of a quad.
// Corners stand in the order top left, top right, bottom right, bottom left.

#include <cmath>

#include "Files/Base/Archive_Records.h"
#include "Files/Graphics/Batch.h"
#include "Files/Graphics/Quad.h"

struct QuadShape {
    float x[4], y[4];
};
struct QuadTexels {
    float uMin, vMin, uMax, vMax;
};
struct QuadColours {
    uint32_t corner[4];  // vertex words
};

inline constexpr float kNoTurn = 0.001F, kNoTurnGeneral = 0.0001F;  // radians
inline constexpr uint32_t kWhiteVertex = 0xFFFFFFU;

// The slot of a texture with a picture, or null.
inline TextureSlot* Quad_Slot(int32_t index)
{
    TextureSlot* slot = Texture_Get(index);
    return slot && slot->texture && !(slot->texture->flags & TEXTURE_FAILED) ? slot : nullptr;
}

// A rectangle in the space about (x, y), turned by `angle` when it is `least` or more.
inline QuadShape Quad_Turn(float x, float y, float left, float top, float right, float bottom,
                           float angle, float least)
{
    if (std::fabs(angle) < least)
        return {{x + left, x + right, x + right, x + left},
                {y + top, y + top, y + bottom, y + bottom}};
    const float s = std::sin(angle), c = std::cos(angle);
    return {{x + c * left + s * top, x + c * right + s * top, x + c * right + s * bottom,
             x + c * left + s * bottom},
            {y - s * left + c * top, y - s * right + c * top, y - s * right + c * bottom,
             y - s * left + c * bottom}};
}

inline QuadShape Quad_Upright(float left, float top, float right, float bottom)
{
    return {{left, right, right, left}, {top, top, bottom, bottom}};
}

QuadColours Quad_OneColour(uint32_t vertexColour);  // with the corner marks when they are on

// The whole picture of an entry or a slot.
inline QuadTexels Quad_EntryTexels(const ArchivePageEntry& entry, const TextureSlot& slot)
{
    return {static_cast<float>(entry.x) * slot.invWidth,
            static_cast<float>(entry.y) * slot.invHeight,
            static_cast<float>(entry.x + entry.width) * slot.invWidth,
            static_cast<float>(entry.y + entry.height) * slot.invHeight};
}
inline QuadTexels Quad_SlotTexels(const TextureSlot& slot)
{
    return {0, 0, static_cast<float>(slot.width) * slot.invWidth,
            static_cast<float>(slot.height) * slot.invHeight};
}

// Six vertices: top left, top right, bottom right, bottom right, bottom left, top left.
inline void Quad_Write(VertexTextured* v, const QuadShape& shape, const QuadTexels& t,
                       const QuadColours& colours)
{
    const uint32_t* c = colours.corner;
    v[0] = {shape.x[0], shape.y[0], 0, c[0], t.uMin, t.vMin};
    v[1] = {shape.x[1], shape.y[1], 0, c[1], t.uMax, t.vMin};
    v[2] = {shape.x[2], shape.y[2], 0, c[2], t.uMax, t.vMax};
    v[3] = v[2];
    v[4] = {shape.x[3], shape.y[3], 0, c[3], t.uMin, t.vMax};
    v[5] = v[0];
}

inline void Quad_Emit(GpuTexture* texture, const QuadShape& shape, const QuadTexels& texels,
                      const QuadColours& colours)
{
    auto* v =
        static_cast<VertexTextured*>(Batch_Alloc(PRIMITIVE_TRIANGLES, texture, kStrideTextured, 6));
    if (!v) return;
    Quad_Write(v, shape, texels, colours);
    ++g_GraphicsStats.sprites;
}

// A width or height of 0 in a page entry counts as 1 from its first draw on.
inline void Quad_MendEntry(ArchivePageEntry* entry)
{
    if (entry->targetWidth == 0) entry->targetWidth = 1;
    if (entry->targetHeight == 0) entry->targetHeight = 1;
}
