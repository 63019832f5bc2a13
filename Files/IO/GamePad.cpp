#include "Files/IO/GamePad.h"

#include <algorithm>
#include <cmath>
#include <cstring>

#include "Files/Base/Archive_Main.h"
#include "Files/Base/Console.h"
#include "Files/IO/GamePad_Map.h"
#include "Files/Run/Run_State.h"
#include "Files/Run/Services.h"
#include "Files/Run/Step.h"
#include "Host/Host_Pads.h"

namespace {

constexpr int32_t kOtherPads = 8;  // slots 4 to 11
constexpr uint64_t kPadClass = 4;  // of the game's classes of functions
constexpr int32_t kLeftTrigger = 10, kRightTrigger = 11;
constexpr float kTriggerUnit = 1.0F / 256, kAxisUnit = 1.0F / 32768, kJoystickUnit = 1.0F / 1000;
constexpr float kFullVibration = 65535;

VxVector<SWGamePad> g_pads;
bool g_started;
GamePadNews g_news;

void Tell(const char* eventType, const SWGamePad& pad)
{
    if (g_news) g_news(eventType, static_cast<int32_t>(&pad - g_pads.data()));
}

void SetConnected(SWGamePad* pad, bool connected)
{
    if (!connected) {
        memset(pad->buttonPrev, 0, sizeof pad->buttonPrev);
        memset(pad->buttonValue, 0, sizeof pad->buttonValue);
        memset(pad->axisPrev, 0, sizeof pad->axisPrev);
        memset(pad->axisValue, 0, sizeof pad->axisValue);
        pad->description.clear();
        pad->joystick = -1;
    }
    if (pad->connected == connected) return;
    pad->connected = connected;
    Tell(connected ? "gamepad discovered" : "gamepad lost", *pad);
}

// The frame's values of a pad, before they are stored.
struct Values {
    float buttons[kPadButtons] = {}, axes[kPadAxes] = {};
};

void Store(SWGamePad* pad, const Values& values)
{
    memcpy(pad->buttonPrev, pad->buttonValue, sizeof pad->buttonPrev);
    memcpy(pad->axisPrev, pad->axisValue, sizeof pad->axisPrev);
    memcpy(pad->buttonValue, values.buttons, sizeof values.buttons);
    memcpy(pad->axisValue, values.axes, sizeof values.axes);
}

// ---- pads of the common shape

const char* ShapeName(HostPadShape shape)
{
    switch (shape) {
        case HostPadShape::Wheel:
            return "WHEEL";
        case HostPadShape::ArcadeStick:
            return "ARCADE STICK";
        case HostPadShape::FlightStick:
            return "FLIGHT STICK";
        case HostPadShape::DancePad:
            return "DANCE PAD";
        case HostPadShape::Guitar:
            return "GUITAR";
        case HostPadShape::DrumKit:
            return "DRUM KIT";
        default:
            return "STANDARD GAMEPAD";
    }
}

void RescanStandard(int32_t slot)
{
    SWGamePad* pad = &g_pads[static_cast<size_t>(slot)];
    HostPadState state;
    const bool there = g_HostPads.State(slot, &state);
    if (there && !pad->connected)
        pad->description =
            VxString("Xbox 360 Controller (XInput ") + ShapeName(g_HostPads.Shape(slot)) + ")";
    SetConnected(pad, there);
}

void PollStandard(int32_t slot)
{
    SWGamePad* pad = &g_pads[static_cast<size_t>(slot)];
    if (!pad->connected) return;
    HostPadState state;
    if (!g_HostPads.State(slot, &state)) {
        SetConnected(pad, false);
        return;
    }
    Values values;
    for (int32_t i = 0; i < kStandardButtons; ++i)
        values.buttons[i] = static_cast<float>(state.buttons >> i & 1);
    values.buttons[kLeftTrigger] = state.leftTrigger * kTriggerUnit;
    values.buttons[kRightTrigger] = state.rightTrigger * kTriggerUnit;
    const int16_t axes[] = {state.leftX, state.leftY, state.rightX, state.rightY};
    for (int32_t i = 0; i < kStandardAxes; ++i) values.axes[i] = axes[i] * kAxisUnit;
    Store(pad, values);
    g_HostPads.Vibrate(slot, static_cast<uint16_t>(pad->vibrationLeft * kFullVibration),
                       static_cast<uint16_t>(pad->vibrationRight * kFullVibration));
}

// ---- other controllers

float TargetValue(const PadTarget& target, const HostJoystickState& state)
{
    const int32_t i = target.index;
    switch (target.kind) {
        case PadTargetKind::Axis:
            return i < kHostJoystickAxes ? static_cast<float>(state.axes[i]) * kJoystickUnit : 0;
        case PadTargetKind::Button:
            return i < kHostJoystickButtons ? state.buttons[i] : 0;
        case PadTargetKind::Hat:
            return i < kHostJoystickHats && (state.hats[i] & target.mask) != 0 ? 1 : 0;
        case PadTargetKind::None:
            break;
    }
    return 0;
}

void FillMapped(const PadMapping& mapping, const HostJoystickState& state, Values* values)
{
    for (int32_t i = 0; i < kFirstAxisTarget; ++i)
        values->buttons[i] = TargetValue(mapping.targets[i], state);
    for (int32_t i = kFirstAxisTarget; i < kBackTarget; ++i)
        values->axes[i - kFirstAxisTarget] = TargetValue(mapping.targets[i], state);
    values->buttons[kFirstAxisTarget] = TargetValue(mapping.targets[kBackTarget], state);
}

// The device's own axes and buttons; each hat gives four buttons more.
void FillPlain(const SWGamePad& pad, int32_t ownButtons, const HostJoystickState& state,
               Values* values)
{
    for (int32_t i = 0; i < pad.axisCount; ++i)
        values->axes[i] = static_cast<float>(state.axes[i]) * kJoystickUnit;
    for (int32_t i = 0; i < ownButtons; ++i) values->buttons[i] = state.buttons[i];
    for (int32_t i = ownButtons; i < pad.buttonCount; ++i) {
        const int32_t bit = i - ownButtons;
        values->buttons[i] = static_cast<float>(state.hats[bit / 4] >> bit % 4 & 1);
    }
}

const HostJoystick* Find(const VxVector<HostJoystick>& all, int32_t id)
{
    for (const HostJoystick& joystick : all)
        if (joystick.id == id) return &joystick;
    return nullptr;
}

VxVector<HostJoystick> g_joysticks;  // of the last rescan

void Welcome(const HostJoystick& joystick)
{
    for (size_t slot = kStandardPads; slot < g_pads.size(); ++slot) {
        SWGamePad& pad = g_pads[slot];
        if (pad.connected) continue;
        const PadMapping* mapping = PadMap_Find(joystick.guid);
        pad.joystick = joystick.id;
        pad.buttonCount = mapping ? kFirstAxisTarget + 1 : joystick.buttons + 4 * joystick.hats;
        pad.axisCount = mapping ? kStandardAxes : joystick.axes;
        pad.description = mapping ? mapping->description : joystick.name;
        SetConnected(&pad, true);
        return;
    }
}

void RescanOthers()
{
    g_joysticks.clear();
    for (int32_t i = 0; i < g_HostPads.JoystickCount(); ++i)
        g_joysticks.push_back(g_HostPads.Joystick(i));
    for (size_t slot = kStandardPads; slot < g_pads.size(); ++slot)
        if (g_pads[slot].connected && !Find(g_joysticks, g_pads[slot].joystick))
            SetConnected(&g_pads[slot], false);
    for (const HostJoystick& joystick : g_joysticks) {
        const bool known = std::any_of(g_pads.begin(), g_pads.end(), [&](const SWGamePad& pad) {
            return pad.joystick == joystick.id;
        });
        if (!known) Welcome(joystick);
    }
}

// A device that does not answer reads as at rest until a rescan misses it.
void PollOther(SWGamePad* pad)
{
    const HostJoystick* joystick = Find(g_joysticks, pad->joystick);
    if (!pad->connected || !joystick) return;
    HostJoystickState state;
    if (!g_HostPads.JoystickState(pad->joystick, &state)) state = HostJoystickState{};
    Values values;
    const PadMapping* mapping = PadMap_Find(joystick->guid);
    if (mapping)
        FillMapped(*mapping, state, &values);
    else
        FillPlain(*pad, joystick->buttons, state, &values);
    Store(pad, values);
}

// ---- legacy joysticks: the first two devices

constexpr float kLegacyHalf = 32767.5F;

bool ReadLegacy(int32_t stick, JoystickState* state)
{
    for (size_t slot = 0; slot < g_pads.size(); ++slot) {
        const SWGamePad& pad = g_pads[slot];
        if (!pad.connected || stick-- > 0) continue;
        const float down = slot < kStandardPads ? -pad.axisValue[1] : pad.axisValue[1];
        const auto legacy = [](float axis) {
            return static_cast<uint32_t>((std::clamp(axis, -1.0F, 1.0F) + 1) * kLegacyHalf);
        };
        *state = {legacy(pad.axisValue[0]), legacy(down), 0};
        const uint32_t first = slot < kStandardPads ? 12 : 0;  // the faces come first
        for (uint32_t i = 0; i < 8; ++i)
            if (pad.buttonValue[(first + i) % kStandardButtons] >= pad.buttonThreshold)
                state->buttons |= 1U << i;
        return true;
    }
    return false;
}

}  // namespace

