#pragma once
// Open-addressing hash table with Robin Hood displacement (Celis, "Robin Hood
// Hashing", 1986). The size is a power of two; a hash of 0 marks a free entry.
// The table doubles when the count passes 0.6 of the entries.

#include <cstdint>
#include <cstring>

#include "Platform/MemoryManager.h"

// MurmurHash3 in its 32-bit x86 form (Austin Appleby), with the top bit cleared
// and 0 replaced by 1, so that it can stand in an entry.
uint32_t Hash_Bytes(const void* bytes, size_t size, uint32_t seed = 0);
uint32_t Hash_Name(const char* name);

struct CHashMapKey {
    static uint32_t Of(int32_t key)
    {
        const uint32_t hash = (static_cast<uint32_t>(key) * 0x9E3779B1U) & 0x7FFFFFFFU;
        return hash ? hash : 1;
    }
    static uint32_t Of(const char* key) { return Hash_Name(key); }
    static bool Equal(int32_t a, int32_t b) { return a == b; }
    static bool Equal(const char* a, const char* b) { return std::strcmp(a, b) == 0; }
};

template <class Key, class Value>
class CHashMap {
public:
    struct Entry {
        Key key;
        Value value;
        uint32_t hash;
    };

    // `size` is the start size, a power of two.
    explicit CHashMap(uint32_t size = 128) { Allocate(size); }
    ~CHashMap() { MemoryManager::Free(entries_); }
    CHashMap(const CHashMap&) = delete;
    CHashMap& operator=(const CHashMap&) = delete;

    // Address of the value, or null. Addresses are valid until the next change.
    Value* Find(Key key) const
    {
        const uint32_t hash = CHashMapKey::Of(key);
        uint32_t index = hash & mask_;
        for (uint32_t distance = 0;; ++distance, index = (index + 1) & mask_) {
            Entry& entry = entries_[index];
            if (entry.hash == 0 || distance > Distance(entry.hash, index)) return nullptr;
            if (entry.hash == hash && CHashMapKey::Equal(entry.key, key)) return &entry.value;
        }
    }

    // Sets or replaces.
    void Set(Key key, Value value)
    {
        if (Value* present = Find(key)) {
            *present = value;
            return;
        }
        Insert(Entry{key, value, CHashMapKey::Of(key)});
        if (static_cast<double>(++count_) > 0.6 * (static_cast<double>(mask_) + 1.0)) Grow();
    }

    // True when the key was there. Later entries of the chain move back by one.
    bool Remove(Key key)
    {
        Value* value = Find(key);
        if (!value) return false;
        Entry* entry =
            reinterpret_cast<Entry*>(reinterpret_cast<char*>(value) - offsetof(Entry, value));
        uint32_t index = static_cast<uint32_t>(entry - entries_);
        for (;;) {
            const uint32_t next = (index + 1) & mask_;
            if (entries_[next].hash == 0 || Distance(entries_[next].hash, next) == 0) break;
            entries_[index] = entries_[next];
            index = next;
        }
        entries_[index].hash = 0;
        --count_;
        return true;
    }

    uint32_t Count() const { return count_; }
    uint32_t Size() const { return mask_ + 1; }
    // The entry at a position below Size(), or null when it is free.
    Entry* At(uint32_t index) const { return entries_[index].hash ? &entries_[index] : nullptr; }

private:
    uint32_t Distance(uint32_t hash, uint32_t index) const
    {
        return (index - (hash & mask_)) & mask_;
    }
    void Allocate(uint32_t size)
    {
        mask_ = size - 1;
        entries_ = static_cast<Entry*>(MemoryManager::Alloc(size * sizeof(Entry), true));
    }
    void Insert(Entry walker)
    {
        uint32_t index = walker.hash & mask_;
        for (uint32_t distance = 0;; ++distance, index = (index + 1) & mask_) {
            Entry& resident = entries_[index];
            if (resident.hash == 0) {
                resident = walker;
                return;
            }
            const uint32_t home = Distance(resident.hash, index);
            if (home < distance) {
                std::swap(resident, walker);
                distance = home;
            }
        }
    }
    void Grow()
    {
        Entry* old = entries_;
        const uint32_t size = mask_ + 1;
        Allocate(size * 2);
        for (uint32_t i = 0; i < size; ++i)
            if (old[i].hash) Insert(old[i]);
        MemoryManager::Free(old);
    }

    Entry* entries_ = nullptr;
    uint32_t mask_ = 0;
    uint32_t count_ = 0;
};
