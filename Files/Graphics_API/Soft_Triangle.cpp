// Triangles of any shape: clipping to what fixed point can hold, and the planes that
// colours and texels lie on.
//
// A pixel is covered when its centre lies inside; on an edge, when that edge is a
// top or a left one. The bounds of a row are worked out from whole numbers, so
// neighbours that share an edge cover each pixel once.

#include <algorithm>
#include <cmath>

#include "Files/Graphics_API/Soft_Rows.h"

namespace {

// Coordinates beyond this are clipped first; products of two differences then fit
// 64 bits with room for the steps.
constexpr double kGuard = kSoftMaxSize;
constexpr int32_t kMaxClipped = 8;

int64_t Along(int64_t step, int32_t distance)
{
    const int64_t whole = distance >> 8, part = distance & 255;
    return Soft_Plus(Soft_Times(step, whole), Soft_Times(step, part) >> 8);
}

SoftVertex ToFixedVertex(const SoftDraw& draw, const ScreenVertex& vertex)
{
    constexpr double kTexelLimit = 68719476736.0;  // 2 to the 36th: 1,048,576 texels
    SoftVertex fixed;
    fixed.x = static_cast<int32_t>(Soft_ToFixed(vertex.x, kSubpixel, kGuard * kSubpixel));
    fixed.y = static_cast<int32_t>(Soft_ToFixed(vertex.y, kSubpixel, kGuard * kSubpixel));
    fixed.u = Soft_ToFixed(vertex.u, draw.texWidth * 65536.0, kTexelLimit);
    fixed.v = Soft_ToFixed(vertex.v, draw.texHeight * 65536.0, kTexelLimit);
    fixed.z = 0;
    if (draw.depth.on)
        fixed.z = static_cast<int32_t>(Soft_ToFixed(vertex.z, 16777215.0, 16777215.0));
    fixed.colour = vertex.colour;
    return fixed;
}

// The triangle's three vertices with their doubled area, anchored at the topmost,
// leftmost one.
struct Setup {
    const SoftVertex* vertex[3];
    const SoftVertex* anchor;
    int64_t area;
};

SoftPlane MakePlane(const Setup& setup, int64_t a, int64_t b, int64_t c)
{
    const SoftVertex& v0 = *setup.vertex[0];
    const SoftVertex& v1 = *setup.vertex[1];
    const SoftVertex& v2 = *setup.vertex[2];
    const int64_t ab = b - a, ac = c - a;
    SoftPlane plane;
    plane.x = setup.anchor->x;
    plane.y = setup.anchor->y;
    const int64_t value = setup.anchor == &v0 ? a : (setup.anchor == &v1 ? b : c);
    plane.anchor = value * 65536;
    plane.stepX = 0;
    plane.stepY = 0;
    if (ab == 0 && ac == 0) return plane;
    plane.stepX = Soft_Slope(ab * (v2.y - v0.y) - ac * (v1.y - v0.y), setup.area);
    plane.stepY = Soft_Slope(ac * (v1.x - v0.x) - ab * (v2.x - v0.x), setup.area);
    return plane;
}

int64_t ChannelOf(uint32_t colour, int32_t c)
{
    return static_cast<int64_t>((colour >> (c * 8)) & 255) << 16;
}

// More than a texel for each pixel along a row or a column.
bool Shrinks(const SoftShading& shading)
{
    constexpr double kOneSquared = 18446744073709551616.0;  // a texel has 32 bits below
    const auto square = [](int64_t step) {
        return static_cast<double>(step) * static_cast<double>(step);
    };
    return square(shading.u.stepX) + square(shading.v.stepX) > kOneSquared * 1.000001 ||
           square(shading.u.stepY) + square(shading.v.stepY) > kOneSquared * 1.000001;
}

SoftShading MakeShading(SoftDraw& draw, const Setup& setup)
{
    const SoftVertex& a = *setup.vertex[0];
    const SoftVertex& b = *setup.vertex[1];
    const SoftVertex& c = *setup.vertex[2];
    SoftShading shading = {};
    shading.u = MakePlane(setup, a.u, b.u, c.u);
    shading.v = MakePlane(setup, a.v, b.v, c.v);
    shading.linear = draw.linear;
    if (draw.linear != draw.linearMin && Shrinks(shading)) shading.linear = draw.linearMin;
    const auto inside = [](int64_t value, int32_t size) {
        return value >= 0 && value <= static_cast<int64_t>(size) << 16;
    };
    shading.inside[0] =
        inside(a.u, draw.texWidth) && inside(b.u, draw.texWidth) && inside(c.u, draw.texWidth);
    shading.inside[1] =
        inside(a.v, draw.texHeight) && inside(b.v, draw.texHeight) && inside(c.v, draw.texHeight);
    shading.colour = a.colour;
    shading.oneColour = draw.flatShade || (a.colour == b.colour && a.colour == c.colour);
    if (!shading.oneColour) {
        for (int32_t i = 0; i < 4; i++)
            shading.channel[i] = MakePlane(setup, ChannelOf(a.colour, i), ChannelOf(b.colour, i),
                                           ChannelOf(c.colour, i));
    }
    if (draw.depth.on)
        draw.depth.plane =
            MakePlane(setup, static_cast<int64_t>(a.z) << 8, static_cast<int64_t>(b.z) << 8,
                      static_cast<int64_t>(c.z) << 8);
    return shading;
}

bool IsCulled(const SoftDraw& draw, int64_t area)
{
    // Rows grow downward, so a positive area turns clockwise on the screen.
    if (draw.cull == DeviceCull::Clockwise) return area > 0;
    return draw.cull == DeviceCull::CounterClockwise && area < 0;
}

int32_t FirstRow(int32_t y)
{
    return (y + kSubpixel / 2 - 1) >> 8;
}

void FixedTriangle(SoftDraw& draw, const SoftVertex& a, const SoftVertex& b, const SoftVertex& c)
{
    const int64_t area = static_cast<int64_t>(b.x - a.x) * (c.y - a.y) -
                         static_cast<int64_t>(c.x - a.x) * (b.y - a.y);
    if (area == 0 || IsCulled(draw, area)) return;
    const SoftVertex *top = &a, *middle = &b, *bottom = &c;
    const auto sort = [](const SoftVertex*& first, const SoftVertex*& second) {
        if (second->y < first->y || (second->y == first->y && second->x < first->x))
            std::swap(first, second);
    };
    sort(top, middle);
    sort(middle, bottom);
    sort(top, middle);
    const int32_t first = FirstRow(top->y), last = FirstRow(bottom->y);
    if (last <= draw.top || first >= draw.bottom || first == last) return;
    const Setup setup = {{&a, &b, &c}, top, area};
    const SoftShading shading = MakeShading(draw, setup);
    // The middle vertex lies left of the long side, or right of it.
    const int64_t dx = bottom->x - top->x, dy = bottom->y - top->y;
    const bool bendsLeft = dx * (middle->y - top->y) > (middle->x - top->x) * dy;
    Soft_FillShape(draw, shading,
                   {{top, bottom},
                    {top, middle},
                    {middle, bottom},
                    bendsLeft,
                    first,
                    FirstRow(middle->y),
                    last});
}

uint32_t MixColours(uint32_t a, uint32_t b, double t)
{
    uint32_t result = 0;
    for (int32_t shift = 0; shift < 32; shift += 8) {
        const double from = (a >> shift) & 255, to = (b >> shift) & 255;
        result |= static_cast<uint32_t>(from + (to - from) * t + 0.5) << shift;
    }
    return result;
}

ScreenVertex MixVertices(const ScreenVertex& a, const ScreenVertex& b, double t)
{
    ScreenVertex mixed;
    mixed.x = a.x + (b.x - a.x) * t;
    mixed.y = a.y + (b.y - a.y) * t;
    mixed.z = a.z + (b.z - a.z) * t;
    mixed.u = a.u + (b.u - a.u) * t;
    mixed.v = a.v + (b.v - a.v) * t;
    mixed.colour = MixColours(a.colour, b.colour, t);
    return mixed;
}

// Cuts the polygon at one side of the guard square: sides 0 and 1 are -x and +x.
int32_t ClipSide(const ScreenVertex* in, int32_t count, int32_t side, ScreenVertex* out)
{
    const double sign = side & 1 ? 1 : -1;
    const auto inside = [&](const ScreenVertex& v) {
        return kGuard - sign * (side < 2 ? v.x : v.y);
    };
    int32_t made = 0;
    for (int32_t i = 0; i < count && made + 2 <= kMaxClipped; i++) {
        const ScreenVertex &from = in[i], &to = in[(i + 1) % count];
        const double a = inside(from), b = inside(to);
        if (a >= 0) out[made++] = from;
        if ((a >= 0) != (b >= 0)) out[made++] = MixVertices(from, to, a / (a - b));
    }
    return made;
}

// All corners lie on the far side of one edge of what may be touched.
bool IsBeyond(const SoftDraw& draw, const ScreenVertex corner[4])
{
    bool left = true, right = true, above = true, below = true;
    for (int32_t i = 0; i < 4; i++) {
        left = left && corner[i].x < draw.left;
        right = right && corner[i].x > draw.right;
        above = above && corner[i].y < draw.top;
        below = below && corner[i].y > draw.bottom;
    }
    return left || right || above || below;
}

bool InGuard(const ScreenVertex& v)
{
    return std::fabs(v.x) <= kGuard && std::fabs(v.y) <= kGuard;
}

}  // namespace

