// Vertices to the device: the mirror's states as GL's, buffers, and lines and points
// brought to the shapes of the soft device.
#include <cstring>

#include "Files/Graphics_API/GL_State.h"

namespace {

constexpr uint32_t kStreamBytes = 1U << 20;
constexpr double kNudge = 1.0 / 256;  // pixel

GLenum Factor(uint32_t value)
{
    switch (static_cast<DeviceBlend>(value)) {
        case DeviceBlend::Zero:
            return GL_ZERO;
        case DeviceBlend::One:
            return GL_ONE;
        case DeviceBlend::SrcColour:
            return GL_SRC_COLOR;
        case DeviceBlend::InvSrcColour:
            return GL_ONE_MINUS_SRC_COLOR;
        case DeviceBlend::SrcAlpha:
            return GL_SRC_ALPHA;
        case DeviceBlend::InvSrcAlpha:
            return GL_ONE_MINUS_SRC_ALPHA;
        case DeviceBlend::DestAlpha:
            return GL_DST_ALPHA;
        case DeviceBlend::InvDestAlpha:
            return GL_ONE_MINUS_DST_ALPHA;
        case DeviceBlend::DestColour:
            return GL_DST_COLOR;
        case DeviceBlend::InvDestColour:
            return GL_ONE_MINUS_DST_COLOR;
        case DeviceBlend::SrcAlphaSat:
            return GL_SRC_ALPHA_SATURATE;
    }
    return GL_ONE;
}

GLenum Comparison(uint32_t value)
{
    return value >= 1 && value <= 8 ? GL_NEVER + (value - 1) : static_cast<GLenum>(GL_ALWAYS);
}

GLenum StencilOperation(uint32_t value)
{
    switch (static_cast<DeviceStencil>(value)) {
        case DeviceStencil::Keep:
            return GL_KEEP;
        case DeviceStencil::Zero:
            return GL_ZERO;
        case DeviceStencil::Replace:
            return GL_REPLACE;
        case DeviceStencil::IncrementLimit:
            return GL_INCR;
        case DeviceStencil::DecrementLimit:
            return GL_DECR;
        case DeviceStencil::Invert:
            return GL_INVERT;
        case DeviceStencil::Increment:
            return GL_INCR_WRAP;
        case DeviceStencil::Decrement:
            return GL_DECR_WRAP;
    }
    return GL_KEEP;
}

void Enable(GLenum what, bool on)
{
    if (on)
        glEnable(what);
    else
        glDisable(what);
}

void ApplyDepth(const uint32_t* render)
{
    Enable(GL_DEPTH_TEST, render[STATE_Z_ENABLE] != 0);
    glDepthMask(render[STATE_Z_WRITE] != 0);
    glDepthFunc(Comparison(render[STATE_Z_FUNC]));
    Enable(GL_STENCIL_TEST, render[STATE_STENCIL_ENABLE] != 0);
    glStencilFunc(Comparison(render[STATE_STENCIL_FUNC]),
                  static_cast<GLint>(render[STATE_STENCIL_REF]), render[STATE_STENCIL_MASK]);
    glStencilOp(StencilOperation(render[STATE_STENCIL_FAIL]),
                StencilOperation(render[STATE_STENCIL_ZFAIL]),
                StencilOperation(render[STATE_STENCIL_PASS]));
    glStencilMask(render[STATE_STENCIL_WRITE_MASK]);
}

void ApplyStates()
{
    const uint32_t* render = g_GL->render;
    const GLProgram& program = g_GL->program;
    Enable(GL_BLEND, render[STATE_ALPHA_BLEND] != 0);
    glBlendFunc(Factor(render[STATE_SRC_BLEND]), Factor(render[STATE_DEST_BLEND]));
    const uint32_t mask = render[STATE_COLOUR_WRITE];
    glColorMask((mask & 1) != 0, (mask & 2) != 0, (mask & 4) != 0, (mask & 8) != 0);
    ApplyDepth(render);
    // With the first row on top, what turns clockwise on the screen is GL's other way.
    const DeviceCull cull = Device_CullOf(render[STATE_CULL_MODE]);
    Enable(GL_CULL_FACE, cull != DeviceCull::None);
    glCullFace(cull == DeviceCull::Clockwise ? GL_FRONT : GL_BACK);
    glUniform1i(program.modulate, g_GL->modulate);
    glUniform1i(program.flatShade,
                render[STATE_SHADE_MODE] == static_cast<uint32_t>(DeviceShade::Flat));
    glUniform1i(program.alphaFunction, render[STATE_ALPHA_TEST]
                                           ? static_cast<GLint>(render[STATE_ALPHA_FUNC])
                                           : static_cast<GLint>(DeviceCompare::Always));
    glUniform1i(program.alphaReference, static_cast<GLint>(render[STATE_ALPHA_REF] & 255));
    g_GL->statesDirty = false;
}

void SetSampler(bool linear, bool linearMin, bool clampU, bool clampV)
{
    const GLuint sampler = g_GL->sampler;
    glSamplerParameteri(sampler, GL_TEXTURE_MAG_FILTER, linear ? GL_LINEAR : GL_NEAREST);
    glSamplerParameteri(sampler, GL_TEXTURE_MIN_FILTER, linearMin ? GL_LINEAR : GL_NEAREST);
    glSamplerParameteri(sampler, GL_TEXTURE_WRAP_S, clampU ? GL_CLAMP_TO_EDGE : GL_REPEAT);
    glSamplerParameteri(sampler, GL_TEXTURE_WRAP_T, clampV ? GL_CLAMP_TO_EDGE : GL_REPEAT);
}

void ApplyTexture()
{
    GLTexture* texture = g_GL->stage[0];
    if (texture && texture == g_GL->target[0]) texture = GL_CopyOf(texture);
    glBindTexture(GL_TEXTURE_2D, texture ? texture->texture : 0);
    glUniform1i(g_GL->program.textured, texture != nullptr);
    const uint32_t* sampler = g_GL->samplerStates[0];
    SetSampler(sampler[SAMPLER_MAG] == 1, sampler[SAMPLER_MIN] == 1,
               sampler[SAMPLER_ADDRESS_U] != 0, sampler[SAMPLER_ADDRESS_V] != 0);
    g_GL->samplerDirty = false;
}

void SetTransform(const double pixels[4][4], const GLTexture* target)
{
    // Target pixels and depth to GL's range; the first row of a target is its top.
    const double scale[3] = {2.0 / target->width, 2.0 / target->height, 2.0};
    float out[16];
    for (int32_t column = 0; column < 4; column++) {
        const double w = pixels[3][column];
        for (int32_t row = 0; row < 3; row++)
            out[column * 4 + row] = static_cast<float>(pixels[row][column] * scale[row] - w);
        out[column * 4 + 3] = static_cast<float>(w);
    }
    glUniformMatrix4fv(g_GL->program.transform, 1, GL_FALSE, out);
}

DeviceTransform PresentTransform()
{
    return Device_BuildTransform(g_GL->matrix[0], g_GL->matrix[1], g_GL->matrix[2], g_GL->viewport);
}

// The viewport cuts, and is no part of the transform: that goes to the whole target.
bool PrepareTarget()
{
    GLTexture* target = g_GL->target[0];
    const DeviceViewport& view = g_GL->viewport;
    if (view.width <= 0 || view.height <= 0) return false;
    glBindFramebuffer(GL_FRAMEBUFFER, GL_FrameOf(target));
    glViewport(0, 0, target->width, target->height);
    glEnable(GL_SCISSOR_TEST);
    glScissor(view.x, view.y, view.width, view.height);
    return true;
}

void PointTo(uintptr_t offset, GLint size, GLenum type, GLuint index, int32_t stride)
{
    glEnableVertexAttribArray(index);
    glVertexAttribPointer(index, size, type, type == GL_UNSIGNED_BYTE, stride,
                          reinterpret_cast<const void*>(offset));
}

void SetLayout(int32_t stride, uintptr_t offset)
{
    const uintptr_t colour = stride == kStrideNormal ? 24 : 12;
    PointTo(offset, 3, GL_FLOAT, 0, stride);
    PointTo(offset + colour, 4, GL_UNSIGNED_BYTE, 1, stride);
    if (stride != kStridePlain) {
        PointTo(offset + colour + 4, 2, GL_FLOAT, 2, stride);
        return;
    }
    glDisableVertexAttribArray(2);
    glVertexAttrib2f(2, 0, 0);
}

// Sends a range from the shadow. After a discard, and above what was drawn, the
// driver need not wait for earlier draws.
void Send(GLBuffer* buffer, uint32_t offset, const void* data, uint32_t bytes)
{
    glBindBuffer(GL_ARRAY_BUFFER, buffer->buffer);
    if (buffer->discard) {
        glBufferData(GL_ARRAY_BUFFER, buffer->bytes, nullptr, GL_STREAM_DRAW);
        buffer->discard = false;
    }
    void* place = nullptr;
    if (buffer->mode != DeviceLock::Plain)
        place = glMapBufferRange(
            GL_ARRAY_BUFFER, offset, bytes,
            GL_MAP_WRITE_BIT | GL_MAP_INVALIDATE_RANGE_BIT | GL_MAP_UNSYNCHRONIZED_BIT);
    if (!place) {
        glBufferSubData(GL_ARRAY_BUFFER, offset, bytes, data);
        return;
    }
    std::memcpy(place, data, bytes);
    glUnmapBuffer(GL_ARRAY_BUFFER);
}

uint32_t Stream(const void* vertices, uint32_t bytes)
{
    GLBuffer*& stream = g_GL->stream;
    if (!stream || stream->bytes < bytes) {
        GL_DeleteBuffer(stream);
        uint32_t size = kStreamBytes;
        while (size < bytes) size *= 2;
        stream = GL_NewBuffer(size, true);
        stream->mode = DeviceLock::NoOverwrite;
        g_GL->streamCursor = 0;
    }
    if (bytes > stream->bytes - g_GL->streamCursor) {
        g_GL->streamCursor = 0;
        stream->discard = true;
    }
    const uint32_t offset = g_GL->streamCursor;
    Send(stream, offset, vertices, bytes);
    g_GL->streamCursor = offset + ((bytes + 3) & ~3U);
    if (g_GL->streamCursor > stream->bytes) g_GL->streamCursor = stream->bytes;
    return offset;
}

VertexTextured ToVertex(const ScreenVertex& corner)
{
    return {static_cast<float>(corner.x - kNudge), static_cast<float>(corner.y - kNudge),
            static_cast<float>(corner.z),          corner.colour,
            static_cast<float>(corner.u),          static_cast<float>(corner.v)};
}

bool IsShape(DevicePrimitive primitive)
{
    return primitive == DevicePrimitive::PointList || primitive == DevicePrimitive::LineList ||
           primitive == DevicePrimitive::LineStrip;
}

// Lines and points as thin quads in target pixels. Their edges run through pixel
// centres, where drivers differ, so they are moved by a hair to the side that the
// soft device counts as inside.
void MakeShapes(DevicePrimitive primitive, int32_t stride, const uint8_t* vertices, int32_t count)
{
    const DeviceTransform transform = PresentTransform();
    const int32_t shapes = Device_PrimitiveCount(primitive, count);
    g_GL->shapes.clear();
    const auto read = [&](int32_t index, ScreenVertex* out) {
        return Device_TransformVertex(transform, vertices + static_cast<int64_t>(index) * stride,
                                      stride, out);
    };
    for (int32_t n = 0; n < shapes; n++) {
        ScreenVertex from, to, corner[4];
        if (primitive == DevicePrimitive::PointList) {
            if (!read(n, &from)) continue;
            Device_PointCorners(from, corner);
        } else {
            int32_t index[3];
            Device_PrimitiveVertices(primitive, n, index);
            if (!read(index[0], &from) || !read(index[1], &to)) continue;
            if (!Device_LineCorners(from, to, corner)) continue;
        }
        for (const int32_t i : {0, 1, 2, 2, 3, 0}) g_GL->shapes.push_back(ToVertex(corner[i]));
    }
}

void DrawShapes()
{
    if (g_GL->shapes.empty()) return;
    constexpr double kPixels[4][4] = {{1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}};
    const auto bytes = static_cast<uint32_t>(g_GL->shapes.size() * sizeof(VertexTextured));
    const uint32_t offset = Stream(g_GL->shapes.data(), bytes);
    SetTransform(kPixels, g_GL->target[0]);
    SetLayout(kStrideTextured, offset);
    glDisable(GL_CULL_FACE);
    g_GL->statesDirty = true;
    glDrawArrays(GL_TRIANGLES, 0, static_cast<GLsizei>(g_GL->shapes.size()));
}

GLenum Mode(DevicePrimitive primitive)
{
    if (primitive == DevicePrimitive::TriangleStrip) return GL_TRIANGLE_STRIP;
    return primitive == DevicePrimitive::TriangleFan ? GL_TRIANGLE_FAN : GL_TRIANGLES;
}

void DrawTriangles(DevicePrimitive primitive, int32_t stride, uint32_t offset, int32_t count)
{
    SetTransform(PresentTransform().row, g_GL->target[0]);
    SetLayout(stride, offset);
    const int32_t whole = primitive == DevicePrimitive::TriangleList ? count - count % 3 : count;
    glDrawArrays(Mode(primitive), 0, whole);
}

bool Prepare(DevicePrimitive primitive, int32_t stride, int32_t count)
{
    if (!Device_KnownStride(stride) || Device_PrimitiveCount(primitive, count) <= 0) return false;
    if (g_GL->stage[0] && g_GL->stage[0] == g_GL->target[0]) g_GL->samplerDirty = true;
    if (g_GL->samplerDirty) ApplyTexture();
    if (!PrepareTarget()) return false;
    if (g_GL->statesDirty) ApplyStates();
    return true;
}

}  // namespace

