// Rows of built-in variables: conversions, setters that do more than store, and what
// can't be written.

#include <cmath>
#include <limits>

#include "Files/Background/CBackground.h"
#include "Files/Base/Archive_Main.h"
#include "Files/Base/Console.h"
#include "Files/Base/Error.h"
#include "Files/IO/File_Names.h"
#include "Files/Run/Run_State.h"
#include "Files/Sprite/CSprite.h"
#include "tests/Files/support_Script.h"
#include "tests/Files/support_World.h"

namespace {

class Variables : public World {
protected:
    void SetUp() override
    {
        World::SetUp();
        g_Switches.noErrors = true;
        Variable_RegisterInstanceRows();
        Variable_RegisterGlobalRows();
        object_ = AddObject("A", {{EVENT_OTHER, OTHER_NO_MORE_LIVES},
                                  {EVENT_OTHER, OTHER_NO_MORE_HEALTH},
                                  {EVENT_STEP, 0}});
        room_ = AddRoom("room_one");
        second_ = AddRoom("room_two");
        Begin();
        self_ = Room_CreateInstance(0, 0, object_);
    }
    double Get(const char* name, int32_t index = ARRAY_INDEX_NONE)
    {
        return GetVariable(self_, name, index);
    }
    bool Set(const char* name, double value, int32_t index = ARRAY_INDEX_NONE)
    {
        return SetVariable(self_, name, value, index);
    }
    int32_t object_ = -1, room_ = -1, second_ = -1;
    CInstance* self_ = nullptr;
};

TEST_F(Variables, SpeedsAndDirectionKeepInAgreement)
{
    Set("hspeed", 3);
    EXPECT_EQ(Get("direction"), 0);
    EXPECT_EQ(Get("speed"), 3);
    Set("vspeed", -3);
    EXPECT_NEAR(Get("speed"), std::sqrt(18.0), 1e-5);
    EXPECT_EQ(Get("direction"), 45);
    Set("direction", -90);
    EXPECT_EQ(Get("direction"), 270);
    EXPECT_EQ(Get("hspeed"), 0);
    EXPECT_NEAR(Get("vspeed"), std::sqrt(18.0), 1e-3);
    for (const auto& [set, read] : {std::pair{360.0, 0.0}, {725.0, 5.0}, {-725.0, 355.0}}) {
        Set("direction", set);
        EXPECT_NEAR(Get("direction"), read, 1e-3);
    }
    // Setting what is already there computes nothing.
    Set("speed", 4);
    self_->hspeed = 7;
    Set("speed", 4);
    EXPECT_EQ(Get("hspeed"), 7);
    Set("hspeed", 7);
    EXPECT_EQ(Get("speed"), 4);
}

TEST_F(Variables, WritesThatMakeTheBoxStale)
{
    self_->SetSprite(AddBoxSprite(10, 20));
    const int32_t mask = AddBoxSprite(4, 4);
    EXPECT_EQ(Get("bbox_right"), 9);
    EXPECT_FALSE(self_->bboxDirty);
    for (const char* name :
         {"x", "y", "image_xscale", "image_yscale", "image_angle", "mask_index"}) {
        Set(name, Get(name));
        EXPECT_FALSE(self_->bboxDirty) << name << " did not change";
    }
    Set("x", 2.5);
    EXPECT_EQ(Get("bbox_left"), 2);
    Set("image_xscale", 2);
    EXPECT_EQ(Get("bbox_right"), 21);
    Set("image_yscale", -1);
    EXPECT_EQ(Get("bbox_top"), -20);
    EXPECT_EQ(Get("bbox_bottom"), -1);
    Set("mask_index", mask);
    EXPECT_EQ(Get("bbox_right"), 9);
    Set("image_angle", 90);
    EXPECT_TRUE(self_->bboxDirty);
    EXPECT_EQ(Get("sprite_width"), 20);
    EXPECT_EQ(Get("sprite_height"), -20);
}

TEST_F(Variables, ConversionsOfFields)
{
    Set("alarm", 2.5, 3);
    EXPECT_EQ(Get("alarm", 3), 2) << "halves go to even";
    Set("alarm", 3.5, 3);
    EXPECT_EQ(Get("alarm", 3), 4);
    for (const int32_t index : {-1, 12, 32000, ARRAY_INDEX_NONE}) {
        Set("alarm", 7, index);
        EXPECT_EQ(Get("alarm", 0), 7) << "an index out of range is 0";
        Set("alarm", -1, 0);
    }
    Set("image_blend", 4294967295.0);
    EXPECT_EQ(Get("image_blend"), 4294967295.0) << "colours are unsigned";
    Set("image_blend", 0x0000FF);
    EXPECT_EQ(self_->image_blend, 0xFF);
    Set("x", 0.1);
    EXPECT_EQ(Get("x"), static_cast<double>(0.1F)) << "single precision inside";
    for (const auto& [value, truth] :
         {std::pair{0.5, false}, {0.6, true}, {-1.0, true}, {0.4, false}}) {
        Set("solid", value);
        EXPECT_EQ(self_->solid, truth) << value;
        Set("view_enabled", value);
        EXPECT_EQ(Run_Room->viewsEnabled, truth && value > 0) << value;
    }
    RValue text;
    VXCreateString(&text, "12.5");
    EXPECT_TRUE(Variable_Set(self_, VariableId("y"), ARRAY_INDEX_NONE, &text));
    FREE_RValue(&text);
    EXPECT_EQ(Get("y"), 12.5);
    Set("sprite_index", std::numeric_limits<double>::quiet_NaN());
    Set("alarm", 1e300, 0);
    EXPECT_EQ(Get("alarm", 0), 0);
}

TEST_F(Variables, DepthWaitsForTheNextApplication)
{
    Set("depth", 3);
    EXPECT_EQ(Get("depth"), 3);
    EXPECT_EQ(self_->sortedDepth, 0);
    Set("depth", 3);
    EXPECT_EQ(g_DepthChanges.size(), 1U);
    ApplyPendingChanges();
    EXPECT_EQ(self_->sortedDepth, 3);
}

TEST_F(Variables, Image)
{
    EXPECT_EQ(Get("image_number"), 0);
    EXPECT_EQ(Get("sprite_xoffset"), 0);
    const int32_t sprite = AddBoxSprite(8, 8, 4);
    Sprite_Data(sprite)->originX = 3;
    self_->image_index = 5;
    Set("sprite_index", sprite);
    EXPECT_EQ(Get("image_index"), 0);
    EXPECT_EQ(Get("image_number"), 4);
    Set("image_xscale", -2);
    EXPECT_EQ(Get("sprite_xoffset"), -6);
    EXPECT_EQ(Get("image_single"), -1);
    Set("image_single", 2);
    EXPECT_EQ(Get("image_speed"), 0);
    EXPECT_EQ(Get("image_single"), 2);
    Set("image_single", -1);
    EXPECT_EQ(Get("image_speed"), 1);
    EXPECT_EQ(Get("image_index"), 2);
}

TEST_F(Variables, ReadOnlyRowsRefuse)
{
    for (const char* name : {"id",           "object_index",        "bbox_left",
                             "image_number", "sprite_width",        "path_index",
                             "layer",        "room_first",          "background_width",
                             "view_current", "instance_count",      "instance_id",
                             "fps",          "delta_time",          "current_year",
                             "event_type",   "debug_mode",          "game_id",
                             "async_load",   "application_surface", "mouse_x",
                             "os_type"}) {
        const double before = Get(name);
        EXPECT_FALSE(Set(name, before + 1)) << name;
        EXPECT_EQ(Get(name), before) << name;
    }
    EXPECT_EQ(Get("layer"), -1);
    EXPECT_EQ(Get("async_load"), -1);
    EXPECT_EQ(Get("os_type"), 0);
}

TEST_F(Variables, LivesAndHealthTellTheirEndAtOnce)
{
    Set("lives", 1);
    EXPECT_EQ(Take(), Log{});
    Set("lives", 0.4);
    EXPECT_EQ(Take(), Log{"A.NoMoreLives"});
    Set("lives", -1);
    EXPECT_EQ(Take(), Log{});
    Set("health", 0.5);
    Set("health", 0.2);
    EXPECT_EQ(Take(), Log{});
    Set("health", 0);
    EXPECT_EQ(Take(), Log{"A.NoMoreHealth"});
    Set("health", -5);
    EXPECT_EQ(Take(), Log{});
    EXPECT_EQ(Get("health"), -5);
    Set("score", 12.5);
    EXPECT_EQ(Get("score"), 12);
    Variable_ResetGame();
    EXPECT_EQ(Get("score") + Get("lives") + Get("health"), 0);
    EXPECT_EQ(GetText(self_, "caption_score"), "Score: ");
    EXPECT_EQ(GetText(self_, "caption_lives"), "Lives: ");
}

TEST_F(Variables, TheRunningRoom)
{
    EXPECT_EQ(Get("room"), room_);
    EXPECT_EQ(Get("room_first"), room_);
    EXPECT_EQ(Get("room_last"), second_);
    Set("room_width", 900.5);
    EXPECT_EQ(Get("room_width"), 900);
    EXPECT_EQ(Room_Template(room_)->width, 640) << "the template keeps its size";
    Set("room_speed", 59.9);
    EXPECT_EQ(Run_Room->speed, 59) << "truncated";
    for (const double refused : {0.0, -3.0, 0.5}) {
        Variable_ResetGame();
        Set("room_speed", refused);
        EXPECT_EQ(Run_Room->speed, 59);
        EXPECT_NE(LastReport().find("Trying to set the room speed to a value <= 0."),
                  std::string::npos);
    }
    EXPECT_EQ(New_Room, ROOM_NONE);
    RValue text;
    VXCreateString(&text, "a caption");
    Variable_Set(self_, VariableId("room_caption"), ARRAY_INDEX_NONE, &text);
    FREE_RValue(&text);
    EXPECT_EQ(GetText(self_, "room_caption"), "a caption");
    Set("background_color", 0x123456);
    EXPECT_EQ(Get("background_colour"), 0x123456);
    Set("background_showcolour", 0);
    EXPECT_EQ(Get("background_showcolor"), 0);
    Set("room_persistent", 1);
    EXPECT_TRUE(Run_Room->persistent);
    Set("room", second_);
    EXPECT_EQ(New_Room, second_);
    EXPECT_EQ(Get("room"), room_) << "a change is only asked for";
    Set("room", 99);
    EXPECT_EQ(New_Room, ROOM_STOP);
}

TEST_F(Variables, BackgroundsAndViews)
{
    CBackground* picture = VxNew<CBackground>();
    picture->width = 52;
    picture->height = 26;
    const int32_t index = Background_Add(picture);
    Set("background_index", index, 7);
    EXPECT_EQ(Get("background_width", 7), 52);
    EXPECT_EQ(Get("background_height", 7), 26);
    EXPECT_EQ(Get("background_width", 6), 0);
    Set("background_hspeed", -1.5, 8);
    EXPECT_EQ(Run_Room->backgrounds[0].hspeed, -1.5F) << "an index out of range is 0";
    Set("background_blend", 4278190335.0, 2);
    EXPECT_EQ(Get("background_blend", 2), 4278190335.0);
    Set("view_xview", 3.25, 4);
    Set("view_wport", 3.75, 4);
    EXPECT_EQ(Get("view_xview", 4), 3.25);
    EXPECT_EQ(Get("view_wport", 4), 4);
    EXPECT_EQ(Get("view_object", -3), -1);
    EXPECT_EQ(Get("view_hspeed", 7), -1);
    Background_Quit();
}

TEST_F(Variables, WithoutARoomNothingIsRead)
{
    CRoom* room = Run_Room;
    Run_Room = nullptr;
    RValue out;
    for (const char* name : {"room_width", "room_caption", "background_x", "background_blend",
                             "background_width", "view_xview", "background_colour"}) {
        EXPECT_FALSE(Variable_Get(self_, VariableId(name), 0, &out)) << name;
    }
    for (const char* name : {"room_width", "room_speed", "background_x", "view_xview"})
        EXPECT_FALSE(Set(name, 3)) << name;
    EXPECT_EQ(Get("instance_count"), 0);
    EXPECT_EQ(Get("instance_id", 0), INSTANCE_NOONE);
    Run_Room = room;
}

TEST_F(Variables, InstancesOfTheRoom)
{
    CInstance* second = Room_CreateInstance(0, 0, object_);
    EXPECT_EQ(Get("instance_count"), 2);
    EXPECT_EQ(Get("instance_id", 0), self_->id);
    EXPECT_EQ(Get("instance_id", 1), second->id);
    EXPECT_EQ(Get("instance_id", 2), INSTANCE_NOONE);
    EXPECT_EQ(Get("instance_id", -1), INSTANCE_NOONE);
    Instance_Destroy(second, true);
    EXPECT_EQ(Get("instance_count"), 2) << "until the purge";
    PurgeInstances();
    EXPECT_EQ(Get("instance_count"), 1);
}

TEST_F(Variables, TheEventUnderWay)
{
    bool ran = false;
    On("A.Step", [&](CInstance* self, CInstance*) {
        ran = true;
        EXPECT_EQ(GetVariable(self, "event_type"), EVENT_STEP);
        EXPECT_EQ(GetVariable(self, "event_number"), STEP_NORMAL);
        EXPECT_EQ(GetVariable(self, "event_object"), object_);
    });
    Perform_Event(self_, self_, EVENT_STEP, STEP_NORMAL);
    EXPECT_TRUE(ran);
}

TEST_F(Variables, ArgumentsOfTheRunningScript)
{
    RValue first(5.0), second;
    VXCreateString(&second, "two");
    RValue* arguments[] = {&first, &second};
    g_Arguments = arguments;
    g_ArgumentCount = 2;
    EXPECT_EQ(Get("argument_count"), 2);
    EXPECT_EQ(Get("argument0"), 5);
    EXPECT_EQ(GetText(self_, "argument1"), "two");
    Set("argument", 9, 0);
    EXPECT_EQ(Get("argument0"), 9);
    EXPECT_EQ(Get("argument", 0), 9);
    EXPECT_EQ(LastReport(), "");
    RValue out;
    EXPECT_FALSE(Variable_Get(self_, VariableId("argument2"), ARRAY_INDEX_NONE, &out));
    EXPECT_NE(LastReport().find("illegal access of argument, argument is not provided to script"),
              std::string::npos);
    EXPECT_EQ(New_Room, ROOM_STOP);
    g_Arguments = nullptr;
    g_ArgumentCount = 0;
    FREE_RValue(&second);
}

TEST_F(Variables, ErrorsAndNames)
{
    EXPECT_EQ(Get("error_occurred"), 0);
    Error_Show("a fault", false);
    EXPECT_EQ(Get("error_occurred"), 1);
    EXPECT_NE(GetText(self_, "error_last").find("a fault"), std::string::npos);
    Set("error_occurred", 0.49);
    EXPECT_EQ(Get("error_occurred"), 0);
    g_GameHeader = GameHeader();
    g_GameHeader.debuggerDisabled = false;
    g_GameHeader.displayName = "A Game";
    g_GameHeader.name = "AGame";
    g_GameHeader.gameId = 4000000000U;
    EXPECT_EQ(Get("debug_mode"), 1);
    EXPECT_EQ(Get("game_id"), 4000000000.0);
    EXPECT_EQ(GetText(self_, "game_display_name"), "A Game");
    EXPECT_EQ(GetText(self_, "game_project_name"), "AGame");
    const std::string folder = GetText(self_, "game_save_id");
    EXPECT_TRUE(folder.size() > 7 && folder.substr(folder.size() - 7) == "/AGame/") << folder;
    g_GameHeader = GameHeader();
    EXPECT_EQ(GetText(self_, "game_save_id"), folder) << "fixed for the run";
    FileNames_Quit();
    EXPECT_EQ(GetText(self_, "game_save_id"), "");
    EXPECT_EQ(GetText(self_, "game_guid"), "{00000000-0000-0000-0000-000000000000}");
    RValue out(1.0);
    Variable_Get(self_, VariableId("undefined"), ARRAY_INDEX_NONE, &out);
    EXPECT_EQ(out.Kind(), static_cast<uint32_t>(VALUE_UNDEFINED));
    Variable_Get(self_, VariableId("pointer_invalid"), ARRAY_INDEX_NONE, &out);
    EXPECT_EQ(out.Kind(), static_cast<uint32_t>(VALUE_PTR));
    EXPECT_EQ(reinterpret_cast<intptr_t>(out.ptr), -1);
}

TEST_F(Variables, TransitionsAreRefusedInWords)
{
    std::string said;
    Console_SetSink(
        [](void* context, const char* text) { *static_cast<std::string*>(context) += text; },
        &said);
    Set("transition_kind", 3);
    Set("transition_steps", 3);
    Console_SetSink(nullptr, nullptr);
    EXPECT_EQ(said,
              "BUG: Room transitions don't function well - setting to 0 - look at "
              "Variable_BuiltIn.cpp SV_TransitionKind() .\n");
    EXPECT_EQ(Get("transition_kind") + Get("transition_steps"), 0);
}

TEST_F(Variables, EachNameHasOneRow)
{
    std::map<std::string, int> seen;
    for (int32_t row = 0; row < Variable_BuiltIn_Count(); ++row) {
        const VariableRow* entry = Variable_BuiltIn_Row(row);
        EXPECT_EQ(++seen[entry->name], 1) << entry->name;
        EXPECT_NE(entry->getter, nullptr) << entry->name;
        EXPECT_EQ(entry->canSet, entry->setter != nullptr) << entry->name;
    }
}

}  // namespace
