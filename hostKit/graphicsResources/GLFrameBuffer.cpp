#define GL_GLEXT_PROTOTYPES
#include "graphicsResources/GLFrameBuffer.h"

#include <GL/glx.h>

namespace {

/** The storage of a raster format; 0 for a format that stands for no buffer. */
GLenum storageOf(RasterFormat format)
{
    switch (format) {
    case kRasterRgb8:
        return GL_RGB8;
    case kRasterRgba8:
        return GL_RGBA8;
    case kRasterRgba16:
        return GL_RGBA16;
    case kRasterRgba32F:
        return GL_RGBA32F;
    case kRasterDepth16:
        return GL_DEPTH_COMPONENT16;
    case kRasterDepth24:
        return GL_DEPTH_COMPONENT24;
    case kRasterDepth32:
        return GL_DEPTH_COMPONENT32;
    case kRasterDepth32F:
        return GL_DEPTH_COMPONENT32F;
    case kRasterDepth24Stencil8:
    case kRasterStencil1:
    case kRasterStencil4:
    case kRasterStencil8:
        // Few drivers have stencil buffers that are not part of a depth buffer.
        return GL_DEPTH24_STENCIL8;
    case kRasterStencil16:
        return GL_STENCIL_INDEX16;
    default:
        return 0;
    }
}

bool isIn(RasterFormat format, RasterFormat first, RasterFormat last)
{
    return format >= first && format <= last;
}

GLint integer(GLenum name)
{
    GLint value = 0;
    glGetIntegerv(name, &value);
    return value;
}

GLuint makeRenderbuffer(GLenum storage, int width, int height)
{
    GLuint name = 0;
    glGenRenderbuffers(1, &name);
    glBindRenderbuffer(GL_RENDERBUFFER, name);
    glRenderbufferStorage(GL_RENDERBUFFER, storage, width, height);
    return name;
}

} // namespace

GLFrameBuffer::~GLFrameBuffer()
{
    release();
}

int GLFrameBuffer::createOffscreen(const nbBufferFormat& format, int width, int height)
{
    release();
    if (!glXGetCurrentContext())
        return kNoContext;
    const int most = integer(GL_MAX_RENDERBUFFER_SIZE);
    if (width < 1 || height < 1 || width > most || height > most)
        return kBadSize;
    const GLenum color = isIn(format.color(), kRasterRgb8, kRasterRgba32F) ? storageOf(format.color()) : 0;
    const GLenum depth = isIn(format.depth(), kRasterDepth16, kRasterDepth24Stencil8) ? storageOf(format.depth()) : 0;
    const GLenum stencil = isIn(format.stencil(), kRasterStencil1, kRasterStencil16) ? storageOf(format.stencil()) : 0;
    if ((!color && !depth && !stencil) || format.samples() != 1 || format.usage() != nbBufferFormat::kOffScreen)
        return kFormatNotOffered;

    const int boundBuffer = integer(GL_RENDERBUFFER_BINDING);
    const int boundFrame = integer(GL_FRAMEBUFFER_BINDING);
    fWidth = width;
    fHeight = height;
    if (color)
        fColorBuffer = makeRenderbuffer(color, width, height);
    if (stencil)
        fStencilBuffer = makeRenderbuffer(stencil, width, height);
    if (depth && stencil == GL_DEPTH24_STENCIL8)
        fDepthBuffer = fStencilBuffer;
    else if (depth)
        fDepthBuffer = makeRenderbuffer(depth, width, height);
    glBindRenderbuffer(GL_RENDERBUFFER, static_cast<GLuint>(boundBuffer));
    const bool made = makeCurrent();
    glBindFramebuffer(GL_FRAMEBUFFER, static_cast<GLuint>(boundFrame));
    if (made)
        return kOk;
    release();
    glGetError(); // of a buffer that there was no memory for
    return kFormatNotOffered;
}

bool GLFrameBuffer::makeCurrent()
{
    const void* context = glXGetCurrentContext();
    if (!context || fWidth == 0)
        return false;
    for (unsigned i = 0; i < fBindings.length(); ++i) {
        if (fBindings[i].fContext != context)
            continue;
        if (glIsFramebuffer(fBindings[i].fName)) {
            glBindFramebuffer(GL_FRAMEBUFFER, fBindings[i].fName);
            return true;
        }
        fBindings.remove(i); // of a context gone since, whose address another one has
        break;
    }
    for (const GLuint buffer : {fColorBuffer, fDepthBuffer, fStencilBuffer})
        if (buffer && !glIsRenderbuffer(buffer))
            return false;
    return attach();
}

bool GLFrameBuffer::attach()
{
    const auto before = static_cast<GLuint>(integer(GL_FRAMEBUFFER_BINDING));
    GLuint name = 0;
    glGenFramebuffers(1, &name);
    glBindFramebuffer(GL_FRAMEBUFFER, name);
    if (fColorBuffer) {
        glFramebufferRenderbuffer(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_RENDERBUFFER, fColorBuffer);
    } else {
        glDrawBuffer(GL_NONE);
        glReadBuffer(GL_NONE);
    }
    if (fDepthBuffer)
        glFramebufferRenderbuffer(GL_FRAMEBUFFER, GL_DEPTH_ATTACHMENT, GL_RENDERBUFFER, fDepthBuffer);
    if (fStencilBuffer)
        glFramebufferRenderbuffer(GL_FRAMEBUFFER, GL_STENCIL_ATTACHMENT, GL_RENDERBUFFER, fStencilBuffer);
    if (glCheckFramebufferStatus(GL_FRAMEBUFFER) != GL_FRAMEBUFFER_COMPLETE) {
        glBindFramebuffer(GL_FRAMEBUFFER, before);
        glDeleteFramebuffers(1, &name);
        return false;
    }
    fBindings.append({glXGetCurrentContext(), name});
    return true;
}

TsharedPixelMap GLFrameBuffer::readColorBuffer(int x, int y, int width, int height)
{
    if (!fColorBuffer || x < 0 || y < 0 || width < 1 || height < 1 || width > fWidth - x || height > fHeight - y ||
        !makeCurrent())
        return {};
    TsharedPixelMap block(width, height);
    if (block.isNull())
        return {};
    block.map()->setRgba(true);
    glPushClientAttrib(GL_CLIENT_PIXEL_STORE_BIT);
    glBindBuffer(GL_PIXEL_PACK_BUFFER, 0);
    glPixelStorei(GL_PACK_SWAP_BYTES, GL_FALSE);
    glPixelStorei(GL_PACK_ROW_LENGTH, 0);
    glPixelStorei(GL_PACK_SKIP_ROWS, 0);
    glPixelStorei(GL_PACK_SKIP_PIXELS, 0);
    glPixelStorei(GL_PACK_ALIGNMENT, 4);
    glReadPixels(x, y, width, height, GL_RGBA, GL_UNSIGNED_BYTE, block.map()->pixels());
    glPopClientAttrib();
    return block;
}

void GLFrameBuffer::release()
{
    const void* context = glXGetCurrentContext();
    for (const Tbinding& binding : fBindings)
        if (binding.fContext == context)
            glDeleteFramebuffers(1, &binding.fName);
    fBindings.clear();
    if (context) {
        const GLuint buffers[] = {fColorBuffer, fStencilBuffer, fDepthBuffer != fStencilBuffer ? fDepthBuffer : 0};
        glDeleteRenderbuffers(3, buffers);
    }
    fColorBuffer = fDepthBuffer = fStencilBuffer = 0;
    fWidth = fHeight = 0;
}
