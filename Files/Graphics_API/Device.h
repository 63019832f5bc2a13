#pragma once
// The graphics device as a table of functions with two fillings: Device_GL and
// Device_Soft. Pixels are 32 bits: blue, green, red, alpha in memory (0xAARRGGBB
// as a word). Row 0 is the top row of textures, targets and read-backs.
// Drawing uses one vertex path; positions go through world, view and projection.

#include <cstdint>

enum class DeviceFormat : int32_t {
    Default = 0,
    Dxt5 = 5,
    Argb8888 = 6,
    Argb4444 = 11,
};

enum class DevicePrimitive : int32_t {
    PointList = 1,
    LineList = 2,
    LineStrip = 3,
    TriangleList = 4,
    TriangleStrip = 5,
    TriangleFan = 6,
};

// Render states by their index in GpuState, with the runtime's values.
enum DeviceRenderState : int32_t {
    STATE_Z_ENABLE = 1,
    STATE_FILL_MODE = 2,
    STATE_SHADE_MODE = 3,
    STATE_Z_WRITE = 4,
    STATE_ALPHA_TEST = 5,
    STATE_SRC_BLEND = 6,  // DeviceBlend
    STATE_DEST_BLEND = 7,
    STATE_CULL_MODE = 8,
    STATE_Z_FUNC = 9,
    STATE_ALPHA_REF = 10,   // 0 to 255
    STATE_ALPHA_FUNC = 11,  // DeviceCompare
    STATE_ALPHA_BLEND = 12,
    STATE_FOG_ENABLE = 13,
    STATE_FOG_COLOUR = 15,
    STATE_FOG_TABLE_MODE = 16,
    STATE_FOG_START = 17,
    STATE_FOG_END = 18,
    STATE_RANGE_FOG = 20,
    STATE_LIGHTING = 21,
    STATE_FOG_VERTEX_MODE = 23,
    STATE_COLOUR_WRITE = 24,  // bit 0 red, 1 green, 2 blue, 3 alpha
    STATE_STENCIL_ENABLE = 25,
    STATE_STENCIL_FAIL = 26,
    STATE_STENCIL_ZFAIL = 27,
    STATE_STENCIL_PASS = 28,
    STATE_STENCIL_FUNC = 29,
    STATE_STENCIL_REF = 30,
    STATE_STENCIL_MASK = 31,
    STATE_STENCIL_WRITE_MASK = 32,
    STATE_SRC_BLEND_ALPHA = 34,  // second copies of 6 and 7
    STATE_DEST_BLEND_ALPHA = 35,
    STATE_COUNT = 36,
};

enum class DeviceBlend : uint32_t {
    Zero = 1,
    One = 2,
    SrcColour = 3,
    InvSrcColour = 4,
    SrcAlpha = 5,
    InvSrcAlpha = 6,
    DestAlpha = 7,
    InvDestAlpha = 8,
    DestColour = 9,
    InvDestColour = 10,
    SrcAlphaSat = 11,
};

enum class DeviceCompare : uint32_t {
    Never = 1,
    Less,
    Equal,
    LessEqual,
    Greater,
    NotEqual,
    GreaterEqual,
    Always
};

enum class DeviceCull : uint32_t { None = 1, Clockwise = 2, CounterClockwise = 3 };
enum class DeviceShade : uint32_t { Flat = 1, Gouraud = 2 };

enum class DeviceStencil : uint32_t {
    Keep = 1,
    Zero,
    Replace,
    IncrementLimit,
    DecrementLimit,
    Invert,
    Increment,
    Decrement
};

enum DeviceSamplerState : int32_t {
    SAMPLER_MAG = 0,  // 0 point, 1 linear
    SAMPLER_MIN = 1,
    SAMPLER_ADDRESS_U = 2,  // 0 wrap, 1 clamp
    SAMPLER_ADDRESS_V = 3,
    SAMPLER_COUNT = 10,
};
inline constexpr int32_t kDeviceStages = 8;
inline constexpr int32_t kDeviceTargets = 4;

enum DeviceClear : uint32_t { CLEAR_COLOUR = 1, CLEAR_DEPTH = 2, CLEAR_STENCIL = 4 };
enum class DeviceMatrix : int32_t {
    World,
    View,
    Projection
};  // column vectors, row-major memory: m[row * 4 + column], translation in m[3], m[7], m[11]

