#include "Files/Graphics_API/Soft_Kernels.h"

#if defined(__SSE2__)
#include <emmintrin.h>

#include <cstring>

namespace {

using Wide = __m128i;
constexpr int32_t kLanes = 4;

inline Wide Load(const uint32_t* p)
{
    return _mm_loadu_si128(reinterpret_cast<const Wide*>(p));
}
inline Wide LoadWords(const uint16_t* p)
{
    return _mm_loadu_si128(reinterpret_cast<const Wide*>(p));
}
inline void Store(uint32_t* p, Wide v)
{
    _mm_storeu_si128(reinterpret_cast<Wide*>(p), v);
}
inline Wide Set16(int32_t v)
{
    return _mm_set1_epi16(static_cast<int16_t>(v));
}
inline Wide Set32(uint32_t v)
{
    return _mm_set1_epi32(static_cast<int>(v));
}
inline Wide Add16(Wide a, Wide b)
{
    return _mm_add_epi16(a, b);
}
inline Wide Sub16(Wide a, Wide b)
{
    return _mm_sub_epi16(a, b);
}
inline Wide Mul16(Wide a, Wide b)
{
    return _mm_mullo_epi16(a, b);
}
inline Wide MulHigh16(Wide a, Wide b)
{
    return _mm_mulhi_epu16(a, b);
}
inline Wide ShiftRight16(Wide a, int32_t n)
{
    return _mm_srli_epi16(a, n);
}
inline Wide SpreadLow(Wide a)
{
    return _mm_unpacklo_epi8(a, _mm_setzero_si128());
}
inline Wide SpreadHigh(Wide a)
{
    return _mm_unpackhi_epi8(a, _mm_setzero_si128());
}
inline Wide Narrow(Wide low, Wide high)
{
    return _mm_packus_epi16(low, high);
}
inline Wide NarrowInOrder(Wide low, Wide high)
{
    return _mm_packus_epi16(low, high);
}
inline Wide SpreadAlpha(Wide a)
{
    return _mm_shufflehi_epi16(_mm_shufflelo_epi16(a, _MM_SHUFFLE(3, 3, 3, 3)),
                               _MM_SHUFFLE(3, 3, 3, 3));
}

// The first `count` pixels, 1 to 3; the rest is clear.
inline Wide LoadPart(const uint32_t* p, int32_t count)
{
    if (count == 1) return _mm_cvtsi32_si128(static_cast<int>(*p));
    const Wide two = _mm_loadl_epi64(reinterpret_cast<const Wide*>(p));
    return count == 2 ? two : _mm_unpacklo_epi64(two, _mm_cvtsi32_si128(static_cast<int>(p[2])));
}
inline void StorePart(uint32_t* p, Wide v, int32_t count)
{
    if (count >= 2) {
        _mm_storel_epi64(reinterpret_cast<Wide*>(p), v);
        v = _mm_unpackhi_epi64(v, v);
        p += 2;
    }
    if (count & 1) *p = static_cast<uint32_t>(_mm_cvtsi128_si32(v));
}
// The pixels of both, one of each by turns.
inline void StoreByTurns(uint32_t* p, Wide even, Wide odd)
{
    Store(p, _mm_unpacklo_epi32(even, odd));
    Store(p + kLanes, _mm_unpackhi_epi32(even, odd));
}

// Nearest of (s * a + d * (255 - a)) / 255, as d * 256 + 128 - d + (s - d) * a.
inline Wide MixNormalHalf(Wide s, Wide d, Wide largeD)
{
    const Wide sum = Add16(Sub16(largeD, d), Mul16(Sub16(s, d), SpreadAlpha(s)));
    return MulHigh16(sum, Set16(257));
}

inline Wide MixNormal(Wide s, Wide d)
{
    const Wide half = _mm_set1_epi8(-128);
    return Narrow(MixNormalHalf(SpreadLow(s), SpreadLow(d), _mm_unpacklo_epi8(half, d)),
                  MixNormalHalf(SpreadHigh(s), SpreadHigh(d), _mm_unpackhi_epi8(half, d)));
}

// ---- bytes
inline Wide Average8(Wide a, Wide b)  // the larger one where there are two
{
    return _mm_avg_epu8(a, b);
}
inline Wide Sub8(Wide a, Wide b)
{
    return _mm_sub_epi8(a, b);
}
inline Wide And(Wide a, Wide b)
{
    return _mm_and_si128(a, b);
}
inline Wide Or(Wide a, Wide b)
{
    return _mm_or_si128(a, b);
}
inline Wide Xor(Wide a, Wide b)
{
    return _mm_xor_si128(a, b);
}

inline __m128i MixPair(__m128i texels, uint32_t weights);

inline __m128i PairAt(const uint32_t* row, const SoftColumns& columns, int32_t i)
{
    uint32_t weights;
    std::memcpy(&weights, columns.weights[i], sizeof(weights));
    return MixPair(_mm_loadl_epi64(reinterpret_cast<const Wide*>(row + columns.first[i])), weights);
}

void StretchColumnsBeside(uint16_t* out, const uint32_t* row, const SoftColumns& columns,
                          int32_t count)
{
    for (int32_t i = 0; i < count; i += 2) {
        const Wide a = PairAt(row, columns, i), b = PairAt(row, columns, i + 1);
        const Wide sum = Add16(_mm_unpacklo_epi64(a, b), _mm_unpackhi_epi64(a, b));
        _mm_storeu_si128(reinterpret_cast<Wide*>(out + i * 4), sum);
    }
}

constexpr decltype(SoftKernels::StretchBoth) kStretchBoth = nullptr;

}  // namespace

#include "Files/Graphics_API/Soft_Kernels_Vector.h"

const SoftKernels* Soft_Sse2Kernels()
{
    static constexpr SoftKernels kKernels = MakeKernels("sse2");
    return &kKernels;
}

#else

const SoftKernels* Soft_Sse2Kernels()
{
    return nullptr;
}

#endif
