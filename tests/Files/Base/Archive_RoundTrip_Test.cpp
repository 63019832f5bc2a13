// Writing and reading back: what goes in comes out, and the bytes have the layout
// that the loaders read in place.

#include <gtest/gtest.h>

#include <cstring>

#include "Files/Base/Archive_Records.h"
#include "Files/Base/Archive_Writer.h"
#include "tests/Files/Base/Archive_Sample.h"

namespace archive {
namespace {

struct Chunk {
    std::string tag;
    uint32_t body, size;
};

std::vector<Chunk> Chunks(const std::vector<uint8_t>& bytes)
{
    std::vector<Chunk> chunks;
    for (uint32_t at = 8; at < bytes.size();) {
        const uint32_t size = WordAt(bytes, at + 4);
        chunks.push_back({std::string(bytes.begin() + at, bytes.begin() + at + 4), at + 8, size});
        at += 8 + size;
    }
    return chunks;
}

Chunk Find(const std::vector<uint8_t>& bytes, const std::string& tag)
{
    for (const Chunk& chunk : Chunks(bytes))
        if (chunk.tag == tag) return chunk;
    ADD_FAILURE() << "no chunk " << tag;
    return {};
}

TEST(ArchiveRoundTrip, EveryRecordComesBack)
{
    const Content content = SampleContent();
    Content back;
    std::string error;
    ASSERT_TRUE(Read(Write(content), &back, &error)) << error;
    EXPECT_TRUE(back.general == content.general);
    EXPECT_TRUE(back.options == content.options);
    EXPECT_TRUE(back.sounds == content.sounds);
    EXPECT_TRUE(back.waves == content.waves);
    EXPECT_TRUE(back.sprites == content.sprites);
    EXPECT_TRUE(back.backgrounds == content.backgrounds);
    EXPECT_TRUE(back.scripts == content.scripts);
    EXPECT_TRUE(back.globalCode == content.globalCode);
    EXPECT_TRUE(back.fonts == content.fonts);
    EXPECT_TRUE(back.objects == content.objects);
    EXPECT_TRUE(back.rooms == content.rooms);
    EXPECT_TRUE(back.pages == content.pages);
    EXPECT_EQ(Write(back), Write(content));
}

TEST(ArchiveRoundTrip, EmptyContentIsAnArchive)
{
    Content back;
    std::string error;
    ASSERT_TRUE(Read(Write(Content{}), &back, &error)) << error;
    EXPECT_TRUE(back == Content{});
}

TEST(ArchiveRoundTrip, SlotsWithoutARecordStayEmpty)
{
    Content content = SampleContent();
    content.pages.push_back({});
    content.pages.insert(content.pages.begin(), Page{});
    content.rooms.insert(content.rooms.begin(), Room{});
    content.waves.push_back({});
    Content back;
    std::string error;
    ASSERT_TRUE(Read(Write(content), &back, &error)) << error;
    EXPECT_TRUE(back == content);
}

TEST(ArchiveRoundTrip, OlderHeadersAreShorter)
{
    for (const int version : {7, 8, 10, 11, 12, 13, 14}) {
        Content content = SampleContent();
        content.general.bytecodeVersion = static_cast<uint8_t>(version);
        Content back;
        std::string error;
        ASSERT_TRUE(Read(Write(content), &back, &error)) << version << ": " << error;
        const General& general = back.general;
        EXPECT_EQ(general.roomOrder, content.general.roomOrder) << version;
        EXPECT_EQ(general.gameId, 4711U) << version;
        EXPECT_EQ(general.name, version >= 8 ? "SampleName" : "") << version;
        EXPECT_EQ(general.displayName, version >= 10 ? "Sample caption" : "") << version;
        EXPECT_EQ(general.activeTargets, version >= 11 ? 5U : 0U) << version;
        EXPECT_EQ(general.functionClasses, version >= 12 ? 6U : 0U) << version;
        EXPECT_EQ(general.steamAppId, version >= 13 ? 7U : 0U) << version;
        EXPECT_EQ(general.debuggerPort, version >= 14 ? 6502U : 0U) << version;
    }
}

TEST(ArchiveLayout, ChunksStandInTheirOrderWithTheirSizes)
{
    Content content = SampleContent();
    const std::vector<uint8_t> bytes = Write(content);
    EXPECT_EQ(WordAt(bytes, 0), ArchiveTag("FORM"));
    EXPECT_EQ(WordAt(bytes, 4), bytes.size() - 8);
    std::string order;
    for (const Chunk& chunk : Chunks(bytes)) order += chunk.tag + " ";
    EXPECT_EQ(order,
              "GEN8 OPTN LANG EXTN SOND AGRP SPRT BGND PATH SCPT GLOB SHDR FONT TMLN OBJT ROOM "
              "DAFL TPAG CODE VARI FUNC STRG TXTR AUDO ");
    EXPECT_EQ(Find(bytes, "GEN8").size, 132U + 4 * 2);
    EXPECT_EQ(Find(bytes, "OPTN").size, 64U + 8 * 2);
    EXPECT_EQ(Find(bytes, "LANG").size, 12U);
    EXPECT_EQ(Find(bytes, "SOND").size, 4U + 4 * 3 + 36 * 2);
    EXPECT_EQ(Find(bytes, "BGND").size, 4U + 24 * 2);
    EXPECT_EQ(Find(bytes, "SCPT").size, 4U + 12 * 2);
    EXPECT_EQ(Find(bytes, "TPAG").size, 4U + 26 * 4);
    // Waves stand on words; nothing follows the last one.
    EXPECT_EQ(Find(bytes, "AUDO").size, 4U + 8 + (4 + 3 + 1) + (4 + 5));
    for (const char* empty : {"EXTN", "AGRP", "PATH", "SHDR", "TMLN"})
        EXPECT_EQ(Find(bytes, empty).size, 4U) << empty;
    for (const char* none : {"DAFL", "CODE", "VARI", "FUNC"})
        EXPECT_EQ(Find(bytes, none).size, 0U) << none;
}

TEST(ArchiveLayout, StoredWordsOfObjectsAndActions)
{
    const std::vector<uint8_t> bytes = Write(SampleContent());
    const Chunk objects = Find(bytes, "OBJT");
    EXPECT_EQ(WordAt(bytes, objects.body + 8), 0U) << "a record without a name is an empty slot";
    const uint32_t at = WordAt(bytes, objects.body + 4);
    const float floats[] = {0.5F, 0.1F};
    EXPECT_EQ(std::memcmp(bytes.data() + at + 44, floats, sizeof floats), 0);
    ASSERT_EQ(WordAt(bytes, at + 80), 13U);
    const uint32_t stepEvents = WordAt(bytes, at + 84 + 4 * 3);
    EXPECT_EQ(WordAt(bytes, stepEvents), 0U) << "a type without events has its own empty list";
    const uint32_t createEvent = WordAt(bytes, WordAt(bytes, at + 84) + 4);
    const uint32_t action = WordAt(bytes, createEvent + 8);
    const int32_t expected[14] = {1, 603, 7, 0, 0, 1, 2, 0, 0, 1, -1, 0, 0, 0};
    for (const uint32_t i : {0U, 1U, 2U, 3U, 4U, 5U, 6U, 8U, 9U, 10U, 11U, 12U, 13U})
        EXPECT_EQ(static_cast<int32_t>(WordAt(bytes, action + 4 * i)), expected[i]) << i;
}

TEST(ArchiveLayout, TextsStandOnceWithLengthAndEnd)
{
    Content content = SampleContent();
    content.sounds[2].name = "xMusic";
    const std::vector<uint8_t> bytes = Write(content);
    const Chunk sounds = Find(bytes, "SOND");
    const uint32_t first = WordAt(bytes, WordAt(bytes, sounds.body + 4));
    const uint32_t third = WordAt(bytes, WordAt(bytes, sounds.body + 12));
    EXPECT_EQ(first, third);
    EXPECT_EQ(WordAt(bytes, first - 4), 6U);
    EXPECT_STREQ(reinterpret_cast<const char*>(bytes.data()) + first, "xMusic");
}

TEST(ArchiveLayout, FontTableEndsItsChunk)
{
    const std::vector<uint8_t> bytes = Write(SampleContent());
    const Chunk fonts = Find(bytes, "FONT");
    for (uint32_t i = 0; i < 256; ++i) {
        uint16_t entry;
        std::memcpy(&entry, bytes.data() + fonts.body + fonts.size - 512 + 2 * i, 2);
        ASSERT_EQ(entry, i);
    }
}

}  // namespace
}  // namespace archive
