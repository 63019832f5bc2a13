#include "game/Milestones.h"

#include <cstdio>

namespace {

constexpr double wholly = 100;

struct Milestone {
    int from;  // level, or seconds of play
    const char* name;
    int entry;
};

constexpr Milestone levelMilestones[] = {
    {3, "FirstSteps", 1},
    {10, "GrassLand_Part1Finished", 2},
    {20, "GrassLandCompleted", 3},
    {30, "SandLand_Part1Finished", 4},
    {40, "SandLandCompleted", 5},
    {50, "CandyLand_Part1Finished", 6},
    {60, "CandyLandCompleted", 7},
    {70, "PatchLand_Part1Finished", 8},
    {80, "PatchLandCompleted", 9},
    {90, "PixelLand_Part1Finished", 10},
    {100, "PixelLandCompleted", 11},
    {100, "MarlowickCompleted", 12},
};

constexpr int timeEntry = 13;
constexpr Milestone timeMilestones[] = {
    {1800, "NovicePlayer", 14},
    {7200, "ExperiencedPlayer", 15},
    {18000, "VeteranPlayer", 16},
};

// What is earned already is not posted again.
void post(const Milestone& milestone)
{
    if (os_type == desktop && !steam_get_achievement(milestone.name))
        steam_set_achievement(milestone.name);
    if (os_type == mobile && achievement_available())
        achievement_post(EntryId(milestone.entry).text, wholly);
}

}  // namespace

EntryId::EntryId(int entry)
{
    snprintf(text, sizeof text, "MarlowickService%02d", entry);
}

void post_level_milestones(int level)
{
    for (const Milestone& milestone : levelMilestones)
        if (milestone.from == level) post(milestone);
}

void post_time_milestones(double played)
{
    if (os_type == mobile && achievement_available())
        achievement_post_score(EntryId(timeEntry).text, played * thousandths);
    for (const Milestone& milestone : timeMilestones)
        if (played >= milestone.from) post(milestone);
}
