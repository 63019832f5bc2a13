#pragma once
// The stored solutions of the levels.

#include <string>

// The steps of content/levels/levelNNN.txt as one of W, A, S, D each; empty when the
// file has none.
std::string Solution_Of(int level);
