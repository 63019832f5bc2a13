// The one file of old scripts: a plain stream, by a name as it is given, relative to the
// current folder.

#include <cctype>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "Files/Base/Error.h"
#include "Files/Function/Arguments.h"
#include "Files/Function/Function_File.h"
#include "Files/Function/Function_Registry.h"
#include "Files/IO/File_Names.h"
#include "Host/Host.h"

namespace {

constexpr size_t kLongestLine = 1024;  // bytes that one read gives
constexpr int kNone = -1;              // no byte follows
constexpr int kRealSize = 330;         // the longest double with four decimals

enum class Use { Closed, Reading, Writing };
struct LegacyFile {
    Use use = Use::Closed;
    void* stream = nullptr;
    bool peeked = false;
    int next = kNone;  // the byte after the last one taken, once `peeked`
};
LegacyFile g_file;

void Close()
{
    g_Host.files.CloseStream(g_file.stream);
    g_file = LegacyFile();
}

bool Open(const char* name, const char* mode, Use use)
{
    Close();
    const VxString path = GetFullPath(name);
    if (path.empty()) return false;
    if (use == Use::Reading && !g_Host.files.Exists(path.c_str())) return false;
    g_file.stream = g_Host.files.OpenStream(path.c_str(), mode);
    if (g_file.stream) g_file.use = use;
    return g_file.stream != nullptr;
}

int Peek()
{
    uint8_t byte = 0;
    if (!g_file.peeked)
        g_file.next = g_Host.files.ReadStream(g_file.stream, &byte, 1) == 1 ? byte : kNone;
    g_file.peeked = true;
    return g_file.next;
}
char Take()
{
    const int byte = Peek();
    g_file.peeked = false;
    return static_cast<char>(byte);
}

bool CanRead()
{
    if (g_file.use != Use::Reading) Error_Show("File not opened for reading.", false);
    return g_file.use == Use::Reading;
}

void Write(const char* text)
{
    if (g_file.use == Use::Writing)
        g_Host.files.WriteStream(g_file.stream, text, static_cast<uint32_t>(std::strlen(text)));
    else
        Error_Show("File not opened for writing.", false);
}

bool NextIs(const char* set)
{
    return Peek() > 0 && std::strchr(set, Peek());
}
void TakeDigits(VxString* text)
{
    while (NextIs("0123456789")) *text += Take();
}

// A number behind white space; what can't belong to it stays in the stream.
double ScanReal()
{
    while (Peek() != kNone && std::isspace(Peek())) Take();
    VxString text;
    if (NextIs("+-")) text += Take();
    TakeDigits(&text);
    if (NextIs(".")) text += Take();
    TakeDigits(&text);
    if (NextIs("eE")) {
        text += Take();
        if (NextIs("+-")) text += Take();
        TakeDigits(&text);
    }
    return std::strtod(text.c_str(), nullptr);
}

BUILTIN(F_file_open_read)
{
    SetBool(result, Open(ArgText(args, argc, 0), "rt", Use::Reading));
}

void OpenToWrite(RValue& result, const VXText& name, const char* mode, const char* complaint)
{
    SetBool(result, !name.IsNull() && Open(name, mode, Use::Writing));
    if (name.IsNull()) Error_Show(complaint, false);
}
BUILTIN(F_file_open_write)
{
    OpenToWrite(result, ArgText(args, argc, 0), "w+", "Error opening file for writing.");
}
BUILTIN(F_file_open_append)
{
    OpenToWrite(result, ArgText(args, argc, 0), "a+", "Error opening file for appending.");
}

BUILTIN(F_file_close)
{
    Close();
}

// The line end behind the text is taken too, and not given.
BUILTIN(F_file_read_string)
{
    VxString line;
    if (CanRead()) {
        while (line.size() < kLongestLine && Peek() != kNone && !NextIs("\r\n")) line += Take();
        if (NextIs("\r")) Take();
        if (NextIs("\n")) Take();
    }
    VXCreateString(&result, line.c_str());
}

BUILTIN(F_file_readln)
{
    VxString line;
    if (CanRead())
        while (line.size() < kLongestLine && Peek() != kNone &&
               (line.empty() || line.back() != '\n'))
            line += Take();
    VXCreateString(&result, line.c_str());
}

BUILTIN(F_file_read_real)
{
    SetReal(result, CanRead() ? ScanReal() : 0);
}

BUILTIN(F_file_eof)
{
    if (g_file.use != Use::Reading) Error_Show("File is not opened for reading.", false);
    SetBool(result, g_file.use != Use::Reading || Peek() == kNone);
}

BUILTIN(F_file_write_string)
{
    Write(ArgText(args, argc, 0));
}
BUILTIN(F_file_write_real)
{
    char text[kRealSize];
    std::snprintf(text, sizeof text, "%10.4f", ArgReal(args, argc, 0));
    Write(text);
}
BUILTIN(F_file_writeln)
{
    Write("\n");
}

constexpr BuiltinRow kRows[] = {
    {"file_open_read", F_file_open_read, 1},
    {"file_open_write", F_file_open_write, 1},
    {"file_open_append", F_file_open_append, 1},
    {"file_close", F_file_close, 0},
    {"file_read_string", F_file_read_string, 0},
    {"file_read_real", F_file_read_real, 0},
    {"file_readln", F_file_readln, 0},
    {"file_eof", F_file_eof, 0},
    {"file_write_string", F_file_write_string, 1},
    {"file_write_real", F_file_write_real, 1},
    {"file_writeln", F_file_writeln, 0},
};

}  // namespace

void Function_File_RegisterLegacy()
{
    Function_AddRows(kRows);
}

void Function_File_CloseLegacy()
{
    if (g_file.stream) Close();
}
