#include "Files/Data/DS_Lists.h"

#include <algorithm>
#include <utility>

#include "Files/Base/Console.h"
#include "Files/Data/DS_Streams.h"
#include "Files/Function/Function_Registry.h"

namespace {

constexpr size_t kGrowth = 16;          // items
constexpr int64_t kSwapsOfShuffle = 8;  // for each item
constexpr size_t kShiftedHead = 17;     // of a queue: from here on its items may move down

void WriteItems(CStream* stream, StreamVersion version, const VxVector<DSValue>& items)
{
    stream->Write32(version);
    stream->Write32(static_cast<uint32_t>(items.size()));
    for (const DSValue& item : items) stream->WriteValue(item.Get());
}

bool ReadItems(CStream* stream, StreamVersion version, VxVector<DSValue>* items)
{
    uint32_t count = 0;
    VxVector<DSValue> read;
    if (!TakeVersion(stream, version) || !stream->ReadCount(&count) ||
        !stream->ReadValues(&read, count))
        return false;
    items->swap(read);
    return true;
}

// An index below `count`; -1 after a line when the generator leads outside.
int32_t RandomIndex(int32_t count, const char* line)
{
    const auto index = static_cast<int32_t>(Random_Real(count));
    if (index >= 0 && index < count) return index;
    g_DebugConsole->Output(line, index);
    return -1;
}

}  // namespace

// ---- lists

void CDS_List::Add(const DSValue& value)
{
    const size_t capacity = items_.capacity();
    if (items_.size() == capacity) items_.reserve(capacity + std::max(capacity / 8, kGrowth));
    items_.push_back(value);
}

void CDS_List::Insert(int32_t at, const DSValue& value)
{
    if (at >= 0 && at <= Count()) items_.insert(items_.begin() + at, value);
}

void CDS_List::Replace(int32_t at, const DSValue& value)
{
    if (Holds(at)) At(at) = value;
}

void CDS_List::Set(int32_t at, const DSValue& value)
{
    if (at < 0 || at >= kMostItems) return;
    if (!Holds(at)) items_.resize(static_cast<size_t>(at) + 1);
    At(at) = value;
}

void CDS_List::Delete(int32_t at)
{
    if (Holds(at)) items_.erase(items_.begin() + at);
}

int32_t CDS_List::FindIndex(const RValue& value) const
{
    for (int32_t i = 0; i < Count(); ++i)
        if (Compare(At(i), value) == 0) return i;
    return -1;
}

void CDS_List::Sort(bool ascending)
{
    for (int32_t i = 1; i < Count(); ++i)
        for (int32_t j = i; j > 0; --j) {
            if ((Compare(At(j - 1), At(j).Get()) > 0) != ascending) break;
            std::swap(At(j - 1), At(j));
        }
}

void CDS_List::Shuffle()
{
    for (int64_t i = 0; i < Count() * kSwapsOfShuffle; ++i) {
        const int32_t first = RandomIndex(Count(), "ind1=%d");
        const int32_t second = RandomIndex(Count(), "ind2=%d");
        if (first >= 0 && second >= 0) std::swap(At(first), At(second));
    }
}

void CDS_List::Write(CStream* stream) const
{
    WriteItems(stream, STREAM_LIST, items_);
}
bool CDS_List::Read(CStream* stream)
{
    return ReadItems(stream, STREAM_LIST, &items_);
}

// ---- stacks

void CDS_Stack::Write(CStream* stream) const
{
    WriteItems(stream, STREAM_STACK, items_);
}
bool CDS_Stack::Read(CStream* stream)
{
    return ReadItems(stream, STREAM_STACK, &items_);
}

// ---- queues

void CDS_Queue::Clear()
{
    items_.clear();
    head_ = 0;
}

void CDS_Queue::Enqueue(const DSValue& value)
{
    if (items_.size() == capacity_) capacity_ += kGrowth;
    items_.push_back(value);
}

void CDS_Queue::Dequeue()
{
    ++head_;
    if (head_ < kShiftedHead || head_ * 2 < items_.size()) return;
    items_.erase(items_.begin(), items_.begin() + static_cast<ptrdiff_t>(head_));
    head_ = 0;
}

void CDS_Queue::Write(CStream* stream) const
{
    stream->Write32(STREAM_QUEUE);
    for (const size_t number : {items_.size(), head_, capacity_})
        stream->Write32(static_cast<uint32_t>(number));
    const DSValue unused;
    for (size_t i = 0; i < capacity_; ++i)
        stream->WriteValue((i < items_.size() ? items_[i] : unused).Get());
}

bool CDS_Queue::Read(CStream* stream)
{
    uint32_t count = 0, head = 0, capacity = 0;
    VxVector<DSValue> items;
    if (!TakeVersion(stream, STREAM_QUEUE) || !stream->Read32(&count) || !stream->Read32(&head) ||
        !stream->ReadCount(&capacity) || head > count || count > capacity ||
        !stream->ReadValues(&items, capacity))
        return false;
    items.resize(count);
    items_.swap(items);
    head_ = head;
    capacity_ = capacity;
    return true;
}

// ---- priority queues

void CDS_Priority::Clear()
{
    values_.clear();
    priorities_.clear();
}

void CDS_Priority::Add(const DSValue& value, const DSValue& priority)
{
    values_.push_back(value);
    priorities_.push_back(priority);
}

int32_t CDS_Priority::FindValue(const RValue& value) const
{
    for (int32_t i = 0; i < Count(); ++i)
        if (Compare(Value(i), value) == 0) return i;
    return -1;
}

int32_t CDS_Priority::FindExtreme(int sign) const
{
    int32_t found = Count() > 0 ? 0 : -1;
    for (int32_t i = 1; i < Count(); ++i)
        if (Compare(Priority(i), Priority(found).Get()) == sign) found = i;
    return found;
}

void CDS_Priority::Delete(int32_t at)
{
    values_.erase(values_.begin() + at);
    priorities_.erase(priorities_.begin() + at);
}

void CDS_Priority::Write(CStream* stream) const
{
    WriteItems(stream, STREAM_PRIORITY, values_);
    for (const DSValue& priority : priorities_) stream->WriteValue(priority.Get());
}

bool CDS_Priority::Read(CStream* stream)
{
    VxVector<DSValue> values, priorities;
    if (!ReadItems(stream, STREAM_PRIORITY, &values) ||
        !stream->ReadValues(&priorities, static_cast<uint32_t>(values.size())))
        return false;
    values_.swap(values);
    priorities_.swap(priorities);
    return true;
}
