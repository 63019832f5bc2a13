#include "Files/Base/Archive_Cursor.h"

#include <algorithm>
#include <cstdarg>
#include <cstdio>

namespace archive {

namespace {

// A tag as text; bytes that don't print become '?'.
std::string TagText(uint32_t tag)
{
    std::string text(4, '?');
    for (int i = 0; i < 4; ++i) {
        const char letter = static_cast<char>(tag >> (8 * i));
        if (letter >= ' ' && letter <= '~') text[i] = letter;
    }
    return text;
}

std::string FaultText(uint32_t tag, uint32_t offset, const char* format, va_list arguments)
{
    char detail[256], text[320];
    std::vsnprintf(detail, sizeof detail, format, arguments);
    std::snprintf(text, sizeof text, "chunk %.4s at offset %u: %s", TagText(tag).c_str(), offset,
                  detail);
    return text;
}

}  // namespace

void Image::Fail(uint32_t tag, uint32_t offset, const char* format, ...)
{
    if (!Ok()) return;
    va_list arguments;
    va_start(arguments, format);
    error_ = FaultText(tag, offset, format, arguments);
    va_end(arguments);
}

bool Claims::Add(uint32_t begin, uint32_t size)
{
    if (size == 0) return true;
    if (!ranges_.empty() && ranges_.back().end == begin)
        ranges_.back().end += size;
    else
        ranges_.push_back({begin, begin + size});
    if (size > room_) return false;
    room_ -= size;
    return true;
}

bool Claims::FindOverlap(uint32_t* first, uint32_t* second)
{
    const auto before = [](const Range& a, const Range& b) { return a.begin < b.begin; };
    if (!std::is_sorted(ranges_.begin(), ranges_.end(), before))
        std::sort(ranges_.begin(), ranges_.end(), before);
    for (size_t i = 1; i < ranges_.size(); ++i) {
        if (ranges_[i].begin >= ranges_[i - 1].end) continue;
        *first = ranges_[i - 1].begin;
        *second = ranges_[i].begin;
        return true;
    }
    return false;
}

const uint8_t* Cursor::TakeBytes(uint64_t count, uint64_t size, const char* what)
{
    if (!Ok()) return nullptr;
    if (size != 0 && count > Left() / size) {
        const auto wanted = static_cast<unsigned long long>(count * size);
        Fail("%s of %llu bytes leads outside, %u bytes are left", what, wanted, Left());
        return nullptr;
    }
    const uint32_t bytes = static_cast<uint32_t>(count * size);
    const uint8_t* place = image_->Bytes() + at_;
    if (claims_ && !claims_->Add(at_, bytes)) {
        Fail("%s overlaps another record or is listed twice", what);
        return nullptr;
    }
    at_ += bytes;
    return place;
}

Cursor Cursor::At(uint32_t offset, const char* what) const
{
    Cursor there = *this;
    if (offset < begin_ || offset >= end_) {
        there.at_ = end_;
        Fail("%s: offset %u lies outside the chunk, which ends at %u", what, offset, end_);
    } else {
        there.at_ = offset;
    }
    return there;
}

void Cursor::Fail(const char* format, ...) const
{
    char detail[256];
    va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(detail, sizeof detail, format, arguments);
    va_end(arguments);
    image_->Fail(tag_, at_, "%s", detail);
}

bool FindChunks(Image* image, std::vector<ChunkPlace>* chunks)
{
    constexpr uint32_t kForm = ArchiveTag("FORM");
    Cursor walk(image, kForm, 0, image->Size());
    const ArchiveChunk form = walk.Take<ArchiveChunk>("the archive's header");
    if (!image->Ok()) return false;
    if (form.size != walk.Left()) {
        image->Fail(kForm, 0, "its size is %u, but %u bytes follow", form.size, walk.Left());
        return false;
    }
    while (walk.Ok() && walk.Left() != 0) {
        const uint32_t start = walk.Offset();
        const ArchiveChunk chunk = walk.Take<ArchiveChunk>("a chunk's header");
        if (!walk.Ok()) break;
        if (chunk.size > walk.Left()) {
            image->Fail(chunk.tag, start, "its size is %u, but %u bytes are left", chunk.size,
                        walk.Left());
            break;
        }
        chunks->push_back({chunk.tag, walk.Offset(), chunk.size});
        walk.TakeBytes(chunk.size, 1, "a chunk's body");
    }
    return image->Ok();
}

ArchiveGeneral TakeGeneral(Cursor& cursor)
{
    ArchiveGeneral general{};
    Cursor peek(&cursor.Source(), cursor.Tag(), cursor.Offset(), cursor.End());
    const uint32_t version = peek.Take<uint16_t>("the version") >> 8;
    const uint32_t roomCount = ArchiveRoomCountOffset(version);
    if (const uint8_t* fields = cursor.TakeBytes(1, roomCount, "the general header"))
        std::memcpy(&general, fields, roomCount);
    if (version < 8) std::memset(general.guid, 0, sizeof general.guid);
    general.roomCount = cursor.Word("the room count");
    return general;
}

}  // namespace archive
