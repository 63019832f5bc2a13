// The rows of a triangle: where each begins and ends, and the colours of its pixels.
//
// A side's first pixel is carried from row to row with its remainder, after
// J. Bresenham, "Algorithm for computer control of a digital plotter" (1965), so it is
// as exact as the division that it stands for.

#include <algorithm>
#include <cmath>

#include "Files/Graphics_API/Soft_Rows.h"

namespace {

// Runs up to here are worked on pixel by pixel, from texel to target in one go.
constexpr int32_t kShortRun = 8;

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

    int64_t U(int32_t i) const { return Soft_Plus(u, Soft_Times(stepU, i)); }
    int64_t V(int32_t i) const { return Soft_Plus(v, Soft_Times(stepV, i)); }
};

// All texels that the filter takes at this pixel lie inside the texture.
inline bool IsInside(const SoftDraw& draw, const Run& run, int32_t i)
{
    const int64_t x = Soft_TapOf(run.U(i)) >> 8, y = Soft_TapOf(run.V(i)) >> 8;
    return x >= 0 && y >= 0 && x + 1 < draw.texWidth && y + 1 < draw.texHeight;
}

SoftWalk WalkFrom(const SoftDraw& draw, const Run& run, int32_t i)
{
    return {draw.texels, draw.texPitch, Soft_WalkPlace(run.U(i)), Soft_WalkPlace(run.V(i)),
            run.stepU,   run.stepV};
}

void FetchLinear(const SoftDraw& draw, const Run& run, uint32_t* out, int32_t count)
{
    // The line is inside from its first to its last inner pixel.
    int32_t from = 0, to = count;
    for (; from < to && !IsInside(draw, run, from); from++)
        out[from] = LinearTexel(draw, run.U(from), run.V(from));
    for (; to > from && !IsInside(draw, run, to - 1); to--)
        out[to - 1] = LinearTexel(draw, run.U(to - 1), run.V(to - 1));
    if (from < to) draw.kernels->BilinearWalk(out + from, WalkFrom(draw, run, from), to - from);
}

void FetchColours(const SoftShading& shading, int32_t x, int32_t y, uint32_t* out, int32_t count)
{
    constexpr int64_t kHalf = int64_t{1} << 31;
    for (int32_t i = 0; i < count; i++) out[i] = 0;
    for (int32_t c = 0; c < 4; c++) {
        const SoftPlane& plane = shading.channel[c];
        int64_t value = Soft_Plus(Soft_PlaneAt(plane, x, y), kHalf);
        for (int32_t i = 0; i < count; i++) {
            const int64_t channel = std::clamp<int64_t>(value >> 32, 0, 255);
            out[i] |= static_cast<uint32_t>(channel) << (c * 8);
            value = Soft_Plus(value, plane.stepX);
        }
    }
}

// A side's first pixel in a row: the first whose centre is not left of it.
class SideWalk {
public:
    SideWalk(const SoftSide& side, int32_t row)
    {
        const int64_t dx = side.bottom->x - side.top->x;
        scale_ = static_cast<int64_t>(side.bottom->y - side.top->y) * kSubpixel;
        const int64_t centre = static_cast<int64_t>(row) * kSubpixel + kSubpixel / 2;
        const int64_t at =
            (side.top->x - kSubpixel / 2) * (scale_ / kSubpixel) + (centre - side.top->y) * dx;
        step_ = Floor(dx * kSubpixel);
        part_ = dx * kSubpixel - step_ * scale_;
        pixel_ = -Floor(-at);
        ahead_ = pixel_ * scale_ - at;
    }

    int32_t Pixel() const { return static_cast<int32_t>(pixel_); }

    void Next()
    {
        pixel_ += step_;
        ahead_ -= part_;
        if (ahead_ >= 0) return;
        ahead_ += scale_;
        pixel_++;
    }

private:
    int64_t Floor(int64_t value) const
    {
        const int64_t cut = value / scale_;
        return cut * scale_ > value ? cut - 1 : cut;
    }

