#include <cstdio>
#include <cstdlib>

#include "Host/Host_SDL.h"

namespace sdl {

namespace {

enum Button { kIgnore = 0, kAbort = 1, kCopy = 2, kClear = 3 };

void MessageBox(const char* title, const char* text)
{
    std::fprintf(stderr, "%s: %s\n", title, text);
    if (SDL_WasInit(SDL_INIT_VIDEO))
        SDL_ShowSimpleMessageBox(SDL_MESSAGEBOX_ERROR, title, text, g_window.window);
}

// Copy and Clear leave the dialog up; without a screen the text is on the standard
// error and the answer is Abort, for nobody can be asked.
HostErrorChoice ErrorDialog(const char* title, const char* text, bool canIgnore)
{
    VxString shown = text;
    for (;;) {
        const SDL_MessageBoxButtonData buttons[] = {
            {0, kCopy, "Copy"},
            {0, kClear, "Clear"},
            {SDL_MESSAGEBOX_BUTTON_ESCAPEKEY_DEFAULT, kAbort, "Abort"},
            {SDL_MESSAGEBOX_BUTTON_RETURNKEY_DEFAULT, kIgnore, "Ignore"}};
        const SDL_MessageBoxData box = {
            SDL_MESSAGEBOX_ERROR, g_window.window, title,  shown.c_str(),
            canIgnore ? 4 : 3,    buttons,         nullptr};
        int answer = kAbort;
        if (SDL_ShowMessageBox(&box, &answer) != 0) {
            std::fprintf(stderr, "%s\n%s\n", title, text);
            return HostErrorChoice::Abort;
        }
        if (answer == kCopy)
            SDL_SetClipboardText(shown.c_str());
        else if (answer == kClear)
            shown.clear();
        else
            return answer == kIgnore && canIgnore ? HostErrorChoice::Ignore
                                                  : HostErrorChoice::Abort;
    }
}

VxString ClipboardText()
{
    char* text = SDL_GetClipboardText();
    const VxString copy = text ? text : "";
    SDL_free(text);
    return copy;
}

}  // namespace

const HostDialogTable kDialogTable = {
    .MessageBox = MessageBox,
    .ErrorDialog = ErrorDialog,
    .ClipboardText = ClipboardText,
    .SetClipboardText = [](const char* text) { SDL_SetClipboardText(text); },
    .OpenUrl = [](const char* url) { return SDL_OpenURL(url) == 0; },
};

}  // namespace sdl
