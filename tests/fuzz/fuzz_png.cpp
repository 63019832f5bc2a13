// Feeds any bytes to the PNG reader: header alone, then pixels, and on another block at
// once. What it gives lies inside its limits, and both ways agree.
//
//   fuzz_png --write-seeds=DIR    writes small pictures into DIR, which exists
//   fuzz_png -max_total_time=600 DIR

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <vector>

#include "Files/Base/Console.h"
#include "Files/Graphics/Bitmap.h"
#include "Files/Graphics/TextureSlots.h"
#include "Host/Host.h"
#include "tests/fuzz/support_PNG.h"
#include "tests/fuzz/support_Seeds.h"

namespace {

void Require(bool holds, const char* what)
{
    if (holds) return;
    std::fprintf(stderr, "%s\n", what);
    std::abort();
}

bool Start()
{
    Host_UseStage();
    Console_Init();
    Console_SetSink([](void*, const char*) {}, nullptr);
    return true;
}

void Check(const uint8_t* bytes, uint32_t size, bool scale)
{
    int32_t width = 0, height = 0, wide = 0, high = 0;
    const bool header = ReadPNG_Header(bytes, size, &width, &height, false);
    Require(header == (width > 0 && height > 0), "a header without a size");
    Require(width <= kMaxPictureSize && height <= kMaxPictureSize, "a picture too large");
    uint8_t* pixels = ReadPNG_Pixels(bytes, size, &wide, &high, scale);
    Require(!pixels == (wide == -1 && high == -1), "pixels without a size");
    Require(!pixels || header, "pixels without a header");
    if (pixels) {
        Require(scale || (wide == width && high == height), "two sizes");
        const size_t count = static_cast<size_t>(wide) * static_cast<size_t>(high) * 4;
        Require(MemoryManager::GetSize(pixels) >= count, "a block too small");
        const std::unique_ptr<uint8_t[]> copy(new uint8_t[count]);
        std::memcpy(copy.get(), pixels, count);  // every byte is there
    }
    MemoryManager::Free(pixels);
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int* count, char*** arguments)
{
    WriteSeedsIfAsked(*count, *arguments, WritePictures);
    return 0;
}

// The last byte: bit 0 leaves the checksums as they are, bits 1 and 2 scale.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    static const bool started = Start();
    if (!started || size == 0) return 0;
    const uint8_t kind = data[--size];
    const std::unique_ptr<uint8_t[]> block(new uint8_t[size]);
    if (size) std::memcpy(block.get(), data, size);
    if (!(kind & 1)) MendChecksums(block.get(), size);
    g_TextureGlobalScale = 1 << (kind >> 1 & 3);
    Check(block.get(), static_cast<uint32_t>(size), g_TextureGlobalScale > 1);
    Bitmap_Quit();
    return 0;
}
