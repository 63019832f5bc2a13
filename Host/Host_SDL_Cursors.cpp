#include "Host/Host_SDL.h"

namespace sdl {

namespace {

// Rows of the runtime's cursor table; row 1 is none.
constexpr SDL_SystemCursor kShapes[15] = {
    SDL_SYSTEM_CURSOR_ARROW,     SDL_SYSTEM_CURSOR_ARROW,    SDL_SYSTEM_CURSOR_CROSSHAIR,
    SDL_SYSTEM_CURSOR_IBEAM,     SDL_SYSTEM_CURSOR_SIZENESW, SDL_SYSTEM_CURSOR_SIZENS,
    SDL_SYSTEM_CURSOR_SIZENWSE,  SDL_SYSTEM_CURSOR_SIZEWE,   SDL_SYSTEM_CURSOR_ARROW,
    SDL_SYSTEM_CURSOR_WAIT,      SDL_SYSTEM_CURSOR_HAND,     SDL_SYSTEM_CURSOR_NO,
    SDL_SYSTEM_CURSOR_WAITARROW, SDL_SYSTEM_CURSOR_ARROW,    SDL_SYSTEM_CURSOR_SIZEALL};

SDL_Cursor* g_cursors[15];

}  // namespace

void SetCursor(int32_t row)
{
    if (row < 0 || row >= 15 || row == 1) {
        SDL_ShowCursor(SDL_DISABLE);
        return;
    }
    if (!g_cursors[row]) g_cursors[row] = SDL_CreateSystemCursor(kShapes[row]);
    if (g_cursors[row]) SDL_SetCursor(g_cursors[row]);
    SDL_ShowCursor(SDL_ENABLE);
}

void FreeCursors()
{
    for (SDL_Cursor*& cursor : g_cursors) {
        if (cursor) SDL_FreeCursor(cursor);
        cursor = nullptr;
    }
}

}  // namespace sdl
