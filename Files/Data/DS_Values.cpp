#include "Files/Data/DS_Values.h"

#include <zlib.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <utility>

#include "Files/Base/Console.h"
#include "Files/Base/RValue_Internal.h"

double ds_precision = 1e-8;

namespace {

constexpr int kDeepest = 64;  // arrays within arrays that a stream carries
constexpr char kDigits[] = "0123456789ABCDEF";

// Stands as the owner of arrays that a container holds: a script that changes such an
// array gets a copy of its own.
RValue g_containers;

int SignOf(double number)
{
    return number < 0 ? -1 : 1;
}
template <class T>
int Order(T a, T b)
{
    return a < b ? -1 : a > b;
}

bool IsFloating(uint32_t kind)
{
    return kind == VALUE_REAL || kind == VALUE_BOOL;
}
bool IsInteger(uint32_t kind)
{
    return kind == VALUE_INT32 || kind == VALUE_INT64;
}

double AsReal(const RValue& value)
{
    switch (value.Kind()) {
        case VALUE_INT32:
            return value.i32;
        case VALUE_INT64:
            return static_cast<double>(value.i64);
        default:
            return value.real;
    }
}
int64_t AsInteger(const RValue& value)
{
    if (IsFloating(value.Kind())) return TruncateToInt64(value.real);
    return value.Kind() == VALUE_INT32 ? value.i32 : value.i64;
}

int CompareNumbers(const RValue& a, const RValue& b, double epsilon)
{
    const uint32_t kindA = a.Kind(), kindB = b.Kind();
    if (IsFloating(kindA) && IsFloating(kindB)) {
        const double apart = a.real - b.real;
        return epsilon >= std::fabs(apart) ? 0 : SignOf(apart);
    }
    const bool single =
        (kindA == VALUE_INT32 && IsFloating(kindB)) || (kindB == VALUE_INT32 && IsFloating(kindA));
    if (single) {
        const float apart = static_cast<float>(AsReal(a)) - static_cast<float>(AsReal(b));
        return static_cast<float>(epsilon) >= std::fabs(apart) ? 0 : SignOf(apart);
    }
    return Order(AsInteger(a), AsInteger(b));
}

const char* TextOf(const RValue& value)
{
    const char* text = VXGetText(&value);
    return text ? text : "";
}

uint32_t HashBytes(const void* bytes, size_t size)
{
    return static_cast<uint32_t>(
        ~crc32(0, static_cast<const Bytef*>(bytes), static_cast<uInt>(size)));
}

// The value of a hexadecimal digit, -1 for any other character.
int DigitOf(char c)
{
    const char* const at = c ? std::strchr(kDigits, c) : nullptr;
    return at ? static_cast<int>(at - kDigits) : -1;
}

}  // namespace

DSValue::DSValue(const RValue& value, uint32_t mark)
{
    COPY_RValue(&value_, &value);
    SetMark(mark);
    if (value_.Kind() == VALUE_ARRAY && value_.array && value_.array->owner == &value_)
        value_.array->owner = &g_containers;
}

DSValue& DSValue::operator=(DSValue from) noexcept
{
    std::swap(value_, from.value_);
    return *this;
}

bool DSValue::IsNumber() const
{
    return IsFloating(value_.Kind()) || IsInteger(value_.Kind());
}

void DSValue::PutIn(RValue& result) const
{
    if (value_.Kind() == VALUE_ARRAY && value_.array && !value_.array->owner)
        value_.array->owner = &g_containers;
    ASSIGN_RValue(&result, &value_);
    result.kind = value_.Kind();
}

int Compare(const RValue& a, const RValue& b, double epsilon)
{
    const uint32_t kindA = a.Kind(), kindB = b.Kind();
    if ((IsFloating(kindA) || IsInteger(kindA)) && (IsFloating(kindB) || IsInteger(kindB)))
        return CompareNumbers(a, b, epsilon);
    if (kindA != kindB) return kindA == VALUE_REAL ? -1 : 1;
    switch (kindA) {
        case VALUE_STRING:
            return Order(std::strcmp(TextOf(a), TextOf(b)), 0);
        case VALUE_ARRAY:
            return a.array == b.array ? 0 : 1;
        case VALUE_PTR:
            return Order(reinterpret_cast<uintptr_t>(a.ptr), reinterpret_cast<uintptr_t>(b.ptr));
        case VALUE_UNDEFINED:
            return 0;
        default:
            return 1;
    }
}

uint32_t HashOf(const RValue& key)
{
    const uint32_t kind = key.Kind();
    if (kind == VALUE_UNDEFINED || kind == VALUE_UNSET) return 0;
    if (kind == VALUE_STRING) return HashBytes(TextOf(key), std::strlen(TextOf(key)));
    if (!IsFloating(kind) && !IsInteger(kind)) return HashBytes(&key.i64, sizeof key.i64);
    const double number = AsReal(key);
    return HashBytes(&number, sizeof number);
}

// ---- the stream

