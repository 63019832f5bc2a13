#include "tools/pack/Sounds.h"

#include <algorithm>
#include <cmath>

namespace pack {
namespace {

constexpr double kTurn = 6.283185307179586;
constexpr double kAttack = 0.004;   // seconds until a note is at its loudest
constexpr double kFade = 5.0;       // a note falls to e^-5 of its loudness over its length
constexpr double kOvertone = 0.25;  // loudness of the octave beside the note itself

void Play(const Note& note, std::vector<double>& samples)
{
    size_t start = static_cast<size_t>(note.start * kSampleRate);
    size_t count = static_cast<size_t>(note.length * kSampleRate);
    if (samples.size() < start + count) samples.resize(start + count, 0.0);
    double phase = 0;
    for (size_t i = 0; i < count; ++i) {
        double time = static_cast<double>(i) / kSampleRate, part = time / note.length;
        phase += kTurn * (note.from + (note.to - note.from) * part) / kSampleRate;
        // The last tenth goes down to silence, so that the end does not click.
        double swell = std::min({1.0, time / kAttack, (1.0 - part) * 10.0});
        double loudness = note.loudness * swell * std::exp(-kFade * part);
        samples[start + i] += loudness * (std::sin(phase) + kOvertone * std::sin(2 * phase));
    }
}

void Put(std::vector<uint8_t>& out, uint32_t value, int bytes)
{
    for (int i = 0; i < bytes; ++i) out.push_back(static_cast<uint8_t>(value >> (8 * i)));
}

void PutTag(std::vector<uint8_t>& out, const char* tag)
{
    for (int i = 0; i < 4; ++i) out.push_back(static_cast<uint8_t>(tag[i]));
}

}  // namespace

std::vector<uint8_t> Sounds_Wave(const std::vector<Note>& notes)
{
    std::vector<double> samples;
    for (const Note& note : notes) Play(note, samples);
    uint32_t bytes = static_cast<uint32_t>(samples.size() * 2);
    std::vector<uint8_t> out;
    PutTag(out, "RIFF");
    Put(out, 36 + bytes, 4);
    PutTag(out, "WAVE");
    PutTag(out, "fmt ");
    Put(out, 16, 4);
    Put(out, 1, 2);  // PCM
    Put(out, 1, 2);
    Put(out, kSampleRate, 4);
    Put(out, kSampleRate * 2, 4);
    Put(out, 2, 2);
    Put(out, 16, 2);
    PutTag(out, "data");
    Put(out, bytes, 4);
    for (double sample : samples) {
        double clipped = std::clamp(sample, -1.0, 1.0);
        Put(out, static_cast<uint32_t>(static_cast<int32_t>(std::lround(clipped * 32767))), 2);
    }
    return out;
}

}  // namespace pack
