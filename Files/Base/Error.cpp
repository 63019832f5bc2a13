#include "Files/Base/Error.h"

#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "Files/Base/Archive_Main.h"
#include "Files/Base/Event_Names.h"
#include "Files/Code/Script_Interface.h"
#include "Files/Graphics/Window.h"
#include "Files/IO/IO.h"
#include "Files/Object/Object_Main.h"
#include "Files/Room/Room_Main.h"
#include "Files/Run/Run_State.h"
#include "Files/Variable/Variable_BuiltIn.h"
#include "Host/Host.h"

bool g_ErrorPending = false;
bool g_InCatch = false;
bool g_ErrorFlag = false;

namespace {

constexpr size_t kMessageSize = 1024;
constexpr int32_t kDialogPause = 100;  // milliseconds, twice, before the dialog
constexpr int32_t kShaderEvent = -1;
constexpr int32_t kActionNumber = 1;  // compiled events are one action

constexpr char kDashes[] =
    "--------------------------------------------------------------------------------------------"
    "\n";
constexpr char kHashes[] =
    "############################################################################################"
    "\n";
static_assert(sizeof kDashes == 92 + 2 && sizeof kHashes == 92 + 2);
constexpr char kUnderline[] = "\r\n___________________________________________\r\n";
constexpr char kShaderLead[] = "Error in shader";

ExitHook g_exitHook = nullptr;

void WriteStack(TErrStreamConsole& out)
{
    out.Output("%s", kDashes);
    for (const TraceFrame* frame = g_TraceHead; frame; frame = frame->previous) {
        const char* name = frame->name ? frame->name : "";
        if (frame->line < 0)
            out.Output("called from - %s\n", name);
        else
            out.Output("called from - %s (line %d)\n", name, frame->line);
    }
}

void WriteHeadline(TErrStreamConsole& out, const char* message, const char* prefix)
{
    if (Current_Event_Type == kShaderEvent) {
        out.Output("%s%s\n\n\n%s\n", prefix, kShaderLead, message);
    } else if (Current_Event_Type == kTimelineEvent) {
        // No timeline has a record in this system, so none has a name.
        out.Output("%sERROR in\naction number %d\nat time step%d\nof time line %s:\n\n\n%s", prefix,
                   kActionNumber, Current_Event_Number, "<undefined>", message);
    } else {
        char event[128];
        Event_Describe(event, sizeof event, Current_Event_Type, Current_Event_Number);
        out.Output("%sERROR in\naction number %d\nof %s\nfor object %s:\n\n\n%s", prefix,
                   kActionNumber, event, Object_Name(Current_Event_Object), message);
    }
}

// The report with the line ends of the dialog's box and blanks for tabs.
VxString DialogText(const char* report)
{
    VxString text = kUnderline;
    for (const char* at = report; *at; ++at) {
        if (*at == '\r' || *at == '\n') {
            text += "\r\n";
            if ((at[1] == '\r' || at[1] == '\n') && at[1] != *at) ++at;
        } else if (*at == '\t') {
            text += "       ";
        } else {
            text += *at;
        }
    }
    return text;
}

bool AskToAbort(const char* report, bool abort)
{
    if (!g_Host.dialogs.ErrorDialog) return abort;
    for (int pause = 0; pause < 2; ++pause) {
        g_Host.clock.Block(kDialogPause);
        Process_Messages();
    }
    const VxString text = DialogText(report);
    const HostErrorChoice choice = g_Host.dialogs.ErrorDialog("Code Error", text.c_str(), !abort);
    return abort || choice == HostErrorChoice::Abort;
}

void StopGame()
{
    New_Room = ROOM_STOP;
    g_ErrorPending = true;
    if (g_Host.window.PostMessage) {
        HostMessage quit;
        quit.type = HostMessageType::Quit;
        g_Host.window.PostMessage(quit);
    }
}

void Error_Report(const char* report, bool fatal)
{
    bool abort = fatal || (g_GameOptions.bits & OPTION_ALL_FATAL);
    if (!g_Switches.headless) {
        if (g_Display.fullscreen) Window_SetFullscreen(false);
        if (!g_Switches.noErrors) abort = AskToAbort(report, abort);
    }
    IO_Clear();
    VXCreateString(&g_ErrorLast, report);
    if (!g_InCatch) g_OutputConsole->Output("ERROR!!! :: %s\n", report);
    g_ErrorOccurred = true;
    if (abort) StopGame();
}

}  // namespace

void Error_Init()
{
    g_ErrorPending = false;
    g_InCatch = false;
    g_ErrorFlag = false;
}

void Error_Show(const char* message, bool fatal)
{
    TErrStreamConsole stack, report;
    WriteStack(stack);
    report.Output("%s", kHashes);
    WriteHeadline(report, message ? message : "", fatal ? "FATAL " : "");
    report.Output("\n%s%s", kHashes, stack.Text());
    if (!g_ErrorPending) Error_Report(report.Text(), fatal);
}

void Error_Fatal(const char* format, ...)
{
    if (g_InCatch) {
        g_ErrorFlag = true;
        return;
    }
    char message[kMessageSize];
    va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(message, sizeof message, format, arguments);
    va_end(arguments);
    Error_Show(message, true);
    if (g_LaunchedByPlayer)
        New_Room = ROOM_END_GAME;
    else
        Error_Exit(1);
}

void Error_Showf(const char* format, ...)
{
    char message[kMessageSize];
    va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(message, sizeof message, format, arguments);
    va_end(arguments);
    Error_Show(message, false);
}

void Error_NotThereYet(const char* builtin)
{
    Error_Showf("%s is not there yet", builtin);
}

void Error_SetExitHook(ExitHook hook)
{
    g_exitHook = hook;
}

void Error_Exit(int code)
{
    if (g_exitHook) {
        g_exitHook(code);
        return;
    }
    std::exit(code);
}
