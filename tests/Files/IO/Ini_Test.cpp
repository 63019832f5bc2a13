#include "Files/IO/Ini_File.h"

#include <cstring>

#include "tests/Files/IO/support_Folders.h"

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

// One text, one section "s" with one key: what the key is called and what it holds.
TEST_F(IniFixture, OddLines)
{
    struct Line {
        const char *text, *key, *value;  // a null value: no such key
    };
    const Line lines[] = {
        {"k=v", "k", "v"},
        {"k=v\n", "k", "v"},
        {"k=v\r", "k", "v"},
        {"k=v\r\n", "k", "v"},
        {"k = v", "k", "v"},
        {"\t k\t=\t v\t ", "k", "v"},
        {"\r\n\r\nk=v", "k", "v"},
        {"two words=v", "two words", "v"},
        {"k=two  words", "k", "two  words"},
        {"k=v;note", "k", "v"},
        {"k=v#note", "k", "v"},
        {"k=v ; note", "k", "v"},
        {"k=;", "k", ""},
        {"k=;\n", "k", nullptr},
        {"k=", "k", ""},
        {"k= \t", "k", ""},
        {"k=\n", "k", nullptr},
        {"k=\r", "k", nullptr},
        {"k= # note\nl=w", "k", nullptr},
        {"k= # note\nl=w", "l", "w"},
        {"k=\nv\nl=w", "v\nl", "w"},
        {"k;=v", "k", "v"},
        {"k#;# =v", "k", "v"},
        {"k;x=v", "k;x", "v"},
        {";k=v", "k", nullptr},
        {"# note\rk=v", "k", "v"},
        {"; a=1 \\\nk=v", "k", "v"},
        {"a\nk=v", "a\nk", "v"},
        {"a\n;b\nk=v", "a\n;b\nk", "v"},
        {"=v", "", "v"},
        {"==v", "", "=v"},
        {"k==v", "k", "=v"},
        {"k=[v]", "k", "[v]"},
        {"k[0]=v", "k[0]", "v"},
        {"k=\"v\"", "k", "v"},
        {"k='v'", "k", "v"},
        {"k=\"v", "k", "v"},
        {"k=\"v\nl=w", "l", "w"},
        {"k='it\"s'", "k", "it\"s"},
        {"k=\"it's\"", "k", "it's"},
        {"k=\"a;b#c \" d", "k", "a;b#c "},
        {"k=\"\"", "k", ""},
        {"k=\"\" = w\nl=x", "l", "x"},
        {"k=\"a\"b=c", "b", nullptr},
        {"k=v\"w\"", "k", "v\"w\""},
        {"k=a\\nb", "k", "a\\nb"},
        {"k=\xC3\xA9\xFF", "k", "\xC3\xA9\xFF"},
        {"\xEF\xBB\xBFk=v", "\xEF\xBB\xBFk", "v"},
        {"k", "k", nullptr},
        {"k=v\n[t]\nk=w", "k", "v"},
        {"k\n[t]\nl=w", "k\n[t]\nl", "w"},
    };
    for (const Line& line : lines) {
        Parse("[s]" + std::string(line.text));
        const IniEntry* entry = ini.FindEntry("s", line.key);
        ASSERT_EQ(entry != nullptr, line.value != nullptr) << line.text;
        if (entry) {
            EXPECT_STREQ(entry->value.c_str(), line.value) << line.text;
        }
    }
}

// One text: its sections in list order, each with its keys in list order.
TEST_F(IniFixture, OddHeaders)
{
    struct Case {
        std::string text, sections;
    };
    const Case cases[] = {
        {"[a]b=1", "a:b "},
        {"[a]b=1\n[c]d=2", "c:d a:b "},
        {"[a]b=1[c]\nd=2", "a:d,b "},
        {"[a] ; note [x]\nb=1", "a:b "},
        {"[a]]b=1", "a:]b "},
        {"[[a]b=1", "[a:b "},
        {"[]b=1", ":b "},
        {"[a\nb]c=1", "a\nb:c "},
        {"[#a;]", "#a;: "},
        {"[ a ]", " a : "},
        {"[a][b] [c]", "c: b: a: "},
        {"#[x]\r[a]", "a: "},
        {"x # [a]\nb=1", "a:b "},
        {"k=1\n[a]", "a: "},
        {"[a]\nb\n[c]\nd=1", "a:b\n[c]\nd "},
        {"[a]\nb=\n[c]\nd=1", "c:d a: "},
        {"[a]\nb='\n[c]\nd=1", "c:d a:b "},
        {"[a]b=1\n[c", "a:b "},
        {"[a]b=1\n[c\nd=2", "a:b "},
        {"[a]b=1\nb=2\n[a]", "a: a:b,b "},
        {std::string("[a]\0=1\nb=2", 11), "a:b,\1 "},
        {"\xEF\xBB\xBF[a]", "a: "},
        {"\xFE\xFF[a]", "a: "},
    };
    for (const Case& c : cases) {
        Parse(c.text);
        VxString found;
        for (const IniSection* section = ini.Sections(); section; section = section->next) {
            found += section->name + ":";
            for (const IniEntry* entry = section->entries; entry; entry = entry->next)
                found += (entry->key[0] ? entry->key : VxString("\1")) + (entry->next ? "," : "");
            found += " ";
        }
        EXPECT_EQ(found.c_str(), c.sections) << c.text;
    }
}

