// Fonts by number: what they hold, and making and changing them while the game runs.

#include "Files/Base/Archive_Records.h"
#include "Files/Base/Error.h"
#include "Files/Font/CFontSW.h"
#include "Files/Function/Function_Registry.h"
#include "Files/Function/Function_Resource.h"
#include "Files/Graphics/TextureSlots.h"
#include "Files/Sprite/CSprite.h"

namespace {

constexpr int32_t kDefaultSize = 12;                       // points
constexpr int32_t kDefaultFirst = 32, kDefaultLast = 127;  // characters

CFontSW* FontArgument(const RValue* args, int argc)
{
    return Font_Data(ArgInt(args, argc, 0, -1));
}

// A number of a font; -1 for none.
template <auto Member>
void GetField(RValue& result, CInstance*, CInstance*, int argc, RValue* args)
{
    const CFontSW* font = FontArgument(args, argc);
    SetReal(result, font ? static_cast<double>(font->*Member) : -1);
}

// file, size, bold, italic, first, last; `at` is the file
CFontSW* FromFile(const RValue* args, int argc, int at)
{
    return Font_FromFile(ArgText(args, argc, at), ArgInt(args, argc, at + 1, kDefaultSize),
                         ArgBool(args, argc, at + 2), ArgBool(args, argc, at + 3),
                         ArgInt(args, argc, at + 4, kDefaultFirst),
                         ArgInt(args, argc, at + 5, kDefaultLast));
}

CFontSW* Reported(CFontSW* font)
{
    if (!font) Error_Show("Trying to make a font from a non-existing sprite.", false);
    return font;
}

// sprite, first, proportional, separation; `at` is the sprite
CFontSW* FromSprite(const RValue* args, int argc, int at)
{
    return Reported(Font_FromSprite(ArgInt(args, argc, at, -1), ArgInt(args, argc, at + 1),
                                    ArgBool(args, argc, at + 2), ArgInt(args, argc, at + 3)));
}

// sprite, characters, proportional, separation; `at` is the sprite
CFontSW* FromSpriteText(const RValue* args, int argc, int at)
{
    return Reported(Font_FromSpriteText(ArgInt(args, argc, at, -1), ArgText(args, argc, at + 1),
                                        ArgBool(args, argc, at + 2), ArgInt(args, argc, at + 3)));
}

using Maker = CFontSW* (*)(const RValue* args, int argc, int at);

// The index of the new font, or -1.
template <Maker Make>
void AddFont(RValue& result, CInstance*, CInstance*, int argc, RValue* args)
{
    CFontSW* font = Make(args, argc, 0);
    SetReal(result, font ? Font_Add(font) : -1);
}

// Argument 0 is the font whose place is taken; it stays when the new one can't be made.
template <Maker Make>
void ReplaceFont(RValue& result, CInstance*, CInstance*, int argc, RValue* args)
{
    if (!FontArgument(args, argc)) {
        Error_Show("Trying to replace non-existing font.", false);
        SetBool(result, false);
        return;
    }
    CFontSW* font = Make(args, argc, 1);
    SetBool(result, font && Font_Replace(ArgInt(args, argc, 0, -1), font));
}

}  // namespace

BUILTIN(font_exists)
{
    SetBool(result, FontArgument(args, argc) != nullptr);
}

BUILTIN(font_get_name)
{
    VXCreateString(&result, Font_Name(ArgInt(args, argc, 0, -1)));
}

BUILTIN(font_get_fontname)
{
    const CFontSW* font = FontArgument(args, argc);
    VXCreateString(&result, font ? font->faceName : "");
}

// The texture slot that the font's characters stand in, -1 for none.
BUILTIN(font_get_texture)
{
    const CFontSW* font = FontArgument(args, argc);
    SetReal(result, !font ? -1 : font->entry ? font->entry->texture : font->textureSlot);
}

// left, top, right and bottom of the font's picture as fractions of its texture
BUILTIN(font_get_uvs)
{
    const CFontSW* font = FontArgument(args, argc);
    const TextureSlot* slot =
        !font ? nullptr : Texture_Get(font->entry ? font->entry->texture : font->textureSlot);
    double uvs[4] = {0, 0, 1, 1};
    if (slot) {
        const int32_t x = font->entry ? font->entry->x : 0, y = font->entry ? font->entry->y : 0;
        uvs[0] = x * static_cast<double>(slot->invWidth);
        uvs[1] = y * static_cast<double>(slot->invHeight);
        uvs[2] = (x + font->textureWidth) * static_cast<double>(slot->invWidth);
        uvs[3] = (y + font->textureHeight) * static_cast<double>(slot->invHeight);
    }
    Resource_SetArray(result, uvs, 4);
}

BUILTIN(font_delete)
{
    if (!Font_Delete(ArgInt(args, argc, 0, -1)))
        Error_Show("Trying to delete non-existing font.", false);
}

static constexpr BuiltinRow kRows[] = {
    {"font_exists", font_exists, 1},
    {"font_get_name", font_get_name, 1},
    {"font_get_fontname", font_get_fontname, 1},
    {"font_get_size", GetField<&CFontSW::size>, 1},
    {"font_get_bold", GetField<&CFontSW::bold>, 1},
    {"font_get_italic", GetField<&CFontSW::italic>, 1},
    {"font_get_first", GetField<&CFontSW::first>, 1},
    {"font_get_last", GetField<&CFontSW::last>, 1},
    {"font_get_texture", font_get_texture, 1},
    {"font_get_uvs", font_get_uvs, 1},
    {"font_add", AddFont<FromFile>, 6},
    {"font_add_sprite", AddFont<FromSprite>, 4},
    {"font_add_sprite_ext", AddFont<FromSpriteText>, 4},
    {"font_replace", ReplaceFont<FromFile>, 7},
    {"font_replace_sprite", ReplaceFont<FromSprite>, 5},
    {"font_replace_sprite_ext", ReplaceFont<FromSpriteText>, 5},
    {"font_delete", font_delete, 1},
};

void Function_Resource_RegisterFonts()
{
    Function_AddRows(kRows);
}
