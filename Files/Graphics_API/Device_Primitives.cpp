#include "Files/Graphics_API/Device_Primitives.h"

#include <cmath>
#include <cstring>

#include "Files/Graphics/Batch.h"

namespace {

void Multiply(const double a[16], const float b[16], double out[16])
{
    for (int32_t i = 0; i < 4; i++) {
        for (int32_t j = 0; j < 4; j++) {
            double sum = a[i * 4] * b[j];
            for (int32_t k = 1; k < 4; k++) sum += a[i * 4 + k] * b[k * 4 + j];
            out[i * 4 + j] = sum;
        }
    }
}

struct Layout {
    int32_t colour, uv;  // byte offsets, -1 for none
};

Layout LayoutOf(int32_t stride)
{
    if (stride == kStrideNormal) return {24, 28};
    if (stride == kStrideTextured) return {12, 16};
    return {12, -1};
}

}  // namespace

bool Device_KnownStride(int32_t stride)
{
    return stride == kStridePlain || stride == kStrideTextured || stride == kStrideNormal;
}

DeviceTransform Device_BuildTransform(const float world[16], const float view[16],
                                      const float projection[16], const DeviceViewport& viewport)
{
    const double halfWidth = viewport.width * 0.5, halfHeight = viewport.height * 0.5;
    const double screen[16] = {halfWidth, 0,           0, viewport.x + halfWidth,   //
                               0,         -halfHeight, 0, viewport.y + halfHeight,  //
                               0,         0,           1, 0,                        //
                               0,         0,           0, 1};
    double projected[16], viewed[16];
    Multiply(screen, projection, projected);
    Multiply(projected, view, viewed);
    DeviceTransform transform;
    Multiply(viewed, world, &transform.row[0][0]);
    const double* last = transform.row[3];
    transform.flat = last[0] == 0 && last[1] == 0 && last[2] == 0 && last[3] == 1;
    return transform;
}

bool Device_TransformVertex(const DeviceTransform& transform, const uint8_t* vertex, int32_t stride,
                            ScreenVertex* out)
{
    float position[3];
    std::memcpy(position, vertex, sizeof(position));
    const auto place = [&](const double row[4]) {
        return row[0] * position[0] + row[1] * position[1] + row[2] * position[2] + row[3];
    };
    double result[3] = {place(transform.row[0]), place(transform.row[1]), place(transform.row[2])};
    if (!transform.flat) {
        const double away = place(transform.row[3]);
        if (!(away > 0)) return false;
        for (double& axis : result) axis /= away;
    }
    if (!std::isfinite(result[0]) || !std::isfinite(result[1])) return false;
    const Layout layout = LayoutOf(stride);
    float uv[2] = {0, 0};
    if (layout.uv >= 0) std::memcpy(uv, vertex + layout.uv, sizeof(uv));
    out->x = result[0];
    out->y = result[1];
    out->z = result[2] > 0 ? (result[2] < 1 ? result[2] : 1) : 0;
    out->u = std::isfinite(uv[0]) ? uv[0] : 0;
    out->v = std::isfinite(uv[1]) ? uv[1] : 0;
    std::memcpy(&out->colour, vertex + layout.colour, sizeof(out->colour));
    return true;
}

bool Device_LineCorners(const ScreenVertex& from, const ScreenVertex& to, ScreenVertex out[4])
{
    const double dx = to.x - from.x, dy = to.y - from.y;
    const bool alongX = std::fabs(dx) >= std::fabs(dy);
    const double length = alongX ? dx : dy;
    if (length == 0) return false;
    // Half a pixel back along the line: the pixel that holds the start is in.
    const double shift = length > 0 ? -0.5 : 0.5;
    const double moveX = alongX ? shift : shift * dx / dy;
    const double moveY = alongX ? shift * dy / dx : shift;
    const double sideX = alongX ? 0 : 0.5, sideY = alongX ? 0.5 : 0;
    for (int32_t i = 0; i < 4; i++) {
        const double side = i < 2 ? -1 : 1;
        out[i] = i == 0 || i == 3 ? from : to;
        out[i].x += moveX + side * sideX;
        out[i].y += moveY + side * sideY;
    }
    return true;
}

