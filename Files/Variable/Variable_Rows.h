#pragma once
// How fields become rows: the conversions that all rows share, and getters and
// setters made from a pointer to a member.

#include <cmath>
#include <cstdint>

#include "Files/Object/CInstance.h"
#include "Files/Room/Room_Main.h"
#include "Files/Variable/Variable_BuiltIn.h"

template <size_t N>
void Variable_AddRows(const VariableRow (&rows)[N])
{
    for (const VariableRow& row : rows)
        Variable_BuiltIn_Add(row.name, row.getter, row.setter, row.canSet);
}

// A row with a setter can be set.
constexpr VariableRow ReadWrite(const char* name, VariableGetter getter, VariableSetter setter)
{
    return {name, getter, setter, true};
}
constexpr VariableRow ReadOnly(const char* name, VariableGetter getter)
{
    return {name, getter, nullptr, false};
}

namespace rows {

// An index outside its range, or none written, means the first entry.
inline int32_t Slot(int32_t index, int32_t count)
{
    return index >= 0 && index < count ? index : 0;
}

inline bool Put(RValue* out, double value)
{
    SetReal(*out, value);
    return true;
}
// Colours read back as unsigned numbers.
inline bool PutColour(RValue* out, int32_t colour)
{
    return Put(out, static_cast<uint32_t>(colour));
}

// Nearest integer, halves to even; wraps to 32 bits, which keeps all bits of a colour.
inline int32_t Integer(const RValue* value)
{
    const double number = REAL_RValue(value);
    if (!(std::fabs(number) < 9.0e18)) return 0;
    return static_cast<int32_t>(static_cast<int64_t>(std::nearbyint(number)));
}

inline void Take(const RValue* value, float* field)
{
    *field = static_cast<float>(REAL_RValue(value));
}
inline void Take(const RValue* value, int32_t* field)
{
    *field = Integer(value);
}
// Of an instance: any rounded value but 0. Rooms, views and backgrounds: above 0.
inline bool TruthOfInstance(const RValue* value)
{
    return Integer(value) != 0;
}
inline void Take(const RValue* value, bool* field)
{
    *field = Integer(value) > 0;
}

// ---- fields of an instance
template <auto Field>
bool Get(CInstance* self, int32_t, RValue* out)
{
    return self && Put(out, static_cast<double>(self->*Field));
}
template <auto Field>
bool Set(CInstance* self, int32_t, const RValue* value)
{
    if (!self) return false;
    Take(value, &(self->*Field));
    return true;
}
template <bool CInstance::*Field>
bool SetTruth(CInstance* self, int32_t, const RValue* value)
{
    if (!self) return false;
    self->*Field = TruthOfInstance(value);
    return true;
}
// Stores only a change, and then the box is stale.
template <auto Field>
bool SetShape(CInstance* self, int32_t, const RValue* value)
{
    if (!self) return false;
    auto field = self->*Field;
    Take(value, &field);
    if (field == self->*Field) return true;
    self->*Field = field;
    self->bboxDirty = true;
    return true;
}

// ---- fields of the running room; without a room reads fail and writes are lost
template <auto Field>
bool GetRoom(CInstance*, int32_t, RValue* out)
{
    return Run_Room && Put(out, static_cast<double>(Run_Room->*Field));
}
template <auto Field>
bool SetRoom(CInstance*, int32_t, const RValue* value)
{
    if (!Run_Room) return false;
    Take(value, &(Run_Room->*Field));
    return true;
}

// ---- fields of the room's backgrounds and views
template <auto Entries, auto Field>
bool GetEntry(CInstance*, int32_t index, RValue* out)
{
    if (!Run_Room) return false;
    return Put(out, static_cast<double>((Run_Room->*Entries)[Slot(index, kRoomSlots)].*Field));
}
template <auto Entries, auto Field>
bool SetEntry(CInstance*, int32_t index, const RValue* value)
{
    if (!Run_Room) return false;
    Take(value, &((Run_Room->*Entries)[Slot(index, kRoomSlots)].*Field));
    return true;
}

}  // namespace rows
