#pragma once
// Arguments of a built-in by number. A script may give fewer than the function
// takes: what is missing reads as the fallback.

#include "Files/Base/RValue.h"

inline double ArgReal(const RValue* args, int argc, int i, double fallback = 0.0)
{
    return i < argc ? VXGetReal(args, i) : fallback;
}
inline int32_t ArgInt(const RValue* args, int argc, int i, int32_t fallback = 0)
{
    return i < argc ? VXGetInt32(args, i) : fallback;
}
inline bool ArgBool(const RValue* args, int argc, int i, bool fallback = false)
{
    return i < argc ? VXGetBool(args, i) : fallback;
}
inline VXText ArgText(const RValue* args, int argc, int i)
{
    return i < argc ? VXGetString(args, i) : VXText("", false);
}
