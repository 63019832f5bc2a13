// Writing where there is no room, no right and no folder.

#include <unistd.h>

#include <string>

#include "Files/IO/File_Disk.h"
#include "Files/IO/File_Zip.h"
#include "tests/Files/IO/support_Folders.h"
#include "tests/Files/IO/support_Zip.h"

namespace {

using std::filesystem::perms;

// As long as it lives, the rights of files count for the superuser too.
class PlainUser {
public:
    explicit PlainUser(const std::filesystem::path& folder) : root_(geteuid() == 0)
    {
        if (!root_) return;
        for (const auto& entry : std::filesystem::recursive_directory_iterator(folder))
            EXPECT_EQ(lchown(entry.path().c_str(), kNobody, kNobody), 0);
        EXPECT_EQ(chown(folder.c_str(), kNobody, kNobody), 0);
        EXPECT_EQ(seteuid(kNobody), 0);
    }
    ~PlainUser()
    {
        if (!root_) return;
        EXPECT_EQ(seteuid(0), 0);
    }

private:
    static constexpr uid_t kNobody = 65534;
    const bool root_;
};

class Failures : public FoldersTest {
protected:
    std::string WriteIni(const char* name)
    {
        Call("ini_open", {name});
        Call("ini_write_string", {"s", "k", "v"});
        return Text("ini_close");
    }
    void WriteText(const char* name, const char* text)
    {
        const double file = Number("file_text_open_write", {name});
        Call("file_text_write_string", {file, text});
        Call("file_text_close", {file});
    }
    void ExpectTold(const std::filesystem::path& path, const std::string& reason)
    {
        EXPECT_TRUE(Said("Could not write " + path.string() + ": " + reason));
        EXPECT_TRUE(Reports().empty()) << "the script goes on";
        Lines().clear();
    }
};

TEST_F(Failures, AFullDiskIsTold)
{
    std::filesystem::create_directories(Saved(""));
    for (const auto& path : {Saved("full"), Bundled("full")})
        std::filesystem::create_symlink("/dev/full", path);
    const std::string reason = "No space left on device";
    EXPECT_EQ(WriteIni("full"), "[s]\r\nk=\"v\"\r\n") << "the text is given all the same";
    ExpectTold(Saved("full"), reason);
    WriteText("full", std::string(100000, 'x').c_str());
    ExpectTold(Saved("full"), reason);
    Put(Saved("a"), "x");
    EXPECT_EQ(Number("file_copy", {"a", "full"}), -1);
    ExpectTold(Saved("full"), reason);
    EXPECT_EQ(Number("file_open_append", {"full"}), 1);
    Call("file_write_real", {1.0});
    ExpectTold(Bundled("full"), reason);
}

TEST_F(Failures, WithoutRightsTheOldContentStays)
{
    Put(Saved("locked/a"), "old");
    Put(Saved("read only"), "old");
    Put(Saved("secret"), "[s]\nold=1\n");
    Put(Bundled("secret"), "[s]\nbundled=1\n");
    std::filesystem::permissions(Saved("locked"), perms(0500));
    std::filesystem::permissions(Saved("read only"), perms(0400));
    std::filesystem::permissions(Saved("secret"), perms(0200));
    std::filesystem::permissions(Bundled(""), perms(0500));
    {
        const PlainUser user(root_);
        const std::string reason = "Permission denied";
        WriteIni("locked/new");
        ExpectTold(Saved("locked/new"), reason);
        WriteText("read only", "new");
        ExpectTold(Saved("read only"), reason);
        WriteText("locked/deep/new", "new");
        ExpectTold(Saved("locked/deep/new"), reason);
        EXPECT_EQ(Number("file_delete", {"locked/a"}), 0);
        EXPECT_EQ(Number("directory_create", {"locked/folder"}), 0);
        EXPECT_EQ(Number("file_attributes", {"read only", 1.0}), 1);
        EXPECT_EQ(Number("file_open_write", {"new"}), 0);
        ExpectTold(Bundled("new"), reason);
        Call("ini_open", {"secret"});
        EXPECT_EQ(Number("ini_key_exists", {"s", "bundled"}), 1) << "what can be read counts";
    }
    EXPECT_EQ(Bytes(Saved("locked/a")) + Bytes(Saved("read only")), "oldold");
    EXPECT_EQ(Count(root_), 4U);
}

TEST_F(Failures, LinksThatLeadNowhereGoWithTheirFolder)
{
    std::filesystem::create_directories(Saved("a"));
    std::filesystem::create_symlink("nowhere", Saved("a/link"));
    EXPECT_EQ(Number("directory_destroy", {"a"}), 1);
    EXPECT_FALSE(std::filesystem::exists(Saved("a")));
}

TEST_F(Failures, FoldersOfAnArchiveThatAreTooDeepAreNotMade)
{
    std::string deep;
    for (int i = 0; i < 30000; ++i) deep += "d/";
    Put(Bundled("pack.zip"), ZipOf({{deep, ""}, {"a", "x"}, {deep + "b", "x"}}));
    EXPECT_EQ(Number("zip_unzip", {"pack.zip", "out"}), -1);
    EXPECT_TRUE(Said("an entry can't be written"));
    EXPECT_FALSE(std::filesystem::exists(Saved("out/d")));
    EXPECT_EQ(Bytes(Saved("out/a")), "x");
}

}  // namespace
