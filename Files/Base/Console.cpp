#include "Files/Base/Console.h"

#include <cstdio>
#include <cstring>

#include "Files/Run/Run_State.h"
#include "Host/Host.h"

namespace {

constexpr size_t kLineSize = 4096;
constexpr size_t kStreamStart = 102400;
constexpr size_t kStreamStep = 1024;  // room kept behind a piece that did not fit
constexpr size_t kPieceSize = 16384;

DummyConsole g_dummyConsole;
TConsole g_errorConsole(true);
TConsole g_outputConsole(false);

VxString g_outputFile, g_errorFile;
ConsoleSink g_sink = nullptr;
void* g_sinkContext = nullptr;

}  // namespace

tagIConsole* g_DebugConsole = &g_dummyConsole;
tagIConsole* g_ErrorConsole = &g_errorConsole;
tagIConsole* g_OutputConsole = &g_outputConsole;

void Console_Init()
{
    g_DebugConsole = &g_dummyConsole;
    g_ErrorConsole = &g_errorConsole;
    g_OutputConsole = &g_outputConsole;
    Console_SetFiles(nullptr, nullptr);
}

void Console_Quit()
{
    Console_Init();
    VxString().swap(g_outputFile);
    VxString().swap(g_errorFile);
}

void Console_SetFiles(const char* output, const char* debugOutput)
{
    g_outputFile = output ? output : "";
    g_errorFile = debugOutput ? debugOutput : "";
    if (debugOutput) g_DebugConsole = g_ErrorConsole;
}

void Console_SetSink(ConsoleSink sink, void* context)
{
    g_sink = sink;
    g_sinkContext = context;
}

void TConsole::Output(const char* format, ...)
{
    char line[kLineSize];
    va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(line, sizeof line, format, arguments);
    va_end(arguments);

    if (g_sink)
        g_sink(g_sinkContext, line);
    else if (!g_Switches.headless)
        std::fputs(line, stdout);
    const VxString& file = errorFile_ ? g_errorFile : g_outputFile;
    if (!file.empty())
        g_Host.files.Append(file.c_str(), line, static_cast<uint32_t>(std::strlen(line)));
}

TErrStreamConsole::TErrStreamConsole()
    : text_(static_cast<char*>(MemoryManager::Alloc(kStreamStart))), size_(kStreamStart), length_(0)
{
    text_[0] = 0;
}

TErrStreamConsole::~TErrStreamConsole()
{
    MemoryManager::Free(text_);
}

void TErrStreamConsole::Output(const char* format, ...)
{
    char piece[kPieceSize];
    va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(piece, sizeof piece, format, arguments);
    va_end(arguments);

    const size_t size = std::strlen(piece);
    if (length_ + size + 1 > size_) {
        size_ += size + kStreamStep;
        MemoryManager::SetLength(&text_, size_);
    }
    std::memcpy(text_ + length_, piece, size + 1);
    length_ += size;
}

void Console_DebugMessage(const char* text)
{
    constexpr size_t kWhole = 1024, kPiece = 1023;  // longest text in one piece, and of the pieces
    size_t left = std::strlen(text);
    if (left > kWhole) {
        for (; left > kPiece; left -= kPiece, text += kPiece)
            g_OutputConsole->Output("%.*s", static_cast<int>(kPiece), text);
    }
    g_OutputConsole->Output("%s\n", text);
}
