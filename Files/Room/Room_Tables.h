#pragma once
// The tables behind the rooms, for the units of this folder.

#include "Files/Room/Room_Main.h"

struct RoomTables {
    VxVector<CRoom*> templates;    // by room index, null for an empty slot
    VxVector<CRoom*> running;      // by room index, null until a room's first start
    VxVector<int32_t> order;       // room indices in the order of play
    VxVector<CInstance*> carried;  // copies of persistent instances between two rooms
    const uint8_t* archiveBase = nullptr;
};
extern RoomTables g_RoomTables;

void Room_DropCarried();
