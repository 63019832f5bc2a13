#pragma once
// Fonts of the archive.

#include <cstdint>

struct ArchivePageEntry;
struct ArchiveGlyph;

class CFontSW {
public:
    virtual ~CFontSW() = default;
    const char* name = "";
    const char* faceName = "";
    int32_t size = 0;
    bool bold = false, italic = false;
    int32_t charset = 0, antialias = 0, first = 0, last = 0;
    int32_t spriteIndex = -1;
    int32_t textureWidth = 0, textureHeight = 0;
    int32_t height = 0;
    int32_t textureSlot = -1;
    ArchivePageEntry* entry = nullptr;
    int32_t glyphCount = 0;
    const ArchiveGlyph** glyphs = nullptr;
    float xscale = 1, yscale = 1;
    float border = 0;
};

void Font_Init();
void Font_Quit();
bool Font_Load(const uint8_t* chunk, uint32_t size, uint8_t* archiveBase);
bool Font_InitTextures();
int32_t Font_Count();
CFontSW* Font_Data(int32_t index);
int32_t Font_Find(const char* name);
const char* Font_Name(int32_t index);
