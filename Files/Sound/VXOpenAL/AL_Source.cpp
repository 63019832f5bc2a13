// Sources: their properties, and what they are told to do.

#include <algorithm>
#include <cmath>

#include "Files/Sound/VXOpenAL/AL_Calls.h"
#include "Host/Host.h"

namespace {

ALsource* Find(const LockedContext& context, ALuint name)
{
    ALsource* source = FindName(context->sourceNames, name);
    if (!source) AL_SetError(AL_INVALID_NAME);
    return source;
}

void EmptyQueue(ALsource* source)
{
    for (ALbuffer* buffer : source->queue) --buffer->users;
    source->queue.clear();
    source->processed = 0;
    source->type = AL_UNDETERMINED;
}

void Rewind(ALsource* source)
{
    source->processed = 0;
    source->at = source->fraction = 0;
}

// ---- properties

// A number with its limits.
struct FloatProperty {
    ALenum property;
    float ALsource::*value;
    float least, most;
};
constexpr float kNoLimit = 3.4e38F;
constexpr FloatProperty kFloats[] = {
    {AL_PITCH, &ALsource::pitch, 1e-6F, kNoLimit},
    {AL_GAIN, &ALsource::gain, 0, kNoLimit},
    {AL_MIN_GAIN, &ALsource::minGain, 0, 1},
    {AL_MAX_GAIN, &ALsource::maxGain, 0, 1},
    {AL_REFERENCE_DISTANCE, &ALsource::referenceDistance, 0, kNoLimit},
    {AL_MAX_DISTANCE, &ALsource::maxDistance, 0, kNoLimit},
    {AL_ROLLOFF_FACTOR, &ALsource::rolloff, 0, kNoLimit},
    {AL_CONE_INNER_ANGLE, &ALsource::coneInner, 0, 360},
    {AL_CONE_OUTER_ANGLE, &ALsource::coneOuter, 0, 360},
    {AL_CONE_OUTER_GAIN, &ALsource::coneOuterGain, 0, 1},
    {AL_DOPPLER_FACTOR, &ALsource::dopplerFactor, 0, 1},
};

const FloatProperty* FindFloat(ALenum property)
{
    for (const FloatProperty& row : kFloats)
        if (row.property == property) return &row;
    return nullptr;
}

ALvector ALsource::*FindVector(ALenum property)
{
    switch (property) {
        case AL_POSITION:
            return &ALsource::position;
        case AL_VELOCITY:
            return &ALsource::velocity;
        case AL_DIRECTION:
            return &ALsource::direction;
        default:
            return nullptr;
    }
}

// The playing position as frames from the head of the queue.
double Offset(const ALsource& source)
{
    double frames = source.at + static_cast<double>(source.fraction) / kFractionOne;
    if (source.processed == source.queue.size()) return 0;
    for (uint32_t i = 0; i < source.processed; ++i) frames += source.queue[i]->loopEnd;
    return frames;
}

// A source that does not play begins there when it does.
bool Seek(ALsource* source, double frames)
{
    double total = 0;
    for (const ALbuffer* buffer : source->queue) total += buffer->loopEnd;
    if (!(frames >= 0 && frames < total)) return false;
    if (source->state == AL_INITIAL || source->state == AL_STOPPED) {
        source->startAt = frames;
        return true;
    }
    source->processed = 0;
    while (frames >= source->queue[source->processed]->loopEnd)
        frames -= source->queue[source->processed++]->loopEnd;
    source->at = static_cast<uint32_t>(frames);
    source->fraction = static_cast<uint32_t>((frames - source->at) * kFractionOne);
    return true;
}

int32_t Frequency(const ALsource& source)
{
    return source.queue.empty() ? 0 : source.queue[0]->frequency;
}

void SetBuffer(ALsource* source, ALuint name)
{
    ALbuffer* buffer = AL_FindBuffer(name);
    if (name != 0 && !buffer) return AL_SetError(AL_INVALID_VALUE);
    if (source->state == AL_PLAYING || source->state == AL_PAUSED)
        return AL_SetError(AL_INVALID_OPERATION);
    EmptyQueue(source);
    Rewind(source);
    source->startAt = 0;
    if (!buffer) return;
    ++buffer->users;
    source->queue.push_back(buffer);
    source->type = AL_STATIC;
}

void Play(ALsource* source)
{
    if (source->state != AL_PAUSED) Rewind(source);
    if (source->queue.empty()) {
        source->state = AL_STOPPED;
        return;
    }
    const bool sought = source->state != AL_PAUSED && source->startAt > 0;
    source->state = AL_PLAYING;
    if (sought) Seek(source, source->startAt);
    source->startAt = 0;
    source->startTime = g_Host.clock.Micros();
}

void Stop(ALsource* source)
{
    if (source->state == AL_INITIAL) return;
    source->state = AL_STOPPED;
    source->processed = static_cast<uint32_t>(source->queue.size());
    source->at = source->fraction = 0;
}

}  // namespace

