// Stories of milestones and score boards, told by a service that is there, in place of the
// one that is not.

#include <set>
#include <vector>

#include "tests/game/support_LevelEnd.h"
#include "tests/game/support_Touch.h"

using namespace names;

namespace {

using Posts = std::vector<std::string>;
Posts g_posts;
std::set<std::string> g_earned;  // what the desktop's service remembers
bool g_available;

std::string NameAndNumber(RValue* args)
{
    return std::string(VXGetText(&args[0])) + " " +
           std::to_string(static_cast<int>(REAL_RValue(&args[1])));
}
void Available(RValue& result, CInstance*, CInstance*, int, RValue*)
{
    SetReal(result, g_available);
}
void PostScore(RValue&, CInstance*, CInstance*, int, RValue* args)
{
    g_posts.push_back(NameAndNumber(args));
}
void PostShare(RValue&, CInstance*, CInstance*, int, RValue* args)
{
    g_posts.push_back(NameAndNumber(args) + "%");
}
void Earned(RValue& result, CInstance*, CInstance*, int, RValue* args)
{
    SetReal(result, static_cast<double>(g_earned.count(VXGetText(&args[0]))));
}
void Earn(RValue&, CInstance*, CInstance*, int, RValue* args)
{
    g_earned.insert(VXGetText(&args[0]));
    g_posts.push_back(VXGetText(&args[0]));
}

struct BoardStory : LevelStory {
    explicit BoardStory(const std::string& save) : LevelStory("onePlayer", "normal", save)
    {
        g_posts.clear();
        g_earned.clear();
        g_available = true;
        Serve("achievement_available", Available);
        Serve("achievement_post_score", PostScore);
        Serve("achievement_post", PostShare);
        Serve("steam_get_achievement", Earned);
        Serve("steam_set_achievement", Earn);
    }
    // What finishing a level posts.
    Posts After(int number)
    {
        g_posts.clear();
        Finish(*this, number);
        return g_posts;
    }
};

std::string Played(int seconds)
{
    return "[Tempo]\r\nTotal=\"" + std::to_string(seconds) + ".000000\"\r\n";
}

TEST(Milestones, AreSetOnceAndInTheirOrder)
{
    BoardStory story(
        "[Tempo]\r\nTotal=\"7199.000000\"\r\nSegundos=\"59.000000\"\r\n"
        "Minutos=\"59.000000\"\r\nHoras=\"1.000000\"\r\n");
    g_earned.insert("NovicePlayer");
    // The boards follow the milestones.
    EXPECT_EQ(story.After(100), (Posts{"PixelLandCompleted", "MarlowickCompleted",
                                       "MarlowickService21 0", "MarlowickService22 7199000"}));
    story.Enter("room_level3");
    story.stage.frames(30);
    g_posts.clear();
    WalkOut(story);
    EXPECT_EQ(g_posts, (Posts{"FirstSteps", "ExperiencedPlayer", "MarlowickService22 7200000"}))
        << "two hours by now";
    EXPECT_NE(story.stage.save_file().find("Minutos=\"0.000000\"\r\nHoras=\"2.000000\""),
              std::string::npos)
        << story.stage.save_file();
    EXPECT_EQ(story.After(3), Posts{"MarlowickService22 7200000"}) << "nothing is set again";
}

TEST(Milestones, OfTheTimePlayedComeAtTheirLimits)
{
    const struct {
        int played;
        Posts desktop, phone;  // of the three
    } times[] = {
        {1799, {}, {}},
        {1800, {"NovicePlayer"}, {"MarlowickService14 100%"}},
        {7199, {"NovicePlayer"}, {"MarlowickService14 100%"}},
        {18000,
         {"NovicePlayer", "ExperiencedPlayer", "VeteranPlayer"},
         {"MarlowickService14 100%", "MarlowickService15 100%", "MarlowickService16 100%"}}};
    for (const auto& time : times) {
        BoardStory story(Played(time.played));
        EXPECT_EQ(story.After(4), time.desktop) << time.played;
        BecomePhone();
        Posts expected{"MarlowickService13 " + std::to_string(time.played) + "000"};
        expected.insert(expected.end(), time.phone.begin(), time.phone.end());
        EXPECT_EQ(story.After(4), expected) << time.played;
    }
}

TEST(Milestones, ThePhonesServiceCountsLevelsByEntry)
{
    BoardStory story("");
    BecomePhone();
    const std::string board = "MarlowickService13 0";
    EXPECT_EQ(story.After(10), (Posts{"MarlowickService02 100%", board}));
    EXPECT_EQ(story.After(90), (Posts{"MarlowickService10 100%", board}));
    EXPECT_EQ(story.After(100), (Posts{"MarlowickService11 100%", "MarlowickService12 100%", board,
                                       "MarlowickService21 0", "MarlowickService22 0"}));
    g_available = false;
    EXPECT_EQ(story.After(100), Posts{}) << "the service is away";
    EXPECT_TRUE(g_earned.empty()) << "the desktop's is another one";
}

TEST(Milestones, CountFromTheTimeThatAWipeKeeps)
{
    BoardStory story(Played(7200) + "[Levels]\r\nLevel100=\"2.000000\"\r\n");
    passaTela = 1;
    RValue result;
    vxl_Script_scr_recomeca(story.one, story.one, result, 0, nullptr);
    story.stage.frames(60);
    EXPECT_EQ(story.After(1), (Posts{"NovicePlayer", "ExperiencedPlayer"}))
        << "and no level is finished any more";
}

TEST(Milestones, ACampaignThatGoesOnPostsWhatAnotherInstallationReached)
{
    BoardStory story(
        "[Levels]\r\nLevel3=\"2.000000\"\r\nLevel10=\"1.000000\"\r\n"
        "Level11=\"0.000000\"\r\n");
    story.Enter("room_menu3");
    RValue result;
    CInstance* caller = Room_CreateInstance(0, 0, oContinueProgresso.index);
    vxl_Script_scr_continua(caller, caller, result, 0, nullptr);
    EXPECT_EQ(g_posts, (Posts{"FirstSteps", "GrassLand_Part1Finished"}));
    story.stage.frames(14);
    EXPECT_EQ(story.stage.room_name(), "room_menu1");
}

TEST(Boards, AWorldsIsPostedOnceItsLastLevelIsDoneAndWithTheNewestTimes)
{
    BoardStory story(
        "[Tempo]\r\nroom_level1=\"1.000000\"\r\nroom_level3=\"5.000000\"\r\n"
        "room_level21=\"70.000000\"\r\n");
    EXPECT_EQ(story.After(2), Posts{});
    EXPECT_EQ(story.After(20), (Posts{"GrassLandCompleted", "MarlowickService17 6000"}));
    story.Enter("room_level1");
    story.stage.frames(60);
    g_posts.clear();
    WalkOut(story);
    EXPECT_EQ(g_posts, Posts{"MarlowickService17 7000"}) << "the newest time, though worse";
    EXPECT_EQ(story.After(21), Posts{}) << "another world";
    EXPECT_EQ(story.After(40), (Posts{"SandLandCompleted", "MarlowickService18 0"}));
}

TEST(Boards, TheWholeGamesIsPostedByEveryLevelOnceTheLastIsDone)
{
    const std::string almost = Played(90) + "[Levels]\r\nLevel99=\"2.000000\"\r\nLevel100=\"";
    {
        BoardStory story(almost + "1.000000\"\r\n");
        EXPECT_EQ(story.After(21), Posts{});
    }
    BoardStory story(almost + "2.000000\"\r\n");
    EXPECT_EQ(story.After(21), Posts{"MarlowickService22 90000"});
    EXPECT_EQ(story.After(5), Posts{"MarlowickService22 90000"});
    EXPECT_EQ(story.After(81), (Posts{"MarlowickService21 0", "MarlowickService22 90000"}));
    g_available = false;
    EXPECT_EQ(story.After(81), Posts{});
}

}  // namespace
