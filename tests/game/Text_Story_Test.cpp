// The words of the game in its own fonts.

#include <gtest/gtest.h>

#include "Files/Base/Archive_Records.h"
#include "Files/Base/Utf8.h"
#include "Files/Font/CFontSW.h"
#include "Files/Graphics/Text.h"
#include "Files/Graphics/TextureSlots.h"
#include "Names.h"
#include "tests/support/Stage.h"

using namespace names;

namespace {

constexpr int kWindowWidth = 854;  // pixels

struct Words {
    Font font;
    const char* text;
};
// The longest of each font, and those with letters beyond English.
const Words kWords[] = {
    {fInterfaceSmall, "Do you really want to restart your progress?\rAll save data will be lost."},
    {fInterfaceSmall,
     "Voce realmente deseja reiniciar seu progresso?\rTodos seus dados salvos serao perdidos."},
    {fInterfaceSmall, "2 Players (co-op)"},
    {fInterfaceSmall, "2 Jogadores (cooperativo)"},
    {fUltraSmall, "Não"},
    {fUltraSmall,
     "Se você gostou do jogo,\rpor favor deixe seu review positivo\rna Google Play Store"},
    {fSuperSmall, "Velocidade do Jogo"},
    {fSuperSmall, "How to play"},
};

bool HasInk(const CFontSW& font, const ArchiveGlyph& glyph)
{
    const int32_t x = font.entry->x + glyph.x, y = font.entry->y + glyph.y;
    std::vector<uint32_t> pixels(static_cast<size_t>(glyph.width) * glyph.height);
    if (!Texture_ReadPixels(font.entry->texture, {x, y, x + glyph.width, y + glyph.height},
                            pixels.data()))
        return false;
    for (const uint32_t pixel : pixels)
        if (pixel >> 24 > 127) return true;
    return false;
}

TEST(TextStory, EveryWordHasItsLettersAndFitsTheWindow)
{
    Stage stage;
    ASSERT_TRUE(stage.started());
    for (const Words& words : kWords) {
        Text_SetFont(words.font.index);
        CFontSW* font = Font_Data(words.font.index);
        ASSERT_NE(font, nullptr);
        for (const char* at = words.text; *at;) {
            const auto character = static_cast<uint16_t>(Utf8_Next(&at));
            if (character <= ' ') continue;
            const ArchiveGlyph* glyph = font->GlyphFor(character);
            ASSERT_NE(glyph, nullptr) << font->name << " lacks " << character;
            EXPECT_EQ(glyph->character, character);
            EXPECT_TRUE(HasInk(*font, *glyph)) << font->name << ' ' << character;
        }
        EXPECT_LT(Text_Width(words.text), kWindowWidth) << words.text;
    }
}

TEST(TextStory, GlyphsOfAFontStandApartInItsPicture)
{
    Stage stage;
    for (int32_t index = 0; index < Font_Count(); ++index) {
        const CFontSW* font = Font_Data(index);
        std::vector<uint8_t> taken(static_cast<size_t>(font->textureWidth) * font->textureHeight);
        for (int32_t i = 0; i < font->glyphCount; ++i) {
            const ArchiveGlyph& glyph = *font->glyphs[i];
            ASSERT_GE(glyph.character, font->first);
            ASSERT_LE(glyph.character, font->last);
            ASSERT_LE(glyph.x + glyph.width, font->textureWidth);
            ASSERT_LE(glyph.y + glyph.height, font->textureHeight);
            for (int y = glyph.y; y < glyph.y + glyph.height; ++y)
                for (int x = glyph.x; x < glyph.x + glyph.width; ++x)
                    ASSERT_EQ(taken[static_cast<size_t>(y) * font->textureWidth + x]++, 0)
                        << font->name << ' ' << glyph.character;
        }
    }
}

// A second run of the process must not inherit the font of the first one.
TEST(TextStory, AStartForgetsTheStateOfText)
{
    {
        Stage stage;
        Text_SetFont(fInterface.index);
        Text_SetHAlign(2);
        Text_SetVAlign(1);
        Font_Default();
    }
    Stage stage;
    EXPECT_EQ(g_TextState.font, -1);
    EXPECT_EQ(g_TextState.halign, 0);
    EXPECT_EQ(g_TextState.valign, 0);
}

}  // namespace
