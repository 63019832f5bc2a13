#pragma once
// `--write-seeds=FOLDER` of a fuzz target writes its first inputs and ends.

#include <cstdlib>
#include <cstring>

template <class Write>
void WriteSeedsIfAsked(int count, char** arguments, Write write)
{
    constexpr char kSeeds[] = "--write-seeds=";
    for (int i = 1; i < count; ++i) {
        if (std::strncmp(arguments[i], kSeeds, sizeof kSeeds - 1) != 0) continue;
        write(arguments[i] + sizeof kSeeds - 1);
        std::exit(0);
    }
}