void AL_FreeSources(ALCcontext_struct* context)
{
    for (ALsource* source : context->sources) {
        EmptyQueue(source);
        VxDelete(source);
    }
    context->sources.clear();
    context->sourceNames.clear();
}

void alGenSources(ALsizei n, ALuint* names)
{
    const LockedContext context;
    if (!context) return;
    if (n < 0) return AL_SetError(AL_INVALID_VALUE);
    for (ALsizei i = 0; i < n; ++i) {
        auto* source = VxNew<ALsource>();
        source->name = names[i] = TakeName(&context->sourceNames, source);
        context->sources.push_back(source);
    }
}

void alDeleteSources(ALsizei n, const ALuint* names)
{
    const LockedContext context;
    if (!context) return;
    if (n < 0) return AL_SetError(AL_INVALID_VALUE);
    for (ALsizei i = 0; i < n; ++i)
        if (!Find(context, names[i])) return;
    for (ALsizei i = 0; i < n; ++i) {
        ALsource* source = FindName(context->sourceNames, names[i]);
        if (!source) continue;  // named twice
        EmptyQueue(source);
        std::erase(context->sources, source);
        context->sourceNames[names[i] - 1] = nullptr;
        VxDelete(source);
    }
}

ALboolean alIsSource(ALuint name)
{
    const LockedContext context;
    return context && FindName(context->sourceNames, name) ? AL_TRUE : AL_FALSE;
}

void alSourcef(ALuint name, ALenum property, ALfloat value)
{
    const LockedContext context;
    ALsource* source = context ? Find(context, name) : nullptr;
    if (!source) return;
    if (property == AL_SEC_OFFSET) {
        if (!Seek(source, static_cast<double>(value) * Frequency(*source)))
            AL_SetError(AL_INVALID_VALUE);
        return;
    }
    const FloatProperty* row = FindFloat(property);
    if (!row) return AL_SetError(AL_INVALID_ENUM);
    if (!(value >= row->least && value <= row->most)) return AL_SetError(AL_INVALID_VALUE);
    source->*row->value = value;
}

void alSource3f(ALuint name, ALenum property, ALfloat x, ALfloat y, ALfloat z)
{
    const LockedContext context;
    ALsource* source = context ? Find(context, name) : nullptr;
    if (!source) return;
    ALvector ALsource::*vector = FindVector(property);
    if (!vector) return AL_SetError(AL_INVALID_ENUM);
    if (!std::isfinite(x) || !std::isfinite(y) || !std::isfinite(z))
        return AL_SetError(AL_INVALID_VALUE);
    source->*vector = {x, y, z};
}

void alSourcefv(ALuint name, ALenum property, const ALfloat* values)
{
    if (FindVector(property))
        alSource3f(name, property, values[0], values[1], values[2]);
    else
        alSourcef(name, property, values[0]);
}

void alSourcei(ALuint name, ALenum property, ALint value)
{
    const LockedContext context;
    ALsource* source = context ? Find(context, name) : nullptr;
    if (!source) return;
    switch (property) {
        case AL_BUFFER:
            SetBuffer(source, static_cast<ALuint>(value));
            return;
        case AL_LOOPING:
            source->looping = value != AL_FALSE;
            return;
        case AL_SOURCE_RELATIVE:
            source->headRelative = value != AL_FALSE;
            return;
        case AL_SOURCE_MASK_VX:
            source->mask = static_cast<uint32_t>(value);
            return;
        case AL_SAMPLE_OFFSET:
            if (!Seek(source, value)) AL_SetError(AL_INVALID_VALUE);
            return;
        default:
            AL_SetError(AL_INVALID_ENUM);
    }
}

