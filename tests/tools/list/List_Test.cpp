// The lister: every chunk, every record, a stable order, and text that is valid JSON
// whatever bytes the archive's names hold.

#include <gtest/gtest.h>

#include "Files/Base/Archive_Writer.h"
#include "tests/Files/Base/Archive_Sample.h"
#include "tools/list/Records.h"

namespace {

list::Value Tree(const archive::Content& content)
{
    list::Value tree;
    std::string error;
    EXPECT_TRUE(list::Describe(archive::Write(content), &tree, &error)) << error;
    return tree;
}

void ExpectHolds(const std::string& text, const std::string& part)
{
    EXPECT_NE(text.find(part), std::string::npos) << part;
}

TEST(List, JsonShowsChunksAndRecordsInTheirOrder)
{
    const std::string json = Tree(archive::SampleContent()).Json();
    size_t at = 0;
    for (const char* tag : {"GEN8", "OPTN", "LANG", "EXTN", "SOND", "AGRP", "SPRT", "BGND",
                            "PATH", "SCPT", "GLOB", "SHDR", "FONT", "TMLN", "OBJT", "ROOM",
                            "DAFL", "TPAG", "CODE", "VARI", "FUNC", "STRG", "TXTR", "AUDO"}) {
        const size_t next = json.find("\"" + std::string(tag) + "\":{\"offset\":", at);
        ASSERT_NE(next, std::string::npos) << tag;
        at = next;
    }
    ExpectHolds(json,
                "{\"object\":\"oChild\",\"x\":52,\"y\":104,\"objectIndex\":2,\"id\":100003,"
                "\"creationCode\":-1,\"scaleX\":1,\"scaleY\":1,\"colour\":4294967295,"
                "\"rotation\":0,\"preCreateCode\":-1}");
    ExpectHolds(json,
                "{\"event\":\"Collision\",\"type\":4,\"subtype\":2,\"object\":\"oChild\","
                "\"codeId\":1,\"actions\":[[1,603,7,0,0,1,2,\"\",1,1,-1,0,0,0]]}");
    ExpectHolds(json, "\"records\":[{\"name\":\"oBox\"");
    ExpectHolds(json, "},null,{\"name\":\"oChild\"");
    ExpectHolds(json, "\"masks\":[[\"#########.\",\".......#.#\"],");
    ExpectHolds(json, "\"roomOrder\":[1,0]");
    ExpectHolds(json, "{\"name\":\"limite\",\"value\":\"42\"}");
    EXPECT_EQ(json, Tree(archive::SampleContent()).Json());
}

TEST(List, TextHasOneLineARecord)
{
    const std::string text = Tree(archive::SampleContent()).Text();
    ExpectHolds(text, "\n    [1] null\n    [2] name=\"xClick\" flags=101 extension=\".wav\"");
    ExpectHolds(text, "\n        [1] object=\"oChild\" x=52 y=104 objectIndex=2 id=100003");
    ExpectHolds(text, "\nDAFL offset=");
    ExpectHolds(text, "\n  codes 7 8\n");
    EXPECT_EQ(text.substr(0, 12), "GEN8 offset=");
}

TEST(List, NamesOfAnyBytesStayValid)
{
    archive::Content content = archive::SampleContent();
    content.sounds[0].fileName =
        "q\"b\\n\n\x01 \xC3\xA7 \xF0\x9F\x8E\xB5 \xC0\x80 \xED\xA0\x80 \xFF";
    const std::string json = Tree(content).Json();
    ExpectHolds(json,
                "\"q\\\"b\\\\n\\u000a\\u0001 \xC3\xA7 \xF0\x9F\x8E\xB5 \\ufffd\\ufffd "
                "\\ufffd\\ufffd\\ufffd \\ufffd\"");
}

TEST(List, FindsTheArchiveInAProgramAndRefusesDamage)
{
    const std::vector<uint8_t> archive = archive::Write(archive::SampleContent());
    EXPECT_EQ(list::FindArchive(archive), archive);
    std::vector<uint8_t> program = {0x7F, 'E', 'L', 'F', 'F', 'O', 'R', 'M', 9, 9, 9, 9, 'x'};
    program.insert(program.end(), archive.begin(), archive.end());
    program.push_back('t');
    EXPECT_EQ(list::FindArchive(program), archive);
    program.resize(program.size() - 2);
    EXPECT_TRUE(list::FindArchive(program).empty());

    std::vector<uint8_t> cut(archive.begin(), archive.end() - 1);
    list::Value tree;
    std::string error;
    EXPECT_FALSE(list::Describe(list::FindArchive(cut), &tree, &error));
    EXPECT_EQ(error.substr(0, 26), "chunk FORM at offset 0: it") << error;
}

}  // namespace
