#include "tests/support/Stage.h"

#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sstream>

#include "Files/Base/Console.h"
#include "Files/Function/Function_Registry.h"
#include "Files/Graphics/Bitmap.h"
#include "Files/Graphics/Window.h"
#include "Files/Graphics_API/Device.h"
#include "Files/IO/GamePad.h"
#include "Files/Object/Instance_Main.h"
#include "Files/Object/Object_Main.h"
#include "Files/Room/Room_Main.h"
#include "Files/Run/Run_Modules.h"
#include "Files/Variable/Variable_BuiltIn.h"
#include "Host/Host_Audio.h"
#include "Host/Host_Stage.h"
#include "Host/Host_Stage_Pads.h"
#include "game/Attachment.h"
#include "tests/support/StateHash.h"

namespace {

constexpr int kRoomPatience = 8;  // frames until an asked-for room must run

std::vector<uint8_t> ReadFile(const std::string& path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

std::filesystem::path FreshFolder()
{
    std::string pattern = (std::filesystem::temp_directory_path() / "stage-XXXXXX").string();
    if (!mkdtemp(pattern.data())) {
        std::perror("the stage has no folder");
        std::abort();
    }
    return pattern;
}

HostClockTable g_stageClock;
double g_windowPace;

void BlockInWindow(int32_t millis)
{
    g_stageClock.Block(millis);
    if (g_windowPace > 0) usleep(static_cast<useconds_t>(millis * 1000 / g_windowPace));
}

// The desktop's tables, to borrow from; the stage's stay in use.
Host DesktopHost()
{
    const Host stage = g_Host;
    const HostPadTable pads = g_HostPads;
    const HostAudioTable audio = g_HostAudio;
    Host_UseSDL();
    const Host desktop = g_Host;
    g_Host = stage;
    g_HostPads = pads;
    g_HostAudio = audio;
    return desktop;
}

// The desktop's window with all else of the stage.
void UseWindow(double pace)
{
    g_stageClock = g_Host.clock;
    g_windowPace = pace;
    g_Host.window = DesktopHost().window;
    g_Host.headlessWindow = false;
    g_Host.clock.Block = BlockInWindow;
}

void UseThreads()
{
    g_Host.process = DesktopHost().process;
}

// The desktop's threads and clock, without an output.
void UseSoundThreads()
{
    const Host desktop = DesktopHost();
    g_Host.process = desktop.process;
    g_Host.clock = desktop.clock;
    g_HostAudio.DeviceCount = []() -> int32_t { return 0; };
}

std::filesystem::path SavePath(const std::filesystem::path& folder)
{
    return folder / "data" / "MarlowickGame" / "SaveGame.sav";
}

}  // namespace

const std::vector<uint8_t>& Stage::game_archive()
{
    static const std::vector<uint8_t> bytes = ReadFile(STAGE_ARCHIVE);
    return bytes;
}

int FramesPerCell(const std::string& speed)
{
    return speed == "fast" ? 4 : speed == "slow" ? 26 : 13;
}

Stage::Stage()
{
    Boot(Options());
}
Stage::Stage(const Options& options)
{
    Boot(options);
}

void Stage::Listen(void* context, const char* text)
{
    static_cast<Stage*>(context)->console_ += text;
}

void Stage::Boot(const Options& options)
{
    folder_ = FreshFolder();
    if (!options.save.empty()) {
        std::filesystem::create_directories(SavePath(folder_).parent_path());
        std::ofstream(SavePath(folder_), std::ios::binary) << options.save;
    }

    for (const auto& [name, source] : options.beside)
        std::filesystem::copy_file(source, folder_ / name);

    Host_UseStage();
    Stage_Reset();
    Stage_SetFolder((folder_.string() + "/").c_str());
    Stage_SetDataFolder((folder_.string() + "/data/").c_str());
    if (options.window) UseWindow(options.windowPace);
    if (options.threads) UseThreads();
    if (options.soundThreads) UseSoundThreads();
    Console_SetSink(Listen, this);
    Random_Seed(0);

    archive_ = !options.archiveBytes.empty() ? options.archiveBytes
               : options.archive.empty()     ? game_archive()
                                             : ReadFile(options.archive);
    RunnerData attachment = options.attachment ? *options.attachment : Game_Attachment();
    attachment.archive = archive_.data();
    attachment.archiveSize = static_cast<uint32_t>(archive_.size());

    VxVector<VxString> tokens = {"marlowick"};
    for (const std::string& token : options.switches) tokens.push_back(token.c_str());
    if (!options.sound && !options.soundThreads) tokens.push_back("-noaudio");
    started_ = Runner_Boot(tokens, folder_.c_str(), attachment);
}

Stage::~Stage()
{
    Runner_End();
    Console_SetSink(nullptr, nullptr);
    Stage_Quit();
    std::error_code ignored;
    std::filesystem::remove_all(folder_, ignored);
}

bool Stage::running() const
{
    return started_ && g_Running;
}

Stage& Stage::frames(int count)
{
    for (int i = 0; i < count && running(); ++i) Runner_Round();
    return *this;
}

namespace {

RValue* GlobalPlace(const char* name)
{
    const int32_t id = Code_Variable_Find(name, SCOPE_GLOBAL);
    return id < kInstanceVarBase ? nullptr : g_Global->FindVar(id - kInstanceVarBase);
}

// Whoever jumps past the screens that ask is a new player.
void Choose(const char* name, const char* word)
{
    RValue* place = GlobalPlace(name);
    if (place && place->Kind() == VALUE_UNSET) VXCreateString(place, word);
}

}  // namespace

Stage& Stage::room(const std::string& name)
{
    Choose("idioma", "ingles");
    Choose("playerMode", "onePlayer");
    Choose("jogadorUm", "menino");
    Choose("jogadorDois", "menina");
    const int32_t wanted = Room_Find(name.c_str());
    Room_Goto(wanted);
    for (int i = 0; i < kRoomPatience && running() && (New_Room != ROOM_NONE || i == 0); ++i)
        frames(1);
    return *this;
}

std::string Stage::room_name() const
{
    return Room_Name(Current_Room);
}

Stage& Stage::hold(int key)
{
    Stage_Key(key, true);
    return *this;
}

Stage& Stage::release(int key)
{
    Stage_Key(key, false);
    return *this;
}

Stage& Stage::tap(int key)
{
    return hold(key).frames(1).release(key);
}

Stage& Stage::play(const std::vector<KeyHold>& script)
{
    std::vector<int32_t> held;
    const auto letGo = [&] {
        for (const int32_t key : held) release(key);
    };
    for (const KeyHold& step : script) {
        if (step.keys != held) {
            letGo();
            held = step.keys;
            for (const int32_t key : held) hold(key);
        }
        frames(step.frames);
    }
    letGo();
    return *this;
}

Stage& Stage::play(const std::string& script)
{
    std::vector<KeyHold> holds;
    std::string error;
    if (!KeyScript_Parse(script, &holds, &error)) {
        std::fprintf(stderr, "%s\n", error.c_str());
        std::abort();
    }
    return play(holds);
}

Stage& Stage::walk(const std::string& steps)
{
    const int perCell = FramesPerCell(global_text("gameType"));
    for (const char step : steps) {
        tap(step);
        frames(perCell - 1);
    }
    return *this;
}

namespace {

constexpr int kTriggerBits = 0x0C00;  // the places of both triggers

// The bit of each button's constant, from gp_face1 on.
constexpr uint16_t kPadBits[] = {0x1000, 0x2000, 0x4000, 0x8000, 0x0100, 0x0200, 0x0400, 0x0800,
                                 0x0020, 0x0010, 0x0040, 0x0080, 0x0001, 0x0002, 0x0004, 0x0008};

}  // namespace

PadHands& PadHands::press(int button, double how_far)
{
    HostPadState& state = Stage_Pad(slot_);
    const int bit = kPadBits[button - 0x8001];
    const auto pulled = static_cast<uint8_t>(how_far * 255);
    if ((bit & kTriggerBits) != 0)
        (bit == 0x0400 ? state.leftTrigger : state.rightTrigger) = pulled;
    else
        state.buttons =
            static_cast<uint16_t>(how_far > 0 ? state.buttons | bit : state.buttons & ~bit);
    return *this;
}

PadHands& PadHands::axis(int axis, double value)
{
    HostPadState& state = Stage_Pad(slot_);
    int16_t* const axes[] = {&state.leftX, &state.leftY, &state.rightX, &state.rightY};
    const bool vertical = axis % 2 == 0;
    *axes[axis - 0x8011] =
        static_cast<int16_t>(std::clamp((vertical ? -value : value) * 32768, -32768.0, 32767.0));
    return *this;
}

void PadHands::pull_out()
{
    Stage_PlugPad(slot_, false);
}

PadHands Stage::pad(int slot)
{
    if (!GamePad_At(slot)->connected) {
        Stage_PlugPad(slot, true);
        Process_Messages();
    }
    return PadHands(slot);
}

Stage& Stage::mouse(int x, int y)
{
    Stage_SetMouse(x, y);
    return *this;
}

namespace {

void LeftButton(int x, int y, HostMessageType type)
{
    HostMessage message;
    message.button = 1;
    message.x = x;
    message.y = y;
    message.type = type;
    Stage_Post(message);
}

}  // namespace

Stage& Stage::press(int x, int y)
{
    mouse(x, y);
    LeftButton(x, y, HostMessageType::ButtonDown);
    return *this;
}

Stage& Stage::let_go(int x, int y)
{
    LeftButton(x, y, HostMessageType::ButtonUp);
    return *this;
}

Stage& Stage::click(int x, int y)
{
    return press(x, y).frames(1).let_go(x, y).frames(1);
}

CInstance* Stage::find(Object object, int number) const
{
    const CObjectSW* data = Object_Data(object.index);
    if (!data) return nullptr;
    for (auto* node = data->instancesRecursive.Head(); node; node = node->next)
        if (node->item->Alive() && number-- == 0) return node->item;
    return nullptr;
}

int Stage::count(Object object) const
{
    return Instance_Number(object.index, nullptr, nullptr);
}

double Stage::global(const char* name) const
{
    const RValue* place = GlobalPlace(name);
    if (!place || place->Kind() == VALUE_UNSET) return std::nan("");
    return REAL_RValue(place);
}

std::string Stage::global_text(const char* name) const
{
    const RValue* place = GlobalPlace(name);
    const char* text = place ? VXGetText(place) : nullptr;
    return text ? text : "";
}

double Stage::variable(CInstance* instance, const char* name) const
{
    RValue out;
    const int32_t id = Code_Variable_Find(name, SCOPE_EITHER);
    if (id < 0 || !Variable_Get(instance, id, ARRAY_INDEX_NONE, &out)) return std::nan("");
    const double value = out.Kind() == VALUE_UNSET ? std::nan("") : REAL_RValue(&out);
    FREE_RValue(&out);
    return value;
}

Picture Stage::picture() const
{
    Picture picture;
    if (!g_Device) return picture;
    picture.width = g_Display.backbufferWidth;
    picture.height = g_Display.backbufferHeight;
    picture.pixels.resize(static_cast<size_t>(picture.width) * static_cast<size_t>(picture.height));
    g_Device->ReadPixels(nullptr, {0, 0, picture.width, picture.height}, picture.pixels.data(),
                         picture.width * 4);
    return picture;
}

bool Stage::save_picture(const std::string& path) const
{
    Picture shot = picture();
    for (uint32_t& pixel : shot.pixels)
        pixel = 0xFF000000U | (pixel & 0x00FF00U) | (pixel >> 16 & 0xFFU) | (pixel & 0xFFU) << 16;
    return WritePNG(path.c_str(), reinterpret_cast<const uint8_t*>(shot.pixels.data()), shot.width,
                    shot.height);
}

std::string Stage::save_file() const
{
    const std::vector<uint8_t> bytes = ReadFile(SavePath(folder_).string());
    return {bytes.begin(), bytes.end()};
}

uint64_t Stage::state_hash() const
{
    return StateHash_World();
}
