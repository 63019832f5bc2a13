#pragma once
// Bakes a face into one picture of white letters and the records of its glyphs.

#include <string>

#include "tools/pack/Pictures.h"
#include "tools/pack/Tables.h"

namespace pack {

inline constexpr const char* kFontFolder = "/usr/share/fonts";

// Fills `font.glyphs`, ascending by character, and `picture`, in which each glyph is a
// box of the font's full line height. Characters that the face lacks have no glyph.
// Throws ContentError with the place of the font's row.
void Fonts_Bake(const FontRow& row, archive::Font& font, Image& picture);

}  // namespace pack
