#pragma once

#include <QGLFormat>
#include <QPixmap>

#include "QtExtensions/QlirnX11.h"

/**
 * A single-buffered off-screen GLX context for rendering a pixmap. A QGLContext on a QPixmap is never valid in Qt 5, so
 * this one draws into a pbuffer, whose pixels are then read back. It shares display lists and textures with the
 * resource context: what was compiled for a window can be called here and the other way round.
 */
class QlirnGLPixmapContext
{
public:
    /** A target of @p width by @p height pixels (at least 1) with the buffers of @p format, as far as there are any. */
    QlirnGLPixmapContext(int width, int height, const QGLFormat& format);
    ~QlirnGLPixmapContext();

    QlirnGLPixmapContext(const QlirnGLPixmapContext&) = delete;
    QlirnGLPixmapContext& operator=(const QlirnGLPixmapContext&) = delete;

    bool isValid() const { return fContext != nullptr; }
    bool makeCurrent();
    /** What has been drawn. The context must be current. */
    QPixmap read() const;

private:
    int fWidth;
    int fHeight;
    Display* fDisplay;
    GLXPbuffer fPbuffer = QlirnX11::kNone;
    GLXContext fContext = nullptr;
};
