#pragma once
// The first word of a container's stream. The older form has a word that is less by one,
// and is read in the same way.

#include "Files/Data/DS_Values.h"

enum StreamVersion : uint32_t {
    STREAM_STACK = 102,
    STREAM_QUEUE = 202,
    STREAM_LIST = 302,
    STREAM_MAP = 402,
    STREAM_PRIORITY = 502,
    STREAM_GRID = 602,
};

inline bool TakeVersion(CStream* stream, StreamVersion expected)
{
    uint32_t version = 0;
    return stream->Read32(&version) && (version == expected || version + 1 == expected);
}
