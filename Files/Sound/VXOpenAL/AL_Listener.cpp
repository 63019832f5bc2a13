// The listener, the world around him, and the error that waits to be read.

#include <algorithm>

#include "Files/Sound/VXOpenAL/AL_Calls.h"

void AL_SetError(ALenum error)
{
    ALCcontext_struct* context = g_ALContext;
    ALenum none = AL_NO_ERROR;
    if (context) context->error.compare_exchange_strong(none, error);
}

ALenum alGetError(void)
{
    ALCcontext_struct* context = g_ALContext;
    return context ? context->error.exchange(AL_NO_ERROR) : AL_INVALID_OPERATION;
}

void alListenerf(ALenum property, ALfloat value)
{
    const LockedContext context;
    if (!context) return;
    if (property != AL_GAIN) return AL_SetError(AL_INVALID_ENUM);
    if (!(value >= 0)) return AL_SetError(AL_INVALID_VALUE);
    context->listener.gain = value;
}

void alListener3f(ALenum property, ALfloat x, ALfloat y, ALfloat z)
{
    const LockedContext context;
    if (!context) return;
    if (property == AL_POSITION)
        context->listener.position = {x, y, z};
    else if (property == AL_VELOCITY)
        context->listener.velocity = {x, y, z};
    else
        AL_SetError(AL_INVALID_ENUM);
}

// The orientation is two vectors: forward, then up.
void alListenerfv(ALenum property, const ALfloat* values)
{
    if (property == AL_GAIN) return alListenerf(property, values[0]);
    if (property != AL_ORIENTATION) return alListener3f(property, values[0], values[1], values[2]);
    const LockedContext context;
    if (!context) return;
    context->listener.forward = {values[0], values[1], values[2]};
    context->listener.up = {values[3], values[4], values[5]};
}

void alGetListenerf(ALenum property, ALfloat* value)
{
    const LockedContext context;
    if (!context) return;
    if (property != AL_GAIN) return AL_SetError(AL_INVALID_ENUM);
    *value = context->listener.gain;
}

void alDistanceModel(ALenum model)
{
    const LockedContext context;
    if (!context) return;
    const bool known =
        model == AL_NONE || (model >= AL_INVERSE_DISTANCE && model <= AL_EXPONENT_DISTANCE_CLAMPED);
    if (!known) return AL_SetError(AL_INVALID_ENUM);
    context->distanceModel = model;
}

void alDopplerFactor(ALfloat factor)
{
    const LockedContext context;
    if (!context) return;
    if (!(factor >= 0)) return AL_SetError(AL_INVALID_VALUE);
    context->dopplerFactor = factor;
}

void alSpeedOfSound(ALfloat speed)
{
    const LockedContext context;
    if (!context) return;
    if (!(speed > 0)) return AL_SetError(AL_INVALID_VALUE);
    context->speedOfSound = speed;
}
