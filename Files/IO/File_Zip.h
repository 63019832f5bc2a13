#pragma once
// ZIP archives (PKWARE APPNOTE 6.3): stored and deflated entries, unpacked through zlib.
// Encrypted entries, archives of several disks and those above 4 GiB are refused.

#include <cstdint>

#include "Platform/MemoryManager.h"

struct ZipEntry {
    VxString name;          // "/" between folders; a folder ends with it
    uint32_t offset;        // of its local header
    uint32_t packed, size;  // bytes
    uint32_t crc;
    bool deflated;
};

// The entries of the archive's directory. Null, or what is wrong with the archive: also
// an entry whose name leads out of the folder that it is unpacked into.
const char* Zip_List(const uint8_t* bytes, uint32_t size, VxVector<ZipEntry>* entries);
// The content, a block of MemoryManager that the caller frees (one even for size 0); null
// when it is damaged.
uint8_t* Zip_Unpack(const uint8_t* bytes, uint32_t size, const ZipEntry& entry);
// Whether the name of an entry stays below the folder that it is unpacked into.
bool Zip_StaysBelow(const VxString& name);

// Unpacks the archive at a path into a folder; both are paths of File_Names.h. How many
// files were written, or -1 after a line on the error console. Nothing is written from
// an archive whose directory is damaged.
int32_t Zip_UnpackFile(const char* path, const char* folder);
