#pragma once
// A container of values by key. Its order is that of the buckets, which the hashes of
// the keys give, and within a bucket that of adding.

#include "Files/Data/DS_Values.h"

struct DSMapElement {
    DSMapElement *prev, *next;  // in the bucket
    uint32_t hash;
    DSValue key, value;
};

class CDS_Map {
public:
    static constexpr uint32_t kBuckets = 256;

    explicit CDS_Map(uint32_t buckets = kBuckets);  // a power of two; never changes
    ~CDS_Map() { Clear(); }
    CDS_Map(const CDS_Map&) = delete;
    CDS_Map& operator=(const CDS_Map&) = delete;

    uint32_t Count() const { return count_; }
    void Clear();
    void CopyFrom(const CDS_Map& from);  // the marks too

    DSMapElement* Find(const RValue& key) const;  // null when absent
    // A key that is there keeps its value; false then.
    bool Add(const RValue& key, const DSValue& value);
    // True when the key was there.
    bool Set(const RValue& key, const DSValue& value);
    // The first element with the key's hash.
    void Delete(const RValue& key);

    // Neighbours in the order of iteration; null at the ends.
    DSMapElement* First() const { return FirstFrom(0); }
    DSMapElement* Last() const;
    DSMapElement* Next(const DSMapElement* element) const;
    DSMapElement* Previous(const DSMapElement* element) const;

    void Write(CStream* stream) const;
    bool Read(CStream* stream);  // false, and no change, when the stream is damaged

private:
    struct Bucket {
        DSMapElement* head = nullptr;
        DSMapElement* tail = nullptr;
    };
    size_t BucketOf(uint32_t hash) const { return hash & mask_; }
    DSMapElement* FirstFrom(size_t bucket) const;
    void Append(const RValue& key, const DSValue& value);
    void Swap(CDS_Map* other);

    VxVector<Bucket> buckets_;
    uint32_t mask_;
    uint32_t count_ = 0;
};