class IniBuiltins : public FoldersTest {
protected:
    std::string Speed()
    {
        return Text("ini_read_string", {"preferencias", "velocidade", "normal"});
    }
    // The file's bytes after it is read, changed at one key, and written.
    std::string Rewritten(const std::string& text)
    {
        Put(Saved("a.ini"), text);
        Call("ini_open", {"a.ini"});
        Call("ini_write_string", {"new", "k", "v"});
        const std::string returned = Text("ini_close");
        EXPECT_EQ(returned, Bytes(Saved("a.ini")));
        return returned;
    }
};

const std::string kNew = "[new]\r\nk=\"v\"\r\n";

TEST_F(IniBuiltins, AMissingFileGivesTheDefaults)
{
    Call("ini_open", {"SaveGame.sav"});
    EXPECT_EQ(Speed(), "normal");
    EXPECT_EQ(Number("ini_read_real", {"preferencias", "volume", 3.0}), 3);
    EXPECT_EQ(Text("ini_read_string", {"a", "b", 2.5}), "2.50");
    EXPECT_EQ(Number("ini_section_exists", {"preferencias"}), 0);
    EXPECT_EQ(Text("ini_close"), "");
    EXPECT_TRUE(Reports().empty());
    EXPECT_EQ(Count(root_), 0U) << "nothing was written";
}

TEST_F(IniBuiltins, TheSavedFileHidesTheOneBesideTheProgram)
{
    Put(Bundled("SaveGame.sav"), "[preferencias]\nvelocidade=slow\nvolume=0.5x\nword=x1\n");
    Call("ini_open", {"SaveGame.sav"});
    EXPECT_EQ(Speed(), "slow");
    EXPECT_EQ(Number("ini_read_real", {"preferencias", "volume", 3.0}), 0.5);
    EXPECT_EQ(Number("ini_read_real", {"preferencias", "word", 3.0}), 0);
    EXPECT_EQ(Number("ini_key_exists", {"preferencias", "volume"}), 1);
    Put(Saved("SaveGame.sav"), "[preferencias]\r\nvelocidade=\"fast\"\r\n");
    Call("ini_open", {"SaveGame.sav"});
    EXPECT_EQ(Speed(), "fast");
    EXPECT_EQ(Text("ini_close"), "[preferencias]\r\nvelocidade=\"fast\"\r\n");
}

TEST_F(IniBuiltins, WhatSurvivesARoundTrip)
{
    EXPECT_EQ(Rewritten(""), kNew);
    EXPECT_EQ(Rewritten("stray=1\n[s]\n"), kNew + "[s]\r\n");
    EXPECT_EQ(Rewritten("\xEF\xBB\xBF; note\n[s]\n\na=1 ; note\nb='two'\nc=\"thr#ee\"\n"),
              kNew + "[s]\r\nc=\"thr#ee\"\r\nb=\"two\"\r\na=\"1\"\r\n")
        << "keys in reverse, all values in quotes, no comments";
    EXPECT_EQ(Rewritten("[s]\na=1\n[empty]\n[t]\nb=2"),
              kNew + "[t]\r\nb=\"2\"\r\n[empty]\r\n[s]\r\na=\"1\"\r\n");
    EXPECT_EQ(Rewritten("[new]\r\nj=\"1\"\r\n[s]\r\n"), "[s]\r\n[new]\r\nk=\"v\"\r\nj=\"1\"\r\n");
    EXPECT_EQ(Rewritten("[s]\na=1\na=2\n[s]\nb=1\n"),
              kNew + "[s]\r\nb=\"1\"\r\n[s]\r\na=\"2\"\r\na=\"1\"\r\n");
    const std::string once = Bytes(Saved("a.ini"));
    Call("ini_open", {"a.ini"});
    EXPECT_EQ(Number("ini_key_exists", {"s", "a"}), 1) << "the last section of the name, now";
    EXPECT_EQ(Text("ini_read_string", {"s", "a", ""}), "1") << "the other of the pair wins";
    EXPECT_NE(Text("ini_close"), once) << "each reading turns the order round";
    EXPECT_EQ(Rewritten(Rewritten("[new]\r\nk=\"v\"\r\n[t]\r\nb=\"1\"\r\na=\"2\"\r\n")),
              "[new]\r\nk=\"v\"\r\n[t]\r\nb=\"1\"\r\na=\"2\"\r\n")
        << "the second turns it back";
    Put(Saved("a.ini"), once);
    EXPECT_EQ(Bytes(Saved("a.ini")), once) << "nothing was changed: nothing was written";
}

