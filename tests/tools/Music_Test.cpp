// Scores and the sound that is made of them.

#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <fstream>

#include "tools/music/Ogg.h"

namespace {

class MusicTest : public testing::Test {
protected:
    ~MusicTest() override { unlink(path_.c_str()); }
    music::Score Read(const std::string& text)
    {
        std::ofstream(path_) << text;
        return music::Score_Read(path_);
    }
    std::string Refusal(const std::string& text)
    {
        try {
            Read(text);
        } catch (const std::exception& error) {
            return std::string(error.what()).substr(path_.size());
        }
        return "";
    }
    std::string path_ = testing::TempDir() + "score" + std::to_string(getpid()) + ".txt";
};

const char* const kHead = "tempo 120\nvoice lead flute\nvoice harp harp pattern=1-5.\n";

TEST_F(MusicTest, TokensShareTheirBarAndPatternsFollowTheChords)
{
    const music::Score score = Read(std::string(kHead) +
                                    "part A\n"
                                    "chords | C Am |\n"
                                    "lead | c4 . e4 - | a4+c5 |\n"
                                    "part B\nwithout harp\nlead | eb5 f#3 |\n"
                                    "play A B A\n");
    EXPECT_EQ(score.beats, 4 * 5);
    const auto expect = [](const music::Note& note, int key, double start, double length) {
        EXPECT_EQ(note.key, key);
        EXPECT_DOUBLE_EQ(note.start, start);
        EXPECT_DOUBLE_EQ(note.length, length);
    };
    const std::vector<music::Note>& lead = score.voices[0].notes;
    ASSERT_EQ(lead.size(), 10U);
    expect(lead[0], 60, 0, 2);
    expect(lead[1], 64, 2, 1);
    expect(lead[2], 69, 4, 4);
    expect(lead[3], 72, 4, 4);
    expect(lead[4], 75, 8, 2);
    expect(lead[5], 54, 10, 2);
    expect(lead[6], 60, 12, 2);
    EXPECT_GT(lead[0].loudness, lead[1].loudness) << "the beginning of a bar is stressed";
    const std::vector<music::Note>& harp = score.voices[1].notes;
    ASSERT_EQ(harp.size(), 8U) << "it rests in B";
    expect(harp[0], 60, 0, 1);
    expect(harp[1], 76, 2, 2);  // the fifth of a minor, from the middle of the bar
    expect(harp[4], 60, 12, 1);
}

TEST_F(MusicTest, MistakesAreToldWithTheirLine)
{
    const std::string head = kHead;
    EXPECT_EQ(Refusal(head + "part A\nlead | h4 |\nplay A\n"),
              ":6: expected a note such as c4, eb5 or f#3, not h4");
    EXPECT_EQ(Refusal(head + "part A\nlead | c4\nplay A\n"), ":5: expected | behind the last bar");
    EXPECT_EQ(Refusal(head + "part A\nflut | c4 |\n"), ":5: no voice has the name flut");
    EXPECT_EQ(Refusal(head + "tempo fast\n"), ":4: expected a number, not fast");
    EXPECT_EQ(Refusal(head + "play A\n"), ":4: no part has the name A");
    EXPECT_THROW(music::Synth_Render(Read("voice a kazoo\npart A\na | c4 |\nplay A\n")),
                 std::runtime_error);
}

// Each score of the game: no clipping, nothing below hearing, no click where it loops, and
// the same bytes again.
TEST_F(MusicTest, TheScoresOfTheGameLoopCleanly)
{
    int scores = 0;
    for (const auto& entry : std::filesystem::directory_iterator(CONTENT_FOLDER "/music")) {
        SCOPED_TRACE(entry.path().filename());
        const music::Score score = music::Score_Read(entry.path());
        const music::Sound sound = music::Synth_Render(score, 16000);
        ++scores;
        const std::vector<float>& samples = sound.samples;
        double mean = 0;
        float peak = 0, step = 0;
        for (size_t i = 2; i < samples.size(); i += 2) {
            mean += static_cast<double>(samples[i]);
            peak = std::max(peak, std::fabs(samples[i]));
            step = std::max(step, std::fabs(samples[i] - samples[i - 2]));
        }
        EXPECT_LT(peak, 0.86F);
        EXPECT_GT(peak, 0.1F);
        EXPECT_LT(std::fabs(mean / static_cast<double>(sound.Frames())), 0.0005);
        EXPECT_LT(std::fabs(samples[0] - samples[samples.size() - 2]), step / 4);
        if (!score.once) {
            EXPECT_NEAR(static_cast<double>(sound.Frames()),
                        score.beats * 60 / score.tempo * sound.rate, 1);
        }
    }
    EXPECT_EQ(scores, 10);
    const music::Score signal = music::Score_Read(CONTENT_FOLDER "/music/xPause.txt");
    const std::vector<uint8_t> bytes = music::Ogg_Encode(music::Synth_Render(signal), 0.3F);
    EXPECT_EQ(bytes, music::Ogg_Encode(music::Synth_Render(signal), 0.3F));
    EXPECT_GT(bytes.size(), 5000U);
}

}  // namespace