    // ahead: how far the pixel's centre lies beyond the side, 0 to scale - 1.
    int64_t pixel_, ahead_, step_, part_, scale_;
};

// The pixels of a row at which something of the texture may be seen, between the first
// and the last column, or row, of texels that are not clear. Never too narrow: it has a
// hundredth of a pixel to spare.
class Band {
public:
    // value: the plane's, at pixel 0 of the row. from, to: texels; all others are clear.
    // True when the filter stays within a texel of them.
    bool Set(const SoftPlane& plane, int64_t value, int32_t from, int32_t to)
    {
        // With fewer bits nothing of these sums wraps, and doubles hold them well enough.
        constexpr int64_t kSteep = int64_t{1} << 45;
        constexpr int64_t kQuick = int64_t{32} << 32;  // the spare is a third of a texel
        constexpr double kFar = 1e8, kSpare = 0.01, kReach = 0.51, kTexel = 4294967296.0;
        if (std::abs(plane.stepX) > kSteep || std::abs(plane.stepY) > kSteep) return false;
        const auto start = static_cast<double>(value);
        const double perTexel = 1 / static_cast<double>(plane.stepX);
        // The filter reaches half a texel beyond the two, and what rounding adds.
        const double a = ((from - kReach) * kTexel - start) * perTexel;
        const double b = ((to + kReach) * kTexel - start) * perTexel;
        const double step = -static_cast<double>(plane.stepY) * perTexel;
        // Also false for what is no number: a plane that does not change along the row.
        if (!(std::fabs(a) < kFar && std::fabs(b) < kFar && std::fabs(step) < kFar)) return false;
        // Cutting off the fraction rounds the start up and the end down to whole pixels.
        first_ = std::min(a, b) + 1 - kSpare;
        last_ = std::max(a, b) + 1 + kSpare;
        step_ = step;
        return std::abs(plane.stepX) < kQuick;
    }

    void Next()
    {
        first_ += step_;
        last_ += step_;
    }

    double First() const { return first_; }
    double Last() const { return last_; }

private:
    double first_ = -1e9, last_ = 1e9, step_ = 0;
};

class Rows {
public:
    Rows(const SoftDraw& draw, const SoftShading& shading, int32_t y)
        : draw_(draw),
          shading_(shading),
          y_(y),
          u_(Soft_PlaneAt(shading.u, 0, y)),
          v_(Soft_PlaneAt(shading.v, 0, y)),
          direct_(draw.texels && shading.linear && shading.oneColour && draw.plain &&
                  draw.blend == draw.kernels->Blend[static_cast<int32_t>(SoftBlend::Normal)]),
          tint_(draw.modulate ? shading.colour : 0xFFFFFFFF)
    {
        const SoftDraw::Seen& seen = draw.seen;
        const DeviceRect& within = seen.within;
        const bool columns = seen.columns && shading.inside[0];
        const bool rows = seen.rows && shading.inside[1];
        banded_ = columns || rows;
        const bool close = columns && bands_[0].Set(shading.u, u_, within.left, within.right);
        inner_ = rows && bands_[1].Set(shading.v, v_, within.top, within.bottom) && close &&
                 within.left >= 2 && within.right <= draw.texWidth - 2 && within.top >= 2 &&
                 within.bottom <= draw.texHeight - 2;
    }

    // Works on copies of what moves on from row to row: the calls can't touch those.
    void Fill(SideWalk* leftSide, SideWalk* rightSide, int32_t to)
    {
        SideWalk left = *leftSide, right = *rightSide;
        Band columns = bands_[0], rows = bands_[1];
        for (; y_ < to; y_++, Next()) {
            int32_t x = std::max(left.Pixel(), draw_.left);
            int32_t end = std::min(right.Pixel(), draw_.right);
            left.Next();
            right.Next();
            if (banded_) {
                const double first = std::max(columns.First(), rows.First());
                const double last = std::min(columns.Last(), rows.Last());
                columns.Next();
                rows.Next();
                if (last <= x || first >= end) continue;
                if (first > x) x = static_cast<int32_t>(first);
                if (last < end) end = static_cast<int32_t>(last);
            }
            if (x < end) Draw(x, end);
        }
        *leftSide = left;
        *rightSide = right;
        bands_[0] = columns;
        bands_[1] = rows;
    }

private:
    void Next()
    {
        u_ = Soft_Plus(u_, shading_.u.stepY);
        v_ = Soft_Plus(v_, shading_.v.stepY);
    }

