#pragma once
// The phases of a step, in the units of this folder, and the source of legacy
// joysticks.

#include <cstdint>

void Step_Alarms();
void Step_Timelines();
void Step_Motion();
void Step_OutsideAndBoundary();
void Step_Collisions();

// A stick as the system reports it: axes 0 to 65535 with 32767 at rest, button n in bit n.
struct JoystickState {
    uint32_t x, y, buttons;
};
inline constexpr int kJoysticks = 2;
// Fills the state of stick 0 or 1; false when there is none.
using JoystickReader = bool (*)(int32_t stick, JoystickState* state);
void Joystick_SetReader(JoystickReader reader);  // null for none
