// Feeds texts of any bytes to the splitting, at any width, and draws the lines.
//
//   fuzz_text -max_total_time=600 DIR

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "Files/Base/Console.h"
#include "Files/Font/CFontSW.h"
#include "Files/Graphics/Text.h"
#include "Host/Host_Stage.h"

namespace {

void Require(bool holds, const char* what)
{
    if (holds) return;
    std::fprintf(stderr, "%s\n", what);
    std::abort();
}

bool Start()
{
    Host_UseStage();
    Stage_Reset();
    Stage_SetFolder("/nonexistent/");
    Console_Init();
    Console_SetSink([](void*, const char*) {}, nullptr);
    Font_Init();
    Text_Init();
    return true;
}

}  // namespace

// Two bytes of width, then the text.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    static const bool started = Start();
    int16_t width = -1;
    if (!started || size < sizeof width) return 0;
    std::memcpy(&width, data, sizeof width);
    const std::string text(reinterpret_cast<const char*>(data) + sizeof width, size - sizeof width);
    TextLines lines;
    Text_Split(text.c_str(), width, &lines);
    int32_t count = 0;
    size_t units = 0;
    const uint16_t* behind = nullptr;  // where the line before ended
    for (const TextLine* line = lines.first; line; line = line->next, ++count) {
        Require(!behind || line->units > behind, "lines overlap");
        size_t length = 0;
        while (line->units[length] != 0) ++length;
        behind = line->units + length;
        units += length;
    }
    Require(count == lines.count, "the count is wrong");
    Require(units <= text.size(), "the lines hold more than the text");
    Require(Text_Height(text.c_str(), 1, width) >= 0, "a negative height");
    TextPlace place{0, 0};
    place.width = width;
    Text_Draw(text.c_str(), place);
    return 0;
}
