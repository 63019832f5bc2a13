#pragma once
// INI files that are written too, and the one that scripts see at a time. An INI file
// is read when it is opened and written, whole, when it is closed after a change.
//
// The written text: a line [section] for each section, then a line key="value" for each
// of its keys, all ended by CR LF and nothing else. What is new goes to the front, as
// does what is read, so that each open and close turns the order round. Comments, blank
// lines and what stands before the first section are lost. Values are written as they
// are: one with a quote, CR or LF in it is cut there when it is read back.

#include "Files/IO/Ini_Reader.h"

class IniFile : public IniText {
public:
    // Takes the text of the save folder's file, else of the bundle's; a file that does
    // not exist counts as empty.
    void Open(const char* fileName);
    // False, and no change, without a section or a key; a null value counts as empty.
    // The section "SYSTEM_COMMAND" holds no keys: its key "INI_FILE_FLUSH" with the value
    // "NOW" writes the file at once.
    bool Set(const char* section, const char* key, const char* value);
    bool DeleteKey(const char* section, const char* key);  // false when there is none
    bool DeleteSection(const char* section);
    // The text of the file. Saves it first when it was changed and has a name; a failure
    // is told on the error console.
    VxString Write();

private:
    VxString name;  // empty for a file that came from a text
    bool dirty = false;
};

// Closes a file that is open, which writes it, then opens the name.
void Ini_Open(const char* name);
void Ini_OpenFromString(const char* text);  // null counts as empty; never saved
// Writes and drops the open file; its complete text, empty when none is open.
VxString Ini_Close();
// Drops an open file unwritten; at the end of the program.
void Ini_Quit();

// The open file, or null.
const IniFile* Ini_Current();

// For scripts: without an open file a report, then the fallback or no change.
VxString Ini_ReadString(const char* section, const char* key, const char* fallback);
double Ini_ReadReal(const char* section, const char* key, double fallback);
bool Ini_KeyExists(const char* section, const char* key);
bool Ini_SectionExists(const char* section);
void Ini_WriteString(const char* section, const char* key, const char* value);
void Ini_WriteReal(const char* section, const char* key, double value);  // six decimals
void Ini_KeyDelete(const char* section, const char* key);
void Ini_SectionDelete(const char* section);
