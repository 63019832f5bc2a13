#include "Files/IO/GamePad_Map.h"

#include <cstdlib>

#include "Files/Base/Console.h"

namespace {

constexpr int32_t kLinux = 6;  // the number of the running platform
constexpr size_t kGuidLength = 32;

constexpr const char* kNames[kPadTargets] = {
    "a",
    "b",
    "x",
    "y",
    "leftshoulder",
    "rightshoulder",
    "lefttrigger",
    "righttrigger",
    "guide",
    "start",
    "leftstick",
    "rightstick",
    "dpup",
    "dpdown",
    "dpleft",
    "dpright",
    "leftx",
    "lefty",
    "rightx",
    "righty",
    "back",
};

struct Platform {
    const char* name;
    int32_t number;
};
constexpr Platform kPlatforms[] = {{"windows", 0}, {"mac os x", 1}, {"linux", kLinux}};

VxVector<PadMapping> g_mappings;

// The next field, up to a comma.
VxString Field(const char** at)
{
    const char* start = *at;
    while (**at && **at != ',') ++*at;
    const VxString field(start, static_cast<size_t>(*at - start));
    if (**at) ++*at;
    return field;
}

bool IsGuid(const VxString& text)
{
    return text.size() == kGuidLength &&
           text.find_first_not_of("0123456789abcdef") == VxString::npos;
}

// "a3", "b12" or "h0.4".
bool ParseTarget(const VxString& value, PadTarget* target)
{
    const char* digits = value.c_str() + 1;
    char* end = nullptr;
    switch (value.empty() ? 0 : value[0]) {
        case 'a':
            target->kind = PadTargetKind::Axis;
            break;
        case 'b':
            target->kind = PadTargetKind::Button;
            break;
        case 'h':
            target->kind = PadTargetKind::Hat;
            break;
        default:
            return false;
    }
    target->index = static_cast<int32_t>(strtol(digits, &end, 10));
    target->mask = 0;
    if (target->kind == PadTargetKind::Hat && *end == '.')
        target->mask = static_cast<int32_t>(strtol(end + 1, &end, 10));
    return end != digits && *end == 0 && target->index >= 0;
}

void SetPlatform(const VxString& value, PadMapping* mapping)
{
    for (const Platform& platform : kPlatforms)
        if (value == platform.name) mapping->platform = platform.number;
}

// A name that is none of the targets says nothing to this system.
bool ParseField(const VxString& name, const VxString& value, PadMapping* mapping)
{
    if (name == "platform") SetPlatform(value, mapping);
    for (int32_t i = 0; i < kPadTargets; ++i) {
        if (name != kNames[i]) continue;
        if (ParseTarget(value, &mapping->targets[i])) return true;
        mapping->targets[i] = PadTarget{};
        g_DebugConsole->Output("Unable to parse gamepad mapping value - %s", value.c_str());
        return false;
    }
    return true;
}

}  // namespace

bool PadMap_Add(const char* text)
{
    PadMapping mapping;
    const char* at = text;
    mapping.guid = Field(&at);
    if (!IsGuid(mapping.guid) || !*at) return false;
    mapping.description = Field(&at);
    mapping.text = text;
    while (*at) {
        const VxString field = Field(&at);
        const size_t colon = field.find(':');
        if (field.empty()) continue;
        if (colon == VxString::npos) return false;
        if (!ParseField(field.substr(0, colon), field.substr(colon + 1), &mapping)) return false;
    }
    g_mappings.insert(g_mappings.begin(), mapping);
    return true;
}

const PadMapping* PadMap_Find(const VxString& guid)
{
    for (const PadMapping& mapping : g_mappings)
        if (mapping.guid == guid && mapping.platform == kLinux) return &mapping;
    return nullptr;
}

const VxVector<PadMapping>& PadMap_All()
{
    return g_mappings;
}

void PadMap_Clear()
{
    VxVector<PadMapping>().swap(g_mappings);
}
