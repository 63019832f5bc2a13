#include "Files/IO/File_Names.h"

#include <algorithm>
#include <cstring>

#include "Files/Base/Archive_Main.h"
#include "Files/Base/Console.h"
#include "Files/Base/Utf8.h"
#include "Host/Host.h"

namespace {

constexpr uint32_t kSaveInRoaming = 0x2000;  // bit of the header's flags
constexpr uint32_t kFirstPrintable = 0x20;

struct KnownFolder {
    VxString path;
    bool known = false;
};
KnownFolder g_save, g_bundle;
AllowedFile* g_allowed[2];

AllowedFile*& ListOf(AllowedFor purpose)
{
    return g_allowed[purpose == AllowedFor::Writing ? 1 : 0];
}

// Without regard to case, as far as the letters of Western languages go.
uint32_t Folded(uint32_t c)
{
    const auto within = [c](uint32_t first, uint32_t last) { return c >= first && c <= last; };
    if (within('A', 'Z') || (within(0xC0, 0xDE) && c != 0xD7)) return c + 32;
    if (within(0x391, 0x3A9) || within(0x410, 0x42F)) return c + 32;  // Greek, Cyrillic
    if (within(0x400, 0x40F)) return c + 80;
    // Of the extended Latin letters each capital stands before its small letter.
    if (within(0x100, 0x12F) || within(0x132, 0x137) || within(0x14A, 0x177)) return c | 1;
    if (within(0x139, 0x148) || within(0x179, 0x17E)) return (c + 1) & ~1U;
    return c;
}

bool Matches(const AllowedFile& entry, const char* path)
{
    const char* wanted = entry.path.c_str();
    while (*wanted)
        if (Folded(Utf8_Next(&wanted)) != Folded(Utf8_Next(&path))) return false;
    return entry.prefix || *path == 0;
}

// The character at `*text`, which moves behind it; false for what is no UTF-8 and for
// what no file name holds.
bool NextOfName(const char** text)
{
    const char* const start = *text;
    const uint32_t point = Utf8_Next(text);
    char shortest[4];
    const bool wellFormed = (point < 0x80 || *text - start > 1) && point <= 0x10FFFF &&
                            !(point >= 0xD800 && point <= 0xDFFF);
    return point >= kFirstPrintable && wellFormed && Utf8_Put(point, shortest) == *text - start;
}

bool IsName(const char* name)
{
    if (*name == 0 || std::strlen(name) >= kPathSize) return false;
    if (name[1] == ':') return false;  // a drive
    for (const char* at = name; *at;)
        if (!NextOfName(&at)) return false;
    return true;
}

// Appends the parts of `path` to a path that ends with a separator.
void AddParts(VxString* to, const char* path)
{
    while (*path) {
        const char* const end = path + std::strcspn(path, "/");
        const VxString part(path, end);
        if (part == "..")
            to->resize(to->size() > 1 ? to->rfind('/', to->size() - 2) + 1 : 1);
        else if (!part.empty() && part != ".")
            *to += part + (*end ? "/" : "");
        path = end + (*end ? 1 : 0);
    }
}

// A folder's path made full by text alone; empty stays empty.
VxString Resolved(const VxString& path)
{
    if (path.empty()) return {};
    VxString full = path[0] == '/' ? VxString("/") : g_Host.files.CurrentFolder();
    AddParts(&full, path.c_str());
    return full;
}

// Whether the game's name can be that of a folder.
bool IsFolderName(const VxString& name)
{
    return IsName(name.c_str()) && name.find_first_of("/\\") == VxString::npos && name != "." &&
           name != "..";
}

// Whether the path lies in the folder, and then the rest of it behind the folder.
bool LiesIn(const VxString& path, const VxString& folder, VxString* rest)
{
    if (folder.empty()) return false;
    if (path.size() + 1 == folder.size() && folder.compare(0, path.size(), path) == 0) {
        rest->clear();
        return true;
    }
    if (path.compare(0, folder.size(), folder) != 0) return false;
    *rest = path.substr(folder.size());
    return true;
}

void Put(char* out, size_t size, const VxString& path)
{
    if (size == 0) return;
    const bool fits = path.size() < size;
    if (fits) std::memcpy(out, path.data(), path.size());
    out[fits ? path.size() : 0] = 0;
}

// The path of a save file; empty when the name leads elsewhere.
VxString SavePathOf(const VxString& full, bool allowed)
{
    VxString rest;
    // First what is in the save folder already: that folder may well lie below the
    // others, and its files would otherwise be sent into it once more.
    if (!LiesIn(full, SavePrePend(), &rest) && !LiesIn(full, g_Host.files.CurrentFolder(), &rest) &&
        !LiesIn(full, GetBundleDirectory(), &rest))
        return allowed ? full : VxString();
    VxString path = SavePrePend().empty() ? g_Host.files.CurrentFolder() : SavePrePend();
    path += rest;
    if (allowed)
        g_DebugConsole->Output("Warning! Save location - redirected to: '%s'\n", path.c_str());
    return path;
}

}  // namespace

