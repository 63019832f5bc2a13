#include "Platform/MemoryManager.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <mutex>

#include "Platform/CBucket.h"

namespace MemoryManager {
namespace {

// Stands in front of every block of the system heap.
struct Header {
    uint32_t size;
    uint32_t magic1;
    uint32_t magic2;
    uint32_t reserved;
};
static_assert(sizeof(Header) == 16);
constexpr uint32_t kMagic1 = 0xDEADC0DE;
constexpr uint32_t kMagic2 = 0xBAADB00B;
// The word before an aligned block: this bit and the distance back to its header.
constexpr uint32_t kAlignedMark = 0x80000000;
constexpr uint32_t kMaxDistance = 0x2000;

constexpr size_t kExactPoolSize = 0x4000;
constexpr size_t kLargestSmallSize = 256;

struct Page {
    uintptr_t start, end;
    CBucket* bucket;
};

// All of it is constant-initialised: static objects of other units may allocate
// before main.
struct State {
    std::mutex memoryManagerMutex;
    CBucket small[6] = {{8, 0x20000},  {16, 0x40000},  {32, 0x40000},
                        {64, 0x80000}, {128, 0x80000}, {256, 0x100000}};
    CBucket exact{kExactPoolSize, 0x40000};
    CBucket entries{16, 0x100000};  // values of user variables
    Page* pages = nullptr;          // sorted by address
    size_t pageCount = 0, pageCapacity = 0;
    Stats stats = {};
    OutOfMemoryBox outOfMemoryBox = nullptr;
    ErrorSink errorSink = nullptr;
};
constinit State g_State;

// Where allocations come from, by file and line, in an open-addressing table.
#ifndef NDEBUG
constexpr size_t kMaxSites = 4096;
constinit Site g_Sites[kMaxSites] = {};

void CountSite(const Where& where, size_t size)
{
    const uint32_t line = static_cast<uint32_t>(where.line());
    const size_t home = (reinterpret_cast<uintptr_t>(where.file_name()) / 8 + line * 31U);
    for (size_t probe = 0; probe < kMaxSites; ++probe) {
        Site& site = g_Sites[(home + probe) % kMaxSites];
        if (!site.file) {
            site.file = where.file_name();
            site.line = line;
        }
        if (site.file != where.file_name() || site.line != line) continue;
        ++site.calls;
        site.bytes += size;
        return;
    }
}
#else
void CountSite(const Where&, size_t) {}
#endif

[[noreturn]] void OutOfMemory(size_t size)
{
    if (g_State.outOfMemoryBox) g_State.outOfMemoryBox("Fatal Memory Error", "Out of Memory!");
    std::printf("Out of Memory allocating %zu bytes\n", size);
    std::fflush(stdout);
    std::_Exit(-1);
}

// Memory of the system heap; takes the lock off before it gives up.
void* FromHeap(size_t size, size_t asked, std::unique_lock<std::mutex>& lock)
{
    void* block = std::malloc(size);
    if (!block) {
        lock.unlock();
        OutOfMemory(asked);
    }
    g_State.stats.bytesInHeap += size;
    return block;
}

CBucket* BucketForSize(size_t size)
{
    if (size <= kLargestSmallSize) {
        size_t index = 0;
        for (size_t block = 8; block < size; block *= 2) ++index;
        return &g_State.small[index];
    }
    return size == kExactPoolSize ? &g_State.exact : nullptr;
}

CBucket* BucketOf(const void* pointer)
{
    const uintptr_t address = reinterpret_cast<uintptr_t>(pointer);
    const Page* const first = g_State.pages;
    const Page* const end = first + g_State.pageCount;
    const Page* page =
        std::upper_bound(first, end, address,
                         [](uintptr_t value, const Page& entry) { return value < entry.start; });
    if (page == first) return nullptr;
    --page;
    return address < page->end ? page->bucket : nullptr;
}

void AddPage(CBucket* bucket, std::unique_lock<std::mutex>& lock)
{
    void* memory = FromHeap(bucket->PageSize(), bucket->BlockSize(), lock);
    if (g_State.pageCount == g_State.pageCapacity) {
        const size_t capacity = g_State.pageCapacity ? g_State.pageCapacity * 2 : 64;
        void* table = std::realloc(g_State.pages, capacity * sizeof(Page));
        if (!table) {
            lock.unlock();
            OutOfMemory(bucket->BlockSize());
        }
        g_State.pages = static_cast<Page*>(table);
        g_State.pageCapacity = capacity;
    }
    const uintptr_t start = reinterpret_cast<uintptr_t>(memory);
    Page* at = g_State.pages + g_State.pageCount;
    for (; at > g_State.pages && at[-1].start > start; --at) *at = at[-1];
    *at = Page{start, start + bucket->PageSize(), bucket};
    ++g_State.pageCount;
    bucket->AddPage(memory);
}

void Count(size_t size, size_t handedOut, const Where& where)
{
    Stats& stats = g_State.stats;
    stats.bytesInUse += size;
    stats.total += handedOut;
    ++stats.blocks;
    ++stats.calls;
    CountSite(where, handedOut);
}

void* PopBlock(CBucket* bucket, size_t size, bool clear, const Where& where)
{
    std::unique_lock<std::mutex> lock(g_State.memoryManagerMutex);
    void* block = bucket->Pop();
    if (!block) {
        AddPage(bucket, lock);
        block = bucket->Pop();
    }
    Count(bucket->BlockSize(), size, where);
    lock.unlock();
    // What lies behind `size` is zero in any case: the block may grow into it in place.
    const size_t kept = clear ? 0 : size;
    std::memset(static_cast<char*>(block) + kept, 0, bucket->BlockSize() - kept);
    return block;
}

// The header of a heap block, or null for a foreign pointer. Reads in front of
// the pointer, which is the only way to tell.
__attribute__((no_sanitize_address)) Header* HeaderOf(void* pointer)
{
    const uint32_t word = static_cast<const uint32_t*>(pointer)[-1];
    const uint32_t distance =
        word & kAlignedMark ? word & ~kAlignedMark : static_cast<uint32_t>(sizeof(Header));
    if (distance < sizeof(Header) || distance >= kMaxDistance) return nullptr;
    Header* header = reinterpret_cast<Header*>(static_cast<char*>(pointer) - distance);
    return header->magic1 == kMagic1 && header->magic2 == kMagic2 ? header : nullptr;
}

size_t HeapBytes(const void* pointer, const Header* header)
{
    const size_t front = static_cast<size_t>(static_cast<const char*>(pointer) -
                                             reinterpret_cast<const char*>(header));
    return front == sizeof(Header) ? front + header->size : front + header->size + header->reserved;
}

void* AllocHeap(size_t size, bool clear, const Where& where)
{
    std::unique_lock<std::mutex> lock(g_State.memoryManagerMutex);
    if (size > UINT32_MAX - sizeof(Header)) {
        lock.unlock();
        OutOfMemory(size);
    }
    Header* header = static_cast<Header*>(FromHeap(size + sizeof(Header), size, lock));
    Count(size, size, where);
    lock.unlock();
    *header = Header{static_cast<uint32_t>(size), kMagic1, kMagic2, 0};
    if (clear) std::memset(header + 1, 0, size);
    return header + 1;
}

[[noreturn]] void ForeignPointer()
{
    const char* const text = "Why are we reallocing a block that we didn't alloc?!\n";
    if (g_State.errorSink)
        g_State.errorSink(text);
    else
        std::fputs(text, stderr);
    __builtin_trap();
}

}  // namespace

void* Alloc(size_t size, bool clear, Where where)
{
    if (size == 0) return nullptr;
    if (CBucket* bucket = BucketForSize(size)) return PopBlock(bucket, size, clear, where);
    return AllocHeap(size, clear, where);
}

void* AllocAligned(size_t size, size_t alignment, bool clear, Where where)
{
    if (size == 0) return nullptr;
    if (alignment <= alignof(std::max_align_t)) return AllocHeap(size, clear, where);

    std::unique_lock<std::mutex> lock(g_State.memoryManagerMutex);
    // Room for the header, the marking word and the gap in front of the block.
    const size_t slack = sizeof(Header) + alignment;
    if (size > UINT32_MAX - slack) {
        lock.unlock();
        OutOfMemory(size);
    }
    char* const raw = static_cast<char*>(FromHeap(size + slack, size, lock));
    Count(size, size, where);
    lock.unlock();
    const uintptr_t after = reinterpret_cast<uintptr_t>(raw) + sizeof(Header) + sizeof(uint32_t);
    char* const block =
        raw + ((after + alignment - 1) / alignment * alignment - reinterpret_cast<uintptr_t>(raw));
    const uint32_t distance = static_cast<uint32_t>(block - raw);
    // `reserved` keeps what lies behind the block, so that the counters come out even.
    *reinterpret_cast<Header*>(raw) = Header{static_cast<uint32_t>(size), kMagic1, kMagic2,
                                             static_cast<uint32_t>(slack) - distance};
    reinterpret_cast<uint32_t*>(block)[-1] = kAlignedMark | distance;
    if (clear) std::memset(block, 0, size);
    return block;
}

void* AllocEntry(Where where)
{
    return PopBlock(&g_State.entries, 16, true, where);
}

void* ReAlloc(void* pointer, size_t size, Where where)
{
    if (!pointer) return Alloc(size, true, where);
    CBucket* bucket;
    {
        std::lock_guard<std::mutex> lock(g_State.memoryManagerMutex);
        bucket = BucketOf(pointer);
    }
    size_t old;
    if (bucket) {
        old = bucket->BlockSize();
    } else {
        const Header* header = HeaderOf(pointer);
        if (!header) ForeignPointer();
        old = header->size;
    }
    if (size <= old) return pointer;
    void* grown = Alloc(size, true, where);
    std::memcpy(grown, pointer, old);
    Free(pointer);
    return grown;
}

void Free(void* pointer)
{
    if (!pointer) return;
    std::unique_lock<std::mutex> lock(g_State.memoryManagerMutex);
    Stats& stats = g_State.stats;
    if (CBucket* bucket = BucketOf(pointer)) {
        stats.bytesInUse -= bucket->BlockSize();
        --stats.blocks;
        bucket->Push(pointer);
        return;
    }
    Header* header = HeaderOf(pointer);
    if (header) {
        stats.bytesInUse -= header->size;
        stats.bytesInHeap -= HeapBytes(pointer, header);
        --stats.blocks;
        header->magic1 = 0;  // a second Free is no longer taken for one of ours
    }
    lock.unlock();
    std::free(header ? static_cast<void*>(header) : pointer);
}

size_t GetSize(const void* pointer)
{
    if (!pointer) return 0;
    std::lock_guard<std::mutex> lock(g_State.memoryManagerMutex);
    if (const CBucket* bucket = BucketOf(pointer)) return bucket->BlockSize();
    const Header* header = HeaderOf(const_cast<void*>(pointer));
    return header ? header->size : 0;
}

Stats GetStats()
{
    std::lock_guard<std::mutex> lock(g_State.memoryManagerMutex);
    return g_State.stats;
}

void DescribeStats(char* out, size_t size)
{
    const size_t used = GetStats().bytesInUse;
    std::snprintf(out, size, "Total memory used = %d(0x%08lx) bytes\n", static_cast<int>(used),
                  static_cast<unsigned long>(used));
}

void VisitSites([[maybe_unused]] void (*visit)(void* context, const Site& site),
                [[maybe_unused]] void* context)
{
#ifndef NDEBUG
    for (const Site& site : g_Sites)
        if (site.file) visit(context, site);
#endif
}

void SetOutOfMemoryBox(OutOfMemoryBox box)
{
    g_State.outOfMemoryBox = box;
}
void SetErrorSink(ErrorSink sink)
{
    g_State.errorSink = sink;
}

}  // namespace MemoryManager
