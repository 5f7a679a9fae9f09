// Port rectangle, viewports, paint cycle and buffer swap.

#include "Graphics/3dPort/T3dPort.h"

#include "Graphics/3dPort/T3dPortAudit.h"
#include "QtExtensions/Q3dPort.h"
#include "QtExtensions/QlirnGLWidget.h"
#include "foundation/Taction.h"
#include "foundation/Tevent.h"
#include "foundation/Tpoint.h"
#include "foundation/Trect.h"
#include "ui/QlirnWindowEventFilterObject.h"

#include <QPixmap>

#include <algorithm>
#include <cstdio>
#include <limits>

namespace {

// A port of one pixel is still drawn, into a viewport widened by this much on each side.
constexpr int kOnePixelMargin = 200;

TportRect sizedRect(const QSize& size)
{
    constexpr int kLargest = std::numeric_limits<short>::max();
    return TportRect(0, 0, static_cast<short>(std::min(size.width(), kLargest)),
                     static_cast<short>(std::min(size.height(), kLargest)));
}

std::uint8_t bitDepth(GLenum which)
{
    GLint bits = 0;
    glGetIntegerv(which, &bits);
    return static_cast<std::uint8_t>(std::clamp(bits, 0, 255));
}

} // namespace

void T3dPort::setPortRect(const TportRect& r)
{
    if (fDebugPorts) {
        std::printf("T3dPort::setPortRect(w=%d, h=%d, x:[%d,%d], y:[%d,%d], \n", r.width(), r.height(), r.left, r.right,
                    r.bottom, r.top);
        if (const QWidget* widget = qControl()) {
            const QRect g = widget->geometry();
            const QRect f = widget->frameGeometry();
            std::printf("T3dPort::setPortRect() - widget: w=%d, h=%d, geometry={x:[%d,%d], y:[%d,%d]}, "
                        "frame={x:[%d,%d], y:[%d,%d]}\n",
                        g.width(), g.height(), g.left(), g.right(), g.bottom(), g.top(), f.left(), f.right(),
                        f.bottom(), f.top());
        }
    }
    fLastRow = static_cast<short>(r.top - 1);
    if (r == fPortRect)
        return;
    fPortRect = r;
    if (isOpen())
        resizeDrawingPlanes();
}

void T3dPort::pushPortRect(const TportRect& r)
{
    fPortRectStack.append(fPortRect);
    fPortRect = r;
}

void T3dPort::popPortRect()
{
    if (fPortRectStack.isEmpty())
        return;
    fPortRect = fPortRectStack.last();
    fPortRectStack.removeLast();
}

void T3dPort::pushViewport(const TportRect& r)
{
    const TportRect pushed = r;
    setCurrentContext();
    fViewportStack.append(pushed);
    fViewport = &fViewportStack.last();
    if (glWidget())
        sendViewport();
}

void T3dPort::popViewport()
{
    if (fViewportStack.length() < 2)
        return;
    setCurrentContext();
    fViewportStack.removeLast();
    fViewport = &fViewportStack.last();
    if (glWidget())
        sendViewport();
}

const TportRect& T3dPort::getUpdateRegion() const
{
    return fPortFlags.test(kPortInUpdate) ? fUpdateRegion : fPortRect;
}

bool T3dPort::isFullyObscured() const
{
    if (fPortRect.isEmpty())
        return true;
    const QWidget* widget = qControl();
    return widget && !widget->isVisible();
}

bool T3dPort::isPtInPortRect(const Tpoint& p) const
{
    return fPortRect.left <= p.x && p.x < fPortRect.right && fPortRect.bottom <= p.y && p.y < fPortRect.top;
}

bool T3dPort::resize(const Trect& r)
{
    const TportRect sized(0, 0, static_cast<short>(r.right - r.left), static_cast<short>(r.top - r.bottom));
    if (sized != fPortRect) {
        setPortRect(sized);
        doUpdate(Tevent());
    }
    resizeHook(static_cast<unsigned short>(sized.width()), static_cast<unsigned short>(sized.height()));
    return false;
}

