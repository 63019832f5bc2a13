#include "tools/music/Synth.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <stdexcept>

namespace music {
namespace {

constexpr double kTurn = 6.283185307179586;
constexpr double kTail = 2.5;  // seconds that a signal rings on
constexpr double kSwellHertz = 5.3;
constexpr float kPeak = 0.85F;  // no sample is louder

// Noise that is the same everywhere (xorshift, G. Marsaglia, 2003).
class Noise {
public:
    explicit Noise(uint32_t seed) : state_(seed * 2654435761U | 1U) {}
    double Next()
    {
        state_ ^= state_ << 13;
        state_ ^= state_ >> 17;
        state_ ^= state_ << 5;
        return static_cast<double>(state_) / 2147483648.0 - 1;
    }

private:
    uint32_t state_;
};

// ---- patches: sums of partials, each with its own loudness and decay

struct Partial {
    double ratio, loudness, decay;  // of the key's frequency; 1 a second, 0 holds
};
struct Patch {
    const char* name;
    double attack, release;  // seconds
    double decay;            // 1 a second, of the whole
    double swell;            // share of the loudness that comes and goes
    double breath;           // loudness of noise
    std::vector<Partial> partials;
};

// clang-format off
const std::vector<Patch>& Patches()
{
    static const std::vector<Patch> patches = {
        // name   attack release decay swell  breath   partials: ratio, loudness, decay
        {"flute",    0.05,  0.09, 0.15, 0.07,  0.006, {{1, 1, 0}, {2, 0.32, 0}, {3, 0.1, 0}, {4, 0.03, 0}}},
        {"whistle",  0.03,  0.07, 0.2,  0.11,  0.009, {{1, 1, 0}, {2, 0.06, 0}, {3, 0.03, 0}}},
        {"clarinet", 0.03,  0.07, 0.2,  0.05,  0.004, {{1, 1, 0}, {2, 0.05, 0}, {3, 0.42, 0}, {5, 0.2, 0}, {7, 0.1, 0}}},
        {"reed",     0.02,  0.06, 0.3,  0.07,  0.003, {{1, 0.7, 0}, {2, 0.6, 0}, {3, 0.5, 0}, {4, 0.35, 0}, {5, 0.22, 0}, {6, 0.12, 0}}},
        {"strings",  0.16,  0.28, 0,    0.05,  0.004, {{0.997, 0.5, 0}, {1.003, 0.5, 0}, {2.004, 0.34, 0}, {2.996, 0.2, 0}, {4.006, 0.1, 0}, {5, 0.05, 0}}},
        {"pad",      0.35,  0.5,  0,    0.04,  0,     {{0.996, 0.55, 0}, {1.004, 0.55, 0}, {2, 0.2, 0}, {3, 0.06, 0}}},
        {"organ",    0.02,  0.06, 0,    0.02,  0,     {{0.5, 0.4, 0}, {1, 0.8, 0}, {2, 0.4, 0}, {4, 0.16, 0}}},
        {"pluck",    0.002, 0.12, 2.2,  0,     0,     {{1, 0.9, 0.2}, {2, 0.5, 1.5}, {3, 0.34, 3}, {4, 0.2, 4.5}, {5, 0.14, 6}, {6, 0.08, 8}}},
        {"harp",     0.003, 0.4,  1.4,  0,     0,     {{1, 1, 0.2}, {2, 0.35, 1.6}, {3, 0.2, 3.2}, {4, 0.07, 5}}},
        {"piano",    0.002, 0.14, 1.1,  0,     0,     {{1, 0.9, 0.3}, {2.001, 0.42, 1}, {3.004, 0.24, 1.8}, {4.01, 0.14, 2.6}, {5.02, 0.08, 3.6}, {6.03, 0.05, 5}}},
        {"bell",     0.002, 0.8,  1.6,  0,     0,     {{1, 0.8, 0}, {2.76, 0.35, 1.6}, {5.4, 0.18, 4}, {8.93, 0.07, 9}}},
        {"glock",    0.001, 0.5,  3,    0,     0,     {{1, 0.9, 0}, {2.76, 0.22, 6}, {5.4, 0.12, 14}}},
        {"marimba",  0.002, 0.12, 6,    0,     0,     {{1, 1, 0}, {3.93, 0.28, 12}, {9.2, 0.08, 30}}},
        {"bass",     0.006, 0.07, 1.4,  0,     0,     {{1, 1, 0}, {2, 0.45, 1.2}, {3, 0.18, 3}, {4, 0.08, 5}}},
        {"tuba",     0.03,  0.08, 0.6,  0.04,  0.004, {{1, 1, 0}, {2, 0.55, 0}, {3, 0.3, 0.5}, {4, 0.12, 1}}},
        {"square",   0.004, 0.04, 0.8,  0.05,  0,     {{1, 0.8, 0}, {3, 0.27, 0}, {5, 0.16, 0}, {7, 0.1, 0}, {9, 0.06, 0}}},
    };
    return patches;
}
// clang-format on

const Patch& FindPatch(const Voice& voice)
{
    for (const Patch& patch : Patches())
        if (voice.patch == patch.name) return patch;
    throw std::runtime_error("voice " + voice.name + ": no patch has the name " + voice.patch);
}

// A sine that turns by one complex product a sample.
class Turning {
public:
    explicit Turning(double step) : cosine_(std::cos(step)), sine_(std::sin(step)) {}
    double Next()
    {
        const double now = y_;
        const double x = x_ * cosine_ - y_ * sine_;
        y_ = x_ * sine_ + y_ * cosine_;
        x_ = x;
        return now;
    }

private:
    double cosine_, sine_, x_ = 1, y_ = 0;
};

double Hertz(int key)
{
    return 440 * std::pow(2.0, (key - 69) / 12.0);
}

// One note, from its attack to the end of its release, one channel.
std::vector<float> Tone(const Patch& patch, int key, double seconds, int rate)
{
    const double total = seconds + patch.release;
    const auto frames = static_cast<size_t>(total * rate);
    std::vector<float> out(frames, 0.0F);
    for (const Partial& partial : patch.partials) {
        const double hertz = Hertz(key) * partial.ratio;
        if (hertz > rate * 0.42) continue;
        Turning sine(kTurn * hertz / rate), wave(kTurn * kSwellHertz / rate);
        const double fall = std::exp(-partial.decay / rate);
        double loudness = partial.loudness;
        for (size_t i = 0; i < frames; ++i, loudness *= fall)
            out[i] += static_cast<float>(loudness * (1 + patch.swell * wave.Next()) * sine.Next());
    }
    Noise noise(static_cast<uint32_t>(key) * 31U + static_cast<uint32_t>(frames));
    double held = 1;
    const double fall = std::exp(-patch.decay / rate);
    for (size_t i = 0; i < frames; ++i, held *= fall) {
        const double time = static_cast<double>(i) / rate;
        const double rise = std::min(1.0, time / patch.attack);
        const double left = std::clamp((total - time) / patch.release, 0.0, 1.0);
        const double swell = rise * held * left * left;
        out[i] =
            static_cast<float>(swell * (static_cast<double>(out[i]) + patch.breath * noise.Next()));
    }
    return out;
}

// ---- drums

struct Drum {
    char stroke;
    double seconds;
    double from, to, bend;   // hertz at the start and later; bend 1 a second
    double tone, toneDecay;  // loudness and 1 a second
    double noise, noiseDecay;
    double bright;  // 0 dull to 1: share of the noise's highs
};
constexpr Drum kDrumKit[] = {
    {'k', 0.28, 150, 48, 32, 1.0, 14, 0.10, 90, 0.3},    // kick
    {'s', 0.22, 220, 180, 20, 0.35, 22, 0.55, 17, 0.8},  // snare
    {'t', 0.30, 190, 95, 14, 0.8, 11, 0.05, 60, 0.3},    // tom
    {'h', 0.06, 0, 0, 0, 0, 0, 0.34, 70, 1.0},           // closed hat
    {'o', 0.30, 0, 0, 0, 0, 0, 0.30, 12, 1.0},           // open hat
    {'x', 0.08, 980, 900, 5, 0.5, 55, 0.06, 90, 0.6},    // wood block
    {'r', 0.10, 0, 0, 0, 0, 0, 0.20, 34, 0.9},           // shaker
    {'c', 0.16, 0, 0, 0, 0, 0, 0.5, 26, 0.55},           // clap
};

std::vector<float> Stroke(int letter, int rate)
{
    const Drum* drum = std::find_if(std::begin(kDrumKit), std::end(kDrumKit),
                                    [&](const Drum& row) { return row.stroke == letter; });
    const auto frames = static_cast<size_t>(drum->seconds * rate);
    std::vector<float> out(frames);
    Noise noise(static_cast<uint32_t>(letter));
    double phase = 0, before = 0, low = 0;
    for (size_t i = 0; i < frames; ++i) {
        const double time = static_cast<double>(i) / rate;
        phase += kTurn * (drum->to + (drum->from - drum->to) * std::exp(-drum->bend * time)) / rate;
        const double white = noise.Next();
        low += (white - low) * 0.18;
        const double high = white - before;
        before = white;
        const double hiss = (high * 0.5 * drum->bright + low * (1 - drum->bright)) * drum->noise *
                            std::exp(-drum->noiseDecay * time);
        const double end = std::min(1.0, (drum->seconds - time) / 0.01);
        out[i] = static_cast<float>(
            end * (drum->tone * std::exp(-drum->toneDecay * time) * std::sin(phase) + hiss));
    }
    return out;
}

// ---- the whole

// Left and right; what goes beyond the end of a loop goes on at its beginning.
struct Track {
    std::vector<float> left, right;
    bool loops;

