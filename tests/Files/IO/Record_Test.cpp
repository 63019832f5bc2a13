// A session written frame by frame, and played back.

#include <unistd.h>

#include <cstdio>
#include <fstream>
#include <iterator>

#include "tests/Files/IO/support_Input.h"

namespace {

constexpr size_t kRecordSize = 3034;

class RecordTest : public InputTest {
protected:
    void SetUp() override
    {
        InputTest::SetUp();
        path_ = testing::TempDir() + "record-" + std::to_string(getpid());
    }
    void TearDown() override
    {
        InputTest::TearDown();
        std::remove(path_.c_str());
    }
    void Open(bool playback)
    {
        IO_Quit();
        (playback ? g_Switches.playback : g_Switches.record) = path_.c_str();
        (playback ? g_Switches.record : g_Switches.playback).clear();
        IO_Init();
    }
    std::vector<uint8_t> File()
    {
        std::ifstream file(path_, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    }
    // What a script can see of a frame.
    std::string Seen()
    {
        return Key('A') + Key('B') + MouseButton(1) + " " + VariableText("keyboard_string") + " " +
               std::to_string(Variable("keyboard_key")) + " " +
               std::to_string(Number("mouse_wheel_up")) + " " +
               std::to_string(Number("window_mouse_get_x")) + " " +
               std::to_string(Number("display_mouse_get_y"));
    }
    std::vector<std::string> PlaySession()
    {
        std::vector<std::string> seen;
        for (int frame = 0; frame < 6; ++frame) {
            if (frame == 1) Stage_Key('A', true);
            if (frame == 2) Type(u"ol\u00e1");
            if (frame == 2) Button(1, true);
            if (frame == 3) Stage_Key('B', true), Stage_Key('B', false);
            if (frame == 4) Stage_SetMouse(-5, 77), Wheel(1);
            if (frame == 5) Stage_Key('A', false);
            Frame();
            seen.push_back(Seen());
        }
        return seen;
    }
    std::string path_;
};

TEST_F(RecordTest, PlaysBackTheSameFrames)
{
    Open(false);
    const std::vector<std::string> live = PlaySession();
    EXPECT_EQ(File().size(), 6 * kRecordSize) << "whole at every moment, not only when closed";
    Open(true);
    for (const std::string& expected : live) {
        Stage_Key('Z', true);  // live hands do not disturb a playback
        Stage_Key('Z', false);
        Frame();
        EXPECT_EQ(Seen(), expected);
        EXPECT_EQ(Key('Z'), "...");
    }
    Frame();
    EXPECT_EQ(Key('A'), "...");
    EXPECT_EQ(Key('Z'), "...") << "typed while the recording was shown";
    Stage_Key('Z', true);
    Frame();
    EXPECT_EQ(Key('Z'), "dp.") << "behind the recording play is live";
}

// Whatever a file says, the frame keeps to what messages could have made.
TEST_F(RecordTest, WildBytesComeIntoRange)
{
    std::ofstream(path_, std::ios::binary) << std::string(kRecordSize, '\xFE');
    g_Switches.record = path_ + "-too";
    IO_Quit();
    g_Switches.playback = path_.c_str();
    IO_Init();
    ASSERT_EQ(Lines().size(), 1U) << "nothing is recorded while a playback runs";
    Frame();
    EXPECT_EQ(Key(1) + Key('A') + MouseButton(1), "dprdprdpr");
    EXPECT_EQ(VariableText("keyboard_string").size(), 1024U * 3);
    EXPECT_EQ(Number("window_mouse_get_x"), -32768);
    EXPECT_FALSE(std::ifstream(path_ + "-too").good());
}

TEST_F(RecordTest, FieldsStandWhereTheyBelong)
{
    Open(false);
    Stage_Key('A', true);
    Type(u"x\u20ac");
    Stage_SetMouse(300, -2);
    Button(2, true);
    Frame();
    const std::vector<uint8_t> bytes = File();
    ASSERT_EQ(bytes.size(), kRecordSize);
    const auto word = [&](size_t at) {
        return int32_t(bytes[at] | bytes[at + 1] << 8 | bytes[at + 2] << 16 |
                       int32_t(uint32_t(bytes[at + 3]) << 24));
    };
    EXPECT_EQ(bytes[0] | bytes[1] << 8, 0x20AC);
    EXPECT_EQ(bytes[2] | bytes[3] << 8, 'x');
    EXPECT_EQ(word(2052), 'A') << "last key";
    EXPECT_EQ(word(2056), 'A') << "current key";
    EXPECT_EQ(bytes[2060 + 'A'], 1) << "down";
    EXPECT_EQ(bytes[2316 + 'A'], 0) << "released";
    EXPECT_EQ(bytes[2572 + 'A'], 1) << "pressed";
    EXPECT_EQ(word(2828), 2) << "last button of device 0";
    EXPECT_EQ(word(2868), 2) << "button of device 0";
    EXPECT_EQ(bytes[2908 + 1], 1) << "right button down";
    EXPECT_EQ(bytes[2938 + 1], 0) << "released";
    EXPECT_EQ(bytes[2968 + 1], 1) << "pressed";
    EXPECT_EQ(word(kRecordSize - 8), 300);
    EXPECT_EQ(word(kRecordSize - 4), -2);
}

TEST_F(RecordTest, BrokenPlaybackGoesOnLiveAndSaysSo)
{
    Open(false);
    PlaySession();
    std::vector<uint8_t> bytes = File();
    bytes.resize(kRecordSize + 100);
    std::ofstream(path_, std::ios::binary)
        .write(reinterpret_cast<const char*>(bytes.data()), std::streamsize(bytes.size()));
    Open(true);
    Frame();
    EXPECT_TRUE(Lines().empty());
    Stage_Key('Z', true);
    Frame();
    ASSERT_EQ(Lines().size(), 1U);
    EXPECT_NE(Lines()[0].find("playback"), std::string::npos);
    Frame();
    EXPECT_EQ(Lines().size(), 1U);
    EXPECT_TRUE(Check('Z'));

    path_ += "-missing";
    Open(true);
    ASSERT_EQ(Lines().size(), 2U);
    EXPECT_NE(Lines()[1].find(path_), std::string::npos);
    Stage_Key('Y', true);
    Frame();
    EXPECT_TRUE(Check('Y'));
}

}  // namespace
