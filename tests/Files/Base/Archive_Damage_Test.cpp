// Damaged archives: each is refused with its chunk and offset, and none is read
// outside its block (the blocks below have no byte to spare, so that the address
// sanitizer sees a read outside).

#include <gtest/gtest.h>

#include <cstring>
#include <functional>
#include <memory>

#include "Files/Base/Archive_Records.h"
#include "Files/Base/Archive_Writer.h"
#include "tests/Files/Base/Archive_Sample.h"

namespace archive {
namespace {

std::string CheckExact(const std::vector<uint8_t>& bytes, size_t size)
{
    std::unique_ptr<uint8_t[]> block(new uint8_t[size]);
    std::memcpy(block.get(), bytes.data(), size);
    std::string error;
    const bool ok = Check(block.get(), static_cast<uint32_t>(size), &error);
    EXPECT_EQ(ok, error.empty());
    return error;
}

// A written sample whose words can be bent.
class Bent {
public:
    explicit Bent(const Content& content = SampleContent()) : bytes(Write(content)) {}
    uint32_t Word(uint32_t at) const
    {
        uint32_t word;
        std::memcpy(&word, bytes.data() + at, 4);
        return word;
    }
    Bent& Set(uint32_t at, uint32_t word)
    {
        std::memcpy(bytes.data() + at, &word, 4);
        return *this;
    }
    uint32_t Body(const char (&tag)[5]) const
    {
        for (uint32_t at = 8; at < bytes.size(); at += 8 + Word(at + 4))
            if (Word(at) == ArchiveTag(tag)) return at + 8;
        ADD_FAILURE() << "no chunk " << tag;
        return 0;
    }
    uint32_t Record(const char (&tag)[5], uint32_t index) const
    {
        return Word(Body(tag) + 4 + 4 * index);
    }
    std::string Error() const { return CheckExact(bytes, bytes.size()); }
    std::vector<uint8_t> bytes;
};

void ExpectRefused(const Bent& bent, const std::string& chunk, const std::string& words)
{
    const std::string error = bent.Error();
    EXPECT_EQ(error.substr(0, 21), "chunk " + chunk + " at offset ") << error;
    EXPECT_NE(error.find(words), std::string::npos) << error;
}

TEST(ArchiveDamage, EveryTruncationIsRefused)
{
    const std::vector<uint8_t> bytes = Write(SampleContent());
    EXPECT_EQ(CheckExact(bytes, bytes.size()), "");
    for (size_t size = 0; size < bytes.size(); ++size)
        ASSERT_NE(CheckExact(bytes, size), "") << size;
}

// With the stored size mended, only the chunk walk and the records can see it.
TEST(ArchiveDamage, TruncationBehindAMendedSizeIsReadInsideItsBlock)
{
    const std::vector<uint8_t> bytes = Write(SampleContent());
    for (size_t size = 8; size < bytes.size(); ++size) {
        std::vector<uint8_t> cut(bytes.begin(), bytes.begin() + static_cast<long>(size));
        const uint32_t form = static_cast<uint32_t>(size - 8);
        std::memcpy(cut.data() + 4, &form, 4);
        CheckExact(cut, cut.size());
    }
}

TEST(ArchiveDamage, FlippedBytesAreRefusedOrReadInsideTheirBlock)
{
    const std::vector<uint8_t> bytes = Write(SampleContent());
    int refused = 0;
    for (size_t at = 0; at < bytes.size(); ++at)
        for (const int flip : {0x01, 0x80, 0xFF}) {
            std::vector<uint8_t> damaged = bytes;
            damaged[at] = static_cast<uint8_t>(damaged[at] ^ flip);
            Content content;
            std::string error;
            const bool ok = Read(damaged, &content, &error);
            ASSERT_EQ(ok, error.empty()) << at;
            if (!ok) ++refused;
        }
    EXPECT_GT(refused, 1000);
}

TEST(ArchiveDamage, SizesAndCountsThatLeadOutside)
{
    Bent form;
    ExpectRefused(form.Set(4, 12), "FORM", "its size is 12");
    Bent chunk;
    ExpectRefused(chunk.Set(chunk.Body("OPTN") - 4, 0x7FFFFFFF), "OPTN", "its size is 2147483647");
    Bent rooms;
    ExpectRefused(rooms.Set(rooms.Body("GEN8") + 128, 0x40000001), "GEN8", "the room order");
    Bent list;
    ExpectRefused(list.Set(list.Body("SOND"), 0x40000000), "SOND", "the list of sounds");
    Bent frames;
    ExpectRefused(frames.Set(frames.Record("SPRT", 0) + 56, 0x40000000), "SPRT", "frames");
    Bent masks;
    ExpectRefused(masks.Set(masks.Record("SPRT", 0) + 8, 0xFFFF), "SPRT", "the masks");
    Bent glyphs;
    ExpectRefused(glyphs.Set(glyphs.Record("FONT", 0) + 40, 0x20000000), "FONT", "glyphs");
    Bent vertices;
    ExpectRefused(vertices.Set(vertices.Record("OBJT", 0) + 64, 0x20000000), "OBJT", "vertices");
    Bent types;
    ExpectRefused(types.Set(types.Record("OBJT", 0) + 80, 16), "OBJT", "16 event types");
    Bent views;
    ExpectRefused(views.Set(views.Word(views.Record("ROOM", 0) + 44), 9), "ROOM", "views");
    Bent wave;
    ExpectRefused(wave.Set(wave.Record("AUDO", 1), 6), "AUDO", "a wave");
    Bent constants;
    ExpectRefused(constants.Set(constants.Body("OPTN") + 60, 3), "OPTN", "a constant");
}

TEST(ArchiveDamage, OffsetsThatLeadOutside)
{
    Bent record;
    ExpectRefused(record.Set(record.Body("OBJT") + 4, 0x7FFFFFFF), "OBJT", "offset 2147483647");
    Bent other;
    ExpectRefused(other.Set(other.Body("ROOM") + 4, other.Body("SPRT")), "ROOM", "outside");
    Bent text;
    ExpectRefused(text.Set(text.Record("SCPT", 0), 0xFFFFFFF0), "SCPT", "the text of a name");
    Bent noName;
    ExpectRefused(noName.Set(noName.Record("SCPT", 0), 0), "SCPT", "no name");
    Bent entry;
    ExpectRefused(entry.Set(entry.Record("BGND", 0) + 16, entry.Record("TPAG", 0) + 1), "BGND",
                  "no page entry");
    Bent events;
    ExpectRefused(events.Set(events.Record("OBJT", 0) + 84, 4), "OBJT", "a list of events");
    Bent png;
    ExpectRefused(png.Set(png.Record("TXTR", 0) + 4, 3), "TXTR", "a page's picture");
}

TEST(ArchiveDamage, TextWithoutItsEnd)
{
    Bent bent;
    const uint32_t body = bent.Body("STRG"), end = body + bent.Word(body - 4);
    std::fill(bent.bytes.begin() + body + 4, bent.bytes.begin() + end, uint8_t{'x'});
    EXPECT_NE(bent.Error().find("has no end"), std::string::npos) << bent.Error();
}

TEST(ArchiveDamage, RecordsThatLoopOrOverlap)
{
    Bent twice;
    ExpectRefused(twice.Set(twice.Body("ROOM") + 8, twice.Record("ROOM", 0)), "ROOM", "overlaps");
    Bent itself;
    const uint32_t object = itself.Record("OBJT", 0);
    ExpectRefused(itself.Set(object + 84 + 8, object + 80), "OBJT", "");
    Bent shared;
    const uint32_t instances = shared.Word(shared.Record("ROOM", 0) + 48);
    ExpectRefused(shared.Set(instances + 8, shared.Word(instances + 4) + 8), "ROOM", "overlaps");
    Bent entries;
    ExpectRefused(entries.Set(entries.Body("TPAG") + 8, entries.Record("TPAG", 0) + 20), "TPAG",
                  "overlaps");
    Bent chunks;
    ExpectRefused(chunks.Set(chunks.Body("SCPT") - 8, ArchiveTag("GLOB")), "GLOB", "twice");
}

TEST(ArchiveDamage, ParentsThatLoop)
{
    Bent itself;
    ExpectRefused(itself.Set(itself.Record("OBJT", 0) + 24, 0), "OBJT", "loop");
    Bent pair;
    ExpectRefused(pair.Set(pair.Record("OBJT", 0) + 24, 2), "OBJT", "loop");
    Bent outside;
    EXPECT_EQ(outside.Set(outside.Record("OBJT", 0) + 24, 1000).Error(), "");
}

TEST(ArchiveDamage, NumbersThatSizeTables)
{
    Bent subtype;
    const uint32_t create = subtype.Word(subtype.Record("OBJT", 0) + 84);
    ExpectRefused(subtype.Set(subtype.Word(create + 4), 0x10000000), "OBJT", "event 268435456");
    Bent collision;
    const uint32_t list = collision.Word(collision.Record("OBJT", 0) + 84 + 16);
    ExpectRefused(collision.Set(collision.Word(list + 4), 3), "OBJT", "event 3 of type 4");
    Bent order;
    ExpectRefused(order.Set(order.Body("GEN8") + 132, 2), "GEN8", "room 2 of 2");
    Bent masks;
    const uint32_t sprite = masks.Record("SPRT", 0);
    ExpectRefused(masks.Set(sprite + 60 + 8, 3), "SPRT", "3 masks");
    Bent newer;
    ExpectRefused(newer.Set(newer.Body("GEN8") + 44, 2), "GEN8", "major version 2");
}

// Told outcomes that are not refusals.
TEST(ArchiveDamage, WhatTheLoadersAnswerThemselves)
{
    Bent unknown;
    EXPECT_EQ(unknown.Set(unknown.Body("SHDR") - 8, ArchiveTag("WHAT")).Error(), "");
    Bent page;
    page.bytes[page.Record("TPAG", 0) + 20] = 99;  // an index past the pages
    EXPECT_EQ(page.Error(), "");
    Bent options;
    EXPECT_EQ(options.Set(options.Body("OPTN") + 4, 3).Error(), "");
}

}  // namespace
}  // namespace archive
