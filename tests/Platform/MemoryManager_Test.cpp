#include "Platform/MemoryManager.h"

#include <gtest/gtest.h>

#include <cstring>
#include <thread>
#include <vector>

namespace {

bool IsZero(const void* block, size_t size)
{
    const char* bytes = static_cast<const char*>(block);
    for (size_t i = 0; i < size; ++i)
        if (bytes[i]) return false;
    return true;
}

uintptr_t Address(const void* pointer)
{
    return reinterpret_cast<uintptr_t>(pointer);
}

TEST(MemoryManager, NothingForNothing)
{
    EXPECT_EQ(MemoryManager::Alloc(0), nullptr);
    EXPECT_EQ(MemoryManager::GetSize(nullptr), 0U);
    MemoryManager::Free(nullptr);
}

// Every size class hands out aligned blocks that do not overlap and can be cleared.
TEST(MemoryManager, BlocksOfAllSizesAreApartAlignedAndCleared)
{
    const size_t sizes[] = {1, 8, 9, 16, 17, 64, 65, 256, 257, 4096, 0x4000, 0x4001, 1 << 20};
    std::vector<std::pair<char*, size_t>> blocks;
    for (int round = 0; round < 20; ++round) {
        for (const size_t size : sizes) {
            char* block = static_cast<char*>(MemoryManager::Alloc(size, true));
            EXPECT_EQ(Address(block) % (size <= 8 ? 8 : 16), 0U) << size;
            EXPECT_TRUE(IsZero(block, size)) << size;
            std::memset(block, round + 1, size);
            blocks.emplace_back(block, size);
        }
    }
    for (size_t i = 0; i < blocks.size(); ++i) {
        const char mark = static_cast<char>(i / std::size(sizes) + 1);
        EXPECT_EQ(blocks[i].first[0], mark);
        EXPECT_EQ(blocks[i].first[blocks[i].second - 1], mark);
        MemoryManager::Free(blocks[i].first);
    }
}

TEST(MemoryManager, SizesTellThePoolFromTheHeap)
{
    const std::pair<size_t, size_t> cases[] = {{1, 8},     {8, 8},           {9, 16},
                                               {33, 64},   {129, 256},       {256, 256},
                                               {257, 257}, {0x4000, 0x4000}, {0x4001, 0x4001}};
    for (const auto& [asked, held] : cases) {
        void* block = MemoryManager::Alloc(asked);
        EXPECT_EQ(MemoryManager::GetSize(block), held) << asked;
        MemoryManager::Free(block);
    }
    // A pool block takes no more of the heap; one byte above it does.
    MemoryManager::Free(MemoryManager::Alloc(0x4000));
    const size_t before = MemoryManager::GetStats().bytesInHeap;
    void* pooled = MemoryManager::Alloc(0x4000);
    EXPECT_EQ(MemoryManager::GetStats().bytesInHeap, before);
    void* heap = MemoryManager::Alloc(0x4001);
    EXPECT_EQ(MemoryManager::GetStats().bytesInHeap, before + 0x4001 + 16);
    MemoryManager::Free(heap);
    MemoryManager::Free(pooled);
    EXPECT_EQ(MemoryManager::GetStats().bytesInHeap, before);
}

TEST(MemoryManager, ReAllocKeepsContentAndZeroesWhatIsNew)
{
    char* block = static_cast<char*>(MemoryManager::ReAlloc(nullptr, 20));
    EXPECT_TRUE(IsZero(block, 32)) << "room up to the pool's size is cleared too";
    std::memset(block, 7, 20);
    EXPECT_EQ(MemoryManager::ReAlloc(block, 5), block) << "no growth, same block";
    EXPECT_EQ(MemoryManager::ReAlloc(block, 32), block) << "growth inside a pool block";
    EXPECT_EQ(block[19], 7);
    EXPECT_TRUE(IsZero(block + 20, 12));
    for (const size_t size : {size_t{100}, size_t{1000}, size_t{0x4000}, size_t{100000}}) {
        MemoryManager::SetLength(&block, size);
        EXPECT_EQ(block[0], 7);
        EXPECT_EQ(block[19], 7);
        EXPECT_TRUE(IsZero(block + 20, size - 20)) << size;
    }
    MemoryManager::Free(block);

    // Nor does a block that was not cleared grow into what its place held before.
    char* used = static_cast<char*>(MemoryManager::Alloc(64));
    std::memset(used, 9, 64);
    MemoryManager::Free(used);
    char* again = static_cast<char*>(MemoryManager::Alloc(40));
    ASSERT_EQ(again, used);
    EXPECT_EQ(MemoryManager::ReAlloc(again, 64), again);
    EXPECT_TRUE(IsZero(again + 40, 24));
    MemoryManager::Free(again);
}

TEST(MemoryManager, AlignedBlocksOfAnyAlignment)
{
    for (size_t alignment = 16; alignment <= 0x1000; alignment *= 2) {
        const MemoryManager::Stats before = MemoryManager::GetStats();
        char* block = static_cast<char*>(MemoryManager::AllocAligned(300, alignment, true));
        EXPECT_EQ(Address(block) % alignment, 0U);
        EXPECT_EQ(MemoryManager::GetSize(block), 300U);
        EXPECT_TRUE(IsZero(block, 300));
        block[299] = 5;
        char* grown = static_cast<char*>(MemoryManager::ReAlloc(block, 5000));
        EXPECT_EQ(grown[299], 5);
        MemoryManager::Free(grown);
        const MemoryManager::Stats after = MemoryManager::GetStats();
        EXPECT_EQ(after.bytesInUse, before.bytesInUse);
        EXPECT_EQ(after.bytesInHeap, before.bytesInHeap) << alignment;
        EXPECT_EQ(after.blocks, before.blocks);
    }
}

TEST(MemoryManager, CountersFollowTheBlocks)
{
    const MemoryManager::Stats before = MemoryManager::GetStats();
    void* small = MemoryManager::Alloc(20);
    void* large = MemoryManager::Alloc(1000);
    void* entry = MemoryManager::AllocEntry();
    MemoryManager::Stats now = MemoryManager::GetStats();
    EXPECT_EQ(now.blocks - before.blocks, 3U);
    EXPECT_EQ(now.calls - before.calls, 3U);
    EXPECT_EQ(now.bytesInUse - before.bytesInUse, 32U + 1000 + 16);
    EXPECT_TRUE(IsZero(entry, 16));
    EXPECT_EQ(MemoryManager::ReAlloc(small, 30), small);
    EXPECT_EQ(MemoryManager::GetStats().calls, now.calls) << "no block was made";
    for (void* block : {small, large, entry}) MemoryManager::Free(block);
    now = MemoryManager::GetStats();
    EXPECT_EQ(now.blocks, before.blocks);
    EXPECT_EQ(now.bytesInUse, before.bytesInUse);

    char text[64];
    MemoryManager::DescribeStats(text, sizeof text);
    char expected[64];
    std::snprintf(expected, sizeof expected, "Total memory used = %d(0x%08lx) bytes\n",
                  static_cast<int>(now.bytesInUse), static_cast<unsigned long>(now.bytesInUse));
    EXPECT_STREQ(text, expected);
}

TEST(MemoryManager, ThreadsShareIt)
{
    const MemoryManager::Stats before = MemoryManager::GetStats();
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t) {
        threads.emplace_back([t] {
            std::vector<char*> held;
            for (int i = 0; i < 3000; ++i) {
                const size_t size = static_cast<size_t>(i * 7 + t) % 600 + 1;
                char* block = static_cast<char*>(MemoryManager::Alloc(size));
                block[0] = static_cast<char>(t);
                held.push_back(block);
                if (i % 3 == 0) {
                    EXPECT_EQ(held.front()[0], static_cast<char>(t));
                    MemoryManager::Free(held.front());
                    held.erase(held.begin());
                }
            }
            for (char* block : held) MemoryManager::Free(block);
        });
    }
    for (std::thread& thread : threads) thread.join();
    EXPECT_EQ(MemoryManager::GetStats().blocks, before.blocks);
    EXPECT_EQ(MemoryManager::GetStats().bytesInUse, before.bytesInUse);
}

TEST(MemoryManagerDeathTest, StopsOnForeignPointersAndWithoutMemory)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    static int64_t foreign[8] = {};
    EXPECT_DEATH(MemoryManager::ReAlloc(foreign + 4, 100),
                 "Why are we reallocing a block that we didn't alloc");
    const auto toStandardError = [] {
        MemoryManager::SetOutOfMemoryBox([](const char* title, const char* text) {
            std::fprintf(stderr, "%s: %s", title, text);
        });
        MemoryManager::Alloc(size_t{1} << 62);
    };
    EXPECT_EXIT(toStandardError(), testing::ExitedWithCode(255),
                "Fatal Memory Error: Out of Memory!");
}

}  // namespace
