#include "Files/Base/CRC.h"

namespace {

constexpr uint32_t kPolynomial = 0xEDB88320U;

uint32_t g_table[256];

}  // namespace

void CRC_Init()
{
    for (uint32_t byte = 0; byte < 256; ++byte) {
        uint32_t value = byte;
        for (int bit = 0; bit < 8; ++bit) value = value >> 1 ^ (value & 1 ? kPolynomial : 0);
        g_table[byte] = value;
    }
}

uint32_t CRC_Of(const void* bytes, size_t size, uint32_t crc)
{
    crc = ~crc;
    const auto* at = static_cast<const uint8_t*>(bytes);
    for (size_t i = 0; i < size; ++i) crc = crc >> 8 ^ g_table[(crc ^ at[i]) & 0xFF];
    return ~crc;
}
