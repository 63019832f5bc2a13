#pragma once
// Finding the archive, its two passes, and the general chunks.

#include <cstdint>

#include "Files/Base/Archive_Records.h"
#include "Files/Code/CCode.h"
#include "Files/IO/Ini_Reader.h"
#include "Platform/MemoryManager.h"

// Settings of the general header and the option block, as the runtime uses them.
struct GameHeader {
    bool debuggerDisabled = true;
    VxString fileName, config, name, displayName;
    int32_t lastInstanceId = 0, lastTileId = 0;
    uint32_t gameId = 0;
    uint8_t guid[16] = {};
    uint32_t major = 0, minor = 0, release = 0, build = 0;
    int32_t defaultWindowWidth = 0, defaultWindowHeight = 0;
    uint32_t infoFlags = 0;
    int64_t timestamp = 0;
    uint64_t activeTargets = 0, functionClasses = 0;
    uint32_t steamAppId = 0, debuggerPort = 0;
};
struct GameOptions {
    uint32_t bits = 0;
    int32_t windowScale = 0;
    uint32_t windowColour = 0;
    uint32_t colourDepth = 0, resolution = 0, frequency = 0;
    uint32_t verticalSync = 0, priority = 0;
    VxString loadBarImage;
    uint32_t loadAlpha = 0;
    int32_t versionMajor = 0, versionMinor = 0;
};
enum OptionBits : uint32_t {
    OPTION_NEW_AUDIO = 0x4,
    OPTION_CURSOR = 0x10,
    OPTION_SET_DISPLAY = 0x80,
    OPTION_FREEZE = 0x8000,
    OPTION_ALL_FATAL = 0x200000,
    OPTION_TREE = 0x4000000,
};
extern GameHeader g_GameHeader;
extern GameOptions g_GameOptions;
extern uint8_t* g_ArchiveBase;  // this run's own writable copy of the whole archive
extern uint32_t g_ArchiveSize;
extern VxString g_GamePath;          // the game's file name, or the program's own path
extern VxString g_WorkingDirectory;  // with its trailing separator

// What options.ini says; defaults where it says nothing.
struct IniOptions {
    bool createTexturesOnDemand = false;
    int32_t vertexBufferMethod = -1;  // -1: not given
    // Which ways the display may be held.
    bool orientLandscape = true, orientLandscapeFlipped = true;
    bool orientPortrait = true, orientPortraitFlipped = true;
};
extern IniOptions g_IniOptions;
// The whole of options.ini, for the modules that read sections of their own; empty
// when there is no such file.
const IniText& Archive_OptionsText();

void Archive_Init();
void Archive_Quit();  // frees the archive and the global instance

// Finds the archive, in the attachment or in the file of the command line, reads
// options.ini, and checks every record. False after its message box: exit code 1.
bool RunnerLoadGame(const RunnerData& attachment);

// The two passes over an archive that was checked. One whose stored size is not its
// real one is not read at all.
bool LoadGameHeader(uint8_t* archive, uint32_t size);
// False when a chunk is unknown.
bool LoadGameData(uint8_t* archive, uint32_t size);
const char* GetArchiveString(uint32_t offset);  // null for 0

// ---- shared by the units of the loader
void Archive_ReadIniOptions(const VxString& path);
void Archive_ReadGeneral(const uint8_t* chunk, uint32_t size);            // into g_GameHeader
const uint8_t* Archive_RoomOrder(const uint8_t* chunk, uint32_t* count);  // 32-bit words
void Archive_ReadOptions(const uint8_t* chunk, uint32_t size);
