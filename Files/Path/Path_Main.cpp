#include "Files/Path/Path_Main.h"

#include <cstring>

#include "Files/Base/Archive_List.h"

namespace {

constexpr uint32_t kSmooth = 1;

VxVector<CPath*> g_paths;  // null for an empty slot

}  // namespace

void Path_Init()
{
    Path_Quit();
}

void Path_Quit()
{
    for (CPath* path : g_paths) VxDelete(path);
    VxVector<CPath*>().swap(g_paths);
}

bool Path_Load(const uint8_t* chunk, uint32_t, const uint8_t* archiveBase)
{
    const ArchiveList list(chunk, archiveBase);
    for (uint32_t i = 0; i < list.Count(); ++i) {
        const uint8_t* at = list.At(i);
        g_paths.push_back(at ? VxNew<CPath>() : nullptr);
        if (!at) continue;
        CPath& path = *g_paths.back();
        const auto record = ArchiveCopy<ArchivePath>(at);
        path.name = ArchiveText(archiveBase, record.name);
        path.smooth = record.kind == kSmooth;
        path.closed = record.closed != 0;
        path.precision = static_cast<int32_t>(record.precision);
        path.points.resize(record.pointCount);
        if (record.pointCount != 0)
            std::memcpy(path.points.data(), at + sizeof record,
                        path.points.size() * sizeof(CPathPoint));
    }
    return true;
}

int32_t Path_Count()
{
    return static_cast<int32_t>(g_paths.size());
}

const CPath* Path_Data(int32_t index)
{
    return index >= 0 && index < Path_Count() ? g_paths[static_cast<size_t>(index)] : nullptr;
}

int32_t Path_Find(const char* name)
{
    for (int32_t i = 0; i < Path_Count(); ++i)
        if (const CPath* path = Path_Data(i))
            if (std::strcmp(path->name, name) == 0) return i;
    return -1;
}
