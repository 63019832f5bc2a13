#include "game/Map.h"

#include <cstdio>

#include "game/Transition.h"

namespace {

constexpr Key keyBackspace = static_cast<Key>(8);

// The pages after the first, by what is stored of their first levels.
struct Page {
    InstanceVar unlocked_;
    int level;
};
constexpr Page pages[] = {
    {fase11, 11}, {fase21, 21}, {fase31, 31}, {fase41, 41}, {fase51, 51},
    {fase61, 61}, {fase71, 71}, {fase81, 81}, {fase91, 91},
};

void tell_page(int level)
{
    char line[32];
    snprintf(line, sizeof line, "Abriu level %d!", level);
    show_debug_message(line);
}

void read_pages(CInstance* self)
{
    ini_open("SaveGame.sav");
    for (const Page& page : pages) {
        char key[16];
        snprintf(key, sizeof key, "Level%d", page.level);
        self->var(page.unlocked_) = ini_read_real("Levels", key, 0);
    }
    ini_close();
}

}  // namespace

void fade_to_map(CInstance* self)
{
    audio_sound_gain(musica, 1, 500);
    self->var(mundoAtual) = room_menu1;
    tell_page(1);
    read_pages(self);
    for (const Page& page : pages) {
        if (self->var(page.unlocked_) == 0) continue;
        self->var(mundoAtual) = room_menu1.index + page.level / 10;
        tell_page(page.level);
    }
    fade_to(self->var(mundoAtual));
}

void leave_level(CInstance* self)
{
    keyboard_clear(keyBackspace);
    if (!fading(self)) fade_to_map(self);
}

void vxl_Object_oPause_Keyboard_Backspace(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    leave_level(self);
}
