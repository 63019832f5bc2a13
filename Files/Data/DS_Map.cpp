#include "Files/Data/DS_Map.h"

#include <utility>

#include "Files/Data/DS_Streams.h"

CDS_Map::CDS_Map(uint32_t buckets) : buckets_(buckets), mask_(buckets - 1) {}

void CDS_Map::Clear()
{
    for (Bucket& bucket : buckets_) {
        while (DSMapElement* element = bucket.head) {
            bucket.head = element->next;
            VxDelete(element);
        }
        bucket.tail = nullptr;
    }
    count_ = 0;
}

void CDS_Map::CopyFrom(const CDS_Map& from)
{
    if (&from == this) return;
    Clear();
    for (const DSMapElement* element = from.First(); element; element = from.Next(element))
        Append(element->key.Get(), element->value);
}

DSMapElement* CDS_Map::Find(const RValue& key) const
{
    const uint32_t hash = HashOf(key);
    DSMapElement* element = buckets_[BucketOf(hash)].head;
    while (element && (element->hash != hash || Compare(element->key, key) != 0))
        element = element->next;
    return element;
}

void CDS_Map::Append(const RValue& key, const DSValue& value)
{
    const uint32_t hash = HashOf(key);
    Bucket& bucket = buckets_[BucketOf(hash)];
    auto* element =
        VxNew<DSMapElement>(DSMapElement{bucket.tail, nullptr, hash, DSValue(key), value});
    (bucket.tail ? bucket.tail->next : bucket.head) = element;
    bucket.tail = element;
    ++count_;
}

bool CDS_Map::Add(const RValue& key, const DSValue& value)
{
    if (Find(key)) return false;
    Append(key, value);
    return true;
}

bool CDS_Map::Set(const RValue& key, const DSValue& value)
{
    DSMapElement* element = Find(key);
    if (element)
        element->value = value;
    else
        Append(key, value);
    return element != nullptr;
}

void CDS_Map::Delete(const RValue& key)
{
    const uint32_t hash = HashOf(key);
    Bucket& bucket = buckets_[BucketOf(hash)];
    DSMapElement* element = bucket.head;
    while (element && element->hash != hash) element = element->next;
    if (!element) return;
    (element->prev ? element->prev->next : bucket.head) = element->next;
    (element->next ? element->next->prev : bucket.tail) = element->prev;
    VxDelete(element);
    --count_;
}

DSMapElement* CDS_Map::FirstFrom(size_t bucket) const
{
    while (bucket < buckets_.size() && !buckets_[bucket].head) ++bucket;
    return bucket < buckets_.size() ? buckets_[bucket].head : nullptr;
}

DSMapElement* CDS_Map::Last() const
{
    for (size_t i = buckets_.size(); i-- > 0;)
        if (buckets_[i].tail) return buckets_[i].tail;
    return nullptr;
}

DSMapElement* CDS_Map::Next(const DSMapElement* element) const
{
    return element->next ? element->next : FirstFrom(BucketOf(element->hash) + 1);
}

DSMapElement* CDS_Map::Previous(const DSMapElement* element) const
{
    if (element->prev) return element->prev;
    for (size_t i = BucketOf(element->hash); i-- > 0;)
        if (buckets_[i].tail) return buckets_[i].tail;
    return nullptr;
}

void CDS_Map::Write(CStream* stream) const
{
    stream->Write32(STREAM_MAP);
    stream->Write32(count_);
    for (const DSMapElement* element = First(); element; element = Next(element)) {
        stream->WriteValue(element->key.Get());
        stream->WriteValue(element->value.Get());
    }
}

void CDS_Map::Swap(CDS_Map* other)
{
    std::swap(buckets_, other->buckets_);
    std::swap(mask_, other->mask_);
    std::swap(count_, other->count_);
}

bool CDS_Map::Read(CStream* stream)
{
    uint32_t count = 0;
    if (!TakeVersion(stream, STREAM_MAP) || !stream->ReadCount(&count)) return false;
    CDS_Map read(mask_ + 1);
    for (uint32_t i = 0; i < count; ++i) {
        DSValue key, value;
        if (!stream->ReadValue(&key) || !stream->ReadValue(&value)) return false;
        read.Set(key.Get(), value);
    }
    Swap(&read);
    return true;
}
