#pragma once
// Base of everything that holds user variables: the global instance holds an
// array of slots that never moves, an instance a map from slot to value.

#include "Files/Base/RValue.h"
#include "Platform/CHashMap.h"

class VXObjectBase {
public:
    VXObjectBase() = default;
    // With an array of `count` slots, all unset.
    explicit VXObjectBase(int32_t count);
    virtual ~VXObjectBase();
    VXObjectBase(const VXObjectBase&) = delete;
    VXObjectBase& operator=(const VXObjectBase&) = delete;

    // Address of the value of a slot; made with the unset kind when missing.
    virtual RValue* InternalGetVar(int32_t slot);

    // The slot when it exists, else null.
    RValue* FindVar(int32_t slot) const;
    RValue* Slots() const { return slots_; }
    int32_t SlotCount() const { return slotCount_; }
    // Replaces this object's variables by copies of `from`'s.
    void CopyVarsFrom(const VXObjectBase& from);
    // Visits every held slot in ascending order of slot number.
    void VisitVars(void (*visit)(void* context, int32_t slot, RValue* value), void* context) const;

private:
    int32_t slotCount_ = 0;
    RValue* slots_ = nullptr;                    // array form
    CHashMap<int32_t, RValue*>* map_ = nullptr;  // map form, made on first use
};

extern VXObjectBase* g_Global;  // null before the game's variables are sized
