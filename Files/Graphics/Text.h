#pragma once
// Text as scripts draw and measure it: the state, the splitting into lines, and the
// placing of the lines. Texts are UTF-8.

#include <cstddef>
#include <cstdint>

class CFontSW;

enum TextAlign : int32_t { ALIGN_NEAR = 0, ALIGN_MIDDLE = 1, ALIGN_FAR = 2 };

struct TextState {
    int32_t font = -1;  // -1: the default font
    int32_t halign = ALIGN_NEAR, valign = ALIGN_NEAR;
};
extern TextState g_TextState;

void Text_Init();
// -1 brings alignment, draw colour and draw alpha back to their start as well; any other
// that does not exist sets -1 and nothing else.
void Text_SetFont(int32_t font);
void Text_SetHAlign(int32_t align);
void Text_SetVAlign(int32_t align);
CFontSW* Text_Font();  // the current font, or the default one; never null

// A line of 16-bit units that ends with a zero, and the one below it.
struct TextLine {
    const uint16_t* units;
    TextLine* next;
};

// The lines of a text. Texts of usual length need no memory of their own; a longer one
// takes a single block.
class TextLines {
public:
    TextLines() = default;
    ~TextLines();
    TextLines(const TextLines&) = delete;
    TextLines& operator=(const TextLines&) = delete;

    int32_t count = 0;
    TextLine* first = nullptr;

    // Room for a text's units with their end, and for its lines; drops what was there.
    uint16_t* Reserve(size_t units, size_t lines);
    void Add(const uint16_t* units);

private:
    static constexpr size_t kInlineBytes = 4096;
    alignas(TextLine) unsigned char inline_[kInlineBytes];
    void* block_ = nullptr;
    TextLine* nodes_ = nullptr;
    TextLine* last_ = nullptr;
};

// Splits a text for the current font. width: pixels at which lines wrap; below 0 only
// control characters end a line: 13, 10, and either with the other behind it. On the
// wrapping path 13 alone does, and a width that not even one character fits drops the
// rest of the text. What is no UTF-8 stands byte by byte; characters above 16 bits
// become one unit that no font has.
void Text_Split(const char* text, int32_t width, TextLines* lines);

// How a text lies about its point.
struct TextPlace {
    float x, y;
    int32_t separation = -1;  // pixels from line to line; below 0: the font's height
    int32_t width = -1;       // as in Text_Split
    bool transformed = false;
    float xscale = 1, yscale = 1, angle = 0;  // radians; only when transformed
    // Top left, top right, bottom right, bottom left of each line, with `alpha`, 0 to 1;
    // null: the draw colour and the draw alpha.
    const uint32_t* colours = nullptr;
    float alpha = 1;
};
void Text_Draw(const char* text, const TextPlace& place);

// Pixels, without any scale. A text without lines is 0 high.
int32_t Text_Width(const char* text, int32_t width = -1);
double Text_Height(const char* text, int32_t separation = -1, int32_t width = -1);
