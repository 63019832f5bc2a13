#include "Files/IO/IO_Record.h"

#include <algorithm>
#include <cstring>

#include "Files/Base/Console.h"
#include "Files/IO/IO.h"
#include "Host/Host.h"

namespace {

constexpr uint32_t kRecordSize = 2 + 2050 + 4 + 4 + 3 * 256 + 2 * 40 + 3 * 30 + 2 * 10 + 8 + 4 + 4;

constexpr int32_t kFarthest = INT16_MAX;  // of a position in client pixels

void* g_recordStream;
void* g_playbackStream;
int32_t g_cursorX, g_cursorY;  // screen pixels

template <class Visit>
void EachKeyFlags(Visit visit)
{
    visit(g_IOFrame.keyDown, 256);
    visit(g_IOFrame.keyReleased, 256);
    visit(g_IOFrame.keyPressed, 256);
}

template <class Visit>
void EachMouseFlags(Visit visit)
{
    visit(g_IOFrame.buttonDown[0], 30);
    visit(g_IOFrame.buttonReleased[0], 30);
    visit(g_IOFrame.buttonPressed[0], 30);
    visit(g_IOFrame.wheelUp, 10);
    visit(g_IOFrame.wheelDown, 10);
}

// Visits the fields of the frame side in the order of the record.
template <class Visit>
void EachField(Visit visit)
{
    visit(&g_IOFrame.lastChar, 2);
    visit(g_IOFrame.string, 2050);
    visit(&g_IOFrame.lastKey, 4);
    visit(&g_IOFrame.curKey, 4);
    EachKeyFlags(visit);
    visit(g_IOFrame.lastButton, 40);
    visit(g_IOFrame.button, 40);
    EachMouseFlags(visit);
    visit(&g_cursorX, 4);
    visit(&g_cursorY, 4);
    visit(&g_IOFrame.mouseX[0], 4);
    visit(&g_IOFrame.mouseY[0], 4);
}

void* Open(const char* path, const char* mode)
{
    if (!path[0]) return nullptr;
    void* stream = g_Host.files.OpenStream(path, mode);
    if (!stream) g_ErrorConsole->Output("Unable to open %s: %s\n", path, g_Host.files.LastError());
    return stream;
}

// A record comes from a file, which may hold anything: what lies outside the ranges
// that messages keep to is brought inside.
void Settle()
{
    g_IOFrame.string[kStringUnits - 1] = 0;
    g_IOFrame.stringLength = 0;
    while (g_IOFrame.string[g_IOFrame.stringLength]) ++g_IOFrame.stringLength;
    const auto zeroOrOne = [](uint8_t* flags, size_t count) {
        for (size_t i = 0; i < count; ++i) flags[i] = flags[i] != 0;
    };
    EachKeyFlags(zeroOrOne);
    EachMouseFlags(zeroOrOne);
    g_IOFrame.mouseX[0] = std::clamp(g_IOFrame.mouseX[0], -kFarthest - 1, kFarthest);
    g_IOFrame.mouseY[0] = std::clamp(g_IOFrame.mouseY[0], -kFarthest - 1, kFarthest);
}

}  // namespace

void Record_Open(const char* recordPath, const char* playbackPath)
{
    g_playbackStream = Open(playbackPath, "rb");
    g_recordStream = g_playbackStream ? nullptr : Open(recordPath, "wb");
    if (g_playbackStream && recordPath[0])
        g_ErrorConsole->Output("Nothing is recorded to %s while a playback runs\n", recordPath);
}

void Record_Close()
{
    if (g_recordStream) g_Host.files.CloseStream(g_recordStream);
    if (g_playbackStream) g_Host.files.CloseStream(g_playbackStream);
    g_recordStream = g_playbackStream = nullptr;
}

bool Record_ReadFrame()
{
    if (!g_playbackStream) return false;
    uint8_t record[kRecordSize];
    const uint32_t got = g_Host.files.ReadStream(g_playbackStream, record, kRecordSize);
    if (got != kRecordSize) {
        if (got != 0)
            g_ErrorConsole->Output("The playback file breaks off inside a record of %u bytes\n",
                                   kRecordSize);
        g_Host.files.CloseStream(g_playbackStream);
        g_playbackStream = nullptr;
        return false;
    }
    const uint8_t* at = record;
    EachField([&at](void* field, size_t size) {
        memcpy(field, at, size);
        at += size;
    });
    Settle();
    return true;
}

void Record_Cursor(int32_t* x, int32_t* y)
{
    if (!g_playbackStream) g_Host.window.MousePosition(&g_cursorX, &g_cursorY);
    *x = g_cursorX;
    *y = g_cursorY;
}

void Record_WriteFrame()
{
    if (!g_recordStream) return;
    int32_t x, y;
    Record_Cursor(&x, &y);
    uint8_t record[kRecordSize];
    uint8_t* at = record;
    EachField([&at](const void* field, size_t size) {
        memcpy(at, field, size);
        at += size;
    });
    if (g_Host.files.WriteStream(g_recordStream, record, kRecordSize) == kRecordSize) return;
    g_ErrorConsole->Output("The recording ends here: it can't be written\n");
    g_Host.files.CloseStream(g_recordStream);
    g_recordStream = nullptr;
}
