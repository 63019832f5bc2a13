#pragma once
// Records that tell which axis, button or hat of a controller is which part of a pad.
//
//   guid,description,platform:linux,a:b0,leftx:a0,dpup:h0.1

#include <cstdint>

#include "Platform/MemoryManager.h"

enum class PadTargetKind : uint8_t { None = 0, Axis = 1, Button = 2, Hat = 3 };
struct PadTarget {
    PadTargetKind kind = PadTargetKind::None;
    int32_t index = 0, mask = 0;
};
// "a" to "rightshoulder", the triggers, "guide", "start", the sticks and the cross are
// buttons 0 to 15; then come four axes, and "back".
inline constexpr int32_t kPadTargets = 21, kFirstAxisTarget = 16, kBackTarget = 20;

struct PadMapping {
    VxString text, guid, description;
    int32_t platform = 0;
    PadTarget targets[kPadTargets];
};

// Puts the record at the front of the list; false when the text is no record.
bool PadMap_Add(const char* text);
// The record of a device on this system, or null.
const PadMapping* PadMap_Find(const VxString& guid);
const VxVector<PadMapping>& PadMap_All();  // the newest first
void PadMap_Clear();
