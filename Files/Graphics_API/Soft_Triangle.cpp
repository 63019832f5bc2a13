// Triangles of any shape: clipping to what fixed point can hold, the exact coverage
// of each row, and shading from planes.
//
// A pixel is covered when its centre lies inside; on an edge, when that edge is a
// top or a left one. The bounds of a row are worked out from whole numbers, so
// neighbours that share an edge cover each pixel once.

#include <algorithm>
#include <cmath>

#include "Files/Graphics_API/Soft_State.h"

namespace {

// Coordinates beyond this are clipped first; products of two differences then fit
// 64 bits with room for the steps.
constexpr double kGuard = kSoftMaxSize;
constexpr int32_t kMaxClipped = 8;

struct Shading {
    SoftPlane u, v, channel[4];
    bool oneColour, linear;
    uint32_t colour;
};

inline int64_t DivideUp(int64_t value, int64_t by)
{
    return value >= 0 ? (value + by - 1) / by : -(-value / by);
}

// Products of extreme slivers may pass 64 bits; they wrap, the same everywhere.
inline int64_t Multiply(int64_t a, int64_t b)
{
    return static_cast<int64_t>(static_cast<uint64_t>(a) * static_cast<uint64_t>(b));
}

inline int64_t Add(int64_t a, int64_t b)
{
    return static_cast<int64_t>(static_cast<uint64_t>(a) + static_cast<uint64_t>(b));
}

inline int64_t Along(int64_t step, int32_t distance)
{
    const int64_t whole = distance >> 8, part = distance & 255;
    return Add(Multiply(step, whole), Multiply(step, part) >> 8);
}

SoftVertex ToFixedVertex(const SoftDraw& draw, const ScreenVertex& vertex)
{
    constexpr double kTexelLimit = 68719476736.0;  // 2 to the 36th: 1,048,576 texels
    SoftVertex fixed;
    fixed.x = static_cast<int32_t>(Soft_ToFixed(vertex.x, kSubpixel, kGuard * kSubpixel));
    fixed.y = static_cast<int32_t>(Soft_ToFixed(vertex.y, kSubpixel, kGuard * kSubpixel));
    fixed.u = Soft_ToFixed(vertex.u, draw.texWidth * 65536.0, kTexelLimit);
    fixed.v = Soft_ToFixed(vertex.v, draw.texHeight * 65536.0, kTexelLimit);
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
bool Shrinks(const Shading& shading)
{
    constexpr double kOneSquared = 18446744073709551616.0;  // a texel has 32 bits below
    const auto square = [](int64_t step) {
        return static_cast<double>(step) * static_cast<double>(step);
    };
    return square(shading.u.stepX) + square(shading.v.stepX) > kOneSquared * 1.000001 ||
           square(shading.u.stepY) + square(shading.v.stepY) > kOneSquared * 1.000001;
}

Shading MakeShading(SoftDraw& draw, const Setup& setup)
{
    const SoftVertex& a = *setup.vertex[0];
    const SoftVertex& b = *setup.vertex[1];
    const SoftVertex& c = *setup.vertex[2];
    Shading shading = {};
    shading.u = MakePlane(setup, a.u, b.u, c.u);
    shading.v = MakePlane(setup, a.v, b.v, c.v);
    shading.linear = draw.linear;
    if (draw.linear != draw.linearMin && Shrinks(shading)) shading.linear = draw.linearMin;
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

uint32_t PointTexel(const SoftDraw& draw, int64_t u, int64_t v)
{
    const int32_t x = Soft_Address(Soft_TexelOf(u), draw.texWidth, draw.wrapU);
    const int32_t y = Soft_Address(Soft_TexelOf(v), draw.texHeight, draw.wrapV);
    return draw.texels[static_cast<int64_t>(y) * draw.texPitch + x];
}

uint32_t LinearTexel(const SoftDraw& draw, int64_t u, int64_t v)
{
    const int64_t tapX = Soft_TapOf(u), tapY = Soft_TapOf(v);
    const int64_t left = tapX >> 8, top = tapY >> 8;
    const int32_t x0 = Soft_Address(left, draw.texWidth, draw.wrapU);
    const int32_t x1 = Soft_Address(left + 1, draw.texWidth, draw.wrapU);
    const int32_t y0 = Soft_Address(top, draw.texHeight, draw.wrapV);
    const int32_t y1 = Soft_Address(top + 1, draw.texHeight, draw.wrapV);
    const uint32_t* above = draw.texels + static_cast<int64_t>(y0) * draw.texPitch;
    const uint32_t* below = draw.texels + static_cast<int64_t>(y1) * draw.texPitch;
    const uint32_t texels[4] = {above[x0], above[x1], below[x0], below[x1]};
    return draw.kernels->Bilinear(texels, static_cast<int32_t>(tapX & 255),
                                  static_cast<int32_t>(tapY & 255));
}

// A straight run over the texture, one texel for each pixel from a point of it.
struct Run {
    int64_t u, v, stepU, stepV;

    int64_t U(int32_t i) const { return Add(u, Multiply(stepU, i)); }
    int64_t V(int32_t i) const { return Add(v, Multiply(stepV, i)); }
};

// All texels that the filter takes at this pixel lie inside the texture.
bool IsInside(const SoftDraw& draw, const Run& run, int32_t i)
{
    const int64_t x = Soft_TapOf(run.U(i)) >> 8, y = Soft_TapOf(run.V(i)) >> 8;
    return x >= 0 && y >= 0 && x + 1 < draw.texWidth && y + 1 < draw.texHeight;
}

void FetchLinear(const SoftDraw& draw, const Run& run, uint32_t* out, int32_t count)
{
    // The line is inside from its first to its last inner pixel.
    int32_t from = 0, to = count;
    for (; from < to && !IsInside(draw, run, from); from++)
        out[from] = LinearTexel(draw, run.U(from), run.V(from));
    for (; to > from && !IsInside(draw, run, to - 1); to--)
        out[to - 1] = LinearTexel(draw, run.U(to - 1), run.V(to - 1));
    if (from == to) return;
    const SoftWalk walk = {
        draw.texels, draw.texPitch, Soft_WalkPlace(run.U(from)), Soft_WalkPlace(run.V(from)),
        run.stepU,   run.stepV};
    draw.kernels->BilinearWalk(out + from, walk, to - from);
}

void FetchTexels(const SoftDraw& draw, const Shading& shading, int32_t x, int32_t y, uint32_t* out,
                 int32_t count)
{
    const Run run = {Soft_PlaneAt(shading.u, x, y), Soft_PlaneAt(shading.v, x, y), shading.u.stepX,
                     shading.v.stepX};
    if (shading.linear) {
        FetchLinear(draw, run, out, count);
        return;
    }
    for (int32_t i = 0; i < count; i++) out[i] = PointTexel(draw, run.U(i), run.V(i));
}

void FetchColours(const Shading& shading, int32_t x, int32_t y, uint32_t* out, int32_t count)
{
    constexpr int64_t kHalf = int64_t{1} << 31;
    for (int32_t i = 0; i < count; i++) out[i] = 0;
    for (int32_t c = 0; c < 4; c++) {
        const SoftPlane& plane = shading.channel[c];
        int64_t value = Add(Soft_PlaneAt(plane, x, y), kHalf);
        for (int32_t i = 0; i < count; i++) {
            const int64_t channel = std::clamp<int64_t>(value >> 32, 0, 255);
            out[i] |= static_cast<uint32_t>(channel) << (c * 8);
            value = Add(value, plane.stepX);
        }
    }
}

// The colours of one run, into the scratch source.
void ShadeRun(const SoftDraw& draw, const Shading& shading, int32_t x, int32_t y, int32_t count)
{
    SoftScratch& scratch = g_Soft->scratch;
    const bool coloured = draw.modulate || !draw.texels;
    if (coloured && !shading.oneColour) FetchColours(shading, x, y, scratch.colours, count);
    if (!draw.texels) {
        if (shading.oneColour)
            draw.kernels->Fill(scratch.source, shading.colour, count);
        else
            std::copy_n(scratch.colours, count, scratch.source);
        return;
    }
    if (draw.texWidth == 1 && draw.texHeight == 1)
        draw.kernels->Fill(scratch.source, draw.texels[0], count);
    else
        FetchTexels(draw, shading, x, y, scratch.source, count);
    if (!coloured) return;
    if (!shading.oneColour)
        draw.kernels->ModulateRow(scratch.source, scratch.source, scratch.colours, count);
    else if (shading.colour != 0xFFFFFFFF)
        draw.kernels->Modulate(scratch.source, scratch.source, shading.colour, count);
}

// One edge, going down.
struct Edge {
    int64_t x, y, dx, dy;

    Edge(const SoftVertex& top, const SoftVertex& bottom)
        : x(top.x), y(top.y), dx(bottom.x - top.x), dy(bottom.y - top.y)
    {
    }

    // First pixel whose centre is not left of the edge in the row.
    int32_t FirstPixel(int32_t row) const
    {
        const int64_t centre = static_cast<int64_t>(row) * kSubpixel + kSubpixel / 2;
        const int64_t at = (x - kSubpixel / 2) * dy + (centre - y) * dx;
        return static_cast<int32_t>(DivideUp(at, dy * kSubpixel));
    }
};

int32_t FirstRow(int32_t y)
{
    return static_cast<int32_t>(DivideUp(y - kSubpixel / 2, kSubpixel));
}

void FillRows(const SoftDraw& draw, const Shading& shading, const Edge& left, const Edge& right,
              int32_t from, int32_t to)
{
    from = std::max(from, draw.top);
    to = std::min(to, draw.bottom);
    for (int32_t y = from; y < to; y++) {
        int32_t x = std::max(left.FirstPixel(y), draw.left);
        const int32_t end = std::min(right.FirstPixel(y), draw.right);
        while (x < end) {
            const int32_t count = std::min(end - x, kSoftRun);
            ShadeRun(draw, shading, x, y, count);
            Soft_WriteRun(draw, x, y, g_Soft->scratch.source, count);
            x += count;
        }
    }
}

bool IsCulled(const SoftDraw& draw, int64_t area)
{
    // Rows grow downward, so a positive area turns clockwise on the screen.
    if (draw.cull == DeviceCull::Clockwise) return area > 0;
    return draw.cull == DeviceCull::CounterClockwise && area < 0;
}

void FixedTriangle(SoftDraw& draw, const SoftVertex& a, const SoftVertex& b, const SoftVertex& c)
{
    const int64_t area = static_cast<int64_t>(b.x - a.x) * (c.y - a.y) -
                         static_cast<int64_t>(c.x - a.x) * (b.y - a.y);
    if (area == 0 || IsCulled(draw, area)) return;
    const SoftVertex* sorted[3] = {&a, &b, &c};
    std::sort(sorted, sorted + 3, [](const SoftVertex* p, const SoftVertex* q) {
        return p->y != q->y ? p->y < q->y : p->x < q->x;
    });
    const SoftVertex &top = *sorted[0], &middle = *sorted[1], &bottom = *sorted[2];
    const int32_t first = FirstRow(top.y), turn = FirstRow(middle.y), last = FirstRow(bottom.y);
    if (last <= draw.top || first >= draw.bottom || first == last) return;
    const Setup setup = {{&a, &b, &c}, &top, area};
    const Shading shading = MakeShading(draw, setup);
    const Edge whole(top, bottom), upper(top, middle), lower(middle, bottom);
    // The middle vertex lies left of the long edge, or right of it.
    const bool left =
        whole.dx * (middle.y - top.y) > static_cast<int64_t>(middle.x - top.x) * whole.dy;
    if (turn > first)
        FillRows(draw, shading, left ? upper : whole, left ? whole : upper, first, turn);
    if (last > turn)
        FillRows(draw, shading, left ? lower : whole, left ? whole : lower, turn, last);
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

bool InGuard(const ScreenVertex& v)
{
    return std::fabs(v.x) <= kGuard && std::fabs(v.y) <= kGuard;
}

}  // namespace

int64_t Soft_ToFixed(double value, double scale, double limit)
{
    const double scaled = std::floor(value * scale + 0.5);
    if (!(scaled > -limit)) return static_cast<int64_t>(-limit);
    return static_cast<int64_t>(scaled < limit ? scaled : limit);
}

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
    return Add(Add(plane.anchor, Along(plane.stepX, awayX)), Along(plane.stepY, awayY));
}

int32_t Soft_Address(int64_t texel, int32_t size, bool wrap)
{
    if (texel >= 0 && texel < size) return static_cast<int32_t>(texel);
    if (!wrap) return texel < 0 ? 0 : size - 1;
    const int64_t rest = texel % size;
    return static_cast<int32_t>(rest < 0 ? rest + size : rest);
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
