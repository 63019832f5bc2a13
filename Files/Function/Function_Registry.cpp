#include "Files/Function/Function_Registry.h"

#include <cstring>

#include "Files/Base/Console.h"
#include "Files/Data/Buffer.h"
#include "Files/Data/DS_Tables.h"
#include "Files/Script/Script_Main.h"
#include "Files/Variable/Variable_BuiltIn.h"
#include "Platform/MemoryManager.h"

const FunctionRecord* g_CurrentFunction = nullptr;

namespace {

constexpr int32_t kGrowth = 500;  // records

FunctionRecord* g_records = nullptr;
int32_t g_recordCount = 0, g_recordCapacity = 0;

// A word of the start-up trace and what registers under it; families that this
// system is without have none.
struct Family {
    const char* word;
    void (*registerRows)();
};

constexpr Family kFamilies[] = {
    {"HighScore..", nullptr},
    {"Game..", Function_Game_Register},
    {"Math..", Function_Math_Register},
    {"Graphic..", Function_Graphic_Register},
    {"Action..", Function_Action_Register},
    {"File..", Function_File_Register},
    {"Resource..", Function_Resource_Register},
    {"Interaction..", Function_Interaction_Register},
    {"3D..", nullptr},
    {"Particle..", Function_Particle_Register},
    {"Misc..", Function_Misc_Register},
    {"DS..", Function_DS_Register},
    {"Sound..", Function_Sound_Register},
    {"Physics..", nullptr},
    {"Gamepad..", Function_Gamepad_Register},
    {"Buffers..", Function_Buffers_Register},
    {"Networking..", nullptr},
    {"Shaders..", Function_Shaders_Register},
    {"Vexo..", Function_Vexo_Register},
};

}  // namespace

void Function_Init()
{
    Function_File_Close();
    DS_Quit();
    Buffer_Quit();
    MemoryManager::Free(g_records);
    g_records = nullptr;
    g_recordCount = g_recordCapacity = 0;
    g_CurrentFunction = nullptr;
}

void Function_Add(const char* name, BuiltinRoutine routine, int32_t argumentCount)
{
    if (g_recordCount == g_recordCapacity) {
        g_recordCapacity += kGrowth;
        MemoryManager::SetLength(&g_records,
                                 static_cast<size_t>(g_recordCapacity) * sizeof(FunctionRecord));
    }
    FunctionRecord& record = g_records[g_recordCount++];
    std::strncpy(record.name, name, sizeof record.name - 1);
    record.name[sizeof record.name - 1] = 0;
    record.routine = routine;
    record.argumentCount = argumentCount;
    record.id = -1;
}

int32_t Function_Find(const char* name, bool* found)
{
    int32_t id = -1;
    if (name && *name) {
        const int32_t script = Script_Find(name);
        if (script >= 0) {
            id = kScriptIdBase + script;
        } else if (std::strcmp(name, "script_execute") == 0) {
            id = kScriptExecuteId;
        } else {
            for (int32_t row = 0; row < g_recordCount && id < 0; ++row)
                if (std::strcmp(g_records[row].name, name) == 0) id = row;
        }
    }
    if (found) *found = id >= 0;
    return id;
}

const FunctionRecord* Function_Record(int32_t id)
{
    return id >= 0 && id < g_recordCount ? &g_records[id] : nullptr;
}

int32_t Function_Count()
{
    return g_recordCount;
}
const FunctionRecord* Function_Records()
{
    return g_records;
}

void InitVXLFunctions()
{
    Function_Init();
    Variable_BuiltIn_Init();
    Constant_Init();

    Function_Camera_Register();
    for (const Family& family : kFamilies) {
        g_DebugConsole->Output("%s", family.word);
        if (family.registerRows) family.registerRows();
    }
    g_DebugConsole->Output("Fini\n");

    Variable_RegisterInstanceRows();
    Variable_RegisterGlobalRows();
    Constants_Register();
}
