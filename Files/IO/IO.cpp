#include "Files/IO/IO.h"

#include <cstring>

#include "Files/IO/GamePad.h"
#include "Files/IO/IO_Record.h"
#include "Files/IO/VirtualKeys.h"
#include "Files/Run/Run_State.h"
#include "Host/Host.h"

IOMessageSide g_IOMessage;
IOFrameSide g_IOFrame;
int32_t keyMap[kKeys];
uint32_t g_KeyPresses, g_ButtonPresses;

namespace {

constexpr int32_t kMaxKey = kKeys - 1;
constexpr int32_t kLeftShift = 160, kRightShift = 161;
constexpr uint16_t kBackspace = 8, kFirstPrintable = 32;
constexpr int32_t kFullString = 1023;

int32_t g_buttonsHeld;  // the mouse is captured while above 0

// Left and right Shift: messages cannot tell them apart, so they are polled.
void PollShift(int32_t key)
{
    const bool down = g_Host.window.KeyState && g_Host.window.KeyState(key);
    g_IOMessage.keyDownMsg[key] = down;
    if (down) {
        if (g_IOFrame.keyDown[key] != 1) g_IOMessage.keyPressedMsg[key] = 1;
        g_IOMessage.keyReleasedMsg[key] = 0;
    } else {
        g_IOMessage.keyPressedMsg[key] = 0;
        if (g_IOFrame.keyDown[key]) g_IOMessage.keyReleasedMsg[key] = 1;
    }
}

void ClearFrameLatches()
{
    memset(g_IOFrame.keyPressed, 0, sizeof g_IOFrame.keyPressed);
    memset(g_IOFrame.keyReleased, 0, sizeof g_IOFrame.keyReleased);
    memset(g_IOFrame.buttonPressed, 0, sizeof g_IOFrame.buttonPressed);
    memset(g_IOFrame.buttonReleased, 0, sizeof g_IOFrame.buttonReleased);
    memset(g_IOFrame.wheelUp, 0, sizeof g_IOFrame.wheelUp);
    memset(g_IOFrame.wheelDown, 0, sizeof g_IOFrame.wheelDown);
}

void CopyKeys()
{
    memcpy(g_IOFrame.string, g_IOMessage.stringMsg, sizeof g_IOFrame.string);
    g_IOFrame.stringLength = g_IOMessage.stringLength;
    g_IOFrame.lastKey = g_IOMessage.lastKeyMsg;
    g_IOFrame.curKey = g_IOMessage.curKeyMsg;
    g_IOFrame.lastChar = g_IOMessage.lastCharMsg;
    memcpy(g_IOFrame.keyDown, g_IOMessage.keyDownMsg, sizeof g_IOFrame.keyDown);
    memcpy(g_IOFrame.keyPressed, g_IOMessage.keyPressedMsg, sizeof g_IOFrame.keyPressed);
    memcpy(g_IOFrame.keyReleased, g_IOMessage.keyReleasedMsg, sizeof g_IOFrame.keyReleased);
}

void CopyMouse()
{
    memcpy(g_IOFrame.buttonDown[0], g_IOMessage.buttonDownMsg, kButtons);
    memcpy(g_IOFrame.buttonPressed[0], g_IOMessage.buttonPressedMsg, kButtons);
    memcpy(g_IOFrame.buttonReleased[0], g_IOMessage.buttonReleasedMsg, kButtons);
    g_IOFrame.button[0] = g_IOMessage.buttonMsg;
    g_IOFrame.lastButton[0] = g_IOMessage.lastButtonMsg;
    g_IOFrame.wheelUp[0] = g_IOMessage.wheelUpMsg;
    g_IOFrame.wheelDown[0] = g_IOMessage.wheelDownMsg;
}

void ClearMessageLatches()
{
    memset(g_IOMessage.keyPressedMsg, 0, sizeof g_IOMessage.keyPressedMsg);
    memset(g_IOMessage.keyReleasedMsg, 0, sizeof g_IOMessage.keyReleasedMsg);
    memset(g_IOMessage.buttonPressedMsg, 0, sizeof g_IOMessage.buttonPressedMsg);
    memset(g_IOMessage.buttonReleasedMsg, 0, sizeof g_IOMessage.buttonReleasedMsg);
    g_IOMessage.wheelUpMsg = g_IOMessage.wheelDownMsg = 0;
}

// A script may write any number to `keyboard_key` and to the map.
bool IsKey(int32_t key)
{
    return key >= 0 && key <= kMaxKey;
}

// Units of the typed text's last character: none, one, or the two of a pair.
int32_t LastCharacter()
{
    const uint16_t* const text = g_IOMessage.stringMsg;
    const int32_t length = g_IOMessage.stringLength;
    const bool pair = length > 1 && (text[length - 1] & 0xFC00) == 0xDC00 &&
                      (text[length - 2] & 0xFC00) == 0xD800;
    return pair ? 2 : length > 0 ? 1 : 0;
}

bool AnyKey(const uint8_t* keys)
{
    return memchr(keys, 1, kKeys) != nullptr;
}

bool Check(const uint8_t* keys, int32_t key)
{
    if (key == 0) return !AnyKey(keys);
    if (key == 1) return AnyKey(keys);
    return IsKey(key) && keys[key];
}

}  // namespace

void IO_Init()
{
    g_buttonsHeld = 0;
    g_IOMessage = IOMessageSide{};
    g_IOFrame = IOFrameSide{};
    for (int32_t key = 0; key < kKeys; ++key) keyMap[key] = key;
    VirtualKeys_Init();
    Record_Open(g_Switches.record.c_str(), g_Switches.playback.c_str());
}

