#pragma once
// Built-in variables and the names of the game's own variables.

#include <cstdint>

#include "Files/Base/RValue.h"

class CInstance;

using VariableGetter = bool (*)(CInstance* instance, int32_t index, RValue* out);
using VariableSetter = bool (*)(CInstance* instance, int32_t index, const RValue* value);

struct VariableRow {
    const char* name;
    VariableGetter getter;
    VariableSetter setter;  // null for a read-only variable
    bool canSet;
};

inline constexpr int kMaxBuiltinVariables = 500;

void Variable_BuiltIn_Init();  // empties the tables
void Variable_BuiltIn_Add(const char* name, VariableGetter getter, VariableSetter setter,
                          bool canSet);
int32_t Variable_BuiltIn_Find(const char* name);  // row or -1
int32_t Variable_BuiltIn_Count();
const VariableRow* Variable_BuiltIn_Row(int32_t row);

// The two passes: instance rows, then room, view and global rows.
void Variable_RegisterInstanceRows();  // Files/Variable/Variable_Instance.cpp
void Variable_RegisterGlobalRows();    // Files/Variable/Variable_Global.cpp
void Variable_RegisterInputRows();     // Files/Variable/Variable_Input.cpp, part of the second

// ---- the game's variables
inline constexpr int32_t SCOPE_GLOBAL = -5, SCOPE_INSTANCE = -1, SCOPE_EITHER = -6;
void Code_Variable_Init(int32_t globals, int32_t instances);  // sizes the name tables
int32_t Code_Variable_Register(const char* name, int32_t scope, int32_t index);  // index + 100000
int32_t Code_Variable_Find(const char* name, int32_t scope);  // 100000 + index, a row, or -1
int32_t Code_Variable_InstanceCount();
const char* Code_Variable_InstanceName(int32_t index);  // null when unnamed
const char* Code_Variable_GlobalName(int32_t index);

// ---- values behind the game rows
extern int32_t g_Score, g_Lives;
extern double g_Health;
extern bool g_ErrorOccurred;
extern RValue g_ErrorLast;
extern int32_t g_AsyncLoad;  // map of the asynchronous event under way, -1 outside one
void Variable_ResetGame();   // the run state defaults, captions "Score: " and "Lives: "
