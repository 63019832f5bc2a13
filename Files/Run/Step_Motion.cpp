// Motion: speeds change, then positions.

#include "Files/Room/Room_Main.h"
#include "Files/Run/Step.h"
#include "Files/Run/Walk.h"

void Step_Motion()
{
    const uint64_t snapshot = Walk_Begin();
    for (CInstance* instance = Run_Room->activeHead; instance;) {
        CInstance* following = instance->next;
        if (instance->Alive()) {
            Instance_FrictionAndGravity(instance);
            if (Instance_UpdatePath(instance) && instance->createCounter <= snapshot)
                Perform_Event(instance, instance, EVENT_OTHER, OTHER_END_OF_PATH);
            instance->SetPosition(instance->x + instance->hspeed, instance->y + instance->vspeed);
        }
        instance = following;
    }
}
