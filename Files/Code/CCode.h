#pragma once
// The attachment of the compiled game, its tables, and the code objects that tie
// archive records to compiled functions.

#include <cstdint>

#include "Files/Base/RValue.h"

class CInstance;

// Names a variable or a built-in; `id` is written by the loader and read by
// compiled code at run time. -1 when the name is found nowhere.
struct SlotRecord {
    const char* name;
    int32_t id;
};

using EventFunction = void (*)(CInstance* self, CInstance* other);
using ScriptFunction = RValue& (*)(CInstance* self, CInstance* other, RValue& result, int argc,
                                   RValue** args);

struct CodeRow {
    const char* name;  // "vxl_Script_scr_sair", "vxl_Object_oAberto_Collision_176"
    // An event or room function for vxl_Object_ and vxl_Room_ rows, a script
    // function for vxl_Script_ rows.
    union {
        EventFunction event;
        ScriptFunction script;
    };
    constexpr CodeRow(const char* rowName, EventFunction function) : name(rowName), event(function)
    {
    }
    constexpr CodeRow(const char* rowName, ScriptFunction function)
        : name(rowName), script(function)
    {
    }
};

// What every compiled function keeps on its own stack.
struct TraceFrame {
    TraceFrame* previous;
    const char* name;
    int32_t line;
};

struct RunnerData {
    const uint8_t* archive = nullptr;  // null: taken from a file
    uint32_t archiveSize = 0;
    int32_t globalVarCount = 0;
    int32_t instanceVarCount = 0;
    int32_t codeCount = 0;
    SlotRecord** varSlots = nullptr;   // ended by null: user variables first, then built-in ones
    SlotRecord** funcSlots = nullptr;  // ended by null
    const CodeRow* codeTable = nullptr;
    TraceFrame** traceHead = nullptr;
};
extern RunnerData g_RunnerData;

struct CCode {
    CCode* next;
    int32_t kind;  // 1 or 2 code, 3 a constant
    bool compiled;
    const char* name;
    int32_t index;  // row of the code table, -1 when empty
    const CodeRow* function;
    RValue constant;
    int32_t number;       // position in the order of making, for archive records
    bool script = false;  // the row has the form of a script
};

extern CCode* g_CodeList;  // newest first
extern int32_t g_CodeCount;

void Code_Init();
void Code_Quit();
// The code object of a code-table row; a row out of range makes an empty one.
CCode* Code_Make(int32_t row);
CCode* Code_MakeConstant(const RValue& value);
CCode* Code_FromNumber(int32_t number);  // null for -1 and out of range
bool Code_Constant_Prepare();
int32_t Code_FindRow(const char* name);  // row of the code table, -1 when there is none

// Runs the code, or copies a constant into `result` (a live value, may be null for
// code). False after an error, which is then already reported. Code that is null or
// empty, and all code under -oldexec, does nothing. No caller's `flag` changes what
// native code does.
bool Code_Execute(CInstance* self, CInstance* other, CCode* code, RValue* result, int32_t flag);
// Leaves a text for the report that Code_Execute makes when the running code ends.
void Code_SetError(const char* format, ...);
