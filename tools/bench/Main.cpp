// vexo-bench: rates of the runtime, each as a line with its unit or, with --json, as
// one JSON object. Rates of one run may be compared with each other; for counts that
// repeat, run one rate under a tool that counts instructions (--only NAME --rounds N).

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <string>
#include <vector>

#include "Files/Function/Function_Registry.h"
#include "Files/Graphics/Batch.h"
#include "Files/Graphics/Draw_Room.h"
#include "Files/Graphics/Window.h"
#include "Files/Object/Collision.h"
#include "Files/Object/Instance_Main.h"
#include "Files/Object/Object_Main.h"
#include "Files/Room/Room_Main.h"
#include "Files/Run/Run_State.h"
#include "Files/Sprite/CSprite.h"
#include "Files/Variable/Variable_BuiltIn.h"
#include "Names.h"
#include "tests/support/Stage.h"
#include "tools/bench/Peers.h"

using namespace names;

namespace {

constexpr char kHelp[] =
    "vexo-bench [--json] [--only NAME] [--rounds N]\n"
    "vexo-bench --peers [--only NAME] [--rounds N]\n"
    "\n"
    "  --json        one JSON object: name to rate\n"
    "  --only NAME   one rate alone\n"
    "  --rounds N    that many rounds instead of half a second, for tools that count\n"
    "                instructions\n"
    "  --peers       the soft device beside other rasterisers, as ratios of the fastest\n"
    "                of N turns (at least 12); ours is faster above 1\n";

constexpr double kSeconds = 0.5;  // a rate is measured for at least so long
constexpr int kInstances = 1000;

// One measure: `round` does `work` units of work.
struct Rate {
    const char* name;
    const char* unit;
    double work;
    std::function<void(Stage&)> prepare;
    std::function<void()> round;
};

double Now()
{
    using Clock = std::chrono::steady_clock;
    return std::chrono::duration<double>(Clock::now().time_since_epoch()).count();
}

double Measure(const Rate& rate, long rounds)
{
    const double start = Now();
    long done = 0;
    double passed = 0;
    do {
        rate.round();
        ++done;
        passed = Now() - start;
    } while (rounds > 0 ? done < rounds : passed < kSeconds);
    return static_cast<double>(done) * rate.work / passed;
}

// ---- preparations

void Crowd(Object object)
{
    for (int i = 0; i < kInstances; ++i) {
        const float column = static_cast<float>(i % 40), row = static_cast<float>(i / 40);
        Room_CreateInstance(column * 60.0F + 1000, row * 60.0F + 1000, object.index);
    }
    ApplyPendingChanges();
}

// Without the figure, whose own step counts the boxes.
void CrowdOfBoxes(Stage& stage)
{
    Instance_Destroy(stage.find(oPlayerArrows), false);
    PurgeInstances();
    Crowd(oMonte);
}

CInstance* g_first;
CInstance* g_second;

void PairOfBoxes(float apart)
{
    g_first = Room_CreateInstance(2000, 2000, oMonte.index);
    g_second = Room_CreateInstance(2000 + apart, 2000, oMonte.index);
}

// ---- rounds

volatile double g_sink;

void Arithmetic()
{
    RValue sum(0.0);
    for (int i = 0; i < 1000; ++i) {
        sum += RValue(static_cast<double>(i));
        sum *= RValue(0.5);
    }
    g_sink = sum.real;
}

void ArrayWrites()
{
    static RValue array;
    for (int i = 0; i < 1000; ++i) {
        const RValue value(static_cast<double>(i));
        SET_RValue(&array, &value, (i % 10) * kArrayRowStride + i / 10);
    }
}

void Texts()
{
    for (int i = 0; i < 1000; ++i) {
        RValue text;
        VXCreateString(&text, "cima");
        RValue copy;
        COPY_RValue(&copy, &text);
        FREE_RValue(&copy);
        FREE_RValue(&text);
    }
}

void Lookups()
{
    for (int i = 0; i < 1000; ++i) g_sink = Code_Variable_Find("portaoX", SCOPE_EITHER);
}

void Collide()
{
    bool hit = false;
    for (int i = 0; i < 1000; ++i) hit ^= CollisionInstance(g_first, g_second, true);
    g_sink = hit;
}

void BoxPairs()
{
    Collide();
}

void EventDispatch()
{
    RunStepEvent(STEP_NORMAL);
}

void StepWithoutDraw()
{
    g_DrawEnabled = false;
    DoAStep();
}

void Sprites()
{
    CSprite* sprite = Sprite_Data(sMonte.index);
    Frame_Begin();
    View_SetPort(0, 0, 854, 480);
    View_SetArea(0, 0, 854, 480, 0);
    for (int i = 0; i < 1000; ++i)
        sprite->Draw(0, static_cast<float>(i * 7 % 800), static_cast<float>(i * 13 % 420 + 13));
    Frame_End(false);
}

void LevelFrame()
{
    Run_Frame();
}

std::vector<Rate> Rates()
{
    const auto nothing = [](Stage&) {};
    return {
        {"instance_steps", "instances stepped/s", kInstances, [](Stage&) { Crowd(oSeta); },
         StepWithoutDraw},
        {"event_dispatch", "Step events/s", kInstances, CrowdOfBoxes, EventDispatch},
        {"collision_apart", "pairs apart/s", 1000, [](Stage&) { PairOfBoxes(200); }, BoxPairs},
        {"collision_touching", "pairs touching/s", 1000, [](Stage&) { PairOfBoxes(20); }, Collide},
        {"value_arithmetic", "operations/s", 2000, nothing, Arithmetic},
        {"array_writes", "cells/s", 1000, nothing, ArrayWrites},
        {"string_values", "texts made and shared/s", 1000, nothing, Texts},
        {"name_lookup", "names/s", 1000, nothing, Lookups},
        {"soft_sprites", "sprites/s (52 by 65)", 1000, nothing, Sprites},
        {"level_frames", "frames of level 1 at 854 by 480/s", 1, [](Stage&) { g_TimingOn = false; },
         LevelFrame},
        {"level_steps", "frames of level 1 without drawing/s", 1,
         [](Stage&) { g_TimingOn = false; }, StepWithoutDraw},
    };
}

double RunOne(const Rate& rate, long rounds)
{
    Stage stage;
    if (!stage.started()) {
        std::fprintf(stderr, "vexo-bench: the game did not start\n%s", stage.console().c_str());
        std::exit(1);
    }
    stage.room("room_level1").frames(2);
    rate.prepare(stage);
    return Measure(rate, rounds);
}

}  // namespace

