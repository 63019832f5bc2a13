// Textures, render targets, and the ways of pixels in, out and across.
#include <cstring>

#include "Files/Graphics_API/GL_State.h"

namespace {

bool NeedsSwap()
{
    return g_GL->es;
}
GLenum PixelFormat()
{
    return g_GL->es ? GL_RGBA : GL_BGRA;
}

void SwapRedBlue(uint32_t* pixels, size_t count)
{
    for (size_t i = 0; i < count; i++)
        pixels[i] =
            (pixels[i] & 0xFF00FF00U) | ((pixels[i] >> 16) & 0xFF) | ((pixels[i] & 0xFF) << 16);
}

GLuint NewDepth(int32_t width, int32_t height, int32_t samples)
{
    GLuint depth = 0;
    glGenRenderbuffers(1, &depth);
    glBindRenderbuffer(GL_RENDERBUFFER, depth);
    glRenderbufferStorageMultisample(GL_RENDERBUFFER, samples, GL_DEPTH24_STENCIL8, width, height);
    return depth;
}

void NewStorage(GLTexture* made)
{
    if (made->samples > 0) {
        glGenRenderbuffers(1, &made->colour);
        glBindRenderbuffer(GL_RENDERBUFFER, made->colour);
        glRenderbufferStorageMultisample(GL_RENDERBUFFER, made->samples, GL_RGBA8, made->width,
                                         made->height);
        return;
    }
    glGenTextures(1, &made->texture);
    glBindTexture(GL_TEXTURE_2D, made->texture);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAX_LEVEL, 0);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR);
    const GLenum storage = made->format == DeviceFormat::Dxt5
                               ? static_cast<GLenum>(GL_COMPRESSED_RGBA_S3TC_DXT5_EXT)
                               : static_cast<GLenum>(GL_RGBA8);
    glTexImage2D(GL_TEXTURE_2D, 0, static_cast<GLint>(storage), made->width, made->height, 0,
                 GL_RGBA, GL_UNSIGNED_BYTE, nullptr);
}

void ForgetErrors()
{
    while (glGetError() != GL_NO_ERROR) {
    }
}

bool Inside(const GLTexture* texture, const DeviceRect& area)
{
    return area.left >= 0 && area.top >= 0 && area.left <= area.right && area.top <= area.bottom &&
           area.right <= texture->width && area.bottom <= texture->height;
}

// The rows of an upload as 32-bit pixels in the order that GL takes, tightly packed.
const uint32_t* Converted(const GLTexture* texture, const DeviceRect& area, const void* pixels,
                          int32_t pitch)
{
    const size_t columns = static_cast<size_t>(area.right - area.left);
    const size_t rows = static_cast<size_t>(area.bottom - area.top);
    VxVector<uint32_t>& out = g_GL->pixels;
    if (out.size() < columns * rows) out.resize(columns * rows);
    for (size_t y = 0; y < rows; y++) {
        const uint8_t* row = static_cast<const uint8_t*>(pixels) + y * static_cast<size_t>(pitch);
        uint32_t* to = out.data() + y * columns;
        if (texture->format != DeviceFormat::Argb4444) {
            std::memcpy(to, row, columns * 4);
            continue;
        }
        for (size_t x = 0; x < columns; x++) {
            uint16_t word;
            std::memcpy(&word, row + x * 2, sizeof(word));
            to[x] = Device_From4444(word);
        }
    }
    if (NeedsSwap()) SwapRedBlue(out.data(), columns * rows);
    return out.data();
}

GLTexture* Scratch(GLTexture** slot, const GLTexture* like)
{
    if (*slot && (*slot)->width == like->width && (*slot)->height == like->height) return *slot;
    GL_DeleteTexture(*slot);
    *slot = GL_NewTexture(like->width, like->height, DeviceFormat::Argb8888, true, false, 0);
    return *slot;
}

void Blit(GLTexture* source, const DeviceRect& from, GLTexture* dest, const DeviceRect& to,
          bool linear)
{
    glDisable(GL_SCISSOR_TEST);
    glBindFramebuffer(GL_READ_FRAMEBUFFER, GL_FrameOf(source));
    glBindFramebuffer(GL_DRAW_FRAMEBUFFER, GL_FrameOf(dest));
    glBlitFramebuffer(from.left, from.top, from.right, from.bottom, to.left, to.top, to.right,
                      to.bottom, GL_COLOR_BUFFER_BIT,
                      static_cast<GLenum>(linear ? GL_LINEAR : GL_NEAREST));
}

}  // namespace

GLTexture* GL_NewTexture(int32_t width, int32_t height, DeviceFormat format, bool target,
                         bool depth, int32_t samples)
{
    ForgetErrors();
    GLTexture* made = VxNew<GLTexture>(GLTexture{});
    made->width = width;
    made->height = height;
    made->samples = samples;
    made->format = format;
    made->target = target;
    made->hasDepth = target && depth;
    NewStorage(made);
    if (made->hasDepth) made->depth = NewDepth(width, height, samples);
    g_GL->samplerDirty = true;  // the binding of the stage was used
    bool whole = glGetError() == GL_NO_ERROR;
    if (whole && target) {
        glBindFramebuffer(GL_FRAMEBUFFER, GL_FrameOf(made));
        whole = glCheckFramebufferStatus(GL_FRAMEBUFFER) == GL_FRAMEBUFFER_COMPLETE;
    }
    if (whole) return made;
    GL_DeleteTexture(made);
    return nullptr;
}

