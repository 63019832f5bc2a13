#include "Files/Run/Run_State.h"

#include "Files/Run/Run_Modules.h"
#include "Host/Host.h"

bool g_Running, g_Paused, g_RestartFlag;
int32_t g_SleepMargin;
bool g_TimingOn, g_ManualVSync, g_DrawEnabled;
int64_t g_LastFrameStart, g_FrameStart, g_FpsClock;
int32_t g_FpsReal, g_FpsCounter, g_RoomSpeedNow;
int64_t g_DeltaTime, g_FrameCount, g_FrameWork;
Switches g_Switches;
PlayerRequest g_PlayerRequest;
bool g_LaunchedByPlayer;

namespace {

constexpr int32_t kDefaultSleepMargin = 10;  // milliseconds
constexpr int64_t kLongestWait = 3000000;    // microseconds

int64_t g_clockStart;

}  // namespace

void RunState_Reset()
{
    g_Running = g_Paused = false;
    g_SleepMargin = kDefaultSleepMargin;
    g_TimingOn = g_DrawEnabled = true;
    g_ManualVSync = false;
    g_LastFrameStart = g_FrameStart = g_FpsClock = 0;
    g_FpsReal = g_FpsCounter = 0;
    g_RoomSpeedNow = 60;
    g_DeltaTime = g_FrameCount = g_FrameWork = 0;
    g_PlayerRequest = PlayerRequest();
}

void RunState_Free()
{
    g_Switches = Switches();
    g_PlayerRequest = PlayerRequest();
}

void vxg_player_run(const char* game, const char* goBack)
{
    g_PlayerRequest = {game, goBack};
}

void Clock_Init()
{
    g_clockStart = g_Host.clock.Micros();
}
int64_t Clock_Micros()
{
    return g_Host.clock.Micros() - g_clockStart;
}

// Blocks for all but the margin and spins the rest, so that a frame starts on time
// and messages keep flowing.
void Run_Wait(int64_t micros)
{
    if (micros <= 0) return;
    if (micros > kLongestWait) micros = kLongestWait;
    const int64_t start = Clock_Micros();
    const int64_t millis = (micros - static_cast<int64_t>(g_SleepMargin) * 1000) / 1000;
    if (millis > 0) g_Host.clock.Block(static_cast<int32_t>(millis));
    for (;;) {
        Process_Messages();
        const int64_t now = Clock_Micros();
        if (now < start || now >= start + micros) return;
        g_Host.clock.Spin();
    }
}
