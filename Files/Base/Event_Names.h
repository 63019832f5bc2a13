#pragma once
// The names of events and keys in error reports.

#include <cstddef>
#include <cstdint>

// "Alarm Event for alarm 0", "Key Press Event for <Space>"; cut at `size` bytes.
void Event_Describe(char* out, size_t size, int32_t type, int32_t subtype);
// "<Left>", "A", "<Numpad 4>"; "<Key 255>" for a key without a name of its own.
void Event_KeyName(char* out, size_t size, int32_t key);
