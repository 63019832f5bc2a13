// Built-ins of gamepads. No pad is connected yet: settings of an absent pad do
// nothing, its buttons are up and its sticks in the middle.

#include "Files/Function/Function_Later.h"

namespace {

BUILTIN(F_gamepad_absent)
{
    SetReal(result, 0);
}

constexpr BuiltinRow kRows[] = {
    {"gamepad_is_supported", NotThereYet, 0},
    {"gamepad_get_device_count", NotThereYet, 0},
    {"gamepad_is_connected", NotThereYet, 1},
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
