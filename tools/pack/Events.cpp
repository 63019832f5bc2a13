#include "tools/pack/Events.h"

#include <iterator>

namespace pack {
namespace {

struct Word {
    const char* word;
    int number;
};

// In the order of the event types; type 11 to 14 as named here.
constexpr const char* kTypes[] = {"Create",     "Destroy", "Alarm",   "Step",    "Collision",
                                  "Keyboard",   "Mouse",   "Other",   "Draw",    "KeyPress",
                                  "KeyRelease", "Trigger", "CleanUp", "Gesture", "PreCreate"};

enum Type {
    kCreate,
    kDestroy,
    kAlarm,
    kStep,
    kCollision,
    kKeyboard,
    kMouse,
    kOther,
    kDraw,
    kKeyPress,
    kKeyRelease,
    kTrigger,
    kCleanUp,
    kGesture,
    kPreCreate
};

constexpr Word kSteps[] = {{"Begin", 1}, {"End", 2}};

// Key codes are the runtime's; letters and digits stand for themselves.
constexpr Word kKeys[] = {{"NoKey", 0},   {"AnyKey", 1}, {"Backspace", 8}, {"Tab", 9},
                          {"Enter", 13},  {"Shift", 16}, {"Control", 17},  {"Alt", 18},
                          {"Escape", 27}, {"Space", 32}, {"Left", 37},     {"Up", 38},
                          {"Right", 39},  {"Down", 40}};

constexpr Word kMice[] = {{"LeftDown", 0},
                          {"RightDown", 1},
                          {"MiddleDown", 2},
                          {"NoButton", 3},
                          {"LeftPressed", 4},
                          {"RightPressed", 5},
                          {"MiddlePressed", 6},
                          {"LeftReleased", 7},
                          {"RightReleased", 8},
                          {"MiddleReleased", 9},
                          {"Enter", 10},
                          {"Leave", 11},
                          {"GlobalLeftDown", 50},
                          {"GlobalRightDown", 51},
                          {"GlobalMiddleDown", 52},
                          {"GlobalLeftPressed", 53},
                          {"GlobalRightPressed", 54},
                          {"GlobalMiddlePressed", 55},
                          {"GlobalLeftReleased", 56},
                          {"GlobalRightReleased", 57},
                          {"GlobalMiddleReleased", 58},
                          {"WheelUp", 60},
                          {"WheelDown", 61}};

constexpr Word kOthers[] = {
    {"Outside", 0},       {"Boundary", 1},    {"GameStart", 2},  {"GameEnd", 3},
    {"RoomStart", 4},     {"RoomEnd", 5},     {"NoLives", 6},    {"AnimationEnd", 7},
    {"PathEnd", 8},       {"NoHealth", 9},    {"AsyncHttp", 62}, {"AsyncDialog", 63},
    {"AsyncNetwork", 68}, {"AsyncSteam", 69}, {"AsyncSave", 72}, {"AsyncSystem", 75}};

constexpr Word kDraws[] = {{"Gui", 64},    {"Begin", 72}, {"End", 73}, {"GuiBegin", 74},
                           {"GuiEnd", 75}, {"Pre", 76},   {"Post", 77}};

template <size_t N>
int Look(const Word (&words)[N], const std::string& word)
{
    for (const Word& entry : words) {
        if (word == entry.word) return entry.number;
    }
    return -1;
}

int Key(const std::string& word)
{
    bool letter = word.size() == 1 &&
                  ((word[0] >= 'A' && word[0] <= 'Z') || (word[0] >= '0' && word[0] <= '9'));
    return letter ? word[0] : Look(kKeys, word);
}

int Alarm(const std::string& word)
{
    long long number = 0;
    return Parse_Number(word, number) && number >= 0 && number <= 11 ? static_cast<int>(number)
                                                                     : -1;
}

}  // namespace

int Event_Type(const std::string& word)
{
    for (size_t i = 0; i < std::size(kTypes); ++i) {
        if (word == kTypes[i]) return static_cast<int>(i);
    }
    return -1;
}

const char* Event_Word(int type)
{
    return kTypes[type];
}

int Event_Subtype(int type, const std::string& word, const Names& objects, std::string& shown)
{
    shown = word;
    switch (type) {
        case kAlarm:
            return Alarm(word);
        case kCollision:
            return objects.Find(word);
        case kKeyboard:
        case kKeyPress:
        case kKeyRelease:
            return Key(word);
        case kMouse:
            return Look(kMice, word);
        case kOther:
            return Look(kOthers, word);
        case kStep:
        case kDraw:
            if (word.empty()) return 0;
            return type == kStep ? Look(kSteps, word) : Look(kDraws, word);
        default:
            return word.empty() ? 0 : -1;
    }
}

const char* Event_Expects(int type)
{
    switch (type) {
        case kAlarm:
            return "an alarm from 0 to 11";
        case kCollision:
            return "the name of an object";
        case kKeyboard:
        case kKeyPress:
        case kKeyRelease:
            return "a key such as W, Left, Backspace or NoKey";
        case kMouse:
            return "a mouse word such as LeftPressed, Enter or GlobalLeftPressed";
        case kOther:
            return "a word such as AnimationEnd, RoomStart or AsyncSystem";
        case kStep:
            return "nothing, Begin or End";
        case kDraw:
            return "nothing, Gui, Begin, End, GuiBegin, GuiEnd, Pre or Post";
        default:
            return "nothing";
    }
}

}  // namespace pack
