#pragma once
// What the units of RValue share among themselves.

#include "Files/Base/RValue.h"

inline constexpr double kDefaultEpsilon = 1e-10;

// Truncation that is defined for every double: NaN gives 0, values outside the
// range of 64 bits the nearest end.
int64_t TruncateToInt64(double value);
// The low word of the truncation, so that 0xFFFFFFFF gives -1.
inline int32_t TruncateToInt32(double value)
{
    return static_cast<int32_t>(TruncateToInt64(value));
}

// Drops the reference that `holder` has on `body`; null does nothing.
void ARRAY_DROP(RefArray* body, RValue* holder);
void PrintStamps_Reset();
