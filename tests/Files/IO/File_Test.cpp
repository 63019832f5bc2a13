// Files and folders on the disk, and files by handle.

#include <cmath>
#include <cstring>
#include <string>
#include <vector>

#include "Files/Graphics/Picture_Files.h"
#include "Files/IO/File_Csv.h"
#include "Files/IO/File_Disk.h"
#include "Files/IO/File_Memory.h"
#include "tests/Files/IO/support_Folders.h"

namespace {

using std::filesystem::perms;

class Files : public FoldersTest {
protected:
    double Open(const char* how, const std::string& name) { return Number(how, {name.c_str()}); }
};

TEST_F(Files, WhatIsWrittenIsTheUsersAlone)
{
    const double file = Open("file_text_open_write", "sub/a.txt");
    EXPECT_EQ(Count(root_), 0U) << "the disk is written at the close";
    Call("file_text_write_string", {file, "x"});
    Call("file_text_close", {file});
    EXPECT_EQ(Bytes(Saved("sub/a.txt")), "x");
    EXPECT_EQ(std::filesystem::status(Saved("sub/a.txt")).permissions(), perms(0600));
    const uint32_t pixel = 0xFF102030;
    EXPECT_TRUE(Picture_Save("sub/a.png", &pixel, 1, 1));
    EXPECT_EQ(std::filesystem::status(Saved("sub/a.png")).permissions(), perms(0600));
    EXPECT_FALSE(Picture_Save("../a.png", &pixel, 1, 1));
    for (const char* folder : {"", "sub"})
        EXPECT_EQ(std::filesystem::status(Saved(folder)).permissions(), perms(0700));
}

TEST_F(Files, LookingDeletingCopying)
{
    Put(Bundled("both.txt"), "bundle");
    Put(Bundled("bundled.txt"), "bundle");
    Put(Saved("both.txt"), "saved");
    EXPECT_EQ(Number("file_exists", {"bundled.txt"}), 1);
    EXPECT_EQ(Number("file_exists", {"none.txt"}), 0);
    EXPECT_EQ(Number("file_delete", {"bundled.txt"}), 0) << "the bundle is only read";
    EXPECT_EQ(Number("file_copy", {"both.txt", "sub/copy.txt"}), 0);
    EXPECT_EQ(Bytes(Saved("sub/copy.txt")), "saved") << "the saved file hides the bundle's";
    EXPECT_EQ(Number("file_delete", {"both.txt"}), 1);
    EXPECT_EQ(Number("file_copy", {"both.txt", "copy.txt"}), 0);
    EXPECT_EQ(Bytes(Saved("copy.txt")), "bundle");
    EXPECT_EQ(Number("file_copy", {"none.txt", "other.txt"}), -1);
    EXPECT_EQ(Number("file_rename", {"copy.txt", "moved.txt"}), 1);
    EXPECT_EQ(Number("file_rename", {"bundled.txt", "else.txt"}), 0);
    EXPECT_EQ(Number("file_rename", {"moved.txt", "sub/copy.txt"}), 0) << "never over a file";
    EXPECT_EQ(Bytes(Saved("sub/copy.txt")), "saved");
    EXPECT_EQ(Bytes(Bundled("bundled.txt")) + Bytes(Bundled("both.txt")), "bundlebundle");
}

TEST_F(Files, AFailedWriteIsToldAndLeavesTheOldFile)
{
    Put(Saved("a.txt/is a folder"), "old");
    Call("ini_open", {"a.txt"});
    Call("ini_write_real", {"s", "k", 1.0});
    EXPECT_EQ(Text("ini_close"), "[s]\r\nk=\"1.000000\"\r\n");
    EXPECT_TRUE(Said("Could not write " + Saved("a.txt").string() + ": Is a directory"));
    Put(Saved("file"), "old");
    const double file = Open("file_text_open_write", "file/below.txt");
    Call("file_text_close", {file});
    EXPECT_TRUE(Said("Could not write " + Saved("file/below.txt").string() + ": "));
    EXPECT_EQ(Bytes(Saved("file")), "old");
    EXPECT_TRUE(Reports().empty()) << "the script goes on";
}

TEST_F(Files, FoldersAreMadeAndGoWithWhatTheyHold)
{
    EXPECT_EQ(Number("directory_create", {"a/b\\c/"}), 1);
    EXPECT_EQ(Number("directory_exists", {"a/b/c"}), 1);
    EXPECT_EQ(Number("directory_create", {"a/b/c"}), 1) << "it stands";
    Put(Saved("file"), "");
    EXPECT_EQ(Number("directory_create", {"file/below"}), 0);
    EXPECT_EQ(Number("directory_exists", {"file"}), 0);
    std::filesystem::create_directories(Bundled("music"));
    EXPECT_EQ(Number("directory_exists", {"music"}), 1);
    EXPECT_EQ(Number("directory_destroy", {"music"}), 0) << "the bundle is only read";
    Put(Saved("a/b/c/file"), "");
    Put(root_ / "elsewhere/kept", "kept");
    std::filesystem::create_directory_symlink(root_ / "elsewhere", Saved("a/link"));
    std::filesystem::permissions(Saved("a/b/c"), perms(0500));
    EXPECT_EQ(Number("directory_destroy", {"a"}), 1);
    EXPECT_FALSE(std::filesystem::exists(Saved("a")));
    EXPECT_EQ(Bytes(root_ / "elsewhere/kept"), "kept") << "a link goes alone";
    EXPECT_EQ(Number("directory_destroy", {"file"}), 0);
    EXPECT_TRUE(std::filesystem::exists(Saved("file")));
}

TEST_F(Files, Searches)
{
    Put(Saved("b.txt"), "");
    Put(Saved("both.txt"), "");
    Put(Bundled("both.txt"), "");
    Put(Bundled("c.txt"), "");
    Put(Bundled(".hidden.txt"), "");
    std::filesystem::create_directories(Bundled("folder.txt"));
    const auto found = [this](const char* mask, double attributes) {
        std::string names = Text("file_find_first", {mask, attributes});
        for (std::string next = names; !next.empty();) {
            next = Text("file_find_next");
            names += "," + next;
        }
        return names;
    };
    EXPECT_EQ(found("*.txt", 0), "b.txt,both.txt,c.txt,");
    EXPECT_EQ(found("*.txt", 16 + 2), "b.txt,both.txt,.hidden.txt,c.txt,folder.txt,");
    EXPECT_EQ(found("../*", 16), "");
    EXPECT_EQ(found("missing/*", 0), "");
    Text("file_find_first", {"*.txt", 0.0});
    Call("file_find_close");
    EXPECT_EQ(Text("file_find_next"), "");
    EXPECT_EQ(Number("file_attributes", {"folder.txt", 16.0}), 1);
    EXPECT_EQ(Number("file_attributes", {"c.txt", 16.0}), 0);
    EXPECT_EQ(Number("file_attributes", {"c.txt", 32.0}), 1);
    EXPECT_EQ(Number("file_attributes", {"none.txt", 255.0}), 0);
}

TEST_F(Files, TextIsReadInPieces)
{
    Put(Bundled("t.txt"), "\xEF\xBB\xBFone\r\n -2.5e1x \n\n\t7");
    const double file = Open("file_text_open_read", "t.txt");
    EXPECT_EQ(Text("file_text_read_string", {file}), "one");
    EXPECT_EQ(Text("file_text_read_string", {file}), "") << "the line end stays";
    EXPECT_EQ(Number("file_text_eoln", {file}), 1);
    EXPECT_EQ(Text("file_text_readln", {file}), "\r\n");
    EXPECT_EQ(Number("file_text_read_real", {file}), -25);
    EXPECT_EQ(Text("file_text_readln", {file}), "x \n");
    EXPECT_EQ(Number("file_text_read_real", {file}), 7);
    EXPECT_EQ(Number("file_text_eof", {file}), 1);
    EXPECT_EQ(Number("file_text_eoln", {file}), 1);
    EXPECT_EQ(Number("file_text_read_real", {file}), 0);
    EXPECT_EQ(Text("file_text_readln", {file}), "");
    Call("file_text_close", {file});
    Put(Saved("t.txt"), "saved");
    EXPECT_EQ(Text("file_text_read_string", {Open("file_text_open_read", "t.txt")}), "saved");
    EXPECT_EQ(Open("file_text_open_read", "none.txt"), -1);
    EXPECT_TRUE(Said("ERROR!!! :: Failed to open file: none.txt\n"));
    const double text = Open("file_text_open_from_string", "\xEF\xBB\xBFkept");
    EXPECT_EQ(Text("file_text_readln", {text}), "\xEF\xBB\xBFkept");
    EXPECT_EQ(Number("file_text_open_from_string", {4.0}), -1);
    EXPECT_TRUE(Said("ERROR!!! :: wrong type for filename\n"));
}

// What stands in a file, the number that is read from it, and what is left behind it.
TEST_F(Files, NumbersAsTheyAreWritten)
{
    struct Case {
        const char* text;
        double number;
        const char* rest;
    };
    for (const Case& c :
         {Case{"7", 7, ""}, Case{" \t\r\n\v\f+7;8", 7, ";8"}, Case{"-.5.5", -0.5, ".5"},
          Case{"5.", 5, ""}, Case{"1e3x", 1000, "x"}, Case{"1e", 1, "e"}, Case{"1e+-2", 1, "e+-2"},
          Case{"0x1F!", 31, "!"}, Case{"1,5", 1, ",5"}, Case{"1 2", 1, " 2"}, Case{"x", 0, "x"},
          Case{"  ", 0, ""}, Case{"-", 0, "-"}, Case{"inf", HUGE_VAL, ""},
          Case{"1e999", HUGE_VAL, ""},
          Case{"\xEF\xBB\xBF"
               "3",
               3, ""}}) {
        Put(Bundled("n.txt"), c.text);
        const double file = Open("file_text_open_read", "n.txt");
        EXPECT_EQ(Number("file_text_read_real", {file}), c.number) << c.text;
        EXPECT_EQ(Text("file_text_readln", {file}), c.rest) << c.text;
        Call("file_text_close", {file});
        Number("file_open_read", {"n.txt"});
        const bool marked = c.text[0] == '\xEF';  // a plain stream keeps the mark
        EXPECT_EQ(Number("file_read_real"), marked ? 0 : c.number) << c.text;
        EXPECT_EQ(Text("file_readln"), marked ? c.text : c.rest) << c.text;
    }
    MemoryFile* file = MemoryFile::OverText("x");
    EXPECT_EQ(file->GetChar(), 'x');
    EXPECT_EQ(file->GetChar(), 255) << "past the end";
    EXPECT_EQ(file->Tell(), 2);
    MemoryFile::Close(file);
}

TEST_F(Files, TextIsWrittenWithWholeLineEnds)
{
    Put(Bundled("log.txt"), "shipped;");
    for (const char* line : {"first", "second"}) {
        const double file = Open("file_text_open_append", "log.txt");
        Call("file_text_write_string", {file, line});
        Call("file_text_writeln", {file});
        Call("file_text_close", {file});
    }
    EXPECT_EQ(Bytes(Saved("log.txt")), "shipped;first\r\nsecond\r\n");
    EXPECT_EQ(Bytes(Bundled("log.txt")), "shipped;");
    const double file = Open("file_text_open_write", "log.txt");
    Call("file_text_write_string", {file, "a\nb\r\nc\n\nd\re"});
    Call("file_text_write_real", {file, 0.1});
    Call("file_text_write_real", {file, 1234567.0});
    Call("file_text_close", {file});
    EXPECT_EQ(Bytes(Saved("log.txt")), "a\r\nb\r\nc\r\n\r\nd\re0.1 1.23457e+06 ");
}

TEST_F(Files, HandlesThatAreNotOpenAreReported)
{
    const double out = Open("file_text_open_write", "a.txt");
    const double in = Open("file_text_open_from_string", "x");
    for (const double handle : {out, 0.0, -1.0, 31.0, 32.0, 1e9}) {
        Call("file_text_readln", {handle});
        ExpectReport("File is not opened for reading.");
        EXPECT_EQ(Number("file_text_eof", {handle}), 1) << "a loop ends";
        ExpectReport("File is not opened for reading.");
        Number("file_bin_size", {handle});
        ExpectReport("File is not opened.");
    }
    Call("file_text_write_real", {in, 1.0});
    ExpectReport("File not opened for writing.");
    Call("file_text_close", {32.0});
    ExpectReport("Trying to close text file that has not been opened.");
    Call("file_text_close", {31.0});
    EXPECT_TRUE(Reports().empty()) << "a free one closes silently";
    Call("file_bin_close", {5.0});
    ExpectReport("Trying to close unopened file.");
    Call("file_bin_rewrite", {5.0});
    ExpectReport("Trying to rewrite unopened file.");
    for (int i = 3; i < 32; ++i) EXPECT_EQ(Open("file_text_open_from_string", "x"), i);
    EXPECT_EQ(Open("file_text_open_from_string", "x"), -1);
    ExpectReport("Cannot open another file (maximum exceeded).");
    for (int i = 1; i < 32; ++i) EXPECT_EQ(Number("file_bin_open", {"b", 1.0}), i);
    EXPECT_EQ(Number("file_bin_open", {"b", 1.0}), -1);
    ExpectReport("Cannot open another file (maximum exceeded).");
    Function_File_Close();
    EXPECT_EQ(Count(root_), 0U) << "the end of the program writes nothing";
}

TEST_F(Files, BytesByPosition)
{
    Put(Bundled("b.bin"),
        "\xEF\xBB\xBF"
        "data");
    const double in = Number("file_bin_open", {"b.bin", 0.0});
    EXPECT_EQ(Number("file_bin_read_byte", {in}), 0xEF) << "no byte is skipped";
    Call("file_bin_seek", {in, 6.0});
    EXPECT_EQ(Number("file_bin_size", {in}), 7);
    EXPECT_EQ(Number("file_bin_position", {in}), 6) << "the size leaves it";
    EXPECT_EQ(Number("file_bin_read_byte", {in}), 'a');
    EXPECT_EQ(Number("file_bin_read_byte", {in}), 0);
    ExpectReport("Error reading byte.");
    Call("file_bin_close", {in});

    const double both = Number("file_bin_open", {"b.bin", 2.0});
    EXPECT_EQ(Number("file_bin_read_byte", {both}), 0xEF);
    Call("file_bin_write_byte", {both, 300.0});
    Call("file_bin_seek", {both, 8.0});
    Call("file_bin_write_byte", {both, 33.0});
    Call("file_bin_seek", {both, -5.0});
    EXPECT_EQ(Number("file_bin_position", {both}), 0);
    Call("file_bin_close", {both});
    EXPECT_EQ(Bytes(Saved("b.bin")), std::string("\xEF\x2C\xBF"
                                                 "data\0!",
                                                 9));
    EXPECT_EQ(Bytes(Bundled("b.bin")).size(), 7U) << "the bundle is only read";

    const double out = Number("file_bin_open", {"b.bin", 0.0});
    Call("file_bin_rewrite", {out});
    Call("file_bin_write_byte", {out, 65.0});
    EXPECT_EQ(Number("file_bin_read_byte", {out}), 0);
    ExpectReport("Error reading byte.");
    Call("file_bin_close", {out});
    EXPECT_EQ(Bytes(Saved("b.bin")), "A");
    EXPECT_EQ(Number("file_bin_open", {"none.bin", 0.0}), -1);
    EXPECT_TRUE(Said("Error opening binary file none.bin\n"));
}

TEST_F(Files, TheOldFileIsAPlainStream)
{
    EXPECT_EQ(Number("file_open_write", {"old.txt"}), 1);
    Call("file_write_string", {"line"});
    Call("file_writeln");
    Call("file_write_real", {-1.5});
    Call("file_open_append", {"old.txt"});
    Call("file_write_string", {" 12.5e1z"});
    Call("file_readln");
    ExpectReport("File not opened for reading.");
    Call("file_close");
    EXPECT_EQ(Bytes(Bundled("old.txt")), "line\n   -1.5000 12.5e1z")
        << "no save folder, no mapping";
    EXPECT_EQ(Number("file_open_read", {"old.txt"}), 1);
    EXPECT_EQ(Text("file_read_string"), "line");
    EXPECT_EQ(Number("file_read_real"), -1.5);
    EXPECT_EQ(Number("file_read_real"), 125);
    EXPECT_EQ(Number("file_eof"), 0);
    EXPECT_EQ(Text("file_readln"), "z");
    EXPECT_EQ(Number("file_eof"), 1);
    Call("file_write_string", {"x"});
    ExpectReport("File not opened for writing.");
    Put(Bundled("long.txt"), std::string(1500, 'a') + "\nb\n");
    EXPECT_EQ(Number("file_open_read", {"long.txt"}), 1);
    EXPECT_EQ(Text("file_readln").size(), 1024U);
    EXPECT_EQ(Text("file_readln"), std::string(476, 'a') + "\n");
    RValue null;
    VXCreateString(&null, nullptr);
    Call("file_open_append", {&null});
    ExpectReport("Error opening file for appending.");
    Call("file_open_write", {&null});
    ExpectReport("Error opening file for writing.");
    Text("file_readln");
    ExpectReport("File not opened for reading.");
    EXPECT_EQ(Number("file_open_read", {"."}), 0) << "a folder";
    Number("file_eof");
    ExpectReport("File is not opened for reading.");
}

TEST_F(Files, TablesWithCommas)
{
    const std::string text =
        "\xEF\xBB\xBF"
        "a,\"b,\"\"c\"\"\nd\",\r\n\n\"open\"tail,x\r\"never closed\n";
    const CsvRows rows = Csv_Parse(text.data(), static_cast<uint32_t>(text.size()));
    const CsvRows expected = {{"a", "b,\"c\"\nd", ""}, {""}, {"opentail", "x"}, {"never closed\n"}};
    EXPECT_EQ(rows, expected);
    EXPECT_TRUE(Csv_Parse("", 0).empty());
    Put(Bundled("t.csv"), text);
    const double grid = Number("load_csv", {"t.csv"});
    EXPECT_EQ(Number("ds_grid_width", {grid}) * 10 + Number("ds_grid_height", {grid}), 34);
    EXPECT_EQ(Text("ds_grid_get", {grid, 1.0, 0.0}), "b,\"c\"\nd");
    EXPECT_EQ(Text("ds_grid_get", {grid, 2.0, 2.0}), "") << "a cell that the row lacks";
    EXPECT_EQ(Number("load_csv", {"none.csv"}), -1);
    EXPECT_TRUE(Reports().empty());
    EXPECT_EQ(Number("load_csv", {3.0}), -1);
    ExpectReport("load_csv - parameter should be a filename");
}

}  // namespace
