// Files and folders as wholes: looking, copying, deleting, searching, unpacking.

#include "Files/Function/Function_File.h"

#include <algorithm>

#include "Files/Base/Error.h"
#include "Files/Data/DS_Tables.h"
#include "Files/Function/Arguments.h"
#include "Files/Function/Function_Registry.h"
#include "Files/IO/File_Csv.h"
#include "Files/IO/File_Disk.h"
#include "Files/IO/File_Names.h"
#include "Files/IO/File_Zip.h"
#include "Files/IO/Ini_File.h"
#include "Host/Host.h"

namespace {

BUILTIN(F_file_exists)
{
    const VXText name = ArgText(args, argc, 0);
    SetBool(result, BundleFileExists(name) || SaveFileExists(name));
}

BUILTIN(F_file_delete)
{
    const VXText name = ArgText(args, argc, 0);
    SetBool(result, SaveFileExists(name) && DeleteSaveFile(name));
}

BUILTIN(F_file_rename)
{
    SetBool(result, RenameSaveFile(ArgText(args, argc, 0), ArgText(args, argc, 1)));
}

// 0 when it was copied.
BUILTIN(F_file_copy)
{
    SetReal(result, CopyToSaveFile(ArgText(args, argc, 0), ArgText(args, argc, 1)) ? 0 : -1);
}

bool IsFolder(const MappedPath& path)
{
    return !path.Empty() && g_Host.files.FolderExists(path);
}

BUILTIN(F_directory_exists)
{
    const VXText name = ArgText(args, argc, 0);
    SetBool(result, IsFolder(MappedPath(GetSaveFileName, name)) ||
                        IsFolder(MappedPath(GetBundleFileName, name)));
}

BUILTIN(F_directory_create)
{
    SetBool(result, CreateDirectoryTree(MappedPath(GetSaveFileName, ArgText(args, argc, 0))));
}

BUILTIN(F_directory_destroy)
{
    SetBool(result, DestroyDirectory(MappedPath(GetSaveFileName, ArgText(args, argc, 0))));
}

BUILTIN(F_file_find_first)
{
    VXCreateString(&result, FileFind_First(ArgText(args, argc, 0), ArgInt(args, argc, 1)));
}
BUILTIN(F_file_find_next)
{
    VXCreateString(&result, FileFind_Next());
}
BUILTIN(F_file_find_close)
{
    FileFind_Close();
}

BUILTIN(F_file_attributes)
{
    const int32_t attributes = File_NamedAttributes(ArgText(args, argc, 0));
    SetBool(result, (attributes & ArgInt(args, argc, 1)) != 0);
}

// A grid as wide as the longest row; cells that a row lacks hold empty texts. -1 after
// a report when it would be too large.
int32_t GridOf(const CsvRows& rows)
{
    size_t width = 0;
    for (const CsvRow& row : rows) width = std::max(width, row.size());
    auto* grid = VxNew<CDS_Grid>(0, 0);
    if (!grid->Resize(static_cast<int32_t>(width), static_cast<int32_t>(rows.size()))) {
        Error_Show("load_csv: the table is too large", false);
        VxDelete(grid);
        return -1;
    }
    CDS_Grid::Walk(grid->Region(0, 0, grid->Width(), grid->Height()), [&](int32_t x, int32_t y) {
        const CsvRow& row = rows[static_cast<size_t>(y)];
        const auto column = static_cast<size_t>(x);
        RValue text;
        VXCreateString(&text, column < row.size() ? row[column].c_str() : "");
        grid->At(x, y) = DSValue(text);
        FREE_RValue(&text);
    });
    return DS_Table<CDS_Grid>().Put(grid);
}

// A grid, or -1 when the file can't be read.
BUILTIN(F_load_csv)
{
    SetReal(result, -1);
    if (argc < 1 || args[0].Kind() != VALUE_STRING) {
        Error_Show("load_csv - parameter should be a filename", false);
        return;
    }
    uint32_t size = 0;
    uint8_t* text = ReadNamedFile(ArgText(args, argc, 0), &size);
    if (!text) return;
    const CsvRows rows = Csv_Parse(reinterpret_cast<const char*>(text), size);
    MemoryManager::Free(text);
    SetReal(result, GridOf(rows));
}

BUILTIN(F_zip_unzip)
{
    const VXText name = ArgText(args, argc, 0);
    const NameMapping mapping = SaveFileExists(name) ? GetSaveFileName : GetBundleFileName;
    const MappedPath archive(mapping, name, kScriptPathSize);
    const MappedPath folder(GetSaveFileName, ArgText(args, argc, 1), kScriptPathSize);
    SetReal(result, Zip_UnpackFile(archive, folder));
}

constexpr BuiltinRow kRows[] = {
    {"file_exists", F_file_exists, 1},
    {"file_delete", F_file_delete, 1},
    {"file_rename", F_file_rename, 2},
    {"file_copy", F_file_copy, 2},
    {"directory_exists", F_directory_exists, 1},
    {"directory_create", F_directory_create, 1},
    {"directory_destroy", F_directory_destroy, 1},
    {"file_find_first", F_file_find_first, 2},
    {"file_find_next", F_file_find_next, 0},
    {"file_find_close", F_file_find_close, 0},
    {"file_attributes", F_file_attributes, 2},
    {"load_csv", F_load_csv, 1},
    {"zip_unzip", F_zip_unzip, 2},
};

}  // namespace

void Function_File_Register()
{
    Function_AddRows(kRows);
    Function_File_RegisterNames();
    Function_File_RegisterText();
    Function_File_RegisterBinary();
    Function_File_RegisterLegacy();
    Function_File_RegisterIni();
}

void Function_File_Close()
{
    Ini_Quit();
    Function_File_CloseText();
    Function_File_CloseBinary();
    Function_File_CloseLegacy();
    FileFind_Close();
    FileNames_Quit();
}
