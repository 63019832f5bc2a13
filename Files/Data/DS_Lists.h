#pragma once
// The containers of scripts that keep their values in a row: list, stack, queue and
// priority queue. Reading from a damaged stream fails and changes nothing.

#include "Files/Data/DS_Values.h"

class CDS_List {
public:
    int32_t Count() const { return static_cast<int32_t>(items_.size()); }
    bool Holds(int32_t at) const { return at >= 0 && at < Count(); }
    const DSValue& At(int32_t at) const { return items_[static_cast<size_t>(at)]; }
    DSValue& At(int32_t at) { return items_[static_cast<size_t>(at)]; }
    void Clear() { items_.clear(); }
    void CopyFrom(const CDS_List& from) { items_ = from.items_; }

    void Add(const DSValue& value);
    void Insert(int32_t at, const DSValue& value);   // `at` up to the count
    void Replace(int32_t at, const DSValue& value);  // inside the list
    // Beyond the end the list grows by real zeros. At most kMostItems.
    void Set(int32_t at, const DSValue& value);
    void Delete(int32_t at);
    int32_t FindIndex(const RValue& value) const;  // -1 when there is none
    // By insertion; equal items change places in a descending sort.
    void Sort(bool ascending);
    void Shuffle();

    void Write(CStream* stream) const;
    bool Read(CStream* stream);

    static constexpr int32_t kMostItems = 1 << 26;

private:
    VxVector<DSValue> items_;
};

class CDS_Stack {
public:
    int32_t Count() const { return static_cast<int32_t>(items_.size()); }
    void Clear() { items_.clear(); }
    void CopyFrom(const CDS_Stack& from) { items_ = from.items_; }
    void Push(const DSValue& value) { items_.push_back(value); }
    void Pop() { items_.pop_back(); }
    const DSValue& Top() const { return items_.back(); }
    void Write(CStream* stream) const;
    bool Read(CStream* stream);

private:
    VxVector<DSValue> items_;
};

class CDS_Queue {
public:
    int32_t Count() const { return static_cast<int32_t>(items_.size() - head_); }
    void Clear();
    void CopyFrom(const CDS_Queue& from) { *this = from; }
    void Enqueue(const DSValue& value);
    void Dequeue();  // not from an empty queue
    const DSValue& Head() const { return items_[head_]; }
    const DSValue& Tail() const { return items_.back(); }
    void Write(CStream* stream) const;
    bool Read(CStream* stream);

private:
    VxVector<DSValue> items_;  // those before the head are gone for the script
    size_t head_ = 0, capacity_ = 0;
};

// Values with a priority each; every search is one walk.
class CDS_Priority {
public:
    int32_t Count() const { return static_cast<int32_t>(values_.size()); }
    void Clear();
    void CopyFrom(const CDS_Priority& from) { *this = from; }
    void Add(const DSValue& value, const DSValue& priority);
    int32_t FindValue(const RValue& value) const;  // -1 when there is none
    int32_t FindLowest() const { return FindExtreme(-1); }
    int32_t FindHighest() const { return FindExtreme(1); }
    const DSValue& Value(int32_t at) const { return values_[static_cast<size_t>(at)]; }
    const DSValue& Priority(int32_t at) const { return priorities_[static_cast<size_t>(at)]; }
    void SetPriority(int32_t at, const DSValue& to) { priorities_[static_cast<size_t>(at)] = to; }
    void Delete(int32_t at);
    void Write(CStream* stream) const;
    bool Read(CStream* stream);

private:
    int32_t FindExtreme(int sign) const;

    VxVector<DSValue> values_, priorities_;
};
