#include "Files/IO/File_Csv.h"

#include <cstring>

namespace {

constexpr char kByteOrderMark[] = "\xEF\xBB\xBF";

class CsvParser {
public:
    CsvParser(const char* text, uint32_t size) : at_(text), end_(text + size)
    {
        if (size >= 3 && std::memcmp(text, kByteOrderMark, 3) == 0) at_ += 3;
    }
    bool AtEnd() const { return at_ == end_; }

    CsvRow ReadRow()
    {
        CsvRow row;
        row.push_back(ReadCell());
        while (Take(',')) row.push_back(ReadCell());
        Take('\r');
        Take('\n');
        return row;
    }

private:
    bool Take(char wanted)
    {
        if (AtEnd() || *at_ != wanted) return false;
        ++at_;
        return true;
    }
    bool AtCellEnd() const { return AtEnd() || *at_ == ',' || *at_ == '\r' || *at_ == '\n'; }
    // A quote opens only at the start of a cell; what follows a closing one is kept.
    VxString ReadCell()
    {
        VxString cell;
        if (Take('"'))
            while (!AtEnd()) {
                if (!Take('"'))
                    cell += *at_++;
                else if (Take('"'))
                    cell += '"';
                else
                    break;
            }
        while (!AtCellEnd()) cell += *at_++;
        return cell;
    }

    const char* at_;
    const char* const end_;
};

}  // namespace

CsvRows Csv_Parse(const char* text, uint32_t size)
{
    CsvRows rows;
    CsvParser parser(text, size);
    while (!parser.AtEnd()) rows.push_back(parser.ReadRow());
    return rows;
}
