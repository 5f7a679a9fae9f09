#pragma once

#include "Graphics/Export.h"

#include <QGLFormat>

class QGLFramebufferObject;
class QGLPixelBuffer;
class QGLWidget;
class QSize;

/**
 * Somewhere off the screen for a port to draw: a Qt frame-buffer object or a Qt pixel buffer, never both. While it is
 * in use the port does not switch contexts.
 */
class LIRN_3DGRAPHICS_EXPORT QlirnGLRenderTarget
{
public:
    explicit QlirnGLRenderTarget(bool debug = false);
    ~QlirnGLRenderTarget();

    QlirnGLRenderTarget(const QlirnGLRenderTarget&) = delete;
    QlirnGLRenderTarget& operator=(const QlirnGLRenderTarget&) = delete;

    /**
     * Provides a target of @p size: a pixel buffer of @p format sharing with @p shareWidget, or a frame-buffer object
     * in the current context when @p format is null. One that fits already is kept. True when there is one afterwards.
     */
    bool create(const QSize& size, const QGLFormat* format, QGLWidget* shareWidget);

    /** Exactly one of the two exists and is valid. */
    bool isValid() const;

    int width() const { return fWidth; }
    int height() const { return fHeight; }
    QGLFramebufferObject* framebufferObject() const { return fFramebufferObject; }
    QGLPixelBuffer* pixelBuffer() const { return fPixelBuffer; }

    /** Set by the owner while drawing goes to the target. */
    bool isInUse() const { return fInUse; }
    void setInUse(bool inUse) { fInUse = inUse; }

private:
    void release();

    int fWidth = -1;
    int fHeight = -1;
    QGLFormat fFormat; ///< of the pixel buffer
    QGLFramebufferObject* fFramebufferObject = nullptr;
    QGLPixelBuffer* fPixelBuffer = nullptr;
    bool fInUse = false;
    bool fDebug;
};
