#pragma once
// What the screens of menus share: places, and words and pictures in the player's
// language.

#include <span>

#include "game/Rules.h"

// A place on the screen: a share of its width and of its height, and pixels from there.
struct Spot {
    double across, right, down, below;

    double x() const { return room_width * across + right; }
    double y() const { return room_height * down + below; }
};

// The corner of a screen's close button.
inline constexpr Spot closeCorner{1, -75, 0, 15};

// ---- the language
// Of pictures that stand in both languages. Whoever has chosen none sees the English one.
inline int in_language(int english, int portuguese)
{
    return idioma == "portugues" ? portuguese : english;
}

// Words are drawn only in a language that the game knows.
struct Words {
    const char *english, *portuguese;
};
struct Label {
    Spot spot;  // of the middle
    Words words;
};

inline constexpr Colour darkGrey = 4210752, orange = 4235519;

void centre_texts(Font font, Colour colour);  // for the texts that follow
void draw_words(const Spot& middle, const Words& words);
void draw_labels(std::span<const Label> labels);
