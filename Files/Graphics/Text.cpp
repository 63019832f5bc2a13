#include "Files/Graphics/Text.h"

#include <algorithm>
#include <cmath>

#include "Files/Font/CFontSW.h"
#include "Files/Graphics/Draw_State.h"

TextState g_TextState;

namespace {

// The draw alpha as an alpha argument that comes out as the same byte.
float PlainAlpha()
{
    return (static_cast<float>(drawAlpha) + 0.1F) / 255.0F;
}

int32_t Align(int32_t align)
{
    return align >= ALIGN_NEAR && align <= ALIGN_FAR ? align : ALIGN_NEAR;
}

void DrawLine(CFontSW* font, const uint16_t* units, float x, float y, const TextPlace& place)
{
    if (place.colours)
        font->DrawLineColour(x, y, units, place.xscale, place.yscale, place.angle, place.colours,
                             place.alpha);
    else
        font->DrawLineExt(x, y, units, place.xscale, place.yscale, place.angle, Draw_GetColour(),
                          PlainAlpha());
}

float Shift(int32_t align, float length)
{
    return align == ALIGN_MIDDLE ? std::trunc(length / 2.0F) : align == ALIGN_FAR ? length : 0.0F;
}

void DrawUpright(CFontSW* font, const TextLines& lines, float separation, const TextPlace& place)
{
    TextPlace plain = place;
    plain.xscale = plain.yscale = 1;
    plain.angle = 0;
    float y = place.y - Shift(g_TextState.valign, static_cast<float>(lines.count) * separation);
    for (const TextLine* line = lines.first; line; line = line->next, y += separation) {
        if (line->units[0] == 0) continue;
        const auto width = static_cast<float>(font->TextWidth(line->units));
        DrawLine(font, line->units, place.x - Shift(g_TextState.halign, width), y, plain);
    }
}

void DrawTurned(CFontSW* font, const TextLines& lines, float separation, const TextPlace& place)
{
    const float s = std::sin(place.angle), c = std::cos(place.angle);
    const float dx = s * place.yscale * separation, dy = c * place.yscale * separation;
    // Half of each side for the middle, none or all of it at the ends.
    const float up = static_cast<float>(lines.count * g_TextState.valign) / 2.0F;
    const float back = static_cast<float>(g_TextState.halign) / 2.0F;
    float x = place.x - up * dx, y = place.y - up * dy;
    for (const TextLine* line = lines.first; line; line = line->next, x += dx, y += dy) {
        if (line->units[0] == 0) continue;
        const float h = -back * static_cast<float>(font->TextWidth(line->units)) * place.xscale;
        DrawLine(font, line->units, x + c * h, y - s * h, place);
    }
}

}  // namespace

void Text_Init()
{
    g_TextState = TextState{};
}

void Text_SetFont(int32_t font)
{
    if (font == -1) {
        Text_Init();
        Draw_SetAlpha(1);
        Draw_SetColour(g_StartDrawColour);
    }
    g_TextState.font = Font_Data(font) ? font : -1;
    if (g_TextState.font < 0) Font_Default();
}

void Text_SetHAlign(int32_t align)
{
    g_TextState.halign = Align(align);
}

void Text_SetVAlign(int32_t align)
{
    g_TextState.valign = Align(align);
}

CFontSW* Text_Font()
{
    CFontSW* font = Font_Data(g_TextState.font);
    return font ? font : Font_Default();
}

void Text_Draw(const char* text, const TextPlace& place)
{
    CFontSW* font = Text_Font();
    TextLines lines;
    Text_Split(text, place.width, &lines);
    const auto separation =
        static_cast<float>(place.separation < 0 ? font->TextHeight() : place.separation);
    if (place.transformed)
        DrawTurned(font, lines, separation, place);
    else
        DrawUpright(font, lines, separation, place);
}

int32_t Text_Width(const char* text, int32_t width)
{
    const CFontSW* font = Text_Font();
    TextLines lines;
    Text_Split(text, width, &lines);
    int32_t widest = 0;
    for (const TextLine* line = lines.first; line; line = line->next)
        widest = std::max(widest, font->TextWidth(line->units));
    return widest;
}

double Text_Height(const char* text, int32_t separation, int32_t width)
{
    const CFontSW* font = Text_Font();
    TextLines lines;
    Text_Split(text, width, &lines);
    if (lines.count == 0) return 0;
    const double step = separation < 0 ? font->TextHeight() : separation;
    return font->TextHeight() + (lines.count - 1) * step;
}
