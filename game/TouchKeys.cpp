#include "game/TouchKeys.h"

#include "game/Figure.h"

namespace {

constexpr double size = 70;  // pixels of the GUI, both ways

struct TouchKey {
    Global handle;
    double x, y;  // GUI pixels; negative from the right or lower side
    Key key;
};

constexpr TouchKey levelKeys[] = {
    {key_left, 10, -150, keyA},    {key_right, 150, -150, keyD}, {key_up, 80, -220, keyW},
    {key_down, 80, -80, keyS},     {touch_t, -75, 95, keyT},     {key_p, 10, 95, keyP},
    {key_enter, -75, 5, keyEnter},
};
constexpr TouchKey playerTwoKeys[] = {
    {key_leftTwo, -220, -150, keyLeft},
    {key_rightTwo, -80, -150, keyRight},
    {key_upTwo, -150, -220, keyUp},
    {key_downTwo, -150, -80, keyDown},
};

// In the upper left corner of every level, with touch controls or without.
constexpr TouchKey touchSwitch = {key_control, 10, 15, keyH};
constexpr TouchKey modeButton = {key_p, 10, 15, keyP};

// GUI pixels from the left or upper side.
double from_side(double place, double length)
{
    return place < 0 ? length + place : place;
}

void add(const TouchKey& touch)
{
    touch.handle =
        virtual_key_add(from_side(touch.x, display_get_gui_width()),
                        from_side(touch.y, display_get_gui_height()), size, size, touch.key);
}

// Some of them may not be there.
void remove(const TouchKey& touch)
{
    if (touch.handle == 0) return;
    virtual_key_delete(touch.handle);
    touch.handle = 0;
}

}  // namespace

void add_touch_keys_of_player_two()
{
    for (const TouchKey& touch : playerTwoKeys) add(touch);
}

void delete_touch_keys_of_player_two()
{
    for (const TouchKey& touch : playerTwoKeys) remove(touch);
}

void add_touch_keys()
{
    for (const TouchKey& touch : levelKeys) add(touch);
    if (playerMode == "twoPlayersOne") add_touch_keys_of_player_two();
}

void delete_touch_keys()
{
    for (const TouchKey& touch : levelKeys) remove(touch);
    delete_touch_keys_of_player_two();
}

void let_touch_keys_rest()
{
    delete_touch_keys();
    remove(touchSwitch);
}

void bring_touch_keys_back()
{
    add(touchSwitch);
    add_touch_keys();
}

void vxl_Object_oControl_Create(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    display_set_gui_size(view_wview[0], view_hview[0]);
    // Those of the room before went with it.
    for (const TouchKey& touch : levelKeys) touch.handle = 0;
    for (const TouchKey& touch : playerTwoKeys) touch.handle = 0;
    add(on_touch_platform() ? touchSwitch : modeButton);
    if (touchControls) add_touch_keys();
    for (const Figure& figure : {playerOne, playerTwo}) {
        for (const InstanceVar key : figure.shownKeys) self->var(key) = 0;
        self->var(figure.shownUndo) = 0;
    }
    for (const InstanceVar shown : {s_control, s_t, s_p, s_enter}) self->var(shown) = 0;
}

// The player of a touch screen turns its buttons on or off.
void vxl_Object_oPlayerArrows_KeyPress_H(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    if (!on_touch_platform()) return;
    touchControls = touchControls ? 0 : 1;
    if (touchControls)
        add_touch_keys();
    else
        delete_touch_keys();
    ini_open("SaveGame.sav");
    ini_write_string("preferencias", "touch", touchControls ? "true" : "false");
    ini_close();
}
