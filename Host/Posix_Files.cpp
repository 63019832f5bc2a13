#include "Host/Posix_Files.h"

#include <dirent.h>
#include <errno.h>
#include <fcntl.h>
#include <pwd.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/stat.h>
#include <time.h>
#include <unistd.h>

#include <algorithm>

namespace posix {

namespace {

constexpr mode_t kPrivateFile = 0600;

// errno of the last failed call, as text.
int g_lastErrno = 0;

bool Fail()
{
    g_lastErrno = errno;
    return false;
}

bool WriteAndClose(FILE* file, const void* data, uint32_t size)
{
    if (!file) return Fail();
    const bool written = fwrite(data, 1, size, file) == size;
    if (!written) g_lastErrno = errno;
    if (fclose(file) != 0) return Fail();
    return written;
}

// The file's bytes with a zero behind them; null when the disk gives them only in part.
uint8_t* ReadWhole(FILE* file, size_t length, uint32_t* size)
{
    auto* block = static_cast<uint8_t*>(MemoryManager::Alloc(length + 1));
    const size_t got = fread(block, 1, length, file);
    if (ferror(file)) {
        Fail();
        MemoryManager::Free(block);
        return nullptr;
    }
    block[got] = 0;
    *size = static_cast<uint32_t>(got);
    return block;
}

VxString WithSeparator(VxString folder)
{
    if (folder.empty() || folder.back() != '/') folder += '/';
    return folder;
}

VxString DataFolder(const char* variable, const char* underHome)
{
    if (const char* set = getenv(variable); set && set[0] == '/') return WithSeparator(set);
    const char* home = getenv("HOME");
    if (!home || home[0] != '/') {
        const passwd* user = getpwuid(getuid());
        home = user ? user->pw_dir : nullptr;
    }
    return home && home[0] == '/' ? WithSeparator(VxString(home) + underHome) : VxString();
}

}  // namespace

bool Exists(const char* path)
{
    struct stat info;
    return stat(path, &info) == 0 ? S_ISREG(info.st_mode) : Fail();
}

bool FolderExists(const char* path)
{
    struct stat info;
    return stat(path, &info) == 0 ? S_ISDIR(info.st_mode) : Fail();
}

uint8_t* ReadAll(const char* path, uint32_t* size)
{
    *size = 0;
    const int descriptor = open(path, O_RDONLY | O_CLOEXEC | O_NONBLOCK);  // no wait for a pipe
    FILE* file = descriptor < 0 ? nullptr : fdopen(descriptor, "rb");
    if (!file) {
        Fail();
        return nullptr;
    }
    struct stat info;
    uint8_t* block = nullptr;
    if (fstat(descriptor, &info) == 0 && S_ISREG(info.st_mode) && info.st_size < INT32_MAX)
        block = ReadWhole(file, static_cast<size_t>(info.st_size), size);
    else
        g_lastErrno = EINVAL;
    fclose(file);
    return block;
}

bool WriteAll(const char* path, const void* data, uint32_t size)
{
    return WriteAndClose(fopen(path, "wb"), data, size);
}

bool WritePrivate(const char* path, const void* data, uint32_t size)
{
    const int file = open(path, O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, kPrivateFile);
    return file < 0 ? Fail() : WriteAndClose(fdopen(file, "wb"), data, size);
}

bool Append(const char* path, const void* data, uint32_t size)
{
    return WriteAndClose(fopen(path, "ab"), data, size);
}

bool Delete(const char* path)
{
    return unlink(path) == 0 || Fail();
}
bool Rename(const char* from, const char* to)
{
    return rename(from, to) == 0 || Fail();
}

bool MakeFolder(const char* path, int32_t mode)
{
    if (mkdir(path, static_cast<mode_t>(mode)) == 0) return true;
    Fail();
    return errno == EEXIST && FolderExists(path);
}

bool RemoveFolder(const char* path)
{
    return rmdir(path) == 0 || Fail();
}

bool Writable(const char* path)
{
    return faccessat(AT_FDCWD, path, W_OK, AT_EACCESS) == 0 || Fail();
}

bool MakeWritable(const char* path)
{
    struct stat info;
    if (stat(path, &info) != 0) return Fail();
    const mode_t more = S_IWUSR | (S_ISDIR(info.st_mode) ? S_IRUSR | S_IXUSR : 0);
    return chmod(path, (info.st_mode & 07777) | more) == 0 || Fail();
}

bool List(const char* folder,
          void (*visit)(void* context, const char* name, bool folder, uint64_t size), void* context)
{
    DIR* dir = opendir(folder);
    if (!dir) return Fail();
    VxVector<VxString> names;
    while (const dirent* entry = readdir(dir)) {
        const VxString name = entry->d_name;
        if (name != "." && name != "..") names.push_back(name);
    }
    closedir(dir);
    std::sort(names.begin(), names.end());
    for (const VxString& name : names) {
        const VxString path = WithSeparator(folder) + name;
        struct stat info;
        // A link that leads nowhere is an entry too.
        if (stat(path.c_str(), &info) != 0 && lstat(path.c_str(), &info) != 0) continue;
        visit(context, name.c_str(), S_ISDIR(info.st_mode), static_cast<uint64_t>(info.st_size));
    }
    return true;
}

VxString ProgramPath()
{
    char path[4096];
    const ssize_t length = readlink("/proc/self/exe", path, sizeof path - 1);
    if (length <= 0) {
        Fail();
        return {};
    }
    return VxString(path, static_cast<size_t>(length));
}

VxString CurrentFolder()
{
    char path[4096];
    if (getcwd(path, sizeof path)) return WithSeparator(path);
    Fail();
    return "/";
}

bool EnterFolder(const char* path)
{
    return chdir(path) == 0 || Fail();
}
VxString LocalData()
{
    return DataFolder("XDG_DATA_HOME", "/.local/share");
}
VxString RoamingData()
{
    return DataFolder("XDG_CONFIG_HOME", "/.config");
}

VxString Environment(const char* name)
{
    const char* value = getenv(name);
    return value ? value : "";
}

VxString MachineId()
{
    uint32_t size = 0;
    uint8_t* text = ReadAll("/etc/machine-id", &size);
    if (!text) return {};
    VxString id(reinterpret_cast<const char*>(text));
    MemoryManager::Free(text);
    while (!id.empty() && (id.back() == '\n' || id.back() == '\r')) id.pop_back();
    return id;
}

const char* LastError()
{
    return strerror(g_lastErrno);
}

void* OpenStream(const char* path, const char* mode)
{
    FILE* file = fopen(path, mode);
    if (!file) {
        Fail();
        return nullptr;
    }
    setvbuf(file, nullptr, _IONBF, 0);  // a recording is whole up to the frame that crashed
    return file;
}

uint32_t ReadStream(void* stream, void* data, uint32_t size)
{
    return static_cast<uint32_t>(fread(data, 1, size, static_cast<FILE*>(stream)));
}

uint32_t WriteStream(void* stream, const void* data, uint32_t size)
{
    const auto written = static_cast<uint32_t>(fwrite(data, 1, size, static_cast<FILE*>(stream)));
    if (written != size) Fail();
    return written;
}

void CloseStream(void* stream)
{
    if (stream) fclose(static_cast<FILE*>(stream));
}

int64_t Micros()
{
    timespec now;
    clock_gettime(CLOCK_MONOTONIC, &now);
    return static_cast<int64_t>(now.tv_sec) * 1000000 + now.tv_nsec / 1000;
}

void Block(int32_t millis)
{
    timespec until;
    clock_gettime(CLOCK_MONOTONIC, &until);
    const int64_t nanos = until.tv_nsec + static_cast<int64_t>(millis) * 1000000;
    until.tv_sec += nanos / 1000000000;
    until.tv_nsec = nanos % 1000000000;
    while (clock_nanosleep(CLOCK_MONOTONIC, TIMER_ABSTIME, &until, nullptr) == EINTR) {
    }
}

HostLocalTime LocalTime()
{
    const time_t now = time(nullptr);
    tm local;
    localtime_r(&now, &local);
    return {local.tm_year + 1900, local.tm_mon + 1, local.tm_mday, local.tm_wday,
            local.tm_hour,        local.tm_min,     local.tm_sec};
}

int64_t UnixSeconds()
{
    return static_cast<int64_t>(time(nullptr));
}

}  // namespace posix
