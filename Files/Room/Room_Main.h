#pragma once
// Rooms: templates, running rooms, start and end, and the requests to change.

#include <cstdint>

#include "Files/Room/CRoom.h"

extern CRoom* Run_Room;
extern int32_t Current_Room;
extern int32_t New_Room;  // a RoomRequest or a room index

enum RoomRequest : int32_t {
    ROOM_NONE = -1,
    ROOM_END_GAME = -100,
    ROOM_RESTART_GAME = -200,
    ROOM_LOAD_GAME = -300,
    ROOM_STOP = -400,  // after an error, or to run another game
};

extern int32_t g_LastTileId;

void Room_Init();
void Room_Quit();
bool Room_Load(const uint8_t* chunk, uint32_t size, const uint8_t* archiveBase);
bool Room_Prepare();
void Room_SetOrder(const int32_t* order, int32_t count);  // copied
int32_t Room_OrderCount();
int32_t Room_OrderAt(int32_t position);
void Room_ResetRunning();   // StartGame: one empty entry for each template
void Room_DeleteRunning();  // EndGame

int32_t Room_Count();                 // templates
CRoom* Room_Template(int32_t index);  // null when there is none
bool Room_Exists(int32_t index);
const char* Room_Name(int32_t index);  // "<undefined>" when there is none
int32_t Room_Find(const char* name);   // -1 when there is none
int32_t Room_Next(int32_t index);      // -1 at the end or for no room
int32_t Room_Previous(int32_t index);

void Room_Goto(int32_t index);  // a request; reports a room that does not exist
void Room_GotoNext();           // both report the end of the order
void Room_GotoPrevious();

// ---- templates
// Fills an empty room with a template's settings, tiles and instances. Runs no event.
void Room_CopyTemplate(CRoom* room, const CRoom& source);
int32_t Room_AddTemplate();  // a room with the defaults and no content; its index
// The template's content as lists of its own, copied from the archive at the first call.
CRoomContent* Room_OwnContent(CRoom* room);
// All of a template but its name.
void Room_AssignTemplate(CRoom* room, const CRoom& source);

void StartRoom(int32_t index, bool gameStart);
void EndRoom(bool gameEnd);
void SwitchRoom(int32_t index);
void RunAllInstances(int32_t type, int32_t subtype);
void Room_ScrollBackgrounds();
void Room_FollowViews();  // once a frame, before the views are drawn

// The size that the window's view mapping uses; set by StartRoom, told to the
// window when it changes.
void Room_FitGameArea();
