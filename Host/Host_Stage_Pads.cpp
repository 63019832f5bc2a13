// Controllers of the stage: what a test plugs in and presses.

#include "Host/Host_Stage_Pads.h"

#include "Host/Host_Stage.h"

namespace {

struct StagePad {
    bool plugged = false, found = false;
    HostPadState state;
    HostPadShape shape = HostPadShape::Standard;
    uint16_t left = 0, right = 0;  // vibration
};

struct StageJoystick {
    HostJoystick device;
    HostJoystickState state;
    bool found = false;
};

StagePad g_pads[kHostPads];
VxVector<StageJoystick> g_joysticks;
VxVector<int32_t> g_found;  // ids of the last rescan
bool g_missing;

StageJoystick* Find(int32_t id)
{
    for (StageJoystick& joystick : g_joysticks)
        if (joystick.device.id == id) return &joystick;
    return nullptr;
}

void Rescan()
{
    for (StagePad& pad : g_pads) pad.found = pad.plugged;
    g_found.clear();
    for (const StageJoystick& joystick : g_joysticks) g_found.push_back(joystick.device.id);
}

bool State(int32_t slot, HostPadState* state)
{
    const StagePad& pad = g_pads[slot];
    *state = pad.state;
    return pad.plugged && pad.found;
}

void Vibrate(int32_t slot, uint16_t left, uint16_t right)
{
    g_pads[slot].left = left;
    g_pads[slot].right = right;
}

HostJoystick Joystick(int32_t index)
{
    const int32_t id = g_found[static_cast<size_t>(index)];
    const StageJoystick* joystick = Find(id);
    return joystick ? joystick->device : HostJoystick{id, "", "", 0, 0, 0};
}

bool JoystickState(int32_t id, HostJoystickState* state)
{
    const StageJoystick* joystick = Find(id);
    if (joystick) *state = joystick->state;
    return joystick != nullptr;
}

void TellDeviceChange()
{
    HostMessage message{};
    message.type = HostMessageType::DeviceChange;
    Stage_Post(message);
}

}  // namespace

const HostPadTable kStagePads = {
    .Start = [] { return !g_missing; },
    .Stop = [] {},
    .Rescan = Rescan,
    .State = State,
    .Shape = [](int32_t slot) { return g_pads[slot].shape; },
    .Vibrate = Vibrate,
    .JoystickCount = [] { return static_cast<int32_t>(g_found.size()); },
    .Joystick = Joystick,
    .JoystickState = JoystickState,
};

void Stage_ResetPads()
{
    for (StagePad& pad : g_pads) pad = StagePad{};
    VxVector<StageJoystick>().swap(g_joysticks);
    VxVector<int32_t>().swap(g_found);
    g_missing = false;
}

void Stage_MissPads()
{
    g_missing = true;
}

HostPadState& Stage_Pad(int32_t slot)
{
    return g_pads[slot].state;
}

void Stage_PlugPad(int32_t slot, bool in, HostPadShape shape)
{
    g_pads[slot] = StagePad{};
    g_pads[slot].plugged = in;
    g_pads[slot].shape = shape;
    if (in) TellDeviceChange();
}

uint32_t Stage_PadVibration(int32_t slot)
{
    return static_cast<uint32_t>(g_pads[slot].left) << 16 | g_pads[slot].right;
}

HostJoystickState* Stage_PlugJoystick(const HostJoystick& device)
{
    g_joysticks.push_back({device, HostJoystickState{}});
    TellDeviceChange();
    return &g_joysticks.back().state;
}

void Stage_PullJoystick(int32_t id)
{
    for (size_t i = 0; i < g_joysticks.size(); ++i)
        if (g_joysticks[i].device.id == id) {
            g_joysticks.erase(g_joysticks.begin() + static_cast<ptrdiff_t>(i));
            break;
        }
    TellDeviceChange();
}
