// Families whose features are still to come, as far as the game names their
// built-ins. A row moves out of here when its function is written.

#include "Files/Function/Function_Later.h"

#include "Files/Base/Error.h"
#include "Files/Function/Function_Service.h"

void NotThereYet(RValue&, CInstance*, CInstance*, int, RValue*)
{
    Error_NotThereYet(g_CurrentFunction ? g_CurrentFunction->name : "");
}

namespace {

constexpr BuiltinRow kVexoRows[] = {
    {"url_open", NotThereYet, 1},
};

}  // namespace

void Function_Shaders_Register()
{
    Function_Steam_Register();
}
void Function_Vexo_Register()
{
    Function_AddRows(kVexoRows);
    Function_Achievements_Register();
    Function_VirtualKeys_Register();
}

// The game names nothing of these.
void Function_Camera_Register() {}
