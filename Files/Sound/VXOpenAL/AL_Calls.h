#pragma once
// What the interface calls share.

#include "Files/Sound/VXOpenAL/ALu.h"

// The current context with its device's lock held for the life of this object; nothing
// without a context.
class LockedContext {
public:
    LockedContext() : context_(g_ALContext)
    {
        if (context_) context_->device->lock.lock();
    }
    ~LockedContext()
    {
        if (context_) context_->device->lock.unlock();
    }
    LockedContext(const LockedContext&) = delete;
    LockedContext& operator=(const LockedContext&) = delete;
    explicit operator bool() const { return context_ != nullptr; }
    ALCcontext_struct* operator->() const { return context_; }

private:
    ALCcontext_struct* context_;
};

// The object in a slot of a table of names; null for 0 and a free name.
template <class T>
T* FindName(const VxVector<T*>& names, ALuint name)
{
    return name > 0 && name <= names.size() ? names[name - 1] : nullptr;
}

// Puts an object under the first free name.
template <class T>
ALuint TakeName(VxVector<T*>* names, T* object)
{
    size_t slot = 0;
    while (slot < names->size() && (*names)[slot]) ++slot;
    if (slot == names->size()) names->push_back(nullptr);
    (*names)[slot] = object;
    return static_cast<ALuint>(slot + 1);
}
