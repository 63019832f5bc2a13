#pragma once
// The one value type of the system: every script variable, argument, result and
// array cell. Compiled game code touches the layout directly, so it is binding.

#include <cstddef>
#include <cstdint>

struct RefString;
struct RefArray;
class VXObjectBase;

enum RValueKind : uint32_t {
    VALUE_REAL = 0,
    VALUE_STRING = 1,
    VALUE_ARRAY = 2,
    VALUE_PTR = 3,
    VALUE_VEC3 = 4,
    VALUE_UNDEFINED = 5,
    VALUE_OBJECT = 6,
    VALUE_INT32 = 7,
    VALUE_VEC4 = 8,
    VALUE_VEC44 = 9,
    VALUE_INT64 = 10,
    VALUE_ACCESSOR = 11,
    VALUE_NULL = 12,
    VALUE_BOOL = 13,
    VALUE_ITERATOR = 14,
    VALUE_UNSET = 0xFFFFFF,
};

inline constexpr uint32_t kKindMask = 0xFFFFFF;
inline constexpr uint32_t kFlagOwnsPtr = 8;             // a VALUE_PTR payload is deleted on release
inline constexpr int32_t ARRAY_INDEX_NONE = INT32_MIN;  // 0x80000000: no index was written
inline constexpr int32_t kArrayRowStride = 32000;       // flat index = row * 32000 + column

struct RValue {
    union {
        double real;  // kinds 0 and 13
        int64_t i64;
        int32_t i32;
        void* ptr;
        RefString* string;
        RefArray* array;
        VXObjectBase* object;
    };
    uint32_t flags;
    uint32_t kind;

    constexpr RValue() : real(0.0), flags(0), kind(VALUE_UNDEFINED) {}
    constexpr RValue(double value) : real(value), flags(0), kind(VALUE_REAL) {}

    uint32_t Kind() const { return kind & kKindMask; }
    bool NeedsRelease() const { return ((kind + 0xFFFFFF) & 0xFFFFFC) == 0; }

    // Operators of compiled code, for operands that are not both numbers. The
    // left operand is updated in place; an unsupported kind reports through the
    // error path and leaves it unchanged.
    RValue& operator+=(const RValue& right);
    RValue& operator-=(const RValue& right);
    RValue& operator*=(const RValue& right);
    RValue& operator/=(const RValue& right);
    RValue& operator++();
};
// Copies are bitwise and take no reference: COPY_RValue and FREE_RValue manage them.
static_assert(sizeof(RValue) == 16 && offsetof(RValue, flags) == 8 && offsetof(RValue, kind) == 12);

RValue operator+(const RValue& left, const RValue& right);  // the caller releases the result
RValue operator-(const RValue& left, const RValue& right);
RValue operator*(const RValue& left, const RValue& right);
RValue operator/(const RValue& left, const RValue& right);

struct RefString {
    char* text;  // zero-terminated UTF-8, owned, may be null
    int32_t refcount;
    int32_t size;  // strlen(text), 0 when null
};

struct ArrayRow {
    int32_t length;
    RValue* cells;
};

struct RefArray {
    int32_t refcount;
    ArrayRow* rows;
    RValue* owner;  // identity of the value that may write in place
    uint32_t visitStamp;
    int32_t rowCount;
};

// ---- life cycle
void FREE_RValue_Slow(RValue* value);  // for values that need release; sets nothing
inline void FREE_RValue(RValue* value)
{
    if (value->NeedsRelease()) FREE_RValue_Slow(value);
}
// Release and set to undefined with flags 0 and a zero payload.
inline void RELEASE_RValue(RValue* value)
{
    FREE_RValue(value);
    value->flags = 0;
    value->kind = VALUE_UNDEFINED;
    value->i64 = 0;
}
void COPY_RValue_Slow(RValue* dest, const RValue* src);   // for values that are no numbers
inline void COPY_RValue(RValue* dest, const RValue* src)  // dest is assumed released
{
    const uint32_t kind = src->Kind();
    if (kind == VALUE_REAL || kind == VALUE_BOOL)
        *dest = *src;
    else
        COPY_RValue_Slow(dest, src);
}
inline void ASSIGN_RValue(RValue* dest, const RValue* src)
{
    RELEASE_RValue(dest);
    COPY_RValue(dest, src);
}
void VXCreateString(RValue* value, const char* text);
const char* VXGetText(const RValue* value);  // null unless a string with a body

RefArray* ARRAY_NEW(RValue* owner);
RefArray* ARRAY_COPY(RefArray* source, RValue* owner);

// ---- array access; index is flat or ARRAY_INDEX_NONE
bool GET_RValue(RValue* out, RValue* value, int32_t index);
void SET_RValue(RValue* dest, const RValue* src, int32_t index);
RValue* ARRAY_LVAL(RValue* value, int32_t index);              // null for a negative row or column
const RValue* ARRAY_CELL(const RValue* value, int32_t index);  // read-only; null when out of range

// The last array access that failed; array_get tests and clears it.
struct ArrayError {
    bool failed;
    int32_t row, column, rowCount, length;  // length is -1 when the row does not exist
};
extern ArrayError g_ArrayError;

// ---- conversions (report through the error path on kinds they refuse)
double REAL_RValue_Slow(const RValue* value);
inline double REAL_RValue(const RValue* value)
{
    return value->Kind() == VALUE_REAL ? value->real : REAL_RValue_Slow(value);
}
int32_t INT32_RValue(const RValue* value);
int64_t INT64_RValue(const RValue* value);
void* PTR_RValue(const RValue* value);
bool BOOL_RValue(const RValue* value);

// ---- argument readers of built-ins; `args` is the argument array
bool VXGetBool(const RValue* args, int i);
int32_t VXGetInt32(const RValue* args, int i);
uint32_t VXGetUint32(const RValue* args, int i);
int64_t VXGetInt64(const RValue* args, int i);
double VXGetReal(const RValue* args, int i);
float VXGetFloat(const RValue* args, int i);
intptr_t VXGetPtrOrInt(const RValue* args, int i);

// Text of an argument: shared with the value for strings, otherwise a fresh
// print of the value that this object owns. Converts to const char*, never null.
class VXText {
public:
    VXText() = default;
    VXText(const char* text, bool owned) : text_(text), owned_(owned) {}
    ~VXText();
    VXText(const VXText&) = delete;
    VXText& operator=(const VXText&) = delete;
    VXText(VXText&& from) noexcept : text_(from.text_), owned_(from.owned_)
    {
        from.text_ = nullptr;
        from.owned_ = false;
    }
    const char* get() const { return text_ ? text_ : ""; }
    bool IsNull() const { return !text_; }
    operator const char*() const { return get(); }

private:
    const char* text_ = nullptr;
    bool owned_ = false;
};
VXText VXGetString(const RValue* args, int i);

double ToNumber(const RValue* value);
VXText ToText(const RValue* value);         // owned
const char* KindName(const RValue* value);  // "number", "string", ... or "unknown"

// ---- comparison
extern double g_MathEpsilon;  // default 1e-10
int VXCompareVal(const RValue* a, const RValue* b, double epsilon);

// ---- results of built-ins
inline void SetReal(RValue& result, double value)
{
    FREE_RValue(&result);
    result.real = value;
    result.flags = 0;
    result.kind = VALUE_REAL;
}
inline void SetBool(RValue& result, bool value)
{
    SetReal(result, value ? 1.0 : 0.0);
}

// Restores g_MathEpsilon, the array-error record and the print stamps; at start-up.
void RValue_Init();
