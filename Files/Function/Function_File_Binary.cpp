// Binary files by handle, 1 to 31.

#include <algorithm>

#include "Files/Base/Console.h"
#include "Files/Base/Error.h"
#include "Files/Function/Arguments.h"
#include "Files/Function/Function_File.h"
#include "Files/Function/Function_Registry.h"
#include "Files/IO/File_Disk.h"
#include "Files/IO/File_Memory.h"
#include "Files/IO/File_Names.h"

namespace {

constexpr int32_t kSlots = 32;                          // the first is never given out
enum Mode : int32_t { MODE_READ = 0, MODE_WRITE = 1 };  // any other: both

struct BinaryFile {
    VxString path;
    int32_t mode = MODE_READ;
    MemoryFile* file = nullptr;  // null for a free slot
};
BinaryFile g_files[kSlots];

// The record of a handle; null after a report.
BinaryFile* RecordOf(const RValue* args, int argc, const char* complaint = "File is not opened.")
{
    const int32_t slot = ArgInt(args, argc, 0, -1);
    if (slot > 0 && slot < kSlots && g_files[slot].file) return &g_files[slot];
    Error_Show(complaint, false);
    return nullptr;
}

// Where the name's file stands, or is to stand.
NameMapping PlaceOf(const char* name)
{
    return !SaveFileExists(name) && BundleFileExists(name) ? GetBundleFileName : GetSaveFileName;
}

int32_t Open(const char* name, int32_t mode)
{
    const auto end = std::end(g_files);
    const auto slot =
        std::find_if(g_files + 1, end, [](const BinaryFile& file) { return !file.file; });
    if (slot == end) {
        Error_Show("Cannot open another file (maximum exceeded).", false);
        return -1;
    }
    const MappedPath path(PlaceOf(name), name, kScriptPathSize);
    if (mode != MODE_READ && !path.Empty()) CreateParentDirectories(path);
    slot->file = MemoryFile::Open(path, mode == MODE_READ    ? "rb"
                                        : mode == MODE_WRITE ? "wb"
                                                             : "rw");
    if (!slot->file) {
        g_DebugConsole->Output("Error opening binary file %s\n", name);
        return -1;
    }
    slot->path = path;
    slot->mode = mode;
    return static_cast<int32_t>(slot - g_files);
}

void Empty(BinaryFile* record)
{
    record->file = nullptr;
    VxString().swap(record->path);
}

BUILTIN(F_file_bin_open)
{
    SetReal(result, Open(ArgText(args, argc, 0), ArgInt(args, argc, 1)));
}

BUILTIN(F_file_bin_rewrite)
{
    BinaryFile* record = RecordOf(args, argc, "Trying to rewrite unopened file.");
    if (!record) return;
    MemoryFile::Drop(record->file);
    record->file = MemoryFile::Open(record->path.c_str(), "wb+");
    record->mode = MODE_WRITE;
}

BUILTIN(F_file_bin_close)
{
    BinaryFile* record = RecordOf(args, argc, "Trying to close unopened file.");
    if (!record) return;
    MemoryFile::Close(record->file);
    Empty(record);
}

BUILTIN(F_file_bin_seek)
{
    if (BinaryFile* record = RecordOf(args, argc)) record->file->Seek(ArgInt(args, argc, 1));
}

BUILTIN(F_file_bin_position)
{
    BinaryFile* record = RecordOf(args, argc);
    SetReal(result, record ? record->file->Tell() : 0);
}

BUILTIN(F_file_bin_size)
{
    BinaryFile* record = RecordOf(args, argc);
    if (!record) return SetReal(result, 0);
    const int32_t position = record->file->Tell();
    record->file->SeekEnd();
    SetReal(result, record->file->Tell());
    record->file->Seek(position);
}

BUILTIN(F_file_bin_read_byte)
{
    SetReal(result, 0);
    BinaryFile* record = RecordOf(args, argc);
    if (!record) return;
    if (record->mode == MODE_WRITE || record->file->AtEnd())
        Error_Show("Error reading byte.", false);
    else
        SetReal(result, record->file->GetChar());
}

BUILTIN(F_file_bin_write_byte)
{
    BinaryFile* record = RecordOf(args, argc);
    const auto byte = static_cast<uint8_t>(ArgInt(args, argc, 1));
    if (record) record->file->Write(&byte, 1);
}

constexpr BuiltinRow kRows[] = {
    {"file_bin_open", F_file_bin_open, 2},
    {"file_bin_rewrite", F_file_bin_rewrite, 1},
    {"file_bin_close", F_file_bin_close, 1},
    {"file_bin_seek", F_file_bin_seek, 2},
    {"file_bin_position", F_file_bin_position, 1},
    {"file_bin_size", F_file_bin_size, 1},
    {"file_bin_read_byte", F_file_bin_read_byte, 1},
    {"file_bin_write_byte", F_file_bin_write_byte, 2},
};

}  // namespace

void Function_File_RegisterBinary()
{
    Function_AddRows(kRows);
}

void Function_File_CloseBinary()
{
    for (BinaryFile& record : g_files) {
        MemoryFile::Drop(record.file);
        Empty(&record);
    }
}
