#include "Files/Code/Script_Interface.h"

#include <cstring>

#include "Files/Base/Error.h"
#include "Files/Function/Function_Registry.h"
#include "Files/Object/CInstance.h"
#include "Files/Object/Instance_Main.h"
#include "Files/Object/Object_Main.h"
#include "Files/Script/Script_Main.h"
#include "Files/Variable/Variable_BuiltIn.h"

bool g_TargetMissing = false;
int32_t g_ArgumentCount = 0;
RValue** g_Arguments = nullptr;

namespace {

// A contiguous bitwise copy of argument values that takes no references. The first
// kMaxBuiltinArguments lie on the stack.
class ArgumentCopy {
public:
    ArgumentCopy(int argc, RValue** args)
    {
        const size_t count = argc > 0 ? static_cast<size_t>(argc) : 0;
        if (count > kMaxBuiltinArguments)
            values_ = static_cast<RValue*>(MemoryManager::Alloc(count * sizeof(RValue)));
        for (size_t i = 0; i < count; ++i)
            std::memcpy(static_cast<void*>(values_ + i), args[i], sizeof(RValue));
    }
    ~ArgumentCopy()
    {
        if (values_ != Stack()) MemoryManager::Free(values_);
    }
    ArgumentCopy(const ArgumentCopy&) = delete;
    ArgumentCopy& operator=(const ArgumentCopy&) = delete;
    RValue* Values() { return values_; }

private:
    RValue* Stack() { return reinterpret_cast<RValue*>(stack_); }
    alignas(RValue) unsigned char stack_[kMaxBuiltinArguments * sizeof(RValue)];
    RValue* values_ = Stack();
};

// Ids above the table of built-ins: scripts and script_execute.
RValue& CallOutsideTable(CInstance* self, CInstance* other, RValue& result, int argc,
                         int32_t functionId, RValue** args)
{
    ArgumentCopy copy(argc, args);
    RELEASE_RValue(&result);
    if (functionId == kScriptExecuteId && argc > 0)
        return Script_Call(INT32_RValue(args[0]), self, other, result, argc - 1, copy.Values() + 1);
    if (functionId >= kScriptIdBase && functionId < kScriptExecuteId)
        return Script_Call(functionId - kScriptIdBase, self, other, result, argc, copy.Values());
    Error_Showf("Calling a function that does not exist: %d", functionId);
    return result;
}

bool GetInstanceVar(CInstance* instance, int32_t slot, int32_t index, RValue* out)
{
    if (!instance || Code_Variable_InstanceCount() <= 0) return false;
    return GET_RValue(out, instance->InternalGetVar(slot), index);
}

bool SetInstanceVar(CInstance* instance, int32_t slot, int32_t index, const RValue* value)
{
    if (!instance || Code_Variable_InstanceCount() <= 0) return false;
    SET_RValue(instance->InternalGetVar(slot), value, index);
    return true;
}

// Compiled code has already put instances in the place of the other special numbers.
bool NamesInstances(int32_t target)
{
    return target >= 0 || target == INSTANCE_ALL;
}

CInstance* FirstOfTarget(int32_t target)
{
    if (!NamesInstances(target)) return nullptr;
    if (target >= kFirstInstanceId) {
        CInstance* instance = Instance_FromId(target);
        return instance && instance->Alive() ? instance : nullptr;
    }
    InstanceIterator iterator(target, nullptr, nullptr);
    while (CInstance* instance = iterator.Next())
        if (instance->Alive()) return instance;
    return nullptr;
}

// Calls `write` for each instance of the target; false when there is none.
template <class Write>
bool ForEachOfTarget(int32_t target, Write write)
{
    if (!NamesInstances(target)) return false;
    bool found = false;
    InstanceIterator iterator(target, nullptr, nullptr);
    while (CInstance* instance = iterator.Next()) {
        if (!instance->Alive()) continue;
        found = true;
        write(instance);
    }
    return found;
}

void ReportNoTarget(int32_t target)
{
    const CObjectSW* object = target < kFirstInstanceId ? Object_Data(target) : nullptr;
    if (object)
        Error_Fatal("Unable to find any instance for object index '%d' name '%s'", target,
                    object->name);
    else
        Error_Fatal("Unable to find any instance for object index '%d'", target);
}

}  // namespace

