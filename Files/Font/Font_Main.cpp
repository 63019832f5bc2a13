// The table of fonts and the reading of their records.

#include <algorithm>
#include <cstring>

#include "Files/Base/Archive_List.h"
#include "Files/Font/CFontSW.h"
#include "Platform/MemoryManager.h"

namespace {

// A font with the storage of its glyph pointers; the glyphs stay in the archive.
struct Font {
    CFontSW font;
    VxVector<const ArchiveGlyph*> glyphs;
};

VxVector<Font*> g_fonts;  // null for an empty slot

void TakeSettings(const ArchiveFont& record, CFontSW* font)
{
    font->size = static_cast<int32_t>(record.size);
    font->bold = record.bold != 0;
    font->italic = record.italic != 0;
    font->first = record.first;
    font->last = static_cast<int32_t>(record.last);
    if (record.charset != 0) font->charset = record.charset;
    if (record.antialias != 0) font->antialias = record.antialias - 1;
    font->xscale = record.scaleX;
    font->yscale = record.scaleY;
}

void TakeEntry(ArchiveOffset offset, uint8_t* archiveBase, CFontSW* font)
{
    if (offset == 0) return;
    font->entry = reinterpret_cast<ArchivePageEntry*>(archiveBase + offset);
    font->textureWidth = font->entry->width;
    font->textureHeight = font->entry->height;
}

void TakeGlyphs(const uint8_t* offsets, uint32_t count, const uint8_t* archiveBase, Font* font)
{
    font->glyphs.reserve(count);
    for (uint32_t i = 0; i < count; ++i) {
        const auto offset = ArchiveCopy<ArchiveOffset>(offsets + size_t{i} * sizeof(ArchiveOffset));
        const auto* glyph = reinterpret_cast<const ArchiveGlyph*>(archiveBase + offset);
        font->glyphs.push_back(glyph);
        font->font.height = std::max<int32_t>(font->font.height, glyph->height);
    }
    font->font.glyphCount = static_cast<int32_t>(count);
    font->font.glyphs = font->glyphs.data();
}

Font* LoadFont(const uint8_t* at, uint8_t* archiveBase)
{
    const auto record = ArchiveCopy<ArchiveFont>(at);
    Font* font = VxNew<Font>();
    font->font.name = ArchiveText(archiveBase, record.name);
    font->font.faceName = ArchiveText(archiveBase, record.faceName);
    TakeSettings(record, &font->font);
    TakeEntry(record.tpag, archiveBase, &font->font);
    TakeGlyphs(at + sizeof record, record.glyphCount, archiveBase, font);
    return font;
}

}  // namespace

void Font_Init()
{
    Font_Quit();
}

void Font_Quit()
{
    for (Font* font : g_fonts) VxDelete(font);
    VxVector<Font*>().swap(g_fonts);
}

bool Font_Load(const uint8_t* chunk, uint32_t, uint8_t* archiveBase)
{
    const ArchiveList list(chunk, archiveBase);
    for (uint32_t i = 0; i < list.Count(); ++i) {
        const uint8_t* at = list.At(i);
        g_fonts.push_back(at ? LoadFont(at, archiveBase) : nullptr);
    }
    return true;
}

// Fonts of the archive draw from its pages: there is no texture of their own.
bool Font_InitTextures()
{
    return true;
}

int32_t Font_Count()
{
    return static_cast<int32_t>(g_fonts.size());
}

CFontSW* Font_Data(int32_t index)
{
    if (index < 0 || index >= Font_Count()) return nullptr;
    Font* font = g_fonts[static_cast<size_t>(index)];
    return font ? &font->font : nullptr;
}

int32_t Font_Find(const char* name)
{
    for (int32_t i = 0; i < Font_Count(); ++i)
        if (const CFontSW* font = Font_Data(i))
            if (std::strcmp(font->name, name) == 0) return i;
    return -1;
}

const char* Font_Name(int32_t index)
{
    const CFontSW* font = Font_Data(index);
    return font ? font->name : "<undefined>";
}
