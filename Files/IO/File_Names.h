#pragma once
// From the name that a script gives to the path that is meant. Two places can be
// named: the game's own folder (the bundle), which is only read, and the save folder
// of the user, where everything that a game writes lands. A name that leads to
// neither has no path.
//
// Names are UTF-8, with "/" or "\" between folders; paths have "/".

#include <cstddef>

#include "Platform/MemoryManager.h"

// Bytes of the longest path, its end included: of one that a script's function opens,
// and of any.
inline constexpr size_t kScriptPathSize = 1024;
inline constexpr size_t kPathSize = 2048;

// ---- folders, each with its trailing separator and fixed once it was asked for
const VxString& GetBundleDirectory();  // of the game file
// The user's data folder, then the name of the game; empty when there is no such folder,
// or when the name can't be that of one.
const VxString& SavePrePend();

// ---- paths that the player chose, and may be used although they lie elsewhere
struct AllowedFile {
    AllowedFile* next;
    VxString path;
    bool prefix;  // also what only begins with it
};
enum class AllowedFor { Reading, Writing };
void AllowedFile_Add(AllowedFor purpose, const char* path, bool prefix);
// Letters match whatever their case.
bool AllowedFile_Matches(AllowedFor purpose, const char* path);

// Forgets the folders and the allowed paths.
void FileNames_Quit();

// ---- names to paths; `out` has room for `size` bytes
// Empty, with a line on the debug console, for a name that leads out of the folders,
// and for one that is no name: nothing at all, too long, not UTF-8, or on a drive.
void GetSaveFileName(char* out, size_t size, const char* name);
// Empty for such a name, without a line.
void GetBundleFileName(char* out, size_t size, const char* name);

using NameMapping = void (*)(char* out, size_t size, const char* name);
// The path of a name; empty when it has none.
class MappedPath {
public:
    MappedPath(NameMapping mapping, const char* name, size_t size = kPathSize)
    {
        mapping(path_, size < kPathSize ? size : kPathSize, name);
    }
    operator const char*() const { return path_; }
    bool Empty() const { return path_[0] == 0; }

private:
    char path_[kPathSize];
};

// The name as a full path, made by text alone: joined to the current folder, with
// "." and ".." resolved. Empty for what is no name.
VxString GetFullPath(const char* name);

// ---- the text of paths
bool IsSeparator(char c);
VxString WithSeparators(const char* path);             // "/" wherever "\" stands
size_t NameStart(const char* path);                    // of what stands behind the last separator
bool MatchesMask(const char* name, const char* mask);  // "*" and "?", whatever the case
