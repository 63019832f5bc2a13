#pragma once
// Fonts made by hand, and the quads that a text becomes.

#include "Files/Font/CFontSW.h"
#include "Files/Font/Font_Glyphs.h"
#include "Files/Graphics/Text.h"
#include "tests/Files/Graphics/support_Drawing.h"

inline RunTimeGlyph TestGlyph(uint16_t character, uint16_t x, uint16_t width, uint16_t height,
                              uint16_t shift, int16_t offset = 0)
{
    RunTimeGlyph glyph{};
    glyph.character = character;
    glyph.x = x;
    glyph.width = width;
    glyph.height = height;
    glyph.shift = shift;
    glyph.offset = offset;
    return glyph;
}

struct GlyphQuad {
    float left, top, right, bottom, u, v;
    uint32_t topLeft, topRight, bottomRight, bottomLeft;
    bool operator==(const GlyphQuad&) const = default;
};

class FontsTest : public DrawingTest {
protected:
    void SetUp() override
    {
        DrawingTest::SetUp();
        Batch_SetMethod(BATCH_MEMORY);
        DrawState_Init();
        Font_Init();
        Text_Init();
    }
    void TearDown() override
    {
        Font_Quit();
        DrawingTest::TearDown();
    }

    // "a" 5 wide and 10 high, "b" 8 wide and 7 high behind an offset of 1, "#" 4 wide, a
    // blank of 3; all on a white page of 64 by 16. Becomes the current font.
    CFontSW* SmallFont()
    {
        auto* font = VxNew<CFontSW>();
        VxVector<RunTimeGlyph> glyphs = {TestGlyph('b', 16, 6, 7, 8, 1),
                                         TestGlyph('a', 8, 5, 10, 5), TestGlyph('#', 32, 4, 10, 4),
                                         TestGlyph(' ', 40, 1, 1, 3)};
        font->TakeGlyphs(std::move(glyphs));
        font->textureSlot = Page(64, 16, 0xFFFFFFFFU);
        Text_SetFont(Font_Add(font));
        return font;
    }

    // What the drawing since the last call sent, glyph by glyph.
    std::vector<GlyphQuad> Quads()
    {
        Batch_Flush();
        std::vector<GlyphQuad> quads;
        for (const Sent& sent : Draws())
            for (size_t i = 0; i + 6 <= sent.vertices.size(); i += 6) {
                const VertexTextured* v = &sent.vertices[i];
                quads.push_back({v[0].x, v[0].y, v[2].x, v[2].y, v[0].u, v[0].v, v[0].colour,
                                 v[1].colour, v[2].colour, v[4].colour});
            }
        Log().clear();
        return quads;
    }
    std::vector<GlyphQuad> Drawn(const char* text, const TextPlace& place)
    {
        Quads();
        Text_Draw(text, place);
        return Quads();
    }
    // Left and top of each quad, as "x,y x,y".
    static std::string Corners(const std::vector<GlyphQuad>& quads)
    {
        std::string all;
        for (const GlyphQuad& quad : quads) {
            char text[64];
            std::snprintf(text, sizeof text, "%s%g,%g", all.empty() ? "" : " ",
                          static_cast<double>(quad.left), static_cast<double>(quad.top));
            all += text;
        }
        return all;
    }
};
