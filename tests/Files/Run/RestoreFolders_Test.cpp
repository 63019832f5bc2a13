// Files that were packed flat go back to their folders, and nothing else moves.

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <set>

#include "Files/Run/Run_Modules.h"
#include "Host/Host_Stage.h"

namespace {

namespace fs = std::filesystem;

class RestoreFoldersTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        folder_ = fs::path(testing::TempDir()) / ("restore-" + std::to_string(getpid()));
        fs::create_directories(folder_);
        Host_UseStage();
        Stage_Reset();
        Stage_SetFolder((folder_.string() + "/").c_str());
    }
    void TearDown() override
    {
        fs::permissions(folder_, fs::perms::owner_all);
        fs::remove_all(folder_);
        Stage_Quit();
    }
    void File(const std::string& name)
    {
        fs::create_directories((folder_ / name).parent_path());
        std::ofstream(folder_ / name) << name;
    }
    // Each file as "<path>=<content>".
    std::set<std::string> Tree()
    {
        std::set<std::string> tree;
        for (const auto& entry : fs::recursive_directory_iterator(folder_)) {
            if (!entry.is_regular_file()) continue;
            std::ifstream in(entry.path());
            const std::string text{std::istreambuf_iterator<char>(in), {}};
            tree.insert(fs::relative(entry.path(), folder_).string() + "=" + text);
        }
        return tree;
    }
    fs::path folder_;
};

using Files = std::set<std::string>;

TEST_F(RestoreFoldersTest, FilesMoveBelowTheFolder)
{
    File("music@xCapa.ogg");
    File("a@b@c.txt");
    File("plain.txt");
    File("sub/x@y.txt");  // not in the folder itself
    RestoreFolders();
    EXPECT_EQ(Tree(), (Files{"music/xCapa.ogg=music@xCapa.ogg", "a/b/c.txt=a@b@c.txt",
                             "plain.txt=plain.txt", "sub/x@y.txt=sub/x@y.txt"}));
    RestoreFolders();
    EXPECT_EQ(Tree().size(), 4U);
}

TEST_F(RestoreFoldersTest, NothingIsLostOrLeavesTheFolder)
{
    File("a@b.txt");
    File("a/b.txt");  // stands already
    File("plain@x.txt");
    File("plain");  // no folder can be made of it
    File("..@up.txt");
    File("@root.txt");
    File("end@");
    File("twice@@over");
    File(".hidden@x");
    const Files before = Tree();
    RestoreFolders();
    EXPECT_EQ(Tree(), before);
    EXPECT_FALSE(fs::exists(folder_.parent_path() / "up.txt"));
}

TEST_F(RestoreFoldersTest, ReadOnlyFolderIsLeftAlone)
{
    if (geteuid() == 0) GTEST_SKIP() << "rights do not bind this user";
    File("a@b.txt");
    fs::permissions(folder_, fs::perms::owner_read | fs::perms::owner_exec);
    RestoreFolders();
    EXPECT_TRUE(Stage_MessageBoxes().empty());
    EXPECT_EQ(Tree(), (Files{"a@b.txt=a@b.txt"}));
    fs::permissions(folder_, fs::perms::owner_all);
    fs::permissions(folder_ / "a@b.txt", fs::perms::owner_read);
    RestoreFolders();
    EXPECT_EQ(Tree(), (Files{"a@b.txt=a@b.txt"})) << "nor is a read-only file moved";
}

}  // namespace
