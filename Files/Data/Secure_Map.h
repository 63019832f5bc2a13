#pragma once
// A map's JSON, bound to the computer that it was saved on: a tag of 80 characters that
// only this computer makes, then the text with its zero in Base64. It hides nothing.

#include "Platform/MemoryManager.h"

VxString SecureMap_Text(int32_t map);
// The id of a new map; -1 for what another computer wrote, and for a damaged text.
int32_t SecureMap_Open(const char* text, size_t size);
