#pragma once
// What compiled game code calls in the runtime: built-ins by id, variables by
// id, `with`, and scripts.

#include <cstdint>

#include "Files/Base/RValue.h"
#include "Files/Code/CCode.h"

extern bool g_TargetMissing;  // a read from a target that found no instance
extern TraceFrame* g_TraceHead;

inline constexpr int32_t kInstanceVarBase = 100000;  // ids from here up are slots of instances
inline constexpr int32_t kMaxBuiltinArguments = 32;

RValue& CallBuiltin(CInstance* self, CInstance* other, RValue& result, int argc, int32_t functionId,
                    RValue** args);

bool Variable_Get(CInstance* instance, int32_t id, int32_t index, RValue* out);
bool Variable_Set(CInstance* instance, int32_t id, int32_t index, const RValue* value);
bool Variable_GetFromTarget(int32_t target, int32_t id, int32_t index, RValue* out);
bool Variable_GetSlotFromTarget(int32_t target, int32_t slot, int32_t index, RValue* out);
bool Variable_SetOnTarget(int32_t target, int32_t id, int32_t index, const RValue* value);
bool Variable_SetSlotOnTarget(int32_t target, int32_t slot, int32_t index, const RValue* value);

struct WithState {
    CInstance* savedSelf = nullptr;
    CInstance* savedOther = nullptr;
    CInstance** instances = nullptr;  // null in the first position, walked from the end
    int32_t position = 0;
};
int32_t With_Begin(WithState* state, CInstance** self, CInstance** other, int32_t target);
bool With_Next(WithState* state, CInstance** self);
void With_End(WithState* state, CInstance** self, CInstance** other);
void With_ReleaseBuffers();  // at shutdown: no `with` may be running

bool Instance_ExistsDirect(CInstance* self, CInstance* other, int32_t target);
void Instance_DestroyDirect(CInstance* self, CInstance* other, int argc, RValue** args);

RValue& Script_Call(int32_t script, CInstance* self, CInstance* other, RValue& result, int argc,
                    RValue* args);
// The script of a code object that has one; the arguments are the caller's.
void Script_Run(const CCode* code, CInstance* self, CInstance* other, RValue& result, int argc,
                RValue** args);
extern int32_t g_ArgumentCount;  // of the running script
extern RValue** g_Arguments;

// The row name that the next compiled function's frame takes; set before each call.
extern const char* g_CalledRow;
