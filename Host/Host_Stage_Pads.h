#pragma once
// The stage's controllers, as a test plugs and presses them.

#include "Host/Host_Pads.h"

extern const HostPadTable kStagePads;
void Stage_ResetPads();  // none is plugged in
void Stage_MissPads();   // until the reset: a system that knows no pads

// A pad that is plugged in tells of itself; one that is pulled out just stops to answer.
void Stage_PlugPad(int32_t slot, bool in, HostPadShape shape = HostPadShape::Standard);
HostPadState& Stage_Pad(int32_t slot);
uint32_t Stage_PadVibration(int32_t slot);  // left in the upper half

// The state stays valid until another one is plugged or pulled.
HostJoystickState* Stage_PlugJoystick(const HostJoystick& device);
void Stage_PullJoystick(int32_t id);
