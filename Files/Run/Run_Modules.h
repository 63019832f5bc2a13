#pragma once
// What the units of the run state share among themselves.

#include <cstdint>

#include "Files/Run/Run_State.h"

void RunState_Reset();     // defaults of every value but the switches
void RunState_Free();      // the texts of the command line and of the requests
void RestoreFolders();     // files with "@" in their names move to their folders
void Splash_Show();        // "splash.png" of the working directory, five frames
void FreeVariableFlags();  // what InitGame allocated for itself
void Headless_Watch();     // -headless: a fault is reported in text, with exit code 1

// ---- the life of one run, for the program and for the stage
// Everything from the command line to the first frame; false when it failed.
bool Runner_Boot(const VxVector<VxString>& tokens, const char* launchFolder,
                 const RunnerData& attachment);
// One round of the main loop: a frame, then the waiting messages.
void Runner_Round();
// The last events and the teardown; may set g_RestartFlag.
void Runner_End();
int Runner_ExitCode();
// The command of the next run when g_RestartFlag is set.
const VxString& Runner_NextCommand();
