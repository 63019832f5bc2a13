#include "Files/IO/File_Memory.h"

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <cstring>

#include "Files/IO/File_Disk.h"

namespace {

constexpr uint8_t kByteOrderMark[] = {0xEF, 0xBB, 0xBF};
constexpr uint8_t kPastTheEnd = 255;

bool IsWhite(uint8_t c)
{
    return std::isspace(c) != 0;
}
bool IsLineEnd(uint8_t c)
{
    return c == '\r' || c == '\n';
}

}  // namespace

MemoryFile* MemoryFile::Open(const char* path, const char* mode)
{
    const auto has = [mode](char letter) { return std::strchr(mode, letter) != nullptr; };
    const bool append = has('a'), read = has('r') || append, write = has('w') || append || has('+');
    if (!*path) return nullptr;
    uint32_t size = 0;
    uint8_t* loaded = read ? ReadBundleFile(path, &size) : nullptr;
    if (read && !loaded) loaded = ReadSaveFile(path, &size);
    if (!loaded && !write) return nullptr;
    auto* file = VxNew<MemoryFile>();
    file->text = has('t');
    if (loaded) file->bytes_.assign(loaded, loaded + size);
    MemoryManager::Free(loaded);
    if (file->text && size >= sizeof kByteOrderMark &&
        std::memcmp(file->bytes_.data(), kByteOrderMark, sizeof kByteOrderMark) == 0)
        file->position_ = sizeof kByteOrderMark;
    if (!write) return file;
    if (append) file->SeekEnd();
    file->path = path;
    file->write_back = true;
    return file;
}

MemoryFile* MemoryFile::OverText(const char* content)
{
    auto* file = VxNew<MemoryFile>();
    file->text = true;
    file->bytes_.assign(content, content + std::strlen(content));
    return file;
}

bool MemoryFile::Close(MemoryFile* file)
{
    if (!file) return false;
    const bool written = !file->write_back || file->path.empty() ||
                         WriteSaveFile(file->path.c_str(), file->bytes_.data(),
                                       static_cast<uint32_t>(file->bytes_.size()));
    VxDelete(file);
    return written;
}

bool MemoryFile::AtLineEnd() const
{
    return AtEnd() || IsLineEnd(bytes_[position_]);
}

uint8_t MemoryFile::GetChar()
{
    const size_t at = position_;
    if (position_ < kMaxSize) ++position_;
    return at < bytes_.size() ? bytes_[at] : kPastTheEnd;
}

size_t MemoryFile::Read(void* out, size_t size)
{
    if (AtEnd()) return 0;
    size = std::min(size, bytes_.size() - position_);
    if (size) std::memcpy(out, bytes_.data() + position_, size);
    position_ += size;
    return size;
}

bool MemoryFile::Write(const void* data, size_t size)
{
    if (size == 0) return true;
    if (position_ > kMaxSize || size > kMaxSize - position_) return false;
    if (position_ + size > bytes_.size()) bytes_.resize(position_ + size);
    std::memcpy(bytes_.data() + position_, data, size);
    position_ += size;
    return true;
}

bool MemoryFile::PutText(const char* content)
{
    VxString whole;
    for (const char* at = content; *at; ++at) {
        if (*at == '\n' && (at == content || at[-1] != '\r')) whole += '\r';
        whole += *at;
    }
    return Write(whole.data(), whole.size());
}

double MemoryFile::ReadReal()
{
    while (!AtEnd() && IsWhite(bytes_[position_])) ++position_;
    if (AtEnd()) return 0;
    size_t end = position_;
    while (end < bytes_.size() && bytes_[end] && !IsWhite(bytes_[end])) ++end;
    const VxString token(bytes_.begin() + static_cast<ptrdiff_t>(position_),
                         bytes_.begin() + static_cast<ptrdiff_t>(end));
    char* stop = nullptr;
    const double number = std::strtod(token.c_str(), &stop);
    position_ += static_cast<size_t>(stop - token.c_str());
    return number;
}

VxString MemoryFile::ReadToLineEnd()
{
    VxString line;
    while (!AtLineEnd()) line += static_cast<char>(bytes_[position_++]);
    return line;
}

VxString MemoryFile::ReadLine()
{
    VxString line;
    while (!AtEnd() && (line.empty() || line.back() != '\n'))
        line += static_cast<char>(bytes_[position_++]);
    return line;
}
