// From shaded colours to the target: tests, blending and the write mask.
#include <cstring>

#include "Files/Graphics_API/Soft_State.h"

namespace {

struct Rgba {
    int32_t channel[4];  // blue, green, red, alpha
};

inline Rgba Split(uint32_t pixel)
{
    Rgba result;
    for (int32_t c = 0; c < 4; c++)
        result.channel[c] = static_cast<int32_t>((pixel >> (c * 8)) & 255);
    return result;
}

int32_t Factor(DeviceBlend blend, const Rgba& s, const Rgba& d, int32_t c)
{
    const int32_t destRest = 255 - d.channel[3];
    switch (blend) {
        case DeviceBlend::Zero:
            return 0;
        case DeviceBlend::One:
            return 255;
        case DeviceBlend::SrcColour:
            return s.channel[c];
        case DeviceBlend::InvSrcColour:
            return 255 - s.channel[c];
        case DeviceBlend::SrcAlpha:
            return s.channel[3];
        case DeviceBlend::InvSrcAlpha:
            return 255 - s.channel[3];
        case DeviceBlend::DestAlpha:
            return d.channel[3];
        case DeviceBlend::InvDestAlpha:
            return destRest;
        case DeviceBlend::DestColour:
            return d.channel[c];
        case DeviceBlend::InvDestColour:
            return 255 - d.channel[c];
        case DeviceBlend::SrcAlphaSat:
            if (c == 3) return 255;
            return s.channel[3] < destRest ? s.channel[3] : destRest;
    }
    return 255;
}

void BlendByFactors(const SoftFactors& factors, uint32_t* dest, const uint32_t* source,
                    int32_t count)
{
    for (int32_t i = 0; i < count; i++) {
        const Rgba s = Split(source[i]), d = Split(dest[i]);
        uint32_t result = 0;
        for (int32_t c = 0; c < 4; c++) {
            const int32_t sum = s.channel[c] * Factor(factors.source, s, d, c) +
                                d.channel[c] * Factor(factors.dest, s, d, c);
            const int32_t value = (sum + 127) / 255;
            result |= static_cast<uint32_t>(value > 255 ? 255 : value) << (c * 8);
        }
        dest[i] = result;
    }
}

inline void Blend(const SoftDraw& draw, uint32_t* dest, const uint32_t* source, int32_t count)
{
    if (draw.blend)
        draw.blend(dest, source, count);
    else
        BlendByFactors(draw.factors, dest, source, count);
}

inline bool Compare(DeviceCompare compare, uint32_t value, uint32_t with)
{
    switch (compare) {
        case DeviceCompare::Never:
            return false;
        case DeviceCompare::Less:
            return value < with;
        case DeviceCompare::Equal:
            return value == with;
        case DeviceCompare::LessEqual:
            return value <= with;
        case DeviceCompare::Greater:
            return value > with;
        case DeviceCompare::NotEqual:
            return value != with;
        case DeviceCompare::GreaterEqual:
            return value >= with;
        case DeviceCompare::Always:
            return true;
    }
    return true;
}

uint32_t StencilResult(uint32_t operation, uint32_t value, uint32_t reference)
{
    switch (static_cast<DeviceStencil>(operation)) {
        case DeviceStencil::Keep:
            return value;
        case DeviceStencil::Zero:
            return 0;
        case DeviceStencil::Replace:
            return reference & 255;
        case DeviceStencil::IncrementLimit:
            return value < 255 ? value + 1 : 255;
        case DeviceStencil::DecrementLimit:
            return value > 0 ? value - 1 : 0;
        case DeviceStencil::Invert:
            return ~value & 255;
        case DeviceStencil::Increment:
            return (value + 1) & 255;
        case DeviceStencil::Decrement:
            return (value - 1) & 255;
    }
    return value;
}

// Stencil, then depth; true when the pixel is to be drawn.
bool TestDepth(const SoftDepthState& state, uint32_t* pixel, uint32_t depth)
{
    const uint32_t stencil = *pixel & 255;
    uint32_t operation = state.pass, kept = *pixel >> 8;
    bool drawn = true;
    if (state.stencil &&
        !Compare(state.stencilCompare, state.reference & state.mask & 255, stencil & state.mask)) {
        operation = state.fail;
        drawn = false;
    } else if (state.test && !Compare(state.depthCompare, depth, kept)) {
        operation = state.depthFail;
        drawn = false;
    }
    if (drawn && state.test && state.write) kept = depth;
    uint32_t marked = stencil;
    if (state.stencil) {
        const uint32_t mask = state.writeMask & 255;
        const uint32_t result = StencilResult(operation, stencil, state.reference);
        marked = (stencil & ~mask) | (result & mask);
    }
    *pixel = (kept << 8) | marked;
    return drawn;
}

uint32_t DepthAt(const SoftPlane& plane, int32_t x, int32_t y)
{
    const int64_t depth = Soft_PlaneAt(plane, x, y) >> 24;
    if (depth < 0) return 0;
    return depth > 0xFFFFFF ? 0xFFFFFFU : static_cast<uint32_t>(depth);
}

void WriteTested(const SoftDraw& draw, int32_t x, int32_t y, const uint32_t* source, int32_t count)
{
    SoftScratch& scratch = g_Soft->scratch;
    uint32_t* dest = draw.pixels + static_cast<int64_t>(y) * draw.pitch + x;
    uint32_t* depth = nullptr;
    if (draw.depth.on && draw.depthPixels)
        depth = draw.depthPixels + static_cast<int64_t>(y) * draw.pitch + x;
    for (int32_t i = 0; i < count; i++) {
        bool drawn =
            !draw.alphaTest || Compare(draw.alphaCompare, source[i] >> 24, draw.alphaReference);
        if (drawn && depth)
            drawn = TestDepth(draw.depth, &depth[i], DepthAt(draw.depth.plane, x + i, y));
        scratch.cover[i] = drawn ? draw.writeMask : 0;
    }
    std::memcpy(scratch.result, dest, static_cast<size_t>(count) * 4);
    Blend(draw, scratch.result, source, count);
    for (int32_t i = 0; i < count; i++)
        dest[i] = (scratch.result[i] & scratch.cover[i]) | (dest[i] & ~scratch.cover[i]);
}

}  // namespace

void Soft_WriteRun(const SoftDraw& draw, int32_t x, int32_t y, const uint32_t* source,
                   int32_t count)
{
    if (draw.plain)
        Blend(draw, draw.pixels + static_cast<int64_t>(y) * draw.pitch + x, source, count);
    else
        WriteTested(draw, x, y, source, count);
}
