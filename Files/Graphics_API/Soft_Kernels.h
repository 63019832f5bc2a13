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

inline constexpr int32_t kSoftRun = 2048;  // pixels worked on at a time

// The target columns of a stretch: two source columns each, and their weights, which
// add up to 256. `order` and `shares` say the same to loops that work on bytes: where
// in the two pixels the bytes to be paired stand, and the pair's weights.
struct SoftColumns {
    int32_t first[kSoftRun], second[kSoftRun];
    uint16_t weights[kSoftRun][2];
    uint64_t order[kSoftRun], shares[kSoftRun];
    // When `close`: each four columns lie within eight texels from their base on.
    bool close;
    int32_t base[kSoftRun / 4], places[kSoftRun][2];

    // weight: of `right`, 0 to 256.
    void Set(int32_t index, int32_t left, int32_t right, int32_t weight);
    // After the last Set: repeats the last column up to a multiple of four, and finds out
    // whether columns are close. size: texels in a row.
    void Complete(int32_t count, int32_t size);
};

// A straight walk over texels: places are counted from texel centres with 32 bits
// below the texel.
struct SoftWalk {
    const uint32_t* texels;
    int64_t pitch;  // pixels
    int64_t u, v, stepU, stepV;
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
    // Four channels of 16 bits a pixel. StretchColumns works on columns whose `second`
    // is `first` + 1, in fours: columns and `out` go on to the next multiple of four.
    // StretchColumnsApart takes any pair.
    void (*StretchColumns)(uint16_t* out, const uint32_t* row, const SoftColumns& columns,
                           int32_t count);
    void (*StretchColumnsApart)(uint16_t* out, const uint32_t* row, const SoftColumns& columns,
                                int32_t count);
    // fraction: 0 to 255, the share of `below`.
    void (*StretchRows)(uint32_t* out, const uint16_t* above, const uint16_t* below,
                        int32_t fraction, int32_t count);
    // Both steps for a row that shares no columns with its neighbours, with the bytes of
    // the two; null where that is no gain.
    void (*StretchBoth)(uint32_t* out, const uint32_t* above, const uint32_t* below,
                        const SoftColumns& columns, int32_t fraction, int32_t count);
    // Exactly twice the size: the two rows of pixels between two rows of texels. Each of
    // `pairs` neighbours, from texels 0 and 1 on, makes the two pixels between them in
    // both rows. The row a pixel is nearer to counts three times, the other once.
    void (*DoubleRows)(uint32_t* upper, uint32_t* lower, const uint32_t* above,
                       const uint32_t* below, int32_t pairs);
    // The four texels around a point; fractions 0 to 255.
    uint32_t (*Bilinear)(const uint32_t texels[4], int32_t fractionX, int32_t fractionY);
    // The same along a walk that has all four texels at each step.
    void (*BilinearWalk)(uint32_t* out, const SoftWalk& walk, int32_t count);
    // BilinearWalk, Modulate and the normal blend pixel by pixel: for runs that are too
    // short for a loop of each.
    void (*NormalWalk)(uint32_t* dest, const SoftWalk& walk, uint32_t colour, int32_t count);
};

extern const SoftKernels g_SoftScalar;
// The fastest filling that this processor runs.
const SoftKernels& Soft_BestKernels();
// Null where the build or the processor has none.
const SoftKernels* Soft_Sse2Kernels();
const SoftKernels* Soft_Avx2Kernels();
