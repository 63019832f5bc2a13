#include "tools/music/Score.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <sstream>
#include <stdexcept>

namespace music {
namespace {

using Words = std::vector<std::string>;
constexpr char kHold[] = ".", kRest[] = "-";
constexpr char kDrums[] = "ksthoxrc";

// A chord: semitones of its root, and above it those of its tones.
struct Chord {
    int root = -1;  // 0 is c; -1: silence
    std::vector<int> tones;
};

struct Part {
    std::vector<Words> chords;                        // by bar
    std::map<std::string, std::vector<Words>> lines;  // by voice, then bar
    Words without;                                    // voices that rest
    size_t bars = 0;
};

class Reader {
public:
    explicit Reader(const std::string& path) : path_(path) {}
    Score Read();

private:
    [[noreturn]] void Fail(const std::string& text) const
    {
        throw std::runtime_error(path_ + ":" + std::to_string(line_) + ": " + text);
    }
    void Line(const std::string& text);
    void ReadVoice(std::istringstream& words);
    void ReadBars(const std::string& name, std::istringstream& words);
    double Number(const std::string& text) const;
    int Key(const std::string& text) const;
    Chord ParseChord(const std::string& text) const;
    std::vector<int> Keys(const Voice& voice, const std::string& token) const;
    std::vector<int> DegreeKeys(const Voice& voice, const Chord& chord, char letter) const;
    void Play(const Part& part, double at);
    void PlayBar(Voice* voice, const Words& tokens, double at);
    void PlayPattern(Voice* voice, const Words& chords, double at);
    void Add(Voice* voice, double start, double length, const std::vector<int>& keys);

