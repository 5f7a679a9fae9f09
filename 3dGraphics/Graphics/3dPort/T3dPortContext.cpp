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
T3dPort* T3dPort::fsTrustedPort = nullptr;
const void* T3dPort::fsBoundContext = nullptr;
Tarray<const void*>& T3dPort::fsDisturbedContexts = *new Tarray<const void*>;

namespace {

bool isViewportForced()
{
    static const bool forced = TenvironmentVariable("LIRN_FORCE_VP_SIZE").isEnabled();
    return forced;
}

} // namespace

void T3dPort::makeCurrent() const
{
    bool isBound = false; // what the port draws reaches a context of its own, if only for a while
    if (QlirnGLWidget* widget = glWidget()) {
        const GLXContext active = widget->glContext()->getActiveContext();
        bool changed = false;
        bool isActive = false;
        const QlirnGLRenderTarget* target = fQ3dPort->offscreenTarget();
        if (target && target->isInUse()) {
            if (fDebugPorts)
                std::printf("Using offscreen. Disallow make current\n");
            changed = true;
            isBound = true;
        } else if (active) {
            // Where another context is known to be bound, GLX need not be asked, which would cost a third of the switch.
            const void* known = isHostUnsettled() ? nullptr : fsBoundContext;
            const void* bound = known && known != active ? known : glXGetCurrentContext();
            if (active != bound) {
                if (fDebugPorts)
                    std::printf("T3dPort::makeCurrent %p -> %p\n", bound, static_cast<void*>(active));
                widget->makeCurrent();
                changed = true;
            }
            isActive = !changed || widget->glContext()->isCurrent();
            isBound = isActive || widget->isRenderingPixmap();
        }
        const bool forced = isViewportForced();
        if (isActive && !fsDisturbedContexts.isEmpty() && fsDisturbedContexts.removeItem(active))
            T3dPortAudit::send(const_cast<T3dPort&>(*this));
        if (changed || forced) {
            sendViewport();
            fMatrixValid &= ~std::uint32_t(kAllMatricesValid);
        }
        if (!isBound)
            noteStray();
    }
    fsTrustedPort = isBound ? const_cast<T3dPort*>(this) : nullptr;
    fsCurrentPort = const_cast<T3dPort*>(this);
}

void T3dPort::noteStray() const
{
    // A port that cannot bind its context (its widget is hidden, or there was no visual) sends to the one that happens to
    // be bound. The port of that one sends its state again before it draws next.
    const void* bound = glXGetCurrentContext();
    if (bound && fsDisturbedContexts.find(bound) < 0)
        fsDisturbedContexts.append(bound);
    fsTrustedPort = nullptr;
}

void T3dPort::bringCurrent() const
{
    if (!glWidget())
        return;
    if (this != fsTrustedPort || isHostUnsettled())
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
    if (glWidget() && fsTrustedPort)
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

TstateValues T3dPort::recordedState() const
{
    return T3dPortAudit::recorded(*this);
}

TstateValues T3dPort::driverState() const
{
    return T3dPortAudit::ofDriver(*this);
}

TstringArray T3dPort::stateDifferences(const TstateValues& a, const TstateValues& b)
{
    return T3dPortAudit::differences(a, b, "", " | ");
}
