#pragma once
// Game controllers as a table of operations, filled by the same backend as g_Host. The
// first four pads of the common shape have slots; all others are plain joysticks.

#include <cstdint>

#include "Platform/MemoryManager.h"

inline constexpr int32_t kHostPads = 4;

// The shape of a pad, in the numbers of its description.
enum class HostPadShape : int32_t {
    Standard = 1,
    Wheel = 2,
    ArcadeStick = 3,
    FlightStick = 4,
    DancePad = 5,
    Guitar = 6,
    DrumKit = 8,
};

struct HostPadState {
    // Bits: 0 up, 1 down, 2 left, 3 right, 4 start, 5 back, 6 and 7 the sticks, 8 and 9
    // the shoulders, 12 to 15 the faces A, B, X, Y.
    uint16_t buttons = 0;
    uint8_t leftTrigger = 0, rightTrigger = 0;
    int16_t leftX = 0, leftY = 0, rightX = 0, rightY = 0;  // up is above 0
};

inline constexpr int32_t kHostJoystickAxes = 8, kHostJoystickHats = 4, kHostJoystickButtons = 128;

struct HostJoystick {
    int32_t id;     // of this connection; never used again
    VxString guid;  // 32 lower-case hexadecimal digits
    VxString name;
    int32_t axes, buttons, hats;
};

struct HostJoystickState {
    int32_t axes[kHostJoystickAxes] = {};        // -1000 to 1000
    uint8_t buttons[kHostJoystickButtons] = {};  // 0 or 1
    uint8_t hats[kHostJoystickHats] = {};        // bits: 0 up, 1 right, 2 down, 3 left
};

struct HostPadTable {
    bool (*Start)();  // false where the system knows no pads
    void (*Stop)();
    void (*Rescan)();  // what came finds a slot now; what went loses it
    // False when no pad has the slot, or when it was pulled out since.
    bool (*State)(int32_t slot, HostPadState* state);
    HostPadShape (*Shape)(int32_t slot);
    void (*Vibrate)(int32_t slot, uint16_t left, uint16_t right);
    // The joysticks of the last Rescan, without the pads that have slots.
    int32_t (*JoystickCount)();
    HostJoystick (*Joystick)(int32_t index);
    bool (*JoystickState)(int32_t id, HostJoystickState* state);  // false: pulled out
};

extern HostPadTable g_HostPads;
