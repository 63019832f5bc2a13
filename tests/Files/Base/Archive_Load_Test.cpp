// Finding and loading an archive: what is refused, what the options say, and what
// the loaders make of the records.

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstring>
#include <filesystem>
#include <fstream>

#include "Files/Base/Archive_Main.h"
#include "Files/Base/Archive_Writer.h"
#include "Files/Base/CRC.h"
#include "Files/Base/Console.h"
#include "Files/Base/VXObjectBase.h"
#include "Files/Font/CFontSW.h"
#include "Files/Function/Function_Registry.h"
#include "Files/Graphics/Draw_State.h"
#include "Files/Graphics/Window.h"
#include "Files/Object/Instance_Main.h"
#include "Files/Object/Object_Main.h"
#include "Files/Path/Path_Main.h"
#include "Files/Room/Room_Main.h"
#include "Files/Run/Run_Modules.h"
#include "Files/Script/Script_Main.h"
#include "Files/Sound/Audio_Main.h"
#include "Files/TimeLine/TimeLine_Main.h"
#include "Files/Variable/Variable_BuiltIn.h"
#include "Host/Host_Stage.h"
#include "tests/Files/Base/Archive_Sample.h"

namespace {

std::string g_ran;  // names of the codes that ran

void RunA(CInstance*, CInstance*)
{
    g_ran += "A";
}
void RunB(CInstance*, CInstance*)
{
    g_ran += "B";
}
const CodeRow kRows[] = {{"vxl_Room_a_Create", RunA}, {"vxl_Room_b_Create", RunB}};

// A small archive without pages: nothing here needs a device.
archive::Content Content()
{
    archive::Content content = archive::SampleContent();
    content.pages.clear();
    content.globalCode = {1, 0, 1};
    return content;
}

class ArchiveLoad : public ::testing::Test {
protected:
    void SetUp() override
    {
        folder_ =
            std::filesystem::temp_directory_path() / ("archive-load-" + std::to_string(getpid()));
        std::filesystem::create_directories(folder_);
        Host_UseStage();
        Stage_Reset();
        Stage_SetFolder((folder_.string() + "/").c_str());
        g_Switches = Switches{};
        RunState_Reset();
        Console_Init();
        Console_SetSink(
            [](void* self, const char* text) { static_cast<ArchiveLoad*>(self)->console_ += text; },
            this);
        Window_Init();
        Archive_Init();
        g_RunnerData = RunnerData{};
        InitGameSystem();
        g_ran.clear();
        data_.codeTable = kRows;
        data_.codeCount = 2;
    }
    void TearDown() override
    {
        Finish();
        g_RunnerData = RunnerData{};
        Console_SetSink(nullptr, nullptr);
        Stage_Quit();
        std::filesystem::remove_all(folder_);
    }

    bool Find(const std::vector<uint8_t>& bytes)
    {
        data_.archive = bytes.data();
        data_.archiveSize = static_cast<uint32_t>(bytes.size());
        return RunnerLoadGame(data_);
    }
    bool Load(const std::vector<uint8_t>& bytes)
    {
        return Find(bytes) && LoadGameHeader(g_ArchiveBase, g_ArchiveSize) &&
               LoadGameData(g_ArchiveBase, g_ArchiveSize);
    }
    void WriteFile(const char* name, const std::string& text)
    {
        std::ofstream(folder_ / name, std::ios::binary) << text;
    }
    std::string Path(const char* name) const { return (folder_ / name).string(); }
    std::string LastBox() const
    {
        return Stage_MessageBoxes().empty() ? "" : Stage_MessageBoxes().back().c_str();
    }

