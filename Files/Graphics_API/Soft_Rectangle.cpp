// Upright rectangles with one colour: nearly all that a game draws. Coverage and
// texel coordinates are those of the two triangles; rows and columns are worked out
// once each.
#include <algorithm>
#include <cstring>
#include <utility>

#include "Files/Graphics_API/Soft_State.h"

namespace {

int32_t FirstPixel(int32_t at)
{
    return (at + kSubpixel / 2 - 1) >> 8;
}

// The texels along one axis.
struct Axis {
    SoftPlane plane;
    int32_t size;
    bool wrap;

    int64_t At(int32_t pixel) const { return Soft_PlaneAt(plane, pixel, 0); }
};

Axis MakeAxis(int64_t from, int64_t to, int32_t start, int32_t end, int32_t size, bool wrap)
{
    Axis axis = {};
    axis.plane.anchor = from * 65536;
    axis.plane.x = start;
    axis.plane.y = kSubpixel / 2;
    if (to != from) axis.plane.stepX = Soft_Slope(to - from, end - start);
    axis.size = size;
    axis.wrap = wrap;
    return axis;
}

struct Job {
    const SoftDraw& draw;
    Axis columns, rows;
    bool linear, tinted;
    uint32_t colour;
    int32_t left, top, right, bottom;
};

// The columns of [left, left + count) are texels side by side, from *first on.
bool SideBySide(const Job& job, int32_t left, int32_t count, int32_t* first)
{
    int64_t start, end;
    if (job.linear) {
        start = Soft_TapOf(job.columns.At(left));
        end = Soft_TapOf(job.columns.At(left + count - 1));
        if ((start & 255) || (end & 255)) return false;
        start >>= 8;
        end >>= 8;
    } else {
        if (job.columns.plane.stepX != int64_t{1} << 32) return false;
        start = Soft_TexelOf(job.columns.At(left));
        end = start + count - 1;
    }
    *first = static_cast<int32_t>(start);
    return end - start == count - 1 && start >= 0 && end < job.columns.size;
}

// True when every pair stands side by side, so that one load fetches both.
bool MakeColumns(const Job& job, int32_t left, int32_t count, SoftColumns& out)
{
    const Axis& axis = job.columns;
    bool beside = axis.size > 1;
    int64_t at = axis.At(left);
    for (int32_t i = 0; i < count; i++, at += axis.plane.stepX) {
        const int64_t tap = Soft_TapOf(at);
        auto weight = static_cast<int32_t>(tap & 255);
        int32_t first = Soft_Address(tap >> 8, axis.size, axis.wrap);
        int32_t second = Soft_Address((tap >> 8) + 1, axis.size, axis.wrap);
        if (first == second && axis.size > 1) {
            const bool atEnd = first == axis.size - 1;
            first = atEnd ? axis.size - 2 : first;
            second = first + 1;
            weight = atEnd ? 256 : 0;
        }
        beside = beside && second == first + 1;
        out.Set(i, first, second, weight);
    }
    out.Complete(count, axis.size);
    return beside;
}

const uint32_t* TexelRow(const SoftDraw& draw, int32_t row)
{
    return draw.texels + static_cast<int64_t>(row) * draw.texPitch;
}

uint32_t* TargetRow(const SoftDraw& draw, int32_t x, int32_t y)
{
    return draw.pixels + static_cast<int64_t>(y) * draw.pitch + x;
}

// Tints a row of texels where it is needed and sends it on its way.
void Finish(const Job& job, int32_t left, int32_t y, const uint32_t* texels, int32_t count)
{
    uint32_t* source = g_Soft->scratch.source;
    if (job.tinted) {
        job.draw.kernels->Modulate(source, texels, job.colour, count);
        texels = source;
    }
    if (texels != TargetRow(job.draw, left, y)) Soft_WriteRun(job.draw, left, y, texels, count);
}

// Where a filtered row is to be made: in the target itself if it goes there unchanged.
uint32_t* RoomForRow(const Job& job, int32_t left, int32_t y)
{
    const auto copy = job.draw.kernels->Blend[static_cast<int32_t>(SoftBlend::Copy)];
    if (job.draw.plain && job.draw.blend == copy && !job.tinted)
        return TargetRow(job.draw, left, y);
    return g_Soft->scratch.source;
}

// Rows of texels that go to rows of pixels as they are; false where a row does not.
bool BlockStrip(const Job& job, int32_t left, int32_t firstColumn, int32_t count)
{
    const Axis& axis = job.rows;
    const int64_t start = axis.At(job.top), end = axis.At(job.bottom - 1);
    if (axis.plane.stepX != int64_t{1} << 32) return false;
    if (job.linear && ((Soft_TapOf(start) & 255) || (Soft_TapOf(end) & 255))) return false;
    const int64_t first = job.linear ? Soft_TapOf(start) >> 8 : Soft_TexelOf(start);
    const int64_t last = first + job.bottom - 1 - job.top;
    if (first < 0 || last >= axis.size) return false;
    const uint32_t* texels = TexelRow(job.draw, static_cast<int32_t>(first)) + firstColumn;
    for (int32_t y = job.top; y < job.bottom; y++, texels += job.draw.texPitch)
        Finish(job, left, y, texels, count);
    return true;
}

void OneColourStrip(const Job& job, int32_t left, int32_t count)
{
    uint32_t* source = g_Soft->scratch.source;
    uint32_t texel = job.draw.texels ? job.draw.texels[0] : job.colour;
    if (job.draw.texels && job.tinted) job.draw.kernels->Modulate(&texel, &texel, job.colour, 1);
    job.draw.kernels->Fill(source, texel, count);
    for (int32_t y = job.top; y < job.bottom; y++) Soft_WriteRun(job.draw, left, y, source, count);
}

void PointStrip(const Job& job, int32_t left, int32_t count)
{
    SoftScratch& scratch = g_Soft->scratch;
    int32_t first = 0;
    const bool direct = SideBySide(job, left, count, &first);
    if (direct && BlockStrip(job, left, first, count)) return;
    int32_t* columns = scratch.columns.first;
    for (int32_t i = 0; i < count && !direct; i++)
        columns[i] = Soft_Address(Soft_TexelOf(job.columns.At(left + i)), job.columns.size,
                                  job.columns.wrap);
    for (int32_t y = job.top; y < job.bottom; y++) {
        const int32_t row =
            Soft_Address(Soft_TexelOf(job.rows.At(y)), job.rows.size, job.rows.wrap);
        const uint32_t* texels = TexelRow(job.draw, row);
        if (direct) {
            Finish(job, left, y, texels + first, count);
            continue;
        }
        for (int32_t i = 0; i < count; i++) scratch.source[i] = texels[columns[i]];
        Finish(job, left, y, scratch.source, count);
    }
}

// Two rows of stretched columns, kept while they are needed.
class StretchedRows {
public:
    StretchedRows(const Job& job, int32_t left, int32_t count) : job_(job), count_(count)
    {
        beside_ = MakeColumns(job, left, count, g_Soft->scratch.columns);
    }

