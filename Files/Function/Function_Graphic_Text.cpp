// draw_text*, string_width*, string_height*, and the state of text.

#include "Files/Function/Function_Graphic.h"
#include "Files/Function/Function_Registry.h"
#include "Files/Graphics/Text.h"

namespace {

TextPlace PlaceAt(const RValue* args, int argc)
{
    return {ArgFloat(args, argc, 0), ArgFloat(args, argc, 1)};
}

void ReadWrap(const RValue* args, int argc, int first, TextPlace* place)
{
    place->separation = ArgInt(args, argc, first, -1);
    place->width = ArgInt(args, argc, first + 1, -1);
}

// xscale, yscale, angle in degrees
void ReadTransform(const RValue* args, int argc, int first, TextPlace* place)
{
    place->transformed = true;
    place->xscale = ArgFloat(args, argc, first, 1);
    place->yscale = ArgFloat(args, argc, first + 1, 1);
    place->angle = ArgFloat(args, argc, first + 2) * kDegreeFloat;
}

// Any value as a text.
VXText TextAt(const RValue* args, int argc, int i)
{
    const bool other = i < argc && args[i].Kind() != VALUE_STRING;
    return other ? ToText(&args[i]) : ArgText(args, argc, i);
}

// Four corner colours and an alpha, and the drawing with them.
void DrawColoured(const RValue* args, int argc, int first, TextPlace place)
{
    uint32_t colours[4];
    for (int i = 0; i < 4; ++i) colours[i] = ArgColour(args, argc, first + i);
    place.colours = colours;
    place.alpha = ArgFloat(args, argc, first + 4, 1);
    Text_Draw(TextAt(args, argc, 2), place);
}

}  // namespace

BUILTIN(draw_set_font)
{
    Text_SetFont(ArgInt(args, argc, 0, -1));
}
BUILTIN(draw_get_font)
{
    SetReal(result, g_TextState.font);
}

BUILTIN(draw_set_halign)
{
    Text_SetHAlign(ArgInt(args, argc, 0));
}
BUILTIN(draw_get_halign)
{
    SetReal(result, g_TextState.halign);
}

BUILTIN(draw_set_valign)
{
    Text_SetVAlign(ArgInt(args, argc, 0));
}
BUILTIN(draw_get_valign)
{
    SetReal(result, g_TextState.valign);
}

// x, y, value
BUILTIN(draw_text)
{
    Text_Draw(TextAt(args, argc, 2), PlaceAt(args, argc));
}

// x, y, value, separation, width
BUILTIN(draw_text_ext)
{
    TextPlace place = PlaceAt(args, argc);
    ReadWrap(args, argc, 3, &place);
    Text_Draw(TextAt(args, argc, 2), place);
}

// x, y, value, xscale, yscale, angle
BUILTIN(draw_text_transformed)
{
    TextPlace place = PlaceAt(args, argc);
    ReadTransform(args, argc, 3, &place);
    Text_Draw(TextAt(args, argc, 2), place);
}

// x, y, value, separation, width, xscale, yscale, angle
BUILTIN(draw_text_ext_transformed)
{
    TextPlace place = PlaceAt(args, argc);
    ReadWrap(args, argc, 3, &place);
    ReadTransform(args, argc, 5, &place);
    Text_Draw(TextAt(args, argc, 2), place);
}

// The colour forms take four colours and an alpha behind the others.
BUILTIN(draw_text_colour)
{
    DrawColoured(args, argc, 3, PlaceAt(args, argc));
}

BUILTIN(draw_text_ext_colour)
{
    TextPlace place = PlaceAt(args, argc);
    ReadWrap(args, argc, 3, &place);
    DrawColoured(args, argc, 5, place);
}

BUILTIN(draw_text_transformed_colour)
{
    TextPlace place = PlaceAt(args, argc);
    ReadTransform(args, argc, 3, &place);
    DrawColoured(args, argc, 6, place);
}

BUILTIN(draw_text_ext_transformed_colour)
{
    TextPlace place = PlaceAt(args, argc);
    ReadWrap(args, argc, 3, &place);
    ReadTransform(args, argc, 5, &place);
    DrawColoured(args, argc, 8, place);
}

BUILTIN(string_width)
{
    SetReal(result, Text_Width(TextAt(args, argc, 0)));
}
BUILTIN(string_height)
{
    SetReal(result, Text_Height(TextAt(args, argc, 0)));
}

// value, separation, width
BUILTIN(string_width_ext)
{
    SetReal(result, Text_Width(TextAt(args, argc, 0), ArgInt(args, argc, 2, -1)));
}
BUILTIN(string_height_ext)
{
    SetReal(result, Text_Height(TextAt(args, argc, 0), ArgInt(args, argc, 1, -1),
                                ArgInt(args, argc, 2, -1)));
}

static constexpr BuiltinRow kRows[] = {
    {"draw_set_font", draw_set_font, 1},
    {"draw_get_font", draw_get_font, 0},
    {"draw_set_halign", draw_set_halign, 1},
    {"draw_get_halign", draw_get_halign, 0},
    {"draw_set_valign", draw_set_valign, 1},
    {"draw_get_valign", draw_get_valign, 0},
    {"draw_text", draw_text, 3},
    {"draw_text_ext", draw_text_ext, 5},
    {"draw_text_transformed", draw_text_transformed, 6},
    {"draw_text_ext_transformed", draw_text_ext_transformed, 8},
    {"draw_text_colour", draw_text_colour, 8},
    {"draw_text_color", draw_text_colour, 8},
    {"draw_text_ext_colour", draw_text_ext_colour, 10},
    {"draw_text_ext_color", draw_text_ext_colour, 10},
    {"draw_text_transformed_colour", draw_text_transformed_colour, 11},
    {"draw_text_transformed_color", draw_text_transformed_colour, 11},
    {"draw_text_ext_transformed_colour", draw_text_ext_transformed_colour, 13},
    {"draw_text_ext_transformed_color", draw_text_ext_transformed_colour, 13},
    {"string_width", string_width, 1},
    {"string_height", string_height, 1},
    {"string_width_ext", string_width_ext, 3},
    {"string_height_ext", string_height_ext, 3},
};

void Function_Graphic_RegisterText()
{
    Function_AddRows(kRows);
}
