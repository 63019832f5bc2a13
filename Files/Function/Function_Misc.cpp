// Messages, reports, names, and what the process knows of itself.

#include "Files/Background/CBackground.h"
#include "Files/Base/Console.h"
#include "Files/Base/Error.h"
#include "Files/Base/VXObjectBase.h"
#include "Files/Font/CFontSW.h"
#include "Files/Function/Arguments.h"
#include "Files/Function/Function_Later.h"
#include "Files/Function/Function_Registry.h"
#include "Files/Object/Object_Main.h"
#include "Files/Room/Room_Main.h"
#include "Files/Run/Run_State.h"
#include "Files/Script/Script_Main.h"
#include "Files/Sound/Audio_Main.h"
#include "Files/Sprite/CSprite.h"
#include "Files/Variable/Variable_BuiltIn.h"
#include "Host/Host.h"

namespace {

constexpr int32_t kVariableIdBase = 100000;

BUILTIN(F_show_debug_message)
{
    if (argc > 0) Console_DebugMessage(ToText(&args[0]));
}

BUILTIN(F_show_error)
{
    Error_Show(ArgText(args, argc, 0), ArgBool(args, argc, 1));
}

// Microseconds since start-up.
BUILTIN(F_get_timer)
{
    SetReal(result, static_cast<double>(Clock_Micros()));
}

BUILTIN(F_parameter_count)
{
    SetReal(result, static_cast<double>(g_Switches.parameters.size()));
}

// 0 is the program itself.
BUILTIN(F_parameter_string)
{
    const int32_t number = ArgInt(args, argc, 0);
    const bool given = number >= 0 && static_cast<size_t>(number) < g_Switches.parameters.size();
    VXCreateString(&result,
                   given ? g_Switches.parameters[static_cast<size_t>(number)].c_str() : "");
}

BUILTIN(F_environment_get_variable)
{
    VXCreateString(&result, g_Host.files.Environment(ArgText(args, argc, 0)).c_str());
}

BUILTIN(F_clipboard_has_text)
{
    SetBool(result, !g_Host.dialogs.ClipboardText().empty());
}
BUILTIN(F_clipboard_get_text)
{
    VXCreateString(&result, g_Host.dialogs.ClipboardText().c_str());
}
BUILTIN(F_clipboard_set_text)
{
    g_Host.dialogs.SetClipboardText(ArgText(args, argc, 0));
}

// The index of a thing of the archive by its name, of whatever kind; -1 for none.
BUILTIN(F_asset_get_index)
{
    using Find = int32_t (*)(const char* name);
    static constexpr Find kFinds[] = {Object_Find, Sprite_Find, Audio_Find, Background_Find,
                                      Font_Find,   Script_Find, Room_Find};
    const VXText name = ArgText(args, argc, 0);
    int32_t index = -1;
    for (const Find find : kFinds)
        if (index < 0) index = find(name);
    SetReal(result, index);
}

BUILTIN(F_script_exists)
{
    SetBool(result, Script_Data(ArgInt(args, argc, 0, -1)) != nullptr);
}
BUILTIN(F_script_get_name)
{
    const int32_t script = ArgInt(args, argc, 0, -1);
    VXCreateString(&result, Script_Data(script) ? Script_Name(script) : "<undefined>");
}

// The slot of a global variable by its name, or null.
RValue* GlobalSlot(const RValue* args, int argc)
{
    const int32_t id = Code_Variable_Find(ArgText(args, argc, 0), SCOPE_GLOBAL);
    return g_Global && id >= kVariableIdBase ? g_Global->FindVar(id - kVariableIdBase) : nullptr;
}

BUILTIN(F_variable_global_exists)
{
    const RValue* slot = GlobalSlot(args, argc);
    SetBool(result, slot && slot->Kind() != VALUE_UNSET);
}

// Undefined for a name that no variable has and for one that was never set.
BUILTIN(F_variable_global_get)
{
    const RValue* slot = GlobalSlot(args, argc);
    if (slot && slot->Kind() != VALUE_UNSET) ASSIGN_RValue(&result, slot);
}

BUILTIN(F_variable_global_set)
{
    RValue* slot = GlobalSlot(args, argc);
    if (slot && argc > 1) SET_RValue(slot, &args[1], ARRAY_INDEX_NONE);
}

constexpr BuiltinRow kRows[] = {
    {"show_debug_message", F_show_debug_message, 1},
    {"show_error", F_show_error, 2},
    {"show_message", NotThereYet, 1},
    {"show_message_async", NotThereYet, 1},
    {"get_timer", F_get_timer, 0},
    {"parameter_count", F_parameter_count, 0},
    {"parameter_string", F_parameter_string, 1},
    {"environment_get_variable", F_environment_get_variable, 1},
    {"clipboard_has_text", F_clipboard_has_text, 0},
    {"clipboard_get_text", F_clipboard_get_text, 0},
    {"clipboard_set_text", F_clipboard_set_text, 1},
    {"asset_get_index", F_asset_get_index, 1},
    {"script_exists", F_script_exists, 1},
    {"script_get_name", F_script_get_name, 1},
    {"variable_global_exists", F_variable_global_exists, 1},
    {"variable_global_get", F_variable_global_get, 1},
    {"variable_global_set", F_variable_global_set, 2},
};

}  // namespace

void Function_Misc_Register()
{
    Function_AddRows(kRows);
}
