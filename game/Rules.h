#pragma once
// What every family of rules shares: the seam, the names, and the grid.

#include "Builtins.h"
#include "Files/Code/Seam.h"
#include "Names.h"

using namespace names;

// The play field is a grid of square cells. Everything of the puzzle stands at
// multiples of the cell in both axes; nothing stores a cell coordinate.
inline constexpr double cell = 52;  // pixels

// Stands exactly on a cell.
inline bool on_grid(CInstance* who)
{
    return action_if_aligned(who, cell, cell);
}

// Lower rows are drawn in front of higher ones; `nearer` rows more than one's own. In
// mid-move one keeps the depth of the row that one left.
void stand_in_row(CInstance* self, double nearer);

// Answer of os_type on a desktop; 3, 4 and 7 are the touch platforms.
inline constexpr double desktop = 0;
inline constexpr double mobile = 4;  // the one with a service of its own for milestones

inline bool on_touch_platform()
{
    return os_type == 3 || os_type == 4 || os_type == 7;
}

// Keys by the letters that they type.
enum Key : int32_t {
    keyBackspace = 8,
    keyEnter = 13,
    keyAlt = 18,
    keyP = 'P',
    keySpace = 32,
    keyLeft = 37,
    keyUp = 38,
    keyRight = 39,
    keyDown = 40,
    keyA = 'A',
    keyD = 'D',
    keyH = 'H',
    keyS = 'S',
    keyT = 'T',
    keyU = 'U',
    keyW = 'W',
    keyZ = 'Z',
};

// Alt and Enter together are the full screen's switch, and nothing of the game.
inline bool enter_pressed()
{
    return keyboard_check_pressed(keyEnter) && !keyboard_check(keyAlt);
}

// Colours are 0xBBGGRR.
using Colour = uint32_t;
inline constexpr Colour black = 0, white = 0xFFFFFF;

// Of draw_set_halign and draw_set_valign.
inline constexpr int32_t fa_left = 0, fa_center = 1, fa_top = 0, fa_middle = 1;

// Music on: sound effects follow the music's state.
inline bool music_plays()
{
    return audio_is_playing(musica) && !audio_is_paused(musica);
}

inline void click()
{
    if (music_plays()) audio_play_sound(xClick, 1, false);
}

inline constexpr int levels = 100, levelsOfWorld = 20;

// Number of the level that a room is; 0 of another room.
inline int level_of(double room_)
{
    if (room_ < room_level1.index || room_ > room_level100.index) return 0;
    return static_cast<int>(room_) - room_level1.index + 1;
}
