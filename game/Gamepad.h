#pragma once
// The buttons and sticks of a pad, and what every object that reads one shares.

#include "game/Rules.h"

enum PadButton : int32_t {
    gp_face1 = 32769,
    gp_face2 = 32770,
    gp_face3 = 32771,
    gp_face4 = 32772,
    gp_shoulderl = 32773,
    gp_shoulderr = 32774,
    gp_select = 32777,
    gp_start = 32778,
    gp_padu = 32781,
    gp_padd = 32782,
    gp_padl = 32783,
    gp_padr = 32784,
};
enum PadAxis : int32_t {
    gp_axislh = 32785,  // of the left stick, -1 to 1: below 0 is left
    gp_axislv = 32786,  // below 0 is up
    gp_axisrh = 32787,  // of the right stick
    gp_axisrv = 32788,
};

// A stick within the dead zone reads 0.
inline void set_up_slot(double slot)
{
    gamepad_set_axis_deadzone(slot, 0.5);
    gamepad_set_button_threshold(slot, 0.1);
}

// In the create event of whatever reads the pad.
inline void set_up_gamepad(CInstance* self)
{
    self->var(ligaDetectaControle) = 1;
    self->var(pad) = os_type == desktop ? 0 : 1;
    set_up_slot(self->var(pad));
}

// The buttons that accept went down in this frame.
inline bool pad_accepts(CInstance* self)
{
    return gamepad_button_check_pressed(self->var(pad), gp_face1) ||
           gamepad_button_check_pressed(self->var(pad), gp_start);
}
