#pragma once
// The command line: tokens, switches, and what they set.

#include "Files/Run/Run_State.h"

// Splits a line as the program's own return commands are written: a token ends at
// a character at or below a blank outside double quotes; quotes are dropped.
void CommandLine_Split(const char* line, VxVector<VxString>* tokens);
// `knownGame` is the game file that stands without a switch, "" for none.
void CommandLine_ParseTokens(const VxVector<VxString>& tokens, const char* launchFolder,
                             const char* knownGame);

// `path` made absolute against `folder` by text alone: "." and ".." are resolved,
// no link is followed.
VxString Path_Absolute(const char* path, const char* folder);
