// The campaign, played on the stage by the stored solutions as key presses: every gate
// opens, every end is touched, and the save file ends as its rules say.
//
// What each run looked like frame by frame is kept as one hash a level in this folder, and
// the state of the world at the levels' ends as one for the run. MARLOWICK_KEEP_HASHES=1
// keeps them anew; the message of the change says why.

#include <gtest/gtest.h>

#include <cstdlib>

#include "Files/Room/Room_Main.h"
#include "Files/Run/Run_State.h"
#include "Names.h"
#include "tests/playthrough/Hashes.h"
#include "tests/playthrough/SaveModel.h"
#include "tests/support/Solution.h"
#include "tests/support/Stage.h"

using namespace names;

namespace {

constexpr int kLevels = 100, kFirstTarget2 = 21;
constexpr int kFadeFrames = 100;  // a fade with the title of a level takes fewer
constexpr int kSettle = 2;        // frames for the events of the end
constexpr int kEnter = 13;

// ---- one run

struct Manner {
    const char* name;
    const char* speed;
    enum { unasked, stored, inThePause } chosen;  // in an empty save directory, but for stored
    bool byKeys;  // from level to level by the row of the end screen
    bool secondFigure;
};

class Player {
public:
    explicit Player(const Manner& manner) : manner_(manner), stage_(Options(manner))
    {
        playerMode = manner.secondFigure ? "twoPlayersOne" : "onePlayer";
        jogadorUm = "menino";
        jogadorDois = "menina";
        idioma = "ingles";
        if (manner.chosen == Manner::stored) NoteSpeed();
    }

    void Enter(int level)
    {
        const std::string room = "room_level" + std::to_string(level);
        if (manner_.byKeys && level == after_) {
            g_DrawEnabled = true;  // the fade goes on in its draw event
            stage_.tap('N');
            for (int i = 0; i < kFadeFrames && (i < 2 || stage_.count(oTransicao) > 0); ++i)
                stage_.frames(1);
        } else {
            stage_.room(room).frames(1);
        }
        g_DrawEnabled = false;
        ASSERT_EQ(stage_.room_name(), room);
        ASSERT_EQ(stage_.count(oPlayerArrows), 1) << room;
        if (manner_.secondFigure) {
            ASSERT_EQ(stage_.count(oPlayerArrows2), 1) << room;
        }
    }

    // A click on the speed's button in the pause.
    void ChooseSpeed()
    {
        if (manner_.chosen != Manner::inThePause) return;
        stage_.tap(kEnter).frames(3).click(427, 430).frames(2).tap(kEnter).frames(3);
        ASSERT_EQ(stage_.global_text("gameType"), manner_.speed);
        NoteSpeed();
    }

    // Plays the room to its end; false when a figure or a box did not come through.
    bool Play(int level, std::string* hash)
    {
        Hash seen;
        const Object empty = level == 1 || level >= kFirstTarget2 ? oFechado2 : oFechado;
        const int perCell = FramesPerCell(manner_.speed);
        for (const char step : Solution_Of(level)) {
            stage_.hold(step).frames(1).release(step);
            Look(&seen);
            for (int i = 1; i < perCell; ++i) {
                stage_.frames(1);
                Look(&seen);
            }
        }
        stage_.frames(kSettle);
        *hash = seen.text();
        return stage_.count(empty) == 0 && stage_.count(oPortaoAberto) == 1 &&
               stage_.count(oPortaoFechado) == 0 && stage_.count(oFimFase) == 1;
    }

    // The save file against what its rules make of this end.
    void CheckSave(int level)
    {
        const double seconds_ = stage_.variable(stage_.find(oClock), "levelTime");
        total_ += seconds_;
        const std::string next = "Level" + std::to_string(level + 1);
        SaveModel::Edit unlocked_ = {{"Levels", {{"Level" + std::to_string(level), 2.0}}}};
        if (!model_.Has("Levels", next)) unlocked_[0].keys.push_back({next, 1.0});
        model_.Write(unlocked_);
        model_.Write({{"Tempo",
                       {{"Segundos", static_cast<double>(static_cast<int>(total_) % 60)},
                        {"Minutos", static_cast<double>(static_cast<int>(total_) / 60 % 60)},
                        {"Horas", static_cast<double>(static_cast<int>(total_) / 3600)},
                        {"Total", total_},
                        {"room_level" + std::to_string(level), seconds_}}}});
        EXPECT_EQ(stage_.save_file(), model_.Text()) << "after level " << level;
        after_ = level + 1;
    }

