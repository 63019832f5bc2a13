// Collision masks: from packed rows, one bit a pixel with the leftmost in the top bit,
// to one byte a pixel.

#include "Files/Sprite/CSprite.h"

const uint8_t* CSprite::ExpandedMasks()
{
    if (masksExpanded) return expandedMasks;
    if (!packedMasks || maskCount <= 0 || width <= 0 || height <= 0) return nullptr;
    const auto across = static_cast<size_t>(width), down = static_cast<size_t>(height);
    const size_t rowBytes = (across + 7) / 8;
    const size_t rows = down * static_cast<size_t>(maskCount);
    expandedMasks = static_cast<uint8_t*>(MemoryManager::Alloc(rows * across));
    const uint8_t* packed = packedMasks;
    uint8_t* pixel = expandedMasks;
    for (size_t row = 0; row < rows; ++row, packed += rowBytes)
        for (size_t x = 0; x < across; ++x)
            *pixel++ = static_cast<uint8_t>(packed[x / 8] >> (7 - x % 8) & 1);
    masksExpanded = true;
    return expandedMasks;
}
