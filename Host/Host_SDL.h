#pragma once
// What the units of the desktop backend share. They alone include SDL.

#include <SDL.h>

#include "Host/Host.h"

namespace sdl {

struct Window {
    SDL_Window* window = nullptr;
    SDL_GLContext context = nullptr;
    SDL_Renderer* renderer = nullptr;  // for pictures of the software device
    SDL_Texture* texture = nullptr;
    int32_t textureWidth = 0, textureHeight = 0;
    bool fullscreen = false;
    bool border = true;  // outside of full-screen
    VxString error;
};
extern Window g_window;

extern const HostWindowTable kWindowTable;
extern const HostDialogTable kDialogTable;

// ---- messages
bool NextMessage(HostMessage* message);
void PostMessage(const HostMessage& message);
void SendKey(int32_t key, bool down);
bool KeyState(int32_t key);
bool KeyToggled(int32_t key);
void ForgetMessages();

// ---- the edge of key numbers
int32_t KeyFromSdl(SDL_Keycode code, SDL_Scancode scan);  // 0: a key without a number

// ---- cursors
void SetCursor(int32_t row);
void FreeCursors();

}  // namespace sdl
