#pragma once
// The table of built-in functions. Adding one: write the function in the file of
// its family and give it a row in the table at that file's foot.

#include <cstdint>

#include "Files/Base/RValue.h"

class CInstance;

using BuiltinRoutine = void (*)(RValue& result, CInstance* self, CInstance* other, int argc,
                                RValue* args);
// Shorthand for the one form of a built-in.
#define BUILTIN(name)                                                                   \
    static void name([[maybe_unused]] RValue& result, [[maybe_unused]] CInstance* self, \
                     [[maybe_unused]] CInstance* other, [[maybe_unused]] int argc,      \
                     [[maybe_unused]] RValue* args)

struct FunctionRecord {
    char name[64];
    BuiltinRoutine routine;
    int32_t argumentCount;  // the least number of arguments, -1 for any
    int32_t id;             // -1
};

// A row of a family's table.
struct BuiltinRow {
    const char* name;
    BuiltinRoutine routine;
    int32_t argumentCount;
};

inline constexpr int32_t kScriptIdBase = 100000;
inline constexpr int32_t kScriptExecuteId = 499999;
inline constexpr int32_t kExtensionIdBase = 500000;

void Function_Init();  // empties the table
void Function_Add(const char* name, BuiltinRoutine routine, int32_t argumentCount);
template <int N>
void Function_AddRows(const BuiltinRow (&rows)[N])
{
    for (const BuiltinRow& row : rows) Function_Add(row.name, row.routine, row.argumentCount);
}
int32_t Function_Find(const char* name, bool* found = nullptr);
const FunctionRecord* Function_Record(int32_t id);  // null outside the table
int32_t Function_Count();
const FunctionRecord* Function_Records();
extern const FunctionRecord* g_CurrentFunction;  // names the function in error texts

// "InitVXLFunctions": all families, then variables, then constants, each with its
// word on the debug console.
void InitVXLFunctions();

// One registration a family.
void Function_Game_Register();         // "Game.."   Files/Function/Function_Game.cpp
void Function_Math_Register();         // "Math.."
void Function_Graphic_Register();      // "Graphic.."
void Function_Action_Register();       // "Action.."
void Function_File_Register();         // "File.."
void Function_File_Close();            // drops the INI file that a script left open, unsaved
void Function_Resource_Register();     // "Resource.."
void Function_Interaction_Register();  // "Interaction.."
void Function_Particle_Register();     // "Particle.."
void Function_Misc_Register();         // "Misc.."
void Function_DS_Register();           // "DS.."
void Function_Sound_Register();        // "Sound.."
void Function_Gamepad_Register();      // "Gamepad.."
void Function_Buffers_Register();      // "Buffers.."
void Function_Shaders_Register();      // "Shaders.."
void Function_Vexo_Register();         // "Vexo.."
void Function_Camera_Register();       // before all others

// ---- constants
void Constant_Init();
void Constant_Add(const char* name, const RValue& value);
bool Constant_Find(const char* name, RValue* value);
int32_t Constant_Count();
const char* Constant_Name(int32_t index);
void Constants_Register();
inline constexpr double kScriptPi = 3.1415927410125732;  // the double nearest to the float pi

// ---- random numbers: WELL512a (Panneton, L'Ecuyer, Matsumoto, 2006)
void Random_Seed(uint32_t seed);
uint32_t Random_GetSeed();
uint32_t Random_Word();
uint32_t Random_Randomize();
void Random_UseOldVersion(bool old);
double Random_Real(double x);       // in [0, x)
int64_t Random_Integer(int64_t n);  // both ends included; draws two words
