// The default font: a small alphabet of dots, so that text shows whatever the archive
// holds.

#include <algorithm>

#include "Files/Base/Archive_Main.h"
#include "Files/Font/CFontSW.h"
#include "Files/Font/Font_Glyphs.h"
#include "Files/Graphics/Bitmap.h"
#include "Files/Graphics/TextureSlots.h"
#include "Host/Host.h"

namespace {

constexpr int kFirst = 32, kLast = 136;
constexpr int kCharacters = kLast - kFirst + 1;
constexpr int kTextureWidth = 256, kTextureHeight = 128;  // texels
constexpr int kDotRows = 9, kDotColumns = 5;              // two rows lie below the base line
constexpr int kDot = 2;                                   // texels
constexpr int kColumns = 18;                              // characters in a row of the texture
constexpr int kWidth = 12, kHeight = kDotRows * kDot;     // texels
// Apart from each other, so that a filter takes nothing from a neighbour.
constexpr int kStepX = kWidth + 2, kStepY = kHeight + 2;  // texels
static_assert(kColumns * kStepX <= kTextureWidth);
static_assert((kCharacters + kColumns - 1) / kColumns * kStepY <= kTextureHeight);

// Rows of dots from the top, one digit of base 32 a row, the left dot its highest bit.
constexpr char kAlphabet[][kDotRows + 1] = {
    "000000000", "444440400", "AAA000000", "AAVAVAA00",  //   ! " #
    "4FKE5U400", "OP248J300", "CIK8LID00", "440000000",  // $ % & '
    "248884200", "842224800", "04LEL4000", "044V44000",  // ( ) * +
    "00000CC48", "000V00000", "00000CC00", "11248GG00",  // , - . /
    "EHJLPHE00", "4C4444E00", "EH1248V00", "V2421HE00",  // 0 1 2 3
    "26AIV2200", "VGU11HE00", "68GUHHE00", "V12488800",  // 4 5 6 7
    "EHHEHHE00", "EHHF12C00", "0CC0CC000", "0CC0CC480",  // 8 9 : ;
    "248G84200", "00V0V0000", "842124800", "EH1240400",  // < = > ?
    "EHNLNGE00", "EHHVHHH00", "UHHUHHU00", "EHGGGHE00",  // @ A B C
    "SIHHHIS00", "VGGUGGV00", "VGGUGGG00", "EHGNHHF00",  // D E F G
    "HHHVHHH00", "E44444E00", "72222IC00", "HIKOKIH00",  // H I J K
    "GGGGGGV00", "HRLLHHH00", "HHPLJHH00", "EHHHHHE00",  // L M N O
    "UHHUGGG00", "EHHHLID00", "UHHUKIH00", "FGGE11U00",  // P Q R S
    "V44444400", "HHHHHHE00", "HHHHHA400", "HHHLLLA00",  // T U V W
    "HHA4AHH00", "HHHA44400", "V1248GV00", "E88888E00",  // X Y Z [
    "GG8421100", "E22222E00", "4AH000000", "0000000V0",  // \ ] ^ _
    "842000000", "00E1FHF00", "GGMPHHU00", "00EGGHE00",  // ` a b c
    "11DJHHF00", "00EHVGE00", "698S88800", "00FHHHF1E",  // d e f g
    "GGMPHHH00", "40C444E00", "2062222IC", "GGIKOKI00",  // h i j k
    "C44444E00", "00QLLHH00", "00MPHHH00", "00EHHHE00",  // l m n o
    "00UHHHUGG", "00FHHHF11", "00MPGGG00", "00FGE1U00",  // p q r s
    "88S889600", "00HHHJD00", "00HHHA400", "00HHLLA00",  // t u v w
    "00HA4AH00", "00HHHHF1E", "00V248V00", "244844200",  // x y z {
    "444444400", "844244800", "008L20000", "VHHHHHV00",  // | } ~, and all that follow
};
constexpr int kDrawn = static_cast<int>(std::size(kAlphabet));
static_assert(kDrawn == '~' - kFirst + 2);

struct Box {
    uint8_t x, y, width, height;
};

constexpr Box BoxOf(int character)
{
    const int place = character - kFirst;
    return {static_cast<uint8_t>(place % kColumns * kStepX),
            static_cast<uint8_t>(place / kColumns * kStepY), kWidth, kHeight};
}

int RowOfDots(char digit)
{
    return digit <= '9' ? digit - '0' : digit - 'A' + 10;
}

void PaintCharacter(int character, uint8_t* alpha)
{
    const Box box = BoxOf(character);
    const char* rows = kAlphabet[std::min(character - kFirst, kDrawn - 1)];
    for (int y = 0; y < kHeight; ++y)
        for (int x = 0; x < kDotColumns * kDot; ++x)
            if (RowOfDots(rows[y / kDot]) >> (kDotColumns - 1 - x / kDot) & 1)
                alpha[(box.y + y) * kTextureWidth + box.x + x] = 0xFF;
}

// A picture of the same layout beside the game takes the built-in one's place.
int32_t TextureOfFile()
{
    uint32_t size = 0;
    uint8_t* bytes = g_Host.files.ReadAll((g_WorkingDirectory + "font.png").c_str(), &size);
    if (!bytes) return -1;
    int32_t width = 0, height = 0;
    int32_t slot = -1;
    if (TextureSource_Header(bytes, size, &width, &height) && width == kTextureWidth &&
        height == kTextureHeight) {
        if (uint32_t* pixels = TextureSource_Decode(bytes, size, &width, &height)) {
            slot = Texture_CreateFromPixels(width, height, pixels,
                                            static_cast<uint32_t>(width * height * 4));
            MemoryManager::Free(pixels);
        }
    }
    MemoryManager::Free(bytes);
    return slot;
}

int32_t BuiltInTexture()
{
    constexpr size_t count = size_t{kTextureWidth} * kTextureHeight;
    auto* alpha = static_cast<uint8_t*>(MemoryManager::Alloc(count, true));
    for (int character = kFirst; character <= kLast; ++character) PaintCharacter(character, alpha);
    const int32_t slot = Texture_CreateAlpha(kTextureWidth, kTextureHeight, alpha);
    MemoryManager::Free(alpha);
    return slot;
}

CFontSW* g_defaultFont;

}  // namespace

CFontSW* Font_Default()
{
    if (g_defaultFont) return g_defaultFont;
    VxVector<RunTimeGlyph> made;
    made.reserve(kCharacters);
    for (int character = kFirst; character <= kLast; ++character) {
        const Box box = BoxOf(character);
        RunTimeGlyph glyph{};
        glyph.character = static_cast<uint16_t>(character);
        glyph.x = box.x;
        glyph.y = box.y;
        glyph.width = glyph.shift = box.width;
        glyph.height = box.height;
        made.push_back(glyph);
    }
    auto* font = VxNew<CFontSW>();
    font->TakeGlyphs(std::move(made));
    font->name = font->faceName = "debug";
    font->first = kFirst;
    font->last = kLast;
    font->textureWidth = kTextureWidth;
    font->textureHeight = kTextureHeight;
    font->textureSlot = TextureOfFile();
    if (font->textureSlot < 0) font->textureSlot = BuiltInTexture();
    return g_defaultFont = font;
}

void Font_FreeDefault()
{
    VxDelete(g_defaultFont);
    g_defaultFont = nullptr;
}
