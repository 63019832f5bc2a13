// Room records of the archive to templates, and templates to running rooms.

#include <cstdio>
#include <cstring>

#include "Files/Background/CBackground.h"
#include "Files/Code/CCode.h"
#include "Files/Object/Instance_Main.h"
#include "Files/Object/Object_Main.h"
#include "Files/Room/Room_Tables.h"

namespace {

// A count followed by offsets of records, in place.
template <class Record>
class List {
public:
    List(const uint8_t* base, const uint8_t* body) : base_(base), body_(body) {}
    int32_t Count() const { return body_ ? static_cast<int32_t>(Word(0)) : 0; }
    // Null for an empty slot.
    Record* At(int32_t index) const
    {
        const uint32_t offset = Word(index + 1);
        // The loaded archive is a writable copy; codes are bound in place.
        return offset ? reinterpret_cast<Record*>(const_cast<uint8_t*>(base_ + offset)) : nullptr;
    }

private:
    uint32_t Word(int32_t index) const
    {
        uint32_t word;
        std::memcpy(&word, body_ + index * 4, sizeof word);
        return word;
    }
    const uint8_t* base_;
    const uint8_t* body_;
};

template <class Record>
List<Record> ListAt(ArchiveOffset offset)
{
    const uint8_t* base = g_RoomTables.archiveBase;
    return List<Record>(base, offset ? base + offset : nullptr);
}

const char* Text(ArchiveString offset)
{
    return offset ? reinterpret_cast<const char*>(g_RoomTables.archiveBase + offset) : nullptr;
}

void LoadBackgrounds(CRoom* room, const List<ArchiveRoomBackground>& list)
{
    for (int32_t i = 0; i < list.Count() && i < kRoomSlots; ++i) {
        const ArchiveRoomBackground* record = list.At(i);
        if (!record) continue;
        CRoomBackground& entry = room->backgrounds[i];
        entry.visible = record->visible != 0;
        entry.foreground = record->foreground != 0;
        entry.index = record->backgroundIndex;
        entry.x = static_cast<float>(record->x);
        entry.y = static_cast<float>(record->y);
        entry.htiled = record->tileHorizontal != 0;
        entry.vtiled = record->tileVertical != 0;
        entry.hspeed = static_cast<float>(record->horizontalSpeed);
        entry.vspeed = static_cast<float>(record->verticalSpeed);
        const CBackground* picture = record->stretch ? Background_Data(entry.index) : nullptr;
        if (picture && picture->width > 0)
            entry.xscale = static_cast<float>(room->width) / static_cast<float>(picture->width);
        if (picture && picture->height > 0)
            entry.yscale = static_cast<float>(room->height) / static_cast<float>(picture->height);
    }
}

void LoadViews(CRoom* room, const List<ArchiveRoomView>& list)
{
    for (int32_t i = 0; i < list.Count() && i < kRoomSlots; ++i) {
        const ArchiveRoomView* record = list.At(i);
        if (!record) continue;
        CView& view = room->views[i];
        view.visible = record->visible != 0;
        view.xview = static_cast<float>(record->viewX);
        view.yview = static_cast<float>(record->viewY);
        view.wview = static_cast<float>(record->viewWidth);
        view.hview = static_cast<float>(record->viewHeight);
        view.xport = record->portX;
        view.yport = record->portY;
        view.wport = record->portWidth;
        view.hport = record->portHeight;
        view.hborder = record->borderH;
        view.vborder = record->borderV;
        view.hspeed = record->speedH;
        view.vspeed = record->speedV;
        view.object = record->followObject;
    }
}

int32_t BindCode(int32_t row)
{
    return row == -1 ? -1 : Code_Make(row)->number;
}

// A room is loaded once: the records then hold numbers of code objects.
void BindInstanceCodes(const List<ArchiveRoomInstance>& list)
{
    for (int32_t i = 0; i < list.Count(); ++i) {
        ArchiveRoomInstance* record = list.At(i);
        if (!record) continue;
        record->creationCode = BindCode(record->creationCode);
        record->preCreateCode = BindCode(record->preCreateCode);
    }
}

CRoom* LoadTemplate(const ArchiveRoom* record)
{
    CRoom* room = VxNew<CRoom>();
    room->record = record;
    if (record->name) room->name = Text(record->name);
    if (record->caption) room->caption = Text(record->caption);
    room->speed = static_cast<int32_t>(record->speed);
    room->width = static_cast<int32_t>(record->width);
    room->height = static_cast<int32_t>(record->height);
    room->persistent = record->persistent != 0;
    room->colour = static_cast<int32_t>(record->colour);
    room->showColour = record->showColour != 0;
    room->viewsEnabled = (record->flags & 1) != 0;
    room->clearViewBackground = (record->flags & 2) != 0;
    room->clearDisplayBuffer = (record->flags & 4) == 0;
    room->physicsWorld = record->physicsWorld != 0;
    if (record->codeId != -1) room->creationCode = Code_Make(record->codeId);
    LoadBackgrounds(room, ListAt<ArchiveRoomBackground>(record->backgrounds));
    LoadViews(room, ListAt<ArchiveRoomView>(record->views));
    BindInstanceCodes(ListAt<ArchiveRoomInstance>(record->instances));
    return room;
}

// Visits the records of a template's instances or tiles, from its own lists when it
// has them.
template <class Visit>
void VisitInstances(const CRoom& room, Visit visit)
{
    if (room.content) {
        for (const ArchiveRoomInstance& record : room.content->instances) visit(record);
    } else if (room.record) {
        const auto list = ListAt<ArchiveRoomInstance>(room.record->instances);
        for (int32_t i = 0; i < list.Count(); ++i)
            if (const ArchiveRoomInstance* record = list.At(i)) visit(*record);
    }
}

template <class Visit>
void VisitTiles(const CRoom& room, Visit visit)
{
    if (room.content) {
        for (const ArchiveRoomTile& record : room.content->tiles) visit(record);
    } else if (room.record) {
        const auto list = ListAt<ArchiveRoomTile>(room.record->tiles);
        for (int32_t i = 0; i < list.Count(); ++i)
            if (const ArchiveRoomTile* record = list.At(i)) visit(*record);
    }
}

float AlphaOf(uint32_t colour)
{
    return static_cast<float>(colour >> 24) / 255.0F;
}
int32_t BlendOf(uint32_t colour)
{
    return static_cast<int32_t>(colour & 0xFFFFFFU);
}

void MakeInstance(CRoom* room, const ArchiveRoomInstance& record)
{
    if (!Object_Data(record.objectIndex)) return;
    CInstance* instance =
        VxNew<CInstance>(static_cast<float>(record.x), static_cast<float>(record.y), record.id,
                         record.objectIndex, true);
    instance->creationCode = Code_FromNumber(record.creationCode);
    instance->preCreateCode = Code_FromNumber(record.preCreateCode);
    instance->image_xscale = record.scaleX;
    instance->image_yscale = record.scaleY;
    instance->image_blend = BlendOf(record.colour);
    instance->image_alpha = AlphaOf(record.colour);
    instance->image_angle = record.rotation;
    Current_Event_Object = record.objectIndex;
    room->InsertByDepth(instance);
    Instance_AddId(instance);
    room->newInstanceIds.push_back(record.id);
}

CTile TileOf(const ArchiveRoomTile& record)
{
    CTile tile;
    tile.x = static_cast<float>(record.x);
    tile.y = static_cast<float>(record.y);
    tile.backgroundIndex = record.backgroundIndex;
    tile.sourceX = record.sourceX;
    tile.sourceY = record.sourceY;
    tile.width = record.width;
    tile.height = record.height;
    tile.depth = static_cast<float>(record.depth);
    tile.id = record.id;
    tile.xscale = record.scaleX;
    tile.yscale = record.scaleY;
    tile.blend = BlendOf(record.colour);
    tile.alpha = AlphaOf(record.colour);
    return tile;
}

void CopySettings(CRoom* room, const CRoom& source)
{
    room->caption = source.caption;
    room->speed = source.speed;
    room->width = source.width;
    room->height = source.height;
    room->persistent = source.persistent;
    room->colour = source.colour;
    room->showColour = source.showColour;
    room->viewsEnabled = source.viewsEnabled;
    room->clearViewBackground = source.clearViewBackground;
    room->clearDisplayBuffer = source.clearDisplayBuffer;
    room->creationCodeName = source.creationCodeName;
    room->creationCode = source.creationCode;
    room->physicsWorld = source.physicsWorld;
    for (int i = 0; i < kRoomSlots; ++i) {
        room->backgrounds[i] = source.backgrounds[i];
        room->views[i] = source.views[i];
    }
}

}  // namespace

