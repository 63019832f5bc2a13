// The desktop backend: window, GL context and the software device's pictures.

#include "Host/Host_SDL.h"

#include <cstdlib>
#include <cstring>

#include "Host/Posix_Files.h"

namespace sdl {

Window g_window;

namespace {

constexpr int32_t kNoLimit = 16384;  // points

int32_t Times(int32_t value, int32_t factor, int32_t divisor)
{
    const int64_t product = static_cast<int64_t>(value) * factor;
    const int64_t rest = product % divisor < 0 ? 1 : 0;
    return static_cast<int32_t>(product / divisor - rest);
}

void FreePicture()
{
    if (g_window.texture) SDL_DestroyTexture(g_window.texture);
    if (g_window.renderer) SDL_DestroyRenderer(g_window.renderer);
    g_window.texture = nullptr;
    g_window.renderer = nullptr;
    g_window.textureWidth = g_window.textureHeight = 0;
}

// Without a display SDL falls back to drivers that draw into the void, which only
// one who named such a driver can want.
bool ShowsPictures()
{
    const char* driver = SDL_GetCurrentVideoDriver();
    if (getenv("SDL_VIDEODRIVER") || !driver) return true;
    return strcmp(driver, "offscreen") != 0 && strcmp(driver, "dummy") != 0;
}

bool StartVideo()
{
    if (SDL_WasInit(SDL_INIT_VIDEO)) return true;
    SDL_SetHint(SDL_HINT_VIDEO_X11_NET_WM_BYPASS_COMPOSITOR, "0");
    SDL_SetHint(SDL_HINT_VIDEO_MINIMIZE_ON_FOCUS_LOSS, "0");
    SDL_SetHint(SDL_HINT_FRAMEBUFFER_ACCELERATION, "0");
    if (SDL_Init(SDL_INIT_VIDEO) == 0) {
        if (ShowsPictures()) return true;
        SDL_Quit();
    }
    const VxString reason = SDL_GetError();
    g_window.error = "No display can be reached" + (reason.empty() ? reason : " (" + reason + ")") +
                     ": set DISPLAY for an X server or WAYLAND_DISPLAY for a Wayland one.";
    return false;
}

void AskForGL(int32_t samples)
{
    SDL_GL_SetAttribute(SDL_GL_CONTEXT_MAJOR_VERSION, 3);
    SDL_GL_SetAttribute(SDL_GL_CONTEXT_MINOR_VERSION, 3);
    SDL_GL_SetAttribute(SDL_GL_CONTEXT_PROFILE_MASK, SDL_GL_CONTEXT_PROFILE_CORE);
    SDL_GL_SetAttribute(SDL_GL_DOUBLEBUFFER, 1);
    SDL_GL_SetAttribute(SDL_GL_DEPTH_SIZE, 24);
    SDL_GL_SetAttribute(SDL_GL_STENCIL_SIZE, 8);
    SDL_GL_SetAttribute(SDL_GL_MULTISAMPLEBUFFERS, samples > 0 ? 1 : 0);
    SDL_GL_SetAttribute(SDL_GL_MULTISAMPLESAMPLES, samples);
}

Uint32 Style(const HostWindowRequest& request)
{
    Uint32 style = SDL_WINDOW_HIDDEN | SDL_WINDOW_ALLOW_HIGHDPI;
    if (!request.border) style |= SDL_WINDOW_BORDERLESS;
    if (request.sizeable) style |= SDL_WINDOW_RESIZABLE;
    return style;
}

SDL_Window* Open(const HostWindowRequest& request, Uint32 more)
{
    return SDL_CreateWindow(request.caption, SDL_WINDOWPOS_CENTERED, SDL_WINDOWPOS_CENTERED,
                            request.clientWidth, request.clientHeight, Style(request) | more);
}

// On an X server without a window manager nobody serves the wish for full-screen, so
// there the window is stretched by hand first.
void CoverDesktop()
{
    const char* driver = SDL_GetCurrentVideoDriver();
    SDL_Rect area;
    if (!driver || strcmp(driver, "x11") != 0) return;
    if (SDL_GetDisplayBounds(SDL_GetWindowDisplayIndex(g_window.window), &area) != 0) return;
    SDL_SetWindowBordered(g_window.window, SDL_FALSE);
    SDL_SetWindowPosition(g_window.window, area.x, area.y);
    SDL_SetWindowSize(g_window.window, area.w, area.h);
}

void SetFullscreen(bool on)
{
    g_window.fullscreen = on;
    if (on) CoverDesktop();
    SDL_SetWindowFullscreen(g_window.window, on ? SDL_WINDOW_FULLSCREEN_DESKTOP : 0);
    if (!on && g_window.border) SDL_SetWindowBordered(g_window.window, SDL_TRUE);
}

void SetClientSize(int32_t width, int32_t height)
{
    if (!g_window.fullscreen)
        SDL_SetWindowSize(g_window.window, WindowScale().PointsFor(width),
                          WindowScale().PointsFor(height));
}

bool Create(const HostWindowRequest& request)
{
    if (!StartVideo()) return false;
    if (request.gl) {
        AskForGL(request.samples);
        g_window.window = Open(request, SDL_WINDOW_OPENGL);
    }
    if (!g_window.window) g_window.window = Open(request, 0);
    if (!g_window.window) {
        g_window.error = VxString("No window can be opened: ") + SDL_GetError();
        return false;
    }
    g_window.border = request.border;
    if (WindowScale().pixels != WindowScale().points)
        SetClientSize(request.clientWidth, request.clientHeight);
    if (request.fullscreen) SetFullscreen(true);
    SDL_StartTextInput();
    return true;
}

void GLDestroy()
{
    if (g_window.context) SDL_GL_DeleteContext(g_window.context);
    g_window.context = nullptr;
}

void Destroy()
{
    FreePicture();
    GLDestroy();
    FreeCursors();
    if (g_window.window) SDL_DestroyWindow(g_window.window);
    g_window.window = nullptr;
    ForgetMessages();
    SDL_Quit();
}

void ClientSize(int32_t* width, int32_t* height)
{
    *width = *height = 0;
    if (g_window.window) SDL_GetWindowSizeInPixels(g_window.window, width, height);
}

void SetLimits(int32_t minWidth, int32_t minHeight, int32_t maxWidth, int32_t maxHeight)
{
    const auto points = [](int32_t pixels, int32_t none) {
        return pixels > 0 ? WindowScale().PointsFor(pixels) : none;
    };
    // SDL refuses a minimum above the maximum that is still in force.
    SDL_SetWindowMinimumSize(g_window.window, 1, 1);
    SDL_SetWindowMaximumSize(g_window.window, kNoLimit, kNoLimit);
    SDL_SetWindowMinimumSize(g_window.window, points(minWidth, 1), points(minHeight, 1));
    SDL_SetWindowMaximumSize(g_window.window, points(maxWidth, kNoLimit),
                             points(maxHeight, kNoLimit));
}

bool HasFocus()
{
    return g_window.window && (SDL_GetWindowFlags(g_window.window) & SDL_WINDOW_INPUT_FOCUS) != 0;
}

HostRect Bounds(int32_t index)
{
    SDL_Rect area;
    if (SDL_GetDisplayBounds(index, &area) != 0) return {0, 0, 0, 0};
    const Scale scale = WindowScale();
    return {scale.ToPixels(area.x), scale.ToPixels(area.y), scale.ToPixels(area.w),
            scale.ToPixels(area.h)};
}

HostRect Desktop()
{
    if (!StartVideo()) return {0, 0, 0, 0};
    return Bounds(0);
}

bool DesktopMode(SDL_DisplayMode* mode)
{
    return StartVideo() && SDL_GetDesktopDisplayMode(0, mode) == 0;
}

int32_t DesktopDepth()
{
    SDL_DisplayMode mode;
    if (!DesktopMode(&mode)) return -1;
    const int depth = static_cast<int>(SDL_BITSPERPIXEL(mode.format));
    return depth == 24 ? 32 : depth;  // 24 bits are stored in 32
}

int32_t DesktopFrequency()
{
    SDL_DisplayMode mode;
    return DesktopMode(&mode) && mode.refresh_rate > 0 ? mode.refresh_rate : -1;
}

void ClientPosition(int32_t* x, int32_t* y)
{
    *x = *y = 0;
    if (!g_window.window) return;
    SDL_GetWindowPosition(g_window.window, x, y);
    *x = WindowScale().ToPixels(*x);
    *y = WindowScale().ToPixels(*y);
}

void SetClientPosition(int32_t x, int32_t y)
{
    const Scale scale = WindowScale();
    SDL_SetWindowPosition(g_window.window, scale.ToPoints(x), scale.ToPoints(y));
}

void MousePosition(int32_t* x, int32_t* y)
{
    SDL_GetGlobalMouseState(x, y);
    *x = WindowScale().ToPixels(*x);
    *y = WindowScale().ToPixels(*y);
}

void SetMousePosition(int32_t x, int32_t y)
{
    const Scale scale = WindowScale();
    SDL_WarpMouseGlobal(scale.ToPoints(x), scale.ToPoints(y));
}

bool MakePicture(int32_t width, int32_t height)
{
    if (!g_window.renderer) g_window.renderer = SDL_CreateRenderer(g_window.window, -1, 0);
    if (!g_window.renderer) return false;
    if (g_window.texture && g_window.textureWidth == width && g_window.textureHeight == height)
        return true;
    if (g_window.texture) SDL_DestroyTexture(g_window.texture);
    g_window.texture = SDL_CreateTexture(g_window.renderer, SDL_PIXELFORMAT_ARGB8888,
                                         SDL_TEXTUREACCESS_STREAMING, width, height);
    if (g_window.texture) SDL_SetTextureBlendMode(g_window.texture, SDL_BLENDMODE_NONE);
    g_window.textureWidth = width;
    g_window.textureHeight = height;
    return g_window.texture != nullptr;
}

bool StretchOnto(SDL_Surface* surface, const uint32_t* pixels, int32_t width, int32_t height,
                 int32_t pitch)
{
    SDL_Surface* picture = SDL_CreateRGBSurfaceWithFormatFrom(
        const_cast<uint32_t*>(pixels), width, height, 32, pitch, SDL_PIXELFORMAT_RGB888);
    if (!picture) return false;
    const bool done = SDL_BlitScaled(picture, nullptr, surface, nullptr) == 0;
    SDL_FreeSurface(picture);
    return done;
}

// The window's own surface, where the display server shows plain pixels. While a new size
// settles the picture has the old one and is stretched: a renderer would do that too, but
// SDL takes the window away under the user's hands to make one.
bool PresentOnSurface(const uint32_t* pixels, int32_t width, int32_t height, int32_t pitch)
{
    SDL_Surface* surface = SDL_GetWindowSurface(g_window.window);
    if (!surface) return false;
    if (surface->w != width || surface->h != height) {
        if (!StretchOnto(surface, pixels, width, height, pitch)) return false;
    } else if (SDL_ConvertPixels(width, height, SDL_PIXELFORMAT_RGB888, pixels, pitch,
                                 surface->format->format, surface->pixels, surface->pitch) != 0) {
        return false;
    }
    return SDL_UpdateWindowSurface(g_window.window) == 0;
}

bool PresentPixels(const uint32_t* pixels, int32_t width, int32_t height, int32_t pitch)
{
    if (!g_window.window) return false;
    if (!g_window.renderer && PresentOnSurface(pixels, width, height, pitch)) return true;
    if (!MakePicture(width, height)) return false;
    SDL_UpdateTexture(g_window.texture, nullptr, pixels, pitch);
    SDL_RenderCopy(g_window.renderer, g_window.texture, nullptr, nullptr);
    SDL_RenderPresent(g_window.renderer);
    return true;
}

bool GLCreate(int32_t samples)
{
    if (!(SDL_GetWindowFlags(g_window.window) & SDL_WINDOW_OPENGL)) {
        g_window.error = "the window carries no GL";
        return false;
    }
    AskForGL(samples);
    g_window.context = SDL_GL_CreateContext(g_window.window);
    if (!g_window.context) {
        SDL_GL_SetAttribute(SDL_GL_CONTEXT_PROFILE_MASK, SDL_GL_CONTEXT_PROFILE_ES);
        SDL_GL_SetAttribute(SDL_GL_CONTEXT_MINOR_VERSION, 0);
        g_window.context = SDL_GL_CreateContext(g_window.window);
    }
    if (g_window.context) return true;
    g_window.error = SDL_GetError();
    return false;
}

}  // namespace

int32_t Scale::ToPixels(int32_t value) const
{
    return Times(value, pixels, points);
}
int32_t Scale::ToPoints(int32_t value) const
{
    return Times(value, points, pixels);
}

int32_t Scale::PointsFor(int32_t size) const
{
    int32_t held = ToPoints(size);
    while (ToPixels(held) < size) ++held;
    return held;
}

Scale WindowScale()
{
    int width = 0, height = 0;
    Scale scale;
    if (!g_window.window) return scale;
    SDL_GetWindowSize(g_window.window, &width, &height);
    scale.points = width;
    SDL_GetWindowSizeInPixels(g_window.window, &width, &height);
    scale.pixels = width;
    return scale.points > 0 && scale.pixels > 0 ? scale : Scale{};
}

const HostWindowTable kWindowTable = {
    .Create = Create,
    .Destroy = Destroy,
    .Exists = [] { return g_window.window != nullptr; },
    .LastError = [] { return g_window.error.c_str(); },
    .Show = [] { SDL_ShowWindow(g_window.window); },
    .NextMessage = NextMessage,
    .PostMessage = PostMessage,
    .SendKey = SendKey,
    .KeyState = KeyState,
    .KeyToggled = KeyToggled,
    .ClientSize = ClientSize,
    .ClientPosition = ClientPosition,
    .SetClientSize = SetClientSize,
    .SetClientPosition = SetClientPosition,
    .SetLimits = SetLimits,
    .SetFullscreen = SetFullscreen,
    .SetCaption = [](const char* caption) { SDL_SetWindowTitle(g_window.window, caption); },
    .SetCursor = SetCursor,
    .SetFocus = [] { SDL_RaiseWindow(g_window.window); },
    .HasFocus = HasFocus,
    .Capture = [](bool on) { SDL_CaptureMouse(on ? SDL_TRUE : SDL_FALSE); },
    .MousePosition = MousePosition,
    .SetMousePosition = SetMousePosition,
    .Desktop = Desktop,
    .MonitorCount = []() -> int32_t { return SDL_GetNumVideoDisplays(); },
    .Monitor = Bounds,
    .DesktopDepth = DesktopDepth,
    .DesktopFrequency = DesktopFrequency,
    .PresentPixels = PresentPixels,
    .GLCreate = GLCreate,
    .GLDestroy = GLDestroy,
    .GLSwap = [] { SDL_GL_SwapWindow(g_window.window); },
    .GLSetInterval = [](int32_t interval) { SDL_GL_SetSwapInterval(interval); },
};

}  // namespace sdl

