// The life of the process: runs, one after another while a run asks for the next.

#include "Files/Background/CBackground.h"
#include "Files/Base/Archive_Main.h"
#include "Files/Base/Console.h"
#include "Files/Base/Error.h"
#include "Files/Code/Script_Interface.h"
#include "Files/Font/CFontSW.h"
#include "Files/Function/Function_Registry.h"
#include "Files/Graphics/Window.h"
#include "Files/IO/IO.h"
#include "Files/Object/Instance_Main.h"
#include "Files/Object/Object_Main.h"
#include "Files/Room/Room_Main.h"
#include "Files/Run/CommandLine.h"
#include "Files/Run/Run_Modules.h"
#include "Files/Script/Script_Main.h"
#include "Files/Sound/Audio_Main.h"
#include "Files/Sprite/CSprite.h"
#include "Files/Variable/Variable_BuiltIn.h"
#include "Host/Host.h"

void FreeVariableFlags();

namespace {

constexpr char kDefaultArchive[] = "data.win";

bool g_gameStarted;  // InitGame came through: EndGame is owed
VxString g_nextCommand;

// The default game file: "data.win" beside the program, when it can be read.
void FindDefaultGame()
{
    const VxString program = g_Host.files.ProgramPath();
    const VxString path = program.substr(0, program.rfind('/') + 1) + kDefaultArchive;
    if (g_Switches.game.empty() && g_Host.files.Exists(path.c_str())) g_Switches.game = path;
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

void Shutdown_Input()
{
    IO_Quit();
}

// What the next run is asked to do: the way back that -exit left.
void DecideRestart()
{
    g_RestartFlag = false;
    g_nextCommand.clear();
    if (g_Switches.exitTo.empty()) return;
    g_nextCommand = "-game \"" + g_Switches.exitTo + "\"";
    g_RestartFlag = true;
}

}  // namespace

void Shutdown()
{
    Shutdown_Input();
}

void Finish()
{
    FreeVariableFlags();
    Script_Quit();
    Room_Quit();
    Instance_Quit();
    Object_Quit();
    Sprite_Quit();
    Background_Quit();
    Font_Quit();
    Code_Quit();
    Variable_BuiltIn_Init();
    Constant_Init();
    Function_Init();
    GR_D3D_Quit();
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
    CommandLine_ParseTokens(tokens, launchFolder);
    FindDefaultGame();
    StartConsoles();
    Window_Init();
    Archive_Init();
    g_gameStarted = InitGameSystem() && InitGame();
    if (g_gameStarted && g_Host.window.Exists()) g_Host.window.SetFocus();
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
    Finish();
    DecideRestart();
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
    g_Host.files.EnterFolder(program.substr(0, program.rfind('/') + 1).c_str());
    RestoreFolders();

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
