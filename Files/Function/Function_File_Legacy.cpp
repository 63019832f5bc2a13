// The one file of old scripts: a plain stream, by a name as it is given, relative to the
// current folder.

#include <cctype>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "Files/Base/Console.h"
#include "Files/Base/Error.h"
#include "Files/Function/Arguments.h"
#include "Files/Function/Function_File.h"
#include "Files/Function/Function_Registry.h"
#include "Files/IO/File_Names.h"
#include "Host/Host.h"

namespace {

constexpr size_t kLongestLine = 1024;   // bytes that one read gives
constexpr size_t kLongestNumber = 330;  // bytes, as text
constexpr int kNone = -1;               // no byte follows
constexpr int kRealSize = 330;          // the longest double with four decimals

enum class Use { Closed, Reading, Writing };
struct LegacyFile {
    Use use = Use::Closed;
    void* stream = nullptr;
    VxString path;
    VxString ahead;  // bytes of the stream that were looked at, and not taken yet
};
LegacyFile g_file;

void Close()
{
    if (g_file.stream) g_Host.files.CloseStream(g_file.stream);
    g_file = LegacyFile();
}

void ReportFailure()
{
    g_ErrorConsole->Output("Could not write %s: %s\n", g_file.path.c_str(),
                           g_Host.files.LastError());
}

bool Open(const char* name, const char* mode, Use use)
{
    Close();
    g_file.path = GetFullPath(name);
    const char* const path = g_file.path.c_str();
    if (*path == 0 && *name)
        g_DebugConsole->Output("Error! not allowing save with filename '%s'\n", name);
    if (*path == 0 || (use == Use::Reading && !g_Host.files.Exists(path))) return false;
    g_file.stream = g_Host.files.OpenStream(path, mode);
    if (g_file.stream) g_file.use = use;
    if (!g_file.stream && use == Use::Writing) ReportFailure();
    return g_file.stream != nullptr;
}

// Looks at the byte that many bytes on.
int Peek(size_t at = 0)
{
    uint8_t byte = 0;
    while (g_file.ahead.size() <= at) {
        if (g_Host.files.ReadStream(g_file.stream, &byte, 1) != 1) return kNone;
        g_file.ahead += static_cast<char>(byte);
    }
    return static_cast<uint8_t>(g_file.ahead[at]);
}
char Take()
{
    const char byte = static_cast<char>(Peek());
    g_file.ahead.erase(0, 1);
    return byte;
}

bool CanRead()
{
    if (g_file.use != Use::Reading) Error_Show("File not opened for reading.", false);
    return g_file.use == Use::Reading;
}

void Write(const char* text)
{
    const auto size = static_cast<uint32_t>(std::strlen(text));
    if (g_file.use != Use::Writing)
        Error_Show("File not opened for writing.", false);
    else if (g_Host.files.WriteStream(g_file.stream, text, size) != size)
        ReportFailure();
}

bool NextIs(const char* set)
{
    return Peek() > 0 && std::strchr(set, Peek());
}
// A number behind white space; what does not belong to it stays in the stream.
double ScanReal()
{
    while (Peek() != kNone && std::isspace(Peek())) Take();
    size_t length = 0;
    while (length < kLongestNumber && Peek(length) > 0 && !std::isspace(Peek(length))) ++length;
    const VxString token = g_file.ahead.substr(0, length);
    char* end = nullptr;
    const double number = std::strtod(token.c_str(), &end);
    g_file.ahead.erase(0, static_cast<size_t>(end - token.c_str()));
    return number;
}

BUILTIN(F_file_open_read)
{
    SetBool(result, Open(ArgText(args, argc, 0), "rt", Use::Reading));
}

void OpenToWrite(RValue& result, const VXText& name, const char* mode, const char* complaint)
{
    SetBool(result, Open(name, mode, Use::Writing));
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
    Close();
}
