// Runs without anyone to look at a dialog: a fault leaves its report in text.

#include <cstdio>

#include "Files/Base/Console.h"
#include "Files/Code/Script_Interface.h"
#include "Files/Run/Run_Modules.h"
#include "Host/Host.h"

namespace {

constexpr int kAssertionType = 2;  // of the C library's reports: warning, error, assertion

// To the error console's file, and to the standard error: a headless run writes
// nothing to the standard output.
void Report(const char* line)
{
    g_ErrorConsole->Output("%s", line);
    std::fputs(line, stderr);
}

void ReportStack()
{
    Report("VXL stack frame is!\n");
    char line[512];
    for (const TraceFrame* frame = g_TraceHead; frame; frame = frame->previous) {
        std::snprintf(line, sizeof line, "%s (line %d)\n", frame->name ? frame->name : "",
                      frame->line);
        Report(line);
    }
    const char* failing = g_TraceHead && g_TraceHead->name ? g_TraceHead->name : "";
    std::snprintf(line, sizeof line, "Failing function is\n%s\n", failing);
    Report(line);
}

void OnFault(const HostFault& fault)
{
    char line[1024];
    if (fault.assertion) {
        std::snprintf(line, sizeof line, "Error type %d at %s line %d in %s\n", kAssertionType,
                      fault.file, static_cast<int>(fault.line), fault.function);
        Report(line);
        return;
    }
    Report("Exception detected during headless!\n");
    ReportStack();
    std::snprintf(line, sizeof line, "Exception happened code=%08x address=%p\n", fault.code,
                  fault.address);
    Report(line);
}

}  // namespace

void Headless_Watch()
{
    g_Host.process.CatchFaults(OnFault);
}
