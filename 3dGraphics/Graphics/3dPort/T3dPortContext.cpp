// Contexts, drawing planes and the current port.

#include <QWidget>

#include "Graphics/3dPort/T3dPort.h"

#include "Graphics/3dPort/T3dPortAudit.h"
#include "QtExtensions/Q3dPort.h"
#include "QtExtensions/QlirnGLContext.h"
#include "QtExtensions/QlirnGLRenderTarget.h"
#include "QtExtensions/QlirnGLWidget.h"
#include "foundation/TenvironmentVariable.h"
#include "foundation/Tpoint.h"
#include "ui/TcursorShape.h"

#include <cstdio>

T3dPort* T3dPort::fsCurrentPort = nullptr;
bool T3dPort::fsBindingMoved = false;

namespace {

bool isViewportForced()
{
    static const bool forced = TenvironmentVariable("LIRN_FORCE_VP_SIZE").isEnabled();
    return forced;
}

} // namespace

void T3dPort::makeCurrent() const
{
    if (QlirnGLWidget* widget = glWidget()) {
        const GLXContext bound = glXGetCurrentContext();
        bool changed = false;
        bool isBound = true;
        const QlirnGLRenderTarget* target = fQ3dPort->offscreenTarget();
        if (target && target->isInUse()) {
            if (fDebugPorts)
                std::printf("Using offscreen. Disallow make current\n");
            changed = true;
        } else if (const GLXContext active = widget->glContext()->getActiveContext()) {
            if (active != bound) {
                if (fDebugPorts)
                    std::printf("T3dPort::makeCurrent %p -> %p\n", static_cast<void*>(bound),
                                static_cast<void*>(active));
                widget->makeCurrent();
                changed = true;
                isBound = widget->isRenderingPixmap() || glXGetCurrentContext() == active;
            }
        } else {
            isBound = false;
        }
        const bool forced = isViewportForced();
        if (changed || forced) {
            sendViewport();
            fMatrixValid &= ~std::uint32_t(kAllMatricesValid);
        }
        // A hidden widget, or one without context, leaves another context bound: nobody may take that for his own.
        fsBindingMoved = !isBound;
    }
    fsCurrentPort = const_cast<T3dPort*>(this);
}

void T3dPort::bringCurrent() const
{
    if (!glWidget())
        return;
    if (this != fsCurrentPort || !isBindingTrusted())
        makeCurrent();
    const std::uint32_t loaded = fsEitherValid[planesRow()];
    if ((fMatrixValid & loaded) != loaded)
        glLoadMatrices();
}

void T3dPort::sendViewport() const
{
    glViewport(fViewport->left, fViewport->bottom, fViewport->width(), fViewport->height());
}

void T3dPort::setContext(TwhichContext)
{
    QWidget* widget = qControl();
    const bool hadCursor = widget && widget->testAttribute(Qt::WA_SetCursor);
    const QCursor saved = hadCursor ? widget->cursor() : QCursor();
    if (widget)
        widget->setCursor(TcursorShape::getCursor(TcursorShape::kDefault));
    if (fDebugPorts)
        std::printf("T3dPort::setContext(kPrimaryContext)\n");
    fPortFlags.clear(kPortFlag5);
    setDrawingPlanes(kMainPlanes);
    setCurrentContext();
    if (hadCursor)
        widget->setCursor(saved);
    else if (widget)
        widget->unsetCursor();
}

void T3dPort::setDrawingPlanes(TdrawingPlanes planes)
{
    if (fDebugPorts && planes != fDrawingPlanes)
        std::printf("T3dPort::setDrawingPlanes(%s)\n", planes == kMainPlanes ? "kMainPlanes" : "BAD PLANES");
    fDrawingPlanes = planes;
}

void T3dPort::initContext()
{
    if (!fContext)
        return;
    // A red of exactly a half is its own complement; any other value then serves to make the two calls differ.
    const TportColor recorded = fContext->fColor;
    TportColor other = recorded;
    other.r = 1.0f - recorded.r;
    if (other == recorded)
        other.r = 0.0f;
    color(other);
    color(recorded);

    const TportColor clear = fContext->fClearColor;
    other = clear;
    other.r = 1.0f - clear.r;
    if (other == clear)
        other.r = 0.0f;
    clearColor(other);
    clearColor(clear);
}

void T3dPort::resizeDrawingPlanes()
{
    makeCurrent();
    setCurrentContext();
    *fViewport = TportRect(0, 0, static_cast<short>(fPortRect.width()), static_cast<short>(fPortRect.height()));
    fMatrixValid &= ~std::uint32_t(kAllMatricesValid);
    if (glWidget()) {
        glLoadMatrices();
        sendViewport();
    }
    discardBackingStore();
}

void T3dPort::getPositionAbs(Tpoint& p) const
{
    const QWidget* widget = qControl();
    if (!widget)
        return;
    const QPointF corner = QPointF(widget->mapToGlobal(QPoint(0, 0))) * widget->devicePixelRatioF();
    p.x = static_cast<short>(qRound(corner.x()));
    p.y = static_cast<short>(qRound(corner.y()));
}

TglContext* T3dPort::getSharedContext(TcontextType type)
{
    auto* context = new TglContext(type, fPortFlags.test(kPortFlag15));
    fsAllContexts.append(context);
    return context;
}

TcontextType T3dPort::getContextType(bool, bool a2, bool a3, bool a4, bool a5, bool a6, bool a7, unsigned short n)
{
    if (!a2) {
        if (!a3)
            return 1;
        if (!a4)
            return 3;
        return a5 ? 7 : 6;
    }
    if (!a3)
        return n == 0 ? 0 : n == 1 ? 8 : 9;
    if (a4) {
        if (a5)
            return a6 ? 14 : 11;
        return a6 ? 15 : 10;
    }
    if (a5) {
        if (a6)
            return 13;
        return a7 ? 17 : 12;
    }
    return a6 ? 16 : 2;
}

void T3dPort::beginForeignGL()
{
    setCurrentContext();
}

void T3dPort::endForeignGL()
{
    nativeBindingMoved();
    makeCurrent();
    // Without the port's own context bound the state would go to somebody else's.
    if (glWidget() && !fsBindingMoved)
        resendState();
}

void T3dPort::resendState()
{
    T3dPortAudit::send(*this);
}

TstringArray T3dPort::stateDifferences() const
{
    return T3dPortAudit::differences(*this);
}
