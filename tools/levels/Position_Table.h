#pragma once
// Positions met by a search, each once: an open-addressing table of their numbers.

#include <cstdint>
#include <vector>

#include "tools/levels/Board.h"

namespace levels {

// Boxes, and the first cell of the area that the figure reaches.
struct Position {
    Bits boxes = 0;
    Cell area = 0;
    friend bool operator==(const Position&, const Position&) = default;
};

inline uint64_t Hash(const Position& position)
{
    // Multiply and fold, with odd constants of the splitmix generator.
    uint64_t h = static_cast<uint64_t>(position.boxes) * 0x9e3779b97f4a7c15u;
    h ^= h >> 32;
    h += static_cast<uint64_t>(position.boxes >> 64) * 0xbf58476d1ce4e5b9u +
         static_cast<uint64_t>(position.area) * 0x94d049bb133111ebu;
    h ^= h >> 29;
    h *= 0xbf58476d1ce4e5b9u;
    return h ^ h >> 32;
}

class PositionTable {
public:
    PositionTable() : slots_(1 << 12, 0) {}

    size_t Size() const { return positions_.size(); }
    const Position& At(uint32_t number) const { return positions_[number]; }

    // The number of a position, counted in the order of adding; `added` tells whether it
    // is new.
    uint32_t Add(const Position& position, bool& added)
    {
        if (positions_.size() * 2 >= slots_.size()) Grow();
        uint32_t& slot = Slot(position);
        added = slot == 0;
        if (added) {
            positions_.push_back(position);
            slot = static_cast<uint32_t>(positions_.size());
        }
        return slot - 1;
    }

private:
    uint32_t& Slot(const Position& position)
    {
        const size_t mask = slots_.size() - 1;
        size_t at = Hash(position) & mask;
        while (slots_[at] && !(positions_[slots_[at] - 1] == position)) at = (at + 1) & mask;
        return slots_[at];
    }
    void Grow()
    {
        std::vector<uint32_t>(slots_.size() * 4, 0).swap(slots_);
        for (uint32_t i = 0; i < positions_.size(); ++i) Slot(positions_[i]) = i + 1;
    }

    std::vector<Position> positions_;
    std::vector<uint32_t> slots_;  // number + 1; 0 is empty
};

}  // namespace levels
