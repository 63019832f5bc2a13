// What compiled code calls in the runtime, and how the runtime calls compiled code.

#include <algorithm>

#include "Files/Base/Error.h"
#include "Files/Code/Script_Interface.h"
#include "Files/Function/Function_Registry.h"
#include "Files/Run/Run_State.h"
#include "Files/Variable/Variable_BuiltIn.h"
#include "Host/Host_Stage.h"
#include "tests/Files/support_World.h"

namespace {

constexpr int32_t kSlot = 3;
constexpr int32_t kVariable = kInstanceVarBase + kSlot;

bool GetDepth(CInstance* instance, int32_t, RValue* out)
{
    *out = RValue(static_cast<double>(instance->depth));
    return true;
}
bool SetDepth(CInstance* instance, int32_t, const RValue* value)
{
    instance->depth = static_cast<float>(REAL_RValue(value));
    return true;
}

int s_exitCode;

class CodeInterface : public World {
protected:
    void SetUp() override
    {
        World::SetUp();
        Code_Variable_Init(4, 4);
        Code_Variable_Register("own", SCOPE_INSTANCE, kSlot);
        Variable_BuiltIn_Add("depth_", GetDepth, SetDepth, true);
        Variable_BuiltIn_Add("locked_", GetDepth, SetDepth, false);
        parent_ = AddObject("Parent", {});
        child_ = AddObject("Child", {}, parent_);
        other_ = AddObject("Other", {});
        room_ = AddRoom("room_one");
        s_exitCode = -1;
        Error_SetExitHook([](int code) { s_exitCode = code; });
    }
    void TearDown() override
    {
        Error_SetExitHook(nullptr);
        World::TearDown();
    }
    // The ids that a `with` visits, from `self` and `other`.
    std::vector<int32_t> Visit(CInstance* self, CInstance* other, int32_t target)
    {
        std::vector<int32_t> ids;
        CInstance* s = self;
        CInstance* o = other;
        WithState state;
        const int32_t count = With_Begin(&state, &s, &o, target);
        bool more = count > 0;
        while (more) {
            ids.push_back(s->id);
            EXPECT_EQ(o, self) << "other is the one that runs the with";
            more = With_Next(&state, &s);
        }
        With_End(&state, &s, &o);
        EXPECT_EQ(count, static_cast<int32_t>(ids.size()));
        EXPECT_EQ(s, self);
        EXPECT_EQ(o, other);
        return ids;
    }
    double Own(CInstance* instance) { return REAL_RValue(instance->InternalGetVar(kSlot)); }

