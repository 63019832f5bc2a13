// Switches, their values, and what else stands on a command line.

#include "Files/Run/CommandLine.h"

#include <gtest/gtest.h>

#include "Files/Run/Run_Modules.h"

namespace {

class CommandLineTest : public ::testing::Test {
protected:
    void SetUp() override { RunState_Reset(); }
    void TearDown() override
    {
        RunState_Reset();
        RunState_Free();
    }
    void Parse(std::initializer_list<const char*> tokens, const char* known = "")
    {
        VxVector<VxString> list = {"marlowick"};
        for (const char* token : tokens) list.push_back(token);
        CommandLine_ParseTokens(list, "/home/player/games", known);
    }
    std::string Parameters()
    {
        std::string all;
        for (const VxString& parameter : g_Switches.parameters) {
            all += parameter.c_str();
            all += '|';
        }
        return all;
    }
};

TEST_F(CommandLineTest, LineIsCutAtBlanksOutsideQuotes)
{
    const auto split = [](const char* line) {
        VxVector<VxString> tokens;
        CommandLine_Split(line, &tokens);
        std::string all;
        for (const VxString& token : tokens) all += std::string(token.c_str()) + "|";
        return all;
    };
    EXPECT_EQ(split("-game \"a b.win\" -exit c"), "-game|a b.win|-exit|c|");
    EXPECT_EQ(split("  one\ttwo\n\x01three  "), "one|two|three|");
    EXPECT_EQ(split("a\"b c\"d"), "ab cd|");
    EXPECT_EQ(split("open \"end of line"), "open|end of line|");
    EXPECT_EQ(split("\"\""), "|");
    EXPECT_EQ(split(""), "");
}

TEST_F(CommandLineTest, EachSwitchSetsItsOwn)
{
    struct Row {
        const char* token;
        bool Switches::*flag;
    };
    const Row rows[] = {{"-trace", &Switches::trace},
                        {"-vmtrace", &Switches::vmTrace},
                        {"-ext", &Switches::extTrace},
                        {"-noerrors", &Switches::noErrors},
                        {"-oldexec", &Switches::oldExec},
                        {"-noaudio", &Switches::noAudio},
                        {"-inawindow", &Switches::inAWindow},
                        {"-steam", &Switches::steam},
                        {"-software", &Switches::software},
                        {"-intel", &Switches::intel},
                        {"-gl", &Switches::gl},
                        {"-networkdebug", &Switches::networkDebug},
                        {"-vanillaGFX", &Switches::vanillaGfx},
                        {"-headless", &Switches::headless},
                        {"-multivb", &Switches::multiVb},
                        {"-novb", &Switches::noVb},
                        {"-compresstextures", &Switches::compressTextures},
                        {"-nodirectinput", &Switches::noDirectInput},
                        {"-debug", &Switches::debug}};
    for (const Row& on : rows) {
        Parse({on.token});
        for (const Row& other : rows)
            EXPECT_EQ(g_Switches.*other.flag, other.flag == on.flag)
                << on.token << " and " << other.token;
    }
    EXPECT_FALSE(g_ManualVSync);
    Parse({"-manualvsync"});
    EXPECT_TRUE(g_ManualVSync);
}

TEST_F(CommandLineTest, ValuesAndPaths)
{
    Parse({"-game", "worlds/a.win", "-exit", "/opt/b.win", "-dir", "../x", "-record", "./r.dat",
           "-output", "o.txt", "-debugoutput", "d.txt", "-profiledump", "p.txt", "12",
           "-sleepmargin", "7", "-audiodebug"});
    EXPECT_EQ(g_Switches.game, "/home/player/games/worlds/a.win");
    EXPECT_EQ(g_Switches.exitTo, "/opt/b.win");
    EXPECT_EQ(g_Switches.dir, "/home/player/x");
    EXPECT_EQ(g_Switches.record, "/home/player/games/r.dat");
    EXPECT_EQ(g_Switches.playback, "");
    EXPECT_EQ(g_Switches.output, "/home/player/games/o.txt");
    EXPECT_EQ(g_Switches.debugOutput, "/home/player/games/d.txt");
    EXPECT_EQ(g_Switches.profileDump, "/home/player/games/p.txt");
    EXPECT_EQ(g_Switches.profileFrames, 12);
    EXPECT_EQ(g_SleepMargin, 7);
    EXPECT_TRUE(g_Switches.sleepMarginGiven);
    EXPECT_EQ(g_Switches.debugLevel, 16);
    Parse({"-game"});  // its value is missing
    EXPECT_EQ(g_Switches.game, "");
    EXPECT_EQ(Path_Absolute("../../../..", "/a/b"), "/");
    EXPECT_EQ(Path_Absolute("/a//b/./c/../d", "/x"), "/a/b/d");
}

TEST_F(CommandLineTest, EveryTokenIsAParameter)
{
    Parse({"-What", "-GAME", "x y", "-record", "-software", "last"});
    EXPECT_EQ(Parameters(), "marlowick|-What|-GAME|x y|-record|-software|last|");
    EXPECT_EQ(g_Switches.game, "") << "tokens are compared with their case";
    EXPECT_FALSE(g_Switches.software) << "it was the value of -record";
}

TEST_F(CommandLineTest, DebugIsForTheProgramWithoutAGameFile)
{
    Parse({"-debug"});
    EXPECT_TRUE(g_Switches.debug);
    EXPECT_EQ(g_Switches.debugLevel, 2);
    Parse({"-game", "a.win", "-debug"});
    EXPECT_FALSE(g_Switches.debug);
    Parse({"-debug", "-game", "a.win"});
    EXPECT_TRUE(g_Switches.debug);
    Parse({"-debug"}, "/opt/data.win");
    EXPECT_FALSE(g_Switches.debug);
    EXPECT_EQ(g_Switches.game, "/opt/data.win");
    Parse({"-game", "/b.win"}, "/opt/data.win");
    EXPECT_EQ(g_Switches.game, "/b.win");
}

TEST_F(CommandLineTest, PlayerUrl)
{
    Parse({"swplayer://site/game/"});
    EXPECT_EQ(g_Switches.playerUrl, "site/game");
    Parse({"swplayer://a//"});
    EXPECT_EQ(g_Switches.playerUrl, "a/");
    Parse({"swplayer:other"});
    EXPECT_EQ(g_Switches.playerUrl, "");
    Parse({"swplayer://"});
    EXPECT_EQ(g_Switches.playerUrl, "");
}

}  // namespace
