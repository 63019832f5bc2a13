// File names as text. Results have the system's separator, "/".

#include <cctype>
#include <cstring>

#include "Files/Function/Arguments.h"
#include "Files/Function/Function_File.h"
#include "Files/Function/Function_Registry.h"
#include "Files/IO/File_Disk.h"
#include "Files/IO/File_Names.h"

namespace {

// Through the last separator. For a path without a folder, that of the file: in the
// save folder, else in the bundle; empty when it is in neither.
VxString FolderOf(const char* path)
{
    if (const size_t start = NameStart(path)) return WithSeparators(path).substr(0, start);
    for (const NameMapping mapping : {GetSaveFileName, GetBundleFileName}) {
        const MappedPath mapped(mapping, path, kScriptPathSize);
        if (File_Attributes(mapped) != 0) return VxString(mapped, NameStart(mapped));
    }
    return {};
}

BUILTIN(F_filename_name)
{
    const VXText path = ArgText(args, argc, 0);
    VXCreateString(&result, path.get() + NameStart(path));
}

BUILTIN(F_filename_path)
{
    VXCreateString(&result, FolderOf(ArgText(args, argc, 0)).c_str());
}

BUILTIN(F_filename_dir)
{
    VxString folder = FolderOf(ArgText(args, argc, 0));
    if (!folder.empty()) folder.pop_back();
    VXCreateString(&result, folder.c_str());
}

BUILTIN(F_filename_drive)
{
    const VXText path = ArgText(args, argc, 0);
    const bool drive =
        std::isalpha(static_cast<unsigned char>(path.get()[0])) && path.get()[1] == ':';
    VXCreateString(&result, VxString(path.get(), drive ? 2 : 0).c_str());
}

BUILTIN(F_filename_ext)
{
    const VxString path = WithSeparators(ArgText(args, argc, 0));
    const char* const dot = std::strrchr(path.c_str(), '.');
    VXCreateString(&result, dot ? dot : "");
}

BUILTIN(F_filename_change_ext)
{
    const VXText extension = ArgText(args, argc, 1);
    VxString path = WithSeparators(ArgText(args, argc, 0));
    const size_t dot = path.rfind('.');
    if (dot != VxString::npos)
        path.resize(dot);
    else if (extension.get()[0] != 0 && extension.get()[0] != '.')
        path += '.';
    VXCreateString(&result, (path + extension.get()).c_str());
}

constexpr BuiltinRow kRows[] = {
    {"filename_name", F_filename_name, 1}, {"filename_path", F_filename_path, 1},
    {"filename_dir", F_filename_dir, 1},   {"filename_drive", F_filename_drive, 1},
    {"filename_ext", F_filename_ext, 1},   {"filename_change_ext", F_filename_change_ext, 2},
};

}  // namespace

void Function_File_RegisterNames()
{
    Function_AddRows(kRows);
}
