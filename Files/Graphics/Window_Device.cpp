// The device behind the window: its choice, its reset, and a frame's begin and end.

#include <cctype>

#include "Files/Base/Console.h"
#include "Files/Base/Error.h"
#include "Files/Graphics/Batch.h"
#include "Files/Graphics/Draw_Room.h"
#include "Files/Graphics/GpuState.h"
#include "Files/Graphics/Quad.h"
#include "Files/Graphics/Surface.h"
#include "Files/Graphics/TextureSlots.h"
#include "Files/Graphics/Window.h"
#include "Files/Graphics_API/Device_Soft.h"
#include "Files/Run/Run_State.h"

const DeviceTable* g_Device;

namespace {

constexpr uint32_t kImmediate = 0x80000000U;
constexpr uint32_t kWhite = 0xFFFFFFU;
constexpr int kFirstShows = 10;  // pumps of the message queue when the window first shows
constexpr char kNoDevice[] =
    "Failed to create Direct3D Device. Please check that your drivers are up-to-date. "
    "Alternatively try switching your computer to a lower resolution to reduce graphics memory "
    "requirements.";

int32_t g_frameNesting;
bool g_firstFrame;
int64_t g_lastPresent, g_syncCorrection;  // microseconds; manual vertical sync

void ChooseInterval()
{
    g_Display.interval = !g_ManualVSync && !g_Display.vsync ? kImmediate : 0;
}

DeviceParams Params(int32_t width, int32_t height)
{
    return {width, height, g_Display.fullscreen, g_Display.samples,
            g_Display.interval == kImmediate ? 0 : 1};
}

bool OpenWith(const DeviceTable& device, char* error, int32_t size)
{
    int32_t width, height;
    g_Host.window.ClientSize(&width, &height);
    if (!device.Open(Params(width, height), error, size)) return false;
    g_Device = &device;
    return true;
}

// The drivers of one maker clear a part of a target badly: there a clear is a quad.
void NoteAdapter(const char* description)
{
    if (g_Switches.vanillaGfx) return;
    VxString lower = description;
    for (char& letter : lower) letter = static_cast<char>(tolower(letter));
    if (lower.find("intel") == VxString::npos) return;
    g_DebugConsole->Output("Switching to manual clears\n");
    g_IntelMode = true;
}

// GL, unless it can't be had or is a software renderer itself: the program's own
// rasteriser costs a fraction of such a one.
bool OpenDevice()
{
    char error[256] = "";
    if (g_Switches.software || g_Host.headlessWindow) {
        g_DebugConsole->Output("Device: soft, asked for\n");
        return OpenWith(Device_Soft, error, sizeof error);
    }
    if (OpenWith(Device_GL, error, sizeof error)) {
        const char* renderer = "";
        const bool software = Device_GL_IsSoftware(&renderer);
        if (!software || g_Switches.gl) {
            NoteAdapter(renderer);
            g_DebugConsole->Output("Device: GL on %s\n", renderer);
            return true;
        }
        g_DebugConsole->Output("Device: soft, for GL is the software renderer %s\n", renderer);
        Device_GL.Close();
        g_Device = nullptr;
    } else {
        g_DebugConsole->Output("Device: soft, for GL fails: %s\n", error);
        if (g_Switches.gl) return false;
    }
    return OpenWith(Device_Soft, error, sizeof error);
}

void NoteBackBuffer()
{
    g_Host.window.ClientSize(&g_Display.clientWidth, &g_Display.clientHeight);
    g_Display.backbufferWidth = g_Display.clientWidth;
    g_Display.backbufferHeight = g_Display.clientHeight;
}

void CentreClient()
{
    int32_t width, height;
    g_Host.window.ClientSize(&width, &height);
    Window_Centre(width, height);
}

// Brings the window itself to the wished mode and size.
void ApplyWindowMode(bool wasFullscreen)
{
    if (g_Display.fullscreen) {
        g_Host.window.SetFullscreen(true);
        return;
    }
    if (wasFullscreen) {
        g_Host.window.SetFullscreen(false);
        if (g_Display.pendingWidth < 0 && g_Display.savedWidth > 0)
            g_Host.window.SetClientSize(g_Display.savedWidth, g_Display.savedHeight);
        g_Display.savedWidth = g_Display.savedHeight = -1;
    }
    if (g_Display.pendingWidth > 0)
        g_Host.window.SetClientSize(g_Display.pendingWidth, g_Display.pendingHeight);
}

bool ResetDevice()
{
    int32_t width, height;
    g_Host.window.ClientSize(&width, &height);
    if (g_Device->Reset(Params(width, height))) return true;
    g_ErrorConsole->Output("Reset() Failed: %X\n", 0U);
    if (g_ManualVSync) {
        g_ManualVSync = false;
        ChooseInterval();
        if (g_Device->Reset(Params(width, height))) return true;
    }
    g_Display.samples = 0;
    g_ErrorConsole->Output("Change SWAP+Multisample type effect, try Reset() again\n");
    return g_Device->Reset(Params(width, height));
}

bool g_deviceFullscreen;  // the mode of the last reset

// The rest of one refresh period since the last present, less a running correction.
void ManualSyncWait()
{
    if (!g_ManualVSync || !g_Display.vsync || g_Display.resetCountdown == 1) return;
    const int32_t frequency = g_Host.window.DesktopFrequency();
    const int64_t period = 1000000 / (frequency > 0 ? frequency : 60);
    const int64_t now = Clock_Micros();
    if (g_lastPresent != 0) {
        const int64_t due = g_lastPresent + period - g_syncCorrection;
        if (now < due) Run_Wait(due - now);
        g_syncCorrection += Clock_Micros() - g_lastPresent - period;
        if (g_syncCorrection > period) g_syncCorrection = period;
        if (g_syncCorrection < -period) g_syncCorrection = -period;
    }
    g_lastPresent = Clock_Micros();
}

void ShowFirstTime()
{
    g_firstFrame = false;
    const int shows = Window_Borderless() ? 1 : kFirstShows;
    for (int i = 0; i < shows; ++i) {
        g_Host.window.Show();
        Process_Messages();
    }
}

}  // namespace

