#pragma once
// The pool for one block size: memory comes in pages, and the free blocks form a
// singly linked list through their first word. Not locked; MemoryManager holds
// its lock around every use.

#include <cstddef>
#include <cstdint>

class CBucket {
public:
    // Both in bytes; a block is at least a pointer wide.
    constexpr CBucket(uint32_t blockSize, uint32_t pageSize)
        : blockSize_(blockSize), pageSize_(pageSize)
    {
    }

    void* Pop()  // null when the pool is empty: give it a page with AddPage
    {
        FreeBlock* block = free_;
        if (block) {
            Unpoison(block, sizeof(FreeBlock));
            free_ = block->next;
            Unpoison(block, blockSize_);
        }
        return block;
    }
    void Push(void* pointer)
    {
        FreeBlock* block = static_cast<FreeBlock*>(pointer);
        block->next = free_;
        free_ = block;
        Poison(block, blockSize_);
    }
    // Cuts `page`, PageSize() bytes aligned to 16, into free blocks in ascending order.
    void AddPage(void* page);

    uint32_t BlockSize() const { return blockSize_; }
    uint32_t PageSize() const { return pageSize_; }

private:
    struct FreeBlock {
        FreeBlock* next;
    };
    // Under the address sanitizer a free block can't be touched, as if it came from the heap.
    static void Poison(void* block, size_t size);
    static void Unpoison(void* block, size_t size);

    uint32_t blockSize_, pageSize_;
    FreeBlock* free_ = nullptr;
};

#if defined(__SANITIZE_ADDRESS__)
#define VX_ASAN 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define VX_ASAN 1
#endif
#endif

#if defined(VX_ASAN)
#include <sanitizer/asan_interface.h>
inline void CBucket::Poison(void* block, size_t size)
{
    __asan_poison_memory_region(block, size);
}
inline void CBucket::Unpoison(void* block, size_t size)
{
    __asan_unpoison_memory_region(block, size);
}
#else
inline void CBucket::Poison(void*, size_t) {}
inline void CBucket::Unpoison(void*, size_t) {}
#endif