    std::string path_;
    int line_ = 0;
    Score score_;
    std::map<std::string, Part> parts_;
    std::string part_;
    Words order_;
};

double Reader::Number(const std::string& text) const
{
    char* end = nullptr;
    const double number = std::strtod(text.c_str(), &end);
    if (text.empty() || *end != 0 || !std::isfinite(number)) Fail("expected a number, not " + text);
    return number;
}

// A letter with an optional # or b; moves `at` behind it. -1 when there is none.
int Tone(const std::string& text, size_t* at)
{
    static const std::string letters = "c d ef g a b";
    const char letter = static_cast<char>(std::tolower(text.empty() ? ' ' : text[0]));
    const size_t place = letter == ' ' ? std::string::npos : letters.find(letter);
    if (place == std::string::npos) return -1;
    int tone = static_cast<int>(place);
    *at = 1;
    if (text.size() > 1 && (text[1] == '#' || text[1] == 'b')) {
        tone += text[1] == '#' ? 1 : -1;
        *at = 2;
    }
    return (tone + 12) % 12;
}

int Reader::Key(const std::string& text) const
{
    size_t at = 0;
    const int tone = Tone(text, &at);
    if (tone < 0 || at + 1 != text.size() || text[at] < '0' || text[at] > '8')
        Fail("expected a note such as c4, eb5 or f#3, not " + text);
    return 12 * (text[at] - '0' + 1) + tone;
}

Chord Reader::ParseChord(const std::string& text) const
{
    static const std::map<std::string, std::vector<int>> kinds = {
        {"", {0, 4, 7}},       {"m", {0, 3, 7}},        {"7", {0, 4, 7, 10}},
        {"m7", {0, 3, 7, 10}}, {"maj7", {0, 4, 7, 11}}, {"6", {0, 4, 7, 9}},
        {"sus4", {0, 5, 7}},   {"sus2", {0, 2, 7}},     {"dim", {0, 3, 6}},
        {"5", {0, 7, 12}},     {"add9", {0, 4, 7, 14}}, {"m6", {0, 3, 7, 9}},
    };
    Chord chord;
    if (text == kRest) return chord;
    size_t at = 0;
    chord.root = std::isupper(static_cast<unsigned char>(text[0])) ? Tone(text, &at) : -1;
    const auto kind = kinds.find(text.substr(at));
    if (chord.root < 0 || kind == kinds.end())
        Fail("expected a chord such as C, Am, G7 or Fmaj7, not " + text);
    chord.tones = kind->second;
    return chord;
}

// The keys of a token of a voice's line: drums, notes joined by +, or a whole chord.
std::vector<int> Reader::Keys(const Voice& voice, const std::string& token) const
{
    std::vector<int> keys;
    if (voice.patch == "kit") {
        for (const char stroke : token) {
            if (!std::strchr(kDrums, stroke))
                Fail(std::string("expected drums out of ") + kDrums + ", not " + token);
            keys.push_back(stroke);
        }
    } else if (std::isupper(static_cast<unsigned char>(token[0]))) {
        const Chord chord = ParseChord(token);
        for (const int tone : chord.tones)
            keys.push_back(12 * (voice.octave + 1) + chord.root + tone);
    } else {
        std::istringstream notes(token);
        for (std::string note; std::getline(notes, note, '+');) keys.push_back(Key(note));
    }
    return keys;
}

void Reader::ReadVoice(std::istringstream& words)
{
    Voice voice;
    if (!(words >> voice.name >> voice.patch)) Fail("expected voice NAME PATCH");
    for (std::string word; words >> word;) {
        const size_t equals = word.find('=');
        const std::string key = word.substr(0, equals);
        const std::string value = equals == std::string::npos ? "" : word.substr(equals + 1);
        if (key == "level")
            voice.level = Number(value);
        else if (key == "pan")
            voice.pan = std::clamp(Number(value), -1.0, 1.0);
        else if (key == "room")
            voice.room = Number(value);
        else if (key == "octave")
            voice.octave = static_cast<int>(Number(value));
        else if (key == "pattern")
            voice.pattern = value;
        else
            Fail("expected level, pan, room, octave or pattern, not " + word);
    }
    score_.voices.push_back(voice);
}

void Reader::ReadBars(const std::string& name, std::istringstream& words)
{
    Part& part = parts_[part_];
    const bool known =
        name == "chords" || std::any_of(score_.voices.begin(), score_.voices.end(),
                                        [&](const Voice& voice) { return voice.name == name; });
    if (!known) Fail("no voice has the name " + name);
    std::vector<Words>& bars = name == "chords" ? part.chords : part.lines[name];
    Words bar;
    std::string word;
    if (!(words >> word) || word != "|") Fail("expected | before the first bar");
    while (words >> word) {
        if (word != "|") {
            bar.push_back(word);
            continue;
        }
        if (bar.empty()) Fail("a bar holds nothing; - is a rest");
        bars.push_back(bar);
        bar.clear();
    }
    if (!bar.empty()) Fail("expected | behind the last bar");
    part.bars = std::max(part.bars, bars.size());
}

void Reader::Line(const std::string& text)
{
    std::istringstream words(text);
    std::string word;
    if (!(words >> word) || word[0] == '#') return;
    std::string value;
    if (word == "voice") return ReadVoice(words);
    if (word == "part") {
        if (!(words >> part_)) Fail("expected part NAME");
        parts_[part_];
    } else if (word == "play") {
        while (words >> value) order_.push_back(value);
    } else if (word == "without") {
        while (words >> value) parts_[part_].without.push_back(value);
    } else if (word == "once") {
        score_.once = true;
    } else if (word == "tempo" || word == "bar" || word == "loudness" || word == "swing") {
        words >> value;
        (word == "tempo"   ? score_.tempo
         : word == "bar"   ? score_.barBeats
         : word == "swing" ? score_.swing
                           : score_.loudness) = Number(value);
    } else {
        if (part_.empty())
            Fail("expected tempo, bar, loudness, swing, once, voice or part, not " + word);
        ReadBars(word, words);
    }
}

void Reader::Add(Voice* voice, double start, double length, const std::vector<int>& keys)
{
    const double inBar = std::fmod(start, score_.barBeats);
    const double accent = inBar < 0.01 ? 1.0 : std::fmod(inBar, 1.0) < 0.01 ? 0.88 : 0.76;
    const double eighth = std::fmod(start, 1.0);
    const double late = std::fabs(eighth - 0.5) < 0.01 ? score_.swing * 0.5 : 0;
    for (const int key : keys) voice->notes.push_back({start + late, length - late, key, accent});
}

// The tokens share the bar evenly.
void Reader::PlayBar(Voice* voice, const Words& tokens, double at)
{
    const double step = score_.barBeats / static_cast<double>(tokens.size());
    for (size_t i = 0; i < tokens.size(); ++i) {
        if (tokens[i] == kRest) continue;
        if (tokens[i] == kHold) {
            // The notes before go on, those of the bar before too.
            const double now = at + step * static_cast<double>(i);
            for (auto note = voice->notes.rbegin(); note != voice->notes.rend(); ++note) {
                if (std::fabs(note->start + note->length - now) > 0.01) break;
                note->length += step;
            }
            continue;
        }
        Add(voice, at + step * static_cast<double>(i), step, Keys(*voice, tokens[i]));
    }
}

// A letter of a pattern as keys: a degree of the chord, L the fifth below, c all of it.
std::vector<int> Reader::DegreeKeys(const Voice& voice, const Chord& chord, char letter) const
{
    const int root = 12 * (voice.octave + 1) + chord.root;
    const auto tone = [&](size_t i) { return chord.tones[std::min(i, chord.tones.size() - 1)]; };
    std::vector<int> all;
    for (const int above : chord.tones) all.push_back(root + above);
    switch (letter) {
        case '1':
            return {root};
        case '3':
            return {root + tone(1)};
        case '5':
            return {root + tone(2)};
        case '7':
            return {root + (chord.tones.size() > 3 ? tone(3) : 12)};
        case '8':
            return {root + 12};
        case '0':
            return {root + 12 + tone(1)};
        case 'L':
            return {root - 12 + tone(2)};
        case 'c':
            return all;
        default:
            Fail(std::string("a pattern has no letter ") + letter);
    }
}

// A pattern's letters share the bar and follow the chord of the moment; - is silence, and
// . goes on.
void Reader::PlayPattern(Voice* voice, const Words& chords, double at)
{
    const std::string& pattern = voice->pattern;
    const double step = score_.barBeats / static_cast<double>(pattern.size());
    for (size_t i = 0; i < pattern.size(); ++i) {
        if (pattern[i] == kRest[0] || pattern[i] == kHold[0]) continue;
        const size_t next = pattern.find_first_not_of('.', i + 1);
        const size_t length = (next == std::string::npos ? pattern.size() : next) - i;
        std::vector<int> keys;
        if (voice->patch == "kit") {
            keys = Keys(*voice, std::string(1, pattern[i]));
        } else {
            if (chords.empty()) continue;
            const Chord chord = ParseChord(chords[i * chords.size() / pattern.size()]);
            if (chord.root < 0) continue;
            keys = DegreeKeys(*voice, chord, pattern[i]);
        }
        Add(voice, at + step * static_cast<double>(i), step * static_cast<double>(length), keys);
    }
}

void Reader::Play(const Part& part, double at)
{
    for (Voice& voice : score_.voices) {
        const auto line = part.lines.find(voice.name);
        const bool rests =
            std::find(part.without.begin(), part.without.end(), voice.name) != part.without.end();
        for (size_t bar = 0; bar < part.bars; ++bar) {
            const double start = at + static_cast<double>(bar) * score_.barBeats;
            if (line != part.lines.end())
                PlayBar(&voice, line->second[bar % line->second.size()], start);
            else if (!rests && !voice.pattern.empty())
                PlayPattern(&voice,
                            part.chords.empty() ? Words() : part.chords[bar % part.chords.size()],
                            start);
        }
    }
}

Score Reader::Read()
{
    std::ifstream file(path_);
    if (!file) throw std::runtime_error(path_ + ": cannot be read");
    for (std::string text; std::getline(file, text);) {
        ++line_;
        Line(text);
    }
    for (const std::string& name : order_) {
        const auto part = parts_.find(name);
        if (part == parts_.end()) Fail("no part has the name " + name);
        Play(part->second, score_.beats);
        score_.beats += static_cast<double>(part->second.bars) * score_.barBeats;
    }
    if (!(score_.beats > 0)) Fail("nothing is played; expected play PART...");
    if (!(score_.tempo >= 20 && score_.tempo <= 400)) Fail("expected a tempo of 20 to 400");
    return score_;
}

}  // namespace

Score Score_Read(const std::string& path)
{
    return Reader(path).Read();
}

}  // namespace music
