#pragma once

#include "Graphics/Export.h"

#include <QGLFormat>

#include "QtExtensions/QlirnX11.h"

class QGLContext;
class QGLWidget;
class QWidget;

/**
 * A port widget's own window-system OpenGL context. Qt does not make it: the visual, the context and what the context
 * really offers are settled here.
 */
class LIRN_3DGRAPHICS_EXPORT QlirnGLContext
{
public:
    /**
     * A context for @p widget that comes as near to @p format as the display allows, sharing display lists and textures
     * with @p shareWidget when one is given. The caller owns it. Without any matching visual the object has no native
     * context.
     */
    static QlirnGLContext* create(const QWidget* widget, const QGLFormat& format, const QGLWidget* shareWidget);

    virtual ~QlirnGLContext();
    /** The context that makeCurrent binds; null when there is none. */
    virtual GLXContext getActiveContext() const = 0;
    /** The widget's own context, or the active one when it has none of its own. */
    virtual GLXContext getOriginalContext() const = 0;
    /** Binds the shared resource context from now on (true) or the widget's own (false); true when that changed. */
    virtual bool useSharedContext(bool shared) = 0;
    virtual bool isSharedContext() const = 0;
    /** Binds the active context to the widget's window (glXMakeCurrent) unless it is bound or the widget hidden. */
    virtual void makeCurrent() const = 0;
    /** glXSwapBuffers; nothing for a hidden widget or while no context is current. */
    virtual void swapBuffers() const = 0;

    QlirnGLContext(const QlirnGLContext&) = delete;
    QlirnGLContext& operator=(const QlirnGLContext&) = delete;

    /** What the visual and context really provide. */
    const QGLFormat& format() const { return fFormat; }
    /** The visual chosen, null without one. XFree releases it once neither context nor window need it. */
    XVisualInfo* visual() const { return fVisual; }

    /** True if the active context is the bound one. */
    bool isCurrent() const;

    static void initializeGLextensions() {}

    /**
     * Raises @p format to the OpenGL version that the driver reports, when that is at least 3.3. The version is probed
     * with a throw-away context on a display connection of its own; when the display cannot be opened or the probe
     * fails, 3.3 is assumed. The context that was current before is current afterwards.
     */
    static void setBestGLVersion(QGLFormat& format);

    /** Removes the most dispensable option that @p format still has; false when none is left to remove. */
    static bool reduceQGLFormatRequirement(QGLFormat& format);

    /** The native context of a Qt context; null when there is none or it is not a GLX one. */
    static GLXContext nativeContext(const QGLContext* context);

protected:
    QlirnGLContext(const QWidget* widget, const QGLFormat& format);

    QGLFormat fFormat;
    QWidget* fWidget;                      ///< not owned
    GLXContext fActiveContext = nullptr;   ///< own or shared
    GLXContext fOriginalContext = nullptr; ///< owned
    Display* fDisplay;
    XVisualInfo* fVisual = nullptr;
};
