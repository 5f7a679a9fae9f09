#pragma once

#include "foundation/Tarray.h"
#include "foundation/TsharedPixelMap.h"
#include "graphicsResources/nbBufferFormat.h"

/**
 * A frame buffer off the screen: an OpenGL frame-buffer object with renderbuffers for colour, depth and stencil
 * (GL_ARB_framebuffer_object). Every context that shares lists with the one it was made in can draw into it.
 *
 * Destroy it with one of these contexts current; without any its names live as long as the contexts.
 */
class GLFrameBuffer
{
public:
    /** What createOffscreen returns. */
    enum Tresult : int {
        kOk = 0,
        kNoContext = 1,       ///< none is current
        kBadSize = 2,         ///< empty, or beyond GL_MAX_RENDERBUFFER_SIZE
        kFormatNotOffered = 3 ///< no buffer at all, or no such combination
    };

    GLFrameBuffer() = default;
    ~GLFrameBuffer();
    GLFrameBuffer(const GLFrameBuffer&) = delete;
    GLFrameBuffer& operator=(const GLFrameBuffer&) = delete;

    /**
     * Makes the buffers, in place of those before. Stencil of less than 16 bits has 8, beside depth it takes 24 bits
     * of that. The frame buffer bound stays bound, and no OpenGL error is left.
     */
    int createOffscreen(const nbBufferFormat& format, int width, int height);
    /** Binds it in the current context (GL_FRAMEBUFFER); false without buffers, or in a context that does not share them. */
    bool makeCurrent();
    /**
     * Reads @p width by @p height pixels from (@p x, @p y), red first. Binds the frame buffer. Null without a colour
     * buffer, and for an area that is not inside it.
     */
    TsharedPixelMap readColorBuffer(int x, int y, int width, int height);

    int width() const { return fWidth; }
    int height() const { return fHeight; }

private:
    /** Frame-buffer objects, unlike renderbuffers, are not shared: each context has one of its own. */
    struct Tbinding
    {
        const void* fContext;
        unsigned fName;
    };

    bool attach();
    void release();

    Tarray<Tbinding> fBindings;
    unsigned fColorBuffer = 0; ///< renderbuffer names, 0 for none
    unsigned fDepthBuffer = 0;
    unsigned fStencilBuffer = 0; ///< may be the depth buffer, where both are in one
    int fWidth = 0;
    int fHeight = 0;
};