    uint64_t state() const { return stage_.state_hash(); }
    std::string console() const { return stage_.console(); }
    void ForgetConsole() { stage_.clear_console(); }
    // Player two makes a step, out of the way.
    void StepAside(int key) { stage_.tap(key).frames(FramesPerCell(manner_.speed) + 2); }

private:
    static Stage::Options Options(const Manner& manner)
    {
        Stage::Options options;
        if (manner.chosen == Manner::stored)
            options.save = std::string("[preferencias]\r\nvelocidade=\"") + manner.speed + "\"\r\n";
        return options;
    }
    void NoteSpeed()
    {
        model_.Write({{"preferencias", {{"velocidade", std::string(manner_.speed)}}}});
    }

    void Look(Hash* seen)
    {
        for (const Object object : {oPlayerArrows, oPlayerArrows2, oMonte, oFechado, oAberto,
                                    oFechado2, oAberto2, oPortaoFechado, oPortaoAberto, oFimFase})
            for (int i = 0; CInstance* instance = stage_.find(object, i); ++i) {
                seen->Add(instance->x);
                seen->Add(instance->y);
            }
        seen->Add(stage_.global("undoAtual"));
        if (CInstance* clock = stage_.find(oClock)) seen->Add(stage_.variable(clock, "levelTime"));
    }

    Manner manner_;
    Stage stage_;
    SaveModel model_;
    double total_ = 0;
    int after_ = 0;  // the level that the end screen leads to
};

class Campaign : public testing::TestWithParam<Manner> {};

TEST_P(Campaign, IsPlayedToItsEnd)
{
    const Manner& manner = GetParam();
    const bool keep = std::getenv("MARLOWICK_KEEP_HASHES") != nullptr;
    const Hashes kept = ReadHashes(manner.name);
    Hashes now;
    Hash states;
    Player player(manner);
    int stale = 0;
    for (int level = 1; level <= kLevels; ++level) {
        if (Solution_Of(level).empty()) continue;
        std::string hash;
        ASSERT_NO_FATAL_FAILURE(player.Enter(level));
        if (level == 1) {
            ASSERT_NO_FATAL_FAILURE(player.ChooseSpeed());
        }
        bool through = player.Play(level, &hash);
        // A second figure that stands in the way makes room first.
        for (const int aside : {39, 40, 37, 38}) {
            if (through || !manner.secondFigure) break;
            ASSERT_NO_FATAL_FAILURE(player.Enter(level));
            player.StepAside(aside);
            through = player.Play(level, &hash);
        }
        ASSERT_TRUE(through) << "level " << level << " is not solved";
        ASSERT_EQ(player.console().find("ERROR"), std::string::npos) << player.console();
        player.ForgetConsole();
        player.CheckSave(level);
        states.Add(player.state());

        const std::string name = LevelName(level);
        now.levels[name] = {LevelHash(level), hash};
        const auto before = kept.levels.find(name);
        if (before == kept.levels.end() || before->second.level != now.levels[name].level)
            ++stale;
        else if (!keep) {
            EXPECT_EQ(hash, before->second.play) << name << " goes another way than it did";
        }
    }
    now.state = states.text();
    if (keep) WriteHashes(manner.name, now);
    // Once the whole campaign is kept, a level that changes is kept anew with it.
    if (kept.levels.size() == kLevels && !keep) {
        EXPECT_EQ(stale, 0) << "MARLOWICK_KEEP_HASHES=1 keeps the hashes of changed levels";
        EXPECT_EQ(now.state, kept.state)
            << "the levels end in another state of the world: is that meant?";
    }
    std::printf("%s: %zu levels played, %d of them without a kept hash\n", manner.name,
                now.levels.size(), stale);
}

INSTANTIATE_TEST_SUITE_P(Runs, Campaign,
                         testing::Values(Manner{"fast", "fast", Manner::inThePause, true, false},
                                         Manner{"normal", "normal", Manner::unasked, false, false},
                                         Manner{"slow", "slow", Manner::stored, false, false},
                                         Manner{"second", "fast", Manner::stored, false, true}),
                         [](const auto& manner) { return manner.param.name; });

}  // namespace
