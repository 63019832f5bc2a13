#pragma once
// The search from the end of a level to its start: from "all targets covered, the exit
// within reach" by pulling boxes away. Each position keeps the way back, which is a
// solution of the level that begins there.
//
// Method: breadth-first search over pulls (as in J. Taylor, I. Parberry, "Procedural
// generation of Sokoban levels", 2011). As long as no layer is cut, the depth of a
// position is the least number of pushes. A layer that grows too large is cut to a beam;
// from then on depths are those of a solution that may be longer than need be.

#include "tools/levels/Board.h"
#include "tools/levels/Position_Table.h"

namespace levels {

struct PullLimits {
    uint32_t positions = 2'000'000;  // kept at most
    uint32_t uncut = 1'000'000;      // positions after which layers are cut
    uint32_t beam = 500;             // positions of a cut layer
    int depth = 120;                 // pushes
    uint64_t seed = 0;               // of the beam's choice
};

class PullSearch {
public:
    // The board's boxes and start are not looked at.
    PullSearch(const Board& board, const PullLimits& limits);

    uint32_t Size() const { return static_cast<uint32_t>(nodes_.size()); }
    Bits Boxes(uint32_t number) const { return table_.At(number).boxes; }
    // All cells that the figure reaches.
    Bits Area(uint32_t number) const
    {
        return Reach(board_.floor & ~Boxes(number), Bit(table_.At(number).area));
    }
    int Depth(uint32_t number) const { return nodes_[number].depth; }
    bool Exact() const { return exact_; }  // depths are least numbers of pushes
    Pushes Way(uint32_t number) const;     // from there to the end

private:
    struct Node {
        uint32_t after;
        uint16_t depth;
        uint8_t box, direction;  // the push that leads on
    };

    void Expand(uint32_t number);
    void Cut(std::vector<uint32_t>& layer, const PullLimits& limits) const;

    const Board board_;
    const Distances distances_;
    bool exact_ = true;
    PositionTable table_;
    std::vector<Node> nodes_;
    std::vector<uint32_t> next_;  // the layer that is being made
};

}  // namespace levels
