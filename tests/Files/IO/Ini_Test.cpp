#include "Files/IO/Ini_File.h"

#include <cstring>

#include "tests/Files/Function/support_Builtins.h"

namespace {

struct IniFixture : testing::Test {
    void Parse(const std::string& text)
    {
        // On the heap without an end, so that a read behind it shows.
        char* exact = static_cast<char*>(std::malloc(text.size() ? text.size() : 1));
        std::memcpy(exact, text.data(), text.size());
        is_ini = ini.Parse(exact, static_cast<uint32_t>(text.size()));
        std::free(exact);
    }
    std::string Value(const char* key, const char* section = "s")
    {
        return ini.ReadString(section, key, "(none)");
    }
    IniText ini;
    bool is_ini = false;
};

TEST_F(IniFixture, ValuesAsTheyAreWritten)
{
    Parse(
        "\xEF\xBB\xBFstray=1\r\n[s]\r\n  key = value ; note\r\nquoted = \"two words\" ; note\r\n"
        "single='a \"b\" # c'\nempty=\"\"\nopen=\"to the end  \nplain = a b\t \n"
        "  # comment = no\n;also=no\nend=last");
    EXPECT_TRUE(is_ini);
    EXPECT_EQ(Value("stray"), "(none)") << "before the first section";
    EXPECT_EQ(Value("key"), "value");
    EXPECT_EQ(Value("quoted"), "two words");
    EXPECT_EQ(Value("single"), "a \"b\" # c");
    EXPECT_EQ(Value("empty"), "");
    EXPECT_EQ(Value("open"), "to the end  ");
    EXPECT_EQ(Value("plain"), "a b");
    EXPECT_EQ(Value("also"), "(none)");
    EXPECT_EQ(Value("end"), "last");
    EXPECT_EQ(Value("KEY"), "(none)") << "names are compared byte by byte";
}

TEST_F(IniFixture, KeysWithoutValuesAndAcrossLines)
{
    Parse("[s]\nabsent=\npresent=1\ncommented= # nothing\nno equals\nhere=2\ntail=");
    EXPECT_EQ(Value("absent"), "(none)");
    EXPECT_EQ(Value("present"), "1");
    EXPECT_EQ(Value("commented"), "(none)");
    EXPECT_EQ(Value("no equals\nhere"), "2") << "a line without = joins the next";
    EXPECT_EQ(Value("tail"), "") << "at the very end of the text";
}

TEST_F(IniFixture, SectionsAndTheLastOfAName)
{
    Parse("[s]\na=1\na=2\n[ spaced ]\r[empty]\n[s]\nb=3\n[open\nc=4");
    EXPECT_EQ(Value("b"), "3") << "the last section of the name";
    EXPECT_EQ(Value("a"), "(none)") << "the first one is hidden";
    EXPECT_NE(ini.FindSection(" spaced "), nullptr);
    EXPECT_NE(ini.FindSection("empty"), nullptr);
    EXPECT_EQ(ini.FindSection("open\nc=4"), nullptr) << "a header without its end";
    EXPECT_EQ(ini.Sections()->name, "s");
    Parse("[s]\na=1\na=2");
    EXPECT_EQ(Value("a"), "2");
    EXPECT_EQ(ini.ReadInteger("s", "a", 7), 2);
    EXPECT_EQ(ini.ReadInteger("s", "z", 7), 7);
}

TEST_F(IniFixture, TextsThatAreNoIni)
{
    for (const char* text :
         {"", "hello", "[", "a=1", "\xEF\xBB\xBF", "\xEF\xBB", "# [s]\n", "=\n=]["}) {
        Parse(text);
        EXPECT_FALSE(is_ini) << text;
        EXPECT_EQ(ini.Sections(), nullptr);
    }
    // Every cut of a text with all forms ends, and reads nothing behind the cut.
    const std::string whole = "\xEF\xBB\xBF#c\n[s] ;c\nk = \"v\" x\nj=' w\nl= #\nm=n#o\r\n[t]u=";
    for (size_t size = 0; size <= whole.size(); ++size) Parse(whole.substr(0, size));
    EXPECT_EQ(Value("u", "t"), "");
}

class IniBuiltins : public BuiltinsTest {
protected:
    void SetUp() override
    {
        BuiltinsTest::SetUp();
        folder_ = testing::TempDir() + "ini_data/";
        g_Host.files.MakeFolder(folder_.c_str(), 0755);
        g_Host.files.MakeFolder((folder_ + "MarlowickGame").c_str(), 0755);
        Stage_SetDataFolder(folder_.c_str());
        g_GameHeader.fileName = "MarlowickGame";
        g_WorkingDirectory = (folder_ + "bundle/").c_str();
        g_Host.files.MakeFolder(g_WorkingDirectory.c_str(), 0755);
    }
    void TearDown() override
    {
        for (const char* name :
             {"MarlowickGame/SaveGame.sav", "bundle/SaveGame.sav", "outside.sav"})
            g_Host.files.Delete((folder_ + name).c_str());
        VxString().swap(g_GameHeader.fileName);
        VxString().swap(g_WorkingDirectory);
        BuiltinsTest::TearDown();
    }
    void Write(const char* name, const std::string& text)
    {
        ASSERT_TRUE(g_Host.files.WriteAll((folder_ + name).c_str(), text.data(),
                                          static_cast<uint32_t>(text.size())));
    }
    std::string Speed()
    {
        return Text("ini_read_string", {"preferencias", "velocidade", "normal"});
    }
    std::string folder_;
};

TEST_F(IniBuiltins, AMissingFileGivesTheDefaults)
{
    Call("ini_open", {"SaveGame.sav"});
    EXPECT_EQ(Speed(), "normal");
    EXPECT_EQ(Number("ini_read_real", {"preferencias", "volume", 3.0}), 3);
    EXPECT_EQ(Text("ini_read_string", {"a", "b", 2.5}), "2.50");
    EXPECT_EQ(Number("ini_section_exists", {"preferencias"}), 0);
    EXPECT_EQ(Text("ini_close"), "");
    EXPECT_TRUE(Reports().empty());
    EXPECT_FALSE(g_Host.files.Exists((folder_ + "MarlowickGame/SaveGame.sav").c_str()));
}

TEST_F(IniBuiltins, TheSavedFileHidesTheOneBesideTheProgram)
{
    Write("bundle/SaveGame.sav", "[preferencias]\nvelocidade=slow\nvolume=0.5x\n");
    Call("ini_open", {"SaveGame.sav"});
    EXPECT_EQ(Speed(), "slow");
    EXPECT_EQ(Number("ini_read_real", {"preferencias", "volume", 3.0}), 0.5);
    EXPECT_EQ(Number("ini_key_exists", {"preferencias", "volume"}), 1);
    Write("MarlowickGame/SaveGame.sav", "[preferencias]\r\nvelocidade=\"fast\"\r\n");
    Call("ini_open", {"SaveGame.sav"});
    EXPECT_EQ(Speed(), "fast");
    EXPECT_EQ(Text("ini_close"), "[preferencias]\r\nvelocidade=\"fast\"\r\n");
}

TEST_F(IniBuiltins, NamesStayInsideTheirFolder)
{
    Write("outside.sav", "[preferencias]\nvelocidade=fast\n");
    for (const std::string& name : {std::string("../outside.sav"),
                                    std::string("x/../../outside.sav"), folder_ + "outside.sav"}) {
        Call("ini_open", {name.c_str()});
        EXPECT_EQ(Speed(), "normal") << name;
    }
    Call("ini_close");
}

TEST_F(IniBuiltins, ReadsWithoutAFileAreReported)
{
    EXPECT_EQ(Number("ini_read_real", {"a", "b", 4.0}), 4) << "the default all the same";
    ExpectReport("Trying to read from undefined INI file");
    EXPECT_EQ(Number("ini_key_exists", {"a", "b"}), 0);
    ExpectReport("Trying to read from undefined INI file");
    EXPECT_EQ(Text("ini_close"), "");
    Call("ini_open_from_string", {"[a]\nb=1"});
    EXPECT_EQ(Number("ini_read_real", {"a", "b", 4.0}), 1);
    Function_Init();
    EXPECT_EQ(Ini_Current(), nullptr) << "the end of the program drops it";
}

}  // namespace
