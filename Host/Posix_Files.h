#pragma once
// Files, clock, faults and threads of a POSIX system, shared by both backends.

#include "Host/Host.h"

namespace posix {

bool Exists(const char* path);
bool FolderExists(const char* path);
uint8_t* ReadAll(const char* path, uint32_t* size);
bool WriteAll(const char* path, const void* data, uint32_t size);
bool WritePrivate(const char* path, const void* data, uint32_t size);  // mode 0600
bool Append(const char* path, const void* data, uint32_t size);
bool Delete(const char* path);
bool Rename(const char* from, const char* to);
bool MakeFolder(const char* path, int32_t mode);
bool RemoveFolder(const char* path);
bool Writable(const char* path);
bool MakeWritable(const char* path);
bool List(const char* folder,
          void (*visit)(void* context, const char* name, bool folder, uint64_t size),
          void* context);
VxString ProgramPath();
VxString CurrentFolder();
bool EnterFolder(const char* path);
VxString LocalData();    // $XDG_DATA_HOME or ~/.local/share; empty for a user without a home
VxString RoamingData();  // $XDG_CONFIG_HOME or ~/.config, the same
VxString Environment(const char* name);
VxString MachineId();
const char* LastError();
void* OpenStream(const char* path, const char* mode);
uint32_t ReadStream(void* stream, void* data, uint32_t size);
uint32_t WriteStream(void* stream, const void* data, uint32_t size);
void CloseStream(void* stream);

int64_t Micros();
void Block(int32_t millis);
HostLocalTime LocalTime();
int64_t UnixSeconds();

void CatchFaults(HostFaultHandler handler);

int32_t Cores();
void* StartThread(void (*work)(void* context), void* context);
void JoinThread(void* thread);

}  // namespace posix
