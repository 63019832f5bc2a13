// Archives unpacked into the save folder, and those that are refused.

#include <string>

#include "Files/IO/File_Zip.h"
#include "tests/Files/IO/support_Folders.h"
#include "tests/Files/IO/support_Zip.h"

namespace {

class Zip : public FoldersTest {
protected:
    double Unpack(const std::string& archive)
    {
        Put(Bundled("pack.zip"), archive);
        return Number("zip_unzip", {"pack.zip", "out"});
    }
};

TEST_F(Zip, EntriesLandBelowTheTarget)
{
    const std::string text(5000, 'z');
    EXPECT_EQ(Unpack(ZipOf({{"folder/", ""},
                            {"folder\\deep/a.txt", text, true},
                            {"b.bin", std::string("\0\xFF", 2)},
                            {"empty", ""}},
                           "a comment PK\x05\x06")),
              3);
    EXPECT_EQ(Bytes(Saved("out/folder/deep/a.txt")), text);
    EXPECT_EQ(Bytes(Saved("out/b.bin")), std::string("\0\xFF", 2));
    EXPECT_TRUE(std::filesystem::exists(Saved("out/empty")));
}

TEST_F(Zip, NamesThatLeadOutRefuseTheWhole)
{
    for (const std::string& name :
         {std::string("../evil"), std::string("a/../../evil"), std::string("/evil"),
          std::string("\\evil"), std::string("C:evil"), std::string("a//b"), std::string("./a"),
          std::string(), std::string("a\0b", 3)}) {
        Lines().clear();
        EXPECT_EQ(Unpack(ZipOf({{"good", "x"}, {name, "evil"}})), -1) << name;
        EXPECT_TRUE(Said("Could not unpack " + Bundled("pack.zip").string() + ": ")) << name;
    }
    EXPECT_EQ(Count(root_), 1U) << "the archive alone: not even the good entry was written";
}

TEST_F(Zip, DamagedArchivesAreToldAndNeverReadOutside)
{
    EXPECT_EQ(Number("zip_unzip", {"none.zip", "out"}), -1);
    EXPECT_EQ(Unpack(ZipOf({{"a", "x", false, 1}})), -1);
    EXPECT_TRUE(Said("an entry is encrypted"));
    const std::string whole = ZipOf({{"a.txt", "stored"}, {"b.txt", std::string(300, 'b'), true}});
    const auto tryAll = [](const std::string& bytes) {
        const std::vector<uint8_t> block(bytes.begin(), bytes.end());
        VxVector<ZipEntry> entries;
        const auto size = static_cast<uint32_t>(block.size());
        if (Zip_List(block.data(), size, &entries)) return 0;
        int good = 0;
        for (const ZipEntry& entry : entries) {
            uint8_t* content = Zip_Unpack(block.data(), size, entry);
            good += content ? 1 : 0;
            MemoryManager::Free(content);
        }
        return good;
    };
    EXPECT_EQ(tryAll(whole), 2);
    for (size_t cut = 0; cut < whole.size(); ++cut) EXPECT_EQ(tryAll(whole.substr(0, cut)), 0);
    for (size_t at = 0; at < whole.size(); ++at) {
        std::string bent = whole;
        bent[at] = static_cast<char>(~bent[at]);
        tryAll(bent);
    }
    std::string content = whole;
    content[whole.find("stored")] = 'S';
    EXPECT_EQ(tryAll(content), 1) << "the check sum is checked";
    EXPECT_EQ(Unpack(content), -1);
    EXPECT_TRUE(Said("an entry is damaged"));
}

}  // namespace
