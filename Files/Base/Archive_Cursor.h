#pragma once
// The one way in which foreign archive bytes are read: a cursor with bounds and
// with the name of its chunk for messages. The first fault is kept; after it all
// cursors of the image give nothing.

#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include "Files/Base/Archive_Records.h"

namespace archive {

// The bytes of an archive and the first fault found in them.
class Image {
public:
    Image(const uint8_t* bytes, uint32_t size) : bytes_(bytes), size_(size) {}

    const uint8_t* Bytes() const { return bytes_; }
    uint32_t Size() const { return size_; }
    bool Ok() const { return error_.empty(); }
    const std::string& Error() const { return error_; }
    // Keeps "chunk XXXX at offset N: ..." unless an earlier fault is kept.
    void Fail(uint32_t tag, uint32_t offset, const char* format, ...)
        __attribute__((format(printf, 4, 5)));

private:
    const uint8_t* bytes_;
    uint32_t size_;
    std::string error_;
};

// Which bytes of a chunk belong to a record. Each byte belongs to one record at
// most: this ends every walk that loops, and a record that the loaders overwrite
// can't damage another that was checked before.
class Claims {
public:
    Claims(uint32_t begin, uint32_t end) : room_(end - begin) {}
    // False when more bytes are claimed than the chunk has: records overlap.
    bool Add(uint32_t begin, uint32_t size);
    // The first two claims that overlap; false when there are none.
    bool FindOverlap(uint32_t* first, uint32_t* second);

private:
    struct Range {
        uint32_t begin, end;
    };
    std::vector<Range> ranges_;
    uint64_t room_;
};

class Cursor {
public:
    // Over [begin, end) of the image. With `claims`, what is taken is claimed.
    Cursor(Image* image, uint32_t tag, uint32_t begin, uint32_t end, Claims* claims = nullptr)
        : image_(image), tag_(tag), begin_(begin), end_(end), at_(begin), claims_(claims)
    {
    }

    bool Ok() const { return image_->Ok(); }
    uint32_t Offset() const { return at_; }  // from the archive's first byte
    uint32_t Left() const { return end_ - at_; }
    uint32_t Begin() const { return begin_; }
    uint32_t End() const { return end_; }
    Image& Source() const { return *image_; }
    uint32_t Tag() const { return tag_; }

    // `count` records of `size` bytes; null, and a fault about `what`, when the
    // bounds end before.
    const uint8_t* TakeBytes(uint64_t count, uint64_t size, const char* what);
    // A copy of the next record; zeros after a fault.
    template <class T>
    T Take(const char* what)
    {
        T record{};
        if (const uint8_t* bytes = TakeBytes(1, sizeof(T), what))
            std::memcpy(&record, bytes, sizeof(T));
        return record;
    }
    uint32_t Word(const char* what) { return Take<uint32_t>(what); }

    // A cursor on a record elsewhere in the same bounds; at the end, with a fault,
    // when `offset` lies outside.
    Cursor At(uint32_t offset, const char* what) const;

    void Fail(const char* format, ...) const __attribute__((format(printf, 2, 3)));

private:
    Image* image_;
    uint32_t tag_;
    uint32_t begin_, end_, at_;
    Claims* claims_;
};

// Visits a list, a count and that many offsets: visit(index, cursor) for each
// record, and for each entry of 0, an empty slot, empty(index).
template <class Visit, class Empty>
uint32_t EachRecord(Cursor& list, const char* what, Visit visit, Empty empty)
{
    const uint32_t count = list.Word(what);
    const uint8_t* offsets = list.TakeBytes(count, sizeof(ArchiveOffset), what);
    if (!offsets) return 0;
    for (uint32_t i = 0; i < count && list.Ok(); ++i) {
        ArchiveOffset offset;
        std::memcpy(&offset, offsets + i * sizeof offset, sizeof offset);
        if (offset == 0) {
            empty(i);
            continue;
        }
        Cursor record = list.At(offset, what);
        if (record.Ok()) visit(i, record);
    }
    return count;
}
template <class Visit>
uint32_t EachRecord(Cursor& list, const char* what, Visit visit)
{
    return EachRecord(list, what, visit, [](uint32_t) {});
}

// The chunks of an archive in their order. False, with a fault in the image, when the
// stored size of the whole is not the real one or a chunk leads outside. A reader
// passes over chunks of size 0, whatever their tag.
struct ChunkPlace {
    uint32_t tag;
    uint32_t offset;  // of the body
    uint32_t size;    // of the body
};
bool FindChunks(Image* image, std::vector<ChunkPlace>* chunks);

// The general header of any version: fields that the version lacks are 0. The
// cursor is left on the room order.
ArchiveGeneral TakeGeneral(Cursor& cursor);

}  // namespace archive
