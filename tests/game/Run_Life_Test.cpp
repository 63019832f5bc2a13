// The life of a run: how it starts, every way in which it ends, and that nothing of
// it is left for the next one.

#include <gtest/gtest.h>

#include "Files/Base/Error.h"
#include "Files/Room/Room_Main.h"
#include "Files/Run/CommandLine.h"
#include "Files/Run/Run_Modules.h"
#include "Files/Run/Services.h"
#include "Host/Host_Stage.h"
#include "tests/support/Stage.h"

namespace {

int s_ends, s_exits, s_exitCode;

void CountEnd()
{
    ++s_ends;
}

class RunLifeTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        s_ends = s_exits = s_exitCode = 0;
        Service_Hook(ServicePlace::StopSounds, CountEnd);
        Error_SetExitHook([](int code) {
            ++s_exits;
            s_exitCode = code;
        });
    }
    void TearDown() override
    {
        Service_Unhook(ServicePlace::StopSounds, CountEnd);
        Error_SetExitHook(nullptr);
    }
    static Stage::Options With(std::vector<std::string> more)
    {
        Stage::Options options;
        options.switches.insert(options.switches.end(), more.begin(), more.end());
        return options;
    }
    static void Send(HostMessageType type)
    {
        HostMessage message{};
        message.type = type;
        Stage_Post(message);
    }
};

TEST_F(RunLifeTest, FiftyRunsLeaveNothingBehindAndAreAlike)
{
    uint64_t hash = 0;
    size_t blocks = 0, bytes = 0;
    for (int run = 0; run < 50; ++run) {
        {
            Stage stage;
            ASSERT_TRUE(stage.started()) << stage.console();
            stage.room("room_level1").frames(2).hold('D').frames(5);
            if (run == 0) hash = stage.state_hash();
            ASSERT_EQ(stage.state_hash(), hash) << "run " << run;
        }
        const MemoryManager::Stats stats = MemoryManager::GetStats();
        if (run == 1) {
            blocks = stats.blocks;
            bytes = stats.bytesInUse;
        }
        if (run > 1) {
            ASSERT_EQ(stats.blocks, blocks) << "run " << run;
            ASSERT_EQ(stats.bytesInUse, bytes) << "run " << run;
        }
    }
    EXPECT_EQ(s_ends, 50);
}

TEST_F(RunLifeTest, EveryEndingEndsTheGameOnce)
{
    struct Ending {
        const char* name;
        void (*ask)();
        int code;
    };
    const Ending endings[] = {
        {"the game", [] { New_Room = ROOM_END_GAME; }, 0},
        {"the window", [] { Send(HostMessageType::Close); }, 0},
        {"the system", [] { Send(HostMessageType::Quit); }, 0},
        {"an aborted error",
         [] {
             Stage_SetErrorChoice(HostErrorChoice::Abort);
             Error_Show("stop", false);
         },
         1},
        {"another game", [] { vxg_player_run("/games/other.win", ""); }, 0},
    };
    for (const Ending& ending : endings) {
        SCOPED_TRACE(ending.name);
        s_ends = 0;
        {
            Stage stage;
            stage.frames(2);
            ending.ask();
            stage.frames(10);
            EXPECT_FALSE(stage.running());
            EXPECT_EQ(Runner_ExitCode(), ending.code);
        }
        EXPECT_EQ(s_ends, 1);
    }
    s_ends = 0;
    {
        Stage stage;
        stage.frames(2);
        Stage_SetErrorChoice(HostErrorChoice::Ignore);
        Error_Show("go on", false);
        New_Room = ROOM_RESTART_GAME;
        stage.frames(2);
        EXPECT_TRUE(stage.running());
        EXPECT_EQ(s_ends, 1);
        EXPECT_EQ(Runner_ExitCode(), 0);
    }
    EXPECT_EQ(s_ends, 2) << "a restart ends the game that was";
}

