#pragma once
// What the units that draw a room share.

#include <cstdint>

class CInstance;
class CObjectSW;
class CRoom;

struct DrawRect {
    float left, top, right, bottom;  // room pixels
};

// The object or an ancestor has the Draw event of that subtype.
bool Draw_ObjectHas(const CObjectSW* object, int32_t subtype);
// A visible instance that takes part in drawing.
bool Draw_Takes(const CInstance* instance);
// Runs a Draw event on all takers that have it, highest depth first. `first` is
// called before the first one runs; may be null.
void Draw_RunEvents(CRoom* room, int32_t subtype, void (*first)());
// Descending depth, equal depths in the order of the array.
void Draw_SortTiles(CRoom* room);
// One pass over the room for one view.
void DrawTheRoom(CRoom* room, const DrawRect& rect);
// Instances, tiles and particles by depth.
void Draw_DepthMerge(CRoom* room, const DrawRect& rect);
