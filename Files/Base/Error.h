#pragma once
// The one path of errors: a script error is a report with a choice, not a crash.

#include <cstdint>

#include "Files/Base/Console.h"

extern bool g_ErrorPending;  // told to stop after a report; later reports are dropped
extern bool g_InCatch;
extern bool g_ErrorFlag;

void Error_Init();
void Error_Show(const char* message, bool fatal);
void Error_Fatal(const char* format, ...) VX_PRINTF(1, 2);
// Formats into 1,024 bytes and calls Error_Show without the fatal flag.
void Error_Showf(const char* format, ...) VX_PRINTF(1, 2);
// A statement of a function whose feature is not built yet.
void Error_NotThereYet(const char* builtin);

// Leaves the process with exit code 1; tests replace it to see it happen.
using ExitHook = void (*)(int code);
void Error_SetExitHook(ExitHook hook);
void Error_Exit(int code);
