#include "Files/Graphics_API/Soft_Kernels.h"

#include <algorithm>

namespace {

inline uint32_t Channel(uint32_t pixel, int32_t shift)
{
    return (pixel >> shift) & 255;
}
inline uint32_t Divide255(uint32_t value)
{
    return (value + 127) / 255;
}
inline uint32_t Limit(uint32_t value)
{
    return value > 255 ? 255 : value;
}

// Applies `mix(s, d, alpha)` to each channel; it gives the sum of products.
template <class Mix>
inline void BlendRow(uint32_t* dest, const uint32_t* source, int32_t count, Mix mix)
{
    for (int32_t i = 0; i < count; i++) {
        const uint32_t s = source[i], d = dest[i], alpha = s >> 24;
        uint32_t result = 0;
        for (int32_t shift = 0; shift < 32; shift += 8) {
            const uint32_t sum = mix(Channel(s, shift), Channel(d, shift), alpha);
            result |= Limit(Divide255(sum)) << shift;
        }
        dest[i] = result;
    }
}

void Copy(uint32_t* dest, const uint32_t* source, int32_t count)
{
    for (int32_t i = 0; i < count; i++) dest[i] = source[i];
}

void Normal(uint32_t* dest, const uint32_t* source, int32_t count)
{
    BlendRow(dest, source, count,
             [](uint32_t s, uint32_t d, uint32_t a) { return s * a + d * (255 - a); });
}

void Add(uint32_t* dest, const uint32_t* source, int32_t count)
{
    BlendRow(dest, source, count,
             [](uint32_t s, uint32_t d, uint32_t a) { return s * a + d * 255; });
}

void Max(uint32_t* dest, const uint32_t* source, int32_t count)
{
    BlendRow(dest, source, count,
             [](uint32_t s, uint32_t d, uint32_t a) { return s * a + d * (255 - s); });
}

void Subtract(uint32_t* dest, const uint32_t* source, int32_t count)
{
    BlendRow(dest, source, count, [](uint32_t s, uint32_t d, uint32_t) { return d * (255 - s); });
}

void Premultiplied(uint32_t* dest, const uint32_t* source, int32_t count)
{
    BlendRow(dest, source, count,
             [](uint32_t s, uint32_t d, uint32_t a) { return s * 255 + d * (255 - a); });
}

void Fill(uint32_t* dest, uint32_t value, int32_t count)
{
    for (int32_t i = 0; i < count; i++) dest[i] = value;
}

inline uint32_t Product(uint32_t a, uint32_t b)
{
    uint32_t result = 0;
    for (int32_t shift = 0; shift < 32; shift += 8)
        result |= Divide255(Channel(a, shift) * Channel(b, shift)) << shift;
    return result;
}

void Modulate(uint32_t* out, const uint32_t* source, uint32_t colour, int32_t count)
{
    for (int32_t i = 0; i < count; i++) out[i] = Product(source[i], colour);
}

void ModulateRow(uint32_t* out, const uint32_t* source, const uint32_t* colours, int32_t count)
{
    for (int32_t i = 0; i < count; i++) out[i] = Product(source[i], colours[i]);
}

inline void MixColumn(uint16_t* out, uint32_t a, uint32_t b, uint32_t weightA, uint32_t weightB)
{
    for (int32_t c = 0; c < 4; c++)
        out[c] = static_cast<uint16_t>(Channel(a, c * 8) * weightA + Channel(b, c * 8) * weightB);
}

void StretchColumnsApart(uint16_t* out, const uint32_t* row, const SoftColumns& columns,
                         int32_t count)
{
    for (int32_t i = 0; i < count; i++)
        MixColumn(out + i * 4, row[columns.first[i]], row[columns.second[i]], columns.weights[i][0],
                  columns.weights[i][1]);
}

// Both weights keep 7 bits more than the result, so that a half can be rounded.
inline uint32_t MixRows(uint32_t above, uint32_t below, uint32_t fraction)
{
    const uint32_t upper = (above * ((256 - fraction) * 128)) >> 16;
    const uint32_t lower = (below * (fraction * 128)) >> 16;
    return (upper + lower + 64) >> 7;
}

void StretchRows(uint32_t* out, const uint16_t* above, const uint16_t* below, int32_t fraction,
                 int32_t count)
{
    for (int32_t i = 0; i < count; i++) {
        uint32_t pixel = 0;
        for (int32_t c = 0; c < 4; c++)
            pixel |= MixRows(above[i * 4 + c], below[i * 4 + c], static_cast<uint32_t>(fraction))
                     << (c * 8);
        out[i] = pixel;
    }
}

// With weights of 64 and 192 in both directions nothing is cut before the last shift.
inline void DoublePair(uint32_t* out, const uint32_t* near, const uint32_t* far)
{
    uint32_t even = 0, odd = 0;
    for (int32_t shift = 0; shift < 32; shift += 8) {
        const uint32_t left = Channel(near[0], shift) * 3 + Channel(far[0], shift);
        const uint32_t right = Channel(near[1], shift) * 3 + Channel(far[1], shift);
        even |= ((left * 3 + right + 8) >> 4) << shift;
        odd |= ((left + right * 3 + 8) >> 4) << shift;
    }
    out[0] = even;
    out[1] = odd;
}

void DoubleRows(uint32_t* upper, uint32_t* lower, const uint32_t* above, const uint32_t* below,
                int32_t pairs)
{
    for (int32_t i = 0; i < pairs; i++) {
        DoublePair(upper + i * 2, above + i, below + i);
        DoublePair(lower + i * 2, below + i, above + i);
    }
}

uint32_t Bilinear(const uint32_t texels[4], int32_t fractionX, int32_t fractionY)
{
    const auto right = static_cast<uint32_t>(fractionX);
    uint16_t above[4], below[4];
    MixColumn(above, texels[0], texels[1], 256 - right, right);
    MixColumn(below, texels[2], texels[3], 256 - right, right);
    uint32_t pixel;
    StretchRows(&pixel, above, below, fractionY, 1);
    return pixel;
}

void BilinearWalk(uint32_t* out, const SoftWalk& walk, int32_t count)
{
    int64_t u = walk.u, v = walk.v;
    for (int32_t i = 0; i < count; i++, u += walk.stepU, v += walk.stepV) {
        const uint32_t* at = walk.texels + (v >> 32) * walk.pitch + (u >> 32);
        const uint32_t texels[4] = {at[0], at[1], at[walk.pitch], at[walk.pitch + 1]};
        out[i] = Bilinear(texels, static_cast<int32_t>(u >> 24) & 255,
                          static_cast<int32_t>(v >> 24) & 255);
    }
}

void NormalWalk(uint32_t* dest, const SoftWalk& walk, uint32_t colour, int32_t count)
{
    SoftWalk step = walk;
    for (int32_t i = 0; i < count; i++, step.u += walk.stepU, step.v += walk.stepV) {
        uint32_t pixel;
        BilinearWalk(&pixel, step, 1);
        Modulate(&pixel, &pixel, colour, 1);
        Normal(dest + i, &pixel, 1);
    }
}

}  // namespace

