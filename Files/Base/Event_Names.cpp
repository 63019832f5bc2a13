#include "Files/Base/Event_Names.h"

#include <cstdio>

#include "Files/Object/Object_Main.h"

namespace {

struct Named {
    int32_t number;
    const char* name;
};

constexpr Named kKeys[] = {
    {0, "<no key>"},        {1, "<any key>"},      {8, "<Backspace>"},     {9, "<Tab>"},
    {13, "<Enter>"},        {16, "<Shift>"},       {17, "<Ctrl>"},         {18, "<Alt>"},
    {19, "<Pause>"},        {20, "<Caps Lock>"},   {27, "<Escape>"},       {32, "<Space>"},
    {33, "<Page Up>"},      {34, "<Page Down>"},   {35, "<End>"},          {36, "<Home>"},
    {37, "<Left>"},         {38, "<Up>"},          {39, "<Right>"},        {40, "<Down>"},
    {44, "<Print Screen>"}, {45, "<Insert>"},      {46, "<Delete>"},       {106, "<Keypad *>"},
    {107, "<Keypad +>"},    {109, "<Keypad ->"},   {110, "<Keypad .>"},    {111, "<Keypad />"},
    {144, "<Num Lock>"},    {160, "<Left Shift>"}, {161, "<Right Shift>"}, {162, "<Left Ctrl>"},
    {163, "<Right Ctrl>"},  {164, "<Left Alt>"},   {165, "<Right Alt>"},
};

constexpr Named kMouseEvents[] = {
    {0, "Left Button"},           {1, "Right Button"},
    {2, "Middle Button"},         {3, "No Button"},
    {4, "Left Pressed"},          {5, "Right Pressed"},
    {6, "Middle Pressed"},        {7, "Left Released"},
    {8, "Right Released"},        {9, "Middle Released"},
    {10, "Mouse Enter"},          {11, "Mouse Leave"},
    {12, "Any Pressed"},          {13, "Any Released"},
    {16, "Joystick 1 Left"},      {17, "Joystick 1 Right"},
    {18, "Joystick 1 Up"},        {19, "Joystick 1 Down"},
    {31, "Joystick 2 Left"},      {32, "Joystick 2 Right"},
    {33, "Joystick 2 Up"},        {34, "Joystick 2 Down"},
    {50, "Glob Left Button"},     {51, "Glob Right Button"},
    {52, "Glob Middle Button"},   {53, "Glob Left Pressed"},
    {54, "Glob Right Pressed"},   {55, "Glob Middle Pressed"},
    {56, "Glob Left Released"},   {57, "Glob Right Released"},
    {58, "Glob Middle Released"}, {60, "Mouse Wheel Up"},
    {61, "Mouse Wheel Down"},
};

constexpr Named kOtherEvents[] = {
    {OTHER_OUTSIDE, "Outside Room"},        {OTHER_BOUNDARY, "Intersect Boundary"},
    {OTHER_GAME_START, "Game Start"},       {OTHER_GAME_END, "Game End"},
    {OTHER_ROOM_START, "Room Start"},       {OTHER_ROOM_END, "Room End"},
    {OTHER_NO_MORE_LIVES, "No More Lives"}, {OTHER_ANIMATION_END, "Animation End"},
    {OTHER_END_OF_PATH, "End Of Path"},     {OTHER_NO_MORE_HEALTH, "No More Health"},
};

constexpr Named kAsyncEvents[] = {
    {60, "Image Loaded"},
    {61, "Sound Loaded"},
    {62, "HTTP"},
    {63, "Dialog"},
    {66, "In-App Purchase"},
    {67, "Cloud"},
    {68, "Networking"},
    {69, "Steam"},
    {70, "Social"},
    {71, "Push Notification"},
    {72, "Save/Load"},
    {73, "Audio Recording"},
    {74, "Audio Playback"},
    {75, "System"},
};

template <size_t N>
const char* Lookup(const Named (&names)[N], int32_t number)
{
    for (const Named& entry : names)
        if (entry.number == number) return entry.name;
    return nullptr;
}

void DescribeMouse(char* out, size_t size, int32_t subtype)
{
    const char* const name = Lookup(kMouseEvents, subtype);
    if (name)
        std::snprintf(out, size, "Mouse Event for %s", name);
    else if (subtype >= 21 && subtype <= 28)
        std::snprintf(out, size, "Mouse Event for Joystick 1 Button %d", subtype - 20);
    else if (subtype >= 36 && subtype <= 43)
        std::snprintf(out, size, "Mouse Event for Joystick 2 Button %d", subtype - 35);
    else
        std::snprintf(out, size, "Mouse Event for <Unknown Event>");
}

void DescribeOther(char* out, size_t size, int32_t subtype)
{
    const char* name = "<Unknown Event>";
    if (subtype >= OTHER_ASYNC_FIRST) {
        if (const char* known = Lookup(kAsyncEvents, subtype)) name = known;
        std::snprintf(out, size, "Async Event: %s", name);
    } else if (subtype >= OTHER_USER0 && subtype < OTHER_USER0 + 16) {
        std::snprintf(out, size, "Other Event: User Defined %d", subtype - OTHER_USER0);
    } else if (subtype >= OTHER_OUTSIDE_VIEW0 && subtype < OTHER_OUTSIDE_VIEW0 + 8) {
        std::snprintf(out, size, "Other Event: Outside View %d", subtype - OTHER_OUTSIDE_VIEW0);
    } else if (subtype >= OTHER_BOUNDARY_VIEW0 && subtype < OTHER_BOUNDARY_VIEW0 + 8) {
        std::snprintf(out, size, "Other Event: Intersect View %d Boundary",
                      subtype - OTHER_BOUNDARY_VIEW0);
    } else {
        if (const char* known = Lookup(kOtherEvents, subtype)) name = known;
        std::snprintf(out, size, "Other Event: %s", name);
    }
}

void DescribeKey(char* out, size_t size, const char* lead, int32_t key)
{
    char name[32];
    Event_KeyName(name, sizeof name, key);
    std::snprintf(out, size, "%s for %s", lead, name);
}

}  // namespace

