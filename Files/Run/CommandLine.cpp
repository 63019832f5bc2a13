#include "Files/Run/CommandLine.h"

#include <cstdlib>
#include <cstring>

namespace {

constexpr int32_t kDebugLevelStart = 2;   // -debug
constexpr int32_t kDebugLevelAudio = 16;  // -audiodebug adds bit 4

struct FlagSwitch {
    const char* token;
    bool Switches::*flag;
};

constexpr FlagSwitch kFlags[] = {
    {"-trace", &Switches::trace},
    {"-vmtrace", &Switches::vmTrace},
    {"-ext", &Switches::extTrace},
    {"-noerrors", &Switches::noErrors},
    {"-oldexec", &Switches::oldExec},
    {"-noaudio", &Switches::noAudio},
    {"-inawindow", &Switches::inAWindow},
    {"-steam", &Switches::steam},
    {"-software", &Switches::software},
    {"-intel", &Switches::intel},
    {"-gl", &Switches::gl},
    {"-networkdebug", &Switches::networkDebug},
    {"-vanillaGFX", &Switches::vanillaGfx},
    {"-headless", &Switches::headless},
    {"-multivb", &Switches::multiVb},
    {"-novb", &Switches::noVb},
    {"-compresstextures", &Switches::compressTextures},
    {"-manualvsync", &Switches::manualVSyncGiven},
    {"-nodirectinput", &Switches::noDirectInput},
};

struct PathSwitch {
    const char* token;
    VxString Switches::*path;
};

// Switches whose value is the name of a file or folder.
constexpr PathSwitch kPaths[] = {
    {"-game", &Switches::game},
    {"-exit", &Switches::exitTo},
    {"-dir", &Switches::dir},
    {"-record", &Switches::record},
    {"-playback", &Switches::playback},
    {"-output", &Switches::output},
    {"-debugoutput", &Switches::debugOutput},
    {"-profiledump", &Switches::profileDump},
};

constexpr char kPlayerScheme[] = "swplayer:";
constexpr char kPlayerUrl[] = "swplayer://";

// Walks the tokens; each one taken becomes a parameter.
class TokenWalk {
public:
    TokenWalk(const VxVector<VxString>& tokens, const char* launchFolder)
        : tokens_(tokens), launchFolder_(launchFolder)
    {
    }
    bool More() const { return position_ < tokens_.size(); }
    const VxString& Take()
    {
        g_Switches.parameters.push_back(tokens_[position_]);
        return tokens_[position_++];
    }
    VxString TakeValue() { return More() ? Take() : VxString(); }
    VxString TakePath()
    {
        const VxString value = TakeValue();
        return value.empty() ? value : Path_Absolute(value.c_str(), launchFolder_);
    }

private:
    const VxVector<VxString>& tokens_;
    const char* launchFolder_;
    size_t position_ = 0;
};

bool SetFlag(const VxString& token)
{
    for (const FlagSwitch& row : kFlags) {
        if (token != row.token) continue;
        g_Switches.*row.flag = true;
        return true;
    }
    return false;
}

bool SetPath(const VxString& token, TokenWalk* walk)
{
    for (const PathSwitch& row : kPaths) {
        if (token != row.token) continue;
        g_Switches.*row.path = walk->TakePath();
        return true;
    }
    return false;
}

// Only the plain program debugs: a game file that is already known is another's.
void StartDebug()
{
    if (!g_Switches.game.empty()) return;
    g_Switches.debug = true;
    g_Switches.debugLevel = kDebugLevelStart;
}

// "swplayer://name/" gives "name".
void SetPlayerUrl(const VxString& token)
{
    if (token.compare(0, strlen(kPlayerUrl), kPlayerUrl) != 0) return;
    g_Switches.playerUrl = token.substr(strlen(kPlayerUrl));
    if (!g_Switches.playerUrl.empty() && g_Switches.playerUrl.back() == '/')
        g_Switches.playerUrl.pop_back();
}

void ReadToken(const VxString& token, TokenWalk* walk)
{
    if (token == "-debug") {
        StartDebug();
    } else if (token == "-audiodebug") {
        g_Switches.debugLevel |= kDebugLevelAudio;
    } else if (token == "-sleepmargin") {
        g_SleepMargin = atoi(walk->TakeValue().c_str());
        g_Switches.sleepMarginGiven = true;
    } else if (SetFlag(token)) {
        if (g_Switches.manualVSyncGiven) g_ManualVSync = true;
    } else if (SetPath(token, walk)) {
        if (token == "-profiledump") g_Switches.profileFrames = atoi(walk->TakeValue().c_str());
    } else if (token.compare(0, strlen(kPlayerScheme), kPlayerScheme) == 0) {
        SetPlayerUrl(token);
    }
}

}  // namespace

VxString Path_Absolute(const char* path, const char* folder)
{
    VxString whole = path[0] == '/' ? VxString(path) : VxString(folder) + "/" + path;
    VxVector<VxString> parts;
    for (size_t start = 0; start <= whole.size();) {
        const size_t end = whole.find('/', start);
        const VxString part = whole.substr(start, end == VxString::npos ? end : end - start);
        if (part == "..") {
            if (!parts.empty()) parts.pop_back();
        } else if (!part.empty() && part != ".") {
            parts.push_back(part);
        }
        if (end == VxString::npos) break;
        start = end + 1;
    }
    VxString result;
    for (const VxString& part : parts) result += "/" + part;
    return result.empty() ? "/" : result;
}

void CommandLine_Split(const char* line, VxVector<VxString>* tokens)
{
    VxString token;
    bool quoted = false, open = false;
    for (const char* at = line; *at; ++at) {
        if (*at == '"') {
            quoted = !quoted;
            open = true;
        } else if (!quoted && static_cast<unsigned char>(*at) <= ' ') {
            if (open) tokens->push_back(token);
            token.clear();
            open = false;
        } else {
            token += *at;
            open = true;
        }
    }
    if (open) tokens->push_back(token);
}

void CommandLine_ParseTokens(const VxVector<VxString>& tokens, const char* launchFolder,
                             const char* knownGame)
{
    g_Switches = Switches();
    g_Switches.game = knownGame;
    TokenWalk walk(tokens, launchFolder);
    if (walk.More()) walk.Take();  // the program's own name
    while (walk.More()) {
        const VxString token = walk.Take();
        ReadToken(token, &walk);
    }
}
