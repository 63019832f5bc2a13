#pragma once
// What a test or a tool says to the stage backend: no window, a clock that moves
// only when told (or by what the program waits), messages from a script, a
// folder of its own.

#include "Host/Host.h"

void Stage_Reset();  // clock 0, no messages, default desktop 1920 by 1080, empty notes
void Stage_Quit();   // frees all of it
void Stage_SetFolder(const char* folder);      // the program's and current folder
void Stage_SetDataFolder(const char* folder);  // local and roaming data
void Stage_MoveClock(int64_t micros);
void Stage_SetLocalTime(const HostLocalTime& time);
void Stage_SetDesktop(int32_t width, int32_t height);
void Stage_SetClientSize(int32_t width, int32_t height);  // as a user's drag: posts the messages
void Stage_Key(int32_t key, bool down);                   // a hand's: state and message, no text
void Stage_Post(const HostMessage& message);
void Stage_SetMouse(int32_t x, int32_t y);  // client pixels; queues the move
void Stage_SetErrorChoice(HostErrorChoice choice);
const VxVector<VxString>& Stage_MessageBoxes();  // "title: text", in order
const VxVector<VxString>& Stage_ErrorTexts();
int32_t Stage_PresentCount();
int32_t Stage_CursorRow();
bool Stage_WindowShown();