void Host_UseSDL()
{
    g_HostPads = sdl::kPadTable;
    g_HostAudio = sdl::kAudioTable;
    g_Host = Host{
        .name = "desktop",
        .headlessWindow = false,
        .window = sdl::kWindowTable,
        .clock =
            {
                .Micros = posix::Micros,
                .Block = posix::Block,
                .Spin = [] {},
                .LocalTime = posix::LocalTime,
                .UnixSeconds = posix::UnixSeconds,
            },
        .files =
            {
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
                .ProgramPath = posix::ProgramPath,
                .CurrentFolder = posix::CurrentFolder,
                .EnterFolder = posix::EnterFolder,
                .LocalData = posix::LocalData,
                .RoamingData = posix::RoamingData,
                .Environment = posix::Environment,
                .MachineId = posix::MachineId,
                .LastError = posix::LastError,
                .OpenStream = posix::OpenStream,
                .ReadStream = posix::ReadStream,
                .WriteStream = posix::WriteStream,
                .CloseStream = posix::CloseStream,
            },
        .dialogs = sdl::kDialogTable,
        .process = {.CatchFaults = posix::CatchFaults,
                    .Cores = posix::Cores,
                    .StartThread = posix::StartThread,
                    .JoinThread = posix::JoinThread},
    };
}
