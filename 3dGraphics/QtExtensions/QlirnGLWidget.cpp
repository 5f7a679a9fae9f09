#include <QApplication>
#include <QGLFormat>
#include <QMouseEvent>
#include <QPointer>
#include <QTabletEvent>
#include <QWheelEvent>

#include "QtExtensions/QlirnGLWidget.h"

#include "Graphics/3dPort/T3dPort.h"
#include "QtExtensions/Q3dPort.h"
#include "QtExtensions/QlirnForwardingGLContext.h"
#include "QtExtensions/QlirnGLContext.h"
#include "QtExtensions/QlirnGLPixmapContext.h"
#include "QtExtensions/QlirnNativeWindow.h"
#include "foundation/Tevent.h"
#include "foundation/TeventHandler.h"
#include "foundation/Trect.h"
#include "ui/QlirnQtHelper.h"
#include "ui/TUIInventory.h"

#include <algorithm>
#include <cstdio>

QlirnGLWidgetPtrArray& QlirnGLWidget::fsWidgetList = *new QlirnGLWidgetPtrArray;

namespace {

constexpr int kTabletPen = 1;
constexpr int kTabletEraser = 3;

Tpoint devicePoint(const QPointF& logical, qreal ratio)
{
    return Tpoint{static_cast<short>(qRound(logical.x() * ratio)), static_cast<short>(qRound(logical.y() * ratio))};
}

/** Where @p event is in the widget that gets it, to the device pixel. */
QPointF exactPosition(const QMouseEvent& event)
{
    // Qt rounds the local position to logical pixels. The position in the window, which is the widget's own here, keeps
    // the fraction; an event that somebody made up may have it in terms of another window.
    const bool sameWindow = event.windowPos().toPoint() == event.localPos().toPoint();
    return sameWindow ? event.windowPos() : event.localPos();
}

/** The turn of the wheel, whichever way: Qt turns it sideways while Alt is held. */
short wheelDelta(const QPoint& angle)
{
    return static_cast<short>(std::clamp(angle.y() ? angle.y() : angle.x(), -32768, 32767));
}

} // namespace

QlirnGLWidget::QlirnGLWidget(T3dPort* port, const QGLFormat& format, QWidget* parent, const QGLWidget* shareWidget,
                             Qt::WindowFlags flags)
    : Qlirn3dDeviceWidget(port, parent, flags | Qt::MSWindowsOwnDC)
{
    fGLContext = QlirnGLContext::create(this, format, shareWidget);
    if (fDebug)
        std::printf("Add widget to static list. Current size = %d\n", int(fsWidgetList.length()));
    fsWidgetList.append(this);
}

QlirnGLWidget::~QlirnGLWidget()
{
    fDestroying = true;
    if (fPort) {
        setPortProperty(nullptr);
        if (!fPortDeleted) {
            gUIInventory->remove(fPort);
            delete fPort;
        }
        fPort = nullptr;
    }
    // A widget that goes without having been hidden leaves Qt (5.15) a pointer to the window that a button is down on.
    if (QApplication::mouseButtons() != Qt::NoButton)
        hide();

    forwardingContext()->setTarget(nullptr);
    XVisualInfo* visual = fGLContext ? fGLContext->visual() : nullptr;
    delete fGLContext;
    fGLContext = nullptr;
    fNativeWindow.reset();
    if (visual)
        XFree(visual);

    fsWidgetList.removeItem(this);
    if (fDebug)
        std::printf("Remove widget from static list. Current size = %d\n", int(fsWidgetList.length()));
}

void QlirnGLWidget::makeCurrent()
{
    if (fOffscreen) {
        // The port's commands may have drawn another port in between.
        if (fPixmapTarget)
            fPixmapTarget->makeCurrent();
        return;
    }
    if (!fGLContext)
        return;
    fGLContext->makeCurrent();
    if (fDestroying || fPortDeleted)
        return;
    // A hidden widget or one without a visual did not get its context bound. What the port sends until it does is lost.
    if (!fGLContext->isCurrent()) {
        fResendPending = true;
        return;
    }
    if (!fInitialized) {
        fInitialized = true;
        initializeGL();
    }
    if (fResendPending) {
        fResendPending = false;
        if (fPort)
            fPort->resendState();
    }
}

void QlirnGLWidget::swapBuffers()
{
    if (fOffscreen || !fGLContext)
        return;
    fGLContext->swapBuffers();
    if (fNativeWindow)
        fNativeWindow->frameShown();
}

void QlirnGLWidget::useSharedContext(bool shared)
{
    if (!fGLContext || !fGLContext->useSharedContext(shared))
        return;
    fResendPending = true;
    makeCurrent();
    if (fPort)
        fPort->setCurrentContext();
}

bool QlirnGLWidget::isSharedContext() const
{
    return fGLContext && fGLContext->isSharedContext();
}

