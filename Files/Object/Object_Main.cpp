// The table of objects: reading the records, binding events and parents.

#include "Files/Object/Object_Main.h"

#include <cstring>

#include "Files/Base/Archive_Records.h"
#include "Files/Base/Console.h"
#include "Files/Code/CCode.h"
#include "Files/Object/Object_Internal.h"
#include "Platform/Hash.h"

namespace {

constexpr uint32_t kObjectBuckets = 256;

Hash<CObjectSW>* g_ObjectHash;
int32_t g_objectCount;

// A word of the archive at any alignment.
uint32_t Word(const uint8_t* at)
{
    uint32_t value;
    std::memcpy(&value, at, sizeof value);
    return value;
}

// A list in the archive: a count and that many offsets.
struct List {
    const uint8_t* base;
    const uint8_t* at;
    uint32_t Count() const { return Word(at); }
    const uint8_t* Item(uint32_t i) const  // null for an empty entry
    {
        const uint32_t offset = Word(at + 4 + static_cast<size_t>(i) * 4);
        return offset ? base + offset : nullptr;
    }
};

void ReadEvent(CObjectSW* object, int32_t type, const uint8_t* base, const uint8_t* event)
{
    const auto subtype = static_cast<int32_t>(Word(event));
    const List actions{base, event + 4};
    if (actions.Count() == 0) return;
    const uint8_t* action = actions.Item(0);
    if (!action) return;
    const auto row = static_cast<int32_t>(Word(action + offsetof(ArchiveAction, codeId)));
    object->SetEvent(type, subtype, Code_Make(row));
}

void ReadEvents(CObjectSW* object, const uint8_t* base, const uint8_t* lists)
{
    const uint32_t types = Word(lists);
    for (uint32_t type = 0; type < types && type < kEventRows; ++type) {
        const uint32_t offset = Word(lists + 4 + static_cast<size_t>(type) * 4);
        if (!offset) continue;
        const List events{base, base + offset};
        for (uint32_t i = 0; i < events.Count(); ++i)
            if (const uint8_t* event = events.Item(i))
                ReadEvent(object, static_cast<int32_t>(type), base, event);
    }
}

CObjectSW* ReadObject(int32_t index, const uint8_t* base, const uint8_t* at)
{
    ArchiveObject record;
    std::memcpy(&record, at, sizeof record);
    CObjectSW* object = VxNew<CObjectSW>();
    object->flags = OBJECT_DEFAULT | (record.solid ? OBJECT_SOLID : 0U) |
                    (record.visible ? OBJECT_VISIBLE : 0U) |
                    (record.persistent ? OBJECT_PERSISTENT : 0U);
    object->spriteIndex = record.spriteIndex;
    object->depth = record.depth;
    object->parentIndex = record.parentIndex;
    object->maskIndex = record.maskIndex;
    object->name = record.name ? reinterpret_cast<const char*>(base + record.name) : "";
    object->index = index;
    object->physics = record.physicsObject != 0;
    const size_t vertices = static_cast<size_t>(record.physicsVertexCount) * 2 * sizeof(float);
    ReadEvents(object, base, at + sizeof record + vertices);
    return object;
}

// False when the parents lead back to the object.
bool ParentsEnd(const CObjectSW& object)
{
    int32_t steps = 0;
    for (const CObjectSW* up = object.parent; up; up = up->parent)
        if (up == &object || ++steps > g_objectCount) return false;
    return true;
}

}  // namespace

CObjectSW::~CObjectSW()
{
    for (EventRow& row : events) {
        for (int32_t i = 0; i < row.count; ++i) VxDelete(row.events[i]);
        MemoryManager::Free(row.events);
    }
}

CEvent* CObjectSW::OwnEvent(int32_t type, int32_t subtype) const
{
    if (type < 0 || type >= kEventRows || subtype < 0) return nullptr;
    const EventRow& row = events[type];
    if (subtype >= row.count) return nullptr;
    CEvent* event = row.events[subtype];
    return event && event->code && event->code->function ? event : nullptr;
}

bool CObjectSW::SetEvent(int32_t type, int32_t subtype, CCode* code)
{
    if (type < 0 || type >= kEventRows || subtype < 0 || subtype >= kObjectLimit) return false;
    EventRow& row = events[type];
    if (subtype >= row.count) {
        // Growth clears: subtypes between have no event.
        MemoryManager::SetLength(&row.events, static_cast<size_t>(subtype + 1) * sizeof(CEvent*));
        for (int32_t i = row.count; i <= subtype; ++i) row.events[i] = nullptr;
        row.count = subtype + 1;
    }
    CEvent*& event = row.events[subtype];
    if (!event) event = VxNew<CEvent>();
    *event = CEvent{code, name};
    return true;
}

bool CObjectSW::IsOrDescendsFrom(int32_t objectIndex) const
{
    for (const CObjectSW* object = this; object; object = object->parent)
        if (object->index == objectIndex) return true;
    return false;
}

void Object_Init()
{
    Object_Quit();
    g_ObjectHash = VxNew<Hash<CObjectSW>>(kObjectBuckets);
    Object_ResetEvents();
}

void Object_Quit()
{
    Object_FreeEventTables();
    for (int32_t i = 0; i < g_objectCount; ++i) VxDelete(Object_Data(i));
    VxDelete(g_ObjectHash);
    g_ObjectHash = nullptr;
    g_objectCount = 0;
}

bool Object_Load(const uint8_t* chunk, uint32_t size, const uint8_t* archiveBase)
{
    if (size < sizeof(uint32_t)) return true;
    const List objects{archiveBase, chunk};
    const auto count = static_cast<int32_t>(objects.Count());
    for (int32_t i = 0; i < count; ++i)
        if (const uint8_t* record = objects.Item(static_cast<uint32_t>(i)))
            Object_Add(ReadObject(i, archiveBase, record));
    if (g_objectCount < count) g_objectCount = count;
    return true;
}

bool Object_Prepare()
{
    g_DebugConsole->Output("Preparing %d objects:\n", g_objectCount);
    for (int32_t i = 0; i < g_objectCount; ++i) {
        CObjectSW* object = Object_Data(i);
        if (!object) continue;
        g_DebugConsole->Output("\tObjects %d: %s\n", i, object->name);
        object->parent =
            object->parentIndex < kObjectLimit ? Object_Data(object->parentIndex) : nullptr;
    }
    for (int32_t i = 0; i < g_objectCount; ++i) {
        const CObjectSW* object = Object_Data(i);
        if (!object || ParentsEnd(*object)) continue;
        g_ErrorConsole->Output("Object %s descends from itself\n", object->name);
        return false;
    }
    return true;
}

int32_t Object_Add(CObjectSW* object)
{
    if (object->index < 0) object->index = g_objectCount;
    if (object->index >= kObjectLimit || Object_Data(object->index)) {
        VxDelete(object);
        return -1;
    }
    g_ObjectHash->Add(object->index, object);
    if (object->index >= g_objectCount) g_objectCount = object->index + 1;
    return object->index;
}

int32_t Object_Count()
{
    return g_objectCount;
}

CObjectSW* Object_Data(int32_t index)
{
    return index >= 0 && g_ObjectHash ? g_ObjectHash->Find(index) : nullptr;
}

const char* Object_Name(int32_t index)
{
    const CObjectSW* object = Object_Data(index);
    return object ? object->name : "<undefined>";
}

int32_t Object_Find(const char* name)
{
    for (int32_t i = 0; i < g_objectCount; ++i) {
        const CObjectSW* object = Object_Data(i);
        if (object && std::strcmp(object->name, name) == 0) return i;
    }
    return -1;
}
