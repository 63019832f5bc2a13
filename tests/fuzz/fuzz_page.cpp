// Feeds any bytes to the loading of pages: a chunk of pages and one of entries, then every
// page is bound, drawn and read back. Pages of all kinds, good ones and others.
//
//   fuzz_page --write-seeds=DIR    writes small chunks into DIR, which exists
//   fuzz_page -max_total_time=600 DIR

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <vector>

#include "Files/Base/Archive_Records.h"
#include "Files/Base/Console.h"
#include "Files/Graphics/Bitmap.h"
#include "Files/Graphics/GpuState.h"
#include "Files/Graphics/Page_Decoder.h"
#include "Files/Graphics/Quad.h"
#include "Files/Graphics/TextureSlots.h"
#include "Files/Graphics/Window.h"
#include "Host/Host_Stage.h"
#include "tests/fuzz/support_PNG.h"
#include "tests/fuzz/support_Seeds.h"

namespace {

using Bytes = std::vector<uint8_t>;
constexpr int32_t kWidth = 40, kHeight = 30;

void Require(bool holds, const char* what)
{
    if (holds) return;
    std::fprintf(stderr, "%s\n", what);
    std::abort();
}

bool Start()
{
    Host_UseSDL();
    const HostProcessTable threads = g_Host.process;
    Host_UseStage();
    g_Host.process.StartThread = threads.StartThread;
    g_Host.process.JoinThread = threads.JoinThread;
    Stage_Reset();
    Console_Init();
    Console_SetSink([](void*, const char*) {}, nullptr);
    g_Display.clientWidth = g_Display.backbufferWidth = kWidth;
    g_Display.clientHeight = g_Display.backbufferHeight = kHeight;
    char error[256];
    Require(Device_Soft.Open({kWidth, kHeight, false, 0, 0}, error, sizeof error), error);
    g_Device = &Device_Soft;
    return true;
}

void PutWord(Bytes* bytes, size_t word)
{
    for (int i = 0; i < 4; ++i) bytes->push_back(static_cast<uint8_t>(word >> (8 * i)));
}

// The pages, one entry for each, and behind them the bytes that say how to load: the size
// of the first chunk and the switches.
Bytes ChunksOf(const std::vector<Bytes>& pages)
{
    Bytes bytes, data;
    PutWord(&bytes, pages.size());
    for (size_t i = 0; i < pages.size(); ++i) PutWord(&bytes, 4 + pages.size() * 4 + i * 8);
    for (const Bytes& page : pages) {
        PutWord(&bytes, 0);
        PutWord(&bytes, 4 + pages.size() * 12 + data.size());
        data.insert(data.end(), page.begin(), page.end());
    }
    bytes.insert(bytes.end(), data.begin(), data.end());
    const size_t size = bytes.size();
    PutWord(&bytes, pages.size());
    for (size_t i = 0; i < pages.size(); ++i)
        PutWord(&bytes, size + 4 + pages.size() * 4 + i * sizeof(ArchivePageEntry));
    for (size_t i = 0; i < pages.size(); ++i) {
        ArchivePageEntry entry = {0, 0, 2, 2, 0, 0, 2, 2, 2, 2, static_cast<int16_t>(i)};
        const auto* raw = reinterpret_cast<const uint8_t*>(&entry);
        bytes.insert(bytes.end(), raw, raw + sizeof entry);
    }
    bytes.push_back(static_cast<uint8_t>(size));
    bytes.push_back(static_cast<uint8_t>(size >> 8));
    bytes.push_back(0);
    return bytes;
}

Bytes RawPage(size_t kind)
{
    Bytes bytes;
    for (const size_t word : {size_t{0x20574152}, size_t{3}, size_t{2}, kind})
        PutWord(&bytes, word);
    for (size_t i = 0; i < (kind == 0 ? 24U : 12U); ++i)
        bytes.push_back(static_cast<uint8_t>(i * 11));
    return bytes;
}

void WriteSeeds(const std::string& folder)
{
    const std::vector<Bytes> pictures = SmallPNGs();
    WriteSeed(folder + "/raw", ChunksOf({RawPage(0), RawPage(1)}));
    WriteSeed(folder + "/png", ChunksOf({pictures[4], RawPage(0), pictures[2]}));
    WriteSeed(folder + "/none", ChunksOf({}));
    Bytes scaled = ChunksOf({pictures[9]});
    scaled.back() = 3;
    WriteSeed(folder + "/scaled", scaled);
}

// All slots, and with them every page that was loaded.
void UsePages()
{
    for (int32_t slot = 0; slot < Texture_Count(); ++slot) {
        const TextureSlot* loaded = Texture_Get(slot);
        if (!loaded) continue;
        Require(loaded->invWidth > 0 && loaded->invWidth <= 1, "a width without end");
        Require(!loaded->texture || (loaded->width > 0 && loaded->height > 0), "no size");
        Quad_Texture(slot, 1, 1);
        uint32_t pixel;
        if (loaded->texture) Texture_ReadPixels(slot, {0, 0, 1, 1}, &pixel);
    }
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int* count, char*** arguments)
{
    WriteSeedsIfAsked(*count, *arguments, WriteSeeds);
    return 0;
}

// The last three bytes: the size of the chunk of pages, and switches: bit 0 on demand,
// bits 1 and 2 the scale, bit 3 a thread.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    static const bool started = Start();
    if (!started || size < 3) return 0;
    size -= 3;
    const size_t split = static_cast<size_t>(data[size] | data[size + 1] << 8) % (size + 1);
    const uint8_t kind = data[size + 2];
    const std::unique_ptr<uint8_t[]> block(new uint8_t[size]);
    if (size) std::memcpy(block.get(), data, size);
    g_Host.process.Cores = kind & 8 ? []() -> int32_t { return 2; } : []() -> int32_t { return 1; };
    Require(Graphics_Start(), "no graphics");
    g_TexturesOnDemand = kind & 1;
    g_TextureGlobalScale = 1 << (kind >> 1 & 3);
    Textures_Load(block.get(), static_cast<uint32_t>(split), block.get(), block.get() + split,
                  static_cast<uint32_t>(size - split));
    UsePages();
    Graphics_Stop();
    return 0;
}