TEST_F(IniBuiltins, ValuesAsTheyAreWrittenAndReadBack)
{
    const auto back = [this](const char* value) {
        Call("ini_open", {"v.ini"});
        Call("ini_write_string", {"s", "k", value});
        Call("ini_close");
        Call("ini_open", {"v.ini"});
        const std::string read = Text("ini_read_string", {"s", "k", "(none)"});
        Call("ini_close");
        return read;
    };
    EXPECT_EQ(back(" a#b;c=[d]' "), " a#b;c=[d]' ");
    EXPECT_EQ(back(""), "");
    EXPECT_EQ(back("say \"hi\""), "say ") << "cut at a quote";
    EXPECT_EQ(Bytes(Saved("v.ini")), "[s]\r\nk=\"say \"hi\"\"\r\n") << "written as it is";
    EXPECT_EQ(back("one\ntwo=2"), "one") << "cut at a line end";
    Call("ini_open", {"v.ini"});
    EXPECT_EQ(Text("ini_read_string", {"s", "two", ""}), "2\"") << "the rest is a line of its own";
    EXPECT_EQ(back("one\rtwo"), "one");
    EXPECT_EQ(back("\xC3\xA9 \t"), "\xC3\xA9 \t");
    Call("ini_open", {"n.ini"});
    for (const double number : {5.0, 0.0000001, -1.5, 123456789012345680000.0})
        Call("ini_write_real", {"s", std::to_string(static_cast<int>(number)).c_str(), number});
    Call("ini_write_string", {"s", "t", 2.5});
    const std::string text = Text("ini_close");
    for (const char* line : {"5=\"5.000000\"", "0=\"0.000000\"", "-1=\"-1.500000\"",
                             "=\"123456789012345683968.000000\"", "t=\"2.50\""})
        EXPECT_NE(text.find(line), std::string::npos) << line << " in " << text;
}

TEST_F(IniBuiltins, DeletingAndWritingAtOnce)
{
    Put(Saved("a.ini"), "[s]\na=1\nb=2\n[t]\nc=3\n[t]\nd=4\n");
    Call("ini_open", {"a.ini"});
    Call("ini_key_delete", {"s", "a"});
    Call("ini_key_delete", {"s", "none"});
    Call("ini_section_delete", {"t"});
    EXPECT_EQ(Number("ini_key_exists", {"t", "c"}), 1) << "the other section of the name";
    Call("ini_write_string", {"SYSTEM_COMMAND", "INI_FILE_FLUSH", "LATER"});
    EXPECT_EQ(Bytes(Saved("a.ini")).find('\r'), std::string::npos) << "not written yet";
    Call("ini_write_string", {"SYSTEM_COMMAND", "INI_FILE_FLUSH", "NOW"});
    EXPECT_EQ(Bytes(Saved("a.ini")), "[t]\r\nc=\"3\"\r\n[s]\r\nb=\"2\"\r\n");
    EXPECT_EQ(Number("ini_section_exists", {"SYSTEM_COMMAND"}), 0);
    Call("ini_write_string", {"s", "b", "5"});
    Call("ini_open", {"other.ini"});
    EXPECT_EQ(Bytes(Saved("a.ini")), "[t]\r\nc=\"3\"\r\n[s]\r\nb=\"5\"\r\n")
        << "another file saves the first";
    Call("ini_write_string", {"s", "b", "6"});
    Function_Init();
    EXPECT_EQ(Ini_Current(), nullptr);
    EXPECT_FALSE(std::filesystem::exists(Saved("other.ini")))
        << "the end of the program saves none";
}

TEST_F(IniBuiltins, UseWithoutAFileIsReported)
{
    EXPECT_EQ(Number("ini_read_real", {"a", "b", 4.0}), 4) << "the default all the same";
    ExpectReport("Trying to read from undefined INI file");
    for (const char* function : {"ini_key_exists", "ini_section_exists", "ini_write_string",
                                 "ini_write_real", "ini_read_string"}) {
        Call(function, {"a", "b", "c"});
        ExpectReport("Trying to read from undefined INI file");
    }
    for (const char* function : {"ini_key_delete", "ini_section_delete"}) {
        Call(function, {"a", "b"});
        ExpectReport("Trying to change undefined INI file");
    }
    EXPECT_EQ(Text("ini_close"), "");
    Call("ini_open_from_string", {"[a]\nb=1"});
    EXPECT_EQ(Number("ini_read_real", {"a", "b", 4.0}), 1);
    Call("ini_write_real", {"a", "c", 2.0});
    EXPECT_EQ(Text("ini_close"), "[a]\r\nc=\"2.000000\"\r\nb=\"1\"\r\n");
    EXPECT_EQ(Count(root_), 0U) << "a file from a text is never saved";
}

}  // namespace
