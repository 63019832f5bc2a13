#include "Files/IO/File_Zip.h"

#include <zlib.h>

#include <algorithm>
#include <cstring>

#include "Files/Base/Console.h"
#include "Files/IO/File_Disk.h"
#include "Files/IO/File_Names.h"
#include "Host/Host.h"

namespace {

constexpr uint32_t kLocalMark = 0x04034B50, kDirectoryMark = 0x02014B50, kEndMark = 0x06054B50;
constexpr uint32_t kLocalSize = 30, kDirectorySize = 46, kEndSize = 22;  // without their texts
constexpr uint32_t kLongestComment = 0xFFFF;
constexpr uint32_t kEncrypted = 1;
constexpr uint32_t kStored = 0, kDeflated = 8;
constexpr uint64_t kBestRatio = 1032;  // of deflate: bytes out of one byte

uint32_t Word16(const uint8_t* at)
{
    return at[0] | static_cast<uint32_t>(at[1]) << 8;
}
uint32_t Word32(const uint8_t* at)
{
    return Word16(at) | Word16(at + 2) << 16;
}

// The record at the archive's end, which a comment may follow; null when there is none.
const uint8_t* FindEnd(const uint8_t* bytes, uint32_t size)
{
    if (size < kEndSize) return nullptr;
    const uint32_t last = size - kEndSize;
    const uint32_t first = last > kLongestComment ? last - kLongestComment : 0;
    for (uint32_t at = last + 1; at-- > first;)
        if (Word32(bytes + at) == kEndMark && Word16(bytes + at + 20) == last - at)
            return bytes + at;
    return nullptr;
}

// What is wrong with the entry whose record stands at `record`, or null.
const char* TakeEntry(const uint8_t* record, ZipEntry* entry)
{
    const uint32_t flags = Word16(record + 8), method = Word16(record + 10);
    entry->crc = Word32(record + 16);
    entry->packed = Word32(record + 20);
    entry->size = Word32(record + 24);
    entry->offset = Word32(record + 42);
    const VxString name(reinterpret_cast<const char*>(record + kDirectorySize),
                        Word16(record + 28));
    if (name.find('\0') != VxString::npos) return "the name of an entry holds a zero byte";
    entry->name = WithSeparators(name.c_str());
    entry->deflated = method == kDeflated;
    if (!Zip_StaysBelow(entry->name)) return "an entry leads out of the folder";
    if (flags & kEncrypted) return "an entry is encrypted";
    if (method != kStored && method != kDeflated) return "an entry is packed in an unknown way";
    if (entry->deflated ? entry->size > entry->packed * kBestRatio : entry->size != entry->packed)
        return "the sizes of an entry differ";
    return nullptr;
}

bool Inflate(const uint8_t* packed, uint32_t packedSize, uint8_t* out, uint32_t size)
{
    z_stream stream = {};
    if (inflateInit2(&stream, -MAX_WBITS) != Z_OK) return false;
    stream.next_in = const_cast<uint8_t*>(packed);
    stream.avail_in = packedSize;
    stream.next_out = out;
    stream.avail_out = size;
    const bool whole = inflate(&stream, Z_FINISH) == Z_STREAM_END && stream.total_out == size;
    inflateEnd(&stream);
    return whole;
}

// The packed bytes of an entry; null when they lead outside the archive.
const uint8_t* PackedBytes(const uint8_t* bytes, uint32_t size, const ZipEntry& entry)
{
    if (size < kLocalSize || entry.offset > size - kLocalSize) return nullptr;
    const uint8_t* const local = bytes + entry.offset;
    if (Word32(local) != kLocalMark) return nullptr;
    const uint64_t start =
        uint64_t{entry.offset} + kLocalSize + Word16(local + 26) + Word16(local + 28);
    return start + entry.packed <= size ? bytes + start : nullptr;
}

int32_t UnpackAll(const uint8_t* bytes, uint32_t size, const VxVector<ZipEntry>& entries,
                  const VxString& folder, const char** fault)
{
    int32_t files = 0;
    for (const ZipEntry& entry : entries) {
        const VxString path = folder + "/" + entry.name;
        if (path.back() == '/') {
            CreateDirectoryTree(MappedPath(GetSaveFileName, path.c_str()));
            continue;
        }
        uint8_t* content = Zip_Unpack(bytes, size, entry);
        const bool written = content && WriteSaveFile(path.c_str(), content, entry.size);
        MemoryManager::Free(content);
        if (!written) {
            *fault = content ? "an entry can't be written" : "an entry is damaged";
            return -1;
        }
        ++files;
    }
    return files;
}

}  // namespace

bool Zip_StaysBelow(const VxString& name)
{
    if (name.empty() || name[0] == '/' || name.find(':') != VxString::npos) return false;
    for (size_t start = 0; start < name.size();) {
        const size_t end = std::min(name.find('/', start), name.size());
        const VxString part = name.substr(start, end - start);
        if (part.empty() || part == "." || part == "..") return false;
        start = end + 1;
    }
    return true;
}

const char* Zip_List(const uint8_t* bytes, uint32_t size, VxVector<ZipEntry>* entries)
{
    const uint8_t* const end = FindEnd(bytes, size);
    if (!end) return "this is no ZIP archive";
    if (Word32(end + 4) != 0) return "the archive has several disks";
    const auto limit = static_cast<uint32_t>(end - bytes);
    uint64_t at = Word32(end + 16), unpacked = 0;
    for (uint32_t left = Word16(end + 10); left > 0; --left) {
        if (at + kDirectorySize > limit) return "the directory is cut off";
        const uint8_t* const record = bytes + at;
        if (Word32(record) != kDirectoryMark) return "the directory is damaged";
        at += kDirectorySize + Word16(record + 28) + Word16(record + 30) + Word16(record + 32);
        if (at > limit) return "the directory is cut off";
        ZipEntry entry{};
        if (const char* fault = TakeEntry(record, &entry)) return fault;
        unpacked += entry.size;
        if (unpacked > size * kBestRatio) return "entries share their bytes";
        entries->push_back(entry);
    }
    return nullptr;
}

uint8_t* Zip_Unpack(const uint8_t* bytes, uint32_t size, const ZipEntry& entry)
{
    const uint8_t* const packed = PackedBytes(bytes, size, entry);
    if (!packed) return nullptr;
    auto* content = static_cast<uint8_t*>(MemoryManager::Alloc(size_t{entry.size} + 1));
    const bool whole = !entry.deflated || Inflate(packed, entry.packed, content, entry.size);
    if (!entry.deflated) std::memcpy(content, packed, entry.size);
    if (whole && crc32(0, content, entry.size) == entry.crc) return content;
    MemoryManager::Free(content);
    return nullptr;
}

int32_t Zip_UnpackFile(const char* path, const char* folder)
{
    uint32_t size = 0;
    uint8_t* bytes = *path && *folder ? g_Host.files.ReadAll(path, &size) : nullptr;
    VxVector<ZipEntry> entries;
    const char* fault = bytes ? Zip_List(bytes, size, &entries) : "it can't be read";
    const int32_t files = fault ? -1 : UnpackAll(bytes, size, entries, folder, &fault);
    MemoryManager::Free(bytes);
    if (fault) g_ErrorConsole->Output("Could not unpack %s: %s\n", path, fault);
    return files;
}
