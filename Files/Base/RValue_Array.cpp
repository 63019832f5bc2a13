#include <algorithm>

#include "Files/Base/Error.h"
#include "Files/Base/RValue.h"
#include "Files/Base/RValue_Internal.h"
#include "Platform/MemoryManager.h"

namespace {

struct CellPlace {
    int32_t row, column;
    explicit CellPlace(int32_t index)
        : row(index / kArrayRowStride), column(index % kArrayRowStride)
    {
    }
    bool Negative() const { return row < 0 || column < 0; }
};

int32_t RowLength(const RefArray* body, int32_t row)
{
    return body && row >= 0 && row < body->rowCount ? body->rows[row].length : -1;
}

void SetArrayError(const RefArray* body, CellPlace place)
{
    g_ArrayError = {true, place.row, place.column, body ? body->rowCount : 0,
                    RowLength(body, place.row)};
}

// Room for `count` items. Grown by half more than asked, so that a script that
// appends cell by cell copies each cell a few times only; new room is zero.
template <class T>
void Reserve(T** items, int32_t count)
{
    const size_t room = MemoryManager::GetSize(*items) / sizeof(T);
    const size_t needed = static_cast<size_t>(count);
    if (needed <= room) return;
    MemoryManager::SetLength(items, std::max(needed, room + room / 2) * sizeof(T));
}

// The cell at a place that is not negative; rows and cells grow to hold it.
RValue* MakeCell(RefArray* body, CellPlace place)
{
    if (body->rowCount <= place.row) {
        Reserve(&body->rows, place.row + 1);
        body->rowCount = place.row + 1;
    }
    ArrayRow& row = body->rows[place.row];
    if (row.length <= place.column) {
        Reserve(&row.cells, place.column + 1);
        row.length = place.column + 1;
    }
    return &row.cells[place.column];
}

// Makes `value` an array whose body it may write: copy on write.
RefArray* MakeWritable(RValue* value)
{
    if (value->Kind() != VALUE_ARRAY) {
        FREE_RValue(value);
        value->flags = 0;
        value->kind = VALUE_ARRAY;
        value->array = nullptr;
    }
    RefArray* body = value->array;
    if (!body)
        value->array = ARRAY_NEW(value);
    else if (body->owner != value && body->refcount != 1)
        value->array = ARRAY_COPY(body, value);
    return value->array;
}

// Takes a reference on the body of a string or an array; false when there is none.
bool Hold(const RValue& value)
{
    const bool text = value.Kind() == VALUE_STRING && value.string;
    const bool array = value.Kind() == VALUE_ARRAY && value.array;
    if (text) ++value.string->refcount;
    if (array) ++value.array->refcount;
    return text || array;
}

void FreeCells(RefArray* body)
{
    for (int32_t row = 0; row < body->rowCount; ++row) {
        for (int32_t column = 0; column < body->rows[row].length; ++column)
            RELEASE_RValue(&body->rows[row].cells[column]);
        MemoryManager::Free(body->rows[row].cells);
    }
    MemoryManager::Free(body->rows);
}

}  // namespace

void ARRAY_DROP(RefArray* body, RValue* holder)
{
    if (!body) return;
    --body->refcount;
    if (body->owner == holder) body->owner = nullptr;
    if (body->refcount > 0) return;
    FreeCells(body);
    MemoryManager::Free(body);
}

RefArray* ARRAY_NEW(RValue* owner)
{
    RefArray* body = static_cast<RefArray*>(MemoryManager::Alloc(sizeof(RefArray), true));
    body->refcount = 1;
    body->owner = owner;
    return body;
}

RefArray* ARRAY_COPY(RefArray* source, RValue* owner)
{
    if (!source) return nullptr;
    RefArray* copy = ARRAY_NEW(owner);
    if (source->rowCount > 0) Reserve(&copy->rows, source->rowCount);
    copy->rowCount = source->rowCount;
    for (int32_t row = 0; row < source->rowCount; ++row) {
        const ArrayRow& from = source->rows[row];
        ArrayRow& to = copy->rows[row];
        if (from.length <= 0) continue;
        Reserve(&to.cells, from.length);
        to.length = from.length;
        for (int32_t column = 0; column < from.length; ++column)
            COPY_RValue(&to.cells[column], &from.cells[column]);
    }
    --source->refcount;
    return copy;
}

const RValue* ARRAY_CELL(const RValue* value, int32_t index)
{
    if (value->Kind() == VALUE_UNSET) {
        Error_Fatal("ARRAY argument is unset");
        return nullptr;
    }
    const CellPlace place(index);
    if (value->Kind() != VALUE_ARRAY || place.Negative()) return nullptr;
    if (place.column >= RowLength(value->array, place.row)) return nullptr;
    return &value->array->rows[place.row].cells[place.column];
}

bool GET_RValue(RValue* out, RValue* value, int32_t index)
{
    if (index == ARRAY_INDEX_NONE) {
        if (value->Kind() == VALUE_ARRAY && value->array && !value->array->owner)
            value->array->owner = value;
        COPY_RValue(out, value);
        return true;
    }
    if (value->Kind() != VALUE_ARRAY) {
        Error_Fatal("trying to index a variable which is not an array");
        COPY_RValue(out, value);
        return false;
    }
    if (const RValue* cell = ARRAY_CELL(value, index)) {
        COPY_RValue(out, cell);
        return true;
    }
    SetArrayError(value->array, CellPlace(index));
    *out = RValue(0.0);
    return false;
}

void SET_RValue(RValue* dest, const RValue* src, int32_t index)
{
    // Held by a reference of its own: the source may be the destination or a cell of it.
    RValue held = *src;
    const bool counted = held.NeedsRelease() && Hold(held);

    if (index == ARRAY_INDEX_NONE) {
        RELEASE_RValue(dest);
        COPY_RValue(dest, &held);
    } else {
        RefArray* body = MakeWritable(dest);
        if (!body->owner) body->owner = const_cast<RValue*>(src);
        const CellPlace place(index);
        if (place.Negative()) {
            SetArrayError(body, place);
        } else {
            RValue* cell = MakeCell(body, place);
            RELEASE_RValue(cell);
            COPY_RValue(cell, &held);
        }
    }
    if (counted) FREE_RValue(&held);
}

RValue* ARRAY_LVAL(RValue* value, int32_t index)
{
    RefArray* body = MakeWritable(value);
    const CellPlace place(index);
    return place.Negative() ? nullptr : MakeCell(body, place);
}
