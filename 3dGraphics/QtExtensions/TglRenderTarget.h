#pragma once

#include "Graphics/Export.h"
#include "foundation/TpixelMap.h"
#include "graphicsResources/GLFrameBuffer.h"
#include "graphicsResources/TrenderTarget.h"

#include <GL/gl.h>

#include <memory>

/**
 * A render target over the host's off-screen frame buffer. A class of its own says what is drawn (render):
 *
 * @code
 *     if (target.create(TrenderTarget::kColorRgba8, 0, TrenderTarget::kDepth24, TrenderTarget::kNoStencil, size)) {
 *         port.setCurrentContext();
 *         target.beginDraw();
 *         target.render();
 *         target.endDraw();
 *         target.draw(port, false);
 *     }
 * @endcode
 *
 * The buffers are made in the current context, or the resource context if there is none, and may be drawn into from every
 * context that shares with it. Viewport and matrices are those of the port drawn with.
 */
class LIRN_3DGRAPHICS_EXPORT TglRenderTarget : public TrenderTarget
{
public:
    TglRenderTarget() = default;
    ~TglRenderTarget() override;

    /** A format that is none of the named ones stands for no such buffer. The flag has no influence. */
    bool create(TcolorFormat color, unsigned char flag, TdepthFormat depth, TstencilFormat stencil,
                unsigned short* size) override;
    /**
     * For another size gives the target up (destroy), and makes one again of the formats and size that destroy has left:
     * false, and no target, unless a class of its own keeps them there.
     */
    bool resize(unsigned short* size) override;
    bool destroy() override;
    /**
     * Reads the whole of @p port, if it has more than one pixel each way: from its front buffer or, when other windows may
     * cover that, from its back buffer.
     */
    void readImage(T3dPort& port) override;
    bool clearImage() override;
    void cacheBufferReadInformation() override;
    void cacheBufferDrawInformation() override;
    bool beginDraw() override;
    /** The port's draw buffer and frame buffer (the window's) are selected again afterwards. */
    bool draw(T3dPort& port, bool front) override;

    /**
     * The form in the host's raster formats: makes the buffers of the frame buffer that there is anew, and gives it up when
     * they cannot be had. False without one.
     */
    bool create(RasterFormat color, unsigned flag, RasterFormat depth, RasterFormat stencil, unsigned short* size);
    /** Directs drawing to the window again, and to the buffer of it that was selected at beginDraw. */
    bool endDraw();

    unsigned short width() const { return fSize[0]; }
    unsigned short height() const { return fSize[1]; }
    unsigned short depth() const { return fSize[2]; }
    RasterFormat colorFormat() const { return fColorFormat; }
    RasterFormat depthFormat() const { return fDepthFormat; }
    RasterFormat stencilFormat() const { return fStencilFormat; }
    /** What readImage read; null before. */
    const TpixelMap* image() const { return fImage.get(); }
    GLFrameBuffer* frameBuffer() const { return fFrameBuffer.get(); }

private:
    std::uint8_t fFlags[4] = {};
    std::uint16_t fSize[3] = {};
    GLenum fReadBuffer = GL_BACK; ///< as cached
    GLenum fDrawBuffer = GL_BACK;
    std::unique_ptr<TpixelMap> fImage;
    RasterFormat fColorFormat = kRasterNoColor;
    RasterFormat fDepthFormat = kRasterNoDepth;
    RasterFormat fStencilFormat = kRasterNoStencil;
    std::unique_ptr<GLFrameBuffer> fFrameBuffer;
};
