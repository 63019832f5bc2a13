// Gamepads while no pad is ever connected: the table is empty, so every index lies
// outside it and each function gives 0 and does nothing.

#include "Files/Function/Function_Registry.h"

namespace {

BUILTIN(F_gamepad_absent)
{
    SetReal(result, 0);
}

constexpr BuiltinRow kRows[] = {
    {"gamepad_is_supported", F_gamepad_absent, 0},
    {"gamepad_get_device_count", F_gamepad_absent, 0},
    {"gamepad_is_connected", F_gamepad_absent, 1},
    {"gamepad_set_button_threshold", F_gamepad_absent, 2},
    {"gamepad_set_axis_deadzone", F_gamepad_absent, 2},
    {"gamepad_button_check", F_gamepad_absent, 2},
    {"gamepad_button_check_pressed", F_gamepad_absent, 2},
    {"gamepad_axis_value", F_gamepad_absent, 2},
};

}  // namespace

void Function_Gamepad_Register()
{
    Function_AddRows(kRows);
}
