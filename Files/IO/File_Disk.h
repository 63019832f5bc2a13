#pragma once
// Files and folders by a script's names for them (File_Names.h). Blocks of bytes are
// MemoryManager's and the caller's. A name without a path fails each of these.

#include <cstdint>

#include "Platform/MemoryManager.h"

// ---- files
bool SaveFileExists(const char* name);  // and can be read
bool BundleFileExists(const char* name);
// The whole file, a block even when it is empty; null when it can't be read.
uint8_t* ReadSaveFile(const char* name, uint32_t* size);
uint8_t* ReadBundleFile(const char* name, uint32_t* size);
// From the save folder when it stands there, else from the bundle.
uint8_t* ReadNamedFile(const char* name, uint32_t* size);
// In place and whole, for the user alone; missing folders are made. False after a line
// on the error console; what stood there stays when the file can't even be opened.
bool WriteSaveFile(const char* name, const void* bytes, uint32_t size);
bool DeleteSaveFile(const char* name);
bool RenameSaveFile(const char* from, const char* to);  // never over a file that stands
bool CopyToSaveFile(const char* from, const char* to);  // from the save folder or the bundle

// ---- folders; a path, not a name
// Makes a folder and the missing ones above it; true when it stands.
bool CreateDirectoryTree(const char* path);
// The same for the folder that the file of `path` lies in.
bool CreateParentDirectories(const char* path);
// Removes a folder with all that it holds; stops at the first that can't be removed.
bool DestroyDirectory(const char* path);

// Bits of a file or folder; 0 when it does not exist.
enum FileAttributes : int32_t {
    FILE_READONLY = 1,
    FILE_HIDDEN = 2,
    FILE_DIRECTORY = 16,
    FILE_ARCHIVE = 32,  // every plain file
};
int32_t File_Attributes(const char* path);
// Of the name: in the save folder, else in the bundle.
int32_t File_NamedAttributes(const char* name);

// ---- searches; one at a time
// Names that match the mask, first those of the save folder, then those that only the
// bundle has. Folders and hidden files only when `attributes` has their bits. The
// first or next name; empty when there is none.
const char* FileFind_First(const char* mask, int32_t attributes);
const char* FileFind_Next();
void FileFind_Close();
