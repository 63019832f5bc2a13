#include "Files/Room/Room_Main.h"

#include <cstdio>
#include <cstring>

#include "Files/Base/Error.h"
#include "Files/Code/CCode.h"
#include "Files/Room/Room_Tables.h"

CRoom* Run_Room = nullptr;
int32_t Current_Room = 0;
int32_t New_Room = ROOM_NONE;
int32_t g_LastTileId = 0;
RoomTables g_RoomTables;

namespace {

// Position of a room in the room order, -1 when it is not in it.
int32_t PositionInOrder(int32_t index)
{
    for (size_t i = 0; i < g_RoomTables.order.size(); ++i)
        if (g_RoomTables.order[i] == index) return static_cast<int32_t>(i);
    return -1;
}

// The room `step` places further in the order, -1 when there is none.
int32_t Neighbour(int32_t index, int32_t step)
{
    if (!Room_Exists(index)) return -1;
    const int32_t position = PositionInOrder(index);
    if (position < 0) return -1;
    const int32_t wanted = position + step;
    return wanted >= 0 && wanted < Room_OrderCount() ? Room_OrderAt(wanted) : -1;
}

void RefuseChange(const char* message)
{
    Error_Show(message, true);
    New_Room = ROOM_STOP;
}

void DeleteAll(VxVector<CRoom*>* rooms)
{
    for (CRoom* room : *rooms) VxDelete(room);
    VxVector<CRoom*>().swap(*rooms);
}

}  // namespace

void Room_Init()
{
    Room_Quit();
    Current_Room = 0;
    New_Room = ROOM_NONE;
    g_LastTileId = 0;
}

void Room_Quit()
{
    Room_DeleteRunning();
    DeleteAll(&g_RoomTables.templates);
    VxVector<int32_t>().swap(g_RoomTables.order);
    VxVector<CInstance*>().swap(g_RoomTables.carried);
    g_RoomTables.archiveBase = nullptr;
}

void Room_SetOrder(const int32_t* order, int32_t count)
{
    g_RoomTables.order.assign(order, order + count);
}

int32_t Room_OrderCount()
{
    return static_cast<int32_t>(g_RoomTables.order.size());
}

int32_t Room_OrderAt(int32_t position)
{
    if (position < 0 || position >= Room_OrderCount()) return -1;
    return g_RoomTables.order[static_cast<size_t>(position)];
}

void Room_ResetRunning()
{
    Room_DeleteRunning();
    g_RoomTables.running.assign(g_RoomTables.templates.size(), nullptr);
}

void Room_DeleteRunning()
{
    Room_DropCarried();
    DeleteAll(&g_RoomTables.running);
    Run_Room = nullptr;
}

int32_t Room_Count()
{
    return static_cast<int32_t>(g_RoomTables.templates.size());
}

CRoom* Room_Template(int32_t index)
{
    if (index < 0 || index >= Room_Count()) return nullptr;
    return g_RoomTables.templates[static_cast<size_t>(index)];
}

bool Room_Exists(int32_t index)
{
    return Room_Template(index) != nullptr;
}

const char* Room_Name(int32_t index)
{
    const CRoom* room = Room_Template(index);
    return room ? room->name : "<undefined>";
}

int32_t Room_Find(const char* name)
{
    for (int32_t i = 0; i < Room_Count(); ++i)
        if (Room_Exists(i) && std::strcmp(Room_Name(i), name) == 0) return i;
    return -1;
}

int32_t Room_Next(int32_t index)
{
    return Neighbour(index, 1);
}
int32_t Room_Previous(int32_t index)
{
    return Neighbour(index, -1);
}

void Room_Goto(int32_t index)
{
    if (Room_Exists(index)) {
        New_Room = index;
        return;
    }
    char message[64];
    std::snprintf(message, sizeof message, "Unexisting room number: %d", index);
    RefuseChange(message);
}

void Room_GotoNext()
{
    const int32_t count = Room_OrderCount();
    if (count == 0 || Current_Room == Room_OrderAt(count - 1))
        RefuseChange("Moving to next room after the last room.");
    else
        Room_Goto(Room_OrderAt(PositionInOrder(Current_Room) + 1));
}

void Room_GotoPrevious()
{
    if (Current_Room == Room_OrderAt(0) || Room_OrderCount() == 0)
        RefuseChange("Moving to previous room before the first room.");
    else
        Room_Goto(Room_OrderAt(PositionInOrder(Current_Room) - 1));
}

bool Room_Prepare()
{
    for (CRoom* room : g_RoomTables.templates)
        if (room && room->creationCode) room->creationCodeName = room->creationCode->name;
    return true;
}
