// The passes of keyboard, joystick and mouse events.

#include "Files/IO/IO.h"
#include "Files/Object/Collision.h"
#include "Files/Run/Run_State.h"
#include "Files/Run/Step.h"
#include "Files/Run/Walk.h"

namespace {

// ---- mouse subtypes
constexpr int32_t kNoButton = 3;
constexpr int32_t kEnter = 10, kLeave = 11;
constexpr int32_t kAnyPressed = 12, kAnyReleased = 13;
constexpr int32_t kFirstJoystick = 16, kLastJoystick = 43;
constexpr int32_t kWheelUp = 60, kWheelDown = 61;

constexpr int32_t kFirstKey = 8;  // lower codes are mouse buttons and "any" and "no"
constexpr int32_t kNoKey = 0, kAnyKey = 1;

JoystickReader s_JoystickReader = nullptr;

bool UnderMouse(CInstance* instance)
{
    return CollisionPoint(instance, static_cast<float>(g_MouseRoomX),
                          static_cast<float>(g_MouseRoomY), true);
}

// The newest instance when the pass of the mouse or of the joysticks began: what one of
// its events makes gets no event of that same pass. (Each key is a pass of its own.)
int32_t s_Newest;

void BeginPass()
{
    s_Newest = lastInstanceId;
}

template <class Test>
void RunWhere(int32_t subtype, Test test)
{
    Walk_Responders(Walk_Begin(), EVENT_MOUSE, subtype, [=](CInstance* instance) {
        if (instance->id <= s_Newest && test(instance))
            Perform_Event(instance, instance, EVENT_MOUSE, subtype);
    });
}

void RunAnywhere(int32_t subtype)
{
    RunWhere(subtype, [](CInstance*) { return true; });
}

void RunOver(int32_t subtype)
{
    RunWhere(subtype, UnderMouse);
}

void RunHeldButtons()
{
    bool any = false;
    for (int32_t i = 0; i < kButtons; ++i) {
        if (!g_IOFrame.buttonDown[0][i] && !g_IOFrame.buttonPressed[0][i]) continue;
        any = true;
        RunOver(i);
        RunAnywhere(i + 50);
    }
    if (!any) RunOver(kNoButton);
}

void RunPressedAndReleasedButtons()
{
    for (int32_t i = 0; i < kButtons; ++i) {
        if (!g_IOFrame.buttonPressed[0][i]) continue;
        RunOver(i + 4);
        RunAnywhere(kAnyPressed);
        RunAnywhere(i + 53);
    }
    for (int32_t i = 0; i < kButtons; ++i) {
        if (!g_IOFrame.buttonReleased[0][i]) continue;
        RunOver(i + 7);
        RunAnywhere(kAnyReleased);
        RunAnywhere(i + 56);
    }
}

// Brings mouseState up to date, once for an instance that is in both tables.
void UpdateMouseState(int32_t subtype, uint64_t snapshot)
{
    Walk_Responders(snapshot, EVENT_MOUSE, subtype, [snapshot](CInstance* instance) {
        if (instance->createCounter >= snapshot || instance->id > s_Newest) return;
        instance->createCounter = snapshot;
        const int32_t now = UnderMouse(instance) ? MOUSE_INSIDE : MOUSE_OUTSIDE;
        const int32_t changed = now ^ (instance->mouseState & (MOUSE_INSIDE | MOUSE_OUTSIDE));
        instance->mouseState = changed * 4 | now;
    });
}

void RunOnState(int32_t subtype, int32_t state)
{
    RunWhere(subtype,
             [state](CInstance* instance) { return (instance->mouseState & state) == state; });
}

void RunEnterAndLeave()
{
    const uint64_t snapshot = Walk_Begin();
    UpdateMouseState(kEnter, snapshot);
    UpdateMouseState(kLeave, snapshot);
    RunOnState(kEnter, MOUSE_INSIDE | MOUSE_ENTERED);
    RunOnState(kLeave, MOUSE_OUTSIDE | MOUSE_LEFT);
}

// ---- joysticks
constexpr uint32_t kAxisLow = 20000, kAxisHigh = 44000;  // of 0 to 65535
constexpr int32_t kJoystickButtons = 8;

bool AnyoneMindsJoysticks()
{
    for (int32_t subtype = kFirstJoystick; subtype <= kLastJoystick; ++subtype)
        if (g_EventObjects[EVENT_MOUSE][subtype].count > 0) return true;
    return false;
}

void RunJoystick(int32_t first, const JoystickState& state)
{
    if (state.x < kAxisLow) RunAnywhere(first);
    if (state.x > kAxisHigh) RunAnywhere(first + 1);
    if (state.y < kAxisLow) RunAnywhere(first + 2);
    if (state.y > kAxisHigh) RunAnywhere(first + 3);
    for (int32_t i = 0; i < kJoystickButtons; ++i)
        if ((state.buttons >> i & 1U) != 0) RunAnywhere(first + 5 + i);
}

}  // namespace

void Joystick_SetReader(JoystickReader reader)
{
    s_JoystickReader = reader;
}

void IO_KeyboardEvents()
{
    bool held = false, pressed = false, released = false;
    for (int32_t key = kFirstKey; key < kKeys; ++key) {
        // An event may clear a key; what is left of the frame then sees it as up.
        if (g_IOFrame.keyDown[key] || g_IOFrame.keyPressed[key]) {
            held = true;
            Walk_RunEvent(EVENT_KEYBOARD, key);
        }
        if (g_IOFrame.keyPressed[key]) {
            pressed = true;
            Walk_RunEvent(EVENT_KEYPRESS, key);
        }
        if (g_IOFrame.keyReleased[key]) {
            released = true;
            Walk_RunEvent(EVENT_KEYRELEASE, key);
        }
    }
    Walk_RunEvent(EVENT_KEYBOARD, held ? kAnyKey : kNoKey);
    Walk_RunEvent(EVENT_KEYPRESS, pressed ? kAnyKey : kNoKey);
    Walk_RunEvent(EVENT_KEYRELEASE, released ? kAnyKey : kNoKey);
}

void IO_JoystickEvents()
{
    if (!s_JoystickReader || g_Switches.noDirectInput || !AnyoneMindsJoysticks()) return;
    BeginPass();
    constexpr int32_t kFirst[kJoysticks] = {16, 31};
    for (int32_t stick = 0; stick < kJoysticks; ++stick) {
        JoystickState state{};
        if (s_JoystickReader(stick, &state)) RunJoystick(kFirst[stick], state);
    }
}

void IO_MouseEvents()
{
    BeginPass();
    g_MousePreviousX = g_MouseRoomX;
    g_MousePreviousY = g_MouseRoomY;
    IO_MouseRoomPosition(&g_MouseRoomX, &g_MouseRoomY);
    RunHeldButtons();
    RunPressedAndReleasedButtons();
    RunEnterAndLeave();
    if (g_IOFrame.wheelUp[0]) RunAnywhere(kWheelUp);
    if (g_IOFrame.wheelDown[0]) RunAnywhere(kWheelDown);
}
