#pragma once
// Doubly linked list of pointers to items that it does not own. A new node goes
// at the tail. A walk reads a node's successor before it uses the item, so items
// other than the successor may leave during the walk.

#include <cstdint>

#include "Platform/MemoryManager.h"

template <class T>
class SLinkedList {
public:
    struct Node {
        Node* next;
        Node* previous;
        T* item;
    };

    SLinkedList() = default;
    ~SLinkedList() { Clear(); }
    SLinkedList(const SLinkedList&) = delete;
    SLinkedList& operator=(const SLinkedList&) = delete;

    void Add(T* item)
    {
        Node* node = static_cast<Node*>(MemoryManager::Alloc(sizeof(Node)));
        *node = Node{nullptr, tail_, item};
        (tail_ ? tail_->next : head_) = node;
        tail_ = node;
        ++count_;
    }
    // Removes the first node of the item; false when it is not in the list.
    bool Remove(T* item)
    {
        for (Node* node = head_; node; node = node->next) {
            if (node->item != item) continue;
            (node->previous ? node->previous->next : head_) = node->next;
            (node->next ? node->next->previous : tail_) = node->previous;
            MemoryManager::Free(node);
            --count_;
            return true;
        }
        return false;
    }
    void Clear()
    {
        for (Node* node = head_; node;) {
            Node* next = node->next;
            MemoryManager::Free(node);
            node = next;
        }
        head_ = tail_ = nullptr;
        count_ = 0;
    }
    Node* Head() const { return head_; }
    Node* Tail() const { return tail_; }
    int32_t Count() const { return count_; }
    bool Empty() const { return !head_; }

private:
    Node* head_ = nullptr;
    Node* tail_ = nullptr;
    int32_t count_ = 0;
};
