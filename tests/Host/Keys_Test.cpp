// The edge at which the desktop's keys become the runtime's numbers.

#include <gtest/gtest.h>

#include <set>

#include "Host/Host_SDL.h"

namespace {

using sdl::KeyFromSdl;
using sdl::KeyToSdl;

TEST(Keys, EveryNumberMapsBack)
{
    std::set<int32_t> unmapped;
    for (int32_t key = 1; key < 256; ++key) {
        const SDL_Keycode code = KeyToSdl(key);
        if (code == SDLK_UNKNOWN) {
            unmapped.insert(key);
            continue;
        }
        // Left and right of Shift, Control and Alt come in under one number.
        const int32_t plain = key >= 160 && key <= 165 ? 16 + (key - 160) / 2 : key;
        EXPECT_EQ(KeyFromSdl(code, SDL_SCANCODE_UNKNOWN), plain) << key;
    }
    // The keys that a player of a keyboard game has under the hands.
    for (const int key : {8,   9,   13,  16,  17,  18,  20,  27,  32,  33,  34,  35,  36,  37,  38,
                          39,  40,  45,  46,  96,  105, 106, 107, 109, 110, 111, 112, 123, 144, 145,
                          186, 187, 188, 189, 190, 191, 192, 219, 220, 221, 222, 65,  90,  48,  57})
        EXPECT_EQ(unmapped.count(key), 0U) << key;
    EXPECT_EQ(KeyToSdl(0), SDLK_UNKNOWN);
    EXPECT_EQ(KeyToSdl(255), SDLK_UNKNOWN);
}

TEST(Keys, MeaningComesBeforePlace)
{
    EXPECT_EQ(KeyFromSdl(SDLK_w, SDL_SCANCODE_COMMA), 'W') << "a layout that has W elsewhere";
    EXPECT_EQ(KeyFromSdl(SDLK_a, SDL_SCANCODE_Q), 'A');
    // A layout without Latin letters, or with signs on the row of digits: the place counts.
    EXPECT_EQ(KeyFromSdl(0x446, SDL_SCANCODE_W), 'W');
    EXPECT_EQ(KeyFromSdl(SDLK_AMPERSAND, SDL_SCANCODE_1), '1');
    EXPECT_EQ(KeyFromSdl(0xE0, SDL_SCANCODE_0), '0');
    EXPECT_EQ(KeyFromSdl(SDLK_KP_ENTER, SDL_SCANCODE_KP_ENTER), 13);
    EXPECT_EQ(KeyFromSdl(SDLK_F24, SDL_SCANCODE_F24), 135);
    EXPECT_EQ(KeyFromSdl(SDLK_MAIL, SDL_SCANCODE_MAIL), 0) << "no number: ignored";
}

}  // namespace
