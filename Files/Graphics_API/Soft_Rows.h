#pragma once
// From a triangle's shape and planes to its rows of pixels. Soft_Triangle fills these
// in, Soft_Rows walks them.

#include "Files/Graphics_API/Soft_State.h"

struct SoftShading {
    SoftPlane u, v, channel[4];
    bool oneColour, linear;
    uint32_t colour;
    bool inside[2];  // columns and rows: no corner lies off the texture
};

// The side of a triangle, from its upper end to its lower one.
struct SoftSide {
    const SoftVertex* top;
    const SoftVertex* bottom;
};

struct SoftShape {
    SoftSide whole, upper, lower;  // the side over all rows, and the two across from it
    bool bendsLeft;                // those two lie on the left
    int32_t from, turn, to;        // rows; `turn` is the first one of `lower`
};

void Soft_FillShape(const SoftDraw& draw, const SoftShading& shading, const SoftShape& shape);

// Sums and products of extreme slivers may pass 64 bits; they wrap, the same everywhere.
inline int64_t Soft_Times(int64_t a, int64_t b)
{
    return static_cast<int64_t>(static_cast<uint64_t>(a) * static_cast<uint64_t>(b));
}
inline int64_t Soft_Plus(int64_t a, int64_t b)
{
    return static_cast<int64_t>(static_cast<uint64_t>(a) + static_cast<uint64_t>(b));
}
