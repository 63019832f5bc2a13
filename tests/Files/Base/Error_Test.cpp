#include "Files/Base/Error.h"

#include "Files/Base/Event_Names.h"
#include "Files/Code/CCode.h"
#include "Files/Code/Script_Interface.h"
#include "Files/Graphics/Window.h"
#include "Files/Object/Object_Main.h"
#include "tests/Files/support_Reports.h"

namespace {

const std::string kHashes(92, '#');
const std::string kDashes(92, '-');

class ErrorTest : public ReportsTest {
protected:
    void SetUp() override
    {
        ReportsTest::SetUp();
        Current_Event_Type = EVENT_ALARM;
        Current_Event_Number = 0;
        Current_Event_Object = -1;
    }
    void TearDown() override
    {
        g_TraceHead = nullptr;
        Current_Event_Type = EVENT_CREATE;
        ReportsTest::TearDown();
    }
    static std::string Last() { return VXGetText(&g_ErrorLast); }
    static std::string Describe(int32_t type, int32_t subtype)
    {
        char text[128];
        Event_Describe(text, sizeof text, type, subtype);
        return text;
    }
};

TEST_F(ErrorTest, ReportNamesEventObjectAndStack)
{
    TraceFrame outer = {nullptr, "vxl_Object_oPlayer_Alarm_0", 12};
    TraceFrame inner = {&outer, "vxl_Script_scr_sair", -1};
    g_TraceHead = &inner;
    Error_Show("out of boxes", false);
    EXPECT_EQ(Last(), kHashes +
                          "\nERROR in\naction number 1\nof Alarm Event for alarm 0\n"
                          "for object <undefined>:\n\n\nout of boxes\n" +
                          kHashes + "\n" + kDashes +
                          "\ncalled from - vxl_Script_scr_sair\n"
                          "called from - vxl_Object_oPlayer_Alarm_0 (line 12)\n");
    EXPECT_EQ(Reports(), std::vector<std::string>{"ERROR!!! :: " + Last() + "\n"});
    EXPECT_TRUE(g_ErrorOccurred);
    EXPECT_EQ(New_Room, ROOM_NONE) << "the game goes on";
}

TEST_F(ErrorTest, TimelineShaderAndNoMessage)
{
    Current_Event_Type = kTimelineEvent;
    Current_Event_Number = 30;
    Error_Show(nullptr, true);
    EXPECT_NE(Last().find("\nFATAL ERROR in\naction number 1\nat time step30\nof time line "),
              std::string::npos);
    Error_Init();
    Current_Event_Type = -1;
    Error_Show("bad", false);
    EXPECT_NE(Last().find("\n\n\nbad\n\n####"), std::string::npos);
    EXPECT_EQ(Last().find("action number"), std::string::npos);
}

TEST_F(ErrorTest, EventNames)
{
    EXPECT_EQ(Describe(EVENT_CREATE, 0), "Create Event");
    EXPECT_EQ(Describe(EVENT_STEP, 2), " Step Event2");
    EXPECT_EQ(Describe(EVENT_COLLISION, -1), " Step Event<undefined>");
    EXPECT_EQ(Describe(EVENT_KEYPRESS, 'D'), "Key Press Event for D");
    EXPECT_EQ(Describe(EVENT_KEYBOARD, 37), "Keyboard Event for <Left>");
    EXPECT_EQ(Describe(EVENT_KEYRELEASE, 116), "Key Release Event for <F5>");
    EXPECT_EQ(Describe(EVENT_MOUSE, 53), "Mouse Event for Glob Left Pressed");
    EXPECT_EQ(Describe(EVENT_OTHER, 4), "Other Event: Room Start");
    EXPECT_EQ(Describe(EVENT_OTHER, 12), "Other Event: User Defined 2");
    EXPECT_EQ(Describe(EVENT_OTHER, 62), "Async Event: HTTP");
    EXPECT_EQ(Describe(EVENT_PRECREATE, 0), "PreCreate Event");
    EXPECT_EQ(Describe(EVENT_TRIGGER, 0), "<Unknown Event>");
}

TEST_F(ErrorTest, TheDialogIsLaidOutAndWaits)
{
    Error_Show("one\r\ntwo\n\nthree\tfour", false);
    ASSERT_EQ(Stage_ErrorTexts().size(), 1U);
    const std::string text = Stage_ErrorTexts()[0].c_str();
    const std::string line(43, '_');
    EXPECT_EQ(text.find("\r\n" + line + "\r\n" + kHashes + "\r\nERROR in\r\n"), 0U) << text;
    EXPECT_NE(text.find(":\r\n\r\n\r\none\r\ntwo\r\n\r\nthree       four\r\n"), std::string::npos);
    EXPECT_EQ(g_Host.clock.Micros(), 200000) << "100 milliseconds twice";
}

TEST_F(ErrorTest, AbortStopsTheGameAndSilencesLaterReports)
{
    Stage_SetErrorChoice(HostErrorChoice::Abort);
    Error_Show("first", false);
    EXPECT_EQ(New_Room, ROOM_STOP);
    EXPECT_TRUE(g_ErrorPending);
    HostMessage message;
    ASSERT_TRUE(g_Host.window.NextMessage(&message));
    EXPECT_EQ(message.type, HostMessageType::Quit);

    const std::string last = Last();
    const size_t lines = Lines().size();
    Error_Show("second", false);
    EXPECT_EQ(Lines().size(), lines);
    EXPECT_EQ(Stage_ErrorTexts().size(), 1U);
    EXPECT_EQ(Last(), last);
}

TEST_F(ErrorTest, SwitchesAndOptionsDecideOnDialogAndAbort)
{
    const struct {
        bool noErrors, headless, allFatal, fatal;
        size_t dialogs;
        int32_t room;
    } cases[] = {
        {true, false, false, false, 0, ROOM_NONE}, {false, true, false, false, 0, ROOM_NONE},
        {true, false, true, false, 0, ROOM_STOP},  {false, false, true, false, 1, ROOM_STOP},
        {true, false, false, true, 0, ROOM_STOP},  {false, false, false, false, 1, ROOM_NONE},
    };
    for (const auto& one : cases) {
        Stage_Reset();
        Error_Init();
        New_Room = ROOM_NONE;
        Lines().clear();
        g_Switches.noErrors = one.noErrors;
        g_Switches.headless = one.headless;
        g_GameOptions.bits = one.allFatal ? OPTION_ALL_FATAL : 0U;
        Error_Show("words", one.fatal);
        EXPECT_EQ(Stage_ErrorTexts().size(), one.dialogs);
        EXPECT_EQ(New_Room, one.room);
        EXPECT_EQ(Reports().size(), 1U);
        EXPECT_NE(Last().find("words"), std::string::npos);
    }
}

TEST_F(ErrorTest, FatalErrorsLeaveOnceUnlessCaught)
{
    g_InCatch = true;
    Error_Fatal("lost %d", 5);
    EXPECT_TRUE(g_ErrorFlag);
    EXPECT_EQ(Exits(), 0);
    EXPECT_TRUE(Lines().empty());
    g_InCatch = false;
    Error_Fatal("lost %d of %s", 5, std::string(2000, 'x').c_str());
    EXPECT_EQ(Exits(), 1);
    EXPECT_NE(Last().find("FATAL ERROR in"), std::string::npos);
    EXPECT_NE(Last().find("lost 5 of x"), std::string::npos);
    EXPECT_LT(Last().size(), 1400U) << "the message is cut at 1,023 characters";
}

TEST_F(ErrorTest, UnderATryTheReportIsNotPrinted)
{
    g_InCatch = true;
    Error_Show("quiet", false);
    EXPECT_TRUE(Reports().empty());
    EXPECT_NE(Last().find("quiet"), std::string::npos);
}

// ---- consoles

TEST_F(ErrorTest, ConsolesWriteToTheirFilesLineByLine)
{
    const std::string out = testing::TempDir() + "console_out.txt";
    const std::string debug = testing::TempDir() + "console_debug.txt";
    g_Host.files.Delete(out.c_str());
    g_Host.files.Delete(debug.c_str());
    g_DebugConsole->Output("nobody hears %d\n", 1);
    EXPECT_TRUE(Lines().empty());
    Console_SetFiles(out.c_str(), debug.c_str());
    EXPECT_EQ(g_DebugConsole, g_ErrorConsole);
    g_DebugConsole->Output("Math..");
    g_ErrorConsole->Output("what!!!!\n");
    g_OutputConsole->Output("%s\n", std::string(5000, 'y').c_str());
    const auto content = [](const std::string& path) {
        uint32_t size = 0;
        uint8_t* bytes = g_Host.files.ReadAll(path.c_str(), &size);
        const std::string text(reinterpret_cast<char*>(bytes), size);
        MemoryManager::Free(bytes);
        return text;
    };
    EXPECT_EQ(content(debug), "Math..what!!!!\n");
    EXPECT_EQ(content(out), std::string(4095, 'y')) << "a line holds 4,096 bytes with its end";
    EXPECT_EQ(Lines().size(), 3U);
}

TEST_F(ErrorTest, AStreamConsoleGrows)
{
    TErrStreamConsole stream;
    std::string expected;
    for (int i = 0; i < 40; ++i) {
        const std::string piece(9000, static_cast<char>('a' + i % 26));
        stream.Output("%s", piece.c_str());
        expected += piece;
    }
    EXPECT_EQ(stream.Text(), expected);
    EXPECT_EQ(stream.Length(), expected.size());
    stream.Output("%s", std::string(20000, 'z').c_str());
    EXPECT_EQ(stream.Length(), expected.size() + 16383);
}

TEST_F(ErrorTest, LongDebugMessagesGoOutInPieces)
{
    const struct {
        size_t length;
        std::vector<size_t> pieces;
    } cases[] = {{0, {1}}, {1024, {1025}}, {1025, {1023, 3}}, {2047, {1023, 1023, 2}}};
    for (const auto& one : cases) {
        Lines().clear();
        Console_DebugMessage(std::string(one.length, 'm').c_str());
        std::vector<size_t> pieces;
        for (const std::string& line : Lines()) pieces.push_back(line.size());
        EXPECT_EQ(pieces, one.pieces);
        EXPECT_EQ(Lines().back().back(), '\n');
    }
}

}  // namespace
