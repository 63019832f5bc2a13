#pragma once
// The run state of the process and the frame driver.

#include <cstdint>

#include "Platform/MemoryManager.h"

struct RunnerData;

extern bool g_Running;         // cleared by a window quit and by the requests -100 and -400
extern bool g_Paused;          // a debugger holds the game
extern bool g_RestartFlag;     // start over after the teardown
extern int32_t g_SleepMargin;  // milliseconds kept out of the blocking wait
extern bool g_TimingOn, g_ManualVSync, g_DrawEnabled;
extern int64_t g_LastFrameStart, g_FrameStart, g_FpsClock;  // microseconds
extern int32_t g_FpsReal, g_FpsCounter, g_RoomSpeedNow;
extern int64_t g_DeltaTime;   // microseconds between two steps
extern int64_t g_FrameCount;  // finished steps
extern int64_t g_FrameWork;   // microseconds of work in the last frame, without the wait

// The command line, parsed. Paths are absolute against the launch folder.
struct Switches {
    bool debug = false, trace = false, vmTrace = false, extTrace = false;
    bool noErrors = false, oldExec = false, noAudio = false, inAWindow = false;
    bool steam = false, software = false, intel = false, vanillaGfx = false;
    bool gl = false;  // insists on the GL device
    bool audioDebug = false, networkDebug = false, headless = false;
    bool sleepMarginGiven = false, multiVb = false, noVb = false;
    bool compressTextures = false, manualVSyncGiven = false, noDirectInput = false;
    int32_t debugLevel = 0;
    VxString game, exitTo, dir, record, playback, output, debugOutput, profileDump;
    int32_t profileFrames = 0;
    VxString playerUrl;
    VxVector<VxString> parameters;  // every token and value, in order
};
extern Switches g_Switches;

int64_t Clock_Micros();  // since start-up
void Clock_Init();

// Blocks until `micros` have passed (0 to 3,000,000), pumping messages while it spins.
void Run_Wait(int64_t micros);
void Process_Messages();
extern bool g_QuitSeen;

// ---- the player that runs other games
// Another game that this one asked for: the frame's end stops this one, and the
// process starts over with it.
struct PlayerRequest {
    VxString game;    // its file; empty for none
    VxString goBack;  // the game to go back to when that one ends; may be empty
};
extern PlayerRequest g_PlayerRequest;
extern bool g_LaunchedByPlayer;  // this run is such a game
void vxg_player_run(const char* game, const char* goBack);

bool InitGameSystem();
bool InitGame();
bool PrepareGame();
void Run_Start();
void Run_Frame();
void StartGame();
void EndGame();
void Shutdown();
void Finish();

// The whole life of the process for one attachment; the exit code.
int Runner_Main(int argc, const char* const* argv, const RunnerData& attachment);

// One frame: a step and a draw.
void DoAStep();
void RunStepEvent(int32_t subtype);
void Step_StartDeltaTime();  // the next g_DeltaTime counts from now
