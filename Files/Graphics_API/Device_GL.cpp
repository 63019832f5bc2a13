// The device on OpenGL 3.3 or OpenGL ES 3.0.
#include <algorithm>
#include <cctype>
#include <cstdio>
#include <cstring>

#include "Files/Graphics_API/GL_State.h"
#include "Host/Host.h"

GLState* g_GL = nullptr;

namespace {

constexpr uint32_t kMaxBuffer = 1U << 30;

GLTexture* AsGL(DeviceTexture* texture)
{
    return reinterpret_cast<GLTexture*>(texture);
}
GLBuffer* AsGL(DeviceBuffer* buffer)
{
    return reinterpret_cast<GLBuffer*>(buffer);
}
GLTexture* Target(DeviceTexture* texture)
{
    return texture ? AsGL(texture) : g_GL->backBuffer;
}

template <class T>
void Link(T** head, T* item)
{
    item->next = *head;
    item->previous = nullptr;
    if (*head) (*head)->previous = item;
    *head = item;
}

template <class T>
void Unlink(T** head, T* item)
{
    (item->previous ? item->previous->next : *head) = item->next;
    if (item->next) item->next->previous = item->previous;
}

// ---- textures

DeviceTexture* CreateTexture(int32_t width, int32_t height, DeviceFormat format, bool renderTarget,
                             bool depth)
{
    const int32_t most = g_GL->caps.maxTextureSize;
    if (width < 1 || height < 1 || width > most || height > most) return nullptr;
    if (format == DeviceFormat::Dxt5 && (renderTarget || !g_GL->caps.dxt5)) return nullptr;
    GLTexture* made = GL_NewTexture(width, height, format, renderTarget, depth, 0);
    if (made) Link(&g_GL->textures, made);
    return reinterpret_cast<DeviceTexture*>(made);
}

void SetViewport(int32_t x, int32_t y, int32_t width, int32_t height)
{
    g_GL->viewport = {x, y, std::max(width, 0), std::max(height, 0)};
}

void SetTarget(int32_t index, DeviceTexture* texture)
{
    if (index < 0 || index >= kDeviceTargets) return;
    if (texture && !AsGL(texture)->target) return;
    g_GL->target[index] = AsGL(texture);
    if (index != 0) return;
    g_GL->target[0] = Target(texture);
    g_GL->samplerDirty = true;
    SetViewport(0, 0, g_GL->target[0]->width, g_GL->target[0]->height);
}

void FreeTexture(DeviceTexture* handle)
{
    GLTexture* texture = AsGL(handle);
    if (!texture) return;
    for (GLTexture*& stage : g_GL->stage)
        if (stage == texture) stage = nullptr;
    for (int32_t i = 0; i < kDeviceTargets; i++)
        if (g_GL->target[i] == texture) SetTarget(i, nullptr);
    g_GL->samplerDirty = true;
    Unlink(&g_GL->textures, texture);
    GL_DeleteTexture(texture);
}

bool UpdateTexture(DeviceTexture* texture, const DeviceRect& area, const void* pixels,
                   int32_t pitch)
{
    return texture && GL_Upload(AsGL(texture), area, pixels, pitch);
}

bool ReadPixels(DeviceTexture* target, const DeviceRect& area, void* pixels, int32_t pitch)
{
    return GL_Read(Target(target), area, pixels, pitch);
}

bool StretchRect(DeviceTexture* source, const DeviceRect& from, DeviceTexture* dest,
                 const DeviceRect& to, bool linear)
{
    return GL_Stretch(Target(source), from, Target(dest), to, linear);
}

// ---- states

void SetTexture(int32_t stage, DeviceTexture* texture)
{
    if (stage < 0 || stage >= kDeviceStages || g_GL->stage[stage] == AsGL(texture)) return;
    g_GL->stage[stage] = AsGL(texture);
    if (stage == 0) g_GL->samplerDirty = true;
}

void SetModulate(bool on)
{
    g_GL->modulate = on;
    g_GL->statesDirty = true;
}

void SetMatrix(DeviceMatrix which, const float matrix[16])
{
    std::memcpy(g_GL->matrix[static_cast<int32_t>(which)], matrix, sizeof(g_GL->matrix[0]));
}

void SetRenderState(int32_t state, uint32_t value)
{
    if (state < 0 || state >= STATE_COUNT) return;
    g_GL->render[state] = value;
    g_GL->statesDirty = true;
}

void SetSamplerState(int32_t stage, int32_t kind, uint32_t value)
{
    if (stage < 0 || stage >= kDeviceStages || kind < 0 || kind >= SAMPLER_COUNT) return;
    g_GL->samplerStates[stage][kind] = value;
    if (stage == 0) g_GL->samplerDirty = true;
}

void ClearColour(GLTexture* target, uint32_t colour)
{
    const auto channel = [&](int32_t shift) {
        return static_cast<float>((colour >> shift) & 255) / 255.0F;
    };
    glBindFramebuffer(GL_FRAMEBUFFER, GL_FrameOf(target));
    glClearColor(channel(16), channel(8), channel(0), channel(24));
    glClear(GL_COLOR_BUFFER_BIT);
}

void Clear(uint32_t flags, uint32_t colour, float depth, uint32_t stencil)
{
    glDisable(GL_SCISSOR_TEST);
    glColorMask(GL_TRUE, GL_TRUE, GL_TRUE, GL_TRUE);
    glDepthMask(GL_TRUE);
    glStencilMask(0xFFFFFFFF);
    g_GL->statesDirty = true;
    for (GLTexture* target : g_GL->target)
        if (target && (flags & CLEAR_COLOUR)) ClearColour(target, colour);
    GLbitfield rest = 0;
    if (flags & CLEAR_DEPTH) rest |= GL_DEPTH_BUFFER_BIT;
    if (flags & CLEAR_STENCIL) rest |= GL_STENCIL_BUFFER_BIT;
    if (!rest || !g_GL->target[0]->hasDepth) return;
    glBindFramebuffer(GL_FRAMEBUFFER, GL_FrameOf(g_GL->target[0]));
    glClearDepthf(depth);
    glClearStencil(static_cast<GLint>(stencil & 255));
    glClear(rest);
}

// ---- vertices

DeviceBuffer* CreateBuffer(uint32_t bytes, bool dynamic)
{
    if (bytes == 0 || bytes > kMaxBuffer) return nullptr;
    GLBuffer* made = GL_NewBuffer(bytes, dynamic);
    made->shadow = static_cast<uint8_t*>(MemoryManager::Alloc(bytes, true));
    Link(&g_GL->buffers, made);
    return reinterpret_cast<DeviceBuffer*>(made);
}

void FreeBuffer(DeviceBuffer* handle)
{
    if (!handle) return;
    Unlink(&g_GL->buffers, AsGL(handle));
    GL_DeleteBuffer(AsGL(handle));
}

void* LockBuffer(DeviceBuffer* handle, uint32_t offset, uint32_t bytes, DeviceLock mode)
{
    GLBuffer* buffer = AsGL(handle);
    if (!buffer || offset > buffer->bytes || bytes > buffer->bytes - offset) return nullptr;
    buffer->mode = mode;
    if (mode == DeviceLock::Discard) buffer->discard = true;
    return buffer->shadow + offset;
}

void UnlockBuffer(DeviceBuffer*) {}

void Draw(DevicePrimitive primitive, int32_t stride, DeviceBuffer* handle, uint32_t offset,
          int32_t count)
{
    GLBuffer* buffer = AsGL(handle);
    if (!buffer || stride <= 0 || count <= 0 || offset > buffer->bytes) return;
    if (static_cast<uint64_t>(stride) * static_cast<uint64_t>(count) > buffer->bytes - offset)
        return;
    GL_Draw(primitive, stride, buffer, offset, count);
}

void DrawUp(DevicePrimitive primitive, int32_t stride, const void* vertices, int32_t count)
{
    if (vertices && count > 0) GL_DrawUp(primitive, stride, vertices, count);
}

// ---- the device's life

void ReadCaps()
{
    DeviceCaps& caps = g_GL->caps;
    GLint size = 0, samples = 0;
    glGetIntegerv(GL_MAX_TEXTURE_SIZE, &size);
    glGetIntegerv(GL_MAX_SAMPLES, &samples);
    caps.maxTextureSize = size;
    caps.targets = kDeviceTargets;
    caps.dxt5 = epoxy_has_gl_extension("GL_EXT_texture_compression_s3tc") && !g_GL->es;
    caps.sampleLevels = 0;
    for (int32_t level = 2; level <= 16 && level <= samples; level *= 2)
        caps.sampleLevels |= static_cast<uint32_t>(level);
    const GLubyte* renderer = glGetString(GL_RENDERER);
    std::snprintf(g_GL->renderer, sizeof(g_GL->renderer), "%s",
                  renderer ? reinterpret_cast<const char*>(renderer) : "unknown");
}

bool MakeBackBuffer(const DeviceParams& params)
{
    const int32_t most = g_GL->caps.maxTextureSize;
    if (params.width < 1 || params.height < 1 || params.width > most || params.height > most)
        return false;
    const auto level = static_cast<uint32_t>(params.samples);
    if (params.samples < 0 || (g_GL->caps.sampleLevels & level) != level ||
        (level & (level - 1)) != 0)
        return false;
    GLTexture* made = GL_NewTexture(params.width, params.height, DeviceFormat::Argb8888, true, true,
                                    params.samples);
    if (!made) return false;
    GL_DeleteTexture(g_GL->backBuffer);
    g_GL->backBuffer = made;
    g_GL->params = params;
    std::memset(g_GL->target, 0, sizeof(g_GL->target));
    SetTarget(0, nullptr);
    Clear(CLEAR_COLOUR | CLEAR_DEPTH | CLEAR_STENCIL, 0, 1.0F, 0);
    if (g_Host.window.GLSetInterval) g_Host.window.GLSetInterval(params.interval);
    return true;
}

void MakeFixedObjects()
{
    glGenVertexArrays(1, &g_GL->vertices);
    glBindVertexArray(g_GL->vertices);
    glActiveTexture(GL_TEXTURE0);
    glGenSamplers(1, &g_GL->sampler);
    glBindSampler(0, g_GL->sampler);
    glFrontFace(GL_CCW);
    glDisable(GL_DITHER);
    glPixelStorei(GL_UNPACK_ALIGNMENT, 4);
    glPixelStorei(GL_PACK_ALIGNMENT, 4);
    if (!g_GL->es) glProvokingVertex(GL_FIRST_VERTEX_CONVENTION);
    Device_DefaultStates(g_GL->render, g_GL->samplerStates);
    for (auto& matrix : g_GL->matrix) std::memcpy(matrix, kDeviceIdentity, sizeof(matrix));
    g_GL->modulate = g_GL->statesDirty = g_GL->samplerDirty = true;
}

void Close()
{
    if (!g_GL) return;
    while (g_GL->buffers) FreeBuffer(reinterpret_cast<DeviceBuffer*>(g_GL->buffers));
    while (g_GL->textures) FreeTexture(reinterpret_cast<DeviceTexture*>(g_GL->textures));
    GL_DeleteTexture(g_GL->backBuffer);
    GL_DeleteTexture(g_GL->resolved);
    GL_DeleteTexture(g_GL->copy);
    GL_DeleteBuffer(g_GL->stream);
    if (g_GL->sampler) glDeleteSamplers(1, &g_GL->sampler);
    if (g_GL->vertices) glDeleteVertexArrays(1, &g_GL->vertices);
    GL_FreeProgram();
    VxDelete(g_GL);
    g_GL = nullptr;
    g_Host.window.GLDestroy();
}

bool StartGL(const DeviceParams& params, char* error, int32_t errorSize)
{
    const auto size = static_cast<size_t>(errorSize);
    g_GL->es = !epoxy_is_desktop_gl();
    const int32_t version = epoxy_gl_version();
    if (version < (g_GL->es ? 30 : 33)) {
        std::snprintf(error, size, "GL is version %d.%d, and 3.3 (or ES 3.0) is needed.",
                      version / 10, version % 10);
        return false;
    }
    ReadCaps();
    MakeFixedObjects();
    if (!GL_MakeProgram(error, errorSize)) return false;
    if (MakeBackBuffer(params)) return true;
    std::snprintf(error, size, "GL can not make a picture of %d by %d pixels with %d samples.",
                  params.width, params.height, params.samples);
    return false;
}

bool Open(const DeviceParams& params, char* error, int32_t errorSize)
{
    Close();
    if (!g_Host.window.GLCreate) {
        std::snprintf(error, static_cast<size_t>(errorSize), "There is no GL on this host.");
        return false;
    }
    if (!g_Host.window.GLCreate(0)) {
        std::snprintf(error, static_cast<size_t>(errorSize), "%s", g_Host.window.LastError());
        return false;
    }
    g_GL = VxNew<GLState>();
    if (StartGL(params, error, errorSize)) return true;
    Close();
    return false;
}

bool Reset(const DeviceParams& params)
{
    if (!MakeBackBuffer(params)) return false;
    for (GLTexture* texture = g_GL->textures; texture; texture = texture->next) {
        if (!texture->target) continue;
        ClearColour(texture, 0);
        if (texture->hasDepth) glClear(GL_DEPTH_BUFFER_BIT | GL_STENCIL_BUFFER_BIT);
    }
    return true;
}

bool Lost()
{
    return false;
}

const DeviceCaps& Caps()
{
    return g_GL->caps;
}

DeviceCounts Counts()
{
    DeviceCounts counts = {0, 0};
    for (const GLTexture* t = g_GL->textures; t; t = t->next) counts.textures++;
    for (const GLBuffer* b = g_GL->buffers; b; b = b->next) counts.buffers++;
    return counts;
}

bool BeginScene()
{
    return true;
}
void EndScene() {}

// The window's rows go upward, so the picture is turned here.
void Present()
{
    GLTexture* plain = GL_Resolve(g_GL->backBuffer);
    if (!plain) return;
    int32_t width = plain->width, height = plain->height;
    g_Host.window.ClientSize(&width, &height);
    const bool same = width == plain->width && height == plain->height;
    glDisable(GL_SCISSOR_TEST);
    glBindFramebuffer(GL_READ_FRAMEBUFFER, GL_FrameOf(plain));
    glBindFramebuffer(GL_DRAW_FRAMEBUFFER, 0);
    glBlitFramebuffer(0, 0, plain->width, plain->height, 0, height, width, 0, GL_COLOR_BUFFER_BIT,
                      static_cast<GLenum>(same ? GL_NEAREST : GL_LINEAR));
    g_Host.window.GLSwap();
}

}  // namespace

