// Objects read from the records of an archive.

#include <cstring>

#include "Files/Base/Archive_Records.h"
#include "Files/Base/Archive_Writer.h"
#include "tests/Files/support_World.h"

namespace {

void Nothing(CInstance*, CInstance*) {}
const CodeRow kRows[] = {{"row0", Nothing}, {"row1", Nothing}};

class Object_Load_Test : public World {
protected:
    void Load(const archive::Content& content)
    {
        g_RunnerData.codeTable = kRows;
        g_RunnerData.codeCount = 2;
        bytes_ = archive::Write(content);
        for (size_t at = sizeof(ArchiveChunk); at < bytes_.size();) {
            ArchiveChunk chunk;
            std::memcpy(&chunk, &bytes_[at], sizeof chunk);
            at += sizeof chunk;
            if (chunk.tag == ArchiveTag("OBJT")) {
                ASSERT_TRUE(Object_Load(&bytes_[at], chunk.size, bytes_.data()));
                ASSERT_TRUE(Object_Prepare());
                return;
            }
            at += chunk.size;
        }
        FAIL() << "no objects";
    }
    std::vector<uint8_t> bytes_;  // names stay in the archive
};

TEST_F(Object_Load_Test, KeepsAllThatTheRecordsSay)
{
    archive::Content content;
    content.objects.resize(4);
    archive::Object& parent = content.objects[0];
    parent.name = "oParent";
    parent.depth = -20;
    parent.visible = false;
    archive::Object& child = content.objects[2];  // 1 stays an empty slot
    child.name = "oChild";
    child.spriteIndex = 7;
    child.maskIndex = 8;
    child.solid = child.persistent = true;
    child.parentIndex = 0;
    child.events[EVENT_ALARM] = {{3, 1}, {5, -1}, {7, 99}};
    child.events[EVENT_COLLISION] = {{2, 0}};
    Load(content);

    EXPECT_EQ(Object_Count(), 4);
    EXPECT_EQ(Object_Data(1), nullptr);
    EXPECT_EQ(Object_Data(3), nullptr);
    EXPECT_STREQ(Object_Name(1), "<undefined>");
    EXPECT_EQ(Object_Find("oChild"), 2);
    EXPECT_EQ(Object_Find("oNobody"), -1);
    const CObjectSW& first = Object(0);
    EXPECT_EQ(first.depth, -20);
    EXPECT_FALSE(first.Visible() || first.Solid() || first.Persistent());
    EXPECT_EQ(first.parent, nullptr);
    const CObjectSW& second = Object(2);
    EXPECT_TRUE(second.Visible() && second.Solid() && second.Persistent());
    EXPECT_EQ(second.spriteIndex, 7);
    EXPECT_EQ(second.maskIndex, 8);
    EXPECT_EQ(second.parent, &first);
    EXPECT_TRUE(second.IsOrDescendsFrom(0));
    EXPECT_FALSE(first.IsOrDescendsFrom(2));
    ASSERT_NE(second.OwnEvent(EVENT_ALARM, 3), nullptr);
    EXPECT_STREQ(second.OwnEvent(EVENT_ALARM, 3)->code->name, "row1");
    EXPECT_STREQ(second.OwnEvent(EVENT_ALARM, 3)->owner, "oChild");
    // A row out of the table, or none, is an event without code.
    for (const int32_t subtype : {-1, 0, 4, 5, 7, 8})
        EXPECT_EQ(second.OwnEvent(EVENT_ALARM, subtype), nullptr) << subtype;
    EXPECT_TRUE(Has_Event(2, EVENT_COLLISION, 2));
}

}  // namespace
