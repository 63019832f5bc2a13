// The names of the game's own variables, rebuilt with each load of the archive.

#include <cstring>

#include "Files/Variable/Variable_BuiltIn.h"
#include "Platform/CHashMap.h"
#include "Platform/MemoryManager.h"

namespace {

constexpr int32_t kVariableIdBase = 100000;

// Names by index, null where none was given; copies of the text.
struct NameTable {
    VxVector<char*> names;

    ~NameTable()
    {
        for (char* name : names) MemoryManager::Free(name);
    }
    const char* Set(int32_t index, const char* name)
    {
        const size_t at = static_cast<size_t>(index);
        if (at >= names.size()) names.resize(at + 1, nullptr);
        MemoryManager::Free(names[at]);
        const size_t size = std::strlen(name) + 1;
        names[at] = static_cast<char*>(MemoryManager::Alloc(size));
        std::memcpy(names[at], name, size);
        return names[at];
    }
    int32_t Find(const char* name) const
    {
        for (size_t i = 0; i < names.size(); ++i)
            if (names[i] && std::strcmp(names[i], name) == 0) return static_cast<int32_t>(i);
        return -1;
    }
    const char* At(int32_t index) const
    {
        return index >= 0 && static_cast<size_t>(index) < names.size() ? names[index] : nullptr;
    }
};

struct Names {
    NameTable globals, instances;
    CHashMap<const char*, int32_t> instanceByName;
};
Names* g_names = nullptr;

}  // namespace

void Code_Variable_Init(int32_t globals, int32_t instances)
{
    VxDelete(g_names);
    g_names = nullptr;
    if (globals <= 0 && instances <= 0) return;
    g_names = VxNew<Names>();
    g_names->globals.names.reserve(static_cast<size_t>(globals > 0 ? globals : 0));
    g_names->instances.names.reserve(static_cast<size_t>(instances > 0 ? instances : 0));
}

int32_t Code_Variable_Register(const char* name, int32_t scope, int32_t index)
{
    if (!name || index < 0) return -1;
    if (!g_names) g_names = VxNew<Names>();
    if (scope == SCOPE_GLOBAL) {
        g_names->globals.Set(index, name);
    } else {
        // The hash keeps pointers to the names: the old one goes out with its text.
        const char* old = g_names->instances.At(index);
        if (old) g_names->instanceByName.Remove(old);
        const char* kept = g_names->instances.Set(index, name);
        g_names->instanceByName.Remove(kept);
        g_names->instanceByName.Set(kept, index);
    }
    return index + kVariableIdBase;
}

int32_t Code_Variable_Find(const char* name, int32_t scope)
{
    if (!name) return -1;
    if (g_names && scope != SCOPE_INSTANCE) {
        const int32_t index = g_names->globals.Find(name);
        if (index >= 0) return index + kVariableIdBase;
    }
    if (g_names && scope != SCOPE_GLOBAL) {
        if (const int32_t* index = g_names->instanceByName.Find(name))
            return *index + kVariableIdBase;
    }
    return scope == SCOPE_EITHER ? Variable_BuiltIn_Find(name) : -1;
}

int32_t Code_Variable_InstanceCount()
{
    return g_names ? static_cast<int32_t>(g_names->instances.names.size()) : 0;
}

const char* Code_Variable_InstanceName(int32_t index)
{
    return g_names ? g_names->instances.At(index) : nullptr;
}

const char* Code_Variable_GlobalName(int32_t index)
{
    return g_names ? g_names->globals.At(index) : nullptr;
}
