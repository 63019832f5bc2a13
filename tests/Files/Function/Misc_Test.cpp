#include "Files/Base/VXObjectBase.h"
#include "Files/Function/Function_Later.h"
#include "Files/IO/VirtualKeys.h"
#include "Files/Run/Services.h"
#include "tests/Files/Function/support_Builtins.h"

namespace {

TEST_F(BuiltinsTest, MessagesAndReports)
{
    Call("show_debug_message", {"Fase 1"});
    Call("show_debug_message", {2.5});
    EXPECT_EQ(Lines(), (std::vector<std::string>{"Fase 1\n", "2.50\n"}));
    Lines().clear();
    Call("show_error", {"lost the map", 0.0});
    ExpectReport("lost the map");
    Call("show_error", {"lost the map", 1.0});
    EXPECT_EQ(New_Room, ROOM_STOP);
    ExpectReport("lost the map", true);
    EXPECT_EQ(Exits(), 0) << "the game ends in its own way";
}

TEST_F(BuiltinsTest, WhatIsNotBuiltYetSaysSo)
{
    Function_Add("still_to_come", NotThereYet, 0);
    const RValue result = Call("still_to_come");
    EXPECT_EQ(result.Kind(), VALUE_UNDEFINED);
    ExpectReport("still_to_come is not there yet");
}

TEST_F(BuiltinsTest, ParametersCountTheProgram)
{
    for (const char* token : {"marlowick", "-headless", "-record", "keys.bin"})
        g_Switches.parameters.push_back(token);
    EXPECT_EQ(Number("parameter_count"), 4);
    EXPECT_EQ(Text("parameter_string", {3.0}), "keys.bin");
    EXPECT_EQ(Text("parameter_string", {0.0}), "marlowick");
    EXPECT_EQ(Text("parameter_string", {4.0}), "");
    EXPECT_EQ(Text("parameter_string", {-1.0}), "");
}

TEST_F(BuiltinsTest, GlobalsByName)
{
    VXObjectBase globals(3);
    g_Global = &globals;
    Code_Variable_Init(3, 0);
    Code_Variable_Register("musica", SCOPE_GLOBAL, 2);
    EXPECT_EQ(Number("variable_global_exists", {"musica"}), 0);
    EXPECT_EQ(Call("variable_global_get", {"musica"}).Kind(), VALUE_UNDEFINED);
    Call("variable_global_set", {"musica", "alta"});
    EXPECT_STREQ(VXGetText(globals.Slots() + 2), "alta");
    EXPECT_EQ(Text("variable_global_get", {"musica"}), "alta");
    EXPECT_EQ(Number("variable_global_exists", {"musica"}), 1);
    Call("variable_global_set", {"nobody", 1.0});
    EXPECT_EQ(Number("variable_global_exists", {"nobody"}), 0);
    Code_Variable_Init(0, 0);
    g_Global = nullptr;
}

TEST_F(BuiltinsTest, WithoutSoundAndPads)
{
    EXPECT_EQ(Number("audio_play_sound", {0.0, 1.0, 0.0}), 0);
    EXPECT_EQ(Number("audio_is_playing", {0.0}), 0);
    EXPECT_EQ(Number("audio_is_paused", {0.0}), 0);
    EXPECT_EQ(Text("audio_get_name", {-1.0}), "<undefined>");
    for (const char* command : {"audio_pause_all", "audio_resume_all", "audio_stop_all"})
        Call(command, {});
    Call("audio_sound_gain", {0.0, 1.0, 500.0});
    Call("gamepad_set_axis_deadzone", {0.0, 0.5});
    EXPECT_EQ(Number("gamepad_axis_value", {0.0, double(0x8011)}), 0);
    EXPECT_TRUE(Reports().empty());
}

TEST_F(BuiltinsTest, WithoutAServiceOfAchievements)
{
    EXPECT_EQ(Number("achievement_available", {}), 0);
    EXPECT_EQ(Number("achievement_login_status", {}), 0);
    EXPECT_EQ(Number("achievement_post", {"first", 100.0}), 0);
    EXPECT_EQ(Number("achievement_post_score", {"board", 41000.0}), 0);
    EXPECT_EQ(Number("steam_get_achievement", {"FirstSteps"}), -1);
    EXPECT_EQ(Number("steam_set_achievement", {"FirstSteps"}), -1);
    EXPECT_TRUE(Reports().empty());
    Call("achievement_post", {"first"});
    ExpectReport("Illegal argument count");
    Call("achievement_post_score", {41000.0, "board"});
    ExpectReport("Illegal argument type");
}

TEST_F(BuiltinsTest, HandlesOfVirtualKeysAreGivenAgain)
{
    VirtualKeys_Init();
    EXPECT_EQ(Number("virtual_key_add", {10.0, 20.0, 70.0, 70.0, 65.0}), 1);
    EXPECT_EQ(Number("virtual_key_add", {80.0, 20.0, 70.0, 70.0, 68.0}), 2);
    EXPECT_EQ(VirtualKeys_Find(2)->x2, 150);
    Call("virtual_key_delete", {1.0});
    EXPECT_EQ(Number("virtual_key_add", {0.0, 0.0, 1.0, 1.0, 87.0}), 1);
    for (int i = 2; i < kVirtualKeys; ++i) Number("virtual_key_add", {0.0, 0.0, 1.0, 1.0, 83.0});
    EXPECT_EQ(Number("virtual_key_add", {0.0, 0.0, 1.0, 1.0, 83.0}), -1);
    Services_ClearRoom();
    EXPECT_EQ(Number("virtual_key_add", {0.0, 0.0, 1.0, 1.0, 83.0}), 1);
    EXPECT_TRUE(Reports().empty());
    Call("virtual_key_delete", {0.0});
    ExpectReport("Illegal virtual key handle");
    VirtualKeys_Quit();
}

}  // namespace
