// "Resource..": assets by number and name.

#include "Files/Function/Function_Resource.h"

#include "Files/Function/Function_Registry.h"
#include "Files/Object/Object_Main.h"

namespace {

const CObjectSW* ObjectArgument(const RValue* args, int argc)
{
    return Object_Data(ArgInt(args, argc, 0, -1));
}

}  // namespace

void Resource_SetArray(RValue& result, const double* numbers, int32_t count)
{
    RELEASE_RValue(&result);
    for (int32_t i = 0; i < count; ++i) {
        const RValue value(numbers[i]);
        SET_RValue(&result, &value, i);
    }
}

BUILTIN(object_exists)
{
    SetBool(result, ObjectArgument(args, argc) != nullptr);
}

BUILTIN(object_get_name)
{
    VXCreateString(&result, Object_Name(ArgInt(args, argc, 0, -1)));
}

BUILTIN(object_get_sprite)
{
    const CObjectSW* object = ObjectArgument(args, argc);
    SetReal(result, object ? object->spriteIndex : -1);
}

BUILTIN(object_get_mask)
{
    const CObjectSW* object = ObjectArgument(args, argc);
    SetReal(result, object ? object->maskIndex : -1);
}

BUILTIN(object_get_depth)
{
    const CObjectSW* object = ObjectArgument(args, argc);
    SetReal(result, object ? object->depth : 0);
}

BUILTIN(object_get_parent)
{
    const CObjectSW* object = ObjectArgument(args, argc);
    SetReal(result, object ? object->parentIndex : -1);
}

BUILTIN(object_get_visible)
{
    const CObjectSW* object = ObjectArgument(args, argc);
    SetBool(result, object && object->Visible());
}

BUILTIN(object_get_solid)
{
    const CObjectSW* object = ObjectArgument(args, argc);
    SetBool(result, object && object->Solid());
}

BUILTIN(object_get_persistent)
{
    const CObjectSW* object = ObjectArgument(args, argc);
    SetBool(result, object && object->Persistent());
}

// object, ancestor; an object is no ancestor of its own
BUILTIN(object_is_ancestor)
{
    const CObjectSW* object = ObjectArgument(args, argc);
    const int32_t ancestor = ArgInt(args, argc, 1, -1);
    SetBool(result, object && object->parent && object->parent->IsOrDescendsFrom(ancestor));
}

static constexpr BuiltinRow kRows[] = {
    {"object_exists", object_exists, 1},
    {"object_get_name", object_get_name, 1},
    {"object_get_sprite", object_get_sprite, 1},
    {"object_get_mask", object_get_mask, 1},
    {"object_get_depth", object_get_depth, 1},
    {"object_get_parent", object_get_parent, 1},
    {"object_get_visible", object_get_visible, 1},
    {"object_get_solid", object_get_solid, 1},
    {"object_get_persistent", object_get_persistent, 1},
    {"object_is_ancestor", object_is_ancestor, 2},
};

void Function_Resource_Register()
{
    Function_AddRows(kRows);
    Function_Resource_RegisterSprites();
    Function_Resource_RegisterBackgrounds();
    Function_Resource_RegisterTiles();
    Function_Resource_RegisterFonts();
}
