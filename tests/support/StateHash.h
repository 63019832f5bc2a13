#pragma once
// The signature of the world's state: equal worlds give equal numbers.

#include <cstdint>

// All instances of the running room with fields and variables, the globals, the
// room, and the next word of the random generator's state (FNV-1a, 64 bits; Fowler,
// Noll, Vo).
uint64_t StateHash_World();
