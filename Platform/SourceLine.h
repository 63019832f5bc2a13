#pragma once
// The place of a call, as a defaulted last argument:
//   void f(int n, SourceLine where = SourceLine::current());
// Stands for std::source_location, which one of the two compilers lacks.

struct SourceLine {
    const char* fileName = "";
    int lineNumber = 0;

    static constexpr SourceLine current(const char* file = __builtin_FILE(),
                                        int line = __builtin_LINE())
    {
        return {file, line};
    }
    constexpr const char* file_name() const { return fileName; }
    constexpr int line() const { return lineNumber; }
};
