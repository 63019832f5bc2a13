// The table of constants. Compiled code has their values as plain numbers; the
// table serves those who ask by name.

#include <cstring>

#include "Files/Function/Constant_Rows.h"
#include "Files/Function/Function_Registry.h"
#include "Platform/MemoryManager.h"

namespace {

// Two arrays side by side: names and values.
struct ConstantTable {
    VxVector<char*> names;
    VxVector<RValue> values;

    ~ConstantTable()
    {
        for (char* name : names) MemoryManager::Free(name);
        for (RValue& value : values) FREE_RValue(&value);
    }
};
ConstantTable* g_table = nullptr;

}  // namespace

void Constant_Init()
{
    VxDelete(g_table);
    g_table = nullptr;
}

void Constant_Add(const char* name, const RValue& value)
{
    if (!g_table) g_table = VxNew<ConstantTable>();
    const size_t size = std::strlen(name) + 1;
    char* copy = static_cast<char*>(MemoryManager::Alloc(size));
    std::memcpy(copy, name, size);
    g_table->names.push_back(copy);
    g_table->values.emplace_back();
    COPY_RValue(&g_table->values.back(), &value);
}

bool Constant_Find(const char* name, RValue* value)
{
    for (int32_t i = 0; i < Constant_Count(); ++i) {
        if (std::strcmp(g_table->names[i], name) != 0) continue;
        if (value) COPY_RValue(value, &g_table->values[i]);
        return true;
    }
    return false;
}

int32_t Constant_Count()
{
    return g_table ? static_cast<int32_t>(g_table->names.size()) : 0;
}

const char* Constant_Name(int32_t index)
{
    return index >= 0 && index < Constant_Count() ? g_table->names[index] : nullptr;
}

void Constants_Register()
{
    for (const ConstantFamily& family : kConstantFamilies)
        for (int32_t i = 0; i < family.count; ++i)
            Constant_Add(family.rows[i].name, RValue(family.rows[i].value));
}
