#include "Files/Base/Archive_Main.h"

#include <algorithm>
#include <cstring>

#include "Files/Background/CBackground.h"
#include "Files/Base/Archive_Writer.h"
#include "Files/Base/Console.h"
#include "Files/Base/VXObjectBase.h"
#include "Files/Font/CFontSW.h"
#include "Files/Function/Function_Registry.h"
#include "Files/Graphics/Draw_State.h"
#include "Files/Graphics/TextureSlots.h"
#include "Files/Graphics/Window.h"
#include "Files/Object/Instance_Main.h"
#include "Files/Object/Object_Main.h"
#include "Files/Path/Path_Main.h"
#include "Files/Room/Room_Main.h"
#include "Files/Run/Run_State.h"
#include "Files/Script/Script_Main.h"
#include "Files/Sound/Audio_Main.h"
#include "Files/Sprite/CSprite.h"
#include "Files/TimeLine/TimeLine_Main.h"
#include "Files/Variable/Variable_BuiltIn.h"
#include "Host/Host.h"

uint8_t* g_ArchiveBase = nullptr;
uint32_t g_ArchiveSize = 0;
VxString g_GamePath;
VxString g_WorkingDirectory;

namespace {

constexpr char kGameFile[] = "data.win";
constexpr char kOptionsFile[] = "options.ini";
constexpr char kDebugExtension[] = ".vxdebug";
constexpr uint32_t kBlackOpaque = 0xFF000000U;
constexpr size_t kRuleLength = 73;  // of the lines round the folder's notice

// ---- finding the archive

// The block of RunnerLoadGame; the passes can be given others.
uint8_t* g_block = nullptr;

void RefuseGame(const char* text)
{
    g_Host.dialogs.MessageBox("Error", text);
}

// The path through its last separator, "/" wherever there is one.
VxString FolderOf(const VxString& path)
{
    size_t cut = path.rfind('/');
    if (cut == VxString::npos) cut = path.rfind('\\');
    return cut == VxString::npos ? VxString() : path.substr(0, cut + 1);
}

void SetWorkingDirectory(const VxString& folder)
{
    const VxString rule(kRuleLength, '#');
    g_WorkingDirectory = folder;
    g_DebugConsole->Output("%s\n", rule.c_str());
    g_DebugConsole->Output("####!!!!$$$$$$ pwd - %s\n", folder.c_str());
    g_DebugConsole->Output("%s\n", rule.c_str());
}

VxString DebugCompanionPath(const VxString& game)
{
    const size_t folder = FolderOf(game).size();
    const size_t dot = game.rfind('.');
    return (dot == VxString::npos || dot < folder ? game : game.substr(0, dot)) + kDebugExtension;
}

// This run's own copy: loading writes into it, and the next run needs the bytes as
// they were.
bool TakeArchive(const RunnerData& attachment)
{
    if (attachment.archive) {
        g_ArchiveSize = attachment.archiveSize;
        g_block = static_cast<uint8_t*>(MemoryManager::Alloc(size_t{g_ArchiveSize} + 1));
        std::memcpy(g_block, attachment.archive, g_ArchiveSize);
    } else if (!g_GamePath.empty()) {
        g_block = g_Host.files.ReadAll(g_GamePath.c_str(), &g_ArchiveSize);
        if (!g_block) g_ErrorConsole->Output("FAILED to load File %s\n", g_GamePath.c_str());
    }
    g_ArchiveBase = g_block;
    return g_block != nullptr;
}

void DropArchive()
{
    MemoryManager::Free(g_block);
    g_block = g_ArchiveBase = nullptr;
    g_ArchiveSize = 0;
}

// ---- walking the chunks

void TagText(uint32_t tag, char (&text)[5])
{
    std::memcpy(text, &tag, 4);
    text[4] = 0;
}

// Visits each chunk that has a body: visit(tag, body, size). Nothing when the stored
// size of the whole is not the real one.
template <class Visit>
void WalkChunks(uint8_t* archive, uint32_t size, Visit visit)
{
    ArchiveChunk form;
    if (size < sizeof form) return;
    std::memcpy(&form, archive, sizeof form);
    if (form.size != size - sizeof form) return;
    for (uint64_t at = sizeof form; at + sizeof form <= size;) {
        ArchiveChunk chunk;
        std::memcpy(&chunk, archive + at, sizeof chunk);
        at += sizeof chunk;
        if (chunk.size > size - at) return;
        if (chunk.size != 0) visit(chunk.tag, archive + at, chunk.size);
        at += chunk.size;
    }
}

// The debugger's companion of the game file. Its three chunks concern a debugger
// alone; the walk shows them on the trace.
void ReadDebugCompanion(const VxString& path)
{
    if (!g_Host.files.Exists(path.c_str())) return;
    uint32_t size = 0;
    uint8_t* bytes = g_Host.files.ReadAll(path.c_str(), &size);
    if (!bytes) return;
    WalkChunks(bytes, size, [](uint32_t tag, uint8_t*, uint32_t bodySize) {
        if (tag != ArchiveTag("DBGI") && tag != ArchiveTag("SCPT") && tag != ArchiveTag("INST"))
            return;
        char text[5];
        TagText(tag, text);
        g_DebugConsole->Output("Process Chunk: %s   %d\n", text, static_cast<int>(bodySize));
    });
    MemoryManager::Free(bytes);
}

bool IsGeneral(uint32_t tag)
{
    return tag == ArchiveTag("GEN7") || tag == ArchiveTag("GEN8") || tag == ArchiveTag("GENL");
}

// ---- the second pass

// What a handler of the second pass is given.
struct LoadChunk {
    uint8_t* body;
    uint32_t size;
    uint8_t* base;
};

struct PageEntries {
    uint8_t* body = nullptr;
    uint32_t size = 0;
};
PageEntries g_pageEntries;  // during the second pass

bool LoadNothing(const LoadChunk&)
{
    return true;
}

bool LoadGeneral(const LoadChunk& chunk)
{
    Archive_ReadGeneral(chunk.body, chunk.size);
    lastInstanceId = g_GameHeader.lastInstanceId;
    g_LastTileId = g_GameHeader.lastTileId;
    uint32_t count = 0;
    const uint8_t* words = Archive_RoomOrder(chunk.body, &count);
    VxVector<int32_t> order(count);
    if (count != 0) std::memcpy(order.data(), words, size_t{count} * sizeof(int32_t));
    Room_SetOrder(order.data(), static_cast<int32_t>(count));
    return true;
}

bool LoadPageEntries(const LoadChunk& chunk)
{
    g_pageEntries = {chunk.body, chunk.size};
    return true;
}

bool LoadPages(const LoadChunk& chunk)
{
    uint8_t* entries = g_pageEntries.body ? g_pageEntries.body : chunk.base;
    return Textures_Load(chunk.body, chunk.size, chunk.base, entries, g_pageEntries.size);
}

struct ChunkHandler {
    uint32_t tag;
    bool (*load)(const LoadChunk& chunk);
};

constexpr ChunkHandler kHandlers[] = {
    {ArchiveTag("GEN7"), LoadGeneral},
    {ArchiveTag("GEN8"), LoadGeneral},
    {ArchiveTag("GENL"), LoadGeneral},
    {ArchiveTag("OPTN"),
     [](const LoadChunk& chunk) {
         Archive_ReadOptions(chunk.body, chunk.size);
         return true;
     }},
    {ArchiveTag("SOND"),
     [](const LoadChunk& chunk) { return Audio_Load(chunk.body, chunk.size, chunk.base); }},
    {ArchiveTag("AUDO"),
     [](const LoadChunk& chunk) { return Audio_WAVs(chunk.body, chunk.size, chunk.base); }},
    {ArchiveTag("SPRT"),
     [](const LoadChunk& chunk) { return Sprite_Load(chunk.body, chunk.size, chunk.base); }},
    {ArchiveTag("BGND"),
     [](const LoadChunk& chunk) { return Background_Load(chunk.body, chunk.size, chunk.base); }},
    {ArchiveTag("PATH"),
     [](const LoadChunk& chunk) { return Path_Load(chunk.body, chunk.size, chunk.base); }},
    {ArchiveTag("SCPT"),
     [](const LoadChunk& chunk) { return Script_Load(chunk.body, chunk.size, chunk.base); }},
    {ArchiveTag("GLOB"),
     [](const LoadChunk& chunk) { return Script_LoadGlobalCode(chunk.body, chunk.size); }},
    {ArchiveTag("FONT"),
     [](const LoadChunk& chunk) { return Font_Load(chunk.body, chunk.size, chunk.base); }},
    {ArchiveTag("TMLN"),
     [](const LoadChunk& chunk) { return TimeLine_Load(chunk.body, chunk.size, chunk.base); }},
    {ArchiveTag("OBJT"),
     [](const LoadChunk& chunk) { return Object_Load(chunk.body, chunk.size, chunk.base); }},
    {ArchiveTag("ROOM"),
     [](const LoadChunk& chunk) { return Room_Load(chunk.body, chunk.size, chunk.base); }},
    {ArchiveTag("TPAG"), LoadPageEntries},
    {ArchiveTag("TXTR"), LoadPages},
    // No part of this runtime reads these.
    {ArchiveTag("LANG"), LoadNothing},
    {ArchiveTag("EXTN"), LoadNothing},
    {ArchiveTag("AGRP"), LoadNothing},
    {ArchiveTag("SHDR"), LoadNothing},
    {ArchiveTag("EMBI"), LoadNothing},
    {ArchiveTag("DAFL"), LoadNothing},
    {ArchiveTag("HELP"), LoadNothing},
    {ArchiveTag("RASP"), LoadNothing},
    {ArchiveTag("PSPS"), LoadNothing},
    {ArchiveTag("STAT"), LoadNothing},
    {ArchiveTag("STRG"), LoadNothing},  // its texts are reached through references
    {ArchiveTag("CODE"), LoadNothing},  // bytecode; all code here is compiled
    {ArchiveTag("VARI"), LoadNothing},
    {ArchiveTag("FUNC"), LoadNothing},
};

bool LoadOneChunk(uint32_t tag, const LoadChunk& chunk)
{
    char text[5];
    TagText(tag, text);
    g_DebugConsole->Output("Process Chunk: %s   %d\n", text, static_cast<int>(chunk.size));
    for (const ChunkHandler& handler : kHandlers)
        if (handler.tag == tag) return handler.load(chunk);
    g_ErrorConsole->Output("unknown Chunk %s:%d\n", text, static_cast<int>(chunk.size));
    return false;
}

void InitModules()
{
    Audio_InitLists();
    Sprite_Init();
    Background_Init();
    Path_Init();
    Script_Init();
    Font_Init();
    TimeLine_Init();
}

// ---- the names of the compiled game

int32_t SlotCount()
{
    int32_t count = 0;
    if (SlotRecord** slots = g_RunnerData.varSlots)
        while (slots[count]) ++count;
    return count;
}

void RegisterVariables()
{
    const RunnerData& data = g_RunnerData;
    Code_Variable_Init(data.globalVarCount, data.instanceVarCount);
    const int32_t slots = SlotCount();
    for (int32_t i = 0; i < std::min(slots, data.instanceVarCount); ++i)
        Code_Variable_Register(data.varSlots[i]->name, SCOPE_INSTANCE, i);
    for (int32_t i = 0; i < std::min(slots, data.globalVarCount); ++i)
        Code_Variable_Register(data.varSlots[i]->name, SCOPE_GLOBAL, i);
    for (int32_t i = 0; i < slots; ++i)
        if (data.varSlots[i]->id == -1)
            data.varSlots[i]->id = Variable_BuiltIn_Find(data.varSlots[i]->name);
}

void MakeGlobal()
{
    VxDelete(g_Global);
    g_Global =
        VxNew<VXObjectBase>(std::max(g_RunnerData.globalVarCount, g_RunnerData.instanceVarCount));
}

void ResolveSlots()
{
    for (SlotRecord** slot = g_RunnerData.varSlots; slot && *slot; ++slot)
        (*slot)->id = Code_Variable_Find((*slot)->name, SCOPE_EITHER);
    for (SlotRecord** slot = g_RunnerData.funcSlots; slot && *slot; ++slot)
        (*slot)->id = Function_Find((*slot)->name);
}

}  // namespace