GLBuffer* GL_NewBuffer(uint32_t bytes, bool dynamic)
{
    GLBuffer* made = VxNew<GLBuffer>(GLBuffer{});
    made->bytes = bytes;
    made->dynamic = dynamic;
    made->mode = DeviceLock::Plain;
    glGenBuffers(1, &made->buffer);
    glBindBuffer(GL_ARRAY_BUFFER, made->buffer);
    glBufferData(GL_ARRAY_BUFFER, bytes, nullptr, dynamic ? GL_STREAM_DRAW : GL_STATIC_DRAW);
    return made;
}

void GL_DeleteBuffer(GLBuffer* buffer)
{
    if (!buffer) return;
    glDeleteBuffers(1, &buffer->buffer);
    MemoryManager::Free(buffer->shadow);
    VxDelete(buffer);
}

void GL_Draw(DevicePrimitive primitive, int32_t stride, GLBuffer* buffer, uint32_t offset,
             int32_t count)
{
    if (!Prepare(primitive, stride, count)) return;
    if (IsShape(primitive)) {
        MakeShapes(primitive, stride, buffer->shadow + offset, count);
        DrawShapes();
        return;
    }
    Send(buffer, offset, buffer->shadow + offset, static_cast<uint32_t>(count * stride));
    DrawTriangles(primitive, stride, offset, count);
}

