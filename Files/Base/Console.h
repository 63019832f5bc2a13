#pragma once
// Text outputs for tracing and messages.

#include <cstdarg>

#include "Platform/MemoryManager.h"

#if defined(__GNUC__)
#define VX_PRINTF(text, first) __attribute__((format(printf, text, first)))
#else
#define VX_PRINTF(text, first)
#endif

class tagIConsole {
public:
    virtual ~tagIConsole() = default;
    virtual bool Spare() { return true; }
    virtual void Output(const char* format, ...) VX_PRINTF(2, 3) = 0;
};

class DummyConsole : public tagIConsole {
public:
    void Output(const char*, ...) override {}
};

// Lines of at most 4,096 bytes to the standard output (not with -headless) and to
// the console's file, opened in mode "a+" for each line.
class TConsole : public tagIConsole {
public:
    explicit TConsole(bool errorFile) : errorFile_(errorFile) {}
    void Output(const char* format, ...) override;

private:
    bool errorFile_;  // which of the two output files: -debugoutput or -output
};

// A text in memory that grows.
class TErrStreamConsole : public tagIConsole {
public:
    TErrStreamConsole();
    ~TErrStreamConsole() override;
    void Output(const char* format, ...) override;
    const char* Text() const { return text_; }
    size_t Length() const { return length_; }

private:
    char* text_;
    size_t size_, length_;
};

extern tagIConsole* g_DebugConsole;   // tracing of start-up; discards unless -debugoutput
extern tagIConsole* g_ErrorConsole;   // messages of the runtime itself
extern tagIConsole* g_OutputConsole;  // show_debug_message and "ERROR!!! :: %s\n"

// show_debug_message: up to 1,024 characters in one piece, longer ones in pieces of
// 1,023 with the line end behind the last.
void Console_DebugMessage(const char* text);

void Console_Init();
void Console_Quit();
// `debugOutput` also makes the debug console the same as the error console.
void Console_SetFiles(const char* output, const char* debugOutput);
// Receives every line instead of the standard output; null restores. Tests and
// tools that must keep the standard output clean use it.
using ConsoleSink = void (*)(void* context, const char* text);
void Console_SetSink(ConsoleSink sink, void* context);