void Event_KeyName(char* out, size_t size, int32_t key)
{
    if (const char* name = Lookup(kKeys, key))
        std::snprintf(out, size, "%s", name);
    else if ((key >= '0' && key <= '9') || (key >= 'A' && key <= 'Z'))
        std::snprintf(out, size, "%c", static_cast<char>(key));
    else if (key >= 96 && key <= 105)
        std::snprintf(out, size, "<Keypad %d>", key - 96);
    else if (key >= 112 && key <= 123)
        std::snprintf(out, size, "<F%d>", key - 111);
    else
        std::snprintf(out, size, "<Key %d>", key);
}

void Event_Describe(char* out, size_t size, int32_t type, int32_t subtype)
{
    const char* plain = "<Unknown Event>";
    switch (type) {
        case EVENT_CREATE:
            plain = "Create Event";
            break;
        case EVENT_DESTROY:
            plain = "Destroy Event";
            break;
        case EVENT_DRAW:
            plain = "Draw Event";
            break;
        case EVENT_PRECREATE:
            plain = "PreCreate Event";
            break;
        case EVENT_ALARM:
            std::snprintf(out, size, "Alarm Event for alarm %d", subtype);
            return;
        case EVENT_STEP:
            std::snprintf(out, size, " Step Event%d", subtype);
            return;
        case EVENT_COLLISION:
            std::snprintf(out, size, " Step Event%s", Object_Name(subtype));
            return;
        case EVENT_KEYBOARD:
            DescribeKey(out, size, "Keyboard Event", subtype);
            return;
        case EVENT_KEYPRESS:
            DescribeKey(out, size, "Key Press Event", subtype);
            return;
        case EVENT_KEYRELEASE:
            DescribeKey(out, size, "Key Release Event", subtype);
            return;
        case EVENT_MOUSE:
            DescribeMouse(out, size, subtype);
            return;
        case EVENT_OTHER:
            DescribeOther(out, size, subtype);
            return;
        default:
            break;
    }
    std::snprintf(out, size, "%s", plain);
}
