// Blending, tests, the colour mask and textures. Every change goes through the
// state mirror, so what was drawn before keeps the old state.

#include <bit>

#include "Files/Base/Error.h"
#include "Files/Function/Function_Graphic.h"
#include "Files/Function/Function_Registry.h"
#include "Files/Graphics/Batch.h"
#include "Files/Graphics/GpuState.h"
#include "Files/Graphics/Quad.h"

namespace {

struct BlendMode {
    DeviceBlend source, dest;
};
// By bm_normal, bm_add, bm_max, bm_subtract.
constexpr BlendMode kBlendModes[] = {
    {DeviceBlend::SrcAlpha, DeviceBlend::InvSrcAlpha},
    {DeviceBlend::SrcAlpha, DeviceBlend::One},
    {DeviceBlend::SrcAlpha, DeviceBlend::InvSrcColour},
    {DeviceBlend::Zero, DeviceBlend::InvSrcColour},
};
constexpr int32_t kBlendModeCount = 4;

void SetBlend(uint32_t source, uint32_t dest)
{
    GpuState_Set(STATE_SRC_BLEND, source);
    GpuState_Set(STATE_DEST_BLEND, dest);
    GpuState_Set(STATE_SRC_BLEND_ALPHA, source);
    GpuState_Set(STATE_DEST_BLEND_ALPHA, dest);
}

bool IsBlend(int32_t factor)
{
    return factor >= static_cast<int32_t>(DeviceBlend::Zero) &&
           factor <= static_cast<int32_t>(DeviceBlend::SrcAlphaSat);
}

bool IsStage(int32_t stage)
{
    return stage >= 0 && stage < kDeviceStages;
}

}  // namespace

BUILTIN(draw_set_blend_mode)
{
    const int32_t mode = ArgInt(args, argc, 0);
    const BlendMode& blend = kBlendModes[mode > 0 && mode < kBlendModeCount ? mode : 0];
    SetBlend(static_cast<uint32_t>(blend.source), static_cast<uint32_t>(blend.dest));
}

// Factors that no device knows leave the mode as it is.
BUILTIN(draw_set_blend_mode_ext)
{
    const int32_t source = ArgInt(args, argc, 0), dest = ArgInt(args, argc, 1);
    if (IsBlend(source) && IsBlend(dest))
        SetBlend(static_cast<uint32_t>(source), static_cast<uint32_t>(dest));
}

BUILTIN(draw_set_colour_write_enable)
{
    uint32_t mask = 0;
    for (int channel = 0; channel < 4; ++channel)
        if (ArgBool(args, argc, channel)) mask |= 1U << channel;
    GpuState_Set(STATE_COLOUR_WRITE, mask);
}

BUILTIN(draw_set_alpha_test)
{
    GpuState_Set(STATE_ALPHA_TEST, ArgBool(args, argc, 0) ? 1 : 0);
}

BUILTIN(draw_get_alpha_test)
{
    SetBool(result, GpuState_Get(STATE_ALPHA_TEST) != 0);
}

BUILTIN(draw_set_alpha_test_ref_value)
{
    const int32_t value = ArgInt(args, argc, 0);
    GpuState_Set(STATE_ALPHA_REF, static_cast<uint32_t>(value < 0 ? 0 : value > 255 ? 255 : value));
}

BUILTIN(draw_get_alpha_test_ref_value)
{
    SetReal(result, GpuState_Get(STATE_ALPHA_REF));
}

BUILTIN(texture_set_interpolation)
{
    GpuState_SetInterpolation(ArgBool(args, argc, 0));
}

// stage, on
BUILTIN(texture_set_interpolation_ext)
{
    const int32_t stage = ArgInt(args, argc, 0);
    if (!IsStage(stage)) return;
    const uint32_t filter = ArgBool(args, argc, 1) ? 1 : 0;
    GpuState_SetSampler(stage, SAMPLER_MAG, filter);
    GpuState_SetSampler(stage, SAMPLER_MIN, filter);
}