void Archive_Init()
{
    Archive_Quit();
}

void Archive_Quit()
{
    DropArchive();
    VxDelete(g_Global);
    g_Global = nullptr;
    Code_Variable_Init(0, 0);
    Path_Quit();
    TimeLine_Quit();
    g_GameHeader = GameHeader{};
    g_GameOptions = GameOptions{};
    g_StartDrawColour = kBlackOpaque;
    Archive_ReadIniOptions(VxString());
    VxString().swap(g_GamePath);
    VxString().swap(g_WorkingDirectory);
}

bool RunnerLoadGame(const RunnerData& attachment)
{
    DropArchive();
    g_RunnerData = attachment;
    g_GamePath = attachment.archive ? g_Host.files.ProgramPath() : g_Switches.game;
    SetWorkingDirectory(FolderOf(g_GamePath.empty() ? g_Host.files.ProgramPath() : g_GamePath));
    Archive_ReadIniOptions(g_WorkingDirectory + kOptionsFile);
    if (!g_GamePath.empty()) ReadDebugCompanion(DebugCompanionPath(g_GamePath));
    if (!TakeArchive(attachment)) {
        const VxString wanted = g_GamePath.empty() ? g_WorkingDirectory + kGameFile : g_GamePath;
        RefuseGame(("Unable to find game!!: " + wanted).c_str());
        return false;
    }
    std::string fault;
    if (archive::Check(g_ArchiveBase, g_ArchiveSize, &fault)) return true;
    RefuseGame(("Unable to load game!!: " + g_GamePath + "\n" + fault.c_str()).c_str());
    DropArchive();
    return false;
}

