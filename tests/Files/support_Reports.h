#pragma once
// A fixture that keeps what goes to the consoles and sees the program's exits
// instead of leaving.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "Files/Base/Archive_Main.h"
#include "Files/Base/Console.h"
#include "Files/Base/Error.h"
#include "Files/Function/Function_Registry.h"
#include "Files/Room/Room_Main.h"
#include "Files/Run/Run_State.h"
#include "Files/Variable/Variable_BuiltIn.h"
#include "Host/Host_Stage.h"

class ReportsTest : public testing::Test {
protected:
    void SetUp() override
    {
        Host_UseStage();
        Stage_Reset();
        Console_Init();
        Error_Init();
        g_GameOptions.bits = 0;
        g_Switches = Switches{};
        New_Room = ROOM_NONE;
        Lines().clear();
        Exits() = 0;
        Console_SetSink([](void*, const char* text) { Lines().push_back(text); }, nullptr);
        Error_SetExitHook([](int) { ++Exits(); });
        VXCreateString(&g_ErrorLast, "");
        g_ErrorOccurred = false;
    }
    void TearDown() override
    {
        RELEASE_RValue(&g_ErrorLast);
        Console_SetSink(nullptr, nullptr);
        Error_SetExitHook(nullptr);
        Error_Init();
        New_Room = ROOM_NONE;
        g_Switches = Switches{};
        Console_Quit();
    }

    static std::vector<std::string>& Lines()
    {
        static std::vector<std::string> lines;
        return lines;
    }
    static int& Exits()
    {
        static int exits = 0;
        return exits;
    }
    // The reports that reached the output console.
    static std::vector<std::string> Reports()
    {
        std::vector<std::string> reports;
        for (const std::string& line : Lines())
            if (line.rfind("ERROR!!! :: ", 0) == 0) reports.push_back(line);
        return reports;
    }
    // Exactly one report holds `words` as its whole message; both are then forgotten.
    void ExpectReport(const std::string& words, bool fatal = false)
    {
        const std::vector<std::string> reports = Reports();
        ASSERT_EQ(reports.size(), 1U) << words;
        EXPECT_NE(reports[0].find(":\n\n\n" + words + "\n####"), std::string::npos) << reports[0];
        EXPECT_EQ(reports[0].find("FATAL ERROR in") != std::string::npos, fatal) << reports[0];
        Lines().clear();
        Error_Init();
        New_Room = ROOM_NONE;
    }
    void ExpectFatal(const std::string& words)
    {
        ExpectReport(words, true);
        EXPECT_EQ(Exits(), 1) << words;
        Exits() = 0;
    }
};
