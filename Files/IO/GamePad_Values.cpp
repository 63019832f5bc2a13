// Buttons and axes of a pad by a script's code.

#include <cmath>

#include "Files/IO/GamePad.h"

namespace {

constexpr int32_t kFirstButton = 0x8001, kLastButton = 0x8010;
constexpr int32_t kFirstAxis = 0x8011, kLastAxis = 0x8014;
constexpr int32_t kIndexBits = 0x0FFF;

// Where the standard pads keep the buttons, in the order of the constants: faces,
// shoulders, triggers, select, start, sticks, cross.
constexpr int32_t kStandardIndex[] = {12, 13, 14, 15, 8, 9, 10, 11, 5, 4, 6, 7, 0, 1, 2, 3};
// Up is below 0 for scripts.
constexpr int32_t kStandardAxis[] = {0, 1 | PAD_CONSTANT, 2, 3 | PAD_CONSTANT};

int32_t ButtonCode(int32_t slot, int32_t code)
{
    if (code < kFirstButton || code > kLastButton) return code & ~PAD_IGNORED;
    const int32_t place = code - kFirstButton;
    return slot < kStandardPads ? kStandardIndex[place] : place;
}

int32_t AxisCode(int32_t slot, int32_t code)
{
    if (code < kFirstAxis || code > kLastAxis) return code & ~PAD_IGNORED;
    const int32_t place = code - kFirstAxis;
    return slot < kStandardPads ? kStandardAxis[place] : place;
}

// Half of an axis, as a button's value.
float HalfAxis(const SWGamePad& pad, const float* axes, int32_t code)
{
    const int32_t axis = code & kIndexBits;
    if (axis >= pad.axisCount) return 0;
    const float value = axes[axis];
    if ((code & PAD_NEGATIVE) != 0) return value < -pad.axisDeadzone ? std::fabs(value) : 0;
    return value > -pad.axisDeadzone ? value : 0;
}

struct ButtonNow {
    bool known;
    float value, before, threshold;
};

ButtonNow Button(int32_t slot, int32_t code)
{
    const SWGamePad* pad = GamePad_At(slot);
    if (!pad || code < 0) return {false, 0, 0, 0};
    const int32_t at = ButtonCode(slot, code);
    if ((at & PAD_CROSS) != 0)
        return {true, HalfAxis(*pad, pad->axisValue, at), HalfAxis(*pad, pad->axisPrev, at),
                pad->buttonThreshold};
    if (at >= pad->buttonCount) return {false, 0, 0, 0};
    return {true, pad->buttonValue[at], pad->buttonPrev[at], pad->buttonThreshold};
}

}  // namespace

bool GamePad_ButtonDown(int32_t slot, int32_t code)
{
    const ButtonNow button = Button(slot, code);
    return button.known && button.value >= button.threshold;
}

bool GamePad_ButtonPressed(int32_t slot, int32_t code)
{
    const ButtonNow button = Button(slot, code);
    return button.known && button.value >= button.threshold && button.before < button.threshold;
}

bool GamePad_ButtonReleased(int32_t slot, int32_t code)
{
    const ButtonNow button = Button(slot, code);
    return button.known && button.value < button.threshold && button.before >= button.threshold;
}

float GamePad_ButtonValue(int32_t slot, int32_t code)
{
    return Button(slot, code).value;
}

float GamePad_AxisValue(int32_t slot, int32_t code)
{
    const SWGamePad* pad = GamePad_At(slot);
    if (!pad || code < 0) return 0;
    const int32_t at = AxisCode(slot, code);
    const int32_t index = at & kIndexBits;
    const bool fromButton = (at & PAD_CROSS) != 0;
    if (index >= (fromButton ? pad->buttonCount : pad->axisCount)) return 0;
    float value = fromButton ? pad->buttonValue[index] : pad->axisValue[index];
    if ((at & PAD_NEGATIVE) != 0) value = fromButton ? -value : std::fmin(value, 0.0F);
    const float zone = pad->axisDeadzone;
    if (zone > 0) {
        const float sign = value >= 0 ? 1.0F : -1.0F;
        if (std::fabs(value) < zone)
            value = 0;
        else
            value = zone >= 1 ? sign : sign * (std::fabs(value) - zone) / (1 - zone);
    }
    return (at & PAD_CONSTANT) != 0 ? 0 - value : value;
}
