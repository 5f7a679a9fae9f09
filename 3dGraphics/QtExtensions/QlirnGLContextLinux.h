#pragma once

#include "QtExtensions/QlirnGLContext.h"

class QlirnGLWidget;

/** The X11 context: GLX visual selection, context creation and binding. */
class LIRN_3DGRAPHICS_EXPORT QlirnGLContextLinux : public QlirnGLContext
{
public:
    /** The length of list that QGLFormatToAttribs may fill. */
    static constexpr int kMaxAttribs = 32;

    QlirnGLContextLinux(const QWidget* widget, const QGLFormat& format, const QGLWidget* shareWidget);
    ~QlirnGLContextLinux() override;

    GLXContext getActiveContext() const override;
    GLXContext getOriginalContext() const override;
    bool useSharedContext(bool shared) override;
    bool isSharedContext() const override;
    void makeCurrent() const override;
    void swapBuffers() const override;

    /** Writes the glXChooseVisual list that asks for @p format into @p attribs (kMaxAttribs entries), ended by 0. */
    static void QGLFormatToAttribs(const QGLFormat& format, int* attribs);
    /** @p value unless it is -1, the value of a size that nobody set, and @p fallback then. */
    static int withDefault(int value, int fallback);
    /** The format that @p visual and @p context provide (glXGetConfig, glXIsDirect). */
    static QGLFormat getQGLFormat(Display* display, XVisualInfo* visual, GLXContext context);

    /**
     * The visual for @p format, which loses one requirement after each search that fails (glXChooseVisual). Null when
     * nothing is left to lose. XFree releases it.
     */
    static XVisualInfo* chooseVisual(Display* display, int screen, QGLFormat& format);

private:
    GLXDrawable drawable() const;

    QlirnGLWidget* fGLWidget = nullptr; ///< the widget, when it is one with a window of its own for OpenGL
};
