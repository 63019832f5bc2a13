#pragma once
// The operating system as tables of operations, filled by one of two backends
// and picked once at start: Host_SDL for a desktop, Host_Stage for tests and
// tools. The runtime calls g_Host and knows no backend.

#include <cstdint>

#include "Platform/MemoryManager.h"

// ---- messages, in the runtime's own numbers
enum class HostMessageType : int32_t {
    KeyDown,     // key, repeat, extended, system
    KeyUp,       // key, extended, system
    Char,        // unit: one UTF-16 unit
    MouseMove,   // x, y in client pixels
    ButtonDown,  // button 1 left, 2 right, 3 middle; x, y
    ButtonUp,
    Wheel,        // delta above 0 for up
    Sizing,       // a drag of the window's border is under way
    Size,         // width, height: restored or maximised, outside a drag
    SizeEnd,      // the drag ended
    Focus,        // flag: gained or lost
    ActivateApp,  // flag
    Close,
    DeviceChange,
    Quit,  // ends the loop
};

struct HostMessage {
    HostMessageType type;
    int32_t key = 0;  // virtual-key number, 1 to 255
    bool repeat = false;
    bool extended = false;  // the right Alt and Control, the keypad's Enter
    bool system = false;    // Alt is held
    bool flag = false;
    uint16_t unit = 0;
    int32_t button = 0;
    int32_t x = 0, y = 0;
    int32_t width = 0, height = 0;
    int32_t delta = 0;
};

struct HostRect {
    int32_t x, y, width, height;
};

struct HostWindowRequest {
    int32_t clientWidth, clientHeight;
    bool border, sizeable, fullscreen;
    bool gl;              // a window that can carry a GL context
    int32_t samples;      // multisampling to ask for, 0 none
    const char* caption;  // UTF-8
};

// Sizes and positions are client pixels in desktop coordinates.
struct HostWindowTable {
    bool (*Create)(const HostWindowRequest& request);  // hidden until Show; false: LastError tells
    void (*Destroy)();
    bool (*Exists)();
    const char* (*LastError)();
    void (*Show)();
    bool (*NextMessage)(HostMessage* message);        // false when none waits
    void (*PostMessage)(const HostMessage& message);  // at the end of the queue
    void (*SendKey)(int32_t key, bool down);          // a press made by a script, through the queue
    bool (*KeyState)(int32_t key);                    // the keyboard's present state
    bool (*KeyToggled)(int32_t key);                  // lock keys
    void (*ClientSize)(int32_t* width, int32_t* height);
    void (*ClientPosition)(int32_t* x, int32_t* y);
    void (*SetClientSize)(int32_t width, int32_t height);
    void (*SetClientPosition)(int32_t x, int32_t y);
    void (*SetLimits)(int32_t minWidth, int32_t minHeight, int32_t maxWidth, int32_t maxHeight);
    void (*SetFullscreen)(bool on);  // borderless
    void (*SetCaption)(const char* caption);
    void (*SetCursor)(int32_t row);  // row of the cursor table, -1 none
    void (*SetFocus)();
    bool (*HasFocus)();
    void (*Capture)(bool on);                       // all mouse messages while a button is held
    void (*MousePosition)(int32_t* x, int32_t* y);  // desktop coordinates
    void (*SetMousePosition)(int32_t x, int32_t y);
    HostRect (*Desktop)();  // the primary desktop
    int32_t (*MonitorCount)();
    HostRect (*Monitor)(int32_t index);
    int32_t (*DesktopDepth)();      // bits a pixel, -1 unknown
    int32_t (*DesktopFrequency)();  // Hz, -1 unknown
    // Shows a whole picture: rows of BGRA pixels, top first. The software device's present.
    bool (*PresentPixels)(const uint32_t* pixels, int32_t width, int32_t height, int32_t pitch);
    // GL; null members where the backend has none.
    bool (*GLCreate)(int32_t samples);
    void (*GLDestroy)();
    void (*GLSwap)();
    void (*GLSetInterval)(int32_t interval);  // 0 immediate, 1 on vertical sync
};

