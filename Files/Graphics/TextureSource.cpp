// Encoded pictures: which kind they are, their size, and their pixels; and the
// pages of the archive.

#include <cstring>

#include "Files/Base/Archive_Records.h"
#include "Files/Base/Console.h"
#include "Files/Graphics/Bitmap.h"
#include "Files/Graphics/Page_Decoder.h"
#include "Files/Graphics/TextureSlots.h"
#include "Platform/MemoryManager.h"

namespace {

constexpr uint32_t kRawMagic = 0x20574152;  // "RAW "

// The header of raw pixels; the pixels follow it.
struct RawHeader {
    uint32_t magic;
    uint32_t width, height;
    uint32_t kind;  // 0: 32 bits red, green, blue, alpha; 1: 16 bits of four nibbles
};
static_assert(sizeof(RawHeader) == 16);
enum RawKind : uint32_t { RAW_32 = 0, RAW_4444 = 1 };

bool IsRaw(const uint8_t* data, uint32_t size)
{
    uint32_t magic = 0;
    if (size < sizeof(RawHeader)) return false;
    std::memcpy(&magic, data, sizeof magic);
    return magic == kRawMagic;
}

// False unless kind and size hold and all pixels lie inside the bytes.
bool RawRead(const uint8_t* data, uint32_t size, RawHeader* header)
{
    std::memcpy(header, data, sizeof *header);
    if (header->kind > RAW_4444 || header->width == 0 || header->height == 0) return false;
    if (header->width > kMaxPictureSize || header->height > kMaxPictureSize) return false;
    const uint64_t pixelBytes = header->kind == RAW_32 ? 4 : 2;
    return pixelBytes * header->width * header->height <= size - sizeof *header;
}

uint32_t SwapRedBlue(uint32_t pixel)
{
    return (pixel & 0xFF00FF00U) | (pixel & 0xFFU) << 16 | (pixel >> 16 & 0xFFU);
}

// Nibbles red, green, blue, alpha from the top down, widened to bytes.
uint32_t Widen(uint16_t pixel)
{
    const uint32_t nibbles = static_cast<uint32_t>(pixel >> 4) | (pixel & 0xFU) << 12;
    uint32_t wide = 0;
    for (uint32_t i = 0; i < 4; ++i) wide |= ((nibbles >> (4 * i)) & 0xFU) * 17U << (8 * i);
    return wide;
}

uint32_t* RawDecode(const uint8_t* data, uint32_t size, int32_t* width, int32_t* height)
{
    RawHeader header;
    if (!RawRead(data, size, &header)) return nullptr;
    const size_t count = static_cast<size_t>(header.width) * header.height;
    auto* pixels = static_cast<uint32_t*>(MemoryManager::Alloc(count * 4));
    const uint8_t* source = data + sizeof header;
    if (header.kind == RAW_32) {
        std::memcpy(pixels, source, count * 4);
        for (size_t i = 0; i < count; ++i) pixels[i] = SwapRedBlue(pixels[i]);
    } else {
        for (size_t i = 0; i < count; ++i) {
            uint16_t pixel;
            std::memcpy(&pixel, source + i * 2, sizeof pixel);
            pixels[i] = Widen(pixel);
        }
    }
    *width = static_cast<int32_t>(header.width);
    *height = static_cast<int32_t>(header.height);
    return pixels;
}

// The bytes of a page: from its offset to the end of the chunk. None: null.
PageSource FindPage(const uint8_t* chunk, uint32_t size, const uint8_t* archiveBase,
                    uint32_t recordOffset)
{
    const auto chunkStart = static_cast<uint64_t>(chunk - archiveBase);
    const uint64_t chunkEnd = chunkStart + size;
    if (recordOffset < chunkStart || recordOffset + sizeof(ArchivePage) > chunkEnd)
        return {nullptr, 0};
    ArchivePage page;
    std::memcpy(&page, archiveBase + recordOffset, sizeof page);
    if (page.data < chunkStart || page.data >= chunkEnd) return {nullptr, 0};
    return {archiveBase + page.data, static_cast<uint32_t>(chunkEnd - page.data)};
}

// Reads word `index` of a list that starts at `list` and whose chunk has `size` bytes.
uint32_t ListWord(const uint8_t* list, uint32_t size, uint32_t index)
{
    uint32_t word = 0;
    if ((static_cast<uint64_t>(index) + 1) * 4 <= size)
        std::memcpy(&word, list + static_cast<size_t>(index) * 4, sizeof word);
    return word;
}

}  // namespace

bool TextureSource_Header(const uint8_t* data, uint32_t size, int32_t* width, int32_t* height)
{
    if (IsRaw(data, size)) {
        RawHeader header;
        if (!RawRead(data, size, &header)) return false;
        *width = static_cast<int32_t>(header.width);
        *height = static_cast<int32_t>(header.height);
        return true;
    }
    if (IsJPEG(data, size)) return ReadJPEG_Header(data, size, width, height);
    return ReadPNG_Header(data, size, width, height, false) && *width > 0 && *height > 0 &&
           *width <= kMaxPictureSize && *height <= kMaxPictureSize;
}

bool TextureSource_Compresses(const uint8_t* data, uint32_t size)
{
    return !IsRaw(data, size);
}

uint32_t* TextureSource_Decode(const uint8_t* data, uint32_t size, int32_t* width, int32_t* height)
{
    if (!data) return nullptr;
    if (IsRaw(data, size)) return RawDecode(data, size, width, height);
    return reinterpret_cast<uint32_t*>(IsJPEG(data, size)
                                           ? ReadJPEG_Pixels(data, size, width, height)
                                           : ReadPNG_Pixels(data, size, width, height, false));
}

bool Textures_Load(const uint8_t* chunk, uint32_t size, uint8_t* archiveBase, uint8_t* tpagChunk,
                   uint32_t tpagSize)
{
    VxVector<int32_t> pages;
    VxVector<PageSource> sources;
    const uint32_t pageCount = ListWord(chunk, size, 0);
    for (uint32_t i = 0; i < pageCount && (i + 1ULL) * 4 <= size; ++i) {
        const PageSource source = FindPage(chunk, size, archiveBase, ListWord(chunk, size, i + 1));
        pages.push_back(source.data ? Texture_CreateFromFile(source.data, source.size)
                                    : TextureSlot_Find());
        if (Texture_Get(pages.back())->texture) sources.push_back(source);
    }
    // On demand, a page is decoded when it is asked for and no earlier.
    if (!g_TexturesOnDemand) PageDecoder_Start(sources);

    const auto tpagStart = static_cast<uint64_t>(tpagChunk - archiveBase);
    const uint32_t entryCount = ListWord(tpagChunk, tpagSize, 0);
    for (uint32_t i = 0; i < entryCount && (i + 1ULL) * 4 <= tpagSize; ++i) {
        const uint32_t offset = ListWord(tpagChunk, tpagSize, i + 1);
        if (offset < tpagStart || offset + sizeof(ArchivePageEntry) > tpagStart + tpagSize)
            continue;
        ArchivePageEntry entry;
        std::memcpy(&entry, archiveBase + offset, sizeof entry);
        if (entry.texture < 0 || static_cast<size_t>(entry.texture) >= pages.size()) {
            g_ErrorConsole->Output("what!!!!\n");
            continue;
        }
        entry.texture = static_cast<int16_t>(pages[static_cast<size_t>(entry.texture)]);
        std::memcpy(archiveBase + offset, &entry, sizeof entry);
    }
    return true;
}
