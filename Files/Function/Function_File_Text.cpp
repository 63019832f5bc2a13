// Text files by handle, 1 to 31.

#include <cstdio>

#include "Files/Base/Console.h"
#include "Files/Base/Error.h"
#include "Files/Function/Arguments.h"
#include "Files/Function/Function_File.h"
#include "Files/Function/Function_Registry.h"
#include "Files/IO/File_Disk.h"
#include "Files/IO/File_Memory.h"
#include "Files/IO/File_Names.h"

namespace {

constexpr int32_t kSlots = 32;  // the first is never given out
constexpr int kRealSize = 32;   // of a number in the format "%g "

enum class Use { Free = 0, Reading = 1, Writing = 2 };
struct TextFile {
    Use use = Use::Free;
    VxString name;
    MemoryFile* file = nullptr;
};
TextFile g_files[kSlots];

void Empty(TextFile* slot)
{
    slot->use = Use::Free;
    slot->file = nullptr;
    VxString().swap(slot->name);
}

// A free slot, or 0 after a report.
int32_t FreeSlot()
{
    for (int32_t i = 1; i < kSlots; ++i)
        if (g_files[i].use == Use::Free) return i;
    Error_Show("Cannot open another file (maximum exceeded).", false);
    return 0;
}

// Puts an opened file into a slot and gives the handle; -1 for none.
int32_t Keep(int32_t slot, MemoryFile* file, Use use, const char* name)
{
    if (!file) return -1;
    g_files[slot].use = use;
    g_files[slot].file = file;
    g_files[slot].name = name;
    return slot;
}

// The file behind a handle that is open for this use; null after a report.
MemoryFile* FileOf(const RValue* args, int argc, Use use)
{
    const int32_t slot = ArgInt(args, argc, 0, -1);
    if (slot > 0 && slot < kSlots && g_files[slot].use == use) return g_files[slot].file;
    Error_Show(
        use == Use::Reading ? "File is not opened for reading." : "File not opened for writing.",
        false);
    return nullptr;
}

int32_t OpenForReading(const char* name)
{
    const int32_t slot = FreeSlot();
    if (slot == 0) return -1;
    const NameMapping mapping = SaveFileExists(name) ? GetSaveFileName : GetBundleFileName;
    const MappedPath path(mapping, name, kScriptPathSize);
    MemoryFile* file = MemoryFile::Open(path, "rt");
    if (!file) g_DebugConsole->Output("ERROR!!! :: Failed to open file: %s\n", name);
    return Keep(slot, file, Use::Reading, name);
}

// Appending to a file of the bundle goes on with a copy of it.
int32_t OpenForWriting(const char* name, const char* mode)
{
    const int32_t slot = FreeSlot();
    const MappedPath path(GetSaveFileName, name, kScriptPathSize);
    if (slot == 0 || path.Empty()) return -1;
    if (*mode == 'a' && !SaveFileExists(name) && BundleFileExists(name)) CopyToSaveFile(name, name);
    CreateParentDirectories(path);
    return Keep(slot, MemoryFile::Open(path, mode), Use::Writing, name);
}

BUILTIN(F_file_text_open_read)
{
    SetReal(result, OpenForReading(ArgText(args, argc, 0)));
}

BUILTIN(F_file_text_open_write)
{
    SetReal(result, OpenForWriting(ArgText(args, argc, 0), "w"));
}

BUILTIN(F_file_text_open_append)
{
    SetReal(result, OpenForWriting(ArgText(args, argc, 0), "a+"));
}

BUILTIN(F_file_text_open_from_string)
{
    SetReal(result, -1);
    if (argc < 1 || args[0].Kind() != VALUE_STRING) {
        g_DebugConsole->Output("ERROR!!! :: wrong type for filename\n");
        return;
    }
    const int32_t slot = FreeSlot();
    if (slot == 0) return;
    MemoryFile* file = MemoryFile::OverText(ArgText(args, argc, 0));
    SetReal(result, Keep(slot, file, Use::Reading, "FileFromString"));
}

BUILTIN(F_file_text_close)
{
    const int32_t slot = ArgInt(args, argc, 0, -1);
    if (slot < 1 || slot >= kSlots) {
        Error_Show("Trying to close text file that has not been opened.", false);
        return;
    }
    MemoryFile::Close(g_files[slot].file);
    Empty(&g_files[slot]);
}

BUILTIN(F_file_text_read_string)
{
    MemoryFile* file = FileOf(args, argc, Use::Reading);
    VXCreateString(&result, file ? file->ReadToLineEnd().c_str() : "");
}
BUILTIN(F_file_text_read_real)
{
    MemoryFile* file = FileOf(args, argc, Use::Reading);
    SetReal(result, file ? file->ReadReal() : 0);
}
BUILTIN(F_file_text_readln)
{
    MemoryFile* file = FileOf(args, argc, Use::Reading);
    VXCreateString(&result, file ? file->ReadLine().c_str() : "");
}

// Without a file both ends are reached: a loop that waits for them goes on.
BUILTIN(F_file_text_eof)
{
    const MemoryFile* file = FileOf(args, argc, Use::Reading);
    SetBool(result, !file || file->AtEnd());
}
BUILTIN(F_file_text_eoln)
{
    const MemoryFile* file = FileOf(args, argc, Use::Reading);
    SetBool(result, !file || file->AtLineEnd());
}

BUILTIN(F_file_text_write_string)
{
    if (MemoryFile* file = FileOf(args, argc, Use::Writing)) file->PutText(ArgText(args, argc, 1));
}
BUILTIN(F_file_text_write_real)
{
    MemoryFile* file = FileOf(args, argc, Use::Writing);
    char text[kRealSize];
    std::snprintf(text, sizeof text, "%g ", ArgReal(args, argc, 1));
    if (file) file->PutText(text);
}
BUILTIN(F_file_text_writeln)
{
    if (MemoryFile* file = FileOf(args, argc, Use::Writing)) file->PutText("\n");
}

constexpr BuiltinRow kRows[] = {
    {"file_text_open_read", F_file_text_open_read, 1},
    {"file_text_open_write", F_file_text_open_write, 1},
    {"file_text_open_append", F_file_text_open_append, 1},
    {"file_text_open_from_string", F_file_text_open_from_string, 1},
    {"file_text_close", F_file_text_close, 1},
    {"file_text_read_string", F_file_text_read_string, 1},
    {"file_text_read_real", F_file_text_read_real, 1},
    {"file_text_readln", F_file_text_readln, 1},
    {"file_text_eof", F_file_text_eof, 1},
    {"file_text_eoln", F_file_text_eoln, 1},
    {"file_text_write_string", F_file_text_write_string, 2},
    {"file_text_write_real", F_file_text_write_real, 2},
    {"file_text_writeln", F_file_text_writeln, 1},
};

}  // namespace

void Function_File_RegisterText()
{
    Function_AddRows(kRows);
}

void Function_File_CloseText()
{
    for (TextFile& slot : g_files) {
        MemoryFile::Drop(slot.file);
        Empty(&slot);
    }
}
