// The start of a game: modules without game data, the archive, the window and the
// device, then all data and the first room.

#include <cstdlib>

#include "Files/Background/CBackground.h"
#include "Files/Base/Archive_Main.h"
#include "Files/Base/CRC.h"
#include "Files/Base/Console.h"
#include "Files/Base/Error.h"
#include "Files/Code/Script_Interface.h"
#include "Files/Font/CFontSW.h"
#include "Files/Function/Function_Registry.h"
#include "Files/Graphics/Draw_Room.h"
#include "Files/Graphics/Draw_State.h"
#include "Files/Graphics/Text.h"
#include "Files/Graphics/Window.h"
#include "Files/IO/GamePad.h"
#include "Files/IO/IO.h"
#include "Files/Object/Instance_Main.h"
#include "Files/Object/Object_Main.h"
#include "Files/Particle/Particle_Main.h"
#include "Files/Room/Room_Main.h"
#include "Files/Run/Run_Modules.h"
#include "Files/Script/Script_Main.h"
#include "Files/Sound/Audio_Main.h"
#include "Files/Sprite/CSprite.h"
#include "Files/Variable/Variable_BuiltIn.h"
#include "Host/Host.h"

namespace {

constexpr unsigned kRandSeed = 2101988;
constexpr int kRunnerMajor = 1, kRunnerMinor = 0, kRunnerBuild = 999, kRunnerRevision = 32908;
constexpr size_t kVariableFlagBytes = 10000;

// One byte for each instance variable, part of a saved game's state.
uint8_t* g_variableFlags;

void Trace(const char* step)
{
    g_DebugConsole->Output("%s\n", step);
}

void Banner()
{
    g_DebugConsole->Output(
        "\n***************************************\n"
        "*     Vexo Studios Runner v%d.%d(%d)[r%d]    *\n"
        "***************************************\t \n",
        kRunnerMajor, kRunnerMinor, kRunnerBuild, kRunnerRevision);
}

bool OpenGraphics()
{
    Trace("Init Graphics");
    g_DebugConsole->Output("GR_D3D_Init()\n");
    if (!GR_D3D_Init(g_Display.windowWidth, g_Display.windowHeight, g_GameHeader.infoFlags))
        return false;
    g_DebugConsole->Output("Background_InitTextures()\n");
    if (!Background_InitTextures()) return false;
    g_DebugConsole->Output("Sprite_InitTextures()\n");
    if (!Sprite_InitTextures()) return false;
    g_DebugConsole->Output("Font_InitTextures()\n");
    return Font_InitTextures();
}

struct PrepareStep {
    const char* trace;
    bool (*prepare)();
    const char* failure;
};

// Extensions and timelines have no records in this system: nothing can fail.
constexpr PrepareStep kPrepareSteps[] = {
    {"Extension_Prepare() \n", nullptr, "Failed to prepare extension packages."},
    {"Code_Constant_Prepare() \n", Code_Constant_Prepare, "Failed to define the constants."},
    {"Script_Prepare() \n", Script_Prepare, "Failed to compile the scripts."},
    {"TimeLine_Prepare() \n", nullptr, "Failed to compile the actions in the time lines."},
    {"Object_Prepare() \n", Object_Prepare, "Failed to compile the actions in the objects."},
    {"Room_Prepare() \n", Room_Prepare, "Failed to compile the actions in the objects."},
    {"Sound_Prepare() \n", Sound_Prepare, "Failed to prepare the sounds."},
};

void ShowFirstPictures()
{
    Trace("Process Messages");
    Process_Messages();
    Trace("Splash!");
    if (!g_Switches.headless) Splash_Show();
    Trace("Start Frame");
    Frame_Begin();  // the first round of the main loop ends it
    Trace("Part Create Textures");
    Particle_CreateTextures();
    Trace("Debug Init Remote Interface");
    Trace("VM Init");
    Trace("Create Score Form");
    Trace("Create Load Form");
}

bool LoadData()
{
    Trace("Do The Work");
    srand(kRandSeed);
    if (!LoadGameData(g_ArchiveBase, g_ArchiveSize)) {
        g_DebugConsole->Output("Failed to load the game\n");
        return false;
    }
    g_variableFlags = static_cast<uint8_t*>(MemoryManager::Alloc(kVariableFlagBytes, true));
    g_DebugConsole->Output("PrepareGame()\n");
    return PrepareGame();
}

}  // namespace

bool InitGameSystem()
{
    Clock_Init();
    CRC_Init();
    g_IOMessage = IOMessageSide{};
    g_IOFrame = IOFrameSide{};
    RValue_Init();
    Constant_Init();
    DrawState_Init();
    Text_Init();
    Draw_Init();
    Particle_Init();
    Variable_BuiltIn_Init();
    Variable_ResetGame();
    Function_Init();
    Code_Init();
    Object_Init();
    Instance_Init();
    Room_Init();
    Process_Messages();
    return true;
}

bool PrepareGame()
{
    for (const PrepareStep& step : kPrepareSteps) {
        g_DebugConsole->Output("%s", step.trace);
        if (step.prepare && !step.prepare()) {
            g_Host.dialogs.MessageBox("Error", step.failure);
            return false;
        }
    }
    return true;
}

bool InitGame()
{
    Trace("Create Error Form");
    Banner();
    if (!RunnerLoadGame(g_RunnerData)) return false;
    Trace("Get Resolution");
    if (!LoadGameHeader(g_ArchiveBase, g_ArchiveSize)) return false;
    Trace("Create Window");
    if (!Window_Create(g_GameHeader.defaultWindowWidth, g_GameHeader.defaultWindowHeight))
        return false;
    GamePad_Init();
    if (!OpenGraphics()) return false;
    Trace("IO Init");
    IO_Init();
    ShowFirstPictures();
    if (!LoadData()) return false;
    Run_Start();
    return true;
}

void FreeVariableFlags()
{
    MemoryManager::Free(g_variableFlags);
    g_variableFlags = nullptr;
}
