// Start, restart and end of the game inside a running process.

#include "Files/Base/Archive_Main.h"
#include "Files/Base/Console.h"
#include "Files/Code/Script_Interface.h"
#include "Files/Graphics/Draw_Room.h"
#include "Files/Graphics/Draw_State.h"
#include "Files/Graphics/GpuState.h"
#include "Files/Graphics/Window.h"
#include "Files/Object/Object_Main.h"
#include "Files/Room/Room_Main.h"
#include "Files/Run/Run_Modules.h"
#include "Files/Run/Services.h"
#include "Files/Variable/Variable_BuiltIn.h"

namespace {

constexpr int32_t kCursorDefault = 0;

void ResetGameValues()
{
    g_Score = 0;
    g_Lives = -1;
    g_CursorSprite = -1;
    g_CursorFrame = 0;
    g_FrameCount = 0;
}

}  // namespace

void StartGame()
{
    ResetGameValues();
    Window_AllowCursor((g_GameOptions.bits & OPTION_CURSOR) != 0);
    GpuState_ApplyInterpolation();
    Object_BuildEventTables();
    Room_ResetRunning();
    if (Room_OrderCount() == 0) return;
    New_Room = Room_OrderAt(0);
    StartRoom(New_Room, true);
    if (New_Room >= 0) SwitchRoom(New_Room);
}

void EndGame()
{
    EndRoom(true);
    Room_DeleteRunning();
    Run_Room = nullptr;
    Window_SetCursorValue(kCursorDefault);
    Services_StopSounds();
    DrawState_Init();
    GpuState_Init();
}

void SwitchRoom(int32_t index)
{
    g_DebugConsole->Output("SwitchRoom to %s", Room_Name(index));
    EndRoom(false);
    StartRoom(index, false);
}
