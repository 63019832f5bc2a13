// Containers of values by key.

#include "Files/Function/Function_DS.h"

namespace {

using ds::ArgRaw;
using ds::ArgValue;
using MapCall = ds::Call<CDS_Map>;

constexpr int32_t kMostBuckets = 1 << 20;

BUILTIN(F_ds_map_create)
{
    const int32_t buckets = ArgInt(args, argc, 0, CDS_Map::kBuckets);
    SetReal(result, 0);
    if (buckets < 1 || buckets > kMostBuckets || (buckets & (buckets - 1)) != 0) {
        Error_Show("ds_map_create: the number of buckets is no power of two", false);
        return;
    }
    const DSLock lock(DsMutex());
    CDS_Map* map = VxNew<CDS_Map>(static_cast<uint32_t>(buckets));
    SetReal(result, DS_Table<CDS_Map>().Put(map));
}

BUILTIN(F_ds_map_add)
{
    if (const MapCall map{result, args, argc})
        SetBool(result, map->Add(ArgRaw(args, argc, 1), ArgValue(args, argc, 2)));
}
BUILTIN(F_ds_map_set)
{
    if (const MapCall map{result, args, argc})
        map->Set(ArgRaw(args, argc, 1), ArgValue(args, argc, 2));
}
BUILTIN(F_ds_map_replace)
{
    if (const MapCall map{result, args, argc})
        SetBool(result, map->Set(ArgRaw(args, argc, 1), ArgValue(args, argc, 2)));
}

// Whether the inner container exists; otherwise a report.
bool IsInner(const RValue* args, int argc, uint32_t mark)
{
    const int32_t id = ArgInt(args, argc, 2, -1);
    const bool map = mark == kMarkMap;
    const bool exists =
        map ? DS_Table<CDS_Map>().At(id) != nullptr : DS_Table<CDS_List>().At(id) != nullptr;
    if (!exists) {
        Error_Show(map ? "Invalid map index for value" : "Invalid list index for value", false);
    }
    return exists;
}

void AddInner(RValue& result, int argc, const RValue* args, uint32_t mark)
{
    const MapCall map{result, args, argc};
    SetReal(result, 0);
    if (map && IsInner(args, argc, mark))
        SetBool(result, map->Add(ArgRaw(args, argc, 1), ArgValue(args, argc, 2, mark)));
}
void ReplaceInner(RValue& result, int argc, const RValue* args, uint32_t mark)
{
    const MapCall map{result, args, argc};
    SetReal(result, 0);
    if (!map || !IsInner(args, argc, mark)) return;
    if (mark == kMarkMap && ArgInt(args, argc, 0) == ArgInt(args, argc, 2))
        Error_Show("Unable to use same map for replace", false);
    else
        SetBool(result, map->Set(ArgRaw(args, argc, 1), ArgValue(args, argc, 2, mark)));
}

BUILTIN(F_ds_map_add_list)
{
    AddInner(result, argc, args, kMarkList);
}
BUILTIN(F_ds_map_add_map)
{
    AddInner(result, argc, args, kMarkMap);
}
BUILTIN(F_ds_map_replace_list)
{
    ReplaceInner(result, argc, args, kMarkList);
}
BUILTIN(F_ds_map_replace_map)
{
    ReplaceInner(result, argc, args, kMarkMap);
}

BUILTIN(F_ds_map_delete)
{
    if (const MapCall map{result, args, argc}) map->Delete(ArgRaw(args, argc, 1));
}

BUILTIN(F_ds_map_exists)
{
    if (const MapCall map{result, args, argc})
        SetBool(result, map->Find(ArgRaw(args, argc, 1)) != nullptr);
}

BUILTIN(F_ds_map_find_value)
{
    const MapCall map{result, args, argc};
    if (!map) return;
    RELEASE_RValue(&result);
    if (const DSMapElement* element = map->Find(ArgRaw(args, argc, 1)))
        element->value.PutIn(result);
}

// Undefined when there is no such element.
void PutKey(RValue& result, const DSMapElement* element)
{
    RELEASE_RValue(&result);
    if (element) element->key.PutIn(result);
}

BUILTIN(F_ds_map_find_first)
{
    if (const MapCall map{result, args, argc}) PutKey(result, map->First());
}
BUILTIN(F_ds_map_find_last)
{
    if (const MapCall map{result, args, argc}) PutKey(result, map->Last());
}
BUILTIN(F_ds_map_find_next)
{
    const MapCall map{result, args, argc};
    if (!map) return;
    const DSMapElement* element = map->Find(ArgRaw(args, argc, 1));
    PutKey(result, element ? map->Next(element) : nullptr);
}
BUILTIN(F_ds_map_find_previous)
{
    const MapCall map{result, args, argc};
    if (!map) return;
    const DSMapElement* element = map->Find(ArgRaw(args, argc, 1));
    PutKey(result, element ? map->Previous(element) : nullptr);
}

constexpr BuiltinRow kRows[] = {
    {"ds_map_create", F_ds_map_create, 0},
    {"ds_map_destroy", ds::Destroy<CDS_Map>, 1},
    {"ds_map_clear", ds::Clear<CDS_Map>, 1},
    {"ds_map_copy", ds::Copy<CDS_Map>, 2},
    {"ds_map_size", ds::Size<CDS_Map>, 1},
    {"ds_map_empty", ds::Empty<CDS_Map>, 1},
    {"ds_map_write", ds::Write<CDS_Map>, 1},
    {"ds_map_read", ds::Read<CDS_Map>, 2},
    {"ds_map_add", F_ds_map_add, 3},
    {"ds_map_set", F_ds_map_set, 3},
    {"ds_map_replace", F_ds_map_replace, 3},
    {"ds_map_add_list", F_ds_map_add_list, 3},
    {"ds_map_add_map", F_ds_map_add_map, 3},
    {"ds_map_replace_list", F_ds_map_replace_list, 3},
    {"ds_map_replace_map", F_ds_map_replace_map, 3},
    {"ds_map_delete", F_ds_map_delete, 2},
    {"ds_map_exists", F_ds_map_exists, 2},
    {"ds_map_find_value", F_ds_map_find_value, 2},
    {"ds_map_find_first", F_ds_map_find_first, 1},
    {"ds_map_find_last", F_ds_map_find_last, 1},
    {"ds_map_find_next", F_ds_map_find_next, 2},
    {"ds_map_find_previous", F_ds_map_find_previous, 2},
};

}  // namespace

void Function_DS_RegisterMaps()
{
    Function_AddRows(kRows);
}
