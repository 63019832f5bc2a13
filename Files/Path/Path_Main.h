#pragma once
// Paths of the archive: lines of points that something can move along.

#include <cstdint>

#include "Platform/MemoryManager.h"

struct CPathPoint {
    float x, y, speed;
};

struct CPath {
    const char* name = "";  // in the archive
    bool smooth = false;    // a curve through the points, otherwise straight lines
    bool closed = false;
    int32_t precision = 0;
    VxVector<CPathPoint> points;
};

void Path_Init();
void Path_Quit();
bool Path_Load(const uint8_t* chunk, uint32_t size, const uint8_t* archiveBase);
int32_t Path_Count();
const CPath* Path_Data(int32_t index);  // null when there is none
int32_t Path_Find(const char* name);    // -1 when there is none
