#pragma once
// The mixer's records and its two operations. Everything here is guarded by the lock of
// the device, which the interface calls and the output thread take.

#include <AL/al.h>
#include <AL/alc.h>

#include <atomic>
#include <cstdint>
#include <mutex>

#include "Platform/MemoryManager.h"

// A source's own property: the devices and listeners that hear it, a set of bits.
inline constexpr ALenum AL_SOURCE_MASK_VX = 0x20010;

// Positions count frames of the buffer, with 14 bits of fraction.
inline constexpr uint32_t kFractionBits = 14, kFractionOne = 1U << kFractionBits;
inline constexpr uint32_t kFractionMask = kFractionOne - 1;

// The nine places at which a speaker can stand.
enum Speaker : uint8_t {
    FRONT_LEFT,
    FRONT_RIGHT,
    FRONT_CENTER,
    LOW_FREQUENCY,
    BACK_LEFT,
    BACK_RIGHT,
    BACK_CENTER,
    SIDE_LEFT,
    SIDE_RIGHT,
};
inline constexpr int32_t kSpeakers = 9;
inline constexpr int32_t kPanPositions = 512;  // directions around the listener

// Formats of buffers and outputs beyond those of the interface's first version.
inline constexpr ALenum AL_FORMAT_MONO_FLOAT_VX = 0x10010, AL_FORMAT_STEREO_FLOAT_VX = 0x10011;

struct ALformat {
    int32_t channels, sampleBytes;  // 0 of an unknown format
    uint32_t FrameBytes() const { return static_cast<uint32_t>(channels * sampleBytes); }
};
ALformat ALu_Format(ALenum format);

struct ALbuffer {
    ALuint name = 0;
    uint8_t* data = nullptr;          // of MemoryManager; kept when less data comes later
    uint32_t capacity = 0, size = 0;  // bytes
    ALformat format{};
    int32_t frequency = 0;
    uint32_t loopStart = 0, loopEnd = 0;  // frames; the end is that of the data
    int32_t users = 0;                    // places in queues
};

struct ALvector {
    float x = 0, y = 0, z = 0;
};

struct ALsource {
    ALuint name = 0;
    VxVector<ALbuffer*> queue;
    uint32_t processed = 0;  // buffers at the queue's head that were played; the next is current
    ALenum type = AL_UNDETERMINED;
    ALenum state = AL_INITIAL;
    uint32_t mask = 1;
    float pitch = 1, gain = 1, minGain = 0, maxGain = 1;
    float coneInner = 360, coneOuter = 360, coneOuterGain = 0;  // degrees
    float referenceDistance = 1, maxDistance = 3.4e38F, rolloff = 1, dopplerFactor = 1;
    ALvector position, velocity, direction;
    bool headRelative = false, looping = false;
    uint32_t at = 0, fraction = 0;  // playing position
    double startAt = 0;             // frames; of a source that does not play yet
    int64_t startTime = 0;          // microseconds
    // Of the block that is mixed:
    uint32_t offset = 0;  // its frames that pass before the source begins
    float gains[kSpeakers] = {};
    uint32_t step = 0;  // frames of the buffer for one of the device, 14 bits of fraction
};

struct ALlistener {
    ALvector position, velocity, forward = {0, 0, -1}, up = {0, 1, 0};
    float gain = 1;
};

struct ALCcontext_struct {
    ALlistener listener;
    ALenum distanceModel = AL_INVERSE_DISTANCE_CLAMPED;
    float dopplerFactor = 1, dopplerVelocity = 1, speedOfSound = 343.3F;
    VxVector<ALsource*> sources;      // in the order of mixing
    VxVector<ALsource*> sourceNames;  // by name less 1; null for a free name
    ALCdevice_struct* device = nullptr;
    std::atomic<ALenum> error{AL_NO_ERROR};
};

// An output: it pulls blocks from the mixer. Operations in the order of their use.
struct ALCdevice_struct {
    ALCdevice_struct();
    virtual ~ALCdevice_struct() = default;
    ALCdevice_struct(const ALCdevice_struct&) = delete;
    ALCdevice_struct& operator=(const ALCdevice_struct&) = delete;
    virtual void open(const char* name) = 0;
    virtual void close() = 0;
    virtual void reset() = 0;  // settles the format and what depends on it
    virtual void start() = 0;
    virtual void stop() = 0;
    // Renders one block where the device has no thread and its time has come; else false.
    virtual bool pump() { return false; }

    ALenum format = AL_FORMAT_STEREO16;
    uint32_t frequency = 48000;
    uint32_t updateSize = 1600;  // frames of a block
    uint32_t updates = 1;        // blocks that the output holds
    uint32_t mask = 1;
    int32_t channels = 2;
    uint8_t channelMap[kSpeakers] = {};  // the speaker of each channel
    float pan[kPanPositions][kSpeakers] = {};
    int64_t lastMix = 0;  // microseconds; 0 before the first block
    VxVector<float> scratch;
    std::mutex lock;  // guards all of the mixer's state
    std::atomic<ALCenum> error{ALC_NO_ERROR};
};

extern std::atomic<ALCcontext_struct*> g_ALContext;  // the current one, or null

// ---- with the device's lock held
// Adds all playing sources up into `frames` frames of the device's format. Leaves the
// output as it is when there is no context.
void ALu_Mix(ALCdevice_struct* device, void* output, uint32_t frames);
// The sources move on by a block that was mixed.
void ALu_Advance(ALCdevice_struct* device, uint32_t frames);
// Both, after silence.
void ALu_Block(ALCdevice_struct* device, void* output, uint32_t frames);

// Frees the sources of a context that no device mixes any more, and all buffers.
void AL_FreeSources(ALCcontext_struct* context);
void AL_FreeBuffers();
ALbuffer* AL_FindBuffer(ALuint name);  // null for 0 and what is none
void AL_SetError(ALenum error);        // kept until it is read; later ones are lost

// ---- how a source reaches the speakers (ALu_Gains.cpp)
void ALu_BuildPan(ALCdevice_struct* device);  // channels, channel map and table of the format
// Gains and step of a source for the next block.
void ALu_UpdateSource(ALCcontext_struct* context, ALsource* source);

// ---- the inner loops (ALu_Loops.cpp)
// Adds `frames` frames to `out`, beginning at `data` with `fraction`.
using ALmixRun = void (*)(const uint8_t* data, uint32_t frames, uint32_t fraction, uint32_t step,
                          const float* gains, const uint8_t* channelMap, float* out);
bool ALu_HasLoops(int32_t outputChannels);
// Null, with a line that tells why, where there is none.
ALmixRun ALu_FindLoop(int32_t outputChannels, ALformat format);

// ---- outputs; they belong to the caller
ALCdevice_struct* ALCdevice_MakeHost();
ALCdevice_struct* ALCdevice_MakeNull();
// Renders one block of the current context's device where no thread does.
bool ALC_Pump();
