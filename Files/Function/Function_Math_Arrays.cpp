// Built-ins over arrays. Those that write do so in place: every variable that
// shares the array sees it.

#include <algorithm>

#include "Files/Base/Error.h"
#include "Files/Function/Arguments.h"
#include "Files/Function/Function_Math_Families.h"
#include "Files/Function/Function_Registry.h"

namespace {

const RefArray* ArrayOf(const RValue* args, int argc, int i)
{
    return i < argc && args[i].Kind() == VALUE_ARRAY ? args[i].array : nullptr;
}

int32_t RowLength(const RefArray* body, int32_t row)
{
    return body && row >= 0 && row < body->rowCount ? body->rows[row].length : 0;
}

// A negative row or column stays an index that no array has.
int32_t FlatIndex(int32_t row, int32_t column)
{
    const int64_t index = static_cast<int64_t>(row) * kArrayRowStride + column;
    return row < 0 || column < 0 || index > INT32_MAX ? -1 : static_cast<int32_t>(index);
}

void WriteInPlace(RValue* array, const RValue* value, int32_t index)
{
    RefArray* body = array->array;
    if (!body) return;
    RValue* const owner = body->owner;
    body->owner = array;
    SET_RValue(array, value, index);
    body->owner = owner;
}

// Reads for array_get and array_get_2D.
void ReadCell(RValue& result, RValue* array, int32_t index, const char* name)
{
    g_ArrayError.failed = false;
    FREE_RValue(&result);
    GET_RValue(&result, array, index);
    if (!g_ArrayError.failed) return;
    g_ArrayError.failed = false;
    Error_Showf("%s :: Index [%d,%d] out of range [%d,%d]", name, g_ArrayError.row,
                g_ArrayError.column, g_ArrayError.rowCount, g_ArrayError.length);
}

void WriteCell(RValue* array, const RValue* value, int32_t index, const char* name)
{
    if (array->Kind() != VALUE_ARRAY) {
        Error_Showf("%s :: argument 0 is not an array", name);
        return;
    }
    g_ArrayError.failed = false;
    WriteInPlace(array, value, index);
    if (!g_ArrayError.failed) return;
    g_ArrayError.failed = false;
    Error_Showf("%s :: Index [%d,%d] out of range [%d,%d]", name, g_ArrayError.row,
                g_ArrayError.column, g_ArrayError.rowCount, g_ArrayError.length);
}

BUILTIN(F_array_create)
{
    const int32_t count = ArgInt(args, argc, 0);
    if (count < 0 || count > kArrayRowStride) {
        Error_Showf("array_create :: size %d is not in 0 to %d", count, kArrayRowStride);
        return;
    }
    static constexpr RValue kZero(0.0);
    const RValue* fill = argc > 1 ? &args[1] : &kZero;
    FREE_RValue(&result);
    result.flags = 0;
    result.kind = VALUE_ARRAY;
    result.array = ARRAY_NEW(&result);
    for (int32_t i = count - 1; i >= 0; --i) SET_RValue(&result, fill, i);
}

BUILTIN(F_array_length_1d)
{
    SetReal(result, RowLength(ArrayOf(args, argc, 0), 0));
}

BUILTIN(F_array_length_2d)
{
    SetReal(result, RowLength(ArrayOf(args, argc, 0), ArgInt(args, argc, 1)));
}

BUILTIN(F_array_height_2d)
{
    const RefArray* body = ArrayOf(args, argc, 0);
    SetReal(result, body ? body->rowCount : 0);
}

BUILTIN(F_array_get)
{
    if (argc < 2) return;
    ReadCell(result, &args[0], VXGetInt32(args, 1), "array_get");
}

BUILTIN(F_array_get_2D)
{
    if (argc < 3) return;
    ReadCell(result, &args[0], FlatIndex(VXGetInt32(args, 1), VXGetInt32(args, 2)), "array_get_2D");
}

BUILTIN(F_array_set)
{
    if (argc < 3) return;
    WriteCell(&args[0], &args[2], VXGetInt32(args, 1), "array_set");
}

BUILTIN(F_array_set_2D)
{
    if (argc < 4) return;
    WriteCell(&args[0], &args[3], FlatIndex(VXGetInt32(args, 1), VXGetInt32(args, 2)),
              "array_set_2D");
}

bool SameCells(const RefArray* a, const RefArray* b)
{
    if (a == b) return true;
    if (!a || !b || a->rowCount != b->rowCount) return false;
    for (int32_t row = 0; row < a->rowCount; ++row) {
        if (a->rows[row].length != b->rows[row].length) return false;
        for (int32_t column = 0; column < a->rows[row].length; ++column)
            if (VXCompareVal(&a->rows[row].cells[column], &b->rows[row].cells[column],
                             g_MathEpsilon) != 0)
                return false;
    }
    return true;
}

BUILTIN(F_array_equals)
{
    SetBool(result, false);
    if (argc != 2) {
        Error_Showf("array_equals :: takes 2 arguments");
        return;
    }
    for (int i = 0; i < 2; ++i) {
        if (args[i].Kind() == VALUE_ARRAY) continue;
        Error_Showf("array_equals :: argument %d is not an array", i);
        return;
    }
    SetBool(result, SameCells(args[0].array, args[1].array));
}

// Destination, its first index, source, its first index, count. Cells that the
// source does not have are left out; the two may be one array.
BUILTIN(F_array_copy)
{
    if (argc < 5 || args[0].Kind() != VALUE_ARRAY || args[2].Kind() != VALUE_ARRAY) {
        Error_Showf("array_copy :: takes an array, an index, an array, an index and a count");
        return;
    }
    const int32_t to = VXGetInt32(args, 1), from = VXGetInt32(args, 3);
    if (to < 0 || from < 0 || to >= kArrayRowStride) return;
    const int32_t count =
        std::min({VXGetInt32(args, 4), RowLength(args[2].array, 0) - from, kArrayRowStride - to});
    const bool backward = args[0].array == args[2].array && to > from;
    for (int32_t step = 0; step < count; ++step) {
        const int32_t i = backward ? count - 1 - step : step;
        if (const RValue* cell = ARRAY_CELL(&args[2], from + i))
            WriteInPlace(&args[0], cell, to + i);
    }
}

constexpr BuiltinRow kRows[] = {
    {"array_create", F_array_create, 1},
    {"array_length_1d", F_array_length_1d, 1},
    {"array_length_2d", F_array_length_2d, 2},
    {"array_height_2d", F_array_height_2d, 1},
    {"array_get", F_array_get, 2},
    {"array_get_2D", F_array_get_2D, 3},
    {"array_set", F_array_set, 3},
    {"array_set_2D", F_array_set_2D, 4},
    {"array_equals", F_array_equals, 2},
    {"array_copy", F_array_copy, 5},
};

}  // namespace

void Function_Math_RegisterArrays()
{
    Function_AddRows(kRows);
}
