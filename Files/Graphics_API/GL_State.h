#pragma once
// The insides of the GL device, for the units of Device_GL alone.
//
// All drawing goes into frame buffer objects, the back buffer too: their first row is
// the top row, like everywhere in the runtime, and the picture is turned once, on
// its way to the window. So the level of multisampling can change with a reset, and
// the back buffer keeps its alpha.

#include <epoxy/gl.h>

#include <cstdint>

#include "Files/Graphics/Batch.h"
#include "Files/Graphics_API/Device_Primitives.h"
#include "Platform/MemoryManager.h"

struct GLTexture {
    GLuint texture;  // 0 for a multisampled back buffer
    GLuint colour;   // its render buffer instead
    GLuint depth;    // render buffer, 0 without
    GLuint frame;    // frame buffer object, made when first needed
    int32_t width, height, samples;
    DeviceFormat format;
    bool target, hasDepth;
    GLTexture* next;
    GLTexture* previous;
};

struct GLBuffer {
    GLuint buffer;
    uint8_t* shadow;  // what the runtime writes to; sent when drawn
    uint32_t bytes;
    DeviceLock mode;
    bool dynamic, discard;
    GLBuffer* next;
    GLBuffer* previous;
};

struct GLProgram {
    GLuint program;
    GLint transform, textured, modulate, flatShade, alphaFunction, alphaReference;
};

struct GLState {
    DeviceParams params;
    DeviceCaps caps;
    bool es;
    char renderer[128];
    GLProgram program;
    GLuint vertices;  // vertex array object
    GLuint sampler;
    GLTexture* backBuffer;
    GLTexture* resolved;  // plain copy of a multisampled back buffer
    GLTexture* copy;      // of a texture that is drawn into itself
    GLTexture* textures;
    GLBuffer* buffers;
    GLBuffer* stream;  // vertices that come from memory
    uint32_t streamCursor;
    GLTexture* stage[kDeviceStages];
    GLTexture* target[kDeviceTargets];  // [0] is never null
    uint32_t render[STATE_COUNT];
    uint32_t samplerStates[kDeviceStages][SAMPLER_COUNT];
    float matrix[3][16];
    DeviceViewport viewport;
    bool modulate, statesDirty, samplerDirty;
    VxVector<uint32_t> pixels;        // conversions
    VxVector<VertexTextured> shapes;  // lines and points as triangles
};

extern GLState* g_GL;

// Program
bool GL_MakeProgram(char* error, int32_t errorSize);
void GL_FreeProgram();

// Textures and frame buffers
GLTexture* GL_NewTexture(int32_t width, int32_t height, DeviceFormat format, bool target,
                         bool depth, int32_t samples);
void GL_DeleteTexture(GLTexture* texture);
GLuint GL_FrameOf(GLTexture* texture);
// The texture itself, or a plain copy of a multisampled one.
GLTexture* GL_Resolve(GLTexture* texture);
// A copy of the texture's pixels, valid until the next call.
GLTexture* GL_CopyOf(GLTexture* texture);
bool GL_Upload(GLTexture* texture, const DeviceRect& area, const void* pixels, int32_t pitch);
bool GL_Read(GLTexture* texture, const DeviceRect& area, void* pixels, int32_t pitch);
bool GL_Stretch(GLTexture* source, const DeviceRect& from, GLTexture* dest, const DeviceRect& to,
                bool linear);

// Vertices and drawing
GLBuffer* GL_NewBuffer(uint32_t bytes, bool dynamic);
void GL_DeleteBuffer(GLBuffer* buffer);
void GL_Draw(DevicePrimitive primitive, int32_t stride, GLBuffer* buffer, uint32_t offset,
             int32_t count);
void GL_DrawUp(DevicePrimitive primitive, int32_t stride, const void* vertices, int32_t count);
// Draws a part of a plain texture over a part of the target, without any state.
void GL_DrawCopy(GLTexture* source, const DeviceRect& from, GLTexture* dest, const DeviceRect& to,
                 bool linear);
