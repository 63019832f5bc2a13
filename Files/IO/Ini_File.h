#pragma once
// The one INI file that scripts see at a time: opened by name, read key by key,
// closed.

#include "Files/IO/Ini_Reader.h"

// Closes a file that is open, then reads the name from the save folder, else from
// beside the archive. A file that does not exist counts as empty.
void Ini_Open(const char* name);
void Ini_OpenFromString(const char* text);
// The complete text of the file, empty when none is open.
VxString Ini_Close();
// Drops an open file; at the end of the program.
void Ini_Quit();

// The open file, or null.
const IniText* Ini_Current();

// Reads for scripts: without an open file a report, then the fallback.
VxString Ini_ReadString(const char* section, const char* key, const char* fallback);
double Ini_ReadReal(const char* section, const char* key, double fallback);
bool Ini_KeyExists(const char* section, const char* key);
bool Ini_SectionExists(const char* section);