void alGetSourcef(ALuint name, ALenum property, ALfloat* value)
{
    const LockedContext context;
    const ALsource* source = context ? Find(context, name) : nullptr;
    if (!source) return;
    const FloatProperty* row = FindFloat(property);
    if (row)
        *value = source->*row->value;
    else if (property == AL_SEC_OFFSET)
        *value =
            source->queue.empty() ? 0.0F : static_cast<float>(Offset(*source) / Frequency(*source));
    else
        AL_SetError(AL_INVALID_ENUM);
}

void alGetSourcei(ALuint name, ALenum property, ALint* value)
{
    const LockedContext context;
    const ALsource* source = context ? Find(context, name) : nullptr;
    if (!source) return;
    switch (property) {
        case AL_SOURCE_STATE:
            *value = source->state;
            return;
        case AL_SOURCE_TYPE:
            *value = source->type;
            return;
        case AL_SOURCE_RELATIVE:
            *value = source->headRelative;
            return;
        case AL_LOOPING:
            *value = source->looping;
            return;
        case AL_BUFFERS_QUEUED:
            *value = static_cast<ALint>(source->queue.size());
            return;
        case AL_BUFFERS_PROCESSED:
            *value = static_cast<ALint>(source->processed);
            return;
        case AL_SAMPLE_OFFSET:
            *value = static_cast<ALint>(Offset(*source));
            return;
        case AL_SOURCE_MASK_VX:
            *value = static_cast<ALint>(source->mask);
            return;
        case AL_BUFFER:
            *value = source->queue.empty() ? 0 : static_cast<ALint>(source->queue[0]->name);
            return;
        default:
            AL_SetError(AL_INVALID_ENUM);
    }
}

void alSourcePlay(ALuint name)
{
    const LockedContext context;
    if (ALsource* source = context ? Find(context, name) : nullptr) Play(source);
}

void alSourcePause(ALuint name)
{
    const LockedContext context;
    ALsource* source = context ? Find(context, name) : nullptr;
    if (source && source->state == AL_PLAYING) source->state = AL_PAUSED;
}

void alSourceStop(ALuint name)
{
    const LockedContext context;
    if (ALsource* source = context ? Find(context, name) : nullptr) Stop(source);
}

void alSourceQueueBuffers(ALuint name, ALsizei n, const ALuint* buffers)
{
    const LockedContext context;
    ALsource* source = context ? Find(context, name) : nullptr;
    if (!source) return;
    if (n < 0) return AL_SetError(AL_INVALID_VALUE);
    if (source->type == AL_STATIC) return AL_SetError(AL_INVALID_OPERATION);
    for (ALsizei i = 0; i < n; ++i)
        if (!AL_FindBuffer(buffers[i])) return AL_SetError(AL_INVALID_NAME);
    for (ALsizei i = 0; i < n; ++i) {
        ALbuffer* buffer = AL_FindBuffer(buffers[i]);
        ++buffer->users;
        source->queue.push_back(buffer);
    }
    // What joins a queue that was played through counts as played too.
    if (source->state == AL_STOPPED && n > 0 &&
        source->processed + static_cast<size_t>(n) == source->queue.size())
        source->processed = static_cast<uint32_t>(source->queue.size());
    if (n > 0) source->type = AL_STREAMING;
}

void alSourceUnqueueBuffers(ALuint name, ALsizei n, ALuint* buffers)
{
    const LockedContext context;
    ALsource* source = context ? Find(context, name) : nullptr;
    if (!source || n == 0) return;
    if (n < 0 || static_cast<uint32_t>(n) > source->processed) return AL_SetError(AL_INVALID_VALUE);
    for (ALsizei i = 0; i < n; ++i) {
        ALbuffer* buffer = source->queue[static_cast<size_t>(i)];
        --buffer->users;
        buffers[i] = buffer->name;
    }
    source->queue.erase(source->queue.begin(), source->queue.begin() + n);
    source->processed -= static_cast<uint32_t>(n);
    if (source->queue.empty()) source->type = AL_UNDETERMINED;
}
