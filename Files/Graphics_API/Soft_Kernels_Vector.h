// The vector loops, written once over a few operations on a register `Wide` of
// kLanes pixels; included by the unit of each instruction set, which defines them.
// Channels are spread to 16 bits in two halves; the halves' order is the register's
// own, and Narrow puts it back.

#include <cstring>

#include "Files/Graphics_API/Soft_Kernels.h"

namespace {

// Nearest of value / 255 for 0 to 65025.
inline Wide Divide255(Wide value)
{
    const Wide rounded = Add16(value, Set16(128));
    return ShiftRight16(Add16(rounded, ShiftRight16(rounded, 8)), 8);
}

inline Wide Inverse(Wide value)
{
    return Sub16(Set16(255), value);
}

struct NormalMix {
    static Wide Half(Wide s, Wide d)
    {
        const Wide alpha = SpreadAlpha(s);
        return Divide255(Add16(Mul16(s, alpha), Mul16(d, Inverse(alpha))));
    }
};

struct AddMix {
    static Wide Half(Wide s, Wide d) { return Add16(d, Divide255(Mul16(s, SpreadAlpha(s)))); }
};

struct MaxMix {
    static Wide Half(Wide s, Wide d)
    {
        return Divide255(Add16(Mul16(s, SpreadAlpha(s)), Mul16(d, Inverse(s))));
    }
};

struct SubtractMix {
    static Wide Half(Wide s, Wide d) { return Divide255(Mul16(d, Inverse(s))); }
};

struct PremultipliedMix {
    static Wide Half(Wide s, Wide d)
    {
        return Add16(s, Divide255(Mul16(d, Inverse(SpreadAlpha(s)))));
    }
};

template <class Mix>
inline Wide MixPixels(Wide s, Wide d)
{
    return Narrow(Mix::Half(SpreadLow(s), SpreadLow(d)), Mix::Half(SpreadHigh(s), SpreadHigh(d)));
}

template <class Mix, SoftBlend kBlend>
void BlendRow(uint32_t* dest, const uint32_t* source, int32_t count)
{
    int32_t i = 0;
    for (; i + kLanes <= count; i += kLanes)
        Store(dest + i, MixPixels<Mix>(Load(source + i), Load(dest + i)));
    g_SoftScalar.Blend[static_cast<int32_t>(kBlend)](dest + i, source + i, count - i);
}

// Runs of clear and of solid pixels are most of a sprite.
void NormalRow(uint32_t* dest, const uint32_t* source, int32_t count)
{
    int32_t i = 0;
    for (; i + kLanes <= count; i += kLanes) {
        const Wide s = Load(source + i);
        const AlphaKind kind = KindOfAlpha(s);
        if (kind == AlphaKind::Clear) continue;
        Store(dest + i, kind == AlphaKind::Solid ? s : MixPixels<NormalMix>(s, Load(dest + i)));
    }
    g_SoftScalar.Blend[static_cast<int32_t>(SoftBlend::Normal)](dest + i, source + i, count - i);
}

void CopyRow(uint32_t* dest, const uint32_t* source, int32_t count)
{
    std::memmove(dest, source, static_cast<size_t>(count) * 4);
}

void FillRow(uint32_t* dest, uint32_t value, int32_t count)
{
    const Wide wide = Set32(value);
    int32_t i = 0;
    for (; i + kLanes <= count; i += kLanes) Store(dest + i, wide);
    for (; i < count; i++) dest[i] = value;
}

inline Wide Product(Wide a, Wide b)
{
    return Narrow(Divide255(Mul16(SpreadLow(a), SpreadLow(b))),
                  Divide255(Mul16(SpreadHigh(a), SpreadHigh(b))));
}

void ModulateOne(uint32_t* out, const uint32_t* source, uint32_t colour, int32_t count)
{
    const Wide wide = Set32(colour);
    int32_t i = 0;
    for (; i + kLanes <= count; i += kLanes) Store(out + i, Product(Load(source + i), wide));
    g_SoftScalar.Modulate(out + i, source + i, colour, count - i);
}

void ModulateMany(uint32_t* out, const uint32_t* source, const uint32_t* colours, int32_t count)
{
    int32_t i = 0;
    for (; i + kLanes <= count; i += kLanes)
        Store(out + i, Product(Load(source + i), Load(colours + i)));
    g_SoftScalar.ModulateRow(out + i, source + i, colours + i, count - i);
}

// Two texels side by side become four channels of 16 bits: first * w0 + second * w1,
// both products in one register.
inline __m128i MixPair(__m128i texels, uint32_t weights)
{
    const __m128i channels = _mm_unpacklo_epi8(texels, _mm_setzero_si128());
    __m128i weight = _mm_cvtsi32_si128(static_cast<int>(weights));
    weight = _mm_unpacklo_epi16(weight, weight);
    return _mm_mullo_epi16(channels, _mm_unpacklo_epi32(weight, weight));
}

inline uint32_t WeightsOf(const SoftColumn& column)
{
    uint32_t weights;
    std::memcpy(&weights, &column.firstWeight, sizeof(weights));
    return weights;
}

inline __m128i PairAt(const uint32_t* row, const SoftColumn& column)
{
    return _mm_loadl_epi64(reinterpret_cast<const __m128i*>(row + column.first));
}

void StretchColumnsBeside(uint16_t* out, const uint32_t* row, const SoftColumn* columns,
                          int32_t count)
{
    int32_t i = 0;
    for (; i + 2 <= count; i += 2) {
        const __m128i a = MixPair(PairAt(row, columns[i]), WeightsOf(columns[i]));
        const __m128i b = MixPair(PairAt(row, columns[i + 1]), WeightsOf(columns[i + 1]));
        const __m128i sum = _mm_add_epi16(_mm_unpacklo_epi64(a, b), _mm_unpackhi_epi64(a, b));
        _mm_storeu_si128(reinterpret_cast<__m128i*>(out + i * 4), sum);
    }
    g_SoftScalar.StretchColumns(out + i * 4, row, columns + i, count - i);
}

void StretchRowPair(uint32_t* out, const uint16_t* above, const uint16_t* below, int32_t fraction,
                    int32_t count)
{
    const Wide upper = Set16((256 - fraction) * 128), lower = Set16(fraction * 128);
    const Wide half = Set16(64);
    constexpr int32_t kHalf = kLanes / 2;
    int32_t i = 0;
    for (; i + kLanes <= count; i += kLanes) {
        Wide part[2];
        for (int32_t n = 0; n < 2; n++) {
            const int32_t at = (i + n * kHalf) * 4;
            const Wide sum = Add16(MulHigh16(LoadWords(above + at), upper),
                                   MulHigh16(LoadWords(below + at), lower));
            part[n] = ShiftRight16(Add16(sum, half), 7);
        }
        Store(out + i, NarrowInOrder(part[0], part[1]));
    }
    g_SoftScalar.StretchRows(out + i, above + i * 4, below + i * 4, fraction, count - i);
}

uint32_t BilinearOne(const uint32_t texels[4], int32_t fractionX, int32_t fractionY)
{
    const uint32_t weights =
        static_cast<uint32_t>(256 - fractionX) | (static_cast<uint32_t>(fractionX) << 16);
    const __m128i above =
        MixPair(_mm_loadl_epi64(reinterpret_cast<const __m128i*>(texels)), weights);
    const __m128i below =
        MixPair(_mm_loadl_epi64(reinterpret_cast<const __m128i*>(texels + 2)), weights);
    const __m128i columns =
        _mm_add_epi16(_mm_unpacklo_epi64(above, below), _mm_unpackhi_epi64(above, below));
    const __m128i upper = _mm_set1_epi16(static_cast<int16_t>((256 - fractionY) * 128));
    const __m128i lower = _mm_set1_epi16(static_cast<int16_t>(fractionY * 128));
    const __m128i parts = _mm_mulhi_epu16(columns, _mm_unpacklo_epi64(upper, lower));
    __m128i sum = _mm_add_epi16(parts, _mm_srli_si128(parts, 8));
    sum = _mm_srli_epi16(_mm_add_epi16(sum, _mm_set1_epi16(64)), 7);
    return static_cast<uint32_t>(_mm_cvtsi128_si32(_mm_packus_epi16(sum, sum)));
}

void StretchColumnsApart(uint16_t* out, const uint32_t* row, const SoftColumn* columns,
                         int32_t count)
{
    g_SoftScalar.StretchColumnsApart(out, row, columns, count);
}

constexpr SoftKernels MakeKernels(const char* name)
{
    return {
        .name = name,
        .Blend = {CopyRow, NormalRow, BlendRow<AddMix, SoftBlend::Add>,
                  BlendRow<MaxMix, SoftBlend::Max>, BlendRow<SubtractMix, SoftBlend::Subtract>,
                  BlendRow<PremultipliedMix, SoftBlend::Premultiplied>},
        .Fill = FillRow,
        .Modulate = ModulateOne,
        .ModulateRow = ModulateMany,
        .StretchColumns = StretchColumnsBeside,
        .StretchColumnsApart = StretchColumnsApart,
        .StretchRows = StretchRowPair,
        .Bilinear = BilinearOne,
    };
}

}  // namespace
