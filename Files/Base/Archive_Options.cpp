// The settings of a game: the general header, the option block, and options.ini.

#include <cstdlib>
#include <cstring>

#include "Files/Base/Archive_Main.h"
#include "Files/Base/Console.h"
#include "Files/Function/Function_Registry.h"
#include "Files/Graphics/Draw_State.h"
#include "Files/Graphics/Window.h"
#include "Files/Run/Run_State.h"
#include "Host/Host.h"

GameHeader g_GameHeader;
GameOptions g_GameOptions;
IniOptions g_IniOptions;

namespace {

constexpr uint32_t kOpaque = 0xFF000000U;
constexpr uint32_t kColourBits = 0x00FFFFFFU;
constexpr uint32_t kFullHeaderVersion = 8;  // older headers end before the guid does

IniText g_optionsText;

VxString Text(ArchiveString offset)
{
    const char* text = GetArchiveString(offset);
    return text ? text : "";
}

void AddConstant(const char* name, const char* value)
{
    char* end = nullptr;
    const double number = std::strtod(value, &end);
    if (end != value && *end == 0) return Constant_Add(name, RValue(number));
    RValue text;
    VXCreateString(&text, value);
    Constant_Add(name, text);
    FREE_RValue(&text);
}

void TakeConstant(const char* name, const char* value)
{
    if (std::strcmp(name, "@@SleepMargin") == 0) {
        g_SleepMargin = atoi(value);
        return;
    }
    if (std::strcmp(name, "@@DrawColour") == 0) {
        g_StartDrawColour = static_cast<uint32_t>(std::strtoul(value, nullptr, 10));
        drawColourARGB = g_StartDrawColour;
        return;
    }
    if (std::strcmp(name, "VersionMajor") == 0) g_GameOptions.versionMajor = atoi(value);
    if (std::strcmp(name, "VersionMinor") == 0) g_GameOptions.versionMinor = atoi(value);
    AddConstant(name, value);
}

void TakeConstants(const uint8_t* at, uint32_t count)
{
    for (uint32_t i = 0; i < count; ++i, at += sizeof(ArchiveConstant)) {
        ArchiveConstant constant;
        std::memcpy(&constant, at, sizeof constant);
        const char* name = GetArchiveString(constant.name);
        const char* value = GetArchiveString(constant.value);
        if (name) TakeConstant(name, value ? value : "");
    }
}

// Both forms of the block carry the same values.
template <class T>
void TakeOptions(const T& from, uint32_t bits)
{
    g_GameOptions.bits = bits;
    g_GameOptions.windowScale = from.windowScale;
    g_GameOptions.windowColour = from.windowColour;
    g_GameOptions.colourDepth = from.colourDepth;
    g_GameOptions.resolution = from.resolution;
    g_GameOptions.frequency = from.frequency;
    g_GameOptions.verticalSync = from.verticalSync;
    g_GameOptions.priority = from.priority;
    g_GameOptions.loadBarImage = Text(from.loadBarImage);
    g_GameOptions.loadAlpha = from.loadAlpha;
    g_Display.windowColour = kOpaque | (from.windowColour & kColourBits);
}

// "True", "False", or a number.
bool ReadTruth(const char* section, const char* key, bool fallback)
{
    const char* text = g_optionsText.ReadString(section, key, nullptr);
    if (!text) return fallback;
    if (std::strcmp(text, "True") == 0) return true;
    if (std::strcmp(text, "False") == 0) return false;
    return atoi(text) != 0;
}

void ApplyWindowsSection()
{
    const IniText& ini = g_optionsText;
    g_IniOptions.createTexturesOnDemand =
        ini.ReadInteger("Windows", "CreateTexturesOnDemand", 0) != 0;
    if (!g_Switches.multiVb && !g_Switches.noVb)
        g_IniOptions.vertexBufferMethod = ini.ReadInteger("Windows", "VertexBufferMethod", -1);
    if (!g_Switches.manualVSyncGiven && ini.ReadInteger("Windows", "AlternateSyncMethod", 0) != 0)
        g_ManualVSync = true;
    if (!g_Switches.sleepMarginGiven && ini.FindEntry("Windows", "SleepMargin")) {
        const int32_t margin = ini.ReadInteger("Windows", "SleepMargin", 0);
        g_SleepMargin = margin < 1 ? 0 : margin;
    }
}

void ApplyDefaultSection()
{
    IniOptions& options = g_IniOptions;
    options.orientLandscape = ReadTruth("DEFAULT", "OrientLandscape", options.orientLandscape);
    options.orientLandscapeFlipped =
        ReadTruth("DEFAULT", "OrientLandscapeFlipped", options.orientLandscapeFlipped);
    options.orientPortrait = ReadTruth("DEFAULT", "OrientPortrait", options.orientPortrait);
    options.orientPortraitFlipped =
        ReadTruth("DEFAULT", "OrientPortraitFlipped", options.orientPortraitFlipped);
    if (g_optionsText.ReadInteger("DEFAULT", "Debug", 0) != 0) {
        g_Switches.debug = true;
        g_DebugConsole = g_ErrorConsole;
    }
    if (g_optionsText.ReadInteger("DEFAULT", "Trace", 0) != 0) g_Switches.trace = true;
}

}  // namespace

