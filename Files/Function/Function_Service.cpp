// Built-ins of achievements and score boards. No service is there on this platform:
// the achievement_ family is a shell that is never available, and the steam_ family
// answers as it does while its layer is down.

#include "Files/Function/Function_Service.h"
#include "Files/Base/Error.h"
#include "Files/Function/Arguments.h"

namespace {

constexpr double kLayerDown = -1;

BUILTIN(F_Nothing) {}

BUILTIN(F_No)
{
    SetReal(result, 0);
}

BUILTIN(F_LayerDown)
{
    SetReal(result, kLayerDown);
}

bool Fits(int argc, const RValue* args, int wanted)
{
    if (argc != wanted) {
        Error_Show("Illegal argument count", false);
        return false;
    }
    if (args[0].Kind() == VALUE_STRING && (wanted == 1 || args[1].Kind() != VALUE_STRING))
        return true;
    Error_Show("Illegal argument type", false);
    return false;
}

// A name and a number for a service that is not there: they are checked and dropped.
BUILTIN(F_Post)
{
    Fits(argc, args, 2);
    SetReal(result, 0);
}

BUILTIN(F_Event)
{
    Fits(argc, args, 1);
    SetReal(result, 0);
}

constexpr BuiltinRow kAchievementRows[] = {
    {"achievement_available", F_No, 0},
    {"achievement_login", F_Nothing, 0},
    {"achievement_logout", F_Nothing, 0},
    {"achievement_login_status", F_No, 0},
    {"achievement_post", F_Post, -1},
    {"achievement_increment", F_Post, -1},
    {"achievement_post_score", F_Post, -1},
    {"achievement_event", F_Event, -1},
    {"achievement_reset", F_Nothing, 0},
    {"achievement_show_achievements", F_Nothing, 0},
    {"achievement_show_leaderboards", F_Nothing, 0},
    {"achievement_show", F_Nothing, 3},
    {"achievement_load_friends", F_Nothing, -1},
    {"achievement_load_leaderboard", F_Nothing, -1},
    {"achievement_load_progress", F_Nothing, -1},
    {"achievement_get_pic", F_Nothing, -1},
    {"achievement_get_info", F_Nothing, -1},
    {"achievement_send_challenge", F_Nothing, -1},
    {"achievement_get_challenges", F_Nothing, -1},
    {"achievement_show_challenge_notifications", F_Nothing, -1},
    {"achievement_map_achievement", F_Nothing, -1},
    {"achievement_map_leaderboard", F_Nothing, -1},
};

constexpr BuiltinRow kSteamRows[] = {
    {"steam_set_achievement", F_LayerDown, 1},
    {"steam_get_achievement", F_LayerDown, 1},
    {"steam_clear_achievement", F_LayerDown, 1},
    {"steam_set_stat_int", F_LayerDown, 2},
    {"steam_set_stat_float", F_LayerDown, 2},
    {"steam_set_stat_avg_rate", F_LayerDown, 3},
    {"steam_get_stat_int", F_LayerDown, 1},
    {"steam_get_stat_float", F_LayerDown, 1},
    {"steam_get_stat_avg_rate", F_LayerDown, 1},
    {"steam_reset_all_stats", F_LayerDown, 0},
    {"steam_reset_all_stats_achievements", F_LayerDown, 0},
    {"steam_stats_ready", F_LayerDown, 0},
};

}  // namespace

void Function_Achievements_Register()
{
    Function_AddRows(kAchievementRows);
}

void Function_Steam_Register()
{
    Function_AddRows(kSteamRows);
}