TEST_F(RunLifeTest, TheNextRunIsTheWayBack)
{
    {
        Stage stage(With({"-exit", "menu.win"}));
        stage.frames(1);
    }
    EXPECT_TRUE(g_RestartFlag);
    VxVector<VxString> tokens;
    CommandLine_Split(Runner_NextCommand().c_str(), &tokens);
    ASSERT_EQ(tokens.size(), 2U);
    EXPECT_EQ(tokens[0], "-game");
    EXPECT_NE(tokens[1].find("/menu.win"), VxString::npos);
    {
        Stage stage;
        EXPECT_FALSE(g_LaunchedByPlayer);
        vxg_player_run("/games/a b.win", "/games/menu.win");
        stage.frames(2);
    }
    EXPECT_EQ(Runner_NextCommand(), "-game \"/games/a b.win\" -exit \"/games/menu.win\"");
    {
        Stage stage;  // the run that the player asked for
        EXPECT_TRUE(g_LaunchedByPlayer);
        Error_Fatal("it fails");
        EXPECT_EQ(s_exits, 0) << "the player's process goes on";
        EXPECT_EQ(New_Room, ROOM_END_GAME);
    }
    EXPECT_FALSE(g_RestartFlag);
    Stage stage;
    EXPECT_FALSE(g_LaunchedByPlayer);
    Error_Fatal("it fails");
    EXPECT_EQ(s_exits, 1);
    EXPECT_EQ(s_exitCode, 1);
}

TEST_F(RunLifeTest, HeadlessLeavesInTheFirstRoom)
{
    Stage stage(With({"-headless"}));
    EXPECT_GE(s_exits, 1);
    EXPECT_EQ(s_exitCode, 0);
    EXPECT_TRUE(Stage_MessageBoxes().empty());
}

TEST_F(RunLifeTest, NoArchiveNoGame)
{
    {
        Stage::Options options;
        options.archiveBytes = {'F', 'O', 'R', 'M', 9, 0, 0, 0, 'x'};
        Stage stage(options);
        EXPECT_FALSE(stage.started());
        EXPECT_EQ(Stage_MessageBoxes().size(), 1U);
        EXPECT_FALSE(stage.running());
    }
    EXPECT_EQ(s_ends, 0) << "no game began";
    Stage stage;
    EXPECT_TRUE(stage.started()) << "the next run is whole";
}

TEST_F(RunLifeTest, StartRunsInItsOrder)
{
    Stage stage(With({"-debugoutput", "trace.txt"}));
    const char* const steps[] = {
        "Create Error Form",
        "*     Vexo Studios Runner v1.0(999)[r32908]    *\n",
        "Get Resolution",
        "InitVXLFunctions",
        "Create Window",
        "AdjustWindowRectEx\n",
        "RegisterClassEx\n",
        "CreateWindowEx\n",
        "Init Graphics",
        "GR_D3D_Init()\n",
        "Enumerate Adapters\n",
        "Selected Resolution: 854x480\n",
        "Prepare to create device\n",
        "Creating D3D device - ARGB=32bit, D24S8, SwapEffect=Copy, Hardware vertex processing\n",
        "Creating screen render target\n",
        "Get Device Caps\n",
        "Graphics initialisation end...\n",
        "Background_InitTextures()\n",
        "Sprite_InitTextures()\n",
        "Font_InitTextures()\n",
        "IO Init",
        "Process Messages",
        "Splash!",
        "Start Frame",
        "Part Create Textures",
        "Debug Init Remote Interface",
        "VM Init",
        "Create Score Form",
        "Create Load Form",
        "Do The Work",
        "Process Chunk: GEN8",
        "PrepareGame()\n",
        "Extension_Prepare() \n",
        "Code_Constant_Prepare() \n",
        "Script_Prepare() \n",
        "TimeLine_Prepare() \n",
        "Object_Prepare() \n",
        "Room_Prepare() \n",
        "Sound_Prepare() \n",
        "\nEntering main loop.\n",
    };
    const std::string trace = stage.console();
    size_t at = 0;
    for (const char* step : steps) {
        const size_t found = trace.find(step, at);
        ASSERT_NE(found, std::string::npos) << step << " in\n" << trace;
        at = found;
    }
    EXPECT_EQ(trace.find("Failed"), std::string::npos);
}

TEST_F(RunLifeTest, MarginsLastWordIsTheArchives)
{
    Stage stage(With({"-sleepmargin", "25"}));
    EXPECT_EQ(g_SleepMargin, 1);
}

TEST_F(RunLifeTest, AWindowClosedDuringTheStartStaysClosed)
{
    Stage stage;
    g_QuitSeen = true;
    Run_Start();
    EXPECT_FALSE(stage.running());
    stage.room("room_level1").frames(2);
    EXPECT_EQ(s_ends, 0);
}

}  // namespace