    int32_t parent_, child_, other_, room_;
};

using Ids = std::vector<int32_t>;

TEST_F(CodeInterface, WithVisits)
{
    const int32_t p1 = Place(room_, parent_), c1 = Place(room_, child_), o1 = Place(room_, other_),
                  p2 = Place(room_, parent_), gone = Place(room_, parent_),
                  asleep = Place(room_, parent_);
    Object(child_).depth = 50;
    Begin();
    Instance_Destroy(Instance_FromId(gone), false);
    Instance_Deactivate(Instance_FromId(asleep));
    CInstance* self = Instance_FromId(o1);
    CInstance* other = Instance_FromId(p2);

    EXPECT_EQ(Visit(self, other, parent_), (Ids{p2, c1, p1})) << "newest first, children too";
    EXPECT_EQ(Visit(self, other, INSTANCE_ALL), (Ids{c1, p2, o1, p1})) << "highest depth first";
    EXPECT_EQ(Visit(self, other, INSTANCE_OTHER), Ids{p2});
    EXPECT_EQ(Visit(self, other, INSTANCE_SELF), Ids{o1});
    EXPECT_EQ(Visit(self, other, -6), Ids{o1});
    EXPECT_EQ(Visit(self, other, c1), Ids{c1});
    for (const int32_t none :
         {INSTANCE_NOONE + 0, INSTANCE_GLOBAL + 0, INSTANCE_LOCAL + 0, gone, asleep, 99, 104000})
        EXPECT_EQ(Visit(self, other, none), Ids{}) << none;

    // Pending changes: of this very object, each once.
    Instance_Change(Instance_FromId(o1), parent_, false);
    Instance_Activate(Instance_FromId(asleep));
    EXPECT_EQ(Visit(self, other, parent_), (Ids{o1, asleep, p2, c1, p1}));
}

// The list is a snapshot: what is destroyed on the way is still visited, what is made
// is not; loops nest and leave early.
TEST_F(CodeInterface, WithIsASnapshot)
{
    for (int i = 0; i < 3; ++i) Place(room_, parent_);
    const int32_t o1 = Place(room_, other_);
    Begin();
    CInstance* self = Instance_FromId(o1);
    CInstance* other = self;
    int visits = 0, inner = 0;
    WithState outer;
    With_Begin(&outer, &self, &other, parent_);
    do {
        ++visits;
        Room_CreateInstance(0, 0, parent_);
        auto* node = Object(parent_).instances.Head();
        for (; node; node = node->next) Instance_Destroy(node->item, true);
        WithState nested;
        CInstance* saved = self;
        if (With_Begin(&nested, &self, &other, INSTANCE_ALL) > 0) ++inner;
        With_End(&nested, &self, &other);
        EXPECT_EQ(self, saved);
    } while (With_Next(&outer, &self));
    With_End(&outer, &self, &other);
    EXPECT_EQ(visits, 3);
    EXPECT_EQ(inner, 3) << "the one left is visited; the break leaves the outer loop whole";
    EXPECT_EQ(self->id, o1);
}

TEST_F(CodeInterface, VariablesOfAnInstance)
{
    Place(room_, parent_);
    Begin();
    CInstance* instance = First(parent_);
    RValue out;
    const RValue seven(7.0);
    EXPECT_TRUE(Variable_Set(instance, kVariable, ARRAY_INDEX_NONE, &seven));
    EXPECT_EQ(Own(instance), 7);
    EXPECT_TRUE(Variable_Set(instance, kVariable, 2 * kArrayRowStride + 1, &seven));
    EXPECT_TRUE(Variable_Get(instance, kVariable, 2 * kArrayRowStride + 1, &out));
    EXPECT_EQ(REAL_RValue(&out), 7);
    const int32_t depth = Variable_BuiltIn_Find("depth_");
    EXPECT_TRUE(Variable_Set(instance, depth, ARRAY_INDEX_NONE, &seven));
    EXPECT_TRUE(Variable_Get(instance, depth, ARRAY_INDEX_NONE, &out));
    EXPECT_EQ(out.real, 7);
    const RValue eight(8.0);
    EXPECT_FALSE(
        Variable_Set(instance, Variable_BuiltIn_Find("locked_"), ARRAY_INDEX_NONE, &eight));
    EXPECT_EQ(instance->depth, 7);
    EXPECT_FALSE(Variable_Get(instance, -1, ARRAY_INDEX_NONE, &out)) << "a name found nowhere";
}

TEST_F(CodeInterface, VariablesOfATarget)
{
    const int32_t dead = Place(room_, parent_), p = Place(room_, parent_), c = Place(room_, child_),
                  o = Place(room_, other_);
    Begin();
    Instance_Destroy(Instance_FromId(dead), false);
    const RValue five(5.0);
    EXPECT_TRUE(Variable_SetOnTarget(parent_, kVariable, ARRAY_INDEX_NONE, &five));
    EXPECT_EQ(Own(Instance_FromId(p)), 5);
    EXPECT_EQ(Own(Instance_FromId(c)), 5);
    EXPECT_EQ(Instance_FromId(o)->FindVar(kSlot), nullptr);
    EXPECT_EQ(Instance_FromId(dead)->FindVar(kSlot), nullptr);

    RValue out;
    g_TargetMissing = false;
    EXPECT_TRUE(Variable_GetFromTarget(parent_, kVariable, ARRAY_INDEX_NONE, &out));
    EXPECT_EQ(out.real, 5);
    EXPECT_FALSE(g_TargetMissing);
    out = RValue(9.0);
    for (const int32_t none : {dead, INSTANCE_SELF + 0, INSTANCE_NOONE + 0, 99}) {
        g_TargetMissing = false;
        EXPECT_FALSE(Variable_GetFromTarget(none, kVariable, ARRAY_INDEX_NONE, &out));
        EXPECT_TRUE(g_TargetMissing);
        EXPECT_EQ(out.real, 9) << "untouched";
    }
    g_TargetMissing = false;
    EXPECT_FALSE(Variable_GetSlotFromTarget(99, kSlot, ARRAY_INDEX_NONE, &out));
    EXPECT_FALSE(Variable_SetSlotOnTarget(99, kSlot, ARRAY_INDEX_NONE, &five));
    EXPECT_FALSE(g_TargetMissing);
    EXPECT_EQ(s_exitCode, -1);
    EXPECT_TRUE(Variable_SetSlotOnTarget(INSTANCE_ALL, kSlot, ARRAY_INDEX_NONE, &five));
    EXPECT_EQ(Own(Instance_FromId(o)), 5);

    // The changed instance answers for its new object before the lists know it.
    Instance_Destroy(Instance_FromId(c), false);
    Instance_Change(Instance_FromId(o), child_, false);
    const RValue six(6.0);
    EXPECT_TRUE(Variable_SetOnTarget(child_, kVariable, ARRAY_INDEX_NONE, &six));
    EXPECT_EQ(Own(Instance_FromId(o)), 6);
}

TEST_F(CodeInterface, WritingToNobodyIsFatal)
{
    Begin();
    const RValue one(1.0);
    EXPECT_FALSE(Variable_SetOnTarget(other_, kVariable, ARRAY_INDEX_NONE, &one));
    EXPECT_EQ(s_exitCode, 1);
    EXPECT_NE(Stage_ErrorTexts().back().find(
                  "Unable to find any instance for object index '2' name 'Other'"),
              VxString::npos);
    Error_Init();
    EXPECT_FALSE(Variable_SetOnTarget(100999, kVariable, ARRAY_INDEX_NONE, &one));
    EXPECT_NE(
        Stage_ErrorTexts().back().find("Unable to find any instance for object index '100999'\r\n"),
        VxString::npos);
}

const FunctionRecord* s_seen;
double s_sum;

BUILTIN(F_Sum)
{
    s_seen = g_CurrentFunction;
    s_sum = 0;
    for (int i = 0; i < argc; ++i) s_sum += VXGetReal(args, i);
    EXPECT_EQ(result.Kind(), static_cast<uint32_t>(VALUE_UNDEFINED));
    if (argc > 0) args[0] = RValue(-1.0);
    SetReal(result, s_sum);
}

TEST_F(CodeInterface, BuiltinsGetACopyOfTheirArguments)
{
    Function_Add("sum", F_Sum, -1);
    const int32_t id = Function_Find("sum");
    constexpr int kMany = 50;
    std::vector<RValue> values(kMany, RValue(2.0));
    std::vector<RValue*> pointers;
    for (RValue& value : values) pointers.push_back(&value);
    RValue result;
    VXCreateString(&result, "old");
    CallBuiltin(nullptr, nullptr, result, 3, id, pointers.data());
    EXPECT_EQ(result.real, 6);
    EXPECT_EQ(values[0].real, 2) << "the caller's value stands";
    EXPECT_STREQ(s_seen->name, "sum");
    EXPECT_EQ(g_CurrentFunction, nullptr);
    CallBuiltin(nullptr, nullptr, result, kMany, id, pointers.data());
    EXPECT_EQ(result.real, 2 * kMany);
    // A slot whose name was found nowhere is a report, not a crash.
    CallBuiltin(nullptr, nullptr, result, 0, -1, nullptr);
    EXPECT_EQ(result.Kind(), static_cast<uint32_t>(VALUE_UNDEFINED));
    EXPECT_EQ(Stage_ErrorTexts().size(), 1U);
}

// A code object of a script's row runs in the script's form.
RValue& Script_NoArguments(CInstance*, CInstance*, RValue& result, int argc, RValue**)
{
    SetReal(result, 40 + argc + g_ArgumentCount);
    return result;
}

void Event_Flags(CInstance*, CInstance*)
{
    Code_SetError("broken %d", 4);
}

TEST_F(CodeInterface, CodeObjects)
{
    static const CodeRow rows[] = {CodeRow("vxl_Script_none", Script_NoArguments),
                                   CodeRow("vxl_Object_x_Create_0", Event_Flags)};
    g_RunnerData.codeTable = rows;
    g_RunnerData.codeCount = 2;
    EXPECT_EQ(Code_FindRow("vxl_Object_x_Create_0"), 1);
    RValue result;
    g_ArgumentCount = 3;
    EXPECT_TRUE(Code_Execute(nullptr, nullptr, Code_Make(0), &result, 0));
    EXPECT_EQ(result.real, 40) << "not the arguments of the script that runs outside it";
    EXPECT_EQ(g_ArgumentCount, 3);
    g_ArgumentCount = 0;
    // A flagged error is reported when the code ends, not fatal, and cleared.
    EXPECT_FALSE(Code_Execute(nullptr, nullptr, Code_Make(1), &result, 0));
    EXPECT_NE(Stage_ErrorTexts().back().find("broken 4"), VxString::npos);
    EXPECT_FALSE(g_ErrorFlag);
    EXPECT_FALSE(g_ErrorPending);
    g_Switches.oldExec = true;
    EXPECT_TRUE(Code_Execute(nullptr, nullptr, Code_Make(1), &result, 0));
    g_Switches.oldExec = false;

    RValue text;
    VXCreateString(&text, "constant");
    CCode* constant = Code_MakeConstant(text);
    FREE_RValue(&text);
    EXPECT_TRUE(Code_Execute(nullptr, nullptr, constant, &result, 0));
    EXPECT_STREQ(VXGetText(&result), "constant");
    FREE_RValue(&result);

    CCode* empty = Code_Make(7);
    EXPECT_EQ(empty->index, -1);
    EXPECT_EQ(empty->function, nullptr);
    EXPECT_TRUE(Code_Execute(nullptr, nullptr, empty, nullptr, 0));
    EXPECT_EQ(Code_FromNumber(empty->number), empty);
    EXPECT_EQ(Code_FromNumber(-1), nullptr);
    EXPECT_EQ(Code_FromNumber(g_CodeCount), nullptr);
    EXPECT_EQ(g_CodeList, empty) << "newest at the head";
}

}  // namespace
