#define GL_GLEXT_PROTOTYPES
#include "QtExtensions/TglRenderTarget.h"

#include "Graphics/3dPort/T3dPort.h"
#include "QtExtensions/Q3dPort.h"

#include <algorithm>

namespace {

RasterFormat rasterFormat(TrenderTarget::TcolorFormat format)
{
    switch (format) {
    case TrenderTarget::kColorRgb8:
    case TrenderTarget::kColorRgba8:
    case TrenderTarget::kColorRgba16:
    case TrenderTarget::kColorRgba32F:
        return static_cast<RasterFormat>(format);
    default:
        return kRasterNoColor;
    }
}

RasterFormat rasterFormat(TrenderTarget::TdepthFormat format)
{
    return format == TrenderTarget::kDepth32   ? kRasterDepth32
           : format == TrenderTarget::kDepth24 ? kRasterDepth24
                                               : kRasterNoDepth;
}

RasterFormat rasterFormat(TrenderTarget::TstencilFormat format)
{
    return format == TrenderTarget::kStencil8 ? kRasterStencil8 : kRasterNoStencil;
}

GLint integer(GLenum name)
{
    GLint value = 0;
    glGetIntegerv(name, &value);
    return value;
}

/** What @p port shows in @p area. The port knows of drivers whose front buffer is not that. */
bool snapShot(T3dPort& port, const TportRect& area, TpixelMap& map)
{
    const TportRect before = port.snapShotRect();
    port.setSnapShotRect(area);
    const bool read = port.snapShot(map);
    port.setSnapShotRect(before);
    return read;
}

} // namespace

TglRenderTarget::~TglRenderTarget()
{
    TglRenderTarget::destroy();
    TglRenderTarget::clearImage();
}

bool TglRenderTarget::create(TcolorFormat color, unsigned char flag, TdepthFormat depth, TstencilFormat stencil,
                             unsigned short* size)
{
    if (!size || size[0] == 0 || size[1] == 0)
        return false;
    if (fFrameBuffer)
        destroy();
    fFrameBuffer = std::make_unique<GLFrameBuffer>();
    create(rasterFormat(color), flag, rasterFormat(depth), rasterFormat(stencil), size);
    return fFrameBuffer != nullptr;
}

bool TglRenderTarget::create(RasterFormat color, unsigned, RasterFormat depth, RasterFormat stencil,
                             unsigned short* size)
{
    if (!fFrameBuffer || !size)
        return false;
    const nbBufferFormat format(color, depth, stencil, 1, nbBufferFormat::kOffScreen);
    Q3dPort::ensureContext();
    if (fFrameBuffer->createOffscreen(format, size[0], size[1]) != GLFrameBuffer::kOk) {
        destroy();
        return false;
    }
    fColorFormat = color;
    fDepthFormat = depth;
    fStencilFormat = stencil;
    if (size != fSize)
        std::copy(size, size + 3, fSize);
    return true;
}

bool TglRenderTarget::resize(unsigned short* size)
{
    if (!fFrameBuffer || !size)
        return false;
    if (std::equal(size, size + 3, fSize))
        return true;
    destroy();
    // With the fields as a class's destroy leaves them: one that keeps them can be resized.
    if (!create(fColorFormat, 0, fDepthFormat, fStencilFormat, fSize))
        return false;
    std::copy(size, size + 3, fSize);
    return true;
}

bool TglRenderTarget::destroy()
{
    if (fFrameBuffer)
        Q3dPort::ensureContext();
    fFrameBuffer.reset();
    std::fill(std::begin(fSize), std::end(fSize), std::uint16_t(0));
    fColorFormat = kRasterNoColor;
    fDepthFormat = kRasterNoDepth;
    fStencilFormat = kRasterNoStencil;
    return true;
}

bool TglRenderTarget::clearImage()
{
    fImage.reset();
    return true;
}

void TglRenderTarget::cacheBufferReadInformation()
{
    fReadBuffer = static_cast<GLenum>(integer(GL_READ_BUFFER));
}

void TglRenderTarget::cacheBufferDrawInformation()
{
    fDrawBuffer = static_cast<GLenum>(integer(GL_DRAW_BUFFER));
}

bool TglRenderTarget::beginDraw()
{
    if (!fFrameBuffer)
        return false;
    cacheBufferDrawInformation();
    return fFrameBuffer->makeCurrent();
}

bool TglRenderTarget::endDraw()
{
    if (!fFrameBuffer)
        return false;
    glBindFramebuffer(GL_FRAMEBUFFER, 0);
    // Begun within another frame buffer's drawing, it has cached what a window has not.
    if (fDrawBuffer < GL_COLOR_ATTACHMENT0 || fDrawBuffer > GL_COLOR_ATTACHMENT15)
        glDrawBuffer(fDrawBuffer);
    return true;
}

bool TglRenderTarget::draw(T3dPort& port, bool front)
{
    if (!fFrameBuffer)
        return false;
    port.setCurrentContext();
    const TsharedPixelMap block =
        fFrameBuffer->makeCurrent() ? fFrameBuffer->readColorBuffer(0, 0, fSize[0], fSize[1]) : TsharedPixelMap();
    glBindFramebuffer(GL_FRAMEBUFFER, 0);
    if (block.isNull())
        return false;
    TpixelMap map;
    if (!map.wrap(block.map()->pixels(), fSize[0], fSize[1]))
        return false;
    map.setRgba(true);
    const auto before = static_cast<GLenum>(integer(GL_DRAW_BUFFER));
    glDrawBuffer(front || !port.isDoubleBuffered() ? GL_FRONT : GL_BACK);
    port.pushOrtho2D();
    port.writePixelMap(map, 0, 0);
    port.popOrtho2D();
    glDrawBuffer(before);
    return true;
}

void TglRenderTarget::readImage(T3dPort& port)
{
    const TportRect& area = port.portRect();
    const int width = area.right - area.left;
    const int height = area.top - area.bottom;
    if (width <= 1 || height <= 1)
        return;
    if (!fImage || fImage->width() != width || fImage->height() != height) {
        fImage = std::make_unique<TpixelMap>();
        if (!fImage->setSize(width, height)) {
            fImage.reset();
            return;
        }
    }
    port.setCurrentContext();
    const auto bound = static_cast<GLuint>(integer(GL_FRAMEBUFFER_BINDING));
    if (bound != 0)
        glBindFramebuffer(GL_FRAMEBUFFER, 0);
    glPushAttrib(GL_PIXEL_MODE_BIT);
    const bool mayBeCovered = port.isFullyObscured() || port.isPartiallyObscured();
    const bool fromBack = mayBeCovered && port.isDoubleBuffered();
    glReadBuffer(fromBack ? GL_BACK : GL_FRONT);
    glPixelZoom(1, 1);
    glFinish();
    if (fromBack || !snapShot(port, area, *fImage))
        port.pixelMapGLRead(*fImage, area.left, area.bottom);
    glPopAttrib();
    if (bound != 0)
        glBindFramebuffer(GL_FRAMEBUFFER, bound);
}
