#include "Files/Data/DS_Tables.h"

namespace {

constexpr double kDefaultPrecision = 1e-8;

// A container that a marked item owns.
struct Owned {
    uint32_t mark;
    int32_t id;
};
using OwnedList = VxVector<Owned>;

void Note(OwnedList* owned, const DSValue& item)
{
    if (item.Mark() && item.IsNumber()) owned->push_back({item.Mark(), INT32_RValue(&item.Get())});
}

void NoteItems(OwnedList* owned, const CDS_Map& map)
{
    for (const DSMapElement* element = map.First(); element; element = map.Next(element))
        Note(owned, element->value);
}
void NoteItems(OwnedList* owned, const CDS_List& list)
{
    for (int32_t i = 0; i < list.Count(); ++i) Note(owned, list.At(i));
}
template <class T>
void NoteItems(OwnedList*, const T&)
{
}

template <class T>
bool DestroyOne(int32_t id, OwnedList* owned)
{
    T* container = DS_Table<T>().Take(id);
    if (!container) return false;
    NoteItems(owned, *container);
    VxDelete(container);
    return true;
}

// Those too that the destroyed ones own, however deep; ids that lead nowhere are passed.
void DestroyOwned(OwnedList* owned)
{
    if (owned->empty()) return;
    const DSLock lock(DsMutex());
    while (!owned->empty()) {
        const Owned next = owned->back();
        owned->pop_back();
        if (next.mark & kMarkMap)
            DestroyOne<CDS_Map>(next.id, owned);
        else
            DestroyOne<CDS_List>(next.id, owned);
    }
}

void SetKey(int32_t id, const char* key, const RValue& value)
{
    const DSLock lock(DsMutex());
    RValue name;
    VXCreateString(&name, key);
    if (CDS_Map* map = DS_Table<CDS_Map>().At(id)) map->Set(name, DSValue(value));
    FREE_RValue(&name);
}

}  // namespace

std::recursive_mutex& DsMutex()
{
    static std::recursive_mutex mutex;
    return mutex;
}

template <class T>
DSTable<T>& DS_Table()
{
    static DSTable<T> table;
    return table;
}

template <class T>
bool DS_Destroy(int32_t id)
{
    OwnedList owned;
    const bool found = DestroyOne<T>(id, &owned);
    DestroyOwned(&owned);
    return found;
}

template <class T>
void DS_Clear(T* container)
{
    OwnedList owned;
    NoteItems(&owned, *container);
    container->Clear();
    DestroyOwned(&owned);
}

template DSTable<CDS_Map>& DS_Table();
template DSTable<CDS_List>& DS_Table();
template DSTable<CDS_Stack>& DS_Table();
template DSTable<CDS_Queue>& DS_Table();
template DSTable<CDS_Grid>& DS_Table();
template DSTable<CDS_Priority>& DS_Table();
template bool DS_Destroy<CDS_Map>(int32_t);
template bool DS_Destroy<CDS_List>(int32_t);
template bool DS_Destroy<CDS_Stack>(int32_t);
template bool DS_Destroy<CDS_Queue>(int32_t);
template bool DS_Destroy<CDS_Grid>(int32_t);
template bool DS_Destroy<CDS_Priority>(int32_t);
template void DS_Clear(CDS_Map*);
template void DS_Clear(CDS_List*);
template void DS_Clear(CDS_Stack*);
template void DS_Clear(CDS_Queue*);
template void DS_Clear(CDS_Priority*);

void DS_Quit()
{
    const DSLock lock(DsMutex());
    DS_Table<CDS_Map>().DeleteAll();
    DS_Table<CDS_List>().DeleteAll();
    DS_Table<CDS_Stack>().DeleteAll();
    DS_Table<CDS_Queue>().DeleteAll();
    DS_Table<CDS_Grid>().DeleteAll();
    DS_Table<CDS_Priority>().DeleteAll();
    ds_precision = kDefaultPrecision;
}

int32_t DS_MapCreate()
{
    const DSLock lock(DsMutex());
    return DS_Table<CDS_Map>().Put(VxNew<CDS_Map>());
}

void DS_MapSet(int32_t id, const char* key, double number)
{
    SetKey(id, key, RValue(number));
}

void DS_MapSet(int32_t id, const char* key, const char* text)
{
    RValue value;
    VXCreateString(&value, text);
    SetKey(id, key, value);
    FREE_RValue(&value);
}