bool LoadGameHeader(uint8_t* archive, uint32_t size)
{
    g_ArchiveBase = archive;
    g_ArchiveSize = size;
    WalkChunks(archive, size, [](uint32_t tag, uint8_t* body, uint32_t bodySize) {
        if (!IsGeneral(tag)) return;
        Archive_ReadGeneral(body, bodySize);
        Window_SetHeader(g_GameHeader.defaultWindowWidth, g_GameHeader.defaultWindowHeight,
                         g_GameHeader.infoFlags, g_GameHeader.displayName.c_str());
        g_DebugConsole->Output("InitVXLFunctions\n");
        InitVXLFunctions();
    });
    return true;
}

bool LoadGameData(uint8_t* archive, uint32_t size)
{
    g_ArchiveBase = archive;
    g_ArchiveSize = size;
    g_pageEntries = PageEntries{};
    InitModules();
    RegisterVariables();
    MakeGlobal();
    bool loaded = true;
    WalkChunks(archive, size, [&](uint32_t tag, uint8_t* body, uint32_t bodySize) {
        loaded = LoadOneChunk(tag, {body, bodySize, archive}) && loaded;
    });
    ResolveSlots();
    g_pageEntries = PageEntries{};
    return loaded;
}

const char* GetArchiveString(uint32_t offset)
{
    return offset ? reinterpret_cast<const char*>(g_ArchiveBase) + offset : nullptr;
}
