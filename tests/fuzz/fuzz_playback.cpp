// Feeds any bytes to the reader of recordings: frames of it are played, then play is
// live again, and whatever a frame holds can be asked for.

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "Files/Base/Console.h"
#include "Files/Code/Script_Interface.h"
#include "Files/Graphics/Surface.h"
#include "Files/Graphics/Window.h"
#include "Files/IO/IO.h"
#include "Files/Room/Room_Main.h"
#include "Files/Run/Run_State.h"
#include "Files/Variable/Variable_BuiltIn.h"
#include "Host/Host_Stage.h"

namespace {

constexpr size_t kRecordSize = 3034, kMostRecords = 4;

std::string g_file;
size_t g_fileAt;
int g_lines;
CRoom g_room;

// The file: the bytes over and over, up to a length that they choose, so that few
// bytes make whole records.
void MakeFile(const uint8_t* data, size_t size)
{
    g_fileAt = 0;
    g_file.clear();
    if (size < 2) return;
    const size_t length = (data[0] | data[1] << 8) % (kMostRecords * kRecordSize + 1);
    while (g_file.size() < length) g_file.append(reinterpret_cast<const char*>(data), size);
    g_file.resize(length);
}

uint32_t Read(void*, void* out, uint32_t size)
{
    const size_t count = std::min<size_t>(size, g_file.size() - g_fileAt);
    std::memcpy(out, g_file.data() + g_fileAt, count);
    g_fileAt += count;
    return static_cast<uint32_t>(count);
}

void Require(bool holds, const char* what)
{
    if (holds) return;
    std::fprintf(stderr, "%s\n", what);
    std::abort();
}

// A view whose numbers come from the file as well.
void MakeView()
{
    CView& view = g_room.views[0];
    view = CView{};
    view.visible = true;
    if (g_file.size() < sizeof(float) * 8) return;
    const char* from = g_file.data();
    for (float* field : {&view.xview, &view.yview, &view.wview, &view.hview, &view.angle}) {
        std::memcpy(field, from, sizeof *field);
        from += sizeof *field;
    }
    for (int32_t* field : {&view.xport, &view.wport, &view.hport}) {
        std::memcpy(field, from, sizeof *field);
        from += sizeof *field;
    }
}

void AskForEverything()
{
    for (int32_t key = -1; key <= kKeys; ++key) {
        const bool known = key >= 0 && key < kKeys;
        Require(known || !(IO_KeyCheck(key) || IO_KeyPressed(key) || IO_KeyReleased(key)),
                "a number that is no key is down");
    }
    Require(IO_KeyCheck(0) != IO_KeyCheck(1), "none and any at once");
    Require(g_IOFrame.stringLength < kStringUnits, "the text is too long");
    for (const char* name : {"keyboard_string", "keyboard_lastchar", "keyboard_key", "mouse_x",
                             "mouse_y", "mouse_button"}) {
        RValue value;
        Variable_Get(nullptr, Variable_BuiltIn_Find(name), ARRAY_INDEX_NONE, &value);
        FREE_RValue(&value);
    }
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***)
{
    Host_UseStage();
    Stage_Reset();
    g_Host.files.OpenStream = [](const char*, const char*) -> void* { return &g_file; };
    g_Host.files.ReadStream = Read;
    g_Host.files.CloseStream = [](void*) {};
    Console_Init();
    Console_SetSink([](void*, const char*) { ++g_lines; }, nullptr);
    Variable_BuiltIn_Init();
    Variable_RegisterGlobalRows();
    Window_Init();
    g_Switches.playback = "recording";
    g_Display.clientWidth = g_AppSurface.appSurfaceWidth = 854;
    g_Display.clientHeight = g_AppSurface.appSurfaceHeight = 480;
    g_room.viewsEnabled = true;
    Run_Room = &g_room;
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    MakeFile(data, size);
    MakeView();
    g_lines = 0;
    IO_Init();
    const size_t records = g_file.size() / kRecordSize;
    for (size_t frame = 0; frame <= records; ++frame) {
        IO_Update();
        AskForEverything();
    }
    Require(g_lines == (g_file.size() % kRecordSize != 0), "a break is told once");
    // The recording is over: hands count from now on.
    Key_Down('Z', false);
    IO_Update();
    Require(IO_KeyPressed('Z'), "play is not live");
    AskForEverything();
    Key_Up('Z');
    IO_Quit();
    return 0;
}
