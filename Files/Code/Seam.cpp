#include "Files/Code/Seam.h"

#include <cstring>

bool Value::is(const char* text) const
{
    const char* own = VXGetText(&value_);
    return own && strcmp(own, text) == 0;
}

Value VarRef::get() const
{
    Value out;
    if (place_)
        GET_RValue(&out.raw(), place_, index_);
    else
        Variable_Get(instance_, id_, index_, &out.raw());
    return out;
}

VarRef::operator double() const
{
    if (place_ && index_ == ARRAY_INDEX_NONE) return REAL_RValue(place_);
    return get();
}

VarRef::operator bool() const
{
    if (place_ && index_ == ARRAY_INDEX_NONE) return BOOL_RValue(place_);
    return static_cast<bool>(get());
}

void VarRef::Set(const RValue& value)
{
    if (place_)
        SET_RValue(place_, &value, index_);
    else
        Variable_Set(instance_, id_, index_, &value);
}

void VarRef::SetText(const char* text)
{
    RValue value;
    VXCreateString(&value, text);
    Set(value);
    FREE_RValue(&value);
}

Value TargetVar::get() const
{
    Value out;
    Variable_GetFromTarget(target_, id_, ARRAY_INDEX_NONE, &out.raw());
    return out;
}

TargetVar::operator double() const
{
    return get();
}
TargetVar::operator bool() const
{
    return static_cast<bool>(get());
}

void TargetVar::Set(const RValue& value) const
{
    Variable_SetOnTarget(target_, id_, ARRAY_INDEX_NONE, &value);
}

void TargetVar::operator=(Text text) const
{
    Frame::Line(text.where);
    RValue value;
    VXCreateString(&value, text.value);
    Set(value);
    FREE_RValue(&value);
}
