// Built-ins that change room templates; a running room takes no notice. A room
// number that names no template does nothing and gives -1.

#include "Files/Base/Error.h"
#include "Files/Code/CCode.h"
#include "Files/Function/Function_Registry.h"
#include "Files/Object/Instance_Main.h"
#include "Files/Object/Object_Main.h"
#include "Files/Room/Room_Main.h"

namespace {

constexpr uint32_t kOpaqueWhite = 0xFFFFFFFFU;

CRoom* TemplateOf(const RValue* args)
{
    return Room_Template(VXGetInt32(args, 0));
}

// A slot of the template's eight, or null.
template <class Slot>
Slot* SlotOf(Slot (&slots)[kRoomSlots], int32_t index)
{
    return index >= 0 && index < kRoomSlots ? &slots[index] : nullptr;
}

BUILTIN(F_RoomAdd)
{
    SetReal(result, Room_AddTemplate());
}

BUILTIN(F_RoomDuplicate)
{
    const CRoom* source = TemplateOf(args);
    if (!source) return SetReal(result, -1);
    const int32_t copy = Room_AddTemplate();
    Room_AssignTemplate(Room_Template(copy), *source);
    SetReal(result, copy);
}

BUILTIN(F_RoomAssign)
{
    CRoom* room = TemplateOf(args);
    const CRoom* source = Room_Template(VXGetInt32(args, 1));
    if (room && source) Room_AssignTemplate(room, *source);
    SetBool(result, room && source);
}

BUILTIN(F_RoomInstanceAdd)
{
    CRoom* room = TemplateOf(args);
    const int32_t object = VXGetInt32(args, 3);
    if (!room || !Object_Data(object)) return SetReal(result, -1);
    ArchiveRoomInstance record{};
    record.x = VXGetInt32(args, 1);
    record.y = VXGetInt32(args, 2);
    record.objectIndex = object;
    record.id = ++lastInstanceId;
    record.creationCode = record.preCreateCode = -1;
    record.scaleX = record.scaleY = 1;
    record.colour = kOpaqueWhite;
    Room_OwnContent(room)->instances.push_back(record);
    SetReal(result, record.id);
}

BUILTIN(F_RoomInstanceClear)
{
    if (CRoom* room = TemplateOf(args)) Room_OwnContent(room)->instances.clear();
}

// Arguments of room_tile_add: room, background, left, top, width, height, x, y,
// depth; the longer form adds both scales and the alpha.
void AddTile(RValue& result, const RValue* args, float xscale, float yscale, double alpha)
{
    CRoom* room = TemplateOf(args);
    if (!room) return SetReal(result, -1);
    ArchiveRoomTile record{};
    record.backgroundIndex = VXGetInt32(args, 1);
    record.sourceX = VXGetInt32(args, 2);
    record.sourceY = VXGetInt32(args, 3);
    record.width = VXGetInt32(args, 4);
    record.height = VXGetInt32(args, 5);
    record.x = VXGetInt32(args, 6);
    record.y = VXGetInt32(args, 7);
    record.depth = VXGetInt32(args, 8);
    record.id = ++g_LastTileId;
    record.scaleX = xscale;
    record.scaleY = yscale;
    const double shown = alpha < 0 ? 0 : alpha > 1 ? 1 : alpha;
    record.colour = static_cast<uint32_t>(shown * 255 + 0.5) << 24 | 0xFFFFFFU;
    Room_OwnContent(room)->tiles.push_back(record);
    SetReal(result, record.id);
}

BUILTIN(F_RoomTileAdd)
{
    AddTile(result, args, 1, 1, 1);
}

BUILTIN(F_RoomTileAddExt)
{
    AddTile(result, args, VXGetFloat(args, 9), VXGetFloat(args, 10), VXGetReal(args, 11));
}

BUILTIN(F_RoomTileClear)
{
    if (CRoom* room = TemplateOf(args)) Room_OwnContent(room)->tiles.clear();
}

BUILTIN(F_RoomSetWidth)
{
    if (CRoom* room = TemplateOf(args)) room->width = VXGetInt32(args, 1);
}

BUILTIN(F_RoomSetHeight)
{
    if (CRoom* room = TemplateOf(args)) room->height = VXGetInt32(args, 1);
}

BUILTIN(F_RoomSetCaption)
{
    if (CRoom* room = TemplateOf(args)) room->caption = VXGetString(args, 1).get();
}

BUILTIN(F_RoomSetPersistent)
{
    if (CRoom* room = TemplateOf(args)) room->persistent = VXGetBool(args, 1);
}

// Code is compiled with the game: the text names a row of its table, or is empty for
// no creation code.
BUILTIN(F_RoomSetCode)
{
    CRoom* room = TemplateOf(args);
    if (!room) return;
    const VXText name = VXGetString(args, 1);
    if (!*name.get()) {
        room->creationCode = nullptr;
        room->creationCodeName = nullptr;
        return;
    }
    const int32_t row = Code_FindRow(name);
    if (row < 0) {
        Error_Showf("room_set_code: the game has no compiled code named '%s'", name.get());
        return;
    }
    room->creationCode = Code_Make(row);
    room->creationCodeName = room->creationCode->name;
}

// room, slot, background, visible, foreground, x, y, htiled, vtiled, hspeed, vspeed, alpha
BUILTIN(F_RoomSetBackground)
{
    CRoom* room = TemplateOf(args);
    CRoomBackground* entry = room ? SlotOf(room->backgrounds, VXGetInt32(args, 1)) : nullptr;
    if (!entry) return;
    entry->index = VXGetInt32(args, 2);
    entry->visible = VXGetBool(args, 3);
    entry->foreground = VXGetBool(args, 4);
    entry->x = VXGetFloat(args, 5);
    entry->y = VXGetFloat(args, 6);
    entry->htiled = VXGetBool(args, 7);
    entry->vtiled = VXGetBool(args, 8);
    entry->hspeed = VXGetFloat(args, 9);
    entry->vspeed = VXGetFloat(args, 10);
    entry->alpha = VXGetFloat(args, 11);
}

// room, slot, visible, xview, yview, wview, hview, xport, yport, wport, hport,
// hborder, vborder, hspeed, vspeed, object
BUILTIN(F_RoomSetView)
{
    CRoom* room = TemplateOf(args);
    CView* view = room ? SlotOf(room->views, VXGetInt32(args, 1)) : nullptr;
    if (!view) return;
    view->visible = VXGetBool(args, 2);
    view->xview = VXGetFloat(args, 3);
    view->yview = VXGetFloat(args, 4);
    view->wview = VXGetFloat(args, 5);
    view->hview = VXGetFloat(args, 6);
    view->xport = VXGetInt32(args, 7);
    view->yport = VXGetInt32(args, 8);
    view->wport = VXGetInt32(args, 9);
    view->hport = VXGetInt32(args, 10);
    view->hborder = VXGetInt32(args, 11);
    view->vborder = VXGetInt32(args, 12);
    view->hspeed = VXGetInt32(args, 13);
    view->vspeed = VXGetInt32(args, 14);
    view->object = VXGetInt32(args, 15);
}

BUILTIN(F_RoomSetViewEnabled)
{
    if (CRoom* room = TemplateOf(args)) room->viewsEnabled = VXGetBool(args, 1);
}

constexpr BuiltinRow kRows[] = {
    {"room_add", F_RoomAdd, 0},
    {"room_duplicate", F_RoomDuplicate, 1},
    {"room_assign", F_RoomAssign, 2},
    {"room_instance_add", F_RoomInstanceAdd, 4},
    {"room_instance_clear", F_RoomInstanceClear, 1},
    {"room_tile_add", F_RoomTileAdd, 9},
    {"room_tile_add_ext", F_RoomTileAddExt, 12},
    {"room_tile_clear", F_RoomTileClear, 1},
    {"room_set_width", F_RoomSetWidth, 2},
    {"room_set_height", F_RoomSetHeight, 2},
    {"room_set_caption", F_RoomSetCaption, 2},
    {"room_set_persistent", F_RoomSetPersistent, 2},
    {"room_set_code", F_RoomSetCode, 2},
    {"room_set_background", F_RoomSetBackground, 12},
    {"room_set_view", F_RoomSetView, 16},
    {"room_set_view_enabled", F_RoomSetViewEnabled, 2},
};

}  // namespace

void Function_Game_RegisterTemplates()
{
    Function_AddRows(kRows);
}
