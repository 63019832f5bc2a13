#include "Files/IO/File_Disk.h"

#include <cstring>

#include "Files/Base/Console.h"
#include "Files/IO/File_Names.h"
#include "Host/Host.h"

namespace {

constexpr int32_t kPrivateFolder = 0700;
constexpr size_t kShortestFolder = 3;  // shorter paths count as standing

bool CanRead(const char* path)
{
    if (!*path || !g_Host.files.Exists(path)) return false;
    void* stream = g_Host.files.OpenStream(path, "rb");
    g_Host.files.CloseStream(stream);
    return stream != nullptr;
}

uint8_t* ReadMapped(NameMapping mapping, const char* name, uint32_t* size)
{
    *size = 0;
    const MappedPath path(mapping, name);
    return path.Empty() ? nullptr : g_Host.files.ReadAll(path, size);
}

// What a walk of DestroyDirectory has found.
struct Contents {
    VxString folder;
    bool allGone = true;
};

void DestroyEntry(void* context, const char* name, bool folder, uint64_t)
{
    auto* contents = static_cast<Contents*>(context);
    if (!contents->allGone) return;
    const VxString path = contents->folder + "/" + name;
    // A link goes by itself: what it leads to is not part of this folder.
    contents->allGone =
        g_Host.files.Delete(path.c_str()) || (folder && DestroyDirectory(path.c_str()));
}

// ---- searches

struct FileSearch {
    bool open = false;
    VxVector<VxString> names;
    size_t cursor = 0;
};
FileSearch g_search;

struct SearchFolder {
    VxString mask;
    int32_t attributes;
};

bool Listed(const char* name)
{
    for (const VxString& known : g_search.names)
        if (known == name) return true;
    return false;
}

void TakeMatch(void* context, const char* name, bool folder, uint64_t)
{
    const auto* search = static_cast<const SearchFolder*>(context);
    const int32_t needed = (folder ? FILE_DIRECTORY : 0) | (name[0] == '.' ? FILE_HIDDEN : 0);
    if ((needed & ~search->attributes) != 0 || !MatchesMask(name, search->mask.c_str())) return;
    if (!Listed(name)) g_search.names.push_back(name);
}

void SearchIn(const char* path, int32_t attributes)
{
    if (!*path) return;
    const size_t cut = NameStart(path);
    SearchFolder search{path + cut, attributes};
    g_Host.files.List(VxString(path, cut).c_str(), TakeMatch, &search);
}

}  // namespace

bool SaveFileExists(const char* name)
{
    return CanRead(MappedPath(GetSaveFileName, name));
}
bool BundleFileExists(const char* name)
{
    return CanRead(MappedPath(GetBundleFileName, name));
}
uint8_t* ReadSaveFile(const char* name, uint32_t* size)
{
    return ReadMapped(GetSaveFileName, name, size);
}
uint8_t* ReadBundleFile(const char* name, uint32_t* size)
{
    return ReadMapped(GetBundleFileName, name, size);
}

uint8_t* ReadNamedFile(const char* name, uint32_t* size)
{
    return SaveFileExists(name) ? ReadSaveFile(name, size) : ReadBundleFile(name, size);
}

bool WriteSaveFile(const char* name, const void* bytes, uint32_t size)
{
    const MappedPath path(GetSaveFileName, name);
    if (path.Empty()) return false;
    if (CreateParentDirectories(path) && g_Host.files.WritePrivate(path, bytes, size)) return true;
    g_ErrorConsole->Output("Could not write %s: %s\n", static_cast<const char*>(path),
                           g_Host.files.LastError());
    return false;
}

bool DeleteSaveFile(const char* name)
{
    const MappedPath path(GetSaveFileName, name);
    return !path.Empty() && g_Host.files.Delete(path);
}

bool RenameSaveFile(const char* from, const char* to)
{
    if (!SaveFileExists(from)) return false;
    const MappedPath source(GetSaveFileName, from), target(GetSaveFileName, to);
    return !target.Empty() && File_Attributes(target) == 0 && g_Host.files.Rename(source, target);
}

bool CopyToSaveFile(const char* from, const char* to)
{
    uint32_t size = 0;
    uint8_t* bytes = ReadNamedFile(from, &size);
    const bool copied = bytes && WriteSaveFile(to, bytes, size);
    MemoryManager::Free(bytes);
    return copied;
}

bool CreateDirectoryTree(const char* path)
{
    if (!path || !*path) return false;
    VxString folder = path;
    if (IsSeparator(folder.back())) folder.pop_back();
    if (folder.size() < kShortestFolder || g_Host.files.FolderExists(folder.c_str())) return true;
    const size_t cut = NameStart(folder.c_str());
    if (cut > 0 && !CreateDirectoryTree(folder.substr(0, cut).c_str())) return false;
    return g_Host.files.MakeFolder(folder.c_str(), kPrivateFolder);
}

bool CreateParentDirectories(const char* path)
{
    const size_t cut = NameStart(path);
    return cut == 0 || CreateDirectoryTree(VxString(path, cut).c_str());
}

bool DestroyDirectory(const char* path)
{
    VxString folder = path;
    if (!folder.empty() && IsSeparator(folder.back())) folder.pop_back();
    if (folder.empty() || !g_Host.files.FolderExists(folder.c_str())) return false;
    if (g_Host.files.Delete(folder.c_str())) return true;  // it was a link to a folder
    g_Host.files.MakeWritable(folder.c_str());
    Contents contents{folder};
    return g_Host.files.List(folder.c_str(), DestroyEntry, &contents) && contents.allGone &&
           g_Host.files.RemoveFolder(folder.c_str());
}

int32_t File_Attributes(const char* path)
{
    const bool folder = *path && g_Host.files.FolderExists(path);
    if (!folder && (!*path || !g_Host.files.Exists(path))) return 0;
    return (folder ? FILE_DIRECTORY : FILE_ARCHIVE) |
           (path[NameStart(path)] == '.' ? FILE_HIDDEN : 0) |
           (g_Host.files.Writable(path) ? 0 : FILE_READONLY);
}

int32_t File_NamedAttributes(const char* name)
{
    const int32_t saved = File_Attributes(MappedPath(GetSaveFileName, name));
    return saved ? saved : File_Attributes(MappedPath(GetBundleFileName, name));
}

const char* FileFind_First(const char* mask, int32_t attributes)
{
    FileFind_Close();
    g_search.open = true;
    SearchIn(MappedPath(GetSaveFileName, mask), attributes);
    SearchIn(MappedPath(GetBundleFileName, mask), attributes);
    return FileFind_Next();
}

const char* FileFind_Next()
{
    if (!g_search.open || g_search.cursor >= g_search.names.size()) return "";
    return g_search.names[g_search.cursor++].c_str();
}

void FileFind_Close()
{
    g_search.open = false;
    g_search.cursor = 0;
    VxVector<VxString>().swap(g_search.names);
}
