// Built-ins that run events.

#include "Files/Function/Function_Registry.h"
#include "Files/Object/Object_Main.h"

void Function_Interaction_RegisterInput();

namespace {

BUILTIN(F_EventPerform)
{
    Perform_Event(self, other, VXGetInt32(args, 0), VXGetInt32(args, 1));
}

BUILTIN(F_EventPerformObject)
{
    Perform_Event_Object(self, other, VXGetInt32(args, 0), VXGetInt32(args, 1),
                         VXGetInt32(args, 2));
}

BUILTIN(F_EventUser)
{
    Perform_Event(self, other, EVENT_OTHER, OTHER_USER0 + VXGetInt32(args, 0));
}

// One step up from the object whose event is running, not from the instance's own.
BUILTIN(F_EventInherited)
{
    const CObjectSW* object = Object_Data(Current_Event_Object);
    if (!object || !object->parent) return;
    Perform_Event_Object(self, other, object->parent->index, Current_Event_Type,
                         Current_Event_Number);
}

constexpr BuiltinRow kRows[] = {
    {"event_perform", F_EventPerform, 2},
    {"event_perform_object", F_EventPerformObject, 3},
    {"event_user", F_EventUser, 1},
    {"event_inherited", F_EventInherited, 0},
};

}  // namespace

void Function_Interaction_Register()
{
    Function_AddRows(kRows);
    Function_Interaction_RegisterInput();
}
