#include "Files/Graphics_API/Soft_Kernels.h"

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

void StretchColumnsApart(uint16_t* out, const uint32_t* row, const SoftColumn* columns,
                         int32_t count)
{
    for (int32_t i = 0; i < count; i++) {
        const SoftColumn& column = columns[i];
        const uint32_t a = row[column.first], b = row[column.second];
        for (int32_t c = 0; c < 4; c++)
            out[i * 4 + c] = static_cast<uint16_t>(Channel(a, c * 8) * column.firstWeight +
                                                   Channel(b, c * 8) * column.secondWeight);
    }
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

uint32_t Bilinear(const uint32_t texels[4], int32_t fractionX, int32_t fractionY)
{
    const SoftColumn column = {0, 1, static_cast<uint16_t>(256 - fractionX),
                               static_cast<uint16_t>(fractionX)};
    uint16_t above[4], below[4];
    StretchColumnsApart(above, texels, &column, 1);
    StretchColumnsApart(below, texels + 2, &column, 1);
    uint32_t pixel;
    StretchRows(&pixel, above, below, fractionY, 1);
    return pixel;
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
    .Bilinear = Bilinear,
};

const SoftKernels& Soft_BestKernels()
{
    if (const SoftKernels* kernels = Soft_Avx2Kernels()) return *kernels;
    if (const SoftKernels* kernels = Soft_Sse2Kernels()) return *kernels;
    return g_SoftScalar;
}