    Run RunFrom(int32_t x) const
    {
        return {Soft_Plus(u_, Soft_Times(shading_.u.stepX, x)),
                Soft_Plus(v_, Soft_Times(shading_.v.stepX, x)), shading_.u.stepX, shading_.v.stepX};
    }

    void Draw(int32_t x, int32_t end)
    {
        if (direct_ && end - x <= kShortRun) {
            const Run run = RunFrom(x);
            if (inner_ || (IsInside(draw_, run, 0) && IsInside(draw_, run, end - x - 1))) {
                uint32_t* dest = draw_.pixels + static_cast<int64_t>(y_) * draw_.pitch + x;
                draw_.kernels->NormalWalk(dest, WalkFrom(draw_, run, 0), tint_, end - x);
                return;
            }
        }
        while (x < end) {
            const int32_t count = std::min(end - x, kSoftRun);
            Shade(x, count);
            Soft_WriteRun(draw_, x, y_, g_Soft->scratch.source, count);
            x += count;
        }
    }

    void Fetch(int32_t x, uint32_t* out, int32_t count) const
    {
        const Run run = RunFrom(x);
        if (shading_.linear) {
            FetchLinear(draw_, run, out, count);
            return;
        }
        for (int32_t i = 0; i < count; i++) out[i] = PointTexel(draw_, run.U(i), run.V(i));
    }

    // The colours of one run, into the scratch source.
    void Shade(int32_t x, int32_t count) const
    {
        SoftScratch& scratch = g_Soft->scratch;
        const SoftKernels& kernels = *draw_.kernels;
        const bool coloured = draw_.modulate || !draw_.texels;
        if (coloured && !shading_.oneColour) FetchColours(shading_, x, y_, scratch.colours, count);
        if (!draw_.texels) {
            if (shading_.oneColour)
                kernels.Fill(scratch.source, shading_.colour, count);
            else
                std::copy_n(scratch.colours, count, scratch.source);
            return;
        }
        if (draw_.texWidth == 1 && draw_.texHeight == 1)
            kernels.Fill(scratch.source, draw_.texels[0], count);
        else
            Fetch(x, scratch.source, count);
        if (!coloured) return;
        if (!shading_.oneColour)
            kernels.ModulateRow(scratch.source, scratch.source, scratch.colours, count);
        else if (shading_.colour != 0xFFFFFFFF)
            kernels.Modulate(scratch.source, scratch.source, shading_.colour, count);
    }

    const SoftDraw& draw_;
    const SoftShading& shading_;
    int32_t y_;
    int64_t u_, v_;  // at pixel 0 of the row
    bool direct_;    // short runs may go from texels to the target in one go
    uint32_t tint_;
    bool banded_;
    bool inner_;  // what the bands leave needs no texel beyond the borders
    Band bands_[2];
};

}  // namespace

void Soft_FillShape(const SoftDraw& draw, const SoftShading& shading, const SoftShape& shape)
{
    const int32_t from = std::max(shape.from, draw.top), to = std::min(shape.to, draw.bottom);
    const int32_t turn = std::clamp(shape.turn, from, to);
    Rows rows(draw, shading, from);
    SideWalk whole(shape.whole, from);
    const auto fill = [&](const SoftSide& side, int32_t start, int32_t end) {
        if (start == end) return;
        SideWalk across(side, start);
        rows.Fill(shape.bendsLeft ? &across : &whole, shape.bendsLeft ? &whole : &across, end);
    };
    fill(shape.upper, from, turn);
    fill(shape.lower, turn, to);
}
