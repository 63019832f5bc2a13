// How loud a source is in each speaker: distance, cone, doppler and panning, by the
// OpenAL 1.1 standard.

#include <algorithm>
#include <cmath>
#include <cstring>

#include "Files/Sound/VXOpenAL/ALu.h"

namespace {

constexpr double kPi = 3.14159265358979323846;

float Dot(const ALvector& a, const ALvector& b)
{
    return a.x * b.x + a.y * b.y + a.z * b.z;
}

ALvector Cross(const ALvector& a, const ALvector& b)
{
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}

ALvector Minus(const ALvector& a, const ALvector& b)
{
    return {a.x - b.x, a.y - b.y, a.z - b.z};
}

float Length(const ALvector& a)
{
    return std::sqrt(Dot(a, a));
}

// Of length 1; a vector without length stays.
ALvector Unit(const ALvector& a)
{
    const float length = Length(a);
    return length > 0 ? ALvector{a.x / length, a.y / length, a.z / length} : a;
}

// As the listener sees it: x to the right, y up, z backwards.
ALvector Seen(const ALlistener& listener, const ALvector& a)
{
    const ALvector forward = Unit(listener.forward);
    const ALvector right = Unit(Cross(forward, listener.up));
    const ALvector up = Cross(right, forward);
    return {Dot(a, right), Dot(a, up), -Dot(a, forward)};
}

// A source as its listener meets it.
struct Heard {
    ALvector position, velocity, direction, listenerVelocity;
};

Heard HeardSource(const ALlistener& listener, const ALsource& source)
{
    if (source.headRelative)
        return {source.position, source.velocity, source.direction, ALvector()};
    return {Seen(listener, Minus(source.position, listener.position)),
            Seen(listener, source.velocity), Seen(listener, source.direction),
            Seen(listener, listener.velocity)};
}

float Attenuation(ALenum model, const ALsource& source, float distance)
{
    const float reference = source.referenceDistance, most = source.maxDistance;
    const bool clamped = model == AL_INVERSE_DISTANCE_CLAMPED ||
                         model == AL_LINEAR_DISTANCE_CLAMPED ||
                         model == AL_EXPONENT_DISTANCE_CLAMPED;
    if (clamped) {
        if (most < reference) return 1;
        distance = std::clamp(distance, reference, most);
    }
    switch (model) {
        case AL_INVERSE_DISTANCE:
        case AL_INVERSE_DISTANCE_CLAMPED: {
            const float below = reference + source.rolloff * (distance - reference);
            return reference > 0 && below > 0 ? reference / below : 1;
        }
        case AL_LINEAR_DISTANCE:
        case AL_LINEAR_DISTANCE_CLAMPED:
            if (most == reference) return 1;
            return std::max(0.0F, 1 - source.rolloff * (distance - reference) / (most - reference));
        case AL_EXPONENT_DISTANCE:
        case AL_EXPONENT_DISTANCE_CLAMPED:
            if (!(distance > 0) || !(reference > 0)) return 1;
            return std::pow(distance / reference, -source.rolloff);
        default:
            return 1;
    }
}

// 1 inside the inner cone, the outer gain outside the outer one, even between them.
float ConeGain(const ALsource& source, const Heard& heard)
{
    if (!(Length(heard.direction) > 0) || !(Length(heard.position) > 0)) return 1;
    const float toListener = -Dot(Unit(heard.direction), Unit(heard.position));
    const auto angle = static_cast<float>(2 * std::acos(std::clamp(toListener, -1.0F, 1.0F)) * 180 /
                                          kPi);  // of the whole cone
    if (angle <= source.coneInner) return 1;
    if (angle >= source.coneOuter) return source.coneOuterGain;
    const float share = (angle - source.coneInner) / (source.coneOuter - source.coneInner);
    return 1 + (source.coneOuterGain - 1) * share;
}

float DopplerShift(const ALCcontext_struct& context, const ALsource& source, const Heard& heard)
{
    const float factor = source.dopplerFactor * context.dopplerFactor;
    const float speed = context.dopplerVelocity * context.speedOfSound;
    const float distance = Length(heard.position);
    if (factor == 0 || !(speed > 0) || !(distance > 0)) return 1;
    const ALvector toListener = {-heard.position.x / distance, -heard.position.y / distance,
                                 -heard.position.z / distance};
    const float most = speed / factor * 0.999F;
    const float listener = std::min(Dot(heard.listenerVelocity, toListener), most);
    const float sender = std::min(Dot(heard.velocity, toListener), most);
    return (speed - factor * listener) / (speed - factor * sender);
}

// The quadrant of a direction and the share of it, as a position of the table.
int32_t PanPosition(float x, float z)
{
    const float sum = std::fabs(x) + std::fabs(z);
    if (!(sum > 0)) return 0;
    auto position = static_cast<int32_t>(std::floor(std::fabs(x) * 128 / sum + 0.5F));
    if (z > 0) position = 256 - position;
    if (x < 0) position = 512 - position;
    return position % kPanPositions;
}

void Pan(const ALCcontext_struct& context, const ALvector& position, float gain, float* gains)
{
    const ALCdevice_struct& device = *context.device;
    const ALvector direction = Unit(position);
    const float flat = std::sqrt(direction.x * direction.x + direction.z * direction.z);
    const float* row = device.pan[PanPosition(direction.x, direction.z)];
    const float all = 1 / std::sqrt(static_cast<float>(device.channels));
    for (int32_t i = 0; i < device.channels; ++i) {
        const uint8_t speaker = device.channelMap[i];
        gains[speaker] = (row[speaker] * flat + all * (1 - flat)) * gain * context.listener.gain;
    }
}

uint32_t Step(const ALCdevice_struct& device, const ALbuffer& buffer, float pitch)
{
    const double step = static_cast<double>(buffer.frequency) * static_cast<double>(pitch) /
                        device.frequency * kFractionOne;
    return static_cast<uint32_t>(std::clamp(step, 0.0, 2147483647.0));
}

// ---- the table of pans

struct Layout {
    int32_t channels;
    Speaker map[8];
    int32_t voices;  // speakers that take part in panning, by their angle
    struct {
        int32_t degrees;
        Speaker speaker;
    } angles[7];
};

constexpr Layout kLayouts[] = {
    {1, {FRONT_CENTER}, 1, {{0, FRONT_CENTER}}},
    {2, {FRONT_LEFT, FRONT_RIGHT}, 2, {{-90, FRONT_LEFT}, {90, FRONT_RIGHT}}},
    {4,
     {FRONT_LEFT, FRONT_RIGHT, BACK_LEFT, BACK_RIGHT},
     4,
     {{-135, BACK_LEFT}, {-45, FRONT_LEFT}, {45, FRONT_RIGHT}, {135, BACK_RIGHT}}},
    {6,
     {FRONT_LEFT, FRONT_RIGHT, FRONT_CENTER, LOW_FREQUENCY, BACK_LEFT, BACK_RIGHT},
     5,
     {{-110, BACK_LEFT},
      {-30, FRONT_LEFT},
      {0, FRONT_CENTER},
      {30, FRONT_RIGHT},
      {110, BACK_RIGHT}}},
    {8,
     {FRONT_LEFT, FRONT_RIGHT, FRONT_CENTER, LOW_FREQUENCY, BACK_LEFT, BACK_RIGHT, SIDE_LEFT,
      SIDE_RIGHT},
     7,
     {{-150, BACK_LEFT},
      {-90, SIDE_LEFT},
      {-30, FRONT_LEFT},
      {0, FRONT_CENTER},
      {30, FRONT_RIGHT},
      {90, SIDE_RIGHT},
      {150, BACK_RIGHT}}},
};

// Degrees from the front, to the right above 0: -180 to 180.
double Angle(int32_t position)
{
    if (position > 256) return -Angle(512 - position);
    const int32_t quarter = position <= 128 ? position : 256 - position;
    const double degrees = std::atan2(quarter, 128 - quarter) * 180 / kPi;
    return position <= 128 ? degrees : 180 - degrees;
}

// The two speakers that enclose the angle share it by sine and cosine.
void PanRow(const Layout& layout, double angle, float* row)
{
    if (layout.voices == 1) {
        row[layout.angles[0].speaker] = 1;
        return;
    }
    int32_t last = layout.voices - 1, before = last;
    for (int32_t i = 0; i < layout.voices; ++i)
        if (layout.angles[i].degrees <= angle) before = i;
    if (angle < layout.angles[0].degrees) {
        before = last;
        angle += 360;
    }
    const int32_t after = before == last ? 0 : before + 1;
    const double from = layout.angles[before].degrees;
    const double to = layout.angles[after].degrees + (before == last ? 360 : 0);
    const double share = (angle - from) / (to - from) * kPi / 2;
    row[layout.angles[before].speaker] = static_cast<float>(std::cos(share));
    row[layout.angles[after].speaker] = static_cast<float>(std::sin(share));
}

}  // namespace

void ALu_BuildPan(ALCdevice_struct* device)
{
    device->channels = ALu_Format(device->format).channels;
    std::memset(device->pan, 0, sizeof device->pan);
    for (const Layout& layout : kLayouts) {
        if (layout.channels != device->channels) continue;
        std::copy_n(layout.map, layout.channels, device->channelMap);
        for (int32_t i = 0; i < kPanPositions; ++i) PanRow(layout, Angle(i), device->pan[i]);
    }
}

void ALu_UpdateSource(ALCcontext_struct* context, ALsource* source)
{
    const ALbuffer& buffer = *source->queue[source->processed];
    const Heard heard = HeardSource(context->listener, *source);
    float gain = source->gain, pitch = source->pitch;
    if (buffer.format.channels == 1) {
        gain *= Attenuation(context->distanceModel, *source, Length(heard.position)) *
                ConeGain(*source, heard);
        pitch *= DopplerShift(*context, *source, heard);
    }
    gain = std::max(source->minGain, std::min(gain, source->maxGain));
    Pan(*context, heard.position, gain, source->gains);
    source->step = Step(*context->device, buffer, pitch);
}
