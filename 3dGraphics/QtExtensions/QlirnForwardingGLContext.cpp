#include <QX11Info>

#include "QtExtensions/QlirnForwardingGLContext.h"

#include "Graphics/3dPort/T3dPort.h"
#include "QtExtensions/QlirnGLContext.h"

QlirnForwardingGLContext::QlirnForwardingGLContext() : QGLContext(QGLFormat()) {}

void QlirnForwardingGLContext::makeCurrent()
{
    if (fTarget)
        fTarget->makeCurrent();
}

void QlirnForwardingGLContext::doneCurrent()
{
    if (fTarget && fTarget->getActiveContext() && glXGetCurrentContext() == fTarget->getActiveContext()) {
        glXMakeCurrent(QX11Info::display(), QlirnX11::kNone, nullptr);
        T3dPort::nativeBindingMoved();
    }
}

void QlirnForwardingGLContext::swapBuffers() const
{
    if (fTarget)
        fTarget->swapBuffers();
}

bool QlirnForwardingGLContext::chooseContext(const QGLContext*)
{
    return true;
}
