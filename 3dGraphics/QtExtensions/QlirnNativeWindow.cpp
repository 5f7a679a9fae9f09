#include <QAbstractNativeEventFilter>
#include <QCoreApplication>
#include <QHash>
#include <QPlatformSurfaceEvent>
#include <QWidget>
#include <QWindow>
#include <QX11Info>

// After Qt's headers and before QlirnX11.h, which takes its macros away.
#include <X11/Xlib.h>
#include <X11/extensions/shape.h>

#include "QtExtensions/QlirnNativeWindow.h"

#include "Graphics/3dPort/T3dPort.h"

#include <cstdlib>
#include <xcb/xcb.h>

namespace {

/**
 * Repaints a widget whose GL window was uncovered: the server exposes the child window then, and never the widget's
 * window that lies wholly behind it.
 */
class ExposeFilter : public QAbstractNativeEventFilter
{
public:
    static ExposeFilter& instance()
    {
        static ExposeFilter filter;
        return filter;
    }

    void add(QlirnNativeWindow* window)
    {
        // Installed again each time, because a filter goes with the application object; Qt keeps one entry.
        if (QCoreApplication* app = QCoreApplication::instance())
            app->installNativeEventFilter(this);
        fWindows.insert(window->id(), window);
    }

    void remove(Window window) { fWindows.remove(window); }

    bool nativeEventFilter(const QByteArray& type, void* message, long*) override
    {
        if (type != "xcb_generic_event_t")
            return false;
        const auto* event = static_cast<const xcb_generic_event_t*>(message);
        if ((event->response_type & 0x7f) != XCB_EXPOSE)
            return false;
        const auto* expose = reinterpret_cast<const xcb_expose_event_t*>(event);
        QlirnNativeWindow* window = expose->count == 0 ? fWindows.value(expose->window) : nullptr;
        if (window)
            window->exposed(event->full_sequence);
        return false;
    }

private:
    QHash<Window, QlirnNativeWindow*> fWindows;
};

} // namespace

/** Hears of the end of the widget's window while that and what lies in it are still there. */
class QlirnNativeWindow::ParentWatch : public QObject
{
public:
    explicit ParentWatch(QlirnNativeWindow* window) : fWindow(window) {}

    bool eventFilter(QObject*, QEvent* event) override
    {
        if (event->type() == QEvent::PlatformSurface &&
            static_cast<QPlatformSurfaceEvent*>(event)->surfaceEventType() ==
                QPlatformSurfaceEvent::SurfaceAboutToBeDestroyed)
            fWindow->destroy();
        return false;
    }

private:
    QlirnNativeWindow* fWindow;
};

QlirnNativeWindow::QlirnNativeWindow(QWidget* widget, const XVisualInfo* visual)
    : fWidget(widget), fDisplay(QX11Info::display()), fVisual(visual ? visual->visual : nullptr),
      fDepth(visual ? visual->depth : 0)
{
    if (!fDisplay || !visual || !fVisual)
        return;
    const QWidget* parent = widget->parentWidget();
    const Window above =
        parent && parent->internalWinId() ? parent->internalWinId() : RootWindow(fDisplay, visual->screen);
    fColormap = XCreateColormap(fDisplay, above, fVisual, AllocNone);
    create();
}

QlirnNativeWindow::~QlirnNativeWindow()
{
    fParentWatch.reset();
    destroy();
    if (fColormap)
        XFreeColormap(fDisplay, fColormap);
}

