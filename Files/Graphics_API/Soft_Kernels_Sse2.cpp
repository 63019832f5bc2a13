#include "Files/Graphics_API/Soft_Kernels.h"

#if defined(__SSE2__)
#include <emmintrin.h>

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

enum class AlphaKind { Clear, Mixed, Solid };

inline AlphaKind KindOfAlpha(Wide pixels)
{
    constexpr int kAlphaBytes = 0x8888;
    const Wide ones = _mm_set1_epi8(-1);
    if ((_mm_movemask_epi8(_mm_cmpeq_epi8(pixels, ones)) & kAlphaBytes) == kAlphaBytes)
        return AlphaKind::Solid;
    const int clear = _mm_movemask_epi8(_mm_cmpeq_epi8(pixels, _mm_setzero_si128()));
    return (clear & kAlphaBytes) == kAlphaBytes ? AlphaKind::Clear : AlphaKind::Mixed;
}

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