    // The finished pixels between two rows of texels.
    void Make(uint32_t* out, int32_t above, int32_t below, int32_t fraction)
    {
        const SoftKernels& kernels = *job_.draw.kernels;
        const bool shrinks = std::abs(job_.rows.plane.stepX) > int64_t{1} << 32;
        if (shrinks && beside_ && kernels.StretchBoth) {
            kernels.StretchBoth(out, TexelRow(job_.draw, above), TexelRow(job_.draw, below),
                                g_Soft->scratch.columns, fraction, count_);
            return;
        }
        const uint16_t* upper = Get(above, below);
        const uint16_t* lower = Get(below, above);
        kernels.StretchRows(out, upper, lower, fraction, count_);
    }

private:
    const uint16_t* Get(int32_t row, int32_t keep)
    {
        SoftScratch& scratch = g_Soft->scratch;
        for (int32_t i = 0; i < 2; i++)
            if (row_[i] == row) return scratch.rows[i];
        const int32_t free = row_[0] == keep ? 1 : 0;
        row_[free] = row;
        const SoftKernels& kernels = *job_.draw.kernels;
        const auto stretch = beside_ ? kernels.StretchColumns : kernels.StretchColumnsApart;
        stretch(scratch.rows[free], TexelRow(job_.draw, row), scratch.columns, count_);
        return scratch.rows[free];
    }

