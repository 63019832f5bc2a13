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

enum class AlphaKind { Clear, Mixed, Solid };

inline AlphaKind KindOfAlpha(Wide pixels)
{
    const Wide alpha = _mm256_set1_epi32(static_cast<int>(0xFF000000U));
    if (_mm256_testc_si256(pixels, alpha)) return AlphaKind::Solid;
    return _mm256_testz_si256(pixels, alpha) ? AlphaKind::Clear : AlphaKind::Mixed;
}

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
