// Controllers through SDL: those that it can name button by button are pads, all
// others joysticks.

#include <algorithm>

#include "Host/Host_Pads.h"
#include "Host/Host_SDL.h"

namespace sdl {

namespace {

constexpr Uint32 kVibrationMillis = 1000;  // renewed with every frame

SDL_GameController* g_pads[kHostPads];
VxVector<SDL_Joystick*> g_joysticks;

struct ButtonRow {
    SDL_GameControllerButton button;
    uint16_t bit;
};

constexpr ButtonRow kButtons[] = {
    {SDL_CONTROLLER_BUTTON_DPAD_UP, 0x0001},
    {SDL_CONTROLLER_BUTTON_DPAD_DOWN, 0x0002},
    {SDL_CONTROLLER_BUTTON_DPAD_LEFT, 0x0004},
    {SDL_CONTROLLER_BUTTON_DPAD_RIGHT, 0x0008},
    {SDL_CONTROLLER_BUTTON_START, 0x0010},
    {SDL_CONTROLLER_BUTTON_BACK, 0x0020},
    {SDL_CONTROLLER_BUTTON_LEFTSTICK, 0x0040},
    {SDL_CONTROLLER_BUTTON_RIGHTSTICK, 0x0080},
    {SDL_CONTROLLER_BUTTON_LEFTSHOULDER, 0x0100},
    {SDL_CONTROLLER_BUTTON_RIGHTSHOULDER, 0x0200},
    {SDL_CONTROLLER_BUTTON_A, 0x1000},
    {SDL_CONTROLLER_BUTTON_B, 0x2000},
    {SDL_CONTROLLER_BUTTON_X, 0x4000},
    {SDL_CONTROLLER_BUTTON_Y, 0x8000},
};

bool Start()
{
    return SDL_InitSubSystem(SDL_INIT_GAMECONTROLLER) == 0;
}

void ClosePad(SDL_GameController** pad)
{
    SDL_GameControllerClose(*pad);
    *pad = nullptr;
}

void CloseJoysticks()
{
    for (SDL_Joystick* joystick : g_joysticks) SDL_JoystickClose(joystick);
    VxVector<SDL_Joystick*>().swap(g_joysticks);
}

void Stop()
{
    for (SDL_GameController*& pad : g_pads)
        if (pad) ClosePad(&pad);
    CloseJoysticks();
    SDL_QuitSubSystem(SDL_INIT_GAMECONTROLLER);
}

bool HasSlot(SDL_JoystickID id)
{
    for (SDL_GameController* pad : g_pads)
        if (pad && SDL_JoystickInstanceID(SDL_GameControllerGetJoystick(pad)) == id) return true;
    return false;
}

// True when the device has a slot now.
bool GiveSlot(int index)
{
    if (!SDL_IsGameController(index)) return false;
    if (HasSlot(SDL_JoystickGetDeviceInstanceID(index))) return true;
    for (SDL_GameController*& pad : g_pads) {
        if (pad) continue;
        pad = SDL_GameControllerOpen(index);
        return pad != nullptr;
    }
    return false;
}

void Rescan()
{
    SDL_JoystickUpdate();
    for (SDL_GameController*& pad : g_pads)
        if (pad && !SDL_GameControllerGetAttached(pad)) ClosePad(&pad);
    VxVector<SDL_Joystick*> joysticks;
    for (int i = 0; i < SDL_NumJoysticks(); ++i) {
        if (GiveSlot(i)) continue;
        if (SDL_Joystick* joystick = SDL_JoystickOpen(i)) joysticks.push_back(joystick);
    }
    // What stays was opened twice: SDL counts.
    CloseJoysticks();
    g_joysticks.swap(joysticks);
}

SDL_GameController* PadAt(int32_t slot)
{
    return slot >= 0 && slot < kHostPads ? g_pads[slot] : nullptr;
}

// SDL counts up as below 0.
int16_t Upward(Sint16 axis)
{
    return static_cast<int16_t>(~axis);
}

bool State(int32_t slot, HostPadState* state)
{
    SDL_GameController* pad = PadAt(slot);
    if (!pad || !SDL_GameControllerGetAttached(pad)) return false;
    const auto axis = [pad](SDL_GameControllerAxis which) {
        return SDL_GameControllerGetAxis(pad, which);
    };
    *state = HostPadState{};
    for (const ButtonRow& row : kButtons)
        if (SDL_GameControllerGetButton(pad, row.button))
            state->buttons = static_cast<uint16_t>(state->buttons | row.bit);
    state->leftTrigger = static_cast<uint8_t>(axis(SDL_CONTROLLER_AXIS_TRIGGERLEFT) >> 7);
    state->rightTrigger = static_cast<uint8_t>(axis(SDL_CONTROLLER_AXIS_TRIGGERRIGHT) >> 7);
    state->leftX = axis(SDL_CONTROLLER_AXIS_LEFTX);
    state->leftY = Upward(axis(SDL_CONTROLLER_AXIS_LEFTY));
    state->rightX = axis(SDL_CONTROLLER_AXIS_RIGHTX);
    state->rightY = Upward(axis(SDL_CONTROLLER_AXIS_RIGHTY));
    return true;
}

HostPadShape Shape(int32_t slot)
{
    SDL_GameController* pad = PadAt(slot);
    switch (pad ? SDL_JoystickGetType(SDL_GameControllerGetJoystick(pad))
                : SDL_JOYSTICK_TYPE_UNKNOWN) {
        case SDL_JOYSTICK_TYPE_WHEEL:
            return HostPadShape::Wheel;
        case SDL_JOYSTICK_TYPE_ARCADE_STICK:
            return HostPadShape::ArcadeStick;
        case SDL_JOYSTICK_TYPE_FLIGHT_STICK:
            return HostPadShape::FlightStick;
        case SDL_JOYSTICK_TYPE_DANCE_PAD:
            return HostPadShape::DancePad;
        case SDL_JOYSTICK_TYPE_GUITAR:
            return HostPadShape::Guitar;
        case SDL_JOYSTICK_TYPE_DRUM_KIT:
            return HostPadShape::DrumKit;
        default:
            return HostPadShape::Standard;
    }
}

void Vibrate(int32_t slot, uint16_t left, uint16_t right)
{
    if (SDL_GameController* pad = PadAt(slot))
        SDL_GameControllerRumble(pad, left, right, kVibrationMillis);
}

HostJoystick Joystick(int32_t index)
{
    SDL_Joystick* joystick = g_joysticks[static_cast<size_t>(index)];
    char guid[33];
    SDL_JoystickGetGUIDString(SDL_JoystickGetGUID(joystick), guid, sizeof guid);
    const char* name = SDL_JoystickName(joystick);
    return {SDL_JoystickInstanceID(joystick),
            guid,
            name ? name : "",
            std::min(SDL_JoystickNumAxes(joystick), kHostJoystickAxes),
            std::min(SDL_JoystickNumButtons(joystick), kHostJoystickButtons),
            std::min(SDL_JoystickNumHats(joystick), kHostJoystickHats)};
}

bool JoystickState(int32_t id, HostJoystickState* state)
{
    *state = HostJoystickState{};
    SDL_Joystick* joystick = SDL_JoystickFromInstanceID(id);
    if (!joystick || !SDL_JoystickGetAttached(joystick)) return false;
    for (int i = 0; i < std::min(SDL_JoystickNumAxes(joystick), kHostJoystickAxes); ++i)
        state->axes[i] = SDL_JoystickGetAxis(joystick, i) * 1000 / SDL_JOYSTICK_AXIS_MAX;
    for (int i = 0; i < std::min(SDL_JoystickNumButtons(joystick), kHostJoystickButtons); ++i)
        state->buttons[i] = SDL_JoystickGetButton(joystick, i);
    for (int i = 0; i < std::min(SDL_JoystickNumHats(joystick), kHostJoystickHats); ++i)
        state->hats[i] = SDL_JoystickGetHat(joystick, i);
    return true;
}

}  // namespace

const HostPadTable kPadTable = {
    .Start = Start,
    .Stop = Stop,
    .Rescan = Rescan,
    .State = State,
    .Shape = Shape,
    .Vibrate = Vibrate,
    .JoystickCount = [] { return static_cast<int32_t>(g_joysticks.size()); },
    .Joystick = Joystick,
    .JoystickState = JoystickState,
};

}  // namespace sdl
