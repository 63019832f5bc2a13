#pragma once
// Arrays with a count in front: of pointers to objects, of pointers to memory
// blocks, and of plain structures. All grow only when told, zero-filled.

#include <algorithm>
#include <cstdint>
#include <type_traits>

#include "Platform/MemoryManager.h"

// Of structures that can be moved and cleared by bytes.
template <class T>
class cARRAY_STRUCTURE {
    static_assert(std::is_trivially_copyable_v<T>);

public:
    cARRAY_STRUCTURE() = default;
    ~cARRAY_STRUCTURE() { Clear(); }
    cARRAY_STRUCTURE(const cARRAY_STRUCTURE&) = delete;
    cARRAY_STRUCTURE& operator=(const cARRAY_STRUCTURE&) = delete;

    int32_t Count() const { return count_; }
    T* Items() const { return items_; }
    T& operator[](int32_t index) const { return items_[index]; }  // 0 to Count() - 1

    // New items are zero. A shorter array keeps its memory.
    void SetLength(int32_t count)
    {
        const size_t bytes = static_cast<size_t>(count) * sizeof(T);
        if (count > count_) {
            const size_t room = MemoryManager::GetSize(items_);
            if (bytes > room) MemoryManager::SetLength(&items_, bytes);
            std::fill(items_ + count_, items_ + count, T{});
        }
        count_ = count;
    }
    // At the end; the index of the new item. Doubles the memory when it is full.
    int32_t Add(const T& item)
    {
        const T copy = item;  // `item` may lie in the array
        const size_t needed = (static_cast<size_t>(count_) + 1) * sizeof(T);
        if (needed > MemoryManager::GetSize(items_)) MemoryManager::SetLength(&items_, needed * 2);
        items_[count_] = copy;
        return count_++;
    }
    // The later items move back by one.
    void RemoveAt(int32_t index)
    {
        std::copy(items_ + index + 1, items_ + count_, items_ + index);
        --count_;
    }
    void Clear()
    {
        MemoryManager::Free(items_);
        items_ = nullptr;
        count_ = 0;
    }

private:
    int32_t count_ = 0;
    T* items_ = nullptr;
};

// Of pointers that it does not own.
template <class T>
using cARRAY_CLASS_NO_DELETE = cARRAY_STRUCTURE<T*>;

// Of pointers to objects made by VxNew, deleted with the array; null entries are fine.
template <class T>
class cARRAY_CLASS {
public:
    cARRAY_CLASS() = default;
    ~cARRAY_CLASS() { Clear(); }

    int32_t Count() const { return items_.Count(); }
    T* operator[](int32_t index) const { return items_[index]; }
    int32_t Add(T* item) { return items_.Add(item); }
    void Set(int32_t index, T* item)  // deletes the old one
    {
        if (items_[index] != item) VxDelete(items_[index]);
        items_[index] = item;
    }
    void SetLength(int32_t count)  // deletes what falls off
    {
        for (int32_t i = count; i < items_.Count(); ++i) VxDelete(items_[i]);
        items_.SetLength(count);
    }
    void Clear()
    {
        SetLength(0);
        items_.Clear();
    }

private:
    cARRAY_STRUCTURE<T*> items_;
};

// Of pointers to memory blocks, freed with the array.
class cARRAY_MEMORY {
public:
    cARRAY_MEMORY() = default;
    ~cARRAY_MEMORY() { Clear(); }

    int32_t Count() const { return items_.Count(); }
    void* operator[](int32_t index) const { return items_[index]; }
    int32_t Add(void* block) { return items_.Add(block); }
    void Clear()
    {
        for (int32_t i = 0; i < items_.Count(); ++i) MemoryManager::Free(items_[i]);
        items_.Clear();
    }

private:
    cARRAY_STRUCTURE<void*> items_;
};
