#include "Files/Base/VXObjectBase.h"

#include <algorithm>

namespace {

constexpr uint32_t kStartSlots = 8;

void SetUnset(RValue* value)
{
    value->i64 = 0;
    value->flags = 0;
    value->kind = VALUE_UNSET;
}

}  // namespace

VXObjectBase* g_Global = nullptr;

VXObjectBase::VXObjectBase(int32_t count) : slotCount_(count)
{
    slots_ = static_cast<RValue*>(
        MemoryManager::Alloc(static_cast<size_t>(count > 0 ? count : 0) * sizeof(RValue)));
    for (int32_t slot = 0; slot < count; ++slot) SetUnset(&slots_[slot]);
}

VXObjectBase::~VXObjectBase()
{
    for (int32_t slot = 0; slot < slotCount_; ++slot) FREE_RValue(&slots_[slot]);
    MemoryManager::Free(slots_);
    if (!map_) return;
    for (uint32_t i = 0; i < map_->Size(); ++i) {
        if (const auto* entry = map_->At(i)) {
            FREE_RValue(entry->value);
            MemoryManager::Free(entry->value);
        }
    }
    VxDelete(map_);
}

RValue* VXObjectBase::FindVar(int32_t slot) const
{
    if (slot >= 0 && slot < slotCount_) return &slots_[slot];
    RValue** value = map_ ? map_->Find(slot) : nullptr;
    return value ? *value : nullptr;
}

RValue* VXObjectBase::InternalGetVar(int32_t slot)
{
    if (RValue* present = FindVar(slot)) return present;
    if (!map_) map_ = VxNew<CHashMap<int32_t, RValue*>>(kStartSlots);
    RValue* value = static_cast<RValue*>(MemoryManager::AllocEntry());
    SetUnset(value);
    map_->Set(slot, value);
    return value;
}

void VXObjectBase::VisitVars(void (*visit)(void* context, int32_t slot, RValue* value),
                             void* context) const
{
    for (int32_t slot = 0; slot < slotCount_; ++slot) visit(context, slot, &slots_[slot]);
    if (!map_) return;
    VxVector<std::pair<int32_t, RValue*>> held;
    for (uint32_t i = 0; i < map_->Size(); ++i)
        if (const auto* entry = map_->At(i)) held.emplace_back(entry->key, entry->value);
    std::sort(held.begin(), held.end());
    for (const auto& [slot, value] : held) visit(context, slot, value);
}

void VXObjectBase::CopyVarsFrom(const VXObjectBase& from)
{
    if (&from == this) return;
    VisitVars(
        [](void*, int32_t, RValue* value) {
            FREE_RValue(value);
            SetUnset(value);
        },
        nullptr);
    from.VisitVars(
        [](void* self, int32_t slot, RValue* value) {
            RValue* own = static_cast<VXObjectBase*>(self)->InternalGetVar(slot);
            FREE_RValue(own);
            COPY_RValue(own, value);
        },
        this);
}
