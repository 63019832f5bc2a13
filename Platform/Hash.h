#pragma once
// Chained hash table from a number to a pointer that it does not own. The bucket
// of a key is key AND mask; a bucket is a doubly linked chain whose new nodes go
// at the tail, so of two nodes with one key the older is found.

#include <cstdint>

#include "Platform/MemoryManager.h"

template <class T>
class Hash {
public:
    struct Node {
        Node* previous;
        Node* next;
        int32_t key;
        T* value;
    };

    // `buckets` is a power of two; it does not change.
    explicit Hash(uint32_t buckets)
        : mask_(buckets - 1),
          buckets_(static_cast<Bucket*>(MemoryManager::Alloc(buckets * sizeof(Bucket), true)))
    {
    }
    ~Hash()
    {
        Clear();
        MemoryManager::Free(buckets_);
    }
    Hash(const Hash&) = delete;
    Hash& operator=(const Hash&) = delete;

    void Add(int32_t key, T* value)
    {
        Bucket& bucket = BucketOf(key);
        Node* node = static_cast<Node*>(MemoryManager::Alloc(sizeof(Node)));
        *node = Node{bucket.last, nullptr, key, value};
        (bucket.last ? bucket.last->next : bucket.first) = node;
        bucket.last = node;
        ++count_;
    }
    T* Find(int32_t key) const  // null when absent
    {
        for (const Node* node = BucketOf(key).first; node; node = node->next)
            if (node->key == key) return node->value;
        return nullptr;
    }
    // Removes the node of this key and value; false when there is none.
    bool Remove(int32_t key, const T* value)
    {
        Bucket& bucket = BucketOf(key);
        for (Node* node = bucket.first; node; node = node->next) {
            if (node->key != key || node->value != value) continue;
            (node->previous ? node->previous->next : bucket.first) = node->next;
            (node->next ? node->next->previous : bucket.last) = node->previous;
            MemoryManager::Free(node);
            --count_;
            return true;
        }
        return false;
    }
    void Clear()
    {
        for (uint32_t i = 0; i <= mask_; ++i) {
            for (Node* node = buckets_[i].first; node;) {
                Node* next = node->next;
                MemoryManager::Free(node);
                node = next;
            }
            buckets_[i] = Bucket{};
        }
        count_ = 0;
    }
    uint32_t Count() const { return count_; }

private:
    struct Bucket {
        Node* first = nullptr;
        Node* last = nullptr;
    };
    Bucket& BucketOf(int32_t key) const { return buckets_[static_cast<uint32_t>(key) & mask_]; }

    uint32_t mask_;
    uint32_t count_ = 0;
    Bucket* buckets_;
};
