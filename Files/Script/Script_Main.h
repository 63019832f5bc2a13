#pragma once
// Scripts of the archive, by number and name.

#include <cstdint>

struct CCode;

void Script_Init();
void Script_Quit();
bool Script_Load(const uint8_t* chunk, uint32_t size, const uint8_t* archiveBase);
bool Script_LoadGlobalCode(const uint8_t* chunk, uint32_t size);  // the list run by Script_Prepare
bool Script_Prepare();
int32_t Script_Count();
CCode* Script_Data(int32_t index);      // null when there is none
int32_t Script_Find(const char* name);  // -1 when there is none
const char* Script_Name(int32_t index);
