#pragma once
// Pictures of sprites, backgrounds and surfaces as blocks of pixels and as files.
// Pixels are 0xAARRGGBB, rows top first; blocks are MemoryManager's and the caller's.

#include <cstdint>

struct ArchivePageEntry;
class CBitmap32;

// The untrimmed image behind a page entry; null when its page can't be read.
uint32_t* Picture_OfEntry(const ArchivePageEntry& entry);
// The bytes of a file by a script's name for it: the save folder first, then the game's
// folder. Null when there is none, and for a name that leads out of both.
uint8_t* Picture_ReadFile(const char* name, uint32_t* size);
// A picture file, found in the same places. Null, after a line on the debug console, when there is
// none or it can't be read; GIF is not read.
CBitmap32* Picture_Load(const char* name);
// Writes a PNG into the save folder; false after a line on the debug console.
bool Picture_Save(const char* name, const uint32_t* pixels, int32_t width, int32_t height);
// Makes the colour of the lower left pixel transparent.
void Picture_RemoveBackground(uint32_t* pixels, int32_t width, int32_t height);
// Lowers the alpha of pixels beside transparent ones.
void Picture_SmoothEdges(uint32_t* pixels, int32_t width, int32_t height);
