#include <cstring>

#include "Files/Base/Utf8.h"
#include "Files/Font/CFontSW.h"
#include "Files/Graphics/Text.h"

namespace {

// The width that asks for no wrapping, as a width below 0 does.
constexpr int32_t kNoWrap = 10000000;

constexpr uint16_t kReturn = 13, kLineFeed = 10, kSpace = ' ';
constexpr uint16_t kNoCharacter = 0xFFFF;
constexpr uint32_t kUnits = 0x10000;

bool EndsLine(uint16_t unit)
{
    return unit == kReturn || unit == kLineFeed;
}

struct Counts {
    size_t units, breaks;
};

Counts CountUnits(const char* text)
{
    Counts counts{0, 0};
    while (*text != '\0') {
        const uint32_t point = Utf8_Next(&text);
        ++counts.units;
        if (point == kReturn || point == kLineFeed) ++counts.breaks;
    }
    return counts;
}

void Decode(const char* text, uint16_t* units)
{
    while (*text != '\0') {
        const uint32_t point = Utf8_Next(&text);
        *units++ = point == 0 || point >= kUnits ? kNoCharacter : static_cast<uint16_t>(point);
    }
    *units = 0;
}

void SplitAtBreaks(uint16_t* units, size_t end, TextLines* lines)
{
    size_t at = 0, lineStart = 0;
    uint16_t before = 0;  // the break of the line before
    while (lineStart < end) {
        while (at < end && !EndsLine(units[at])) ++at;
        const uint16_t here = units[at];
        if (before != 0 && at == lineStart && at < end && here != before) {
            // The second half of a pair of breaks; it has no glyph, so the line keeps it.
            ++at;
            continue;
        }
        units[at] = 0;
        lines->Add(units + lineStart);
        before = here;
        lineStart = ++at;
    }
}

class Wrapper {
public:
    Wrapper(uint16_t* units, size_t end, int32_t width, TextLines* lines)
        : units_(units), end_(end), width_(width), font_(Text_Font()), lines_(lines)
    {
    }

    void Split()
    {
        while (lineStart_ < end_) {
            Fit();
            if (at_ < end_ && units_[at_] == kReturn) {
                Cut(at_);
                continue;
            }
            if (at_ == lineStart_) return;
            if (at_ < end_ && units_[at_] != kSpace) MoveToSpace();
            size_t lineEnd = at_;
            while (lineEnd > lineStart_ && units_[lineEnd - 1] == kSpace) --lineEnd;
            if (lineEnd > lineStart_)
                Cut(lineEnd);
            else
                lineStart_ = ++at_;
        }
    }

private:
    // Goes over what fits the width; blanks in front don't count towards it.
    void Fit()
    {
        while (at_ < end_ && units_[at_] == kSpace) ++at_;
        int64_t sum = 0;
        while (at_ < end_ && units_[at_] != kReturn && sum < width_)
            sum += font_->CharWidth(units_[at_++]);
        if (sum > width_) --at_;
    }

    // Back to a space of this line, or on to the end of a word that is longer than a line.
    void MoveToSpace()
    {
        size_t space = at_ - 1;
        while (space > lineStart_ && units_[space] != kSpace) --space;
        if (space > lineStart_) {
            at_ = space;
            return;
        }
        while (at_ < end_ && units_[at_] != kSpace) ++at_;
    }

    void Cut(size_t lineEnd)
    {
        units_[lineEnd] = 0;
        lines_->Add(units_ + lineStart_);
        lineStart_ = ++at_;
    }

    uint16_t* units_;
    size_t end_, at_ = 0, lineStart_ = 0;
    int32_t width_;
    const CFontSW* font_;
    TextLines* lines_;
};

}  // namespace

TextLines::~TextLines()
{
    MemoryManager::Free(block_);
}

uint16_t* TextLines::Reserve(size_t units, size_t lines)
{
    MemoryManager::Free(block_);
    block_ = nullptr;
    const size_t bytes = lines * sizeof(TextLine) + (units + 1) * sizeof(uint16_t);
    if (bytes > kInlineBytes) block_ = MemoryManager::Alloc(bytes);
    unsigned char* room = block_ ? static_cast<unsigned char*>(block_) : inline_;
    nodes_ = reinterpret_cast<TextLine*>(room);
    first = last_ = nullptr;
    count = 0;
    return reinterpret_cast<uint16_t*>(room + lines * sizeof(TextLine));
}

void TextLines::Add(const uint16_t* units)
{
    TextLine* line = nodes_ + count++;
    *line = {units, nullptr};
    (last_ ? last_->next : first) = line;
    last_ = line;
}

void Text_Split(const char* text, int32_t width, TextLines* lines)
{
    const bool whole = width < 0 || width == kNoWrap;
    const Counts counts = CountUnits(text);
    uint16_t* units = lines->Reserve(counts.units, whole ? counts.breaks + 1 : counts.units);
    Decode(text, units);
    if (whole)
        SplitAtBreaks(units, counts.units, lines);
    else
        Wrapper(units, counts.units, width, lines).Split();
}
