// The life of the process: runs, one after another while a run asks for the next.

#include "Files/Background/CBackground.h"
#include "Files/Base/Archive_Main.h"
#include "Files/Base/Console.h"
#include "Files/Base/Error.h"
#include "Files/Code/Script_Interface.h"
#include "Files/Font/CFontSW.h"
#include "Files/Function/Function_Registry.h"
#include "Files/Graphics/Window.h"
#include "Files/IO/GamePad.h"
#include "Files/IO/IO.h"
#include "Files/Object/Instance_Main.h"
#include "Files/Object/Object_Main.h"
#include "Files/Particle/Particle_Main.h"
#include "Files/Room/Room_Main.h"
#include "Files/Run/CommandLine.h"
#include "Files/Run/Run_Modules.h"
#include "Files/Script/Script_Main.h"
#include "Files/Sound/Audio_Main.h"
#include "Files/Sprite/CSprite.h"
#include "Files/Variable/Variable_BuiltIn.h"
#include "Host/Host.h"

namespace {

constexpr char kDefaultArchive[] = "data.win";

bool g_gameStarted;  // InitGame came through: EndGame is owed
VxString g_nextCommand;
bool g_nextIsPlayers;  // the next run is a game that this one asked for

// The default game file: "data.win" beside the program, when it can be read.
VxString DefaultGame()
{
    const VxString program = g_Host.files.ProgramPath();
    const VxString path = program.substr(0, program.rfind('/') + 1) + kDefaultArchive;
    if (!g_Host.files.Exists(path.c_str())) return {};
    void* stream = g_Host.files.OpenStream(path.c_str(), "rb");
    g_Host.files.CloseStream(stream);
    return stream ? path : VxString();
}

void OutOfMemoryBox(const char* title, const char* text)
{
    g_Host.dialogs.MessageBox(title, text);
}

void MemoryErrorLine(const char* text)
{
    if (g_ErrorConsole) g_ErrorConsole->Output("%s", text);
}

void StartConsoles()
{
    Console_Init();
    Console_SetFiles(g_Switches.output.empty() ? nullptr : g_Switches.output.c_str(),
                     g_Switches.debugOutput.empty() ? nullptr : g_Switches.debugOutput.c_str());
    MemoryManager::SetOutOfMemoryBox(g_Switches.headless ? nullptr : OutOfMemoryBox);
    MemoryManager::SetErrorSink(MemoryErrorLine);
    Error_Init();
}

// What the next run is asked to do: the game that the player is to run, else the way
// back that -exit left.
void DecideRestart()
{
    const PlayerRequest& request = g_PlayerRequest;
    g_nextIsPlayers = !request.game.empty();
    const VxString& game = g_nextIsPlayers ? request.game : g_Switches.exitTo;
    g_RestartFlag = !game.empty();
    VxString().swap(g_nextCommand);
    if (!g_RestartFlag) return;
    g_nextCommand = "-game \"" + game + "\"";
    if (g_nextIsPlayers && !request.goBack.empty())
        g_nextCommand += " -exit \"" + request.goBack + "\"";
}

// Nothing of this run's queue may reach the next run.
void PostQuit()
{
    if (!g_Host.window.Exists || !g_Host.window.Exists()) return;
    HostMessage quit;
    quit.type = HostMessageType::Quit;
    g_Host.window.PostMessage(quit);
}

}  // namespace

void Shutdown()
{
    IO_Quit();
    Audio_QuitHardware();
}

void Finish()
{
    if (g_Switches.headless) g_Host.process.CatchFaults(nullptr);
    FreeVariableFlags();
    Script_Quit();
    Room_Quit();
    Instance_Quit();
    Object_Quit();
    Sprite_Quit();
    Background_Quit();
    Font_Quit();
    Particle_Quit();
    Code_Quit();
    Variable_ResetGame();
    Variable_BuiltIn_Init();
    Constant_Init();
    Function_Init();
    GR_D3D_Quit();
    GamePad_Quit();
    Window_Destroy();
    Archive_Quit();
    Audio_Quit();
    MemoryManager::SetErrorSink(nullptr);
    MemoryManager::SetOutOfMemoryBox(nullptr);
    Console_Quit();
}

bool Runner_Boot(const VxVector<VxString>& tokens, const char* launchFolder,
                 const RunnerData& attachment)
{
    g_RestartFlag = false;
    g_QuitSeen = false;
    RunState_Reset();
    New_Room = ROOM_NONE;
    g_RunnerData = attachment;
    g_LaunchedByPlayer = g_nextIsPlayers;
    CommandLine_ParseTokens(tokens, launchFolder, DefaultGame().c_str());
    StartConsoles();
    if (g_Switches.headless) Headless_Watch();
    Window_Init();
    Archive_Init();
    g_gameStarted = InitGameSystem() && InitGame();
    if (g_gameStarted && g_Host.window.Exists()) {
        g_Host.window.SetFocus();
        g_WindowFocus = g_Host.window.HasFocus();
    }
    return g_gameStarted;
}

void Runner_Round()
{
    Run_Frame();
    Process_Messages();
}

void Runner_End()
{
    if (g_gameStarted) EndGame();
    g_gameStarted = false;
    Shutdown();
    PostQuit();
    Finish();
    DecideRestart();
    RunState_Free();
}

int Runner_ExitCode()
{
    return g_ErrorPending ? 1 : 0;
}
const VxString& Runner_NextCommand()
{
    return g_nextCommand;
}

int Runner_Main(int argc, const char* const* argv, const RunnerData& attachment)
{
    const VxString launchFolder = g_Host.files.CurrentFolder();
    const VxString program = g_Host.files.ProgramPath();
    const VxString folder = program.substr(0, program.rfind('/') + 1);
    if (g_Host.files.EnterFolder(folder.c_str())) RestoreFolders();

    VxVector<VxString> tokens;
    for (int i = 0; i < argc; ++i) tokens.push_back(argv[i]);
    for (;;) {
        const bool started = Runner_Boot(tokens, launchFolder.c_str(), attachment);
        while (started && g_Running) Runner_Round();
        Runner_End();
        if (!started) return 1;
        if (!g_RestartFlag) return Runner_ExitCode();
        tokens.clear();
        tokens.push_back(program);
        CommandLine_Split(Runner_NextCommand().c_str(), &tokens);
    }
}
