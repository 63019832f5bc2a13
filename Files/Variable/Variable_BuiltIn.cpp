#include "Files/Variable/Variable_BuiltIn.h"

#include <cstring>

#include "Files/Base/Error.h"
#include "Platform/CHashMap.h"

namespace {

struct VariableTable {
    VariableRow rows[kMaxBuiltinVariables] = {};
    int32_t count = 0;
    CHashMap<const char*, int32_t> byName;  // 128 entries to start with

    ~VariableTable()
    {
        for (int32_t row = 0; row < count; ++row)
            MemoryManager::Free(const_cast<char*>(rows[row].name));
    }
};

VariableTable* g_table = nullptr;

}  // namespace

void Variable_BuiltIn_Init()
{
    VxDelete(g_table);
    g_table = nullptr;
}

void Variable_BuiltIn_Add(const char* name, VariableGetter getter, VariableSetter setter,
                          bool canSet)
{
    if (!g_table) g_table = VxNew<VariableTable>();
    if (g_table->count == kMaxBuiltinVariables) {
        Error_Showf("INTERNAL ERROR: Adding too many variables");
        return;
    }
    const size_t size = std::strlen(name) + 1;
    char* copy = static_cast<char*>(MemoryManager::Alloc(size));
    std::memcpy(copy, name, size);
    g_table->rows[g_table->count] = VariableRow{copy, getter, setter, canSet};
    g_table->byName.Set(copy, g_table->count++);
}

int32_t Variable_BuiltIn_Find(const char* name)
{
    const int32_t* row = g_table && name ? g_table->byName.Find(name) : nullptr;
    return row ? *row : -1;
}

int32_t Variable_BuiltIn_Count()
{
    return g_table ? g_table->count : 0;
}

const VariableRow* Variable_BuiltIn_Row(int32_t row)
{
    return g_table && row >= 0 && row < g_table->count ? &g_table->rows[row] : nullptr;
}
