#include "Host/Host_Stage.h"

#include <cstdio>

#include "Host/Host_Keyboard.h"
#include "Host/Host_Stage_Audio.h"
#include "Host/Host_Stage_Pads.h"
#include "Host/Posix_Files.h"

namespace {

struct StageState {
    bool exists = false, shown = false, focus = true, fullscreen = false;
    int32_t width = 0, height = 0, x = 0, y = 0;
    int32_t desktopWidth = 1920, desktopHeight = 1080;
    int32_t mouseX = 0, mouseY = 0;  // client pixels
    int32_t cursorRow = 0;
    int32_t presents = 0;
    bool held[keys::kCount] = {};  // by hand, each by its side
    bool toggled[keys::kCount] = {};
    keys::ScriptKeys script;
    int64_t micros = 0;
    HostLocalTime localTime = {2026, 1, 1, 4, 12, 0, 0};
    VxString folder = "/tmp/", dataFolder = "/tmp/", clipboard, caption;
    VxVector<HostMessage> queue;
    size_t queueHead = 0;
    VxVector<VxString> boxes, errors;
    HostErrorChoice choice = HostErrorChoice::Ignore;
};

StageState* g_stage = nullptr;

// One round of a busy wait takes this long on the stage's clock.
constexpr int64_t kSpinMicros = 50;

StageState& S()
{
    if (!g_stage) g_stage = VxNew<StageState>();
    return *g_stage;
}

HostMessage Message(HostMessageType type)
{
    HostMessage message;
    message.type = type;
    return message;
}

bool Create(const HostWindowRequest& request)
{
    S().exists = true;
    S().shown = false;
    S().fullscreen = request.fullscreen;
    S().width = request.fullscreen ? S().desktopWidth : request.clientWidth;
    S().height = request.fullscreen ? S().desktopHeight : request.clientHeight;
    S().caption = request.caption;
    return true;
}

// What still waits for the window goes with it.
void Destroy()
{
    S().exists = S().shown = false;
    S().queue.clear();
    S().queueHead = 0;
}

bool NextMessage(HostMessage* message)
{
    StageState& stage = S();
    if (stage.queueHead >= stage.queue.size()) {
        stage.queue.clear();
        stage.queueHead = 0;
        return false;
    }
    *message = stage.queue[stage.queueHead++];
    return true;
}

bool HeldByHand(int32_t key)
{
    return S().held[key];
}

bool KeyState(int32_t key)
{
    return S().script.Down(key, HeldByHand);
}

void Toggle(int32_t key)
{
    if (key == 20 || key == 144 || key == 145) S().toggled[key] = !S().toggled[key];
}

void SendKey(int32_t key, bool down)
{
    if (!keys::IsKey(key)) return;
    if (down && !KeyState(key)) Toggle(key);
    S().script.Send(key, down, HeldByHand);
}

void ClientSize(int32_t* width, int32_t* height)
{
    *width = S().width;
    *height = S().height;
}

void ClientPosition(int32_t* x, int32_t* y)
{
    *x = S().fullscreen ? 0 : S().x;
    *y = S().fullscreen ? 0 : S().y;
}

void SetClientSize(int32_t width, int32_t height)
{
    S().width = width;
    S().height = height;
}

void SetFullscreen(bool on)
{
    S().fullscreen = on;
    if (!on) return;
    S().width = S().desktopWidth;
    S().height = S().desktopHeight;
}

void MousePosition(int32_t* x, int32_t* y)
{
    int32_t left, top;
    ClientPosition(&left, &top);
    *x = S().mouseX + left;
    *y = S().mouseY + top;
}

void SetMousePosition(int32_t x, int32_t y)
{
    int32_t left, top;
    ClientPosition(&left, &top);
    Stage_SetMouse(x - left, y - top);
}

HostRect Desktop()
{
    return {0, 0, S().desktopWidth, S().desktopHeight};
}

HostErrorChoice ErrorDialog(const char*, const char* text, bool)
{
    S().errors.push_back(text);
    return S().choice;
}

const HostWindowTable kWindow = {
    .Create = Create,
    .Destroy = Destroy,
    .Exists = [] { return S().exists; },
    .LastError = []() -> const char* { return ""; },
    .Show = [] { S().shown = true; },
    .NextMessage = NextMessage,
    .PostMessage = [](const HostMessage& message) { S().queue.push_back(message); },
    .SendKey = SendKey,
    .KeyState = KeyState,
    .KeyToggled = [](int32_t key) { return keys::IsKey(key) && S().toggled[key]; },
    .ClientSize = ClientSize,
    .ClientPosition = ClientPosition,
    .SetClientSize = SetClientSize,
    .SetClientPosition =
        [](int32_t x, int32_t y) {
            S().x = x;
            S().y = y;
        },
    .SetLimits = [](int32_t, int32_t, int32_t, int32_t) {},
    .SetFullscreen = SetFullscreen,
    .SetCaption = [](const char* caption) { S().caption = caption; },
    .SetCursor = [](int32_t row) { S().cursorRow = row; },
    .SetFocus = [] { S().focus = true; },
    .HasFocus = [] { return S().focus; },
    .Capture = [](bool) {},
    .MousePosition = MousePosition,
    .SetMousePosition = SetMousePosition,
    .Desktop = Desktop,
    .MonitorCount = [] { return 1; },
    .Monitor = [](int32_t) { return Desktop(); },
    .DesktopDepth = [] { return 32; },
    .DesktopFrequency = [] { return 60; },
    .PresentPixels =
        [](const uint32_t*, int32_t, int32_t, int32_t) {
            ++S().presents;
            return true;
        },
    .GLCreate = nullptr,
    .GLDestroy = nullptr,
    .GLSwap = nullptr,
    .GLSetInterval = nullptr,
};

const HostClockTable kClock = {
    .Micros = [] { return S().micros; },
    .Block = [](int32_t millis) { S().micros += static_cast<int64_t>(millis) * 1000; },
    .Spin = [] { S().micros += kSpinMicros; },
    .LocalTime = [] { return S().localTime; },
    .UnixSeconds = []() -> int64_t { return 1767268800 + S().micros / 1000000; },
};

const HostFilesTable kFiles = {
    .Exists = posix::Exists,
    .FolderExists = posix::FolderExists,
    .ReadAll = posix::ReadAll,
    .WriteAll = posix::WriteAll,
    .WritePrivate = posix::WritePrivate,
    .Append = posix::Append,
    .Delete = posix::Delete,
    .Rename = posix::Rename,
    .MakeFolder = posix::MakeFolder,
    .RemoveFolder = posix::RemoveFolder,
    .Writable = posix::Writable,
    .MakeWritable = posix::MakeWritable,
    .List = posix::List,
    .ProgramPath = [] { return S().folder + "marlowick"; },
    .CurrentFolder = [] { return S().folder; },
    .EnterFolder = [](const char*) { return true; },  // the stage never leaves its folder
    .LocalData = [] { return S().dataFolder; },
    .RoamingData = [] { return S().dataFolder; },
    .Environment = [](const char*) { return VxString(); },
    .MachineId = [] { return VxString("00000000000000000000000000000000"); },
    .LastError = posix::LastError,
    .OpenStream = posix::OpenStream,
    .ReadStream = posix::ReadStream,
    .WriteStream = posix::WriteStream,
    .CloseStream = posix::CloseStream,
};

const HostDialogTable kDialogs = {
    .MessageBox = [](const char* title,
                     const char* text) { S().boxes.push_back(VxString(title) + ": " + text); },
    .ErrorDialog = ErrorDialog,
    .ClipboardText = [] { return S().clipboard; },
    .SetClipboardText = [](const char* text) { S().clipboard = text; },
    .OpenUrl = [](const char*) { return true; },
};

// A fault on the stage is one of the test's: it belongs to the debugger.
const HostProcessTable kProcess = {
    .CatchFaults = [](HostFaultHandler) {},
    .Cores = []() -> int32_t { return 1; },
    .StartThread = [](void (*)(void*), void*) -> void* { return nullptr; },
    .JoinThread = [](void*) {},
};

}  // namespace

