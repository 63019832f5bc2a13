// The start and the end of a room.

#include "Files/Base/Error.h"
#include "Files/Code/CCode.h"
#include "Files/IO/IO.h"
#include "Files/Object/Instance_Main.h"
#include "Files/Object/Object_Main.h"
#include "Files/Room/Room_Tables.h"
#include "Files/Run/Run_State.h"
#include "Files/Run/Services.h"

namespace {

constexpr size_t kCarriedStart = 10;

void RunCode(CInstance* self, CCode* code)
{
    if (!code) return;
    RValue dropped;
    Code_Execute(self, self, code, &dropped, 0);
    FREE_RValue(&dropped);
}

// A persistent room that was seen before: its resting instances can be found again.
void WakeInstances(CRoom* room)
{
    for (CInstance* instance = room->activeHead; instance; instance = instance->next) {
        instance->AddToObjectLists();
        Instance_AddId(instance);
    }
    for (CInstance* instance = room->deactivatedHead; instance; instance = instance->next)
        Instance_AddId(instance);
}

// Makes Run_Room the running room of `index`; true when it had to be made.
bool EnterRoom(int32_t index)
{
    Current_Room = index;
    VxVector<CRoom*>& running = g_RoomTables.running;
    const size_t slot = static_cast<size_t>(index);
    if (slot >= running.size()) running.resize(slot + 1, nullptr);
    Run_Room = running[slot];
    if (Run_Room) {
        WakeInstances(Run_Room);
        return false;
    }
    Run_Room = running[slot] = VxNew<CRoom>();
    if (const CRoom* source = Room_Template(index)) Room_CopyTemplate(Run_Room, *source);
    return true;
}

// The room's record made a twin of the carried instance: it takes the carried values.
void OverwriteTwin(CInstance* twin, const CInstance& saved)
{
    const float stood = twin->sortedDepth;
    const bool sameObject = twin->object == saved.object;
    if (!sameObject) twin->RemoveFromObjectLists();
    twin->CopyFrom(saved);
    if (!sameObject) twin->AddToObjectLists();
    twin->sortedDepth = stood;
    if (twin->depth == stood) return;
    Run_Room->RemoveActive(twin);
    Run_Room->InsertByDepth(twin);
}

void BringInCarried()
{
    for (CInstance* saved : g_RoomTables.carried) {
        CInstance* instance = Instance_FromId(saved->id);
        if (instance && !instance->deactivated) {
            OverwriteTwin(instance, *saved);
        } else {
            instance = VxNew<CInstance>(saved->x, saved->y, saved->id, saved->object_index, true);
            instance->CopyFrom(*saved);
            Run_Room->InsertByDepth(instance);
            Instance_AddId(instance);
        }
        instance->physics = nullptr;
        instance->carried = true;
    }
    Room_DropCarried();
}

// The events and codes by which a placed instance comes to life, for all of a new
// room in record order.
void CreateStep()
{
    VxVector<int32_t>& ids = Run_Room->newInstanceIds;
    for (const int32_t id : ids) {
        CInstance* instance = Instance_FromId(id);
        if (!instance) continue;
        if (instance->carried) {
            instance->carried = false;
            continue;
        }
        if (instance->marked) continue;
        Perform_Event(instance, instance, EVENT_PRECREATE, 0);
        RunCode(instance, instance->preCreateCode);
        Perform_Event(instance, instance, EVENT_CREATE, 0);
        RunCode(instance, instance->creationCode);
        instance->created = true;
    }
    VxVector<int32_t>().swap(ids);
}

// The room's creation code sees an instance of its own that no list holds.
void RunCreationCode()
{
    if (!Run_Room->creationCode) return;
    CInstance* stand = VxNew<CInstance>(0.0F, 0.0F, 0, 0, false);
    RunCode(stand, Run_Room->creationCode);
    VxDelete(stand);
}

void CarryPersistent()
{
    VxVector<CInstance*>& carried = g_RoomTables.carried;
    Room_DropCarried();
    carried.reserve(kCarriedStart);
    for (CInstance* instance = Run_Room->activeHead; instance; instance = instance->next) {
        if (!instance->Alive() || !instance->persistent) continue;
        CInstance* saved =
            VxNew<CInstance>(instance->x, instance->y, instance->id, instance->object_index, false);
        saved->CopyFrom(*instance);
        carried.push_back(saved);
        instance->marked = true;
        ++g_MarkedCount;
    }
}

// A persistent room keeps its instances out of the world's sight, those that are
// deactivated too: what finds one by its id would move it in another room's lists.
void RestRoom()
{
    // Nothing pending may outlive the room's turn: the lists that it would move the
    // instances in are then those of another room.
    ApplyPendingChanges();
    PurgeInstances();  // what was destroyed while it waited to be activated
    for (CInstance* instance = Run_Room->activeHead; instance; instance = instance->next) {
        instance->RemoveFromObjectLists();
        Instance_RemoveId(instance);
    }
    for (CInstance* instance = Run_Room->deactivatedHead; instance; instance = instance->next)
        Instance_RemoveId(instance);
}

void RunGameEndEvents()
{
    const uint64_t snapshot = Walk_Begin();
    for (CInstance* instance = Run_Room->activeHead; instance;) {
        CInstance* following = instance->next;
        if (instance->persistent && Walk_Takes(instance, snapshot))
            Perform_Event(instance, instance, EVENT_CLEANUP, 0);
        instance = following;
    }
    RunAllInstances(EVENT_OTHER, OTHER_GAME_END);
    PurgeInstances();
}

}  // namespace

void Room_DropCarried()
{
    for (CInstance* saved : g_RoomTables.carried) VxDelete(saved);
    g_RoomTables.carried.clear();
}

void StartRoom(int32_t index, bool gameStart)
{
    if (!Room_Exists(index)) {
        Room_Goto(index);
        return;
    }
    New_Room = ROOM_NONE;
    if (gameStart) IO_Clear();
    Services_ClearEffects();
    const bool isNew = EnterRoom(index);
    Room_FitGameArea();
    BringInCarried();
    if (isNew) CreateStep();
    PurgeInstances();
    if (gameStart) {
        RunAllInstances(EVENT_OTHER, OTHER_GAME_START);
        PurgeInstances();
    }
    if (isNew) RunCreationCode();
    if (g_Switches.headless) Error_Exit(0);
    RunAllInstances(EVENT_OTHER, OTHER_ROOM_START);
    PurgeInstances();
}

void RunAllInstances(int32_t type, int32_t subtype)
{
    if (New_Room != ROOM_NONE || !Run_Room) return;
    const uint64_t snapshot = Walk_Begin();
    for (CInstance* instance = Run_Room->activeHead; instance;) {
        CInstance* following = instance->next;
        if (Walk_Takes(instance, snapshot))
            Perform_Event_Object(instance, instance, instance->object_index, type, subtype);
        instance = following;
    }
}

void EndRoom(bool gameEnd)
{
    if (!Run_Room) return;
    PurgeInstances();
    const int32_t requested = New_Room;
    New_Room = ROOM_NONE;
    RunAllInstances(EVENT_OTHER, OTHER_ROOM_END);
    PurgeInstances();
    if (gameEnd) RunGameEndEvents();
    New_Room = requested;
    Services_ClearRoom();
    CarryPersistent();
    PurgeInstances();
    if (Run_Room->persistent) {
        RestRoom();
    } else {
        g_RoomTables.running[static_cast<size_t>(Current_Room)] = nullptr;
        VxDelete(Run_Room);
        Run_Room = nullptr;
    }
    g_ActivationChanges.clear();
}
