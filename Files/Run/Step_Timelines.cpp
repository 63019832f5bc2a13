// Timelines of all instances that run one.

#include "Files/Room/Room_Main.h"
#include "Files/Run/Step.h"
#include "Files/Run/Walk.h"
#include "Files/TimeLine/TimeLine_Main.h"

void Step_Timelines()
{
    const uint64_t snapshot = Walk_Begin();
    for (CInstance* instance = Run_Room->activeHead; instance;) {
        CInstance* following = instance->next;
        if (Walk_Takes(instance, snapshot)) TimeLine_Advance(instance);
        instance = following;
    }
}
