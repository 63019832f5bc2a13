#include <cmath>
#include <cstring>

#include "Files/Base/RValue.h"
#include "Files/Base/RValue_Internal.h"

namespace {

template <class T>
int Sign(T a, T b)
{
    return a < b ? -1 : a > b ? 1 : 0;
}

bool IsReal(uint32_t kind)
{
    return kind == VALUE_REAL || kind == VALUE_BOOL;
}
bool IsInteger(uint32_t kind)
{
    return kind == VALUE_INT32 || kind == VALUE_INT64;
}

int64_t Integer(const RValue* value)
{
    return value->Kind() == VALUE_INT32 ? value->i32 : value->i64;
}

int CompareReals(double difference, double epsilon)
{
    if (std::fabs(difference) <= epsilon) return 0;
    return difference < 0 ? -1 : 1;
}

// One side a number or a bool, the other an integer; `sign` is 1 when the real
// side is the left one and -1 when it is the right one.
int CompareRealWithInteger(const RValue* real, const RValue* integer, int sign, double epsilon)
{
    if (integer->Kind() == VALUE_INT64)
        return sign * Sign(TruncateToInt64(real->real), integer->i64);
    if (real->Kind() == VALUE_BOOL) return sign * Sign(TruncateToInt32(real->real), integer->i32);
    const float difference = static_cast<float>(real->real) - static_cast<float>(integer->i32);
    return sign * CompareReals(difference, epsilon);
}

int CompareStrings(const RefString* a, const RefString* b)
{
    if (!a || !b) return 1;
    if (!a->text || !b->text) {
        const char* other = a->text ? a->text : b->text;
        return !other || !*other ? 0 : 1;
    }
    return Sign(std::strcmp(a->text, b->text), 0);
}

}  // namespace

int VXCompareVal(const RValue* a, const RValue* b, double epsilon)
{
    const uint32_t left = a->Kind(), right = b->Kind();
    if (IsReal(left) && IsReal(right)) return CompareReals(a->real - b->real, epsilon);
    if (IsReal(left) && IsInteger(right)) return CompareRealWithInteger(a, b, 1, epsilon);
    if (IsInteger(left) && IsReal(right)) return CompareRealWithInteger(b, a, -1, epsilon);
    if (IsInteger(left) && IsInteger(right)) return Sign(Integer(a), Integer(b));
    if (left == right) {
        switch (left) {
            case VALUE_STRING:
                return CompareStrings(a->string, b->string);
            case VALUE_ARRAY:
                return a->array && a->array == b->array ? 0 : 1;
            case VALUE_PTR:
                return a->ptr == b->ptr ? 0 : 1;
            case VALUE_UNDEFINED:
                return 0;
            default:
                break;
        }
    }
    return left == VALUE_REAL ? -1 : 1;
}
