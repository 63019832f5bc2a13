#include "tools/pack/Fonts.h"

#include <ft2build.h>
#include FT_FREETYPE_H

#include <algorithm>
#include <vector>

namespace pack {
namespace {

constexpr int kDotsPerInch = 96;
constexpr int kPictureWidth = 512;  // pixels
constexpr int kGap = 2;             // clear pixels between glyphs

// Library and face, given back at the end of the scope.
class Face {
public:
    Face(const std::string& path, uint32_t points)
    {
        if (FT_Init_FreeType(&library_)) return;
        if (FT_New_Face(library_, path.c_str(), 0, &face_)) return;
        ok_ = FT_Set_Char_Size(face_, 0, static_cast<FT_F26Dot6>(points) * 64, kDotsPerInch,
                               kDotsPerInch) == 0;
    }
    ~Face()
    {
        if (face_) FT_Done_Face(face_);
        if (library_) FT_Done_FreeType(library_);
    }
    Face(const Face&) = delete;
    Face& operator=(const Face&) = delete;

    bool Ok() const { return ok_; }
    FT_Face Get() const { return face_; }
    int Ascent() const { return static_cast<int>((face_->size->metrics.ascender + 63) / 64); }
    int Height() const
    {
        return Ascent() + static_cast<int>((63 - face_->size->metrics.descender) / 64);
    }

private:
    FT_Library library_ = nullptr;
    FT_Face face_ = nullptr;
    bool ok_ = false;
};

// Rows of glyphs from the left, as many rows as it takes.
class Sheet {
public:
    explicit Sheet(int height) : height_(height) { image_.width = kPictureWidth; }

    void Place(int width, uint16_t& x, uint16_t& y)
    {
        if (left_ + width + kGap > kPictureWidth) {
            left_ = kGap;
            top_ += height_ + kGap;
        }
        x = static_cast<uint16_t>(left_);
        y = static_cast<uint16_t>(top_);
        left_ += width + kGap;
        image_.height = top_ + height_ + kGap;
        image_.bgra.resize(static_cast<size_t>(image_.width) * image_.height * 4, 0);
    }

    // Copies the part of a coverage bitmap that lies in the glyph's box.
    void Paint(const FT_Bitmap& bitmap, int x, int y, int down)
    {
        for (int row = 0; row < static_cast<int>(bitmap.rows); ++row) {
            if (row + down < 0 || row + down >= height_) continue;
            const uint8_t* from = bitmap.buffer + static_cast<ptrdiff_t>(row) * bitmap.pitch;
            size_t at = (static_cast<size_t>(y + row + down) * image_.width + x) * 4;
            for (unsigned column = 0; column < bitmap.width; ++column, at += 4) {
                image_.bgra[at + 3] = from[column];
            }
        }
    }

    Image Take()
    {
        // White all over: a filtered edge then fades without a dark fringe.
        for (size_t i = 0; i < image_.bgra.size(); i += 4) {
            std::fill_n(image_.bgra.begin() + static_cast<ptrdiff_t>(i), 3, uint8_t{255});
        }
        return std::move(image_);
    }

private:
    Image image_;
    int height_, left_ = kGap, top_ = kGap;
};

archive::Glyph BakeGlyph(const Face& face, uint32_t character, Sheet& sheet)
{
    FT_GlyphSlot slot = face.Get()->glyph;
    int width = std::max(1, static_cast<int>(slot->bitmap.width));
    archive::Glyph glyph;
    glyph.character = static_cast<uint16_t>(character);
    glyph.width = static_cast<uint16_t>(width);
    glyph.height = static_cast<uint16_t>(face.Height());
    glyph.shift = static_cast<uint16_t>((slot->advance.x + 32) / 64);
    glyph.offset = static_cast<int16_t>(slot->bitmap_left);
    sheet.Place(width, glyph.x, glyph.y);
    sheet.Paint(slot->bitmap, glyph.x, glyph.y, face.Ascent() - slot->bitmap_top);
    return glyph;
}

}  // namespace

void Fonts_Bake(const FontRow& row, archive::Font& font, Image& picture)
{
    const std::string path = std::string(kFontFolder) + "/" + row.file;
    Face face(path, font.size);
    if (!face.Ok()) {
        throw ContentError("fonts.txt", row.line,
                           "expected a face at " + path + "; the packages are named above it");
    }
    Sheet sheet(face.Height());
    for (uint32_t character = font.first; character <= font.last; ++character) {
        FT_UInt index = FT_Get_Char_Index(face.Get(), character);
        if (index == 0 || FT_Load_Glyph(face.Get(), index, FT_LOAD_RENDER | FT_LOAD_TARGET_LIGHT)) {
            continue;
        }
        font.glyphs.push_back(BakeGlyph(face, character, sheet));
    }
    if (font.glyphs.empty())
        throw ContentError("fonts.txt", row.line, "expected letters in " + path);
    picture = sheet.Take();
}

}  // namespace pack