void Host_UseStage()
{
    S();
    g_HostPads = kStagePads;
    g_HostAudio = kStageAudio;
    g_Host = Host{"stage", true, kWindow, kClock, kFiles, kDialogs, kProcess};
}

void Stage_Reset()
{
    VxDelete(g_stage);
    g_stage = nullptr;
    Stage_ResetPads();
    Stage_ResetAudio();
    S();
}

void Stage_Quit()
{
    Stage_ResetPads();
    Stage_ResetAudio();
    VxDelete(g_stage);
    g_stage = nullptr;
}

void Stage_SetFolder(const char* folder)
{
    S().folder = folder;
}
void Stage_SetDataFolder(const char* folder)
{
    S().dataFolder = folder;
}
void Stage_MoveClock(int64_t micros)
{
    S().micros += micros;
}
void Stage_SetLocalTime(const HostLocalTime& time)
{
    S().localTime = time;
}

void Stage_SetDesktop(int32_t width, int32_t height)
{
    S().desktopWidth = width;
    S().desktopHeight = height;
}

void Stage_SetClientSize(int32_t width, int32_t height)
{
    SetClientSize(width, height);
    HostMessage message = Message(HostMessageType::Sizing);
    message.width = width;
    message.height = height;
    S().queue.push_back(message);
    message.type = HostMessageType::SizeEnd;
    S().queue.push_back(message);
}

void Stage_Key(int32_t key, bool down)
{
    if (!keys::IsKey(key)) return;
    const int32_t side = keys::WithSide(key);
    const bool before = S().script.TakeBack(side, S().held[side]);
    S().held[side] = down;
    if (down && !before) Toggle(key);
    S().queue.push_back(keys::Message(side, down, before));
}
void Stage_Post(const HostMessage& message)
{
    S().queue.push_back(message);
}

void Stage_SetMouse(int32_t x, int32_t y)
{
    S().mouseX = x;
    S().mouseY = y;
    HostMessage message = Message(HostMessageType::MouseMove);
    message.x = x;
    message.y = y;
    S().queue.push_back(message);
}

void Stage_SetErrorChoice(HostErrorChoice choice)
{
    S().choice = choice;
}
const VxVector<VxString>& Stage_MessageBoxes()
{
    return S().boxes;
}
const VxVector<VxString>& Stage_ErrorTexts()
{
    return S().errors;
}
int32_t Stage_PresentCount()
{
    return S().presents;
}
int32_t Stage_CursorRow()
{
    return S().cursorRow;
}
bool Stage_WindowShown()
{
    return S().shown;
}
