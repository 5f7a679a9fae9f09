#include "QtExtensions/QlirnGLRenderTarget.h"

#include <QApplication>
#include <QGLContext>
#include <QGLFramebufferObject>
#include <QGLPixelBuffer>
#include <QGLWidget>
#include <QSize>

#include "Graphics/3dPort/T3dPort.h"

#include <cstdio>

namespace {

/** Qt tries sizes that cannot be had, which leaves OpenGL errors, and takes pixel buffers of such a size for valid. */
bool canBeHad(const QSize& size)
{
    const int most = T3dPort::fsMaxTextureSize;
    return !size.isEmpty() && (most == 0 || (size.width() <= most && size.height() <= most));
}

/** Tells of the context that a widget of Qt's own binds when an event reaches it. */
class BindingFilter : public QObject
{
public:
    bool eventFilter(QObject*, QEvent*) override
    {
        T3dPort::nativeBindingMoved();
        return false;
    }
};

/** Qt's pixel buffers have a hidden widget each, which is resized from the event loop, with its context bound. */
void watchHiddenWidgets()
{
    static BindingFilter filter;
    for (QWidget* widget : QApplication::topLevelWidgets())
        if (qobject_cast<QGLWidget*>(widget))
            widget->installEventFilter(&filter);
}

} // namespace

QlirnGLRenderTarget::QlirnGLRenderTarget(bool debug) : fFormat(QGLFormat::defaultFormat()), fDebug(debug) {}

QlirnGLRenderTarget::~QlirnGLRenderTarget()
{
    release();
}

bool QlirnGLRenderTarget::create(const QSize& size, const QGLFormat* format, QGLWidget* shareWidget)
{
    const bool sizeFits = size == QSize(fWidth, fHeight);
    if (format ? fPixelBuffer && sizeFits && *format == fFormat : fFramebufferObject && sizeFits)
        return true;

    release();
    fWidth = size.width();
    fHeight = size.height();
    bool valid = false;
    if (format)
        fFormat = *format;
    if (!canBeHad(size)) {
        // Nothing is made.
    } else if (format) {
        fPixelBuffer = new QGLPixelBuffer(size, *format, shareWidget);
        T3dPort::nativeBindingMoved();
        watchHiddenWidgets();
        valid = fPixelBuffer->isValid();
    } else if (QGLContext::currentContext()) { // Qt's object takes one for granted
        fFramebufferObject = new QGLFramebufferObject(size, QGLFramebufferObject::Depth, GL_TEXTURE_2D, GL_RGBA8);
        valid = fFramebufferObject->isValid();
    }
    if (!valid)
        release();
    if (fDebug) {
        if (format)
            std::printf("(Re)create PBO QT target %d. Size %d x %d\n", fPixelBuffer != nullptr, fWidth, fHeight);
        else
            std::printf("(Re)create QT FBO target %d. Size %d x %d\n", fFramebufferObject != nullptr, fWidth, fHeight);
    }
    return fPixelBuffer || fFramebufferObject;
}

bool QlirnGLRenderTarget::isValid() const
{
    const bool framebuffer = fFramebufferObject && fFramebufferObject->isValid();
    const bool pixelBuffer = fPixelBuffer && fPixelBuffer->isValid();
    return framebuffer != pixelBuffer;
}

void QlirnGLRenderTarget::release()
{
    if (fDebug)
        std::printf("Destroy QT target\n");
    if (fPixelBuffer)
        T3dPort::nativeBindingMoved();
    delete fPixelBuffer;
    fPixelBuffer = nullptr;
    delete fFramebufferObject;
    fFramebufferObject = nullptr;
    fWidth = 0;
    fHeight = 0;
    fFormat = QGLFormat::defaultFormat();
    fInUse = false;
}
