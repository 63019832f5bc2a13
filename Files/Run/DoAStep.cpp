// One frame: the phases of a step in their order, and the draw.

#include "Files/Base/Archive_Main.h"
#include "Files/Graphics/Draw_Room.h"
#include "Files/Graphics/GpuState.h"
#include "Files/Graphics/Window.h"
#include "Files/IO/IO.h"
#include "Files/Room/Room_Main.h"
#include "Files/Run/Run_State.h"
#include "Files/Run/Services.h"
#include "Files/Run/Step.h"
#include "Files/Run/Walk.h"

namespace {

int64_t s_LastStep = 0;  // clock at the last step, microseconds

void TakeDeltaTime()
{
    const int64_t now = Clock_Micros();
    g_DeltaTime = now - s_LastStep;
    s_LastStep = now;
}

bool Frozen()
{
    return (g_GameOptions.bits & OPTION_FREEZE) != 0 && !g_WindowFocus;
}

// What every instance starts a step with; true when a timeline runs.
bool BeginInstances()
{
    bool timelines = false;
    for (CInstance* instance = Run_Room ? Run_Room->activeHead : nullptr; instance;) {
        CInstance* following = instance->next;
        instance->xprevious = instance->x;
        instance->yprevious = instance->y;
        instance->path_positionprevious = instance->path_position;
        Instance_Animate(instance);
        timelines = timelines || instance->timeline_running;
        instance = following;
    }
    return timelines;
}

// Between two phases: pending changes take effect, and a room change that was asked
// for ends the frame. False ends it.
bool Check()
{
    ApplyPendingChanges();
    return New_Room == ROOM_NONE;
}

// A phase and its check.
bool Phase(void (*run)())
{
    run();
    return Check();
}

void BeginStep()
{
    RunStepEvent(STEP_BEGIN);
}
void NormalStep()
{
    RunStepEvent(STEP_NORMAL);
}
void EndStep()
{
    RunStepEvent(STEP_END);
}

void OuterServices()
{
    Services_UpdateNetwork();
    Steam_Tick();
}

void NoTimelines() {}

// A physics world would step in place of both.
void Motion()
{
    if (!Run_Room->physicsWorld) Step_Motion();
}
void Collisions()
{
    if (!Run_Room->physicsWorld) Step_Collisions();
}

// The phases in which game code runs; false when one asked for another room.
bool RunPhases(bool timelines)
{
    return Phase(BeginStep) && Phase(OuterServices) &&
           Phase(timelines ? Step_Timelines : NoTimelines) && Phase(Step_Alarms) &&
           Phase(IO_KeyboardEvents) && Phase(IO_JoystickEvents) && Phase(IO_MouseEvents) &&
           Phase(NormalStep) && Phase(Motion) && Phase(Step_OutsideAndBoundary) &&
           Phase(AsyncPump) && Phase(Collisions) && Phase(EndStep);
}

}  // namespace

void Step_StartDeltaTime()
{
    s_LastStep = Clock_Micros();
}

void RunStepEvent(int32_t subtype)
{
    Walk_RunEvent(EVENT_STEP, subtype);
}

void DoAStep()
{
    TakeDeltaTime();
    GpuState_Apply();
    Services_ApplySavedState();
    IO_Update();
    if (Frozen() || !Run_Room) return;
    if (!RunPhases(BeginInstances())) return;
    Services_UpdateParticles();
    PurgeInstances();
    if (g_DrawEnabled) {
        DrawRoom();
        ApplyPendingChanges();
    }
    Room_ScrollBackgrounds();
    ApplyPendingChanges();
    ++g_FrameCount;
    ++g_CursorFrame;
}
