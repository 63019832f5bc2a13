#include "Files/Data/Buffer.h"

#include <algorithm>
#include <cstring>

#include "Files/Data/DS_Tables.h"

namespace {

constexpr int32_t kWidths[] = {0, 1, 1, 2, 2, 4, 4, 0, 4, 8, 1, 0, 8, 0};  // by BufferData

DSTable<Buffer_Standard> g_buffers;

bool IsText(int32_t data)
{
    return data == buffer_string || data == buffer_text;
}

int64_t SignExtended(uint64_t bits, int32_t width)
{
    const int shift = 64 - 8 * width;
    return static_cast<int64_t>(bits << shift) >> shift;
}

RValue Integer(uint64_t bits)
{
    RValue value(0.0);
    value.i64 = static_cast<int64_t>(bits);
    value.kind = VALUE_INT64;
    return value;
}

// The value that such bytes stand for.
RValue ValueOf(int32_t data, const uint8_t (&bytes)[8])
{
    uint64_t bits = 0;
    float single = 0;
    double real = 0;
    std::memcpy(&bits, bytes, sizeof bits);
    switch (data) {
        case buffer_s8:
        case buffer_s16:
        case buffer_s32:
            return RValue(static_cast<double>(SignExtended(bits, Buffer_SizeOf(data))));
        case buffer_u32:
        case buffer_u64:
            return Integer(bits);
        case buffer_f32:
            std::memcpy(&single, bytes, sizeof single);
            return RValue(single);
        case buffer_f64:
            std::memcpy(&real, bytes, sizeof real);
            return RValue(real);
        case buffer_bool:
            return RValue(bits != 0 ? 1.0 : 0.0);
        default:
            return RValue(static_cast<double>(bits));
    }
}

}  // namespace

int32_t Buffer_SizeOf(int32_t data)
{
    return data >= 0 && data < static_cast<int32_t>(std::size(kWidths)) ? kWidths[data] : 0;
}

Buffer_Standard::Buffer_Standard(int32_t size, BufferType type, int32_t alignment)
    : alignment_(alignment), type_(type)
{
    Resize(size);
}

void Buffer_Standard::GoTo(const Place& place)
{
    seek_ = place.seek;
    shift_ = place.shift;
    alignment_ = place.alignment;
}

void Buffer_Standard::WrapSeek()
{
    if (type_ != buffer_wrap || seek_ < size_) return;
    const int64_t wraps = seek_ / size_;
    shift_ = static_cast<int32_t>((shift_ + wraps * size_) % alignment_);
    seek_ %= size_;
}

void Buffer_Standard::Align()
{
    const int64_t up = int64_t{seek_} + alignment_ - 1 + shift_;
    seek_ = static_cast<int32_t>(
        std::min((up & ~int64_t{alignment_ - 1}) - shift_, int64_t{INT32_MAX}));
    WrapSeek();
}

// False when the value has no such form.
bool Buffer_Standard::Convert(int32_t data, const RValue& value, Bytes* bytes) const
{
    const int32_t width = Buffer_SizeOf(data);
    if (type_ == buffer_fast && width != 1) return false;
    if (IsText(data)) {
        const char* const text = VXGetText(&value);
        if (!text) return false;
        bytes->assign(text, text + std::strlen(text) + (data == buffer_string ? 1 : 0));
        return true;
    }
    if (width == 0) return false;
    uint64_t bits = 0;
    if (data == buffer_f32) {
        const auto single = static_cast<float>(REAL_RValue(&value));
        std::memcpy(&bits, &single, sizeof single);
    } else if (data == buffer_f64) {
        const double real = REAL_RValue(&value);
        std::memcpy(&bits, &real, sizeof real);
    } else if (data == buffer_bool) {
        bits = BOOL_RValue(&value) ? 1 : 0;
    } else {
        bits = static_cast<uint64_t>(INT64_RValue(&value));
    }
    for (int32_t i = 0; i < width; ++i) bytes->push_back(static_cast<uint8_t>(bits >> (8 * i)));
    return true;
}

bool Buffer_Standard::Reserve(size_t width)
{
    if (type_ == buffer_wrap) return true;
    const int64_t end = int64_t{seek_} + static_cast<int64_t>(width);
    if (end <= size_) return type_ == buffer_grow || seek_ < size_;
    if (type_ != buffer_grow || end > INT32_MAX / 2) return false;
    int64_t larger = size_;
    while (larger < end) larger *= 2;
    Resize(static_cast<int32_t>(larger));
    return true;
}

// Into the room that Reserve made.
void Buffer_Standard::Put(const uint8_t* bytes, size_t size)
{
    while (size > 0) {
        const size_t part = std::min(size, static_cast<size_t>(size_ - seek_));
        std::memcpy(data_ + seek_, bytes, part);
        seek_ += static_cast<int32_t>(part);
        used_ = std::max(used_, seek_);
        bytes += part;
        size -= part;
        WrapSeek();
    }
}

Buffer_Standard::Outcome Buffer_Standard::Write(int32_t data, const RValue& value)
{
    const Place before = Here();
    Bytes bytes;
    if (!Convert(data, value, &bytes)) return BadValue;
    Align();
    if (Reserve(bytes.size())) {
        Put(bytes.data(), bytes.size());
        return Done;
    }
    GoTo(before);
    return NoRoom;
}

