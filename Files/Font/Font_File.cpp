// Fonts of font files, rendered by FreeType. Glyphs are drawn into a texture when they
// are first used; a full texture starts over.

#include <ft2build.h>
#include FT_FREETYPE_H
#include FT_OUTLINE_H
#include FT_SYNTHESIS_H

#include <algorithm>

#include "Files/Base/Console.h"
#include "Files/Font/CFontSW.h"
#include "Files/Font/Font_Glyphs.h"
#include "Files/Graphics/Batch.h"
#include "Files/Graphics/Picture_Files.h"
#include "Files/Graphics/TextureSlots.h"

struct FontFile {
    uint8_t* bytes = nullptr;  // the file; the face reads from it
    FT_Face face = nullptr;
    int32_t ascent = 0, lineHeight = 0;    // pixels
    bool embolden = false, slant = false;  // what the face itself lacks
    int32_t penX = 0, penY = 0;            // the next free place of the texture
};

namespace {

constexpr FT_UInt kDotsPerInch = 96;
constexpr int32_t kLargestSize = 480;                              // points
constexpr int32_t kSmallestTexture = 256, kLargestTexture = 1024;  // texels a side
constexpr int32_t kGap = 2;                                        // clear texels between glyphs
constexpr int32_t kLastCharacter = 0xFFFF;
constexpr float kBorder = 0.5F;
constexpr uint32_t kClearWhite = 0xFFFFFFU;

FT_Library g_library;

void Report(FT_Error error, const char* what, const char* path)
{
    g_ErrorConsole->Output("FreeType :: error = %08x(%d) :: Unable to %s %s\n",
                           static_cast<unsigned>(error), static_cast<int>(error), what, path);
}

FT_Error OpenFace(const char* path, FontFile* file)
{
    if (!g_library)
        if (const FT_Error error = FT_Init_FreeType(&g_library)) return error;
    uint32_t size = 0;
    file->bytes = Picture_ReadFile(path, &size);
    if (!file->bytes) return FT_Err_Cannot_Open_Resource;
    return FT_New_Memory_Face(g_library, file->bytes, static_cast<FT_Long>(size), 0, &file->face);
}

FT_Error SetSize(FontFile* file, int32_t size)
{
    const FT_Error error = FT_Set_Char_Size(file->face, 0, static_cast<FT_F26Dot6>(size) * 64,
                                            kDotsPerInch, kDotsPerInch);
    const FT_Size_Metrics& metrics = file->face->size->metrics;
    file->ascent = static_cast<int32_t>((metrics.ascender + 63) / 64);
    file->lineHeight =
        std::clamp(file->ascent + static_cast<int32_t>((63 - metrics.descender) / 64), 1,
                   kLargestTexture - 2 * kGap);
    return error;
}

// The outline of a character in the face's slot; false when it has none.
bool LoadOutline(const FontFile& file, uint32_t character)
{
    const FT_UInt index = FT_Get_Char_Index(file.face, character);
    if (index == 0 || FT_Load_Glyph(file.face, index, FT_LOAD_TARGET_LIGHT)) return false;
    if (file.embolden) FT_GlyphSlot_Embolden(file.face->glyph);
    if (file.slant) FT_GlyphSlot_Oblique(file.face->glyph);
    return true;
}

uint16_t Pixels(FT_Pos count)
{
    return static_cast<uint16_t>(std::clamp<FT_Pos>(count, 0, kLargestTexture - 2 * kGap));
}

RunTimeGlyph MeasuredGlyph(const FontFile& file, uint32_t character)
{
    FT_GlyphSlot slot = file.face->glyph;
    FT_BBox box{};
    if (slot->format == FT_GLYPH_FORMAT_OUTLINE) FT_Outline_Get_CBox(&slot->outline, &box);
    const FT_Pos left = box.xMin >> 6, right = (box.xMax + 63) >> 6;
    RunTimeGlyph glyph{};
    glyph.character = static_cast<uint16_t>(character);
    glyph.width = Pixels(right - left);
    glyph.height = static_cast<uint16_t>(file.lineHeight);
    glyph.shift = Pixels((slot->advance.x + 32) >> 6);
    glyph.offset = static_cast<int16_t>(std::clamp<FT_Pos>(left, INT16_MIN, INT16_MAX));
    return glyph;
}

// Moves the pen over the room of a glyph; false when the texture has none left.
bool TakeRoom(FontFile* file, int32_t glyphWidth, int32_t width, int32_t height, int32_t* x,
              int32_t* y)
{
    if (file->penX + glyphWidth + kGap > width) {
        file->penX = kGap;
        file->penY += file->lineHeight + kGap;
    }
    if (file->penY + file->lineHeight + kGap > height) return false;
    *x = file->penX;
    *y = file->penY;
    file->penX += glyphWidth + kGap;
    return true;
}

void StartOver(CFontSW* font)
{
    font->file->penX = font->file->penY = kGap;
    for (RunTimeGlyph& glyph : font->ownGlyphs) glyph.filled = false;
}

bool HoldsAll(CFontSW* font, int32_t width, int32_t height)
{
    StartOver(font);
    int32_t x, y;
    for (const RunTimeGlyph& glyph : font->ownGlyphs)
        if (!TakeRoom(font->file, glyph.width, width, height, &x, &y)) return false;
    return true;
}

// The smallest texture that holds every glyph, or the largest one.
void MakeTexture(CFontSW* font)
{
    int32_t width = kSmallestTexture, height = kSmallestTexture;
    while (height < kLargestTexture && !HoldsAll(font, width, height))
        (width > height ? height : width) *= 2;
    StartOver(font);
    const size_t count = static_cast<size_t>(width) * static_cast<size_t>(height);
    const VxVector<uint32_t> clear(count, kClearWhite);
    font->textureSlot =
        Texture_CreateFromPixels(width, height, clear.data(), static_cast<uint32_t>(count * 4));
    font->textureWidth = width;
    font->textureHeight = height;
}

// The glyph's box from a coverage bitmap; what leads outside the box is cut off.
VxVector<uint32_t> PaintBox(const FontFile& file, const RunTimeGlyph& glyph)
{
    const FT_GlyphSlot slot = file.face->glyph;
    const FT_Bitmap& bitmap = slot->bitmap;
    const int32_t width = glyph.width, height = glyph.height;
    VxVector<uint32_t> pixels(static_cast<size_t>(width) * static_cast<size_t>(height),
                              kClearWhite);
    if (bitmap.pixel_mode != FT_PIXEL_MODE_GRAY) return pixels;
    const int32_t down = file.ascent - slot->bitmap_top, right = slot->bitmap_left - glyph.offset;
    for (int32_t y = 0; y < static_cast<int32_t>(bitmap.rows); ++y)
        for (int32_t x = 0; x < static_cast<int32_t>(bitmap.width); ++x) {
            const int32_t toX = x + right, toY = y + down;
            if (toX < 0 || toX >= width || toY < 0 || toY >= height) continue;
            const uint8_t alpha = bitmap.buffer[static_cast<ptrdiff_t>(y) * bitmap.pitch + x];
            pixels[static_cast<size_t>(toY) * static_cast<size_t>(width) +
                   static_cast<size_t>(toX)] |= static_cast<uint32_t>(alpha) << 24;
        }
    return pixels;
}

VxVector<RunTimeGlyph> MeasureGlyphs(const FontFile& file, int32_t first, int32_t last)
{
    VxVector<RunTimeGlyph> made;
    for (int32_t character = std::max(first, 1); character <= last; ++character)
        if (LoadOutline(file, static_cast<uint32_t>(character)))
            made.push_back(MeasuredGlyph(file, static_cast<uint32_t>(character)));
    return made;
}

}  // namespace

