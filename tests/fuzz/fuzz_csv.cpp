// Feeds any bytes to the reader of tables with commas: the cells, written in quotes, must
// read back the same.

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>

#include "Files/IO/File_Csv.h"

namespace {

VxString Quoted(const VxString& cell)
{
    VxString text = "\"";
    for (const char c : cell) text += c == '"' ? VxString("\"\"") : VxString(1, c);
    return text + '"';
}

VxString TextOf(const CsvRows& rows)
{
    VxString text;
    for (const CsvRow& row : rows) {
        for (const VxString& cell : row) text += (&cell == &row.front() ? "" : ",") + Quoted(cell);
        text += "\r\n";
    }
    return text;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    // A block of its own: a read behind its end is seen.
    const std::unique_ptr<char[]> block(new char[size]);
    if (size) std::memcpy(block.get(), data, size);
    const CsvRows rows = Csv_Parse(block.get(), static_cast<uint32_t>(size));
    const VxString text = TextOf(rows);
    if (Csv_Parse(text.data(), static_cast<uint32_t>(text.size())) == rows) return 0;
    std::fprintf(stderr, "the cells changed\n");
    std::abort();
}