void Device_PointCorners(const ScreenVertex& point, ScreenVertex out[4])
{
    for (int32_t i = 0; i < 4; i++) {
        out[i] = point;
        out[i].x += i == 0 || i == 3 ? -0.5 : 0.5;
        out[i].y += i < 2 ? -0.5 : 0.5;
    }
}

int32_t Device_PrimitiveCount(DevicePrimitive primitive, int32_t count)
{
    switch (primitive) {
        case DevicePrimitive::PointList:
            return count > 0 ? count : 0;
        case DevicePrimitive::LineList:
            return count > 0 ? count / 2 : 0;
        case DevicePrimitive::LineStrip:
            return count > 1 ? count - 1 : 0;
        case DevicePrimitive::TriangleList:
            return count > 0 ? count / 3 : 0;
        case DevicePrimitive::TriangleStrip:
        case DevicePrimitive::TriangleFan:
            return count > 2 ? count - 2 : 0;
    }
    return 0;
}

void Device_PrimitiveVertices(DevicePrimitive primitive, int32_t n, int32_t index[3])
{
    int32_t first = n;
    if (primitive == DevicePrimitive::LineList) first = n * 2;
    if (primitive == DevicePrimitive::TriangleList) first = n * 3;
    const bool fan = primitive == DevicePrimitive::TriangleFan;
    const bool turned = primitive == DevicePrimitive::TriangleStrip && (n & 1);
    index[0] = fan ? 0 : first;
    index[1] = turned ? first + 2 : first + 1;
    index[2] = turned ? first + 1 : first + 2;
}

DeviceCull Device_CullOf(uint32_t value)
{
    const auto cull = static_cast<DeviceCull>(value);
    const bool turns = cull == DeviceCull::Clockwise || cull == DeviceCull::CounterClockwise;
    return turns ? cull : DeviceCull::None;
}

void Device_DefaultStates(uint32_t render[STATE_COUNT],
                          uint32_t sampler[kDeviceStages][SAMPLER_COUNT])
{
    constexpr uint32_t kFillSolid = 3;
    const struct {
        int32_t state;
        uint32_t value;
    } kDefaults[] = {
        {STATE_FILL_MODE, kFillSolid},
        {STATE_SHADE_MODE, static_cast<uint32_t>(DeviceShade::Gouraud)},
        {STATE_Z_WRITE, 1},
        {STATE_SRC_BLEND, static_cast<uint32_t>(DeviceBlend::SrcAlpha)},
        {STATE_DEST_BLEND, static_cast<uint32_t>(DeviceBlend::InvSrcAlpha)},
        {STATE_CULL_MODE, static_cast<uint32_t>(DeviceCull::None)},
        {STATE_Z_FUNC, static_cast<uint32_t>(DeviceCompare::LessEqual)},
        {STATE_ALPHA_FUNC, static_cast<uint32_t>(DeviceCompare::Greater)},
        {STATE_ALPHA_BLEND, 1},
        {STATE_COLOUR_WRITE, 15},
        {STATE_STENCIL_FAIL, static_cast<uint32_t>(DeviceStencil::Keep)},
        {STATE_STENCIL_ZFAIL, static_cast<uint32_t>(DeviceStencil::Keep)},
        {STATE_STENCIL_PASS, static_cast<uint32_t>(DeviceStencil::Keep)},
        {STATE_STENCIL_FUNC, static_cast<uint32_t>(DeviceCompare::Always)},
        {STATE_STENCIL_MASK, 0xFFFFFFFF},
        {STATE_STENCIL_WRITE_MASK, 0xFFFFFFFF},
    };
    std::memset(render, 0, sizeof(uint32_t) * STATE_COUNT);
    for (const auto& row : kDefaults) render[row.state] = row.value;
    for (int32_t stage = 0; stage < kDeviceStages; stage++) {
        std::memset(sampler[stage], 0, sizeof(sampler[stage]));
        sampler[stage][SAMPLER_MAG] = sampler[stage][SAMPLER_MIN] = 1;
    }
}

uint32_t Device_From4444(uint32_t word)
{
    const auto nibble = [&](int32_t shift) { return ((word >> shift) & 15) * 17; };
    return nibble(0) | (nibble(4) << 8) | (nibble(8) << 16) | (nibble(12) << 24);
}
