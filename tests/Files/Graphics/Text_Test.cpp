// Lines of a text: where they end, how wide and high they are, and where they lie.

#include "Files/Function/Function_Graphic.h"
#include "tests/Files/Graphics/support_Fonts.h"
#include "tests/Files/support_Script.h"

namespace {

class TextTest : public FontsTest {
protected:
    void SetUp() override
    {
        FontsTest::SetUp();
        font_ = SmallFont();
    }

    // The lines with "|" between them; control characters as "r" and "n".
    static std::string Lines(const char* text, int32_t width = -1)
    {
        TextLines lines;
        Text_Split(text, width, &lines);
        std::string all;
        int32_t count = 0;
        for (const TextLine* line = lines.first; line; line = line->next, ++count) {
            if (count) all += '|';
            for (const uint16_t* unit = line->units; *unit; ++unit)
                all += *unit == 13 ? 'r' : *unit == 10 ? 'n' : *unit < 128 ? char(*unit) : '?';
        }
        EXPECT_EQ(count, lines.count);
        return count ? all : "none";
    }
    CFontSW* font_ = nullptr;
};

TEST_F(TextTest, ControlCharactersEndLinesAndAPairCountsOnce)
{
    EXPECT_EQ(Lines(""), "none");
    EXPECT_EQ(Lines("a"), "a");
    EXPECT_EQ(Lines("a#b"), "a#b");
    EXPECT_EQ(Lines("a\nb"), "a|b");
    EXPECT_EQ(Lines("a\n"), "a");
    EXPECT_EQ(Lines("\n"), "");
    EXPECT_EQ(Lines("a\n\nb"), "a||b");
    EXPECT_EQ(Lines("a\r\rb"), "a||b");
    EXPECT_EQ(Lines("a\r\nb"), "a|nb");
    EXPECT_EQ(Lines("a\n\rb"), "a|rb");
    EXPECT_EQ(Lines("a\r\n\r\nb"), "a|n|nb");
    EXPECT_EQ(Lines("a\r\n\nb"), "a|n|b");
}

TEST_F(TextTest, WrapsAtBlanksAndAtReturns)
{
    EXPECT_EQ(Lines("", 100), "none");
    EXPECT_EQ(Lines("aa aa", 23), "aa aa");  // just fits
    EXPECT_EQ(Lines("aa aa", 22), "aa|aa");
    EXPECT_EQ(Lines("aa aa aa", 24), "aa aa|aa");
    EXPECT_EQ(Lines("aa   aa", 16), "aa|aa");          // blanks at the end of a line go
    EXPECT_EQ(Lines("aa    ", 100), "aa");             // at the end of the text too
    EXPECT_EQ(Lines("   aa aa", 10), "   aa|aa");      // blanks in front stay and count nothing
    EXPECT_EQ(Lines("a aaaaaa a", 12), "a|aaaaaa|a");  // a long word stands whole
    EXPECT_EQ(Lines("aaaaaa", 12), "aaaaaa");
    EXPECT_EQ(Lines("a\ra", 100), "a|a");
    EXPECT_EQ(Lines("a\r\ra", 100), "a||a");
    EXPECT_EQ(Lines("a\na", 100), "ana");  // the other control character has no meaning here
    EXPECT_EQ(Lines("    ", 100), "none");
}

// Nothing that a script passes may hang the splitting or read outside the text.
TEST_F(TextTest, EndsWhereNotEvenOneCharacterFits)
{
    EXPECT_EQ(Lines("aaa", 0), "none");
    EXPECT_EQ(Lines("aaa", 4), "none");
    EXPECT_EQ(Lines("  aaa", 4), "none");
    EXPECT_EQ(Lines("a\raaa", 0), "none");
    EXPECT_EQ(Lines("\raaa", 0), "");
    EXPECT_TRUE(Drawn("aaa", {.x = 0, .y = 0, .width = 0}).empty());
}

TEST_F(TextTest, ReadsAnyBytes)
{
    EXPECT_EQ(Lines("\xC3\xA3"), "?");
    EXPECT_EQ(Lines("\xF0\x9F\x98\x80"), "?");  // above 16 bits: one unit
    EXPECT_EQ(Lines("a\xC3"), "a?");
    EXPECT_EQ(Lines("a\xC0\x80"
                    "b"),
              "a?b");  // a zero that is spelled out ends nothing
    EXPECT_EQ(Lines("\x80\xFF\xE2\x28"),
              "??"
              "?(");
    EXPECT_EQ(Text_Width("a\xD0\x96\xF0\x9F\x98\x80"
                         "a"),
              10);  // no glyph, no gap
    std::string every;
    for (int i = 1; i < 256; ++i) every += static_cast<char>(i);
    every += every;
    for (int32_t width = -1; width < 40; ++width) {
        TextLines lines;
        Text_Split(every.c_str(), width, &lines);
    }
}

TEST_F(TextTest, Measures)
{
    EXPECT_EQ(font_->TextHeight(), 10);
    EXPECT_EQ(Text_Width(""), 0);
    EXPECT_EQ(Text_Height(""), 0);
    EXPECT_EQ(Text_Width("ab#"), 17);
    EXPECT_EQ(Text_Width("a\nbbb\na"), 24);
    EXPECT_EQ(Text_Height("a"), 10);
    EXPECT_EQ(Text_Height("b"), 10);  // of the font, whatever the text is
    EXPECT_EQ(Text_Height("a\n\nb"), 30);
    EXPECT_EQ(Text_Height("a\nb", 4), 14);
    EXPECT_EQ(Text_Height("aa aa aa", 7, 24), 17);
    EXPECT_EQ(Text_Width("aa aa aa", 24), 23);
    font_->xscale = font_->yscale = 3;
    EXPECT_EQ(Text_Width("ab#"), 17);
    EXPECT_EQ(Text_Height("a"), 10);
}

TEST_F(TextTest, APenWalksAlongTheLine)
{
    const std::vector<GlyphQuad> quads = Drawn("ab a", {.x = 20.5F, .y = 30});
    ASSERT_EQ(quads.size(), 4U);
    const uint32_t black = 0xFF000000U;
    const GlyphQuad a{20.5F, 30, 25.5F, 40, 8.0F / 64, 0, black, black, black, black};
    const GlyphQuad b{26.5F, 30, 32.5F, 37, 16.0F / 64, 0, black, black, black, black};
    EXPECT_EQ(quads[0], a);
    EXPECT_EQ(quads[1], b);
    EXPECT_EQ(quads[3].left, 36.5F);
    EXPECT_EQ(g_GraphicsStats.drawCalls, 1);  // a line costs no flush of its own
}

TEST_F(TextTest, ScaleAndBorderOfTheFont)
{
    font_->xscale = 2;
    font_->yscale = 3;
    font_->border = 0.5F;
    const std::vector<GlyphQuad> quads = Drawn("ab", {.x = 0, .y = 0});
    ASSERT_EQ(quads.size(), 2U);
    EXPECT_EQ(quads[0].left, -0.5F);
    EXPECT_EQ(quads[0].right, 10.5F);
    EXPECT_EQ(quads[0].bottom, 30.5F);
    EXPECT_EQ(quads[0].u, 7.5F / 64);
    EXPECT_EQ(quads[0].v, -0.5F / 16);
    EXPECT_EQ(quads[1].left, 10 + 2 - 0.5F);
}

TEST_F(TextTest, Alignments)
{
    Text_SetHAlign(1);
    EXPECT_EQ(Corners(Drawn("a", {.x = 20, .y = 0})), "18,0");  // width 5: rounds to the left
    Text_SetHAlign(2);
    EXPECT_EQ(Corners(Drawn("a\naa", {.x = 20, .y = 0})), "15,0 10,10 15,10");
    Text_SetHAlign(0);
    Text_SetVAlign(1);
    EXPECT_EQ(Corners(Drawn("a\na\na", {.x = 0, .y = 50, .separation = 5})), "0,43 0,48 0,53");
    Text_SetVAlign(2);
    EXPECT_EQ(Corners(Drawn("a\r\na", {.x = 0, .y = 50})), "0,30 0,40");
    EXPECT_EQ(Corners(Drawn("a\n\na", {.x = 0, .y = 50})), "0,20 0,40");  // an empty line's room
    for (const int32_t wrong : {-1, 3, 1000}) {
        Text_SetHAlign(wrong);
        Text_SetVAlign(wrong);
        EXPECT_EQ(g_TextState.halign, 0);
        EXPECT_EQ(g_TextState.valign, 0);
    }
}

// A wrapped line is centred by what is left of it without the blanks at its end.
TEST_F(TextTest, BlanksAtTheEndOfAWrappedLineDoNotCount)
{
    Text_SetHAlign(2);
    EXPECT_EQ(Corners(Drawn("aa   aa", {.x = 50, .y = 0, .width = 16})), "40,0 45,0 40,10 45,10");
}

TEST_F(TextTest, TurnedAndScaledTextStepsAlongItsOwnLines)
{
    constexpr float kRight = 1.5707963F;  // a quarter turn, anticlockwise on the screen
    TextPlace place{.x = 40, .y = 40, .separation = 10, .transformed = true};
    place.xscale = 2;
    place.yscale = 3;
    std::vector<GlyphQuad> quads = Drawn("aa\na", place);
    ASSERT_EQ(quads.size(), 3U);
    EXPECT_EQ(Corners(quads), "40,40 50,40 40,70");
    EXPECT_EQ(quads[0].right, 50);
    EXPECT_EQ(quads[0].bottom, 70);
    place.angle = kRight;
    quads = Drawn("aa\na", place);
    ASSERT_EQ(quads.size(), 3U);
    EXPECT_NEAR(quads[1].left, 40, 1e-3);  // the pen goes up the screen
    EXPECT_NEAR(quads[1].top, 30, 1e-3);
    EXPECT_NEAR(quads[2].left, 70, 1e-3);  // the next line lies to the right
    EXPECT_NEAR(quads[2].top, 40, 1e-3);
    Text_SetHAlign(1);
    Text_SetVAlign(2);
    quads = Drawn("a\naa", place);
    EXPECT_NEAR(quads[0].left, 40 - 60, 1e-3);
    EXPECT_NEAR(quads[0].top, 40 + 5, 1e-3);  // half of 5 times 2, not rounded
    EXPECT_NEAR(quads[1].left, 40 - 30, 1e-3);
    EXPECT_NEAR(quads[1].top, 40 + 10, 1e-3);
}

TEST_F(TextTest, DrawColourAndAlphaAreKeptToTheByte)
{
    Draw_SetColour(0x0000FF);
    for (int32_t byte = 0; byte < 256; ++byte) {
        Draw_SetAlpha(byte / 255.0);
        const std::vector<GlyphQuad> quads = Drawn("a", {.x = 0, .y = 0});
        ASSERT_EQ(quads.size(), 1U);
        ASSERT_EQ(quads[0].topLeft, static_cast<uint32_t>(byte) << 24 | 0xFF0000U);
    }
    Draw_SetAlpha(1);
    Drawn("a", {.x = 10, .y = 10});
    EXPECT_EQ(BackBuffer(14, 19), kRed);
    EXPECT_NE(BackBuffer(15, 19), kRed);
}

TEST_F(TextTest, CornerColoursAreSpreadOverTheLine)
{
    const uint32_t colours[4] = {0x000000, 0x0000FF, 0x00FFFF, 0x00FF00};
    const TextPlace place{.x = 0, .y = 0, .colours = colours, .alpha = 0.5F};
    const std::vector<GlyphQuad> quads = Drawn("aa", place);
    ASSERT_EQ(quads.size(), 2U);
    EXPECT_EQ(quads[0].topLeft, 0x7F000000U);
    EXPECT_EQ(quads[0].topRight, 0x7F800000U);
    EXPECT_EQ(quads[1].topLeft, 0x7F800000U);
    EXPECT_EQ(quads[1].topRight, 0x7FFF0000U);
    EXPECT_EQ(quads[0].bottomLeft, 0x7F00FF00U);
    EXPECT_EQ(quads[1].bottomRight, 0x7FFFFF00U);
    g_CornerId = true;
    const std::vector<GlyphQuad> marked = Drawn("aa", place);
    g_CornerId = false;
    EXPECT_EQ(marked[1].topLeft, 0x7F800000U);
    EXPECT_EQ(marked[0].topRight, 0x7F800001U);
    EXPECT_EQ(marked[1].bottomRight, 0x7FFFFF00U);
    EXPECT_EQ(marked[0].bottomLeft, 0x7F01FF01U);
}

TEST_F(TextTest, UsualTextsAllocateNothingAndLongOnesOneBlock)
{
    Drawn("a", {.x = 0, .y = 0});
    const MemoryManager::Stats before = MemoryManager::GetStats();
    Text_Draw("aa bb aa bb\nab ab", {.x = 0, .y = 0, .width = 30});
    EXPECT_EQ(Text_Width("aa bb\naa"), 29);
    EXPECT_EQ(MemoryManager::GetStats().calls, before.calls);
    const std::string text(5000, 'a');
    EXPECT_EQ(Text_Width(text.c_str(), 1000000), 25000);
    EXPECT_EQ(MemoryManager::GetStats().calls, before.calls + 1);
    EXPECT_EQ(MemoryManager::GetStats().blocks, before.blocks);
}

TEST_F(TextTest, TheCurrentFontMayGo)
{
    const int32_t index = g_TextState.font;
    Text_SetHAlign(2);
    Draw_SetColour(0x123456);
    Text_SetFont(99);
    EXPECT_EQ(g_TextState.font, -1);
    EXPECT_EQ(Draw_GetColour(), 0x123456U);
    EXPECT_EQ(g_TextState.halign, 2);
    Text_SetFont(-1);  // this one is the way back to the start
    EXPECT_EQ(Draw_GetColour(), 0U);
    EXPECT_EQ(g_TextState.halign, 0);
    EXPECT_EQ(Text_Font(), Font_Default());
    Text_SetFont(index);
    EXPECT_EQ(Text_Font(), font_);
    ASSERT_TRUE(Font_Delete(index));
    EXPECT_EQ(Text_Font(), Font_Default());
    EXPECT_EQ(Drawn("a", {.x = 0, .y = 0}).size(), 1U);
}

// What scripts pass: any value becomes text, and the arguments reach their places.
TEST_F(TextTest, BuiltIns)
{
    Function_Init();
    Function_Graphic_RegisterText();
    const auto count = [this](const char* name, std::initializer_list<double> arguments) {
        Quads();
        CallFunction(nullptr, name, arguments);
        return Quads();
    };
    auto* digits = VxNew<CFontSW>();
    VxVector<RunTimeGlyph> glyphs = {TestGlyph('.', 0, 2, 10, 2), TestGlyph('1', 8, 5, 10, 5),
                                     TestGlyph('2', 16, 5, 10, 5)};
    digits->TakeGlyphs(std::move(glyphs));
    digits->textureSlot = Page(64, 16, 0xFFFFFFFFU);
    CallFunction(nullptr, "draw_set_font", {static_cast<double>(Font_Add(digits))});
    EXPECT_EQ(CallFunction(nullptr, "draw_get_font"), Font_Count() - 1);
    EXPECT_EQ(Corners(count("draw_text", {3, 4, 12})), "3,4 8,4");
    EXPECT_EQ(count("draw_text", {3, 4, 1.25}).size(), 3U);  // printed with two places, no 5 here
    EXPECT_EQ(count("draw_text", {3, 4}).size(), 0U);
    EXPECT_EQ(Corners(count("draw_text_transformed", {3, 4, 12, 2, 1, 0})), "3,4 13,4");
    const std::vector<GlyphQuad> turned =
        count("draw_text_ext_transformed", {30, 40, 12, 5, 50, 1, 1, 90});
    ASSERT_EQ(turned.size(), 2U);
    EXPECT_NEAR(turned[1].top, 35, 1e-3);
    const std::vector<GlyphQuad> coloured =
        count("draw_text_ext_transformed_color", {3, 4, 1, 5, 50, 1, 1, 0, 0xFF, 0, 0, 0xFF00, 1});
    ASSERT_EQ(coloured.size(), 1U);
    EXPECT_EQ(coloured[0].topLeft, kRed);
    EXPECT_EQ(coloured[0].bottomLeft, kGreen);
    EXPECT_EQ(count("draw_text_colour", {3, 4, 1, 0xFF, 0, 0, 0, 1})[0].topLeft, kRed);
    EXPECT_EQ(CallFunction(nullptr, "string_width", {1212}), 20);
    EXPECT_EQ(CallFunction(nullptr, "string_height", {12}), 10);
    EXPECT_EQ(CallFunction(nullptr, "string_width_ext", {12, -1, 4}), 0);
    CallFunction(nullptr, "draw_set_halign", {2});
    CallFunction(nullptr, "draw_set_valign", {7});
    EXPECT_EQ(CallFunction(nullptr, "draw_get_halign"), 2);
    EXPECT_EQ(CallFunction(nullptr, "draw_get_valign"), 0);
}

}  // namespace
