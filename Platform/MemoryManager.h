#pragma once
// The one allocator. Small blocks come from pools of fixed block sizes, larger
// ones from the heap behind a header that tells a foreign pointer. All
// operations are guarded by one lock, "MemoryManagerMutex".

#include <cstddef>
#include <cstdint>
#include <new>
#include <string>
#include <utility>
#include <vector>

#include "Platform/SourceLine.h"

namespace MemoryManager {

using Where = SourceLine;

// Counters since the start of the process. `calls` counts every Alloc and every
// ReAlloc that made a new block: two equal readings around a frame prove that the
// frame allocated nothing.
struct Stats {
    size_t bytesInUse;   // bytes of all live blocks, pools included
    size_t bytesInHeap;  // bytes now taken from the system heap, pages included
    size_t blocks;       // live blocks
    size_t total;        // bytes handed out since the start
    uint64_t calls;
};

// A block of `size` bytes aligned to 16 (8 for sizes up to 8), or null for size 0.
// With `clear` it is zero-filled. Out of memory ends the process with exit code -1.
void* Alloc(size_t size, bool clear = false, Where where = Where::current());

// As Alloc, aligned to `alignment`, a power of two below 0x2000.
void* AllocAligned(size_t size, size_t alignment, bool clear = false,
                   Where where = Where::current());

// Null `pointer`: as Alloc with clearing. Without growth the same pointer comes
// back; with growth a zero-filled new block with the old content. Ownership of
// `pointer` passes to the result. A foreign pointer stops the program.
void* ReAlloc(void* pointer, size_t size, Where where = Where::current());

// ReAlloc that stores its result.
template <class T>
void SetLength(T** pointer, size_t size, Where where = Where::current())
{
    *pointer = static_cast<T*>(ReAlloc(*pointer, size, where));
}

void Free(void* pointer);             // null does nothing
size_t GetSize(const void* pointer);  // capacity of a pool block, size of a heap block, 0 for null

// A zeroed 16-byte block of a pool of its own, for values of user variables.
void* AllocEntry(Where where = Where::current());

Stats GetStats();
// A place in the source that allocates, counted since the start of the process.
struct Site {
    const char* file;
    uint32_t line;
    uint64_t calls, bytes;
};
// Visits every place in no order; debug builds only, a release build counts none.
void VisitSites(void (*visit)(void* context, const Site& site), void* context);
// Writes "Total memory used = %d(0x%08lx) bytes\n" into `out` (at least 64 bytes).
void DescribeStats(char* out, size_t size);

// Shows the out-of-memory message box; set by the start-up unless -headless is in force.
using OutOfMemoryBox = void (*)(const char* title, const char* text);
void SetOutOfMemoryBox(OutOfMemoryBox box);
// Receives "Why are we reallocing a block that we didn't alloc?!\n".
using ErrorSink = void (*)(const char* text);
void SetErrorSink(ErrorSink sink);

}  // namespace MemoryManager

// Objects on the allocator.
template <class T, class... Args>
T* VxNew(Args&&... args)
{
    void* block = alignof(T) <= 16 ? MemoryManager::Alloc(sizeof(T))
                                   : MemoryManager::AllocAligned(sizeof(T), alignof(T));
    return ::new (block) T(std::forward<Args>(args)...);
}

template <class T>
void VxDelete(T* object)
{
    if (!object) return;
    object->~T();
    MemoryManager::Free(object);
}

// Adaptor for standard containers.
template <class T>
struct VxAllocator {
    using value_type = T;
    VxAllocator() noexcept = default;
    template <class U>
    VxAllocator(const VxAllocator<U>&) noexcept
    {
    }
    T* allocate(size_t count)
    {
        return static_cast<T*>(alignof(T) <= 16
                                   ? MemoryManager::Alloc(count * sizeof(T))
                                   : MemoryManager::AllocAligned(count * sizeof(T), alignof(T)));
    }
    void deallocate(T* block, size_t) noexcept { MemoryManager::Free(block); }
    template <class U>
    bool operator==(const VxAllocator<U>&) const noexcept
    {
        return true;
    }
};

template <class T>
using VxVector = std::vector<T, VxAllocator<T>>;
using VxString = std::basic_string<char, std::char_traits<char>, VxAllocator<char>>;
