// Rows of the game: score and lives, the clock, the event under way, errors, the
// arguments of scripts, names and folders.

#include <algorithm>
#include <array>
#include <cstdio>

#include "Files/Base/Archive_Main.h"
#include "Files/Base/Console.h"
#include "Files/Base/Error.h"
#include "Files/Code/Script_Interface.h"
#include "Files/Function/Function_Action.h"
#include "Files/Graphics/Surface.h"
#include "Files/IO/File_Names.h"
#include "Files/Object/Instance_Main.h"
#include "Files/Object/Object_Main.h"
#include "Files/Run/Run_State.h"
#include "Files/Variable/Variable_Global.h"
#include "Files/Variable/Variable_Rows.h"
#include "Host/Host.h"

int32_t g_Score, g_Lives;
double g_Health;
bool g_ErrorOccurred;
RValue g_ErrorLast;
int32_t g_AsyncLoad = -1;

namespace {

using namespace rows;

constexpr int32_t kArgumentRows = 16;
constexpr size_t kEnvironmentLength = 255;  // bytes of an environment variable that are read
constexpr double kMicrosPerSecond = 1000000.0;

// What games may say about their score; nothing draws it.
struct Captions {
    bool showScore = true, showLives = false, showHealth = false;
    VxString score = "Score: ", lives = "Lives: ", health;
};
Captions g_captions;

bool PutText(RValue* out, const char* text)
{
    VXCreateString(out, text);
    return true;
}

// ---- score, lives, health
bool Get_score(CInstance*, int32_t, RValue* out)
{
    return Put(out, g_Score);
}
bool Set_score(CInstance*, int32_t, const RValue* value)
{
    g_Score = Integer(value);
    return true;
}

bool Get_lives(CInstance*, int32_t, RValue* out)
{
    return Put(out, g_Lives);
}
bool Set_lives(CInstance*, int32_t, const RValue* value)
{
    const int32_t before = g_Lives;
    g_Lives = Integer(value);
    if (before > 0 && g_Lives < 1) RunAllInstances(EVENT_OTHER, OTHER_NO_MORE_LIVES);
    return true;
}

bool Get_health(CInstance*, int32_t, RValue* out)
{
    return Put(out, g_Health);
}
bool Set_health(CInstance*, int32_t, const RValue* value)
{
    const double before = g_Health;
    g_Health = REAL_RValue(value);
    if (before > 0 && g_Health <= 0) RunAllInstances(EVENT_OTHER, OTHER_NO_MORE_HEALTH);
    return true;
}

template <bool Captions::*Field>
bool GetShow(CInstance*, int32_t, RValue* out)
{
    return Put(out, g_captions.*Field);
}
template <bool Captions::*Field>
bool SetShow(CInstance*, int32_t, const RValue* value)
{
    Take(value, &(g_captions.*Field));
    return true;
}
template <VxString Captions::*Field>
bool GetCaption(CInstance*, int32_t, RValue* out)
{
    return PutText(out, (g_captions.*Field).c_str());
}
template <VxString Captions::*Field>
bool SetCaption(CInstance*, int32_t, const RValue* value)
{
    g_captions.*Field = ToText(value).get();
    return true;
}

// ---- instances
bool Get_instance_count(CInstance*, int32_t, RValue* out)
{
    return Put(out, Run_Room ? Run_Room->activeCount : 0);
}

bool Get_instance_id(CInstance*, int32_t index, RValue* out)
{
    if (index == ARRAY_INDEX_NONE) index = 0;
    const CInstance* instance = Run_Room && index >= 0 ? Run_Room->activeHead : nullptr;
    for (; instance && index > 0; --index) instance = instance->next;
    return Put(out, instance ? instance->id : INSTANCE_NOONE);
}

// ---- clock
bool Get_fps(CInstance*, int32_t, RValue* out)
{
    return Put(out, g_FpsReal);
}
bool Get_fps_real(CInstance*, int32_t, RValue* out)
{
    return Put(out, kMicrosPerSecond / static_cast<double>(std::max<int64_t>(g_FrameWork, 1)));
}
bool Get_delta_time(CInstance*, int32_t, RValue* out)
{
    return Put(out, static_cast<double>(g_DeltaTime));
}
bool Get_current_time(CInstance*, int32_t, RValue* out)
{
    return Put(out, static_cast<double>(Clock_Micros() / 1000));
}
template <int32_t HostLocalTime::*Part>
bool GetLocalTime(CInstance*, int32_t, RValue* out)
{
    return Put(out, g_Host.clock.LocalTime().*Part);
}

// ---- the event under way
template <int32_t* Value>
bool GetInteger(CInstance*, int32_t, RValue* out)
{
    return Put(out, *Value);
}
bool Get_event_action(CInstance*, int32_t, RValue* out)
{
    return Put(out, 0);
}

// ---- errors
bool Get_error_occurred(CInstance*, int32_t, RValue* out)
{
    return Put(out, g_ErrorOccurred);
}
bool Set_error_occurred(CInstance*, int32_t, const RValue* value)
{
    g_ErrorOccurred = REAL_RValue(value) >= 0.5;
    return true;
}
bool Get_error_last(CInstance*, int32_t, RValue* out)
{
    const char* text = VXGetText(&g_ErrorLast);
    return PutText(out, text ? text : "");
}
bool Set_error_last(CInstance*, int32_t, const RValue* value)
{
    const VXText text = ToText(value);
    VXCreateString(&g_ErrorLast, text);
    return true;
}
bool Get_debug_mode(CInstance*, int32_t, RValue* out)
{
    return Put(out, !g_GameHeader.debuggerDisabled);
}

// ---- values that no number stands for
bool Get_undefined(CInstance*, int32_t, RValue* out)
{
    RELEASE_RValue(out);
    return true;
}
template <intptr_t Address>
bool GetPointer(CInstance*, int32_t, RValue* out)
{
    RELEASE_RValue(out);
    out->kind = VALUE_PTR;
    out->ptr = reinterpret_cast<void*>(Address);
    return true;
}

// ---- arguments of the running script
RValue* Argument(int32_t number)
{
    if (number >= 0 && number < g_ArgumentCount && g_Arguments) return g_Arguments[number];
    Error_Show("illegal access of argument, argument is not provided to script", true);
    return nullptr;
}

bool ReadArgument(int32_t number, int32_t index, RValue* out)
{
    RValue* argument = Argument(number);
    if (!argument) return false;
    RELEASE_RValue(out);
    return GET_RValue(out, argument, index);
}
bool WriteArgument(int32_t number, int32_t index, const RValue* value)
{
    RValue* argument = Argument(number);
    if (argument) SET_RValue(argument, value, index);
    return argument != nullptr;
}

template <size_t Number>
bool GetArgument(CInstance*, int32_t index, RValue* out)
{
    return ReadArgument(static_cast<int32_t>(Number), index, out);
}
template <size_t Number>
bool SetArgument(CInstance*, int32_t index, const RValue* value)
{
    return WriteArgument(static_cast<int32_t>(Number), index, value);
}

// The index of `argument` is the number of the argument, the first when none is written.
bool Get_argument(CInstance*, int32_t index, RValue* out)
{
    return ReadArgument(index == ARRAY_INDEX_NONE ? 0 : index, ARRAY_INDEX_NONE, out);
}
bool Set_argument(CInstance*, int32_t index, const RValue* value)
{
    return WriteArgument(index == ARRAY_INDEX_NONE ? 0 : index, ARRAY_INDEX_NONE, value);
}

bool Get_argument_relative(CInstance*, int32_t, RValue* out)
{
    return Put(out, g_ActionRelative);
}

// ---- folders and names
bool Get_working_directory(CInstance*, int32_t, RValue* out)
{
    return PutText(out, g_WorkingDirectory.c_str());
}

bool Get_temp_directory(CInstance*, int32_t, RValue* out)
{
    VxString folder = g_Host.files.Environment("temp");
    if (folder.empty()) folder = g_Host.files.Environment("tmp");
    if (folder.empty()) folder = "/tmp";
    if (folder.size() > kEnvironmentLength) folder.resize(kEnvironmentLength);
    return PutText(out, folder.c_str());
}

bool Get_program_directory(CInstance*, int32_t, RValue* out)
{
    VxString path = g_Host.files.ProgramPath();
    const size_t separator = path.rfind('/');
    path.resize(separator == VxString::npos ? 0 : separator);
    return PutText(out, path.c_str());
}

bool Get_game_save_id(CInstance*, int32_t, RValue* out)
{
    return PutText(out, SavePrePend().c_str());
}

bool Get_game_id(CInstance*, int32_t, RValue* out)
{
    return Put(out, g_GameHeader.gameId);
}
bool Get_game_display_name(CInstance*, int32_t, RValue* out)
{
    return PutText(out, g_GameHeader.displayName.c_str());
}
bool Get_game_project_name(CInstance*, int32_t, RValue* out)
{
    return PutText(out, g_GameHeader.name.c_str());
}

bool Get_game_guid(CInstance*, int32_t, RValue* out)
{
    const uint8_t* g = g_GameHeader.guid;
    char text[40];
    std::snprintf(text, sizeof text,
                  "{%02x%02x%02x%02x-%02x%02x-%02x%02x-%02x%02x-%02x%02x%02x%02x%02x%02x}", g[0],
                  g[1], g[2], g[3], g[4], g[5], g[6], g[7], g[8], g[9], g[10], g[11], g[12], g[13],
                  g[14], g[15]);
    return PutText(out, text);
}

bool Get_application_surface(CInstance*, int32_t, RValue* out)
{
    return Put(out, g_AppSurface.appSurfaceId);
}

#define SHOW(name, field) ReadWrite(name, GetShow<&Captions::field>, SetShow<&Captions::field>)
#define CAPTION(name, field) \
    ReadWrite(name, GetCaption<&Captions::field>, SetCaption<&Captions::field>)
#define LOCAL_TIME(name, part) ReadOnly(name, GetLocalTime<&HostLocalTime::part>)

constexpr VariableRow kRows[] = {
    ReadWrite("score", Get_score, Set_score),
    ReadWrite("lives", Get_lives, Set_lives),
    ReadWrite("health", Get_health, Set_health),
    SHOW("show_score", showScore),
    SHOW("show_lives", showLives),
    SHOW("show_health", showHealth),
    CAPTION("caption_score", score),
    CAPTION("caption_lives", lives),
    CAPTION("caption_health", health),
    ReadOnly("instance_count", Get_instance_count),
    ReadOnly("instance_id", Get_instance_id),
    ReadOnly("fps", Get_fps),
    ReadOnly("fps_real", Get_fps_real),
    ReadOnly("delta_time", Get_delta_time),
    ReadOnly("current_time", Get_current_time),
    LOCAL_TIME("current_year", year),
    LOCAL_TIME("current_month", month),
    LOCAL_TIME("current_day", day),
    LOCAL_TIME("current_weekday", weekday),
    LOCAL_TIME("current_hour", hour),
    LOCAL_TIME("current_minute", minute),
    LOCAL_TIME("current_second", second),
    ReadOnly("event_type", GetInteger<&Current_Event_Type>),
    ReadOnly("event_number", GetInteger<&Current_Event_Number>),
    ReadOnly("event_object", GetInteger<&Current_Event_Object>),
    ReadOnly("event_action", Get_event_action),
    ReadWrite("error_occurred", Get_error_occurred, Set_error_occurred),
    ReadWrite("error_last", Get_error_last, Set_error_last),
    ReadOnly("debug_mode", Get_debug_mode),
    ReadOnly("undefined", Get_undefined),
    ReadOnly("pointer_null", GetPointer<0>),
    ReadOnly("pointer_invalid", GetPointer<-1>),
    ReadWrite("argument", Get_argument, Set_argument),
    ReadOnly("argument_count", GetInteger<&g_ArgumentCount>),
    ReadOnly("argument_relative", Get_argument_relative),
    ReadOnly("working_directory", Get_working_directory),
    ReadOnly("temp_directory", Get_temp_directory),
    ReadOnly("program_directory", Get_program_directory),
    ReadOnly("game_id", Get_game_id),
    ReadOnly("game_display_name", Get_game_display_name),
    ReadOnly("game_project_name", Get_game_project_name),
    ReadOnly("game_save_id", Get_game_save_id),
    ReadOnly("game_guid", Get_game_guid),
    ReadOnly("application_surface", Get_application_surface),
    ReadOnly("async_load", GetInteger<&g_AsyncLoad>),
};

// argument0 to argument15
template <size_t... Numbers>
void AddArgumentRows(std::index_sequence<Numbers...>)
{
    constexpr VariableGetter kGetters[] = {GetArgument<Numbers>...};
    constexpr VariableSetter kSetters[] = {SetArgument<Numbers>...};
    for (size_t i = 0; i < sizeof...(Numbers); ++i) {
        char name[16];
        std::snprintf(name, sizeof name, "argument%zu", i);
        Variable_BuiltIn_Add(name, kGetters[i], kSetters[i], true);
    }
}

}  // namespace

void Variable_RegisterGameRows()
{
    Variable_AddRows(kRows);
    AddArgumentRows(std::make_index_sequence<kArgumentRows>());
}

void Variable_ResetGame()
{
    g_Score = g_Lives = 0;
    g_Health = 0;
    g_ErrorOccurred = false;
    RELEASE_RValue(&g_ErrorLast);
    g_AsyncLoad = -1;
    g_captions = Captions();
}