void GamePad_Init()
{
    g_started = g_HostPads.Start();
    const int32_t count = kStandardPads + (g_Switches.noDirectInput ? 0 : kOtherPads);
    g_DebugConsole->Output("Attempting to set gamepadcount to %d\n", count);
    g_pads.assign(static_cast<size_t>(count), SWGamePad());
    for (size_t slot = 0; slot < kStandardPads; ++slot) {
        g_pads[slot].buttonCount = kStandardButtons;
        g_pads[slot].axisCount = kStandardAxes;
    }
    Service_Hook(ServicePlace::Gamepads, GamePad_AnnounceAll);
    Joystick_SetReader(ReadLegacy);
    GamePad_Rescan();
}

void GamePad_Quit()
{
    if (g_pads.empty()) return;
    Service_Unhook(ServicePlace::Gamepads, GamePad_AnnounceAll);
    Joystick_SetReader(nullptr);
    if (g_started) g_HostPads.Stop();
    g_started = false;
    VxVector<SWGamePad>().swap(g_pads);
    VxVector<HostJoystick>().swap(g_joysticks);
    PadMap_Clear();
}

void GamePad_Rescan()
{
    if (!g_started || g_pads.empty()) return;
    g_HostPads.Rescan();
    for (int32_t slot = 0; slot < kStandardPads; ++slot) RescanStandard(slot);
    RescanOthers();
}

void GamePad_Poll()
{
    if (!g_started) return;
    for (size_t slot = kStandardPads; slot < g_pads.size(); ++slot) PollOther(&g_pads[slot]);
    if ((g_GameHeader.functionClasses & kPadClass) == 0) return;
    for (int32_t slot = 0; slot < kStandardPads; ++slot) PollStandard(slot);
}

void GamePad_AnnounceAll()
{
    for (const SWGamePad& pad : g_pads)
        if (pad.connected) Tell("gamepad discovered", pad);
}

bool GamePad_Supported()
{
    return g_started;
}
int32_t GamePad_Count()
{
    return static_cast<int32_t>(g_pads.size());
}
SWGamePad* GamePad_At(int32_t slot)
{
    return slot >= 0 && slot < GamePad_Count() ? &g_pads[static_cast<size_t>(slot)] : nullptr;
}
void GamePad_SetNews(GamePadNews news)
{
    g_news = news;
}
