#pragma once
// A file as a script reads and writes it: the whole image in memory. It is read when
// it is opened, and written in one piece when it is closed; between the two the disk
// stays as it is.

#include <cstdint>

#include "Platform/MemoryManager.h"

class MemoryFile {
public:
    // By the letters of `mode`: "r" or "a" take what stands there, "w", "a" and "+"
    // write it back at the end, "a" starts behind it, "t" skips a byte-order mark. The
    // path is one of File_Names.h. Null when there is nothing to read and nothing is to
    // be written, and for an empty path.
    static MemoryFile* Open(const char* path, const char* mode);
    // A file for reading over a copy of the text.
    static MemoryFile* OverText(const char* content);
    // Writes back and frees the file; false when the writing failed.
    static bool Close(MemoryFile* file);
    // Frees the file without writing.
    static void Drop(MemoryFile* file) { VxDelete(file); }

    // Past the end is allowed: what is written there fills the gap with zeros.
    void Seek(int32_t to) { position_ = to > 0 ? static_cast<size_t>(to) : 0; }
    void SeekEnd() { position_ = bytes_.size(); }
    int32_t Tell() const { return static_cast<int32_t>(position_); }
    bool AtEnd() const { return position_ >= bytes_.size(); }
    bool AtLineEnd() const;  // or at the end of the file

    uint8_t GetChar();  // 255 at the end, and moves on even there
    size_t Read(void* out, size_t size);
    // False when the file would grow past kMaxSize.
    bool Write(const void* data, size_t size);
    // Line feeds without a carriage return before them get one.
    bool PutText(const char* content);
    double ReadReal();         // behind white space; 0 where no number stands
    VxString ReadToLineEnd();  // up to the next CR or LF
    VxString ReadLine();       // with its LF

    static constexpr size_t kMaxSize = 0x7FFFFFFF;

    bool text = false;
    bool write_back = false;
    VxString path;  // to write back to

private:
    VxVector<uint8_t> bytes_;
    size_t position_ = 0;
};
