// Key numbers: the meaning of a key in the user's layout, so that the key that types
// W is W wherever it lies.

#include "Host/Host_SDL.h"

namespace sdl {

namespace {

struct KeyRow {
    SDL_Keycode code;
    int32_t key;
};

constexpr KeyRow kKeys[] = {
    {SDLK_CANCEL, 3},
    {SDLK_BACKSPACE, 8},
    {SDLK_TAB, 9},
    {SDLK_CLEAR, 12},
    {SDLK_RETURN, 13},
    {SDLK_KP_ENTER, 13},
    {SDLK_LSHIFT, 16},
    {SDLK_RSHIFT, 16},
    {SDLK_LCTRL, 17},
    {SDLK_RCTRL, 17},
    {SDLK_LALT, 18},
    {SDLK_RALT, 18},
    {SDLK_PAUSE, 19},
    {SDLK_CAPSLOCK, 20},
    {SDLK_ESCAPE, 27},
    {SDLK_SPACE, 32},
    {SDLK_PAGEUP, 33},
    {SDLK_PAGEDOWN, 34},
    {SDLK_END, 35},
    {SDLK_HOME, 36},
    {SDLK_LEFT, 37},
    {SDLK_UP, 38},
    {SDLK_RIGHT, 39},
    {SDLK_DOWN, 40},
    {SDLK_SELECT, 41},
    {SDLK_EXECUTE, 43},
    {SDLK_PRINTSCREEN, 44},
    {SDLK_INSERT, 45},
    {SDLK_DELETE, 46},
    {SDLK_HELP, 47},
    {SDLK_LGUI, 91},
    {SDLK_RGUI, 92},
    {SDLK_APPLICATION, 93},
    {SDLK_SLEEP, 95},
    {SDLK_KP_0, 96},
    {SDLK_KP_1, 97},
    {SDLK_KP_2, 98},
    {SDLK_KP_3, 99},
    {SDLK_KP_4, 100},
    {SDLK_KP_5, 101},
    {SDLK_KP_6, 102},
    {SDLK_KP_7, 103},
    {SDLK_KP_8, 104},
    {SDLK_KP_9, 105},
    {SDLK_KP_MULTIPLY, 106},
    {SDLK_KP_PLUS, 107},
    {SDLK_KP_COMMA, 108},
    {SDLK_KP_MINUS, 109},
    {SDLK_KP_PERIOD, 110},
    {SDLK_KP_DIVIDE, 111},
    {SDLK_NUMLOCKCLEAR, 144},
    {SDLK_SCROLLLOCK, 145},
    {SDLK_AC_BACK, 166},
    {SDLK_AC_FORWARD, 167},
    {SDLK_AC_REFRESH, 168},
    {SDLK_AC_STOP, 169},
    {SDLK_AC_SEARCH, 170},
    {SDLK_AC_BOOKMARKS, 171},
    {SDLK_AC_HOME, 172},
    {SDLK_AUDIOMUTE, 173},
    {SDLK_MUTE, 173},
    {SDLK_VOLUMEDOWN, 174},
    {SDLK_VOLUMEUP, 175},
    {SDLK_AUDIONEXT, 176},
    {SDLK_AUDIOPREV, 177},
    {SDLK_AUDIOSTOP, 178},
    {SDLK_AUDIOPLAY, 179},
    {SDLK_MAIL, 180},
    {SDLK_MEDIASELECT, 181},
    {SDLK_COMPUTER, 182},
    {SDLK_CALCULATOR, 183},
    {SDLK_SEMICOLON, 186},
    {SDLK_COLON, 186},
    {SDLK_EQUALS, 187},
    {SDLK_PLUS, 187},
    {SDLK_COMMA, 188},
    {SDLK_MINUS, 189},
    {SDLK_PERIOD, 190},
    {SDLK_SLASH, 191},
    {SDLK_BACKQUOTE, 192},
    {SDLK_LEFTBRACKET, 219},
    {SDLK_BACKSLASH, 220},
    {SDLK_RIGHTBRACKET, 221},
    {SDLK_QUOTE, 222},
    {SDLK_LESS, 226},
};

// The places of the signs, for keys of a layout that type something else there.
struct PlaceRow {
    SDL_Scancode scan;
    int32_t key;
};

constexpr PlaceRow kPlaces[] = {
    {SDL_SCANCODE_SEMICOLON, 186},      {SDL_SCANCODE_EQUALS, 187},
    {SDL_SCANCODE_COMMA, 188},          {SDL_SCANCODE_MINUS, 189},
    {SDL_SCANCODE_PERIOD, 190},         {SDL_SCANCODE_SLASH, 191},
    {SDL_SCANCODE_GRAVE, 192},          {SDL_SCANCODE_INTERNATIONAL1, 193},
    {SDL_SCANCODE_LEFTBRACKET, 219},    {SDL_SCANCODE_BACKSLASH, 220},
    {SDL_SCANCODE_RIGHTBRACKET, 221},   {SDL_SCANCODE_APOSTROPHE, 222},
    {SDL_SCANCODE_NONUSBACKSLASH, 226},
};

constexpr int32_t kF1 = 112, kF13 = 124;

}  // namespace

int32_t KeyFromSdl(SDL_Keycode code, SDL_Scancode scan)
{
    if (code >= SDLK_a && code <= SDLK_z) return code - SDLK_a + 'A';
    if (code >= SDLK_0 && code <= SDLK_9) return code;
    if (code >= SDLK_F1 && code <= SDLK_F12) return code - SDLK_F1 + kF1;
    if (code >= SDLK_F13 && code <= SDLK_F24) return code - SDLK_F13 + kF13;
    for (const KeyRow& row : kKeys)
        if (row.code == code) return row.key;
    // A layout whose keys type no Latin letter: the place of the key stands in.
    if (scan >= SDL_SCANCODE_A && scan <= SDL_SCANCODE_Z) return scan - SDL_SCANCODE_A + 'A';
    if (scan >= SDL_SCANCODE_1 && scan <= SDL_SCANCODE_9) return scan - SDL_SCANCODE_1 + '1';
    if (scan == SDL_SCANCODE_0) return '0';
    for (const PlaceRow& row : kPlaces)
        if (row.scan == scan) return row.key;
    return 0;
}

}  // namespace sdl
