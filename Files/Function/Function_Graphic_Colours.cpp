// Colour arithmetic on 0x00BBGGRR; hue, saturation and value in 0 to 255.
// HSV after A. R. Smith, "Color Gamut Transform Pairs", 1978.

#include <algorithm>
#include <cmath>

#include "Files/Function/Function_Graphic.h"
#include "Files/Function/Function_Registry.h"

namespace {

struct Rgb {
    double red, green, blue;  // 0 to 255
};
struct Hsv {
    double hue, saturation, value;  // 0 to 255
};

Rgb Split(uint32_t colour)
{
    return {static_cast<double>(colour & 0xFFU), static_cast<double>(colour >> 8 & 0xFFU),
            static_cast<double>(colour >> 16 & 0xFFU)};
}

uint32_t Byte(double value)
{
    return static_cast<uint32_t>(std::lrint(std::clamp(value, 0.0, 255.0)));
}

uint32_t Join(const Rgb& rgb)
{
    return Byte(rgb.red) | Byte(rgb.green) << 8 | Byte(rgb.blue) << 16;
}

Rgb ToRgb(const Hsv& hsv)
{
    const double sector = std::fmod(hsv.hue / 255.0 * 6.0, 6.0);
    const double share = hsv.saturation / 255.0;
    const double rest = sector - std::floor(sector);
    const double v = hsv.value, p = v * (1 - share), q = v * (1 - share * rest),
                 t = v * (1 - share * (1 - rest));
    switch (static_cast<int>(sector)) {
        case 0:
            return {v, t, p};
        case 1:
            return {q, v, p};
        case 2:
            return {p, v, t};
        case 3:
            return {p, q, v};
        case 4:
            return {t, p, v};
        default:
            return {v, p, q};
    }
}

Hsv ToHsv(const Rgb& rgb)
{
    const double most = std::max({rgb.red, rgb.green, rgb.blue});
    const double least = std::min({rgb.red, rgb.green, rgb.blue});
    const double range = most - least;
    if (range <= 0) return {0, 0, most};
    double sector;
    if (most == rgb.red)
        sector = (rgb.green - rgb.blue) / range + (rgb.green < rgb.blue ? 6 : 0);
    else if (most == rgb.green)
        sector = (rgb.blue - rgb.red) / range + 2;
    else
        sector = (rgb.red - rgb.green) / range + 4;
    return {sector / 6 * 255, range / most * 255, most};
}

Hsv HsvArgument(const RValue* args, int argc)
{
    return ToHsv(Split(ArgColour(args, argc, 0)));
}

double Component(const RValue* args, int argc, int i)
{
    return std::clamp(ArgReal(args, argc, i), 0.0, 255.0);
}

}  // namespace

uint32_t Colour_FromRgb(double red, double green, double blue)
{
    return Join({red, green, blue});
}
uint32_t Colour_FromHsv(double hue, double saturation, double value)
{
    return Join(ToRgb({hue, saturation, value}));
}

BUILTIN(make_colour_rgb)
{
    const auto red = static_cast<uint32_t>(ArgInt(args, argc, 0)) & 0xFFU;
    const auto green = static_cast<uint32_t>(ArgInt(args, argc, 1)) & 0xFFU;
    const auto blue = static_cast<uint32_t>(ArgInt(args, argc, 2)) & 0xFFU;
    SetReal(result, red | green << 8 | blue << 16);
}

BUILTIN(make_colour_hsv)
{
    SetReal(result, Colour_FromHsv(Component(args, argc, 0), Component(args, argc, 1),
                                   Component(args, argc, 2)));
}

BUILTIN(colour_get_red)
{
    SetReal(result, Split(ArgColour(args, argc, 0)).red);
}

BUILTIN(colour_get_green)
{
    SetReal(result, Split(ArgColour(args, argc, 0)).green);
}

BUILTIN(colour_get_blue)
{
    SetReal(result, Split(ArgColour(args, argc, 0)).blue);
}

BUILTIN(colour_get_hue)
{
    SetReal(result, Byte(HsvArgument(args, argc).hue));
}

BUILTIN(colour_get_saturation)
{
    SetReal(result, Byte(HsvArgument(args, argc).saturation));
}

BUILTIN(colour_get_value)
{
    SetReal(result, Byte(HsvArgument(args, argc).value));
}

// colour, colour, share of the second
BUILTIN(merge_colour)
{
    const Rgb a = Split(ArgColour(args, argc, 0)), b = Split(ArgColour(args, argc, 1));
    const double share = ArgReal(args, argc, 2);
    SetReal(result, Join({a.red + (b.red - a.red) * share, a.green + (b.green - a.green) * share,
                          a.blue + (b.blue - a.blue) * share}));
}

static constexpr BuiltinRow kRows[] = {
    {"make_colour_rgb", make_colour_rgb, 3},
    {"make_color_rgb", make_colour_rgb, 3},
    {"make_colour_hsv", make_colour_hsv, 3},
    {"make_color_hsv", make_colour_hsv, 3},
    {"colour_get_red", colour_get_red, 1},
    {"color_get_red", colour_get_red, 1},
    {"colour_get_green", colour_get_green, 1},
    {"color_get_green", colour_get_green, 1},
    {"colour_get_blue", colour_get_blue, 1},
    {"color_get_blue", colour_get_blue, 1},
    {"colour_get_hue", colour_get_hue, 1},
    {"color_get_hue", colour_get_hue, 1},
    {"colour_get_saturation", colour_get_saturation, 1},
    {"color_get_saturation", colour_get_saturation, 1},
    {"colour_get_value", colour_get_value, 1},
    {"color_get_value", colour_get_value, 1},
    {"merge_colour", merge_colour, 3},
    {"merge_color", merge_colour, 3},
};

void Function_Graphic_RegisterColours()
{
    Function_AddRows(kRows);
}
