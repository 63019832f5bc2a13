// Strings. Positions count characters from 1; a character is a code point.

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>

#include "Files/Base/Error.h"
#include "Files/Base/Utf8.h"
#include "Files/Function/Arguments.h"
#include "Files/Function/Function_Math_Families.h"
#include "Files/Function/Function_Registry.h"
#include "Platform/MemoryManager.h"

namespace {

constexpr uint32_t kLastCodePoint = 0x10FFFF;
constexpr int64_t kLongestText = 1 << 28;  // bytes that string_repeat will make

void SetText(RValue& result, const VxString& text)
{
    VXCreateString(&result, text.c_str());
}

const RValue* FirstOrUndefined(const RValue* args, int argc)
{
    static constexpr RValue kNone;
    return argc > 0 ? args : &kNone;
}

// The text with each character that `keep` refuses left out.
template <class Keep>
VxString Filtered(const char* text, Keep keep)
{
    VxString kept;
    for (const char* at = text; *at;) {
        const char* const start = at;
        if (keep(Utf8_Next(&at))) kept.append(start, at);
    }
    return kept;
}

// The text with each character turned by `turn`.
template <class Turn>
VxString Turned(const char* text, Turn turn)
{
    VxString turned;
    while (*text) {
        char bytes[4];
        turned.append(bytes, static_cast<size_t>(Utf8_Put(turn(Utf8_Next(&text)), bytes)));
    }
    return turned;
}

bool IsLatinLetter(uint32_t c)
{
    return c >= 0xC0 && c <= 0xFE && c != 0xD7 && c != 0xF7;
}
uint32_t Lower(uint32_t c)
{
    return (c >= 'A' && c <= 'Z') || (c <= 0xDE && IsLatinLetter(c)) ? c + 32 : c;
}
uint32_t Upper(uint32_t c)
{
    return (c >= 'a' && c <= 'z') || (c >= 0xE0 && IsLatinLetter(c)) ? c - 32 : c;
}
bool IsDigit(uint32_t c)
{
    return c >= '0' && c <= '9';
}
bool IsLetter(uint32_t c)
{
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
}

BUILTIN(F_string)
{
    VXCreateString(&result, ToText(FirstOrUndefined(args, argc)));
}

BUILTIN(F_real)
{
    const double number = ToNumber(FirstOrUndefined(args, argc));
    const bool text = argc > 0 && args[0].Kind() == VALUE_STRING;
    if (text && std::isnan(number)) {
        Error_Showf("real :: unable to convert string \"%s\" to number",
                    VXGetString(args, 0).get());
        SetReal(result, 0);
        return;
    }
    SetReal(result, argc > 0 && !text ? VXGetReal(args, 0) : number);
}

BUILTIN(F_int64)
{
    const int64_t number = argc > 0 ? VXGetInt64(args, 0) : 0;
    FREE_RValue(&result);
    result.flags = 0;
    result.kind = VALUE_INT64;
    result.i64 = number;
}

// At least `total` places before the point and `decimals` behind it.
BUILTIN(F_string_format)
{
    if (argc > 0 && args[0].Kind() == VALUE_STRING) {
        ASSIGN_RValue(&result, &args[0]);
        return;
    }
    const int total = std::clamp(ArgInt(args, argc, 1), 0, 100);
    const int decimals = std::clamp(ArgInt(args, argc, 2), 0, 100);
    char text[600];
    std::snprintf(text, sizeof text, "%*.*f", total + (decimals > 0 ? decimals + 1 : 0), decimals,
                  ArgReal(args, argc, 0));
    VXCreateString(&result, text);
}

BUILTIN(F_chr)
{
    const uint32_t point = static_cast<uint32_t>(ArgInt(args, argc, 0));
    char text[5] = "";
    if (point <= kLastCodePoint) text[Utf8_Put(point, text)] = 0;
    VXCreateString(&result, text);
}

BUILTIN(F_ord)
{
    const VXText text = ArgText(args, argc, 0);
    const char* at = text;
    SetReal(result, Utf8_Next(&at));
}

BUILTIN(F_string_length)
{
    SetReal(result, Utf8_Length(ArgText(args, argc, 0)));
}

BUILTIN(F_string_byte_length)
{
    SetReal(result, static_cast<double>(std::strlen(ArgText(args, argc, 0))));
}

BUILTIN(F_string_byte_at)
{
    const VXText text = ArgText(args, argc, 0);
    const int32_t at = std::max(ArgInt(args, argc, 1), 1);
    const bool inside = static_cast<size_t>(at) <= std::strlen(text);
    SetReal(result, inside ? static_cast<unsigned char>(text.get()[at - 1]) : 0);
}

BUILTIN(F_string_ord_at)
{
    const VXText text = ArgText(args, argc, 0);
    const char* at = Utf8_At(text, ArgInt(args, argc, 1) - 1);
    SetReal(result, *at ? Utf8_Next(&at) : -1);
}

// `count` characters from a position on.
VxString Slice(const char* text, int32_t position, int32_t count)
{
    const char* const from = Utf8_At(text, position - 1);
    return VxString(from, Utf8_At(from, count));
}

BUILTIN(F_string_char_at)
{
    const VXText text = ArgText(args, argc, 0);
    SetText(result, Slice(text, ArgInt(args, argc, 1), 1));
}

BUILTIN(F_string_copy)
{
    const VXText text = ArgText(args, argc, 0);
    SetText(result, Slice(text, ArgInt(args, argc, 1), ArgInt(args, argc, 2)));
}

// The character position of the first occurrence, 0 for none.
BUILTIN(F_string_pos)
{
    const VXText part = ArgText(args, argc, 0), text = ArgText(args, argc, 1);
    const char* const found = *part.get() ? std::strstr(text, part) : nullptr;
    SetReal(result, found ? Utf8_Length(VxString(text.get(), found).c_str()) + 1 : 0);
}

BUILTIN(F_string_delete)
{
    const VXText text = ArgText(args, argc, 0);
    const int32_t position = ArgInt(args, argc, 1);
    if (position < 1) {
        VXCreateString(&result, text);
        return;
    }
    const char* const from = Utf8_At(text, position - 1);
    SetText(result, VxString(text.get(), from) + Utf8_At(from, ArgInt(args, argc, 2)));
}

BUILTIN(F_string_insert)
{
    const VXText part = ArgText(args, argc, 0), text = ArgText(args, argc, 1);
    const char* const at = Utf8_At(text, ArgInt(args, argc, 2) - 1);
    SetText(result, VxString(text.get(), at) + part.get() + at);
}

// Replaces up to `most` occurrences of a part.
VxString Replaced(const char* text, const char* part, const char* by, int32_t most)
{
    VxString replaced;
    const size_t size = std::strlen(part);
    const char* found;
    while (size > 0 && most-- > 0 && (found = std::strstr(text, part)) != nullptr) {
        replaced.append(text, found);
        replaced += by;
        text = found + size;
    }
    return replaced + text;
}

BUILTIN(F_string_replace)
{
    SetText(result,
            Replaced(ArgText(args, argc, 0), ArgText(args, argc, 1), ArgText(args, argc, 2), 1));
}

BUILTIN(F_string_replace_all)
{
    SetText(result, Replaced(ArgText(args, argc, 0), ArgText(args, argc, 1), ArgText(args, argc, 2),
                             INT32_MAX));
}

BUILTIN(F_string_count)
{
    const VXText part = ArgText(args, argc, 0), text = ArgText(args, argc, 1);
    const size_t size = std::strlen(part);
    int32_t count = 0;
    for (const char* at = text; size > 0 && (at = std::strstr(at, part)) != nullptr; at += size)
        ++count;
    SetReal(result, count);
}

BUILTIN(F_string_repeat)
{
    const VXText text = ArgText(args, argc, 0);
    const int32_t count = std::max(ArgInt(args, argc, 1), 0);
    const size_t size = std::strlen(text);
    if (static_cast<int64_t>(size) * count > kLongestText) {
        Error_Showf("string_repeat :: %d times %d bytes is too long", count,
                    static_cast<int>(size));
        VXCreateString(&result, "");
        return;
    }
    VxString repeated;
    repeated.reserve(size * static_cast<size_t>(count));
    for (int32_t i = 0; i < count; ++i) repeated += text.get();
    SetText(result, repeated);
}

BUILTIN(F_string_lower)
{
    SetText(result, Turned(ArgText(args, argc, 0), Lower));
}
BUILTIN(F_string_upper)
{
    SetText(result, Turned(ArgText(args, argc, 0), Upper));
}
BUILTIN(F_string_digits)
{
    SetText(result, Filtered(ArgText(args, argc, 0), IsDigit));
}
BUILTIN(F_string_letters)
{
    SetText(result, Filtered(ArgText(args, argc, 0), IsLetter));
}
BUILTIN(F_string_lettersdigits)
{
    SetText(result,
            Filtered(ArgText(args, argc, 0), [](uint32_t c) { return IsDigit(c) || IsLetter(c); }));
}

constexpr BuiltinRow kRows[] = {
    {"string", F_string, 1},
    {"real", F_real, 1},
    {"int64", F_int64, 1},
    {"string_format", F_string_format, 3},
    {"chr", F_chr, 1},
    {"ord", F_ord, 1},
    {"string_length", F_string_length, 1},
    {"string_byte_length", F_string_byte_length, 1},
    {"string_byte_at", F_string_byte_at, 2},
    {"string_ord_at", F_string_ord_at, 2},
    {"string_char_at", F_string_char_at, 2},
    {"string_copy", F_string_copy, 3},
    {"string_pos", F_string_pos, 2},
    {"string_delete", F_string_delete, 3},
    {"string_insert", F_string_insert, 3},
    {"string_replace", F_string_replace, 3},
    {"string_replace_all", F_string_replace_all, 3},
    {"string_count", F_string_count, 2},
    {"string_repeat", F_string_repeat, 2},
    {"string_lower", F_string_lower, 1},
    {"string_upper", F_string_upper, 1},
    {"string_digits", F_string_digits, 1},
    {"string_letters", F_string_letters, 1},
    {"string_lettersdigits", F_string_lettersdigits, 1},
};

}  // namespace

void Function_Math_RegisterText()
{
    Function_AddRows(kRows);
}
