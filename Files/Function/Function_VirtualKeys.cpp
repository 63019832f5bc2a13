// Built-ins of virtual keys.

#include "Files/Base/Error.h"
#include "Files/Function/Arguments.h"
#include "Files/Function/Function_Service.h"
#include "Files/IO/VirtualKeys.h"

namespace {

// Reports a handle outside the table.
SWVirtualKey* Named(const RValue* args, int argc)
{
    SWVirtualKey* key = VirtualKeys_Find(ArgInt(args, argc, 0));
    if (!key) Error_Show("Illegal virtual key handle", false);
    return key;
}

BUILTIN(F_virtual_key_add)
{
    SetReal(result,
            VirtualKeys_Add(ArgInt(args, argc, 0), ArgInt(args, argc, 1), ArgInt(args, argc, 2),
                            ArgInt(args, argc, 3), ArgInt(args, argc, 4)));
}

BUILTIN(F_virtual_key_delete)
{
    if (SWVirtualKey* key = Named(args, argc)) key->inUse = key->visible = false;
}

BUILTIN(F_virtual_key_show)
{
    if (SWVirtualKey* key = Named(args, argc)) key->visible = true;
}

BUILTIN(F_virtual_key_hide)
{
    if (SWVirtualKey* key = Named(args, argc)) key->visible = false;
}

constexpr BuiltinRow kRows[] = {
    {"virtual_key_add", F_virtual_key_add, 5},
    {"virtual_key_delete", F_virtual_key_delete, 1},
    {"virtual_key_show", F_virtual_key_show, 1},
    {"virtual_key_hide", F_virtual_key_hide, 1},
};

}  // namespace

void Function_VirtualKeys_Register()
{
    Function_AddRows(kRows);
}
