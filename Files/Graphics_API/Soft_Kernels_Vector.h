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
    return MulHigh16(Add16(value, Set16(128)), Set16(257));
}

inline Wide Inverse(Wide value)
{
    return Sub16(Set16(255), value);
}

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

// `mix(source, dest)` over a row; the last pixels are less than a register.
template <class Mix>
inline void MixRow(uint32_t* dest, const uint32_t* source, int32_t count, Mix mix)
{
    int32_t i = 0;
    for (; i + kLanes <= count; i += kLanes) Store(dest + i, mix(Load(source + i), Load(dest + i)));
    const int32_t rest = count - i;
    if (rest > 0)
        StorePart(dest + i, mix(LoadPart(source + i, rest), LoadPart(dest + i, rest)), rest);
}

template <class Mix>
void BlendRow(uint32_t* dest, const uint32_t* source, int32_t count)
{
    MixRow(dest, source, count, MixPixels<Mix>);
}

// Leaving out clear and solid pixels would cost more in wrong guesses than it saves.
void NormalRow(uint32_t* dest, const uint32_t* source, int32_t count)
{
    MixRow(dest, source, count, MixNormal);
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
    const int32_t rest = count - i;
    if (rest > 0) StorePart(out + i, Product(LoadPart(source + i, rest), wide), rest);
}

