#pragma once
// What the units of the desktop backend share. They alone include SDL.

#include <SDL.h>

#include "Host/Host.h"
#include "Host/Host_Audio.h"
#include "Host/Host_Pads.h"

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
extern const HostPadTable kPadTable;
extern const HostAudioTable kAudioTable;

// ---- pixels and points. SDL counts sizes and places in points, of which a sharp desktop
// has fewer than pixels; the runtime counts in pixels throughout.
struct Scale {
    int32_t pixels = 1, points = 1;
    int32_t ToPixels(int32_t value) const;  // rounds down, like ToPoints
    int32_t ToPoints(int32_t value) const;
    int32_t PointsFor(int32_t size) const;  // the fewest that hold so many pixels
};
Scale WindowScale();  // of the window, 1 to 1 without one

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
