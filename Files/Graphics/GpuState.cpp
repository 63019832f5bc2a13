#include "Files/Graphics/GpuState.h"

#include <bit>
#include <cstring>

#include "Files/Base/Console.h"
#include "Files/Graphics/Batch.h"
#include "Files/Graphics/Window.h"

uint64_t g_GpuDirty;
int32_t g_TextureStage;

namespace {

constexpr int32_t kSamplerStates = kDeviceStages * SAMPLER_COUNT;
constexpr int32_t kSentSamplerKinds = 4;  // filters and addressing; the others keep their defaults
constexpr int32_t kSnapshots = 32;
// Values of the states that have no enumeration of their own.
constexpr uint32_t kFillSolid = 3, kShadeGouraud = 2, kCullNone = 1, kStencilKeep = 1;
constexpr uint32_t kAllChannels = 15, kAllBits = 0xFFFFFFFFU;

constexpr uint32_t Number(DeviceBlend blend)
{
    return static_cast<uint32_t>(blend);
}
constexpr uint32_t Number(DeviceCompare compare)
{
    return static_cast<uint32_t>(compare);
}

struct StateDefault {
    int32_t state;
    uint32_t value;
};

constexpr StateDefault kDefaults[] = {
    {STATE_Z_ENABLE, 0},
    {STATE_FILL_MODE, kFillSolid},
    {STATE_SHADE_MODE, kShadeGouraud},
    {STATE_Z_WRITE, 1},
    {STATE_ALPHA_TEST, 0},
    {STATE_SRC_BLEND, Number(DeviceBlend::SrcAlpha)},
    {STATE_DEST_BLEND, Number(DeviceBlend::InvSrcAlpha)},
    {STATE_CULL_MODE, kCullNone},
    {STATE_Z_FUNC, Number(DeviceCompare::LessEqual)},
    {STATE_ALPHA_REF, 0},
    {STATE_ALPHA_FUNC, Number(DeviceCompare::Greater)},
    {STATE_ALPHA_BLEND, 1},
    {STATE_FOG_ENABLE, 0},
    {STATE_FOG_COLOUR, 0},
    {STATE_FOG_TABLE_MODE, 1},
    {STATE_FOG_START, std::bit_cast<uint32_t>(0.0F)},
    {STATE_FOG_END, std::bit_cast<uint32_t>(1.0F)},
    {STATE_RANGE_FOG, 0},
    {STATE_LIGHTING, 0},
    {STATE_FOG_VERTEX_MODE, 3},
    {STATE_COLOUR_WRITE, kAllChannels},
    {STATE_STENCIL_ENABLE, 0},
    {STATE_STENCIL_FAIL, kStencilKeep},
    {STATE_STENCIL_ZFAIL, kStencilKeep},
    {STATE_STENCIL_PASS, kStencilKeep},
    {STATE_STENCIL_FUNC, Number(DeviceCompare::Always)},
    {STATE_STENCIL_REF, 0},
    {STATE_STENCIL_MASK, kAllBits},
    {STATE_STENCIL_WRITE_MASK, kAllBits},
    {STATE_SRC_BLEND_ALPHA, Number(DeviceBlend::SrcAlpha)},
    {STATE_DEST_BLEND_ALPHA, Number(DeviceBlend::InvSrcAlpha)},
};

struct StateValues {
    uint32_t render[STATE_COUNT];
    uint32_t sampler[kSamplerStates];
};

// The mirror: what the device has and what is wanted.
struct Mirror {
    StateValues applied, wanted;
    uint64_t renderDirty;      // bit: state
    uint64_t samplerDirty[2];  // bit: stage * SAMPLER_COUNT + kind
    StateValues stack[kSnapshots];
    int32_t depth;
    bool linear, repeat, modulate;  // as last set for all stages
};
Mirror s_mirror;

void CombineDirty()
{
    g_GpuDirty = s_mirror.renderDirty | s_mirror.samplerDirty[0] | s_mirror.samplerDirty[1];
}

void MarkAll()
{
    for (const StateDefault& row : kDefaults) s_mirror.renderDirty |= 1ULL << row.state;
    for (int32_t stage = 0; stage < kDeviceStages; ++stage)
        for (int32_t kind = 0; kind < kSentSamplerKinds; ++kind) {
            const int32_t index = stage * SAMPLER_COUNT + kind;
            s_mirror.samplerDirty[index >> 6] |= 1ULL << (index & 63);
        }
    CombineDirty();
}

void SetAllStages(int32_t kind, uint32_t value)
{
    for (int32_t stage = 0; stage < kDeviceStages; ++stage) GpuState_SetSampler(stage, kind, value);
}

void Restore(const StateValues& values)
{
    for (const StateDefault& row : kDefaults) GpuState_Set(row.state, values.render[row.state]);
    for (int32_t index = 0; index < kSamplerStates; ++index)
        GpuState_SetSampler(index / SAMPLER_COUNT, index % SAMPLER_COUNT, values.sampler[index]);
}

}  // namespace

