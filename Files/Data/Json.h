#pragma once
// Maps and lists as JSON text (RFC 8259), and back. A marked item is a nested object or
// array. All of it holds DsMutex.

#include "Platform/MemoryManager.h"

// `{ "key": value, ... }` in the map's order; empty for a map that does not exist. Reals
// keep six decimals.
VxString Json_Encode(int32_t map);
// The id of a new map with new ones inside, or -1 when the text is no JSON object. Members
// that are null are left out; in an array they are 0.
int32_t Json_Decode(const char* text);
// The same for any text: an array or a bare value becomes the key "default".
int32_t Json_DecodeAny(const char* text);