void GL_DrawUp(DevicePrimitive primitive, int32_t stride, const void* vertices, int32_t count)
{
    if (!Prepare(primitive, stride, count)) return;
    if (IsShape(primitive)) {
        MakeShapes(primitive, stride, static_cast<const uint8_t*>(vertices), count);
        DrawShapes();
        return;
    }
    const uint32_t offset = Stream(vertices, static_cast<uint32_t>(count * stride));
    DrawTriangles(primitive, stride, offset, count);
}

void GL_DrawCopy(GLTexture* source, const DeviceRect& from, GLTexture* dest, const DeviceRect& to,
                 bool linear)
{
    const GLProgram& program = g_GL->program;
    glBindFramebuffer(GL_FRAMEBUFFER, GL_FrameOf(dest));
    glViewport(0, 0, dest->width, dest->height);
    for (const GLenum what :
         {GL_SCISSOR_TEST, GL_BLEND, GL_DEPTH_TEST, GL_STENCIL_TEST, GL_CULL_FACE})
        glDisable(what);
    glColorMask(GL_TRUE, GL_TRUE, GL_TRUE, GL_TRUE);
    glUniform1i(program.textured, 1);
    glUniform1i(program.modulate, 0);
    glUniform1i(program.alphaFunction, static_cast<GLint>(DeviceCompare::Always));
    glBindTexture(GL_TEXTURE_2D, source->texture);
    SetSampler(linear, linear, true, true);
    constexpr double kPixels[4][4] = {{1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}};
    SetTransform(kPixels, dest);
    const auto part = [](int32_t at, int32_t size) {
        return static_cast<float>(at) / static_cast<float>(size);
    };
    const float left = part(from.left, source->width), right = part(from.right, source->width);
    const float top = part(from.top, source->height), bottom = part(from.bottom, source->height);
    const float x0 = static_cast<float>(to.left), x1 = static_cast<float>(to.right);
    const float y0 = static_cast<float>(to.top), y1 = static_cast<float>(to.bottom);
    const VertexTextured strip[4] = {{x0, y0, 0, 0, left, top},
                                     {x1, y0, 0, 0, right, top},
                                     {x0, y1, 0, 0, left, bottom},
                                     {x1, y1, 0, 0, right, bottom}};
    SetLayout(kStrideTextured, Stream(strip, sizeof(strip)));
    glDrawArrays(GL_TRIANGLE_STRIP, 0, 4);
    g_GL->statesDirty = g_GL->samplerDirty = true;
}