int64_t Soft_Slope(int64_t difference, int64_t length)
{
    constexpr double kLimit = 140737488355328.0;  // 2 to the 47th
    const double slope = static_cast<double>(difference) / static_cast<double>(length);
    return Soft_ToFixed(slope, 16777216.0, kLimit);
}

int64_t Soft_PlaneAt(const SoftPlane& plane, int32_t x, int32_t y)
{
    const int32_t awayX = x * kSubpixel + kSubpixel / 2 - plane.x;
    const int32_t awayY = y * kSubpixel + kSubpixel / 2 - plane.y;
    return Soft_Plus(Soft_Plus(plane.anchor, Along(plane.stepX, awayX)), Along(plane.stepY, awayY));
}

int32_t Soft_Address(int64_t texel, int32_t size, bool wrap)
{
    if (texel >= 0 && texel < size) return static_cast<int32_t>(texel);
    if (!wrap) return texel < 0 ? 0 : size - 1;
    const int64_t rest = texel % size;
    return static_cast<int32_t>(rest < 0 ? rest + size : rest);
}

void Soft_Quad(SoftDraw& draw, const ScreenVertex corner[4], const int32_t (&order)[6])
{
    if (IsBeyond(draw, corner)) return;
    bool inGuard = true;
    for (int32_t i = 0; i < 4; i++) inGuard = inGuard && InGuard(corner[i]);
    if (!inGuard) {
        for (int32_t i = 0; i < 6; i += 3)
            Soft_Triangle(draw, corner[order[i]], corner[order[i + 1]], corner[order[i + 2]]);
        return;
    }
    SoftVertex fixed[4];
    for (int32_t i = 0; i < 4; i++) fixed[i] = ToFixedVertex(draw, corner[i]);
    for (int32_t i = 0; i < 6; i += 3)
        FixedTriangle(draw, fixed[order[i]], fixed[order[i + 1]], fixed[order[i + 2]]);
}

void Soft_Triangle(SoftDraw& draw, const ScreenVertex& a, const ScreenVertex& b,
                   const ScreenVertex& c)
{
    if (InGuard(a) && InGuard(b) && InGuard(c)) {
        FixedTriangle(draw, ToFixedVertex(draw, a), ToFixedVertex(draw, b), ToFixedVertex(draw, c));
        return;
    }
    ScreenVertex polygon[2][kMaxClipped] = {{a, b, c}, {}};
    int32_t count = 3, now = 0;
    for (int32_t side = 0; side < 4 && count > 0; side++, now ^= 1)
        count = ClipSide(polygon[now], count, side, polygon[now ^ 1]);
    const ScreenVertex* clipped = polygon[now];
    for (int32_t i = 2; i < count; i++)
        FixedTriangle(draw, ToFixedVertex(draw, clipped[0]), ToFixedVertex(draw, clipped[i - 1]),
                      ToFixedVertex(draw, clipped[i]));
}
