// What a level shows over its picture: the mode of play in the upper left corner, and on
// touch platforms the buttons that press the keys.

#include "game/Screen.h"

namespace {

struct Control {
    Sprite sprite;
    Spot spot;  // pixels of the GUI
    InstanceVar picture;
};

constexpr Spot corner{0, 10, 0, 15};
constexpr Control modeOfPlay{sPlayerMode, corner, s_p}, touchSwitch{sControl, corner, s_control};

constexpr Control ofPlayerOne[] = {
    {sArrowLeft, {0, 10, 1, -150}, s_left}, {sArrowRight, {0, 150, 1, -150}, s_right},
    {sArrowUp, {0, 80, 1, -220}, s_up},     {sArrowDown, {0, 80, 1, -80}, s_down},
    {sRecomecar, {1, -75, 0, 95}, s_t},     {sPlayerMode, {0, 10, 0, 95}, s_p},
    {sUndo, {0.5, -165, 1, -80}, s_z},
};
constexpr Control ofPlayerTwo[] = {
    {sArrowLeft, {1, -220, 1, -150}, s_leftTwo}, {sArrowRight, {1, -80, 1, -150}, s_rightTwo},
    {sArrowUp, {1, -150, 1, -220}, s_upTwo},     {sArrowDown, {1, -150, 1, -80}, s_downTwo},
    {sUndo, {0.5, 95, 1, -80}, s_zDois},
};

void draw(CInstance* self, const Control& control)
{
    draw_sprite(self, control.sprite, self->var(control.picture), control.spot.x(),
                control.spot.y());
}

}  // namespace

void vxl_Object_oControl_Draw_Gui(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    if (gameOver) return;
    draw(self, on_touch_platform() ? touchSwitch : modeOfPlay);
    if (!touchControls) return;
    for (const Control& control : ofPlayerOne) draw(self, control);
    draw_sprite(self, sPause, 0, closeCorner.x(), closeCorner.y());
    if (!(playerMode == "twoPlayersOne")) return;
    for (const Control& control : ofPlayerTwo) draw(self, control);
}