BUILTIN(texture_set_repeat)
{
    GpuState_SetRepeat(ArgBool(args, argc, 0));
}

// stage, on
BUILTIN(texture_set_repeat_ext)
{
    const int32_t stage = ArgInt(args, argc, 0);
    if (!IsStage(stage)) return;
    const uint32_t address = ArgBool(args, argc, 1) ? 0 : 1;
    GpuState_SetSampler(stage, SAMPLER_ADDRESS_U, address);
    GpuState_SetSampler(stage, SAMPLER_ADDRESS_V, address);
}

BUILTIN(texture_set_blending)
{
    GpuState_SetModulate(ArgBool(args, argc, 0));
}

BUILTIN(texture_set_stage)
{
    const int32_t stage = ArgInt(args, argc, 0);
    if (!IsStage(stage)) return;
    Batch_Flush();
    g_TextureStage = stage;
}

BUILTIN(texture_get_width)
{
    const TextureSlot* slot = Texture_Get(ArgInt(args, argc, 0, -1));
    SetReal(result, slot ? static_cast<float>(slot->width) * slot->invWidth : 1.0F);
}

BUILTIN(texture_get_height)
{
    const TextureSlot* slot = Texture_Get(ArgInt(args, argc, 0, -1));
    SetReal(result, slot ? static_cast<float>(slot->height) * slot->invHeight : 1.0F);
}

BUILTIN(texture_global_scale)
{
    const int32_t scale = ArgInt(args, argc, 0);
    if (scale <= 0 || !std::has_single_bit(static_cast<uint32_t>(scale))) {
        Error_Show(
            "texture global scale needs to be a positive power of 2 integer (i.e. 1, 2, 4, 8....)",
            false);
        return;
    }
    g_TextureGlobalScale = scale;
}

BUILTIN(draw_texture_flush)
{
    Batch_Flush();
    Texture_ReleaseAll();
}

BUILTIN(draw_flush)
{
    Batch_Flush();
}

BUILTIN(display_set_windows_vertex_buffer_method)
{
    Batch_SetMethod(ArgInt(args, argc, 0));
}

BUILTIN(display_get_windows_vertex_buffer_method)
{
    SetReal(result, Batch_Method());
}

BUILTIN(shader_enable_corner_id)
{
    g_CornerId = ArgBool(args, argc, 0);
}

static constexpr BuiltinRow kRows[] = {
    {"draw_set_blend_mode", draw_set_blend_mode, 1},
    {"draw_set_blend_mode_ext", draw_set_blend_mode_ext, 2},
    {"draw_set_colour_write_enable", draw_set_colour_write_enable, 4},
    {"draw_set_color_write_enable", draw_set_colour_write_enable, 4},
    {"draw_set_alpha_test", draw_set_alpha_test, 1},
    {"draw_get_alpha_test", draw_get_alpha_test, 0},
    {"draw_set_alpha_test_ref_value", draw_set_alpha_test_ref_value, 1},
    {"draw_get_alpha_test_ref_value", draw_get_alpha_test_ref_value, 0},
    {"texture_set_interpolation", texture_set_interpolation, 1},
    {"texture_set_interpolation_ext", texture_set_interpolation_ext, 2},
    {"texture_set_repeat", texture_set_repeat, 1},
    {"texture_set_repeat_ext", texture_set_repeat_ext, 2},
    {"texture_set_blending", texture_set_blending, 1},
    {"texture_set_stage", texture_set_stage, 1},
    {"texture_get_width", texture_get_width, 1},
    {"texture_get_height", texture_get_height, 1},
    {"texture_global_scale", texture_global_scale, 1},
    {"draw_texture_flush", draw_texture_flush, 0},
    {"draw_flush", draw_flush, 0},
    {"display_set_windows_vertex_buffer_method", display_set_windows_vertex_buffer_method, 1},
    {"display_get_windows_vertex_buffer_method", display_get_windows_vertex_buffer_method, 0},
    {"shader_enable_corner_id", shader_enable_corner_id, 1},
};

void Function_Graphic_RegisterStates()
{
    Function_AddRows(kRows);
}
