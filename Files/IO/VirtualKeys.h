#pragma once
// Virtual keys: rectangles in GUI units that act as a keyboard key under a touch. A
// desktop has no source of touches, so a key never fires there; the table and the
// handles that scripts hold work all the same.

#include <cstdint>

inline constexpr int32_t kVirtualKeys = 128;

struct SWVirtualKey {
    bool inUse, visible;
    int32_t x1, y1, x2, y2;  // GUI units; right and bottom edges lie outside
    int32_t width, height;
    int32_t key;     // keyboard key, 0 for none
    int32_t button;  // mouse button when there is no key
};

void VirtualKeys_Init();  // an empty table, whose keys go at each room's end
void VirtualKeys_Quit();

// Takes the first free place; its number plus 1 is the handle, -1 when all are taken.
int32_t VirtualKeys_Add(int32_t x, int32_t y, int32_t width, int32_t height, int32_t key);
SWVirtualKey* VirtualKeys_Find(int32_t handle);  // null outside the table
