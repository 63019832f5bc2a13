// "Graphic..": all that draws. The families stand in files of their own.

#include "Files/Function/Function_Graphic.h"

#include "Files/Function/Function_Registry.h"
#include "Files/Graphics/Draw_State.h"

float Graphic_PlainAlpha()
{
    return (static_cast<float>(drawAlpha) + 0.1F) / 255.0F;
}

double Graphic_PixelColour(uint32_t pixel, bool withAlpha)
{
    const uint32_t colour = (pixel & 0xFF00U) | (pixel & 0xFFU) << 16 | (pixel >> 16 & 0xFFU);
    return withAlpha ? colour | (pixel & 0xFF000000U) : colour;
}

void Function_Graphic_Register()
{
    Function_Graphic_RegisterSprites();
    Function_Graphic_RegisterShapes();
    Function_Graphic_RegisterStates();
    Function_Graphic_RegisterSurfaces();
    Function_Graphic_RegisterColours();
    Function_Graphic_RegisterWindow();
    Function_Graphic_RegisterText();
}
