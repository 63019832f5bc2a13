#pragma once
// The soft device's loops beside the same work done by other rasterisers: both in one
// run, turn by turn, and the ratio of the fastest turns.

// Prints one line for each comparison: our time, the peer's time, peer divided by
// ours. `repeats` turns each, at least 12; `only` names one, or is empty for all.
// Returns how many were made.
int RunPeers(const char* only, int repeats);
