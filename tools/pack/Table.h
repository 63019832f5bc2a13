#pragma once
// The content tables as text: one row a thing, `name key=value word "quoted words"`,
// with indented rows under it that belong to it. Blank lines and what follows a `#`
// at the start of a line or after a blank are passed over.
//
// `{1..100}` in a name makes one row for each number; `{n}` in the rest of the row and
// in the rows under it stands for that number, `{nnn}` for the number with three
// digits.

#include <stdexcept>
#include <string>
#include <vector>

namespace pack {

// An error in a file of content: "file:line: what was expected".
class ContentError : public std::runtime_error {
public:
    ContentError(const std::string& file, int line, const std::string& what)
        : std::runtime_error(file + ":" + std::to_string(line) + ": " + what)
    {
    }
};

// One word of a row; `key` is empty for a word without "=".
struct Field {
    std::string key, value;
    bool quoted = false;
    mutable bool used = false;
};

// A row and the rows indented under it. The readers throw ContentError.
struct Row {
    std::string file;
    int line = 0;
    std::string name;
    std::vector<Field> fields;
    std::vector<Row> rows;

    [[noreturn]] void Fail(const std::string& expected) const;

    bool Has(const std::string& key) const;
    bool Flag(const std::string& word) const;  // whether the bare word stands in the row
    const std::string& Text(const std::string& key) const;
    std::string Text(const std::string& key, const std::string& absent) const;
    int Int(const std::string& key, int absent) const;
    void Pair(const std::string& key, char separator, int& first, int& second) const;
    // Numbers with commas between; as many as `count`.
    std::vector<int> Ints(const std::string& key, size_t count) const;
    // The bare words in order.
    std::vector<std::string> Words() const;
    // Fails on the first field that no reader has asked for.
    void Done() const;

private:
    const Field* Find(const std::string& key) const;
};

// `text` is the content of `file`, which is only named in messages.
std::vector<Row> Table_Parse(const std::string& file, const std::string& text);
std::vector<Row> Table_Read(const std::string& folder, const std::string& file);

// The whole file; ContentError when it cannot be read.
std::string File_Text(const std::string& path, const std::string& shownAs);

// The number that `text` is wholly made of, in decimal or with 0x in hexadecimal.
bool Parse_Number(const std::string& text, long long& number);

}  // namespace pack