    void Add(const std::vector<float>& mono, size_t at, double gain, double pan)
    {
        const double turn = (pan + 1) * kTurn / 8;
        const auto toLeft = static_cast<float>(gain * std::cos(turn));
        const auto toRight = static_cast<float>(gain * std::sin(turn));
        for (const float sample : mono) {
            if (at >= left.size()) {
                if (!loops) return;
                at -= left.size();
            }
            left[at] += sample * toLeft;
            right[at] += sample * toRight;
            ++at;
        }
    }
};

// Four combs in parallel, two allpasses behind them (M. R. Schroeder, 1962). A loop goes
// through twice, and the second round is kept: so its beginning hears its end.
void Reverberate(const std::vector<float>& in, bool twice, int offset, std::vector<float>* out)
{
    constexpr int kCombs[] = {1557, 1617, 1491, 1422}, kPasses[] = {225, 556};
    std::vector<std::vector<float>> lines;
    for (const int length : kCombs) lines.emplace_back(static_cast<size_t>(length + offset), 0.0F);
    for (const int length : kPasses) lines.emplace_back(static_cast<size_t>(length + offset), 0.0F);
    std::vector<size_t> places(lines.size(), 0);
    std::vector<float> damped(4, 0.0F);
    for (int round = twice ? 0 : 1; round < 2; ++round) {
        for (size_t i = 0; i < in.size(); ++i) {
            float sum = 0;
            for (size_t c = 0; c < 4; ++c) {
                float& cell = lines[c][places[c]];
                damped[c] += (cell - damped[c]) * 0.6F;
                sum += cell;
                cell = in[i] + damped[c] * 0.80F;
                places[c] = (places[c] + 1) % lines[c].size();
            }
            for (size_t p = 4; p < 6; ++p) {
                float& cell = lines[p][places[p]];
                const float held = cell;
                cell = sum + held * 0.5F;
                sum = held - cell * 0.5F;
                places[p] = (places[p] + 1) % lines[p].size();
            }
            if (round == 1) (*out)[i] += sum * 0.25F;
        }
    }
}

// Takes away what lies below hearing, by one pole at 25 Hz; a loop in two rounds.
void CutDepths(std::vector<float>* samples, bool twice, int rate)
{
    const double keep = std::exp(-kTurn * 25 / rate);
    double before = 0, out = 0;
    for (int round = twice ? 0 : 1; round < 2; ++round)
        for (float& sample : *samples) {
            const double in = static_cast<double>(sample);
            out = keep * (out + in - before);
            before = in;
            if (round == 1) sample = static_cast<float>(out);
        }
}

// To the loudness that the score asks for, as far as no peak stands out.
void Level(Sound* sound, double loudness)
{
    double power = 0;
    float peak = 0;
    for (const float sample : sound->samples) {
        power += static_cast<double>(sample) * static_cast<double>(sample);
        peak = std::max(peak, std::fabs(sample));
    }
    const double mean = std::sqrt(power / static_cast<double>(sound->samples.size()));
    if (!(mean > 0)) return;
    const auto gain =
        static_cast<float>(std::min(loudness / mean, static_cast<double>(kPeak / peak)));
    for (float& sample : sound->samples) sample *= gain;
}

void RenderVoice(const Voice& voice, double beat, int rate, Track* dry, std::vector<float>* room)
{
    Track wet = {std::vector<float>(dry->left.size()), std::vector<float>(dry->left.size()),
                 dry->loops};
    const bool kit = voice.patch == "kit";
    for (const Note& note : voice.notes) {
        const auto at = static_cast<size_t>(note.start * beat * rate);
        const std::vector<float> mono =
            kit ? Stroke(note.key, rate)
                : Tone(FindPatch(voice), note.key, note.length * beat * 0.96, rate);
        wet.Add(mono, at, voice.level * note.loudness, voice.pan);
    }
    for (size_t i = 0; i < dry->left.size(); ++i) {
        dry->left[i] += wet.left[i];
        dry->right[i] += wet.right[i];
        (*room)[i] += static_cast<float>(voice.room) * (wet.left[i] + wet.right[i]);
    }
}

}  // namespace

Sound Synth_Render(const Score& score, int rate)
{
    Sound sound;
    sound.rate = rate;
    const double beat = 60 / score.tempo;
    const double seconds = score.beats * beat + (score.once ? kTail : 0);
    const auto frames = static_cast<size_t>(std::lround(seconds * sound.rate));
    Track track = {std::vector<float>(frames), std::vector<float>(frames), !score.once};
    std::vector<float> room(frames);
    for (const Voice& voice : score.voices) RenderVoice(voice, beat, sound.rate, &track, &room);
    Reverberate(room, !score.once, 0, &track.left);
    Reverberate(room, !score.once, 23, &track.right);
    CutDepths(&track.left, !score.once, sound.rate);
    CutDepths(&track.right, !score.once, sound.rate);
    for (size_t i = 0; i < frames; ++i) {
        sound.samples.push_back(track.left[i]);
        sound.samples.push_back(track.right[i]);
    }
    Level(&sound, score.loudness);
    return sound;
}

Sound Synth_Tone(int rate, int channels, size_t frames, double hertz)
{
    Sound sound;
    sound.rate = rate;
    sound.channels = channels;
    for (size_t i = 0; i < frames; ++i)
        for (int channel = 0; channel < channels; ++channel)
            sound.samples.push_back(static_cast<float>(
                0.5 / (channel + 1) * std::sin(kTurn * hertz * static_cast<double>(i) / rate)));
    return sound;
}

}  // namespace music
