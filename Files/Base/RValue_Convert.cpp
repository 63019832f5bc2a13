#include <cmath>
#include <cstdlib>

#include "Files/Base/Error.h"
#include "Files/Base/RValue.h"
#include "Files/Base/RValue_Internal.h"
#include "Files/Function/Function_Registry.h"

namespace {

// The value that a conversion of an array reads: its first cell, and if that is
// an array its first cell in turn; number 0 when there is none. A chain longer
// than any honest nesting is an array that holds itself.
const RValue* FirstCell(const RValue* value)
{
    static constexpr RValue kZero(0.0);
    for (int depth = 0; depth < 64; ++depth) {
        if (value->Kind() != VALUE_ARRAY) return value;
        value = ARRAY_CELL(value, 0);
        if (!value) break;
    }
    return &kZero;
}

// `name` is the conversion's word in the messages.
void ReportKind(const char* name, const RValue* value)
{
    if (value->Kind() == VALUE_UNSET)
        Error_Fatal("%s argument is unset", name);
    else
        Error_Fatal("%s argument incorrect type %d", name, static_cast<int>(value->Kind()));
}

const char* TextOrEmpty(const RValue* value)
{
    const char* text = VXGetText(value);
    return text ? text : "";
}

void ReportArgument(const RValue* args, int i, const char* expected)
{
    Error_Showf("%s argument %d incorrect type (%s) expecting a %s",
                g_CurrentFunction ? g_CurrentFunction->name : "", i + 1, KindName(&args[i]),
                expected);
}

double FiniteOrZero(double value)
{
    return std::isfinite(value) ? value : 0.0;
}

// The shared reading of VXGetInt32, VXGetUint32 and VXGetInt64.
int64_t ReadInteger(const RValue* args, int i, const char* expected)
{
    const RValue& value = args[i];
    switch (value.Kind()) {
        case VALUE_REAL:
        case VALUE_BOOL:
            return TruncateToInt64(FiniteOrZero(value.real));
        case VALUE_STRING:
        case VALUE_OBJECT:
            return TruncateToInt64(FiniteOrZero(ToNumber(&value)));
        case VALUE_INT32:
            return value.i32;
        case VALUE_INT64:
            return value.i64;
        default:
            ReportArgument(args, i, expected);
            return 0;
    }
}

bool IsWhite(char c)
{
    return c == ' ' || (c >= '\t' && c <= '\r');
}

const char* SkipWhite(const char* text)
{
    while (IsWhite(*text)) ++text;
    return text;
}

double HexNumber(const char* digits)
{
    double number = 0;
    const char* at = digits;
    for (;; ++at) {
        int digit;
        if (*at >= '0' && *at <= '9')
            digit = *at - '0';
        else if ((*at | 0x20) >= 'a' && (*at | 0x20) <= 'f')
            digit = (*at | 0x20) - 'a' + 10;
        else
            break;
        number = number * 16 + digit;
    }
    return at == digits || *SkipWhite(at) ? NAN : number;
}

// The infinity that `text` names after blanks are taken off its end, or 0.
double InfinityWord(const char* text)
{
    const double sign = *text == '-' ? -1 : 1;
    if (*text == '-' || *text == '+') ++text;
    for (const char* word = "Infinity"; *word; ++word, ++text)
        if (*text != *word) return 0;
    return *SkipWhite(text) ? 0 : sign * INFINITY;
}

double TextToNumber(const char* text)
{
    text = SkipWhite(text);
    if (!*text) return 0.0;
    if (text[0] == '0' && (text[1] == 'x' || text[1] == 'X')) return HexNumber(text + 2);
    const double infinity = InfinityWord(text);
    if (infinity != 0) return infinity;
    const bool numeric =
        (*text >= '0' && *text <= '9') || *text == '+' || *text == '-' || *text == '.';
    if (!numeric) return NAN;
    char* end;
    const double number = std::strtod(text, &end);
    return end == text || *SkipWhite(end) ? NAN : number;
}

}  // namespace

int64_t TruncateToInt64(double value)
{
    if (std::isnan(value)) return 0;
    if (value >= 9223372036854775808.0) return INT64_MAX;
    if (value < -9223372036854775808.0) return INT64_MIN;
    return static_cast<int64_t>(value);
}

double REAL_RValue_Slow(const RValue* value)
{
    value = FirstCell(value);
    switch (value->Kind()) {
        case VALUE_REAL:
        case VALUE_BOOL:
            return value->real;
        case VALUE_STRING:
            return std::atof(TextOrEmpty(value));
        case VALUE_UNDEFINED:
            return 0.0;
        case VALUE_INT32:
            return value->i32;
        case VALUE_INT64:
            return static_cast<double>(value->i64);
        default:
            ReportKind("REAL", value);
            return 0.0;
    }
}

int32_t INT32_RValue(const RValue* value)
{
    value = FirstCell(value);
    switch (value->Kind()) {
        case VALUE_REAL:
        case VALUE_BOOL:
            return TruncateToInt32(value->real);
        case VALUE_STRING:
            return static_cast<int32_t>(std::strtol(TextOrEmpty(value), nullptr, 10));
        case VALUE_UNDEFINED:
            return 0;
        case VALUE_PTR:
        case VALUE_INT32:
        case VALUE_INT64:
            return value->i32;
        default:
            ReportKind("I32", value);
            return 0;
    }
}

