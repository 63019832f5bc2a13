// Sounds as a script plays them, streams as they are heard, and the music of the rooms.

#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <set>

#include "Files/Base/Archive_Writer.h"
#include "Files/Sound/Audio_Main.h"
#include "Files/Sound/Audio_Voices.h"
#include "Host/Host_Stage_Audio.h"
#include "Names.h"
#include "tests/support/Stage.h"

using namespace names;

namespace {

const char* const kMusic[] = {"xCapa",  "xMundo1", "xFase1", "xFase2", "xFase3",
                              "xFase4", "xFase5",  "xFase6", "xFase7"};

Stage::Options WithSound(const std::string& tone = "short.ogg")
{
    Stage::Options options;
    options.sound = true;
    options.switches.push_back("-debugoutput");
    options.switches.push_back("/dev/null");
    for (const char* name : kMusic)
        options.beside.emplace_back(std::string(name) + ".ogg",
                                    std::string(TONES_FOLDER "/") + tone);
    return options;
}

class Sounds : public testing::Test {
protected:
    explicit Sounds(const Stage::Options& options = WithSound()) : stage(options)
    {
        stage.frames(1);
    }
    bool Told(const std::string& text) const
    {
        return stage.console().find(text) != std::string::npos;
    }
    // What was heard of one channel since Stage_KeepSound, from its first sample on.
    static std::vector<int> Heard(size_t channel)
    {
        std::vector<int> heard;
        const VxVector<int16_t>& sound = Stage_Sound();
        for (size_t i = channel; i < sound.size(); i += 2)
            if (!heard.empty() || sound[i] != 0) heard.push_back(sound[i]);
        return heard;
    }
    Stage stage;
};

TEST_F(Sounds, AnEffectIsHeardAndEnds)
{
    Stage_KeepSound(true);
    const int32_t voice = Audio_PlaySound(xFimFase.index, 1, false);
    EXPECT_GT(voice, 400000);
    EXPECT_TRUE(Audio_IsPlaying(voice));
    EXPECT_TRUE(Audio_IsPlaying(xFimFase.index));
    EXPECT_FALSE(Audio_IsPlaying(xClick.index));
    EXPECT_STREQ(Audio_SoundOf(voice)->name, "xFimFase");
    const int frames = static_cast<int>(Audio_Length(xFimFase.index) * 30);
    stage.frames(frames - 2);
    EXPECT_TRUE(Audio_IsPlaying(voice));
    stage.frames(6);
    EXPECT_FALSE(Audio_IsPlaying(voice));
    EXPECT_FALSE(Audio_IsPlaying(xFimFase.index));
    const std::vector<int> heard = Heard(0);
    EXPECT_GT(*std::max_element(heard.begin(), heard.end()), 3000);
    EXPECT_EQ(heard, Heard(1)) << "from the middle, both sides are alike";
    // The second one is a voice of its own.
    const int32_t next = Audio_PlaySound(xFimFase.index, 1, false);
    EXPECT_GT(next, voice);
    EXPECT_FALSE(Audio_IsPlaying(voice));
}

TEST_F(Sounds, AStopIsSilentAtOnceAndOverTwoTicksLater)
{
    const int32_t voice = Audio_PlaySound(xFimFase.index, 1, true);
    stage.frames(2);
    Audio_StopAll();
    EXPECT_FALSE(Audio_IsPlaying(voice)) << "the voice's number is forgotten at once";
    EXPECT_TRUE(Audio_IsPlaying(xFimFase.index));
    Stage_KeepSound(true);
    stage.frames(1);
    EXPECT_TRUE(Audio_IsPlaying(xFimFase.index));
    stage.frames(1);
    EXPECT_FALSE(Audio_IsPlaying(xFimFase.index));
    EXPECT_TRUE(Heard(0).empty());
}

TEST_F(Sounds, GainsChangeAtOnceOrInEqualSteps)
{
    ASSERT_EQ(static_cast<int>(room_speed), 30);
    const int32_t voice = Audio_PlaySound(xCapa.index, 1, true);
    Audio_SetGain(xCapa.index, 2.5, 0);
    EXPECT_DOUBLE_EQ(Audio_GetGain(xCapa.index), 2.5) << "a gain set directly may lie above 1";
    Audio_SetGain(xCapa.index, 0, 0);
    Audio_SetGain(xCapa.index, 1, 1000);
    for (int tick = 1; tick <= 30; ++tick) {
        stage.frames(1);
        ASSERT_NEAR(Audio_GetGain(xCapa.index), tick / 30.0, 1e-5) << tick;
    }
    stage.frames(5);
    EXPECT_NEAR(Audio_GetGain(xCapa.index), 1, 1e-5);
    Audio_SetGain(xCapa.index, 3, 66);
    stage.frames(3);
    EXPECT_DOUBLE_EQ(Audio_GetGain(xCapa.index), 1) << "a fade ends at 1";

    Audio_SetGain(xCapa.index, 0.5, 0);
    Audio_SetGain(voice, 0.5, 0);
    ALfloat heard = 0;
    alGetSourcef(g_Sources[0], AL_GAIN, &heard);
    EXPECT_FLOAT_EQ(heard, 0.25F) << "voice and sound together";
    Audio_SetGain(voice, -4, 0);
    EXPECT_DOUBLE_EQ(Audio_GetGain(voice), 0);
}

TEST_F(Sounds, APauseHoldsEveryVoiceAndNewOnesPlay)
{
    const int32_t effect = Audio_PlaySound(xFimFase.index, 1, false);
    const int32_t music = Audio_PlaySound(xCapa.index, 1, true);
    stage.frames(3);
    Audio_PauseAll();
    EXPECT_TRUE(Audio_IsPaused(xCapa.index) && Audio_IsPaused(effect));
    stage.frames(100);
    EXPECT_TRUE(Audio_IsPlaying(effect) && Audio_IsPlaying(music)) << "a paused voice plays on";
    const double where = Audio_TrackPosition(effect);
    EXPECT_GT(where, 0.05);
    EXPECT_LT(where, 0.2);
    Stage_KeepSound(true);
    const int32_t click = Audio_PlaySound(xClick.index, 1, false);
    EXPECT_FALSE(Audio_IsPaused(click));
    stage.frames(4);
    EXPECT_FALSE(Heard(0).empty());
    Audio_ResumeAll();
    stage.frames(2);
    EXPECT_FALSE(Audio_IsPaused(music));
    EXPECT_GT(Audio_TrackPosition(effect), where);
}

TEST_F(Sounds, AFullPoolGivesTheLeastImportantVoiceAway)
{
    std::vector<int32_t> voices;
    for (int i = 0; i < kAudioSources; ++i)
        voices.push_back(Audio_PlaySound(xFimFase.index, i == 70 || i == 90 ? 5 : 20, true));
    EXPECT_EQ(std::set<int32_t>(voices.begin(), voices.end()).size(), 128U);
    EXPECT_EQ(Audio_PlaySound(xClick.index, 5, false), -1) << "no voice is less important";
    EXPECT_TRUE(Audio_IsPlaying(voices[70]));
    EXPECT_GT(Audio_PlaySound(xFimFase.index, 10, true), voices[127]);
    EXPECT_FALSE(Audio_IsPlaying(voices[70])) << "the first of the least";
    EXPECT_TRUE(Audio_IsPlaying(voices[90]));
    Audio_SetChannels(1);
    EXPECT_TRUE(Told("Audio setting channel count to 2\n"));
    for (const int32_t voice : voices) EXPECT_FALSE(Audio_IsPlaying(voice));
    EXPECT_GT(Audio_PlaySound(xClick.index, 1, false), 0);
}

TEST_F(Sounds, PitchAndPlacesOfASound)
{
    Audio_SetPitch(xFimFase.index, 1000);
    EXPECT_DOUBLE_EQ(Audio_GetPitch(xFimFase.index), 256);
    Audio_SetPitch(xFimFase.index, 2);
    const double length = Audio_Length(xFimFase.index);
    Audio_SetTrackPosition(xFimFase.index, length + 1);
    EXPECT_DOUBLE_EQ(Audio_TrackPosition(xFimFase.index), 0) << "beyond its end";
    Audio_SetTrackPosition(xFimFase.index, length / 2);
    const int32_t voice = Audio_PlaySound(xFimFase.index, 1, false);
    EXPECT_NEAR(Audio_TrackPosition(voice), length / 2, 0.001);
    stage.frames(static_cast<int>(length / 4 * 30) + 3);
    EXPECT_FALSE(Audio_IsPlaying(voice)) << "half of it, at twice the speed";
    EXPECT_EQ(Audio_PlaySound(99, 1, false), 0);
    EXPECT_TRUE(Told("Error: no sound exists for soundid 99\n"));
}

// ---- streams

// The same samples in each round: 1000 frames, less than one of its buffers.
TEST_F(Sounds, AShortStreamLoopsWithoutAGap)
{
    Audio_StopAll();
    stage.frames(4);
    Stage_KeepSound(true);
    const int32_t voice = Audio_PlaySound(xFase1.index, 1, true);
    stage.frames(60);
    const std::vector<int> left = Heard(0), right = Heard(1);
    ASSERT_GT(left.size(), 50000U);
    for (size_t i = 1000; i < left.size(); ++i) ASSERT_EQ(left[i], left[i - 1000]) << i;
    // A sine of 480 Hz at half of full loudness on the left, a quarter on the right.
    EXPECT_NEAR(*std::max_element(left.begin(), left.end()), 0.5 * 0.7071 * 32768, 500);
    EXPECT_NEAR(*std::max_element(right.begin(), right.end()), 0.25 * 0.7071 * 32768, 500);
    EXPECT_LT(Audio_TrackPosition(voice), 1000.0 / 48000);
    EXPECT_NEAR(Audio_Length(voice), 1000.0 / 48000, 1e-6);
}

class LongSounds : public Sounds {
protected:
    LongSounds() : Sounds(WithSound("long.ogg"))
    {
        Audio_StopAll();
        stage.frames(4);
    }
};

TEST_F(LongSounds, AStreamPlaysEveryFrameOnceAndEnds)
{
    Stage_KeepSound(true);
    const int32_t voice = Audio_PlaySound(xFase1.index, 1, false);
    stage.frames(10);
    EXPECT_TRUE(Audio_IsPlaying(voice));
    EXPECT_NEAR(Audio_TrackPosition(voice), 0.3, 0.07);
    stage.frames(14);
    EXPECT_FALSE(Audio_IsPlaying(voice));
    EXPECT_FALSE(Audio_IsPlaying(xFase1.index));
    std::vector<int> heard = Heard(0);
    while (!heard.empty() && heard.back() == 0) heard.pop_back();
    EXPECT_NEAR(static_cast<double>(heard.size()), 30000, 60) << "but for silent samples";
    // No piece is missing or doubled: the sine never jumps.
    const double turn = 2 * M_PI * 480 / 48000;
    for (size_t i = 1; i < heard.size(); ++i)
        ASSERT_LT(std::abs(heard[i] - heard[i - 1]), 0.5 * 0.7071 * 32768 * turn * 1.3) << i;
}

TEST_F(LongSounds, AStreamIsSoughtStoppedAndBegunAnew)
{
    const int32_t voice = Audio_PlaySound(xFase1.index, 1, false);
    stage.frames(2);
    Audio_SetTrackPosition(voice, 0.5);
    stage.frames(2);
    EXPECT_NEAR(Audio_TrackPosition(voice), 0.5 + 1.0 / 30, 0.04);
    stage.frames(6);
    EXPECT_FALSE(Audio_IsPlaying(voice));

    const int32_t first = Audio_PlaySound(xFase1.index, 1, true);
    stage.frames(3);
    Audio_StopSound(first);
    EXPECT_TRUE(Audio_IsPlaying(xFase1.index)) << "until its stream has ended";
    const int32_t second = Audio_PlaySound(xFase1.index, 1, true);
    stage.frames(1);
    EXPECT_TRUE(Audio_IsPlaying(second));
    stage.frames(8);
    EXPECT_FALSE(Audio_IsPlaying(first));
    EXPECT_TRUE(Audio_IsPlaying(second)) << "the stop is the first one's alone";
    Audio_StopAll();
    stage.frames(6);
    EXPECT_FALSE(Audio_IsPlaying(xFase1.index));
    // Stopped before it began, and the voice comes free all the same.
    Audio_PlaySound(xFase1.index, 1, true);
    Audio_HardStop(g_Voices[0]);
    stage.frames(3);
    EXPECT_FALSE(g_Voices[0]->active);
}

TEST(SoundFiles, WhatIsMissingOrBrokenIsToldAndStaysSilent)
{
    Stage::Options options = WithSound();
    options.beside.clear();
    const std::string broken = testing::TempDir() + "broken" + std::to_string(getpid()) + ".ogg";
    std::ofstream(broken) << "no music at all";
    options.beside.emplace_back("xMundo1.ogg", broken);
    archive::Content content;
    std::string fault;
    ASSERT_TRUE(archive::Read(Stage::game_archive(), &content, &fault)) << fault;
    content.waves[0].resize(60);  // xClick
    options.archiveBytes = archive::Write(content);
    Stage stage(options);
    stage.frames(1);
    EXPECT_GT(Audio_PlaySound(xFase1.index, 1, true), 400000);
    EXPECT_NE(
        stage.console().find("COggAudio::PlaySound- could not find audio file for sound xFase1\n"),
        std::string::npos);
    EXPECT_FALSE(Audio_IsPlaying(xFase1.index));
    const int32_t voice = Audio_PlaySound(xMundo1.index, 1, true);
    stage.frames(3);
    EXPECT_FALSE(Audio_IsPlaying(voice));
    EXPECT_NE(stage.console().find(": ov_open error -"), std::string::npos);
    unlink(broken.c_str());
    Audio_PlaySound(xClick.index, 1, false);
    EXPECT_FALSE(Audio_IsPlaying(xClick.index));
    EXPECT_NE(stage.console().find("The wave of sound xClick can't be played: a chunk ends behind "
                                   "the file\n"),
              std::string::npos);
}

// Compressed sounds can also lie in the archive: decoded while they play, or at the start.
TEST(SoundFiles, CompressedSoundsOfTheArchivePlay)
{
    archive::Content content;
    std::string fault;
    ASSERT_TRUE(archive::Read(Stage::game_archive(), &content, &fault)) << fault;
    std::ifstream file(TONES_FOLDER "/long.ogg", std::ios::binary);
    const std::vector<uint8_t> ogg{std::istreambuf_iterator<char>(file), {}};
    for (const Sound sound : {xClick, xFimFase, xAbriu}) {
        archive::Sound& record = content.sounds[static_cast<size_t>(sound.index)];
        record.flags = sound.index == xClick.index ? 102 : 103;
        content.waves[static_cast<size_t>(record.audioIndex)] = ogg;
    }
    content.waves[static_cast<size_t>(content.sounds[4].audioIndex)].resize(100);  // xAbriu
    Stage::Options options = WithSound();
    options.archiveBytes = archive::Write(content);
    Stage stage(options);
    stage.frames(1);
    EXPECT_NE(stage.console().find("Decoding ogg xFimFase ...\n"), std::string::npos);
    EXPECT_NE(stage.console().find(" opening ogg stream for xAbriu\n"), std::string::npos);
    for (const Sound sound : {xClick, xFimFase}) {
        Stage_KeepSound(true);
        Audio_PlaySound(sound.index, 1, false);
        EXPECT_NEAR(Audio_Length(sound.index), 30000.0 / 48000, 1e-5);
        stage.frames(10);
        EXPECT_TRUE(Audio_IsPlaying(sound.index));
        stage.frames(14);
        EXPECT_FALSE(Audio_IsPlaying(sound.index));
        const auto loud = std::count_if(Stage_Sound().begin(), Stage_Sound().end(),
                                        [](int16_t sample) { return std::abs(sample) > 500; });
        EXPECT_NEAR(static_cast<double>(loud), 60000 * 0.97, 2000);
    }
    Audio_PlaySound(xAbriu.index, 1, false);
    EXPECT_FALSE(Audio_IsPlaying(xAbriu.index)) << "what can't be read stays silent";
}

// The desktop's threads: the workers decode and the output's thread mixes while frames run,
// and the run ends in the middle of it.
TEST(SoundThreads, StreamsRunBesideTheGame)
{
    Stage::Options options = WithSound("long.ogg");
    options.sound = false;
    options.soundThreads = true;
    Stage stage(options);
    stage.frames(2);
    Audio_PlaySound(xFase2.index, 1, false);
    for (int i = 0; i < 6; ++i) {
        Audio_PlaySound(xFase1.index, 1, true);
        Audio_PlaySound(xClick.index, 1, false);
        stage.frames(3);
        Audio_PauseAll();
        stage.frames(1);
        Audio_ResumeAll();
    }
    EXPECT_TRUE(Audio_IsPlaying(xFase1.index));
    for (int i = 0; i < 200 && Audio_IsPlaying(xFase2.index); ++i) stage.frames(1);
    EXPECT_FALSE(Audio_IsPlaying(xFase2.index));
    Audio_StopSound(xFase1.index);
    for (int i = 0; i < 200 && Audio_IsPlaying(xFase1.index); ++i) stage.frames(1);
    EXPECT_FALSE(Audio_IsPlaying(xFase1.index));
    Audio_PlaySound(xFase1.index, 1, true);
    stage.frames(3);
}

// ---- the music of the rooms

class Music : public Sounds {
protected:
    void Enter(const char* room) { stage.room(room).frames(6); }
    // The number of the only stream that plays, 0 without one.
    static int32_t Playing()
    {
        int32_t voice = 0;
        for (const AudioVoice* each : g_Voices)
            if (each->active && each->streamed && each->stop_count == 0 && !each->stopping) {
                EXPECT_EQ(voice, 0) << "one piece at a time";
                EXPECT_TRUE(each->loop);
                voice = each->id;
            }
        return voice;
    }
    static int32_t Track()
    {
        const int32_t voice = Playing();
        return voice ? Audio_Find(Audio_SoundOf(voice)->name) : -1;
    }
};

TEST_F(Music, EveryRoomHasItsTrack)
{
    Enter("room_titulo");
    EXPECT_EQ(Track(), xCapa.index);
    const int32_t title = Playing();
    Enter("room_personagem");
    EXPECT_EQ(Playing(), title) << "no rule names it";
    Enter("room_menu1");
    EXPECT_EQ(Track(), xMundo1.index);
    const int32_t map = Playing();
    Enter("room_menu2");
    EXPECT_EQ(Playing(), map) << "all pages share one";
    std::set<int32_t> drawn;
    for (const char* level : {"room_level1", "room_level2", "room_level30", "room_level4"}) {
        Enter(level);
        EXPECT_GE(Track(), xFase1.index);
        EXPECT_LE(Track(), xFase7.index);
        EXPECT_EQ(Track(), static_cast<int32_t>(musica));
        drawn.insert(Track());
    }
    EXPECT_GT(drawn.size(), 1U);
    const int32_t level = Playing();
    Enter("room_level4");
    EXPECT_EQ(Playing(), level) << "a restart goes on";
    EXPECT_EQ(stage.global_text("musicaAtual"), Audio_SoundOf(level)->name);
    EXPECT_EQ(stage.global_text("ondeEsta"), "room_level4");
}

// The switch pauses everything; a change of track then ends it, and another room's track
// waits for the switch.
TEST_F(Music, WithTheSoundOffNothingBegins)
{
    Enter("room_titulo");
    Audio_PauseAll();
    Enter("room_personagem");
    EXPECT_TRUE(Audio_IsPaused(xCapa.index));
    Enter("room_menu1");
    EXPECT_EQ(Playing(), 0);
    EXPECT_EQ(static_cast<int32_t>(musica), xMundo1.index);
    Enter("room_level1");
    EXPECT_EQ(Playing(), 0);
    EXPECT_EQ(stage.console().find("Música tocando!"), std::string::npos);
    Audio_PlaySound(static_cast<int32_t>(musica), 10, true);
    Enter("room_menu1");
    EXPECT_EQ(Track(), xMundo1.index);
}

TEST_F(Music, APauseMakesItQuieterAndTheNextTrackIsLoudAgain)
{
    Enter("room_level1");
    const int32_t level = Track();
    stage.tap(13).frames(120);  // the fade begins anew in each of them: it draws near
    EXPECT_NEAR(Audio_GetGain(level), 0.3, 0.01);
    EXPECT_EQ(Audio_SoundOf(Playing()), Audio_Data(level)) << "it plays on";
    stage.tap(13).frames(40);
    EXPECT_NEAR(Audio_GetGain(level), 1, 1e-5);
    stage.tap(13).frames(40);
    Enter("room_menu1");
    EXPECT_EQ(Track(), xMundo1.index);
    EXPECT_NEAR(Audio_GetGain(xMundo1.index), 1, 1e-5);
}

TEST(MusicOff, TheSavedSwitchKeepsTheTitleSilent)
{
    Stage::Options options = WithSound();
    options.save = "[preferencias]\r\nmusicas=\"0.000000\"\r\n";
    Stage stage(options);
    for (const char* room : {"room_titulo", "room_menu1", "room_level1"}) {
        stage.room(room).frames(6);
        for (const AudioVoice* voice : g_Voices) EXPECT_FALSE(voice->active) << room;
    }
}

// The effects follow the music; what they tell of happens all the same.
TEST_F(Music, TheGateAndTheEndOfALevelAreHeardOnlyWithIt)
{
    for (const bool loud : {true, false}) {
        Enter("room_level1");
        if (!loud) Audio_PauseAll();
        stage.find(oPlayerArrows)->SetPosition(416, 208);
        stage.find(oMonte)->SetPosition(468, 208);
        stage.tap('D').frames(14);
        EXPECT_EQ(stage.count(oPortaoAberto), 1);
        EXPECT_EQ(Audio_IsPlaying(xAbriu.index), loud);
        stage.find(oPlayerArrows)->SetPosition(416, 0);
        stage.frames(1).tap('W').frames(14);
        EXPECT_EQ(stage.count(oFimFase), 1);
        EXPECT_EQ(Audio_IsPlaying(xFimFase.index), loud);
        Audio_StopSound(xAbriu.index);
        Audio_StopSound(xFimFase.index);
        stage.frames(4);
    }
}

// A level with its music allocates nothing more than one without.
TEST(SoundIdle, AFrameWithMusicAllocatesNothing)
{
    Stage stage(WithSound());
    stage.room("room_level1").frames(40);
    const uint64_t before = MemoryManager::GetStats().calls;
    stage.frames(200);
    EXPECT_EQ(MemoryManager::GetStats().calls, before);
}

}  // namespace