void GL_DeleteTexture(GLTexture* texture)
{
    if (!texture) return;
    if (texture->frame) glDeleteFramebuffers(1, &texture->frame);
    if (texture->depth) glDeleteRenderbuffers(1, &texture->depth);
    if (texture->colour) glDeleteRenderbuffers(1, &texture->colour);
    if (texture->texture) glDeleteTextures(1, &texture->texture);
    VxDelete(texture);
}

GLuint GL_FrameOf(GLTexture* texture)
{
    if (texture->frame) return texture->frame;
    glGenFramebuffers(1, &texture->frame);
    glBindFramebuffer(GL_FRAMEBUFFER, texture->frame);
    if (texture->texture)
        glFramebufferTexture2D(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_TEXTURE_2D,
                               texture->texture, 0);
    else
        glFramebufferRenderbuffer(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_RENDERBUFFER,
                                  texture->colour);
    if (texture->depth)
        glFramebufferRenderbuffer(GL_FRAMEBUFFER, GL_DEPTH_STENCIL_ATTACHMENT, GL_RENDERBUFFER,
                                  texture->depth);
    return texture->frame;
}

GLTexture* GL_Resolve(GLTexture* texture)
{
    if (texture->samples == 0) return texture;
    GLTexture* plain = Scratch(&g_GL->resolved, texture);
    const DeviceRect whole = {0, 0, texture->width, texture->height};
    if (plain) Blit(texture, whole, plain, whole, false);
    return plain;
}

GLTexture* GL_CopyOf(GLTexture* texture)
{
    GLTexture* copy = Scratch(&g_GL->copy, texture);
    const DeviceRect whole = {0, 0, texture->width, texture->height};
    if (copy) Blit(texture, whole, copy, whole, false);
    return copy;
}

bool GL_Upload(GLTexture* texture, const DeviceRect& area, const void* pixels, int32_t pitch)
{
    if (!pixels || !texture->texture || !Inside(texture, area)) return false;
    const int32_t width = area.right - area.left, height = area.bottom - area.top;
    if (width == 0 || height == 0) return true;
    const bool converts =
        NeedsSwap() || texture->format == DeviceFormat::Argb4444 || pitch % 4 != 0;
    const void* data = converts ? Converted(texture, area, pixels, pitch) : pixels;
    ForgetErrors();
    glBindTexture(GL_TEXTURE_2D, texture->texture);
    g_GL->samplerDirty = true;
    glPixelStorei(GL_UNPACK_ROW_LENGTH, converts ? 0 : pitch / 4);
    const bool whole = width == texture->width && height == texture->height;
    if (texture->format == DeviceFormat::Dxt5 && whole)
        glTexImage2D(GL_TEXTURE_2D, 0, GL_COMPRESSED_RGBA_S3TC_DXT5_EXT, width, height, 0,
                     PixelFormat(), GL_UNSIGNED_BYTE, data);
    else
        glTexSubImage2D(GL_TEXTURE_2D, 0, area.left, area.top, width, height, PixelFormat(),
                        GL_UNSIGNED_BYTE, data);
    glPixelStorei(GL_UNPACK_ROW_LENGTH, 0);
    return glGetError() == GL_NO_ERROR;
}

bool GL_Read(GLTexture* texture, const DeviceRect& area, void* pixels, int32_t pitch)
{
    if (!pixels || pitch % 4 != 0 || !Inside(texture, area)) return false;
    const int32_t width = area.right - area.left, height = area.bottom - area.top;
    if (width == 0 || height == 0) return true;
    GLTexture* plain = GL_Resolve(texture);
    if (!plain) return false;
    ForgetErrors();
    glBindFramebuffer(GL_READ_FRAMEBUFFER, GL_FrameOf(plain));
    glPixelStorei(GL_PACK_ROW_LENGTH, pitch / 4);
    glReadPixels(area.left, area.top, width, height, PixelFormat(), GL_UNSIGNED_BYTE, pixels);
    glPixelStorei(GL_PACK_ROW_LENGTH, 0);
    for (int32_t y = 0; NeedsSwap() && y < height; y++)
        SwapRedBlue(static_cast<uint32_t*>(pixels) + static_cast<int64_t>(y) * (pitch / 4),
                    static_cast<size_t>(width));
    return glGetError() == GL_NO_ERROR;
}

bool GL_Stretch(GLTexture* source, const DeviceRect& from, GLTexture* dest, const DeviceRect& to,
                bool linear)
{
    if (!Inside(source, from) || !Inside(dest, to)) return false;
    GLTexture* plain = source == dest ? GL_CopyOf(GL_Resolve(source)) : GL_Resolve(source);
    if (!plain) return false;
    // A blit can not write several samples.
    if (dest->samples > 0)
        GL_DrawCopy(plain, from, dest, to, linear);
    else
        Blit(plain, from, dest, to, linear);
    return true;
}
