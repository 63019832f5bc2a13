// A draw call: states boiled down, vertices transformed, shapes sent to the pixels.
#include <cmath>
#include <cstring>

#include "Files/Graphics/Batch.h"
#include "Files/Graphics_API/Soft_State.h"

namespace {

SoftBlend KnownBlend(DeviceBlend source, DeviceBlend dest)
{
    using B = DeviceBlend;
    if (source == B::One && dest == B::Zero) return SoftBlend::Copy;
    if (source == B::SrcAlpha && dest == B::InvSrcAlpha) return SoftBlend::Normal;
    if (source == B::SrcAlpha && dest == B::One) return SoftBlend::Add;
    if (source == B::SrcAlpha && dest == B::InvSrcColour) return SoftBlend::Max;
    if (source == B::Zero && dest == B::InvSrcColour) return SoftBlend::Subtract;
    if (source == B::One && dest == B::InvSrcAlpha) return SoftBlend::Premultiplied;
    return SoftBlend::Count;
}

void PrepareBlend(SoftDraw& draw, const uint32_t* render)
{
    draw.factors = {static_cast<DeviceBlend>(render[STATE_SRC_BLEND]),
                    static_cast<DeviceBlend>(render[STATE_DEST_BLEND])};
    if (!render[STATE_ALPHA_BLEND]) draw.factors = {DeviceBlend::One, DeviceBlend::Zero};
    const SoftBlend blend = KnownBlend(draw.factors.source, draw.factors.dest);
    draw.blend = nullptr;
    if (blend != SoftBlend::Count) draw.blend = draw.kernels->Blend[static_cast<int32_t>(blend)];
    // Bits red, green, blue, alpha to bytes of the pixel.
    const uint32_t bits = render[STATE_COLOUR_WRITE];
    draw.writeMask = (bits & 1 ? 0x00FF0000U : 0) | (bits & 2 ? 0x0000FF00U : 0) |
                     (bits & 4 ? 0x000000FFU : 0) | (bits & 8 ? 0xFF000000U : 0);
    draw.alphaTest = render[STATE_ALPHA_TEST] != 0;
    draw.alphaCompare = static_cast<DeviceCompare>(render[STATE_ALPHA_FUNC]);
    draw.alphaReference = render[STATE_ALPHA_REF] & 255;
}

void PrepareDepth(SoftDraw& draw, const uint32_t* render, SoftTexture* target)
{
    SoftDepthState& depth = draw.depth;
    depth.test = render[STATE_Z_ENABLE] != 0;
    depth.stencil = render[STATE_STENCIL_ENABLE] != 0;
    depth.on = (depth.test || depth.stencil) && target->hasDepth;
    depth.write = render[STATE_Z_WRITE] != 0;
    depth.depthCompare = static_cast<DeviceCompare>(render[STATE_Z_FUNC]);
    depth.stencilCompare = static_cast<DeviceCompare>(render[STATE_STENCIL_FUNC]);
    depth.fail = render[STATE_STENCIL_FAIL];
    depth.depthFail = render[STATE_STENCIL_ZFAIL];
    depth.pass = render[STATE_STENCIL_PASS];
    depth.reference = render[STATE_STENCIL_REF];
    depth.mask = render[STATE_STENCIL_MASK];
    depth.writeMask = render[STATE_STENCIL_WRITE_MASK];
    draw.depthPixels = depth.on ? Soft_DepthPixels(target) : nullptr;
    draw.plain = !draw.alphaTest && !depth.on && draw.writeMask == 0xFFFFFFFF;
}

// What is sampled is the texture as it was before the call, also when it is the target.
const uint32_t* TexelsOf(SoftTexture* texture, const SoftTexture* target)
{
    if (texture != target) return texture->pixels;
    VxVector<uint32_t>& copy = g_Soft->copy;
    const size_t count = static_cast<size_t>(texture->width) * static_cast<size_t>(texture->height);
    if (copy.size() < count) copy.resize(count);
    std::memcpy(copy.data(), texture->pixels, count * 4);
    return copy.data();
}

// Under a wrapping filter the borders are neighbours, so both must be clear.
bool IsWorthCutting(int32_t from, int32_t to, int32_t size, bool wrap)
{
    return wrap ? from > 0 && to < size : from > 0 || to < size;
}

SoftDraw::Seen SeenOf(const SoftDraw& draw, const SoftTexture* texture)
{
    const auto keepsUnderClear = [&](SoftBlend blend) {
        return draw.blend == draw.kernels->Blend[static_cast<int32_t>(blend)];
    };
    const bool keeps = keepsUnderClear(SoftBlend::Normal) || keepsUnderClear(SoftBlend::Add);
    if (!texture || !keeps || draw.depth.on) return {};
    DeviceRect seen = texture->seen;
    if (seen.left >= seen.right) seen = {};
    return {IsWorthCutting(seen.left, seen.right, texture->width, draw.wrapU),
            IsWorthCutting(seen.top, seen.bottom, texture->height, draw.wrapV), seen};
}

void PrepareTexture(SoftDraw& draw, SoftTexture* target)
{
    SoftTexture* texture = g_Soft->stage[0];
    const uint32_t* sampler = g_Soft->sampler[0];
    draw.texels = texture ? TexelsOf(texture, target) : nullptr;
    draw.texWidth = texture ? texture->width : 1;
    draw.texHeight = texture ? texture->height : 1;
    draw.texPitch = draw.texWidth;
    draw.linear = sampler[SAMPLER_MAG] == 1;
    draw.linearMin = sampler[SAMPLER_MIN] == 1;
    draw.wrapU = sampler[SAMPLER_ADDRESS_U] == 0;
    draw.wrapV = sampler[SAMPLER_ADDRESS_V] == 0;
    draw.modulate = g_Soft->modulate;
    draw.seen = SeenOf(draw, texture);
}

SoftVertex RectangleCorner(const SoftDraw& draw, const ScreenVertex& vertex)
{
    constexpr double kTexelLimit = 68719476736.0;
    SoftVertex fixed = {};
    fixed.x = static_cast<int32_t>(Soft_ToFixed(vertex.x, kSubpixel, 1e9));
    fixed.y = static_cast<int32_t>(Soft_ToFixed(vertex.y, kSubpixel, 1e9));
    fixed.u = Soft_ToFixed(vertex.u, draw.texWidth * 65536.0, kTexelLimit);
    fixed.v = Soft_ToFixed(vertex.v, draw.texHeight * 65536.0, kTexelLimit);
    fixed.colour = vertex.colour;
    return fixed;
}

bool InReach(const SoftVertex& v)
{
    constexpr int32_t kReach = kSoftMaxSize * kSubpixel;
    return v.x >= -kReach && v.x <= kReach && v.y >= -kReach && v.y <= kReach;
}

// Corners in the order top left, top right, bottom right, bottom left.
bool TryRectangle(const SoftDraw& draw, const ScreenVertex* const corner[4])
{
    if (draw.depth.on || draw.cull != DeviceCull::None) return false;
    // So far apart they don't come to lie on the same line, and need no more looking at.
    if (std::fabs(corner[0]->y - corner[1]->y) > 1.0 / kSubpixel) return false;
    SoftVertex v[4];
    for (int32_t i = 0; i < 4; i++) {
        v[i] = RectangleCorner(draw, *corner[i]);
        if (!InReach(v[i]) || v[i].colour != v[0].colour) return false;
    }
    if (v[0].y != v[1].y || v[2].y != v[3].y || v[0].x != v[3].x || v[1].x != v[2].x) return false;
    if (v[0].v != v[1].v || v[2].v != v[3].v || v[0].u != v[3].u || v[1].u != v[2].u) return false;
    Soft_Rectangle(draw,
                   {v[0].x, v[0].y, v[2].x, v[2].y, v[0].u, v[0].v, v[2].u, v[2].v, v[0].colour});
    return true;
}

class Drawer {
public:
    Drawer(SoftDraw& draw, int32_t stride, const uint8_t* vertices)
        : draw_(draw), stride_(stride), vertices_(vertices)
    {
    }

