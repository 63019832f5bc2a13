#pragma once
// The table of gamepads: slots 0 to 3 are pads of the common shape, 4 to 11 other game
// controllers. Polled once a frame; scripts read the frame's values.

#include <cstdint>

#include "Platform/MemoryManager.h"

inline constexpr int32_t kPadButtons = 144, kPadAxes = 8;  // at most
inline constexpr int32_t kStandardPads = 4, kStandardButtons = 16, kStandardAxes = 4;

struct SWGamePad {
    bool connected = false;
    int32_t buttonCount = 0, axisCount = 0;
    float buttonPrev[kPadButtons] = {}, buttonValue[kPadButtons] = {};  // 0 to 1
    float axisPrev[kPadAxes] = {}, axisValue[kPadAxes] = {};            // -1 to 1
    float buttonThreshold = 0.5F;
    float axisDeadzone = 0;
    float vibrationLeft = 0, vibrationRight = 0;  // 0 to 1
    VxString description;                         // empty when not connected
    int32_t joystick = -1;                        // of slots 4 and above: the host's id
};

void GamePad_Init();  // the table, and what is connected at the start
void GamePad_Quit();
void GamePad_Rescan();       // a device came or went
void GamePad_Poll();         // once a frame
void GamePad_AnnounceAll();  // of each connected pad, to a game that starts over

bool GamePad_Supported();             // the system knows pads
int32_t GamePad_Count();              // of slots: 4, or 12 with the other controllers
SWGamePad* GamePad_At(int32_t slot);  // null outside the table

// Hears "gamepad discovered" and "gamepad lost" with the slot; null for nobody.
using GamePadNews = void (*)(const char* eventType, int32_t slot);
void GamePad_SetNews(GamePadNews news);

// ---- values by a script's code: a constant, a plain index, or an index with flags
enum GamePadCode : int32_t {
    PAD_CROSS = 0x1000,     // a button read from an axis, or an axis from a button
    PAD_NEGATIVE = 0x2000,  // the negative half of the axis
    PAD_IGNORED = 0x4000,
    PAD_CONSTANT = 0x8000,  // of an axis, once its constant is looked up: negated
};
bool GamePad_ButtonDown(int32_t slot, int32_t code);
bool GamePad_ButtonPressed(int32_t slot, int32_t code);
bool GamePad_ButtonReleased(int32_t slot, int32_t code);
float GamePad_ButtonValue(int32_t slot, int32_t code);
// Through the deadzone: from 0 at its edge to 1 at full travel.
float GamePad_AxisValue(int32_t slot, int32_t code);