void T3dPort::OnPaint()
{
    TportRect r;
    if (fQ3dPort && fQ3dPort->widget() && glWidget())
        r = sizedRect(glWidget()->deviceSize());
    if (r.width() < 1 || r.height() < 1)
        return;
    setDrawingPlanes(kMainPlanes);
    if (isGLViewport())
        setCurrentContext();

    if (fPortFlags.test(kPortFirstPaintPending)) {
        fPortFlags.clear(kPortFirstPaintPending);
        const TportRect whole = r;
        setPortRect(whole);
        setDrawingPlanes(kMainPlanes);
        if (!isGLCoreViewport()) {
            fContext->fRedBits = bitDepth(GL_RED_BITS);
            fContext->fGreenBits = bitDepth(GL_GREEN_BITS);
            fContext->fBlueBits = bitDepth(GL_BLUE_BITS);
            fContext->fAlphaBits = bitDepth(GL_ALPHA_BITS);
            fContext->fStencilBits = bitDepth(GL_STENCIL_BITS);
        }
        if (whole.width() == 1) {
            r.left = static_cast<short>(r.left - kOnePixelMargin);
            r.right = static_cast<short>(r.right + kOnePixelMargin);
        }
        if (whole.height() == 1) {
            r.bottom = static_cast<short>(r.bottom - kOnePixelMargin);
            r.top = static_cast<short>(r.top + kOnePixelMargin);
        }
        if (r.width() <= 0 || r.height() <= 0)
            r = TportRect();
        setDrawingPlanes(kMainPlanes);
        setCurrentContext();
        glViewport(0, 0, r.width(), r.height());
        *fViewport = whole;
        resizeHook(static_cast<unsigned short>(whole.width()), static_cast<unsigned short>(whole.height()));
        if (!fDoubleBuffered)
            glDrawBuffer(GL_FRONT);
    } else {
        setDrawingPlanes(kMainPlanes);
    }
    fUpdateRegion = r;
    doUpdate(Tevent(Tevent::kUpdate));
    if (fDebugState)
        T3dPortAudit::printDifferences(*this);
}

bool T3dPort::doUpdate(const Tevent& event)
{
    if (isStowed())
        return false;
    fPortFlags.set(kPortInUpdate);
    resizeDrawingPlanes();
    if (fUpdateCommand)
        fUpdateCommand->run(event);
    fPortFlags.clear(kPortInUpdate);
    return false;
}

void T3dPort::swapBuffers()
{
    QlirnGLWidget* widget = glWidget();
    if (!widget)
        return;
    if (fContext->fDirtyBits.test(TglContext::kHasDoubleBuffer) && fDoubleBuffered == 1 && !fNoSwap) {
        if (fDebugPorts)
            std::printf("T3dPort::swapBuffers - swap\n");
        widget->swapBuffers();
    } else {
        if (fDebugPorts)
            std::printf("T3dPort::swapBuffers - flush\n");
        glFlush();
    }
}

void T3dPort::setDoUpdateOnMove(bool on)
{
    QWidget* widget = fQ3dPort ? fQ3dPort->widget() : nullptr;
    QObject* filter = widget && widget->window() ? QlirnWindowEventFilterObject::globalEventFilter() : nullptr;
    if (filter && on && !fUpdateOnMove)
        QObject::connect(filter, SIGNAL(windowMoved(QWidget*)), widget, SLOT(parentWindowMoveNotify(QWidget*)));
    else if (filter && !on && fUpdateOnMove)
        QObject::disconnect(filter, SIGNAL(windowMoved(QWidget*)), widget, SLOT(parentWindowMoveNotify(QWidget*)));
    fUpdateOnMove = on;
}

void T3dPort::parentWindowMoveNotify()
{
    if (fUpdateOnMove)
        doUpdate(Tevent());
}

QPixmap T3dPort::renderToPixmap(int w, int h)
{
    QlirnGLWidget* widget = glWidget();
    return widget ? widget->renderPixmap(w, h) : QPixmap();
}