void IO_Quit()
{
    Record_Close();
    VirtualKeys_Quit();
}

void IO_Clear()
{
    const int32_t mouseX = g_IOMessage.mouseXMsg, mouseY = g_IOMessage.mouseYMsg;
    g_IOMessage = IOMessageSide{};
    g_IOMessage.mouseXMsg = mouseX;
    g_IOMessage.mouseYMsg = mouseY;
    ClearFrameLatches();
    memset(g_IOFrame.keyDown, 0, sizeof g_IOFrame.keyDown);
    memset(g_IOFrame.buttonDown, 0, sizeof g_IOFrame.buttonDown);
    memset(g_IOFrame.string, 0, sizeof g_IOFrame.string);
    g_IOFrame.stringLength = 0;
    g_IOFrame.lastKey = g_IOFrame.curKey = g_IOFrame.prevKey = 0;
    g_IOFrame.lastChar = 0;
    g_IOFrame.button[0] = g_IOFrame.lastButton[0] = 0;
}

void IO_Update()
{
    ClearFrameLatches();
    if (Record_ReadFrame()) {
        ClearMessageLatches();  // nothing pressed now waits for the recording's end
        return;
    }
    g_IOFrame.mouseX[0] = g_IOMessage.mouseXMsg;
    g_IOFrame.mouseY[0] = g_IOMessage.mouseYMsg;
    PollShift(kLeftShift);
    PollShift(kRightShift);
    CopyKeys();
    CopyMouse();
    ClearMessageLatches();
    GamePad_Poll();
    Record_WriteFrame();
}

void Key_Down(int32_t key, bool repeat)
{
    if (!IsKey(key)) return;
    const int32_t k = keyMap[key];
    if (!IsKey(k)) return;
    g_IOMessage.prevKeyMsg = g_IOMessage.curKeyMsg;
    g_IOMessage.lastKeyMsg = g_IOMessage.curKeyMsg = k;
    if (g_IOMessage.keyDownMsg[k] != 1 && !repeat) {
        g_IOMessage.keyPressedMsg[k] = 1;
        ++g_KeyPresses;
    }
    g_IOMessage.keyDownMsg[k] = 1;
}

void Key_Up(int32_t key)
{
    if (!IsKey(key)) return;
    const int32_t k = keyMap[key];
    if (!IsKey(k)) return;
    if (k == g_IOMessage.curKeyMsg) {
        const int32_t before = g_IOMessage.prevKeyMsg;
        const bool stillDown = before != k && IsKey(before) && g_IOMessage.keyDownMsg[before];
        g_IOMessage.curKeyMsg = stillDown ? before : 0;
    }
    g_IOMessage.keyDownMsg[k] = 0;
    g_IOMessage.keyReleasedMsg[k] = 1;
}

void Key_Char(uint16_t unit)
{
    g_IOMessage.lastCharMsg = unit;
    uint16_t* text = g_IOMessage.stringMsg;
    int32_t& length = g_IOMessage.stringLength;
    if (length >= kFullString) {
        const int32_t last = LastCharacter();
        memmove(text, text + length - last, static_cast<size_t>(last) * sizeof *text);
        length = last;
    }
    if (unit == kBackspace) {
        length -= LastCharacter();
    } else if (unit >= kFirstPrintable) {
        text[length++] = unit;
    }
    text[length] = 0;
}

void Mouse_ButtonDown(int32_t button, int32_t, int32_t)
{
    if (button < 1 || button > kButtons) return;
    if (g_buttonsHeld++ == 0) g_Host.window.Capture(true);
    g_IOMessage.lastButtonMsg = g_IOMessage.buttonMsg = button;
    if (!g_IOMessage.buttonDownMsg[button - 1]) {
        g_IOMessage.buttonPressedMsg[button - 1] = 1;
        ++g_ButtonPresses;
    }
    g_IOMessage.buttonDownMsg[button - 1] = 1;
}

void Mouse_ButtonUp(int32_t button, int32_t, int32_t)
{
    if (button < 1 || button > kButtons) return;
    if (g_buttonsHeld > 0) --g_buttonsHeld;
    if (g_buttonsHeld < 1) g_Host.window.Capture(false);  // also of a press that was never seen
    g_IOMessage.buttonMsg = 0;
    g_IOMessage.buttonDownMsg[button - 1] = 0;
    g_IOMessage.buttonPressedMsg[button - 1] = 0;
    g_IOMessage.buttonReleasedMsg[button - 1] = 1;
}

void Mouse_Wheel(int32_t delta)
{
    if (delta > 0) g_IOMessage.wheelUpMsg = 1;
    if (delta < 0) g_IOMessage.wheelDownMsg = 1;
}

void Mouse_Move(int32_t x, int32_t y)
{
    g_IOMessage.mouseXMsg = static_cast<int16_t>(x);
    g_IOMessage.mouseYMsg = static_cast<int16_t>(y);
}

bool IO_KeyCheck(int32_t key)
{
    return Check(g_IOFrame.keyDown, key);
}
bool IO_KeyPressed(int32_t key)
{
    return Check(g_IOFrame.keyPressed, key);
}
bool IO_KeyReleased(int32_t key)
{
    return Check(g_IOFrame.keyReleased, key);
}

void IO_KeyClear(int32_t key)
{
    Process_Messages();
    if (!IsKey(key)) return;
    g_IOFrame.keyDown[key] = g_IOFrame.keyPressed[key] = g_IOFrame.keyReleased[key] = 0;
    g_IOMessage.keyDownMsg[key] = g_IOMessage.keyPressedMsg[key] = g_IOMessage.keyReleasedMsg[key] =
        0;
}
