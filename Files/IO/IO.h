#pragma once
// Keyboard and mouse: two copies of all state. The window procedure writes the
// message side; scripts and the event dispatch read the frame side, which
// IO_Update refreshes once a frame.

#include <cstdint>

class CInstance;

inline constexpr int kKeys = 256;
inline constexpr int kButtons = 3;        // left, right, middle
inline constexpr int kMouseDevices = 10;  // only device 0 is fed on a desktop
inline constexpr int kStringUnits = 1025;

struct IOMessageSide {
    uint8_t keyDownMsg[kKeys], keyPressedMsg[kKeys], keyReleasedMsg[kKeys];
    int32_t curKeyMsg, prevKeyMsg, lastKeyMsg;
    uint16_t lastCharMsg;
    uint16_t stringMsg[kStringUnits];
    int32_t stringLength;
    uint8_t buttonDownMsg[kButtons], buttonPressedMsg[kButtons], buttonReleasedMsg[kButtons];
    int32_t buttonMsg, lastButtonMsg;
    uint8_t wheelUpMsg, wheelDownMsg;
    int32_t mouseXMsg, mouseYMsg;
};

struct IOFrameSide {
    uint8_t keyDown[kKeys], keyPressed[kKeys], keyReleased[kKeys];
    int32_t curKey, prevKey, lastKey;
    uint16_t lastChar;
    uint16_t string[kStringUnits];
    int32_t stringLength;
    uint8_t buttonDown[kMouseDevices][kButtons], buttonPressed[kMouseDevices][kButtons],
        buttonReleased[kMouseDevices][kButtons];
    int32_t button[kMouseDevices], lastButton[kMouseDevices];
    uint8_t wheelUp[kMouseDevices], wheelDown[kMouseDevices];
    int32_t mouseX[kMouseDevices], mouseY[kMouseDevices];
};

extern IOMessageSide g_IOMessage;
extern IOFrameSide g_IOFrame;
extern int32_t keyMap[kKeys];
// Presses since the start, counted as their messages arrive.
extern uint32_t g_KeyPresses, g_ButtonPresses;

void IO_Init();    // clears, identity map, opens the recording files
void IO_Quit();    // closes the recording
void IO_Clear();   // both sides
void IO_Update();  // once a frame, before the step

// ---- message entry points
void Key_Down(int32_t key, bool repeat);
void Key_Up(int32_t key);
void Key_Char(uint16_t unit);
// The position is that of the last Mouse_Move, not the button's.
void Mouse_ButtonDown(int32_t button, int32_t x, int32_t y);
void Mouse_ButtonUp(int32_t button, int32_t x, int32_t y);
void Mouse_Wheel(int32_t delta);
void Mouse_Move(int32_t x, int32_t y);

// ---- queries on the frame side; 0 none, 1 any
bool IO_KeyCheck(int32_t key);
bool IO_KeyPressed(int32_t key);
bool IO_KeyReleased(int32_t key);
void IO_KeyClear(int32_t key);  // pumps messages, then clears the key on all six arrays

// Mouse position in the room, from device 0's client position.
void IO_MouseRoomPosition(int32_t* x, int32_t* y);
void IO_MouseViewPosition(int32_t number, int32_t* x, int32_t* y);  // through one view
extern int32_t g_MouseRoomX, g_MouseRoomY, g_MousePreviousX, g_MousePreviousY;

// ---- passes of the step
void IO_KeyboardEvents();
void IO_JoystickEvents();
void IO_MouseEvents();
