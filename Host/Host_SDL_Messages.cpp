// SDL's events as the runtime's messages. Presses that a script makes go through the
// same queue.

#include <cmath>

#include "Host/Host_Keyboard.h"
#include "Host/Host_SDL.h"

namespace sdl {

namespace {

VxVector<HostMessage> g_queue;  // read from g_head; reused, so a busy frame allocates nothing
size_t g_head;
keys::ScriptKeys g_script;
// What a key that is down was reported as, by its side: it goes up under the same number, even when
// the layout changed in between.
int32_t g_keyOfScan[SDL_NUM_SCANCODES];
Scale g_scale;  // as last told

// SDL lets go of all keys when the focus goes, and knows nothing of those that are still
// held when it comes back: the desktop's next repeat of one looks like a press.
class HeldWhileAway {
public:
    void Up(int scan, Uint32 time)
    {
        upAt_[scan] = time;
        wentUp_[scan] = true;
        carried_[scan] = false;
    }
    void FocusLost(Uint32 time)
    {
        for (int scan = 0; scan < SDL_NUM_SCANCODES; ++scan) {
            const bool letGo = wentUp_[scan] && time - upAt_[scan] <= kLetGoMillis;
            carried_[scan] = letGo || (carried_[scan] && StillNew(time));
        }
    }
    void FocusGained(Uint32 time) { gainedAt_ = time; }
    // Of a key that goes down: whether it was held all along.
    bool Repeats(int scan, Uint32 time)
    {
        carried_[scan] = carried_[scan] && StillNew(time);
        return carried_[scan];
    }

private:
    static constexpr Uint32 kLetGoMillis = 20;    // from SDL's letting go to the word of the loss
    static constexpr Uint32 kRepeatMillis = 700;  // the longest until a held key repeats

    bool StillNew(Uint32 time) const { return time - gainedAt_ <= kRepeatMillis; }

