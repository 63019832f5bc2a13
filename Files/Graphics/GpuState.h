#pragma once
// The mirror of the device's render and sampler states, and the start, reset and
// end of everything that draws. A state that is set waits until the batch is next
// flushed, so it never touches vertices that were drawn before it.

#include <cstdint>

#include "Files/Graphics_API/Device.h"

// Wanted values back to their defaults with the filter and repeat settings laid
// over them, the snapshot stack empty, and every state marked for sending.
void GpuState_Init();
// As a fresh or reset device begins: stage 0, blending on, textures multiplied by the vertex
// colour, filter and addressing as they were last set for all stages; the rest of the wanted
// values stays. Marks every state for sending.
void GpuState_Restart();
void GpuState_Set(int32_t state, uint32_t value);                       // a DeviceRenderState
uint32_t GpuState_Get(int32_t state);                                   // the wanted value
void GpuState_SetSampler(int32_t stage, int32_t kind, uint32_t value);  // a DeviceSamplerState
uint32_t GpuState_GetSampler(int32_t stage, int32_t kind);
void GpuState_Apply();    // sends what is dirty; the batch calls it after each flush
void GpuState_SendAll();  // marks every state dirty and sends it
// Saves and restores the wanted values, 32 deep.
void GpuState_Push();
void GpuState_Pop();
void GpuState_SetInterpolation(bool linear);  // all stages
void GpuState_ApplyInterpolation();           // the last one of all stages, once more
void GpuState_SetRepeat(bool repeat);         // all stages
bool GpuState_Repeat();
void GpuState_SetModulate(bool on);  // texture times vertex colour, or the texture alone
bool GpuState_Modulate();
extern int32_t g_TextureStage;  // the stage that the batch binds to

// One word of all dirty bits: not 0 while a state waits to be sent.
extern uint64_t g_GpuDirty;

// ---- the life of drawing, for the window layer
// After the device opened: identity world, empty slots, states sent, black back
// buffer, viewport and view area over all of it, the white texture.
bool Graphics_Start();
// After the device was reset: black back buffer, all states again, the viewport.
void Graphics_AfterReset();
// Surfaces, slots, buffers and the white texture; the device is still open.
void Graphics_Stop();
