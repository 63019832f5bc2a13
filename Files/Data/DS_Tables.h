#pragma once
// The containers that scripts have by id, one table for each kind. Ids start at 0, the
// lowest free one is given next, and nothing marks an id that went stale.

#include <algorithm>
#include <mutex>
#include <utility>

#include "Files/Data/DS_Grid.h"
#include "Files/Data/DS_Lists.h"
#include "Files/Data/DS_Map.h"

enum DSType : int32_t {
    ds_type_map = 1,
    ds_type_list = 2,
    ds_type_stack = 3,
    ds_type_queue = 4,
    ds_type_grid = 5,
    ds_type_priority = 6,
};

// Held while maps or their table are used: events from outside bring their own. The one
// thread may take it again.
std::recursive_mutex& DsMutex();
using DSLock = std::lock_guard<std::recursive_mutex>;

template <class T>
class DSTable {
public:
    int32_t Put(T* container)
    {
        size_t id = lowestFree_;
        while (id < slots_.size() && slots_[id]) ++id;
        if (id == slots_.size()) {
            if (id == slots_.capacity()) slots_.reserve(id + kGrowth);
            slots_.push_back(nullptr);
        }
        slots_[id] = container;
        lowestFree_ = id + 1;
        return static_cast<int32_t>(id);
    }
    T* At(int32_t id) const  // null for a free slot and outside the table
    {
        return id >= 0 && static_cast<size_t>(id) < slots_.size() ? slots_[static_cast<size_t>(id)]
                                                                  : nullptr;
    }
    T* Take(int32_t id)
    {
        T* container = At(id);
        if (!container) return nullptr;
        slots_[static_cast<size_t>(id)] = nullptr;
        lowestFree_ = std::min(lowestFree_, static_cast<size_t>(id));
        return container;
    }
    void DeleteAll()
    {
        for (T*& slot : slots_) VxDelete(std::exchange(slot, nullptr));
        VxVector<T*>().swap(slots_);
        lowestFree_ = 0;
    }

private:
    static constexpr size_t kGrowth = 16;  // slots
    VxVector<T*> slots_;
    size_t lowestFree_ = 0;  // none below it
};

// The table of a kind: DS_Table<CDS_Map>(), and so on.
template <class T>
DSTable<T>& DS_Table();

// Frees the container, and the maps and lists that its marked items own. False when there
// is none of that id.
template <class T>
bool DS_Destroy(int32_t id);
// Empties a map or list in the same way. One that owns itself goes altogether.
template <class T>
void DS_Clear(T* container);

// All tables empty, precision as at the start.
void DS_Quit();

// ---- maps, as the runtime makes them for events
int32_t DS_MapCreate();
void DS_MapSet(int32_t id, const char* key, double number);
void DS_MapSet(int32_t id, const char* key, const char* text);