    const Job& job_;
    int32_t count_;
    bool beside_;
    int32_t row_[2] = {-1, -1};
};

// A picture at exactly twice its size: each pixel has a quarter of one neighbour.
class DoubledRows {
public:
    static bool Fits(const Job& job)
    {
        constexpr int64_t kHalf = int64_t{1} << 31;
        return job.columns.plane.stepX == kHalf && job.rows.plane.stepX == kHalf &&
               ((Soft_TapOf(job.columns.At(job.left)) & 127) == kQuarter) &&
               ((Soft_TapOf(job.rows.At(job.top)) & 127) == kQuarter);
    }

    DoubledRows(const Job& job, int32_t left, int32_t count) : job_(job), left_(left), count_(count)
    {
        while (before_ < count && !StartsPair(TapAt(before_))) before_++;
        if (before_ == count) return;
        first_ = static_cast<int32_t>(TapAt(before_) >> 8);
        pairs_ = std::min((count - before_) / 2, job.columns.size - 1 - first_);
    }

    // True when the rows y and y + 1 stand between the same two rows of texels.
    bool IsPair(int32_t y) const { return (Soft_TapOf(job_.rows.At(y)) & 255) == kQuarter; }

    // Fills both rows between texels; y is either of them.
    void Make(int32_t y, uint32_t* upper, uint32_t* lower) const
    {
        const Axis& rows = job_.rows;
        const int64_t tap = Soft_TapOf(rows.At(y));
        const uint32_t* above = TexelRow(job_.draw, Soft_Address(tap >> 8, rows.size, rows.wrap));
        const uint32_t* below =
            TexelRow(job_.draw, Soft_Address((tap >> 8) + 1, rows.size, rows.wrap));
        job_.draw.kernels->DoubleRows(upper + before_, lower + before_, above + first_,
                                      below + first_, pairs_);
        for (int32_t i = 0; i < before_; i++) Single(i, above, below, upper, lower);
        for (int32_t i = before_ + pairs_ * 2; i < count_; i++)
            Single(i, above, below, upper, lower);
    }

private:
    static constexpr int32_t kQuarter = 64;

    int64_t TapAt(int32_t i) const { return Soft_TapOf(job_.columns.At(left_ + i)); }

    bool StartsPair(int64_t tap) const
    {
        return (tap & 255) == kQuarter && tap >= 0 && (tap >> 8) + 1 < job_.columns.size;
    }

    void Single(int32_t i, const uint32_t* above, const uint32_t* below, uint32_t* upper,
                uint32_t* lower) const
    {
        const Axis& columns = job_.columns;
        const int64_t tap = TapAt(i);
        const int32_t left = Soft_Address(tap >> 8, columns.size, columns.wrap);
        const int32_t right = Soft_Address((tap >> 8) + 1, columns.size, columns.wrap);
        const uint32_t texels[4] = {above[left], above[right], below[left], below[right]};
        const auto fraction = static_cast<int32_t>(tap & 255);
        upper[i] = job_.draw.kernels->Bilinear(texels, fraction, kQuarter);
        lower[i] = job_.draw.kernels->Bilinear(texels, fraction, 256 - kQuarter);
    }

