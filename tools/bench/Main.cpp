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

#include "Files/Base/Archive_Writer.h"
#include "Files/Function/Function_Registry.h"
#include "Files/Graphics/Batch.h"
#include "Files/Graphics/Bitmap.h"
#include "Files/Graphics/Draw_Room.h"
#include "Files/Graphics/Text.h"
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
    "vexo-bench [--json] [--gl] [--only NAME] [--rounds N]\n"
    "vexo-bench --peers [--json] [--only NAME] [--rounds N]\n"
    "\n"
    "  --json        one JSON object: name to rate\n"
    "  --only NAME   one rate alone\n"
    "  --rounds N    that many rounds instead of half a second, for tools that count\n"
    "                instructions\n"
    "  --gl          the rates on the GL device, in a window, instead of the soft device\n"
    "  --peers       both devices beside other rasterisers, as ratios of the fastest of N\n"
    "                turns (12 unless told); ours is faster above 1. What needs GL is\n"
    "                measured only where there is a display\n";

constexpr double kSeconds = 0.5;  // a rate is measured for at least so long
constexpr int kInstances = 1000;

// One measure: `round` does `work` units of work.
struct Rate {
    const char* name;
    const char* unit;
    double work;
    std::function<void(Stage&)> prepare;
    std::function<void()> round;
    bool alone = false;  // makes its own runs of the game
};

bool g_onGL = false;

Stage::Options StageOptions()
{
    Stage::Options options;
    options.window = options.threads = g_onGL;
    options.windowPace = 0;
    if (g_onGL) options.switches.push_back("-gl");
    return options;
}

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

// All drops that there can be.
void FullRain(Stage& stage)
{
    g_TimingOn = false;
    stage.room("room_level10").frames(120);
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

// Ends what the device has under way.
void Finish()
{
    uint32_t pixel;
    g_Device->ReadPixels(nullptr, {0, 0, 1, 1}, &pixel, 4);
}

void SpritesToTheEnd()
{
    Sprites();
    Finish();
}

// As far as the device, which is not called.
void SpritesSubmitted()
{
    Batch_SetDrawing(false);
    Sprites();
    Batch_SetDrawing(true);
}

template <class Draw>
void InAFrame(Draw draw)
{
    Frame_Begin();
    View_SetPort(0, 0, 854, 480);
    View_SetArea(0, 0, 854, 480, 0);
    draw();
    Frame_End(false);
    Finish();
}

void TiledBackground()
{
    InAFrame([] { Sprite_Data(sMonte.index)->DrawTiled(0, 0, 0, 1, 1, true, true, 0xFFFFFF, 1); });
}

void TextLinesDrawn()
{
    InAFrame([] {
        Text_SetFont(0);
        for (int line = 0; line < 20; ++line)
            Text_Draw("Vinte linhas de texto, cada uma com cinquenta letras",
                      TextPlace{10, static_cast<float>(line * 24)});
    });
}

void DecodePages()
{
    static archive::Content content;
    std::string fault;
    if (content.pages.empty() && !archive::Read(Stage::game_archive(), &content, &fault)) return;
    const std::vector<uint8_t>& png = content.pages[0].png;
    int32_t width, height;
    MemoryManager::Free(
        ReadPNG_Pixels(png.data(), static_cast<uint32_t>(png.size()), &width, &height, false));
}

void StartToFirstFrame()
{
    Stage(StageOptions()).frames(1);
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
        {"sprites_submit", "sprites/s as far as the device", 1000, nothing, SpritesSubmitted},
        {"sprites_drawn", "sprites/s (52 by 65)", 1000, nothing, SpritesToTheEnd},
        {"tiled_background", "fills of 854 by 480 by a tile/s", 1, nothing, TiledBackground},
        {"text_lines", "lines of 50 letters/s", 20, nothing, TextLinesDrawn},
        {"page_decode", "first pages decoded/s", 1, nothing, DecodePages},
        {"start_to_first_frame", "starts to the first frame/s", 1, nothing, StartToFirstFrame,
         true},
        {"level_frames", "frames of level 1 at 854 by 480/s", 1, [](Stage&) { g_TimingOn = false; },
         LevelFrame},
        {"rainy_frames", "frames of level 10 in full rain/s", 1, FullRain, LevelFrame},
        {"level_steps", "frames of level 1 without drawing/s", 1,
         [](Stage&) { g_TimingOn = false; }, StepWithoutDraw},
    };
}

