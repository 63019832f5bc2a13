#pragma once
// The families of drawing built-ins, and what they share.

#include <cstdint>

#include "Files/Base/RValue.h"
#include "Files/Function/Arguments.h"

void Function_Graphic_RegisterWindow();    // window, display
void Function_Graphic_RegisterSprites();   // draw_self, draw_sprite*, draw_background*
void Function_Graphic_RegisterShapes();    // draw state, shapes, primitives
void Function_Graphic_RegisterStates();    // blending, tests, textures
void Function_Graphic_RegisterSurfaces();  // surfaces, clears, the GUI's size
void Function_Graphic_RegisterColours();   // colour arithmetic
void Function_Graphic_RegisterText();      // text and its measures

inline float ArgFloat(const RValue* args, int argc, int i, float fallback = 0.0F)
{
    return static_cast<float>(ArgReal(args, argc, i, static_cast<double>(fallback)));
}
inline uint32_t ArgColour(const RValue* args, int argc, int i)
{
    return static_cast<uint32_t>(ArgInt(args, argc, i));
}

inline constexpr uint32_t kScriptWhite = 0xFFFFFFU;
inline constexpr float kDegreeFloat = 3.1415927F / 180.0F;

// The draw alpha as an alpha argument that comes out as the same byte.
float Graphic_PlainAlpha();
// A pixel 0xAARRGGBB as a script's colour, with the alpha byte when asked for.
double Graphic_PixelColour(uint32_t pixel, bool withAlpha);
// A script's colour from components of 0 to 255.
uint32_t Colour_FromRgb(double red, double green, double blue);
uint32_t Colour_FromHsv(double hue, double saturation, double value);
