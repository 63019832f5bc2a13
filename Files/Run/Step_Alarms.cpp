// Alarms: one walk for the whole phase, all of alarm 0 before any of alarm 1.

#include "Files/Run/Step.h"
#include "Files/Run/Walk.h"

void Step_Alarms()
{
    const uint64_t snapshot = Walk_Begin();
    for (int32_t number = 0; number < kAlarmCount; ++number) {
        Walk_Responders(snapshot, EVENT_ALARM, number, [number](CInstance* instance) {
            int32_t& alarm = instance->alarm[number];
            if (alarm < 0 || --alarm != 0) return;
            Perform_Event(instance, instance, EVENT_ALARM, number);
        });
    }
}
