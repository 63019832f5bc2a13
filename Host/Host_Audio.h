#pragma once
// Sound output as a table of operations, filled by the same backend as g_Host. A backend
// pulls: when it needs samples it calls the client, on a thread of its own.

#include <cstdint>

struct HostAudioRequest {
    int32_t rate;      // frames a second
    int32_t channels;  // 16-bit samples of a frame, left first
    int32_t frames;    // of one pull, roughly
    // Fills `frames` frames. Never called before Start, nor once Close has returned.
    void (*Pull)(void* context, int16_t* samples, int32_t frames);
    void* context;
};

struct HostAudioTable {
    // Nobody pulls by himself: whoever lets the clock move calls Step.
    bool stepped;
    int32_t (*DeviceCount)();                  // the system's default stands first
    const char* (*DeviceName)(int32_t index);  // UTF-8
    const char* (*DriverName)();
    bool (*Open)(int32_t index, const HostAudioRequest& request);  // false: LastError tells
    void (*Start)();
    void (*Close)();  // waits for a pull that is under way; does nothing when none is open
    const char* (*LastError)();
    // Pulls once if the clock says that it is time; false when it is not.
    bool (*Step)();
};

extern HostAudioTable g_HostAudio;
