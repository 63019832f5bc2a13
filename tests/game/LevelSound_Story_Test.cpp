// What is heard of a level that is solved and left: the gate and the end follow the music.

#include "Files/Sound/Audio_Main.h"
#include "Names.h"
#include "tests/game/support_LevelEnd.h"

using namespace names;

namespace {

enum class MusicIs { On, Paused, Stopped };

class LevelSounds : public testing::TestWithParam<MusicIs> {
protected:
    LevelSounds() : stage(WithMusic())
    {
        stage.room("room_level1").frames(6);
        if (GetParam() == MusicIs::Paused) Audio_PauseAll();
        if (GetParam() == MusicIs::Stopped) Audio_StopAll();
        stage.frames(6);
    }
    static Stage::Options WithMusic()
    {
        Stage::Options options;
        options.sound = true;
        for (const char* track :
             {"xCapa", "xFase1", "xFase2", "xFase3", "xFase4", "xFase5", "xFase6", "xFase7"})
            options.beside.emplace_back(std::string(track) + ".ogg", TONES_FOLDER "/short.ogg");
        return options;
    }
    static bool Heard(Sound sound) { return Audio_IsPlaying(sound.index); }
    Stage stage;
};

TEST_P(LevelSounds, TheGateAndTheEndAreHeardOnlyWithTheMusic)
{
    const bool on = GetParam() == MusicIs::On;
    ASSERT_EQ(Audio_IsPlaying(static_cast<int32_t>(musica)), GetParam() != MusicIs::Stopped);
    Put(stage.find(oMonte), 468, 208);
    Put(stage.find(oPlayerArrows), 416, 208);
    stage.hold('D').frames(12);
    EXPECT_FALSE(Heard(xAbriu)) << "not yet";
    stage.frames(2);
    EXPECT_EQ(stage.count(oPortaoFechado), 0);
    EXPECT_EQ(stage.count(oPortaoAberto), 1) << "it opens in any case";
    EXPECT_EQ(moveCaixa, 0);
    EXPECT_EQ(Heard(xAbriu), on);

    stage.release('D').frames(20);
    Put(stage.find(oPlayerArrows), 416, 0);
    stage.hold('W').frames(12);
    EXPECT_FALSE(Heard(xFimFase)) << "not yet";
    stage.release('W').frames(3);
    EXPECT_EQ(stage.count(oFimFase), 1);
    EXPECT_EQ(Heard(xFimFase), on);
}

INSTANTIATE_TEST_SUITE_P(Music, LevelSounds,
                         testing::Values(MusicIs::On, MusicIs::Paused, MusicIs::Stopped));

}  // namespace
