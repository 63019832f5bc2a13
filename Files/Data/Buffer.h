#pragma once
// Blocks of raw bytes that scripts read and write by type, little-endian, at a position
// that moves on.

#include <cstdint>

#include "Files/Base/RValue.h"
#include "Platform/MemoryManager.h"

enum BufferType : int32_t {
    buffer_fixed = 0,    // a write that does not fit fails
    buffer_grow = 1,     // the size doubles until it fits
    buffer_wrap = 2,     // position and bytes go on at the start
    buffer_fast = 3,     // as fixed, for bytes alone
    buffer_vbuffer = 4,  // as fixed, for vertices
};

enum BufferData : int32_t {
    buffer_u8 = 1,
    buffer_s8 = 2,
    buffer_u16 = 3,
    buffer_s16 = 4,
    buffer_u32 = 5,
    buffer_s32 = 6,
    buffer_f16 = 7,  // not supported
    buffer_f32 = 8,
    buffer_f64 = 9,
    buffer_bool = 10,
    buffer_string = 11,  // with a zero behind it
    buffer_u64 = 12,
    buffer_text = 13,  // without
};

enum BufferSeek : int32_t {
    buffer_seek_start = 0,
    buffer_seek_relative = 1,
    buffer_seek_end = 2,
};

int32_t Buffer_SizeOf(int32_t data);  // bytes of one value; 0 for texts and unknown types

class Buffer_Standard {
public:
    static constexpr int32_t kLargestAlignment = 1024;

    enum Outcome : int32_t { Done = 0, BadValue = -1, NoRoom = -2 };

    // A size of at least 1; an alignment that is a power of two up to the largest.
    Buffer_Standard(int32_t size, BufferType type, int32_t alignment);
    ~Buffer_Standard() { MemoryManager::Free(raw_); }
    Buffer_Standard(const Buffer_Standard&) = delete;
    Buffer_Standard& operator=(const Buffer_Standard&) = delete;

    int32_t Size() const { return size_; }
    int32_t Used() const { return used_; }  // the highest position that was written
    int32_t Tell() const { return seek_; }
    int32_t Alignment() const { return alignment_; }
    BufferType Type() const { return type_; }

    Outcome Write(int32_t data, const RValue& value);
    // False outside the buffer and for an unknown type. The caller releases the value.
    bool Read(int32_t data, RValue* value);
    void Seek(int32_t base, int32_t offset);
    // At a place of their own: unaligned, and the position stays.
    bool Peek(int32_t offset, int32_t data, RValue* value);
    Outcome Poke(int32_t offset, int32_t data, const RValue& value);

    void Resize(int32_t size);
    // Bytes at a place, as far as they fit: a growing buffer grows, a wrapping one goes on
    // at its start.
    void PutBytes(int32_t offset, const uint8_t* bytes, size_t size);
    // One value over and over, each aligned, within `size` bytes.
    void Fill(int32_t offset, int32_t data, const RValue& value, int32_t size);
    // A copy of a part. A negative start counts as 0, one past the end as the last byte, a
    // negative length as the whole size; a wrapping buffer is read round its end.
    VxVector<uint8_t> Slice(int32_t start, int32_t length) const;

private:
    using Bytes = VxVector<uint8_t>;
    struct Place {
        int32_t seek, shift, alignment;
    };
    Place Here() const { return {seek_, shift_, alignment_}; }
    void GoTo(const Place& place);
    void GoTo(int32_t offset) { GoTo({offset, 0, 1}); }

    void Align();
    void WrapSeek();
    bool Reserve(size_t width);  // room for that many bytes at the position
    void Put(const uint8_t* bytes, size_t size);
    bool Take(uint8_t* bytes, size_t size);
    bool TakeText(bool toZero, RValue* value);
    bool Convert(int32_t data, const RValue& value, Bytes* bytes) const;

    void* raw_ = nullptr;
    uint8_t* data_ = nullptr;  // the first aligned byte of the block
    int32_t size_ = 0, used_ = 0, seek_ = 0;
    int32_t alignment_;
    int32_t shift_ = 0;  // of the position against the grid of alignment, after wraps
    BufferType type_;
};

// ---- the table of buffers, by id
int32_t Buffer_Add(Buffer_Standard* buffer);  // the first free id
Buffer_Standard* Buffer_Find(int32_t id);     // null for a free one and outside the table
void Buffer_Delete(int32_t id);
void Buffer_Quit();
