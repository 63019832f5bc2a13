#include "Host/Host_Keyboard.h"

namespace keys {

namespace {

constexpr int32_t kBackspace = 8, kTab = 9, kEnter = 13, kEscape = 27, kSpace = 32;
constexpr int32_t kLeftShift = 160, kRightControl = 163, kRightAlt = 165;
constexpr int32_t kPad0 = 96;
constexpr char kPadSigns[] = "0123456789*+,-./";  // keys 96 to 111
constexpr char kDigitSigns[] = ")!@#$%^&*(";      // Shift with 0 to 9

bool IsLetter(int32_t key)
{
    return key >= 'A' && key <= 'Z';
}
bool IsDigit(int32_t key)
{
    return key >= '0' && key <= '9';
}
bool IsPair(int32_t key)
{
    return key >= kShift && key <= kAlt;
}

Modifiers Present()
{
    const HostWindowTable& window = g_Host.window;
    return {window.KeyState(kShift), window.KeyToggled(kCapsLock), window.KeyState(kControl),
            window.KeyState(kAlt)};
}

}  // namespace

int32_t WithSide(int32_t key)
{
    return IsPair(key) ? kLeftShift + 2 * (key - kShift) : key;
}

int32_t WithoutSide(int32_t key)
{
    return key >= kLeftShift && key <= kRightAlt ? kShift + (key - kLeftShift) / 2 : key;
}

uint16_t ControlUnit(int32_t key, const Modifiers& with)
{
    if (with.alt) return 0;
    switch (key) {
        case kBackspace:
            return with.control ? 127 : 8;
        case kTab:
            return with.control ? 0 : 9;
        case kEnter:
            return with.control ? 10 : 13;
        case kEscape:
            return 27;
        default:
            return with.control && IsLetter(key) ? static_cast<uint16_t>(key - 'A' + 1) : 0;
    }
}

uint16_t TypedUnit(int32_t key, const Modifiers& with)
{
    const uint16_t control = ControlUnit(key, with);
    if (control || with.alt) return control;
    if (key == kSpace) return ' ';
    if (with.control) return 0;
    int32_t unit = 0;
    if (IsLetter(key)) unit = with.shift != with.caps ? key : key - 'A' + 'a';
    if (IsDigit(key)) unit = with.shift ? kDigitSigns[key - '0'] : key;
    if (key >= kPad0 && key < kPad0 + 16) unit = kPadSigns[key - kPad0];
    return static_cast<uint16_t>(unit);
}

HostMessage Message(int32_t key, bool down, bool repeat)
{
    HostMessage message;
    message.type = down ? HostMessageType::KeyDown : HostMessageType::KeyUp;
    message.key = WithoutSide(key);
    message.extended = key == kRightControl || key == kRightAlt;
    message.repeat = down && repeat;
    return message;
}

bool ScriptKeys::Down(int32_t key, HandState byHand) const
{
    if (!IsKey(key)) return false;
    const int32_t side = WithSide(key);
    if (IsPair(key)) return Down(side, byHand) || Down(side + 1, byHand);
    return says_[key] == Says::Nothing ? byHand(key) : says_[key] == Says::Down;
}

void ScriptKeys::Send(int32_t key, bool down, HandState byHand)
{
    const int32_t side = WithSide(key);
    HostMessage message = Message(side, down, Down(side, byHand));
    says_[side] = down ? Says::Down : byHand(side) ? Says::Up : Says::Nothing;
    const Modifiers with = Present();
    message.system = with.alt;
    g_Host.window.PostMessage(message);
    HostMessage typed;
    typed.type = HostMessageType::Char;
    typed.unit = down ? TypedUnit(key, with) : uint16_t{0};
    if (typed.unit) g_Host.window.PostMessage(typed);
}

bool ScriptKeys::TakeBack(int32_t key, bool heldBefore)
{
    const bool down = says_[key] == Says::Nothing ? heldBefore : says_[key] == Says::Down;
    says_[key] = Says::Nothing;
    return down;
}

}  // namespace keys
