#include "Platform/CHashMap.h"

namespace {

uint32_t RotateLeft(uint32_t value, int bits)
{
    return (value << bits) | (value >> (32 - bits));
}

uint32_t Scramble(uint32_t block)
{
    return RotateLeft(block * 0xCC9E2D51U, 15) * 0x1B873593U;
}

}  // namespace

uint32_t Hash_Bytes(const void* bytes, size_t size, uint32_t seed)
{
    const uint8_t* next = static_cast<const uint8_t*>(bytes);
    uint32_t hash = seed;
    for (size_t blocks = size / 4; blocks > 0; --blocks, next += 4) {
        const uint32_t block =
            static_cast<uint32_t>(next[0]) | static_cast<uint32_t>(next[1]) << 8 |
            static_cast<uint32_t>(next[2]) << 16 | static_cast<uint32_t>(next[3]) << 24;
        hash = RotateLeft(hash ^ Scramble(block), 13) * 5 + 0xE6546B64U;
    }
    uint32_t tail = 0;
    for (size_t i = size & 3; i > 0; --i) tail = tail << 8 | next[i - 1];
    if (size & 3) hash ^= Scramble(tail);

    hash ^= static_cast<uint32_t>(size);
    hash = (hash ^ (hash >> 16)) * 0x85EBCA6BU;
    hash = (hash ^ (hash >> 13)) * 0xC2B2AE35U;
    hash = (hash ^ (hash >> 16)) & 0x7FFFFFFFU;
    return hash ? hash : 1;
}

uint32_t Hash_Name(const char* name)
{
    return Hash_Bytes(name, std::strlen(name));
}