    Uint32 upAt_[SDL_NUM_SCANCODES] = {}, gainedAt_ = 0;
    bool wentUp_[SDL_NUM_SCANCODES] = {}, carried_[SDL_NUM_SCANCODES] = {};
};
HeldWhileAway g_away;

void Queue(const HostMessage& message)
{
    g_queue.push_back(message);
}

HostMessage Make(HostMessageType type)
{
    HostMessage message;
    message.type = type;
    return message;
}

bool IsRight(SDL_Keycode code)
{
    return code == SDLK_RSHIFT || code == SDLK_RCTRL || code == SDLK_RALT;
}

// A key's number, by its side.
int32_t NumberOf(const SDL_Keysym& key)
{
    const int32_t known = g_keyOfScan[key.scancode];
    if (known) return known;
    return keys::WithSide(KeyFromSdl(key.sym, key.scancode)) + (IsRight(key.sym) ? 1 : 0);
}

void QueueControl(int32_t key, Uint16 mod)
{
    HostMessage typed = Make(HostMessageType::Char);
    typed.unit =
        keys::ControlUnit(key, {.control = (mod & KMOD_CTRL) != 0, .alt = (mod & KMOD_ALT) != 0});
    if (typed.unit) Queue(typed);
}

void QueueKey(const SDL_KeyboardEvent& event)
{
    const bool down = event.type == SDL_KEYDOWN;
    const int32_t key = NumberOf(event.keysym);
    g_keyOfScan[event.keysym.scancode] = down ? key : 0;
    if (key == 0) return;
    const bool repeat =
        down && (g_away.Repeats(event.keysym.scancode, event.timestamp) || event.repeat != 0);
    if (!down) g_away.Up(event.keysym.scancode, event.timestamp);
    HostMessage message = keys::Message(key, down, g_script.TakeBack(key, repeat));
    message.extended |= event.keysym.sym == SDLK_KP_ENTER;
    message.system = (event.keysym.mod & KMOD_ALT) != 0;
    Queue(message);
    if (down) QueueControl(message.key, event.keysym.mod);
}

// One UTF-8 character as one or two UTF-16 units; its length in bytes.
size_t QueueCharacter(const char* text)
{
    const auto lead = static_cast<unsigned char>(text[0]);
    const size_t length = lead < 0x80 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
    uint32_t code = length == 1 ? lead : lead & (0x7FU >> length);
    for (size_t i = 1; i < length; ++i) {
        if (!text[i]) return i;
        code = code << 6 | (static_cast<unsigned char>(text[i]) & 0x3FU);
    }
    HostMessage typed = Make(HostMessageType::Char);
    if (code >= 0x10000) {
        typed.unit = static_cast<uint16_t>(0xD800 + ((code - 0x10000) >> 10));
        Queue(typed);
        code = 0xDC00 + ((code - 0x10000) & 0x3FF);
    }
    typed.unit = static_cast<uint16_t>(code);
    Queue(typed);
    return length;
}

void QueueText(const char* text)
{
    while (*text) text += QueueCharacter(text);
}

// The lock that a key toggles, or none.
int LockOf(int32_t key)
{
    return key == 20 ? KMOD_CAPS : key == 144 ? KMOD_NUM : key == 145 ? KMOD_SCROLL : KMOD_NONE;
}

bool HeldByHand(int32_t key)
{
    SDL_PumpEvents();  // present, also for one who waits for it without taking messages
    int count = 0;
    const Uint8* states = SDL_GetKeyboardState(&count);
    for (int scan = 0; scan < count; ++scan) {
        if (!states[scan]) continue;
        SDL_Keysym held{};
        held.scancode = static_cast<SDL_Scancode>(scan);
        held.sym = SDL_GetKeyFromScancode(held.scancode);
        if (NumberOf(held) == key) return true;
    }
    return false;
}

void Toggle(int32_t key)
{
    SDL_SetModState(static_cast<SDL_Keymod>(SDL_GetModState() ^ LockOf(key)));
}

int32_t ButtonNumber(Uint8 button)
{
    return button == SDL_BUTTON_LEFT     ? 1
           : button == SDL_BUTTON_RIGHT  ? 2
           : button == SDL_BUTTON_MIDDLE ? 3
                                         : 0;
}

void SetPlace(HostMessage* message, Sint32 x, Sint32 y)
{
    const Scale scale = WindowScale();
    message->x = scale.ToPixels(x);
    message->y = scale.ToPixels(y);
}

void QueueButton(const SDL_MouseButtonEvent& event)
{
    HostMessage message = Make(event.type == SDL_MOUSEBUTTONDOWN ? HostMessageType::ButtonDown
                                                                 : HostMessageType::ButtonUp);
    message.button = ButtonNumber(event.button);
    SetPlace(&message, event.x, event.y);
    if (message.button) Queue(message);
}

// By more than what the rounding of a size makes of it.
bool ScaleChanged()
{
    const auto ratio = [](const Scale& scale) {
        return static_cast<double>(scale.pixels) / scale.points;
    };
    const double before = ratio(g_scale);
    g_scale = WindowScale();
    return std::abs(ratio(g_scale) - before) > 0.02;
}

void QueueWindow(const SDL_WindowEvent& event)
{
    HostMessage message;
    switch (event.event) {
        case SDL_WINDOWEVENT_RESIZED:  // by the user or the desktop, not by the program
            message = Make(HostMessageType::Size);
            message.width = WindowScale().ToPixels(event.data1);
            message.height = WindowScale().ToPixels(event.data2);
            break;
        case SDL_WINDOWEVENT_SIZE_CHANGED:
        case SDL_WINDOWEVENT_DISPLAY_CHANGED:  // perhaps to a display with finer pixels
            if (!ScaleChanged()) return;
            message = Make(HostMessageType::Size);
            g_Host.window.ClientSize(&message.width, &message.height);
            break;
        case SDL_WINDOWEVENT_FOCUS_GAINED:
        case SDL_WINDOWEVENT_FOCUS_LOST:
            message = Make(HostMessageType::ActivateApp);
            message.flag = event.event == SDL_WINDOWEVENT_FOCUS_GAINED;
            if (message.flag)
                g_away.FocusGained(event.timestamp);
            else
                g_away.FocusLost(event.timestamp);
            break;
        case SDL_WINDOWEVENT_CLOSE:
            message = Make(HostMessageType::Close);
            break;
        default:
            return;
    }
    Queue(message);
}

void Translate(const SDL_Event& event)
{
    HostMessage message;
    switch (event.type) {
        case SDL_KEYDOWN:
        case SDL_KEYUP:
            QueueKey(event.key);
            return;
        case SDL_TEXTINPUT:
            QueueText(event.text.text);
            return;
        case SDL_MOUSEMOTION:
            message = Make(HostMessageType::MouseMove);
            SetPlace(&message, event.motion.x, event.motion.y);
            Queue(message);
            return;
        case SDL_MOUSEBUTTONDOWN:
        case SDL_MOUSEBUTTONUP:
            QueueButton(event.button);
            return;
        case SDL_MOUSEWHEEL:
            message = Make(HostMessageType::Wheel);
            message.delta = event.wheel.y;
            Queue(message);
            return;
        case SDL_WINDOWEVENT:
            QueueWindow(event.window);
            return;
        case SDL_QUIT:
            Queue(Make(HostMessageType::Close));
            return;
        case SDL_JOYDEVICEADDED:
        case SDL_JOYDEVICEREMOVED:
            Queue(Make(HostMessageType::DeviceChange));
            return;
        default:
            return;
    }
}

}  // namespace

bool NextMessage(HostMessage* message)
{
    if (g_head >= g_queue.size()) {
        g_queue.clear();
        g_head = 0;
        SDL_Event event;
        while (SDL_PollEvent(&event)) Translate(event);
    }
    if (g_head >= g_queue.size()) return false;
    *message = g_queue[g_head++];
    return true;
}

void PostMessage(const HostMessage& message)
{
    Queue(message);
}

void SendKey(int32_t key, bool down)
{
    if (!keys::IsKey(key)) return;
    if (down && !KeyState(key)) Toggle(key);
    g_script.Send(key, down, HeldByHand);
}

bool KeyState(int32_t key)
{
    return g_script.Down(key, HeldByHand);
}

bool KeyToggled(int32_t key)
{
    return (SDL_GetModState() & LockOf(key)) != 0;
}

void ForgetMessages()
{
    VxVector<HostMessage>().swap(g_queue);
    g_head = 0;
    g_scale = Scale{};
    g_script.Forget();
    g_away = HeldWhileAway();
    for (int32_t& key : g_keyOfScan) key = 0;
}

}  // namespace sdl
