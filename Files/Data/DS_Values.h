#pragma once
// What the containers of scripts hold, how it is compared and hashed, and the stream
// that carries it as text.

#include <cstdint>

#include "Files/Base/RValue.h"
#include "Platform/MemoryManager.h"

extern double ds_precision;  // numbers no further apart are the same; 1e-8 at the start

// A mark on the kind word of an item: its number is the id of a map or list, which the
// item owns.
inline constexpr uint32_t kMarkMap = 0x80000000U, kMarkList = 0x40000000U;
inline constexpr uint32_t kMarks = kMarkMap | kMarkList;

// A value inside a container, with its mark; real 0 at first.
class DSValue {
public:
    DSValue() : value_(0.0) {}
    explicit DSValue(const RValue& value, uint32_t mark = 0);
    DSValue(const DSValue& from) : DSValue(from.value_, from.Mark()) {}
    DSValue(DSValue&& from) noexcept : value_(from.value_) { from.value_ = RValue(); }
    ~DSValue() { FREE_RValue(&value_); }
    DSValue& operator=(DSValue from) noexcept;

    const RValue& Get() const { return value_; }
    uint32_t Mark() const { return value_.kind & kMarks; }
    void SetMark(uint32_t mark) { value_.kind = value_.Kind() | mark; }
    bool IsNumber() const;
    // Gives a built-in's result a copy without the mark.
    void PutIn(RValue& result) const;

private:
    RValue value_;
};

// -1, 0 or 1. Numbers stand before everything else; kinds that do not compare are unequal.
int Compare(const RValue& a, const RValue& b, double epsilon);
inline int Compare(const DSValue& a, const RValue& b)
{
    return Compare(a.Get(), b, ds_precision);
}
// CRC-32 (ISO 3309), without its last inversion, of a text or of a number's 8 bytes.
uint32_t HashOf(const RValue& key);

// Bytes of a container, written and read in order, little-endian; as text two capital
// hexadecimal digits a byte.
class CStream {
public:
    void Write32(uint32_t word) { Append(&word, sizeof word); }
    void WriteValue(const RValue& value, int depth = 0);
    VxString ToText() const;

    // False, and an empty stream, for what is no such text.
    bool FromText(const char* text);
    bool Read32(uint32_t* word) { return Take(word, sizeof *word); }
    // A count of things that take at least `least` bytes each; false when the stream can't
    // hold so many.
    bool ReadCount(uint32_t* count, size_t least = 4);
    // False at the end of the stream.
    bool ReadValue(DSValue* value, int depth = 0);
    bool ReadValues(VxVector<DSValue>* values, uint32_t count);

private:
    void Append(const void* bytes, size_t size);
    bool Take(void* out, size_t size);
    bool ReadArray(RValue* array, int depth);

    VxVector<uint8_t> bytes_;
    size_t position_ = 0;
};