    const Job& job_;
    int32_t left_, count_;
    int32_t before_ = 0;  // pixels before the first pair
    int32_t first_ = 0;   // that pair's left texel
    int32_t pairs_ = 0;
};

void DoubleStrip(const Job& job, int32_t left, int32_t count)
{
    const DoubledRows rows(job, left, count);
    // The second row's place while the first is finished; rectangles have no other use
    // for it.
    uint32_t* spare = g_Soft->scratch.colours;
    for (int32_t y = job.top; y < job.bottom; y++) {
        uint32_t* first = RoomForRow(job, left, y);
        if (!rows.IsPair(y)) {
            rows.Make(y, spare, first);
            Finish(job, left, y, first, count);
            continue;
        }
        const bool both = y + 1 < job.bottom;
        const bool inPlace = both && first != g_Soft->scratch.source;
        uint32_t* second = inPlace ? RoomForRow(job, left, y + 1) : spare;
        rows.Make(y, first, second);
        Finish(job, left, y, first, count);
        if (both) Finish(job, left, ++y, second, count);
    }
}

void LinearStrip(const Job& job, int32_t left, int32_t count)
{
    if (DoubledRows::Fits(job)) {
        DoubleStrip(job, left, count);
        return;
    }
    int32_t first = 0;
    const bool direct = SideBySide(job, left, count, &first);
    if (direct && BlockStrip(job, left, first, count)) return;
    // Made only when a row needs it: its tables cost a pass over the columns.
    alignas(StretchedRows) unsigned char room[sizeof(StretchedRows)];
    StretchedRows* stretched = nullptr;
    for (int32_t y = job.top; y < job.bottom; y++) {
        const int64_t tap = Soft_TapOf(job.rows.At(y));
        const auto fraction = static_cast<int32_t>(tap & 255);
        const int32_t above = Soft_Address(tap >> 8, job.rows.size, job.rows.wrap);
        if (direct && fraction == 0) {
            Finish(job, left, y, TexelRow(job.draw, above) + first, count);
            continue;
        }
        if (!stretched) stretched = new (room) StretchedRows(job, left, count);
        const int32_t below = Soft_Address((tap >> 8) + 1, job.rows.size, job.rows.wrap);
        uint32_t* out = RoomForRow(job, left, y);
        stretched->Make(out, above, below, fraction);
        Finish(job, left, y, out, count);
    }
}

bool ChooseLinear(const SoftDraw& draw, const Axis& columns, const Axis& rows)
{
    if (draw.linear == draw.linearMin) return draw.linear;
    constexpr int64_t kLimit = 4294969443;  // a texel for each pixel, and what rounding leaves
    const int64_t x = std::abs(columns.plane.stepX), y = std::abs(rows.plane.stepX);
    return x > kLimit || y > kLimit ? draw.linearMin : draw.linear;
}

}  // namespace

void Soft_Rectangle(const SoftDraw& draw, SoftRectangle r)
{
    if (r.x1 < r.x0) {
        std::swap(r.x0, r.x1);
        std::swap(r.u0, r.u1);
    }
    if (r.y1 < r.y0) {
        std::swap(r.y0, r.y1);
        std::swap(r.v0, r.v1);
    }
    Job job = {.draw = draw,
               .columns = {},
               .rows = {},
               .linear = false,
               .tinted = draw.modulate && r.colour != 0xFFFFFFFF,
               .colour = r.colour,
               .left = std::max(FirstPixel(r.x0), draw.left),
               .top = std::max(FirstPixel(r.y0), draw.top),
               .right = std::min(FirstPixel(r.x1), draw.right),
               .bottom = std::min(FirstPixel(r.y1), draw.bottom)};
    if (job.left >= job.right || job.top >= job.bottom) return;
    job.columns = MakeAxis(r.u0, r.u1, r.x0, r.x1, draw.texWidth, draw.wrapU);
    job.rows = MakeAxis(r.v0, r.v1, r.y0, r.y1, draw.texHeight, draw.wrapV);
    job.linear = ChooseLinear(draw, job.columns, job.rows);
    const bool oneTexel = !draw.texels || (draw.texWidth == 1 && draw.texHeight == 1);
    const auto strip = oneTexel ? OneColourStrip : (job.linear ? LinearStrip : PointStrip);
    for (int32_t left = job.left; left < job.right; left += kSoftRun)
        strip(job, left, std::min(kSoftRun, job.right - left));
}
