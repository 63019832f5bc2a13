#pragma once
// A room: a template made from an archive record, or a running copy of one.

#include <cstdint>

#include "Files/Base/Archive_Records.h"
#include "Platform/MemoryManager.h"

class CInstance;
struct CCode;

inline constexpr int kRoomSlots = 8;  // backgrounds and views of a room

struct CRoomBackground {
    bool visible = false, foreground = false;
    int32_t index = -1;
    float x = 0, y = 0;
    bool htiled = true, vtiled = true;
    float hspeed = 0, vspeed = 0;
    float xscale = 1, yscale = 1;
    int32_t blend = 0xFFFFFF;
    float alpha = 1;
};

struct CView {
    bool visible = false;
    float xview = 0, yview = 0, wview = 640, hview = 480;
    int32_t xport = 0, yport = 0, wport = 640, hport = 480;
    float angle = 0;
    int32_t hborder = 32, vborder = 32;
    int32_t hspeed = -1, vspeed = -1;  // -1: no limit
    int32_t object = -1;               // object below 100000, else an instance id; -1 none
    int32_t surface_id = -1;
};

struct CTile {
    float x = 0, y = 0;
    int32_t backgroundIndex = -1;
    int32_t sourceX = 0, sourceY = 0, width = 0, height = 0;
    float depth = 0;
    int32_t id = 0;
    float xscale = 1, yscale = 1;
    int32_t blend = 0xFFFFFF;  // 0x00BBGGRR
    float alpha = 1;
    bool visible = true;
};

// The instances and tiles of a template whose content was changed at run time.
struct CRoomContent {
    VxVector<ArchiveRoomInstance> instances;  // code fields hold numbers of code objects
    VxVector<ArchiveRoomTile> tiles;
};

class CRoom {
public:
    CRoom() = default;
    ~CRoom();  // frees its instances, without events
    CRoom(const CRoom&) = delete;
    CRoom& operator=(const CRoom&) = delete;

    // The active list, lowest sortedDepth at the head.
    void InsertByDepth(CInstance* instance);
    void RemoveActive(CInstance* instance);
    void AddDeactivated(CInstance* instance);  // at the tail
    void RemoveDeactivated(CInstance* instance);

    const char* name = "";  // in the archive, or ownName
    VxString ownName;       // of a template made at run time
    VxString caption;
    int32_t speed = 30;
    int32_t width = 640, height = 480;
    bool persistent = false;
    int32_t colour = 0xC0C0C0;
    bool showColour = true;
    CRoomBackground backgrounds[kRoomSlots];
    bool viewsEnabled = false;
    bool clearViewBackground = false;
    bool clearDisplayBuffer = false;
    CView views[kRoomSlots];
    const char* creationCodeName = nullptr;
    CCode* creationCode = nullptr;
    bool physicsWorld = false;
    CInstance* activeHead = nullptr;
    CInstance* activeTail = nullptr;
    int32_t activeCount = 0;
    CInstance* deactivatedHead = nullptr;
    CInstance* deactivatedTail = nullptr;
    int32_t deactivatedCount = 0;
    VxVector<int32_t> newInstanceIds;  // in record order, until the Create step used them
    const ArchiveRoom* record = nullptr;
    CRoomContent* content = nullptr;  // owned; takes the place of the record's lists
    VxVector<CTile> tiles;
};