    void Triangles(DevicePrimitive primitive, int32_t count)
    {
        int32_t n = 0;
        while (n < count) {
            if (primitive == DevicePrimitive::TriangleList && n + 2 <= count && Quad(n * 3)) {
                n += 2;
                continue;
            }
            if (primitive == DevicePrimitive::TriangleFan && count == 2 && FanQuad()) return;
            int32_t index[3];
            Device_PrimitiveVertices(primitive, n++, index);
            ScreenVertex v[3];
            if (Read(index[0], &v[0]) && Read(index[1], &v[1]) && Read(index[2], &v[2]))
                Soft_Triangle(draw_, v[0], v[1], v[2]);
        }
    }

    void Lines(DevicePrimitive primitive, int32_t count)
    {
        for (int32_t n = 0; n < count; n++) {
            int32_t index[3];
            Device_PrimitiveVertices(primitive, n, index);
            ScreenVertex from, to, corner[4];
            if (!Read(index[0], &from) || !Read(index[1], &to)) continue;
            if (draw_.flatShade) to.colour = from.colour;
            if (Device_LineCorners(from, to, corner)) Corners(corner);
        }
    }

    void Points(int32_t count)
    {
        for (int32_t n = 0; n < count; n++) {
            ScreenVertex point, corner[4];
            if (!Read(n, &point)) continue;
            Device_PointCorners(point, corner);
            Corners(corner);
        }
    }

private:
    bool Read(int32_t index, ScreenVertex* out) const
    {
        return Device_TransformVertex(g_Soft->transform, At(index), stride_, out);
    }