struct HostLocalTime {
    int32_t year, month, day, weekday, hour, minute, second;  // month and day from 1, Sunday 0
};

struct HostClockTable {
    int64_t (*Micros)();            // monotonic
    void (*Block)(int32_t millis);  // sleeps; the stage moves its clock instead
    void (*Spin)();  // one round of a busy wait: nothing, or a small step of the stage's clock
    HostLocalTime (*LocalTime)();
    int64_t (*UnixSeconds)();
};

// Paths are UTF-8 with "/".
struct HostFilesTable {
    bool (*Exists)(const char* path);  // a plain file
    bool (*FolderExists)(const char* path);
    // Whole content into a block of MemoryManager, with a zero byte behind it; null on failure.
    uint8_t* (*ReadAll)(const char* path, uint32_t* size);
    bool (*WriteAll)(const char* path, const void* data, uint32_t size);
    // As WriteAll; a file that is made new is the user's alone.
    bool (*WritePrivate)(const char* path, const void* data, uint32_t size);
    bool (*Append)(const char* path, const void* data, uint32_t size);
    bool (*Delete)(const char* path);
    bool (*Rename)(const char* from, const char* to);
    bool (*MakeFolder)(const char* path, int32_t mode);  // true also when it stands
    bool (*RemoveFolder)(const char* path);              // an empty one
    bool (*Writable)(const char* path);                  // by this user
    bool (*MakeWritable)(const char* path);
    // Visits the entries of a folder in ascending byte order of their names.
    bool (*List)(const char* folder,
                 void (*visit)(void* context, const char* name, bool folder, uint64_t size),
                 void* context);
    VxString (*ProgramPath)();    // the running program's own file
    VxString (*CurrentFolder)();  // with a trailing "/"
    bool (*EnterFolder)(const char* path);
    VxString (*LocalData)();  // per-user local data, with a trailing "/"
    VxString (*RoamingData)();
    VxString (*Environment)(const char* name);  // empty when unset
    VxString (*MachineId)();
    const char* (*LastError)();  // of the last failed call
    // Streams for recordings; handles are opaque, null on failure.
    void* (*OpenStream)(const char* path, const char* mode);
    uint32_t (*ReadStream)(void* stream, void* data, uint32_t size);
    uint32_t (*WriteStream)(void* stream, const void* data, uint32_t size);
    void (*CloseStream)(void* stream);
};

enum class HostErrorChoice { Ignore = 0, Abort = 1 };

struct HostDialogTable {
    void (*MessageBox)(const char* title, const char* text);  // also to the standard error
    // The "Code Error" dialog; Ignore is offered only with canIgnore.
    HostErrorChoice (*ErrorDialog)(const char* title, const char* text, bool canIgnore);
    VxString (*ClipboardText)();
    void (*SetClipboardText)(const char* text);
    bool (*OpenUrl)(const char* url);
};

// A failed assertion, or a fault of the processor.
struct HostFault {
    bool assertion;
    uint32_t code;        // of a fault: the system's number of it
    const void* address;  // of a fault
    const char* text;     // of an assertion, like its file and its function
    const char* file;
    int32_t line;
    const char* function;
};
using HostFaultHandler = void (*)(const HostFault& fault);

struct HostProcessTable {
    // From now on a fault calls `handler`, and the process then ends with exit code 1;
    // null gives faults back to the system.
    void (*CatchFaults)(HostFaultHandler handler);
    int32_t (*Cores)();  // at least 1
    // Runs `work` beside the caller. Null when no thread can be had; the stage has none,
    // so that its runs repeat.
    void* (*StartThread)(void (*work)(void* context), void* context);
    void (*JoinThread)(
        void* thread);  // waits for its end; every thread needs it, null does nothing
};

struct Host {
    const char* name;
    bool headlessWindow;  // the stage: no picture reaches a screen
    HostWindowTable window;
    HostClockTable clock;
    HostFilesTable files;
    HostDialogTable dialogs;
    HostProcessTable process;
};

extern Host g_Host;
void Host_UseSDL();
void Host_UseStage();
