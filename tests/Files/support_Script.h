#pragma once
// Built-ins and variables by name, as game code reaches them.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "Files/Code/Script_Interface.h"
#include "Files/Function/Function_Registry.h"
#include "Files/Variable/Variable_BuiltIn.h"

inline int32_t VariableId(const char* name)
{
    const int32_t id = Variable_BuiltIn_Find(name);
    EXPECT_GE(id, 0) << name;
    return id;
}

inline double GetVariable(CInstance* self, const char* name, int32_t index = ARRAY_INDEX_NONE)
{
    RValue out;
    EXPECT_TRUE(Variable_Get(self, VariableId(name), index, &out)) << name;
    EXPECT_EQ(out.Kind(), static_cast<uint32_t>(VALUE_REAL)) << name;
    return out.real;
}

inline std::string GetText(CInstance* self, const char* name)
{
    RValue out;
    Variable_Get(self, VariableId(name), ARRAY_INDEX_NONE, &out);
    const char* text = VXGetText(&out);
    const std::string copy = text ? text : "(none)";
    FREE_RValue(&out);
    return copy;
}

// False when the variable can't be written.
inline bool SetVariable(CInstance* self, const char* name, double value,
                        int32_t index = ARRAY_INDEX_NONE)
{
    const RValue number(value);
    return Variable_Set(self, VariableId(name), index, &number);
}

// The result of a built-in as a number; 0 when it gives none.
inline double CallFunction(CInstance* self, CInstance* other, const char* name,
                           const std::vector<double>& arguments = {})
{
    std::vector<RValue> values;
    for (const double argument : arguments) values.emplace_back(argument);
    std::vector<RValue*> pointers;
    for (RValue& value : values) pointers.push_back(&value);
    const int32_t id = Function_Find(name);
    EXPECT_GE(id, 0) << name;
    if (id < 0) return 0;
    RValue result;
    CallBuiltin(self, other, result, static_cast<int>(values.size()), id, pointers.data());
    const double number = result.Kind() == VALUE_REAL ? result.real : 0;
    FREE_RValue(&result);
    return number;
}
inline double CallFunction(CInstance* self, const char* name,
                           const std::vector<double>& arguments = {})
{
    return CallFunction(self, self, name, arguments);
}

// The last report; empty when there was none.
inline std::string LastReport()
{
    const char* text = VXGetText(&g_ErrorLast);
    return text ? text : "";
}