bool Buffer_Standard::Take(uint8_t* bytes, size_t size)
{
    if (seek_ < 0 || seek_ >= size_) return false;
    if (type_ != buffer_wrap && size > static_cast<size_t>(size_ - seek_)) return false;
    for (size_t i = 0; i < size; ++i) {
        bytes[i] = data_[seek_++];
        WrapSeek();
    }
    return true;
}

// Up to the next zero, or up to what was written last.
bool Buffer_Standard::TakeText(bool toZero, RValue* value)
{
    if (seek_ < 0 || seek_ >= size_) return false;
    VxString text;
    const int32_t end = toZero ? size_ : std::max(used_, seek_);
    for (int32_t left = type_ == buffer_wrap && toZero ? size_ : end - seek_; left > 0; --left) {
        const char c = static_cast<char>(data_[seek_++]);
        WrapSeek();
        if (toZero && c == 0) break;
        text += c;
    }
    VXCreateString(value, text.c_str());
    return true;
}

bool Buffer_Standard::Read(int32_t data, RValue* value)
{
    uint8_t bytes[8] = {};
    const int32_t width = Buffer_SizeOf(data);
    Align();
    if (IsText(data)) return TakeText(data == buffer_string, value);
    if (width == 0 || !Take(bytes, static_cast<size_t>(width))) return false;
    *value = ValueOf(data, bytes);
    return true;
}

void Buffer_Standard::Seek(int32_t base, int32_t offset)
{
    if (base == buffer_seek_start) {
        seek_ = std::max(offset, 0);
        shift_ = 0;
    } else if (base == buffer_seek_end) {
        seek_ = size_ - std::clamp(offset, 0, size_);
        shift_ = 0;
    } else if (base == buffer_seek_relative) {
        int64_t to = int64_t{seek_} + offset;
        if (type_ == buffer_wrap) {
            const int64_t wraps = (to - (to < 0 ? size_ - 1 : 0)) / size_;
            to -= wraps * size_;
            shift_ = static_cast<int32_t>(((shift_ + wraps * size_) % alignment_ + alignment_) %
                                          alignment_);
        }
        seek_ = static_cast<int32_t>(std::clamp(to, int64_t{0}, int64_t{INT32_MAX}));
    }
}

bool Buffer_Standard::Peek(int32_t offset, int32_t data, RValue* value)
{
    const Place before = Here();
    GoTo(offset);
    const bool read = offset >= 0 && Read(data, value);
    GoTo(before);
    return read;
}

Buffer_Standard::Outcome Buffer_Standard::Poke(int32_t offset, int32_t data, const RValue& value)
{
    const Place before = Here();
    GoTo(offset);
    const Outcome outcome = offset >= 0 ? Write(data, value) : NoRoom;
    GoTo(before);
    return outcome;
}

void Buffer_Standard::Resize(int32_t size)
{
    const auto rawSize = static_cast<size_t>(size) + static_cast<size_t>(alignment_);
    void* raw = MemoryManager::Alloc(rawSize, true);
    const auto grid = static_cast<uintptr_t>(alignment_);
    auto* data =
        reinterpret_cast<uint8_t*>((reinterpret_cast<uintptr_t>(raw) + grid - 1) & ~(grid - 1));
    if (raw_) std::memcpy(data, data_, static_cast<size_t>(std::min(size, size_)));
    MemoryManager::Free(raw_);
    raw_ = raw;
    data_ = data;
    size_ = size;
    used_ = std::min(used_, size);
    if (seek_ >= size) seek_ = shift_ = 0;
}

void Buffer_Standard::PutBytes(int32_t offset, const uint8_t* bytes, size_t size)
{
    const Place before = Here();
    GoTo(std::max(offset, 0));
    WrapSeek();
    const bool whole = Reserve(size);
    const auto room = static_cast<size_t>(std::max(size_ - seek_, 0));
    Put(bytes, whole ? size : std::min(size, room));
    GoTo(before);
}

void Buffer_Standard::Fill(int32_t offset, int32_t data, const RValue& value, int32_t size)
{
    Bytes bytes;
    if (!Convert(data, value, &bytes) || bytes.empty()) return;
    const auto grid = static_cast<int64_t>(alignment_);
    const int64_t step = (static_cast<int64_t>(bytes.size()) + grid - 1) / grid * grid;
    const int64_t first = std::max(offset, 0);
    const int64_t end = std::min<int64_t>(first + size, INT32_MAX);
    for (int64_t at = first; at + static_cast<int64_t>(bytes.size()) <= end; at += step) {
        if (type_ != buffer_grow && type_ != buffer_wrap && at >= size_) break;
        PutBytes(static_cast<int32_t>(at), bytes.data(), bytes.size());
    }
}

VxVector<uint8_t> Buffer_Standard::Slice(int32_t start, int32_t length) const
{
    if (length < 0) length = size_;
    Bytes slice;
    if (type_ == buffer_wrap) {
        int32_t at = (start % size_ + size_) % size_;
        for (; length > 0; --length, at = (at + 1) % size_) slice.push_back(data_[at]);
        return slice;
    }
    start = std::clamp(start, 0, size_ - 1);
    slice.assign(data_ + start, data_ + start + std::min(length, size_ - start));
    return slice;
}

int32_t Buffer_Add(Buffer_Standard* buffer)
{
    return g_buffers.Put(buffer);
}
Buffer_Standard* Buffer_Find(int32_t id)
{
    return g_buffers.At(id);
}
void Buffer_Delete(int32_t id)
{
    VxDelete(g_buffers.Take(id));
}
void Buffer_Quit()
{
    g_buffers.DeleteAll();
}