void FontFile_Fill(CFontSW* font, RunTimeGlyph* glyph)
{
    if (glyph->filled || glyph->width == 0) return;
    int32_t x = 0, y = 0;
    const int32_t width = font->textureWidth, height = font->textureHeight;
    if (!TakeRoom(font->file, glyph->width, width, height, &x, &y)) {
        Batch_Flush();
        StartOver(font);
        if (!TakeRoom(font->file, glyph->width, width, height, &x, &y)) return;
    }
    glyph->x = static_cast<uint16_t>(x);
    glyph->y = static_cast<uint16_t>(y);
    glyph->filled = true;
    if (!LoadOutline(*font->file, glyph->character) ||
        FT_Render_Glyph(font->file->face->glyph, FT_RENDER_MODE_NORMAL))
        return;
    const VxVector<uint32_t> pixels = PaintBox(*font->file, *glyph);
    Texture_Update(font->textureSlot, {x, y, x + glyph->width, y + glyph->height}, pixels.data());
}

void FontFile_Free(FontFile* file)
{
    if (!file) return;
    if (file->face) FT_Done_Face(file->face);
    MemoryManager::Free(file->bytes);
    VxDelete(file);
}

void FontFile_Quit()
{
    if (g_library) FT_Done_FreeType(g_library);
    g_library = nullptr;
}

CFontSW* Font_FromFile(const char* path, int32_t size, bool bold, bool italic, int32_t first,
                       int32_t last)
{
    auto* file = VxNew<FontFile>();
    const char* what = "open font file";
    FT_Error error = OpenFace(path, file);
    if (!error) {
        what = "set the size of font file";
        error = SetSize(file, std::clamp(size, 1, kLargestSize));
    }
    if (error) {
        Report(error, what, path);
        FontFile_Free(file);
        return nullptr;
    }
    file->embolden = bold && !(file->face->style_flags & FT_STYLE_FLAG_BOLD);
    file->slant = italic && !(file->face->style_flags & FT_STYLE_FLAG_ITALIC);
    auto* font = VxNew<CFontSW>();
    font->ownFaceName = file->face->family_name ? file->face->family_name : path;
    font->faceName = font->ownFaceName.c_str();
    font->size = size;
    font->bold = bold;
    font->italic = italic;
    font->first = std::clamp(std::min(first, last), 0, kLastCharacter);
    font->last = std::clamp(std::max(first, last), 0, kLastCharacter);
    font->border = kBorder;
    font->TakeGlyphs(MeasureGlyphs(*file, font->first, font->last));
    font->file = file;
    MakeTexture(font);
    return font;
}