void QlirnNativeWindow::create()
{
    fParent = fWidget->winId();
    fSize = windowSize();
    XSetWindowAttributes attributes{};
    attributes.colormap = fColormap;
    attributes.border_pixel = 0;
    // No background: the server would paint it on every resize before the port draws, which shows as flicker.
    attributes.background_pixmap = QlirnX11::kNone;
    attributes.bit_gravity = SouthWestGravity;
    attributes.event_mask = ExposureMask;
    fWindow = XCreateWindow(fDisplay, fParent, 0, 0, unsigned(fSize.width()), unsigned(fSize.height()), 0, fDepth,
                            InputOutput, fVisual,
                            CWColormap | CWBorderPixel | CWBackPixmap | CWBitGravity | CWEventMask, &attributes);
    // The pointer goes through to the widget's window: for one that enters a child Qt takes no notice.
    XShapeCombineRectangles(fDisplay, fWindow, ShapeInput, 0, 0, nullptr, 0, ShapeSet, YXBanded);
    XMapWindow(fDisplay, fWindow);
    ExposeFilter::instance().add(this);

    if (!fParentWatch)
        fParentWatch = std::make_unique<ParentWatch>(this);
    if (QWindow* handle = fWidget->windowHandle())
        handle->installEventFilter(fParentWatch.get());
}

void QlirnNativeWindow::destroy()
{
    if (!fWindow)
        return;
    retire();
    if (isAlive())
        XDestroyWindow(fDisplay, fWindow);
    fWindow = QlirnX11::kNone;
}

void QlirnNativeWindow::retire()
{
    if (glXGetCurrentDrawable() == fWindow) {
        glXMakeCurrent(fDisplay, QlirnX11::kNone, nullptr);
        T3dPort::nativeBindingMoved();
    }
    ExposeFilter::instance().remove(fWindow);
}

void QlirnNativeWindow::replace()
{
    const Window old = fWindow;
    retire();
    create();
    XDestroyWindow(fDisplay, old);
    XSync(fDisplay, 0);
}

bool QlirnNativeWindow::isAlive() const
{
    // Asked through XCB, where a window that died with its parent is an empty answer and not an X error.
    xcb_connection_t* connection = QX11Info::connection();
    if (!connection)
        return false;
    auto* reply = xcb_get_window_attributes_reply(
        connection, xcb_get_window_attributes(connection, xcb_window_t(fWindow)), nullptr);
    std::free(reply);
    return reply != nullptr;
}

void QlirnNativeWindow::beginPaint()
{
    if (fWindow)
        fPaintSequence = static_cast<std::uint32_t>(XNextRequest(fDisplay));
}

void QlirnNativeWindow::exposed(std::uint32_t sequence)
{
    // The difference is taken as signed, because request numbers wrap.
    if (static_cast<std::int32_t>(sequence - fPaintSequence) >= 0)
        fWidget->update();
}

void QlirnNativeWindow::followSize()
{
    if (!fWindow)
        return;
    const QSize size = windowSize();
    if (size == fSize)
        return;
    if (fBoundSinceFrame) {
        // Software GLX keeps the size that a drawable was bound with until a frame was shown. A new window is bound with
        // the right one.
        fBoundSinceFrame = false;
        replace();
        return;
    }
    fSize = size;
    XResizeWindow(fDisplay, fWindow, unsigned(size.width()), unsigned(size.height()));
    // Software GLX goes on with the old drawable size until the server has answered.
    XSync(fDisplay, 0);
}

void QlirnNativeWindow::followParent()
{
    if (!fVisual || !fDisplay || !fWidget->internalWinId() || (fWindow && fWidget->internalWinId() == fParent))
        return;
    if (fWindow && isAlive()) {
        fParent = fWidget->internalWinId();
        XReparentWindow(fDisplay, fWindow, fParent, 0, 0);
        XMapWindow(fDisplay, fWindow);
        followSize();
    } else {
        if (fWindow)
            retire();
        create();
        fBoundSinceFrame = true;
    }
    XSync(fDisplay, 0);
}

QSize QlirnNativeWindow::deviceSize(const QWidget* widget)
{
    constexpr int kMostPixels = 32767; // of X windows, and of port coordinates
    const qreal ratio = widget->devicePixelRatioF();
    return QSize(qRound(widget->width() * ratio), qRound(widget->height() * ratio))
        .boundedTo(QSize(kMostPixels, kMostPixels));
}

QSize QlirnNativeWindow::windowSize() const
{
    return deviceSize(fWidget).expandedTo(QSize(1, 1)); // X has no empty windows
}
