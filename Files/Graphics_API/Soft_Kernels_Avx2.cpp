// Built with the instruction set switched on for this unit alone: nothing but the
// kernels may stand here, so that no shared inline code is built for it.
#include "Files/Graphics_API/Soft_Kernels.h"

#if defined(__AVX2__)
#include <immintrin.h>

namespace {

using Wide = __m256i;
constexpr int32_t kLanes = 8;

inline Wide Load(const uint32_t* p)
{
    return _mm256_loadu_si256(reinterpret_cast<const Wide*>(p));
}
inline Wide LoadWords(const uint16_t* p)
{
    return _mm256_loadu_si256(reinterpret_cast<const Wide*>(p));
}
inline void Store(uint32_t* p, Wide v)
{
    _mm256_storeu_si256(reinterpret_cast<Wide*>(p), v);
}
inline Wide Set16(int32_t v)
{
    return _mm256_set1_epi16(static_cast<int16_t>(v));
}
inline Wide Set32(uint32_t v)
{
    return _mm256_set1_epi32(static_cast<int>(v));
}
inline Wide Add16(Wide a, Wide b)
{
    return _mm256_add_epi16(a, b);
}
inline Wide Sub16(Wide a, Wide b)
{
    return _mm256_sub_epi16(a, b);
}
inline Wide Mul16(Wide a, Wide b)
{
    return _mm256_mullo_epi16(a, b);
}
inline Wide MulHigh16(Wide a, Wide b)
{
    return _mm256_mulhi_epu16(a, b);
}
inline Wide ShiftRight16(Wide a, int32_t n)
{
    return _mm256_srli_epi16(a, n);
}
inline Wide SpreadLow(Wide a)
{
    return _mm256_unpacklo_epi8(a, _mm256_setzero_si256());
}
inline Wide SpreadHigh(Wide a)
{
    return _mm256_unpackhi_epi8(a, _mm256_setzero_si256());
}
inline Wide Narrow(Wide low, Wide high)
{
    return _mm256_packus_epi16(low, high);
}
// The pack works in halves of the register; runs of words need their quarters swapped.
inline Wide NarrowInOrder(Wide low, Wide high)
{
    return _mm256_permute4x64_epi64(_mm256_packus_epi16(low, high), _MM_SHUFFLE(3, 1, 2, 0));
}
inline Wide SpreadAlpha(Wide a)
{
    return _mm256_shufflehi_epi16(_mm256_shufflelo_epi16(a, _MM_SHUFFLE(3, 3, 3, 3)),
                                  _MM_SHUFFLE(3, 3, 3, 3));
}

inline Wide PartMask(int32_t count)
{
    alignas(32) static constexpr int32_t kMask[2 * kLanes] = {-1, -1, -1, -1, -1, -1, -1, -1};
    return _mm256_loadu_si256(reinterpret_cast<const Wide*>(kMask + kLanes - count));
}
// The first `count` pixels, 1 to 7; the rest is clear, and memory there untouched.
inline Wide LoadPart(const uint32_t* p, int32_t count)
{
    return _mm256_maskload_epi32(reinterpret_cast<const int*>(p), PartMask(count));
}
// In pieces: some processors take a masked store slowly.
inline void StorePart(uint32_t* p, Wide v, int32_t count)
{
    __m128i rest = _mm256_castsi256_si128(v);
    if (count & 4) {
        _mm_storeu_si128(reinterpret_cast<__m128i*>(p), rest);
        rest = _mm256_extracti128_si256(v, 1);
        p += 4;
    }
    if (count & 2) {
        _mm_storel_epi64(reinterpret_cast<__m128i*>(p), rest);
        rest = _mm_unpackhi_epi64(rest, rest);
        p += 2;
    }
    if (count & 1) *p = static_cast<uint32_t>(_mm_cvtsi128_si32(rest));
}
// The pixels of both, one of each by turns.
inline void StoreByTurns(uint32_t* p, Wide even, Wide odd)
{
    const Wide low = _mm256_unpacklo_epi32(even, odd), high = _mm256_unpackhi_epi32(even, odd);
    Store(p, _mm256_permute2x128_si256(low, high, 0x20));
    Store(p + kLanes, _mm256_permute2x128_si256(low, high, 0x31));
}

inline Wide Flip(Wide bytes)
{
    return _mm256_xor_si256(bytes, _mm256_set1_epi8(-128));
}

// Sums s * a + d * (255 - a) in one multiplication of byte pairs. Its second factors
// are signed, so 128 is taken from each; the sum then lacks 255 * 128.
inline Wide MixNormal(Wide s, Wide d)
{
    const Wide places = _mm256_setr_epi8(3, 3, 3, 3, 7, 7, 7, 7, 11, 11, 11, 11, 15, 15, 15, 15, 3,
                                         3, 3, 3, 7, 7, 7, 7, 11, 11, 11, 11, 15, 15, 15, 15);
    const Wide alpha = _mm256_shuffle_epi8(s, places);
    const Wide inverse = _mm256_xor_si256(alpha, _mm256_set1_epi8(-1));
    const Wide signedS = Flip(s), signedD = Flip(d);
    const Wide lacking = Set16(255 * 128 + 128), scale = Set16(257);
    const Wide low = _mm256_maddubs_epi16(_mm256_unpacklo_epi8(alpha, inverse),
                                          _mm256_unpacklo_epi8(signedS, signedD));
    const Wide high = _mm256_maddubs_epi16(_mm256_unpackhi_epi8(alpha, inverse),
                                           _mm256_unpackhi_epi8(signedS, signedD));
    return Narrow(MulHigh16(Add16(low, lacking), scale), MulHigh16(Add16(high, lacking), scale));
}

// ---- bytes
inline Wide Average8(Wide a, Wide b)  // the larger one where there are two
{
    return _mm256_avg_epu8(a, b);
}
inline Wide Sub8(Wide a, Wide b)
{
    return _mm256_sub_epi8(a, b);
}
inline Wide And(Wide a, Wide b)
{
    return _mm256_and_si256(a, b);
}
inline Wide Or(Wide a, Wide b)
{
    return _mm256_or_si256(a, b);
}
inline Wide Xor(Wide a, Wide b)
{
    return _mm256_xor_si256(a, b);
}

// Two columns' texels, four in all.
inline __m128i TwoPairs(const uint32_t* row, const int32_t* first)
{
    return _mm_unpacklo_epi64(_mm_loadl_epi64(reinterpret_cast<const __m128i*>(row + first[0])),
                              _mm_loadl_epi64(reinterpret_cast<const __m128i*>(row + first[1])));
}

inline Wide LoadLongs(const uint64_t* p)
{
    return _mm256_loadu_si256(reinterpret_cast<const Wide*>(p));
}

template <bool kClose>
inline Wide FourPairs(const uint32_t* row, const SoftColumns& columns, int32_t i)
{
    if constexpr (kClose)
        return _mm256_permutevar8x32_epi32(
            Load(row + columns.base[i / 4]),
            _mm256_loadu_si256(reinterpret_cast<const Wide*>(columns.places[i])));
    return _mm256_inserti128_si256(_mm256_castsi128_si256(TwoPairs(row, columns.first + i)),
                                   TwoPairs(row, columns.first + i + 2), 1);
}

// Four columns. As in MixNormal, 128 is taken from each channel; weights of 256 in all
// put 32768 back.
template <bool kClose>
inline Wide FourColumns(const uint32_t* row, const SoftColumns& columns, int32_t i)
{
    const Wide texels = Flip(FourPairs<kClose>(row, columns, i));
    const Wide pairs = _mm256_shuffle_epi8(texels, LoadLongs(columns.order + i));
    const Wide sums = _mm256_maddubs_epi16(LoadLongs(columns.shares + i), pairs);
    return _mm256_xor_si256(sums, Set16(-32768));
}

template <bool kClose>
inline void StretchColumnsRow(uint16_t* out, const uint32_t* row, const SoftColumns& columns,
                              int32_t count)
{
    for (int32_t i = 0; i < count; i += 4)
        _mm256_storeu_si256(reinterpret_cast<Wide*>(out + i * 4),
                            FourColumns<kClose>(row, columns, i));
}

void StretchColumnsBeside(uint16_t* out, const uint32_t* row, const SoftColumns& columns,
                          int32_t count)
{
    (columns.close ? StretchColumnsRow<true> : StretchColumnsRow<false>)(out, row, columns, count);
}

template <bool kClose>
inline void StretchBothRows(uint32_t* out, const uint32_t* above, const uint32_t* below,
                            const SoftColumns& columns, int32_t fraction, int32_t count)
{
    const Wide upper = Set16((256 - fraction) * 128), lower = Set16(fraction * 128);
    for (int32_t i = 0; i < count; i += 4) {
        const Wide sum = Add16(MulHigh16(FourColumns<kClose>(above, columns, i), upper),
                               MulHigh16(FourColumns<kClose>(below, columns, i), lower));
        const Wide part = ShiftRight16(Add16(sum, Set16(64)), 7);
        const Wide pixels = NarrowInOrder(part, part);
        if (i + 4 <= count)
            _mm_storeu_si128(reinterpret_cast<__m128i*>(out + i), _mm256_castsi256_si128(pixels));
        else
            StorePart(out + i, pixels, count - i);
    }
}

void StretchTogether(uint32_t* out, const uint32_t* above, const uint32_t* below,
                     const SoftColumns& columns, int32_t fraction, int32_t count)
{
    const auto stretch = columns.close ? StretchBothRows<true> : StretchBothRows<false>;
    stretch(out, above, below, columns, fraction, count);
}

constexpr decltype(SoftKernels::StretchBoth) kStretchBoth = StretchTogether;

}  // namespace

#include "Files/Graphics_API/Soft_Kernels_Vector.h"

const SoftKernels* Soft_Avx2Kernels()
{
    static constexpr SoftKernels kKernels = MakeKernels("avx2");
    return __builtin_cpu_supports("avx2") ? &kKernels : nullptr;
}

#else

const SoftKernels* Soft_Avx2Kernels()
{
    return nullptr;
}

#endif
