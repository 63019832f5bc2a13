#include "tools/pack/Cutouts.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <sstream>

namespace pack {
namespace {

constexpr double kPi = 3.14159265358979323846;

struct Word {
    const char* name;
    int value;
};

constexpr Word kEases[] = {{"smooth", static_cast<int>(Ease::smooth)},
                           {"linear", static_cast<int>(Ease::linear)},
                           {"in", static_cast<int>(Ease::in)},
                           {"out", static_cast<int>(Ease::out)},
                           {"hold", static_cast<int>(Ease::hold)}};

constexpr Word kChannels[] = {
    {"x", static_cast<int>(Channel::x)},           {"y", static_cast<int>(Channel::y)},
    {"turn", static_cast<int>(Channel::turn)},     {"scalex", static_cast<int>(Channel::scaleX)},
    {"scaley", static_cast<int>(Channel::scaleY)}, {"scale", static_cast<int>(Channel::scale)},
    {"fade", static_cast<int>(Channel::fade)},     {"show", static_cast<int>(Channel::show)}};

template <size_t N>
bool FindWord(const Word (&words)[N], const std::string& name, int& value)
{
    for (const Word& word : words) {
        if (name == word.name) {
            value = word.value;
            return true;
        }
    }
    return false;
}

template <size_t N>
std::string ListWords(const Word (&words)[N])
{
    std::string list;
    for (const Word& word : words) list += (list.empty() ? "" : ", ") + std::string(word.name);
    return list;
}

bool ParseNumber(const std::string& text, double& value)
{
    if (text.empty()) return false;
    char* end = nullptr;
    value = std::strtod(text.c_str(), &end);
    return *end == 0 && std::isfinite(value);
}

int FindPart(const CutoutTable& table, const std::string& name)
{
    for (size_t i = 0; i < table.parts.size(); ++i)
        if (table.parts[i].name == name) return static_cast<int>(i);
    return -1;
}

// Reads one table line by line; the first fault ends it with its message.
class Parser {
public:
    Parser(const std::string& file, CutoutTable& table, std::string& error)
        : table_(table), error_(error)
    {
        table_ = CutoutTable();
        table_.file = file;
    }

    bool Line(const std::string& text)
    {
        ++line_;
        std::istringstream stream(text.substr(0, text.find('#')));
        std::vector<std::string> words;
        for (std::string word; stream >> word;) words.push_back(word);
        if (words.empty()) return true;
        if (words[0] == "size") return Size(words);
        if (words[0] == "part" || words[0] == "joint") return Part(words);
        if (words[0] == "animation") return Animation(words);
        if (table_.animations.empty())
            return Expected("size, part, joint or animation instead of \"" + words[0] + "\"");
        return Track(words);
    }

    bool Finish()
    {
        ++line_;
        if (table_.width <= 0) return Expected("a size before the end of the table");
        if (table_.parts.empty()) return Expected("at least one part before the end of the table");
        if (table_.animations.empty())
            return Expected("at least one animation before the end of the table");
        return true;
    }

private:
    bool Expected(const std::string& what)
    {
        error_ = table_.file + ":" + std::to_string(line_) + ": expected " + what;
        return false;
    }

    bool Size(const std::vector<std::string>& words)
    {
        if (words.size() != 3 || !ParseNumber(words[1], table_.width) ||
            !ParseNumber(words[2], table_.height) || table_.width <= 0 || table_.height <= 0)
            return Expected("a width and a height above 0 after size");
        return true;
    }

    bool Part(const std::vector<std::string>& words)
    {
        if (words.size() < 2) return Expected("a name after " + words[0]);
        if (!table_.animations.empty()) return Expected("every part before the first animation");
        if (FindPart(table_, words[1]) >= 0)
            return Expected("a new name, \"" + words[1] + "\" is already a part");
        CutoutPart part;
        part.name = part.group = words[1];
        const bool joint = words[0] == "joint";
        part.line = line_;
        for (size_t i = 2; i < words.size(); ++i)
            if (!PartKey(words[i], part)) return false;
        if (joint) part.group.clear();
        if (joint && !part.fixedPivot && part.marker.empty())
            return Expected("pivot= for the joint \"" + words[1] + "\"");
        table_.parts.push_back(part);
        return true;
    }