int main(int argc, char** argv)
{
    bool json = false, peers = false;
    std::string only;
    long rounds = 0;
    for (int i = 1; i < argc; ++i) {
        if (!std::strcmp(argv[i], "--json"))
            json = true;
        else if (!std::strcmp(argv[i], "--peers"))
            peers = true;
        else if (!std::strcmp(argv[i], "--only") && i + 1 < argc)
            only = argv[++i];
        else if (!std::strcmp(argv[i], "--rounds") && i + 1 < argc)
            rounds = std::atol(argv[++i]);
        else {
            std::fputs(kHelp, std::strcmp(argv[i], "--help") ? stderr : stdout);
            return std::strcmp(argv[i], "--help") ? 2 : 0;
        }
    }
    if (peers) {
        if (RunPeers(only.c_str(), static_cast<int>(rounds)) > 0) return 0;
        std::fprintf(stderr, "vexo-bench: no comparison is called %s\n", only.c_str());
        return 2;
    }
    bool any = false;
    if (json) std::printf("{");
    for (const Rate& rate : Rates()) {
        if (!only.empty() && only != rate.name) continue;
        const double result = RunOne(rate, rounds);
        if (json)
            std::printf("%s\n  \"%s\": %.0f", any ? "," : "", rate.name, result);
        else
            std::printf("%-20s %14.0f  %s\n", rate.name, result, rate.unit);
        any = true;
    }
    if (json) std::printf("\n}\n");
    if (!any) std::fprintf(stderr, "vexo-bench: no rate is called %s\n", only.c_str());
    return any ? 0 : 2;
}