const VxString& GetBundleDirectory()
{
    // Cut from the same path of the game file.
    if (!g_bundle.known) g_bundle = {Resolved(g_WorkingDirectory), true};
    return g_bundle.path;
}

const VxString& SavePrePend()
{
    if (g_save.known) return g_save.path;
    g_save.known = true;
    const bool roaming = (g_GameHeader.infoFlags & kSaveInRoaming) != 0;
    const VxString root = roaming ? g_Host.files.RoamingData() : g_Host.files.LocalData();
    if (!root.empty() && IsFolderName(g_GameHeader.name))
        g_save.path = Resolved(root + g_GameHeader.name + "/");
    g_DebugConsole->Output("SavePrePend = %s\n", g_save.path.c_str());
    return g_save.path;
}

void AllowedFile_Add(AllowedFor purpose, const char* path, bool prefix)
{
    AllowedFile*& list = ListOf(purpose);
    list = VxNew<AllowedFile>(AllowedFile{list, path, prefix});
}

bool AllowedFile_Matches(AllowedFor purpose, const char* path)
{
    const AllowedFile* entry = ListOf(purpose);
    while (entry && !Matches(*entry, path)) entry = entry->next;
    return entry != nullptr;
}

void FileNames_Quit()
{
    for (AllowedFile*& list : g_allowed)
        while (AllowedFile* entry = list) {
            list = entry->next;
            VxDelete(entry);
        }
    for (KnownFolder* folder : {&g_save, &g_bundle}) {
        folder->known = false;
        VxString().swap(folder->path);
    }
}

VxString GetFullPath(const char* name)
{
    if (!IsName(name)) return {};
    return Resolved(WithSeparators(name));
}

void GetSaveFileName(char* out, size_t size, const char* name)
{
    Put(out, size, {});
    if (!name) return;
    const VxString full = GetFullPath(name);
    if (!full.empty()) {
        const bool allowed = AllowedFile_Matches(AllowedFor::Writing, full.c_str());
        Put(out, size, SavePathOf(full, allowed));
    }
    if (size == 0 || *out == 0)
        g_DebugConsole->Output("Error! not allowing save with filename '%s'\n", name);
}

void GetBundleFileName(char* out, size_t size, const char* name)
{
    Put(out, size, {});
    const VxString full = name ? GetFullPath(name) : VxString();
    if (full.empty()) return;
    const VxString& bundle = GetBundleDirectory();
    VxString rest;
    if (LiesIn(full, g_Host.files.CurrentFolder(), &rest)) {
        VxString below;
        Put(out, size, LiesIn(full, bundle, &below) ? full : bundle + rest);
    } else if (LiesIn(full, bundle, &rest)) {
        Put(out, size, full);
    } else if (AllowedFile_Matches(AllowedFor::Reading, full.c_str())) {
        Put(out, size, full);
    }
}

bool IsSeparator(char c)
{
    return c == '/' || c == '\\';
}

VxString WithSeparators(const char* path)
{
    VxString text = path;
    std::replace(text.begin(), text.end(), '\\', '/');
    return text;
}

size_t NameStart(const char* path)
{
    size_t start = 0;
    for (size_t i = 0; path[i]; ++i)
        if (IsSeparator(path[i])) start = i + 1;
    return start;
}

// The last "*" that was met takes one character more whenever the rest does not fit.
bool MatchesMask(const char* name, const char* mask)
{
    if (std::strcmp(mask, "*.*") == 0) return true;
    const char* star = nullptr;
    const char* resume = nullptr;
    while (*name) {
        const char *nextName = name, *nextMask = mask;
        const uint32_t wanted = Utf8_Next(&nextMask), found = Utf8_Next(&nextName);
        if (wanted == '*') {
            star = mask = nextMask;
            resume = name;
        } else if (wanted == '?' || (wanted && Folded(wanted) == Folded(found))) {
            mask = nextMask;
            name = nextName;
        } else if (star) {
            Utf8_Next(&resume);
            name = resume;
            mask = star;
        } else {
            return false;
        }
    }
    while (*mask == '*') ++mask;
    return *mask == 0;
}
