// The edge at which the desktop's keys become the runtime's numbers.

#include <gtest/gtest.h>

#include <set>

#include "Host/Host_SDL.h"

namespace {

using sdl::KeyFromSdl;

TEST(Keys, EveryKeyUnderTheHandsHasItsNumber)
{
    std::set<int32_t> numbers;
    for (int scan = 0; scan < SDL_NUM_SCANCODES; ++scan)
        numbers.insert(KeyFromSdl(SDL_SCANCODE_TO_KEYCODE(scan), SDL_SCANCODE_UNKNOWN));
    for (int sign = 1; sign < 128; ++sign) numbers.insert(KeyFromSdl(sign, SDL_SCANCODE_UNKNOWN));
    for (int key = 166; key <= 183; ++key) EXPECT_EQ(numbers.count(key), 1U) << key;
    for (const int key :
         {3,   8,   9,   13,  16,  17,  18,  20,  27,  32,  33,  34,  35,  36,  37,  38,
          39,  40,  45,  46,  96,  105, 106, 107, 109, 110, 111, 112, 123, 144, 145, 186,
          187, 188, 189, 190, 191, 192, 219, 220, 221, 222, 65,  90,  48,  57})
        EXPECT_EQ(numbers.count(key), 1U) << key;
    EXPECT_EQ(KeyFromSdl(SDLK_LSHIFT, SDL_SCANCODE_LSHIFT), 16);
    EXPECT_EQ(KeyFromSdl(SDLK_RSHIFT, SDL_SCANCODE_RSHIFT), 16) << "the side is polled";
    EXPECT_EQ(KeyFromSdl(SDLK_RCTRL, SDL_SCANCODE_RCTRL), 17);
    EXPECT_EQ(KeyFromSdl(SDLK_RALT, SDL_SCANCODE_RALT), 18);
}

TEST(Keys, MeaningComesBeforePlace)
{
    EXPECT_EQ(KeyFromSdl(SDLK_w, SDL_SCANCODE_COMMA), 'W') << "a layout that has W elsewhere";
    EXPECT_EQ(KeyFromSdl(SDLK_a, SDL_SCANCODE_Q), 'A');
    // A layout without Latin letters, or with signs on the row of digits: the place counts.
    EXPECT_EQ(KeyFromSdl(0x446, SDL_SCANCODE_W), 'W');
    EXPECT_EQ(KeyFromSdl(SDLK_AMPERSAND, SDL_SCANCODE_1), '1');
    EXPECT_EQ(KeyFromSdl(0xE0, SDL_SCANCODE_0), '0');
    EXPECT_EQ(KeyFromSdl(0xE7, SDL_SCANCODE_SEMICOLON), 186) << "a cedilla";
    EXPECT_EQ(KeyFromSdl(SDLK_KP_ENTER, SDL_SCANCODE_KP_ENTER), 13);
    EXPECT_EQ(KeyFromSdl(SDLK_F24, SDL_SCANCODE_F24), 135);
    EXPECT_EQ(KeyFromSdl(SDLK_EJECT, SDL_SCANCODE_EJECT), 0) << "no number: ignored";
}

}  // namespace