bool GR_D3D_Init(int32_t width, int32_t height, uint32_t flags)
{
    g_frameNesting = 0;
    g_firstFrame = true;
    g_lastPresent = g_syncCorrection = 0;
    g_Display.vsync = (flags & INFO_VSYNC) != 0;
    ChooseInterval();
    g_IntelMode = g_Switches.intel;
    g_DebugConsole->Output("Enumerate Adapters\n");
    g_DebugConsole->Output("Selected Resolution: %dx%d\n", width, height);
    g_DebugConsole->Output("Prepare to create device\n");
    const bool software = g_Switches.software || (flags & INFO_SOFTWARE_VERTICES) != 0;
    g_DebugConsole->Output("Creating D3D device - ARGB=32bit, D24S8, SwapEffect=Copy, %s\n",
                           software ? "Software vertex processing" : "Hardware vertex processing");
    if (!OpenDevice()) {
        g_Host.dialogs.MessageBox("Error", kNoDevice);
        Error_Exit(-1);
        return false;
    }
    g_DebugConsole->Output("Creating screen render target\n");
    g_deviceFullscreen = g_Display.fullscreen;
    NoteBackBuffer();
    g_DebugConsole->Output("Get Device Caps\n");
    g_DebugConsole->Output("Graphics initialisation end...\n");
    return Graphics_Start();
}

void GR_D3D_Quit()
{
    if (!g_Device) return;
    Graphics_Stop();
    g_Device->Close();
    g_Device = nullptr;
}

void Display_CheckSize()
{
    if (g_Display.fullscreen || g_Display.pendingWidth <= 0) return;
    int32_t width, height;
    g_Host.window.ClientSize(&width, &height);
    if (width != g_Display.pendingWidth || height != g_Display.pendingHeight)
        g_Host.window.SetClientSize(g_Display.pendingWidth, g_Display.pendingHeight);
    Window_SetDeviceSize(g_Display.pendingWidth, g_Display.pendingHeight);
}

bool Display_Reset()
{
    Batch_Flush();
    Surface_LoseAll();
    const uint32_t levels = g_Device->Caps().sampleLevels;
    if (g_Display.samples && !(levels & static_cast<uint32_t>(g_Display.samples)))
        g_Display.samples = 0;
    ChooseInterval();
    ApplyWindowMode(g_deviceFullscreen);
    const bool done = ResetDevice();
    if (!g_Display.fullscreen && !g_Display.sizeEvent &&
        (g_deviceFullscreen || g_Display.pendingWidth > 0))
        CentreClient();
    g_deviceFullscreen = g_Display.fullscreen;
    g_Display.pendingWidth = g_Display.pendingHeight = -1;
    g_Display.sizeEvent = false;
    if (!done) return false;
    NoteBackBuffer();
    Graphics_AfterReset();
    return true;
}

void Display_Countdown()
{
    if (g_Display.resetCountdown > 1) {
        Display_CheckSize();
        --g_Display.resetCountdown;
    } else if (g_Display.resetCountdown == 1) {
        Display_Reset();
        g_Display.resetCountdown = 0;
    }
}

void Frame_Begin()
{
    if (g_frameNesting != 0) return;
    if (g_Device->Lost()) Display_Reset();
    g_Device->BeginScene();
    Surface_LeaveAll();
    g_Host.window.ClientSize(&g_Display.clientWidth, &g_Display.clientHeight);
    g_GraphicsStats = GraphicsStats{};
    g_frameNesting = 1;
}

void Frame_End(bool present)
{
    if (g_frameNesting != 1) return;
    Batch_Flush();
    g_frameNesting = 0;
    Batch_EndFrame();
    g_Device->EndScene();
    Surface_LeaveAll();
    if (present) {
        ManualSyncWait();
        g_Device->Present();
    }
    if (g_firstFrame) ShowFirstTime();
}

void Surface_DrawToWindow(int32_t x, int32_t y, int32_t width, int32_t height)
{
    Batch_Flush();
    const CSurface* surface = Surface_Get(g_AppSurface.appSurfaceId);
    if (!surface || !Texture_Get(surface->texture)) return;
    for (const int32_t state : {STATE_Z_ENABLE, STATE_LIGHTING, STATE_FOG_ENABLE, STATE_ALPHA_BLEND,
                                STATE_ALPHA_TEST, STATE_STENCIL_ENABLE})
        g_Device->SetRenderState(state, 0);
    g_Device->SetRenderState(STATE_CULL_MODE, static_cast<uint32_t>(DeviceCull::None));
    // The header's choice smooths the picture, whatever scripts have set for their own drawing.
    for (const int32_t kind : {SAMPLER_MAG, SAMPLER_MIN})
        g_Device->SetSamplerState(g_TextureStage, kind, g_Display.interpolate ? 1 : 0);
    const Letterbox box = Window_LetterboxIn(width, height);
    Quad_TextureExt(surface->texture, 0, 0, static_cast<float>(x) + box.left,
                    static_cast<float>(y) + box.top,
                    (box.right - box.left) / static_cast<float>(surface->width),
                    (box.bottom - box.top) / static_cast<float>(surface->height), 0, kWhite, 1);
    Batch_Flush();
    GpuState_SendAll();
}
