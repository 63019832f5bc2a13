#pragma once
// What the units of the container family share. Function_DS.cpp calls them all.

#include <type_traits>

#include "Files/Base/Error.h"
#include "Files/Data/DS_Tables.h"
#include "Files/Function/Arguments.h"
#include "Files/Function/Function_Registry.h"

void Function_DS_RegisterMaps();
void Function_DS_RegisterLists();  // also stacks, queues and priority queues
void Function_DS_RegisterGrids();

namespace ds {

// Maps alone are used by more than one thread.
struct NoLock {
    explicit NoLock(std::recursive_mutex&) {}
};
template <class T>
using LockFor = std::conditional_t<std::is_same_v<T, CDS_Map>, DSLock, NoLock>;

// The container of an argument; null after a report.
template <class T>
T* Named(const RValue* args, int argc, int i)
{
    T* container = DS_Table<T>().At(ArgInt(args, argc, i, -1));
    if (!container) Error_Show("Data structure with index does not exist.", false);
    return container;
}

// A call with a container as its first argument. Without one the result is 0.
template <class T>
class Call {
public:
    Call(RValue& result, const RValue* args, int argc)
        : lock_(DsMutex()), container_(Named<T>(args, argc, 0))
    {
        if (!container_) SetReal(result, 0);
    }
    explicit operator bool() const { return container_ != nullptr; }
    T* operator->() const { return container_; }
    T& operator*() const { return *container_; }

private:
    LockFor<T> lock_;
    T* container_;
};

// An argument as a value to keep; undefined for one that is missing.
inline DSValue ArgValue(const RValue* args, int argc, int i, uint32_t mark = 0)
{
    return i < argc ? DSValue(args[i], mark) : DSValue(RValue());
}
inline RValue ArgRaw(const RValue* args, int argc, int i)  // no reference is taken
{
    return i < argc ? args[i] : RValue();
}

// ---- built-ins that several kinds have

template <class T>
BUILTIN(Create)
{
    const LockFor<T> lock(DsMutex());
    SetReal(result, DS_Table<T>().Put(VxNew<T>()));
}

template <class T>
BUILTIN(Destroy)
{
    const LockFor<T> lock(DsMutex());
    if (Call<T>(result, args, argc)) DS_Destroy<T>(ArgInt(args, argc, 0));
}

template <class T>
BUILTIN(Clear)
{
    if (const Call<T> call{result, args, argc}) DS_Clear(&*call);
}

template <class T>
BUILTIN(Copy)
{
    const Call<T> call{result, args, argc};
    const T* source = call ? Named<T>(args, argc, 1) : nullptr;
    if (source) call->CopyFrom(*source);
}

template <class T>
BUILTIN(Size)
{
    if (const Call<T> call{result, args, argc}) SetReal(result, call->Count());
}

template <class T>
BUILTIN(Empty)
{
    if (const Call<T> call{result, args, argc}) SetBool(result, call->Count() == 0);
}

template <class T>
BUILTIN(Write)
{
    const Call<T> call{result, args, argc};
    if (!call) return;
    CStream stream;
    call->Write(&stream);
    VXCreateString(&result, stream.ToText().c_str());
}

// A text that is no such container's changes nothing.
template <class T>
BUILTIN(Read)
{
    const Call<T> call{result, args, argc};
    if (!call) return;
    CStream stream;
    if (!stream.FromText(ArgText(args, argc, 1)) || !call->Read(&stream))
        g_ErrorConsole->Output("%s: the text is damaged\n",
                               g_CurrentFunction ? g_CurrentFunction->name : "");
}

}  // namespace ds
