// The way from the program's start to the first level.

#include "game/Rules.h"

// Until the logo, the title and the character screen stand: what they set, and
// straight on to the first level.
void vxl_Room_room_intro_Create(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    if (os_type == desktop) display_reset(2, true);
    playerMode = "onePlayer";
    jogadorUm = "menino";
    jogadorDois = "menina";
    musica = -1;  // no music
    room_goto(room_level1);
}