bool Device_GL_IsSoftware(const char** name)
{
    *name = g_GL ? g_GL->renderer : "";
    char lower[sizeof(g_GL->renderer)] = {};
    for (size_t i = 0; (*name)[i] && i + 1 < sizeof(lower); i++)
        lower[i] = static_cast<char>(std::tolower(static_cast<unsigned char>((*name)[i])));
    for (const char* known : {"llvmpipe", "softpipe", "swrast", "software rasterizer"})
        if (std::strstr(lower, known)) return true;
    return false;
}

const DeviceTable Device_GL = {
    .name = "gl",
    .Open = Open,
    .Close = Close,
    .Reset = Reset,
    .Lost = Lost,
    .Caps = Caps,
    .CreateTexture = CreateTexture,
    .FreeTexture = FreeTexture,
    .UpdateTexture = UpdateTexture,
    .ReadPixels = ReadPixels,
    .StretchRect = StretchRect,
    .SetTexture = SetTexture,
    .SetModulate = SetModulate,
    .SetTarget = SetTarget,
    .SetViewport = SetViewport,
    .SetMatrix = SetMatrix,
    .SetRenderState = SetRenderState,
    .SetSamplerState = SetSamplerState,
    .Clear = Clear,
    .CreateBuffer = CreateBuffer,
    .FreeBuffer = FreeBuffer,
    .LockBuffer = LockBuffer,
    .UnlockBuffer = UnlockBuffer,
    .Draw = Draw,
    .DrawUp = DrawUp,
    .BeginScene = BeginScene,
    .EndScene = EndScene,
    .Present = Present,
    .Counts = Counts,
};
