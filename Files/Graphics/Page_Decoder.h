#pragma once
// Pages of the archive, decoded ahead of their first bind by a thread of its own where
// there is a core for it. Nothing of that shows: a page that is needed before its turn is
// decoded by the one who needs it, and so is a page that can't be read, which is told at the
// same moment as without the thread.

#include <cstdint>

#include "Platform/MemoryManager.h"

struct PageSource {
    const uint8_t* data;  // stays until PageDecoder_Stop
    uint32_t size;
};

// Begins with the pages in the order given. PNGs only: others are left to their bind.
void PageDecoder_Start(const VxVector<PageSource>& pages);
// The pixels of a page, as ReadPNG_Pixels gives them and now the caller's; null when they
// were not decoded ahead. A page whose turn it is is waited for. A page comes once.
uint8_t* PageDecoder_Take(const uint8_t* data, int32_t* width, int32_t* height);
// Waits until the thread rests: all pages are done, or as many as may lie ready.
void PageDecoder_Settle();
int32_t PageDecoder_Ready();  // pages that lie ready
// Ends the thread and frees what was not taken.
void PageDecoder_Stop();