double RunOne(const Rate& rate, long rounds)
{
    if (rate.alone) return Measure(rate, rounds);
    Stage stage(StageOptions());
    if (!stage.started()) {
        std::fprintf(stderr, "vexo-bench: the game did not start\n%s", stage.console().c_str());
        std::exit(1);
    }
    stage.room("room_level1").frames(2);
    rate.prepare(stage);
    return Measure(rate, rounds);
}

struct Arguments {
    bool json = false, peers = false, submit = false;
    std::string only;
    long rounds = 0;
};

// False for an argument that is not known.
bool Read(int argc, char** argv, Arguments* out)
{
    for (int i = 1; i < argc; ++i) {
        const std::string argument = argv[i];
        if (argument == "--json")
            out->json = true;
        else if (argument == "--peers")
            out->peers = true;
        else if (argument == "--submit")  // the other process of --peers
            out->submit = true;
        else if (argument == "--gl")
            g_onGL = true;
        else if (argument == "--only" && i + 1 < argc)
            out->only = argv[++i];
        else if (argument == "--rounds" && i + 1 < argc)
            out->rounds = std::atol(argv[++i]);
        else
            return false;
    }
    return true;
}

int Unknown(const std::string& name)
{
    std::fprintf(stderr, "vexo-bench: nothing here is called %s\n", name.c_str());
    return 2;
}

int RunRates(const Arguments& arguments)
{
    bool any = false;
    if (arguments.json) std::printf("{");
    for (const Rate& rate : Rates()) {
        if (!arguments.only.empty() && arguments.only != rate.name) continue;
        const double result = RunOne(rate, arguments.rounds);
        if (arguments.json)
            std::printf("%s\n  \"%s\": %.1f", any ? "," : "", rate.name, result);
        else
            std::printf("%-20s %14.1f  %s\n", rate.name, result, rate.unit);
        std::fflush(stdout);
        any = true;
    }
    if (arguments.json) std::printf("\n}\n");
    return any ? 0 : Unknown(arguments.only);
}

void PrintScores(const ScoreList& scores, bool json)
{
    if (json) std::printf("{");
    const char* comma = "";
    for (const Score& score : scores) {
        const double ours = score.ours * 1e3, theirs = score.theirs * 1e3;
        if (json)
            std::printf(
                "%s\n  \"%s\": {\"ours_ms\": %.4f, \"peer\": \"%s\", \"peer_ms\": %.4f, "
                "\"ratio\": %.3f}",
                comma, score.name.c_str(), ours, score.peer.c_str(), theirs, theirs / ours);
        else
            std::printf("%-24s %9.3f ms  %-21s %9.3f ms  ratio %6.2f\n", score.name.c_str(), ours,
                        score.peer.c_str(), theirs, theirs / ours);
        comma = ",";
    }
    if (json) std::printf("\n}\n");
    std::fflush(stdout);
}

int RunPeers(const Arguments& arguments)
{
    PeerOptions options{arguments.only, 12};
    if (arguments.rounds > 0) options.repeats = static_cast<int>(arguments.rounds);
    if (arguments.submit) return SubmitProcess(options);
    ScoreList all;
    for (const auto group : {PeersSoft, PeersSubmit, PeersGL, PeersFrame}) {
        ScoreList scores;
        group(options, &scores);
        if (!arguments.json && !scores.empty()) PrintScores(scores, false);
        all.insert(all.end(), scores.begin(), scores.end());
    }
    if (arguments.json) PrintScores(all, true);
    return all.empty() ? Unknown(arguments.only) : 0;
}

}  // namespace

int main(int argc, char** argv)
{
    Arguments arguments;
    if (!Read(argc, argv, &arguments)) {
        const bool asked = !std::strcmp(argv[argc - 1], "--help");
        std::fputs(kHelp, asked ? stdout : stderr);
        return asked ? 0 : 2;
    }
    return arguments.peers || arguments.submit ? RunPeers(arguments) : RunRates(arguments);
}