void GpuState_Init()
{
    std::memset(&s_mirror.wanted, 0, sizeof s_mirror.wanted);
    s_mirror.renderDirty = s_mirror.samplerDirty[0] = s_mirror.samplerDirty[1] = 0;
    s_mirror.depth = 0;
    s_mirror.linear = g_Display.interpolate;
    s_mirror.repeat = false;
    for (const StateDefault& row : kDefaults) s_mirror.wanted.render[row.state] = row.value;
    s_mirror.applied = s_mirror.stack[0] = s_mirror.wanted;
    GpuState_Restart();
}

void GpuState_Restart()
{
    g_TextureStage = 0;
    GpuState_Set(STATE_ALPHA_BLEND, 1);
    GpuState_SetInterpolation(s_mirror.linear);
    GpuState_SetRepeat(s_mirror.repeat);
    s_mirror.modulate = true;
    if (g_Device) g_Device->SetModulate(true);
    MarkAll();
}

void GpuState_Set(int32_t state, uint32_t value)
{
    if (s_mirror.wanted.render[state] == value) return;
    const uint64_t bit = 1ULL << state;
    if (s_mirror.applied.render[state] == value)
        s_mirror.renderDirty &= ~bit;
    else
        s_mirror.renderDirty |= bit;
    s_mirror.wanted.render[state] = value;
    CombineDirty();
}

uint32_t GpuState_Get(int32_t state)
{
    return s_mirror.wanted.render[state];
}

void GpuState_SetSampler(int32_t stage, int32_t kind, uint32_t value)
{
    const int32_t index = stage * SAMPLER_COUNT + kind;
    if (s_mirror.wanted.sampler[index] == value) return;
    const uint64_t bit = 1ULL << (index & 63);
    if (s_mirror.applied.sampler[index] == value)
        s_mirror.samplerDirty[index >> 6] &= ~bit;
    else
        s_mirror.samplerDirty[index >> 6] |= bit;
    s_mirror.wanted.sampler[index] = value;
    CombineDirty();
}

uint32_t GpuState_GetSampler(int32_t stage, int32_t kind)
{
    return s_mirror.wanted.sampler[stage * SAMPLER_COUNT + kind];
}

void GpuState_Apply()
{
    if (!g_GpuDirty || !g_Device) return;
    for (uint64_t dirty = s_mirror.renderDirty; dirty; dirty &= dirty - 1) {
        const int32_t state = std::countr_zero(dirty);
        s_mirror.applied.render[state] = s_mirror.wanted.render[state];
        g_Device->SetRenderState(state, s_mirror.wanted.render[state]);
    }
    for (int32_t word = 0; word < 2; ++word) {
        for (uint64_t dirty = s_mirror.samplerDirty[word]; dirty; dirty &= dirty - 1) {
            const int32_t index = word * 64 + std::countr_zero(dirty);
            s_mirror.applied.sampler[index] = s_mirror.wanted.sampler[index];
            g_Device->SetSamplerState(index / SAMPLER_COUNT, index % SAMPLER_COUNT,
                                      s_mirror.wanted.sampler[index]);
        }
        s_mirror.samplerDirty[word] = 0;
    }
    s_mirror.renderDirty = 0;
    g_GpuDirty = 0;
}

void GpuState_SendAll()
{
    MarkAll();
    GpuState_Apply();
}

void GpuState_Push()
{
    if (s_mirror.depth == kSnapshots) {
        g_DebugConsole->Output("GPU state stack has run out of space\n");
        return;
    }
    s_mirror.stack[s_mirror.depth++] = s_mirror.wanted;
}

void GpuState_Pop()
{
    if (s_mirror.depth == 0)
        g_DebugConsole->Output("Attempting to drop below bottom of GPU state stack\n");
    else
        --s_mirror.depth;
    Restore(s_mirror.stack[s_mirror.depth]);
}

void GpuState_ApplyInterpolation()
{
    GpuState_SetInterpolation(s_mirror.linear);
}

void GpuState_SetInterpolation(bool linear)
{
    s_mirror.linear = linear;
    SetAllStages(SAMPLER_MAG, linear ? 1 : 0);
    SetAllStages(SAMPLER_MIN, linear ? 1 : 0);
}

void GpuState_SetRepeat(bool repeat)
{
    s_mirror.repeat = repeat;
    SetAllStages(SAMPLER_ADDRESS_U, repeat ? 0 : 1);
    SetAllStages(SAMPLER_ADDRESS_V, repeat ? 0 : 1);
}

bool GpuState_Repeat()
{
    return s_mirror.repeat;
}

void GpuState_SetModulate(bool on)
{
    Batch_Flush();
    s_mirror.modulate = on;
    if (g_Device) g_Device->SetModulate(on);
}

bool GpuState_Modulate()
{
    return s_mirror.modulate;
}
