#pragma once
// Solves a level with the fewest pushes, or says how far the search came.
//
// Methods:
//   A* over pushes (P. Hart, N. Nilsson, B. Raphael, "A formal basis for the heuristic
//     determination of minimum cost paths", 1968) with a queue of buckets;
//   one figure place for each reachable area, and the least matching of boxes and targets
//     as the bound (A. Junghanns, J. Schaeffer, "Sokoban: enhancing general single-agent
//     search methods using domain knowledge", 2001);
//   dead cells, freeze deadlocks and PI-corrals (Deadlock.h);
//   for levels that A* does not end in time, the same with a weighted bound (I. Pohl,
//     "Heuristic search viewed as path finding in a graph", 1970);
//   from 12 boxes on such a hasty search packs goals (Packing.h), and takes the positions in
//     turn by how far packing is and how many parts the floor has (Y. Shoham, J. Schaeffer,
//     "The FESS algorithm: a feature based approach to single-agent search", 2020).
//
// Covering all targets ends the puzzle at once; it is solved if the figure then reaches
// the gate, and lost if not.

#include <cstdint>

#include "tools/levels/Board.h"

namespace levels {

struct SolveLimits {
    uint32_t nodes = 4'000'000;  // positions kept; about 60 bytes each
    int weight = 1;              // of the bound: 1 gives fewest pushes, more gives any soon
    bool corrals = true;         // pruned; without, the same answer takes longer
    int packed = 12;             // boxes from which on a weighted search fills targets in order
};

enum class Verdict { solved, unsolvable, gaveUp };

struct Solution {
    Verdict verdict = Verdict::gaveUp;
    Pushes pushes;
    bool fewest = false;  // proved to be the fewest
    int bound = 0;        // every solution has at least as many pushes
    uint32_t nodes = 0;   // positions seen
};

Solution Solve(const Board& board, const SolveLimits& limits = {});

// The shortest of some hasty solutions, polished; `fewest` when the bound proves it so. For
// levels that are too hard for a proof.
Solution SolveHastily(const Board& board, uint32_t nodes);

// A solution that is no longer than `pushes`: every window of so many pushes is replaced
// by the fewest between the same two positions, as far as the search finds them soon.
// Method: vicinity search (as solution optimisers of this puzzle have it).
Pushes Polish(const Board& board, const Pushes& pushes, size_t window, uint32_t nodes);

}  // namespace levels
