#include "game/TouchKeys.h"

#include "game/Rules.h"

namespace {

constexpr double size = 70;  // pixels of the GUI, both ways

struct TouchKey {
    Global handle;
    double x, y;  // GUI pixels; negative from the right or lower side
    Key key;
};

constexpr TouchKey playerTwoKeys[] = {
    {key_leftTwo, -220, -150, keyLeft},
    {key_rightTwo, -80, -150, keyRight},
    {key_upTwo, -150, -220, keyUp},
    {key_downTwo, -150, -80, keyDown},
};

constexpr Global levelKeys[] = {key_left, key_right, key_up, key_down, touch_t, key_p, key_enter};

}  // namespace

void add_touch_keys_of_player_two()
{
    const double width = display_get_gui_width(), height = display_get_gui_height();
    for (const TouchKey& touch : playerTwoKeys)
        touch.handle =
            virtual_key_add(touch.x < 0 ? width + touch.x : touch.x,
                            touch.y < 0 ? height + touch.y : touch.y, size, size, touch.key);
}

void delete_touch_keys_of_player_two()
{
    for (const TouchKey& touch : playerTwoKeys) virtual_key_delete(touch.handle);
}

void delete_touch_keys()
{
    for (const Global handle : levelKeys) virtual_key_delete(handle);
    if (playerMode == "twoPlayersOne") delete_touch_keys_of_player_two();
}