    std::filesystem::path folder_;
    std::string console_;
    RunnerData data_;
};

TEST_F(ArchiveLoad, WithoutAnArchiveThereIsAMessage)
{
    EXPECT_FALSE(RunnerLoadGame(data_));
    EXPECT_NE(LastBox().find("Unable to find game!!: " + Path("data.win")), std::string::npos)
        << LastBox();
    g_Switches.game = Path("other.win").c_str();
    EXPECT_FALSE(RunnerLoadGame(data_));
    EXPECT_NE(console_.find("FAILED to load File " + Path("other.win") + "\n"), std::string::npos);
    EXPECT_NE(LastBox().find("Unable to find game!!: " + Path("other.win")), std::string::npos);
}

TEST_F(ArchiveLoad, ADamagedArchiveIsRefusedBeforeAnythingIsRead)
{
    std::vector<uint8_t> bytes = archive::Write(Content());
    bytes.pop_back();
    EXPECT_FALSE(Find(bytes));
    EXPECT_NE(LastBox().find("chunk FORM at offset 0: "), std::string::npos) << LastBox();
    EXPECT_EQ(g_ArchiveBase, nullptr);

    WriteFile("data.win", "FORM, or so it seems");
    g_Switches.game = Path("data.win").c_str();
    EXPECT_FALSE(RunnerLoadGame(RunnerData{}));
    EXPECT_NE(LastBox().find(Path("data.win") + "\nchunk FORM at offset 0: "), std::string::npos);
}

TEST_F(ArchiveLoad, AFileIsLoadedAndGivesTheWorkingDirectory)
{
    const std::vector<uint8_t> bytes = archive::Write(Content());
    WriteFile("data.win", std::string(bytes.begin(), bytes.end()));
    g_Switches.game = Path("data.win").c_str();
    ASSERT_TRUE(RunnerLoadGame(data_)) << LastBox();
    EXPECT_EQ(g_WorkingDirectory, (folder_.string() + "/").c_str());
    EXPECT_EQ(g_ArchiveSize, bytes.size());
    EXPECT_TRUE(LoadGameHeader(g_ArchiveBase, g_ArchiveSize));
    EXPECT_TRUE(LoadGameData(g_ArchiveBase, g_ArchiveSize));
    EXPECT_EQ(Room_Count(), 2);
}

TEST_F(ArchiveLoad, LoadingLeavesTheLinkedBytesAsTheyWere)
{
    const std::vector<uint8_t> bytes = archive::Write(Content()), copy = bytes;
    ASSERT_TRUE(Load(bytes)) << LastBox();
    EXPECT_EQ(bytes, copy);
    EXPECT_NE(std::memcmp(g_ArchiveBase, copy.data(), copy.size()), 0)
        << "rooms write the numbers of code objects";
}

TEST_F(ArchiveLoad, AStoredSizeThatIsNotTheRealOneReadsNothing)
{
    std::vector<uint8_t> bytes = archive::Write(Content());
    bytes.push_back(0);
    EXPECT_TRUE(LoadGameHeader(bytes.data(), static_cast<uint32_t>(bytes.size())));
    EXPECT_TRUE(LoadGameData(bytes.data(), static_cast<uint32_t>(bytes.size())));
    EXPECT_EQ(g_GameHeader.gameId, 0U);
    EXPECT_EQ(Room_Count(), 0);
    EXPECT_EQ(Room_OrderCount(), 0);
}

TEST_F(ArchiveLoad, AnUnknownChunkFailsTheLoadAndAnEmptyOneDoesNot)
{
    std::vector<uint8_t> bytes = archive::Write(Content());
    const auto rename = [&bytes](const char* from, const char* to) {
        for (size_t at = 8; at + 8 < bytes.size();) {
            uint32_t size;
            std::memcpy(&size, bytes.data() + at + 4, 4);
            if (std::memcmp(bytes.data() + at, from, 4) == 0) std::memcpy(&bytes[at], to, 4);
            at += 8 + size;
        }
    };
    rename("DAFL", "NONE");
    ASSERT_TRUE(Load(bytes)) << LastBox();
    rename("SHDR", "WHAT");
    EXPECT_FALSE(Load(bytes));
    EXPECT_NE(console_.find("unknown Chunk WHAT:4\n"), std::string::npos) << console_;
}

TEST_F(ArchiveLoad, TheHeaderReachesItsReaders)
{
    g_Switches.inAWindow = true;
    ASSERT_TRUE(Load(archive::Write(Content()))) << LastBox();
    EXPECT_STREQ(g_GameHeader.name.c_str(), "SampleName");
    EXPECT_STREQ(g_Display.caption.c_str(), "Sample caption");
    EXPECT_EQ(g_Display.windowWidth, 640);
    EXPECT_EQ(g_GameHeader.infoFlags, 0x8B8U) << "-inawindow clears the full-screen bit";
    EXPECT_FALSE(g_Display.fullscreen);
    EXPECT_EQ(lastInstanceId, 100003);
    EXPECT_EQ(g_LastTileId, 10000002);
    EXPECT_EQ(Room_OrderAt(0), 1);
    EXPECT_EQ(Room_Next(1), 0);
    EXPECT_EQ(Room_Next(0), -1);
}

TEST_F(ArchiveLoad, OptionsAndConstants)
{
    archive::Content content = Content();
    content.options.constants = {{"@@SleepMargin", "3"}, {"@@DrawColour", "4294967295"},
                                 {"limite", "42"},       {"titulo", "4 caixas"},
                                 {"VersionMajor", "2"},  {"VersionMinor", "7"}};
    ASSERT_TRUE(Load(archive::Write(content))) << LastBox();
    EXPECT_EQ(g_GameOptions.bits, 0xCC7A17U);
    EXPECT_EQ(g_Display.windowColour, 0xFF112233U);
    EXPECT_EQ(g_SleepMargin, 3);
    EXPECT_EQ(g_StartDrawColour, 0xFFFFFFFFU);
    EXPECT_EQ(drawColourARGB, 0xFFFFFFFFU);
    EXPECT_EQ(g_GameOptions.versionMajor, 2);
    EXPECT_EQ(g_GameOptions.versionMinor, 7);
    RValue value;
    ASSERT_TRUE(Constant_Find("limite", &value));
    EXPECT_EQ(REAL_RValue(&value), 42.0);
    ASSERT_TRUE(Constant_Find("titulo", &value));
    EXPECT_STREQ(VXGetText(&value), "4 caixas");
    FREE_RValue(&value);
    EXPECT_FALSE(Constant_Find("@@SleepMargin", &value));
}

TEST_F(ArchiveLoad, OtherFormsOfTheOptionBlock)
{
    ArchiveOldOptions old{};
    old.bits0To4[2] = 1;    // the new audio system
    old.bits15To16[0] = 1;  // freeze
    old.bits18To23[3] = 1;  // every error is fatal
    old.windowScale = -1;
    old.windowColour = 0x445566;
    old.loadAlpha = 200;
    Archive_ReadOptions(reinterpret_cast<const uint8_t*>(&old), sizeof old);
    EXPECT_EQ(g_GameOptions.bits, uint32_t{OPTION_NEW_AUDIO | OPTION_FREEZE | OPTION_ALL_FATAL});
    EXPECT_EQ(g_GameOptions.windowColour, 0x445566U);
    EXPECT_EQ(g_GameOptions.loadAlpha, 200U);

    ArchiveOptions other{};
    other.marker = kOptionMarker;
    other.version = kOptionVersion + 1;
    other.bits = 1;
    Archive_ReadOptions(reinterpret_cast<const uint8_t*>(&other), sizeof other);
    EXPECT_NE(g_GameOptions.bits, 1U) << "a block of another version is refused";
}

TEST_F(ArchiveLoad, OptionsIniSetsWhatTheCommandLineDidNot)
{
    const std::vector<uint8_t> bytes = archive::Write(Content());
    WriteFile("options.ini",
              "[Windows]\nCreateTexturesOnDemand=1\nVertexBufferMethod=2\n"
              "AlternateSyncMethod=1\nSleepMargin=-4\n"
              "[DEFAULT]\nOrientPortrait=False\nOrientLandscape=True\nTrace=1\n"
              "[IO_VIRTUAL_BUTTONS]\nNUM_BUTTONS=2\n");
    ASSERT_TRUE(Find(bytes));
    EXPECT_TRUE(g_IniOptions.createTexturesOnDemand);
    EXPECT_EQ(g_IniOptions.vertexBufferMethod, 2);
    EXPECT_TRUE(g_ManualVSync);
    EXPECT_EQ(g_SleepMargin, 0) << "values below 1 are stored as 0";
    EXPECT_TRUE(g_IniOptions.orientLandscape);
    EXPECT_FALSE(g_IniOptions.orientPortrait);
    EXPECT_TRUE(g_Switches.trace);
    EXPECT_FALSE(g_Switches.debug);
    EXPECT_EQ(Archive_OptionsText().ReadInteger("IO_VIRTUAL_BUTTONS", "NUM_BUTTONS", 0), 2);

    RunState_Reset();
    g_Switches.sleepMarginGiven = g_Switches.manualVSyncGiven = g_Switches.noVb = true;
    g_SleepMargin = 5;
    ASSERT_TRUE(Find(bytes));
    EXPECT_EQ(g_SleepMargin, 5);
    EXPECT_FALSE(g_ManualVSync);
    EXPECT_EQ(g_IniOptions.vertexBufferMethod, -1);
}

TEST_F(ArchiveLoad, OptionsIniTurnsTheDebugOutputOn)
{
    WriteFile("options.ini", "[DEFAULT]\nDebug=1\n");
    ASSERT_TRUE(Find(archive::Write(Content())));
    EXPECT_TRUE(g_Switches.debug);
    g_DebugConsole->Output("a trace line\n");
    EXPECT_NE(console_.find("a trace line\n"), std::string::npos);
}

TEST_F(ArchiveLoad, OptionsThatAreNoIniFileChangeNothing)
{
    WriteFile("options.ini", "SleepMargin=4\nno section at all\n");
    ASSERT_TRUE(Find(archive::Write(Content())));
    EXPECT_EQ(g_SleepMargin, 10);
    EXPECT_EQ(std::count(console_.begin(), console_.end(), '\n'), 1) << console_;
    EXPECT_NE(console_.find("options.ini"), std::string::npos);
}

TEST_F(ArchiveLoad, SlotsResolveToVariablesBuiltInsAndScripts)
{
    SlotRecord var[] = {{"moveCaixa", -1}, {"portaoX", -1}, {"x", -1}, {"noSuchName", -1}};
    SlotRecord* vars[] = {&var[0], &var[1], &var[2], &var[3], nullptr};
    SlotRecord function[] = {{"floor", -1}, {"scr_two", -1}, {"noSuchFunction", 5}};
    SlotRecord* functions[] = {&function[0], &function[1], &function[2], nullptr};
    data_.varSlots = vars;
    data_.funcSlots = functions;
    data_.globalVarCount = data_.instanceVarCount = 2;
    for (int run = 0; run < 2; ++run) {
        ASSERT_TRUE(Load(archive::Write(Content()))) << LastBox();
        EXPECT_EQ(var[0].id, 100000);
        EXPECT_EQ(var[1].id, 100001);
        EXPECT_EQ(var[2].id, Variable_BuiltIn_Find("x"));
        EXPECT_GE(var[2].id, 0);
        EXPECT_EQ(var[3].id, -1);
        EXPECT_EQ(function[0].id, Function_Find("floor"));
        EXPECT_EQ(function[1].id, kScriptIdBase + 1);
        EXPECT_EQ(function[2].id, -1);
        ASSERT_NE(g_Global, nullptr);
        EXPECT_EQ(g_Global->SlotCount(), 2);
        EXPECT_EQ(g_Global->Slots()[1].kind, uint32_t{VALUE_UNSET});
    }
}

TEST_F(ArchiveLoad, ScriptsAndTheCodeThatRunsAtTheStart)
{
    archive::Content content = Content();
    content.scripts.insert(content.scripts.begin(), archive::Script{});
    ASSERT_TRUE(Load(archive::Write(content))) << LastBox();
    EXPECT_EQ(Script_Count(), 3);
    EXPECT_EQ(Script_Data(0), nullptr) << "an empty slot";
    EXPECT_EQ(Script_Find("scr_two"), 2);
    EXPECT_STREQ(Script_Name(1), "scr_one");
    ASSERT_NE(Script_Data(1), nullptr);
    EXPECT_EQ(Script_Data(1)->index, -1) << "row 5 is outside the code table";
    EXPECT_TRUE(Script_Prepare());
    EXPECT_EQ(g_ran, "BAB");
}

TEST_F(ArchiveLoad, SoundsTakeTheirMarksAndWaves)
{
    archive::Content content = Content();
    const uint32_t classes[] = {100, 101, 102, 103, 1, 0};
    content.sounds.clear();
    for (const uint32_t flags : classes) {
        archive::Sound sound;
        sound.name = "x" + std::to_string(flags);
        sound.flags = flags;
        sound.audioIndex = flags == 101 ? 1 : flags == 102 ? 7 : -1;
        content.sounds.push_back(sound);
    }
    content.sounds.emplace_back();
    ASSERT_TRUE(Load(archive::Write(content))) << LastBox();
    ASSERT_TRUE(Sound_Prepare());
    const bool marks[][3] = {{true, true, false},  {false, false, false}, {false, true, false},
                             {false, false, true}, {true, true, false},   {false, false, false}};
    for (int i = 0; i < 6; ++i) {
        const AudioSound* sound = Audio_Data(i);
        ASSERT_NE(sound, nullptr);
        EXPECT_EQ(sound->streamed, marks[i][0]) << i;
        EXPECT_EQ(sound->compressed, marks[i][1]) << i;
        EXPECT_EQ(sound->decode_on_load, marks[i][2]) << i;
    }
    EXPECT_EQ(Audio_Data(1)->dataSize, 5U);
    EXPECT_EQ(std::memcmp(Audio_Data(1)->data, "RIFF2", 5), 0);
    EXPECT_EQ(Audio_Data(2)->data, nullptr) << "there is no wave 7";
    EXPECT_EQ(Audio_Data(6), nullptr);
    EXPECT_EQ(Audio_Find("x101"), 1);
}

TEST_F(ArchiveLoad, FontsMeasureTheirGlyphsAndReadTheirWord)
{
    archive::Content content = Content();
    content.fonts.resize(2);
    content.fonts.push_back(content.fonts[0]);
    content.fonts[2].name = "fPlain";
    content.fonts[2].antialias = 0;
    ASSERT_TRUE(Load(archive::Write(content))) << LastBox();
    EXPECT_EQ(Font_Count(), 3);
    const CFontSW* font = Font_Data(Font_Find("fSmall"));
    ASSERT_NE(font, nullptr);
    EXPECT_EQ(font->height, 9) << "the largest glyph height";
    EXPECT_EQ(font->first, 32);
    EXPECT_EQ(font->charset, 3);
    EXPECT_EQ(font->antialias, 1) << "stored plus 1";
    EXPECT_EQ(font->textureWidth, 52);
    EXPECT_EQ(font->textureHeight, 53);
    EXPECT_EQ(font->glyphs[1]->shift, 11);
    EXPECT_EQ(Font_Data(2)->antialias, CFontSW().antialias);
    EXPECT_EQ(Font_Data(1), nullptr);
}

TEST_F(ArchiveLoad, PathsAndTimelines)
{
    std::vector<uint8_t> bytes = archive::SampleWithTimeline();
    ASSERT_TRUE(Load(bytes)) << LastBox();
    EXPECT_EQ(Path_Count(), 2);
    EXPECT_EQ(Path_Data(0), nullptr);
    const CPath* path = Path_Data(Path_Find("scr_one"));
    ASSERT_NE(path, nullptr);
    EXPECT_TRUE(path->smooth);
    EXPECT_TRUE(path->closed);
    EXPECT_EQ(path->precision, 4);
    ASSERT_EQ(path->points.size(), 2U);
    EXPECT_EQ(path->points[1].x, -3.0F);
    EXPECT_EQ(path->points[1].y, 4.5F);
    EXPECT_EQ(path->points[1].speed, 50.0F);

    const CTimeline* timeline = TimeLine_Data(0);
    ASSERT_NE(timeline, nullptr);
    ASSERT_EQ(timeline->moments.size(), 1U);
    EXPECT_EQ(timeline->moments[0].time, 30);
    EXPECT_EQ(timeline->moments[0].code->index, 1);

    // One point more than the chunk holds.
    const uint32_t points = 3;
    std::memcpy(&bytes[archive::BodyOf(bytes, "PATH") + 28], &points, 4);
    EXPECT_FALSE(Find(bytes));
    EXPECT_NE(LastBox().find("chunk PATH at offset "), std::string::npos) << LastBox();
}

TEST_F(ArchiveLoad, TheDebugCompanionIsWalked)
{
    const std::vector<uint8_t> bytes = archive::Write(Content());
    WriteFile("marlowick.vxdebug", std::string("FORM\x1C\0\0\0DBGI\4\0\0\0abcd"
                                               "XXXX\0\0\0\0INST\0\0\0\0",
                                               36));
    g_DebugConsole = g_ErrorConsole;
    EXPECT_TRUE(Find(bytes));
    const std::string walked = "Process Chunk: DBGI   4\n";
    EXPECT_NE(console_.find(walked), std::string::npos) << console_;
    EXPECT_EQ(console_.find("XXXX"), std::string::npos);
    console_.clear();
    WriteFile("marlowick.vxdebug", "FORM, or so it seems");
    EXPECT_TRUE(Find(bytes)) << "a companion that is damaged is passed over";
    EXPECT_EQ(console_.find("Process Chunk"), std::string::npos);
}

TEST(Crc, CheckValueOfTheStandard)
{
    CRC_Init();
    EXPECT_EQ(CRC_Of("123456789", 9), 0xCBF43926U);
    EXPECT_EQ(CRC_Of("6789", 4, CRC_Of("12345", 5)), 0xCBF43926U);
}

}  // namespace
