#pragma once
// CRC-32 of IEEE 802.3: polynomial 0xEDB88320 (reflected), start and end inverted.

#include <cstddef>
#include <cstdint>

void CRC_Init();  // fills the table; before the first CRC_Of
// `crc` is the result for the bytes before, 0 at the start.
uint32_t CRC_Of(const void* bytes, size_t size, uint32_t crc = 0);
