// Fonts of the archive, the default one, and those made from sprites and font files.

#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <iterator>

#include "Files/Base/Archive_Main.h"
#include "Files/Base/Console.h"
#include "Files/Function/Function_Resource.h"
#include "Files/Graphics/Bitmap.h"
#include "Host/Host_Stage.h"
#include "tests/Files/Graphics/support_Fonts.h"
#include "tests/Files/support_Script.h"

namespace {

constexpr char kFaceFile[] = "/usr/share/fonts/truetype/open-sans/OpenSans-Regular.ttf";

class FontTest : public FontsTest {
protected:
    void SetUp() override
    {
        FontsTest::SetUp();
        folder_ = std::filesystem::temp_directory_path() / ("fonts-" + std::to_string(getpid()));
        std::filesystem::create_directories(folder_);
        g_WorkingDirectory = (folder_.string() + "/").c_str();
        lines_.clear();
        Console_SetSink([](void*, const char* text) { lines_ += text; }, nullptr);
    }
    void TearDown() override
    {
        g_WorkingDirectory.clear();
        std::filesystem::remove_all(folder_);
        FontsTest::TearDown();
    }
    void CopyFace() { std::filesystem::copy_file(kFaceFile, folder_ / "face.ttf"); }

    // Pixels that a text changes on a black back buffer, in white.
    int Inked(const char* text, float y = 0)
    {
        View_SetWindow();
        View_Clear(CLEAR_COLOUR, 0xFF000000U);
        Draw_SetColour(0xFFFFFF);
        Text_Draw(text, {.x = 0, .y = y});
        int inked = 0;
        for (int32_t row = 0; row < kHeight; ++row)
            for (int32_t x = 0; x < kWidth; ++x) inked += BackBuffer(x, row) != 0xFF000000U;
        return inked;
    }

