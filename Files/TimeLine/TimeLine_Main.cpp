#include "Files/TimeLine/TimeLine_Main.h"

#include <algorithm>
#include <cstring>

#include "Files/Base/Archive_Records.h"
#include "Files/Code/CCode.h"
#include "Files/Object/CInstance.h"
#include "Files/Object/Object_Main.h"

namespace {

VxVector<CTimeline*> s_Timelines;

uint32_t Word(const uint8_t* at)
{
    uint32_t word;
    std::memcpy(&word, at, sizeof word);
    return word;
}

bool Earlier(const CTimelineMoment& a, const CTimelineMoment& b)
{
    return a.time < b.time;
}

// The code of the first action in the list at `offset`.
CCode* FirstAction(const uint8_t* base, uint32_t offset)
{
    if (!offset || Word(base + offset) == 0) return nullptr;
    const uint32_t first = Word(base + offset + 4);
    if (!first) return nullptr;
    ArchiveAction action;
    std::memcpy(&action, base + first, sizeof action);
    return action.codeId == -1 ? nullptr : Code_Make(action.codeId);
}

CTimeline* LoadOne(const uint8_t* base, const uint8_t* record)
{
    ArchiveTimeline head;
    std::memcpy(&head, record, sizeof head);
    CTimeline* timeline = VxNew<CTimeline>();
    if (head.name) timeline->name = reinterpret_cast<const char*>(base + head.name);
    const uint8_t* moment = record + sizeof head;
    for (uint32_t i = 0; i < head.momentCount; ++i, moment += 8)
        timeline->moments.push_back(
            {static_cast<int32_t>(Word(moment)), FirstAction(base, Word(moment + 4))});
    std::stable_sort(timeline->moments.begin(), timeline->moments.end(), Earlier);
    return timeline;
}

void RunMoment(CInstance* instance, const CTimelineMoment& moment)
{
    const int32_t object = Current_Event_Object;
    const int32_t type = Current_Event_Type;
    const int32_t number = Current_Event_Number;
    Current_Event_Object = instance->object_index;
    Current_Event_Type = kTimelineEvent;
    Current_Event_Number = moment.time;
    RValue dropped;
    Code_Execute(instance, instance, moment.code, &dropped, 0);
    FREE_RValue(&dropped);
    Current_Event_Object = object;
    Current_Event_Type = type;
    Current_Event_Number = number;
}

// Runs the moments between two positions. False when one of them set the position
// or the timeline, which then stays as the moment left it.
bool RunPassed(CInstance* instance, const CTimeline& timeline, float from, float to)
{
    const int32_t index = instance->timeline_index;
    const size_t count = timeline.moments.size();
    for (size_t i = 0; i < count; ++i) {
        const CTimelineMoment& moment = timeline.moments[to < from ? count - 1 - i : i];
        const float time = static_cast<float>(moment.time);
        if (to >= from ? time < from || time >= to : time > from || time <= to) continue;
        RunMoment(instance, moment);
        if (instance->timeline_position != from || instance->timeline_index != index) return false;
    }
    return true;
}

}  // namespace

void TimeLine_Init()
{
    TimeLine_Quit();
}

void TimeLine_Quit()
{
    for (CTimeline* timeline : s_Timelines) VxDelete(timeline);
    VxVector<CTimeline*>().swap(s_Timelines);
}

bool TimeLine_Load(const uint8_t* chunk, uint32_t, const uint8_t* archiveBase)
{
    const uint32_t count = Word(chunk);
    for (uint32_t i = 0; i < count; ++i) {
        const uint32_t offset = Word(chunk + 4 + i * 4);
        s_Timelines.push_back(offset ? LoadOne(archiveBase, archiveBase + offset) : nullptr);
    }
    return true;
}

int32_t TimeLine_Count()
{
    return static_cast<int32_t>(s_Timelines.size());
}

const CTimeline* TimeLine_Data(int32_t index)
{
    return index >= 0 && index < TimeLine_Count() ? s_Timelines[static_cast<size_t>(index)]
                                                  : nullptr;
}

int32_t TimeLine_Add(CTimeline* timeline)
{
    std::stable_sort(timeline->moments.begin(), timeline->moments.end(), Earlier);
    s_Timelines.push_back(timeline);
    return TimeLine_Count() - 1;
}

void TimeLine_Advance(CInstance* instance)
{
    const CTimeline* timeline = TimeLine_Data(instance->timeline_index);
    if (!instance->timeline_running || !timeline || timeline->moments.empty()) return;
    const float from = instance->timeline_position;
    const float to = from + instance->timeline_speed;
    instance->timelinePrevious = from;
    if (!RunPassed(instance, *timeline, from, to)) return;
    instance->timeline_position = to;
    if (!instance->timeline_loop) return;
    const float last = static_cast<float>(timeline->moments.back().time);
    if (to > last) instance->timeline_position = 0;
    if (to < 0) instance->timeline_position = last;
}
