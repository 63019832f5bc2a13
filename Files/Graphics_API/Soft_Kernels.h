#pragma once
// The inner loops of the rasteriser over runs of pixels, in three fillings that give
// the same bytes: plain code, SSE2 and AVX2.
//
// Pixels are 0xAARRGGBB words. A product of two channels is rounded to the nearest
// of a * b / 255; a blend rounds the sum of both products once, and stops at 255.
// The linear filter has fractions of 1/256 texel: columns first, kept with 8 more
// bits, then rows.

#include <cstdint>

enum class SoftBlend : int32_t {
    Copy,           // one, zero
    Normal,         // source alpha, inverse source alpha
    Add,            // source alpha, one
    Max,            // source alpha, inverse source colour
    Subtract,       // zero, inverse source colour
    Premultiplied,  // one, inverse source alpha
    Count,
};

// One target column of a stretch: two source columns and their weights, which add
// up to 256.
struct SoftColumn {
    int32_t first, second;
    uint16_t firstWeight, secondWeight;
};

struct SoftKernels {
    const char* name;
    void (*Blend[static_cast<int32_t>(SoftBlend::Count)])(uint32_t* dest, const uint32_t* source,
                                                          int32_t count);
    void (*Fill)(uint32_t* dest, uint32_t value, int32_t count);
    // `out` may be `source`.
    void (*Modulate)(uint32_t* out, const uint32_t* source, uint32_t colour, int32_t count);
    void (*ModulateRow)(uint32_t* out, const uint32_t* source, const uint32_t* colours,
                        int32_t count);
    // Four channels of 16 bits a pixel. In StretchColumns `second` is `first` + 1
    // everywhere; StretchColumnsApart takes any pair.
    void (*StretchColumns)(uint16_t* out, const uint32_t* row, const SoftColumn* columns,
                           int32_t count);
    void (*StretchColumnsApart)(uint16_t* out, const uint32_t* row, const SoftColumn* columns,
                                int32_t count);
    // fraction: 0 to 255, the share of `below`.
    void (*StretchRows)(uint32_t* out, const uint16_t* above, const uint16_t* below,
                        int32_t fraction, int32_t count);
    // The four texels around a point; fractions 0 to 255.
    uint32_t (*Bilinear)(const uint32_t texels[4], int32_t fractionX, int32_t fractionY);
};

extern const SoftKernels g_SoftScalar;
// The fastest filling that this processor runs.
const SoftKernels& Soft_BestKernels();
// Null where the build or the processor has none.
const SoftKernels* Soft_Sse2Kernels();
const SoftKernels* Soft_Avx2Kernels();