int64_t INT64_RValue(const RValue* value)
{
    value = FirstCell(value);
    switch (value->Kind()) {
        case VALUE_REAL:
        case VALUE_BOOL:
            return TruncateToInt64(value->real);
        case VALUE_STRING:
            return std::strtoll(TextOrEmpty(value), nullptr, 10);
        case VALUE_UNDEFINED:
            return 0;
        case VALUE_PTR:
        case VALUE_INT32:
            return value->i32;
        case VALUE_INT64:
            return value->i64;
        default:
            ReportKind("I64", value);
            return 0;
    }
}

void* PTR_RValue(const RValue* value)
{
    value = FirstCell(value);
    switch (value->Kind()) {
        case VALUE_REAL:
        case VALUE_BOOL:
            return reinterpret_cast<void*>(TruncateToInt64(value->real));
        case VALUE_STRING:
            return reinterpret_cast<void*>(std::strtol(TextOrEmpty(value), nullptr, 16));
        case VALUE_UNDEFINED:
            return nullptr;
        case VALUE_PTR:
        case VALUE_OBJECT:
            return value->ptr;
        case VALUE_INT32:
            return reinterpret_cast<void*>(static_cast<intptr_t>(value->i32));
        case VALUE_INT64:
            return reinterpret_cast<void*>(static_cast<intptr_t>(value->i64));
        default:
            ReportKind("PTR", value);
            return nullptr;
    }
}

bool BOOL_RValue(const RValue* value)
{
    value = FirstCell(value);
    switch (value->Kind()) {
        case VALUE_REAL:
        case VALUE_BOOL:
            return value->real > 0.5;
        case VALUE_STRING:
            return std::atof(TextOrEmpty(value)) > 0.5;
        case VALUE_UNDEFINED:
            return false;
        case VALUE_PTR:
        case VALUE_INT32:
            return value->i32 > 0;
        case VALUE_INT64:
            return value->i64 > 0;
        default:
            ReportKind("bool", value);
            return false;
    }
}

// ---- argument readers

bool VXGetBool(const RValue* args, int i)
{
    const RValue& value = args[i];
    switch (value.Kind()) {
        case VALUE_REAL:
            return value.real > 0.5;
        case VALUE_INT32:
            return value.i32 > 0;
        case VALUE_INT64:
            return value.i64 > 0;
        case VALUE_BOOL:
            return value.real != 0.0;
        default:
            ReportArgument(args, i, "Number (VXGB)");
            return false;
    }
}

int32_t VXGetInt32(const RValue* args, int i)
{
    return static_cast<int32_t>(ReadInteger(args, i, "Number (VXGI32)"));
}

uint32_t VXGetUint32(const RValue* args, int i)
{
    return static_cast<uint32_t>(ReadInteger(args, i, "Number (VXGU32)"));
}

int64_t VXGetInt64(const RValue* args, int i)
{
    return ReadInteger(args, i, "Number");
}

double VXGetReal(const RValue* args, int i)
{
    const RValue& value = args[i];
    switch (value.Kind()) {
        case VALUE_REAL:
        case VALUE_BOOL:
            return FiniteOrZero(value.real);
        case VALUE_STRING:
        case VALUE_OBJECT:
            return ToNumber(&value);
        case VALUE_INT32:
            return value.i32;
        case VALUE_INT64:
            return static_cast<double>(value.i64);
        default:
            ReportArgument(args, i, "Number (VXGR)");
            return 0.0;
    }
}

float VXGetFloat(const RValue* args, int i)
{
    const RValue& value = args[i];
    switch (value.Kind()) {
        case VALUE_REAL:
        case VALUE_BOOL:
            return static_cast<float>(FiniteOrZero(value.real));
        case VALUE_INT32:
            return static_cast<float>(value.i32);
        case VALUE_INT64:
            return static_cast<float>(value.i64);
        default:
            ReportArgument(args, i, "Number (VXGF)");
            return 0.0F;
    }
}

intptr_t VXGetPtrOrInt(const RValue* args, int i)
{
    const RValue& value = args[i];
    switch (value.Kind()) {
        case VALUE_REAL:
            return static_cast<intptr_t>(TruncateToInt64(value.real));
        case VALUE_PTR:
            return reinterpret_cast<intptr_t>(value.ptr);
        case VALUE_INT32:
        case VALUE_INT64:
            return value.i32;
        default:
            ReportArgument(args, i, "Number or Pointer");
            return 0;
    }
}

VXText VXGetString(const RValue* args, int i)
{
    switch (args[i].Kind()) {
        case VALUE_STRING:
            return VXText(VXGetText(&args[i]), false);
        case VALUE_REAL:
        case VALUE_OBJECT:
        case VALUE_INT32:
        case VALUE_INT64:
        case VALUE_BOOL:
            return ToText(&args[i]);
        default:
            ReportArgument(args, i, "String (VXGS)");
            return VXText();
    }
}

double ToNumber(const RValue* value)
{
    switch (value->Kind()) {
        case VALUE_REAL:
        case VALUE_BOOL:
            return value->real;
        case VALUE_STRING:
            return TextToNumber(TextOrEmpty(value));
        case VALUE_INT32:
            return value->i32;
        case VALUE_INT64:
            return static_cast<double>(value->i64);
        case VALUE_NULL:
            return 0.0;
        case VALUE_OBJECT:
            return value->object ? NAN : 0.0;
        default:
            return NAN;
    }
}
