// Which path a name means, and which names mean none.

#include <string>

#include "tests/Files/IO/support_Folders.h"

namespace {

class FileNames : public FoldersTest {
protected:
    std::string Save(const std::string& name, size_t size = kPathSize)
    {
        return MappedPath(GetSaveFileName, name.c_str(), size).operator const char*();
    }
    std::string Bundle(const std::string& name)
    {
        return MappedPath(GetBundleFileName, name.c_str()).operator const char*();
    }
    std::string Line(const std::string& name)
    {
        return "Error! not allowing save with filename '" + name + "'\n";
    }
};

TEST_F(FileNames, EachNameHasAPlaceForSavingAndOneInTheBundle)
{
    struct Case {
        const char *name, *rest;
    };
    for (const Case& c :
         {Case{"settings.ini", "settings.ini"}, Case{"sub/deep/a.txt", "sub/deep/a.txt"},
          Case{"sub\\deep\\a.txt", "sub/deep/a.txt"}, Case{"./a.txt", "a.txt"},
          Case{"sub/../a.txt", "a.txt"}, Case{"../game/a.txt", "a.txt"}, Case{"a..b", "a..b"},
          Case{"...", "..."}, Case{"sub/", "sub/"},
          Case{"na\xC3\xAFve \xF0\x9F\x98\x80.txt", "na\xC3\xAFve \xF0\x9F\x98\x80.txt"}}) {
        EXPECT_EQ(Save(c.name), Saved(c.rest).string()) << c.name;
        EXPECT_EQ(Bundle(c.name), Bundled(c.rest).string()) << c.name;
        EXPECT_EQ(Save(Saved(c.rest).string()), Saved(c.rest).string()) << "a path of its own";
        EXPECT_EQ(Save(Bundled(c.rest).string()), Saved(c.rest).string());
        EXPECT_EQ(Bundle(Bundled(c.rest).string()), Bundled(c.rest).string());
    }
    EXPECT_FALSE(Said("not allowing"));
    EXPECT_EQ(std::string(SavePrePend()), Saved("").string());
    EXPECT_TRUE(Said("SavePrePend = " + Saved("").string() + "\n"));
}

TEST_F(FileNames, OtherNamesAreRefusedInWords)
{
    const std::string outside = (root_ / "other.txt").string();
    for (const std::string& name :
         {std::string(), std::string("../other.txt"), std::string("a/../../other.txt"),
          std::string("..\\..\\other.txt"), std::string(".."), outside, std::string("/etc/passwd"),
          (root_ / "gameother.txt").string(), std::string("C:\\other.txt"), std::string("c:other"),
          std::string("\\\\server\\other"), std::string("bad\xFF.txt"), std::string("cut\xC3"),
          std::string("over\xC0\xAE\xC0\xAE/long"), std::string("half\xED\xA0\x80"),
          std::string("line\nend"), std::string(4000, 'n'), std::string(4000, '/') + "n"}) {
        Lines().clear();
        EXPECT_EQ(Save(name), "") << name;
        EXPECT_TRUE(Said(Line(name).substr(0, 4000))) << name;
        EXPECT_EQ(Bundle(name), "") << name;
        Call("file_text_open_write", {name.c_str()});
        Call("ini_open", {name.c_str()});
        Call("ini_write_string", {"s", "k", "v"});
        Call("ini_close");
        EXPECT_EQ(Number("file_exists", {name.c_str()}), 0);
        EXPECT_EQ(Number("directory_create", {name.c_str()}), 0);
    }
    EXPECT_EQ(Count(root_), 0U) << "nothing was written anywhere";
    GetSaveFileName(nullptr, 0, nullptr);
    EXPECT_EQ(Number("file_text_open_write", {std::string(1100, 'n').c_str()}), -1);
    EXPECT_EQ(Save("a.txt", 8), "") << "a path that does not fit is no path";
}

TEST_F(FileNames, PathsThatThePlayerChose)
{
    const std::string chosen = (root_ / "\xC3\x89lan/Chosen.txt").string();
    const std::string spelled = (root_ / "\xC3\xA9LAN/chosen.TXT").string();
    AllowedFile_Add(AllowedFor::Reading, spelled.c_str(), false);
    EXPECT_EQ(Bundle(chosen), chosen) << "letters match whatever their case";
    EXPECT_EQ(Bundle(chosen + "x"), "");
    EXPECT_EQ(Save(chosen), "") << "for reading is not for writing";
    AllowedFile_Add(AllowedFor::Writing, (root_ / "items").c_str(), true);
    EXPECT_EQ(Save((root_ / "items/7/a.txt").string()), (root_ / "items/7/a.txt").string());
    EXPECT_EQ(Save((root_ / "item").string()), "");
    AllowedFile_Add(AllowedFor::Writing, Bundled("a.txt").c_str(), false);
    EXPECT_EQ(Save("a.txt"), Saved("a.txt").string());
    EXPECT_TRUE(Said("Warning! Save location - redirected to: '" + Saved("a.txt").string()));
    FileNames_Quit();
    EXPECT_EQ(Bundle(chosen), "") << "the end of the program forgets them";
}

TEST_F(FileNames, WithoutAProjectNamesLandInTheCurrentFolder)
{
    g_GameHeader.name = "";
    EXPECT_EQ(Save("a.txt"), Bundled("a.txt").string());
    EXPECT_EQ(Save("/etc/passwd"), "");
    for (const char* project : {"..", ".", "../evil", "a/b", "a\\b", "C:", "bad\xFF"}) {
        FileNames_Quit();
        g_GameHeader.name = project;
        EXPECT_EQ(SavePrePend(), "") << project << " is no name of a folder";
    }
}

// As HOME and the command line may spell them.
TEST_F(FileNames, FoldersThatAreSpelledTheLongWayRound)
{
    Stage_SetFolder((root_ / "elsewhere/").c_str());
    Stage_SetDataFolder((root_ / "game/..//data/./").c_str());
    g_WorkingDirectory = (root_ / "data/../game//").c_str();
    EXPECT_EQ(std::string(SavePrePend()), Saved("").string());
    Put(Bundled("a.txt"), "bundled");
    double file = Number("file_text_open_read", {"a.txt"});
    EXPECT_EQ(Text("file_text_readln", {file}), "bundled");
    file = Number("file_text_open_append", {"a.txt"});
    Call("file_text_write_string", {file, " and more"});
    Call("file_text_close", {file});
    EXPECT_EQ(Bytes(Saved("a.txt")), "bundled and more");
}

TEST_F(FileNames, ASaveFolderBelowTheGamesFolder)
{
    Stage_SetDataFolder((root_ / "game/data/").c_str());
    const std::string path = (root_ / "game/data/MarlowickGame/a.txt").string();
    EXPECT_EQ(Save("a.txt"), path);
    EXPECT_EQ(Save(path), path) << "not sent into itself";
}

TEST_F(FileNames, PartsOfNames)
{
    struct Case {
        const char *function, *path, *expected;
    };
    for (const Case& c :
         {Case{"filename_name", "a/b\\c.txt", "c.txt"}, Case{"filename_name", "c", "c"},
          Case{"filename_name", "a/", ""}, Case{"filename_path", "a\\b/c.txt", "a/b/"},
          Case{"filename_path", "nowhere.txt", ""}, Case{"filename_dir", "a\\b\\c", "a/b"},
          Case{"filename_dir", "/c", ""}, Case{"filename_drive", "C:\\x", "C:"},
          Case{"filename_drive", "x/C:", ""}, Case{"filename_drive", "", ""},
          Case{"filename_ext", "a.b.txt", ".txt"}, Case{"filename_ext", "a", ""},
          Case{"filename_ext", "a.", "."}})
        EXPECT_EQ(Text(c.function, {c.path}), c.expected) << c.function << " " << c.path;
    const auto change = [this](const char* path, const char* extension) {
        return Text("filename_change_ext", {path, extension});
    };
    EXPECT_EQ(change("a\\b.png", ".txt"), "a/b.txt");
    EXPECT_EQ(change("a.b", "txt"), "atxt") << "only a name without a dot gets one";
    EXPECT_EQ(change("a", "txt"), "a.txt");
    EXPECT_EQ(change("a", ".txt"), "a.txt");
    EXPECT_EQ(change("a", ""), "a");
    EXPECT_EQ(change("a.b", ""), "a");
    Put(Bundled("here.txt"), "");
    EXPECT_EQ(Text("filename_path", {"here.txt"}), Bundled("").string());
    Put(Saved("here.txt"), "");
    EXPECT_EQ(Text("filename_dir", {"here.txt"}) + "/", Saved("").string());
}

TEST_F(FileNames, Masks)
{
    struct Case {
        const char *name, *mask;
        bool matches;
    };
    for (const Case& c :
         {Case{"a.txt", "*.txt", true}, Case{"a.txt", "*.TXT", true}, Case{"a", "*.*", true},
          Case{"", "*", true}, Case{"a", "", false}, Case{"abcabd", "*abd", true},
          Case{"abcab", "*abd", false}, Case{"\xC3\xA9", "?", true}, Case{"ab", "?", false},
          Case{"ab", "a?*", true}, Case{"a", "a?*", false}, Case{"aXbXc", "a*b*c", true},
          Case{"aXbX", "a*b*c", false}})
        EXPECT_EQ(MatchesMask(c.name, c.mask), c.matches) << c.name << " " << c.mask;
}

}  // namespace
