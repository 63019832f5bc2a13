#pragma once
// Calls built-ins by name, as a script would.

#include <initializer_list>
#include <string>
#include <variant>
#include <vector>

#include "tests/Files/support_Reports.h"

class BuiltinsTest : public ReportsTest {
protected:
    using Argument = std::variant<double, const char*, const RValue*>;

    void SetUp() override
    {
        ReportsTest::SetUp();
        RValue_Init();
        Function_Init();
        Function_Math_Register();
        Function_File_Register();
        Function_Misc_Register();
        Function_Sound_Register();
        Function_Gamepad_Register();
        Function_Shaders_Register();
        Function_Vexo_Register();
        Function_DS_Register();
        Function_Buffers_Register();
    }
    void TearDown() override
    {
        Function_Init();
        ReportsTest::TearDown();
    }

    // The caller releases the result.
    RValue Call(const char* name, const std::vector<Argument>& arguments = {})
    {
        RValue values[32];
        for (size_t i = 0; i < arguments.size(); ++i) {
            if (const double* number = std::get_if<double>(&arguments[i]))
                values[i] = RValue(*number);
            else if (const char* const* text = std::get_if<const char*>(&arguments[i]))
                VXCreateString(&values[i], *text);
            else
                COPY_RValue(&values[i], std::get<const RValue*>(arguments[i]));
        }
        RValue result;
        const FunctionRecord* record = Function_Record(Function_Find(name));
        EXPECT_NE(record, nullptr) << name;
        if (!record) return result;
        g_CurrentFunction = record;
        record->routine(result, nullptr, nullptr, static_cast<int>(arguments.size()), values);
        g_CurrentFunction = nullptr;
        for (RValue& value : values) FREE_RValue(&value);
        return result;
    }
    double Number(const char* name, const std::vector<Argument>& arguments = {})
    {
        RValue result = Call(name, arguments);
        const double number = REAL_RValue(&result);
        FREE_RValue(&result);
        return number;
    }
    std::string Text(const char* name, const std::vector<Argument>& arguments = {})
    {
        RValue result = Call(name, arguments);
        EXPECT_EQ(result.Kind(), VALUE_STRING) << name;
        const std::string text = VXGetText(&result) ? VXGetText(&result) : "";
        FREE_RValue(&result);
        return text;
    }
};
