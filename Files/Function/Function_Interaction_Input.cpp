// Keyboard and mouse built-ins.

#include "Files/Function/Function_Registry.h"
#include "Files/IO/IO.h"
#include "Files/Run/Run_State.h"
#include "Host/Host.h"

void Function_Interaction_RegisterInput();

namespace {

constexpr int32_t kNumLock = 144;
constexpr int32_t kWaitMillis = 5;  // of keyboard_wait and mouse_wait between two looks

bool ButtonCheck(const uint8_t (&buttons)[kButtons], int32_t button)
{
    const bool any = buttons[0] || buttons[1] || buttons[2];
    if (button == -1) return any;
    if (button == 0) return !any;
    return button >= 1 && button <= kButtons && buttons[button - 1];
}

void ClearButton(int32_t index)
{
    g_IOFrame.buttonDown[0][index] = g_IOFrame.buttonPressed[0][index] =
        g_IOFrame.buttonReleased[0][index] = 0;
    g_IOMessage.buttonDownMsg[index] = g_IOMessage.buttonPressedMsg[index] =
        g_IOMessage.buttonReleasedMsg[index] = 0;
}

// Blocks, pumping messages, until one more press is counted or the program ends. The
// latches would not do: one may be left from before, and a quick click leaves none.
void WaitFor(const uint32_t& presses)
{
    for (const uint32_t before = presses;;) {
        Process_Messages();
        if (g_QuitSeen || presses != before) return;
        g_Host.clock.Block(kWaitMillis);
    }
}

// ---- keyboard

BUILTIN(keyboard_check)
{
    SetBool(result, IO_KeyCheck(VXGetInt32(args, 0)));
}
BUILTIN(keyboard_check_pressed)
{
    SetBool(result, IO_KeyPressed(VXGetInt32(args, 0)));
}
BUILTIN(keyboard_check_released)
{
    SetBool(result, IO_KeyReleased(VXGetInt32(args, 0)));
}
BUILTIN(keyboard_check_direct)
{
    SetBool(result, g_Host.window.KeyState(VXGetInt32(args, 0)));
}
BUILTIN(keyboard_clear)
{
    IO_KeyClear(VXGetInt32(args, 0));
}
BUILTIN(keyboard_key_press)
{
    g_Host.window.SendKey(VXGetInt32(args, 0), true);
}
BUILTIN(keyboard_key_release)
{
    g_Host.window.SendKey(VXGetInt32(args, 0), false);
}
BUILTIN(keyboard_get_numlock)
{
    SetBool(result, g_Host.window.KeyToggled(kNumLock));
}

BUILTIN(keyboard_set_numlock)
{
    if (VXGetBool(args, 0) == g_Host.window.KeyToggled(kNumLock)) return;
    g_Host.window.SendKey(kNumLock, true);
    g_Host.window.SendKey(kNumLock, false);
}

BUILTIN(keyboard_set_map)
{
    const int32_t from = VXGetInt32(args, 0);
    if (from >= 0 && from < kKeys) keyMap[from] = VXGetInt32(args, 1);
}

BUILTIN(keyboard_get_map)
{
    const int32_t key = VXGetInt32(args, 0);
    SetReal(result, key >= 0 && key < kKeys ? keyMap[key] : key);
}

BUILTIN(keyboard_unset_map)
{
    for (int32_t key = 0; key < kKeys; ++key) keyMap[key] = key;
}

BUILTIN(keyboard_wait)
{
    WaitFor(g_KeyPresses);
}

// ---- mouse

BUILTIN(mouse_check_button)
{
    SetBool(result, ButtonCheck(g_IOFrame.buttonDown[0], VXGetInt32(args, 0)));
}

BUILTIN(mouse_check_button_pressed)
{
    SetBool(result, ButtonCheck(g_IOFrame.buttonPressed[0], VXGetInt32(args, 0)));
}

BUILTIN(mouse_check_button_released)
{
    SetBool(result, ButtonCheck(g_IOFrame.buttonReleased[0], VXGetInt32(args, 0)));
}

BUILTIN(mouse_wheel_up)
{
    SetBool(result, g_IOFrame.wheelUp[0]);
}
BUILTIN(mouse_wheel_down)
{
    SetBool(result, g_IOFrame.wheelDown[0]);
}

BUILTIN(mouse_clear)
{
    const int32_t button = VXGetInt32(args, 0);
    Process_Messages();
    for (int32_t index = 0; index < kButtons; ++index)
        if (button == -1 || button == index + 1) ClearButton(index);
}

BUILTIN(mouse_wait)
{
    WaitFor(g_ButtonPresses);
}

BUILTIN(io_clear)
{
    Process_Messages();
    IO_Clear();
}

BUILTIN(io_handle)
{
    Process_Messages();
}

constexpr BuiltinRow kRows[] = {
    {"keyboard_check", keyboard_check, 1},
    {"keyboard_check_pressed", keyboard_check_pressed, 1},
    {"keyboard_check_released", keyboard_check_released, 1},
    {"keyboard_check_direct", keyboard_check_direct, 1},
    {"keyboard_clear", keyboard_clear, 1},
    {"keyboard_key_press", keyboard_key_press, 1},
    {"keyboard_key_release", keyboard_key_release, 1},
    {"keyboard_get_numlock", keyboard_get_numlock, 0},
    {"keyboard_set_numlock", keyboard_set_numlock, 1},
    {"keyboard_set_map", keyboard_set_map, 2},
    {"keyboard_get_map", keyboard_get_map, 1},
    {"keyboard_unset_map", keyboard_unset_map, 0},
    {"keyboard_wait", keyboard_wait, 0},
    {"mouse_check_button", mouse_check_button, 1},
    {"mouse_check_button_pressed", mouse_check_button_pressed, 1},
    {"mouse_check_button_released", mouse_check_button_released, 1},
    {"mouse_wheel_up", mouse_wheel_up, 0},
    {"mouse_wheel_down", mouse_wheel_down, 0},
    {"mouse_clear", mouse_clear, 1},
    {"mouse_wait", mouse_wait, 0},
    {"io_clear", io_clear, 0},
    {"io_handle", io_handle, 0},
};

}  // namespace

void Function_Interaction_RegisterInput()
{
    Function_AddRows(kRows);
}
