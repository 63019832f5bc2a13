// Buffers: samples that sources play.

#include <algorithm>
#include <cstring>

#include "Files/Sound/VXOpenAL/AL_Calls.h"

namespace {

VxVector<ALbuffer*> g_buffers;  // by name less 1

void FreeBuffer(ALbuffer* buffer)
{
    MemoryManager::Free(buffer->data);
    VxDelete(buffer);
}

void Fill(ALbuffer* buffer, ALformat format, const void* data, uint32_t size, int32_t frequency)
{
    size -= size % format.FrameBytes();
    if (size > buffer->capacity) {
        MemoryManager::Free(buffer->data);
        buffer->data = static_cast<uint8_t*>(MemoryManager::Alloc(size));
        buffer->capacity = size;
    }
    if (size > 0 && data) std::memcpy(buffer->data, data, size);
    if (size > 0 && !data) std::memset(buffer->data, 0, size);
    buffer->size = size;
    buffer->format = format;
    buffer->frequency = frequency;
    buffer->loopStart = 0;
    buffer->loopEnd = size / format.FrameBytes();
}

}  // namespace

ALbuffer* AL_FindBuffer(ALuint name)
{
    return FindName(g_buffers, name);
}

void AL_FreeBuffers()
{
    for (ALbuffer* buffer : g_buffers)
        if (buffer) FreeBuffer(buffer);
    VxVector<ALbuffer*>().swap(g_buffers);
}

void alGenBuffers(ALsizei n, ALuint* buffers)
{
    const LockedContext context;
    if (!context) return;
    if (n < 0) return AL_SetError(AL_INVALID_VALUE);
    for (ALsizei i = 0; i < n; ++i) {
        auto* buffer = VxNew<ALbuffer>();
        buffer->name = buffers[i] = TakeName(&g_buffers, buffer);
    }
}

// All or none: a buffer that a source holds keeps the others too.
void alDeleteBuffers(ALsizei n, const ALuint* buffers)
{
    const LockedContext context;
    if (!context) return;
    if (n < 0) return AL_SetError(AL_INVALID_VALUE);
    for (ALsizei i = 0; i < n; ++i) {
        const ALbuffer* buffer = AL_FindBuffer(buffers[i]);
        if (!buffer && buffers[i] != 0) return AL_SetError(AL_INVALID_NAME);
        if (buffer && buffer->users > 0) return AL_SetError(AL_INVALID_OPERATION);
    }
    for (ALsizei i = 0; i < n; ++i) {
        ALbuffer* buffer = AL_FindBuffer(buffers[i]);
        if (!buffer) continue;
        g_buffers[buffers[i] - 1] = nullptr;
        FreeBuffer(buffer);
    }
}

ALboolean alIsBuffer(ALuint name)
{
    const LockedContext context;
    return context && (name == 0 || AL_FindBuffer(name)) ? AL_TRUE : AL_FALSE;
}

void alBufferData(ALuint name, ALenum format, const ALvoid* data, ALsizei size, ALsizei frequency)
{
    const LockedContext context;
    if (!context) return;
    ALbuffer* buffer = AL_FindBuffer(name);
    const ALformat shape = ALu_Format(format);
    if (!buffer) return AL_SetError(AL_INVALID_NAME);
    if (shape.channels == 0) return AL_SetError(AL_INVALID_ENUM);
    if (size < 0 || frequency <= 0) return AL_SetError(AL_INVALID_VALUE);
    if (buffer->users > 0) return AL_SetError(AL_INVALID_OPERATION);
    Fill(buffer, shape, data, static_cast<uint32_t>(size), frequency);
}

void alGetBufferi(ALuint name, ALenum property, ALint* value)
{
    const LockedContext context;
    if (!context) return;
    const ALbuffer* buffer = AL_FindBuffer(name);
    if (!buffer) return AL_SetError(AL_INVALID_NAME);
    switch (property) {
        case AL_SIZE:
            *value = static_cast<ALint>(buffer->size);
            return;
        case AL_BITS:
            *value = buffer->format.sampleBytes * 8;
            return;
        case AL_CHANNELS:
            *value = buffer->format.channels;
            return;
        case AL_FREQUENCY:
            *value = buffer->frequency;
            return;
        default:
            AL_SetError(AL_INVALID_ENUM);
    }
}
