#pragma once
// Records read in place, from an archive that was checked: lists, copies of records
// at any alignment, and texts.

#include <cstdint>
#include <cstring>

#include "Files/Base/Archive_Records.h"

// A count followed by that many offsets.
class ArchiveList {
public:
    ArchiveList(const uint8_t* list, const uint8_t* archiveBase) : list_(list), base_(archiveBase)
    {
    }
    uint32_t Count() const { return Word(0); }
    const uint8_t* At(uint32_t index) const  // null for an empty slot
    {
        const ArchiveOffset offset = Word(index + size_t{1});
        return offset ? base_ + offset : nullptr;
    }

private:
    uint32_t Word(size_t index) const
    {
        uint32_t word;
        std::memcpy(&word, list_ + index * sizeof word, sizeof word);
        return word;
    }
    const uint8_t* list_;
    const uint8_t* base_;
};

template <class T>
T ArchiveCopy(const uint8_t* at)
{
    T record;
    std::memcpy(&record, at, sizeof record);
    return record;
}

// Text in place, "" for a null reference.
inline const char* ArchiveText(const uint8_t* archiveBase, ArchiveString offset)
{
    return offset ? reinterpret_cast<const char*>(archiveBase) + offset : "";
}