void QlirnGLWidget::setContext(const QlirnGLContext* context, const QlirnGLContext*, bool deleteOldContext)
{
    XVisualInfo* oldVisual = nullptr;
    if (deleteOldContext && fGLContext && fGLContext != context) {
        oldVisual = fGLContext->visual();
        delete fGLContext;
    }
    fGLContext = const_cast<QlirnGLContext*>(context);
    forwardingContext()->setTarget(context);
    fNativeWindow = std::make_unique<QlirnNativeWindow>(this, context ? context->visual() : nullptr);
    if (oldVisual)
        XFree(oldVisual);
}

unsigned long QlirnGLWidget::glWindow() const
{
    return fNativeWindow ? fNativeWindow->id() : 0;
}

void QlirnGLWidget::initializeGL()
{
    if (fDebug)
        std::printf("QlirnGLWidget -- initializeGL()\n");
    if (Q3dPort::enableGLCoreProfile())
        return;
    glEnable(GL_NORMALIZE);
    if (fPort)
        fPort->initBuffer();
}

void QlirnGLWidget::paintGL()
{
    if (fDebug)
        std::printf("QlirnGLWidget - paintGL\n");
    if (fPort)
        fPort->OnPaint();
}

void QlirnGLWidget::resizeGL(int w, int h)
{
    if (fDebug) {
        const QRect g = geometry();
        const QRect f = frameGeometry();
        std::printf("QlirnGLWidget - resizeGL w=%d, h=%d\n", w, h);
        std::printf("QlirnGLWidget - w=%d, h=%d, geometry={x:[%d,%d], y:[%d,%d]}, frame={x:[%d,%d], y:[%d,%d]}\n",
                    g.width(), g.height(), g.left(), g.right(), g.bottom(), g.top(), f.left(), f.right(), f.bottom(),
                    f.top());
    }
    if (!fPort)
        return;
    Trect rect;
    rect.set(0, static_cast<short>(h), static_cast<short>(w), 0);
    fPort->resize(rect);
}

void QlirnGLWidget::resizeViewPort(int w, int h)
{
    if (fNativeWindow)
        fNativeWindow->beginPaint();
    makeCurrent();
    resizeGL(w, h);
}

void QlirnGLWidget::renderScene()
{
    if (fNativeWindow)
        fNativeWindow->beginPaint();
    makeCurrent();
    const QPointer<QlirnGLWidget> self(this); // a command may delete the port, and the widget with it
    paintGL();
    if (self && fNativeWindow)
        fNativeWindow->frameShown();
}

void QlirnGLWidget::glWindowBound()
{
    if (fNativeWindow)
        fNativeWindow->bound();
}

QSize QlirnGLWidget::deviceSize() const
{
    return QlirnNativeWindow::deviceSize(this);
}

QPixmap QlirnGLWidget::renderPixmap(int w, int h)
{
    if (w < 1 || h <= 0 || !fGLContext || fOffscreen)
        return QPixmap();

    QPixmap pixmap;
    {
        QGLFormat format = fGLContext->format();
        format.setDirectRendering(false);
        format.setDoubleBuffer(false);
        QlirnGLPixmapContext target(w, h, format);
        fOffscreen = true;
        fPixmapTarget = &target;
        if (target.makeCurrent()) {
            if (fPort)
                fPort->resendState();
            initializeGL();
            paintGL();
            // The port's commands may have moved on to another context.
            target.makeCurrent();
            pixmap = target.read();
        }
        fPixmapTarget = nullptr;
        fOffscreen = false;
    }
    fResendPending = true;
    makeCurrent();
    initializeGL();
    return pixmap;
}

void QlirnGLWidget::clearWidgetList()
{
    while (!fsWidgetList.isEmpty()) {
        QlirnGLWidget* widget = fsWidgetList.last();
        if (widget->fPort) {
            if (Q3dPort* side = widget->fPort->q3dPort())
                side->releaseWidget(widget);
        }
        widget->fPort = nullptr;
        delete widget;
    }
}

void QlirnGLWidget::parentWindowMoveNotify(QWidget* w)
{
    if (fPort && window() == w)
        fPort->parentWindowMoveNotify();
}

bool QlirnGLWidget::event(QEvent* event)
{
    if (event->type() == QEvent::WinIdChange && fNativeWindow)
        fNativeWindow->followParent();
    // NOLINTNEXTLINE(bugprone-parent-virtual-call): QGLWidget's would give its own context the new window
    return QWidget::event(event);
}

void QlirnGLWidget::paintEvent(QPaintEvent*)
{
    renderScene();
}

void QlirnGLWidget::resizeEvent(QResizeEvent*)
{
    if (fNativeWindow)
        fNativeWindow->followSize();
    const QSize size = deviceSize();
    resizeViewPort(size.width(), size.height());
}

void QlirnGLWidget::showEvent(QShowEvent*)
{
    if (fPort)
        fPort->visibleNotify(true);
}

void QlirnGLWidget::hideEvent(QHideEvent*)
{
    if (fPort)
        fPort->visibleNotify(false);
}

void QlirnGLWidget::mousePressEvent(QMouseEvent* event)
{
    if (event->buttons() & ~Qt::MouseButtons(event->button())) {
        event->accept();
        return;
    }
    if (QlirnQtHelper::handlePopupMenu(this, event))
        return;
    Tevent press = makeEvent(Tevent::kPress, *event, true);
    press.setPressed(true);
    Tevent::fsIsDragging = true;
    traceEvent("press", press);
    makeCurrent();
    if (fPort)
        fPort->doPress(press);
}