bool Room_Load(const uint8_t* chunk, uint32_t, const uint8_t* archiveBase)
{
    g_RoomTables.archiveBase = archiveBase;
    const List<ArchiveRoom> list(archiveBase, chunk);
    g_RoomTables.templates.reserve(static_cast<size_t>(list.Count()));
    for (int32_t i = 0; i < list.Count(); ++i) {
        const ArchiveRoom* record = list.At(i);
        g_RoomTables.templates.push_back(record ? LoadTemplate(record) : nullptr);
    }
    return true;
}

void Room_CopyTemplate(CRoom* room, const CRoom& source)
{
    room->name = source.name;
    room->record = source.record;
    CopySettings(room, source);
    VisitInstances(source, [room](const ArchiveRoomInstance& record) {
        if (record.objectIndex >= 0) MakeInstance(room, record);
    });
    VisitTiles(source,
               [room](const ArchiveRoomTile& record) { room->tiles.push_back(TileOf(record)); });
}

int32_t Room_AddTemplate()
{
    CRoom* room = VxNew<CRoom>();
    const int32_t index = Room_Count();
    room->ownName = "room";
    char digits[16];
    std::snprintf(digits, sizeof digits, "%d", index);
    room->ownName += digits;
    room->name = room->ownName.c_str();
    g_RoomTables.templates.push_back(room);
    return index;
}

CRoomContent* Room_OwnContent(CRoom* room)
{
    if (room->content) return room->content;
    CRoomContent* content = VxNew<CRoomContent>();
    VisitInstances(*room, [content](const ArchiveRoomInstance& record) {
        content->instances.push_back(record);
    });
    VisitTiles(*room,
               [content](const ArchiveRoomTile& record) { content->tiles.push_back(record); });
    return room->content = content;
}

void Room_AssignTemplate(CRoom* room, const CRoom& source)
{
    if (room == &source) return;
    CRoomContent* content = VxNew<CRoomContent>();
    VisitInstances(source, [content](const ArchiveRoomInstance& record) {
        content->instances.push_back(record);
    });
    VisitTiles(source,
               [content](const ArchiveRoomTile& record) { content->tiles.push_back(record); });
    VxDelete(room->content);
    room->content = content;
    CopySettings(room, source);
}
