#pragma once
// Timelines: codes that run at steps of an instance's own time.

#include <cstdint>

#include "Platform/MemoryManager.h"

class CInstance;
struct CCode;

struct CTimelineMoment {
    int32_t time;  // steps
    CCode* code;
};

struct CTimeline {
    const char* name = "";
    VxVector<CTimelineMoment> moments;  // ascending times
};

void TimeLine_Init();
void TimeLine_Quit();
bool TimeLine_Load(const uint8_t* chunk, uint32_t size, const uint8_t* archiveBase);
int32_t TimeLine_Count();
const CTimeline* TimeLine_Data(int32_t index);  // null when there is none
// Takes over the timeline; its index. For tools and tests.
int32_t TimeLine_Add(CTimeline* timeline);

// One step of an instance's timeline: the moments that it passes run, in order.
void TimeLine_Advance(CInstance* instance);
