#pragma once

#include "Graphics/Export.h"
#include "QtExtensions/Qlirn3dDeviceWidget.h"
#include "foundation/Tarray.h"

#include <QPixmap>

#include <memory>

class QGLFormat;
class QlirnGLContext;
class QlirnGLPixmapContext;
class QlirnGLWidget;
class QlirnNativeWindow;
class Tevent;

using QlirnGLWidgetPtrArray = Tarray<QlirnGLWidget*>;

/**
 * The widget that a port draws in. It owns the port's OpenGL context, and turns Qt's paint, resize and visibility
 * callbacks and its mouse, wheel, tablet and crossing events into calls on the port.
 *
 * Sizes and positions that reach the port are device pixels; positions count from the upper left corner.
 *
 * A widget that dies before its port takes the port with it.
 */
class LIRN_3DGRAPHICS_EXPORT QlirnGLWidget : public Qlirn3dDeviceWidget
{
    Q_OBJECT

public:
    QlirnGLWidget(T3dPort* port, const QGLFormat& format, QWidget* parent, const QGLWidget* shareWidget,
                  Qt::WindowFlags flags);
    ~QlirnGLWidget() override;

    bool isValid() const { return true; }
    /** Binds the context; the first binding runs initializeGL. Nothing while a pixmap is being rendered. */
    virtual void makeCurrent();
    /** Nothing while a pixmap is being rendered. */
    void swapBuffers();
    /**
     * Draws with the shared resource context (true) or the widget's own (false), and sends the port's state to it. GLX
     * binds a context only to windows of its own visual: a port that is to draw with the resource context needs the
     * alpha buffer, stencil buffer and double buffering that one has.
     */
    void useSharedContext(bool shared);
    bool isSharedContext() const;

    QlirnGLContext* glContext() const { return fGLContext; }
    /**
     * Adopts @p context and gives the widget an X window with the context's visual and a colormap for it. The context
     * before is deleted when @p deleteOldContext is set. @p shareContext is not needed: a context shares from birth.
     */
    void setContext(const QlirnGLContext* context, const QlirnGLContext* shareContext, bool deleteOldContext);
    /** The X window drawn into; 0 without a visual. */
    unsigned long glWindow() const;
    /** To be called when a context was bound to the window. */
    void glWindowBound();

    void initializeGL() override;
    void paintGL() override;
    /** @p w and @p h in device pixels. */
    void resizeGL(int w, int h) override;
    void resizeViewPort(int w, int h);
    void renderScene();

    /** True while renderPixmap draws: the port then draws in another context than the widget's. */
    bool isRenderingPixmap() const { return fOffscreen; }
    /** The size drawn at, in device pixels. */
    QSize deviceSize() const;

    /**
     * Draws the port, at its own size, into a pixmap of @p w by @p h pixels whose lower left corner is the port's.
     * Null for an empty size, or where no off-screen context can be had.
     */
    QPixmap renderPixmap(int w, int h);

    /** Deletes every widget, the youngest first; their ports live on without one. */
    static void clearWidgetList();
    static const QlirnGLWidgetPtrArray& widgetList() { return fsWidgetList; }

public Q_SLOTS:
    /** Tells the port when @p w, which has moved, is the window around this widget. */
    void parentWindowMoveNotify(QWidget* w);

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void enterEvent(QEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void tabletEvent(QTabletEvent* event) override;
    QPaintEngine* paintEngine() const override { return nullptr; }

private:
    Tevent makeEvent(unsigned type, const QMouseEvent& event, bool withGlobalPosition) const;
    void traceEvent(const char* what, const Tevent& event) const;

    static QlirnGLWidgetPtrArray& fsWidgetList; ///< in order of creation; never destroyed

    bool fTabletMoved = false; ///< a stylus move was seen since the last mouse move
    bool fInitialized = false;
    bool fOffscreen = false; ///< drawing goes to a pixmap: the widget's own context is neither bound nor swapped
    QlirnGLContext* fGLContext = nullptr; ///< owned
    std::unique_ptr<QlirnNativeWindow> fNativeWindow;
    QlirnGLPixmapContext* fPixmapTarget = nullptr; ///< what stands for the context while fOffscreen is set
    bool fResendPending = false;                   ///< the context bound next does not have the port's recorded state
};
