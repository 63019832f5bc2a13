#include "Files/Font/CFontSW.h"

#include <algorithm>

#include "Files/Base/Archive_List.h"
#include "Files/Font/Font_Glyphs.h"
#include "Files/Graphics/TextureSlots.h"

CFontSW::CFontSW() = default;

CFontSW::~CFontSW()
{
    if (textureSlot >= 0) Texture_Free(textureSlot);
    FontFile_Free(file);
}

void CFontSW::LoadFromChunk(const uint8_t* record, uint8_t* archiveBase)
{
    const auto stored = ArchiveCopy<ArchiveFont>(record);
    name = ArchiveText(archiveBase, stored.name);
    faceName = ArchiveText(archiveBase, stored.faceName);
    size = static_cast<int32_t>(stored.size);
    bold = stored.bold != 0;
    italic = stored.italic != 0;
    first = stored.first;
    last = static_cast<int32_t>(stored.last);
    if (stored.charset != 0) charset = stored.charset;
    if (stored.antialias != 0) antialias = stored.antialias - 1;
    xscale = stored.scaleX;
    yscale = stored.scaleY;
    if (stored.tpag != 0) {
        entry = reinterpret_cast<ArchivePageEntry*>(archiveBase + stored.tpag);
        textureWidth = entry->width;
        textureHeight = entry->height;
    }
    glyphTable_.reserve(stored.glyphCount);
    const uint8_t* offsets = record + sizeof stored;
    for (uint32_t i = 0; i < stored.glyphCount; ++i) {
        const auto offset = ArchiveCopy<ArchiveOffset>(offsets + i * sizeof(ArchiveOffset));
        glyphTable_.push_back(reinterpret_cast<const ArchiveGlyph*>(archiveBase + offset));
    }
    PointAtGlyphs(stored.glyphCount);
}

void CFontSW::TakeGlyphs(VxVector<RunTimeGlyph>&& made)
{
    ownGlyphs = std::move(made);
    std::stable_sort(
        ownGlyphs.begin(), ownGlyphs.end(),
        [](const RunTimeGlyph& a, const RunTimeGlyph& b) { return a.character < b.character; });
    glyphTable_.clear();
    glyphTable_.reserve(ownGlyphs.size());
    for (const RunTimeGlyph& glyph : ownGlyphs) glyphTable_.push_back(&glyph);
    PointAtGlyphs(ownGlyphs.size());
}

void CFontSW::PointAtGlyphs(size_t count)
{
    glyphs = glyphTable_.data();
    glyphCount = static_cast<int32_t>(count);
    height = 0;
    for (const ArchiveGlyph* glyph : glyphTable_) height = std::max<int32_t>(height, glyph->height);
}

const ArchiveGlyph* CFontSW::Find(uint16_t character) const
{
    int32_t low = 0, high = glyphCount - 1;
    while (low <= high) {
        const int32_t middle = low + (high - low) / 2;
        const ArchiveGlyph* glyph = glyphs[middle];
        if (glyph->character == character) return glyph;
        if (glyph->character < character)
            low = middle + 1;
        else
            high = middle - 1;
    }
    return nullptr;
}

const ArchiveGlyph* CFontSW::FindOrMissing(uint16_t character) const
{
    const ArchiveGlyph* glyph = Find(character);
    return glyph ? glyph : Find(kMissingGlyph);
}

const ArchiveGlyph* CFontSW::GlyphFor(uint16_t character)
{
    const ArchiveGlyph* glyph = FindOrMissing(character);
    if (glyph && file) {
        const auto* stored = static_cast<const RunTimeGlyph*>(glyph);
        FontFile_Fill(this, &ownGlyphs[static_cast<size_t>(stored - ownGlyphs.data())]);
    }
    return glyph;
}

int32_t CFontSW::CharWidth(uint16_t character) const
{
    const ArchiveGlyph* glyph = FindOrMissing(character);
    return glyph ? glyph->shift : 0;
}

int32_t CFontSW::TextWidth(const uint16_t* units) const
{
    int64_t width = 0;
    for (; *units != 0; ++units) width += CharWidth(*units);
    return static_cast<int32_t>(std::min<int64_t>(width, INT32_MAX));
}
