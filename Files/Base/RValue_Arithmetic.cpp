// The arithmetic of compiled scripts for operands that are not both numbers.

#include <cstring>

#include "Files/Base/Error.h"
#include "Files/Base/RValue.h"
#include "Platform/MemoryManager.h"

namespace {

// Integer sums wrap around, as the machine's do.
template <class T, class U>
T Wrap(char op, T a, T b)
{
    const U x = static_cast<U>(a), y = static_cast<U>(b);
    return static_cast<T>(op == '+' ? x + y : op == '-' ? x - y : x * y);
}
int32_t Wrap32(char op, int32_t a, int32_t b)
{
    return Wrap<int32_t, uint32_t>(op, a, b);
}
int64_t Wrap64(char op, int64_t a, int64_t b)
{
    return Wrap<int64_t, uint64_t>(op, a, b);
}

// A division by zero gives 0; the one quotient that does not fit wraps around.
template <class T>
T Quotient(T a, T b)
{
    if (b == 0) return 0;
    return b == -1 ? static_cast<T>(Wrap64('-', 0, a)) : static_cast<T>(a / b);
}

void ReportOperands(const char* op, const RValue* left, const RValue* right)
{
    const VXText leftText = ToText(left), rightText = ToText(right);
    Error_Fatal("invalid type for %s lhs=%s (type=%d), rhs=%s (type=%d)", op, leftText.get(),
                static_cast<int>(left->Kind()), rightText.get(), static_cast<int>(right->Kind()));
}

void Concatenate(RValue* left, const RValue* right)
{
    const char* a = VXGetText(left);
    const char* b = VXGetText(right);
    if (!a && !b) {
        VXCreateString(left, nullptr);
        return;
    }
    const size_t sizeA = a ? std::strlen(a) : 0, sizeB = b ? std::strlen(b) : 0;
    char* both = static_cast<char*>(MemoryManager::Alloc(sizeA + sizeB + 1));
    if (a) std::memcpy(both, a, sizeA);
    if (b) std::memcpy(both + sizeA, b, sizeB);
    both[sizeA + sizeB] = 0;
    VXCreateString(left, both);
    MemoryManager::Free(both);
}

void SetInt64(RValue* value, int64_t number)
{
    value->kind = VALUE_INT64;
    value->i64 = number;
}

bool IsInteger(const RValue& value)
{
    return value.Kind() == VALUE_INT32 || value.Kind() == VALUE_INT64;
}

int64_t Widened(const RValue& value)
{
    return value.Kind() == VALUE_INT32 ? value.i32 : value.i64;
}

// `*=` and `/=` share their table of kinds; the left side is an integer.
void ScaleInteger(RValue* left, const RValue& right, bool divide)
{
    if (!IsInteger(right)) {
        const double number = static_cast<double>(Widened(*left)), other = REAL_RValue(&right);
        left->kind = VALUE_REAL;
        left->real = divide ? number / other : number * other;
    } else if (left->Kind() == VALUE_INT32 && right.Kind() == VALUE_INT32) {
        left->i32 = divide ? Quotient(left->i32, right.i32) : Wrap32('*', left->i32, right.i32);
    } else {
        const int64_t a = Widened(*left), b = Widened(right);
        SetInt64(left, divide ? Quotient(a, b) : Wrap64('*', a, b));
    }
}

}  // namespace

RValue& RValue::operator+=(const RValue& right)
{
    switch (Kind()) {
        case VALUE_REAL:
        case VALUE_BOOL:
            real += REAL_RValue(&right);
            break;
        case VALUE_STRING:
            if (right.Kind() == VALUE_STRING)
                Concatenate(this, &right);
            else
                ReportOperands("+=", this, &right);
            break;
        case VALUE_INT32:
            i32 = Wrap32('+', i32, INT32_RValue(&right));
            break;
        case VALUE_INT64:
            i64 = Wrap64('+', i64, INT64_RValue(&right));
            break;
        default:
            ReportOperands("+=", this, &right);
    }
    return *this;
}

RValue& RValue::operator-=(const RValue& right)
{
    switch (Kind()) {
        case VALUE_REAL:
        case VALUE_BOOL:
            real -= REAL_RValue(&right);
            break;
        case VALUE_INT32:
            i32 = Wrap32('-', i32, INT32_RValue(&right));
            break;
        case VALUE_INT64:
            i64 = Wrap64('-', i64, INT64_RValue(&right));
            break;
        default:
            ReportOperands("-=", this, &right);
    }
    return *this;
}

RValue& RValue::operator*=(const RValue& right)
{
    if (Kind() == VALUE_REAL || Kind() == VALUE_BOOL)
        real *= REAL_RValue(&right);
    else if (IsInteger(*this))
        ScaleInteger(this, right, false);
    else
        ReportOperands("*=", this, &right);
    return *this;
}

RValue& RValue::operator/=(const RValue& right)
{
    if (Kind() == VALUE_REAL || Kind() == VALUE_BOOL)
        real /= REAL_RValue(&right);
    else if (IsInteger(*this))
        ScaleInteger(this, right, true);
    else
        ReportOperands("/=", this, &right);
    return *this;
}

RValue& RValue::operator++()
{
    static constexpr RValue kOne(1.0);
    if (Kind() == VALUE_REAL || Kind() == VALUE_BOOL)
        real += 1.0;
    else if (Kind() == VALUE_INT32)
        i32 = Wrap32('+', i32, 1);
    else if (Kind() == VALUE_INT64)
        i64 = Wrap64('+', i64, 1);
    else
        ReportOperands("++", this, &kOne);
    return *this;
}

RValue operator+(const RValue& left, const RValue& right)
{
    RValue result;
    COPY_RValue(&result, &left);
    result += right;
    return result;
}

RValue operator-(const RValue& left, const RValue& right)
{
    RValue result;
    COPY_RValue(&result, &left);
    result -= right;
    return result;
}

RValue operator*(const RValue& left, const RValue& right)
{
    RValue result;
    COPY_RValue(&result, &left);
    result *= right;
    return result;
}

RValue operator/(const RValue& left, const RValue& right)
{
    RValue result;
    COPY_RValue(&result, &left);
    result /= right;
    return result;
}