RValue& CallBuiltin(CInstance* self, CInstance* other, RValue& result, int argc, int32_t functionId,
                    RValue** args)
{
    const FunctionRecord* record = Function_Record(functionId);
    if (!record) return CallOutsideTable(self, other, result, argc, functionId, args);
    ArgumentCopy copy(argc, args);
    RELEASE_RValue(&result);
    const FunctionRecord* caller = g_CurrentFunction;
    g_CurrentFunction = record;
    record->routine(result, self, other, argc, copy.Values());
    g_CurrentFunction = caller;
    return result;
}

bool Variable_Get(CInstance* instance, int32_t id, int32_t index, RValue* out)
{
    if (id >= kInstanceVarBase) return GetInstanceVar(instance, id - kInstanceVarBase, index, out);
    const VariableRow* row = Variable_BuiltIn_Row(id);
    return row && row->getter(instance, index, out);
}

bool Variable_Set(CInstance* instance, int32_t id, int32_t index, const RValue* value)
{
    if (id >= kInstanceVarBase)
        return SetInstanceVar(instance, id - kInstanceVarBase, index, value);
    const VariableRow* row = Variable_BuiltIn_Row(id);
    return row && row->canSet && row->setter && row->setter(instance, index, value);
}

bool Variable_GetFromTarget(int32_t target, int32_t id, int32_t index, RValue* out)
{
    CInstance* instance = FirstOfTarget(target);
    if (!instance) {
        g_TargetMissing = true;
        return false;
    }
    return Variable_Get(instance, id, index, out);
}

bool Variable_GetSlotFromTarget(int32_t target, int32_t slot, int32_t index, RValue* out)
{
    CInstance* instance = FirstOfTarget(target);
    return instance && GetInstanceVar(instance, slot, index, out);
}

bool Variable_SetOnTarget(int32_t target, int32_t id, int32_t index, const RValue* value)
{
    bool success = true;
    const bool found = ForEachOfTarget(target, [&](CInstance* instance) {
        success = Variable_Set(instance, id, index, value) && success;
    });
    if (!found) ReportNoTarget(target);
    return found && success;
}

bool Variable_SetSlotOnTarget(int32_t target, int32_t slot, int32_t index, const RValue* value)
{
    return ForEachOfTarget(
        target, [&](CInstance* instance) { SetInstanceVar(instance, slot, index, value); });
}

bool Instance_ExistsDirect(CInstance* self, CInstance* other, int32_t target)
{
    return Instance_Exists(target, self, other);
}

void Instance_DestroyDirect(CInstance* self, CInstance* other, int argc, RValue** args)
{
    const int32_t target = argc > 0 ? INT32_RValue(args[0]) : INSTANCE_SELF;
    const bool withEvents = argc < 2 || BOOL_RValue(args[1]);
    InstanceIterator iterator(target, self, other);
    while (CInstance* instance = iterator.Next())
        if (instance->Alive()) Instance_Destroy(instance, withEvents);
}

void Script_Run(const CCode* code, CInstance* self, CInstance* other, RValue& result, int argc,
                RValue** args)
{
    const int32_t callerCount = g_ArgumentCount;
    RValue** const callerArguments = g_Arguments;
    g_ArgumentCount = argc;
    g_Arguments = args;
    g_CalledRow = code->name;
    code->function->script(self, other, result, argc, args);
    g_ArgumentCount = callerCount;
    g_Arguments = callerArguments;
}

RValue& Script_Call(int32_t script, CInstance* self, CInstance* other, RValue& result, int argc,
                    RValue* args)
{
    RELEASE_RValue(&result);
    const CCode* code = Script_Data(script);
    if (!code || !code->function || !code->function->script) {
        Error_Showf("Calling a script that does not exist: %d", script);
        return result;
    }
    RValue* stack[kMaxBuiltinArguments];
    VxVector<RValue*> many;
    RValue** pointers = stack;
    if (argc > kMaxBuiltinArguments) {
        many.resize(static_cast<size_t>(argc));
        pointers = many.data();
    }
    for (int i = 0; i < argc; ++i) pointers[i] = args + i;
    Script_Run(code, self, other, result, argc, pointers);
    return result;
}