void QlirnGLWidget::mouseMoveEvent(QMouseEvent* event)
{
    const bool buttonDown = event->buttons() != Qt::NoButton;
    const bool drag = buttonDown && (!fTabletMoved || Tevent::fsUseDevice);
    Tevent move = makeEvent(drag ? Tevent::kDrag : Tevent::kPointerMoved, *event, true);
    if (fDebug) {
        const Tpoint local = move.getLocalPosition(1);
        const Tpoint global = move.getGlobalPosition();
        std::printf("QlirnGLWidget - mouse move (Local %d,%d. Global %d,%d). Drag = %d\n", local.x, local.y, global.x,
                    global.y, buttonDown);
    }
    move.setPressed(drag);
    Tevent::fsIsDragging = drag;
    fTabletMoved = false;
    // Last: the command may delete the port, and this widget with it.
    if (fPort) {
        if (drag)
            fPort->doDrag(move);
        else
            fPort->doPtrMoved(move);
    }
}

void QlirnGLWidget::mouseReleaseEvent(QMouseEvent* event)
{
    if (fDebug)
        std::printf("QlirnGLWidget::mouseReleaseEvent()\n");
    if (event->buttons() != Qt::NoButton) {
        event->accept();
        return;
    }
    Tevent release = makeEvent(Tevent::kRelease, *event, true);
    release.setPressed(true);
    Tevent::fsIsDragging = false;
    traceEvent("release", release);
    if (fPort)
        fPort->doRelease(release);
}

void QlirnGLWidget::mouseDoubleClickEvent(QMouseEvent* event)
{
    if (fDebug)
        std::printf("QlirnGLWidget::mouseDoubleClickEvent()\n");
    const Tevent doubleClick = makeEvent(Tevent::kDoubleClick, *event, false);
    if (fPort)
        fPort->doDoubleClick(doubleClick);
}

void QlirnGLWidget::wheelEvent(QWheelEvent* event)
{
    if (fDebug)
        std::printf("QlirnGLWidget::mouseWheelEvent()\n");
    // Even when dropped: what scrolls around the view must not move.
    event->accept();
    if (!TeventHandler::fsUseScrollWheel || event->buttons() != Qt::NoButton)
        return;
    unsigned modifiers = 0;
    int button = 0;
    QlirnQtHelper::getMouseEventLirnButtonInfo(event, modifiers, button);
    Tevent wheel(Tevent::kWheel, modifiers, button);
    wheel.setLocalPosition(devicePoint(event->position(), devicePixelRatioF()), 1);
    wheel.setMouseDelta(wheelDelta(event->angleDelta()));
    if (fPort)
        fPort->doMouseWheel(wheel);
}

void QlirnGLWidget::enterEvent(QEvent*)
{
    const Tevent enter(Tevent::kEnter);
    if (fPort)
        fPort->doEnterRegion(enter);
}

void QlirnGLWidget::leaveEvent(QEvent*)
{
    const Tevent exit(Tevent::kExit);
    if (fPort)
        fPort->doExitRegion(exit);
}

void QlirnGLWidget::tabletEvent(QTabletEvent* event)
{
    if (event->deviceType() == QTabletEvent::Stylus) {
        const double pressure = std::min(event->pressure(), qreal(1.0));
        if (event->type() == QEvent::TabletPress) {
            Tevent::setUseDevice(true);
            Tevent::fsDevicePressure = pressure;
        } else if (event->type() == QEvent::TabletRelease) {
            Tevent::setUseDevice(false);
        } else if (event->type() == QEvent::TabletMove && Tevent::fsUseDevice) {
            fTabletMoved = true;
            Tevent::fsDevicePressure = pressure;
        }
    }
    Tevent::fsTabletPointerType = event->pointerType() == QTabletEvent::Eraser ? kTabletEraser : kTabletPen;
    // Leaves the event unaccepted, so that Qt goes on to make mouse events of it.
    QWidget::tabletEvent(event);
}

Tevent QlirnGLWidget::makeEvent(unsigned type, const QMouseEvent& event, bool withGlobalPosition) const
{
    unsigned modifiers = 0;
    int button = 0;
    QlirnQtHelper::getMouseEventLirnButtonInfo(&event, modifiers, button);
    Tevent made(type, modifiers, button);
    const qreal ratio = devicePixelRatioF();
    made.setLocalPosition(devicePoint(exactPosition(event), ratio), 1);
    if (withGlobalPosition)
        made.setGlobalPosition(devicePoint(event.screenPos(), ratio));
    return made;
}

void QlirnGLWidget::traceEvent(const char* what, const Tevent& event) const
{
    if (!fDebug)
        return;
    const Tpoint local = event.getLocalPosition(1);
    const Tpoint global = event.getGlobalPosition();
    std::printf("QlirnGLWidget - mouse %s (Local %d,%d. Global %d,%d)\n", what, local.x, local.y, global.x, global.y);
}
