// Built-ins of gamepads. Outside the table of pads they answer 0 and do nothing.

#include "Files/Base/Console.h"
#include "Files/Base/Error.h"
#include "Files/Function/Arguments.h"
#include "Files/Function/Function_Registry.h"
#include "Files/IO/File_Disk.h"
#include "Files/IO/GamePad.h"
#include "Files/IO/GamePad_Map.h"

namespace {

constexpr char kLibrary[] = "xinput1_3.dll";

bool g_missTold;

// What the readers of values say once on a system without pads.
void TellIfMissing()
{
    if (GamePad_Supported() || g_missTold) return;
    g_missTold = true;
    g_DebugConsole->Output("!!!!! %s not found. Gamepad support disabled", kLibrary);
}

BUILTIN(F_gamepad_is_supported)
{
    SetBool(result, GamePad_Supported());
}

BUILTIN(F_gamepad_get_device_count)
{
    SetReal(result, GamePad_Count());
}

BUILTIN(F_gamepad_is_connected)
{
    const SWGamePad* pad = GamePad_At(ArgInt(args, argc, 0));
    SetBool(result, pad && pad->connected);
}

BUILTIN(F_gamepad_get_description)
{
    const SWGamePad* pad = GamePad_At(ArgInt(args, argc, 0));
    VXCreateString(&result, pad ? pad->description.c_str() : "");
}

// ---- settings

float Setting(const RValue* args, int argc, float SWGamePad::*setting)
{
    const SWGamePad* pad = GamePad_At(ArgInt(args, argc, 0));
    return pad ? pad->*setting : 0;
}

void Set(const RValue* args, int argc, float SWGamePad::*setting, const char* function)
{
    SWGamePad* pad = GamePad_At(ArgInt(args, argc, 0));
    if (!pad) return;
    const double value = ArgReal(args, argc, 1);
    if (value >= 0 && value <= 1)
        pad->*setting = static_cast<float>(value);
    else
        Error_Showf("%s: the value must lie between 0 and 1", function);
}

BUILTIN(F_gamepad_get_button_threshold)
{
    SetReal(result, Setting(args, argc, &SWGamePad::buttonThreshold));
}
BUILTIN(F_gamepad_set_button_threshold)
{
    SetReal(result, 0);
    Set(args, argc, &SWGamePad::buttonThreshold, "gamepad_set_button_threshold");
}
BUILTIN(F_gamepad_get_axis_deadzone)
{
    SetReal(result, Setting(args, argc, &SWGamePad::axisDeadzone));
}
BUILTIN(F_gamepad_set_axis_deadzone)
{
    SetReal(result, 0);
    Set(args, argc, &SWGamePad::axisDeadzone, "gamepad_set_axis_deadzone");
}

float Clamped(double value)
{
    return value > 0 ? static_cast<float>(value < 1 ? value : 1) : 0;
}

BUILTIN(F_gamepad_set_vibration)
{
    SetReal(result, 0);
    SWGamePad* pad = GamePad_At(ArgInt(args, argc, 0));
    if (!pad) return;
    pad->vibrationLeft = Clamped(ArgReal(args, argc, 1));
    pad->vibrationRight = Clamped(ArgReal(args, argc, 2));
}

// ---- values

int32_t CountOf(const RValue* args, int argc, int32_t SWGamePad::*count)
{
    TellIfMissing();
    const SWGamePad* pad = GamePad_At(ArgInt(args, argc, 0));
    return pad && pad->connected ? pad->*count : 0;
}

BUILTIN(F_gamepad_button_count)
{
    SetReal(result, CountOf(args, argc, &SWGamePad::buttonCount));
}
BUILTIN(F_gamepad_axis_count)
{
    SetReal(result, CountOf(args, argc, &SWGamePad::axisCount));
}

BUILTIN(F_gamepad_button_check)
{
    TellIfMissing();
    SetBool(result, GamePad_ButtonDown(ArgInt(args, argc, 0), ArgInt(args, argc, 1)));
}
BUILTIN(F_gamepad_button_check_pressed)
{
    TellIfMissing();
    SetBool(result, GamePad_ButtonPressed(ArgInt(args, argc, 0), ArgInt(args, argc, 1)));
}
BUILTIN(F_gamepad_button_check_released)
{
    TellIfMissing();
    SetBool(result, GamePad_ButtonReleased(ArgInt(args, argc, 0), ArgInt(args, argc, 1)));
}
BUILTIN(F_gamepad_button_value)
{
    TellIfMissing();
    SetReal(result, GamePad_ButtonValue(ArgInt(args, argc, 0), ArgInt(args, argc, 1)));
}
BUILTIN(F_gamepad_axis_value)
{
    TellIfMissing();
    SetReal(result, GamePad_AxisValue(ArgInt(args, argc, 0), ArgInt(args, argc, 1)));
}

// ---- hardware mappings

void AddMapping(const char* text)
{
    if (!PadMap_Add(text)) g_DebugConsole->Output("Unable to parse mapping string - %s\n", text);
}

BUILTIN(F_gamepad_add_hardware_mapping_from_string)
{
    SetReal(result, 0);
    AddMapping(ArgText(args, argc, 0));
}

BUILTIN(F_gamepad_add_hardware_mapping_from_file)
{
    SetReal(result, 0);
    uint32_t size = 0;
    uint8_t* bytes = ReadNamedFile(ArgText(args, argc, 0), &size);
    if (!bytes) return;
    const VxString text(reinterpret_cast<const char*>(bytes), size);
    MemoryManager::Free(bytes);
    for (size_t at = 0; at < text.size();) {
        const size_t end = text.find_first_of("\r\n", at);
        const VxString line = text.substr(at, end == VxString::npos ? end : end - at);
        if (!line.empty() && line[0] != '#') AddMapping(line.c_str());
        at = end == VxString::npos ? text.size() : end + 1;
    }
}

BUILTIN(F_gamepad_get_hardware_mappings)
{
    SetReal(result, 0);
    const VxVector<PadMapping>& all = PadMap_All();
    for (size_t i = all.size(); i-- > 0;) {
        RValue text;
        VXCreateString(&text, all[i].text.c_str());
        SET_RValue(&result, &text, static_cast<int32_t>(i));
        FREE_RValue(&text);
    }
}

constexpr BuiltinRow kRows[] = {
    {"gamepad_is_supported", F_gamepad_is_supported, 0},
    {"gamepad_get_device_count", F_gamepad_get_device_count, 0},
    {"gamepad_is_connected", F_gamepad_is_connected, 1},
    {"gamepad_get_description", F_gamepad_get_description, 1},
    {"gamepad_get_button_threshold", F_gamepad_get_button_threshold, 1},
    {"gamepad_set_button_threshold", F_gamepad_set_button_threshold, 2},
    {"gamepad_get_axis_deadzone", F_gamepad_get_axis_deadzone, 1},
    {"gamepad_set_axis_deadzone", F_gamepad_set_axis_deadzone, 2},
    {"gamepad_button_count", F_gamepad_button_count, 1},
    {"gamepad_axis_count", F_gamepad_axis_count, 1},
    {"gamepad_button_check", F_gamepad_button_check, 2},
    {"gamepad_button_check_pressed", F_gamepad_button_check_pressed, 2},
    {"gamepad_button_check_released", F_gamepad_button_check_released, 2},
    {"gamepad_button_value", F_gamepad_button_value, 2},
    {"gamepad_axis_value", F_gamepad_axis_value, 2},
    {"gamepad_set_vibration", F_gamepad_set_vibration, 3},
    {"gamepad_add_hardware_mapping_from_string", F_gamepad_add_hardware_mapping_from_string, 1},
    {"gamepad_add_hardware_mapping_from_file", F_gamepad_add_hardware_mapping_from_file, 1},
    {"gamepad_get_hardware_mappings", F_gamepad_get_hardware_mappings, 0},
};

}  // namespace

void Function_Gamepad_Register()
{
    g_missTold = false;
    Function_AddRows(kRows);
}
