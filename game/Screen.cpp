#include "game/Screen.h"

void centre_texts(Font font, Colour colour)
{
    draw_set_font(font);
    draw_set_colour(colour);
    draw_set_halign(fa_center);
    draw_set_valign(fa_middle);
}

void draw_words(const Spot& middle, const Words& words)
{
    if (idioma == "ingles") draw_text(middle.x(), middle.y(), words.english);
    if (idioma == "portugues") draw_text(middle.x(), middle.y(), words.portuguese);
}

void draw_labels(std::span<const Label> labels)
{
    for (const Label& label : labels) draw_words(label.spot, label.words);
}
