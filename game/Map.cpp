#include "game/Map.h"

#include <cstdio>

#include "game/Milestones.h"
#include "game/Transition.h"

namespace {

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
        self->var(page.unlocked_) = ini_read_real("Levels", LevelKey(page.level).text, 0);
    }
    ini_close();
}

void fade_to_farthest_page(CInstance* self)
{
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

struct Reached {
    InstanceVar state;
    int level;
};
constexpr Reached reached[] = {
    {unlocked0, 3},  {unlocked1, 10}, {unlocked2, 20},   {unlocked3, 30},
    {unlocked4, 40}, {unlocked5, 50}, {unlocked6, 60},   {unlocked7, 70},
    {unlocked8, 80}, {unlocked9, 90}, {unlocked10, 100},
};

// Here a level counts from the time that it is open.
void post_reached_milestones(CInstance* self)
{
    ini_open("SaveGame.sav");
    for (const Reached& each : reached)
        self->var(each.state) = ini_read_real("Levels", LevelKey(each.level).text, 0);
    ini_close();
    for (const Reached& each : reached)
        if (self->var(each.state) != 0) post_level_milestones(each.level);
}

}  // namespace

void fade_to_map(CInstance* self)
{
    audio_sound_gain(musica, 1, 500);
    fade_to_farthest_page(self);
}

// The campaign goes on. Milestones that a save file from elsewhere has reached are
// posted again.
RValue& vxl_Script_scr_continua(CInstance* self, CInstance* other, RValue& result, int, RValue**)
{
    Frame frame(self, other);
    post_reached_milestones(self);
    fade_to_farthest_page(self);
    return result;
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