void CStream::Append(const void* bytes, size_t size)
{
    if (size == 0) return;
    const size_t end = bytes_.size();
    if (end + size > bytes_.capacity()) bytes_.reserve(std::max(end * 2, end + size));
    bytes_.resize(end + size);
    std::memcpy(bytes_.data() + end, bytes, size);
}

bool CStream::Take(void* out, size_t size)
{
    if (size > bytes_.size() - position_) return false;
    std::memcpy(out, bytes_.data() + position_, size);
    position_ += size;
    return true;
}

void CStream::WriteValue(const RValue& value, int depth)
{
    const uint32_t kind = value.Kind();
    const char* const text = TextOf(value);
    Write32(kind == VALUE_ARRAY && depth > kDeepest ? VALUE_UNDEFINED : kind);
    switch (kind) {
        case VALUE_REAL:
        case VALUE_BOOL:
        case VALUE_PTR:
        case VALUE_INT64:
            Append(&value.i64, sizeof value.i64);
            break;
        case VALUE_INT32:
            Append(&value.i32, sizeof value.i32);
            break;
        case VALUE_STRING:
            Write32(static_cast<uint32_t>(std::strlen(text)));
            Append(text, std::strlen(text));
            break;
        case VALUE_ARRAY: {
            if (depth > kDeepest) break;
            const int32_t rows = value.array ? value.array->rowCount : 0;
            Write32(static_cast<uint32_t>(rows));
            for (int32_t row = 0; row < rows; ++row) {
                const ArrayRow& cells = value.array->rows[row];
                Write32(static_cast<uint32_t>(cells.length));
                for (int32_t i = 0; i < cells.length; ++i) WriteValue(cells.cells[i], depth + 1);
            }
            break;
        }
        case VALUE_UNDEFINED:
            break;
        default:
            g_DebugConsole->Output("Attempting to WriteValue for unsupported type %d\n",
                                   static_cast<int>(kind));
    }
}

VxString CStream::ToText() const
{
    VxString text;
    text.reserve(bytes_.size() * 2);
    for (const uint8_t byte : bytes_) {
        text += kDigits[byte >> 4];
        text += kDigits[byte & 15];
    }
    return text;
}

bool CStream::FromText(const char* text)
{
    bytes_.clear();
    position_ = 0;
    for (; *text; text += 2) {
        const int high = DigitOf(text[0]), low = DigitOf(text[1]);
        if (high < 0 || low < 0) {
            bytes_.clear();
            return false;
        }
        bytes_.push_back(static_cast<uint8_t>(high << 4 | low));
    }
    return true;
}

bool CStream::ReadCount(uint32_t* count, size_t least)
{
    return Read32(count) && *count <= (bytes_.size() - position_) / least;
}

bool CStream::ReadArray(RValue* array, int depth)
{
    uint32_t rows = 0;
    if (depth >= kDeepest || !ReadCount(&rows)) return false;
    for (uint32_t row = 0; row < rows; ++row) {
        uint32_t length = 0;
        if (row >= INT32_MAX / kArrayRowStride || !ReadCount(&length)) return false;
        if (length > static_cast<uint32_t>(kArrayRowStride)) return false;
        for (uint32_t i = 0; i < length; ++i) {
            DSValue cell;
            if (!ReadValue(&cell, depth + 1)) return false;
            SET_RValue(array, &cell.Get(),
                       static_cast<int32_t>(row) * kArrayRowStride + static_cast<int32_t>(i));
        }
    }
    return true;
}

bool CStream::ReadValue(DSValue* value, int depth)
{
    uint32_t word = 0, size = 0;
    if (!Read32(&word)) return false;
    RValue read;
    bool whole = true;
    switch (read.kind = word & kKindMask) {
        case VALUE_REAL:
        case VALUE_BOOL:
        case VALUE_PTR:
        case VALUE_INT64:
            whole = Take(&read.i64, sizeof read.i64);
            break;
        case VALUE_INT32:
            whole = Take(&read.i32, sizeof read.i32);
            break;
        case VALUE_STRING: {
            whole = ReadCount(&size, 1);
            VxString text(whole ? size : 0, '\0');
            if (whole) Take(text.data(), size);
            VXCreateString(&read, text.c_str());
            break;
        }
        case VALUE_ARRAY:
            read.array = ARRAY_NEW(&read);
            whole = ReadArray(&read, depth);
            break;
        case VALUE_UNDEFINED:
            break;
        default:
            g_DebugConsole->Output("Attempting to ReadValue for unsupported type %d\n",
                                   static_cast<int>(read.kind));
            read.kind = VALUE_UNDEFINED;
    }
    if (whole) *value = DSValue(read);
    FREE_RValue(&read);
    return whole;
}

bool CStream::ReadValues(VxVector<DSValue>* values, uint32_t count)
{
    values->clear();
    if (count > (bytes_.size() - position_) / sizeof(uint32_t)) return false;
    values->reserve(count);
    for (uint32_t i = 0; i < count; ++i) {
        values->emplace_back();
        if (!ReadValue(&values->back())) return false;
    }
    return true;
}
