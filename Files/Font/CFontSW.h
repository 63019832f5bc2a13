#pragma once
// Fonts: those of the archive, the default one, and those made while the game runs
// from sprites and from font files. A line is a zero-terminated run of 16-bit units.

#include <cstdint>

#include "Platform/MemoryManager.h"

struct ArchivePageEntry;
struct ArchiveGlyph;
struct FontFile;
struct RunTimeGlyph;
struct LineStyle;

// Drawn in the place of a character that a font lacks.
inline constexpr uint16_t kMissingGlyph = 0x25AF;

class CFontSW {
public:
    CFontSW();
    virtual ~CFontSW();
    CFontSW(const CFontSW&) = delete;
    CFontSW& operator=(const CFontSW&) = delete;

    // A record of a checked archive, which stays while the font does.
    void LoadFromChunk(const uint8_t* record, uint8_t* archiveBase);
    // Null when the font has neither the character nor kMissingGlyph. A glyph of a font
    // file has its pixels in the texture from then on.
    const ArchiveGlyph* GlyphFor(uint16_t character);
    int32_t CharWidth(uint16_t character) const;     // pixels, 0 without a glyph
    int32_t TextWidth(const uint16_t* units) const;  // pixels, without the font's own scale
    int32_t TextHeight() const { return height; }
    // The top left corner of the line is at (x, y). colour 0x00BBGGRR, alpha 0 to 1.
    void DrawLine(float x, float y, const uint16_t* units, uint32_t colour, float alpha);
    // Turned about (x, y); angle in radians.
    void DrawLineExt(float x, float y, const uint16_t* units, float lineXScale, float lineYScale,
                     float angle, uint32_t colour, float alpha);
    // As DrawLineExt. colours: of the line's top left, top right, bottom right, bottom left.
    void DrawLineColour(float x, float y, const uint16_t* units, float lineXScale, float lineYScale,
                        float angle, const uint32_t colours[4], float alpha);

    const char* faceName = "";
    int32_t size = 0;  // points
    bool bold = false, italic = false;
    int32_t charset = 0, antialias = 0, first = 0, last = 0;
    int32_t spriteIndex = -1;  // of a font made from a sprite
    int32_t textureWidth = 0, textureHeight = 0;
    int32_t height = 0;        // of the highest glyph
    int32_t textureSlot = -1;  // of a font made at run time
    ArchivePageEntry* entry = nullptr;
    int32_t glyphCount = 0;
    const ArchiveGlyph** glyphs = nullptr;  // ascending by character
    float xscale = 1, yscale = 1;
    float border = 0;  // texels drawn around each glyph
    const char* name = "";

    // ---- fonts made at run time
    // Takes the glyphs over, and their heights, once all of them stand.
    void TakeGlyphs(VxVector<RunTimeGlyph>&& made);
    VxVector<RunTimeGlyph> ownGlyphs;
    VxString ownName, ownFaceName;
    FontFile* file = nullptr;  // the opened font file; owned

private:
    const ArchiveGlyph* Find(uint16_t character) const;
    const ArchiveGlyph* FindOrMissing(uint16_t character) const;
    void PointAtGlyphs(size_t count);
    void DrawGlyphs(const uint16_t* units, const LineStyle& style);
    VxVector<const ArchiveGlyph*> glyphTable_;
};

void Font_Init();
void Font_Quit();
bool Font_Load(const uint8_t* chunk, uint32_t size, uint8_t* archiveBase);
bool Font_InitTextures();
int32_t Font_Count();
CFontSW* Font_Data(int32_t index);  // null when there is none
int32_t Font_Find(const char* name);
const char* Font_Name(int32_t index);

// The font of index -1, "debug": characters 32 to 136 of the built-in alphabet, or of
// a picture "font.png" of its layout beside the game. Made at first use.
CFontSW* Font_Default();
void Font_FreeDefault();

// ---- fonts made at run time
int32_t Font_Add(CFontSW* font);                  // owned; the new index
bool Font_Delete(int32_t index);                  // false when there is none
bool Font_Replace(int32_t index, CFontSW* font);  // owned; keeps the name of the old one
// Sizes in points at 96 dots an inch; first and last are characters up to 65535. Null,
// after a line on the error console, when the file can't be read as a font.
CFontSW* Font_FromFile(const char* path, int32_t size, bool bold, bool italic, int32_t first,
                       int32_t last);
// Each frame is a character, from `first` on or in the order of `characters` (UTF-8).
// Proportional glyphs are as wide as what their frame shows. `separation` is added
// behind each glyph. Null when there is no such sprite.
CFontSW* Font_FromSprite(int32_t sprite, int32_t first, bool proportional, int32_t separation);
CFontSW* Font_FromSpriteText(int32_t sprite, const char* characters, bool proportional,
                             int32_t separation);
