// The frame driver: paces the game at the room's speed and serves the requests
// that a frame left behind.

#include <cstdlib>

#include "Files/Base/Console.h"
#include "Files/Graphics/Window.h"
#include "Files/IO/IO.h"
#include "Files/Room/Room_Main.h"
#include "Files/Run/Run_Modules.h"
#include "Files/Run/Services.h"

namespace {

constexpr double kSecond = 1000000.0;  // microseconds
constexpr int32_t kDefaultRate = 60;   // frames a second while no room runs
constexpr unsigned kRandSeed = 2101988;

int32_t TargetRate()
{
    if (!Run_Room) return kDefaultRate;
    if (Run_Room->speed < 1) Run_Room->speed = 1;
    return Run_Room->speed;
}

// Microseconds until the next frame is due; 0 when it is late: nothing is caught up.
int64_t TimeToWait(int32_t rate)
{
    const int64_t elapsed = g_FrameStart - g_LastFrameStart;
    const double wait = kSecond / rate - static_cast<double>(elapsed);
    if (wait <= 0) return 0;
    return wait > kSecond ? static_cast<int64_t>(kSecond) : static_cast<int64_t>(wait);
}

void CountFrame()
{
    if (g_LastFrameStart / 1000000 > g_FpsClock / 1000000) {
        g_FpsReal = g_FpsCounter;
        g_FpsCounter = 0;
        g_FpsClock = g_LastFrameStart;
    }
    ++g_FpsCounter;
}

void RestartGame()
{
    EndGame();
    Services_PostGamepads();
    StartGame();
    srand(kRandSeed);
}

void ServeRequest()
{
    switch (New_Room) {
        case ROOM_NONE:
            return;
        case ROOM_RESTART_GAME:
            RestartGame();
            return;
        case ROOM_STOP:
        case ROOM_END_GAME:
            g_Running = false;
            return;
        case ROOM_LOAD_GAME:
            New_Room = ROOM_NONE;
            IO_Clear();
            Services_LoadSavedGame();
            return;
        default:
            if (New_Room >= 0) SwitchRoom(New_Room);
    }
}

void GameWork()
{
    Display_Countdown();
    Frame_Begin();
    DoAStep();
    Frame_End(New_Room < 0 && g_DrawEnabled);
    if (!g_PlayerRequest.game.empty()) New_Room = ROOM_STOP;
    ServeRequest();
}

}  // namespace

void Run_Frame()
{
    g_FrameStart = Clock_Micros();
    if (g_FrameStart < g_LastFrameStart) g_LastFrameStart = g_FrameStart;
    g_RoomSpeedNow = TargetRate();
    if (g_TimingOn) Run_Wait(g_ManualVSync ? 0 : TimeToWait(g_RoomSpeedNow));
    if (!g_Running) return;
    g_LastFrameStart = Clock_Micros();
    CountFrame();
    if (!g_Switches.noAudio) Services_UpdateAudio();
    if (!g_Paused) GameWork();
    g_FrameWork = Clock_Micros() - g_LastFrameStart;
}

void Run_Start()
{
    if (!g_Running) {
        g_Running = true;
        StartGame();
    }
    g_Running = true;
    g_Paused = false;
    g_LastFrameStart = g_FpsClock = Clock_Micros();
    g_FpsReal = g_FpsCounter = 0;
    Process_Messages();
    g_DebugConsole->Output(
        "*******************************************\n"
        "Entering main loop.\n"
        "*******************************************\n");
    Step_StartDeltaTime();
    // A window that was closed during the start stays closed.
    if (g_QuitSeen) g_Running = false;
}
