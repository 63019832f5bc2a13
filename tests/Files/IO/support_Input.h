#pragma once
// Hands on the stage's keyboard and mouse, and scripts that ask for what they did.

#include "Files/Code/Script_Interface.h"
#include "Files/Graphics/Window.h"
#include "Files/IO/IO.h"
#include "tests/Files/Function/support_Builtins.h"

void Function_Graphic_RegisterWindow();

class InputTest : public BuiltinsTest {
protected:
    void SetUp() override
    {
        BuiltinsTest::SetUp();
        Function_Interaction_Register();
        Function_Graphic_RegisterWindow();
        Variable_BuiltIn_Init();
        Variable_RegisterGlobalRows();
        g_QuitSeen = false;
        Window_Init();
        IO_Init();
    }
    void TearDown() override
    {
        IO_Quit();
        Variable_BuiltIn_Init();
        BuiltinsTest::TearDown();
    }

    // What the main loop does around a step.
    void Frame()
    {
        Process_Messages();
        IO_Update();
    }
    void Repeat(int32_t key)
    {
        HostMessage message{};
        message.type = HostMessageType::KeyDown;
        message.key = key;
        message.repeat = true;
        Stage_Post(message);
    }
    void Type(const std::u16string& text)
    {
        for (const char16_t unit : text) {
            HostMessage message{};
            message.type = HostMessageType::Char;
            message.unit = unit;
            Stage_Post(message);
        }
    }
    void Button(int32_t button, bool down)
    {
        HostMessage message{};
        message.type = down ? HostMessageType::ButtonDown : HostMessageType::ButtonUp;
        message.button = button;
        Stage_Post(message);
    }
    void Wheel(int32_t delta)
    {
        HostMessage message{};
        message.type = HostMessageType::Wheel;
        message.delta = delta;
        Stage_Post(message);
    }
    void Activate(bool on)
    {
        HostMessage message{};
        message.type = HostMessageType::ActivateApp;
        message.flag = on;
        Stage_Post(message);
    }

    bool Check(int32_t key) { return Number("keyboard_check", {double(key)}) != 0; }
    bool Pressed(int32_t key) { return Number("keyboard_check_pressed", {double(key)}) != 0; }
    bool Released(int32_t key) { return Number("keyboard_check_released", {double(key)}) != 0; }
    // "down", "pressed" and "released" as letters, a dot for what is not.
    std::string Key(int32_t key)
    {
        return std::string(Check(key) ? "d" : ".") + (Pressed(key) ? "p" : ".") +
               (Released(key) ? "r" : ".");
    }
    std::string MouseButton(int32_t button)
    {
        const double b = button;
        return std::string(Number("mouse_check_button", {b}) != 0 ? "d" : ".") +
               (Number("mouse_check_button_pressed", {b}) != 0 ? "p" : ".") +
               (Number("mouse_check_button_released", {b}) != 0 ? "r" : ".");
    }

    double Variable(const char* name)
    {
        RValue value;
        EXPECT_TRUE(Variable_Get(nullptr, Variable_BuiltIn_Find(name), ARRAY_INDEX_NONE, &value));
        const double number = REAL_RValue(&value);
        FREE_RValue(&value);
        return number;
    }
    std::string VariableText(const char* name)
    {
        RValue value;
        EXPECT_TRUE(Variable_Get(nullptr, Variable_BuiltIn_Find(name), ARRAY_INDEX_NONE, &value));
        const std::string text = VXGetText(&value) ? VXGetText(&value) : "";
        FREE_RValue(&value);
        return text;
    }
    void SetNumber(const char* name, double number)
    {
        const RValue value(number);
        EXPECT_TRUE(Variable_Set(nullptr, Variable_BuiltIn_Find(name), ARRAY_INDEX_NONE, &value));
    }
    void SetText(const char* name, const char* text)
    {
        RValue value;
        VXCreateString(&value, text);
        EXPECT_TRUE(Variable_Set(nullptr, Variable_BuiltIn_Find(name), ARRAY_INDEX_NONE, &value));
        FREE_RValue(&value);
    }
};
