#include "tools/pack/Table.h"

#include <cerrno>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <sstream>

namespace pack {

bool Parse_Number(const std::string& text, long long& number)
{
    if (text.empty()) return false;
    char* end = nullptr;
    bool negative = text[0] == '-';
    const char* digits = text.c_str() + (negative ? 1 : 0);
    if (*digits < '0' || *digits > '9') return false;
    int base = digits[0] == '0' && digits[1] == 'x' ? 16 : 10;
    errno = 0;
    number = std::strtoll(text.c_str(), &end, base);
    return errno == 0 && *end == '\0';
}

std::string File_Text(const std::string& path, const std::string& shownAs)
{
    std::ifstream stream(path, std::ios::binary);
    std::string text{std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
    if (!stream) throw ContentError(shownAs, 1, "expected a readable file");
    return text;
}

// ---- rows

void Row::Fail(const std::string& expected) const
{
    throw ContentError(file, line, expected);
}

const Field* Row::Find(const std::string& key) const
{
    for (const Field& field : fields) {
        if (field.key != key || key.empty()) continue;
        field.used = true;
        return &field;
    }
    return nullptr;
}

bool Row::Has(const std::string& key) const
{
    return Find(key) != nullptr;
}

bool Row::Flag(const std::string& word) const
{
    for (const Field& field : fields) {
        if (!field.key.empty() || field.value != word || field.quoted) continue;
        field.used = true;
        return true;
    }
    return false;
}

const std::string& Row::Text(const std::string& key) const
{
    const Field* field = Find(key);
    if (!field) Fail("expected " + key + "= for " + name);
    return field->value;
}

std::string Row::Text(const std::string& key, const std::string& absent) const
{
    const Field* field = Find(key);
    return field ? field->value : absent;
}

int Row::Int(const std::string& key, int absent) const
{
    return Has(key) ? Ints(key, 1)[0] : absent;
}

std::vector<int> Row::Ints(const std::string& key, size_t count) const
{
    const std::string& text = Text(key);
    std::vector<int> numbers;
    std::istringstream stream(text);
    for (std::string part; std::getline(stream, part, ',');) {
        long long number = 0;
        if (!Parse_Number(part, number) || number < INT32_MIN || number > INT32_MAX) {
            Fail("expected a number in " + key + "=" + text);
        }
        numbers.push_back(static_cast<int>(number));
    }
    if (numbers.size() != count) {
        Fail("expected " + std::to_string(count) + " numbers in " + key + "=" + text);
    }
    return numbers;
}

void Row::Pair(const std::string& key, char separator, int& first, int& second) const
{
    const std::string& text = Text(key);
    size_t cut = text.find(separator);
    long long a = 0, b = 0;
    if (cut == std::string::npos || !Parse_Number(text.substr(0, cut), a) ||
        !Parse_Number(text.substr(cut + 1), b) || std::abs(a) > 100000 || std::abs(b) > 100000) {
        Fail("expected " + key + "=number" + separator + "number, not " + text);
    }
    first = static_cast<int>(a);
    second = static_cast<int>(b);
}

std::vector<std::string> Row::Words() const
{
    std::vector<std::string> words;
    for (const Field& field : fields) {
        if (!field.key.empty()) continue;
        field.used = true;
        words.push_back(field.value);
    }
    return words;
}

void Row::Done() const
{
    for (const Field& field : fields) {
        if (field.used) continue;
        Fail("expected no " + (field.key.empty() ? field.value : field.key + "=") +
             " in the row of " + name);
    }
}

// ---- text to rows
namespace {

struct Line {
    const std::string& file;
    int number;
    const std::string& text;
    size_t at = 0;

    bool More()
    {
        while (at < text.size() && (text[at] == ' ' || text[at] == '\t')) ++at;
        return at < text.size() && text[at] != '#';
    }

    // A piece up to a blank or, with `stop`, up to that character; quotes hold blanks.
    std::string Piece(char stop, bool& quoted)
    {
        std::string piece;
        while (at < text.size() && text[at] != ' ' && text[at] != '\t' && text[at] != stop) {
            if (text[at] != '"') {
                piece += text[at++];
                continue;
            }
            quoted = true;
            size_t end = text.find('"', at + 1);
            if (end == std::string::npos) {
                throw ContentError(file, number, "expected a closing quotation mark");
            }
            piece.append(text, at + 1, end - at - 1);
            at = end + 1;
        }
        return piece;
    }

    Field Next()
    {
        Field field;
        std::string first = Piece('=', field.quoted);
        // A lone "=" is a word of its own.
        if (at < text.size() && text[at] == '=' && !first.empty() && !field.quoted) {
            ++at;
            field.key = first;
            field.value = Piece('\0', field.quoted);
            if (field.value.empty() && !field.quoted) {
                throw ContentError(file, number, "expected a value behind " + field.key + "=");
            }
        } else if (first.empty() && !field.quoted) {
            field.value = Piece('\0', field.quoted);
        } else {
            field.value = first;
        }
        return field;
    }
};

Row ParseLine(const std::string& file, int number, const std::string& text)
{
    Line line{file, number, text};
    Row row;
    row.file = file;
    row.line = number;
    line.More();
    bool quoted = false;
    row.name = line.Piece('\0', quoted);
    while (line.More()) row.fields.push_back(line.Next());
    return row;
}

void Replace(std::string& text, const std::string& what, const std::string& with)
{
    for (size_t at = text.find(what); at != std::string::npos; at = text.find(what, at)) {
        text.replace(at, what.size(), with);
        at += with.size();
    }
}

void Number(Row& row, const std::string& digits)
{
    std::string padded = std::string(digits.size() < 3 ? 3 - digits.size() : 0, '0') + digits;
    Replace(row.name, "{n}", digits);
    Replace(row.name, "{nnn}", padded);
    for (Field& field : row.fields) {
        Replace(field.value, "{n}", digits);
        Replace(field.value, "{nnn}", padded);
    }
    for (Row& child : row.rows) Number(child, digits);
}

// One row for each number of `{a..b}` in the name.
void Expand(const Row& row, std::vector<Row>& out)
{
    size_t open = row.name.find('{');
    if (open == std::string::npos) {
        out.push_back(row);
        return;
    }
    size_t dots = row.name.find("..", open), close = row.name.find('}', open);
    long long first = 0, last = -1;
    if (dots == std::string::npos || close == std::string::npos || dots > close ||
        !Parse_Number(row.name.substr(open + 1, dots - open - 1), first) ||
        !Parse_Number(row.name.substr(dots + 2, close - dots - 2), last) || first > last ||
        last - first > 9999) {
        row.Fail("expected {first..last} in " + row.name);
    }
    for (long long n = first; n <= last; ++n) {
        Row copy = row;
        copy.name.replace(open, close - open + 1, std::to_string(n));
        Number(copy, std::to_string(n));
        out.push_back(std::move(copy));
    }
}

}  // namespace

std::vector<Row> Table_Parse(const std::string& file, const std::string& text)
{
    std::vector<Row> rows;
    std::istringstream stream(text);
    int number = 0;
    for (std::string line; std::getline(stream, line);) {
        ++number;
        if (!line.empty() && line.back() == '\r') line.pop_back();
        size_t start = line.find_first_not_of(" \t");
        if (start == std::string::npos || line[start] == '#') continue;
        Row row = ParseLine(file, number, line);
        if (start == 0) {
            rows.push_back(std::move(row));
        } else if (rows.empty()) {
            row.Fail("expected a row that this indented one belongs to");
        } else {
            rows.back().rows.push_back(std::move(row));
        }
    }
    std::vector<Row> expanded;
    for (const Row& row : rows) Expand(row, expanded);
    return expanded;
}

std::vector<Row> Table_Read(const std::string& folder, const std::string& file)
{
    return Table_Parse(file, File_Text(folder + "/" + file, file));
}

}  // namespace pack
