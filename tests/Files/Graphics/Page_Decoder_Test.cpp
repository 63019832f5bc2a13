// Pages decoded ahead of use: what the first frame costs, that nothing shows of the
// thread, and that it ends with the run.

#include "Files/Graphics/Page_Decoder.h"

#include <atomic>

#include "Files/Base/Console.h"
#include "Files/Graphics/Bitmap.h"
#include "Host/Host_Stage.h"
#include "tests/Files/Graphics/support_Drawing.h"

namespace {

using Bytes = std::vector<uint8_t>;
std::vector<std::string> s_lines;
std::atomic<int> s_threads;

void PutWord(Bytes* bytes, size_t word)
{
    for (int i = 0; i < 4; ++i) bytes->push_back(static_cast<uint8_t>(word >> (8 * i)));
}

// A PNG of 64 by 64; its first pixel tells the number.
Bytes PageFile(int number)
{
    // Tests run side by side, each in a process of its own.
    const std::string path = testing::TempDir() + "page_decoder_" +
                             testing::UnitTest::GetInstance()->current_test_info()->name() + ".png";
    Bytes pixels(64 * 64 * 4);
    for (size_t i = 0; i < pixels.size(); ++i)
        pixels[i] = static_cast<uint8_t>(i % 4 == 3 ? 255 : (i * 7919) >> 8);
    pixels[0] = static_cast<uint8_t>(number);
    EXPECT_TRUE(WritePNG(path.c_str(), pixels.data(), 64, 64));
    uint32_t size = 0;
    uint8_t* read = g_Host.files.ReadAll(path.c_str(), &size);
    const Bytes bytes(read, read + size);
    MemoryManager::Free(read);
    g_Host.files.Delete(path.c_str());
    return bytes;
}

// A chunk of pages and one of entries without an entry behind it.
struct Chunks {
    explicit Chunks(int pages, int broken = -1)
    {
        const auto count = static_cast<size_t>(pages);
        Bytes data;
        PutWord(&bytes, count);
        for (size_t i = 0; i < count; ++i) PutWord(&bytes, 4 + count * 4 + i * 8);
        for (int i = 0; i < pages; ++i) {
            PutWord(&bytes, 0);
            PutWord(&bytes, 4 + count * 12 + data.size());
            Bytes page = PageFile(i);
            if (i == broken) page[page.size() / 2] ^= 0x55;
            data.insert(data.end(), page.begin(), page.end());
        }
        bytes.insert(bytes.end(), data.begin(), data.end());
        size = static_cast<uint32_t>(bytes.size());
        PutWord(&bytes, 0);
    }
    void Load() { Textures_Load(bytes.data(), size, bytes.data(), bytes.data() + size, 4); }
    Bytes bytes;
    uint32_t size;
};

class PageDecoder : public DrawingTest {
protected:
    void SetUp() override
    {
        DrawingTest::SetUp();
        s_lines.clear();
        s_threads = 0;
        Console_SetSink([](void*, const char* text) { s_lines.emplace_back(text); }, nullptr);
    }
    // The desktop's threads, counted, on however small a machine.
    static void UseThreads()
    {
        const Host stage = g_Host;
        Host_UseSDL();
        static HostProcessTable desktop;
        desktop = g_Host.process;
        g_Host = stage;
        g_Host.process = desktop;
        g_Host.process.Cores = []() -> int32_t { return 4; };
        g_Host.process.StartThread = [](void (*work)(void*), void* context) {
            ++s_threads;
            return desktop.StartThread(work, context);
        };
        g_Host.process.JoinThread = [](void* thread) {
            --s_threads;
            desktop.JoinThread(thread);
        };
    }
    // The red of a page's first pixel.
    int Shown(int32_t slot)
    {
        View_SetWindow();
        Quad_Texture(slot, 0, 0);
        return static_cast<int>(BackBuffer(0, 0) >> 16 & 255);
    }
};

TEST_F(PageDecoder, TheFirstFrameDecodesWhatItShowsHoweverManyPagesThereAre)
{
    for (const int pages : {3, 39}) {
        Chunks chunks(pages);
        const int32_t before = Texture_Decodes();
        chunks.Load();
        EXPECT_EQ(Texture_Decodes(), before) << pages;
        const int32_t first = Texture_Count() - pages;
        EXPECT_EQ(Texture_Get(first + 2)->width, 64);
        EXPECT_EQ(Shown(first + 2), 2);
        EXPECT_EQ(Shown(first + 2), 2);
        EXPECT_EQ(Texture_Decodes(), before + 1) << pages;
        Texture_FreeAll();
    }
}

TEST_F(PageDecoder, PagesComeFromTheThreadAndAreTheSame)
{
    UseThreads();
    Chunks chunks(39);
    chunks.Load();
    EXPECT_EQ(s_threads, 1);
    const int32_t first = Texture_Count() - 39;
    EXPECT_EQ(Shown(first + 38), 38);  // before its turn, or in it, or after
    PageDecoder_Settle();
    const int32_t decodes = Texture_Decodes();
    EXPECT_GE(PageDecoder_Ready(), 38 - decodes);
    Texture_Free(first + 1);  // a page that nobody came for
    for (int page = 2; page < 39; ++page) EXPECT_EQ(Shown(first + page), page);
    EXPECT_EQ(Texture_Decodes(), decodes);
    EXPECT_EQ(PageDecoder_Ready(), 1);  // the first page was never asked for
    // While the archive's pages are read, scripts read their own pictures.
    chunks.Load();
    const Bytes own = PageFile(77);
    for (int i = 0; i < 20; ++i) {
        CBitmap32* picture = CBitmap32::FromBytes(own.data(), static_cast<uint32_t>(own.size()));
        ASSERT_NE(picture, nullptr);
        EXPECT_EQ(picture->data[0] >> 16 & 255, 77U);
        VxDelete(picture);
    }
    CloseDevice();
    EXPECT_EQ(s_threads, 0);
    EXPECT_TRUE(s_lines.empty());
}

TEST_F(PageDecoder, ABrokenPageIsToldAtItsBindAndNotBefore)
{
    Console_SetFiles(nullptr, "");  // the debug console speaks
    for (const bool threads : {false, true}) {
        if (threads) UseThreads();
        s_lines.clear();
        Chunks chunks(3, 1);
        chunks.Load();
        PageDecoder_Settle();
        EXPECT_TRUE(s_lines.empty());
        const int32_t first = Texture_Count() - 3;
        EXPECT_EQ(Shown(first), 0);
        EXPECT_EQ(Shown(first + 2), 2);
        EXPECT_TRUE(s_lines.empty());
        EXPECT_FALSE(Texture_Bind(0, Texture_Get(first + 1)->texture));
        EXPECT_FALSE(Texture_Bind(0, Texture_Get(first + 1)->texture));
        EXPECT_EQ(s_lines, (std::vector<std::string>{"ReadPNG :: a PNG error occured",
                                                     "SetupD3DTexture failed - 00000000\n"}));
        Texture_FreeAll();
    }
    Console_SetFiles(nullptr, nullptr);
    Console_Init();
}

TEST_F(PageDecoder, StartsAndStopsAtAnyMomentAndLeavesNothing)
{
    UseThreads();
    Chunks chunks(12);
    VxVector<PageSource> sources;
    for (uint32_t at = 4 + 12 * 4; at < 4 + 12 * 12; at += 8) {
        uint32_t data = 0;
        std::memcpy(&data, &chunks.bytes[at + 4], sizeof data);
        sources.push_back({&chunks.bytes[data], chunks.size - data});
    }
    PageDecoder_Start(sources);
    PageDecoder_Stop();
    const size_t blocks = MemoryManager::GetStats().blocks;
    for (size_t run = 0; run < 40; ++run) {
        PageDecoder_Start(sources);
        int32_t width = 0, height = 0;
        for (size_t page = 0; page < run % 7; ++page)
            MemoryManager::Free(PageDecoder_Take(sources[page * run % 12].data, &width, &height));
        if (run % 8 == 7) PageDecoder_Settle();
        PageDecoder_Stop();
        EXPECT_EQ(MemoryManager::GetStats().blocks, blocks) << run;
    }
    EXPECT_EQ(s_threads, 0);
}

TEST_F(PageDecoder, NoThreadOnOneCoreOrInOnDemandMode)
{
    UseThreads();
    Chunks chunks(2);
    g_TexturesOnDemand = true;
    chunks.Load();
    g_TexturesOnDemand = false;
    g_Host.process.Cores = []() -> int32_t { return 1; };
    chunks.Load();
    EXPECT_EQ(s_threads, 0);
    EXPECT_EQ(Shown(Texture_Count() - 1), 1);
}

}  // namespace