    bool PartKey(const std::string& word, CutoutPart& part)
    {
        const size_t equals = word.find('=');
        const std::string key = word.substr(0, equals);
        const std::string value = equals == std::string::npos ? "" : word.substr(equals + 1);
        if (value.empty()) return Expected("key=value instead of \"" + word + "\"");
        if (key == "group") {
            part.group = value;
        } else if (key == "parent") {
            part.parent = FindPart(table_, value);
            if (part.parent < 0)
                return Expected("an earlier part as parent, not \"" + value + "\"");
        } else if (key == "pivot") {
            const size_t comma = value.find(',');
            if (comma == std::string::npos) {
                part.marker = "pivot-" + value;
                return true;
            }
            part.fixedPivot = true;
            if (!ParseNumber(value.substr(0, comma), part.pivotX) ||
                !ParseNumber(value.substr(comma + 1), part.pivotY))
                return Expected("pivot=x,y with two numbers, not \"" + value + "\"");
        } else {
            return Expected("group=, parent= or pivot= instead of \"" + word + "\"");
        }
        return true;
    }

    bool Animation(const std::vector<std::string>& words)
    {
        if (words.size() < 2) return Expected("a name after animation");
        if (Cutouts_Find(table_, words[1]))
            return Expected("a new name, \"" + words[1] + "\" is already an animation");
        CutoutAnimation animation;
        for (size_t i = 2; i < words.size(); ++i) {
            if (words[i].rfind("like=", 0) != 0) continue;
            const CutoutAnimation* model = Cutouts_Find(table_, words[i].substr(5));
            if (!model) return Expected("an earlier animation after like=");
            animation = *model;
        }
        animation.name = words[1];
        for (size_t i = 2; i < words.size(); ++i) {
            if (words[i] == "loop") {
                animation.loop = true;
            } else if (words[i] == "once") {
                animation.loop = false;
            } else if (words[i].rfind("length=", 0) == 0) {
                if (!ParseNumber(words[i].substr(7), animation.length) || animation.length <= 0)
                    return Expected("a length above 0");
            } else if (words[i].rfind("like=", 0) != 0) {
                return Expected("length=, like=, loop or once instead of \"" + words[i] + "\"");
            }
        }
        table_.animations.push_back(animation);
        return true;
    }

    bool Track(const std::vector<std::string>& words)
    {
        CutoutAnimation& animation = table_.animations.back();
        CutoutTrack track;
        track.part = FindPart(table_, words[0]);
        if (track.part < 0) return Expected("the name of a part instead of \"" + words[0] + "\"");
        int channel = 0;
        if (words.size() < 2 || !FindWord(kChannels, words[1], channel))
            return Expected("a channel (" + ListWords(kChannels) + ") after \"" + words[0] + "\"");
        track.channel = static_cast<Channel>(channel);
        if (words.size() < 3) return Expected("time=value after \"" + words[1] + "\"");
        for (size_t i = 2; i < words.size(); ++i)
            if (!Key(words[i], animation, track)) return false;
        std::erase_if(animation.tracks, [&](const CutoutTrack& old) {
            return old.part == track.part && old.channel == track.channel;
        });
        animation.tracks.push_back(track);
        return true;
    }