const IniText& Archive_OptionsText()
{
    return g_optionsText;
}

void Archive_ReadIniOptions(const VxString& path)
{
    g_IniOptions = IniOptions{};
    g_optionsText.Clear();
    if (path.empty() || !g_Host.files.Exists(path.c_str())) return;
    uint32_t size = 0;
    uint8_t* text = g_Host.files.ReadAll(path.c_str(), &size);
    const bool isIni = text && g_optionsText.Parse(reinterpret_cast<const char*>(text), size);
    MemoryManager::Free(text);
    if (!isIni) {
        g_optionsText.Clear();
        g_ErrorConsole->Output("%s is not an INI file: all options keep their defaults\n",
                               path.c_str());
        return;
    }
    ApplyWindowsSection();
    ApplyDefaultSection();
}

const uint8_t* Archive_RoomOrder(const uint8_t* chunk, uint32_t* count)
{
    const uint32_t offset = ArchiveRoomCountOffset(chunk[1]);
    std::memcpy(count, chunk + offset, sizeof *count);
    return chunk + offset + sizeof *count;
}

void Archive_ReadGeneral(const uint8_t* chunk, uint32_t)
{
    ArchiveGeneral from{};
    const uint32_t version = chunk[1];
    std::memcpy(&from, chunk, ArchiveRoomCountOffset(version));
    GameHeader& header = g_GameHeader;
    header.debuggerDisabled = from.debuggerDisabled != 0;
    header.fileName = Text(from.fileName);
    header.config = Text(from.config);
    header.lastInstanceId = static_cast<int32_t>(from.lastInstanceId);
    header.lastTileId = static_cast<int32_t>(from.lastTileId);
    header.gameId = from.gameId;
    std::memcpy(header.guid, from.guid, sizeof header.guid);
    if (version < kFullHeaderVersion) return;
    header.name = Text(from.name);
    header.displayName = Text(from.displayName);
    header.major = from.major;
    header.minor = from.minor;
    header.release = from.release;
    header.build = from.build;
    header.defaultWindowWidth = static_cast<int32_t>(from.defaultWindowWidth);
    header.defaultWindowHeight = static_cast<int32_t>(from.defaultWindowHeight);
    header.infoFlags = from.infoFlags;
    if (g_Switches.inAWindow) header.infoFlags &= ~static_cast<uint32_t>(INFO_FULLSCREEN);
    header.timestamp = static_cast<int64_t>(from.timestamp);
    header.activeTargets = from.activeTargets;
    header.functionClasses = from.functionClasses;
    header.steamAppId = from.steamAppId;
    header.debuggerPort = from.debuggerPort;
}

void Archive_ReadOptions(const uint8_t* chunk, uint32_t)
{
    uint32_t head[2];
    std::memcpy(head, chunk, sizeof head);
    if (static_cast<int32_t>(head[0]) >= 0) {
        ArchiveOldOptions from;
        std::memcpy(&from, chunk, sizeof from);
        TakeOptions(from, ArchiveOldOptionBits(from));
        TakeConstants(chunk + sizeof from, from.constantCount);
    } else if (head[1] == kOptionVersion) {
        ArchiveOptions from;
        std::memcpy(&from, chunk, sizeof from);
        TakeOptions(from, from.bits);
        TakeConstants(chunk + sizeof from, from.constantCount);
    }
}