const SoftKernels g_SoftScalar = {
    .name = "scalar",
    .Blend = {Copy, Normal, Add, Max, Subtract, Premultiplied},
    .Fill = Fill,
    .Modulate = Modulate,
    .ModulateRow = ModulateRow,
    .StretchColumns = StretchColumnsApart,
    .StretchColumnsApart = StretchColumnsApart,
    .StretchRows = StretchRows,
    .StretchBoth = nullptr,
    .DoubleRows = DoubleRows,
    .Bilinear = Bilinear,
    .BilinearWalk = BilinearWalk,
    .NormalWalk = NormalWalk,
};

void SoftColumns::Set(int32_t index, int32_t left, int32_t right, int32_t weight)
{
    // Bytes 0 to 3 are the left pixel, 4 to 7 the right one; an odd column stands eight
    // bytes further. A weight of 256 is no byte: that pixel is then paired with itself.
    constexpr uint64_t kBoth = 0x0703060205010400, kLeft = 0x0303020201010000,
                       kRight = 0x0707060605050404, kNext = 0x0808080808080808;
    constexpr uint64_t kHalves = 0x8080, kFourTimes = 0x0001000100010001;
    const bool one = weight == 0 || weight == 256;
    const auto rightShare = static_cast<uint64_t>(weight), leftShare = 256 - rightShare;
    first[index] = left;
    second[index] = right;
    weights[index][0] = static_cast<uint16_t>(leftShare);
    weights[index][1] = static_cast<uint16_t>(rightShare);
    const uint64_t bytes = one ? (weight == 0 ? kLeft : kRight) : kBoth;
    order[index] = bytes + (index & 1 ? kNext : 0);
    shares[index] = (one ? kHalves : leftShare | (rightShare << 8)) * kFourTimes;
}

void SoftColumns::Complete(int32_t count, int32_t size)
{
    constexpr int32_t kReach = 8;
    const int32_t last = count - 1;
    while (count & 3) Set(count++, first[last], second[last], weights[last][1]);
    close = size >= kReach;
    for (int32_t i = 0; i < count && close; i += 4) {
        int32_t low = first[i], high = second[i];
        for (int32_t n = i + 1; n < i + 4; n++) {
            low = std::min(low, first[n]);
            high = std::max(high, second[n]);
        }
        const int32_t start = std::min(low, size - kReach);
        close = high - start < kReach;
        base[i / 4] = start;
        for (int32_t n = i; n < i + 4; n++) {
            places[n][0] = first[n] - start;
            places[n][1] = second[n] - start;
        }
    }
}

const SoftKernels& Soft_BestKernels()
{
    if (const SoftKernels* kernels = Soft_Avx2Kernels()) return *kernels;
    if (const SoftKernels* kernels = Soft_Sse2Kernels()) return *kernels;
    return g_SoftScalar;
}
