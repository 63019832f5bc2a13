// Rows of keyboard, mouse, cursor and platform.

#include "Files/Base/Utf8.h"
#include "Files/Graphics/Draw_Room.h"
#include "Files/Graphics/Window.h"
#include "Files/Graphics_API/Device.h"
#include "Files/IO/IO.h"
#include "Files/Object/Collision.h"
#include "Files/Variable/Variable_BuiltIn.h"

void Variable_RegisterInputRows();

namespace {

constexpr int32_t kDesktopOs = 0;     // os_type of every desktop host
constexpr int32_t kBrowserNone = -1;  // os_browser outside a browser
constexpr int32_t kFullString = kStringUnits - 2;
constexpr uint32_t kLastPoint = 0x10FFFF;  // of Unicode
constexpr int32_t kFontPageSize = 1024;    // pixels of a font's texture page

// What a row keeps in step on both sides: a written value holds until a message
// changes it.
struct IntPair {
    int32_t* frame;
    int32_t* message;
};

bool Put(RValue* out, double value)
{
    SetReal(*out, value);
    return true;
}

void Store(const IntPair& pair, const RValue* value)
{
    *pair.frame = RoundToEven(REAL_RValue(value));
    if (pair.message) *pair.message = *pair.frame;
}

bool Get_keyboard_key(CInstance*, int32_t, RValue* out)
{
    return Put(out, g_IOFrame.curKey);
}
bool Set_keyboard_key(CInstance*, int32_t, const RValue* value)
{
    Store({&g_IOFrame.curKey, &g_IOMessage.curKeyMsg}, value);
    return true;
}

bool Get_keyboard_lastkey(CInstance*, int32_t, RValue* out)
{
    return Put(out, g_IOFrame.lastKey);
}
bool Set_keyboard_lastkey(CInstance*, int32_t, const RValue* value)
{
    Store({&g_IOFrame.lastKey, &g_IOMessage.lastKeyMsg}, value);
    return true;
}

bool Get_mouse_button(CInstance*, int32_t, RValue* out)
{
    return Put(out, g_IOFrame.button[0]);
}
bool Set_mouse_button(CInstance*, int32_t, const RValue* value)
{
    Store({&g_IOFrame.button[0], &g_IOMessage.buttonMsg}, value);
    return true;
}

bool Get_mouse_lastbutton(CInstance*, int32_t, RValue* out)
{
    return Put(out, g_IOFrame.lastButton[0]);
}
bool Set_mouse_lastbutton(CInstance*, int32_t, const RValue* value)
{
    Store({&g_IOFrame.lastButton[0], &g_IOMessage.lastButtonMsg}, value);
    return true;
}

// ---- texts: UTF-16 units inside, UTF-8 outside

bool IsHigh(uint32_t unit)
{
    return unit >= 0xD800 && unit < 0xDC00;
}
bool IsLow(uint32_t unit)
{
    return unit >= 0xDC00 && unit < 0xE000;
}

// The character at `units[*at]`, which moves behind it. A half without its other half,
// which no UTF-8 has, is the replacement character.
uint32_t NextCharacter(const uint16_t* units, int32_t count, int32_t* at)
{
    const uint32_t first = units[(*at)++];
    if (IsHigh(first) && *at < count && IsLow(units[*at]))
        return 0x10000 + ((first - 0xD800) << 10) + (units[(*at)++] - 0xDC00U);
    return IsHigh(first) || IsLow(first) ? 0xFFFD : first;
}

void PutUnits(RValue* out, const uint16_t* units, int32_t count)
{
    char text[kStringUnits * 3 + 1];  // a pair takes four bytes, so two a unit
    char* end = text;
    for (int32_t at = 0; at < count;) end += Utf8_Put(NextCharacter(units, count, &at), end);
    *end = 0;
    VXCreateString(out, text);
}

bool Get_keyboard_string(CInstance*, int32_t, RValue* out)
{
    PutUnits(out, g_IOFrame.string, g_IOFrame.stringLength);
    return true;
}

bool Set_keyboard_string(CInstance*, int32_t, const RValue* value)
{
    const VXText text = ToText(value);
    const char* at = text.get();
    int32_t length = 0;
    while (const uint32_t point = Utf8_Next(&at)) {
        const int32_t units = point < 0x10000 ? 1 : 2;
        if (point > kLastPoint) continue;
        if (length + units > kFullString) break;
        if (units == 2) g_IOFrame.string[length++] = static_cast<uint16_t>(0xD7C0 + (point >> 10));
        const uint32_t last = units == 2 ? 0xDC00 + (point & 0x3FF) : point;
        g_IOFrame.string[length++] = static_cast<uint16_t>(last);
    }
    g_IOFrame.string[length] = 0;
    g_IOFrame.stringLength = g_IOMessage.stringLength = length;
    for (int32_t i = 0; i <= length; ++i) g_IOMessage.stringMsg[i] = g_IOFrame.string[i];
    return true;
}

bool Get_keyboard_lastchar(CInstance*, int32_t, RValue* out)
{
    PutUnits(out, &g_IOFrame.lastChar, g_IOFrame.lastChar ? 1 : 0);
    return true;
}

bool Set_keyboard_lastchar(CInstance*, int32_t, const RValue* value)
{
    const VXText text = ToText(value);
    g_IOFrame.lastChar = g_IOMessage.lastCharMsg = static_cast<unsigned char>(text.get()[0]);
    return true;
}

// ---- mouse and cursor

bool Get_mouse_x(CInstance*, int32_t, RValue* out)
{
    int32_t x, y;
    IO_MouseRoomPosition(&x, &y);
    return Put(out, x);
}

bool Get_mouse_y(CInstance*, int32_t, RValue* out)
{
    int32_t x, y;
    IO_MouseRoomPosition(&x, &y);
    return Put(out, y);
}

bool Get_cursor_sprite(CInstance*, int32_t, RValue* out)
{
    return Put(out, g_CursorSprite);
}
bool Set_cursor_sprite(CInstance*, int32_t, const RValue* value)
{
    g_CursorSprite = RoundToEven(REAL_RValue(value));
    g_CursorFrame = 0;
    return true;
}

// ---- platform

bool Get_os_type(CInstance*, int32_t, RValue* out)
{
    return Put(out, kDesktopOs);
}
bool Get_os_device(CInstance*, int32_t, RValue* out)
{
    return Put(out, -1);
}
bool Get_os_version(CInstance*, int32_t, RValue* out)
{
    return Put(out, 0);
}
bool Get_os_browser(CInstance*, int32_t, RValue* out)
{
    return Put(out, kBrowserNone);
}

bool Get_browser_width(CInstance*, int32_t, RValue* out)
{
    return Put(out, g_Display.clientWidth);
}

bool Get_browser_height(CInstance*, int32_t, RValue* out)
{
    return Put(out, g_Display.clientHeight);
}

// Sum of the multisample levels that the device supports.
bool Get_display_aa(CInstance*, int32_t, RValue* out)
{
    return Put(out, g_Device ? g_Device->Caps().sampleLevels : 0);
}

bool Get_font_texture_page_size(CInstance*, int32_t, RValue* out)
{
    return Put(out, kFontPageSize);
}

bool Get_webgl_enabled(CInstance*, int32_t, RValue* out)
{
    return Put(out, 0);
}
bool Get_secure_mode(CInstance*, int32_t, RValue* out)
{
    return Put(out, 0);
}

constexpr VariableRow kRows[] = {
    {"keyboard_key", Get_keyboard_key, Set_keyboard_key, true},
    {"keyboard_lastkey", Get_keyboard_lastkey, Set_keyboard_lastkey, true},
    {"keyboard_lastchar", Get_keyboard_lastchar, Set_keyboard_lastchar, true},
    {"keyboard_string", Get_keyboard_string, Set_keyboard_string, true},
    {"mouse_button", Get_mouse_button, Set_mouse_button, true},
    {"mouse_lastbutton", Get_mouse_lastbutton, Set_mouse_lastbutton, true},
    {"mouse_x", Get_mouse_x, nullptr, false},
    {"mouse_y", Get_mouse_y, nullptr, false},
    {"cursor_sprite", Get_cursor_sprite, Set_cursor_sprite, true},
    {"os_type", Get_os_type, nullptr, false},
    {"os_device", Get_os_device, nullptr, false},
    {"os_version", Get_os_version, nullptr, false},
    {"os_browser", Get_os_browser, nullptr, false},
    {"browser_width", Get_browser_width, nullptr, false},
    {"browser_height", Get_browser_height, nullptr, false},
    {"display_aa", Get_display_aa, nullptr, false},
    {"font_texture_page_size", Get_font_texture_page_size, nullptr, false},
    {"webgl_enabled", Get_webgl_enabled, nullptr, false},
    {"secure_mode", Get_secure_mode, nullptr, false},
};

}  // namespace

void Variable_RegisterInputRows()
{
    for (const VariableRow& row : kRows)
        Variable_BuiltIn_Add(row.name, row.getter, row.setter, row.canSet);
}