    const uint8_t* At(int32_t index) const
    {
        return vertices_ + static_cast<int64_t>(index) * stride_;
    }

    bool Same(int32_t a, int32_t b) const
    {
        return std::memcmp(At(a), At(b), static_cast<size_t>(stride_)) == 0;
    }

    // Four vertices in the order of TryRectangle; false when one is nowhere.
    bool Four(const int32_t (&index)[4], const int32_t (&order)[6])
    {
        ScreenVertex v[4];
        for (int32_t i = 0; i < 4; i++)
            if (!Read(index[i], &v[i])) return false;
        const ScreenVertex* const corner[4] = {&v[0], &v[1], &v[2], &v[3]};
        if (!TryRectangle(draw_, corner)) Soft_Quad(draw_, v, order);
        return true;
    }

    // The two orders in which the quad operations send their six vertices.
    bool Quad(int32_t first)
    {
        if (Same(first + 2, first + 3) && Same(first, first + 5))
            return Four({first, first + 1, first + 2, first + 4}, {0, 1, 2, 2, 3, 0});
        if (Same(first + 1, first + 3) && Same(first + 2, first + 5))
            return Four({first, first + 1, first + 4, first + 2}, {0, 1, 3, 1, 2, 3});
        return false;
    }

    bool FanQuad() { return Four({0, 1, 2, 3}, {0, 1, 2, 0, 2, 3}); }

    // Lines and points have no face to cull.
    void Corners(const ScreenVertex v[4])
    {
        const DeviceCull cull = draw_.cull;
        draw_.cull = DeviceCull::None;
        const ScreenVertex* const corner[4] = {&v[0], &v[1], &v[2], &v[3]};
        if (!TryRectangle(draw_, corner)) Soft_Quad(draw_, v, {0, 1, 2, 2, 3, 0});
        draw_.cull = cull;
    }

    SoftDraw& draw_;
    int32_t stride_;
    const uint8_t* vertices_;
};

}  // namespace

void Soft_PrepareDraw(SoftDraw& draw)
{
    SoftState& soft = *g_Soft;
    SoftTexture* target = soft.target[0];
    draw.kernels = g_SoftKernels;
    draw.pixels = target->pixels;
    draw.pitch = target->width;
    const DeviceViewport& view = soft.viewport;
    const auto within = [](int64_t value, int32_t limit) {
        return static_cast<int32_t>(value < 0 ? 0 : (value > limit ? limit : value));
    };
    draw.left = within(view.x, target->width);
    draw.top = within(view.y, target->height);
    draw.right = within(static_cast<int64_t>(view.x) + view.width, target->width);
    draw.bottom = within(static_cast<int64_t>(view.y) + view.height, target->height);
    draw.flatShade = soft.render[STATE_SHADE_MODE] == static_cast<uint32_t>(DeviceShade::Flat);
    draw.cull = Device_CullOf(soft.render[STATE_CULL_MODE]);
    PrepareBlend(draw, soft.render);
    PrepareDepth(draw, soft.render, target);
    PrepareTexture(draw, target);
    if (soft.transformKnown) return;
    soft.transform =
        Device_BuildTransform(soft.matrix[static_cast<int32_t>(DeviceMatrix::World)],
                              soft.matrix[static_cast<int32_t>(DeviceMatrix::View)],
                              soft.matrix[static_cast<int32_t>(DeviceMatrix::Projection)], view);
    soft.transformKnown = true;
}

void Soft_DrawVertices(DevicePrimitive primitive, int32_t stride, const uint8_t* vertices,
                       int32_t count)
{
    const int32_t shapes = Device_PrimitiveCount(primitive, count);
    if (shapes <= 0 || !Device_KnownStride(stride)) return;
    SoftDraw draw;
    Soft_PrepareDraw(draw);
    if (draw.left >= draw.right || draw.top >= draw.bottom) return;
    if (draw.writeMask == 0 && !draw.depth.on) return;
    Drawer drawer(draw, stride, vertices);
    if (primitive == DevicePrimitive::PointList)
        drawer.Points(shapes);
    else if (primitive == DevicePrimitive::LineList || primitive == DevicePrimitive::LineStrip)
        drawer.Lines(primitive, shapes);
    else
        drawer.Triangles(primitive, shapes);
}
