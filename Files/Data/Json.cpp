#include "Files/Data/Json.h"

#include <json-c/json.h>

#include <cmath>
#include <cstdio>
#include <cstring>

#include "Files/Data/DS_Tables.h"

namespace {

constexpr int kDeepest = 64;    // objects and arrays within each other
constexpr int kRealSize = 330;  // the longest double with six decimals
constexpr char kBlanks[] = " \t\r\n\v\f";

// ---- to JSON

json_object* ObjectOf(const CDS_Map& map, int depth);
json_object* ItemOf(const DSValue& item, int depth);

json_object* ArrayOf(const CDS_List& list, int depth)
{
    json_object* array = json_object_new_array();
    for (int32_t i = 0; i < list.Count(); ++i)
        json_object_array_add(array, ItemOf(list.At(i), depth + 1));
    return array;
}

// A map or list that a marked item owns; null when there is none, or too deep.
json_object* OwnedOf(const DSValue& item, int depth)
{
    const int32_t id = item.IsNumber() ? INT32_RValue(&item.Get()) : -1;
    if (depth >= kDeepest) return nullptr;
    if (item.Mark() & kMarkMap) {
        const CDS_Map* map = DS_Table<CDS_Map>().At(id);
        return map ? ObjectOf(*map, depth + 1) : nullptr;
    }
    const CDS_List* list = DS_Table<CDS_List>().At(id);
    return list ? ArrayOf(*list, depth) : nullptr;
}

json_object* RealOf(double number)
{
    char text[kRealSize];
    std::snprintf(text, sizeof text, "%f", number);
    return json_object_new_double_s(number, text);
}

// All cells of an array, row after row.
json_object* CellsOf(const RefArray* cells, int depth)
{
    json_object* array = json_object_new_array();
    for (int32_t row = 0; cells && depth < kDeepest && row < cells->rowCount; ++row)
        for (int32_t i = 0; i < cells->rows[row].length; ++i)
            json_object_array_add(array, ItemOf(DSValue(cells->rows[row].cells[i]), depth + 1));
    return array;
}

json_object* PointerOf(const void* pointer)
{
    char text[32];
    std::snprintf(text, sizeof text, "%p", pointer);
    return json_object_new_string(text);
}

json_object* ItemOf(const DSValue& item, int depth)
{
    const RValue& value = item.Get();
    if (item.Mark()) return OwnedOf(item, depth);
    switch (value.Kind()) {
        case VALUE_REAL:
            return RealOf(value.real);
        case VALUE_INT32:
            return json_object_new_int(value.i32);
        case VALUE_INT64:
            return json_object_new_int64(value.i64);
        case VALUE_BOOL:
            return json_object_new_boolean(value.real != 0);
        case VALUE_PTR:
            return PointerOf(value.ptr);
        case VALUE_STRING: {
            const char* const text = VXGetText(&value);
            return json_object_new_string(text ? text : "");
        }
        case VALUE_ARRAY:
            return CellsOf(value.array, depth);
        default:
            return nullptr;
    }
}

VxString KeyOf(const RValue& key)
{
    if (key.Kind() != VALUE_REAL) return ToText(&key).get();
    char text[32];
    std::snprintf(text, sizeof text, "%lld", std::llrint(key.real));
    return text;
}

json_object* ObjectOf(const CDS_Map& map, int depth)
{
    json_object* object = json_object_new_object();
    for (const DSMapElement* element = map.First(); element; element = map.Next(element))
        json_object_object_add(object, KeyOf(element->key.Get()).c_str(),
                               ItemOf(element->value, depth));
    return object;
}

// A form feed is written by its number, as the other control characters without a letter.
VxString WithoutFormFeeds(const char* json)
{
    VxString text;
    for (; *json; ++json) {
        if (json[0] == '\\' && json[1] == 'f') {
            text += "\\u000c";
            ++json;
        } else {
            text += *json;
            if (*json == '\\') text += *++json;
        }
    }
    return text;
}

// ---- from JSON

int32_t MapOf(json_object* object);

int32_t ListOf(json_object* array);

// An object or array is a new container, which the item owns.
DSValue ValueOf(json_object* from)
{
    switch (json_object_get_type(from)) {
        case json_type_boolean:
            return DSValue(RValue(json_object_get_boolean(from) ? 1.0 : 0.0));
        case json_type_double:
        case json_type_int:
            return DSValue(RValue(json_object_get_double(from)));
        case json_type_object:
            return DSValue(RValue(MapOf(from)), kMarkMap);
        case json_type_array:
            return DSValue(RValue(ListOf(from)), kMarkList);
        case json_type_string: {
            RValue text;
            VXCreateString(&text, json_object_get_string(from));
            const DSValue value(text);
            FREE_RValue(&text);
            return value;
        }
        default:
            return DSValue();
    }
}

int32_t ListOf(json_object* array)
{
    auto* list = VxNew<CDS_List>();
    const int32_t id = DS_Table<CDS_List>().Put(list);
    for (size_t i = 0; i < json_object_array_length(array); ++i)
        list->Add(ValueOf(json_object_array_get_idx(array, i)));
    return id;
}

int32_t MapOf(json_object* object)
{
    auto* map = VxNew<CDS_Map>();
    const int32_t id = DS_Table<CDS_Map>().Put(map);
    json_object_object_foreach(object, key, member)
    {
        if (!member) continue;
        RValue name;
        VXCreateString(&name, key);
        map->Set(name, ValueOf(member));
        FREE_RValue(&name);
    }
    return id;
}

}  // namespace

VxString Json_Encode(int32_t map)
{
    const DSLock lock(DsMutex());
    const CDS_Map* from = DS_Table<CDS_Map>().At(map);
    if (!from) return {};
    json_object* object = ObjectOf(*from, 0);
    const VxString text =
        WithoutFormFeeds(json_object_to_json_string_ext(object, JSON_C_TO_STRING_SPACED));
    json_object_put(object);
    return text;
}

int32_t Json_Decode(const char* text)
{
    const DSLock lock(DsMutex());
    json_tokener* tokener = json_tokener_new_ex(kDeepest);
    json_object* object =
        json_tokener_parse_ex(tokener, text, static_cast<int>(std::strlen(text)) + 1);
    json_tokener_free(tokener);
    const int32_t map = json_object_is_type(object, json_type_object) ? MapOf(object) : -1;
    json_object_put(object);
    return map;
}

int32_t Json_DecodeAny(const char* text)
{
    const VxString whole = text;
    const size_t first = whole.find_first_not_of(kBlanks), last = whole.find_last_not_of(kBlanks);
    const auto framed = [&](char open, char close) {
        return first != VxString::npos && first < last && whole[first] == open &&
               whole[last] == close;
    };
    const VxString quoted = "{ \"default\" : \"" + whole + "\" }";
    int32_t map = -1;
    if (framed('{', '}'))
        map = Json_Decode(text);
    else if (framed('[', ']'))
        map = Json_Decode(("{ \"default\" : " + whole + " }").c_str());
    return map >= 0 ? map : Json_Decode(quoted.c_str());
}
