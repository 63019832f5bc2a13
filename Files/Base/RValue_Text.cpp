#include <algorithm>
#include <cinttypes>
#include <cmath>
#include <cstdio>
#include <cstring>

#include "Files/Base/Error.h"
#include "Files/Base/RValue.h"
#include "Files/Base/RValue_Internal.h"
#include "Platform/MemoryManager.h"

namespace {

// Every print of a value takes the next stamp; the outermost one of a walk sets
// the start. An array whose stamp is not below the start has its cells in print.
uint32_t g_PrintStamp = 0;
uint32_t g_StartStamp = 0;
int g_PrintDepth = 0;

class TextBuffer {
public:
    void Add(const char* text)
    {
        const size_t size = std::strlen(text);
        const size_t needed = length_ + size + 1;
        if (needed > MemoryManager::GetSize(text_))
            MemoryManager::SetLength(&text_, std::max(needed, 2 * MemoryManager::GetSize(text_)));
        std::memcpy(text_ + length_, text, size + 1);
        length_ += size;
    }
    char* Take() { return text_; }  // the caller's from now on

private:
    char* text_ = nullptr;
    size_t length_ = 0;
};

// The arrays that the walk stands in, innermost first: a ring is never walked twice.
struct Walk {
    const RefArray* body;
    const Walk* outer;
};

bool StandsIn(const Walk* walk, const RefArray* body)
{
    for (; walk; walk = walk->outer)
        if (walk->body == body) return true;
    return false;
}

void Print(TextBuffer& out, const RValue* value, const Walk* outer);

void PrintArray(TextBuffer& out, RefArray* body, uint32_t stamp, const Walk* outer)
{
    out.Add("{ ");
    if (body && body->visitStamp < g_StartStamp && !StandsIn(outer, body)) {
        const Walk walk{body, outer};
        body->visitStamp = stamp;
        for (int32_t row = 0; row < body->rowCount; ++row) {
            out.Add("{ ");
            for (int32_t column = 0; column < body->rows[row].length; ++column) {
                if (column > 0) {
                    out.Add(",");
                    g_StartStamp = stamp;
                }
                Print(out, &body->rows[row].cells[column], &walk);
            }
            out.Add(" }, ");
        }
    }
    out.Add(" }");
}

void PrintNumber(char (&line)[400], double number)
{
    const int64_t whole = TruncateToInt64(number);
    if (std::isnan(number))
        std::snprintf(line, sizeof line, "NaN");
    else if (static_cast<double>(whole) == number && number < 9223372036854775808.0)
        std::snprintf(line, sizeof line, "%" PRId64, whole);
    else
        std::snprintf(line, sizeof line, "%.2f", number);
}

void Print(TextBuffer& out, const RValue* value, const Walk* outer)
{
    char line[400] = "";  // the widest double has 309 digits before the point
    const uint32_t stamp = ++g_PrintStamp;
    if (g_PrintDepth++ == 0) g_StartStamp = stamp;
    switch (value->Kind()) {
        case VALUE_REAL:
            PrintNumber(line, value->real);
            break;
        case VALUE_BOOL:
            std::snprintf(line, sizeof line, "%d", value->real != 0.0);
            break;
        case VALUE_STRING:
            if (const char* text = VXGetText(value)) out.Add(text);
            break;
        case VALUE_ARRAY:
            PrintArray(out, value->array, stamp, outer);
            break;
        case VALUE_PTR:
            std::snprintf(line, sizeof line, "%p", value->ptr);
            break;
        // No object of this system has a toString member.
        case VALUE_OBJECT:
            std::snprintf(line, sizeof line, "%s", value->object ? "" : "null");
            break;
        case VALUE_INT32:
            std::snprintf(line, sizeof line, "%d", value->i32);
            break;
        case VALUE_INT64:
            std::snprintf(line, sizeof line, "%" PRId64, value->i64);
            break;
        case VALUE_UNSET:
            Error_Fatal("STRING argument is unset");
            break;
        default:
            std::snprintf(line, sizeof line, "%s", KindName(value));
            break;
    }
    out.Add(line);
    --g_PrintDepth;
}

}  // namespace

void PrintStamps_Reset()
{
    g_PrintStamp = 0;
    g_StartStamp = 0;
    g_PrintDepth = 0;
}

VXText ToText(const RValue* value)
{
    TextBuffer out;
    Print(out, value, nullptr);
    return VXText(out.Take(), true);
}

VXText::~VXText()
{
    if (owned_) MemoryManager::Free(const_cast<char*>(text_));
}
