#include "Files/Script/Script_Main.h"

#include <cstring>

#include "Files/Base/Archive_List.h"
#include "Files/Code/CCode.h"
#include "Platform/MemoryManager.h"

namespace {

// A script without a name is an empty slot.
struct Script {
    const char* name = nullptr;  // in the archive
    CCode* code = nullptr;       // owned by the list of code objects
};

VxVector<Script> g_scripts;
VxVector<CCode*> g_globalCode;

const Script* At(int32_t index)
{
    const bool exists = index >= 0 && index < Script_Count();
    return exists && g_scripts[static_cast<size_t>(index)].name
               ? &g_scripts[static_cast<size_t>(index)]
               : nullptr;
}

}  // namespace

void Script_Init()
{
    Script_Quit();
}

void Script_Quit()
{
    VxVector<Script>().swap(g_scripts);
    VxVector<CCode*>().swap(g_globalCode);
}

bool Script_Load(const uint8_t* chunk, uint32_t, const uint8_t* archiveBase)
{
    const ArchiveList list(chunk, archiveBase);
    for (uint32_t i = 0; i < list.Count(); ++i) {
        g_scripts.emplace_back();
        const uint8_t* at = list.At(i);
        if (!at) continue;
        const auto record = ArchiveCopy<ArchiveScript>(at);
        g_scripts.back().name = ArchiveText(archiveBase, record.name);
        g_scripts.back().code = Code_Make(record.codeId);
    }
    return true;
}

bool Script_LoadGlobalCode(const uint8_t* chunk, uint32_t)
{
    const auto count = ArchiveCopy<uint32_t>(chunk);
    for (uint32_t i = 0; i < count; ++i)
        g_globalCode.push_back(Code_Make(ArchiveCopy<int32_t>(chunk + 4 + size_t{i} * 4)));
    return true;
}

bool Script_Prepare()
{
    for (CCode* code : g_globalCode) {
        RValue dropped;
        Code_Execute(nullptr, nullptr, code, &dropped, 0);
        FREE_RValue(&dropped);
    }
    return true;
}

int32_t Script_Count()
{
    return static_cast<int32_t>(g_scripts.size());
}

CCode* Script_Data(int32_t index)
{
    const Script* script = At(index);
    return script ? script->code : nullptr;
}

int32_t Script_Find(const char* name)
{
    for (int32_t i = 0; i < Script_Count(); ++i)
        if (const Script* script = At(i))
            if (std::strcmp(script->name, name) == 0) return i;
    return -1;
}

const char* Script_Name(int32_t index)
{
    const Script* script = At(index);
    return script ? script->name : "<undefined>";
}
