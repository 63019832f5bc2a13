#include "Files/Code/CCode.h"

#include <cstdarg>
#include <cstdio>
#include <cstring>

#include "Files/Base/Error.h"
#include "Files/Code/Script_Interface.h"
#include "Files/Function/Function_Registry.h"
#include "Files/Run/Run_State.h"
#include "Platform/MemoryManager.h"

RunnerData g_RunnerData;
CCode* g_CodeList = nullptr;
int32_t g_CodeCount = 0;
const char* g_CalledRow = "";
TraceFrame* g_TraceHead = nullptr;

namespace {

VxVector<CCode*> s_ByNumber;
char s_ErrorText[1024];

CCode* Enter(CCode* code)
{
    code->next = g_CodeList;
    code->number = g_CodeCount;
    g_CodeList = code;
    ++g_CodeCount;
    s_ByNumber.push_back(code);
    return code;
}

}  // namespace

void Code_Init()
{
    Code_Quit();
    g_TraceHead = nullptr;
    g_TargetMissing = false;
    g_CalledRow = "";
    s_ErrorText[0] = 0;
}

void Code_Quit()
{
    while (g_CodeList) {
        CCode* code = g_CodeList;
        g_CodeList = code->next;
        FREE_RValue(&code->constant);
        VxDelete(code);
    }
    g_CodeCount = 0;
    VxVector<CCode*>().swap(s_ByNumber);
    With_ReleaseBuffers();
}

CCode* Code_Make(int32_t row)
{
    const bool inTable = row >= 0 && row < g_RunnerData.codeCount && g_RunnerData.codeTable;
    const CodeRow* function = inTable ? &g_RunnerData.codeTable[row] : nullptr;
    CCode* code = VxNew<CCode>();
    code->kind = 1;
    code->name = function ? function->name : "";
    code->index = function ? row : -1;
    code->function = function;
    code->script = function && std::strncmp(function->name, "vxl_Script_", 11) == 0;
    code->compiled = true;
    return Enter(code);
}

CCode* Code_MakeConstant(const RValue& value)
{
    CCode* code = VxNew<CCode>();
    code->kind = 3;
    code->name = "";
    code->index = -1;
    code->function = nullptr;
    COPY_RValue(&code->constant, &value);
    code->compiled = true;
    return Enter(code);
}

CCode* Code_FromNumber(int32_t number)
{
    if (number < 0 || number >= g_CodeCount) return nullptr;
    return s_ByNumber[static_cast<size_t>(number)];
}

int32_t Code_FindRow(const char* name)
{
    for (int32_t row = 0; row < g_RunnerData.codeCount; ++row)
        if (std::strcmp(g_RunnerData.codeTable[row].name, name) == 0) return row;
    return -1;
}

void Code_SetError(const char* format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(s_ErrorText, sizeof s_ErrorText, format, arguments);
    va_end(arguments);
    g_ErrorFlag = true;
}

// The archive's constants joined the table as its option block was read: each must
// be found by its name now.
bool Code_Constant_Prepare()
{
    for (int32_t i = 0; i < Constant_Count(); ++i) {
        RValue value;
        if (!Constant_Find(Constant_Name(i), &value)) return false;
        FREE_RValue(&value);
    }
    return true;
}

bool Code_Execute(CInstance* self, CInstance* other, CCode* code, RValue* result, int32_t)
{
    if (!code || g_Switches.oldExec) return true;
    g_ErrorFlag = false;
    if (code->kind == 3) {
        if (result) ASSIGN_RValue(result, &code->constant);
    } else if (code->function && code->function->event) {
        if (code->script) {
            RValue unused;
            Script_Run(code, self, other, result ? *result : unused, 0, nullptr);
            FREE_RValue(&unused);
        } else {
            g_CalledRow = code->name;
            code->function->event(self, other);
        }
    }
    if (!g_ErrorFlag) return true;
    g_ErrorFlag = false;
    Error_Show(s_ErrorText, false);
    s_ErrorText[0] = 0;
    return false;
}