void ModulateMany(uint32_t* out, const uint32_t* source, const uint32_t* colours, int32_t count)
{
    int32_t i = 0;
    for (; i + kLanes <= count; i += kLanes)
        Store(out + i, Product(Load(source + i), Load(colours + i)));
    const int32_t rest = count - i;
    if (rest > 0)
        StorePart(out + i, Product(LoadPart(source + i, rest), LoadPart(colours + i, rest)), rest);
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

// Pixels between the place written and the one fetched ahead: a picture larger than the
// caches is slowed by waiting for its own rows. What is fetched past the end is unused.
constexpr int32_t kAhead = 256;

void StretchRowPair(uint32_t* out, const uint16_t* above, const uint16_t* below, int32_t fraction,
                    int32_t count)
{
    const Wide upper = Set16((256 - fraction) * 128), lower = Set16(fraction * 128);
    const Wide half = Set16(64);
    constexpr int32_t kHalf = kLanes / 2;
    int32_t i = 0;
    for (; i + kLanes <= count; i += kLanes) {
        __builtin_prefetch(out + i + kAhead, 1);
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

// The pixels between four texels, of which the nearest counts nine times, its neighbours
// three times and the far one once, in sixteenths:
//
//     (9a + 3b + 3c + d + 8) / 16 = (a + m + 1) / 2,  m = ((a + b + c + d) / 2 + b + c) / 4
//
// and m is made of averages of bytes, each rounded up, from which the bit is taken back
// that was rounded in. After the upsampling of chroma in libwebp (P. Massimino, 2011).
struct Quarters {
    Wide inner, outer;  // m for a and d, which take b and c more, and for b and c
};

inline Quarters QuartersOf(Wide a, Wide b, Wide c, Wide d)
{
    const Wide one = Set32(0x01010101);
    const Wide outer = Average8(a, d), inner = Average8(b, c);
    const Wide outerBit = Xor(a, d), innerBit = Xor(b, c), bit = Xor(outer, inner);
    const Wide all = Sub8(Average8(outer, inner), And(Or(Or(outerBit, innerBit), bit), one));
    const auto towards = [&](Wide pair, Wide pairBit) {
        const Wide lost = Or(And(pairBit, bit), Xor(all, pair));
        return Sub8(Average8(all, pair), And(lost, one));
    };
    return {towards(inner, innerBit), towards(outer, outerBit)};
}

void DoubleRowPair(uint32_t* upper, uint32_t* lower, const uint32_t* above, const uint32_t* below,
                   int32_t pairs)
{
    int32_t i = 0;
    for (; i + kLanes <= pairs; i += kLanes) {
        __builtin_prefetch(upper + i * 2 + kAhead, 1);
        __builtin_prefetch(lower + i * 2 + kAhead, 1);
        const Wide a = Load(above + i), b = Load(above + i + 1);
        const Wide c = Load(below + i), d = Load(below + i + 1);
        const Quarters m = QuartersOf(a, b, c, d);
        StoreByTurns(upper + i * 2, Average8(a, m.inner), Average8(b, m.outer));
        StoreByTurns(lower + i * 2, Average8(c, m.outer), Average8(d, m.inner));
    }
    g_SoftScalar.DoubleRows(upper + i * 2, lower + i * 2, above + i, below + i, pairs - i);
}

// Four channels of 16 bits.
inline __m128i MixFour(__m128i aboveTexels, __m128i belowTexels, int32_t fractionX,
                       int32_t fractionY)
{
    const uint32_t weights =
        static_cast<uint32_t>(256 - fractionX) | (static_cast<uint32_t>(fractionX) << 16);
    const __m128i above = MixPair(aboveTexels, weights);
    const __m128i below = MixPair(belowTexels, weights);
    const __m128i columns =
        _mm_add_epi16(_mm_unpacklo_epi64(above, below), _mm_unpackhi_epi64(above, below));
    const __m128i upper = _mm_set1_epi16(static_cast<int16_t>((256 - fractionY) * 128));
    const __m128i lower = _mm_set1_epi16(static_cast<int16_t>(fractionY * 128));
    const __m128i parts = _mm_mulhi_epu16(columns, _mm_unpacklo_epi64(upper, lower));
    const __m128i sum = _mm_add_epi16(parts, _mm_srli_si128(parts, 8));
    return _mm_srli_epi16(_mm_add_epi16(sum, _mm_set1_epi16(64)), 7);
}

inline uint32_t ToPixel(__m128i channels)
{
    return static_cast<uint32_t>(_mm_cvtsi128_si32(_mm_packus_epi16(channels, channels)));
}

inline __m128i ToChannels(uint32_t pixel)
{
    return _mm_unpacklo_epi8(_mm_cvtsi32_si128(static_cast<int>(pixel)), _mm_setzero_si128());
}

inline __m128i TwoTexels(const uint32_t* at)
{
    return _mm_loadl_epi64(reinterpret_cast<const __m128i*>(at));
}

uint32_t BilinearOne(const uint32_t texels[4], int32_t fractionX, int32_t fractionY)
{
    return ToPixel(MixFour(TwoTexels(texels), TwoTexels(texels + 2), fractionX, fractionY));
}

// The channels at a place of a walk.
inline __m128i TexelAt(const SoftWalk& walk, int64_t u, int64_t v)
{
    const uint32_t* at = walk.texels + (v >> 32) * walk.pitch + (u >> 32);
    return MixFour(TwoTexels(at), TwoTexels(at + walk.pitch), static_cast<int32_t>(u >> 24) & 255,
                   static_cast<int32_t>(v >> 24) & 255);
}

void BilinearAlong(uint32_t* out, const SoftWalk& walk, int32_t count)
{
    int64_t u = walk.u, v = walk.v;
    for (int32_t i = 0; i < count; i++, u += walk.stepU, v += walk.stepV)
        out[i] = ToPixel(TexelAt(walk, u, v));
}

inline __m128i FourDivide255(__m128i value)
{
    return _mm_mulhi_epu16(_mm_add_epi16(value, _mm_set1_epi16(128)), _mm_set1_epi16(257));
}

void NormalAlong(uint32_t* dest, const SoftWalk& walk, uint32_t colour, int32_t count)
{
    const __m128i tint = ToChannels(colour), full = _mm_set1_epi16(255);
    int64_t u = walk.u, v = walk.v;
    for (int32_t i = 0; i < count; i++, u += walk.stepU, v += walk.stepV) {
        const __m128i s = FourDivide255(_mm_mullo_epi16(TexelAt(walk, u, v), tint));
        const __m128i alpha = _mm_shufflelo_epi16(s, _MM_SHUFFLE(3, 3, 3, 3));
        const __m128i d = _mm_mullo_epi16(ToChannels(dest[i]), _mm_sub_epi16(full, alpha));
        dest[i] = ToPixel(FourDivide255(_mm_add_epi16(_mm_mullo_epi16(s, alpha), d)));
    }
}

void StretchColumnsApart(uint16_t* out, const uint32_t* row, const SoftColumns& columns,
                         int32_t count)
{
    g_SoftScalar.StretchColumnsApart(out, row, columns, count);
}

constexpr SoftKernels MakeKernels(const char* name)
{
    return {
        .name = name,
        .Blend = {CopyRow, NormalRow, BlendRow<AddMix>, BlendRow<MaxMix>, BlendRow<SubtractMix>,
                  BlendRow<PremultipliedMix>},
        .Fill = FillRow,
        .Modulate = ModulateOne,
        .ModulateRow = ModulateMany,
        .StretchColumns = StretchColumnsBeside,
        .StretchColumnsApart = StretchColumnsApart,
        .StretchRows = StretchRowPair,
        .StretchBoth = kStretchBoth,
        .DoubleRows = DoubleRowPair,
        .Bilinear = BilinearOne,
        .BilinearWalk = BilinearAlong,
        .NormalWalk = NormalAlong,
    };
}

}  // namespace
