#pragma once
// Shared by the units of fonts made at run time.

#include "Files/Base/Archive_Records.h"
#include "Files/Font/CFontSW.h"

// As in the archive. Of a sprite's glyph, x is the frame's first column that is drawn.
struct RunTimeGlyph : ArchiveGlyph {
    int32_t frame;  // of the font's sprite
    bool filled;    // its pixels are in the font's texture
};

// Draws the glyph into the font's texture when it is not there yet.
void FontFile_Fill(CFontSW* font, RunTimeGlyph* glyph);
void FontFile_Free(FontFile* file);  // null does nothing
void FontFile_Quit();                // after the last file was freed

// The character of a sprite font's frame number, by the archive's table.
uint16_t Font_FrameCharacter(int32_t number);
