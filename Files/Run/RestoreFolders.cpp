// Files that were packed flat: an "@" in a name stands for a separator, and the
// file moves to where it belongs. A folder that cannot be written is left alone.

#include <cstring>

#include "Files/Run/Run_Modules.h"
#include "Host/Host.h"

namespace {

constexpr int32_t kFolderMode = 0755;

void Collect(void* context, const char* name, bool folder, uint64_t)
{
    if (folder || name[0] == '.' || !strchr(name, '@')) return;  // hidden files stay
    static_cast<VxVector<VxString>*>(context)->push_back(name);
}

// True when every piece between the marks is a plain name, so that the file stays
// below its folder.
bool StaysBelow(const VxString& path)
{
    for (size_t start = 0; start <= path.size();) {
        const size_t end = path.find('/', start);
        const VxString part = path.substr(start, end == VxString::npos ? end : end - start);
        if (part.empty() || part == "." || part == "..") return false;
        if (end == VxString::npos) return true;
        start = end + 1;
    }
    return false;
}

bool MakeFolders(const VxString& path)
{
    for (size_t at = path.find('/', 1); at != VxString::npos; at = path.find('/', at + 1))
        if (!g_Host.files.MakeFolder(path.substr(0, at).c_str(), kFolderMode)) return false;
    return true;
}

}  // namespace

void RestoreFolders()
{
    const VxString folder = g_Host.files.CurrentFolder();
    VxVector<VxString> names;
    g_Host.files.List(folder.c_str(), Collect, &names);
    for (const VxString& name : names) {
        VxString path = name;
        for (char& letter : path)
            if (letter == '@') letter = '/';
        if (!StaysBelow(path)) continue;
        const VxString target = folder + path;
        const VxString packed = folder + name;
        if (g_Host.files.Exists(target.c_str())) continue;  // never over a file that stands
        if (!g_Host.files.Writable(packed.c_str())) continue;
        if (MakeFolders(target)) g_Host.files.Rename(packed.c_str(), target.c_str());
    }
}
