// Rows of the running room, its backgrounds and its views. Writes change the running
// room and never its template.

#include "Files/Background/CBackground.h"
#include "Files/Base/Console.h"
#include "Files/Base/Error.h"
#include "Files/Graphics/Draw_Room.h"
#include "Files/Variable/Variable_Global.h"
#include "Files/Variable/Variable_Rows.h"

namespace {

using namespace rows;

// ---- the room
bool Get_room(CInstance*, int32_t, RValue* out)
{
    return Put(out, Current_Room);
}
bool Set_room(CInstance*, int32_t, const RValue* value)
{
    Room_Goto(Integer(value));
    return true;
}
bool Get_room_first(CInstance*, int32_t, RValue* out)
{
    return Put(out, Room_OrderAt(0));
}
bool Get_room_last(CInstance*, int32_t, RValue* out)
{
    return Put(out, Room_OrderAt(Room_OrderCount() - 1));
}

bool Get_room_caption(CInstance*, int32_t, RValue* out)
{
    if (!Run_Room) return false;
    VXCreateString(out, Run_Room->caption.c_str());
    return true;
}
bool Set_room_caption(CInstance*, int32_t, const RValue* value)
{
    if (!Run_Room) return false;
    Run_Room->caption = ToText(value).get();
    return true;
}

bool Set_room_speed(CInstance*, int32_t, const RValue* value)
{
    if (!Run_Room) return false;
    if (Integer(value) <= 0) {
        Error_Show("Trying to set the room speed to a value <= 0.", false);
        return true;
    }
    Run_Room->speed = INT32_RValue(value);
    return true;
}

bool Get_background_colour(CInstance*, int32_t, RValue* out)
{
    return Run_Room && PutColour(out, Run_Room->colour);
}

// ---- backgrounds
bool Get_background_blend(CInstance*, int32_t index, RValue* out)
{
    return Run_Room && PutColour(out, Run_Room->backgrounds[Slot(index, kRoomSlots)].blend);
}

// A size of the picture that the entry shows; 0 when it shows none.
template <int32_t CBackground::*Size>
bool GetPictureSize(CInstance*, int32_t index, RValue* out)
{
    if (!Run_Room) return false;
    const int32_t picture = Run_Room->backgrounds[Slot(index, kRoomSlots)].index;
    const CBackground* background = Background_Data(picture);
    return Put(out, background ? background->*Size : 0);
}

// ---- views and transitions
bool Get_view_current(CInstance*, int32_t, RValue* out)
{
    return Put(out, view_current);
}

bool Get_Zero(CInstance*, int32_t, RValue* out)
{
    return Put(out, 0);
}
bool Set_transition_kind(CInstance*, int32_t, const RValue*)
{
    g_ErrorConsole->Output(
        "BUG: Room transitions don't function well - setting to 0 - look at "
        "Variable_BuiltIn.cpp SV_TransitionKind() .\n");
    return true;
}
bool Set_Nothing(CInstance*, int32_t, const RValue*)
{
    return true;
}

#define ROOM(name, field) ReadWrite(name, GetRoom<&CRoom::field>, SetRoom<&CRoom::field>)
#define BACKGROUND(name, field)                                             \
    ReadWrite(name, GetEntry<&CRoom::backgrounds, &CRoomBackground::field>, \
              SetEntry<&CRoom::backgrounds, &CRoomBackground::field>)
#define VIEW(name, field) \
    ReadWrite(name, GetEntry<&CRoom::views, &CView::field>, SetEntry<&CRoom::views, &CView::field>)

constexpr VariableRow kRows[] = {
    ReadWrite("room", Get_room, Set_room),
    ReadOnly("room_first", Get_room_first),
    ReadOnly("room_last", Get_room_last),
    ROOM("room_width", width),
    ROOM("room_height", height),
    ReadWrite("room_caption", Get_room_caption, Set_room_caption),
    ReadWrite("room_speed", GetRoom<&CRoom::speed>, Set_room_speed),
    ROOM("room_persistent", persistent),
    ReadWrite("background_color", Get_background_colour, SetRoom<&CRoom::colour>),
    ReadWrite("background_colour", Get_background_colour, SetRoom<&CRoom::colour>),
    ROOM("background_showcolor", showColour),
    ROOM("background_showcolour", showColour),
    BACKGROUND("background_visible", visible),
    BACKGROUND("background_foreground", foreground),
    BACKGROUND("background_index", index),
    BACKGROUND("background_x", x),
    BACKGROUND("background_y", y),
    BACKGROUND("background_htiled", htiled),
    BACKGROUND("background_vtiled", vtiled),
    BACKGROUND("background_xscale", xscale),
    BACKGROUND("background_yscale", yscale),
    BACKGROUND("background_hspeed", hspeed),
    BACKGROUND("background_vspeed", vspeed),
    ReadWrite("background_blend", Get_background_blend,
              SetEntry<&CRoom::backgrounds, &CRoomBackground::blend>),
    BACKGROUND("background_alpha", alpha),
    ReadOnly("background_width", GetPictureSize<&CBackground::width>),
    ReadOnly("background_height", GetPictureSize<&CBackground::height>),
    ROOM("view_enabled", viewsEnabled),
    ReadOnly("view_current", Get_view_current),
    VIEW("view_visible", visible),
    VIEW("view_xview", xview),
    VIEW("view_yview", yview),
    VIEW("view_wview", wview),
    VIEW("view_hview", hview),
    VIEW("view_xport", xport),
    VIEW("view_yport", yport),
    VIEW("view_wport", wport),
    VIEW("view_hport", hport),
    VIEW("view_angle", angle),
    VIEW("view_hborder", hborder),
    VIEW("view_vborder", vborder),
    VIEW("view_hspeed", hspeed),
    VIEW("view_vspeed", vspeed),
    VIEW("view_object", object),
    VIEW("view_surface_id", surface_id),
    ReadWrite("transition_kind", Get_Zero, Set_transition_kind),
    ReadWrite("transition_steps", Get_Zero, Set_Nothing),
};

}  // namespace

void Variable_RegisterRoomRows()
{
    Variable_AddRows(kRows);
}