    bool Key(const std::string& word, const CutoutAnimation& animation, CutoutTrack& track)
    {
        const size_t equals = word.find('=');
        const size_t colon = word.find(':');
        CutoutKey key;
        if (equals == std::string::npos || !ParseNumber(word.substr(0, equals), key.time) ||
            !ParseNumber(word.substr(equals + 1, colon == std::string::npos ? std::string::npos
                                                                            : colon - equals - 1),
                         key.value))
            return Expected("time=value instead of \"" + word + "\"");
        int ease = 0;
        if (colon != std::string::npos) {
            if (!FindWord(kEases, word.substr(colon + 1), ease))
                return Expected("one of " + ListWords(kEases) + " after \":\" in \"" + word + "\"");
            key.ease = static_cast<Ease>(ease);
        }
        if (key.time < 0 || key.time > animation.length)
            return Expected("a time within the length of the animation, not \"" + word + "\"");
        if (!track.keys.empty() && key.time <= track.keys.back().time)
            return Expected("times that rise, not \"" + word + "\"");
        track.keys.push_back(key);
        return true;
    }

    CutoutTable& table_;
    std::string& error_;
    int line_ = 0;
};

double EaseAt(Ease ease, double t)
{
    switch (ease) {
        case Ease::linear:
            return t;
        case Ease::in:
            return t * t;
        case Ease::out:
            return 1 - (1 - t) * (1 - t);
        case Ease::hold:
            return 0;
        case Ease::smooth:
            break;
    }
    return 0.5 - 0.5 * std::cos(t * kPi);
}

double ValueAt(const CutoutTrack& track, const CutoutAnimation& animation, double moment)
{
    const std::vector<CutoutKey>& keys = track.keys;
    size_t next = 0;
    while (next < keys.size() && keys[next].time <= moment) ++next;
    const bool outside = next == 0 || next == keys.size();
    if (outside && !animation.loop) return next == 0 ? keys.front().value : keys.back().value;

    const CutoutKey& from = next == 0 ? keys.back() : keys[next - 1];
    const CutoutKey& to = next == keys.size() ? keys.front() : keys[next];
    double span = to.time - from.time, passed = moment - from.time;
    if (span <= 0) span += animation.length;
    if (passed < 0) passed += animation.length;
    const Ease ease = track.channel == Channel::show ? Ease::hold : from.ease;
    return from.value + (to.value - from.value) * EaseAt(ease, passed / span);
}

void Apply(Channel channel, double value, CutoutPose& pose)
{
    switch (channel) {
        case Channel::x:
            pose.x = value;
            break;
        case Channel::y:
            pose.y = value;
            break;
        case Channel::turn:
            pose.turn = value;
            break;
        case Channel::scaleX:
            pose.scaleX *= value;
            break;
        case Channel::scaleY:
            pose.scaleY *= value;
            break;
        case Channel::scale:
            pose.scaleX *= value;
            pose.scaleY *= value;
            break;
        case Channel::fade:
            pose.fade = std::clamp(value, 0.0, 1.0);
            break;
        case Channel::show:
            pose.show = value != 0;
            break;
    }
}

}  // namespace

bool Cutouts_Parse(const std::string& file, const std::string& text, CutoutTable& out,
                   std::string& error)
{
    Parser parser(file, out, error);
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);)
        if (!parser.Line(line)) return false;
    return parser.Finish();
}

const CutoutAnimation* Cutouts_Find(const CutoutTable& table, const std::string& name)
{
    for (const CutoutAnimation& animation : table.animations)
        if (animation.name == name) return &animation;
    return nullptr;
}

double Cutouts_Moment(const CutoutAnimation& animation, int frame, int frames)
{
    if (animation.loop) return animation.length * frame / frames;
    return frames < 2 ? 0 : animation.length * frame / (frames - 1);
}

std::vector<CutoutPose> Cutouts_Pose(const CutoutTable& table, const CutoutAnimation& animation,
                                     double moment)
{
    std::vector<CutoutPose> poses(table.parts.size());
    for (const CutoutTrack& track : animation.tracks)
        Apply(track.channel, ValueAt(track, animation, moment),
              poses[static_cast<size_t>(track.part)]);
    return poses;
}

}  // namespace pack
