// A line of text as a series of glyph quads.

#include <cmath>

#include "Files/Font/CFontSW.h"
#include "Files/Font/Font_Glyphs.h"
#include "Files/Graphics/Quad_Emit.h"
#include "Files/Sprite/CSprite.h"

struct LineStyle {
    float x, y, xscale, yscale, angle;  // radians
    uint32_t words[4];                  // vertex words of the line's corners
    bool spread;                        // the corners differ: each glyph takes its share
    float width;                        // of the line, in pixels; for `spread`
};

namespace {

// The channels of two vertex words at a fraction of the way.
uint32_t Mix(uint32_t from, uint32_t to, float fraction)
{
    uint32_t mixed = 0;
    for (int shift = 0; shift < 32; shift += 8) {
        const auto a = static_cast<float>(from >> shift & 0xFFU);
        const auto b = static_cast<float>(to >> shift & 0xFFU);
        mixed |= static_cast<uint32_t>(std::lround(a + (b - a) * fraction)) << shift;
    }
    return mixed;
}

QuadColours GlyphColours(const LineStyle& style, float pen, float shift)
{
    if (!style.spread) return Quad_OneColour(style.words[0]);
    const float left = style.width > 0 ? pen / style.width : 0.0F;
    const float right = style.width > 0 ? (pen + shift) / style.width : 0.0F;
    const uint32_t* c = style.words;
    const uint32_t words[4] = {Mix(c[0], c[1], left), Mix(c[0], c[1], right),
                               Mix(c[3], c[2], right), Mix(c[3], c[2], left)};
    QuadColours colours;
    for (int corner = 0; corner < 4; ++corner)
        colours.corner[corner] = Quad_OneColour(words[corner]).corner[corner];
    return colours;
}

// A rectangle in the space of the line, and what it shows.
struct Piece {
    float left, top, right, bottom;
    QuadTexels texels;
    GpuTexture* texture;  // null: nothing is drawn
};

Piece PagePiece(const CFontSW& font, const TextureSlot& slot, const ArchiveGlyph& glyph, float pen)
{
    const auto width = static_cast<float>(glyph.width), height = static_cast<float>(glyph.height);
    const float left = pen + static_cast<float>(glyph.offset) * font.xscale;
    const float u = static_cast<float>((font.entry ? font.entry->x : 0) + glyph.x);
    const float v = static_cast<float>((font.entry ? font.entry->y : 0) + glyph.y);
    return {
        left - font.border,
        -font.border,
        left + font.xscale * width + font.border,
        font.yscale * height + font.border,
        {(u - font.border) * slot.invWidth, (v - font.border) * slot.invHeight,
         (u + width + font.border) * slot.invWidth, (v + height + font.border) * slot.invHeight},
        slot.texture};
}

// The whole picture of a frame, with the glyph's first column at the pen.
Piece FramePiece(CSprite* sprite, const RunTimeGlyph& glyph, float pen)
{
    if (glyph.frame < 0 || glyph.frame >= sprite->frameCount) return {};
    const float left = pen - static_cast<float>(glyph.x);
    if (ArchivePageEntry* entry = sprite->Entry(glyph.frame)) {
        const TextureSlot* slot = Quad_Slot(entry->texture);
        if (!slot) return {};
        Quad_MendEntry(entry);
        const float x = left + static_cast<float>(entry->targetX);
        const auto y = static_cast<float>(entry->targetY);
        return {x,
                y,
                x + static_cast<float>(entry->targetWidth),
                y + static_cast<float>(entry->targetHeight),
                Quad_EntryTexels(*entry, *slot),
                slot->texture};
    }
    const TextureSlot* slot = Quad_Slot(sprite->Texture(glyph.frame));
    if (!slot) return {};
    return {left,
            0,
            left + static_cast<float>(slot->width),
            static_cast<float>(slot->height),
            Quad_SlotTexels(*slot),
            slot->texture};
}

// False when the batch has no room: the device is gone.
bool Emit(const Piece& piece, const LineStyle& style, const QuadColours& colours)
{
    if (!piece.texture) return true;
    auto* v = static_cast<VertexTextured*>(
        Batch_Alloc(PRIMITIVE_TRIANGLES, piece.texture, kStrideTextured, 6));
    if (!v) return false;
    const QuadShape shape =
        Quad_Turn(style.x, style.y, piece.left * style.xscale, piece.top * style.yscale,
                  piece.right * style.xscale, piece.bottom * style.yscale, style.angle, kNoTurn);
    Quad_Write(v, shape, piece.texels, colours);
    ++g_GraphicsStats.sprites;
    return true;
}

}  // namespace

void CFontSW::DrawGlyphs(const uint16_t* units, const LineStyle& style)
{
    CSprite* sprite = spriteIndex >= 0 ? Sprite_Data(spriteIndex) : nullptr;
    const TextureSlot* slot = Quad_Slot(entry ? entry->texture : textureSlot);
    if (!sprite && !slot) return;
    float pen = 0, walked = 0;  // with the font's scale and without
    for (; *units != 0; ++units) {
        const ArchiveGlyph* glyph = GlyphFor(*units);
        if (!glyph) continue;
        const auto shift = static_cast<float>(glyph->shift);
        const Piece piece = sprite
                                ? FramePiece(sprite, *static_cast<const RunTimeGlyph*>(glyph), pen)
                                : PagePiece(*this, *slot, *glyph, pen);
        if (!Emit(piece, style, GlyphColours(style, walked, shift))) return;
        pen += shift * xscale;
        walked += shift;
    }
}

void CFontSW::DrawLine(float x, float y, const uint16_t* units, uint32_t colour, float alpha)
{
    DrawLineExt(x, y, units, 1, 1, 0, colour, alpha);
}

void CFontSW::DrawLineExt(float x, float y, const uint16_t* units, float lineXScale,
                          float lineYScale, float angle, uint32_t colour, float alpha)
{
    const uint32_t word = VertexColour(colour, alpha);
    DrawGlyphs(units, {x, y, lineXScale, lineYScale, angle, {word, word, word, word}, false, 0.0F});
}

void CFontSW::DrawLineColour(float x, float y, const uint16_t* units, float lineXScale,
                             float lineYScale, float angle, const uint32_t colours[4], float alpha)
{
    LineStyle style{x, y, lineXScale, lineYScale, angle, {}, true, 0.0F};
    for (int corner = 0; corner < 4; ++corner)
        style.words[corner] = VertexColour(colours[corner], alpha);
    style.width = static_cast<float>(TextWidth(units));
    DrawGlyphs(units, style);
}