    std::filesystem::path folder_;
    static std::string lines_;
};
std::string FontTest::lines_;

// A chunk with an empty slot and one font, at offset 64 of its archive.
class Chunk {
public:
    explicit Chunk(const ArchiveFont& font, const std::vector<ArchiveGlyph>& glyphs)
    {
        bytes_.resize(kAt);
        Put(uint32_t{2});
        Put(uint32_t{0});
        Put(static_cast<uint32_t>(bytes_.size() + 4));
        Put(font);
        const size_t pool = bytes_.size() + glyphs.size() * 4;
        for (size_t i = 0; i < glyphs.size(); ++i)
            Put(static_cast<uint32_t>(pool + i * sizeof(ArchiveGlyph)));
        for (const ArchiveGlyph& glyph : glyphs) Put(glyph);
        for (int i = 0; i < 256; ++i) Put(static_cast<uint16_t>(255 - i));
    }
    void Load()
    {
        ASSERT_TRUE(Font_Load(bytes_.data() + kAt, static_cast<uint32_t>(bytes_.size() - kAt),
                              bytes_.data()));
    }

private:
    template <class T>
    void Put(const T& value)
    {
        const auto* from = reinterpret_cast<const uint8_t*>(&value);
        bytes_.insert(bytes_.end(), from, from + sizeof value);
    }
    static constexpr size_t kAt = 64;
    std::vector<uint8_t> bytes_;
};

ArchiveFont Record(uint32_t glyphs)
{
    ArchiveFont font{};
    font.size = 24;
    font.bold = 1;
    font.first = 32;
    font.last = 255;
    font.scaleX = 0.5F;
    font.scaleY = 2;
    font.glyphCount = glyphs;
    return font;
}

TEST_F(FontTest, ARecordFillsAFont)
{
    std::vector<ArchiveGlyph> glyphs;
    for (uint16_t i = 0; i < 20; ++i)
        glyphs.push_back({static_cast<uint16_t>(40 + 3 * i), i, 2, 3,
                          static_cast<uint16_t>(5 + i % 7), static_cast<uint16_t>(100 + i), -4, 0});
    ArchiveFont record = Record(20);
    record.charset = 7;
    record.antialias = 3;
    Chunk chunk(record, glyphs);
    chunk.Load();
    ASSERT_EQ(Font_Count(), 2);
    EXPECT_EQ(Font_Data(0), nullptr);
    CFontSW* font = Font_Data(1);
    ASSERT_NE(font, nullptr);
    EXPECT_EQ(font->size, 24);
    EXPECT_TRUE(font->bold);
    EXPECT_EQ(font->first, 32);
    EXPECT_EQ(font->charset, 7);
    EXPECT_EQ(font->antialias, 2);
    EXPECT_EQ(font->height, 11);
    EXPECT_EQ(font->xscale, 0.5F);
    EXPECT_EQ(font->textureWidth, 0);
    for (uint16_t i = 0; i < 20; ++i) {
        EXPECT_EQ(font->CharWidth(static_cast<uint16_t>(40 + 3 * i)), 100 + i);
        EXPECT_EQ(font->GlyphFor(static_cast<uint16_t>(41 + 3 * i)), nullptr);
    }
    EXPECT_EQ(font->CharWidth(0), 0);
    EXPECT_EQ(font->CharWidth(0xFFFF), 0);
    font->DrawLine(0, 0, reinterpret_cast<const uint16_t*>(u"("), 0, 1);  // no page: nothing
    EXPECT_TRUE(Quads().empty());
}

TEST_F(FontTest, AMissingCharacterShowsTheSignForIt)
{
    Chunk chunk(Record(2), {{'a', 0, 0, 5, 5, 6, 0, 0}, {kMissingGlyph, 8, 0, 5, 5, 9, 0, 0}});
    chunk.Load();
    EXPECT_EQ(Font_Data(1)->CharWidth('b'), 9);
    EXPECT_EQ(Font_Data(1)->GlyphFor('b')->character, kMissingGlyph);
}

TEST_F(FontTest, GlyphsLieInTheFontsPictureOnItsPage)
{
    Chunk chunk(Record(1), {{'a', 2, 1, 6, 4, 8, -1, 0}});
    chunk.Load();
    ArchivePageEntry entry = Entry(Page(64, 32, kRed), 16);
    entry.x = 10;
    entry.y = 20;
    Font_Data(1)->entry = &entry;
    Text_SetFont(1);
    const std::vector<GlyphQuad> quads = Drawn("aa", {.x = 10, .y = 10});
    ASSERT_EQ(quads.size(), 2U);
    EXPECT_EQ(Corners(quads), "9.5,10 13.5,10");  // half as wide, the offset too
    EXPECT_EQ(quads[0].right, 12.5F);
    EXPECT_EQ(quads[0].bottom, 18);
    EXPECT_EQ(quads[0].u, 12.0F / 64);
    EXPECT_EQ(quads[0].v, 21.0F / 32);
}

TEST_F(FontTest, TheDefaultFontShowsEveryCharacterOfItsOwn)
{
    CFontSW* font = Font_Default();
    EXPECT_EQ(font, Font_Default());
    EXPECT_STREQ(font->name, "debug");
    ASSERT_EQ(font->glyphCount, 136 - 32 + 1);
    EXPECT_EQ(font->textureWidth, 256);
    EXPECT_EQ(font->textureHeight, 128);
    for (int32_t i = 0; i < font->glyphCount; ++i) {
        const ArchiveGlyph* glyph = font->glyphs[i];
        EXPECT_EQ(glyph->character, 32 + i);
        EXPECT_EQ(glyph->shift, glyph->width);
        EXPECT_EQ(glyph->offset, 0);
        EXPECT_LE(glyph->x + glyph->width, 256);
        EXPECT_LE(glyph->y + glyph->height, 128);
    }
    for (char character = 33; character < 127; ++character) {
        const char text[2] = {character, 0};
        EXPECT_GT(Inked(text), 0) << character;
    }
    EXPECT_EQ(Inked(" "), 0);
    EXPECT_EQ(Inked("."), 4 * 4);
    EXPECT_EQ(BackBuffer(3, 13), 0xFFFFFFFFU);  // the dot, on the base line of its box
    const int32_t slot = font->textureSlot;
    EXPECT_TRUE(Texture_Exists(slot));
    Font_Quit();
    EXPECT_FALSE(Texture_Exists(slot));
}

TEST_F(FontTest, APictureBesideTheGameTakesTheDefaultFontsPlace)
{
    const std::vector<uint8_t> red(256 * 128 * 4, 0xFF);
    ASSERT_TRUE(WritePNG((folder_ / "font.png").c_str(), red.data(), 256, 128));
    EXPECT_EQ(Inked("aa"), 24 * 18);
    Font_Quit();
    ASSERT_TRUE(WritePNG((folder_ / "font.png").c_str(), red.data(), 128, 128));  // no such layout
    EXPECT_LT(Inked("aa"), 24 * 18);
    Font_Quit();
    std::ofstream(folder_ / "font.png") << "no picture";
    EXPECT_GT(Inked("aa"), 0);
}

// Three frames of 8 by 6: columns 2 to 4 full, nothing, column 7 full.
int32_t LetterSprite()
{
    auto* sprite = VxNew<CSprite>();
    sprite->name = "letters";
    for (const auto& [left, right] : {std::pair{2, 4}, {0, -1}, {7, 7}}) {
        auto* bitmap = VxNew<CBitmap32>(8, 6);
        for (int32_t y = 0; y < 6; ++y)
            for (int32_t x = left; x <= right; ++x) bitmap->data[y * 8 + x] = 0xFFFFFFFFU;
        sprite->AddFrame(bitmap);
    }
    return Sprite_Add(sprite);
}

TEST_F(FontTest, FramesOfASpriteAsLetters)
{
    const int32_t sprite = LetterSprite();
    const int32_t wide = Font_Add(Font_FromSprite(sprite, 'A', false, 2));
    EXPECT_STREQ(Font_Name(wide), "__newfont0");
    Text_SetFont(wide);
    EXPECT_EQ(Text_Font()->TextHeight(), 6);
    EXPECT_EQ(Text_Width("ABC"), 30);
    EXPECT_EQ(Text_Width("A A"), 28);  // a blank as wide as the sprite
    EXPECT_EQ(Text_Width("D"), 0);
    EXPECT_EQ(Corners(Drawn("AC", {.x = 20, .y = 30})), "20,30 30,30");

    const int32_t narrow = Font_Add(Font_FromSpriteText(sprite, "\xC3\xA3 x", true, 1));
    Text_SetFont(narrow);
    EXPECT_EQ(Text_Width("\xC3\xA3"), 4);
    EXPECT_EQ(Text_Width(" "), 9);
    EXPECT_EQ(Text_Width("x"), 2);
    EXPECT_EQ(Inked("\xC3\xA3x"), 4 * 6);
    EXPECT_EQ(BackBuffer(2, 3), 0xFFFFFFFFU);
    EXPECT_EQ(BackBuffer(3, 3), 0xFF000000U);
    EXPECT_EQ(BackBuffer(4, 3), 0xFFFFFFFFU);

    Sprite_Delete(sprite);  // the letters go, the room for them stays
    EXPECT_EQ(Text_Width("\xC3\xA3x"), 6);
    EXPECT_EQ(Inked("\xC3\xA3x"), 0);
    EXPECT_EQ(Font_FromSprite(sprite, 'A', false, 0), nullptr);
}

TEST_F(FontTest, TrimmedFramesOfThePagesKeepTheirPlace)
{
    const int32_t sprite = PlainSprite(8, kRed);
    ArchivePageEntry* entry = Sprite_Data(sprite)->Entry(0);
    entry->targetX = 2;
    entry->targetY = 1;
    entry->targetWidth = entry->width = 4;
    entry->targetHeight = entry->height = 3;
    Text_SetFont(Font_Add(Font_FromSprite(sprite, 'A', false, 0)));
    EXPECT_EQ(Corners(Drawn("AA", {.x = 10, .y = 10})), "12,11 20,11");
    Text_SetFont(Font_Add(Font_FromSprite(sprite, 'A', true, 0)));
    EXPECT_EQ(Corners(Drawn("AA", {.x = 10, .y = 10})), "10,11 14,11");
}

TEST_F(FontTest, TheArchivesTableNamesTheCharactersOfFrames)
{
    Chunk chunk(Record(0), {});
    chunk.Load();
    Text_SetFont(Font_Add(Font_FromSprite(LetterSprite(), 100, false, 0)));
    EXPECT_EQ(Text_Font()->first, ' ');
    EXPECT_EQ(Text_Font()->CharWidth(155), 8);  // the table of this chunk runs backwards
    EXPECT_EQ(Text_Font()->CharWidth(153), 8);
    EXPECT_EQ(Text_Font()->CharWidth(100), 0);
}

TEST_F(FontTest, LettersOfAFontFileAreDrawnWhenTheyAreUsed)
{
    CopyFace();
    CFontSW* font = Font_FromFile("face.ttf", 12, false, false, 32, 255);
    ASSERT_NE(font, nullptr) << lines_;
    Text_SetFont(Font_Add(font));
    EXPECT_STREQ(font->faceName, "Open Sans");
    EXPECT_EQ(font->border, 0.5F);
    EXPECT_NEAR(font->height, 22, 2);  // 12 points are 16 pixels, and a line is higher
    const RunTimeGlyph* a = nullptr;
    for (const RunTimeGlyph& glyph : font->ownGlyphs) {
        EXPECT_FALSE(glyph.filled);
        if (glyph.character == 'a') a = &glyph;
    }
    ASSERT_NE(a, nullptr);
    const int32_t width = Text_Width("aaa");
    EXPECT_FALSE(a->filled);  // measuring needs no pixels
    EXPECT_GT(width, 15);
    const int once = Inked("a");
    EXPECT_GT(once, 20);
    EXPECT_TRUE(a->filled);
    EXPECT_EQ(Inked("a"), once);
    EXPECT_GT(Inked("\xC3\xA3"), once);  // the tilde
    EXPECT_EQ(Inked("\xD0\x96"), 0);     // outside the range
}

// More letters than the texture holds: it starts over in the middle of a line, and what
// was drawn before stays as it was.
TEST_F(FontTest, AFullTextureStartsOver)
{
    CopyFace();
    CFontSW* font = Font_FromFile("face.ttf", 300, false, false, 'A', 'Z');
    ASSERT_NE(font, nullptr);
    EXPECT_EQ(font->textureWidth, 1024);
    Text_SetFont(Font_Add(font));
    const int alone = Inked("A", -300);
    EXPECT_GT(alone, 0);
    Text_Draw("BCDEFGHIJKLMNOPQRSTUVWXYZ", {.x = 1000, .y = 1000});
    EXPECT_EQ(Inked("A", -300), alone);
    EXPECT_EQ(Inked("ABCDEFGHIJKLMNOPQRSTUVWXYZ", -300), alone);
}

TEST_F(FontTest, BoldAndItalicAreMadeWhenTheFaceLacksThem)
{
    CopyFace();
    Text_SetFont(Font_Add(Font_FromFile("face.ttf", 20, false, false, 32, 127)));
    const int plain = Inked("l");
    Text_SetFont(Font_Add(Font_FromFile("face.ttf", 20, true, false, 32, 127)));
    EXPECT_GT(Inked("l"), plain);
    Text_SetFont(Font_Add(Font_FromFile("face.ttf", 20, false, true, 32, 127)));
    EXPECT_GT(Inked("l"), plain);
}

TEST_F(FontTest, AFileThatIsNoFontIsRefusedByName)
{
    EXPECT_EQ(Font_FromFile("none.ttf", 12, false, false, 32, 127), nullptr);
    EXPECT_EQ(lines_, "FreeType :: error = 00000001(1) :: Unable to open font file none.ttf\n");
    lines_.clear();
    std::ofstream(folder_ / "bad.ttf") << "these are no letters";
    EXPECT_EQ(Font_FromFile("bad.ttf", 12, false, false, 32, 127), nullptr);
    EXPECT_NE(lines_.find(" :: Unable to open font file bad.ttf\n"), std::string::npos) << lines_;
    EXPECT_EQ(Font_FromFile("../../etc/passwd", 12, false, false, 32, 127), nullptr);

    CopyFace();
    std::ifstream in(kFaceFile, std::ios::binary);
    const std::string whole((std::istreambuf_iterator<char>(in)), {});
    for (const size_t length : {whole.size() / 2, whole.size() / 10, size_t{12}}) {
        std::ofstream(folder_ / "short.ttf", std::ios::binary) << whole.substr(0, length);
        VxDelete(Font_FromFile("short.ttf", 12, false, false, 32, 127));  // or null
    }
    CFontSW* none = Font_FromFile("face.ttf", 12, false, false, 0xE000, 0xE010);
    ASSERT_NE(none, nullptr);  // a range without letters
    Text_SetFont(Font_Add(none));
    EXPECT_EQ(Inked("abc"), 0);
    EXPECT_EQ(Text_Height("abc"), 0);
}

TEST_F(FontTest, BuiltIns)
{
    Function_Init();
    Function_Resource_RegisterFonts();
    CopyFace();
    const auto call = [](const char* name, const char* text, std::vector<double> numbers) {
        RValue values[8];
        VXCreateString(&values[0], text);
        RValue* arguments[8] = {&values[0]};
        for (size_t i = 0; i < numbers.size(); ++i) {
            values[i + 1] = RValue(numbers[i]);
            arguments[i + 1] = &values[i + 1];
        }
        RValue result;
        CallBuiltin(nullptr, nullptr, result, static_cast<int>(numbers.size() + 1),
                    Function_Find(name), arguments);
        FREE_RValue(&values[0]);
        return result.real;
    };
    const double sprite = LetterSprite();
    EXPECT_EQ(call("font_add", "face.ttf", {14, 0, 1, 32, 126}), 0);
    EXPECT_EQ(call("font_add", "gone.ttf", {14, 0, 1, 32, 126}), -1);
    EXPECT_EQ(CallFunction(nullptr, "font_get_size", {0}), 14);
    EXPECT_EQ(CallFunction(nullptr, "font_get_italic", {0}), 1);
    EXPECT_EQ(CallFunction(nullptr, "font_get_last", {0}), 126);
    EXPECT_EQ(CallFunction(nullptr, "font_get_texture", {0}), Font_Data(0)->textureSlot);
    const int32_t slot = Font_Data(0)->textureSlot;
    EXPECT_EQ(CallFunction(nullptr, "font_replace_sprite", {0, sprite, 65, 0, 0}), 1);
    EXPECT_FALSE(Texture_Exists(slot));
    EXPECT_STREQ(Font_Name(0), "__newfont0");
    EXPECT_EQ(CallFunction(nullptr, "font_get_first", {0}), ' ');
    EXPECT_EQ(CallFunction(nullptr, "font_add_sprite", {sprite, 65, 1, 0}), 1);
    EXPECT_EQ(CallFunction(nullptr, "font_add_sprite", {99, 65, 1, 0}), -1);
    CallFunction(nullptr, "font_delete", {0});
    EXPECT_EQ(CallFunction(nullptr, "font_exists", {0}), 0);
    EXPECT_EQ(CallFunction(nullptr, "font_exists", {1}), 1);
    EXPECT_EQ(CallFunction(nullptr, "font_replace_sprite", {0, sprite, 65, 0, 0}), 0);
}

}  // namespace
