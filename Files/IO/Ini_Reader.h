#pragma once
// Reads INI text into sections and keys. The format, as far as it is tolerant:
// - a UTF-8 byte-order mark and everything before the first "[" are skipped;
// - a comment runs from "#" or ";", where white space may stand, to the line's end;
// - a section's name is everything between "[" and "]";
// - a key runs up to the next "=", over line ends if need be, without the blanks
//   behind it; `key=` with nothing behind it on its line makes no entry;
// - a value in " or ' runs to the like quote or the line's end; any other value
//   runs to "#", ";" or the line's end, without the blanks behind it.
// There is no escape character. Names are compared byte by byte.

#include <cstdint>

#include "Platform/MemoryManager.h"

struct IniEntry {
    IniEntry* next;
    VxString key, value;
};

struct IniSection {
    IniSection* next;
    IniEntry* entries;  // last of the text first
    VxString name;
};

class IniText {
public:
    IniText() = default;
    ~IniText() { Clear(); }
    IniText(const IniText&) = delete;
    IniText& operator=(const IniText&) = delete;

    // Replaces what is held by the sections of `size` bytes of text; the text is
    // not kept. False when it has no section at all, so is no INI text.
    bool Parse(const char* text, uint32_t size);
    void Clear();

    // Of several of one name the last of the text is found; null when there is none.
    const IniSection* FindSection(const char* section) const;
    const IniEntry* FindEntry(const char* section, const char* key) const;
    const char* ReadString(const char* section, const char* key, const char* fallback) const;
    int32_t ReadInteger(const char* section, const char* key, int32_t fallback) const;  // as atoi
    double ReadReal(const char* section, const char* key, double fallback) const;       // as atof

    const IniSection* Sections() const { return sections_; }  // last of the text first

    // The entry of the key, made new at the front of its section, and that at the front
    // of all, where they are missing.
    IniEntry* Place(const char* section, const char* key);
    // What FindEntry and FindSection find; false when there is none.
    bool RemoveEntry(const char* section, const char* key);
    bool RemoveSection(const char* section);

private:
    IniSection* sections_ = nullptr;
};
