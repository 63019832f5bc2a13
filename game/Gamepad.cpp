#include "game/Gamepad.h"

// A pad came or went, for everything that reads one.
void vxl_Object_oFundoLogo_Other_AsyncSystem(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    if (!self->var(ligaDetectaControle)) return;
    const Value event = ds_map_find_value(async_load, "event_type");
    const Value which = ds_map_find_value(async_load, "pad_index");
    show_debug_message(event);
    show_debug_message(which);
    if (event == "gamepad discovered") set_up_slot(which);
}
