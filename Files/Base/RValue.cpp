#include "Files/Base/RValue.h"

#include <cstring>

#include "Files/Base/RValue_Internal.h"
#include "Files/Base/VXObjectBase.h"
#include "Platform/MemoryManager.h"

ArrayError g_ArrayError = {false, 0, 0, 0, -1};
double g_MathEpsilon = kDefaultEpsilon;

namespace {

void DropString(RefString* body)
{
    if (!body || --body->refcount > 0) return;
    MemoryManager::Free(body->text);
    MemoryManager::Free(body);
}

}  // namespace

void RValue_Init()
{
    g_ArrayError = {false, 0, 0, 0, -1};
    g_MathEpsilon = kDefaultEpsilon;
    PrintStamps_Reset();
}

void FREE_RValue_Slow(RValue* value)
{
    switch (value->Kind()) {
        case VALUE_STRING:
            DropString(value->string);
            break;
        case VALUE_ARRAY:
            ARRAY_DROP(value->array, value);
            break;
        case VALUE_PTR:
            if ((value->flags & kFlagOwnsPtr) && value->ptr)
                VxDelete(static_cast<VXObjectBase*>(value->ptr));
            break;
        default:
            break;
    }
}

void COPY_RValue_Slow(RValue* dest, const RValue* src)
{
    dest->kind = src->kind;
    dest->flags = src->flags;
    switch (src->Kind()) {
        case VALUE_INT64:
            dest->i64 = src->i64;
            break;
        case VALUE_STRING:
            dest->string = src->string;
            if (dest->string) ++dest->string->refcount;
            break;
        case VALUE_ARRAY:
            dest->array = src->array;
            if (!dest->array) break;
            ++dest->array->refcount;
            if (!dest->array->owner) dest->array->owner = dest;
            break;
        case VALUE_PTR:
        case VALUE_OBJECT:
            dest->ptr = src->ptr;
            break;
        case VALUE_INT32:
        case VALUE_ITERATOR:
            dest->i32 = src->i32;
            break;
        default:
            break;
    }
}

void VXCreateString(RValue* value, const char* text)
{
    RefString* body = static_cast<RefString*>(MemoryManager::Alloc(sizeof(RefString)));
    const size_t size = text ? std::strlen(text) : 0;
    // Copied before the old value goes: `text` may be its own.
    body->text = text ? static_cast<char*>(MemoryManager::Alloc(size + 1)) : nullptr;
    if (text) std::memcpy(body->text, text, size + 1);
    body->refcount = 1;
    body->size = static_cast<int32_t>(size);
    FREE_RValue(value);
    value->flags = 0;
    value->kind = VALUE_STRING;
    value->string = body;
}

const char* VXGetText(const RValue* value)
{
    return value->Kind() == VALUE_STRING && value->string ? value->string->text : nullptr;
}

const char* KindName(const RValue* value)
{
    switch (value->Kind()) {
        case VALUE_REAL:
            return "number";
        case VALUE_STRING:
            return "string";
        case VALUE_ARRAY:
            return "array";
        case VALUE_PTR:
            return "ptr";
        case VALUE_VEC3:
            return "vec3";
        case VALUE_UNDEFINED:
            return "undefined";
        case VALUE_OBJECT:
            return "object";
        case VALUE_INT32:
            return "int32";
        case VALUE_VEC4:
            return "vec4";
        case VALUE_VEC44:
            return "vec44";
        case VALUE_INT64:
            return "int64";
        case VALUE_ACCESSOR:
            return "accessor";
        case VALUE_NULL:
            return "null";
        case VALUE_BOOL:
            return "bool";
        case VALUE_ITERATOR:
            return "iterator";
        case VALUE_UNSET:
            return "unset";
        default:
            return "unknown";
    }
}