struct DeviceRect {
    int32_t left, top, right, bottom;  // right and bottom outside
};

struct DeviceParams {
    int32_t width, height;  // back buffer
    bool fullscreen;
    int32_t samples;   // 0, 2, 4, 8, 16
    int32_t interval;  // 0 immediate, 1 on vertical sync
};

struct DeviceCaps {
    int32_t maxTextureSize;
    uint32_t sampleLevels;  // sum of the supported levels 2, 4, 8, 16
    int32_t targets;        // simultaneous render targets, at most 4
    bool dxt5;
};

struct DeviceTexture;  // a texture, or a render target that can be sampled
struct DeviceBuffer;   // a vertex buffer

// What lives on the device beside the back buffer, to find leaks.
struct DeviceCounts {
    int32_t textures, buffers;
};

enum class DeviceLock { Plain, Discard, NoOverwrite };

// Vertex layouts by stride. 16: x, y, z floats, colour word. 24: and u, v floats.
// 36: position, normal, colour, u, v.
struct DeviceTable {
    const char* name;
    // `error` receives a sentence on failure (at least 256 bytes).
    bool (*Open)(const DeviceParams& params, char* error, int32_t errorSize);
    void (*Close)();
    // Forgets all render targets' contents; false when refused.
    bool (*Reset)(const DeviceParams& params);
    bool (*Lost)();
    const DeviceCaps& (*Caps)();

    DeviceTexture* (*CreateTexture)(int32_t width, int32_t height, DeviceFormat format,
                                    bool renderTarget, bool depth);
    void (*FreeTexture)(DeviceTexture* texture);
    // Rows of `pitch` bytes: 16-bit words for Argb4444, else 32-bit pixels, which the
    // device itself compresses for Dxt5.
    bool (*UpdateTexture)(DeviceTexture* texture, const DeviceRect& area, const void* pixels,
                          int32_t pitch);
    // Null reads the back buffer. 32-bit pixels; the area lies inside.
    bool (*ReadPixels)(DeviceTexture* target, const DeviceRect& area, void* pixels, int32_t pitch);
    // Both rectangles lie inside their textures; null is the back buffer.
    bool (*StretchRect)(DeviceTexture* source, const DeviceRect& from, DeviceTexture* dest,
                        const DeviceRect& to, bool linear);

    void (*SetTexture)(int32_t stage, DeviceTexture* texture);
    void (*SetModulate)(bool on);  // texture times vertex colour, or the texture alone
    // Null: the back buffer (0) or none. Target 0 also sets the viewport to its whole
    // area. Vertices are drawn to target 0; Clear reaches all of them.
    void (*SetTarget)(int32_t index, DeviceTexture* target);
    void (*SetViewport)(int32_t x, int32_t y, int32_t width, int32_t height);
    void (*SetMatrix)(DeviceMatrix which, const float matrix[16]);
    void (*SetRenderState)(int32_t state, uint32_t value);
    void (*SetSamplerState)(int32_t stage, int32_t kind, uint32_t value);
    // Clears the whole target, regardless of the viewport. colour is 0xAARRGGBB.
    void (*Clear)(uint32_t flags, uint32_t colour, float depth, uint32_t stencil);

    DeviceBuffer* (*CreateBuffer)(uint32_t bytes, bool dynamic);
    void (*FreeBuffer)(DeviceBuffer* buffer);
    void* (*LockBuffer)(DeviceBuffer* buffer, uint32_t offset, uint32_t bytes, DeviceLock mode);
    void (*UnlockBuffer)(DeviceBuffer* buffer);
    // `count` vertices of `stride` bytes from byte `offset`.
    void (*Draw)(DevicePrimitive primitive, int32_t stride, DeviceBuffer* buffer, uint32_t offset,
                 int32_t count);
    void (*DrawUp)(DevicePrimitive primitive, int32_t stride, const void* vertices, int32_t count);

    bool (*BeginScene)();
    void (*EndScene)();
    void (*Present)();  // the back buffer to the window; the soft device shows it through the host
    DeviceCounts (*Counts)();
};

extern const DeviceTable* g_Device;  // null before the window layer opened one
extern const DeviceTable Device_GL;
extern const DeviceTable Device_Soft;

// True when the GL that a context would give is a software renderer; the renderer's
// name goes to `name`. Valid after Device_GL.Open.
bool Device_GL_IsSoftware(const char** name);
